#pragma once

#include <YBase/ExceptionImpl.h>
#include <YBase/Message.h>
#include <YLog/Export.h>

namespace YLog {

/// What the library throws, as `YBase::ExceptionImpl<YLog::Exception>`, if it cannot make the destination of
/// a disk file. Its other failures are thrown as `YBase::ExceptionImpl<YBase::Message>`, and lack of memory
/// as `std::bad_alloc`.
///
/// The text of the first two begins with the full name of the function that throws. Both can be caught as
/// `YBase::Message`, and all three as `std::exception`.
class YLOG_EXPORT Exception : public YBase::Message {
 public:
  using YBase::Message::Message;
};

}  // namespace YLog
