#include "Module/ModuleMain_Impl.h"

#include <cassert>
#include <cstdlib>
#include <utility>

#include <YBase/ExceptionImpl.h>
#include <YBase/System.h>
#include <YBase/TextConversion.h>
#include <YFileSystem/Path.h>
#include <YLog/Exception.h>
#include <YLog/MessageHeader.h>

#include "Core/Logger_Impl.h"
#include "Core/UnderConfiguration.h"
#include "Destinations/Destination_KafkaLog_Impl.h"
#include "Module/BasePath.h"

namespace YLog {

ConfigurationHook::~ConfigurationHook() = default;

ModuleMain::ModuleMain()
    : mpServerInstanceNameLock(YSynch::CreateRWLock(YSynch::LOCK_STACK_CATEGORY_OBJECT)) {}

void ModuleMain::CopyServerInstanceNameTo(MessageHeader& header) const {
  const YSynch::RWLock::ReadSmartLock lock(*mpServerInstanceNameLock);
  header.SetServerInstanceName(mServerInstanceNameUTF8.c_str());
}

ModuleMain_Impl::ModuleMain_Impl()
    : mComputerName(YBase::WideCharToUTF8(YBase::GetComputerName().c_str())),
      mpLock(YSynch::CreateRWLock(YSynch::LOCK_STACK_CATEGORY_OBJECT)),
      mpDebugOutput(new Destination_DebugOutput_Impl),
      mpSystemLog(new Destination_SystemLog_Impl),
      mpThreadLocalStorage(YSynch::CreateThreadLocalStorage()),
      mThreadContext(*mpThreadLocalStorage) {
  mRegistrations.emplace();
  Join();
}

void ModuleMain_Impl::Stop() noexcept {
  Leave();
  mRegistrations.reset();
  mpThreadLocalStorage.reset();
  // Not with its last reference: whoever holds that may release it when another module has opened a
  // connection of its own, which would then be closed.
  mpSystemLog->Close();
}

void ModuleMain_Impl::AfterForkInChild() noexcept {
  if (ThreadContext_Impl* context = mThreadContext.GetIfPresent()) context->TakeOverAfterFork();
}

ThreadContext* ModuleMain_Impl::GetThreadContext() {
  return mThreadContext.Get();
}

const char* ModuleMain_Impl::GetComputerName() const {
  return mComputerName.c_str();
}

YBase::ReturnWString ModuleMain_Impl::GetServerInstanceName() const {
  const YSynch::RWLock::ReadSmartLock lock(*mpServerInstanceNameLock);
  return mServerInstanceName;
}

void ModuleMain_Impl::SetServerInstanceName(const wchar_t* name) {
  std::wstring wide = name != nullptr ? name : L"";
  std::string narrow = YBase::WideCharToUTF8(wide.c_str());
  {
    const YSynch::RWLock::WriteSmartLock lock(*mpServerInstanceNameLock);
    mServerInstanceName.swap(wide);
    mServerInstanceNameUTF8.swap(narrow);
  }
  Destination_KafkaLog_Impl::ComposeTopic(YBase::GetComputerName().c_str(), name);
}

void ModuleMain_Impl::SetConfigurationHook(ConfigurationHook* hook) {
  // Released when the lock is given back: the last release of a hook runs client code.
  YBase::SmartPtrI<ConfigurationHook> other;
  const YSynch::RWLock::WriteSmartLock lock(*mpLock);
  if (mpConfigurationHook == hook) return;
  other = std::exchange(mpConfigurationHook, YBase::SmartPtrI<ConfigurationHook>(hook));
}

YBase::SmartPtrI<ConfigurationHook> ModuleMain_Impl::GetConfigurationHook() {
  const YSynch::RWLock::ReadSmartLock lock(*mpLock);
  return mpConfigurationHook;
}

void ModuleMain_Impl::RefreshConfiguration() {
  const YBase::SmartPtrI<ConfigurationHook> hook = GetConfigurationHook();
  if (!hook) return;
  for (const YBase::SmartPtrI<Logger>& logger : GetLoggers()) {
    hook->ConfigureLogger(*logger);
    logger->RefreshConfiguration(*hook);
  }
}

std::vector<YBase::SmartPtrI<Logger>> ModuleMain_Impl::GetLoggers() const {
  std::vector<YBase::SmartPtrI<Logger>> loggers;
  const YSynch::RWLock::ReadSmartLock lock(*mpLock);
  loggers.reserve(mLoggers.size());
  for (const auto& entry : mLoggers) loggers.push_back(entry.second);
  return loggers;
}

YBase::SmartPtrI<Logger> ModuleMain_Impl::FindLogger(const std::string& name) const {
  const YSynch::RWLock::ReadSmartLock lock(*mpLock);
  const auto found = mLoggers.find(name);
  return found != mLoggers.end() ? found->second : nullptr;
}

YBase::SmartPtrI<Logger> ModuleMain_Impl::GetLogger(const char* name,
                                                    YSynch::EnumORBLockStackCategory category) {
  assert(name != nullptr);
  const std::string key = name != nullptr ? name : "";
  if (YBase::SmartPtrI<Logger> known = FindLogger(key)) return known;

  using Shown = UnderConfiguration<ModuleMain_Impl, const YBase::SmartPtrI<Logger>>;
  if (const YBase::SmartPtrI<Logger>* shown = Shown::Find(*this, key.c_str())) return *shown;

  const YBase::SmartPtrI<Logger> logger(new Logger_Impl(key.c_str(), category));
  if (const YBase::SmartPtrI<ConfigurationHook> hook = GetConfigurationHook()) {
    const Shown shown(*this, key.c_str(), logger);
    hook->ConfigureLogger(*logger);
  }

  const YSynch::RWLock::WriteSmartLock lock(*mpLock);
  return mLoggers.try_emplace(key, logger).first->second;
}

YBase::SmartPtrI<Destination> ModuleMain_Impl::GetDestination_DebugOutput() {
  return mpDebugOutput;
}

YBase::SmartPtrI<Destination> ModuleMain_Impl::GetDestination_SystemLog() {
  return mpSystemLog;
}

YBase::SmartPtrI<Destination_DiskFile> ModuleMain_Impl::GetDestination_DiskFile(const wchar_t* path) {
  try {
    return FindOrCreateDiskFile(path);
  } catch (const YBase::Message& failure) {
    const std::string text = "YLog::ModuleMain_Impl::GetDestination_DiskFile: Failed to create log file '" +
                             YBase::WideCharToUTF8(path) + "'. " +
                             YBase::WideCharToUTF8(failure.GetMessage().c_str());
    YLog::GetDestination_DebugOutput()->LogMessage(text.c_str());
    throw YBase::ExceptionImpl<Exception>(text.c_str());
  }
}

YBase::SmartPtrI<Destination_DiskFile> ModuleMain_Impl::FindOrCreateDiskFile(const wchar_t* path) {
  const std::wstring requestedPath = YFileSystem::Path::Combine(path, L"");
  const std::wstring fullPath = YFileSystem::Path::Combine(GetBasePath().c_str(), path);

  YBase::SmartPtrI<Destination_DiskFile_Impl> destination = FindDiskFile(fullPath);
  const bool isKnown = static_cast<bool>(destination);
  if (!isKnown) {
    destination =
        YBase::SmartPtrI<Destination_DiskFile_Impl>(new Destination_DiskFile_Impl(fullPath.c_str()));
  }

  const YSynch::RWLock::WriteSmartLock lock(*mpLock);
  const auto byFullPath = mDiskFilesByFullPath.try_emplace(fullPath, destination).first;
  const auto byRequestedPath = mDiskFilesByRequestedPath.try_emplace(requestedPath, byFullPath->second).first;
  return isKnown ? destination : byRequestedPath->second;
}

YBase::SmartPtrI<Destination_DiskFile_Impl> ModuleMain_Impl::FindDiskFile(
    const std::wstring& fullPath) const {
  const YSynch::RWLock::ReadSmartLock lock(*mpLock);
  const auto found = mDiskFilesByFullPath.find(fullPath);
  return found != mDiskFilesByFullPath.end() ? found->second : nullptr;
}

YBase::SmartPtrI<Destination_KafkaLog> ModuleMain_Impl::GetDestination_KafkaLog(const wchar_t* name) {
  if (name == nullptr) return nullptr;
  const std::wstring key = YFileSystem::Path::Combine(name, L"");
  if (YBase::SmartPtrI<Destination_KafkaLog> known = FindKafkaLog(key)) return known;

  const YBase::SmartPtrI<Destination_KafkaLog> destination(new Destination_KafkaLog_Impl(key.c_str()));
  const YSynch::RWLock::WriteSmartLock lock(*mpLock);
  return mKafkaLogs.try_emplace(key, destination).first->second;
}

YBase::SmartPtrI<Destination_KafkaLog> ModuleMain_Impl::FindKafkaLog(const std::wstring& name) const {
  const YSynch::RWLock::ReadSmartLock lock(*mpLock);
  const auto found = mKafkaLogs.find(name);
  return found != mKafkaLogs.end() ? found->second : nullptr;
}

void ModuleMain_Impl::UpdateLogRegistryStr(const wchar_t* text) {
  Destination_KafkaLog_Impl::UpdateLogRegistryStr(text);
}

YBase::ReturnWString ModuleMain_Impl::GetBasePath() const {
  const YSynch::RWLock::ReadSmartLock lock(*mpLock);
  // NOLINTNEXTLINE(concurrency-mt-unsafe): a host that has threads must not change its environment anyway.
  const char* home = std::getenv("HOME");
  if (home == nullptr) return mBasePath;
  return YBase::UTF8ToWideChar(GetContainerPath(home, YBase::GetExecutablePath()).c_str());
}

void ModuleMain_Impl::SetBasePath(const wchar_t* basePath) {
  const std::wstring newBasePath = basePath != nullptr ? basePath : L"";
  DiskFileRegistry moved;
  {
    const YSynch::RWLock::WriteSmartLock lock(*mpLock);
    if (newBasePath == mBasePath) return;
    moved = PlaceDiskFilesUnder(newBasePath);
    DiskFileRegistry registry = moved;
    mBasePath = newBasePath;
    mDiskFilesByFullPath.swap(registry);
  }
  for (const auto& [fullPath, destination] : moved) {
    try {
      destination->SetFilePath(fullPath.c_str());
    } catch (const YBase::Message&) {
      // The others are to be moved all the same.
    }
  }
}

ModuleMain_Impl::DiskFileRegistry ModuleMain_Impl::PlaceDiskFilesUnder(const std::wstring& basePath) const {
  DiskFileRegistry placed;
  for (const auto& [requestedPath, destination] : mDiskFilesByRequestedPath) {
    placed.try_emplace(YFileSystem::Path::Combine(basePath.c_str(), requestedPath.c_str()), destination);
  }
  return placed;
}

}  // namespace YLog
