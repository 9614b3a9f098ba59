#pragma once

#include <vector>

#include <YBase/ReturnString.h>
#include <YBase/SmartPtrI.h>
#include <YResource/Bundle.h>
#include <YResource/Export.h>

namespace YResource {

/// A catalogue that was read from a folder of JSON files, one for each locale. It never changes: to read the
/// files again, open another bundle and replace this one with it.
///
/// A text that is missing is looked for in other languages, as in a `MemoryBundle`.
///
/// Threads: any. Lookups read no file.
class YRESOURCE_EXPORT FolderBundle : public virtual Bundle {
 public:
  virtual unsigned GetDomain() const = 0;

 protected:
  ~FolderBundle() override;
};

/// Reads every catalogue of a folder: `orders.json` for the neutral texts, `orders.de-AT.json` and the like
/// for translations. A file may have at most 16 MiB and 100,000 texts, so that opening it does not hold up a
/// server.
///
/// Failure: if `CheckCatalogues` finds a fault in a folder, the whole folder is refused, by a
/// `YBase::ExceptionImpl<YBase::Message>` with all the faults. Bundles that were opened before stay as they
/// are.
YRESOURCE_EXPORT YBase::SmartPtrI<FolderBundle> OpenBundle(const wchar_t* folder);

/// The faults of the catalogues in a folder, in the order of files and lines. Each is one line, "file:line:
/// reason", without the line number if that is unknown. Empty for a folder that `OpenBundle` accepts.
///
/// Files must be complete, have the documented form and belong together, and translations must have the same
/// placeholders as the neutral text. A missing translation is not a fault.
///
/// Control characters and the like are shown as escapes, both in the names of files and in what they contain.
YRESOURCE_EXPORT std::vector<YBase::ReturnString> CheckCatalogues(const wchar_t* folder);

/// The same for a folder whose name is given in bytes, as the system has it; they need not be UTF-8.
YRESOURCE_EXPORT std::vector<YBase::ReturnString> CheckCatalogues(const char* folder);

}  // namespace YResource
