#pragma once

#include <string>

#include <YBase/ReturnString.h>
#include <YSynch/RWLock.h>

namespace YLog {

class MessageHeader;

/// The name of the server instance. It is kept in UTF-8 as well, so that no message pays for a conversion.
///
/// Threads: any.
class ServerInstanceName {
 public:
  /// Null is the empty name.
  void Set(const wchar_t* name);
  YBase::ReturnWString Get() const;
  void CopyTo(MessageHeader& header) const;

 private:
  mutable YSynch::RWLock mLock{YSynch::LOCK_STACK_CATEGORY_OBJECT};
  std::wstring mName YSYNCH_GUARDED_BY(mLock);
  std::string mNameUTF8 YSYNCH_GUARDED_BY(mLock);
};

}  // namespace YLog
