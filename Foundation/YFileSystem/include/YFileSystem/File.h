#pragma once

#include <optional>

#include <YFileSystem/Export.h>
#include <YFileSystem/FileFacts.h>

/// Whole files by path.
///
/// Failure: operations throw `YBase::ExceptionImpl<YBase::Message>` naming the path and the system's reason.
namespace YFileSystem::File {

/// What has this name itself: a symbolic link is not followed. None only where the system says that nothing
/// has it.
YFILESYSTEM_EXPORT std::optional<FileFacts> Query(const wchar_t* path);

/// Deletes a file; a symbolic link is deleted itself. Does nothing where there is none, and for an empty
/// name.
YFILESYSTEM_EXPORT void Delete(const wchar_t* path);

/// Gives a file another name in the same file system; whatever file or symbolic link has that name is
/// replaced in one step.
YFILESYSTEM_EXPORT void Move(const wchar_t* from, const wchar_t* to);

}  // namespace YFileSystem::File
