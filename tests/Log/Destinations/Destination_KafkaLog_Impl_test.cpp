#include "Destinations/Destination_KafkaLog_Impl.h"

#include <atomic>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <YBase/ExceptionImpl.h>
#include <YBase/Message.h>
#include <YBase/System.h>
#include <YLog/Initializer.h>
#include <YLog/MessageHeader.h>
#include <YLog/Module.h>

#include "support/New.h"
#include "support/ReadFile.h"
#include "support/TemporaryDirectory.h"

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using YLog::Destination_KafkaLog_Impl;

std::wstring Topic() {
  const YSynch::CriticalSection::SmartLock lock(*Destination_KafkaLog_Impl::sCriticalSectionPtr);
  return Destination_KafkaLog_Impl::sDiagTopic;
}

TEST(KafkaTopic, IsNotReadyInitially) {
  EXPECT_FALSE(Destination_KafkaLog_Impl::IsDiagTopicReady());
  EXPECT_EQ(Topic(), L"");
}

TEST(KafkaTopic, BeginsWithAConnectorAndIsComposedOnce) {
  Destination_KafkaLog_Impl::ComposeTopic(L"H", L"S");
  EXPECT_TRUE(Destination_KafkaLog_Impl::IsDiagTopicReady());
  EXPECT_EQ(Topic(), L".H.S");
  Destination_KafkaLog_Impl::ComposeTopic(L"other", L"names");
  EXPECT_EQ(Topic(), L".H.S");
}

TEST(KafkaTopic, IsNotComposedWithoutBothNames) {
  for (const wchar_t* missing : {static_cast<const wchar_t*>(nullptr), L""}) {
    Destination_KafkaLog_Impl::ComposeTopic(missing, L"S");
    Destination_KafkaLog_Impl::ComposeTopic(L"H", missing);
  }
  EXPECT_FALSE(Destination_KafkaLog_Impl::IsDiagTopicReady());
  EXPECT_EQ(Topic(), L"");
}

TEST(KafkaTopic, IsTheTopicOfOneOfTheThreadsThatComposeAtOnce) {
  std::atomic<int> ready{0};
  {
    std::vector<std::jthread> threads;
    for (const wchar_t* name : {L"one", L"two", L"three", L"four"}) {
      threads.emplace_back([&ready, name] {
        for (++ready; ready < 4;) std::this_thread::yield();
        Destination_KafkaLog_Impl::ComposeTopic(name, name);
        EXPECT_TRUE(Destination_KafkaLog_Impl::IsDiagTopicReady());
      });
    }
  }
  EXPECT_THAT(Topic(), testing::AnyOf(L".one.one", L".two.two", L".three.three", L".four.four"));
}

TEST(KafkaTopic, IsComposedWhenTheServerInstanceNameIsSet) {
  const YLog::Initializer initializer;
  YLog::SetServerInstanceName(nullptr);
  YLog::SetServerInstanceName(L"");
  EXPECT_FALSE(Destination_KafkaLog_Impl::IsDiagTopicReady());
  YLog::SetServerInstanceName(L"Inst1");
  EXPECT_EQ(Topic(), L"." + YBase::GetComputerName() + L".Inst1");
  YLog::SetServerInstanceName(L"Inst2");
  EXPECT_EQ(Topic(), L"." + YBase::GetComputerName() + L".Inst1");
}

TEST(KafkaRegistry, StoresNothing) {
  Destination_KafkaLog_Impl::UpdateLogRegistryStr(L"entry");
  EXPECT_EQ(Destination_KafkaLog_Impl::sLogRegistryEntryStr, L"");
  EXPECT_EQ(Destination_KafkaLog_Impl::GetRegistryTopicString(), nullptr);
}

class KafkaLogImpl : public testing::Test {
 protected:
  YBase::SmartPtrI<Destination_KafkaLog_Impl> Create(Destination_KafkaLog_Impl::FeatureQuery query) const {
    return Support::New<Destination_KafkaLog_Impl>(mDirectory.Wide("kafka.log").c_str(), query);
  }
  YBase::SmartPtrI<Destination_KafkaLog_Impl> Create() const { return Create(&YBase::IsFeatureEnabled); }
  std::string Content() const { return Support::ReadFile(mDirectory.Path() / "kafka.log"); }

  const YLog::Initializer mInitializer;
  const Support::TemporaryDirectory mDirectory;
  const YBase::SmartPtrI<YLog::MessageHeader> mHeader = YLog::CreateMessageHeader();
};

TEST_F(KafkaLogImpl, ReportsAChangeOfTheProducerStatus) {
  const auto log = Create();
  EXPECT_FALSE(log->UpdateProducerStatus(0));
  EXPECT_TRUE(log->UpdateProducerStatus(3));
  EXPECT_FALSE(log->UpdateProducerStatus(3));
  EXPECT_TRUE(log->UpdateProducerStatus(-1));
}

TEST_F(KafkaLogImpl, ReportsAChangeToOnlyOneOfTheThreadsThatSetTheSameStatus) {
  constexpr int THREADS = 4;
  constexpr int STATUSES = 200;
  const auto log = Create();
  std::atomic<int> changes{0};
  for (int status = 1; status <= STATUSES; ++status) {
    std::atomic<int> ready{0};
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < THREADS; ++thread) {
      threads.emplace_back([&] {
        for (++ready; ready < THREADS;) std::this_thread::yield();
        if (log->UpdateProducerStatus(status)) ++changes;
      });
    }
  }
  EXPECT_EQ(changes, STATUSES);
}

TEST_F(KafkaLogImpl, NeverTriesTheServer) {
  const auto log = Create();
  EXPECT_FALSE(log->IsTimeToTryServer());
  log->LogMessage("text", *mHeader);
  EXPECT_FALSE(log->IsTimeToTryServer());
}

std::vector<std::wstring> gsQueried;

TEST_F(KafkaLogImpl, QueriesItsFeatureForEachRecord) {
  const auto log = Create([](const wchar_t* name) {
    gsQueried.emplace_back(name);
    return gsQueried.size() == 1;
  });
  EXPECT_THAT(gsQueried, IsEmpty());
  log->LogMessage("first", *mHeader);
  log->LogMessage("second", *mHeader);
  EXPECT_THAT(gsQueried, ElementsAre(L"KS/SLMS", L"KS/SLMS"));
  EXPECT_THAT(Content(), EndsWith(" first\n" + std::string(mHeader->ToString()) + " second\n"));
}

TEST_F(KafkaLogImpl, WritesARecordEvenIfTheFeatureCannotBeQueried) {
  const auto log = Create(
      [](const wchar_t*) -> bool { throw YBase::ExceptionImpl<YBase::Message>("no flags available"); });
  log->LogMessage("text", *mHeader);
  EXPECT_THAT(Content(), EndsWith(" text\n"));
}

TEST_F(KafkaLogImpl, PropagatesOtherFailures) {
  const auto log = Create([](const wchar_t*) -> bool { throw std::runtime_error("of another kind"); });
  EXPECT_THROW(log->LogMessage("text", *mHeader), std::runtime_error);
  EXPECT_EQ(Content(), "");
}

}  // namespace
