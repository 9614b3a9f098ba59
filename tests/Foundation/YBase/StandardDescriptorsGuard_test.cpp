#include <YBase/OpenDescriptor.h>
#include <YBase/StandardDescriptorsGuard.h>
#include <fcntl.h>
#include <pthread.h>
#include <unistd.h>

#include <cerrno>
#include <functional>
#include <optional>

#include <gtest/gtest.h>

#include "Foundation/YBase/src/HighDescriptor.h"
#include "support/CancelledThread.h"
#include "support/ChildProcess.h"
#include "support/ClosedDescriptors.h"
#include "support/ForkedThread.h"

namespace {

using Support::IsClosed;
using YBase::OpenDescriptor;

/// Expects this of children that have closed each combination of standard input, output and error.
void ExpectInChildren(const std::function<bool(int closed)>& holds) {
  for (const int closed : Support::CLOSED_IN_ANY_WAY) {
    EXPECT_EQ(Support::ChildProcess([&] {
                Support::CloseDescriptors(closed);
                return holds(closed) ? 0 : 1;
              }).Wait(),
              0)
        << "closed: " << closed;
  }
}

bool AreAllClosed(int closed) {
  for (int descriptor = 0; descriptor < 3; ++descriptor) {
    if ((closed & (1 << descriptor)) != 0 && !IsClosed(descriptor)) return false;
  }
  return true;
}

TEST(StandardDescriptorsGuard, IsNeededToKeepFilesFromBecomingStandardDescriptors) {
  ExpectInChildren([](int closed) { return open("/dev/null", O_RDWR) < 3 && closed != 0; });
}

TEST(StandardDescriptorsGuard, KeepsFilesFromBecomingStandardDescriptors) {
  ExpectInChildren([](int closed) {
    const YBase::StandardDescriptorsGuard guard;
    return open("/dev/null", O_RDWR) >= 3 && Support::UseClosed(closed) == 0;
  });
}

TEST(StandardDescriptorsGuard, LeavesClosedOnesClosedAfterwards) {
  ExpectInChildren([](int closed) {
    { const YBase::StandardDescriptorsGuard guard; }
    return AreAllClosed(closed);
  });
}

TEST(StandardDescriptorsGuard, LeavesOpenOnesOpen) {
  EXPECT_EQ(Support::ChildProcess([] {
              { const YBase::StandardDescriptorsGuard guard; }
              return IsClosed(0) || IsClosed(1) || IsClosed(2) ? 1 : 0;
            }).Wait(),
            0);
}

TEST(StandardDescriptorsGuard, HoldsUntilTheLastOfSeveralIsDestroyed) {
  ExpectInChildren([](int closed) {
    std::optional<YBase::StandardDescriptorsGuard> first(std::in_place);
    std::optional<YBase::StandardDescriptorsGuard> second(std::in_place);
    first.reset();
    const bool held = open("/dev/null", O_RDWR) >= 3;
    second.reset();
    return held && AreAllClosed(closed);
  });
}

TEST(StandardDescriptorsGuard, CoversADescriptorClosedWhileAnotherGuardExists) {
  EXPECT_EQ(Support::ChildProcess([] {
              const YBase::StandardDescriptorsGuard first;
              close(1);
              const YBase::StandardDescriptorsGuard second;
              return open("/dev/null", O_RDWR) >= 3 ? 0 : 1;
            }).Wait(),
            0);
}

TEST(StandardDescriptorsGuard, KeepsDescriptorsTheHostOpensMeanwhile) {
  ExpectInChildren([](int closed) {
    const int file = fcntl(open("/dev/null", O_RDWR), F_DUPFD, 3);
    Support::CloseDescriptors(closed);
    {
      const YBase::StandardDescriptorsGuard guard;
      for (int descriptor = 0; descriptor < 3; ++descriptor) dup2(file, descriptor);
    }
    return Support::UseClosed(7) == 3;
  });
}

TEST(StandardDescriptorsGuard, IsNotInheritedByPrograms) {
  ExpectInChildren([](int closed) {
    const YBase::StandardDescriptorsGuard guard;
    for (int descriptor = 0; descriptor < 3; ++descriptor) {
      if ((closed & (1 << descriptor)) != 0 && fcntl(descriptor, F_GETFD) != FD_CLOEXEC) return false;
    }
    return true;
  });
}

TEST(StandardDescriptorsGuard, DoesNotHoldInAForkedChild) {
  ExpectInChildren([](int closed) {
    const YBase::StandardDescriptorsGuard guard;
    const pid_t child = fork();
    if (child != 0) return Support::SucceededChild(child) && !AreAllClosed(closed);
    _exit(AreAllClosed(closed) ? 0 : 1);
  });
}

TEST(StandardDescriptorsGuard, KeepsTheErrorNumber) {
  ExpectInChildren([](int) {
    errno = EDOM;
    std::optional<YBase::StandardDescriptorsGuard> guard(std::in_place);
    const bool kept = errno == EDOM;
    errno = ERANGE;
    guard.reset();
    return kept && errno == ERANGE;
  });
}

TEST(StandardDescriptorsGuard, EndsInACancelledThread) {
  EXPECT_EQ(Support::ChildProcess([] {
              close(0);
              return Support::FinishesBeforeItIsCancelled([] { const YBase::StandardDescriptorsGuard guard; })
                         ? 0
                         : 1;
            }).Wait(),
            0);
}

TEST(OpenDescriptor, ReturnsThreeOrMore) {
  ExpectInChildren(
      [](int closed) { return OpenDescriptor("/dev/null", O_RDWR) >= 3 && AreAllClosed(closed); });
}

TEST(OpenDescriptor, OpensAsTheSystemDoes) {
  const int descriptor = OpenDescriptor("/dev/null", O_WRONLY | O_APPEND);
  EXPECT_EQ(fcntl(descriptor, F_GETFL) & (O_ACCMODE | O_APPEND), O_WRONLY | O_APPEND);
  EXPECT_EQ(fcntl(descriptor, F_GETFD), 0);
  close(descriptor);
  EXPECT_EQ(OpenDescriptor("/no/such/file", O_RDONLY), -1);
  EXPECT_EQ(errno, ENOENT);
}

TEST(MakeHigh, MovesALowNumberAndClosesIt) {
  EXPECT_EQ(Support::ChildProcess([] {
              close(1);
              const int low = open("/dev/null", O_WRONLY);
              const int high = YBase::MakeHigh(low);
              const bool moved = low == 1 && high >= 3 && IsClosed(1) && fcntl(high, F_GETFD) == FD_CLOEXEC;
              return moved && write(high, "x", 1) == 1 ? 0 : 1;
            }).Wait(),
            0);
}

TEST(MakeHigh, ReturnsAHighNumberOrAFailureUnchanged) {
  const int descriptor = open("/dev/null", O_WRONLY | O_CLOEXEC);
  EXPECT_EQ(YBase::MakeHigh(descriptor), descriptor);
  close(descriptor);
  errno = EACCES;
  EXPECT_EQ(YBase::MakeHigh(-1), -1);
  EXPECT_EQ(errno, EACCES);
}

}  // namespace
