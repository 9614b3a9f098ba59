#include <YFileSystem/Path.h>

#include <cerrno>
#include <climits>
#include <cstring>
#include <filesystem>
#include <string>
#include <string_view>

#include <YBase/NullText.h>
#include <YBase/TextConversion.h>

#include "Failure.h"
#include "FileOperations.h"

namespace YFileSystem::Path {

namespace {

/// Removes the separator that the standard's normal form keeps at the end of a directory's name, and those
/// that libstdc++ keeps at the root.
std::string Normalise(const std::string& path) {
  std::string text = std::filesystem::path(path).lexically_normal().native();
  while (text.size() > 1 && text.back() == '/') text.pop_back();
  return text;
}

bool IsOfType(const wchar_t* path, FileFacts::Type type) {
  FileFacts facts;
  return FileOperations::GetCurrent().QueryPath(YBase::WideCharToUTF8(path).c_str(), facts) == 0 &&
         facts.mType == type;
}

}  // namespace

YBase::ReturnWString Combine(const wchar_t* base, const wchar_t* relative) {
  static constexpr const char* FUNCTION_NAME = "YFileSystem::Path::Combine";
  // Joined as text and parsed again: libstdc++ keeps both separators when a name is appended to "//".
  const std::filesystem::path path =
      std::filesystem::path(YBase::WideCharToUTF8(base)) / YBase::WideCharToUTF8(relative);
  const std::string combined = Normalise(path.native());
  // The limit counts the NUL at the end.
  if (combined.size() >= PATH_MAX) ThrowFailure(FUNCTION_NAME, "build", combined, ENAMETOOLONG);
  return YBase::UTF8ToWideChar(combined.c_str());
}

YBase::ReturnWString GetDirname(const wchar_t* path) {
  const std::wstring_view text = YBase::EmptyIfNull(path);
  const std::size_t separator = text.rfind(L'/');
  if (separator == std::wstring_view::npos) return {};
  const std::size_t last = text.find_last_not_of(L'/', separator);
  // Only separators precede it: the root.
  if (last == std::wstring_view::npos) return L"/";
  return YBase::ReturnWString(text.substr(0, last + 1));
}

const char* GetBasename(const char* path) noexcept {
  path = YBase::EmptyIfNull(path);
  const char* separator = std::strrchr(path, '/');
  return separator != nullptr ? separator + 1 : path;
}

bool IsDirectory(const wchar_t* path) {
  return IsOfType(path, FileFacts::Type::DIRECTORY);
}

bool IsFile(const wchar_t* path) {
  return IsOfType(path, FileFacts::Type::REGULAR);
}

}  // namespace YFileSystem::Path
