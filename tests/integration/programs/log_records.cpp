// Logs WARM_UP and then COUNT records into one disk file, and acknowledges each of them on standard output.
// Harmless system calls before and after the last COUNT records mark them in a trace.
//
//     log_records PATH LIMIT BACKUPS WARM_UP COUNT TEXT [quiet]

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "support/DiskFileClient.h"

namespace {

void Acknowledge(int number) {
  char line[16];
  const int length = std::snprintf(line, sizeof line, "%d\n", number);
  if (write(STDOUT_FILENO, line, static_cast<std::size_t>(length)) != length) _exit(2);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 7) return 1;
  const Support::DiskFileClient::Limits limits{.mSize = std::strtoul(argv[2], nullptr, 10),
                                               .mBackups = std::strtoul(argv[3], nullptr, 10)};
  const int warmUp = std::atoi(argv[4]);
  const int count = std::atoi(argv[5]);
  const std::string text = argv[6];
  const bool quiet = argc > 7;
  Support::DiskFileClient client(argv[1], limits);
  for (int number = 0; number < warmUp + count; ++number) {
    if (number == warmUp) getppid();
    client.Log((text + " " + std::to_string(number) + " " + std::string(100, 'x') + " end").c_str());
    if (!quiet) Acknowledge(number);
  }
  getppid();
  return 0;
}
