#include "Module/DiskFileRegistry.h"

#include <cstdlib>

#include <YBase/Message.h>
#include <YBase/NullText.h>
#include <YBase/System.h>
#include <YBase/TextConversion.h>
#include <YFileSystem/Path.h>

#include "Module/BasePath.h"

namespace YLog {

YBase::SmartPtrI<Destination_DiskFile> DiskFileRegistry::FindOrCreate(const wchar_t* path) {
  const std::wstring requestedPath = YFileSystem::Path::Combine(path, L"");
  const std::wstring fullPath = YFileSystem::Path::Combine(GetBasePath().c_str(), path);

  YBase::SmartPtrI<Destination_DiskFile_Impl> destination = Find(fullPath);
  const bool isKnown = static_cast<bool>(destination);
  if (!isKnown) {
    destination =
        YBase::SmartPtrI<Destination_DiskFile_Impl>(new Destination_DiskFile_Impl(fullPath.c_str()));
  }

  const YSynch::RWLock::WriteSmartLock lock(mLock);
  const auto byFullPath = mFilesByFullPath.try_emplace(fullPath, destination).first;
  const auto byRequestedPath = mFilesByRequestedPath.try_emplace(requestedPath, byFullPath->second).first;
  return isKnown ? destination : byRequestedPath->second;
}

YBase::SmartPtrI<Destination_DiskFile_Impl> DiskFileRegistry::Find(const std::wstring& fullPath) const {
  const YSynch::RWLock::ReadSmartLock lock(mLock);
  const auto found = mFilesByFullPath.find(fullPath);
  return found != mFilesByFullPath.end() ? found->second : nullptr;
}

YBase::ReturnWString DiskFileRegistry::GetBasePath() const {
  const YSynch::RWLock::ReadSmartLock lock(mLock);
  // NOLINTNEXTLINE(concurrency-mt-unsafe): a host that has threads must not change its environment anyway.
  const char* home = std::getenv("HOME");
  if (home == nullptr) return mBasePath;
  return YBase::UTF8ToWideChar(GetContainerPath(home, YBase::GetExecutablePath()).c_str());
}

void DiskFileRegistry::SetBasePath(const wchar_t* basePath) {
  const std::wstring newBasePath = YBase::EmptyIfNull(basePath);
  Files moved;
  {
    const YSynch::RWLock::WriteSmartLock lock(mLock);
    if (newBasePath == mBasePath) return;
    moved = PlaceUnder(newBasePath);
    Files files = moved;
    mBasePath = newBasePath;
    mFilesByFullPath.swap(files);
  }
  for (const auto& [fullPath, destination] : moved) {
    try {
      destination->SetFilePath(fullPath.c_str());
    } catch (const YBase::Message&) {
      // The others are moved nevertheless.
    }
  }
}

DiskFileRegistry::Files DiskFileRegistry::PlaceUnder(const std::wstring& basePath) const {
  Files placed;
  for (const auto& [requestedPath, destination] : mFilesByRequestedPath) {
    placed.try_emplace(YFileSystem::Path::Combine(basePath.c_str(), requestedPath.c_str()), destination);
  }
  return placed;
}

}  // namespace YLog
