#include "Destinations/StandardError.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/ReadFile.h"
#include "support/StandardErrorPipe.h"
#include "support/WaitUntil.h"

namespace {

using namespace std::chrono_literals;
using testing::AllOf;
using testing::Each;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::SizeIs;

/// Standard error is a pipe that the host has made non-blocking.
class StandardError : public testing::Test {
 protected:
  StandardError() { fcntl(mPipe.Writer(), F_SETFL, O_NONBLOCK); }

  void FillUp() const {
    while (write(mPipe.Writer(), "f\n", 2) == 2) {
    }
    EXPECT_EQ(errno, EAGAIN);
  }

  /// What the pipe yields until the work is done; it is read, a page at a time, whenever it is full.
  std::string ReadDuring(const std::function<void()>& work) const {
    std::atomic<bool> done{false};
    const std::jthread writer([&] {
      work();
      done = true;
    });
    std::string text;
    while (!done) {
      EXPECT_TRUE(Support::WaitUntil([&] { return mPipe.IsFull() || done; }));
      if (mPipe.Size() > 0) text += mPipe.ReadPage();
    }
    return text;
  }

  std::string ReadTheRest() {
    mRedirected.reset();
    mPipe.CloseWriter();
    return mPipe.ReadAll();
  }

  Support::Pipe mPipe;
  std::optional<Support::RedirectedStandardError> mRedirected{mPipe.Writer()};
};

TEST_F(StandardError, WaitsForASlowReader) {
  YLog::StandardError standardError;
  const std::string record = std::string(400, 'r') + '\n';
  std::string text = ReadDuring([&] {
    for (int i = 0; i < 600; ++i) standardError.Write(record);
  });
  text += ReadTheRest();
  EXPECT_THAT(Support::Lines(text), AllOf(SizeIs(600), Each(std::string(400, 'r'))));
}

TEST_F(StandardError, WaitsOnceForAReaderThatHasStopped) {
  YLog::StandardError standardError(1s);
  FillUp();
  const auto begin = std::chrono::steady_clock::now();
  for (int i = 0; i < 100; ++i) standardError.Write("lost\n");
  const auto time = std::chrono::steady_clock::now() - begin;
  EXPECT_GE(time, 1s);
  EXPECT_LT(time, 30s);
  mPipe.ReadPage();
  standardError.Write("after\n");
  EXPECT_THAT(ReadTheRest(), AllOf(EndsWith("\nafter\n"), Not(HasSubstr("lost"))));
}

TEST_F(StandardError, WaitsAgainForAReaderThatHasResumed) {
  YLog::StandardError standardError(1s);
  FillUp();
  standardError.Write("lost\n");
  mPipe.ReadPage();
  standardError.Write("first\n");
  FillUp();
  const auto begin = std::chrono::steady_clock::now();
  standardError.Write("lost\n");
  EXPECT_GE(std::chrono::steady_clock::now() - begin, 1s);
  const std::string text = ReadTheRest();
  EXPECT_THAT(text, AllOf(HasSubstr("\nfirst\n"), Not(HasSubstr("lost"))));
}

TEST_F(StandardError, FinishesARecordThatTheReaderHasBegunToRead) {
  YLog::StandardError standardError(0s);
  FillUp();
  standardError.Write("lost\n");
  mPipe.ReadPage();
  const std::string record = std::string(10'000, 'r') + '\n';
  std::string text = ReadDuring([&] { standardError.Write(record); });
  text += ReadTheRest();
  EXPECT_THAT(text, EndsWith("\nf\n" + record));
}

}  // namespace
