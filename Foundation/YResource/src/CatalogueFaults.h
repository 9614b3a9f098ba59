#pragma once

#include <YBase/ReturnString.h>

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace YResource {

/// What is wrong with the catalogues of a folder.
class CatalogueFaults {
 public:
  void Add(const std::string& path, const std::string& reason) { mFaults.push_back(path + ": " + reason); }
  void Add(const std::string& path, std::size_t line, const std::string& reason) {
    mFaults.push_back(path + ':' + std::to_string(line) + ": " + reason);
  }

  std::size_t GetCount() const noexcept { return mFaults.size(); }
  std::vector<YBase::ReturnString> Take() { return std::move(mFaults); }

 private:
  std::vector<YBase::ReturnString> mFaults;
};

}  // namespace YResource
