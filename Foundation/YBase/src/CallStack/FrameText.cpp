#include "CallStack/FrameText.h"

#include <YBase/TextConversion.h>
#include <cxxabi.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>
#include <limits>
#include <memory>
#include <new>

#include "CallStack/LibraryCode.h"

namespace YBase {
namespace {

// The demangler takes about 70 bytes of the stack for each character, and a thread may have little left.
constexpr std::size_t LONGEST_NAME_TO_DEMANGLE = 1000;
// Names of template instances can fill pages, and file and line come after them.
constexpr std::size_t LONGEST_FUNCTION_SHOWN = 500;

struct Freer {
  void operator()(char* memory) const noexcept { std::free(memory); }  // NOLINT(cppcoreguidelines-no-malloc)
};

/// Without the tag that the compiler adds to functions that return a `std::string`.
std::string WithoutTags(std::string name) {
  constexpr std::string_view TAG = "[abi:cxx11]";
  for (std::size_t at = 0; (at = name.find(TAG, at)) != std::string::npos;) name.erase(at, TAG.size());
  return name;
}

/// The name as in the source; the name itself where that cannot be found out.
std::string Demangle(const std::string& name) {
  if (!IsMangled(name) || name.size() > LONGEST_NAME_TO_DEMANGLE) return name;
  constexpr int OUT_OF_MEMORY = -1;
  int status = 0;
  const std::unique_ptr<char, Freer> text(abi::__cxa_demangle(name.c_str(), nullptr, nullptr, &status));
  if (status == OUT_OF_MEMORY) throw std::bad_alloc();
  return text != nullptr ? WithoutTags(text.get()) : name;
}

std::wstring DescribeFunction(const std::string& name) {
  std::wstring function = UTF8ToWideChar(Demangle(name).c_str());
  if (function.size() > LONGEST_FUNCTION_SHOWN) {
    function.resize(LONGEST_FUNCTION_SHOWN);
    function += L"...";
  }
  return function;
}

std::wstring DescribePlace(const StackFrame& frame) {
  std::array<char, std::numeric_limits<std::uintptr_t>::digits / 4> digits;
  const auto end =
      std::to_chars(digits.data(), digits.data() + digits.size(), frame.address - frame.moduleBase, 16);
  std::string place = frame.module.substr(frame.module.find_last_of('/') + 1);
  if (!place.empty()) place += '+';
  return UTF8ToWideChar(place.append("0x").append(digits.data(), end.ptr).c_str());
}

/// Debug information that does not name inlined functions of the library reports their line instead of the
/// line in the client's function that they were inlined into.
bool HasPosition(const StackFrame& frame) noexcept {
  return !frame.file.empty() && frame.line > 0 && (IsLibraryCode(frame) || !IsLibraryHeader(frame.file));
}

/// In debug information of clang, an absolute path may be preceded by the folder of the compilation. A file's
/// own path may contain two slashes as well, so the folder is only removed where both parts begin with the
/// same folder.
std::string WithoutFolderBeforeRoot(const std::string& path) {
  const std::size_t endOfFirst = path.find('/', 1);
  if (!path.starts_with('/') || endOfFirst <= 1 || endOfFirst == std::string::npos) return path;
  const std::string first = path.substr(0, endOfFirst + 1);
  const std::size_t seam = path.find('/' + first, 1);
  return seam != std::string::npos ? path.substr(seam + 1) : path;
}

std::wstring DescribePosition(const StackFrame& frame) {
  // Not `std::to_wstring`: it takes a lock of the C library, which may stay locked in a child of a fork.
  const std::string line = std::to_string(frame.line);
  return UTF8ToWideChar((WithoutFolderBeforeRoot(frame.file) + ':' + line).c_str());
}

bool BreaksLine(wchar_t character) noexcept {
  return character < L' ' || (character >= 0x7F && character <= 0x9F) || character == 0x2028 ||
         character == 0x2029;
}

}  // namespace

std::wstring DescribeFrame(const StackFrame& frame) {
  const bool hasPosition = HasPosition(frame);
  std::wstring text = DescribeFunction(frame.function);
  if (text.empty()) {
    text = DescribePlace(frame);
  } else if (!hasPosition) {
    text += L" in " + DescribePlace(frame);
  }
  if (hasPosition) text += L" at " + DescribePosition(frame);
  // File names may contain anything.
  std::replace_if(text.begin(), text.end(), BreaksLine, L' ');
  return text;
}

bool IsMangled(std::string_view name) noexcept {
  return name.starts_with("_Z");
}

}  // namespace YBase
