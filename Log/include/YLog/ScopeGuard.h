#pragma once

#include <YBase/SmartPtrI.h>
#include <YLog/Export.h>
#include <YLog/Router.h>

namespace YLog {

/// Traces a block of code: logs when it is entered, and when it is left, with the return code if one was
/// given.
///
///     unsigned long Run(YLog::Router& trace) {
///       YLog::ScopeGuard guard(trace, __func__, __FILE__, __LINE__);
///       ...
///       guard.SetReturnCode(status, __LINE__);
///       return status;
///     }
///
/// A guard whose router is disabled when it is created traces nothing, whatever becomes of the router; that
/// costs one test of a byte. One whose router is disabled at the end leaves out the second record.
///
/// Ownership: holds a reference to the router while it traces. The names are not copied and must outlive it.
///
/// Threads: belongs to one.
///
/// Failure: none. A record that cannot be made or logged is left out, and the traced code goes on. A thread
/// that is cancelled meanwhile ends behind the record.
class YLOG_EXPORT ScopeGuard {
 public:
  /// Logs "Enter 'Run' near job.cpp(42)". Without a function name, null, nothing is traced.
  [[nodiscard]] ScopeGuard(Router& router, const char* funcName, const char* fileName,
                           unsigned short lineNumber) noexcept
      : mFuncName(funcName),
        mFileName(fileName),
        // Relaxed: a change may be seen late, and nothing else depends on it.
        mpRouter(funcName != nullptr && router.mEnabled.load(std::memory_order_relaxed) ? &router : nullptr),
        mLineNumber(lineNumber) {
    if (mpRouter) LogEnter();
  }

  /// A wide name is not shown: a remark that narrow ones are stands in its place.
  [[nodiscard]] ScopeGuard(Router& router, const wchar_t* /*funcName*/, const char* fileName,
                           unsigned short lineNumber) noexcept
      : ScopeGuard(router, "[use char* as function name to see it]", fileName, lineNumber) {}

  /// Logs "Leave 'Run' near job.cpp(57) with 0x00000005", or without the code where none was given.
  ~ScopeGuard() {
    if (mpRouter) LogLeave();
  }

  ScopeGuard(const ScopeGuard&) = delete;
  ScopeGuard& operator=(const ScopeGuard&) = delete;

  /// The return code of the block, and the line that returns it, for the record at its end.
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
