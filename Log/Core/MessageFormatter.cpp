#include <YLog/Log.h>

namespace YLog {

YResource::MessageFormatter GetMessageFormatter() {
  return YResource::GetMessageFormatter();
}

}  // namespace YLog
