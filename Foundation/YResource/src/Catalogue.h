#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace YResource {

/// A text of a catalogue, and where it stands.
struct CatalogueText {
  unsigned id;
  std::string text;
  std::size_t line;
};

/// What one file says.
struct Catalogue {
  std::string path;
  /// The part of the file's name that all locales of a catalogue share.
  std::string name;
  unsigned domain = 0;
  unsigned short language = 0;
  std::vector<CatalogueText> texts;
};

}  // namespace YResource
