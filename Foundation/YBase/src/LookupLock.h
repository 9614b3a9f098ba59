#pragma once

namespace YBase {

/// Held by whoever looks up frames of a call stack: what lookups share is guarded by it. There is one, ready
/// before any code has run and never destroyed.
///
/// A fork waits for it and holds it, because a child that was forked in the middle of a lookup could never
/// look up anything: neither what is half written nor the loader's list of modules, which the C library
/// leaves locked in the child, could be mended there.
class LookupLock {
 public:
  LookupLock() noexcept;
  ~LookupLock();
  LookupLock(const LookupLock&) = delete;
  LookupLock& operator=(const LookupLock&) = delete;
};

}  // namespace YBase
