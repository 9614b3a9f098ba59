#pragma once

#include <string>
#include <vector>

#include "Catalogue.h"

namespace YResource {

class CatalogueFaults;

/// Reads and checks all catalogues of a folder, the neutral one first. What it returns is of use where there
/// was no fault.
std::vector<Catalogue> ReadCatalogueFolder(const std::string& folder, CatalogueFaults& faults);

}  // namespace YResource
