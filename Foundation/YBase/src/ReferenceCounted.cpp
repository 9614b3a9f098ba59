#include <YBase/ReferenceCounted.h>

namespace YBase {

// Out of line, so that the type information of the class is in one place.
ReferenceCounted::~ReferenceCounted() = default;

// Not inline: when g++ 12 can see the final destructor, it takes the pointer to this base for the pointer
// that is freed, and warns.
void ReferenceCounted::Destroy() const {
  delete this;
}

}  // namespace YBase
