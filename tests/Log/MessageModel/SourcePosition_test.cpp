#include "MessageModel/SourcePosition.h"

#include <cstdio>
#include <limits>
#include <ostream>
#include <string>
#include <vector>

#include <rapidcheck/gtest.h>

namespace {

using YLog::SourcePosition;

struct Scanned {
  unsigned count;
  std::string fileName;
  std::string funcName;
  int lineNumber;

  friend bool operator==(const Scanned&, const Scanned&) = default;
  friend void PrintTo(const Scanned& scanned, std::ostream* out) {
    *out << scanned.count << " '" << scanned.fileName << "' '" << scanned.funcName << "' "
         << scanned.lineNumber;
  }
};

const Scanned NO_GROUP{0, "", "", 0};

Scanned Scan(const std::string& text) {
  SourcePosition source;
  const unsigned count = source.FromString(text.c_str());
  return {count, source.fileName, source.funcName, source.lineNumber};
}

/// The same by means of the C library. \pre The text ends in "]", and every number in it fits.
Scanned ScanByTheCLibrary(const std::string& text) {
  char file[256] = "";
  char function[128] = "";
  int line = 0;
  if (std::sscanf(text.c_str(), "[%255[^:]:%127s at line:%d]", file, function, &line) != 3) return NO_GROUP;
  return {static_cast<unsigned>(text.find(']') + 1), file, function, line};
}

TEST(SourcePosition, ReadsFileFunctionAndLine) {
  EXPECT_EQ((Scanned{28, "engine_main", "Run", 42}), Scan("[engine_main:Run at line:42] and the message"));
}

TEST(SourcePosition, ReadsANegativeLineNumberAndOneWithAPlus) {
  EXPECT_EQ((Scanned{17, "f", "g", -42}), Scan("[f:g at line:-42]"));
  EXPECT_EQ((Scanned{17, "f", "g", 42}), Scan("[f:g at line:+42]"));
  EXPECT_EQ(NO_GROUP, Scan("[f:g at line:+-42]"));
  EXPECT_EQ(NO_GROUP, Scan("[f:g at line:-]"));
}

TEST(SourcePosition, AcceptsAnyRunOfWhiteSpaceForABlankOfTheFormat) {
  EXPECT_EQ((Scanned{18, "f", "g", 42}), Scan("[f: g\tat\nline: 42]"));
  EXPECT_EQ((Scanned{15, "f", "g", 42}), Scan("[f:g atline:42]"));
  EXPECT_EQ((Scanned{16, " f", "g", 42}), Scan("[ f:g atline:42]"));
}

TEST(SourcePosition, ReadsAFileNameOf255BytesAndRefusesOneOf256) {
  const std::string name(255, 'f');
  EXPECT_EQ((Scanned{270, name, "g", 42}), Scan("[" + name + ":g at line:42]"));
  EXPECT_EQ(NO_GROUP, Scan("[" + name + "f:g at line:42]"));
}

TEST(SourcePosition, ReadsAFunctionNameOf127BytesAndRefusesOneOf128) {
  const std::string name(127, 'g');
  EXPECT_EQ((Scanned{142, "f", name, 42}), Scan("[f:" + name + " at line:42]"));
  EXPECT_EQ(NO_GROUP, Scan("[f:" + name + "g at line:42]"));
}

TEST(SourcePosition, ReadsTextAfter127BytesOfAFunctionNameAsItsEnd) {
  const std::string name(127, 'g');
  EXPECT_EQ((Scanned{141, "f", name, 42}), Scan("[f:" + name + "at line:42]"));
}

TEST(SourcePosition, RefusesEmptyNamesAndNamesWithTheWrongDelimiters) {
  EXPECT_EQ(NO_GROUP, Scan("[:g at line:42]"));
  EXPECT_EQ(NO_GROUP, Scan("[f: at line:42]"));
  EXPECT_EQ(NO_GROUP, Scan("[f:operator new at line:42]"));
  EXPECT_EQ(NO_GROUP, Scan("[a:f:g h at line:42]"));
  EXPECT_EQ(NO_GROUP, Scan(" [f:g at line:42]"));
}

TEST(SourcePosition, EndsAfterTheFirstBracketEvenInsideAName) {
  EXPECT_EQ((Scanned{3, "a]b", "g", 42}), Scan("[a]b:g at line:42]"));
  EXPECT_EQ((Scanned{6, "f", "g[]", 42}), Scan("[f:g[] at line:42]"));
  EXPECT_EQ((Scanned{18, "f", "g", 42}), Scan("[f:g at line:42 !] more"));
}

TEST(SourcePosition, RefusesAGroupCutOffBeforeItsBracket) {
  const std::string group = "[f:g at line:42]";
  for (std::size_t length = 0; length < group.size(); ++length) {
    EXPECT_EQ(NO_GROUP, Scan(group.substr(0, length))) << length;
  }
  EXPECT_EQ(NO_GROUP, Scan("[a]b:g at line:42"));
}

TEST(SourcePosition, RefusesANumberThatDoesNotFit) {
  EXPECT_EQ(std::numeric_limits<int>::max(), Scan("[f:g at line:2147483647]").lineNumber);
  EXPECT_EQ(std::numeric_limits<int>::min(), Scan("[f:g at line:-2147483648]").lineNumber);
  EXPECT_EQ(NO_GROUP, Scan("[f:g at line:2147483648]"));
  EXPECT_EQ(NO_GROUP, Scan("[f:g at line:-2147483649]"));
  EXPECT_EQ(NO_GROUP, Scan("[f:g at line:99999999999999999999999]"));
}

TEST(SourcePosition, LeavesTheObjectUnchangedIfThereIsNoGroup) {
  SourcePosition source{"f", "g", 42};
  EXPECT_EQ(0U, source.FromString("[x:y at line:1"));
  EXPECT_EQ("f", source.fileName);
  EXPECT_EQ("g", source.funcName);
  EXPECT_EQ(42, source.lineNumber);
}

RC_GTEST_PROP(SourcePosition, AgreesWithTheCLibrary, ()) {
  const auto piece = rc::gen::element<std::string>("[", "]", ":", " ", "\t", "at", "line", "line:", "f", "7",
                                                   "-", "+", "a", " at line:", "[f:g at line:");
  std::string text = *rc::gen::element<std::string>("", "[", "[f:", "[f:g at line:");
  for (const std::string& part : *rc::gen::container<std::vector<std::string>>(piece)) {
    // A number with more digits may not fit, and the C library does not report that.
    if (part == "7" && text.ends_with("777777")) continue;
    text += part;
  }
  text += ']';
  RC_ASSERT(Scan(text) == ScanByTheCLibrary(text));
}

}  // namespace
