#include <chrono>
#include <string>

#include <gtest/gtest.h>

#include <YBase/TextConversion.h>
#include <YLog/Initializer.h>
#include <YLog/MsgLogTrace.h>

#include "support/FakeClock.h"
#include "support/ReadFile.h"
#include "support/TemporaryDirectory.h"

namespace {

TEST(MsgLogTraceClock, PrintsTheTimeOfItsCreationNotOfThePrinting) {
  const YLog::Initializer initializer;
  const Support::TemporaryDirectory directory;
  const auto path = directory.Path() / "trace.txt";
  Support::FakeClock clock{std::chrono::sys_days(std::chrono::year(2024) / 3 / 5)};
  YLog::MsgLogTrace& trace = *YLog::MsgLogTrace::getInstance();
  const std::string created = YDataType::DateTime::Now().ToString();
  clock.Advance(std::chrono::hours(26));
  trace.SetOutputFileName(YBase::UTF8ToWideChar(path.c_str()).c_str());
  ASSERT_EQ(trace.PrintAllLogTrace(), 0U);
  EXPECT_EQ(Support::ReadFile(path), created + "\n");
}

}  // namespace
