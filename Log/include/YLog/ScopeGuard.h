#pragma once

#include <YBase/SmartPtrI.h>
#include <YLog/Export.h>
#include <YLog/Router.h>

namespace YLog {

/// Traces a block of code: logs when the block is entered and when it is left, with its return code if one
/// was set.
///
///     unsigned long Run(YLog::Router& trace) {
///       YLog::ScopeGuard guard(trace, __func__, __FILE__, __LINE__);
///       ...
///       guard.SetReturnCode(status, __LINE__);
///       return status;
///     }
///
/// If the router is disabled when the guard is created, nothing is traced, even if the router is enabled
/// later; that costs the test of one byte. If the router is disabled at the end, the second record is left
/// out.
///
/// Ownership: holds a reference to the router while it traces. The names are not copied and must outlive the
/// guard.
///
/// Threads: belongs to one thread.
///
/// Failure: none. A record that cannot be made or logged is left out, and the traced code continues. If the
/// thread is cancelled meanwhile, the record is finished first.
class YLOG_EXPORT ScopeGuard {
 public:
  /// Logs "Enter 'Run' near job.cpp(42)". If the function name is null, nothing is traced.
  [[nodiscard]] ScopeGuard(Router& router, const char* funcName, const char* fileName,
                           unsigned short lineNumber) noexcept
      : mFuncName(funcName),
        mFileName(fileName),
        // Relaxed: a change may be seen late, and nothing else depends on it.
        mpRouter(funcName != nullptr && router.mEnabled.load(std::memory_order_relaxed) ? &router : nullptr),
        mLineNumber(lineNumber) {
    if (mpRouter) LogEnter();
  }

  /// A wide name is not shown: the record contains a hint to use a narrow one.
  [[nodiscard]] ScopeGuard(Router& router, const wchar_t* /*funcName*/, const char* fileName,
                           unsigned short lineNumber) noexcept
      : ScopeGuard(router, "[use char* as function name to see it]", fileName, lineNumber) {}

  /// Logs "Leave 'Run' near job.cpp(57) with 0x00000005", or without the code if none was set.
  ~ScopeGuard() {
    if (mpRouter) LogLeave();
  }

  ScopeGuard(const ScopeGuard&) = delete;
  ScopeGuard& operator=(const ScopeGuard&) = delete;

  /// Sets the return code of the block, and the line that returns it, for the second record.
  void SetReturnCode(unsigned long returnCode, unsigned short lineNumber) noexcept {
    mReturnCode = returnCode;
    mLineNumber = lineNumber;
    mbHasReturnCode = true;
  }

 private:
  void LogEnter() const noexcept;
  void LogLeave() const noexcept;

  unsigned long mReturnCode = 0;
  const char* mFuncName;
  const char* mFileName;
  YBase::SmartPtrI<Router> mpRouter;
  unsigned short mLineNumber;
  bool mbHasReturnCode = false;
};

}  // namespace YLog
