// A backup server whose operators read different languages. Failures are shown in German in one file, in
// Brazilian Portuguese in another, and in English on standard error; everything else is in German, the
// server's own language.
//
//     localized_server examples/localized_server /var/log/backup
//
// The first folder contains the message catalogues, the second receives the log files.

#include <exception>
#include <filesystem>
#include <iostream>
#include <string>
#include <utility>

#include <YBase/FormatMessage.h>
#include <YLog/YLog.h>
#include <YResource/YResource.h>

namespace {

/// The number of the catalogue, and those of its texts.
constexpr unsigned DOMAIN = 4720;
enum MessageID : unsigned { READY = 1, SAVED, NO_USER, INCOMPLETE, NOT_COPIED, DISK_FULL, NEXT_ATTEMPT };

constexpr unsigned long STATUS_DISK_FULL = 28;

std::wstring Absolute(const std::filesystem::path& path) {
  return YBase::UTF8ToWideChar(std::filesystem::absolute(path).c_str());
}

/// Gives every logger the catalogue, and sends every message to three destinations of three languages.
class Hook final : public YLog::ConfigurationHook, public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
 public:
  Hook(YBase::SmartPtrI<YResource::Bundle> texts, std::filesystem::path folder)
      : mpTexts(std::move(texts)), mFolder(std::move(folder)) {}

  void ConfigureLogger(YLog::Logger& logger) override { logger.SetResourceBundle(mpTexts.Get()); }

  void ConfigureDispatcher(YBase::SmartPtrI<YLog::Dispatcher>& dispatcher, YLog::Logger&) override {
    YDataType::ObjectCollection<YLog::Destination> destinations;
    destinations.Add(FileIn("de"));
    destinations.Add(FileIn("pt-BR"));
    // Standard error keeps the language that a destination begins with, the neutral one: here, English.
    destinations.Add(YLog::GetDestination_DebugOutput());
    dispatcher->SetDestinations(destinations);
  }

 private:
  YBase::SmartPtrI<YLog::Destination> FileIn(const char* locale) const {
    const auto name = "server." + std::string(locale) + ".log";
    const auto file = YLog::GetDestination_DiskFile(Absolute(mFolder / name).c_str());
    file->SetLanguageID(YResource::GetLanguageID(locale));
    return file;
  }

  const YBase::SmartPtrI<YResource::Bundle> mpTexts;
  const std::filesystem::path mFolder;
};

/// A message without a text of its own: each destination finds it in the catalogue, in its language.
YBase::Message Known(MessageID id) {
  YBase::Message message;
  message.SetDomainAndID(DOMAIN, id);
  return message;
}

/// What failed and why, in three levels. Each message is a line of the record.
YBase::Message DescribeFailure(const char* volume) {
  YBase::Message reason = Known(NOT_COPIED);
  reason.AddLowerLevelMessage(Known(DISK_FULL));
  reason.AddLowerLevelMessage(YBase::Message(volume));  // Its own text, the same in all languages.

  YBase::Message failure = Known(INCOMPLETE);
  failure.AddLowerLevelMessage(std::move(reason));
  failure.AddLowerLevelMessage(Known(NEXT_ATTEMPT));
  return failure;
}

class Server {
 public:
  Server() { YLog::LogString(*mpInfo, READY); }

  /// Saves some files of a user, until the disk is full.
  unsigned long BackUp(const std::string& user) {
    // Logs when this function is entered, and when and with which return code it is left.
    YLog::ScopeGuard guard(*mpTrace, __func__, __FILE__, __LINE__);
    if (user != "ana") {
      YLog::LogMessageAndThrowBaseException(*mpError, NO_USER, YLog::GetMessageFormatter() << user);
    }

    // A manipulator determines how the numbers after it are shown. The default at the end is for a catalogue
    // that has no such text.
    YLog::LogMessage(*mpInfo, SAVED,
                     YLog::GetMessageFormatter() << user << 1024 << YLog::Format::WideHex << STATUS_DISK_FULL,
                     "%1: %2 files saved, status %3");

    // As the message is not constant, the texts that were found for the destinations are stored in it. The
    // user is shown those of one of them.
    YBase::Message failure = DescribeFailure("/srv/photos");
    mpError->LogMessage(failure);
    std::cout << "To " << user << ": " << YBase::FormatMessage(failure, YResource::GetLanguageID("pt-BR"))
              << '\n';

    guard.SetReturnCode(STATUS_DISK_FULL, __LINE__);
    return STATUS_DISK_FULL;
  }

 private:
  static YBase::SmartPtrI<YLog::Router> CreateRouter(const char* dispatcher) {
    return YLog::CreateRouter("Backup", dispatcher, YSynch::LOCK_STACK_CATEGORY_OBJECT);
  }

  const YBase::SmartPtrI<YLog::Router> mpInfo = CreateRouter("Info");
  const YBase::SmartPtrI<YLog::Router> mpError = CreateRouter("Error");
  const YBase::SmartPtrI<YLog::Router> mpTrace = CreateRouter("Trace");
};

/// What a client of the server does with a refusal, which is a `std::exception` as well.
void AskForBackup(Server& server, const char* user) {
  try {
    server.BackUp(user);
  } catch (const YBase::ExceptionImpl<YBase::Message>& refusal) {
    std::cout << "To " << user << ": domain " << refusal.GetDomain() << ", ID " << refusal.GetID() << ", "
              << refusal.what() << '\n';
  }
}

void Run(const char* catalogues, const char* logs) {
  const YLog::Initializer initializer;
  // A message by ID becomes text once, in the language of the process, whatever the languages of the
  // destinations are. Without this line, that is the language of the environment.
  YResource::SetProcessLanguageID(YResource::GetLanguageID("de"));

  const auto texts = YResource::OpenBundle(Absolute(catalogues).c_str());
  YResource::RegisterBundle(texts->GetDomain(), texts);  // For structured messages.
  YLog::SetConfigurationHook(new Hook(texts, logs));     // For messages by ID.

  Server server;
  AskForBackup(server, "ana");
  AskForBackup(server, "mallory");
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: localized_server CATALOGUES LOGS\n";
    return 2;
  }
  try {
    Run(argv[1], argv[2]);
  } catch (const std::exception& failure) {
    std::cerr << "localized_server: " << failure.what() << '\n';
    return 1;
  }
}
