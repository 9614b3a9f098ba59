#include "FolderBundle_Impl.h"

#include <YBase/ExceptionImpl.h>
#include <YBase/Message.h>
#include <YBase/TextConversion.h>

#include <cassert>
#include <cstddef>
#include <string>
#include <utility>

#include "CatalogueFaults.h"
#include "CatalogueFolder.h"

namespace YResource {

namespace {

/// The first fault after the name of the function, the others on the lines below.
[[noreturn]] void ThrowFaults(const char* functionName, const std::vector<YBase::ReturnString>& faults) {
  YBase::Message message((std::string(functionName) + ": " + faults.front()).c_str());
  for (std::size_t i = 1; i < faults.size(); ++i) {
    message.AddLowerLevelMessage(YBase::Message(faults[i].c_str()));
  }
  throw YBase::ExceptionImpl<YBase::Message>(std::move(message));
}

}  // namespace

FolderBundle::~FolderBundle() = default;

FolderBundle_Impl::FolderBundle_Impl(const std::vector<Catalogue>& catalogues)
    : TableBundle(catalogues.front().domain) {
  for (const Catalogue& catalogue : catalogues) {
    for (const CatalogueText& text : catalogue.texts) Set(text.id, catalogue.language, text.text);
  }
}

YBase::SmartPtrI<FolderBundle> OpenBundle(const wchar_t* folder) {
  static constexpr const char* FUNCTION_NAME = "YResource::OpenBundle";
  assert(folder != nullptr);
  CatalogueFaults faults;
  const std::vector<Catalogue> catalogues = ReadCatalogueFolder(YBase::WideCharToUTF8(folder), faults);
  if (faults.GetCount() != 0) ThrowFaults(FUNCTION_NAME, faults.Take());
  return YBase::SmartPtrI<FolderBundle>(new FolderBundle_Impl(catalogues));
}

std::vector<YBase::ReturnString> CheckCatalogues(const wchar_t* folder) {
  assert(folder != nullptr);
  return CheckCatalogues(YBase::WideCharToUTF8(folder).c_str());
}

std::vector<YBase::ReturnString> CheckCatalogues(const char* folder) {
  assert(folder != nullptr);
  CatalogueFaults faults;
  ReadCatalogueFolder(folder, faults);
  return faults.Take();
}

}  // namespace YResource
