#include "CatalogueFolder.h"

#include <YBase/CancellationGuard.h>
#include <YBase/StandardDescriptorsGuard.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <map>
#include <set>
#include <system_error>
#include <utility>

#include "CatalogueFaults.h"
#include "CatalogueReader.h"
#include "FileText.h"
#include "Placeholder.h"

namespace YResource {

namespace {

bool IsCatalogueName(const std::string& name) {
  // A file whose name begins with a dot belongs to an editor or a version control system.
  return name.ends_with(".json") && !name.starts_with('.');
}

std::vector<std::string> ListFiles(const std::string& folder, CatalogueFaults& faults) {
  std::vector<std::string> paths;
  std::error_code error;
  std::filesystem::directory_iterator entry(folder, error);
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    if (IsCatalogueName(entry->path().filename().string())) paths.push_back(entry->path().string());
  }
  if (error) {
    faults.Add(folder, 0, "cannot be read: " + error.message());
  } else if (paths.empty()) {
    faults.Add(folder, 0, "contains no catalogue");
  }
  return paths;
}

/// The neutral one first.
bool GoesBefore(const Catalogue& left, const Catalogue& right) {
  const bool leftIsNeutral = left.language == 0;
  const bool rightIsNeutral = right.language == 0;
  return leftIsNeutral != rightIsNeutral ? leftIsNeutral : left.path < right.path;
}

void CheckThatTheyBelongTogether(const std::vector<Catalogue>& catalogues, CatalogueFaults& faults) {
  std::map<unsigned short, const Catalogue*> languages;
  for (const Catalogue& catalogue : catalogues) {
    const Catalogue& first = catalogues.front();
    if (catalogue.name != first.name || catalogue.domain != first.domain) {
      faults.Add(catalogue.path, 0,
                 "differs from " + first.path + " in name or domain; a folder holds one catalogue");
    }
    const auto [place, isNew] = languages.emplace(catalogue.language, &catalogue);
    if (!isNew) faults.Add(catalogue.path, 0, "is of the same language as " + place->second->path);
  }
}

/// "%1 %3", or "none".
std::string Describe(const std::set<std::size_t>& places) {
  std::string text;
  for (const std::size_t number : places) text += (text.empty() ? "%" : " %") + std::to_string(number);
  return text.empty() ? "none" : text;
}

/// The arguments of a message are the same in every language: without a placeholder one would be lost, and a
/// placeholder without an argument would be shown as it is.
void CheckPlaceholders(const std::vector<Catalogue>& catalogues, CatalogueFaults& faults) {
  // The neutral catalogue is the first. A text that it lacks is compared with the first translation instead.
  std::map<unsigned, std::pair<std::set<std::size_t>, const Catalogue*>> references;
  for (const Catalogue& catalogue : catalogues) {
    for (const CatalogueText& text : catalogue.texts) {
      const std::set<std::size_t> places = FindPlaceholders(text.text);
      const auto& [expected, reference] = references.try_emplace(text.id, places, &catalogue).first->second;
      if (places == expected) continue;
      faults.Add(catalogue.path, text.line,
                 "the text of ID " + std::to_string(text.id) + " has the places " + Describe(places) +
                     ", that in " + reference->path + " " + Describe(expected));
    }
  }
}

}  // namespace

std::vector<Catalogue> ReadCatalogueFolder(const std::string& folder, CatalogueFaults& faults) {
  // Otherwise a cancellation could take effect in a destructor that closes a file.
  const YBase::CancellationGuard cancellationGuard;
  const YBase::StandardDescriptorsGuard descriptorsGuard;
  std::vector<Catalogue> catalogues;
  for (const std::string& path : ListFiles(folder, faults)) {
    auto text = ReadFileText(path, faults);
    if (!text) continue;
    auto catalogue = ReadCatalogue(path, std::move(*text), faults);
    if (catalogue) catalogues.push_back(std::move(*catalogue));
  }
  std::sort(catalogues.begin(), catalogues.end(), GoesBefore);
  if (!catalogues.empty()) CheckThatTheyBelongTogether(catalogues, faults);
  CheckPlaceholders(catalogues, faults);
  return catalogues;
}

}  // namespace YResource
