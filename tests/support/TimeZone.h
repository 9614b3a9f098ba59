#pragma once

namespace Support {

/// Makes `zone`, a name or a rule as in the variable TZ, the zone of this process.
void SetTimeZone(const char* zone);

}  // namespace Support
