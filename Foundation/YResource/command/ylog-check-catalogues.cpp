#include <YBase/TextConversion.h>
#include <YResource/FolderBundle.h>

#include <cstddef>
#include <cstdio>
#include <exception>

namespace {

constexpr const char* USAGE =
    "usage: ylog-check-catalogues FOLDER...\n"
    "Checks the message catalogues of each folder, and prints each fault as \"file:line: reason\".\n"
    "Exit status: 0 without a fault, 1 with one, 2 when called in another way.\n";

std::size_t PrintFaults(const char* folder) {
  const auto faults = YResource::CheckCatalogues(YBase::UTF8ToWideChar(folder).c_str());
  for (const auto& fault : faults) std::printf("%s\n", fault.c_str());
  return faults.size();
}

}  // namespace

int main(int argumentCount, char** arguments) try {
  if (argumentCount < 2 || arguments[1][0] == '-') {
    std::fputs(USAGE, stderr);
    return 2;
  }
  std::size_t faults = 0;
  for (int i = 1; i < argumentCount; ++i) faults += PrintFaults(arguments[i]);
  // A build that lost the report must not take it for none.
  if (std::fflush(stdout) != 0) return 2;
  return faults == 0 ? 0 : 1;
} catch (const std::exception& exception) {
  std::fprintf(stderr, "ylog-check-catalogues: %s\n", exception.what());
  return 2;
}
