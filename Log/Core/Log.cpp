#include <YLog/Log.h>

#include "Core/NotNull.h"

namespace YLog {

void LogFormatted(Router& router, const char* messageTemplate, YResource::MessageFormatter& formatter,
                  const char* fileName, const char* funcName, int lineNumber) {
  YResource::FormattedText text;
  formatter.Format(NotNull(messageTemplate), text);
  router.LogMessage(text.CStr(), 0, fileName, funcName, lineNumber);
}

}  // namespace YLog
