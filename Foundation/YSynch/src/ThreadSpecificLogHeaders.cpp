#include <YSynch/ThreadSpecificLogHeaders.h>

#include <atomic>

namespace YSynch {
namespace {

constinit std::atomic<ThreadSpecificLogHeadersGetter> gspGetter{nullptr};
constinit std::atomic<ThreadSpecificLogHeadersSetter> gspSetter{nullptr};
constinit std::atomic<ThreadSpecificLogHeadersUnsetter> gspUnsetter{nullptr};

}  // namespace

void RegisterThreadSpecificLogHeadersGetter(ThreadSpecificLogHeadersGetter getter) noexcept {
  gspGetter = getter;
}

void RegisterThreadSpecificLogHeadersSetter(ThreadSpecificLogHeadersSetter setter) noexcept {
  gspSetter = setter;
}

void RegisterThreadSpecificLogHeadersUnsetter(ThreadSpecificLogHeadersUnsetter unsetter) noexcept {
  gspUnsetter = unsetter;
}

void DeregisterThreadSpecificLogHeadersGetter() noexcept {
  gspGetter = nullptr;
}

void DeregisterThreadSpecificLogHeadersSetter() noexcept {
  gspSetter = nullptr;
}

void DeregisterThreadSpecificLogHeadersUnsetter() noexcept {
  gspUnsetter = nullptr;
}

std::shared_ptr<YLog::ThreadSpecificLogHeaders> GetThreadSpecificLogHeaders() {
  const ThreadSpecificLogHeadersGetter getter = gspGetter;
  return getter != nullptr ? getter() : nullptr;
}

void SetThreadSpecificLogHeaders(YLog::ThreadSpecificLogHeaders* headers) {
  if (const ThreadSpecificLogHeadersSetter setter = gspSetter) setter(headers);
}

void UnsetThreadSpecificLogHeaders() {
  if (const ThreadSpecificLogHeadersUnsetter unsetter = gspUnsetter) unsetter();
}

}  // namespace YSynch
