#pragma once

#include <optional>

#include <YFileSystem/Export.h>
#include <YFileSystem/FileFacts.h>

/// Operations on whole files, by path.
///
/// Failure: operations throw `YBase::ExceptionImpl<YBase::Message>` naming the path and the system's reason.
namespace YFileSystem::File {

/// What has this name; a symbolic link is not followed. Empty only if the system says that nothing has the
/// name.
YFILESYSTEM_EXPORT std::optional<FileFacts> Query(const wchar_t* path);

/// Deletes a file, or a symbolic link itself. Does nothing if there is none, or if the name is empty.
YFILESYSTEM_EXPORT void Delete(const wchar_t* path);

/// Renames a file within its file system. A file or symbolic link that has the new name is replaced in one
/// step.
YFILESYSTEM_EXPORT void Move(const wchar_t* from, const wchar_t* to);

}  // namespace YFileSystem::File
