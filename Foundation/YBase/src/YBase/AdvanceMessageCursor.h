#pragma once

namespace YBase {

/// Moves a cursor, or an object that moves several cursors, to the next message of the tree: first down, then
/// along the level, then back up. Returns false at the end, when the cursor is back at the root.
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
