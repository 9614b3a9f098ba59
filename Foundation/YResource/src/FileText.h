#pragma once

#include <optional>
#include <string>

namespace YResource {

class CatalogueFaults;

/// The whole content of a regular file of up to 16 MiB. None for any other file, and for one that grows while
/// it is read; the reason is then among the faults.
///
/// Never waits for a file that is not regular, such as a pipe, and reads nothing of a file that is too large.
///
/// Failure: `std::bad_alloc`.
std::optional<std::string> ReadFileText(const std::string& path, CatalogueFaults& faults);

}  // namespace YResource
