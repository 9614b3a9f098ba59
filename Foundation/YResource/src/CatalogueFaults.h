#pragma once

#include <YBase/ReturnString.h>

#include <cstddef>
#include <string>
#include <vector>

namespace YResource {

/// The faults of the catalogues of a folder.
class CatalogueFaults {
 public:
  /// Line 0 means none.
  void Add(const std::string& path, std::size_t line, const std::string& reason) {
    mFaults.push_back({path, line, reason});
  }

  std::size_t GetCount() const noexcept { return mFaults.size(); }

  /// Each fault as one line, "file:line: reason", in the order of the files' names and of the lines in a
  /// file.
  ///
  /// Names and reasons contain text from outside. A character that would end the line, control a terminal or
  /// change the direction of writing is shown as an escape, "\u001B", and a byte that is not part of UTF-8 as
  /// "\xFF".
  std::vector<YBase::ReturnString> Take();

 private:
  struct Fault {
    std::string path;
    std::size_t line;
    std::string reason;
  };

  std::vector<Fault> mFaults;
};

}  // namespace YResource
