#pragma once

#include <YBase/StrongPtr.h>
#include <YResource/MemoryBundle.h>
#include <YSynch/CriticalSection.h>

#include "TableBundle.h"

namespace YResource {

class MemoryBundle_Impl final : public MemoryBundle, public TableBundle {
 public:
  explicit MemoryBundle_Impl(unsigned domain);

  unsigned GetDomain() const override { return mDomain; }
  void SetText(unsigned id, unsigned short language, const char* text) override;

 private:
  ~MemoryBundle_Impl() override = default;

  // Keeps those apart who set texts; lookups do not take it.
  const YBase::StrongPtr<YSynch::CriticalSection> mpLock;
};

}  // namespace YResource
