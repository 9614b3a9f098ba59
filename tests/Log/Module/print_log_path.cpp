// Prints the full path of a log file requested by a relative path, which depends on the name of the program.
// With the argument "deleted" the program deletes its own file first.

#include <cstdio>
#include <cstring>

#include <YBase/TextConversion.h>
#include <YLog/YLog.h>

int main(int argumentCount, char** arguments) {
  if (argumentCount > 1 && std::strcmp(arguments[1], "deleted") == 0) std::remove(arguments[0]);
  const YLog::Initializer initializer;
  const YBase::ReturnWString path = YLog::GetDestination_DiskFile(L"relative.log")->GetFilePath();
  std::puts(YBase::WideCharToUTF8(path.c_str()).c_str());
}
