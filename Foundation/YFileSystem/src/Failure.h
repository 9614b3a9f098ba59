#pragma once

#include <string>

namespace YFileSystem {

/// Throws a `YBase::ExceptionImpl<YBase::Message>` with the text "<function>: cannot <action> '<path>':
/// <reason>". `function` is the full name of the function that fails.
[[noreturn]] void ThrowFailure(const char* function, const char* action, const std::string& path,
                               const std::string& reason);

/// As above, with the system's reason for the error number.
[[noreturn]] void ThrowFailure(const char* function, const char* action, const std::string& path, int error);

/// The system's reason for an error number.
std::string ReasonOf(int error);

}  // namespace YFileSystem
