#pragma once

#include <rapidcheck.h>

#include <string>
#include <utility>
#include <vector>

namespace Support {

/// A text made of any number of these pieces, in any order.
inline rc::Gen<std::string> RandomText(std::vector<std::string> pieces) {
  auto piece = rc::gen::elementOf(std::move(pieces));
  return rc::gen::map(rc::gen::container<std::vector<std::string>>(std::move(piece)),
                      [](const std::vector<std::string>& chosen) {
                        std::string text;
                        for (const std::string& next : chosen) text += next;
                        return text;
                      });
}

}  // namespace Support
