#pragma once

#include <cstddef>
#include <vector>

#include <YBase/SmartPtrI.h>
#include <YLog/Dispatcher.h>

namespace YLog {

/// The dispatchers of a logger. Clients know each of them by a cookie, which encodes its place. A place never
/// changes: dispatchers are added at the end and replaced, never removed. None is null.
///
/// Threads: like any value.
class DispatcherList {
 public:
  static constexpr std::size_t MAX_COUNT = 0x10000;

  static constexpr unsigned short ToCookie(std::size_t index) noexcept {
    return static_cast<unsigned short>(index ^ COOKIE_MASK);
  }
  static constexpr std::size_t ToIndex(unsigned short cookie) noexcept { return cookie ^ COOKIE_MASK; }

  DispatcherList() = default;
  DispatcherList(const DispatcherList&) = default;
  DispatcherList& operator=(const DispatcherList&) = default;
  /// Releases the dispatchers back to front.
  ~DispatcherList();

  std::size_t GetCount() const noexcept { return mPlaces.size(); }
  /// Null past the end.
  YBase::SmartPtrI<Dispatcher> Get(std::size_t index) const;
  bool Contains(const Dispatcher& dispatcher) const noexcept;
  /// The place of the first dispatcher with that name, or the count if there is none.
  std::size_t FindName(const char* name) const;

  /// Whether the hook has configured the dispatcher of that place. False past the end.
  bool IsConfigured(std::size_t index) const noexcept;

  /// Returns the new dispatcher's place.
  ///
  /// Failure: when there are as many dispatchers as cookies, throws `YBase::ExceptionImpl<YBase::Message>`.
  std::size_t Add(YBase::SmartPtrI<Dispatcher> dispatcher);
  /// Puts a dispatcher into the place of another and returns the other. \pre `index` is below the count.
  YBase::SmartPtrI<Dispatcher> Replace(std::size_t index, YBase::SmartPtrI<Dispatcher> dispatcher) noexcept;
  /// A place counts as configured until this is called. \pre `index` is below the count.
  void SetConfigured(std::size_t index, bool configured) noexcept;

 private:
  static constexpr std::size_t COOKIE_MASK = 0xDAFF;

  struct Place {
    YBase::SmartPtrI<Dispatcher> mpDispatcher;
    bool mbConfigured = true;
  };

  std::vector<Place> mPlaces;
};

}  // namespace YLog
