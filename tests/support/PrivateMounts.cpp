#include "support/PrivateMounts.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <string>
#include <system_error>

namespace Support {

namespace {

void Require(bool succeeded, const char* what) {
  if (!succeeded) throw std::system_error(errno, std::generic_category(), what);
}

void Write(const char* path, const std::string& text) {
  std::ofstream(path) << text << std::flush;
}

void BecomeRoot() {
  const std::string user = "0 " + std::to_string(geteuid()) + " 1";
  const std::string group = "0 " + std::to_string(getegid()) + " 1";
  Require(unshare(CLONE_NEWUSER) == 0, "a user namespace");
  Write("/proc/self/setgroups", "deny");
  Write("/proc/self/uid_map", user);
  Write("/proc/self/gid_map", group);
  Require(geteuid() == 0 && getegid() == 0, "root in a user namespace");
}

/// An open folder, to which a process can return after it has changed its root.
class Folder {
 public:
  explicit Folder(const char* path) : mDescriptor(open(path, O_PATH | O_DIRECTORY | O_CLOEXEC)) {
    Require(mDescriptor >= 0, path);
  }
  ~Folder() { close(mDescriptor); }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  void Enter() const { Require(fchdir(mDescriptor) == 0, "fchdir"); }

 private:
  const int mDescriptor;
};

/// Makes the root of the mount namespace, which a process in a chroot does not see, the root of this process.
void LeaveChroot() {
  const int mounts = open("/proc/self/ns/mnt", O_RDONLY | O_CLOEXEC);
  Require(mounts >= 0, "/proc/self/ns/mnt");
  const int result = setns(mounts, CLONE_NEWNS);
  close(mounts);
  Require(result == 0, "setns");
}

bool MakePrivateBelowRoot() {
  return mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

/// Prevents mounts from propagating to the namespace that this one was copied from.
void MakeMountsPrivate() {
  if (MakePrivateBelowRoot()) return;
  Require(errno == EINVAL, "mount --make-rprivate /");
  // The root is a folder of a mount whose own root is outside this chroot, and only that root can be made
  // private.
  const Folder root("/");
  const Folder current(".");
  LeaveChroot();
  Require(MakePrivateBelowRoot(), "mount --make-rprivate / outside of the chroot");
  root.Enter();
  Require(chroot(".") == 0, "chroot");
  current.Enter();
}

}  // namespace

void EnterPrivateMounts() {
  // Even root may lack the permission in a container.
  if (unshare(CLONE_NEWNS) != 0) {
    BecomeRoot();
    Require(unshare(CLONE_NEWNS) == 0, "a mount namespace");
  }
  MakeMountsPrivate();
}

}  // namespace Support
