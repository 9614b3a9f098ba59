#include "MemoryBundle_Impl.h"

namespace YResource {

namespace {

// 8 KiB, and one comparison a lookup for catalogues of ordinary size.
constexpr std::size_t EXPECTED_TEXTS = 1024;

}  // namespace

MemoryBundle::~MemoryBundle() = default;

MemoryBundle_Impl::MemoryBundle_Impl(unsigned domain)
    : TableBundle(domain, EXPECTED_TEXTS),
      mpLock(YSynch::CreateCriticalSection(YSynch::LOCK_STACK_CATEGORY_OBJECT)) {}

void MemoryBundle_Impl::SetText(unsigned id, unsigned short language, const char* text) {
  const YSynch::CriticalSection::SmartLock lock(*mpLock);
  mTexts.Set(id, language, text != nullptr ? text : "");
}

YBase::SmartPtrI<MemoryBundle> CreateMemoryBundle(unsigned domain) {
  return YBase::SmartPtrI<MemoryBundle>(new MemoryBundle_Impl(domain));
}

}  // namespace YResource
