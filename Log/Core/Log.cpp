#include <YLog/Log.h>

#include <YBase/ExceptionImpl.h>
#include <YBase/FormatMessage.h>
#include <YBase/Message.h>
#include <YBase/NullText.h>
#include <YResource/Bundle.h>
#include <YResource/Language.h>

namespace YLog {

namespace {

using BaseException = YBase::ExceptionImpl<YBase::Message>;
using BundlePtr = YBase::SmartPtrI<YResource::Bundle>;

/// The text for a message ID if the logger has no catalogue. It is what a catalogue without that ID returns.
YBase::ReturnString GetDefault(unsigned messageID, const char* defaultText) {
  if (defaultText != nullptr && *defaultText != '\0') return defaultText;
  YBase::Message message;
  message.SetDomainAndID(YBase::MESSAGE_DOMAIN_UNKNOWN, messageID);
  return YBase::FormatMessage(message, 0);
}

void FormatByID(const BundlePtr& bundle, unsigned messageID, YResource::MessageFormatter& formatter,
                const char* defaultTemplate, YResource::FormattedText& text) {
  const YResource::MessageTemplate messageTemplate =
      bundle ? bundle->GetMessageTemplate(messageID, YResource::GetProcessLanguageID(), defaultTemplate)
             : YResource::MessageTemplate(GetDefault(messageID, defaultTemplate));
  formatter.Format(messageTemplate.GetText(), text);
}

YBase::ReturnString GetStringByID(const BundlePtr& bundle, unsigned messageID, const char* defaultText) {
  return bundle ? bundle->GetString(messageID, YResource::GetProcessLanguageID(), defaultText)
                : GetDefault(messageID, defaultText);
}

BaseException MakeException(const char* text, unsigned messageID) {
  BaseException exception(text);
  exception.SetDomainAndID(YBase::MESSAGE_DOMAIN_UNKNOWN, messageID);
  return exception;
}

}  // namespace

void LogFormatted(Router& router, const char* messageTemplate, YResource::MessageFormatter& formatter,
                  const char* fileName, const char* funcName, int lineNumber) {
  YResource::FormattedText text;
  formatter.Format(YBase::NotNull(messageTemplate), text);
  router.LogMessage(text.CStr(), 0, fileName, funcName, lineNumber);
}

void LogFormatted(Router& router, unsigned messageID, YResource::MessageFormatter& formatter,
                  const char* defaultTemplate, const char* fileName, const char* funcName, int lineNumber) {
  const BundlePtr bundle = router.GetResourceBundle();
  YResource::FormattedText text;
  FormatByID(bundle, messageID, formatter, defaultTemplate, text);
  router.LogMessage(text.CStr(), messageID, fileName, funcName, lineNumber);
}

void LogStringByID(Router& router, unsigned messageID, const char* defaultText, const char* fileName,
                   const char* funcName, int lineNumber) {
  const BundlePtr bundle = router.GetResourceBundle();
  const YBase::ReturnString text = GetStringByID(bundle, messageID, defaultText);
  router.LogMessage(text.c_str(), messageID, fileName, funcName, lineNumber);
}

void LogMessageAndThrowBaseException(Router& router, const char* messageTemplate,
                                     YResource::MessageFormatter& formatter,
                                     const char* /*defaultTemplate*/) {
  YResource::FormattedText text;
  formatter.Format(YBase::NotNull(messageTemplate), text);
  LogStringAndThrowBaseException(router, text.CStr());
}

void LogMessageAndThrowBaseException(Router& router, unsigned messageID,
                                     YResource::MessageFormatter& formatter, const char* defaultTemplate) {
  YResource::FormattedText text;
  // The catalogue is released before the text is logged.
  FormatByID(router.GetResourceBundle(), messageID, formatter, defaultTemplate, text);
  router.LogMessage(text.CStr(), messageID, nullptr, nullptr, 0);
  throw MakeException(text.CStr(), messageID);
}

void LogStringAndThrowBaseException(Router& router, const char* text) {
  text = YBase::NotNull(text);
  router.LogMessage(text, 0, nullptr, nullptr, 0);
  throw BaseException(text);
}

void LogStringAndThrowBaseException(Router& router, unsigned messageID, const char* defaultText) {
  const YBase::ReturnString text = GetStringByID(router.GetResourceBundle(), messageID, defaultText);
  router.LogMessage(text.c_str(), messageID, nullptr, nullptr, 0);
  throw MakeException(text.c_str(), messageID);
}

}  // namespace YLog
