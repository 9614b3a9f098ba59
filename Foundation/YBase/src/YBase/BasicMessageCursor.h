#pragma once

#include <cstddef>
#include <list>
#include <type_traits>
#include <vector>

#include <YBase/Message.h>

namespace YBase {

/// A position in a tree of messages. It moves from message to message, to each before those below it, and
/// remembers which of them have been visited. `MessageType` is `Message` or `const Message`.
///
/// Several cursors may visit trees in step: one leads, the others follow it with `emptyWhereMissing`. A
/// message that the tree of a follower lacks is then replaced by an empty one. So trees of different shapes
/// are visited alike, and no cursor leaves its tree: a `MessageCursor` adds the empty message to the tree, a
/// `ConstMessageCursor` only shows one.
///
/// Ownership: a value that refers to the tree, which must outlive it. Texts may be set and messages added
/// while a cursor is in the tree; a message that is added after the last visited one may be missed.
///
/// Threads: as for the tree.
///
/// Failure: `std::bad_alloc`; the cursor stays where it is.
template <class MessageType>
class BasicMessageCursor {
 public:
  /// Begins at `root`, with nothing below it visited.
  explicit BasicMessageCursor(MessageType& root);

  MessageType& GetCurrentMessage() const noexcept { return *mPath.back().message; }
  /// 0 at the root.
  std::size_t GetLevel() const noexcept { return mPath.size() - 1; }

  /// Whether a message directly below the current one has not been visited yet.
  bool LowerLevelMessageIsUnvisited() const noexcept;

  /// Moves to the first unvisited message directly below the current one. If there is none, and an empty one
  /// does not replace it, stays and returns false.
  bool GoToLowerLevelMessage(bool emptyWhereMissing = false) { return Descend(emptyWhereMissing); }
  /// Moves to the next message of the level that `GoToParent` has just left. If there is none, and an empty
  /// one does not replace it, stays and returns false.
  bool GoToSameLevelMessage(bool emptyWhereMissing = false) { return Descend(emptyWhereMissing); }
  /// Moves to the parent. At the root, stays and returns false.
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

  // From the root to the current message; never empty. A list instead of recursion, so that a deep tree
  // cannot overflow the stack.
  std::vector<Step> mPath;
};

extern template class BasicMessageCursor<Message>;
extern template class BasicMessageCursor<const Message>;

}  // namespace YBase
