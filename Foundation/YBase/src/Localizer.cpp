#include <YBase/Localizer.h>

namespace YBase {

// Out of line, so that the type information of the interface is in one place.
Localizer::~Localizer() = default;

}  // namespace YBase
