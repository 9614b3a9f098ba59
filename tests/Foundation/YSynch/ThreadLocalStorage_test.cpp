#include <YBase/ExceptionImpl.h>
#include <YBase/Message.h>
#include <YSynch/ThreadLocalStorage.h>

#include <pthread.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <functional>
#include <latch>
#include <memory>
#include <string>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "support/ForkedThread.h"

namespace {

using Support::SucceededChild;
using Support::SucceedsInChild;
using Storage = YBase::StrongPtr<YSynch::ThreadLocalStorage>;

/// Counts its instances, and may run a function on destruction.
class Context final : public YSynch::ThreadContext {
 public:
  using Last = std::function<void()>;

  explicit Context(std::atomic<int>& living, Last last = {}) : mLiving(living), mLast(std::move(last)) {
    ++mLiving;
  }

  void Delete() override {
    --mLiving;
    const Last last = std::move(mLast);
    delete this;
    if (last) last();
  }

 private:
  ~Context() override = default;

  std::atomic<int>& mLiving;
  Last mLast;
};

class ThreadLocalStorage : public testing::Test {
 protected:
  Context* New(Context::Last last = {}) { return new Context(mLiving, std::move(last)); }

  /// Threads that each fill their slot and then wait until they may end.
  class Threads {
   public:
    Threads(ThreadLocalStorage& test, int count) : mFilled(count) {
      for (int i = 0; i != count; ++i) {
        mThreads.emplace_back([&, this] {
          test.mStorage->SetValue(test.New());
          mFilled.count_down();
          mMayGo.wait();
        });
      }
      mFilled.wait();
    }
    ~Threads() {
      if (!mMayGo.try_wait()) mMayGo.count_down();
      for (std::thread& thread : mThreads) thread.join();
    }
    void LetGo() { mMayGo.count_down(); }

   private:
    std::latch mFilled;
    std::latch mMayGo{1};
    std::vector<std::thread> mThreads;
  };

  std::atomic<int> mLiving = 0;
  Storage mStorage = YSynch::CreateThreadLocalStorage();
};

TEST_F(ThreadLocalStorage, IsEmptyUntilAValueIsStored) {
  EXPECT_EQ(mStorage->GetValue(), nullptr);
  mStorage->SetValue(nullptr);
  EXPECT_EQ(mStorage->GetValue(), nullptr);
  Context* context = New();
  mStorage->SetValue(context);
  EXPECT_EQ(mStorage->GetValue(), context);
}

TEST_F(ThreadLocalStorage, DisposesOfAReplacedValue) {
  mStorage->SetValue(New());
  Context* second = New();
  mStorage->SetValue(second);
  EXPECT_EQ(mStorage->GetValue(), second);
  EXPECT_EQ(mLiving, 1);
  mStorage->SetValue(nullptr);
  EXPECT_EQ(mStorage->GetValue(), nullptr);
  EXPECT_EQ(mLiving, 0);
}

TEST_F(ThreadLocalStorage, KeepsAValueThatIsStoredAgain) {
  Context* context = New();
  mStorage->SetValue(context);
  mStorage->SetValue(context);
  EXPECT_EQ(mStorage->GetValue(), context);
  EXPECT_EQ(mLiving, 1);
}

TEST_F(ThreadLocalStorage, IsEmptyWhileAValueIsDisposedOf) {
  bool empty = false;
  mStorage->SetValue(New([&] { empty = mStorage->GetValue() == nullptr; }));
  mStorage->SetValue(nullptr);
  EXPECT_TRUE(empty);
}

TEST_F(ThreadLocalStorage, GivesEachThreadItsOwnValue) {
  Context* own = New();
  mStorage->SetValue(own);
  std::thread([&] {
    EXPECT_EQ(mStorage->GetValue(), nullptr);
    Context* others = New();
    mStorage->SetValue(others);
    EXPECT_EQ(mStorage->GetValue(), others);
  }).join();
  EXPECT_EQ(mStorage->GetValue(), own);
}

TEST_F(ThreadLocalStorage, DisposesOfAValueWhenItsThreadEnds) {
  std::thread([&] { mStorage->SetValue(New()); }).join();
  EXPECT_EQ(mLiving, 0);
}

TEST_F(ThreadLocalStorage, LeavesNothingBehindAfterAThousandShortThreads) {
  for (int i = 0; i != 1'000; ++i) std::thread([&] { mStorage->SetValue(New()); }).join();
  EXPECT_EQ(mLiving, 0);
}

TEST_F(ThreadLocalStorage, DisposesOfEveryThreadsValueWhenItIsDestroyed) {
  const Threads threads(*this, 8);
  mStorage->SetValue(New());
  EXPECT_EQ(mLiving, 9);
  mStorage.reset();
  EXPECT_EQ(mLiving, 0);
}

TEST_F(ThreadLocalStorage, DisposesOfTheValuesOfMoreThreadsThanOneBatch) {
  const Threads threads(*this, 130);
  EXPECT_EQ(mLiving, 130);
  mStorage.reset();
  EXPECT_EQ(mLiving, 0);
}

TEST_F(ThreadLocalStorage, DisposesOfEachValueOnceWhenThreadsEndWhileItIsDestroyed) {
  for (int i = 0; i != 100; ++i) {
    {
      Threads threads(*this, 8);
      threads.LetGo();
      mStorage.reset();
    }
    EXPECT_EQ(mLiving, 0);
    mStorage = YSynch::CreateThreadLocalStorage();
  }
}

TEST_F(ThreadLocalStorage, StartsEmptyInThreadsThatUsedOneBefore) {
  mStorage->SetValue(New());
  mStorage.reset();
  mStorage = YSynch::CreateThreadLocalStorage();
  EXPECT_EQ(mStorage->GetValue(), nullptr);
  Context* context = New();
  mStorage->SetValue(context);
  EXPECT_EQ(mStorage->GetValue(), context);
  EXPECT_EQ(mLiving, 1);
}

TEST_F(ThreadLocalStorage, IsIndependentOfOtherStorages) {
  Context* first = New();
  mStorage->SetValue(first);
  Storage other = YSynch::CreateThreadLocalStorage();
  EXPECT_EQ(other->GetValue(), nullptr);
  Context* second = New();
  other->SetValue(second);
  EXPECT_EQ(mStorage->GetValue(), first);
  mStorage.reset();
  EXPECT_EQ(other->GetValue(), second);
  EXPECT_EQ(mLiving, 1);
}

TEST_F(ThreadLocalStorage, DisposesOfAValueThatADyingContextStores) {
  bool stored = false;
  std::thread([&] {
    mStorage->SetValue(New([&] {
      stored = true;
      EXPECT_EQ(mStorage->GetValue(), nullptr);
      mStorage->SetValue(New());
    }));
  }).join();
  EXPECT_TRUE(stored);
  EXPECT_EQ(mLiving, 0);
}

TEST_F(ThreadLocalStorage, DisposesOfAValueStoredWhileTheThreadEnds) {
  static std::function<void()> sLast;
  // Created after the storage's key, so that its destructor is called later.
  pthread_key_t key;
  ASSERT_EQ(pthread_key_create(&key, [](void*) { sLast(); }), 0);
  bool empty = false;
  sLast = [&] {
    empty = mStorage->GetValue() == nullptr;
    mStorage->SetValue(New());
  };
  std::thread([&] {
    mStorage->SetValue(New());
    EXPECT_EQ(pthread_setspecific(key, this), 0);
  }).join();
  EXPECT_TRUE(empty);
  EXPECT_EQ(mLiving, 0);
  pthread_key_delete(key);
}

TEST_F(ThreadLocalStorage, CanBeDestroyedByAContextOfAnEndingThread) {
  Storage other = YSynch::CreateThreadLocalStorage();
  std::thread([&] {
    mStorage->SetValue(New([&] { other.reset(); }));
    other->SetValue(New());
  }).join();
  EXPECT_EQ(other, nullptr);
  EXPECT_EQ(mLiving, 0);
}

TEST_F(ThreadLocalStorage, ForkedChildKeepsItsOwnValueAndLeavesTheOthersAlone) {
  const Threads threads(*this, 3);
  Context* own = New();
  mStorage->SetValue(own);
  const pid_t child = fork();
  if (child == 0) {
    const bool kept = mStorage->GetValue() == own;
    mStorage.reset();
    _exit(kept && mLiving == 3 ? 0 : 1);
  }
  EXPECT_TRUE(SucceededChild(child));
  EXPECT_EQ(mLiving, 4);
}

TEST_F(ThreadLocalStorage, ThreadsOfAForkedChildHaveValuesOfTheirOwn) {
  const Threads threads(*this, 3);
  EXPECT_TRUE(SucceedsInChild([&] {
    const Threads own(*this, 3);
    const bool filled = mLiving == 6;
    mStorage.reset();
    return filled && mLiving == 3;
  }));
}

/// \pre The process has created no storage yet.
void CreateStorageWithoutKeys() {
  std::vector<pthread_key_t> keys;
  for (pthread_key_t key = 0; pthread_key_create(&key, nullptr) == 0;) keys.push_back(key);
  try {
    YSynch::CreateThreadLocalStorage();
  } catch (const YBase::ExceptionImpl<YBase::Message>& failure) {
    pthread_key_delete(keys.back());
    const bool works = YSynch::CreateThreadLocalStorage() != nullptr;
    const std::string reason = std::make_error_code(std::errc::resource_unavailable_try_again).message();
    const bool isNamed =
        failure.what() ==
        "YSynch::CreateThreadLocalStorage: cannot create a key for values of threads: " + reason;
    std::_Exit(works && !keys.empty() && isNamed ? 0 : 1);
  }
  std::_Exit(2);
}

TEST(ThreadLocalStorageDeathTest, ThrowsIfTheSystemHasNoKeyLeftAndWorksOnceItHas) {
  // Starts in a new process, in which the library has no key yet.
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(CreateStorageWithoutKeys(), testing::ExitedWithCode(0), "");
}

}  // namespace
