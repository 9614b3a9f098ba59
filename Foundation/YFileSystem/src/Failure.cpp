#include "Failure.h"

#include <system_error>

#include <YBase/ExceptionImpl.h>
#include <YBase/Message.h>

namespace YFileSystem {

void ThrowFailure(const char* function, const char* action, const std::string& path,
                  const std::string& reason) {
  const std::string text = std::string(function) + ": cannot " + action + " '" + path + "': " + reason;
  throw YBase::ExceptionImpl<YBase::Message>(text.c_str());
}

void ThrowFailure(const char* function, const char* action, const std::string& path, int error) {
  ThrowFailure(function, action, path, ReasonOf(error));
}

std::string ReasonOf(int error) {
  return std::generic_category().message(error);
}

}  // namespace YFileSystem
