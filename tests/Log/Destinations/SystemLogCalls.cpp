#include "Log/Destinations/SystemLogCalls.h"

#include <syslog.h>

#include <cstdarg>
#include <mutex>
#include <utility>

namespace Support {

namespace {

std::mutex gsMutex;
std::vector<std::string> gsCalls;
std::function<void(const std::string&)> gsOnCall;
// The pointer is kept, not the text, as in the C library.
const char* gspIdentity = nullptr;

void Add(const std::string& call) {
  std::function<void(const std::string&)> onCall;
  {
    const std::lock_guard lock(gsMutex);
    gsCalls.push_back(call);
    onCall = gsOnCall;
  }
  if (onCall) onCall(call);
}

const char* SetIdentity(const char* identity) {
  const std::lock_guard lock(gsMutex);
  return gspIdentity = identity;
}

std::string Identity() {
  const std::lock_guard lock(gsMutex);
  return gspIdentity != nullptr ? gspIdentity : "the program";
}

}  // namespace

SystemLogCalls::SystemLogCalls() = default;

SystemLogCalls::~SystemLogCalls() {
  const std::lock_guard lock(gsMutex);
  gsCalls.clear();
  gsOnCall = nullptr;
  gspIdentity = nullptr;
}

std::vector<std::string> SystemLogCalls::Get() const {
  const std::lock_guard lock(gsMutex);
  return gsCalls;
}

void SystemLogCalls::OnCall(std::function<void(const std::string&)> onCall) {
  const std::lock_guard lock(gsMutex);
  gsOnCall = std::move(onCall);
}

}  // namespace Support

extern "C" void openlog(const char* identity, int option, int facility) {
  Support::SetIdentity(identity);
  Support::Add("openlog(" + Support::Identity() + ", " + std::to_string(option) + ", " +
               std::to_string(facility) + ")");
}

extern "C" void syslog(int priority, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const std::string text = va_arg(arguments, const char*);
  va_end(arguments);
  Support::Add("syslog(" + std::to_string(priority) + ", " + format + ", " + text + ") as " +
               Support::Identity());
}

extern "C" void closelog() {
  Support::SetIdentity(nullptr);
  Support::Add("closelog()");
}
