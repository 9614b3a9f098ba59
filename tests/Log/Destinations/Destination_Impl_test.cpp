#include <YLog/Destination.h>

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <YLog/YLog.h>
#include <YResource/Localizer.h>

#include "support/Languages.h"
#include "support/ReadFile.h"
#include "support/TemporaryDirectory.h"

namespace {

using Support::GERMAN;
using Support::NEUTRAL;
using testing::EndsWith;
using YBase::SmartPtrI;

/// A message in two languages, for destinations of every kind.
class DestinationLanguage : public testing::Test {
 protected:
  DestinationLanguage() {
    YBase::Message message("disk full");
    message.SetLocalizedText(GERMAN, "Platte voll");
    mBody->SetMessage(message);
  }
  std::wstring Path() const { return (mDirectory.Path() / "a.log").wstring(); }
  std::string Content() const { return Support::ReadFile(mDirectory.Path() / "a.log"); }

  const YLog::Initializer mInitializer;
  const Support::TemporaryDirectory mDirectory;
  const SmartPtrI<YLog::MessageHeader> mHeader = YLog::CreateMessageHeader();
  const SmartPtrI<YLog::MessageBody> mBody = YLog::CreateMessageBody();
};

TEST_F(DestinationLanguage, IsNeutralUntilItIsSet) {
  const auto file = YLog::GetDestination_DiskFile(Path().c_str());
  EXPECT_EQ(NEUTRAL, file->GetLanguageID());
  file->LogMessage(*mHeader, *mBody);
  EXPECT_THAT(Content(), EndsWith(mHeader->ToString() + std::string(" disk full\n")));
}

TEST_F(DestinationLanguage, SelectsTheTextInADiskFile) {
  const auto file = YLog::GetDestination_DiskFile(Path().c_str());
  file->SetLanguageID(GERMAN);
  file->LogMessage(*mHeader, *mBody);
  EXPECT_THAT(Content(), EndsWith(mHeader->ToString() + std::string(" Platte voll\n")));
}

TEST_F(DestinationLanguage, SelectsTheTextOnStandardError) {
  const auto output = YLog::GetDestination_DebugOutput();
  output->SetLanguageID(GERMAN);
  testing::internal::CaptureStderr();
  output->LogMessage(*mHeader, *mBody);
  EXPECT_EQ(mHeader->ToString() + std::string(" Platte voll\n"), testing::internal::GetCapturedStderr());
}

TEST_F(DestinationLanguage, OfAKafkaLogAppliesRegardlessOfThatOfItsDiskFile) {
  const auto kafka = YLog::GetDestination_KafkaLog(Path().c_str());
  kafka->SetLanguageID(GERMAN);
  kafka->LogMessage(*mHeader, *mBody);
  EXPECT_EQ(NEUTRAL, kafka->GetBackupDiskFileDestination()->GetLanguageID());
  EXPECT_THAT(Content(), EndsWith(" Platte voll\n"));
}

TEST_F(DestinationLanguage, LowerMessagesAreOnSeparateLines) {
  YBase::Message order("order failed");
  YBase::Message disk("disk full");
  disk.AddLowerLevelMessage(YBase::Message("quota reached"));
  order.AddLowerLevelMessage(disk);
  mBody->SetMessage(order);
  YLog::GetDestination_DiskFile(Path().c_str())->LogMessage(*mHeader, *mBody);
  EXPECT_THAT(Content(), EndsWith(" order failed\n  disk full\n    quota reached\n"));
}

}  // namespace
