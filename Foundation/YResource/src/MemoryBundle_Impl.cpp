#include "MemoryBundle_Impl.h"

namespace YResource {

MemoryBundle::~MemoryBundle() = default;

void MemoryBundle_Impl::SetText(unsigned id, unsigned short language, const char* text) {
  Set(id, language, text != nullptr ? text : "");
}

YBase::SmartPtrI<MemoryBundle> CreateMemoryBundle(unsigned domain) {
  return YBase::SmartPtrI<MemoryBundle>(new MemoryBundle_Impl(domain));
}

}  // namespace YResource
