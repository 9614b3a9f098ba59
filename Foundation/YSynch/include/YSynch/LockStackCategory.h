#pragma once

namespace YSynch {

/// What a lock belongs to. Every lock is created with a category, which can be inspected in a debugger and
/// has no effect on locking. Other values are legal.
enum EnumORBLockStackCategory : int {
  LOCK_STACK_CATEGORY_CLASS = -4,   ///< One lock for a whole class.
  LOCK_STACK_CATEGORY_OBJECT = -3,  ///< One lock for each object.
};

}  // namespace YSynch
