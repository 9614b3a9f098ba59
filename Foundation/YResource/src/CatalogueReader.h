#pragma once

#include <optional>
#include <string>

#include "Catalogue.h"

namespace YResource {

class CatalogueFaults;

/// Reads the file at `path`, whose content is `text`. None if there is a fault.
///
/// Finds all faults of a file up to the first place that is not JSON.
std::optional<Catalogue> ReadCatalogue(const std::string& path, std::string text, CatalogueFaults& faults);

}  // namespace YResource
