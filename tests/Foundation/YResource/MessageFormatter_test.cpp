#include <YResource/MessageFormat.h>
#include <YResource/MessageFormatter.h>
#include <rapidcheck/gtest.h>

#include <concepts>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string>
#include <type_traits>

namespace {

using YResource::FormattedText;
using YResource::MessageFormatter;
namespace MessageFormat = YResource::MessageFormat;

template <class Argument>
concept Insertable = requires(MessageFormatter& formatter, Argument argument) {
  formatter << argument;
};

// What could only be shown incorrectly does not compile.
__extension__ typedef __int128 Integer128;
static_assert(!Insertable<Integer128>);
static_assert(!Insertable<std::nullptr_t>);
static_assert(!std::is_copy_constructible_v<MessageFormatter>);

std::string Format(const char* messageTemplate, MessageFormatter& formatter) {
  return formatter.Format(YResource::GetMessageTemplate(messageTemplate));
}

/// What a single argument looks like.
template <class Argument>
std::string Show(const Argument& argument, YResource::MessageManipulator manipulator = MessageFormat::Dec) {
  MessageFormatter formatter;
  return Format("%1", formatter << manipulator << argument);
}

/// The number that makes up the whole text; 0 if the text is anything else.
long double Parse(const std::string& text) {
  char* end = nullptr;
  const long double number = std::strtold(text.c_str(), &end);
  return end == text.c_str() + text.size() ? number : 0;
}

TEST(MessageFormatter, InsertsArgumentsByTheirNumbers) {
  EXPECT_EQ(Format("%2 before %1, %2 again", YResource::GetMessageFormatter() << "one"
                                                                              << "two"),
            "two before one, two again");
}

TEST(MessageFormatter, ReadsAllDigitsOfANumber) {
  MessageFormatter formatter;
  for (int i = 1; i <= 12; ++i) formatter << i * 10;
  EXPECT_EQ(Format("%12 %1 %01 %0012", formatter), "120 10 10 120");
}

TEST(MessageFormatter, LeavesAPlaceholderWithoutAnArgumentAsWritten) {
  EXPECT_EQ(Format("%1 %2 %13", YResource::GetMessageFormatter() << "one"), "one %2 %13");
  MessageFormatter empty;
  EXPECT_EQ(Format("%1", empty), "%1");
}

TEST(MessageFormatter, LeavesNumbersOfAnyLengthAsWritten) {
  const std::string digits(5000, '9');
  const std::string messageTemplate = "<%18446744073709551617%" + digits + ">";
  EXPECT_EQ(Format(messageTemplate.c_str(), YResource::GetMessageFormatter() << "one"), messageTemplate);
}

TEST(MessageFormatter, LeavesZeroAndALonePercentSignAsWritten) {
  const char* const asWritten = "%0 %00 % %x %-1 %+1 50%";
  EXPECT_EQ(Format(asWritten, YResource::GetMessageFormatter() << "one"), asWritten);
  EXPECT_EQ(Format("%", YResource::GetMessageFormatter() << "one"), "%");
}

TEST(MessageFormatter, PrintsADoubledPercentSignAsOne) {
  EXPECT_EQ(Format("100%% %%1 %%%1 %%%%", YResource::GetMessageFormatter() << "one"), "100% %1 %one %%");
}

TEST(MessageFormatter, DoesNotExpandTheTextOfAnArgument) {
  EXPECT_EQ(Format("%1 %2", YResource::GetMessageFormatter() << "%2 %%"
                                                             << "two"),
            "%2 %% two");
}

TEST(MessageFormatter, ForgetsItsArgumentsWhenItFormats) {
  MessageFormatter formatter;
  formatter << "one"
            << "two";
  EXPECT_EQ(Format("no place", formatter), "no place");
  EXPECT_EQ(Format("%1", formatter), "%1");
  formatter << "new";
  EXPECT_EQ(Format("%1 %2", formatter), "new %2");
}

TEST(MessageFormatter, AppendsToTheExistingText) {
  FormattedText text;
  text.Append("header ");
  MessageFormatter formatter;
  formatter << 1;
  formatter.Format("%1%", text);
  EXPECT_EQ(text.View(), "header 1%");
}

TEST(MessageFormatter, ShowsTextsUnchanged) {
  EXPECT_EQ(Show("narrow"), "narrow");
  EXPECT_EQ(Show(std::string("owned")), "owned");
  EXPECT_EQ(Show(std::string("N\0L", 3)), std::string("N\0L", 3));
  EXPECT_EQ(Show("\x01\x1B\n\xFF"), "\x01\x1B\n\xFF");
  EXPECT_EQ(Show(""), "");
}

TEST(MessageFormatter, ConvertsWideTextsToUtf8) {
  EXPECT_EQ(Show(L"gr\u00FC\u00DFe \U0001F600"),
            "gr\xC3\xBC\xC3\x9F"
            "e \xF0\x9F\x98\x80");
  EXPECT_EQ(Show(std::wstring(1000, L'\u20AC')).size(), 3000u);
  EXPECT_EQ(Show(std::wstring(1, static_cast<wchar_t>(0xD800))), "\xEF\xBF\xBD");
}

TEST(MessageFormatter, ShowsNullAsAnEmptyText) {
  EXPECT_EQ(Show(static_cast<const char*>(nullptr)), "");
  EXPECT_EQ(Show(static_cast<const wchar_t*>(nullptr)), "");
}

TEST(MessageFormatter, ShowsCharactersAndBooleansAsSuch) {
  EXPECT_EQ(Show('c', MessageFormat::Hex), "c");
  EXPECT_EQ(Show(L'\u20AC'), "\xE2\x82\xAC");
  EXPECT_EQ(Show(true, MessageFormat::Hex), "true");
  EXPECT_EQ(Show(false), "false");
}

TEST(MessageFormatter, ShowsIntegersOfEveryWidthInDecimal) {
  EXPECT_EQ(Show(std::numeric_limits<signed char>::min()), "-128");
  EXPECT_EQ(Show(std::numeric_limits<unsigned char>::max()), "255");
  EXPECT_EQ(Show(std::numeric_limits<short>::min()), "-32768");
  EXPECT_EQ(Show(std::numeric_limits<unsigned short>::max()), "65535");
  EXPECT_EQ(Show(std::numeric_limits<int>::min()), "-2147483648");
  EXPECT_EQ(Show(std::numeric_limits<unsigned>::max()), "4294967295");
  EXPECT_EQ(Show(std::numeric_limits<long>::min()), "-9223372036854775808");
  EXPECT_EQ(Show(std::numeric_limits<long long>::min()), "-9223372036854775808");
  EXPECT_EQ(Show(std::numeric_limits<unsigned long long>::max()), "18446744073709551615");
  EXPECT_EQ(Show(0), "0");
}

TEST(MessageFormatter, ShowsUpperCaseDigitsWithoutAPrefixInHexadecimal) {
  EXPECT_EQ(Show(0, MessageFormat::Hex), "0");
  EXPECT_EQ(Show(0xBEEF, MessageFormat::Hex), "BEEF");
  EXPECT_EQ(Show(std::numeric_limits<std::uint64_t>::max(), MessageFormat::Hex), "FFFFFFFFFFFFFFFF");
}

TEST(MessageFormatter, ShowsNegativeNumbersInHexadecimalByTheirOwnWidth) {
  EXPECT_EQ(Show(std::int8_t{-1}, MessageFormat::Hex), "FF");
  EXPECT_EQ(Show(std::int16_t{-2}, MessageFormat::Hex), "FFFE");
  EXPECT_EQ(Show(std::int32_t{-1}, MessageFormat::Hex), "FFFFFFFF");
  EXPECT_EQ(Show(std::int64_t{-1}, MessageFormat::Hex), "FFFFFFFFFFFFFFFF");
  EXPECT_EQ(Show(std::int8_t{-1}, MessageFormat::WideHex), "0x000000FF");
}

TEST(MessageFormatter, ShowsAtLeastEightDigitsInWideHexadecimal) {
  EXPECT_EQ(Show(0, MessageFormat::WideHex), "0x00000000");
  EXPECT_EQ(Show(0xABC, MessageFormat::WideHex), "0x00000ABC");
  EXPECT_EQ(Show(0x123456789ABCDEFull, MessageFormat::WideHex), "0x123456789ABCDEF");
}

TEST(MessageFormatter, ShowsAddressesInWideHexadecimal) {
  EXPECT_EQ(Show(reinterpret_cast<const void*>(std::uintptr_t{0xBEEF})), "0x0000BEEF");
  EXPECT_EQ(Show(reinterpret_cast<void*>(std::uintptr_t{0x7FFF12345678}), MessageFormat::Hex),
            "0x7FFF12345678");
  EXPECT_EQ(Show(static_cast<const int*>(nullptr)), "0x00000000");
}

TEST(MessageFormatter, AppliesAManipulatorUntilTheNextOne) {
  MessageFormatter formatter;
  formatter << 10 << MessageFormat::Hex << 10 << 11 << MessageFormat::WideHex << 12;
  EXPECT_EQ(Format("%1 %2 %3 %4", formatter), "10 A B 0x0000000C");
  formatter << 13 << MessageFormat::Dec << 14;
  EXPECT_EQ(Format("%1 %2", formatter), "0x0000000D 14");
}

TEST(MessageFormatter, ShowsFloatingPointAsTheShortestTextThatReadsBackTheSame) {
  EXPECT_EQ(Show(0.1f), "0.1");
  EXPECT_EQ(Show(0.1), "0.1");
  EXPECT_EQ(Show(0.1L), "0.1");
  EXPECT_EQ(Show(1.0), "1");
  EXPECT_EQ(Show(-0.0), "-0");
  EXPECT_EQ(Show(1e300, MessageFormat::Hex), "1e+300");
  EXPECT_EQ(Show(std::numeric_limits<double>::infinity()), "inf");
  EXPECT_EQ(Show(std::numeric_limits<double>::quiet_NaN()), "nan");
}

TEST(MessageFormatter, ShowsTheLimitsOfFloatingPoint) {
  using Limits = std::numeric_limits<long double>;
  for (const long double value : {Limits::max(), Limits::lowest(), Limits::min(), -Limits::denorm_min()}) {
    EXPECT_EQ(Parse(Show(value)), value);
  }
  for (const double value :
       {std::numeric_limits<double>::max(), -std::numeric_limits<double>::denorm_min()}) {
    EXPECT_EQ(static_cast<double>(Parse(Show(value))), value);
  }
}

RC_GTEST_PROP(MessageFormatter, ShowsDoublesSoThatTheyReadBackTheSame, (double value)) {
  RC_ASSERT(std::stod(Show(value)) == value);
}

RC_GTEST_PROP(MessageFormatter, ShowsIntegersSoThatTheyReadBackTheSame, (std::int64_t value)) {
  RC_ASSERT(std::stoll(Show(value)) == value);
  RC_ASSERT(std::stoull(Show(value, MessageFormat::Hex), nullptr, 16) == static_cast<std::uint64_t>(value));
}

RC_GTEST_PROP(MessageFormatter, LeavesTextsWithoutPercentSignsUnchanged, (std::string text)) {
  std::erase(text, '%');
  MessageFormatter formatter;
  FormattedText formatted;
  (formatter << text << 1).Format(text, formatted);
  RC_ASSERT(formatted.View() == text);
}

RC_GTEST_PROP(MessageFormatter, AcceptsAnyTemplate, ()) {
  const auto text = *rc::gen::container<std::string>(rc::gen::elementOf(std::string("%%%0129x")));
  MessageFormatter formatter;
  FormattedText formatted;
  (formatter << ""
             << "%1")
      .Format(text, formatted);
  RC_ASSERT(formatted.Size() <= 2 * text.size());
}

TEST(MessageFormatter, KeepsLongArguments) {
  const std::string longText(100'000, 'x');
  MessageFormatter formatter;
  formatter << "before" << longText << "behind";
  EXPECT_EQ(Format("%3 %2 %1", formatter), "behind " + longText + " before");
}

}  // namespace
