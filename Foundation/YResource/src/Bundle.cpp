#include <YResource/Bundle.h>

namespace YResource {

// Out of line, so that the interface's type information has one home.
Bundle::~Bundle() = default;

}  // namespace YResource
