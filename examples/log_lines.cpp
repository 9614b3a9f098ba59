// Logs each line of its input as one record of one size-limited file, from several threads and processes, and
// then counts the records that it finds in the file and its backups:
//
//     log_lines --threads 4 --processes 2 --limit 100000 --backups 9 --file server.log input.txt

#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <vector>

#include <YLog/YLog.h>

namespace {

constexpr const char* USAGE =
    "usage: log_lines [--threads N] [--processes N] [--limit BYTES] [--backups N] --file PATH [INPUT...]\n"
    "Logs each line of the inputs, or of standard input, as one record of the file PATH.\n";

struct Options {
  std::filesystem::path mFile;
  unsigned long mLimit = 2'000'000;
  unsigned long mBackups = 1;
  unsigned long mThreads = 1;
  unsigned long mProcesses = 1;
  std::vector<std::string> mInputs;
};

class UsageError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Sends every message of every logger to the one file.
class Hook final : public YLog::ConfigurationHook, public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
 public:
  explicit Hook(const Options& options) : mOptions(options) {}

  void ConfigureLogger(YLog::Logger&) override {}
  void ConfigureDispatcher(YBase::SmartPtrI<YLog::Dispatcher>& dispatcher, YLog::Logger&) override {
    const auto file = YLog::GetDestination_DiskFile(YBase::UTF8ToWideChar(mOptions.mFile.c_str()).c_str());
    file->SetMaximumFileSize(mOptions.mLimit);
    file->SetMaximumFileBackup(mOptions.mBackups);

    YDataType::ObjectCollection<YLog::Destination> destinations;
    destinations.Add(file);
    dispatcher->SetDestinations(destinations);
  }

 private:
  const Options& mOptions;
};

using Lines = std::vector<std::string>;

/// Logs every `step`-th line, beginning with number `first`.
void LogShare(YLog::Router& router, const Lines& lines, std::size_t first, std::size_t step) {
  for (std::size_t i = first; i < lines.size(); i += step) YLog::LogString(router, lines[i].c_str());
}

/// Logs the share of one process: threads of all processes take turns at the lines.
void LogFromThreads(const Options& options, const Lines& lines, unsigned long process) {
  const YLog::Initializer initializer;
  YLog::SetConfigurationHook(new Hook(options));
  const auto router = YLog::CreateRouter("log_lines", "Info", YSynch::LOCK_STACK_CATEGORY_OBJECT);

  std::vector<std::jthread> threads;
  for (unsigned long i = 0; i < options.mThreads; ++i) {
    const unsigned long first = process * options.mThreads + i;
    threads.emplace_back(
        [&, first] { LogShare(*router, lines, first, options.mThreads * options.mProcesses); });
  }
}

/// Exits without the exit handlers and open streams that the child has inherited from its parent.
[[noreturn]] void RunChild(const Options& options, const Lines& lines, unsigned long process) {
  try {
    LogFromThreads(options, lines, process);
    std::_Exit(EXIT_SUCCESS);
  } catch (const std::exception& failure) {
    std::cerr << "log_lines: " << failure.what() << std::endl;
    std::_Exit(EXIT_FAILURE);
  }
}

pid_t StartChild(const Options& options, const Lines& lines, unsigned long process) {
  const pid_t child = fork();
  if (child < 0) throw std::system_error(errno, std::generic_category(), "fork");
  if (child == 0) RunChild(options, lines, process);
  return child;
}

void WaitFor(pid_t child) {
  int status = 0;
  if (waitpid(child, &status, 0) != child || status != 0) throw std::runtime_error("a process failed");
}

/// Each process starts the library itself, after the fork. Returns the numbers of the processes.
std::set<pid_t> LogFromProcesses(const Options& options, const Lines& lines) {
  if (options.mProcesses == 1) {
    LogFromThreads(options, lines, 0);
    return {getpid()};
  }
  std::set<pid_t> children;
  for (unsigned long i = 0; i < options.mProcesses; ++i) children.insert(StartChild(options, lines, i));
  for (const pid_t child : children) WaitFor(child);
  return children;
}

std::size_t CountRecords(const std::filesystem::path& file, const std::set<pid_t>& processes) {
  const auto header = YLog::CreateMessageHeader();
  std::ifstream input(file, std::ios::binary);
  std::size_t count = 0;
  for (std::string line; std::getline(input, line);) {
    const bool isRecord = header->FromString(line.c_str()) != 0;
    if (isRecord && processes.contains(static_cast<pid_t>(header->GetProcessID()))) ++count;
  }
  return count;
}

/// How many records of these processes were written, except those deleted with the oldest backup.
std::size_t CountRecordsInAllFiles(const std::filesystem::path& file, const std::set<pid_t>& processes) {
  const std::string name = file.filename();
  std::size_t count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(file.parent_path())) {
    const std::string other = entry.path().filename();
    if (other == name || other.starts_with(name + ".bak")) count += CountRecords(entry.path(), processes);
  }
  return count;
}

void ReadLines(std::istream& input, Lines& lines) {
  for (std::string line; std::getline(input, line);) {
    while (line.ends_with('\r')) line.pop_back();
    lines.push_back(line);
  }
}

Lines ReadInputs(const std::vector<std::string>& paths) {
  Lines lines;
  if (paths.empty()) ReadLines(std::cin, lines);
  for (const std::string& path : paths) {
    std::ifstream file(path, std::ios::binary);
    if (!file) throw std::system_error(errno, std::generic_category(), path);
    ReadLines(file, lines);
  }
  return lines;
}

unsigned long ParseNumber(std::string_view option, std::string_view text, unsigned long smallest) {
  unsigned long number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const bool isNumber = error == std::errc() && end == text.data() + text.size();
  if (!isNumber || number < smallest)
    throw UsageError(std::string(option) + " does not accept '" + std::string(text) + "'");
  return number;
}

void SetOption(Options& options, std::string_view option, const char* value) {
  if (value == nullptr) throw UsageError(std::string(option) + " needs a value");
  if (option == "--file") {
    options.mFile = std::filesystem::absolute(value);
  } else if (option == "--limit") {
    options.mLimit = ParseNumber(option, value, 0);
  } else if (option == "--backups") {
    options.mBackups = ParseNumber(option, value, 0);
  } else if (option == "--threads") {
    options.mThreads = ParseNumber(option, value, 1);
  } else if (option == "--processes") {
    options.mProcesses = ParseNumber(option, value, 1);
  } else {
    throw UsageError("unknown option " + std::string(option));
  }
}

Options ParseCommandLine(char** arguments) {
  Options options;
  for (char** argument = arguments; *argument != nullptr; ++argument) {
    const std::string_view text = *argument;
    if (text.starts_with("--")) {
      SetOption(options, text, argument[1]);
      ++argument;
    } else {
      options.mInputs.emplace_back(text);
    }
  }
  if (options.mFile.empty()) throw UsageError("--file is missing");
  return options;
}

}  // namespace

int main(int, char** argv) {
  try {
    const Options options = ParseCommandLine(argv + 1);
    const Lines lines = ReadInputs(options.mInputs);
    const std::set<pid_t> processes = LogFromProcesses(options, lines);
    // The logging functions do not say whether a file could be written.
    const std::size_t found = CountRecordsInAllFiles(options.mFile, processes);
    std::cout << lines.size() << " lines read, " << found << " records found in the file and its backups\n";
    return found == 0 && !lines.empty() ? EXIT_FAILURE : EXIT_SUCCESS;
  } catch (const UsageError& failure) {
    std::cerr << "log_lines: " << failure.what() << '\n' << USAGE;
    return 2;
  } catch (const std::exception& failure) {
    std::cerr << "log_lines: " << failure.what() << '\n';
    return EXIT_FAILURE;
  }
}
