#pragma once

namespace YBase {

/// Guards what all lookups of frames share. There is one lock for the process, which is usable before any
/// code has run and is never destroyed.
///
/// A fork waits for it. A child that was forked in the middle of a lookup could never look up anything: the
/// data would be half written, and the C library would leave the loader's list of modules locked.
class LookupLock {
 public:
  LookupLock() noexcept;
  ~LookupLock();
  LookupLock(const LookupLock&) = delete;
  LookupLock& operator=(const LookupLock&) = delete;
};

}  // namespace YBase
