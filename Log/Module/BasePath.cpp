#include "Module/BasePath.h"

namespace YLog {

namespace {

constexpr std::string_view ATELIER_EXECUTABLE = "Vellatorquine Atelier";
constexpr const char* ATELIER_CONTAINER = "/Library/Containers/com.vellatorquine.Atelier.FolioComposer/Data";
constexpr const char* OBSERVATORY_CONTAINER =
    "/Library/Containers/com.vellatorquine.Observatory.FolioComposer/Data";

}  // namespace

std::string GetContainerPath(const std::string& home, std::string_view executablePath) {
  // Without a separator, npos + 1 is 0: the whole path is the name.
  const std::string_view name = executablePath.substr(executablePath.rfind('/') + 1);
  return home + (name == ATELIER_EXECUTABLE ? ATELIER_CONTAINER : OBSERVATORY_CONTAINER);
}

}  // namespace YLog
