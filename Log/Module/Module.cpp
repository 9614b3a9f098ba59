#include <YLog/Destination_SystemLog.h>
#include <YLog/Module.h>

#include "ModuleMain.h"

namespace YLog {

void SetConfigurationHook(ConfigurationHook* hook) {
  gModuleMainPtr->SetConfigurationHook(hook);
}

YBase::SmartPtrI<ConfigurationHook> GetConfigurationHook() {
  return gModuleMainPtr->GetConfigurationHook();
}

void RefreshConfiguration() {
  gModuleMainPtr->RefreshConfiguration();
}

void SetBasePath(const wchar_t* basePath) {
  gModuleMainPtr->SetBasePath(basePath);
}

YBase::ReturnWString GetServerInstanceName() {
  return gModuleMainPtr->GetServerInstanceName();
}

void SetServerInstanceName(const wchar_t* name) {
  gModuleMainPtr->SetServerInstanceName(name);
}

YBase::SmartPtrI<Logger> GetLogger(const char* name, YSynch::EnumORBLockStackCategory category) {
  return gModuleMainPtr->GetLogger(name, category);
}

YBase::SmartPtrI<Destination_DiskFile> GetDestination_DiskFile(const wchar_t* path) {
  return gModuleMainPtr->GetDestination_DiskFile(path);
}

YBase::SmartPtrI<Destination_DebugOutput> GetDestination_DebugOutput() {
  // The module's operation returns the base interface, but the object is always of this kind.
  const YBase::SmartPtrI<Destination> destination = gModuleMainPtr->GetDestination_DebugOutput();
  return YBase::SmartPtrI<Destination_DebugOutput>(dynamic_cast<Destination_DebugOutput*>(destination.Get()));
}

YBase::SmartPtrI<Destination_SystemLog> GetDestination_SystemLog() {
  const YBase::SmartPtrI<Destination> destination = gModuleMainPtr->GetDestination_SystemLog();
  return YBase::SmartPtrI<Destination_SystemLog>(dynamic_cast<Destination_SystemLog*>(destination.Get()));
}

YBase::SmartPtrI<Destination_KafkaLog> GetDestination_KafkaLog(const wchar_t* name) {
  return gModuleMainPtr->GetDestination_KafkaLog(name);
}

void UpdateLogRegistryStr(const wchar_t* text) {
  gModuleMainPtr->UpdateLogRegistryStr(text);
}

}  // namespace YLog
