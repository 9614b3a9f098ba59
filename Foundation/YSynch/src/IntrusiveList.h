#pragma once

namespace YSynch {

/// Lists through `mpPrevious` and `mpNext` of their nodes, with a plain pointer to the first: joining and
/// leaving allocates nothing and cannot fail. A class, so that nodes can make it their only friend.
class IntrusiveList {
 public:
  template <class Node>
  static void Add(Node** first, Node& node) noexcept {
    node.mpPrevious = nullptr;
    node.mpNext = *first;
    if (node.mpNext != nullptr) node.mpNext->mpPrevious = &node;
    *first = &node;
  }

  template <class Node>
  static void Remove(Node** first, Node& node) noexcept {
    if (node.mpNext != nullptr) node.mpNext->mpPrevious = node.mpPrevious;
    (node.mpPrevious != nullptr ? node.mpPrevious->mpNext : *first) = node.mpNext;
  }
};

}  // namespace YSynch
