#include "Module/ProcessRegistrations.h"

#include <YLog/MsgLogTrace.h>
#include <YLog/ThreadSpecificLogHeaders.h>
#include <YSynch/ThreadSpecificLogHeaders.h>

namespace YLog {

// A delegating constructor: if something throws here, the object counts as constructed and the destructor
// runs.
ProcessRegistrations::ProcessRegistrations() : ProcessRegistrations(Nothing()) {
  MsgLogTrace::Init();
  YSynch::RegisterThreadSpecificLogHeadersGetter([] { return YLog::GetThreadSpecificLogHeaders(); });
  YSynch::RegisterThreadSpecificLogHeadersSetter([](ThreadSpecificLogHeaders* headers) {
    if (headers != nullptr) YLog::SetThreadSpecificLogHeaders(*headers);
  });
  YSynch::RegisterThreadSpecificLogHeadersUnsetter([] { YLog::ClearThreadSpecificLogHeaders(); });
}

ProcessRegistrations::~ProcessRegistrations() {
  YSynch::DeregisterThreadSpecificLogHeadersGetter();
  YSynch::DeregisterThreadSpecificLogHeadersSetter();
  YSynch::DeregisterThreadSpecificLogHeadersUnsetter();
  MsgLogTrace::Destroy();
}

}  // namespace YLog
