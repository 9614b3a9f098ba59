#include <YBase/ExceptionImpl.h>
#include <YBase/FeatureFlags.h>
#include <YBase/Message.h>

#include <atomic>
#include <string>

namespace YBase {
namespace {

struct Flag {
  const std::wstring mName;
  // Relaxed: a change may be seen late, and nothing else depends on it.
  std::atomic<bool> mbEnabled;
  Flag* mpNext;
};

// Without a lock: those that no child of a fork inherits in a locked state belong to YSynch, which is built
// on this library. Flags are never removed. If two threads add the same one, the later is found first.
constinit std::atomic<Flag*> gspFlags{nullptr};

Flag* Find(const wchar_t* name) {
  // Acquire: a thread that finds a flag finds it complete.
  Flag* flag = gspFlags.load(std::memory_order_acquire);
  while (flag != nullptr && flag->mName != name) flag = flag->mpNext;
  return flag;
}

void CheckName(const wchar_t* name, const char* functionName) {
  if (name == nullptr) throw ExceptionImpl<Message>((std::string(functionName) + ": no name given").c_str());
}

}  // namespace

bool IsFeatureEnabled(const wchar_t* name) {
  static constexpr const char* FUNCTION_NAME = "YBase::IsFeatureEnabled";
  CheckName(name, FUNCTION_NAME);
  const Flag* flag = Find(name);
  return flag != nullptr && flag->mbEnabled.load(std::memory_order_relaxed);
}

void SetFeatureEnabled(const wchar_t* name, bool enabled) {
  static constexpr const char* FUNCTION_NAME = "YBase::SetFeatureEnabled";
  CheckName(name, FUNCTION_NAME);
  if (Flag* flag = Find(name)) return flag->mbEnabled.store(enabled, std::memory_order_relaxed);
  auto* const added = new Flag{name, enabled, gspFlags.load(std::memory_order_relaxed)};
  while (!gspFlags.compare_exchange_weak(added->mpNext, added, std::memory_order_release)) {
  }
}

}  // namespace YBase
