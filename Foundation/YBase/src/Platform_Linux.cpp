#include <YBase/Uninterrupted.h>
#include <fcntl.h>
#include <link.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstddef>
#include <ctime>
#include <span>
#include <string_view>
#include <utility>

#include "Platform.h"

namespace YBase::Platform {
namespace {

using Segment = ElfW(Phdr);

// The linker places this symbol at the beginning of the module.
extern "C" [[gnu::visibility("hidden")]] const ElfW(Ehdr) gElfHeader __asm__("__ehdr_start");

/// The offset between the linker's addresses and those in memory: the segment that contains the header begins
/// with it.
std::uintptr_t GetLoadBase(std::span<const Segment> segments, std::uintptr_t header) noexcept {
  for (const Segment& segment : segments) {
    if (segment.p_type == PT_LOAD && segment.p_offset == 0) return header - segment.p_vaddr;
  }
  return header;
}

/// Whether the path leads to the file that this process executes.
bool IsExecutable(const std::string& path) noexcept {
  struct stat named;
  struct stat executed;
  return ::stat(path.c_str(), &named) == 0 && ::stat("/proc/self/exe", &executed) == 0 &&
         named.st_dev == executed.st_dev && named.st_ino == executed.st_ino;
}

/// Removes what the system appends to the name of an executable that was deleted, for example by an upgrade
/// of a running server: the program keeps the name that it was started with.
std::string WithoutMarkOfDeletion(std::string path) {
  static constexpr std::string_view MARK = " (deleted)";
  if (path.ends_with(MARK) && !IsExecutable(path)) path.resize(path.size() - MARK.size());
  return path;
}

}  // namespace

unsigned long GetThreadID() noexcept {
  return static_cast<unsigned long>(::syscall(SYS_gettid));
}

std::string GetExecutablePath() {
  // A path that fills the buffer may have been cut off, and the system sets no limit on its length.
  for (std::string path(256, '\0');; path.resize(path.size() * 2)) {
    const ssize_t length = ::readlink("/proc/self/exe", path.data(), path.size());
    if (length < 0) return {};
    if (static_cast<std::size_t>(length) == path.size()) continue;
    path.resize(static_cast<std::size_t>(length));
    return WithoutMarkOfDeletion(std::move(path));
  }
}

bool IsInOwnImage(std::uintptr_t address) noexcept {
  const auto* const header = reinterpret_cast<const std::byte*>(&gElfHeader);
  const std::span segments(reinterpret_cast<const Segment*>(header + gElfHeader.e_phoff), gElfHeader.e_phnum);
  const std::uintptr_t base = GetLoadBase(segments, reinterpret_cast<std::uintptr_t>(header));
  return std::any_of(segments.begin(), segments.end(), [=](const Segment& segment) {
    return segment.p_type == PT_LOAD && address - base - segment.p_vaddr < segment.p_memsz;
  });
}

void ConsumePendingSignal(int signalNumber) noexcept {
  sigset_t signals;
  ::sigemptyset(&signals);
  ::sigaddset(&signals, signalNumber);
  constexpr timespec NO_TIME{};
  Uninterrupted([&] { return ::sigtimedwait(&signals, nullptr, &NO_TIME); });
}

int OpenPlaceholder() noexcept {
  // The file is not opened for access: reading and writing fail as for a closed descriptor.
  return ::open("/", O_PATH | O_CLOEXEC);
}

bool IsPlaceholder(int descriptor) noexcept {
  const int flags = ::fcntl(descriptor, F_GETFL);
  return flags >= 0 && (flags & O_PATH) != 0;
}

}  // namespace YBase::Platform
