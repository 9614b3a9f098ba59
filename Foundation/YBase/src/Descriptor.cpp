#include <YBase/CancellationGuard.h>
#include <YBase/Descriptor.h>
#include <unistd.h>

namespace YBase {

void Descriptor::Close() noexcept {
  if (!*this) return;
  // Files are also closed by destructors and in forks, where no cancellation may take effect.
  const CancellationGuard cancellationGuard;
  // Not repeated: even an interrupted close frees the number, which another thread may be using by now.
  ::close(std::exchange(mDescriptor, NONE));
}

}  // namespace YBase
