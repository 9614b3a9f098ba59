#pragma once

#include <dlfcn.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <YBase/CallStack.h>

#include "CallStackText.h"

/// A module that calls back. It is loaded as long as this object exists.
class CallStackModule {
 public:
  explicit CallStackModule(const std::filesystem::path& path) : mpHandle(dlopen(path.c_str(), RTLD_NOW)) {
    if (mpHandle == nullptr) throw std::runtime_error(dlerror());
    mpRun = reinterpret_cast<Run*>(dlsym(mpHandle, "RunInModule"));
  }
  ~CallStackModule() { dlclose(mpHandle); }
  CallStackModule(const CallStackModule&) = delete;
  CallStackModule& operator=(const CallStackModule&) = delete;

  void* Address() const { return reinterpret_cast<void*>(mpRun); }

  /// The frames of a stack taken in a function that the module calls.
  std::vector<std::string> GetFrames() const { return GetFrames(mpRun); }

  /// The same for another entry function of the module.
  std::vector<std::string> GetFrames(const char* function) const {
    return GetFrames(reinterpret_cast<Run*>(dlsym(mpHandle, function)));
  }

 private:
  using Run = void(void (*)());

  static std::vector<std::string> GetFrames(Run* run) {
    thread_local YBase::CallStack sStack;
    run([] { sStack = YBase::CreateCallStack(); });
    return GetShownFrames(std::exchange(sStack, {}));
  }

  void* mpHandle;
  Run* mpRun;
};
