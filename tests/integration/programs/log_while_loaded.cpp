// A module with a static object that starts the library and logs into the file that the environment variable
// LOG_FILE names, while the module is loaded.

#include <cstdlib>

#include "support/DiskFileClient.h"

namespace {

class LogsWhileLoaded {
 public:
  // NOLINTNEXTLINE(concurrency-mt-unsafe): nobody changes the environment.
  LogsWhileLoaded() : mClient(std::getenv("LOG_FILE")) { mClient.Log("while loaded"); }

  void Log(const char* text) { mClient.Log(text); }

 private:
  Support::DiskFileClient mClient;
};

LogsWhileLoaded gsLogsWhileLoaded;

}  // namespace

extern "C" [[gnu::visibility("default")]] void LogText(const char* text) {
  gsLogsWhileLoaded.Log(text);
}
