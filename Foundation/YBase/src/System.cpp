#include <YBase/System.h>
#include <YBase/TextConversion.h>
#include <unistd.h>

#include "Platform.h"

namespace YBase {

ReturnWString GetComputerName() {
  // Longer than any system's limit (64 on Linux, 255 on macOS). The last byte stays NUL, because a name that
  // is cut off need not be terminated.
  char name[257] = {};
  if (::gethostname(name, sizeof name - 1) != 0) return {};
  return UTF8ToWideChar(name);
}

unsigned GetCurrentProcessID() noexcept {
  return static_cast<unsigned>(::getpid());
}

unsigned long GetCurrentThreadID() noexcept {
  return Platform::GetThreadID();
}

ReturnString GetExecutablePath() {
  return Platform::GetExecutablePath();
}

}  // namespace YBase
