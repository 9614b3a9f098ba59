#include "MemoryBundle_Impl.h"

#include <YBase/NullText.h>

namespace YResource {

MemoryBundle::~MemoryBundle() = default;

void MemoryBundle_Impl::SetText(unsigned id, unsigned short language, const char* text) {
  Set(id, language, YBase::EmptyIfNull(text));
}

YBase::SmartPtrI<MemoryBundle> CreateMemoryBundle(unsigned domain) {
  return YBase::SmartPtrI<MemoryBundle>(new MemoryBundle_Impl(domain));
}

}  // namespace YResource
