#include <YBase/BasicMessageCursor.h>
#include <YBase/NeverDestroyed.h>

namespace YBase {

namespace {

// Made while the library is loaded.
NeverDestroyed<const Message> gsNothing;

}  // namespace

template <class MessageType>
BasicMessageCursor<MessageType>::BasicMessageCursor(MessageType& root)
    : mPath{{&root, root.mLowerLevelMessages.begin()}} {}

template <class MessageType>
bool BasicMessageCursor<MessageType>::LowerLevelMessageIsUnvisited() const noexcept {
  const Step& here = mPath.back();
  return here.nextLower != here.message->mLowerLevelMessages.end();
}

template <class MessageType>
bool BasicMessageCursor<MessageType>::GoToParent() noexcept {
  if (mPath.size() == 1) return false;
  mPath.pop_back();
  return true;
}

template <class MessageType>
bool BasicMessageCursor<MessageType>::Descend(bool emptyWhereMissing) {
  const bool isThere = LowerLevelMessageIsUnvisited();
  if (!isThere && !emptyWhereMissing) return false;
  const std::size_t level = GetLevel();
  MessageType& lower = isThere ? *mPath[level].nextLower : ReplaceMissing(*mPath[level].message);
  mPath.push_back({&lower, lower.mLowerLevelMessages.begin()});
  if (isThere) ++mPath[level].nextLower;
  return true;
}

template <class MessageType>
MessageType& BasicMessageCursor<MessageType>::ReplaceMissing([[maybe_unused]] MessageType& parent) {
  if constexpr (std::is_const_v<MessageType>) {
    return *gsNothing;
  } else {
    // The parent's position stays at the end of its list, so a message that is added here counts as visited.
    return parent.mLowerLevelMessages.emplace_back();
  }
}

template class BasicMessageCursor<Message>;
template class BasicMessageCursor<const Message>;

}  // namespace YBase
