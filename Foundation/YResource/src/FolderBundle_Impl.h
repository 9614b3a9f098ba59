#pragma once

#include <YResource/FolderBundle.h>

#include <vector>

#include "Catalogue.h"
#include "TableBundle.h"

namespace YResource {

class FolderBundle_Impl final : public FolderBundle, public TableBundle {
 public:
  /// \pre There is at least one, and all have the same domain.
  explicit FolderBundle_Impl(const std::vector<Catalogue>& catalogues);

  unsigned GetDomain() const override { return mDomain; }

 private:
  ~FolderBundle_Impl() override = default;
};

}  // namespace YResource
