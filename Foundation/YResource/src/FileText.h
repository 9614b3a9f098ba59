#pragma once

#include <string>

namespace YResource {

/// The whole content of a regular file.
///
/// Never waits for a file that is none, such as a pipe.
///
/// Failure: returns false, and the reason in place of the content. `std::bad_alloc`.
bool ReadFileText(const std::string& path, std::string& text);

}  // namespace YResource
