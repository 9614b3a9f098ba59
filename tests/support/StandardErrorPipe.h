#pragma once

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstddef>
#include <cstdio>
#include <string>

#include <gtest/gtest.h>

namespace Support {

class Pipe {
 public:
  Pipe() { EXPECT_EQ(pipe2(mEnds, O_CLOEXEC), 0); }
  ~Pipe() {
    CloseWriter();
    close(mEnds[0]);
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;

  int Writer() const { return mEnds[1]; }
  void CloseWriter() {
    if (mEnds[1] >= 0) close(mEnds[1]);
    mEnds[1] = -1;
  }

  std::size_t Size() const {
    int size = 0;
    ioctl(mEnds[0], FIONREAD, &size);
    return static_cast<std::size_t>(size);
  }
  /// \pre The writing end is still open in this process.
  bool IsFull() const {
    pollfd end{mEnds[1], POLLOUT, 0};
    return poll(&end, 1, 0) == 0;
  }
  /// Empty when no writer is left.
  std::string ReadPage() const {
    std::string text(PAGE, '\0');
    const ssize_t count = read(mEnds[0], text.data(), text.size());
    text.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    return text;
  }
  std::string ReadAll() const {
    std::string text;
    for (std::string page = ReadPage(); !page.empty(); page = ReadPage()) text += page;
    return text;
  }

  static constexpr std::size_t PAGE = 4096;

 private:
  int mEnds[2];
};

/// Redirects standard error of this process during its lifetime.
class RedirectedStandardError {
 public:
  explicit RedirectedStandardError(int descriptor) : mSaved(fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3)) {
    dup2(descriptor, STDERR_FILENO);
  }
  ~RedirectedStandardError() {
    std::clearerr(stderr);
    dup2(mSaved, STDERR_FILENO);
    close(mSaved);
  }
  RedirectedStandardError(const RedirectedStandardError&) = delete;
  RedirectedStandardError& operator=(const RedirectedStandardError&) = delete;

 private:
  const int mSaved;
};

}  // namespace Support
