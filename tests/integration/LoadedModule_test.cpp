#include <dlfcn.h>

#include <cstdlib>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/ChildProcess.h"
#include "support/ReadFile.h"
#include "support/TemporaryDirectory.h"

namespace {

// This program is not linked with the library; the module is.

TEST(LoadedModule, LogsWhileItIsLoadedAndInAForkedChild) {
  const Support::TemporaryDirectory directory;
  const std::string path = directory.Path() / "a.log";
  // NOLINTNEXTLINE(concurrency-mt-unsafe): there is one thread.
  ASSERT_EQ(setenv("LOG_FILE", path.c_str(), 1), 0);
  void* const module = dlopen(LOGGING_MODULE, RTLD_NOW);
  ASSERT_NE(module, nullptr) << dlerror();
  const auto log = reinterpret_cast<void (*)(const char*)>(dlsym(module, "LogText"));
  EXPECT_EQ(Support::ChildProcess([log] {
              log("in a child");
              return 0;
            }).Wait(),
            0);
  log("after it");
  EXPECT_THAT(Support::Lines(Support::ReadFile(path)),
              testing::ElementsAre(testing::_, testing::EndsWith("] while loaded"),
                                   testing::EndsWith("] in a child"), testing::EndsWith("] after it")));
}

}  // namespace
