#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include <YLog/YLog.h>

#include "support/ShellWord.h"
#include "support/TemporaryDirectory.h"

namespace {

namespace fs = std::filesystem;

const std::string ATELIER = "/Library/Containers/com.vellatorquine.Atelier.FolioComposer/Data";
const std::string OBSERVATORY = "/Library/Containers/com.vellatorquine.Observatory.FolioComposer/Data";

// NOLINTBEGIN(concurrency-mt-unsafe): each test runs alone in its process.

class BasePath : public testing::Test {
 protected:
  void SetHome(const std::string& home) const { setenv("HOME", home.c_str(), 1); }
  void UnsetHome() const { unsetenv("HOME"); }
  std::string Folder() const { return mDirectory.Path().string(); }
  std::wstring WideFolder() const { return mDirectory.Path().wstring(); }

  static std::string PathOf(const wchar_t* requested) {
    return fs::path(YLog::GetDestination_DiskFile(requested)->GetFilePath()).string();
  }

  /// The path that a program of that name gets for "relative.log".
  std::string PathInProgram(const std::string& name) const {
    const fs::path program = mDirectory.Path() / name;
    fs::copy_file(PRINT_LOG_PATH, program);
    std::FILE* output = popen(Support::ShellWord(program.string()).c_str(), "r");
    std::string line(4096, '\0');
    if (std::fgets(line.data(), static_cast<int>(line.size()), output) == nullptr) line.clear();
    pclose(output);
    return line.substr(0, line.find('\n'));
  }

  const YLog::Initializer mInitializer;
  const Support::TemporaryDirectory mDirectory;
};

TEST_F(BasePath, IsTheContainerOfTheObservatoryBelowHomeForMostPrograms) {
  SetHome(Folder());
  EXPECT_EQ(PathOf(L"a.log"), Folder() + OBSERVATORY + "/a.log");
  EXPECT_EQ(PathInProgram("vellatorquine atelier"), Folder() + OBSERVATORY + "/relative.log");
  EXPECT_EQ(PathInProgram("Vellatorquine Atelier 2"), Folder() + OBSERVATORY + "/relative.log");
}

TEST_F(BasePath, IsTheContainerOfTheAtelierForTheProgramOfThatName) {
  SetHome(Folder());
  EXPECT_EQ(PathInProgram("Vellatorquine Atelier"), Folder() + ATELIER + "/relative.log");
}

TEST_F(BasePath, IsTheOneThatWasSetOnlyIfThereIsNoHome) {
  YLog::SetBasePath((WideFolder() + L"/base").c_str());
  SetHome(Folder());
  EXPECT_EQ(PathOf(L"a.log"), Folder() + OBSERVATORY + "/a.log");
  UnsetHome();
  EXPECT_EQ(PathOf(L"b.log"), Folder() + "/base/b.log");
}

TEST_F(BasePath, IsEmptyWithoutHomeUntilItIsSet) {
  UnsetHome();
  const fs::path previous = fs::current_path();
  fs::current_path(mDirectory.Path());
  EXPECT_EQ(PathOf(L"a.log"), "a.log");
  EXPECT_TRUE(fs::exists(mDirectory.Path() / "a.log"));
  fs::current_path(previous);
}

TEST_F(BasePath, DoesNotAffectAnAbsolutePath) {
  SetHome("/nowhere");
  EXPECT_EQ(PathOf((WideFolder() + L"/a.log").c_str()), Folder() + "/a.log");
}

TEST_F(BasePath, SettingItMovesExistingFiles) {
  UnsetHome();
  YLog::SetBasePath((WideFolder() + L"/one").c_str());
  const auto file = YLog::GetDestination_DiskFile(L"sub/a.log");
  YLog::SetBasePath((WideFolder() + L"/two").c_str());
  EXPECT_EQ(file->GetFilePath(), WideFolder() + L"/two/sub/a.log");
  EXPECT_TRUE(fs::exists(mDirectory.Path() / "two" / "sub" / "a.log"));
  EXPECT_EQ(YLog::GetDestination_DiskFile(L"sub/a.log"), file);
}

TEST_F(BasePath, SettingItMovesExistingFilesEvenIfThereIsAHome) {
  SetHome(Folder());
  const auto file = YLog::GetDestination_DiskFile(L"a.log");
  YLog::SetBasePath((WideFolder() + L"/base").c_str());
  EXPECT_EQ(file->GetFilePath(), WideFolder() + L"/base/a.log");

  // The first request after the move returns the file that was moved, later ones a file in the container.
  EXPECT_EQ(YLog::GetDestination_DiskFile(L"a.log"), file);
  const auto other = YLog::GetDestination_DiskFile(L"a.log");
  EXPECT_NE(other, file);
  EXPECT_EQ(fs::path(other->GetFilePath()).string(), Folder() + OBSERVATORY + "/a.log");
}

TEST_F(BasePath, SettingTheSameOneAgainMovesNoFile) {
  UnsetHome();
  YLog::SetBasePath((WideFolder() + L"/base").c_str());
  const auto file = YLog::GetDestination_DiskFile(L"a.log");
  SetHome(Folder());
  const auto other = YLog::GetDestination_DiskFile(L"b.log");
  YLog::SetBasePath((WideFolder() + L"/base").c_str());
  // Any move would have included the second file.
  EXPECT_EQ(fs::path(other->GetFilePath()).string(), Folder() + OBSERVATORY + "/b.log");
}

TEST_F(BasePath, MovesOnlyTheFirstOfTwoFilesThatWouldGetTheSamePath) {
  UnsetHome();
  YLog::SetBasePath((WideFolder() + L"/one").c_str());
  const auto relative = YLog::GetDestination_DiskFile(L"a.log");
  const auto absolute = YLog::GetDestination_DiskFile((WideFolder() + L"/two/a.log").c_str());
  YLog::SetBasePath((WideFolder() + L"/two").c_str());
  // The order is that of the requested paths, and "/" sorts before "a".
  EXPECT_EQ(absolute->GetFilePath(), WideFolder() + L"/two/a.log");
  EXPECT_EQ(relative->GetFilePath(), WideFolder() + L"/one/a.log");
  EXPECT_EQ(PathOf((WideFolder() + L"/two/a.log").c_str()), Folder() + "/two/a.log");
}

TEST_F(BasePath, MovesFilesInTheOrderOfTheirNewPaths) {
  UnsetHome();
  YLog::SetBasePath((WideFolder() + L"/one/deeper").c_str());
  // The requested path "a" sorts after the other, but its new path before. Its file is created where the
  // folder of the other would be.
  const auto first = YLog::GetDestination_DiskFile(L"a");
  const auto second = YLog::GetDestination_DiskFile(L"../two/a/b.log");
  YLog::SetBasePath((WideFolder() + L"/two").c_str());
  EXPECT_EQ(first->GetFilePath(), WideFolder() + L"/two/a");
  EXPECT_EQ(second->GetFilePath(), WideFolder() + L"/two/a/b.log");
  EXPECT_TRUE(fs::is_regular_file(mDirectory.Path() / "two" / "a"));
}

TEST_F(BasePath, MovesTheOthersWhenOneCannotBeMoved) {
  UnsetHome();
  YLog::SetBasePath((WideFolder() + L"/one").c_str());
  const auto first = YLog::GetDestination_DiskFile(L"blocked/a.log");
  const auto second = YLog::GetDestination_DiskFile(L"free/a.log");
  fs::create_directory(mDirectory.Path() / "two");
  std::fclose(std::fopen((Folder() + "/two/blocked").c_str(), "w"));
  YLog::SetBasePath((WideFolder() + L"/two").c_str());
  EXPECT_EQ(first->GetFilePath(), WideFolder() + L"/two/blocked/a.log");
  EXPECT_EQ(second->GetFilePath(), WideFolder() + L"/two/free/a.log");
  EXPECT_TRUE(fs::exists(mDirectory.Path() / "two" / "free" / "a.log"));
}

TEST_F(BasePath, DoesNotMoveFilesWithAbsolutePaths) {
  UnsetHome();
  const auto file = YLog::GetDestination_DiskFile((WideFolder() + L"/a.log").c_str());
  YLog::SetBasePath((WideFolder() + L"/base").c_str());
  EXPECT_EQ(file->GetFilePath(), WideFolder() + L"/a.log");
}

TEST_F(BasePath, MayBeNull) {
  UnsetHome();
  YLog::SetBasePath(WideFolder().c_str());
  YLog::SetBasePath(nullptr);
  const auto file = YLog::GetDestination_DiskFile((WideFolder() + L"/a.log").c_str());
  EXPECT_EQ(file->GetFilePath(), WideFolder() + L"/a.log");
}

// NOLINTEND(concurrency-mt-unsafe)

}  // namespace
