#include <filesystem>

#include <YLog/YLog.h>

// Decides where messages go: here, all of them go to one file.
class Hook final : public YLog::ConfigurationHook, public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
  void ConfigureLogger(YLog::Logger&) override {}
  void ConfigureDispatcher(YBase::SmartPtrI<YLog::Dispatcher>& dispatcher, YLog::Logger&) override {
    const std::filesystem::path file = std::filesystem::current_path() / "orders.log";
    YDataType::ObjectCollection<YLog::Destination> destinations;
    destinations.Add(YLog::GetDestination_DiskFile(YBase::UTF8ToWideChar(file.c_str()).c_str()));
    dispatcher->SetDestinations(destinations);
  }
};

int main() {
  const YLog::Initializer initializer;
  YLog::SetConfigurationHook(new Hook);

  const auto router = YLog::CreateRouter("Orders", "Info", YSynch::LOCK_STACK_CATEGORY_OBJECT);
  YLog::LogString(*router, "Ready");
  YLog::LogMessage(*router, "Order %1 took %2 ms", YLog::GetMessageFormatter() << 4711 << 12.5);
}
