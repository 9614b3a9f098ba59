#pragma once

#include <optional>
#include <string>

#include <YBase/SmartPtrI.h>
#include <YBase/StrongPtr.h>
#include <YSynch/ForkParticipant.h>
#include <YSynch/RWLock.h>
#include <YSynch/ThreadContextPtr.h>
#include <YSynch/ThreadLocalStorage.h>

#include "Destinations/Destination_DebugOutput_Impl.h"
#include "Destinations/Destination_SystemLog_Impl.h"
#include "MessageModel/ThreadContext_Impl.h"
#include "Module/DiskFileRegistry.h"
#include "Module/ProcessRegistrations.h"
#include "Module/Registry.h"
#include "Module/ServerInstanceName.h"
#include "ModuleMain.h"

namespace YLog {

class ModuleMain_Impl final : public ModuleMain, private YSynch::ForkParticipant {
 public:
  ModuleMain_Impl();
  ~ModuleMain_Impl() override = default;

  /// Removes from the process the registrations, the contexts of all threads and the connection to the system
  /// log. Client objects are released by the destructor.
  void Stop() noexcept;

  void SetBasePath(const wchar_t* basePath) override { mDiskFiles.SetBasePath(basePath); }
  YBase::ReturnWString GetBasePath() const override { return mDiskFiles.GetBasePath(); }
  YBase::ReturnWString GetServerInstanceName() const override { return mServerInstanceName.Get(); }
  void SetServerInstanceName(const wchar_t* name) override;
  const char* GetComputerName() const override { return mComputerName.c_str(); }
  void SetConfigurationHook(ConfigurationHook* hook) override;
  YBase::SmartPtrI<ConfigurationHook> GetConfigurationHook() override;
  void RefreshConfiguration() override;
  YBase::SmartPtrI<Logger> GetLogger(const char* name, YSynch::EnumORBLockStackCategory category) override;
  YBase::SmartPtrI<Destination> GetDestination_DebugOutput() override { return mpDebugOutput; }
  YBase::SmartPtrI<Destination> GetDestination_SystemLog() override { return mpSystemLog; }
  YBase::SmartPtrI<Destination_DiskFile> GetDestination_DiskFile(const wchar_t* path) override;
  YBase::SmartPtrI<Destination_KafkaLog> GetDestination_KafkaLog(const wchar_t* name) override;
  void UpdateLogRegistryStr(const wchar_t* text) override;
  ThreadContext* GetThreadContext() override { return mThreadContext.Get(); }
  void CopyServerInstanceNameTo(MessageHeader& header) const override { mServerInstanceName.CopyTo(header); }

 private:
  void AfterForkInChild() noexcept override;

  ServerInstanceName mServerInstanceName;
  const std::string mComputerName;
  YSynch::RWLock mLock{YSynch::LOCK_STACK_CATEGORY_OBJECT};
  YBase::SmartPtrI<ConfigurationHook> mpConfigurationHook YSYNCH_GUARDED_BY(mLock);
  Registry<std::string, Logger> mLoggers;
  DiskFileRegistry mDiskFiles;
  Registry<std::wstring, Destination_KafkaLog> mKafkaLogs;
  const YBase::SmartPtrI<Destination_DebugOutput_Impl> mpDebugOutput;
  const YBase::SmartPtrI<Destination_SystemLog_Impl> mpSystemLog;
  // Null after the stop.
  YBase::StrongPtr<YSynch::ThreadLocalStorage> mpThreadLocalStorage;
  const YSynch::ThreadContextPtr<ThreadContext, ThreadContext_Impl> mThreadContext;
  // None after the stop.
  std::optional<ProcessRegistrations> mRegistrations;
};

}  // namespace YLog
