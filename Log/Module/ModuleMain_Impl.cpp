#include "Module/ModuleMain_Impl.h"

#include <cassert>
#include <utility>

#include <YBase/ExceptionImpl.h>
#include <YBase/NullText.h>
#include <YBase/System.h>
#include <YBase/TextConversion.h>
#include <YFileSystem/Path.h>
#include <YLog/Exception.h>

#include "Core/Logger_Impl.h"
#include "Core/UnderConfiguration.h"
#include "Destinations/Destination_KafkaLog_Impl.h"

namespace YLog {

ConfigurationHook::~ConfigurationHook() = default;

ModuleMain_Impl::ModuleMain_Impl()
    : mComputerName(YBase::WideCharToUTF8(YBase::GetComputerName().c_str())),
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
  // Not left to its destructor: a client may release the last reference after the library was started again,
  // and that would close the new connection.
  mpSystemLog->Close();
}

void ModuleMain_Impl::AfterForkInChild() noexcept {
  if (ThreadContext_Impl* context = mThreadContext.GetIfPresent()) context->TakeOverAfterFork();
}

void ModuleMain_Impl::SetServerInstanceName(const wchar_t* name) {
  mServerInstanceName.Set(name);
  Destination_KafkaLog_Impl::ComposeTopic(YBase::GetComputerName().c_str(), name);
}

void ModuleMain_Impl::SetConfigurationHook(ConfigurationHook* hook) {
  // Declared before the lock, so that it is released after the lock: the last release of a hook runs client
  // code.
  YBase::SmartPtrI<ConfigurationHook> other;
  const YSynch::RWLock::WriteSmartLock lock(mLock);
  if (mpConfigurationHook == hook) return;
  other = std::exchange(mpConfigurationHook, YBase::SmartPtrI<ConfigurationHook>(hook));
}

YBase::SmartPtrI<ConfigurationHook> ModuleMain_Impl::GetConfigurationHook() {
  const YSynch::RWLock::ReadSmartLock lock(mLock);
  return mpConfigurationHook;
}

void ModuleMain_Impl::RefreshConfiguration() {
  const YBase::SmartPtrI<ConfigurationHook> hook = GetConfigurationHook();
  if (!hook) return;
  for (const YBase::SmartPtrI<Logger>& logger : mLoggers.GetAll()) {
    hook->ConfigureLogger(*logger);
    logger->RefreshConfiguration(*hook);
  }
}

YBase::SmartPtrI<Logger> ModuleMain_Impl::GetLogger(const char* name,
                                                    YSynch::EnumORBLockStackCategory category) {
  assert(name != nullptr);
  const std::string key = YBase::EmptyIfNull(name);
  if (YBase::SmartPtrI<Logger> known = mLoggers.Find(key)) return known;

  using Shown = UnderConfiguration<ModuleMain_Impl, const YBase::SmartPtrI<Logger>>;
  if (const YBase::SmartPtrI<Logger>* shown = Shown::Find(*this, key.c_str())) return *shown;

  const YBase::SmartPtrI<Logger> logger(new Logger_Impl(key.c_str(), category));
  if (const YBase::SmartPtrI<ConfigurationHook> hook = GetConfigurationHook()) {
    const Shown shown(*this, key.c_str(), logger);
    hook->ConfigureLogger(*logger);
  }
  return mLoggers.Insert(key, logger);
}

YBase::SmartPtrI<Destination_DiskFile> ModuleMain_Impl::GetDestination_DiskFile(const wchar_t* path) {
  try {
    return mDiskFiles.FindOrCreate(path);
  } catch (const YBase::Message& failure) {
    const std::string text = "YLog::ModuleMain_Impl::GetDestination_DiskFile: Failed to create log file '" +
                             YBase::WideCharToUTF8(path) + "'. " +
                             YBase::WideCharToUTF8(failure.GetMessage().c_str());
    YLog::GetDestination_DebugOutput()->LogMessage(text.c_str());
    throw YBase::ExceptionImpl<Exception>(text.c_str());
  }
}

YBase::SmartPtrI<Destination_KafkaLog> ModuleMain_Impl::GetDestination_KafkaLog(const wchar_t* name) {
  if (name == nullptr) return nullptr;
  const std::wstring key = YFileSystem::Path::Combine(name, L"");
  if (YBase::SmartPtrI<Destination_KafkaLog> known = mKafkaLogs.Find(key)) return known;
  return mKafkaLogs.Insert(
      key, YBase::SmartPtrI<Destination_KafkaLog>(new Destination_KafkaLog_Impl(key.c_str())));
}

void ModuleMain_Impl::UpdateLogRegistryStr(const wchar_t* text) {
  Destination_KafkaLog_Impl::UpdateLogRegistryStr(text);
}

}  // namespace YLog
