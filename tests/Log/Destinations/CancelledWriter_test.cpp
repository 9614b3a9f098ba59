#include <pthread.h>
#include <sys/types.h>
#include <unistd.h>

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <YBase/TextConversion.h>
#include <YLog/Initializer.h>
#include <YLog/MessageHeader.h>

#include "Destinations/Destination_DiskFile_Impl.h"
#include "support/CancelledThread.h"
#include "support/FileLock.h"
#include "support/FileOperationsWrapper.h"
#include "support/ForkedThread.h"
#include "support/New.h"
#include "support/ReadFile.h"
#include "support/TemporaryDirectory.h"

namespace {

/// Cancels the calling thread before it opens or writes, so the call that follows would be the cancellation
/// point.
class CancellingOperations final : public Support::FileOperationsWrapper {
 public:
  int Open(const char* path, int flags, mode_t mode) noexcept override {
    Cancel();
    return FileOperationsWrapper::Open(path, flags, mode);
  }
  ssize_t Write(int descriptor, const char* text, std::size_t count) noexcept override {
    Cancel();
    return FileOperationsWrapper::Write(descriptor, text, count);
  }

  bool mbActive = false;

 private:
  void Cancel() const noexcept {
    if (mbActive) pthread_cancel(pthread_self());
  }

  const Support::ScopedFileOperations mScope{*this};
};

class CancelledWriter : public testing::Test {
 protected:
  std::wstring Path(const std::string& name) const {
    return YBase::UTF8ToWideChar((mDirectory.Path() / name).c_str());
  }

  const YLog::Initializer mInitializer;
  const Support::TemporaryDirectory mDirectory;
  CancellingOperations mOperations;
  const YBase::SmartPtrI<YLog::MessageHeader> mHeader = YLog::CreateMessageHeader();
  YBase::SmartPtrI<YLog::Destination_DiskFile_Impl> mDestination =
      Support::New<YLog::Destination_DiskFile_Impl>(Path("a.log").c_str());
};

TEST_F(CancelledWriter, FinishesItsRecordFirst) {
  mOperations.mbActive = true;
  EXPECT_TRUE(Support::IsCancelled([this] {
    mDestination->LogMessage("text", *mHeader);
    pthread_testcancel();
  }));
  EXPECT_THAT(Support::ReadFile(mDirectory.Path() / "a.log"), testing::EndsWith(" text\n"));
  EXPECT_TRUE(Support::IsFree(mDirectory.Path() / "a.log"));
}

TEST_F(CancelledWriter, FinishesTheReleaseOfTheDestinationFirst) {
  mDestination->LogMessage("text", *mHeader);
  EXPECT_TRUE(Support::FinishesBeforeItIsCancelled([this] { mDestination = nullptr; }));
}

TEST_F(CancelledWriter, FinishesAForkFirst) {
  pid_t child = -1;
  EXPECT_TRUE(Support::FinishesBeforeItIsCancelled([&child] {
    child = fork();
    if (child == 0) _exit(0);
  }));
  EXPECT_TRUE(Support::SucceededChild(child));
}

TEST_F(CancelledWriter, FinishesTheChangeOfThePathFirst) {
  mOperations.mbActive = true;
  EXPECT_TRUE(Support::IsCancelled([this] {
    mDestination->SetFilePath(Path("b.log").c_str());
    pthread_testcancel();
  }));
  mOperations.mbActive = false;
  mDestination->LogMessage("text", *mHeader);
  EXPECT_THAT(Support::ReadFile(mDirectory.Path() / "b.log"), testing::EndsWith(" text\n"));
}

}  // namespace
