#include <cstring>

#include <YLog/YLog.h>
#include <YResource/MemoryBundle.h>

#include "support/AllocationCounter.h"
#include "support/New.h"
#include "support/RecordingDestination.h"

namespace {

using Support::Destinations;
using Support::GetAllocationCount;
using Support::New;

/// Lays out the header's text line like a disk file, but writes and keeps nothing.
class PrintingDestination final : public YLog::Destination,
                                  public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
 public:
  void LogMessage(const char* text, const YLog::MessageHeader& header) const override {
    mLength += std::strlen(text) + std::strlen(header.ToString());
  }
  void LogMessage(const YLog::MessageHeader& header, const YLog::MessageBody& body) const override {
    LogMessage(body.GetText(GetLanguageID()), header);
  }
  void SetCallstackMessageIDs(const unsigned*, unsigned) override {}
  unsigned short GetLanguageID() const override { return 0; }
  void SetLanguageID(unsigned short) override {}

  std::size_t GetLength() const { return mLength; }

 private:
  ~PrintingDestination() override = default;

  mutable std::size_t mLength = 0;
};

TEST(HotPath, AllocatesNothingOnceTheThreadHasLogged) {
  const YLog::Initializer initializer;
  YLog::SetServerInstanceName(L"a server instance name longer than a short string");
  const auto destination = New<PrintingDestination>();
  const auto router = YLog::CreateRouter("a logger's name longer than a short string", "Error",
                                         YSynch::LOCK_STACK_CATEGORY_OBJECT);
  router->GetDispatcher()->SetDestinations(Destinations({destination}));

  const unsigned long atStart = GetAllocationCount();
  unsigned long afterFirst = 0;
  for (int message = 0; message <= 1000; ++message) {
    YLog::LogMessage(*router, "Message %1 of %2", YLog::GetMessageFormatter() << message + 1000 << "many");
    YLog::LogString(*router, "A text as it is");
    if (message == 0) afterFirst = GetAllocationCount();
  }
  EXPECT_EQ(afterFirst, GetAllocationCount());
  EXPECT_GT(afterFirst, atStart) << "allocations inside the library are not counted";
  EXPECT_GT(destination->GetLength(), 2'000U * 200U);
}

/// The number of allocations when `log` runs for the second time in a thread.
unsigned long CountAllocations(auto log) {
  log();
  const unsigned long before = GetAllocationCount();
  log();
  return GetAllocationCount() - before;
}

TEST(HotPath, AllocatesOnlyTheTextOfACatalogue) {
  const YLog::Initializer initializer;
  const auto bundle = YResource::CreateMemoryBundle(7);
  bundle->SetText(300, 0, "Order %1, longer than a short string");
  const auto router = YLog::CreateRouter("Kernel", "Error", YSynch::LOCK_STACK_CATEGORY_OBJECT);
  router->GetLogger()->SetResourceBundle(bundle.Get());
  router->GetDispatcher()->SetDestinations(Destinations({New<PrintingDestination>()}));
  for (const unsigned id : {300U, 301U}) {
    EXPECT_EQ(
        1U, CountAllocations([&] { YLog::LogString(*router, id, "A default longer than a short string"); }));
    EXPECT_EQ(1U, CountAllocations([&] {
                YLog::LogMessage(*router, id, YLog::GetMessageFormatter() << 17,
                                 "A default longer than a short string: %1");
              }));
  }
}

TEST(HotPath, AllocatesNothingWhileTheRouterIsDisabled) {
  const YLog::Initializer initializer;
  const auto router = YLog::CreateRouter("Kernel", "Error", YSynch::LOCK_STACK_CATEGORY_OBJECT);
  EXPECT_EQ(0U, CountAllocations([&] {
              YLog::LogString(*router, 300);
              YLog::LogMessage(*router, 300, YLog::GetMessageFormatter() << 17);
              const YLog::ScopeGuard guard(*router, "Run", "job.cpp", 42);
            }));
}

}  // namespace
