#include <YFileSystem/UpdateableFile.h>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <vector>

#include "UpdateableFileTest.h"
#include "support/Descriptors.h"

namespace {

namespace fs = std::filesystem;

class UpdateableFile : public UpdateableFileTest {
 protected:
  void ExpectNotOpened(const std::string& reason) const {
    const std::size_t before = Support::DescriptorsOf(mPath).size();
    EXPECT_EQ(ThrownText([&] { Open(); }), OpeningFailure(reason));
    EXPECT_EQ(Support::DescriptorsOf(mPath).size(), before);
  }
};

// Opening.

TEST_F(UpdateableFile, IsCreatedEmpty) {
  Open();
  EXPECT_TRUE(fs::is_regular_file(mPath));
  EXPECT_EQ(fs::file_size(mPath), 0U);
}

TEST_F(UpdateableFile, KeepsExistingContent) {
  Write("old");
  Append(*Open(), "new");
  EXPECT_EQ(Content(), "oldnew");
}

TEST_F(UpdateableFile, IsAccessibleToItsOwnerAndGroupExceptAsTheUmaskForbids) {
  const mode_t previous = umask(0);
  Open(mDirectory.Path() / "open");
  umask(077);
  Open(mDirectory.Path() / "closed");
  umask(previous);
  EXPECT_EQ(fs::status(mDirectory.Path() / "open").permissions(), fs::perms(0640));
  EXPECT_EQ(fs::status(mDirectory.Path() / "closed").permissions(), fs::perms(0600));
}

TEST_F(UpdateableFile, LeavesTheModeOfAnExistingFile) {
  Write("old");
  fs::permissions(mPath, fs::perms(0604));
  Open();
  EXPECT_EQ(fs::status(mPath).permissions(), fs::perms(0604));
}

TEST_F(UpdateableFile, IsClosedOnExec) {
  const FilePtr file = Open();
  const std::vector<int> descriptors = Support::DescriptorsOf(mPath);
  ASSERT_EQ(descriptors.size(), 1U);
  EXPECT_EQ(fcntl(descriptors.front(), F_GETFD), FD_CLOEXEC);
}

TEST_F(UpdateableFile, IsClosedWhenItIsReleased) {
  FilePtr file = Open();
  FilePtr other = file;
  file = nullptr;
  EXPECT_EQ(Support::DescriptorsOf(mPath).size(), 1U);
  other = nullptr;
  EXPECT_EQ(Support::DescriptorsOf(mPath).size(), 0U);
}

TEST_F(UpdateableFile, CanHaveANonASCIIName) {
  const std::wstring path = mDirectory.Path().wstring() + L"/Protokoll-\u00E4\u4E2D\U0001F600.log";
  Append(*YFileSystem::OpenUpdateableFile(path.c_str(), YFileSystem::KEEP_WHAT_WAS_WRITTEN), "x");
  EXPECT_EQ(Support::ReadFile(mDirectory.Path() / "Protokoll-\xC3\xA4\xE4\xB8\xAD\xF0\x9F\x98\x80.log"), "x");
}

TEST_F(UpdateableFile, IsCreatedThroughADanglingLink) {
  fs::create_symlink(mDirectory.Path() / "target", mPath);
  const FilePtr file = Open();
  Append(*file, "x");
  EXPECT_TRUE(fs::is_symlink(mPath));
  EXPECT_EQ(Support::ReadFile(mDirectory.Path() / "target"), "x");
  EXPECT_TRUE(file->QueryPath().mIsThisFile);
}

// What is refused.

TEST_F(UpdateableFile, IsNotOpenedInAMissingFolder) {
  EXPECT_EQ(ThrownText([] {
              YFileSystem::OpenUpdateableFile(L"/missing/a.log", YFileSystem::KEEP_WHAT_WAS_WRITTEN);
            }),
            "YFileSystem::OpenUpdateableFile: cannot open '/missing/a.log': No such file or directory");
}

TEST_F(UpdateableFile, IsNotOpenedWithoutAPath) {
  for (const wchar_t* none : {static_cast<const wchar_t*>(nullptr), L""}) {
    EXPECT_EQ(ThrownText([&] { YFileSystem::OpenUpdateableFile(none, YFileSystem::KEEP_WHAT_WAS_WRITTEN); }),
              "YFileSystem::OpenUpdateableFile: cannot open '': No such file or directory");
  }
}

TEST_F(UpdateableFile, IsNotOpenedIfItsNameIsTooLong) {
  EXPECT_THAT(ThrownText([&] { Open(mDirectory.Path() / std::string(300, 'x')); }),
              testing::EndsWith("x': File name too long"));
}

TEST_F(UpdateableFile, IsNotADirectory) {
  fs::create_directory(mPath);
  ExpectNotOpened("Is a directory");
}

TEST_F(UpdateableFile, IsNotAPipeAndDoesNotWaitForOne) {
  ASSERT_EQ(mkfifo(mPath.c_str(), 0600), 0);
  ExpectNotOpened("Not a regular file");
}

TEST_F(UpdateableFile, IsNotADevice) {
  fs::create_symlink("/dev/null", mPath);
  ExpectNotOpened("Not a regular file");
}

TEST_F(UpdateableFile, IsNotASocket) {
  const int descriptor = socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  ASSERT_LT(mPath.native().copy(address.sun_path, sizeof address.sun_path), sizeof address.sun_path);
  ASSERT_EQ(bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  ExpectNotOpened("No such device or address");
  close(descriptor);
}

TEST_F(UpdateableFile, IsNotOpenedThroughALoopOfLinks) {
  fs::create_symlink(mPath, mPath);
  ExpectNotOpened("Too many levels of symbolic links");
}

// Appending.

TEST_F(UpdateableFile, AcceptsAnEmptyRecord) {
  const FilePtr file = Open();
  const WriteLock lock(*file);
  file->Append(0, "");
  EXPECT_EQ(Content(), "");
}

TEST_F(UpdateableFile, AcceptsAnyBytes) {
  const FilePtr file = Open();
  const std::string bytes("\0\xFF\n\x01\x80", 5);
  Append(*file, bytes);
  EXPECT_EQ(Content(), bytes);
}

TEST_F(UpdateableFile, AcceptsAHundredMegabytes) {
  const FilePtr file = Open();
  Append(*file, std::string(100'000'000, 'x'));
  EXPECT_EQ(file->QueryPath().mSize, 100'000'000U);
}

TEST_F(UpdateableFile, AppendsAfterWhatOthersWrote) {
  const FilePtr file = Open();
  Append(*file, "one ");
  std::ofstream(mPath, std::ios::app) << "other ";
  Append(*file, "two");
  EXPECT_EQ(Content(), "one other two");
}

// Reading and truncating.

TEST_F(UpdateableFile, IsReadFromItsPosition) {
  Write("0123456789");
  const FilePtr file = Open();
  char buffer[4] = {};
  file->SetPosition(3);
  EXPECT_EQ(file->Read(buffer, 4), 4U);
  EXPECT_EQ(std::string(buffer, 4), "3456");
  EXPECT_EQ(file->Read(buffer, 4), 3U);
  EXPECT_EQ(std::string(buffer, 3), "789");
  EXPECT_EQ(file->Read(buffer, 4), 0U);
}

TEST_F(UpdateableFile, HasNothingToReadAtOrBeyondItsEnd) {
  Write("0123456789");
  const FilePtr file = Open();
  char byte = 'x';
  for (const std::uint64_t position : {10U, 11U, 1'000'000U}) {
    file->SetPosition(position);
    EXPECT_EQ(file->Read(&byte, 1), 0U) << position;
  }
  EXPECT_EQ(file->Read(nullptr, 0), 0U);
  EXPECT_EQ(byte, 'x');
}

TEST_F(UpdateableFile, CannotBeReadAtAnImpossiblePosition) {
  const FilePtr file = Open();
  file->SetPosition(~std::uint64_t{0});
  char byte;
  EXPECT_EQ(ThrownText([&] { file->Read(&byte, 1); }), Failure("Read", "read", "Invalid argument"));
}

TEST_F(UpdateableFile, KeepsItsPositionWhenItIsAppendedTo) {
  Write("0123");
  const FilePtr file = Open();
  char byte;
  file->Read(&byte, 1);
  Append(*file, "4567");
  EXPECT_EQ(file->Read(&byte, 1), 1U);
  EXPECT_EQ(byte, '1');
}

TEST_F(UpdateableFile, IsEmptyAfterBeingTruncatedAtItsBeginning) {
  Write("0123456789");
  const FilePtr file = Open();
  {
    const WriteLock lock(*file);
    file->SetPosition(0);
    file->Truncate();
  }
  EXPECT_EQ(Content(), "");
  Append(*file, "new");
  EXPECT_EQ(Content(), "new");
}

TEST_F(UpdateableFile, KeepsTheContentBeforeThePositionItIsTruncatedAt) {
  Write("0123456789");
  const FilePtr file = Open();
  const WriteLock lock(*file);
  char byte;
  file->SetPosition(2);
  file->Read(&byte, 1);
  file->Truncate();
  EXPECT_EQ(Content(), "012");
}

TEST_F(UpdateableFile, CanBeLargerThanFourGigabytes) {
  constexpr std::uint64_t SIZE = 5'000'000'000;
  Write("");
  fs::resize_file(mPath, SIZE);
  const FilePtr file = Open();
  EXPECT_EQ(file->QueryPath().mSize, SIZE);
  Append(*file, "end");
  EXPECT_EQ(file->QueryPath().mSize, SIZE + 3);

  char buffer[3];
  file->SetPosition(SIZE);
  EXPECT_EQ(file->Read(buffer, 3), 3U);
  EXPECT_EQ(std::string(buffer, 3), "end");

  const WriteLock lock(*file);
  file->SetPosition(SIZE + 1);
  file->Truncate();
  EXPECT_EQ(fs::file_size(mPath), SIZE + 1);
}

// What is at its path.

class FileAtPath : public UpdateableFileTest {
 protected:
  FileAtPath() { Append(*mFile, "12345"); }
  void ExpectNotThisFile() const {
    EXPECT_FALSE(mFile->QueryPath().mIsThisFile);
    EXPECT_EQ(mFile->QueryPath().mSize, 0U);
  }
  const FilePtr mFile = Open();
};

TEST_F(FileAtPath, IsThisFileWithItsSize) {
  EXPECT_TRUE(mFile->QueryPath().mIsThisFile);
  EXPECT_EQ(mFile->QueryPath().mSize, 5U);
  std::ofstream(mPath, std::ios::app) << "678";
  EXPECT_EQ(mFile->QueryPath().mSize, 8U);
}

TEST_F(FileAtPath, IsNotThisFileOnceItIsDeleted) {
  fs::remove(mPath);
  ExpectNotThisFile();
}

TEST_F(FileAtPath, IsNotThisFileOnceAnotherWasMovedThere) {
  std::ofstream(mDirectory.Path() / "other") << "12345";
  fs::rename(mDirectory.Path() / "other", mPath);
  ExpectNotThisFile();
}

TEST_F(FileAtPath, IsNotThisFileOnceItWasDeletedAndRecreated) {
  fs::remove(mPath);
  Write("12345");
  ExpectNotThisFile();
}

TEST_F(FileAtPath, IsNotThisFileOnceADirectoryTookItsPlace) {
  fs::remove(mPath);
  fs::create_directory(mPath);
  ExpectNotThisFile();
}

TEST_F(FileAtPath, IsThisFileAgainOnceItWasMovedBack) {
  fs::rename(mPath, mDirectory.Path() / "other");
  ExpectNotThisFile();
  fs::rename(mDirectory.Path() / "other", mPath);
  EXPECT_TRUE(mFile->QueryPath().mIsThisFile);
}

TEST_F(FileAtPath, IsThisFileThroughASymbolicLinkUntilTheLinkIsChanged) {
  const fs::path link = mDirectory.Path() / "link";
  fs::create_symlink(mPath, link);
  const FilePtr file = Open(link);
  EXPECT_EQ(file->QueryPath().mSize, 5U);
  fs::remove(link);
  std::ofstream(mDirectory.Path() / "other") << "12345";
  fs::create_symlink(mDirectory.Path() / "other", link);
  EXPECT_FALSE(file->QueryPath().mIsThisFile);
}

}  // namespace
