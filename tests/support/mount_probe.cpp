// Returns 0 if the tests that need mounts of their own can run here, otherwise says why not.

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
  // In a child process, as most of these tests do: under a sanitizer, only that one may have a second thread.
  return Support::ChildProcess(MountSomething).Wait();
}
