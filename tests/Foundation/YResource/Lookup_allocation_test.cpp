#include <YResource/Localizer.h>
#include <YResource/MemoryBundle.h>

#include <new>
#include <string>

#include "support/AllocationCounter.h"

namespace {

using Support::AllocationFailure;
using Support::GetAllocationCount;
using YResource::CreateMemoryBundle;

constexpr unsigned short AUSTRIAN = 0x0C07;
const std::string LONG_TEXT(100, 'x');

template <class Lookup>
unsigned long CountAllocations(Lookup lookup) {
  const unsigned long before = GetAllocationCount();
  lookup();
  return GetAllocationCount() - before;
}

TEST(MemoryBundle, AllocatesNothingButTheTextInALookup) {
  const auto bundle = CreateMemoryBundle();
  bundle->SetText(1, 0, LONG_TEXT.c_str());
  bundle->SetText(2, 0, "short");
  EXPECT_EQ(CountAllocations([&] { return bundle->GetString(1, AUSTRIAN, nullptr); }), 1u);
  EXPECT_EQ(CountAllocations([&] { return bundle->GetMessageTemplate(1, AUSTRIAN, nullptr); }), 1u);
  EXPECT_EQ(CountAllocations([&] { return bundle->GetString(2, AUSTRIAN, nullptr); }), 0u);
  EXPECT_EQ(CountAllocations([&] { return bundle->GetString(3, AUSTRIAN, "default"); }), 0u);
}

TEST(Localizer, AllocatesNothingButTheTextInALookup) {
  const auto bundle = CreateMemoryBundle(7);
  bundle->SetText(1, 0, LONG_TEXT.c_str());
  YResource::RegisterBundle(7, bundle);
  const auto localizer = YResource::GetLocalizer();
  EXPECT_EQ(CountAllocations([&] { return localizer->GetText(7, 1, 0); }), 1u);
  EXPECT_EQ(CountAllocations([&] { return localizer->GetText(7, 1, AUSTRIAN); }), 0u);
  EXPECT_EQ(CountAllocations([&] { return localizer->GetText(8, 1, 0); }), 0u);
  EXPECT_EQ(CountAllocations([&] { return localizer->GetParentLanguage(AUSTRIAN); }), 0u);
}

TEST(MemoryBundle, KeepsItsTextsWhenMemoryRunsOut) {
  const auto bundle = CreateMemoryBundle();
  bundle->SetText(1, 0, "old");
  unsigned long failures = 0;
  for (;; ++failures) {
    const AllocationFailure failure(failures);
    try {
      bundle->SetText(1, 0, LONG_TEXT.c_str());
      break;
    } catch (const std::bad_alloc&) {
      ASSERT_EQ(bundle->GetString(1, 0, ""), "old");
    }
  }
  EXPECT_GE(failures, 1u) << "the text";
  EXPECT_EQ(bundle->GetString(1, 0, ""), LONG_TEXT);
}

TEST(Localizer, KeepsItsBundlesWhenMemoryRunsOut) {
  const auto bundle = CreateMemoryBundle(7);
  bundle->SetText(1, 0, "text");
  YResource::RegisterBundle(7, bundle);
  const auto localizer = YResource::GetLocalizer();
  unsigned long failures = 0;
  for (;; ++failures) {
    const AllocationFailure failure(failures);
    try {
      YResource::RegisterBundle(8, bundle);
      break;
    } catch (const std::bad_alloc&) {
      ASSERT_EQ(localizer->GetText(7, 1, 0), "text");
      ASSERT_EQ(localizer->GetText(8, 1, 0), "");
    }
  }
  EXPECT_GE(failures, 1u) << "the place for a bundle";
  EXPECT_EQ(localizer->GetText(8, 1, 0), "text");
}

}  // namespace
