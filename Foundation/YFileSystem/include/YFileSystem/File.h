#pragma once

#include <YFileSystem/Export.h>

/// Whole files by path.
///
/// Failure: operations throw `YBase::ExceptionImpl<YBase::Message>` naming the path and the system's reason.
namespace YFileSystem::File {

enum OpenMode : int { OPEN_MODE_CREATE = 1 };
enum ShareMode : int { SHARE_MODE_NONE = 0 };

/// Deletes a file; a symbolic link is deleted itself. Does nothing where there is none, and for an empty
/// name.
YFILESYSTEM_EXPORT void Delete(const wchar_t* path);

/// Gives a file another name in the same file system; whatever file or symbolic link has that name is
/// replaced in one step.
YFILESYSTEM_EXPORT void Move(const wchar_t* from, const wchar_t* to);

/// Opens a new, empty file for writing and returns its descriptor, which the caller closes. What stands at
/// the path is deleted first, so that a symbolic link there is replaced, never followed. The descriptor is
/// closed on exec; the file gets mode 0640 less the umask.
YFILESYSTEM_EXPORT int OpenDescriptor(const wchar_t* path, OpenMode openMode, ShareMode shareMode);

}  // namespace YFileSystem::File
