#pragma once

#include <YLog/Export.h>
#include <YLog/Router.h>
#include <YResource/MessageFormatter.h>

// The functions with which client code logs. Each takes its text from one of two sources:
//
// - a literal: a text, or a template (`%1` to `%N`) whose arguments have been inserted into a formatter. The
//   default parameter is not used here; it gives both forms of a function the same parameters;
// - a message ID: the text or template with that ID in the logger's catalogue, `Logger::SetResourceBundle`,
//   in the language of the process. If the catalogue has none, or the logger has no catalogue, the default is
//   used; if there is no default, the numbers of domain and ID ("7/300"). The record shows the ID.
//
// `LogMessage` and `LogString` do nothing while the router is disabled: that costs the test of one byte, and
// a formatter keeps its arguments. The other functions log even if the router is disabled, and throw what
// they logged.
//
// The inline functions are inlined even without optimisation, so that a call stack begins with the function
// that calls them.
//
// Threads: any; a formatter belongs to its caller.
//
// Failure: what the catalogue, the formatter or the router throws reaches the caller. From a function that
// logs and throws, it replaces the exception that would have been thrown.

namespace YLog {

/// An empty formatter for the arguments of a message.
YLOG_EXPORT YResource::MessageFormatter GetMessageFormatter();

/// Called by the functions below when the router is enabled.
YLOG_EXPORT void LogFormatted(Router& router, const char* messageTemplate,
                              YResource::MessageFormatter& formatter, const char* fileName,
                              const char* funcName, int lineNumber);
YLOG_EXPORT void LogFormatted(Router& router, unsigned messageID, YResource::MessageFormatter& formatter,
                              const char* defaultTemplate, const char* fileName, const char* funcName,
                              int lineNumber);
YLOG_EXPORT void LogStringByID(Router& router, unsigned messageID, const char* defaultText,
                               const char* fileName, const char* funcName, int lineNumber);

/// Logs a template with its arguments filled in:
///
///     YLog::LogMessage(*router, "Order %1 took %2 ms", YLog::GetMessageFormatter() << order << duration);
///
/// \pre `messageTemplate` is not null.
[[gnu::always_inline]] inline void LogMessage(Router& router, const char* messageTemplate,
                                              YResource::MessageFormatter& formatter,
                                              [[maybe_unused]] const char* defaultTemplate = nullptr,
                                              const char* fileName = __builtin_FILE(),
                                              const char* funcName = __builtin_FUNCTION(),
                                              int lineNumber = __builtin_LINE()) {
  // Relaxed, here and below: a change may be seen late, and nothing else depends on it.
  if (!router.mEnabled.load(std::memory_order_relaxed)) return;
  LogFormatted(router, messageTemplate, formatter, fileName, funcName, lineNumber);
}

[[gnu::always_inline]] inline void LogMessage(Router& router, const char* messageTemplate,
                                              YResource::MessageFormatter&& formatter,
                                              const char* defaultTemplate = nullptr,
                                              const char* fileName = __builtin_FILE(),
                                              const char* funcName = __builtin_FUNCTION(),
                                              int lineNumber = __builtin_LINE()) {
  LogMessage(router, messageTemplate, formatter, defaultTemplate, fileName, funcName, lineNumber);
}

/// Logs the template with a message ID, with its arguments filled in:
///
///     YLog::LogMessage(*router, ORDER_DONE, YLog::GetMessageFormatter() << order, "Order %1 is done");
[[gnu::always_inline]] inline void LogMessage(Router& router, unsigned messageID,
                                              YResource::MessageFormatter& formatter,
                                              const char* defaultTemplate = nullptr,
                                              const char* fileName = __builtin_FILE(),
                                              const char* funcName = __builtin_FUNCTION(),
                                              int lineNumber = __builtin_LINE()) {
  if (!router.mEnabled.load(std::memory_order_relaxed)) return;
  LogFormatted(router, messageID, formatter, defaultTemplate, fileName, funcName, lineNumber);
}

[[gnu::always_inline]] inline void LogMessage(Router& router, unsigned messageID,
                                              YResource::MessageFormatter&& formatter,
                                              const char* defaultTemplate = nullptr,
                                              const char* fileName = __builtin_FILE(),
                                              const char* funcName = __builtin_FUNCTION(),
                                              int lineNumber = __builtin_LINE()) {
  LogMessage(router, messageID, formatter, defaultTemplate, fileName, funcName, lineNumber);
}

/// Logs a text as it is. \pre `text` is not null.
[[gnu::always_inline]] inline void LogString(Router& router, const char* text,
                                             [[maybe_unused]] const char* defaultText = nullptr,
                                             const char* fileName = __builtin_FILE(),
                                             const char* funcName = __builtin_FUNCTION(),
                                             int lineNumber = __builtin_LINE()) {
  if (!router.mEnabled.load(std::memory_order_relaxed)) return;
  router.LogMessage(text, 0, fileName, funcName, lineNumber);
}

/// Logs the text with a message ID as it is.
[[gnu::always_inline]] inline void LogString(Router& router, unsigned messageID,
                                             const char* defaultText = nullptr,
                                             const char* fileName = __builtin_FILE(),
                                             const char* funcName = __builtin_FUNCTION(),
                                             int lineNumber = __builtin_LINE()) {
  if (!router.mEnabled.load(std::memory_order_relaxed)) return;
  LogStringByID(router, messageID, defaultText, fileName, funcName, lineNumber);
}

/// Logs as `LogMessage` does, without a source position, and throws the text as a
/// `YBase::ExceptionImpl<YBase::Message>`. \pre `messageTemplate` is not null.
[[noreturn]] YLOG_EXPORT void LogMessageAndThrowBaseException(Router& router, const char* messageTemplate,
                                                              YResource::MessageFormatter& formatter,
                                                              const char* defaultTemplate = nullptr);
[[noreturn, gnu::always_inline]] inline void LogMessageAndThrowBaseException(
    Router& router, const char* messageTemplate, YResource::MessageFormatter&& formatter,
    const char* defaultTemplate = nullptr) {
  LogMessageAndThrowBaseException(router, messageTemplate, formatter, defaultTemplate);
}

/// The same by message ID. The exception has the ID, and the domain `YBase::MESSAGE_DOMAIN_UNKNOWN`.
[[noreturn]] YLOG_EXPORT void LogMessageAndThrowBaseException(Router& router, unsigned messageID,
                                                              YResource::MessageFormatter& formatter,
                                                              const char* defaultTemplate = nullptr);
[[noreturn, gnu::always_inline]] inline void LogMessageAndThrowBaseException(
    Router& router, unsigned messageID, YResource::MessageFormatter&& formatter,
    const char* defaultTemplate = nullptr) {
  LogMessageAndThrowBaseException(router, messageID, formatter, defaultTemplate);
}

/// Logs as `LogString` does, without a source position, and throws the text as a
/// `YBase::ExceptionImpl<YBase::Message>`. \pre `text` is not null.
[[noreturn]] YLOG_EXPORT void LogStringAndThrowBaseException(Router& router, const char* text);

/// The same by message ID. The exception has the ID, and the domain `YBase::MESSAGE_DOMAIN_UNKNOWN`.
[[noreturn]] YLOG_EXPORT void LogStringAndThrowBaseException(Router& router, unsigned messageID,
                                                             const char* defaultText = nullptr);

}  // namespace YLog
