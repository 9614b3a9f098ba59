#include "Foundation/YBase/src/CallStack/LibraryCode.h"

#include <gtest/gtest.h>

namespace {

using YBase::IsLibraryCode;
using YBase::IsLibraryHeader;

/// A function that is not inlined, by its mangled name.
bool IsLibraryFunction(const char* name) {
  return IsLibraryCode({.function = name});
}

TEST(LibraryCode, IncludesTheLibrarysNamespaces) {
  EXPECT_TRUE(IsLibraryFunction("_ZN4YLog10LogMessageERNS_6RouterEPKc"));
  EXPECT_TRUE(IsLibraryFunction("_ZNK5YBase9SmartPtrIIN6orders6ServerEE3GetEv"));
  EXPECT_TRUE(IsLibraryFunction("_ZN9YResource16MessageFormatterlsIiEERS0_T_"));
  EXPECT_TRUE(IsLibraryFunction("_ZZN4YLog9LogStringEvENKUlvE_clEv"));
  EXPECT_TRUE(IsLibraryFunction("_ZNO6YSynch4LockC2Ev"));
}

TEST(LibraryCode, ExcludesOtherFunctions) {
  EXPECT_FALSE(IsLibraryFunction("_ZNSt10unique_ptrIN4YLog6RouterEE3getEv"));
  EXPECT_FALSE(IsLibraryFunction("_ZN6orders6Server3LogERN4YLog6RouterE"));
  EXPECT_FALSE(IsLibraryFunction("_ZN5YLogsD1Ev"));
  EXPECT_FALSE(IsLibraryFunction("_Z4YLogv"));
  EXPECT_FALSE(IsLibraryFunction("_ZZ4YLogvENKUlvE_clEv"));
  EXPECT_FALSE(IsLibraryFunction("YLog::LogMessage"));
  EXPECT_FALSE(IsLibraryFunction("_ZN"));
  EXPECT_FALSE(IsLibraryFunction(""));
}

TEST(LibraryCode, IncludesInlinedCodeOfItsHeadersWhateverTheName) {
  const char* const header = "/usr/include/YLog/Log.h";
  EXPECT_TRUE(IsLibraryCode({.function = "LogMessage", .file = header, .line = 77, .isInlined = true}));
  EXPECT_FALSE(IsLibraryCode({.function = "_ZN6orders1fEv", .file = header, .line = 77, .isInlined = false}));
}

TEST(LibraryCode, IncludesInlinedCodeOfItsNamespaces) {
  EXPECT_TRUE(IsLibraryCode({.function = "_ZN4YLog1fEv", .isInlined = true}));
  EXPECT_FALSE(IsLibraryCode({.function = "_ZN6orders1fEv", .file = "a.cpp", .line = 1, .isInlined = true}));
}

TEST(LibraryHeader, IsAHeaderInAFolderOfTheLibrary) {
  EXPECT_TRUE(IsLibraryHeader("/usr/include/YLog/Log.h"));
  EXPECT_TRUE(IsLibraryHeader("YFileSystem/File.h"));
}

TEST(LibraryHeader, IsNotAnyOtherFile) {
  EXPECT_FALSE(IsLibraryHeader("/src/YLog/Log.cpp"));
  EXPECT_FALSE(IsLibraryHeader("/src/MyYLog/Log.h"));
  EXPECT_FALSE(IsLibraryHeader("/src/YLog/orders/Log.h"));
  EXPECT_FALSE(IsLibraryHeader("/YLog.h"));
  EXPECT_FALSE(IsLibraryHeader("Log.h"));
  EXPECT_FALSE(IsLibraryHeader(""));
}

}  // namespace
