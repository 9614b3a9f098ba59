#pragma once

#include <YBase/ExceptionImpl.h>
#include <YBase/Message.h>
#include <YLog/Export.h>

namespace YLog {

/// What this library throws for a failure of its own, as `YBase::ExceptionImpl<YLog::Exception>`.
class YLOG_EXPORT Exception : public YBase::Message {
 public:
  using YBase::Message::Message;
};

}  // namespace YLog
