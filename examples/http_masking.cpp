// A request log without passwords: logs each line of its input, the body of a request, to requests.log, with
// the value of every "password" masked.

#include <exception>
#include <filesystem>
#include <iostream>
#include <string>

#include <YLog/YLog.h>

namespace {

/// Sends every message to requests.log in the current folder.
class Hook final : public YLog::ConfigurationHook, public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
  void ConfigureLogger(YLog::Logger&) override {}
  void ConfigureDispatcher(YBase::SmartPtrI<YLog::Dispatcher>& dispatcher, YLog::Logger&) override {
    const std::filesystem::path file = std::filesystem::current_path() / "requests.log";
    YDataType::ObjectCollection<YLog::Destination> destinations;
    destinations.Add(YLog::GetDestination_DiskFile(YBase::UTF8ToWideChar(file.c_str()).c_str()));
    dispatcher->SetDestinations(destinations);
  }
};

/// Masks both forms in which a password gets here: the JSON of the body, and the attribute of a command in
/// it.
std::string Mask(const std::string& request) {
  return YLog::ReplaceSensitiveMessage(YLog::ReplaceSensitiveMessageInHTTP(request.c_str()).c_str(),
                                       YLog::REST_TAG_PASSWORD, "***");
}

}  // namespace

int main() {
  try {
    const YLog::Initializer initializer;
    YLog::SetConfigurationHook(new Hook);
    const auto router = YLog::CreateRouter("Requests", "Info", YSynch::LOCK_STACK_CATEGORY_OBJECT);
    // Masked before it is logged: nothing that a destination gets to see holds a password.
    for (std::string request; std::getline(std::cin, request);) {
      YLog::LogString(*router, Mask(request).c_str());
    }
  } catch (const std::exception& failure) {
    std::cerr << "http_masking: " << failure.what() << '\n';
    return 1;
  }
}
