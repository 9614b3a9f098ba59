#pragma once

namespace YBase {

/// Takes a cursor, or what moves several of them, to the next message of the tree: downwards first, then
/// along the level, then back up. Returns false at the end, when the cursor stands at the root again.
///
/// `Cursor` has `LowerLevelMessageIsUnvisited`, `GoToLowerLevelMessage`, `GoToSameLevelMessage` and
/// `GoToParent`, each called without arguments and returning a `bool`.
template <class Cursor>
bool AdvanceMessageCursor(Cursor& cursor) {
  if (cursor.LowerLevelMessageIsUnvisited()) {
    cursor.GoToLowerLevelMessage();
    return true;
  }
  do {
    if (cursor.LowerLevelMessageIsUnvisited()) {
      cursor.GoToSameLevelMessage();
      return true;
    }
  } while (cursor.GoToParent());
  return false;
}

}  // namespace YBase
