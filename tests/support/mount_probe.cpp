// Returns 0 if the tests that need mounts of their own can run here, otherwise says why not.

#include <sys/mount.h>

#include <cerrno>
#include <system_error>

#include "support/ChildProcess.h"
#include "support/PrivateMounts.h"
#include "support/TemporaryDirectory.h"

int main() {
  const Support::TemporaryDirectory directory;
  // In a child, as most of these tests do: a sanitizer may have given it a second thread.
  return Support::ChildProcess([&]() -> int {
           Support::EnterPrivateMounts();
           if (mount("none", directory.Path().c_str(), "tmpfs", 0, nullptr) == 0) return 0;
           throw std::system_error(errno, std::generic_category(), "mount tmpfs");
         })
      .Wait();
}
