#include <YSynch/ThreadContextPtr.h>

#include <stdexcept>
#include <thread>

#include <gtest/gtest.h>

namespace {

class Counter : public YSynch::ThreadContext {
 public:
  virtual int Count() = 0;
};

class Counter_Impl final : public Counter {
 public:
  Counter_Impl() {
    if (sbRefuses) throw std::runtime_error("refused");
  }

  int Count() override { return ++mCount; }
  void Delete() override { delete this; }

  static inline bool sbRefuses = false;

 private:
  ~Counter_Impl() override = default;

  int mCount = 0;
};

class ThreadContextPtr : public testing::Test {
 protected:
  YBase::StrongPtr<YSynch::ThreadLocalStorage> mStorage = YSynch::CreateThreadLocalStorage();
  YSynch::ThreadContextPtr<Counter, Counter_Impl> mCounter{*mStorage};
};

TEST_F(ThreadContextPtr, CreatesTheContextOnFirstUse) {
  EXPECT_EQ(mCounter.GetIfPresent(), nullptr);
  EXPECT_EQ(mCounter->Count(), 1);
  EXPECT_EQ(mCounter->Count(), 2);
  EXPECT_EQ(mCounter.GetIfPresent(), mCounter.Get());
}

TEST_F(ThreadContextPtr, CreatesOneForEachThread) {
  EXPECT_EQ(mCounter->Count(), 1);
  std::thread([this] {
    EXPECT_EQ(mCounter.GetIfPresent(), nullptr);
    EXPECT_EQ(mCounter->Count(), 1);
  }).join();
  EXPECT_EQ(mCounter->Count(), 2);
}

TEST_F(ThreadContextPtr, StaysEmptyIfTheContextCannotBeCreated) {
  Counter_Impl::sbRefuses = true;
  EXPECT_THROW(mCounter.Get(), std::runtime_error);
  EXPECT_EQ(mCounter.GetIfPresent(), nullptr);
  Counter_Impl::sbRefuses = false;
  EXPECT_EQ(mCounter->Count(), 1);
}

}  // namespace
