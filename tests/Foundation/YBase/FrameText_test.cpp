#include "Foundation/YBase/src/CallStack/FrameText.h"

#include <string>

#include <gtest/gtest.h>

#include <YBase/TextConversion.h>

namespace {

using YBase::StackFrame;

/// A function at offset 0x1a2b in a module.
std::wstring Describe(const std::string& function, const std::string& file, int line) {
  return YBase::DescribeFrame({.address = 0x7f001a2b,
                               .module = "/opt/orders/lib/liborders.so",
                               .moduleBase = 0x7f000000,
                               .function = function,
                               .file = file,
                               .line = line});
}

/// A function "f" in the first line of a file.
std::wstring DescribeIn(const char* path) {
  return Describe("f", path, 1);
}

TEST(FrameText, ShowsFunctionFileAndLine) {
  EXPECT_EQ(Describe("_ZN6orders6Server6HandleEi", "src/server.cpp", 42),
            L"orders::Server::Handle(int) at src/server.cpp:42");
}

TEST(FrameText, OmitsTheCompilersTags) {
  EXPECT_EQ(Describe("_ZN6orders4NameB5cxx11Ei", "a.cpp", 1), L"orders::Name(int) at a.cpp:1");
}

TEST(FrameText, ShowsModuleAndOffsetAfterANameWithoutALine) {
  EXPECT_EQ(Describe("main", "", 0), L"main in liborders.so+0x1a2b");
  EXPECT_EQ(Describe("main", "server.cpp", 0), L"main in liborders.so+0x1a2b");
}

TEST(FrameText, ShowsModuleAndOffsetWithoutAName) {
  EXPECT_EQ(Describe("", "", 0), L"liborders.so+0x1a2b");
  EXPECT_EQ(Describe("", "server.cpp", 42), L"liborders.so+0x1a2b at server.cpp:42");
}

TEST(FrameText, ShowsTheAddressWithoutAModule) {
  EXPECT_EQ(YBase::DescribeFrame({.address = 0x7f00}), L"0x7f00");
}

TEST(FrameText, KeepsNamesThatCannotBeDemangled) {
  EXPECT_EQ(Describe("_Znonsense", "a.cpp", 1), L"_Znonsense at a.cpp:1");
  EXPECT_EQ(Describe("i", "a.c", 1), L"i at a.c:1");
}

TEST(FrameText, ContainsNoLineBreak) {
  EXPECT_EQ(Describe("a\nb",
                     "c\r\n\xE2\x80\xA8"
                     "d\xC2\x85.cpp",
                     1),
            L"a b at c   d .cpp:1");
}

TEST(FrameText, ReadsNamesAsUTF8) {
  EXPECT_EQ(Describe("Pr\xC3\xBC"
                     "fe",
                     "gr\xC3\xB6\xC3\x9F"
                     "e.cpp",
                     7),
            L"Pr\u00fcfe at gr\u00f6\u00dfe.cpp:7");
}

TEST(FrameText, TruncatesALongNameButKeepsTheLine) {
  const std::string name(100'000, 'x');
  const std::wstring description = Describe(name, "a.cpp", 1);
  EXPECT_EQ(description, std::wstring(500, L'x') + L"... at a.cpp:1");
  EXPECT_EQ(Describe("_ZN" + name, "a.cpp", 1).size(), description.size());
}

TEST(FrameText, OmitsTheFolderBeforeAnAbsolutePath) {
  EXPECT_EQ(DescribeIn("/home/build//home/src/a.cpp"), L"f at /home/src/a.cpp:1");
  EXPECT_EQ(DescribeIn("/home/x//build//home/src/a.cpp"), L"f at /home/src/a.cpp:1");
  EXPECT_EQ(DescribeIn("/home/build//home/x//a.cpp"), L"f at /home/x//a.cpp:1");
}

TEST(FrameText, KeepsPathsWithAnUnrelatedDoubleSlash) {
  for (const char* path :
       {"/tmp/x//slash.cpp", "/tmp/x//tmpl/a.cpp", "/tmp//a.cpp", "/tmp/x//tmp", "//tmp//tmp/a.cpp",
        "tmp/x//tmp/a.cpp", "/build//home/src/a.cpp", "//a.cpp", "/a.cpp", "//"}) {
    EXPECT_EQ(DescribeIn(path), L"f at " + YBase::UTF8ToWideChar(path) + L":1");
  }
}

TEST(FrameText, OmitsAPositionInALibraryHeaderIfTheFunctionIsTheClients) {
  const std::string header = "/usr/include/YLog/Log.h";
  EXPECT_EQ(Describe("_ZN6orders1fEv", header, 77), L"orders::f() in liborders.so+0x1a2b");
  EXPECT_EQ(Describe("_ZN4YLog1fEv", header, 77), L"YLog::f() at /usr/include/YLog/Log.h:77");
}

}  // namespace
