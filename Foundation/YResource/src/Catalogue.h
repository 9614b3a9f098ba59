#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace YResource {

/// A text of a catalogue and its line.
struct CatalogueText {
  unsigned id;
  std::string text;
  std::size_t line;
};

/// The content of one file.
struct Catalogue {
  std::string path;
  /// The part of the file's name that all locales of a catalogue share.
  std::string name;
  unsigned domain = 0;
  unsigned short language = 0;
  std::vector<CatalogueText> texts;
};

}  // namespace YResource
