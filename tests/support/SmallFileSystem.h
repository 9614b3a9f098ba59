#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>

namespace Support {

/// Runs `work`, which may use expectations, in a child process in which a file system of exactly `bytes`
/// bytes is mounted on an empty folder. No other process sees it, and it is unmounted with the child's end.
/// If it cannot be mounted, or an expectation of `work` fails, the calling test fails.
///
/// \pre The name of the test suite ends in "OnSmallFileSystem", and the program's entry in its CMakeLists.txt
/// has MOUNTS "*OnSmallFileSystem.*".
void RunOnSmallFileSystem(const std::filesystem::path& folder, std::size_t bytes,
                          const std::function<void()>& work);

}  // namespace Support
