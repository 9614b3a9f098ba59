#include <YLog/Destination_DebugOutput.h>

#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <YLog/Initializer.h>
#include <YLog/MessageHeader.h>

#include "support/CancelledThread.h"
#include "support/ReadFile.h"
#include "support/TemporaryDirectory.h"

namespace {

class DebugOutput : public testing::Test {
 protected:
  static std::string CapturedFrom(auto&& work) {
    testing::internal::CaptureStderr();
    work();
    return testing::internal::GetCapturedStderr();
  }

  const YLog::Initializer mInitializer;
  const YBase::SmartPtrI<YLog::Destination_DebugOutput> mOutput = YLog::GetDestination_DebugOutput();
  const YBase::SmartPtrI<YLog::MessageHeader> mHeader = YLog::CreateMessageHeader();
};

TEST_F(DebugOutput, WritesHeaderAndMessageFollowedByALineFeed) {
  const std::string header = mHeader->ToString();
  EXPECT_EQ(CapturedFrom([&] { mOutput->LogMessage("one\r\ntwo", *mHeader); }), header + " one\ntwo\n");
}

TEST_F(DebugOutput, WritesHeaderAndBlankForAnEmptyMessage) {
  const std::string header = mHeader->ToString();
  EXPECT_EQ(CapturedFrom([&] { mOutput->LogMessage("", *mHeader); }), header + " \n");
}

TEST_F(DebugOutput, WritesNothingForAMessageOfLineBreaks) {
  EXPECT_EQ(CapturedFrom([&] { mOutput->LogMessage("\n\n", *mHeader); }), "");
}

TEST_F(DebugOutput, AddsALineFeedToABareText) {
  EXPECT_EQ(CapturedFrom([&] { mOutput->LogMessage("bare"); }), "bare\n");
}

TEST_F(DebugOutput, WritesABareTextThatEndsInALineFeedUnchanged) {
  EXPECT_EQ(CapturedFrom([&] { mOutput->LogMessage("\nbare\n"); }), "\nbare\n");
}

TEST_F(DebugOutput, WritesNothingForAnEmptyBareText) {
  EXPECT_EQ(CapturedFrom([&] { mOutput->LogMessage(""); }), "");
}

TEST_F(DebugOutput, KeepsItsLanguage) {
  EXPECT_EQ(mOutput->GetLanguageID(), 0U);
  mOutput->SetLanguageID(0x0407);
  EXPECT_EQ(mOutput->GetLanguageID(), 0x0407U);
}

TEST_F(DebugOutput, KeepsTheRecordsOfSeveralThreadsApart) {
  const std::string output = CapturedFrom([&] {
    std::vector<std::jthread> threads;
    for (char letter = 'a'; letter < 'e'; ++letter) {
      threads.emplace_back([&, letter] {
        for (int line = 0; line < 200; ++line) mOutput->LogMessage(std::string(300, letter).c_str());
      });
    }
  });
  const std::vector<std::string> lines = Support::Lines(output);
  ASSERT_EQ(lines.size(), 800U);
  for (const std::string& line : lines) EXPECT_EQ(line, std::string(300, line.front()));
}

TEST_F(DebugOutput, FinishesTheRecordOfACancelledThread) {
  bool finished = false;
  EXPECT_EQ(CapturedFrom([&] {
              finished = Support::FinishesBeforeItIsCancelled([this] { mOutput->LogMessage("text"); });
            }),
            "text\n");
  EXPECT_TRUE(finished);
}

TEST_F(DebugOutput, SurvivesAStandardErrorWithoutAReader) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  close(ends[0]);
  const int saved = dup(STDERR_FILENO);
  dup2(ends[1], STDERR_FILENO);
  ASSERT_EQ(signal(SIGPIPE, SIG_DFL), SIG_DFL);
  mOutput->LogMessage("into the void");
  const bool refused = std::ferror(stderr) != 0;
  std::clearerr(stderr);
  dup2(saved, STDERR_FILENO);
  close(saved);
  close(ends[1]);
  EXPECT_TRUE(refused);
}

}  // namespace
