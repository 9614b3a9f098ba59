#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <YLog/Initializer.h>
#include <YLog/Log.h>
#include <YLog/Module.h>

#include "support/New.h"
#include "support/RecordingDestination.h"

namespace {

constinit const std::string* gspEarlyLine = nullptr;

/// Runs before the static objects of this program are created, in whatever order its sources are linked.
[[gnu::constructor(103)]] void LogEarly() {
  const YLog::Initializer initializer;
  YLog::SetServerInstanceName(L"early");
  const auto destination = Support::New<Support::RecordingDestination>();
  const auto router = YLog::CreateRouter("Test", "Info", YSynch::LOCK_STACK_CATEGORY_OBJECT);
  router->GetDispatcher()->SetDestinations(Support::Destinations({destination}));
  YLog::LogMessage(*router, "text %1", YLog::GetMessageFormatter() << 1);
  gspEarlyLine = new std::string(destination->Records().at(0).line);
}

TEST(EarlyRecord, IsCompleteBeforeTheLibrarysOwnStaticObjectsAreCreated) {
  EXPECT_THAT(*gspEarlyLine,
              testing::MatchesRegex("20.*\\[SERVER:early\\]\\[PID:.*\\]\\[Test\\]\\[Info\\]\\[UID:0\\].*"));
}

}  // namespace
