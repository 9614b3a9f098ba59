#pragma once

#include <YLog/Export.h>
#include <YLog/Router.h>
#include <YResource/MessageFormatter.h>

namespace YLog {

/// An empty formatter for the arguments of `LogMessage`.
YLOG_EXPORT YResource::MessageFormatter GetMessageFormatter();

/// Fills the formatter's arguments into the template and logs the result; see `LogMessage`.
YLOG_EXPORT void LogFormatted(Router& router, const char* messageTemplate,
                              YResource::MessageFormatter& formatter, const char* fileName,
                              const char* funcName, int lineNumber);

/// Logs a text made of a template (`%1` to `%N`) and the arguments inserted into a formatter:
///
///     YLog::LogMessage(*router, "Order %1 took %2 ms", YLog::GetMessageFormatter() << order << duration);
///
/// While the router is disabled nothing happens, and the formatter keeps its arguments; that costs one test
/// of a byte. The default template is not used: it gives all forms of this function the same shape.
///
/// Threads: any; the formatter belongs to the caller's. \pre `messageTemplate` is not null.
///
/// Failure: what the router throws goes to the caller.
inline void LogMessage(Router& router, const char* messageTemplate, YResource::MessageFormatter& formatter,
                       [[maybe_unused]] const char* defaultTemplate = nullptr,
                       const char* fileName = __builtin_FILE(), const char* funcName = __builtin_FUNCTION(),
                       int lineNumber = __builtin_LINE()) {
  // Relaxed: a change may be seen late, and nothing else depends on it.
  if (!router.mEnabled.load(std::memory_order_relaxed)) return;
  LogFormatted(router, messageTemplate, formatter, fileName, funcName, lineNumber);
}

inline void LogMessage(Router& router, const char* messageTemplate, YResource::MessageFormatter&& formatter,
                       const char* defaultTemplate = nullptr, const char* fileName = __builtin_FILE(),
                       const char* funcName = __builtin_FUNCTION(), int lineNumber = __builtin_LINE()) {
  LogMessage(router, messageTemplate, formatter, defaultTemplate, fileName, funcName, lineNumber);
}

/// Logs a text as it is, with the source position of the call. While the router is disabled nothing happens.
/// The default text is not used. \pre `text` is not null.
///
/// Failure: what the router throws goes to the caller.
inline void LogString(Router& router, const char* text, [[maybe_unused]] const char* defaultText = nullptr,
                      const char* fileName = __builtin_FILE(), const char* funcName = __builtin_FUNCTION(),
                      int lineNumber = __builtin_LINE()) {
  // Relaxed: as above.
  if (!router.mEnabled.load(std::memory_order_relaxed)) return;
  router.LogMessage(text, 0, fileName, funcName, lineNumber);
}

}  // namespace YLog
