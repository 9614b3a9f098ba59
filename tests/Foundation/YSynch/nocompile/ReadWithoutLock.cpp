#include <YSynch/CriticalSection.h>

class Guarded {
 public:
  int Read() { return mValue; }

 private:
  YSynch::CriticalSection mLock{YSynch::LOCK_STACK_CATEGORY_OBJECT};
  int mValue YSYNCH_GUARDED_BY(mLock) = 0;
};
