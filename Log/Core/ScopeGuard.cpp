#include <YLog/ScopeGuard.h>

#include <YBase/CancellationGuard.h>
#include <YLog/Format.h>
#include <YLog/Log.h>

namespace YLog {

namespace {

constexpr const char* ENTER = "Enter '%1' near %2(%3)";
constexpr const char* LEAVE = "Leave '%1' near %2(%3)";
constexpr const char* LEAVE_WITH_RETURN_CODE = "Leave '%1' near %2(%3) with %4";

/// The text contains the source position, so the header has none.
void LogTrace(Router& router, const char* messageTemplate, YResource::MessageFormatter& formatter) {
  LogFormatted(router, messageTemplate, formatter, nullptr, nullptr, 0);
}

}  // namespace

void ScopeGuard::LogEnter() const noexcept {
  const YBase::CancellationGuard cancellationGuard;
  try {
    YResource::MessageFormatter formatter = GetMessageFormatter();
    formatter << mFuncName << mFileName << mLineNumber;
    LogTrace(*mpRouter, ENTER, formatter);
  } catch (...) {
    // Tracing must not disturb what it traces.
  }
}

void ScopeGuard::LogLeave() const noexcept {
  // Relaxed: a change may be seen late, and nothing else depends on it.
  if (!mpRouter->mEnabled.load(std::memory_order_relaxed)) return;
  const YBase::CancellationGuard cancellationGuard;
  try {
    YResource::MessageFormatter formatter = GetMessageFormatter();
    formatter << mFuncName << mFileName << mLineNumber;
    if (mbHasReturnCode) formatter << Format::WideHex << mReturnCode;
    LogTrace(*mpRouter, mbHasReturnCode ? LEAVE_WITH_RETURN_CODE : LEAVE, formatter);
  } catch (...) {
    // As above.
  }
}

}  // namespace YLog
