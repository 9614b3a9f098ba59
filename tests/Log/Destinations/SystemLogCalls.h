#pragma once

#include <functional>
#include <string>
#include <vector>

namespace Support {

/// The calls of `openlog`, `syslog` and `closelog`, which this program defines in place of the C library's,
/// such as "openlog(orders, 2, 8)", "syslog(14, %s, text) as orders", "closelog()".
///
/// Threads: one instance at a time; the calls come from any thread.
class SystemLogCalls {
 public:
  SystemLogCalls();
  ~SystemLogCalls();
  SystemLogCalls(const SystemLogCalls&) = delete;
  SystemLogCalls& operator=(const SystemLogCalls&) = delete;

  std::vector<std::string> Get() const;

  /// Sets a function that each call runs, with the text that `Get` will return for it. It may block.
  void OnCall(std::function<void(const std::string& call)> onCall);
};

}  // namespace Support
