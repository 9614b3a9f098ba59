#include <sys/resource.h>

#include <atomic>
#include <csignal>
#include <ctime>

#include "UpdateableFileTest.h"
#include "support/FileOperationsWrapper.h"

namespace {

constinit std::atomic<int> gsHandlerCalls{0};

/// Time that only advances when a test sets it.
class StandingTime final : public Support::FileOperationsWrapper {
 public:
  std::chrono::nanoseconds GetCoarseTime() noexcept override { return mNow; }
  std::chrono::nanoseconds mNow{0};

 private:
  const Support::ScopedFileOperations mScope{*this};
};

class FileSizeLimit : public UpdateableFileTest {
 protected:
  FileSizeLimit() {
    gsHandlerCalls = 0;
    getrlimit(RLIMIT_FSIZE, &mPreviousLimit);
    struct sigaction action {};
    action.sa_handler = [](int) { ++gsHandlerCalls; };
    sigaction(SIGXFSZ, &action, &mPreviousAction);
    pthread_sigmask(SIG_SETMASK, nullptr, &mPreviousMask);
  }
  ~FileSizeLimit() override {
    IsTaken();
    pthread_sigmask(SIG_SETMASK, &mPreviousMask, nullptr);
    sigaction(SIGXFSZ, &mPreviousAction, nullptr);
    setrlimit(RLIMIT_FSIZE, &mPreviousLimit);
  }

  void Limit(rlim_t size) const {
    const rlimit limit{size, mPreviousLimit.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
  }
  void ExpectTooLarge(YFileSystem::UpdateableFile& file, const std::string& text) const {
    EXPECT_EQ(ThrownText([&] { Append(file, text); }), Failure("Append", "write to", "File too large"));
  }
  static bool IsBlocked() {
    sigset_t mask;
    pthread_sigmask(SIG_SETMASK, nullptr, &mask);
    return sigismember(&mask, SIGXFSZ) == 1;
  }
  static sigset_t Signals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGXFSZ);
    return signals;
  }
  /// Consumes the signal if it is pending.
  static bool IsTaken() {
    const sigset_t signals = Signals();
    constexpr timespec NO_TIME{};
    return sigtimedwait(&signals, nullptr, &NO_TIME) == SIGXFSZ;
  }
  static void Block() {
    const sigset_t signals = Signals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  }

  rlimit mPreviousLimit{};
  struct sigaction mPreviousAction {};
  sigset_t mPreviousMask{};
};

TEST_F(FileSizeLimit, IsAFailureNotASignal) {
  Limit(10);
  const FilePtr file = Open();
  Append(*file, "0123456789");
  ExpectTooLarge(*file, "x");
  EXPECT_EQ(gsHandlerCalls, 0);
  EXPECT_FALSE(IsBlocked());
  EXPECT_FALSE(IsTaken());
  EXPECT_EQ(Content(), "0123456789");
}

TEST_F(FileSizeLimit, LeavesNoPartialRecord) {
  Limit(10);
  const FilePtr file = Open();
  Append(*file, "01234");
  ExpectTooLarge(*file, "56789x");
  EXPECT_EQ(gsHandlerCalls, 0);
  EXPECT_EQ(Content(), "01234");
  Append(*file, "56789");
  EXPECT_EQ(Content(), "0123456789");
}

TEST_F(FileSizeLimit, DoesNotKillAProcessThatHasNoHandler) {
  EXPECT_EXIT(
      {
        std::signal(SIGXFSZ, SIG_DFL);
        Limit(10);
        ExpectTooLarge(*Open(), "0123456789x");
        _exit(HasFailure() ? 1 : 3);
      },
      testing::ExitedWithCode(3), "");
}

TEST_F(FileSizeLimit, LeavesASignalPendingIfTheHostBlockedAndRaisedIt) {
  Block();
  raise(SIGXFSZ);
  Limit(10);
  ExpectTooLarge(*Open(), "0123456789x");
  EXPECT_TRUE(IsBlocked());
  EXPECT_TRUE(IsTaken());
}

TEST_F(FileSizeLimit, LeavesNoSignalPendingForAHostThatBlocksIt) {
  Block();
  Limit(10);
  ExpectTooLarge(*Open(), "0123456789x");
  EXPECT_TRUE(IsBlocked());
  EXPECT_FALSE(IsTaken());
}

TEST_F(FileSizeLimit, IsNoticedASecondAfterItWasSet) {
  StandingTime time;
  const FilePtr file = Open();
  Append(*file, "0123456789");
  Limit(10);
  time.mNow += std::chrono::seconds(1);
  ExpectTooLarge(*file, "x");
  EXPECT_EQ(gsHandlerCalls, 0);
}

TEST_F(FileSizeLimit, IsNoticedWhenTheFileIsTruncated) {
  const StandingTime time;
  const FilePtr file = Open();
  Append(*file, "0123456789");
  Limit(10);
  {
    const WriteLock lock(*file);
    file->SetPosition(5);
    file->Truncate();
  }
  ExpectTooLarge(*file, "56789x");
  EXPECT_EQ(gsHandlerCalls, 0);
  EXPECT_EQ(Content(), "01234");
}

TEST_F(FileSizeLimit, IsAFailureOfATruncationThatLengthensTheFile) {
  Limit(10);
  const FilePtr file = Open();
  const auto lengthen = [&] {
    const WriteLock lock(*file);
    file->SetPosition(11);
    file->Truncate();
  };
  EXPECT_EQ(ThrownText(lengthen), Failure("Truncate", "truncate", "File too large"));
  EXPECT_EQ(gsHandlerCalls, 0);
}

TEST_F(FileSizeLimit, AllowsWritingAgainOnceItIsRaised) {
  Limit(10);
  const FilePtr file = Open();
  ExpectTooLarge(*file, "0123456789x");
  Limit(11);
  Append(*file, "0123456789x");
  EXPECT_EQ(Content(), "0123456789x");
}

}  // namespace
