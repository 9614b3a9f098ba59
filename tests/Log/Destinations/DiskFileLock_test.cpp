#include <sys/file.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <YBase/TextConversion.h>
#include <YLog/Initializer.h>
#include <YLog/MessageHeader.h>

#include "Destinations/Destination_DiskFile_Impl.h"
#include "support/BlockedThread.h"
#include "support/FileLock.h"
#include "support/FileOperationsWrapper.h"
#include "support/New.h"
#include "support/ReadFile.h"
#include "support/TemporaryDirectory.h"

namespace {

/// Counts the calls that lock and unlock a file, and blocks the first write until `Continue`.
class SlowFirstWrite final : public Support::FileOperationsWrapper {
 public:
  int Lock(int descriptor, int operation) noexcept override {
    ++(operation == LOCK_UN ? mUnlocks : mLocks);
    return FileOperationsWrapper::Lock(descriptor, operation);
  }
  ssize_t Write(int descriptor, const char* text, std::size_t count) noexcept override {
    if (!mbWriting.exchange(true)) {
      mbWriting.notify_all();
      mbMayContinue.wait(false);
    }
    return FileOperationsWrapper::Write(descriptor, text, count);
  }
  void WaitForWrite() const { mbWriting.wait(false); }
  void Continue() {
    mbMayContinue = true;
    mbMayContinue.notify_all();
  }

  std::atomic<int> mLocks{0};
  std::atomic<int> mUnlocks{0};

 private:
  std::atomic<bool> mbWriting{false};
  std::atomic<bool> mbMayContinue{false};
  const Support::ScopedFileOperations mScope{*this};
};

class DiskFileLock : public testing::Test {
 protected:
  std::filesystem::path Path() const { return mDirectory.Path() / "a.log"; }
  void Log() const { mDestination->LogMessage("text", *YLog::CreateMessageHeader()); }
  static long CountRecords(const std::filesystem::path& path) {
    const auto lines = Support::Lines(Support::ReadFile(path));
    return std::count_if(lines.begin(), lines.end(), [](auto& line) { return line.ends_with(" text"); });
  }

  const YLog::Initializer mInitializer;
  const Support::TemporaryDirectory mDirectory;
  SlowFirstWrite mOperations;
  const YBase::SmartPtrI<YLog::Destination_DiskFile_Impl> mDestination =
      Support::New<YLog::Destination_DiskFile_Impl>(YBase::UTF8ToWideChar(Path().c_str()).c_str());
};

// Other processes wait for the same lock. They would never get it if the threads of a busy process passed it
// to one another.
TEST_F(DiskFileLock, IsReleasedAfterEachRecordEvenIfOtherThreadsWait) {
  {
    const std::jthread first([this] { Log(); });
    mOperations.WaitForWrite();
    std::vector<std::unique_ptr<Support::BlockedThread>> others;
    for (int thread = 0; thread < 7; ++thread) {
      others.push_back(std::make_unique<Support::BlockedThread>([this] { Log(); }));
      EXPECT_TRUE(others.back()->Waits());
    }
    mOperations.Continue();
  }
  EXPECT_EQ(8, CountRecords(Path()));
  EXPECT_EQ(8, mOperations.mLocks);
  EXPECT_EQ(8, mOperations.mUnlocks);
  EXPECT_TRUE(Support::IsFree(Path()));
}

TEST_F(DiskFileLock, WaitingThreadLocksTheNewFileAfterAChangeOfThePath) {
  const auto newPath = mDirectory.Path() / "b.log";
  {
    const std::jthread first([this] { Log(); });
    mOperations.WaitForWrite();
    const Support::BlockedThread change(
        [&] { mDestination->SetFilePath(YBase::UTF8ToWideChar(newPath.c_str()).c_str()); });
    const Support::BlockedThread second([this] { Log(); });
    EXPECT_TRUE(change.Waits() && second.Waits());
    mOperations.Continue();
  }
  EXPECT_EQ(2, CountRecords(Path()) + CountRecords(newPath));
  EXPECT_TRUE(Support::IsFree(Path()));
  EXPECT_TRUE(Support::IsFree(newPath));
}

}  // namespace
