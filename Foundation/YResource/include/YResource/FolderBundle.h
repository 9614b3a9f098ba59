#pragma once

#include <vector>

#include <YBase/ReturnString.h>
#include <YBase/SmartPtrI.h>
#include <YResource/Bundle.h>
#include <YResource/Export.h>

namespace YResource {

/// A catalogue that was read from a folder of JSON files, one for each locale. It never changes: to read it
/// anew, open another and put it in the place of this one.
///
/// Lookups fall back as those of `MemoryBundle` do.
///
/// Threads: any. Lookups touch no file.
class YRESOURCE_EXPORT FolderBundle : public virtual Bundle {
 public:
  virtual unsigned GetDomain() const = 0;

 protected:
  ~FolderBundle() override;
};

/// Reads every catalogue of a folder: `orders.json` for the neutral texts, `orders.de-AT.json` and the like
/// for translations. Each file has at most 16 MiB and 100,000 texts, so that opening it holds up no server.
///
/// Failure: a folder that `CheckCatalogues` finds fault with is refused as a whole, as
/// `YBase::ExceptionImpl<YBase::Message>` with all the faults; bundles that were opened before stay as they
/// are.
YRESOURCE_EXPORT YBase::SmartPtrI<FolderBundle> OpenBundle(const wchar_t* folder);

/// What is wrong with the catalogues of a folder, each fault as one line, "file:line: reason", without the
/// line where none is known, in the order of files and lines. Empty for a folder that `OpenBundle` takes.
///
/// Files must be whole and of the documented form, belong together, and translations must have the same
/// places for arguments as the neutral text. What is not translated is not a fault.
///
/// Control characters and the like, in names of files as in what they contain, are shown as escapes.
YRESOURCE_EXPORT std::vector<YBase::ReturnString> CheckCatalogues(const wchar_t* folder);

/// The same for a name as the system has it, which need not be UTF-8.
YRESOURCE_EXPORT std::vector<YBase::ReturnString> CheckCatalogues(const char* folder);

}  // namespace YResource
