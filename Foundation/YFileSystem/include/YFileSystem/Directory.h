#pragma once

#include <YFileSystem/Export.h>

namespace YFileSystem::Directory {

/// Creates a directory and, if `withParents` is true, all its missing parents. An existing directory is left
/// as it is.
///
/// Failure: throws `YBase::ExceptionImpl<YBase::Message>` naming the path and the system's reason.
YFILESYSTEM_EXPORT void Create(const wchar_t* path, bool withParents);

}  // namespace YFileSystem::Directory
