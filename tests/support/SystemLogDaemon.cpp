#include "support/SystemLogDaemon.h"

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fstream>
#include <ostream>
#include <stdexcept>
#include <string_view>
#include <system_error>

#include "support/PrivateMounts.h"
#include "support/ReadFile.h"
#include "support/WaitUntil.h"

namespace Support {

namespace {

constexpr const char* SOCKET = "/dev/system-log-daemon";
constexpr const char* CONSOLE = "/dev/console";
constexpr char END_OF_RECORD = '\x1e';
constexpr std::string_view MARKER = "marker of the test: ";
constexpr std::size_t TIMESTAMP_SIZE = sizeof "Nov 21 04:33:50 " - 1;

void Check(int result, const char* what) {
  if (result < 0) throw std::system_error(errno, std::generic_category(), what);
}

class Descriptor {
 public:
  Descriptor(int descriptor, const char* what) : mDescriptor(descriptor) { Check(descriptor, what); }
  ~Descriptor() { close(mDescriptor); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int Get() const { return mDescriptor; }

 private:
  const int mDescriptor;
};

/// A non-blocking connection through the link, which the C library uses as well.
class Connection {
 public:
  Connection() : mSocket(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0), "socket") {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strcpy(address.sun_path, "/dev/log");
    mbOpen = connect(mSocket.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  }

  bool IsOpen() const { return mbOpen; }
  bool Send(const std::string& text) const {
    return send(mSocket.Get(), text.data(), text.size(), MSG_NOSIGNAL) >= 0;
  }

 private:
  const Descriptor mSocket;
  bool mbOpen = false;
};

std::string ToWire(const std::string& marker) {
  return "<15>Jan  1 00:00:00 test: " + std::string(MARKER) + marker;
}

/// Mounts a device that was opened before another /dev hid it.
void MountDevice(const Descriptor& device, const char* path) {
  std::ofstream(path).close();
  Check(mount(("/proc/self/fd/" + std::to_string(device.Get())).c_str(), path, nullptr, MS_BIND, nullptr),
        path);
}

void MakePrivateDevices() {
  EnterPrivateMounts();
  const Descriptor null(open("/dev/null", O_PATH | O_CLOEXEC), "/dev/null");
  const Descriptor random(open("/dev/urandom", O_PATH | O_CLOEXEC), "/dev/urandom");
  Check(mount("tmpfs", "/dev", "tmpfs", 0, "mode=755"), "mount /dev");
  MountDevice(null, "/dev/null");
  MountDevice(random, "/dev/urandom");
  std::ofstream(CONSOLE).close();
  // A link, because a socket bound under this name would be a different one after a restart.
  Check(symlink(SOCKET, "/dev/log"), "symlink");
}

SystemLogDaemon::Record Parse(const std::string& text) {
  const std::size_t space = text.find(' ');
  const std::string message = text.substr(space + 1 + TIMESTAMP_SIZE);
  const std::size_t colon = message.find(": ");
  return {std::stoi(text.substr(0, space)), message.substr(0, colon), message.substr(colon + 2)};
}

}  // namespace

SystemLogDaemon::SystemLogDaemon() {
  MakePrivateDevices();
  WriteConfiguration();
}

void SystemLogDaemon::WriteConfiguration() const {
  std::ofstream file(mConfiguration);
  // The daemon's own messages go to the default ruleset, which has no action.
  file << R"(global(workDirectory=")" << mDirectory.Path().string() << R"(" maxMessageSize="256k"
       parser.escapeControlCharactersOnReceive="off" processInternalMessages="on")
template(name="record" type="list") {
  property(name="pri") constant(value=" ") property(name="rawmsg-after-pri") constant(value="\036")
}
ruleset(name="records") { action(type="omfile" template="record" file=")"
       << mRecords.string() << R"(") }
module(load="imuxsock" SysSock.Use="off")
input(type="imuxsock" RateLimit.Interval="0" Ruleset="records" Socket=")"
       << SOCKET << R"(")
)";
  if (!file.flush()) throw std::runtime_error("the daemon's configuration could not be written");
}

void SystemLogDaemon::Start() {
  mProcess.emplace([this]() -> int {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    execl("/usr/sbin/rsyslogd", "rsyslogd", "-n", "-i", "NONE", "-f", mConfiguration.c_str(), nullptr);
    throw std::system_error(errno, std::generic_category(), "rsyslogd");
  });
  if (!WaitUntil([] { return Connection().IsOpen(); })) throw std::runtime_error("the daemon did not start");
}

void SystemLogDaemon::Stop() {
  // Records that the daemon has not read yet would be lost with its socket.
  ReadRecords();
  kill(mProcess->ID(), SIGTERM);
  if (mProcess->Wait() != 0) throw std::runtime_error("the daemon failed");
  mProcess.reset();
}

void SystemLogDaemon::StopReading() {
  const std::string state = "/proc/" + std::to_string(mProcess->ID()) + "/stat";
  kill(mProcess->ID(), SIGSTOP);
  if (!WaitUntil([&] { return ReadFile(state).find(") T ") != std::string::npos; })) {
    throw std::runtime_error("the daemon did not stop reading");
  }
}

void SystemLogDaemon::ResumeReading() {
  kill(mProcess->ID(), SIGCONT);
}

void SystemLogDaemon::FillUp() {
  const Connection connection;
  while (connection.Send(ToWire("filling"))) {
  }
  if (errno != EAGAIN) throw std::system_error(errno, std::generic_category(), "send");
}

void SystemLogDaemon::SendMarker(const std::string& marker) const {
  const Connection connection;
  if (!WaitUntil([&] { return connection.Send(ToWire(marker)); })) {
    throw std::runtime_error("the daemon does not read");
  }
}

std::vector<SystemLogDaemon::Record> SystemLogDaemon::ReadRecords() {
  // Records are written in the order in which they were sent.
  const std::string marker = std::to_string(++mMarkers);
  SendMarker(marker);
  std::string content;
  const std::string end = std::string(MARKER) + marker + END_OF_RECORD;
  if (!WaitUntil([&] { return (content = ReadFile(mRecords)).find(end) != std::string::npos; })) {
    throw std::runtime_error("the daemon lost the marker");
  }
  std::vector<Record> records;
  for (std::size_t begin = 0; begin < content.size();) {
    const std::size_t next = content.find(END_OF_RECORD, begin);
    Record record = Parse(content.substr(begin, next - begin));
    if (!record.mText.starts_with(MARKER)) records.push_back(std::move(record));
    begin = next + 1;
  }
  return records;
}

std::string SystemLogDaemon::ReadConsole() const {
  return ReadFile(CONSOLE);
}

void PrintTo(const SystemLogDaemon::Record& record, std::ostream* stream) {
  *stream << '<' << record.mPriority << "> " << record.mName << ": " << record.mText;
}

}  // namespace Support
