#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include <YBase/SmartPtrI.h>
#include <YBase/StrongPtr.h>
#include <YSynch/ForkParticipant.h>
#include <YSynch/RWLock.h>
#include <YSynch/ThreadContextPtr.h>
#include <YSynch/ThreadLocalStorage.h>

#include "Destinations/Destination_DebugOutput_Impl.h"
#include "Destinations/Destination_DiskFile_Impl.h"
#include "Destinations/Destination_SystemLog_Impl.h"
#include "MessageModel/ThreadContext_Impl.h"
#include "Module/ProcessRegistrations.h"
#include "ModuleMain.h"

namespace YLog {

/// Registries follow one pattern: look up under the read lock, build with no lock held, insert under the
/// write lock only if the key is still absent. The first insertion wins; the loser's object goes when its
/// builder lets it go.
class ModuleMain_Impl final : public ModuleMain, private YSynch::ForkParticipant {
 public:
  ModuleMain_Impl();
  ~ModuleMain_Impl() override = default;

  /// Withdraws from the process: registrations, the contexts of all threads, the connection to the system
  /// log. What may be the client's, or release something of the client's, is left to the destructor.
  void Stop() noexcept;

  void SetBasePath(const wchar_t* basePath) override;
  YBase::ReturnWString GetBasePath() const override;
  YBase::ReturnWString GetServerInstanceName() const override;
  void SetServerInstanceName(const wchar_t* name) override;
  const char* GetComputerName() const override;
  void SetConfigurationHook(ConfigurationHook* hook) override;
  YBase::SmartPtrI<ConfigurationHook> GetConfigurationHook() override;
  void RefreshConfiguration() override;
  YBase::SmartPtrI<Logger> GetLogger(const char* name, YSynch::EnumORBLockStackCategory category) override;
  YBase::SmartPtrI<Destination> GetDestination_DebugOutput() override;
  YBase::SmartPtrI<Destination> GetDestination_SystemLog() override;
  YBase::SmartPtrI<Destination_DiskFile> GetDestination_DiskFile(const wchar_t* path) override;
  YBase::SmartPtrI<Destination_KafkaLog> GetDestination_KafkaLog(const wchar_t* name) override;
  void UpdateLogRegistryStr(const wchar_t* text) override;
  ThreadContext* GetThreadContext() override;

 private:
  using DiskFileRegistry = std::map<std::wstring, YBase::SmartPtrI<Destination_DiskFile_Impl>>;

  void AfterForkInChild() noexcept override;

  YBase::SmartPtrI<Logger> FindLogger(const std::string& name) const;
  std::vector<YBase::SmartPtrI<Logger>> GetLoggers() const;

  YBase::SmartPtrI<Destination_DiskFile> FindOrCreateDiskFile(const wchar_t* path);
  YBase::SmartPtrI<Destination_DiskFile_Impl> FindDiskFile(const std::wstring& fullPath) const;
  YBase::SmartPtrI<Destination_KafkaLog> FindKafkaLog(const std::wstring& name) const;

  DiskFileRegistry PlaceDiskFilesUnder(const std::wstring& basePath) const YSYNCH_REQUIRES(*mpLock);

  std::wstring mBasePath YSYNCH_GUARDED_BY(*mpLock);
  std::wstring mServerInstanceName YSYNCH_GUARDED_BY(*mpServerInstanceNameLock);
  const std::string mComputerName;
  YBase::SmartPtrI<ConfigurationHook> mpConfigurationHook YSYNCH_GUARDED_BY(*mpLock);
  const YBase::StrongPtr<YSynch::RWLock> mpLock;
  std::map<std::string, YBase::SmartPtrI<Logger>> mLoggers YSYNCH_GUARDED_BY(*mpLock);
  DiskFileRegistry mDiskFilesByRequestedPath YSYNCH_GUARDED_BY(*mpLock);
  DiskFileRegistry mDiskFilesByFullPath YSYNCH_GUARDED_BY(*mpLock);
  std::map<std::wstring, YBase::SmartPtrI<Destination_KafkaLog>> mKafkaLogs YSYNCH_GUARDED_BY(*mpLock);
  const YBase::SmartPtrI<Destination_DebugOutput_Impl> mpDebugOutput;
  const YBase::SmartPtrI<Destination_SystemLog_Impl> mpSystemLog;
  // Null once it is stopped.
  YBase::StrongPtr<YSynch::ThreadLocalStorage> mpThreadLocalStorage;
  const YSynch::ThreadContextPtr<ThreadContext, ThreadContext_Impl> mThreadContext;
  // None once it is stopped.
  std::optional<ProcessRegistrations> mRegistrations;
};

}  // namespace YLog
