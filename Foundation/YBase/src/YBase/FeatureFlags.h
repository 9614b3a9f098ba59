#pragma once

namespace YBase {

/// Whether the host has switched on the feature with that name; at first every feature is off. Names are
/// compared exactly.
///
/// Threads: any, even while others set flags. Takes no lock and no memory, so it may be called for every
/// message.
///
/// Failure: throws `ExceptionImpl<Message>` for a name that is null.
bool IsFeatureEnabled(const wchar_t* name);

/// Switches a feature on or off for the whole process. Names are kept until it ends.
///
/// Threads: any.
///
/// Failure: throws `ExceptionImpl<Message>` for a name that is null; `std::bad_alloc`.
void SetFeatureEnabled(const wchar_t* name, bool enabled);

}  // namespace YBase
