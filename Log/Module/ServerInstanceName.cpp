#include "Module/ServerInstanceName.h"

#include <YBase/NullText.h>
#include <YBase/TextConversion.h>
#include <YLog/MessageHeader.h>

namespace YLog {

void ServerInstanceName::Set(const wchar_t* name) {
  std::wstring wide = YBase::EmptyIfNull(name);
  std::string narrow = YBase::WideCharToUTF8(wide.c_str());
  const YSynch::RWLock::WriteSmartLock lock(mLock);
  mName.swap(wide);
  mNameUTF8.swap(narrow);
}

YBase::ReturnWString ServerInstanceName::Get() const {
  const YSynch::RWLock::ReadSmartLock lock(mLock);
  return mName;
}

void ServerInstanceName::CopyTo(MessageHeader& header) const {
  const YSynch::RWLock::ReadSmartLock lock(mLock);
  header.SetServerInstanceName(mNameUTF8.c_str());
}

}  // namespace YLog
