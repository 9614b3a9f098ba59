#pragma once

#include <YBase/SmartPtrI.h>
#include <YBase/StrongPtr.h>
#include <YResource/Bundle.h>
#include <YSynch/CriticalSection.h>
#include <YSynch/ForkParticipant.h>

#include <atomic>
#include <memory>
#include <vector>

namespace YResource {

/// Which bundle belongs to which domain.
///
/// What is registered is an immutable list, and a change puts another in its place. A reader says that it is
/// there, takes the list, takes a reference to the bundle that it needs, and says that it has left. A writer
/// frees the old list once every reader that may have seen it has left. So readers never wait; a writer waits
/// for the few instructions that readers are there for, never for client code. Keeping every list for good
/// would be simpler, but would keep every bundle that was ever registered; an atomic shared pointer has a
/// lock inside.
///
/// Threads: any.
class BundleRegistry final : private YSynch::ForkParticipant {
 public:
  BundleRegistry();
  ~BundleRegistry() override;

  /// Null takes away what is registered.
  ///
  /// Failure: `std::bad_alloc`; everything stays as it was.
  void Set(unsigned domain, YBase::SmartPtrI<Bundle> bundle);

  /// The bundle of a domain, or null. Neither locks nor allocates.
  YBase::SmartPtrI<Bundle> Find(unsigned domain) const;

 private:
  struct Registration {
    unsigned domain;
    YBase::SmartPtrI<Bundle> bundle;
  };
  // In ascending order of domains.
  using List = std::vector<Registration>;

  class Visit;

  static std::unique_ptr<const List> Change(const List& list, unsigned domain,
                                            YBase::SmartPtrI<Bundle> bundle);
  void WaitForReaders() noexcept;
  void AfterForkInChild() noexcept override;

  // Keeps writers apart.
  const YBase::StrongPtr<YSynch::CriticalSection> mpLock;
  std::atomic<const List*> mpList;
  // Readers count themselves in the one that the current phase names, so that the other runs empty. All of
  // this in sequential order: either the writer sees a reader's count, or the reader sees the writer's list.
  mutable std::atomic<unsigned> mReaders[2]{};
  std::atomic<unsigned> mPhase{0};
};

}  // namespace YResource
