#include <climits>
#include <filesystem>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <YLog/YLog.h>

#include "support/ReadFile.h"
#include "support/TemporaryDirectory.h"

namespace {

namespace fs = std::filesystem;
using testing::EndsWith;
using YBase::SmartPtrI;

class KafkaLog : public testing::Test {
 protected:
  std::wstring Path(const std::wstring& name) const { return mDirectory.Path().wstring() + L"/" + name; }
  SmartPtrI<YLog::Destination_KafkaLog> Get(const std::wstring& name = L"kafka.log") const {
    return YLog::GetDestination_KafkaLog(Path(name).c_str());
  }
  std::string Content(const std::string& name) const { return Support::ReadFile(mDirectory.Path() / name); }

  const YLog::Initializer mInitializer;
  const Support::TemporaryDirectory mDirectory;
  const SmartPtrI<YLog::MessageHeader> mHeader = YLog::CreateMessageHeader();
};

TEST_F(KafkaLog, WritesTheSameBytesAsADiskFile) {
  const auto file = YLog::GetDestination_DiskFile(Path(L"file.log").c_str());
  for (const char* text : {"text", "\r\nfirst\r\n\r\nsecond\n", "", "\n", "100%s \xFF"}) {
    Get()->LogMessage(text, *mHeader);
    file->LogMessage(text, *mHeader);
  }
  EXPECT_EQ(Content("kafka.log"), Content("file.log"));
  EXPECT_EQ(Support::Lines(Content("kafka.log")).size(), 6U);
}

TEST_F(KafkaLog, SharesTheDiskFileOfItsPath) {
  EXPECT_EQ(Get()->GetBackupDiskFileDestination(), YLog::GetDestination_DiskFile(Path(L"kafka.log").c_str()));
}

TEST_F(KafkaLog, ObservesTheLimitOfItsDiskFile) {
  const auto log = Get();
  log->GetBackupDiskFileDestination()->SetMaximumFileSize(1);
  log->LogMessage("first", *mHeader);
  log->LogMessage("second", *mHeader);
  EXPECT_THAT(Content("kafka.log.bak00"), EndsWith("first\n"));
  EXPECT_THAT(Content("kafka.log"), EndsWith("second\n"));
}

TEST_F(KafkaLog, IsReachedThroughARouter) {
  const auto router = YLog::CreateRouter("Kernel", "Info", YSynch::LOCK_STACK_CATEGORY_OBJECT);
  YDataType::ObjectCollection<YLog::Destination> destinations;
  destinations.Add(Get());
  router->GetDispatcher()->SetDestinations(destinations);
  router->LogMessage("text", 0, nullptr, nullptr, 0);
  EXPECT_THAT(Content("kafka.log"), EndsWith("[Kernel][Info][UID:0][SID:0][OID:0] text\n"));
}

TEST_F(KafkaLog, IsTheSameObjectForTheSameName) {
  EXPECT_EQ(Get(), Get());
  EXPECT_EQ(Get(L"./sub/../kafka.log"), Get());
  EXPECT_NE(Get(L"other.log"), Get());
}

TEST_F(KafkaLog, IsNullForANullName) {
  EXPECT_EQ(YLog::GetDestination_KafkaLog(nullptr), nullptr);
}

TEST_F(KafkaLog, HasItsOwnLanguage) {
  Get()->SetLanguageID(0x0407);
  EXPECT_EQ(Get()->GetLanguageID(), 0x0407);
  EXPECT_EQ(Get()->GetBackupDiskFileDestination()->GetLanguageID(), 0);
}

TEST_F(KafkaLog, ThrowsForAnInvalidNameAndWritesNothingToStandardError) {
  testing::internal::CaptureStderr();
  EXPECT_THROW(Get(std::wstring(PATH_MAX, L'x')), YBase::ExceptionImpl<YBase::Message>);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(KafkaLog, AcceptsAnyRegistryEntry) {
  EXPECT_NO_THROW(YLog::UpdateLogRegistryStr(L"entry"));
  EXPECT_NO_THROW(YLog::UpdateLogRegistryStr(nullptr));
}

}  // namespace
