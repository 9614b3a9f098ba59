#pragma once

#include <memory>
#include <string>

#include <YBase/ReturnString.h>
#include <YLog/Export.h>

namespace YLog {

/// The user, session and object that the calling thread is working for, in UTF-8. The header of each of its
/// messages contains them.
struct ThreadSpecificLogHeaders {
  std::string userID;
  std::string sessionID;
  std::string objectID;
};

// Threads: each of these functions touches only what belongs to the calling thread.
//
// Failure: they throw `std::bad_alloc`, and `YBase::ExceptionImpl<YBase::Message>` while no `Initializer` is
// alive.

/// Null is the empty text, which removes the ID.
YLOG_EXPORT void SetUserIDToThreadContext(const wchar_t* id);
YLOG_EXPORT void SetSessionIDToThreadContext(const wchar_t* id);
YLOG_EXPORT void SetObjectIDToThreadContext(const wchar_t* id);
YLOG_EXPORT YBase::ReturnWString GetObjectIDFromThreadContext();

/// A number that the application attaches to the calling thread; 0 until it is set. Not logged.
YLOG_EXPORT void SetEpisodeNumber(unsigned long long number);
YLOG_EXPORT unsigned long long GetEpisodeNumber();

/// Sets the IDs that are not empty; for an empty one, the thread's own stays as it was. Invalid UTF-8 is
/// replaced as `YBase::UTF8ToWideChar` does.
YLOG_EXPORT void SetThreadSpecificLogHeaders(const ThreadSpecificLogHeaders& headers);
/// Removes all three IDs.
YLOG_EXPORT void ClearThreadSpecificLogHeaders();
/// A copy of the three IDs.
YLOG_EXPORT std::shared_ptr<ThreadSpecificLogHeaders> GetThreadSpecificLogHeaders();

}  // namespace YLog
