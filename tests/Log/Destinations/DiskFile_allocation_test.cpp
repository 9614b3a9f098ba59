#include <algorithm>
#include <filesystem>
#include <new>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <YBase/TextConversion.h>
#include <YLog/Initializer.h>
#include <YLog/MessageHeader.h>

#include "Destinations/Destination_DiskFile_Impl.h"
#include "support/AllocationCounter.h"
#include "support/FakeClock.h"
#include "support/New.h"
#include "support/ReadFile.h"
#include "support/TemporaryDirectory.h"

namespace {

namespace fs = std::filesystem;

class DiskFileMemory : public testing::Test {
 protected:
  /// Makes the file miss one message, and lets it be opened again.
  void MissOneMessage() {
    fs::create_directory(Path());
    mDestination->LogMessage("lost", *mHeader);
    fs::remove(Path());
    mClock.Advance(std::chrono::seconds(300));
  }
  /// Returns whether memory ran out.
  bool LogWithoutMemory(unsigned long successes) {
    const Support::AllocationFailure failure(successes);
    try {
      mDestination->LogMessage("text", *mHeader);
      return false;
    } catch (const std::bad_alloc&) {
      return true;
    }
  }
  long CountLinesWith(const std::string& text) const {
    const std::vector<std::string> lines = Support::Lines(Support::ReadFile(Path()));
    return std::count_if(lines.begin(), lines.end(),
                         [&](const std::string& line) { return line.find(text) != std::string::npos; });
  }
  fs::path Path() const { return mDirectory.Path() / "a.log"; }

  const YLog::Initializer mInitializer;
  Support::FakeClock mClock{std::chrono::sys_days(std::chrono::year(2024) / 3 / 5)};
  const Support::TemporaryDirectory mDirectory;
  const YBase::SmartPtrI<YLog::MessageHeader> mHeader = YLog::CreateMessageHeader();
  YBase::SmartPtrI<YLog::Destination_DiskFile_Impl> mDestination;
};

TEST_F(DiskFileMemory, ThatRunsOutDuringReopeningLosesNeitherTheCountNorItsReport) {
  unsigned long successes = 0;
  for (bool ranOut = true; ranOut; ++successes) {
    fs::remove(Path());
    mDestination =
        Support::New<YLog::Destination_DiskFile_Impl>(YBase::UTF8ToWideChar(Path().c_str()).c_str());
    fs::remove(Path());
    MissOneMessage();
    ranOut = LogWithoutMemory(successes);
    mDestination->LogMessage("last", *mHeader);
    EXPECT_EQ(CountLinesWith(" Missed 1 messages since "), 1) << "after " << successes << " allocations";
    EXPECT_EQ(CountLinesWith(" Missed "), 1);
    EXPECT_EQ(CountLinesWith(" text"), ranOut ? 0 : 1);
    EXPECT_EQ(CountLinesWith(" last"), 1);
  }
  EXPECT_GT(successes, 3U) << "there were too few allocations to fail";
}

}  // namespace
