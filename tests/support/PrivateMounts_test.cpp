#include "support/PrivateMounts.h"

#include <sys/mount.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <functional>
#include <system_error>

#include <gtest/gtest.h>

#include "support/ChildProcess.h"
#include "support/TemporaryDirectory.h"

namespace {

namespace fs = std::filesystem;

void Mount(const fs::path& source, const fs::path& target, const char* type, unsigned long flags) {
  if (mount(source.c_str(), target.c_str(), type, flags, nullptr) != 0)
    throw std::system_error(errno, std::generic_category(), target);
}

/// Mounts something on the folder and leaves a file there. Returns 0 if the process itself sees that file.
int MountPrivately(const fs::path& folder) {
  Support::EnterPrivateMounts();
  Mount("none", folder, "tmpfs", 0);
  std::ofstream(folder / "mounted") << std::flush;
  return fs::exists(folder / "mounted") ? 0 : 1;
}

class PrivateMounts : public testing::Test {
 protected:
  /// Runs the work in a child for which the folder is a shared mount, which propagates the mounts below it.
  void RunBesideSharedMount(const std::function<void()>& work) const {
    Support::ChildProcess child([&] {
      Support::EnterPrivateMounts();
      Mount("none", mFolder, "tmpfs", 0);
      Mount("none", mFolder, nullptr, MS_SHARED);
      work();
      return HasFailure() ? 1 : 0;
    });
    EXPECT_EQ(child.Wait(), 0) << "in the child process, see above";
  }

  const Support::TemporaryDirectory mDirectory;
  const fs::path mFolder = mDirectory.Path();
};

TEST_F(PrivateMounts, AreVisibleOnlyToTheirProcess) {
  RunBesideSharedMount([this] {
    fs::create_directory(mFolder / "work");
    EXPECT_EQ(Support::ChildProcess([this] { return MountPrivately(mFolder / "work"); }).Wait(), 0);
    EXPECT_FALSE(fs::exists(mFolder / "work" / "mounted"));
  });
}

TEST_F(PrivateMounts, AreVisibleOnlyToTheirProcessIfItsRootIsNotAMountPoint) {
  RunBesideSharedMount([this] {
    const fs::path root = mFolder / "root";
    for (const char* name : {"proc", "work"}) fs::create_directories(root / name);
    Mount("/proc", root / "proc", nullptr, MS_BIND | MS_REC);
    const auto workInRoot = [&root] {
      if (chroot(root.c_str()) != 0 || chdir("/work") != 0) return 2;
      const int status = MountPrivately("/work");
      return fs::current_path() == "/work" && !fs::exists("/root") ? status : 3;
    };
    EXPECT_EQ(Support::ChildProcess(workInRoot).Wait(), 0);
    EXPECT_FALSE(fs::exists(root / "work" / "mounted"));
  });
}

}  // namespace
