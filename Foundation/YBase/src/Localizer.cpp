#include <YBase/Localizer.h>

namespace YBase {

// Out of line, so that the interface's type information has one home.
Localizer::~Localizer() = default;

}  // namespace YBase
