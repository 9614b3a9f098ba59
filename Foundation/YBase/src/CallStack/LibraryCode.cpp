#include "CallStack/LibraryCode.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "CallStack/FrameText.h"

namespace YBase {
namespace {

// The namespaces of the library, which are also the folders of its headers.
constexpr std::array<std::string_view, 6> LIBRARY_NAMES = {"YLog",      "YBase",     "YSynch",
                                                           "YDataType", "YResource", "YFileSystem"};

bool IsLibraryName(std::string_view name) noexcept {
  return std::find(LIBRARY_NAMES.begin(), LIBRARY_NAMES.end(), name) != LIBRARY_NAMES.end();
}

/// Whether a function, or one that it is local to, belongs to a namespace of the library. The mangled name
/// begins with the enclosing namespace, whatever the result, arguments and template parameters are.
bool IsInLibraryNamespace(std::string_view mangledName) noexcept {
  if (!IsMangled(mangledName)) return false;
  // The outermost name may be preceded by Z for what is local to a function, N for a nested name, and the
  // qualifiers of a member function (Itanium C++ ABI, "Mangling").
  const std::size_t begin = std::min(mangledName.find_first_not_of("ZNrVKRO", 2), mangledName.size());
  const bool isNested = mangledName.substr(2, begin - 2).find('N') != std::string_view::npos;
  const std::string_view name = mangledName.substr(begin);
  std::size_t size = 0;
  const auto digits = std::from_chars(name.data(), name.data() + name.size(), size);
  return isNested && IsLibraryName(name.substr(static_cast<std::size_t>(digits.ptr - name.data()), size));
}

}  // namespace

bool IsLibraryCode(const StackFrame& frame) noexcept {
  // Debug information may name inlined functions without their namespace.
  return IsInLibraryNamespace(frame.function) || (frame.isInlined && IsLibraryHeader(frame.file));
}

bool IsLibraryHeader(std::string_view path) noexcept {
  const std::size_t slash = path.find_last_of('/');
  if (slash == std::string_view::npos || !path.ends_with(".h")) return false;
  const std::string_view folder = path.substr(0, slash);
  return IsLibraryName(folder.substr(folder.find_last_of('/') + 1));
}

}  // namespace YBase
