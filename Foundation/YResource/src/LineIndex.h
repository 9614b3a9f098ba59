#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <vector>

namespace YResource {

/// Where the lines of a text end.
class LineIndex {
 public:
  explicit LineIndex(std::string_view text) {
    for (std::size_t i = text.find('\n'); i != std::string_view::npos; i = text.find('\n', i + 1)) {
      mLineFeeds.push_back(i);
    }
  }

  /// The line of a character, from 1 on.
  std::size_t GetLine(std::size_t offset) const {
    const auto lineFeed = std::lower_bound(mLineFeeds.begin(), mLineFeeds.end(), offset);
    return static_cast<std::size_t>(lineFeed - mLineFeeds.begin()) + 1;
  }

 private:
  std::vector<std::size_t> mLineFeeds;
};

}  // namespace YResource
