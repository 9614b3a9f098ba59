#include <YFileSystem/File.h>

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <system_error>

#include <gtest/gtest.h>

#include "ThrownText.h"
#include "support/FaultyFileOperations.h"
#include "support/ReadFile.h"
#include "support/TemporaryDirectory.h"

namespace {

namespace fs = std::filesystem;
using YFileSystem::FileFacts;

class File : public testing::Test {
 protected:
  void Delete(const std::string& name) const { YFileSystem::File::Delete(mDirectory.Wide(name).c_str()); }
  void Move(const std::string& from, const std::string& to) const {
    YFileSystem::File::Move(mDirectory.Wide(from).c_str(), mDirectory.Wide(to).c_str());
  }
  std::optional<FileFacts> Query(const std::string& name) const {
    return YFileSystem::File::Query(mDirectory.Wide(name).c_str());
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

TEST_F(File, IsDeletedWithoutAnErrorIfItIsMissing) {
  Delete("missing");
  Delete("missing/below");
  Write("a", "x");
  Delete("a/below");
  YFileSystem::File::Delete(L"");
  YFileSystem::File::Delete(nullptr);
  EXPECT_EQ(Content("a"), "x");
}

TEST_F(File, SurvivesTheDeletionOfASymbolicLinkToIt) {
  Write("a", "x");
  fs::create_symlink(Path("a"), Path("link"));
  Delete("link");
  EXPECT_FALSE(Exists("link"));
  EXPECT_EQ(Content("a"), "x");
}

TEST_F(File, IsNotDeletedIfItIsADirectory) {
  fs::create_directory(Path("folder"));
  EXPECT_EQ(ThrownText([&] { Delete("folder"); }), Failure("Delete", "delete", "folder", "Is a directory"));
  EXPECT_TRUE(Exists("folder"));
}

TEST_F(File, ReportsThatItCannotBeDeleted) {
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

TEST_F(File, ReplacesAnotherWhenItIsMoved) {
  Write("a", "new");
  Write("b", "old");
  Move("a", "b");
  EXPECT_EQ(Content("b"), "new");
}

TEST_F(File, ReplacesASymbolicLinkWhenItIsMoved) {
  Write("a", "new");
  Write("target", "old");
  fs::create_symlink(Path("target"), Path("link"));
  Move("a", "link");
  EXPECT_FALSE(fs::is_symlink(Path("link")));
  EXPECT_EQ(Content("link"), "new");
  EXPECT_EQ(Content("target"), "old");
}

TEST_F(File, IsNotMovedIfItIsMissing) {
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

TEST_F(File, ReportsThatItCannotBeMoved) {
  Write("a", "x");
  Support::FaultyFileOperations faults;
  faults.mRename.Inject(EXDEV);
  EXPECT_EQ(ThrownText([&] { Move("a", "b"); }),
            Failure("Move", "move", "a' to '" + Path("b").string(), "Invalid cross-device link"));
  EXPECT_TRUE(faults.mRename.HasHappened());
}

TEST_F(File, IsKnownWithItsTypeSizeAndPermissions) {
  Write("a", "four");
  fs::permissions(Path("a"), fs::perms(0604));
  const auto facts = Query("a");
  ASSERT_TRUE(facts);
  EXPECT_EQ(facts->mType, FileFacts::Type::REGULAR);
  EXPECT_EQ(facts->mSize, 4U);
  EXPECT_EQ(facts->mPermissions, 0604U);
  EXPECT_EQ(facts->mOwner, geteuid());
  EXPECT_EQ(facts->mGroup, getegid());
}

TEST_F(File, IsTheSymbolicLinkItselfNotItsTarget) {
  Write("a", "x");
  fs::create_symlink(Path("a"), Path("link"));
  fs::create_symlink(Path("nothing"), Path("dangling"));
  EXPECT_EQ(Query("link")->mType, FileFacts::Type::OTHER);
  EXPECT_EQ(Query("dangling")->mType, FileFacts::Type::OTHER);
}

TEST_F(File, IsADirectoryIfTheNameIsThatOfOne) {
  EXPECT_EQ(Query("")->mType, FileFacts::Type::DIRECTORY);
}

TEST_F(File, IsMissingOnlyIfTheSystemSaysSo) {
  EXPECT_FALSE(Query("a"));
  Support::FaultyFileOperations faults;
  for (const int error : {EIO, ENOMEM, EACCES, ENAMETOOLONG, ENOTDIR}) {
    faults.mQueryName.Inject(error);
    EXPECT_EQ(ThrownText([&] { Query("a"); }),
              Failure("Query", "query", "a", std::generic_category().message(error)));
    EXPECT_TRUE(faults.mQueryName.HasHappened());
  }
}

TEST_F(File, IsExaminedAgainIfASignalInterruptsTheCall) {
  Write("a", "x");
  Support::FaultyFileOperations faults;
  faults.mQueryName.Inject(EINTR, 3);
  EXPECT_TRUE(Query("a"));
  EXPECT_TRUE(faults.mQueryName.HasHappened());
}

}  // namespace
