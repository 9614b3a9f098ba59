#include <dlfcn.h>
#include <unistd.h>

#include <stdexcept>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CallStackModule.h"
#include "support/BusyThreads.h"

namespace {

/// Loads and unloads a module whose static object takes a stack, and returns the innermost frame of it.
std::string LoadStartingModule() {
  void* const handle = dlopen(STARTING_MODULE, RTLD_NOW);
  if (handle == nullptr) throw std::runtime_error(dlerror());
  const auto getFrame = reinterpret_cast<const wchar_t* (*)()>(dlsym(handle, "GetFrameOfStart"));
  std::string frame = YBase::WideCharToUTF8(getFrame());
  dlclose(handle);
  return frame;
}

TEST(CallStackLoading, StaticObjectTakesAStackWhileItsModuleIsLoaded) {
  EXPECT_THAT(LoadStartingModule(), testing::AnyOf(testing::HasSubstr("starting_module.cpp:"),
                                                   testing::StartsWith("libcallstack_starting.so+0x")));
}

// While a static object is constructed, the loader holds a lock that threads need when they look up frames.
TEST(CallStackLoading, StaticObjectTakesAStackWhileOtherThreadsLookUpFrames) {
  YBase::CreateCallStack();
  const CallStackModule loadedLater(FIRST_MODULE);
  alarm(100);
  const Support::BusyThreads others(2, [&loadedLater] { loadedLater.GetFrames(); });
  for (int round = 0; round != 300; ++round) ASSERT_FALSE(LoadStartingModule().empty());
  alarm(0);
}

}  // namespace
