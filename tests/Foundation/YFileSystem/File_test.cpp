#include <YFileSystem/File.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "ThrownText.h"
#include "support/FaultyFileOperations.h"
#include "support/ReadFile.h"
#include "support/TemporaryDirectory.h"

namespace {

namespace fs = std::filesystem;

class File : public testing::Test {
 protected:
  void Delete(const std::string& name) const { YFileSystem::File::Delete(mDirectory.Wide(name).c_str()); }
  void Move(const std::string& from, const std::string& to) const {
    YFileSystem::File::Move(mDirectory.Wide(from).c_str(), mDirectory.Wide(to).c_str());
  }
  int OpenDescriptor(const std::string& name) const {
    return YFileSystem::File::OpenDescriptor(mDirectory.Wide(name).c_str(),
                                             YFileSystem::File::OPEN_MODE_CREATE,
                                             YFileSystem::File::SHARE_MODE_NONE);
  }
  void WriteNew(const std::string& name, const std::string& content) const {
    const int descriptor = OpenDescriptor(name);
    EXPECT_EQ(write(descriptor, content.data(), content.size()), static_cast<ssize_t>(content.size()));
    close(descriptor);
  }

  fs::path Path(const std::string& name) const { return mDirectory.Path() / name; }
  void Write(const std::string& name, const std::string& content) const {
    std::ofstream(Path(name), std::ios::binary) << content;
  }
  std::string Content(const std::string& name) const { return Support::ReadFile(Path(name)); }
  bool Exists(const std::string& name) const { return fs::exists(fs::symlink_status(Path(name))); }
  std::string Failure(const std::string& operation, const std::string& action, const std::string& name,
                      const std::string& reason) const {
    return "YFileSystem::File::" + operation + ": cannot " + action + " '" + Path(name).string() +
           "': " + reason;
  }

  const Support::TemporaryDirectory mDirectory;
};

TEST_F(File, IsGoneWhenItIsDeleted) {
  Write("a", "x");
  Delete("a");
  EXPECT_FALSE(Exists("a"));
}

TEST_F(File, ThatIsMissingNeedsNoDeleting) {
  Delete("missing");
  Delete("missing/below");
  Write("a", "x");
  Delete("a/below");
  YFileSystem::File::Delete(L"");
  YFileSystem::File::Delete(nullptr);
  EXPECT_EQ(Content("a"), "x");
}

TEST_F(File, OutlivesASymbolicLinkThatIsDeleted) {
  Write("a", "x");
  fs::create_symlink(Path("a"), Path("link"));
  Delete("link");
  EXPECT_FALSE(Exists("link"));
  EXPECT_EQ(Content("a"), "x");
}

TEST_F(File, ThatIsADirectoryIsNotDeleted) {
  fs::create_directory(Path("folder"));
  EXPECT_EQ(ThrownText([&] { Delete("folder"); }), Failure("Delete", "delete", "folder", "Is a directory"));
  EXPECT_TRUE(Exists("folder"));
}

TEST_F(File, ThatMayNotBeDeletedSaysSo) {
  Write("a", "x");
  Support::FaultyFileOperations faults;
  faults.mUnlink.Inject(EACCES);
  EXPECT_EQ(ThrownText([&] { Delete("a"); }), Failure("Delete", "delete", "a", "Permission denied"));
  EXPECT_TRUE(faults.mUnlink.HasHappened());
}

TEST_F(File, HasItsNewNameOnlyWhenItIsMoved) {
  Write("a", "x");
  Move("a", "b");
  EXPECT_FALSE(Exists("a"));
  EXPECT_EQ(Content("b"), "x");
}

TEST_F(File, TakesThePlaceOfAnotherWhenItIsMoved) {
  Write("a", "new");
  Write("b", "old");
  Move("a", "b");
  EXPECT_EQ(Content("b"), "new");
}

TEST_F(File, TakesThePlaceOfASymbolicLinkWhenItIsMoved) {
  Write("a", "new");
  Write("target", "old");
  fs::create_symlink(Path("target"), Path("link"));
  Move("a", "link");
  EXPECT_FALSE(fs::is_symlink(Path("link")));
  EXPECT_EQ(Content("link"), "new");
  EXPECT_EQ(Content("target"), "old");
}

TEST_F(File, ThatIsMissingIsNotMoved) {
  EXPECT_EQ(ThrownText([&] { Move("a", "b"); }),
            Failure("Move", "move", "a' to '" + Path("b").string(), "No such file or directory"));
}

TEST_F(File, IsNotMovedOntoADirectory) {
  Write("a", "x");
  fs::create_directory(Path("b"));
  EXPECT_EQ(ThrownText([&] { Move("a", "b"); }),
            Failure("Move", "move", "a' to '" + Path("b").string(), "Is a directory"));
  EXPECT_EQ(Content("a"), "x");
}

TEST_F(File, ThatMayNotBeMovedSaysSo) {
  Write("a", "x");
  Support::FaultyFileOperations faults;
  faults.mRename.Inject(EXDEV);
  EXPECT_EQ(ThrownText([&] { Move("a", "b"); }),
            Failure("Move", "move", "a' to '" + Path("b").string(), "Invalid cross-device link"));
  EXPECT_TRUE(faults.mRename.HasHappened());
}

TEST_F(File, IsCreatedByItsDescriptor) {
  WriteNew("a", "x");
  EXPECT_EQ(Content("a"), "x");
}

TEST_F(File, IsReplacedByItsDescriptor) {
  Write("a", "something long");
  const std::ifstream old(Path("a"));
  WriteNew("a", "x");
  EXPECT_EQ(Content("a"), "x");
  EXPECT_EQ((std::ostringstream() << old.rdbuf()).str(), "something long")
      << "whoever reads the old one goes on";
}

TEST_F(File, BehindASymbolicLinkIsNotTouchedByADescriptor) {
  Write("target", "old");
  fs::create_symlink(Path("target"), Path("link"));
  WriteNew("link", "new");
  EXPECT_FALSE(fs::is_symlink(Path("link")));
  EXPECT_EQ(Content("link"), "new");
  EXPECT_EQ(Content("target"), "old");
}

TEST_F(File, BehindADanglingLinkIsNotCreatedByADescriptor) {
  fs::create_symlink(Path("target"), Path("link"));
  WriteNew("link", "new");
  EXPECT_EQ(Content("link"), "new");
  EXPECT_FALSE(Exists("target"));
}

TEST_F(File, TakesThePlaceOfAPipeWithoutWaitingForItsReader) {
  ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
  WriteNew("pipe", "x");
  EXPECT_EQ(Content("pipe"), "x");
}

TEST_F(File, DoesNotTakeThePlaceOfADirectory) {
  fs::create_directory(Path("folder"));
  EXPECT_EQ(ThrownText([&] { OpenDescriptor("folder"); }),
            Failure("OpenDescriptor", "replace", "folder", "Is a directory"));
}

TEST_F(File, IsNotCreatedWithoutItsFolder) {
  EXPECT_EQ(ThrownText([&] { OpenDescriptor("missing/a"); }),
            Failure("OpenDescriptor", "create", "missing/a", "No such file or directory"));
}

TEST_F(File, IsForItsOwnerAndGroupLessTheUmask) {
  const mode_t previous = umask(0);
  WriteNew("open", "x");
  umask(077);
  WriteNew("closed", "x");
  umask(previous);
  EXPECT_EQ(fs::status(Path("open")).permissions(), fs::perms(0640));
  EXPECT_EQ(fs::status(Path("closed")).permissions(), fs::perms(0600));
}

TEST_F(File, HasADescriptorThatIsClosedOnExec) {
  const int descriptor = OpenDescriptor("a");
  EXPECT_EQ(fcntl(descriptor, F_GETFD), FD_CLOEXEC);
  close(descriptor);
}

TEST_F(File, IsOpenedAgainWhereASignalInterruptsIt) {
  Support::FaultyFileOperations faults;
  faults.mOpen.Inject(EINTR, 3);
  WriteNew("a", "x");
  EXPECT_TRUE(faults.mOpen.HasHappened());
  EXPECT_EQ(Content("a"), "x");
}

/// Another process that puts a file at the path whenever it becomes free.
class Intruder final : public Support::FileOperationsWrapper {
 public:
  explicit Intruder(int times) : mTimes(times) {}

  int Unlink(const char* path) noexcept override {
    const int result = FileOperationsWrapper::Unlink(path);
    if (mTimes != 0) {
      --mTimes;
      ++mIntrusions;
      close(open(path, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    }
    return result;
  }

  int mIntrusions = 0;

 private:
  int mTimes;
  const Support::ScopedFileOperations mScope{*this};
};

TEST_F(File, IsReplacedWhereAnotherProcessCreatesItInBetween) {
  Intruder intruder(2);
  WriteNew("a", "x");
  EXPECT_EQ(intruder.mIntrusions, 2);
  EXPECT_EQ(Content("a"), "x");
}

TEST_F(File, IsNotReplacedForEverWhereAnotherProcessKeepsCreatingIt) {
  Intruder intruder(1000);
  EXPECT_EQ(ThrownText([&] { OpenDescriptor("a"); }),
            Failure("OpenDescriptor", "create", "a", "File exists"));
  EXPECT_EQ(intruder.mIntrusions, 5);
}

}  // namespace
