#include <YBase/BasicMessageCursor.h>
#include <YBase/NeverDestroyed.h>

namespace YBase {

namespace {

// Made while the library is loaded.
NeverDestroyed<const Message> gsNothing;

}  // namespace

template <class MessageType>
BasicMessageCursor<MessageType>::BasicMessageCursor(MessageType& root)
    : mRoad{{&root, root.mLowerLevelMessages.begin()}} {}

template <class MessageType>
bool BasicMessageCursor<MessageType>::LowerLevelMessageIsUnvisited() const noexcept {
  const Place& here = mRoad.back();
  return here.nextLower != here.message->mLowerLevelMessages.end();
}

template <class MessageType>
bool BasicMessageCursor<MessageType>::GoToParent() noexcept {
  if (mRoad.size() == 1) return false;
  mRoad.pop_back();
  return true;
}

template <class MessageType>
bool BasicMessageCursor<MessageType>::Descend(bool emptyWhereMissing) {
  const bool isThere = LowerLevelMessageIsUnvisited();
  if (!isThere && !emptyWhereMissing) return false;
  const std::size_t level = GetLevel();
  MessageType& lower = isThere ? *mRoad[level].nextLower : ReplaceMissing(*mRoad[level].message);
  mRoad.push_back({&lower, lower.mLowerLevelMessages.begin()});
  if (isThere) ++mRoad[level].nextLower;
  return true;
}

template <class MessageType>
MessageType& BasicMessageCursor<MessageType>::ReplaceMissing([[maybe_unused]] MessageType& parent) {
  if constexpr (std::is_const_v<MessageType>) {
    return *gsNothing;
  } else {
    // The parent's next place stays the end of its list: what is added here counts as visited.
    return parent.mLowerLevelMessages.emplace_back();
  }
}

template class BasicMessageCursor<Message>;
template class BasicMessageCursor<const Message>;

}  // namespace YBase
