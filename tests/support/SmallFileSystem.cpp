#include "support/SmallFileSystem.h"

#include <sched.h>
#include <sys/mount.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <string>
#include <system_error>

#include <gtest/gtest.h>

#include "support/ChildProcess.h"

namespace Support {

namespace {

void Require(bool succeeded, const char* what) {
  if (!succeeded) throw std::system_error(errno, std::generic_category(), what);
}

void Tell(const char* path, const std::string& text) {
  std::ofstream(path) << text << std::flush;
}

/// In a user namespace of its own, in which nobody but this user exists.
void BecomeRoot() {
  const std::string user = "0 " + std::to_string(geteuid()) + " 1";
  const std::string group = "0 " + std::to_string(getegid()) + " 1";
  Require(unshare(CLONE_NEWUSER) == 0, "unshare user");
  Tell("/proc/self/setgroups", "deny");
  Tell("/proc/self/uid_map", user);
  Tell("/proc/self/gid_map", group);
  Require(geteuid() == 0 && getegid() == 0, "uid_map, gid_map");
}

void Mount(const std::filesystem::path& folder, std::size_t bytes) {
  if (geteuid() != 0) BecomeRoot();
  Require(unshare(CLONE_NEWNS) == 0, "unshare mounts");
  Require(mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0, "mount --make-rprivate /");
  const std::string options = "size=" + std::to_string(bytes);
  Require(mount("none", folder.c_str(), "tmpfs", 0, options.c_str()) == 0, "mount tmpfs");
  struct statvfs status;
  Require(statvfs(folder.c_str(), &status) == 0, "statvfs");
  ASSERT_EQ(status.f_blocks * status.f_frsize, bytes);
}

}  // namespace

void RunOnSmallFileSystem(const std::filesystem::path& folder, std::size_t bytes,
                          const std::function<void()>& work) {
  ChildProcess child([&] {
    Mount(folder, bytes);
    if (!testing::Test::HasFailure()) work();
    return testing::Test::HasFailure() ? 1 : 0;
  });
  EXPECT_EQ(child.Wait(), 0) << "in the child process on the small file system, see above";
}

}  // namespace Support
