#include <YResource/MessageFormat.h>
#include <YResource/MessageFormatter.h>

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <type_traits>

using YResource::MessageFormatter;
namespace MessageFormat = YResource::MessageFormat;

namespace Client {

enum class Colour { RED };
MessageFormatter& operator<<(MessageFormatter& formatter, Colour) {
  return formatter << "red";
}

enum Size { LARGE };
MessageFormatter& operator<<(MessageFormatter& formatter, Size) {
  return formatter << "large";
}

// One operator for all enumerations of a client, as clients had to write it until now.
namespace Generic {
enum class Kind { FIRST };
template <class Enumeration>
requires std::is_enum_v<Enumeration> MessageFormatter& operator<<(MessageFormatter& formatter, Enumeration) {
  return formatter << "one of ours";
}
}  // namespace Generic

}  // namespace Client

namespace {

template <class Argument>
concept Insertable = requires(MessageFormatter& formatter, Argument argument) {
  formatter << argument;
};
template <class Argument>
concept InsertableAtOnce = requires(Argument argument) {
  YResource::GetMessageFormatter() << argument;
};

template <class Argument>
std::string Show(Argument argument, YResource::MessageManipulator manipulator = MessageFormat::Dec) {
  return (YResource::GetMessageFormatter() << manipulator << argument)
      .Format(YResource::GetMessageTemplate("%1"));
}

enum Unscoped { UNSCOPED = 7, NEGATIVE = -7 };
enum UnscopedShort : short { SHORT = -2 };
enum UnscopedByte : unsigned char { BYTE = 'A' };
enum UnscopedLong : unsigned long { LONG = std::numeric_limits<unsigned long>::max() };
enum UnscopedUtf16 : char16_t { UTF16 = u'A' };
enum class Scoped { VALUE = 7 };
enum class ScopedChar : char { LETTER = 'A', NEGATIVE = -1 };
enum class ScopedWideChar : wchar_t { LETTER = L'A' };
enum class ScopedBool : bool { NO, YES };

// These have always been shown as what they convert to.
enum UnscopedChar : char { LETTER = 'A' };
enum UnscopedWideChar : wchar_t { EURO = L'\u20AC' };
enum UnscopedBool : bool { NO, YES };

struct WithUnnamed {
  enum { VALUE = 3 };
};

/// In a type of this template every integer is an underlying one.
template <class Integer>
struct Of {
  enum class Enumeration : Integer {
    MINIMUM = std::numeric_limits<Integer>::min(),
    MAXIMUM = std::numeric_limits<Integer>::max()
  };
};

template <class Integer>
class EnumerationOf : public testing::Test {};
using Integers = testing::Types<signed char, unsigned char, char8_t, short, unsigned short, char16_t, int,
                                unsigned, char32_t, long, unsigned long, long long, unsigned long long>;
TYPED_TEST_SUITE(EnumerationOf, Integers);

TYPED_TEST(EnumerationOf, IsShownAsItsNumber) {
  using Enumeration = typename Of<TypeParam>::Enumeration;
  for (const Enumeration value : {Enumeration::MINIMUM, Enumeration::MAXIMUM}) {
    const auto number = static_cast<TypeParam>(value);
    EXPECT_EQ(Show(value), std::to_string(number));
    EXPECT_EQ(Show(value, MessageFormat::Hex), Show(number, MessageFormat::Hex));
    EXPECT_EQ(Show(value, MessageFormat::WideHex), Show(number, MessageFormat::WideHex));
  }
}

TEST(MessageFormatterEnumerations, AreShownAsTheirNumbers) {
  EXPECT_EQ(Show(UNSCOPED), "7");
  EXPECT_EQ(Show(NEGATIVE), "-7");
  EXPECT_EQ(Show(BYTE), "65");
  EXPECT_EQ(Show(LONG), "18446744073709551615");
  EXPECT_EQ(Show(UTF16), "65");
  EXPECT_EQ(Show(Scoped::VALUE), "7");
  EXPECT_EQ(Show(WithUnnamed::VALUE), "3");
  EXPECT_EQ(Show(std::byte{255}, MessageFormat::Hex), "FF");
}

TEST(MessageFormatterEnumerations, AreShownAsNumbersIfScopedEvenOverCharactersAndBool) {
  EXPECT_EQ(Show(ScopedChar::LETTER), "65");
  EXPECT_EQ(Show(ScopedWideChar::LETTER, MessageFormat::Hex), "41");
  EXPECT_EQ(Show(ScopedBool::YES), "1");
  EXPECT_EQ(Show(ScopedBool::NO, MessageFormat::WideHex), "0x00000000");
}

TEST(MessageFormatterEnumerations, AreShownAsCharactersAndBoolIfUnscopedOverThem) {
  EXPECT_EQ(Show(LETTER), "A");
  EXPECT_EQ(Show(EURO), "\xE2\x82\xAC");
  EXPECT_EQ(Show(YES), "true");
}

TEST(MessageFormatterEnumerations, UseTheClientsOperatorIfThereIsOne) {
  MessageFormatter formatter;
  formatter << Client::Colour::RED << Client::LARGE << Client::Generic::Kind::FIRST;
  EXPECT_EQ(formatter.Format(YResource::GetMessageTemplate("%1 %2 %3")), "red large one of ours");
}

// A client's operator cannot take a temporary formatter. An error is better than printing the number.
static_assert(Insertable<Client::Colour> && !InsertableAtOnce<Client::Colour>);
static_assert(Insertable<Client::Size> && !InsertableAtOnce<Client::Size>);
static_assert(InsertableAtOnce<Scoped> && InsertableAtOnce<Unscoped>);

struct ConvertsToText {
  operator const char*() const { return "text"; }
};
struct ConvertsToEnumeration {
  operator Scoped() const { return Scoped::VALUE; }
};
static_assert(Insertable<ConvertsToText> && !Insertable<ConvertsToEnumeration>);
static_assert(!Insertable<std::nullptr_t>);

TEST(MessageFormatterEnumerations, AreTwosComplementOfTheirOwnWidthInHexadecimal) {
  EXPECT_EQ(Show(SHORT, MessageFormat::Hex), "FFFE");
  EXPECT_EQ(Show(NEGATIVE, MessageFormat::Hex), "FFFFFFF9");
  EXPECT_EQ(Show(ScopedChar::NEGATIVE, MessageFormat::WideHex), "0x000000FF");
}

}  // namespace
