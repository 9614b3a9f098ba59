#include <YBase/ExceptionImpl.h>
#include <YBase/Message.h>
#include <YBase/NumberText.h>

#include <climits>
#include <string>

namespace {

using YBase::DecimalToInt;
using YBase::HexToUnsignedInt;
using YBase::ToDecimalString;

TEST(ToDecimalString, PrintsTheWholeRange) {
  EXPECT_EQ(ToDecimalString(0), "0");
  EXPECT_EQ(ToDecimalString(-42), "-42");
  EXPECT_EQ(ToDecimalString(LLONG_MAX), "9223372036854775807");
  EXPECT_EQ(ToDecimalString(LLONG_MIN), "-9223372036854775808");
}

TEST(ToHexText, PrintsAtLeastTheRequestedDigits) {
  char storage[16];
  EXPECT_EQ(YBase::ToHexText(storage, 0xBEEF, 1), "BEEF");
  EXPECT_EQ(YBase::ToHexText(storage, 0xBEEF, 8), "0000BEEF");
  EXPECT_EQ(YBase::ToHexText(storage, 0, 0), "");
  EXPECT_EQ(YBase::ToHexText(storage, 0, 1), "0");
  EXPECT_EQ(YBase::ToHexText(storage, ULLONG_MAX, 1), "FFFFFFFFFFFFFFFF");
}

TEST(DecimalToInt, SkipsBlanksAndAcceptsOneSign) {
  EXPECT_EQ(DecimalToInt("42"), 42);
  EXPECT_EQ(DecimalToInt(" \t 42"), 42);
  EXPECT_EQ(DecimalToInt("+42"), 42);
  EXPECT_EQ(DecimalToInt("  -42"), -42);
  EXPECT_EQ(DecimalToInt("0042"), 42);
}

TEST(DecimalToInt, StopsAtTheFirstOtherCharacter) {
  EXPECT_EQ(DecimalToInt("12a34"), 12);
  EXPECT_EQ(DecimalToInt("12 34"), 12);
  EXPECT_EQ(DecimalToInt("-7-7"), -7);
}

TEST(DecimalToInt, SaturatesAtTheLimitsOfAnInt) {
  EXPECT_EQ(DecimalToInt("2147483647"), INT_MAX);
  EXPECT_EQ(DecimalToInt("2147483648"), INT_MAX);
  EXPECT_EQ(DecimalToInt("-2147483648"), INT_MIN);
  EXPECT_EQ(DecimalToInt("-2147483649"), INT_MIN);
  std::string absurd(1000, '9');
  EXPECT_EQ(DecimalToInt(absurd.c_str()), INT_MAX);
  absurd[0] = '-';
  EXPECT_EQ(DecimalToInt(absurd.c_str()), INT_MIN);
}

TEST(DecimalToInt, ReadsTextWithoutDigitsAsZero) {
  for (const char* text : {"", " ", "-", "+", "--5", "+-5", "- 5", "x5", "\n5", "\xB2"}) {
    EXPECT_EQ(DecimalToInt(text), 0) << text;
  }
  EXPECT_EQ(DecimalToInt(nullptr), 0);
}

TEST(HexToUnsignedInt, ReadsDigitsOfEitherCase) {
  EXPECT_EQ(HexToUnsignedInt("BeeF", false), 0xBEEFu);
  EXPECT_EQ(HexToUnsignedInt("00ff", false), 0xFFu);
  EXPECT_EQ(HexToUnsignedInt("FFFFFFFF", true), 0xFFFFFFFFu);
}

TEST(HexToUnsignedInt, StopsAtTheFirstOtherCharacter) {
  EXPECT_EQ(HexToUnsignedInt("12g", false), 0x12u);
  EXPECT_EQ(HexToUnsignedInt("0x12", false), 0u);
}

TEST(HexToUnsignedInt, SaturatesAtThirtyTwoBits) {
  EXPECT_EQ(HexToUnsignedInt("100000000", false), 0xFFFFFFFFu);
  EXPECT_EQ(HexToUnsignedInt(std::string(1000, '1').c_str(), false), 0xFFFFFFFFu);
  std::string zeros(1000, '0');
  zeros.back() = '1';
  EXPECT_EQ(HexToUnsignedInt(zeros.c_str(), false), 1u);
}

TEST(HexToUnsignedInt, ReadsTextWithoutDigitsAsZero) {
  for (const char* text : {"", " 1", "-1", "+1", "g"}) EXPECT_EQ(HexToUnsignedInt(text, false), 0u) << text;
  EXPECT_EQ(HexToUnsignedInt(nullptr, false), 0u);
}

TEST(HexToUnsignedInt, ThrowsOnBadTextIfRequested) {
  using Exception = YBase::ExceptionImpl<YBase::Message>;
  for (const char* text : {"", "12g", " 1", "0x12", "100000000"}) {
    EXPECT_THROW(HexToUnsignedInt(text, true), Exception) << text;
  }
  EXPECT_THROW(HexToUnsignedInt(nullptr, true), Exception);
}

TEST(HexToUnsignedInt, NamesItselfAndTheTextWhenItThrows) {
  try {
    HexToUnsignedInt("12g", true);
    FAIL() << "read what is not a number";
  } catch (const std::exception& exception) {
    EXPECT_STREQ(exception.what(), "YBase::HexToUnsignedInt: '12g' is no hexadecimal number of 32 bits");
  }
}

}  // namespace
