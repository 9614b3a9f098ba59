#include <sys/file.h>

#include <algorithm>
#include <cerrno>
#include <string>
#include <vector>

#include "ShortWrites.h"
#include "UpdateableFileTest.h"
#include "support/ChildProcess.h"
#include "support/Descriptors.h"
#include "support/FaultyFileOperations.h"
#include "support/SmallFileSystem.h"

namespace {

constexpr int MANY = 1000;

class FileFaults : public UpdateableFileTest {
 protected:
  Support::FaultyFileOperations mFaults;
};

// Opening.

TEST_F(FileFaults, AnInterruptedOpenIsRepeated) {
  mFaults.mOpen.Inject(EINTR, MANY);
  Append(*Open(), "x");
  EXPECT_TRUE(mFaults.mOpen.HasHappened());
  EXPECT_EQ(Content(), "x");
}

TEST_F(FileFaults, AFailedOpenSaysWhy) {
  mFaults.mOpen.Inject(EMFILE);
  EXPECT_EQ(ThrownText([&] { Open(); }), OpeningFailure("Too many open files"));
  EXPECT_TRUE(mFaults.mOpen.HasHappened());
}

TEST_F(FileFaults, AFileWhoseTypeCannotBeReadIsClosedAgain) {
  mFaults.mQueryDescriptor.Inject(EIO);
  EXPECT_EQ(ThrownText([&] { Open(); }), OpeningFailure("Input/output error"));
  EXPECT_TRUE(mFaults.mQueryDescriptor.HasHappened());
  EXPECT_EQ(Support::DescriptorsOf(mPath).size(), 0U);
}

// Locking.

TEST_F(FileFaults, AnInterruptedWaitForTheLockIsRepeated) {
  const FilePtr file = Open();
  mFaults.mLock.Inject(EINTR, MANY);
  Append(*file, "x");
  EXPECT_TRUE(mFaults.mLock.HasHappened());
  EXPECT_EQ(Content(), "x");
}

TEST_F(FileFaults, AFailedLockSaysWhyAndNothingIsWritten) {
  const FilePtr file = Open();
  mFaults.mLock.Inject(ENOLCK);
  EXPECT_EQ(ThrownText([&] { Append(*file, "x"); }), Failure("LockForWriting", "lock", "No locks available"));
  EXPECT_TRUE(mFaults.mLock.HasHappened());
  EXPECT_EQ(Content(), "");
}

// The path.

TEST_F(FileFaults, APathThatCannotBeExaminedIsNotThisFile) {
  const FilePtr file = Open();
  mFaults.mQueryPath.Inject(EACCES);
  EXPECT_FALSE(file->QueryPath().mIsThisFile);
  EXPECT_TRUE(mFaults.mQueryPath.HasHappened());
  EXPECT_TRUE(file->QueryPath().mIsThisFile);
}

// Writing.

TEST_F(FileFaults, AnInterruptedWriteIsRepeated) {
  const FilePtr file = Open();
  mFaults.mWrite.Inject(EINTR, MANY);
  Append(*file, "x");
  EXPECT_TRUE(mFaults.mWrite.HasHappened());
  EXPECT_EQ(Content(), "x");
}

TEST_F(FileFaults, AFailedWriteSaysWhy) {
  const FilePtr file = Open();
  Append(*file, "one ");
  mFaults.mWrite.Inject(EDQUOT);
  EXPECT_EQ(ThrownText([&] { Append(*file, "two"); }), Failure("Append", "write to", "Disk quota exceeded"));
  EXPECT_TRUE(mFaults.mWrite.HasHappened());
  EXPECT_EQ(Content(), "one ");
  Append(*file, "three");
  EXPECT_EQ(Content(), "one three");
}

TEST_F(FileFaults, AShortWriteIsContinued) {
  const FilePtr file = Open();
  ShortWrites operations(2);
  {
    const WriteLock lock(*file);
    file->Append(0, "123456789");
  }
  EXPECT_EQ(Content(), "123456789");
  EXPECT_EQ(operations.mWrites, 5);
}

TEST_F(FileFaults, AWriteOfNothingIsNotRepeatedForever) {
  const FilePtr file = Open();
  const ShortWrites operations(0);
  EXPECT_EQ(ThrownText([&] { Append(*file, "x"); }), Failure("Append", "write to", "Input/output error"));
  EXPECT_EQ(operations.mWrites, 1);
}

/// A record that is partly written before the disk is full.
class PartialRecord : public FileFaults {
 protected:
  PartialRecord() {
    Append(*mFile, "one ");
    mShortWrites.mWrites = 0;
    mFaults.mWrite.Inject(ENOSPC, 1, 2);
  }
  ~PartialRecord() override {
    EXPECT_EQ(mShortWrites.mWrites, 3);
    EXPECT_TRUE(mFaults.mWrite.HasHappened());
  }

  const FilePtr mFile = Open();
  ShortWrites mShortWrites{2};
};

TEST_F(PartialRecord, IsRemoved) {
  EXPECT_EQ(ThrownText([&] { Append(*mFile, "123456"); }),
            Failure("Append", "write to", "No space left on device"));
  EXPECT_EQ(Content(), "one ");
}

TEST_F(PartialRecord, IsRemovedEvenIfTheRemovalIsInterrupted) {
  mFaults.mTruncate.Inject(EINTR, MANY);
  EXPECT_EQ(ThrownText([&] { Append(*mFile, "123456"); }),
            Failure("Append", "write to", "No space left on device"));
  EXPECT_TRUE(mFaults.mTruncate.HasHappened());
  EXPECT_EQ(Content(), "one ");
}

TEST_F(PartialRecord, IsReportedIfItCannotBeRemoved) {
  mFaults.mTruncate.Inject(EPERM);
  EXPECT_EQ(ThrownText([&] { Append(*mFile, "123456"); }),
            Failure("Append", "write to",
                    "No space left on device; what was written stays, because it cannot be cut off: "
                    "Operation not permitted"));
  EXPECT_TRUE(mFaults.mTruncate.HasHappened());
  EXPECT_EQ(Content(), "one 1234");
}

// Reading and truncating.

TEST_F(FileFaults, AnInterruptedReadIsRepeated) {
  Write("0123");
  const FilePtr file = Open();
  mFaults.mReadAt.Inject(EINTR, MANY);
  EXPECT_EQ(ReadAll(*file), "0123");
  EXPECT_TRUE(mFaults.mReadAt.HasHappened());
}

TEST_F(FileFaults, AFailedReadSaysWhyAndKeepsThePosition) {
  Write("0123");
  const FilePtr file = Open();
  char byte;
  file->Read(&byte, 1);
  mFaults.mReadAt.Inject(EIO);
  EXPECT_EQ(ThrownText([&] { file->Read(&byte, 1); }), Failure("Read", "read", "Input/output error"));
  EXPECT_TRUE(mFaults.mReadAt.HasHappened());
  EXPECT_EQ(file->Read(&byte, 1), 1U);
  EXPECT_EQ(byte, '1');
}

/// A file system that returns few bytes at a time.
class ShortReads final : public Support::FileOperationsWrapper {
 public:
  ssize_t ReadAt(int descriptor, char* buffer, std::size_t count, std::uint64_t position) noexcept override {
    ++mReads;
    return FileOperationsWrapper::ReadAt(descriptor, buffer, std::min<std::size_t>(count, 3), position);
  }

  int mReads = 0;

 private:
  const Support::ScopedFileOperations mScope{*this};
};

TEST_F(FileFaults, AShortReadIsContinued) {
  Write("0123456789");
  const FilePtr file = Open();
  const ShortReads operations;
  char buffer[8];
  file->SetPosition(1);
  EXPECT_EQ(file->Read(buffer, sizeof buffer), sizeof buffer);
  EXPECT_EQ(std::string(buffer, sizeof buffer), "12345678");
  EXPECT_EQ(operations.mReads, 3);
}

TEST_F(FileFaults, AnInterruptedTruncationIsRepeated) {
  Write("0123");
  const FilePtr file = Open();
  const WriteLock lock(*file);
  mFaults.mTruncate.Inject(EINTR, MANY);
  file->Truncate();
  EXPECT_TRUE(mFaults.mTruncate.HasHappened());
  EXPECT_EQ(Content(), "");
}

TEST_F(FileFaults, AFailedTruncationSaysWhy) {
  Write("0123");
  const FilePtr file = Open();
  mFaults.mTruncate.Inject(EPERM);
  EXPECT_EQ(ThrownText([&] {
              const WriteLock lock(*file);
              file->Truncate();
            }),
            Failure("Truncate", "truncate", "Operation not permitted"));
  EXPECT_TRUE(mFaults.mTruncate.HasHappened());
  EXPECT_EQ(Content(), "0123");
}

// The number of system calls.

class Recorder final : public Support::FileOperationsWrapper {
 public:
  int Lock(int descriptor, int operation) noexcept override {
    mCalls.push_back(operation == LOCK_UN ? "unlock" : "lock");
    return FileOperationsWrapper::Lock(descriptor, operation);
  }
  ssize_t Write(int descriptor, const char* text, std::size_t count) noexcept override {
    mCalls.emplace_back("write");
    return FileOperationsWrapper::Write(descriptor, text, count);
  }
  int Truncate(int descriptor, std::uint64_t size) noexcept override {
    mCalls.emplace_back("truncate");
    return FileOperationsWrapper::Truncate(descriptor, size);
  }
  int QueryPath(const char* path, YFileSystem::FileFacts& facts) noexcept override {
    mCalls.emplace_back("query path");
    return FileOperationsWrapper::QueryPath(path, facts);
  }
  int QueryDescriptor(int descriptor, YFileSystem::FileFacts& facts) noexcept override {
    mCalls.emplace_back("query descriptor");
    return FileOperationsWrapper::QueryDescriptor(descriptor, facts);
  }
  int Open(const char* path, int flags, mode_t mode) noexcept override {
    mCalls.emplace_back("open");
    return FileOperationsWrapper::Open(path, flags, mode);
  }
  std::uint64_t GetFileSizeLimit() noexcept override {
    mCalls.emplace_back("limit");
    return FileOperationsWrapper::GetFileSizeLimit();
  }
  std::chrono::nanoseconds GetCoarseTime() noexcept override { return mNow; }

  std::vector<std::string> TakeCalls() { return std::exchange(mCalls, {}); }

  std::chrono::nanoseconds mNow{0};

 private:
  std::vector<std::string> mCalls;
  const Support::ScopedFileOperations mScope{*this};
};

class FileCalls : public UpdateableFileTest {
 protected:
  Recorder mRecorder;
};

TEST_F(FileCalls, NumberFourPerRecord) {
  const FilePtr file = Open();
  mRecorder.TakeCalls();
  for (int record = 0; record < 3; ++record) {
    Append(*file, "record\n");
    EXPECT_THAT(mRecorder.TakeCalls(), testing::ElementsAre("lock", "query path", "write", "unlock"));
  }
}

TEST_F(FileCalls, ReadTheFileSizeLimitOnOpeningAndOnceASecond) {
  const FilePtr file = Open();
  EXPECT_THAT(mRecorder.TakeCalls(), testing::ElementsAre("open", "query descriptor", "limit"));
  int readings = 0;
  for (int record = 0; record < 100; ++record) {
    mRecorder.mNow += std::chrono::milliseconds(100);
    Append(*file, "record\n");
    const std::vector<std::string> calls = mRecorder.TakeCalls();
    readings += static_cast<int>(std::count(calls.begin(), calls.end(), "limit"));
  }
  EXPECT_EQ(readings, 10);
}

TEST_F(FileCalls, ReadTheFileSizeLimitWhenTheFileIsTruncated) {
  const FilePtr file = Open();
  const WriteLock lock(*file);
  mRecorder.TakeCalls();
  file->Truncate();
  EXPECT_THAT(mRecorder.TakeCalls(), testing::ElementsAre("limit", "truncate"));
}

TEST_F(FileCalls, ReleaseTheLockOnce) {
  const FilePtr file = Open();
  mRecorder.TakeCalls();
  { const WriteLock lock(*file); }
  EXPECT_THAT(mRecorder.TakeCalls(), testing::ElementsAre("lock", "unlock"));
}

// A disk that is really full.

class FileOnSmallFileSystem : public UpdateableFileTest {
 protected:
  /// Appends until it fails, and returns the content of the file.
  std::string Fill(YFileSystem::UpdateableFile& file, const std::string& record) {
    std::string expected;
    const std::string failure = ThrownText([&] {
      for (;; expected += record) Append(file, record);
    });
    EXPECT_EQ(failure, Failure("Append", "write to", "No space left on device"));
    return expected;
  }
};

TEST_F(FileOnSmallFileSystem, ContainsNoPartialRecordAndGrowsOnceThereIsRoom) {
  Support::RunOnSmallFileSystem(mDirectory.Path(), 64 * 1024, [this] {
    const std::filesystem::path filler = mDirectory.Path() / "filler";
    std::ofstream(filler) << std::string(10'000, 'x');
    const FilePtr file = Open();
    const std::string record(3000, 'r');
    const std::string expected = Fill(*file, record);
    EXPECT_GT(expected.size(), 40'000U);
    EXPECT_EQ(Content(), expected);

    std::filesystem::remove(filler);
    Append(*file, record);
    EXPECT_EQ(Content(), expected + record);
  });
}

TEST_F(FileOnSmallFileSystem, StaysEmptyIfTheFirstRecordDoesNotFit) {
  Support::RunOnSmallFileSystem(mDirectory.Path(), 64 * 1024, [this] {
    const FilePtr file = Open();
    EXPECT_EQ(Fill(*file, std::string(100'000, 'r')), "");
    EXPECT_EQ(Content(), "");
    Append(*file, "small");
    EXPECT_EQ(Content(), "small");
  });
}

}  // namespace
