#include <YFileSystem/Directory.h>

#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>

#include "ThrownText.h"
#include "support/TemporaryDirectory.h"

namespace {

namespace fs = std::filesystem;

class Directory : public testing::Test {
 protected:
  void Create(const std::string& name, bool withParents = true) const {
    YFileSystem::Directory::Create(mDirectory.Wide(name).c_str(), withParents);
  }
  fs::path Path(const std::string& name) const { return mDirectory.Path() / name; }
  std::string Failure(const std::string& name, const std::string& reason) const {
    return "YFileSystem::Directory::Create: cannot create '" + Path(name).string() + "': " + reason;
  }

  const Support::TemporaryDirectory mDirectory;
};

TEST_F(Directory, IsCreatedWithAllItsParents) {
  Create("one/two/three");
  EXPECT_TRUE(fs::is_directory(Path("one/two/three")));
}

TEST_F(Directory, IsCreatedAloneIfItsParentsExist) {
  Create("one", false);
  EXPECT_TRUE(fs::is_directory(Path("one")));
}

TEST_F(Directory, IsNotCreatedWithoutItsParents) {
  EXPECT_EQ(ThrownText([&] { Create("one/two", false); }), Failure("one/two", "No such file or directory"));
  EXPECT_FALSE(fs::exists(Path("one")));
}

TEST_F(Directory, IsLeftUnchangedIfItExists) {
  fs::create_directory(Path("one"));
  std::ofstream(Path("one/file")) << "x";
  Create("one");
  Create("one", false);
  EXPECT_TRUE(fs::exists(Path("one/file")));
}

TEST_F(Directory, IsFoundThroughASymbolicLink) {
  fs::create_directory(Path("one"));
  fs::create_symlink(Path("one"), Path("link"));
  Create("link");
  Create("link/two");
  EXPECT_TRUE(fs::is_directory(Path("one/two")));
}

TEST_F(Directory, CanBeNamedWithTrailingSeparators) {
  Create("one/two//");
  Create("one/two/", false);
  EXPECT_TRUE(fs::is_directory(Path("one/two")));
}

TEST_F(Directory, IsNotCreatedInThePlaceOfAFile) {
  std::ofstream(Path("file")) << "x";
  EXPECT_EQ(ThrownText([&] { Create("file"); }), Failure("file", "Not a directory"));
  EXPECT_EQ(ThrownText([&] { Create("file/below"); }), Failure("file/below", "Not a directory"));
}

TEST_F(Directory, IsNotCreatedThroughADanglingLink) {
  fs::create_symlink(Path("missing"), Path("dangling"));
  EXPECT_EQ(ThrownText([&] { Create("dangling"); }), Failure("dangling", "File exists"));
}

TEST_F(Directory, IsNotCreatedWithoutAName) {
  for (const wchar_t* none : {static_cast<const wchar_t*>(nullptr), L""}) {
    EXPECT_NE(ThrownText([&] { YFileSystem::Directory::Create(none, true); }), "");
    EXPECT_NE(ThrownText([&] { YFileSystem::Directory::Create(none, false); }), "");
  }
}

TEST_F(Directory, IsNotCreatedIfItsNameIsTooLong) {
  const std::string name(300, 'x');
  EXPECT_EQ(ThrownText([&] { Create(name); }), Failure(name, "File name too long"));
}

TEST_F(Directory, IsAccessibleToAllExceptAsTheUmaskForbids) {
  const mode_t previous = umask(027);
  Create("one/two");
  umask(previous);
  for (const char* name : {"one", "one/two"}) {
    EXPECT_EQ(fs::status(Path(name)).permissions(), fs::perms(0750)) << name;
  }
}

TEST_F(Directory, CanHaveANonASCIIName) {
  YFileSystem::Directory::Create((mDirectory.Path().wstring() + L"/\u00E4\u4E2D").c_str(), true);
  EXPECT_TRUE(fs::is_directory(Path("\xC3\xA4\xE4\xB8\xAD")));
}

}  // namespace
