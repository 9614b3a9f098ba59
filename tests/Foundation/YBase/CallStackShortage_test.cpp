// Call stacks when there are not enough descriptors or memory to read debug information. Not built with a
// sanitizer, which needs some of both itself.

#include <sys/resource.h>
#include <unistd.h>

#include <fstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CallStackText.h"
#include "NewProcess.h"

namespace {

using testing::HasSubstr;
using testing::Not;

/// Limits the process to this many bytes more than it uses now.
class MemoryLimit {
 public:
  explicit MemoryLimit(rlim_t size) {
    getrlimit(RLIMIT_AS, &mBefore);
    rlim_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    const rlimit limit{pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE)) + size, mBefore.rlim_max};
    EXPECT_EQ(setrlimit(RLIMIT_AS, &limit), 0);
  }
  ~MemoryLimit() { setrlimit(RLIMIT_AS, &mBefore); }
  MemoryLimit(const MemoryLimit&) = delete;
  MemoryLimit& operator=(const MemoryLimit&) = delete;

 private:
  rlimit mBefore{};
};

/// Limits the process to this many descriptors more than it uses now.
class DescriptorLimit {
 public:
  explicit DescriptorLimit(rlim_t count) {
    getrlimit(RLIMIT_NOFILE, &mBefore);
    const int next = dup(STDERR_FILENO);
    close(next);
    const rlimit limit{static_cast<rlim_t>(next) + count, mBefore.rlim_max};
    EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
  }
  ~DescriptorLimit() { setrlimit(RLIMIT_NOFILE, &mBefore); }
  DescriptorLimit(const DescriptorLimit&) = delete;
  DescriptorLimit& operator=(const DescriptorLimit&) = delete;

 private:
  rlimit mBefore{};
};

/// Always from one place.
[[gnu::noinline]] std::string TakeOwnFrame() {
  return GetShownFrames(YBase::CreateCallStack()).at(0);
}

TEST(CallStackShortage, LinesAreReadOnceThereAreDescriptors) {
  RunInNewProcess([] {
    for (const rlim_t count : {0U, 1U, 2U}) {
      const DescriptorLimit limit(count);
      EXPECT_THAT(TakeOwnFrame(), Not(HasSubstr("CallStackShortage_test.cpp:"))) << count;
    }
    EXPECT_THAT(TakeOwnFrame(), HasSubstr("CallStackShortage_test.cpp:"));
  });
}

TEST(CallStackShortage, LinesAreReadOnceThereIsMemory) {
  RunInNewProcess([] {
    {
      const MemoryLimit limit(256UL * 1024);
      EXPECT_THAT(TakeOwnFrame(), Not(HasSubstr("CallStackShortage_test.cpp:")));
    }
    EXPECT_THAT(TakeOwnFrame(), HasSubstr("CallStackShortage_test.cpp:"));
  });
}

}  // namespace
