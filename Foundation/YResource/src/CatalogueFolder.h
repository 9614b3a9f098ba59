#pragma once

#include <string>
#include <vector>

#include "Catalogue.h"

namespace YResource {

class CatalogueFaults;

/// Reads and checks all catalogues of a folder, the neutral one first. The result is only meaningful if there
/// was no fault.
std::vector<Catalogue> ReadCatalogueFolder(const std::string& folder, CatalogueFaults& faults);

}  // namespace YResource
