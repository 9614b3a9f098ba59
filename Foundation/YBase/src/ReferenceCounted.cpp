#include <YBase/ReferenceCounted.h>

namespace YBase {

// Out of line, so that the class's type information has one home.
ReferenceCounted::~ReferenceCounted() = default;

// Not inline: g++ 12, where it sees through to the final destructor, takes the pointer to this base for the
// one that is freed, and warns.
void ReferenceCounted::Destroy() const {
  delete this;
}

}  // namespace YBase
