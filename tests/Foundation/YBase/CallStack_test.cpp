#include <pthread.h>

#include <algorithm>
#include <atomic>
#include <latch>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <YBase/YBase.h>

#include "CallStackText.h"
#include "NewProcess.h"
#include "support/CancelledThread.h"

// Functions of a client. Each does something after its call, so that the compiler does not replace the call
// by a jump. They are exported, because only exported functions have names where there is no libbacktrace.
namespace orders {

std::atomic<int> gCalls = 0;

[[gnu::noinline]] YBase::CallStack Take() {
  YBase::CallStack stack = YBase::CreateCallStack();
  gCalls = gCalls + 1;
  return stack;
}

[[gnu::noinline]] YBase::CallStack Recurse(int depth) {
  YBase::CallStack stack = depth > 0 ? Recurse(depth - 1) : Take();
  gCalls = gCalls + 1;
  return stack;
}

/// The library calls this.
class Catalogue final : public YBase::Localizer {
 public:
  void AddRef() const noexcept override {}
  void Release() const noexcept override {}
  [[gnu::noinline]] YBase::ReturnString GetText(unsigned, unsigned, unsigned short) const override {
    mStack = YBase::CreateCallStack();
    gCalls = gCalls + 1;
    return "text";
  }
  unsigned short GetParentLanguage(unsigned short) const noexcept override { return 0; }

  mutable YBase::CallStack mStack;
};

[[gnu::noinline]] YBase::CallStack Format() {
  const Catalogue catalogue;
  YBase::Message message;
  message.SetDomainAndID(1, 2);
  YBase::Message localized;
  YBase::FormatMessage(message, localized, 7, catalogue);
  gCalls = gCalls + 1;
  return catalogue.mStack;
}

}  // namespace orders

// Like code of the library's headers, which is in a namespace of the library and in the image of the client.
namespace YLog {

// The arguments are used. Otherwise a compiler might make copies of the functions without them and without
// names.
template <class T>
[[gnu::noinline]] YBase::CallStack TakeInHeader(const T& calls) {
  YBase::CallStack stack = YBase::CreateCallStack();
  orders::gCalls = calls;
  return stack;
}

struct Wrapper {
  [[gnu::noinline]] YBase::CallStack Take() const {
    YBase::CallStack stack = TakeInHeader(calls);
    orders::gCalls = calls + 1;
    return stack;
  }

  int calls;
};

}  // namespace YLog

namespace orders {

[[gnu::noinline]] YBase::CallStack TakeThroughHeaders() {
  YBase::CallStack stack = YLog::Wrapper{gCalls}.Take();
  gCalls = gCalls + 1;
  return stack;
}

}  // namespace orders

namespace {

using testing::AllOf;
using testing::Each;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

TEST(CallStack, BeginsWithSixFramesOfTheLibrary) {
  const YBase::CallStack stack = orders::Take();
  ASSERT_GT(stack.GetFrameCount(), 6u);
  for (unsigned i = 0; i != 6; ++i) EXPECT_STREQ(stack.GetFrameDescription(i), L"libYLog");
}

TEST(CallStack, ShowsTheClientsFunctionAsTheSeventhFrame) {
  const std::vector<std::string> frames = GetShownFrames(orders::Recurse(1));
  ASSERT_GT(frames.size(), 3u);
  EXPECT_THAT(frames[0], StartsWith("orders::Take()"));
  EXPECT_THAT(frames[1], StartsWith("orders::Recurse(int)"));
  EXPECT_THAT(frames[2], StartsWith("orders::Recurse(int)"));
  EXPECT_THAT(frames[3], Not(HasSubstr("orders::")));
}

TEST(CallStack, LeavesOutCodeOfTheLibrarysHeaders) {
  EXPECT_THAT(GetShownFrames(orders::TakeThroughHeaders())[0], StartsWith("orders::TakeThroughHeaders()"));
}

TEST(CallStack, ShowsAFunctionThatTheLibraryCallsAndThenTheLibrary) {
  const std::vector<std::string> frames = GetShownFrames(orders::Format());
  EXPECT_THAT(frames[0], StartsWith("orders::Catalogue::GetText("));
  const auto find = [&](const char* text) {
    return std::find_if(frames.begin(), frames.end(),
                        [&](const auto& frame) { return frame.starts_with(text); });
  };
  ASSERT_NE(find("orders::Format()"), frames.end());
  EXPECT_LT(find("YBase::FormatMessage("), find("orders::Format()"));
}

TEST(CallStack, IsTakenByACancelledThreadEvenAsTheFirstOfTheProcess) {
  RunInNewProcess([] {
    YBase::CallStack stack;
    EXPECT_TRUE(Support::FinishesBeforeItIsCancelled([&stack] { stack = YBase::CreateCallStack(); }));
    EXPECT_GT(stack.GetFrameCount(), YBase::CallStack::LIBRARY_FRAME_COUNT);
  });
}

TEST(CallStack, IsTheSameFromTheSamePlace) {
  std::vector<YBase::CallStack> stacks;
  // The compiler must not unroll the loop, which would make several places of one.
  volatile int rest = 2;
  while (rest != 0) {
    stacks.push_back(orders::Take());
    rest = rest - 1;
  }
  EXPECT_EQ(GetShownFrames(stacks[0]), GetShownFrames(stacks[1]));
}

TEST(CallStack, SaysThatItIsCutOffAfter256Frames) {
  const YBase::CallStack stack = orders::Recurse(1000);
  ASSERT_EQ(stack.GetFrameCount(), 257u);
  EXPECT_EQ(YBase::WideCharToUTF8(stack.GetFrameDescription(255)).substr(0, 15), "orders::Recurse");
  EXPECT_STREQ(stack.GetFrameDescription(256), L"(further frames are left out)");
}

TEST(CallStack, IsCompleteUpTo256Frames) {
  const int depth = 256 - static_cast<int>(orders::Recurse(0).GetFrameCount());
  EXPECT_EQ(orders::Recurse(depth).GetFrameCount(), 256u);
  EXPECT_EQ(GetShownFrames(orders::Recurse(depth)).back(), GetShownFrames(orders::Take()).back());
  EXPECT_EQ(orders::Recurse(depth + 1).GetFrameCount(), 257u);
}

TEST(CallStack, CopyOutlivesTheOriginal) {
  YBase::CallStack copy;
  EXPECT_EQ(copy.GetFrameCount(), 0u);
  {
    const YBase::CallStack stack = orders::Take();
    copy = stack;
  }
  EXPECT_THAT(GetShownFrames(copy)[0], StartsWith("orders::Take()"));
}

TEST(CallStack, HasNoEmptyLinesAndNoLineBreaks) {
  const std::vector<std::string> frames = GetShownFrames(orders::Take());
  EXPECT_THAT(frames, Each(AllOf(Not(IsEmpty()), Not(HasSubstr("\n")))));
}

TEST(CallStack, IsTheSameInFortyConcurrentThreads) {
  constexpr std::size_t COUNT = 40;
  std::latch start(COUNT);
  std::vector<std::vector<std::string>> frames(COUNT);
  std::vector<std::thread> threads;
  for (auto& result : frames) {
    threads.emplace_back([&] {
      start.arrive_and_wait();
      result = GetShownFrames(orders::Recurse(20));
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_THAT(frames[0][0], StartsWith("orders::Take()"));
  EXPECT_THAT(frames, Each(frames[0]));
}

// The first stack reads the debug information, too.
TEST(CallStack, UsesLittleOfTheThreadsStack) {
  RunInNewProcess([] {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, 128 * 1024), 0);
    pthread_t thread;
    const auto work = [](void* shown) -> void* {
      *static_cast<std::vector<std::string>*>(shown) = GetShownFrames(orders::Take());
      return nullptr;
    };
    std::vector<std::string> frames;
    ASSERT_EQ(pthread_create(&thread, &attributes, work, &frames), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
    ASSERT_FALSE(frames.empty());
    EXPECT_THAT(frames[0], StartsWith("orders::Take()"));
  });
}

}  // namespace
