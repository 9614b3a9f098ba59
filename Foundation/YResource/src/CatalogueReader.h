#pragma once

#include <optional>
#include <string>

#include "Catalogue.h"

namespace YResource {

class CatalogueFaults;

/// What the file at `path`, whose content is `text`, says. None where there is a fault.
///
/// All faults of a file are found, but for those after a place where it is not JSON.
std::optional<Catalogue> ReadCatalogue(const std::string& path, std::string text, CatalogueFaults& faults);

}  // namespace YResource
