#pragma once

#include <YBase/ReturnString.h>
#include <YFileSystem/Export.h>

/// Paths as texts, and two questions to the file system about them. Wide texts are turned into UTF-8 file
/// names. Null is the empty path.
namespace YFileSystem::Path {

/// `relative` below `base`, normalised lexically: no ".", no repeated separator, ".." folded into what stands
/// before it, no separator at the end. An absolute second path wins; an empty one only normalises the first.
/// Where nothing remains, as of "a/..", the result is "."; only two empty paths make an empty one.
///
/// Failure: throws `YBase::ExceptionImpl<YBase::Message>` where the result is longer than the system takes.
YFILESYSTEM_EXPORT YBase::ReturnWString Combine(const wchar_t* base, const wchar_t* relative);

/// What stands before the last separator; "/" for a path directly below the root, empty for a bare name.
YFILESYSTEM_EXPORT YBase::ReturnWString GetDirname(const wchar_t* path);

/// The last component, extension and all: a pointer into `path`, behind its last separator.
YFILESYSTEM_EXPORT const char* GetBasename(const char* path) noexcept;

/// Whether there is a directory at the path, or a symbolic link to one. What cannot be asked is none.
YFILESYSTEM_EXPORT bool IsDirectory(const wchar_t* path);

/// Whether there is a regular file at the path, or a symbolic link to one. What cannot be asked is none.
YFILESYSTEM_EXPORT bool IsFile(const wchar_t* path);

}  // namespace YFileSystem::Path
