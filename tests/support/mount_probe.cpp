// Returns 0 if the tests that need their own mounts can run here; otherwise prints the reason.

#include <sys/mount.h>

#include <cerrno>
#include <system_error>

#include "support/ChildProcess.h"
#include "support/PrivateMounts.h"
#include "support/TemporaryDirectory.h"

namespace {

int MountSomething() {
  const Support::TemporaryDirectory directory;
  Support::EnterPrivateMounts();
  if (mount("none", directory.Path().c_str(), "tmpfs", 0, nullptr) != 0)
    throw std::system_error(errno, std::generic_category(), "mount tmpfs");
  umount(directory.Path().c_str());
  return 0;
}

}  // namespace

int main() {
  // In a child process, as in most of these tests: under a sanitizer, this process may have a second thread.
  return Support::ChildProcess(MountSomething).Wait();
}
