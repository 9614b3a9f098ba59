#pragma once

#include <string>

#include <YBase/NumberText.h>
#include <YLog/Timestamp.h>

namespace YLog {

/// A number of a header and its texts. Each text is built when it is first asked for.
///
/// Threads: like any value. The constant getters of texts may change it, too.
template <class Number>
class NumberField {
 public:
  Number Get() const noexcept { return mValue; }

  /// False if the number is `value` already: nothing changes then.
  bool Set(Number value) noexcept {
    if (value == mValue) return false;
    mValue = value;
    mDecimalText.clear();
    mHexText.clear();
    return true;
  }

  /// Keeps `text` as it is, whatever follows the number in it.
  void SetDecimalText(const char* text) {
    // Both are read before anything is cleared: `text` may be one of the texts kept here.
    const int value = YBase::DecimalToInt(text);
    mDecimalText = text;
    mHexText.clear();
    mValue = static_cast<Number>(value);
  }

  const char* GetDecimalText() const {
    if (mDecimalText.empty()) AppendUnsignedLongDecimalToString(mDecimalText, mValue, 1);
    return mDecimalText.c_str();
  }

  /// Of the low 32 bits.
  const char* GetHexText(int minDigits) const {
    char digits[16];
    if (mHexText.empty()) mHexText = YBase::ToHexText(digits, static_cast<unsigned>(mValue), minDigits);
    return mHexText.c_str();
  }

 private:
  Number mValue = 0;
  mutable std::string mDecimalText;
  mutable std::string mHexText;
};

}  // namespace YLog
