#include <YFileSystem/Path.h>

#include <algorithm>
#include <climits>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "ThrownText.h"
#include "support/TemporaryDirectory.h"

namespace {

namespace fs = std::filesystem;
using YFileSystem::Path::Combine;
using YFileSystem::Path::GetBasename;
using YFileSystem::Path::GetDirname;

TEST(PathCombine, JoinsWithOneSeparator) {
  EXPECT_EQ(Combine(L"/var/log", L"a.log"), L"/var/log/a.log");
  EXPECT_EQ(Combine(L"/var/log/", L"a.log"), L"/var/log/a.log");
  EXPECT_EQ(Combine(L"log", L"one/a.log"), L"log/one/a.log");
  EXPECT_EQ(Combine(L"/", L"a.log"), L"/a.log");
}

TEST(PathCombine, ReturnsTheSecondPathIfItIsAbsolute) {
  EXPECT_EQ(Combine(L"/var/log", L"/tmp/a.log"), L"/tmp/a.log");
  EXPECT_EQ(Combine(L"/var/log", L"//tmp"), L"/tmp");
  EXPECT_EQ(Combine(L"/var/log", L"/"), L"/");
}

TEST(PathCombine, OnlyNormalisesIfTheSecondPathIsEmpty) {
  EXPECT_EQ(Combine(L"/var/log/a.log", L""), L"/var/log/a.log");
  EXPECT_EQ(Combine(L"a//b/./c/../d", L""), L"a/b/d");
  EXPECT_EQ(Combine(L"a.log", L""), L"a.log");
}

TEST(PathCombine, AcceptsAnEmptyBase) {
  EXPECT_EQ(Combine(L"", L"a.log"), L"a.log");
  EXPECT_EQ(Combine(L"", L"./a.log"), L"a.log");
  EXPECT_EQ(Combine(L"", L""), L"");
}

TEST(PathCombine, TreatsNullAsEmpty) {
  EXPECT_EQ(Combine(nullptr, L"a"), L"a");
  EXPECT_EQ(Combine(L"a", nullptr), L"a");
  EXPECT_EQ(Combine(nullptr, nullptr), L"");
}

TEST(PathCombine, DropsTrailingSeparators) {
  EXPECT_EQ(Combine(L"a", L"b/"), L"a/b");
  EXPECT_EQ(Combine(L"a///", L""), L"a");
  EXPECT_EQ(Combine(L"a/b/..", L""), L"a");
  EXPECT_EQ(Combine(L"a/.", L""), L"a");
  EXPECT_EQ(Combine(L"../", L""), L"..");
}

TEST(PathCombine, TreatsRepeatedSeparatorsAsOne) {
  EXPECT_EQ(Combine(L"//x", L""), L"/x");
  EXPECT_EQ(Combine(L"//x", L"y//z"), L"/x/y/z");
  EXPECT_EQ(Combine(L"///", L""), L"/");
  EXPECT_EQ(Combine(L"//", L"x"), L"/x");
}

TEST(PathCombine, DoesNotGoAboveTheRoot) {
  EXPECT_EQ(Combine(L"/", L".."), L"/");
  EXPECT_EQ(Combine(L"/..", L"../a"), L"/a");
  EXPECT_EQ(Combine(L"/a", L"../.."), L"/");
  EXPECT_EQ(Combine(L"/", L"."), L"/");
}

TEST(PathCombine, KeepsTheLeadingDotDotsOfARelativePath) {
  EXPECT_EQ(Combine(L"..", L"a"), L"../a");
  EXPECT_EQ(Combine(L"a", L"../../b"), L"../b");
}

TEST(PathCombine, NamesTheCurrentDirectoryIfNothingRemains) {
  EXPECT_EQ(Combine(L"a", L".."), L".");
  EXPECT_EQ(Combine(L".", L""), L".");
  EXPECT_EQ(Combine(L"./", L"."), L".");
}

TEST(PathCombine, KeepsBlanksDotsAndControlCharactersInNames) {
  EXPECT_EQ(Combine(L"a b", L"...\n\x01"), L"a b/...\n\x01");
  EXPECT_EQ(Combine(L".hidden", L"x..y"), L".hidden/x..y");
}

TEST(PathCombine, KeepsNonASCIICharacters) {
  EXPECT_EQ(Combine(L"/\u00E4", L"\u4E2D\U0001F600"), L"/\u00E4/\u4E2D\U0001F600");
}

TEST(PathCombine, ReplacesInvalidCharacters) {
  const wchar_t surrogate[] = {L'a', wchar_t{0xD800}, L'\0'};
  EXPECT_EQ(Combine(surrogate, L""), L"a\uFFFD");
}

TEST(PathCombine, AcceptsTheSystemsLongestPathAndRefusesALongerOne) {
  const std::wstring longest(PATH_MAX - 2, L'x');
  EXPECT_EQ(Combine(L"/", longest.c_str()).size(), PATH_MAX - 1U);
  EXPECT_THAT(ThrownText([&] { Combine(L"/x", longest.c_str()); }),
              testing::AllOf(testing::StartsWith("YFileSystem::Path::Combine: cannot build '/x/xxx"),
                             testing::EndsWith("x': File name too long")));
}

TEST(PathCombine, CountsThePathInUTF8) {
  const std::wstring half(PATH_MAX / 2, L'\u00E4');
  EXPECT_NE(ThrownText([&] { Combine(half.c_str(), L""); }), "");
  EXPECT_EQ(Combine(half.substr(1).c_str(), L""), half.substr(1));
}

TEST(PathCombine, ThrowsForAPathOfAMegabyte) {
  EXPECT_NE(ThrownText([] { Combine(L"a", std::wstring(1'000'000, L'x').c_str()); }), "");
}

TEST(PathCombine, LimitsTheResultNotTheParts) {
  std::wstring there_and_back;
  for (int i = 0; i < PATH_MAX; ++i) there_and_back += L"a/../";
  EXPECT_EQ(Combine(there_and_back.c_str(), L"b"), L"b");
}

/// The simplest possible implementation of normalising.
std::wstring Normalised(const std::wstring& path) {
  if (path.empty()) return path;
  const bool isAbsolute = path.front() == L'/';
  std::vector<std::wstring> names;
  for (std::size_t begin = 0; begin <= path.size();) {
    const std::size_t end = std::min(path.find(L'/', begin), path.size());
    const std::wstring name = path.substr(begin, end - begin);
    begin = end + 1;
    if (name.empty() || name == L".") continue;
    if (name != L".." || (!isAbsolute && (names.empty() || names.back() == L".."))) {
      names.push_back(name);
    } else if (!names.empty()) {
      names.pop_back();
    }
  }
  std::wstring result = isAbsolute ? L"/" : L"";
  for (const std::wstring& name : names) result += (&name != &names.front() ? L"/" : L"") + name;
  return result.empty() ? L"." : result;
}

RC_GTEST_PROP(PathCombine, NormalisesAnyPathOfSeparatorsDotsAndNames, ()) {
  const auto path = *rc::gen::container<std::wstring>(rc::gen::element(L'/', L'/', L'.', L'.', L'a', L'b'));
  RC_ASSERT(Combine(path.c_str(), L"") == Normalised(path));
}

RC_GTEST_PROP(PathCombine, NormalisesWhatItJoins, ()) {
  const auto letter = rc::gen::element(L'/', L'.', L'a', L'\u00E4');
  const auto base = *rc::gen::container<std::wstring>(letter);
  const auto relative = *rc::gen::container<std::wstring>(letter);
  const bool isAlone = base.empty() || relative.starts_with(L'/');
  RC_ASSERT(Combine(base.c_str(), relative.c_str()) ==
            Normalised(isAlone ? relative : base + L'/' + relative));
}

TEST(PathGetDirname, IsThePartBeforeTheLastSeparator) {
  EXPECT_EQ(GetDirname(L"/var/log/a.log"), L"/var/log");
  EXPECT_EQ(GetDirname(L"log/a.log"), L"log");
  EXPECT_EQ(GetDirname(L"log/"), L"log");
  EXPECT_EQ(GetDirname(L"log//a.log"), L"log");
}

TEST(PathGetDirname, IsTheRootForANameDirectlyBelowIt) {
  EXPECT_EQ(GetDirname(L"/a.log"), L"/");
  EXPECT_EQ(GetDirname(L"//a.log"), L"/");
  EXPECT_EQ(GetDirname(L"/"), L"/");
}

TEST(PathGetDirname, IsEmptyForABareName) {
  EXPECT_EQ(GetDirname(L"a.log"), L"");
  EXPECT_EQ(GetDirname(L""), L"");
  EXPECT_EQ(GetDirname(nullptr), L"");
}

TEST(PathGetBasename, IsTheLastComponentWithItsExtension) {
  EXPECT_STREQ(GetBasename("/src/Log/Logger_Impl.cpp"), "Logger_Impl.cpp");
  EXPECT_STREQ(GetBasename("Logger_Impl.cpp"), "Logger_Impl.cpp");
  EXPECT_STREQ(GetBasename("/a"), "a");
}

TEST(PathGetBasename, IsEmptyAfterATrailingSeparator) {
  EXPECT_STREQ(GetBasename("src/"), "");
  EXPECT_STREQ(GetBasename("/"), "");
  EXPECT_STREQ(GetBasename(""), "");
  EXPECT_STREQ(GetBasename(nullptr), "");
}

TEST(PathGetBasename, PointsIntoThePath) {
  const char path[] = "src/a.cpp";
  EXPECT_EQ(GetBasename(path), path + 4);
}

class PathQuestions : public testing::Test {
 protected:
  PathQuestions() {
    std::ofstream(mDirectory.Path() / "file") << "x";
    fs::create_directory(mDirectory.Path() / "folder");
  }
  void Link(const std::string& target, const std::string& name) const {
    fs::create_symlink(mDirectory.Path() / target, mDirectory.Path() / name);
  }
  bool IsFile(const std::string& name) const {
    return YFileSystem::Path::IsFile(mDirectory.Wide(name).c_str());
  }
  bool IsDirectory(const std::string& name) const {
    return YFileSystem::Path::IsDirectory(mDirectory.Wide(name).c_str());
  }

  const Support::TemporaryDirectory mDirectory;
};

TEST_F(PathQuestions, DistinguishFilesFromDirectories) {
  EXPECT_TRUE(IsFile("file"));
  EXPECT_FALSE(IsDirectory("file"));
  EXPECT_FALSE(IsFile("folder"));
  EXPECT_TRUE(IsDirectory("folder"));
}

TEST_F(PathQuestions, FindNothingAtAMissingPath) {
  for (const char* name : {"missing", "file/below", "missing/below"}) {
    EXPECT_FALSE(IsFile(name)) << name;
    EXPECT_FALSE(IsDirectory(name)) << name;
  }
  EXPECT_FALSE(YFileSystem::Path::IsFile(L""));
  EXPECT_FALSE(YFileSystem::Path::IsDirectory(nullptr));
}

TEST_F(PathQuestions, FollowSymbolicLinks) {
  Link("file", "link to file");
  Link("folder", "link to folder");
  EXPECT_TRUE(IsFile("link to file"));
  EXPECT_TRUE(IsDirectory("link to folder"));
}

TEST_F(PathQuestions, FindNothingThroughADanglingLink) {
  Link("missing", "dangling");
  Link("loop", "loop");
  EXPECT_FALSE(IsFile("dangling"));
  EXPECT_FALSE(IsDirectory("dangling"));
  EXPECT_FALSE(IsFile("loop"));
}

TEST_F(PathQuestions, FindThatADeviceIsNeither) {
  EXPECT_FALSE(YFileSystem::Path::IsFile(L"/dev/null"));
  EXPECT_FALSE(YFileSystem::Path::IsDirectory(L"/dev/null"));
}

TEST_F(PathQuestions, FindANonASCIIName) {
  std::ofstream(mDirectory.Path() / "Protokoll-\xC3\xA4") << "x";
  EXPECT_TRUE(YFileSystem::Path::IsFile((mDirectory.Path().wstring() + L"/Protokoll-\u00E4").c_str()));
}

TEST_F(PathQuestions, FindNothingIfTheNameIsTooLong) {
  EXPECT_FALSE(IsFile(std::string(300, 'x')));
  EXPECT_FALSE(IsDirectory(std::string(10'000, 'x')));
}

}  // namespace
