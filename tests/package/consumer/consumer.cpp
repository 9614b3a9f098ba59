// A client's program that uses only the installed library: it logs one record to a file, reads it back, and
// catches what the library throws.

#include <unistd.h>

#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <YLog/YLog.h>

namespace {

const std::filesystem::path LOG_FILE =
    std::filesystem::temp_directory_path() / ("ylog-consumer-" + std::to_string(getpid())) / "server.log";

class Hook final : public YLog::ConfigurationHook, public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
  void ConfigureLogger(YLog::Logger&) override {}
  void ConfigureDispatcher(YBase::SmartPtrI<YLog::Dispatcher>& dispatcher, YLog::Logger&) override {
    YDataType::ObjectCollection<YLog::Destination> destinations;
    destinations.Add(YLog::GetDestination_DiskFile(LOG_FILE.wstring().c_str()));
    dispatcher->SetDestinations(destinations);
  }
};

bool Check(bool holds, const char* what) {
  if (!holds) std::fprintf(stderr, "failed: %s\n", what);
  return holds;
}

bool RecordIsThereWhenTheCallReturns() {
  YLog::SetConfigurationHook(new Hook);
  const auto router = YLog::CreateRouter("Consumer", "Info", YSynch::LOCK_STACK_CATEGORY_OBJECT);
  YLog::LogMessage(*router, "%1 orders", YLog::GetMessageFormatter() << 12);

  std::ifstream file(LOG_FILE, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  return Check(text.find("\xEF\xBB\xBF# ") == 0, "the file begins with its head") &&
         Check(text.find("][Consumer][Info][UID:0]") != std::string::npos, "the record has its header") &&
         Check(text.ends_with("] 12 orders\n"), "the record ends with its text");
}

// The type information of the exception must be the same in the library and here.
template <class Exception>
bool RefusalIsCaughtAs(const char* type) {
  const std::wstring tooLong = L"/tmp/" + std::wstring(10'000, L'x');
  try {
    YLog::GetDestination_DiskFile(tooLong.c_str());
  } catch (const Exception&) {
    return true;
  }
  return Check(false, type);
}

}  // namespace

int main() {
  const YLog::Initializer initializer;
  const bool holds = RecordIsThereWhenTheCallReturns() &&
                     RefusalIsCaughtAs<YLog::Exception>("what is thrown is a YLog::Exception") &&
                     RefusalIsCaughtAs<std::exception>("what is thrown is a std::exception");
  std::filesystem::remove_all(LOG_FILE.parent_path());
  return holds ? 0 : 1;
}
