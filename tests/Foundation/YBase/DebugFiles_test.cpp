#include "Foundation/YBase/src/DebugFiles_libbacktrace.h"

#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <string_view>

#include <gtest/gtest.h>

#include "support/TemporaryDirectory.h"

namespace {

constexpr std::uint64_t LIMIT = 256 << 20;

void SetError(void* result, const char*, int error) {
  *static_cast<int*>(result) = error;
}

class DebugFiles : public testing::Test {
 protected:
  DebugFiles() : mPath(mDirectory.Path() / "module.debug") {
    std::ofstream(mPath) << "0123456789";
    mDescriptor = Open();
  }
  ~DebugFiles() override { backtrace_close(mDescriptor, SetError, &mError); }

  int Open() { return backtrace_open(mPath.c_str(), SetError, &mError, &mIsMissing); }
  bool View(off_t offset, std::uint64_t size, backtrace_view& view) {
    return backtrace_get_view(nullptr, mDescriptor, offset, size, SetError, &mError, &view) == 1;
  }
  void Release(backtrace_view& view) { backtrace_release_view(nullptr, &view, SetError, &mError); }

  Support::TemporaryDirectory mDirectory;
  std::filesystem::path mPath;
  int mDescriptor = -1;
  int mError = 0;
  int mIsMissing = -1;
};

TEST_F(DebugFiles, KeepsAPieceWhateverBecomesOfTheFile) {
  backtrace_view view;
  ASSERT_TRUE(View(3, 4, view));
  std::filesystem::resize_file(mPath, 0);
  EXPECT_EQ(std::string_view(static_cast<const char*>(view.data), 4), "3456");
  EXPECT_EQ(mError, 0);
  Release(view);
}

TEST_F(DebugFiles, GivesAnEmptyPiece) {
  backtrace_view view;
  ASSERT_TRUE(View(3, 0, view));
  EXPECT_NE(view.data, nullptr);
  Release(view);
}

TEST_F(DebugFiles, RefusesAPieceThatReachesBeyondTheEnd) {
  backtrace_view view;
  EXPECT_FALSE(View(3, 8, view));
  EXPECT_EQ(mError, EIO);
}

TEST_F(DebugFiles, RefusesMoreThanTheLimitOfAllThatIsInUse) {
  backtrace_view small;
  backtrace_view large;
  ASSERT_TRUE(View(0, 1, small));
  EXPECT_FALSE(View(0, LIMIT, large));
  EXPECT_EQ(mError, EFBIG);
  Release(small);
  EXPECT_FALSE(View(0, LIMIT, large));
  EXPECT_EQ(mError, EIO) << "It was asked for, as the file does not hold it.";
}

TEST_F(DebugFiles, ReleasesAllPiecesAtOnce) {
  backtrace_view view;
  for (int i = 0; i != 3; ++i) ASSERT_TRUE(View(i, 1, view));
  YBase::ReleaseDebugFiles();
  EXPECT_FALSE(View(0, LIMIT, view));
  EXPECT_EQ(mError, EIO) << "It was asked for: nothing is in use.";
}

TEST_F(DebugFiles, ReleasesPiecesInAnyOrder) {
  std::array<backtrace_view, 3> views;
  for (backtrace_view& view : views) ASSERT_TRUE(View(0, 1, view));
  for (const std::size_t i : {1U, 0U, 2U}) Release(views[i]);
  EXPECT_FALSE(View(0, LIMIT, views[0]));
  EXPECT_EQ(mError, EIO);
}

TEST_F(DebugFiles, TellsWhetherAFileIsThere) {
  EXPECT_GE(mDescriptor, 0);
  EXPECT_EQ(mIsMissing, 0);
  std::filesystem::remove(mPath);
  EXPECT_EQ(Open(), -1);
  EXPECT_EQ(mIsMissing, 1);
  EXPECT_EQ(mError, 0);
}

TEST_F(DebugFiles, TakesAPipeForAMissingFile) {
  std::filesystem::remove(mPath);
  ASSERT_EQ(mkfifo(mPath.c_str(), 0600), 0);
  EXPECT_EQ(Open(), -1);
  EXPECT_EQ(mIsMissing, 1);
}

}  // namespace
