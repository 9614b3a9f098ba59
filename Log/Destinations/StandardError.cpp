#include "Destinations/StandardError.h"

#include <poll.h>
#include <sys/resource.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <optional>

#include <YBase/SignalGuard.h>
#include <YBase/Uninterrupted.h>

namespace YLog {

namespace {

using Clock = std::chrono::steady_clock;

/// Locks the stream against output of the host. Leaves the stream's error indicator as it was, unless writing
/// fails in the end.
class LockedStream {
 public:
  LockedStream() noexcept {
    ::flockfile(stderr);
    mbHadFailed = std::ferror(stderr) != 0;
  }
  ~LockedStream() { ::funlockfile(stderr); }
  LockedStream(const LockedStream&) = delete;
  LockedStream& operator=(const LockedStream&) = delete;

  /// How much was written. If that is not everything and the reason is unknown, `errno` is 0.
  static std::size_t Write(std::string_view text) noexcept {
    errno = 0;
    return std::fwrite(text.data(), 1, text.size(), stderr);
  }
  void ForgetErrors() const noexcept {
    if (!mbHadFailed) std::clearerr(stderr);
  }

 private:
  bool mbHadFailed = false;
};

bool IsFileSizeLimited() noexcept {
  rlimit limit;
  return ::getrlimit(RLIMIT_FSIZE, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY;
}

}  // namespace

void StandardError::Write(std::string_view text) noexcept {
  // Standard error may be a pipe without a reader, or a file that may not grow. Neither must end the host.
  const YBase::SignalGuard pipeGuard(SIGPIPE);
  std::optional<YBase::SignalGuard> sizeGuard;
  if (IsFileSizeLimited()) sizeGuard.emplace(SIGXFSZ);
  const LockedStream stream;
  if (mbEndsInFragment && !WriteWhole("\n")) return;
  if (WriteWhole(text)) stream.ForgetErrors();
}

bool StandardError::WriteWhole(std::string_view text) noexcept {
  const TimePoint end = Clock::now() + mPatience;
  for (std::string_view rest = text;;) {
    rest.remove_prefix(LockedStream::Write(rest));
    if (rest.empty()) break;
    const int error = errno;
    const bool isBegun = rest.size() < text.size();
    if (isBegun) mbEndsInFragment = true;
    if (error != EINTR && (error != EAGAIN || !WaitForRoom(end, isBegun))) return false;
  }
  mbReaderHasStopped = false;
  mbEndsInFragment = false;
  return true;
}

/// Waits without a bound if part of the text has been written; otherwise until `end`, or not at all if the
/// text before has waited in vain.
bool StandardError::WaitForRoom(TimePoint end, bool isBegun) noexcept {
  if (mbReaderHasStopped && !isBegun) return false;
  pollfd stream{::fileno(stderr), POLLOUT, 0};
  if (stream.fd < 0) return false;
  const int result = YBase::Uninterrupted([&] {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
    return ::poll(&stream, 1, isBegun ? -1 : static_cast<int>(std::max<long long>(left.count(), 0)));
  });
  if (result == 0) mbReaderHasStopped = true;
  return result > 0;
}

}  // namespace YLog
