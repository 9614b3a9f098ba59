#include <cerrno>
#include <new>

#include "ShortWrites.h"
#include "UpdateableFileTest.h"
#include "support/AllocationCounter.h"
#include "support/FaultyFileOperations.h"

namespace {

using FileMemory = UpdateableFileTest;

TEST_F(FileMemory, IsNotNeededToAppend) {
  const FilePtr file = Open();
  const unsigned long before = Support::GetAllocationCount();
  for (int i = 0; i < 10; ++i) {
    const WriteLock lock(*file);
    const YFileSystem::UpdateableFile::PathState state = file->QueryPath();
    if (state.mIsThisFile) file->Append(state.mSize, "head record");
  }
  EXPECT_EQ(Support::GetAllocationCount(), before);
  EXPECT_EQ(Content().size(), 110U);
}

TEST_F(FileMemory, IsNotNeededToRemoveAPartialRecord) {
  const FilePtr file = Open();
  Append(*file, "one ");
  Support::FaultyFileOperations faults;
  faults.mWrite.Inject(ENOSPC, 1, 2);
  const ShortWrites operations(2);
  {
    const Support::AllocationFailure failure(0);
    EXPECT_THROW(Append(*file, "123456"), std::bad_alloc);
  }
  EXPECT_TRUE(faults.mWrite.HasHappened());
  EXPECT_EQ(Content(), "one ");
}

}  // namespace
