#pragma once

#include <YResource/MemoryBundle.h>

#include "TableBundle.h"

namespace YResource {

class MemoryBundle_Impl final : public MemoryBundle, public TableBundle {
 public:
  explicit MemoryBundle_Impl(unsigned domain) : TableBundle(domain) {}

  unsigned GetDomain() const override { return mDomain; }
  void SetText(unsigned id, unsigned short language, const char* text) override;

 private:
  ~MemoryBundle_Impl() override = default;
};

}  // namespace YResource
