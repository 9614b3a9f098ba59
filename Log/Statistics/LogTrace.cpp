#include <YBase/NullText.h>
#include <YLog/LogTrace.h>

namespace YLog {

LogTrace::LogTrace() : mCreationTime(YDataType::DateTime::Now()) {}

LogTrace::~LogTrace() = default;

unsigned LogTrace::PrintAllLogTrace() {
  return 0;
}

void LogTrace::SetOutputFileName(const wchar_t* fileName) {
  std::wstring name = YBase::EmptyIfNull(fileName);
  const YSynch::RWLock::WriteSmartLock lock(mLock);
  mOutputFileName.swap(name);
}

std::wstring LogTrace::GetOutputFileName() const {
  const YSynch::RWLock::ReadSmartLock lock(mLock);
  return mOutputFileName;
}

}  // namespace YLog
