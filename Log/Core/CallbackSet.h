#pragma once

#include <functional>
#include <set>
#include <utility>

#include <YBase/SmartPtrI.h>

namespace YLog {

/// References to callbacks, each callback once, in the order of their addresses. Null counts like any other.
///
/// Threads: like any value.
template <class Callback>
class CallbackSet {
  struct AddressOrder {
    using is_transparent = void;

    static const Callback* Address(const Callback* callback) { return callback; }
    static const Callback* Address(const YBase::SmartPtrI<Callback>& callback) { return callback.Get(); }

    template <class Left, class Right>
    bool operator()(const Left& left, const Right& right) const {
      return std::less<>()(Address(left), Address(right));
    }
  };
  using Set = std::set<YBase::SmartPtrI<Callback>, AddressOrder>;

 public:
  /// What was removed. It holds the reference until it is destroyed.
  using Removed = typename Set::node_type;

  /// Takes the reference, unless the set has the callback already.
  void Add(YBase::SmartPtrI<Callback>& callback) { mCallbacks.insert(std::move(callback)); }

  /// Returns the reference, so that the caller can release it where the callback's destructor may run.
  Removed Remove(const Callback* callback) noexcept {
    const auto position = mCallbacks.find(callback);
    return position != mCallbacks.end() ? mCallbacks.extract(position) : Removed();
  }

  template <class Function>
  void ForEach(Function call) const {
    for (const auto& callback : mCallbacks) {
      if (callback) call(*callback);
    }
  }

 private:
  Set mCallbacks;
};

}  // namespace YLog
