#include "support/SmallFileSystem.h"

#include <sys/mount.h>
#include <sys/statvfs.h>

#include <cerrno>
#include <string>
#include <system_error>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/ChildProcess.h"
#include "support/PrivateMounts.h"

namespace Support {

namespace {

void Require(bool succeeded, const char* what) {
  if (!succeeded) throw std::system_error(errno, std::generic_category(), what);
}

void Mount(const std::filesystem::path& folder, std::size_t bytes) {
  EnterPrivateMounts();
  const std::string options = "size=" + std::to_string(bytes);
  Require(mount("none", folder.c_str(), "tmpfs", 0, options.c_str()) == 0, "mount tmpfs");
  struct statvfs status;
  Require(statvfs(folder.c_str(), &status) == 0, "statvfs");
  ASSERT_EQ(status.f_blocks * status.f_frsize, bytes);
}

}  // namespace

void RunOnSmallFileSystem(const std::filesystem::path& folder, std::size_t bytes,
                          const std::function<void()>& work) {
  // scripts/test-preset.sh leaves out the tests with this name if nothing can be mounted.
  ASSERT_THAT(testing::UnitTest::GetInstance()->current_test_suite()->name(),
              testing::EndsWith("OnSmallFileSystem"));
  ChildProcess child([&] {
    Mount(folder, bytes);
    if (!testing::Test::HasFailure()) work();
    return testing::Test::HasFailure() ? 1 : 0;
  });
  EXPECT_EQ(child.Wait(), 0) << "in the child process on the small file system, see above";
}

}  // namespace Support
