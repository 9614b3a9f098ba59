#include "MessageModel/ThreadContext_Impl.h"

#include <sys/wait.h>
#include <unistd.h>

#include <memory>
#include <string>

#include <YBase/System.h>
#include <YBase/TextConversion.h>
#include <YLog/Initializer.h>

#include "ModuleMain.h"
#include "support/AllocationCounter.h"

namespace {

using Support::GetAllocationCount;
using YLog::ThreadContext_Impl;

struct Deleter {
  void operator()(ThreadContext_Impl* context) const { context->Delete(); }
};
using ContextPtr = std::unique_ptr<ThreadContext_Impl, Deleter>;

class ThreadContextImpl : public testing::Test {
 protected:
  const YLog::Initializer mInitializer;
  const ContextPtr mpContext{new ThreadContext_Impl};
};

TEST_F(ThreadContextImpl, BeginsWithTheConstantFieldsOfTheThread) {
  const YLog::MessageHeader& header = *mpContext->GetMessageHeader();
  EXPECT_EQ(YBase::WideCharToUTF8(YBase::GetComputerName().c_str()), header.GetComputerName());
  EXPECT_EQ(YBase::GetCurrentProcessID(), header.GetProcessID());
  EXPECT_EQ(YBase::GetCurrentThreadID(), header.GetThreadID());
  EXPECT_STREQ("", header.GetServerInstanceName());
  EXPECT_EQ(0U, mpContext->GetEpisodeNumber());
}

TEST_F(ThreadContextImpl, KeepsItsHeaderAndItsBody) {
  EXPECT_EQ(mpContext->GetMessageHeader(), mpContext->GetMessageHeader());
  ASSERT_NE(nullptr, mpContext->GetMessageBody());
  EXPECT_EQ(mpContext->GetMessageBody(), mpContext->GetMessageBody());
}

TEST_F(ThreadContextImpl, CreatesItsBodyOnTheFirstRequest) {
  const unsigned long before = GetAllocationCount();
  mpContext->GetMessageHeader();
  EXPECT_EQ(before, GetAllocationCount());
  mpContext->GetMessageBody();
  const unsigned long made = GetAllocationCount();
  EXPECT_GT(made, before);
  mpContext->GetMessageBody();
  EXPECT_EQ(made, GetAllocationCount());
}

TEST_F(ThreadContextImpl, IsCreatedOncePerThread) {
  YLog::ThreadContext* context = YLog::gModuleMainPtr->GetThreadContext();
  EXPECT_EQ(context, YLog::gModuleMainPtr->GetThreadContext());
  EXPECT_NE(context, mpContext.get());
}

/// Runs in a child process, which exits with the returned status.
int TakeOverInChild(ThreadContext_Impl& context) {
  const unsigned long allocations = GetAllocationCount();
  context.TakeOverAfterFork();
  if (GetAllocationCount() != allocations) return 1;
  const YLog::MessageHeader& header = *context.GetMessageHeader();
  if (header.GetProcessID() != static_cast<unsigned>(getpid())) return 2;
  if (header.GetThreadID() != static_cast<unsigned long>(gettid())) return 3;
  if (header.GetProcessIDDecimalString() != std::to_string(getpid())) return 4;
  return 0;
}

TEST_F(ThreadContextImpl, TakesOverInAChildWithoutAllocating) {
  // Builds the texts, so that they must be discarded in the child.
  ASSERT_NE(nullptr, mpContext->GetMessageHeader()->ToString());
  const pid_t child = fork();
  ASSERT_NE(-1, child);
  if (child == 0) _exit(TakeOverInChild(*mpContext));
  int status = -1;
  ASSERT_EQ(child, waitpid(child, &status, 0));
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(0, WEXITSTATUS(status));
}

}  // namespace
