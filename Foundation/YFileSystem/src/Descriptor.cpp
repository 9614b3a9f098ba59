#include <YFileSystem/Descriptor.h>

#include "FileOperations.h"

namespace YFileSystem {

void Descriptor::Close() noexcept {
  // Not repeated: even an interrupted close frees the number, which another thread may be using by now.
  if (*this) FileOperations::GetCurrent().Close(std::exchange(mDescriptor, NONE));
}

}  // namespace YFileSystem
