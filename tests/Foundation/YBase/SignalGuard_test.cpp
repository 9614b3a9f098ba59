#include <YBase/SignalGuard.h>

#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <ctime>

#include <gtest/gtest.h>

#include "support/CancelledThread.h"

namespace {

constinit std::atomic<int> gsHandlerCalls{0};

/// The host: a handler for SIGPIPE, and a pipe that nobody reads.
class SignalGuard : public testing::Test {
 protected:
  SignalGuard() {
    gsHandlerCalls = 0;
    struct sigaction action {};
    action.sa_handler = [](int) { ++gsHandlerCalls; };
    sigaction(SIGPIPE, &action, &mPreviousAction);
    pthread_sigmask(SIG_SETMASK, nullptr, &mPreviousMask);
    EXPECT_EQ(pipe(mEnds), 0);
    close(mEnds[0]);
  }
  ~SignalGuard() override {
    close(mEnds[1]);
    TakePending();
    pthread_sigmask(SIG_SETMASK, &mPreviousMask, nullptr);
    sigaction(SIGPIPE, &mPreviousAction, nullptr);
  }

  /// Raises the signal.
  void WriteToClosedPipe() const {
    EXPECT_EQ(write(mEnds[1], "x", 1), -1);
    EXPECT_EQ(errno, EPIPE);
  }
  static void Block() { pthread_sigmask(SIG_BLOCK, &SIGNALS, nullptr); }
  static bool IsBlocked() {
    sigset_t mask;
    pthread_sigmask(SIG_SETMASK, nullptr, &mask);
    return sigismember(&mask, SIGPIPE) == 1;
  }
  static bool IsPending() {
    sigset_t pending;
    sigpending(&pending);
    return sigismember(&pending, SIGPIPE) == 1;
  }
  static bool TakePending() {
    constexpr timespec NO_TIME{};
    return sigtimedwait(&SIGNALS, nullptr, &NO_TIME) == SIGPIPE;
  }

  static inline const sigset_t SIGNALS = [] {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGPIPE);
    return signals;
  }();

  int mEnds[2];
  struct sigaction mPreviousAction {};
  sigset_t mPreviousMask{};
};

TEST_F(SignalGuard, IsNeededToKeepTheHandlerFromBeingCalled) {
  WriteToClosedPipe();
  EXPECT_EQ(gsHandlerCalls, 1);
}

TEST_F(SignalGuard, KeepsTheHandlerFromBeingCalled) {
  {
    const YBase::SignalGuard guard(SIGPIPE);
    WriteToClosedPipe();
  }
  EXPECT_EQ(gsHandlerCalls, 0);
  EXPECT_FALSE(IsPending());
  EXPECT_FALSE(IsBlocked());
}

TEST_F(SignalGuard, KeepsAProcessWithoutAHandlerAlive) {
  EXPECT_EXIT(
      {
        std::signal(SIGPIPE, SIG_DFL);
        {
          const YBase::SignalGuard guard(SIGPIPE);
          WriteToClosedPipe();
        }
        _exit(3);
      },
      testing::ExitedWithCode(3), "");
}

TEST_F(SignalGuard, LeavesAnIgnoredSignalIgnored) {
  std::signal(SIGPIPE, SIG_IGN);
  {
    const YBase::SignalGuard guard(SIGPIPE);
    WriteToClosedPipe();
  }
  EXPECT_FALSE(IsPending());
  EXPECT_EQ(std::signal(SIGPIPE, SIG_DFL), SIG_IGN);
}

TEST_F(SignalGuard, DoesNothingToASignalThatIsNotRaised) {
  { const YBase::SignalGuard guard(SIGPIPE); }
  EXPECT_FALSE(IsBlocked());
  raise(SIGPIPE);
  EXPECT_EQ(gsHandlerCalls, 1);
}

TEST_F(SignalGuard, LeavesASignalBlockedIfTheHostBlocksIt) {
  Block();
  {
    const YBase::SignalGuard guard(SIGPIPE);
    WriteToClosedPipe();
  }
  EXPECT_TRUE(IsBlocked());
  EXPECT_FALSE(IsPending());
}

TEST_F(SignalGuard, LeavesAnAlreadyPendingSignalPending) {
  Block();
  raise(SIGPIPE);
  {
    const YBase::SignalGuard guard(SIGPIPE);
    WriteToClosedPipe();
  }
  EXPECT_TRUE(TakePending());
  EXPECT_FALSE(TakePending()) << "only one signal is pending";
  EXPECT_TRUE(IsBlocked());
}

TEST_F(SignalGuard, CanBeNested) {
  {
    const YBase::SignalGuard outer(SIGPIPE);
    WriteToClosedPipe();
    {
      const YBase::SignalGuard inner(SIGPIPE);
      WriteToClosedPipe();
    }
    EXPECT_TRUE(IsBlocked());
  }
  EXPECT_EQ(gsHandlerCalls, 0);
  EXPECT_FALSE(IsBlocked());
  EXPECT_FALSE(IsPending());
}

TEST_F(SignalGuard, KeepsTheErrorNumber) {
  {
    const YBase::SignalGuard guard(SIGPIPE);
    WriteToClosedPipe();
    errno = EDOM;
  }
  EXPECT_EQ(errno, EDOM);
}

TEST_F(SignalGuard, EndsInACancelledThread) {
  EXPECT_TRUE(Support::FinishesBeforeItIsCancelled([] { const YBase::SignalGuard guard(SIGPIPE); }));
}

TEST_F(SignalGuard, LeavesOtherSignalsAlone) {
  const YBase::SignalGuard guard(SIGXFSZ);
  WriteToClosedPipe();
  EXPECT_EQ(gsHandlerCalls, 1);
}

}  // namespace
