#pragma once

#include <cstddef>
#include <list>
#include <type_traits>
#include <vector>

#include <YBase/Message.h>

namespace YBase {

/// A place in a tree of messages, and which of the messages on the way to it have been visited. It goes from
/// message to message, each before those beneath it. `MessageType` is `Message` or `const Message`.
///
/// Several cursors may walk trees in step: one leads, the others follow it with `emptyWhereMissing`. What a
/// follower's tree lacks is then an empty message, so that trees of different shape are walked like equal
/// ones, and none is read outside: a `MessageCursor` adds that message to its tree, a `ConstMessageCursor`
/// only shows one.
///
/// Ownership: a value that refers to the tree, which must outlive it. Texts may be set and messages added
/// while a cursor stands in the tree; what was added behind its last visited message may be missed.
///
/// Threads: as the tree.
///
/// Failure: `std::bad_alloc`; the cursor stays where it is.
template <class MessageType>
class BasicMessageCursor {
 public:
  /// Stands at `root`, of which nothing beneath has been visited.
  explicit BasicMessageCursor(MessageType& root);

  MessageType& GetCurrentMessage() const noexcept { return *mPath.back().message; }
  /// 0 at the root.
  std::size_t GetLevel() const noexcept { return mPath.size() - 1; }

  /// Whether a message right beneath the current one has not been visited yet.
  bool LowerLevelMessageIsUnvisited() const noexcept;

  /// Goes to the first unvisited message right beneath the current one. Returns false, and stays, where there
  /// is none and none is to take its place.
  bool GoToLowerLevelMessage(bool emptyWhereMissing = false) { return Descend(emptyWhereMissing); }
  /// Goes on along a level that `GoToParent` has just left: to the message behind the one it came from.
  /// Returns false, and stays, where there is none and none is to take its place.
  bool GoToSameLevelMessage(bool emptyWhereMissing = false) { return Descend(emptyWhereMissing); }
  /// Returns false, and stays, at the root.
  bool GoToParent() noexcept;

 private:
  using Iterator = std::conditional_t<std::is_const_v<MessageType>, std::list<Message>::const_iterator,
                                      std::list<Message>::iterator>;

  struct Step {
    MessageType* message;
    Iterator nextLower;
  };

  bool Descend(bool emptyWhereMissing);
  static MessageType& ReplaceMissing(MessageType& parent);

  // From the root to the current message; never empty. Not recursion, so that no depth overflows a stack.
  std::vector<Step> mPath;
};

extern template class BasicMessageCursor<Message>;
extern template class BasicMessageCursor<const Message>;

}  // namespace YBase
