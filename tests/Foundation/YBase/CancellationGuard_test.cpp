#include <YBase/CancellationGuard.h>

#include <pthread.h>

#include "support/CancelledThread.h"

namespace {

using YBase::CancellationGuard;

TEST(CancellationGuard, PostponesACancellationUntilItIsDestroyed) {
  bool survived = false;
  bool wentOn = false;
  EXPECT_TRUE(Support::IsCancelled([&] {
    {
      const CancellationGuard guard;
      pthread_cancel(pthread_self());
      pthread_testcancel();
      survived = true;
    }
    pthread_testcancel();
    wentOn = true;
  }));
  EXPECT_TRUE(survived);
  EXPECT_FALSE(wentOn);
}

TEST(CancellationGuard, RestoresTheCancellationStateOfTheThread) {
  bool survived = false;
  EXPECT_FALSE(Support::IsCancelled([&] {
    const CancellationGuard outer;
    { const CancellationGuard inner; }
    pthread_cancel(pthread_self());
    pthread_testcancel();
    survived = true;
    pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, nullptr);
  }));
  EXPECT_TRUE(survived);
}

}  // namespace
