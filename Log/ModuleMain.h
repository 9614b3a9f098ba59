#pragma once

#include <YBase/ModuleMainPtr.h>
#include <YBase/ReturnString.h>
#include <YBase/SmartPtrI.h>
#include <YLog/ConfigurationHook.h>
#include <YLog/Destination_DebugOutput.h>
#include <YLog/Destination_DiskFile.h>
#include <YLog/Destination_KafkaLog.h>
#include <YLog/Logger.h>

namespace YLog {

class MessageHeader;
class ThreadContext;

/// The one process-wide object: what the free functions of the public face forward to, and how the parts of
/// the library reach what they share.
///
/// Ownership: destroyed only through `gModuleMainPtr`, which knows the implementation.
///
/// Threads: any.
class ModuleMain {
 public:
  ModuleMain(const ModuleMain&) = delete;
  ModuleMain& operator=(const ModuleMain&) = delete;

  virtual void SetBasePath(const wchar_t* basePath) = 0;
  /// The folder that relative paths of new disk-file destinations are placed under.
  virtual YBase::ReturnWString GetBasePath() const = 0;
  virtual YBase::ReturnWString GetServerInstanceName() const = 0;
  virtual void SetServerInstanceName(const wchar_t* name) = 0;
  /// UTF-8; never changes.
  virtual const char* GetComputerName() const = 0;
  virtual void SetConfigurationHook(ConfigurationHook* hook) = 0;
  virtual YBase::SmartPtrI<ConfigurationHook> GetConfigurationHook() = 0;
  virtual void RefreshConfiguration() = 0;
  virtual YBase::SmartPtrI<Logger> GetLogger(const char* name, YSynch::EnumORBLockStackCategory category) = 0;
  virtual YBase::SmartPtrI<Destination> GetDestination_DebugOutput() = 0;
  virtual YBase::SmartPtrI<Destination> GetDestination_SystemLog() = 0;
  virtual YBase::SmartPtrI<Destination_DiskFile> GetDestination_DiskFile(const wchar_t* path) = 0;
  virtual YBase::SmartPtrI<Destination_KafkaLog> GetDestination_KafkaLog(const wchar_t* name) = 0;
  virtual void UpdateLogRegistryStr(const wchar_t* text) = 0;
  /// The calling thread's, made when the thread first asks for it.
  virtual ThreadContext* GetThreadContext() = 0;

  /// What `GetServerInstanceName` returns would cost each message a copy and a conversion to UTF-8.
  virtual void CopyServerInstanceNameTo(MessageHeader& header) const = 0;

 protected:
  ModuleMain() = default;
  ~ModuleMain() = default;
};

/// A header that says what `header` says, for a message that is logged while `header` is in use.
/// \pre `CreateMessageHeader` made `header`.
YBase::SmartPtrI<MessageHeader> CopyMessageHeader(const MessageHeader& header);

class ModuleMain_Impl;

extern YBase::ModuleMainPtr<ModuleMain, ModuleMain_Impl> gModuleMainPtr;

}  // namespace YLog
