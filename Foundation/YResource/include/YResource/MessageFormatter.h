#pragma once

#include <concepts>
#include <string_view>
#include <type_traits>

#include <YBase/ReturnString.h>
#include <YBase/TextBuffer.h>
#include <YResource/Export.h>
#include <YResource/MessageTemplate.h>

namespace YResource {

class MessageFormatter;

/// Changes how the integers inserted after it are shown, up to the next one.
using MessageManipulator = MessageFormatter& (*)(MessageFormatter&);

/// Values for which a client has an operator of its own, outside the class.
template <class Value>
concept HasOperatorOfItsOwn = requires(MessageFormatter& formatter, Value value) {
  operator<<(formatter, value);
};

/// A finished text, on the heap only if it is long.
using FormattedText = YBase::TextBuffer<1024>;

/// Collects the arguments of a message and fills them into a template.
///
/// Arguments become text as they are inserted: a char is a character, a bool is "true" or "false", a
/// floating-point number is the shortest text that reads back as the same number, a pointer is its address as
/// `MessageFormat::WideHex` shows it, a null text is empty. Wide texts are converted to UTF-8. A scoped
/// enumeration is its number, even if its underlying type is char or bool; an unscoped one is what it
/// converts to. A client's own operator for an enumeration takes precedence.
///
/// Ownership: the formatter has copies of the texts, on the heap only if they are long.
///
/// Threads: belongs to one thread.
///
/// Failure: inserting and formatting throw `std::bad_alloc`; the arguments inserted before stay.
class YRESOURCE_EXPORT MessageFormatter {
 public:
  enum class IntegerForm : unsigned char { DECIMAL, HEX, WIDE_HEX };

  MessageFormatter() = default;

  MessageFormatter& operator<<(const char* text);
  MessageFormatter& operator<<(const wchar_t* text);
  MessageFormatter& operator<<(std::string_view text);
  MessageFormatter& operator<<(std::wstring_view text);
  MessageFormatter& operator<<(char character);
  MessageFormatter& operator<<(wchar_t character);
  MessageFormatter& operator<<(bool value);
  MessageFormatter& operator<<(float value);
  MessageFormatter& operator<<(double value);
  MessageFormatter& operator<<(long double value);
  MessageFormatter& operator<<(const void* address);
  MessageFormatter& operator<<(MessageManipulator manipulator) { return manipulator(*this); }

  /// In hexadecimal a negative number is the two's complement of its own width.
  template <std::integral Integer>
  requires(sizeof(Integer) <= sizeof(long long)) MessageFormatter& operator<<(Integer value) {
    using Unsigned = std::make_unsigned_t<Integer>;
    const auto bits = static_cast<Unsigned>(value);
    if constexpr (std::is_signed_v<Integer>) {
      if (value < 0) return AddInteger(bits, static_cast<Unsigned>(Unsigned{0} - bits), true);
    }
    return AddInteger(bits, bits, false);
  }

  template <class Enumeration>
  requires(std::is_enum_v<Enumeration> && !HasOperatorOfItsOwn<Enumeration>) MessageFormatter& operator<<(
      Enumeration value) {
    using Underlying = std::underlying_type_t<Enumeration>;
    const auto number = static_cast<Underlying>(value);
    if constexpr (std::is_convertible_v<Enumeration, Underlying>) {
      return *this << number;
    } else if constexpr (std::same_as<Underlying, bool>) {
      return *this << static_cast<unsigned>(number);
    } else if constexpr (std::is_signed_v<Underlying>) {
      return *this << static_cast<std::make_signed_t<Underlying>>(number);
    } else {
      return *this << static_cast<std::make_unsigned_t<Underlying>>(number);
    }
  }

  void SetIntegerForm(IntegerForm form) noexcept { mIntegerForm = form; }

  /// Fills the arguments into the template, the first for `%1`, and removes them. A placeholder without an
  /// argument stays as it is, and so do `%0` and a percent sign that begins no placeholder. The form of
  /// integers does not change.
  YBase::ReturnString Format(const MessageTemplate& messageTemplate);

  /// The same for the text of a template; the result is appended to `text`.
  void Format(std::string_view messageTemplate, FormattedText& text);

 private:
  MessageFormatter& AddInteger(unsigned long long bits, unsigned long long magnitude, bool negative);
  MessageFormatter& AddWideHex(unsigned long long value);
  MessageFormatter& AddArgument(std::string_view text);

  // Each argument is stored as its length, in the bytes of a size, and its text.
  YBase::TextBuffer<256> mArguments;
  IntegerForm mIntegerForm = IntegerForm::DECIMAL;
};

/// An empty formatter.
YRESOURCE_EXPORT MessageFormatter GetMessageFormatter();

}  // namespace YResource
