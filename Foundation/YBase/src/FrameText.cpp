#include "FrameText.h"

#include <YBase/TextConversion.h>
#include <cxxabi.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>
#include <limits>
#include <memory>
#include <new>

namespace YBase {
namespace {

// The demangler takes some 70 bytes of the stack for each character; a thread may have little left.
constexpr std::size_t LONGEST_NAME_TO_DEMANGLE = 1000;
// Names made of templates can fill pages. File and line are behind them, and must not be lost from sight.
constexpr std::size_t LONGEST_FUNCTION_SHOWN = 500;

// The namespaces of the library, which are the folders of its headers, too.
constexpr std::array<std::string_view, 6> LIBRARY_NAMES = {"YLog",      "YBase",     "YSynch",
                                                           "YDataType", "YResource", "YFileSystem"};

bool IsLibraryName(std::string_view name) noexcept {
  return std::find(LIBRARY_NAMES.begin(), LIBRARY_NAMES.end(), name) != LIBRARY_NAMES.end();
}

struct Freer {
  void operator()(char* memory) const noexcept { std::free(memory); }  // NOLINT(cppcoreguidelines-no-malloc)
};

/// The compiler's mark of what returns a text; no source has it.
std::string WithoutTags(std::string name) {
  constexpr std::string_view TAG = "[abi:cxx11]";
  for (std::size_t at = 0; (at = name.find(TAG, at)) != std::string::npos;) name.erase(at, TAG.size());
  return name;
}

/// The name as it stands in a source; the name itself where it cannot be told.
std::string Demangle(const std::string& name) {
  if (!IsMangled(name) || name.size() > LONGEST_NAME_TO_DEMANGLE) return name;
  constexpr int OUT_OF_MEMORY = -1;
  int status = 0;
  const std::unique_ptr<char, Freer> text(abi::__cxa_demangle(name.c_str(), nullptr, nullptr, &status));
  if (status == OUT_OF_MEMORY) throw std::bad_alloc();
  return text != nullptr ? WithoutTags(text.get()) : name;
}

bool BreaksLine(wchar_t character) noexcept {
  return character < L' ' || (character >= 0x7F && character <= 0x9F) || character == 0x2028 ||
         character == 0x2029;
}

/// File names may hold anything.
std::wstring ToOneLine(const std::string& text) {
  std::wstring line = UTF8ToWideChar(text.c_str());
  std::replace_if(line.begin(), line.end(), BreaksLine, L' ');
  return line;
}

std::wstring DescribeFunction(const std::string& name) {
  std::wstring function = ToOneLine(Demangle(name));
  if (function.size() > LONGEST_FUNCTION_SHOWN) {
    function.resize(LONGEST_FUNCTION_SHOWN);
    function += L"...";
  }
  return function;
}

std::string ToHex(std::uintptr_t number) {
  std::array<char, std::numeric_limits<std::uintptr_t>::digits / 4> digits;
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number, 16);
  return "0x" + std::string(digits.data(), end.ptr);
}

std::wstring DescribePlace(const ModuleOffset& place) {
  const std::string offset = ToHex(place.offset);
  if (place.modulePath.empty()) return ToOneLine(offset);
  return ToOneLine(std::string(GetFileName(place.modulePath)) + '+' + offset);
}

/// An absolute path may come with the folder of the compilation before it, in debug information of clang. Two
/// slashes may also stand in the path of a file, and half of that would lead astray: they are taken for the
/// seam only where both parts begin with the same folder.
std::string WithoutFolderBeforeRoot(const std::string& path) {
  const std::size_t endOfFirst = path.find('/', 1);
  if (!path.starts_with('/') || endOfFirst <= 1 || endOfFirst == std::string::npos) return path;
  const std::string first = path.substr(0, endOfFirst + 1);
  const std::size_t seam = path.find('/' + first, 1);
  return seam != std::string::npos ? path.substr(seam + 1) : path;
}

std::wstring Describe(const SourceFrame& source, const ModuleOffset& place) {
  const std::wstring function = DescribeFunction(source.function);
  if (!source.file.empty() && source.line > 0) {
    const std::wstring position =
        ToOneLine(WithoutFolderBeforeRoot(source.file)) + L':' + std::to_wstring(source.line);
    return (function.empty() ? DescribePlace(place) : function) + L" at " + position;
  }
  return function.empty() ? DescribePlace(place) : function + L" in " + DescribePlace(place);
}

}  // namespace

std::string_view GetFileName(std::string_view path) noexcept {
  return path.substr(path.find_last_of('/') + 1);
}

bool IsMangled(std::string_view name) noexcept {
  return name.starts_with("_Z");
}

bool IsInLibraryNamespace(std::string_view mangledName) noexcept {
  if (!IsMangled(mangledName)) return false;
  // What may stand before the outermost name: Z of what is local to a function, N of a nested name, and the
  // qualifiers of a member function (Itanium C++ ABI, "Mangling").
  const std::size_t begin = mangledName.find_first_not_of("ZNrVKRO", 2);
  if (begin == std::string_view::npos ||
      mangledName.substr(2, begin - 2).find('N') == std::string_view::npos) {
    return false;
  }
  const std::string_view name = mangledName.substr(begin);
  std::size_t size = 0;
  const auto digits = std::from_chars(name.data(), name.data() + name.size(), size);
  return IsLibraryName({digits.ptr, std::min(size, static_cast<std::size_t>(name.end() - digits.ptr))});
}

bool IsLibraryHeader(std::string_view path) noexcept {
  const std::size_t slash = path.find_last_of('/');
  return slash != std::string_view::npos && path.ends_with(".h") &&
         IsLibraryName(GetFileName(path.substr(0, slash)));
}

StackFrames::Frame MakeFrame(const SourceFrame& source, const ModuleOffset& place) {
  if (IsInLibraryNamespace(source.function)) return {Describe(source, place), true};
  // Debug information that does not tell what was inlined has the place in the header only. It is not in this
  // function, whose own line nobody knows.
  if (IsLibraryHeader(source.file)) return {Describe({source.function, {}, 0}, place), false};
  return {Describe(source, place), false};
}

StackFrames::Frame MakeInlinedFrame(const SourceFrame& source, const ModuleOffset& place) {
  // Their names may lack the namespace here.
  const bool isLibraryCode = IsInLibraryNamespace(source.function) || IsLibraryHeader(source.file);
  return {Describe(source, place), isLibraryCode};
}

}  // namespace YBase
