#include <YResource/FolderBundle.h>
#include <getopt.h>

#include <cstddef>
#include <cstdio>
#include <exception>

namespace {

constexpr const char* USAGE =
    "usage: ylog-check-catalogues FOLDER...\n"
    "Checks the message catalogues of each folder, and prints each fault as \"file:line: reason\".\n"
    "\n"
    "  --help     prints this text\n"
    "  --version  prints the version\n"
    "\n"
    "Exit status: 0 without a fault, 1 with one, 2 for a mistake in the call or output that is lost.\n";

constexpr option OPTIONS[] = {
    {"help", no_argument, nullptr, 'h'}, {"version", no_argument, nullptr, 'v'}, {nullptr, 0, nullptr, 0}};

std::size_t PrintFaults(const char* folder) {
  const auto faults = YResource::CheckCatalogues(folder);
  for (const auto& fault : faults) std::printf("%s\n", fault.c_str());
  return faults.size();
}

int Refuse() {
  std::fputs(USAGE, stderr);
  return 2;
}

int Run(int argumentCount, char** arguments) {
  // `getopt_long` moves the folders after the options and reports an unknown option itself.
  // NOLINTNEXTLINE(concurrency-mt-unsafe): there is one thread.
  switch (getopt_long(argumentCount, arguments, "", OPTIONS, nullptr)) {
    case 'h':
      std::fputs(USAGE, stdout);
      return 0;
    case 'v':
      std::puts("ylog-check-catalogues " YLOG_VERSION);
      return 0;
    case -1:
      break;
    default:
      return Refuse();
  }
  if (optind == argumentCount) return Refuse();
  std::size_t faults = 0;
  for (int i = optind; i < argumentCount; ++i) faults += PrintFaults(arguments[i]);
  return faults == 0 ? 0 : 1;
}

}  // namespace

int main(int argumentCount, char** arguments) try {
  const int status = Run(argumentCount, arguments);
  // If the report could not be written, the build must not take that for success.
  return std::fflush(stdout) == 0 ? status : 2;
} catch (const std::exception& exception) {
  std::fprintf(stderr, "ylog-check-catalogues: %s\n", exception.what());
  return 2;
}
