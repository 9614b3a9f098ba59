#pragma once

#include <YBase/ExceptionImpl.h>
#include <YBase/Message.h>
#include <YLog/Export.h>

namespace YLog {

/// What the library throws, as `YBase::ExceptionImpl<YLog::Exception>`, when it cannot make the destination
/// of a disk file. Its other failures are thrown as `YBase::ExceptionImpl<YBase::Message>`, and lack of
/// memory as `std::bad_alloc`.
///
/// The text of either begins with the full name of the function that throws. Either can be caught as
/// `YBase::Message`, and everything as `std::exception`.
class YLOG_EXPORT Exception : public YBase::Message {
 public:
  using YBase::Message::Message;
};

}  // namespace YLog
