#include <string>

#include <gtest/gtest.h>

#include <YBase/TextConversion.h>

#include "Foundation/YBase/src/FrameText.h"

namespace {

using YBase::IsInLibraryNamespace;
using YBase::IsLibraryHeader;
using YBase::MakeFrame;
using YBase::MakeInlinedFrame;

const YBase::ModuleOffset PLACE{"/opt/orders/lib/liborders.so", 0x1a2b};

/// A function "f" in the first line of a file.
std::wstring DescribeIn(const char* path) {
  return MakeFrame({"f", path, 1}, PLACE).description;
}

TEST(FrameText, TellsFunctionFileAndLine) {
  EXPECT_EQ(MakeFrame({"_ZN6orders6Server6HandleEi", "src/server.cpp", 42}, PLACE).description,
            L"orders::Server::Handle(int) at src/server.cpp:42");
}

TEST(FrameText, LeavesOutTheCompilersTags) {
  EXPECT_EQ(MakeFrame({"_ZN6orders4NameB5cxx11Ei", "a.cpp", 1}, PLACE).description,
            L"orders::Name(int) at a.cpp:1");
}

TEST(FrameText, TellsModuleAndOffsetBehindANameWithoutALine) {
  EXPECT_EQ(MakeFrame({"main", "", 0}, PLACE).description, L"main in liborders.so+0x1a2b");
  EXPECT_EQ(MakeFrame({"main", "server.cpp", 0}, PLACE).description, L"main in liborders.so+0x1a2b");
}

TEST(FrameText, TellsModuleAndOffsetWithoutAName) {
  EXPECT_EQ(MakeFrame({}, PLACE).description, L"liborders.so+0x1a2b");
  EXPECT_EQ(MakeFrame({"", "server.cpp", 42}, PLACE).description, L"liborders.so+0x1a2b at server.cpp:42");
}

TEST(FrameText, TellsTheAddressWithoutAModule) {
  EXPECT_EQ(MakeFrame({}, {"", 0x7f00}).description, L"0x7f00");
}

TEST(FrameText, LeavesNamesAsTheyAreThatCannotBeDemangled) {
  EXPECT_EQ(MakeFrame({"_Znonsense", "a.cpp", 1}, PLACE).description, L"_Znonsense at a.cpp:1");
  EXPECT_EQ(MakeFrame({"i", "a.c", 1}, PLACE).description, L"i at a.c:1");
}

TEST(FrameText, BreaksNoLine) {
  EXPECT_EQ(MakeFrame({"a\nb",
                       "c\r\n\xE2\x80\xA8"
                       "d\xC2\x85.cpp",
                       1},
                      PLACE)
                .description,
            L"a b at c   d .cpp:1");
}

TEST(FrameText, ReadsNamesAsUTF8) {
  EXPECT_EQ(MakeFrame({"Pr\xC3\xBC"
                       "fe",
                       "gr\xC3\xB6\xC3\x9F"
                       "e.cpp",
                       7},
                      PLACE)
                .description,
            L"Pr\u00fcfe at gr\u00f6\u00dfe.cpp:7");
}

TEST(FrameText, CutsALongNameAndKeepsTheLine) {
  const std::string name(100'000, 'x');
  const std::wstring description = MakeFrame({name, "a.cpp", 1}, PLACE).description;
  EXPECT_EQ(description, std::wstring(500, L'x') + L"... at a.cpp:1");
  EXPECT_EQ(MakeFrame({"_ZN" + name, "a.cpp", 1}, PLACE).description.size(), description.size());
}

TEST(FrameText, LeavesOutTheFolderBeforeAnAbsolutePath) {
  EXPECT_EQ(DescribeIn("/home/build//home/src/a.cpp"), L"f at /home/src/a.cpp:1");
  EXPECT_EQ(DescribeIn("/home/x//build//home/src/a.cpp"), L"f at /home/src/a.cpp:1");
  EXPECT_EQ(DescribeIn("/home/build//home/x//a.cpp"), L"f at /home/x//a.cpp:1");
}

TEST(FrameText, KeepsPathsWithTwoSlashesOfTheirOwn) {
  for (const char* path :
       {"/tmp/x//slash.cpp", "/tmp/x//tmpl/a.cpp", "/tmp//a.cpp", "/tmp/x//tmp", "//tmp//tmp/a.cpp",
        "tmp/x//tmp/a.cpp", "/build//home/src/a.cpp", "//a.cpp", "/a.cpp", "//"}) {
    EXPECT_EQ(DescribeIn(path), L"f at " + YBase::UTF8ToWideChar(path) + L":1");
  }
}

TEST(FrameText, KnowsTheLibrarysNamespacesInMangledNames) {
  EXPECT_TRUE(IsInLibraryNamespace("_ZN4YLog10LogMessageERNS_6RouterEPKc"));
  EXPECT_TRUE(IsInLibraryNamespace("_ZNK5YBase9SmartPtrIIN6orders6ServerEE3GetEv"));
  EXPECT_TRUE(IsInLibraryNamespace("_ZN9YResource16MessageFormatterlsIiEERS0_T_"));
  EXPECT_TRUE(IsInLibraryNamespace("_ZZN4YLog9LogStringEvENKUlvE_clEv"));
  EXPECT_TRUE(IsInLibraryNamespace("_ZNO6YSynch4LockC2Ev"));
}

TEST(FrameText, KnowsWhatIsNotInThem) {
  EXPECT_FALSE(IsInLibraryNamespace("_ZNSt10unique_ptrIN4YLog6RouterEE3getEv"));
  EXPECT_FALSE(IsInLibraryNamespace("_ZN6orders6Server3LogERN4YLog6RouterE"));
  EXPECT_FALSE(IsInLibraryNamespace("_ZN5YLogsD1Ev"));
  EXPECT_FALSE(IsInLibraryNamespace("_Z4YLogv"));
  EXPECT_FALSE(IsInLibraryNamespace("_ZZ4YLogvENKUlvE_clEv"));
  EXPECT_FALSE(IsInLibraryNamespace("YLog::LogMessage"));
  EXPECT_FALSE(IsInLibraryNamespace("_ZN"));
  EXPECT_FALSE(IsInLibraryNamespace(""));
}

TEST(FrameText, MarksCodeOfTheLibrary) {
  EXPECT_TRUE(MakeFrame({"_ZN4YLog1fEv", "", 0}, PLACE).isLibraryCode);
  EXPECT_FALSE(MakeFrame({"_ZN6orders1fEv", "", 0}, PLACE).isLibraryCode);
  EXPECT_TRUE(MakeInlinedFrame({"_ZN4YLog1fEv", "", 0}, PLACE).isLibraryCode);
  EXPECT_FALSE(MakeInlinedFrame({"_ZN6orders1fEv", "a.cpp", 1}, PLACE).isLibraryCode);
}

TEST(FrameText, KnowsTheLibrarysHeaders) {
  EXPECT_TRUE(IsLibraryHeader("/usr/include/YLog/Log.h"));
  EXPECT_TRUE(IsLibraryHeader("YFileSystem/File.h"));
  EXPECT_FALSE(IsLibraryHeader("/src/YLog/Log.cpp"));
  EXPECT_FALSE(IsLibraryHeader("/src/MyYLog/Log.h"));
  EXPECT_FALSE(IsLibraryHeader("/src/YLog/orders/Log.h"));
  EXPECT_FALSE(IsLibraryHeader("/YLog.h"));
  EXPECT_FALSE(IsLibraryHeader("Log.h"));
  EXPECT_FALSE(IsLibraryHeader(""));
}

TEST(FrameText, MarksInlinedCodeOfTheLibrarysHeadersWhateverItsName) {
  EXPECT_TRUE(MakeInlinedFrame({"LogMessage", "/usr/include/YLog/Log.h", 77}, PLACE).isLibraryCode);
}

TEST(FrameText, LeavesOutAPositionInTheLibrarysHeadersThatIsNotTheFunctionsOwn) {
  const YBase::StackFrames::Frame frame = MakeFrame({"_ZN6orders1fEv", "/usr/include/YLog/Log.h", 77}, PLACE);
  EXPECT_FALSE(frame.isLibraryCode);
  EXPECT_EQ(frame.description, L"orders::f() in liborders.so+0x1a2b");
}

}  // namespace
