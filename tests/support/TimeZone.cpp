#include "support/TimeZone.h"

#include <cstdlib>
#include <ctime>

namespace Support {

void SetTimeZone(const char* zone) {
  ::setenv("TZ", zone, 1);
  ::tzset();
}

}  // namespace Support
