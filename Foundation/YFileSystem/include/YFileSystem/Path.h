#pragma once

#include <YBase/ReturnString.h>
#include <YFileSystem/Export.h>

/// Paths as texts, and two queries of the file system. Wide texts are converted to file names in UTF-8. Null
/// is the empty path.
namespace YFileSystem::Path {

/// `relative` below `base`, normalised lexically: no ".", no repeated separator, no ".." where it can be
/// removed with the component before it, no separator at the end. If the second path is absolute, the first
/// is ignored; if it is empty, the first is only normalised. If nothing remains, as of "a/..", the result is
/// "."; it is empty only if both paths are.
///
/// Failure: throws `YBase::ExceptionImpl<YBase::Message>` if the result is longer than the system's limit.
YFILESYSTEM_EXPORT YBase::ReturnWString Combine(const wchar_t* base, const wchar_t* relative);

/// The part before the last separator; "/" for a path directly below the root, empty for a bare name.
YFILESYSTEM_EXPORT YBase::ReturnWString GetDirname(const wchar_t* path);

/// The last component, including its extension: a pointer into `path`, after its last separator.
YFILESYSTEM_EXPORT const char* GetBasename(const char* path) noexcept;

/// Whether there is a directory at the path, or a symbolic link to one. False if the system cannot say.
YFILESYSTEM_EXPORT bool IsDirectory(const wchar_t* path);

/// Whether there is a regular file at the path, or a symbolic link to one. False if the system cannot say.
YFILESYSTEM_EXPORT bool IsFile(const wchar_t* path);

}  // namespace YFileSystem::Path
