// Prints the full path of a log file asked for by a relative path: it depends on the name of the program.

#include <cstdio>

#include <YBase/TextConversion.h>
#include <YLog/YLog.h>

int main() {
  const YLog::Initializer initializer;
  const YBase::ReturnWString path = YLog::GetDestination_DiskFile(L"relative.log")->GetFilePath();
  std::puts(YBase::WideCharToUTF8(path.c_str()).c_str());
}
