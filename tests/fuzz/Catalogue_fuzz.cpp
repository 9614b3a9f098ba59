#include "Foundation/YResource/src/CatalogueFaults.h"
#include "Foundation/YResource/src/CatalogueReader.h"
#include "Foundation/YResource/src/Placeholder.h"
#include "Require.h"

#include <YBase/TextConversion.h>

#include <cstddef>
#include <cstdint>
#include <string>

// The input is the content of a catalogue file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  YResource::CatalogueFaults faults;
  const std::string path = "orders.de.json";
  const auto catalogue = YResource::ReadCatalogue(path, text, faults);
  Fuzz::Require(catalogue.has_value() == (faults.GetCount() == 0),
                "a catalogue is refused if it has a fault, and only then");
  if (!catalogue) return 0;
  Fuzz::Require(catalogue->domain != 0 && catalogue->language == 0x0007,
                "an accepted catalogue has a domain and a language");
  for (const YResource::CatalogueText& entry : catalogue->texts) {
    Fuzz::Require(entry.id != 0 && !entry.text.empty() && entry.line > 0, "each text is complete");
    const std::string whole = YBase::WideCharToUTF8(YBase::UTF8ToWideChar(entry.text.c_str()).c_str());
    Fuzz::Require(whole == entry.text, "each text is valid UTF-8");
    Fuzz::Require(YResource::FindPlaceholders(entry.text).count(0) == 0, "placeholders count from 1");
  }
  return 0;
}
