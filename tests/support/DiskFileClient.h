#pragma once

#include <filesystem>

#include <YLog/YLog.h>
#include <YSynch/ReferenceCountedImpl.h>

namespace Support {

/// A client of the library that logs into one disk file: for as long as it lives, the library is started.
class DiskFileClient {
 public:
  struct Limits {
    unsigned long mSize = 2'000'000;
    unsigned long mBackups = 1;
  };

  explicit DiskFileClient(const std::filesystem::path& path) : DiskFileClient(path, Limits()) {}
  DiskFileClient(const std::filesystem::path& path, Limits limits)
      : mpFile(YLog::GetDestination_DiskFile(YBase::UTF8ToWideChar(path.c_str()).c_str())) {
    mpFile->SetMaximumFileSize(limits.mSize);
    mpFile->SetMaximumFileBackup(limits.mBackups);
    const YBase::SmartPtrI<Hook> hook(new Hook(mpFile));
    YLog::SetConfigurationHook(hook.Get());
    mpRouter = YLog::CreateRouter("Test", "Info", YSynch::LOCK_STACK_CATEGORY_OBJECT);
  }

  YLog::Router& Router() { return *mpRouter; }
  YLog::Destination_DiskFile& File() { return *mpFile; }
  void Log(const char* text) { YLog::LogString(*mpRouter, text); }

 private:
  class Hook final : public YLog::ConfigurationHook, public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
   public:
    explicit Hook(const YBase::SmartPtrI<YLog::Destination_DiskFile>& file) { mDestinations.Add(file); }
    void ConfigureLogger(YLog::Logger&) override {}
    void ConfigureDispatcher(YBase::SmartPtrI<YLog::Dispatcher>& dispatcher, YLog::Logger&) override {
      dispatcher->SetDestinations(mDestinations);
    }

   private:
    YDataType::ObjectCollection<YLog::Destination> mDestinations;
  };

  const YLog::Initializer mInitializer;
  YBase::SmartPtrI<YLog::Destination_DiskFile> mpFile;
  YBase::SmartPtrI<YLog::Router> mpRouter;
};

}  // namespace Support
