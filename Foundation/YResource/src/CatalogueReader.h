#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>

#include "Catalogue.h"
#include "LineIndex.h"

namespace Json {
class Value;
}

namespace YResource {

class CatalogueFaults;

/// Reads the text of one catalogue file.
class CatalogueReader {
 public:
  /// `text` is the content of the file at `path`. Both must outlive the reader.
  CatalogueReader(const std::string& path, const std::string& text, CatalogueFaults& faults);

  /// None where there is a fault. All faults of one file are found, unless it cannot be parsed at all.
  std::optional<Catalogue> Read();

 private:
  bool Parse(Json::Value& root);
  void ReadMembers(const Json::Value& root);
  void ReadDomain(const Json::Value& value);
  void ReadLocale(const Json::Value& value);
  void ReadTexts(const Json::Value& value);
  void ReadText(const std::string& key, const Json::Value& value);

  std::size_t GetLine(const Json::Value& value) const;
  void AddFault(const Json::Value& value, const std::string& reason);

  const std::string& mPath;
  const std::string& mText;
  CatalogueFaults& mFaults;
  const LineIndex mLines;
  Catalogue mCatalogue;
  // The locale that the name of the file gives.
  std::string mLocale;
  // Where each ID stands; also tells those that are there twice, in different spellings.
  std::map<unsigned, std::size_t> mLinesOfIDs;
};

}  // namespace YResource
