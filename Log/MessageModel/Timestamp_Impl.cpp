#include "MessageModel/Timestamp_Impl.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <string_view>

#include <YBase/NullText.h>

namespace YLog {

namespace {

constexpr std::size_t MAX_DIGITS = std::numeric_limits<unsigned long>::digits10 + 1;
constexpr unsigned MINUTES_PER_HOUR = 60;
constexpr unsigned short MAX_ZONE_HOURS = 14;
constexpr unsigned short MAX_ZONE_MINUTES = 59;

/// The decimal digits of a number.
class Digits {
 public:
  explicit Digits(unsigned long value) noexcept
      : mCount(static_cast<std::size_t>(std::to_chars(mText, mText + MAX_DIGITS, value).ptr - mText)) {}

  std::string_view View() const noexcept { return {mText, mCount}; }

 private:
  char mText[MAX_DIGITS];
  std::size_t mCount;
};

/// The text of a timestamp under construction. It has room for every number at its longest.
class TimestampText {
 public:
  void Append(char character) noexcept { *mpEnd++ = character; }

  template <unsigned MinDigits>
  void Append(int value) noexcept {
    static_assert(MinDigits <= MAX_DIGITS);
    // A length known here lets the compiler unroll the loop: less than half the time for the whole text.
    auto rest = static_cast<unsigned>(value);
    for (unsigned digit = MinDigits; digit-- > 0; rest /= 10) {
      mpEnd[digit] = static_cast<char>('0' + rest % 10);
    }
    mpEnd = rest == 0 ? mpEnd + MinDigits : AppendDigits(value);
  }

  std::string_view View() const noexcept { return {mText, static_cast<std::size_t>(mpEnd - mText)}; }

 private:
  static constexpr std::size_t NUMBERS = 9;

  /// For the rare number that is longer than its field.
  char* AppendDigits(int value) const noexcept {
    const Digits digits(static_cast<unsigned long>(value));
    return std::copy(digits.View().begin(), digits.View().end(), mpEnd);
  }

  char mText[NUMBERS * (MAX_DIGITS + 1)];
  char* mpEnd = mText;
};

struct Zone {
  bool eastOfUTC = false;
  unsigned short hours = 0;
  unsigned short minutes = 0;
};

/// Reads what `strtoul` reads, blanks and sign included, and keeps 16 bits of it.
unsigned short ReadNumber(const char*& position) {
  char* end = nullptr;
  const unsigned long number = std::strtoul(position, &end, 10);
  position = end;
  return static_cast<unsigned short>(number);
}

/// Reads the offset at `position`, which points to its sign, and moves past it. Returns false if it is
/// malformed.
bool ReadZone(const char*& position, Zone& zone) {
  zone.eastOfUTC = *position++ == '+';
  zone.hours = ReadNumber(position);
  if (zone.hours > MAX_ZONE_HOURS || *position++ != ':') return false;
  zone.minutes = ReadNumber(position);
  return zone.minutes <= MAX_ZONE_MINUTES;
}

}  // namespace

Timestamp::Timestamp() noexcept : DateTime(0.0) {}

void Timestamp::SetToNowLocal() {
  DateTime::operator=(Now());
  const int offset = GetStandardOffset() + GetDaylightSavingOffset();
  mEastOfUTC = offset > 0;
  const auto minutes = static_cast<unsigned>(mEastOfUTC ? offset : -offset);
  mZoneHours = static_cast<unsigned short>(minutes / MINUTES_PER_HOUR);
  mZoneMinutes = static_cast<unsigned short>(minutes % MINUTES_PER_HOUR);
}

YBase::ReturnString Timestamp::ToISO8601String() const {
  YBase::ReturnString text;
  AppendISO8601String(text);
  return text;
}

void Timestamp::AppendISO8601String(std::string& out) const {
  TimestampText text;
  text.Append<4>(GetYear());
  text.Append('-');
  text.Append<2>(GetMonth());
  text.Append('-');
  text.Append<2>(GetDay());
  text.Append(' ');
  text.Append<2>(GetHour());
  text.Append(':');
  text.Append<2>(GetMinute());
  text.Append(':');
  text.Append<2>(GetSecond());
  text.Append('.');
  text.Append<3>(GetMillisecond());
  if (mZoneHours != 0 || mZoneMinutes != 0) {
    text.Append(mEastOfUTC ? '+' : '-');
    text.Append<2>(mZoneHours);
    text.Append(':');
    text.Append<2>(mZoneMinutes);
  }
  out += text.View();
}

unsigned Timestamp::FromISO8601String(const char* text) {
  text = YBase::EmptyIfNull(text);
  Timestamp parsed;
  const char* position = text + parsed.FromString(text);
  if (*position == '+' || *position == '-') {
    Zone zone;
    if (!ReadZone(position, zone)) return 0;
    parsed.mEastOfUTC = zone.eastOfUTC;
    parsed.mZoneHours = zone.hours;
    parsed.mZoneMinutes = zone.minutes;
  }
  *this = parsed;
  return static_cast<unsigned>(position - text);
}

std::string& AppendUnsignedLongDecimalToString(std::string& out, unsigned long value, unsigned minDigits) {
  const Digits digits(value);
  if (digits.View().size() < minDigits) out.append(minDigits - digits.View().size(), '0');
  return out += digits.View();
}

}  // namespace YLog
