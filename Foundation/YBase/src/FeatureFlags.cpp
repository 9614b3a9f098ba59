#include <YBase/ExceptionImpl.h>
#include <YBase/FeatureFlags.h>
#include <YBase/Message.h>

#include <atomic>
#include <string>

namespace YBase {
namespace {

/// Flags only ever join the list, and stay: so it is read without a lock, which a child of a fork could else
/// inherit in a locked state.
struct Flag {
  explicit Flag(const wchar_t* name) : mName(name) {}

  const std::wstring mName;
  // Relaxed: a change may be seen late, and nothing else depends on it.
  std::atomic<bool> mbEnabled{false};
  Flag* mpNext = nullptr;
};

constinit std::atomic<Flag*> gspFlags{nullptr};

/// Looks from `first` up to, and not at, `end`.
Flag* Find(const wchar_t* name, Flag* first, const Flag* end = nullptr) {
  while (first != end && first->mName != name) first = first->mpNext;
  return first != end ? first : nullptr;
}

Flag& FindOrAdd(const wchar_t* name) {
  // Acquire, here and below: whoever sees a flag sees its name. Release: so that it does.
  Flag* first = gspFlags.load(std::memory_order_acquire);
  if (Flag* flag = Find(name, first)) return *flag;
  Flag* added = new Flag(name);
  for (;;) {
    added->mpNext = first;
    if (gspFlags.compare_exchange_weak(first, added, std::memory_order_release, std::memory_order_acquire)) {
      return *added;
    }
    // Others joined meanwhile, perhaps of the same name.
    if (Flag* flag = Find(name, first, added->mpNext)) {
      delete added;
      return *flag;
    }
  }
}

void CheckName(const wchar_t* name, const char* functionName) {
  if (name == nullptr) throw ExceptionImpl<Message>((std::string(functionName) + ": no name given").c_str());
}

}  // namespace

bool IsFeatureEnabled(const wchar_t* name) {
  static constexpr const char* FUNCTION_NAME = "YBase::IsFeatureEnabled";
  CheckName(name, FUNCTION_NAME);
  const Flag* flag = Find(name, gspFlags.load(std::memory_order_acquire));
  return flag != nullptr && flag->mbEnabled.load(std::memory_order_relaxed);
}

void SetFeatureEnabled(const wchar_t* name, bool enabled) {
  static constexpr const char* FUNCTION_NAME = "YBase::SetFeatureEnabled";
  CheckName(name, FUNCTION_NAME);
  FindOrAdd(name).mbEnabled.store(enabled, std::memory_order_relaxed);
}

}  // namespace YBase
