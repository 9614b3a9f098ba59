#include "Statistics/TraceFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

#include <gtest/gtest.h>

#include "support/ReadFile.h"
#include "support/TemporaryDirectory.h"

namespace {

class TraceFile : public testing::Test {
 protected:
  const Support::TemporaryDirectory mFolder;
  const std::string mPath = mFolder.Path() / "trace.txt";
};

TEST_F(TraceFile, IsNotInheritedByProgramsThatTheHostStarts) {
  const YLog::TraceFile file(mPath);
  ASSERT_NE(file.Get(), nullptr);
  EXPECT_EQ(fcntl(fileno(file.Get()), F_GETFD), FD_CLOEXEC);
}

TEST_F(TraceFile, ReportsAFailedWriteEvenIfTheLastOneSucceeded) {
  YLog::TraceFile file("/dev/full");
  std::fputs("lost", file.Get());
  ASSERT_NE(std::fflush(file.Get()), 0);
  const int space = open(mPath.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
  ASSERT_GE(dup2(space, fileno(file.Get())), 0);
  close(space);
  std::fputs("written", file.Get());
  EXPECT_FALSE(file.Close());
  EXPECT_TRUE(Support::ReadFile(mPath).ends_with("written"));
}

TEST_F(TraceFile, ReportsSuccessIfEverythingWasWritten) {
  YLog::TraceFile file(mPath);
  std::fputs("text", file.Get());
  EXPECT_TRUE(file.Close());
  EXPECT_EQ(file.Get(), nullptr);
  EXPECT_EQ(Support::ReadFile(mPath), "text");
}

}  // namespace
