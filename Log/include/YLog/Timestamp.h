#pragma once

#include <string>

#include <YBase/ReturnString.h>
#include <YDataType/DateTime.h>
#include <YLog/Export.h>

namespace YLog {

/// The instant of a message: a date and time of day, with the offset from UTC that its text shows.
///
/// A value. Threads: like any value.
class YLOG_EXPORT Timestamp : public YDataType::DateTime {
 public:
  /// 1970-01-01 00:00:00.000 without an offset.
  Timestamp() noexcept;

  /// Sets it to the present instant in local time, with the offset of that instant.
  void SetToNowLocal();

  /// "YYYY-MM-DD HH:MM:SS.mmm", and unless the offset is 0, "+HH:MM" east of UTC or "-HH:MM" west of it.
  YBase::ReturnString ToISO8601String() const;
  /// Appends the same text to `out`, which stays as it was if memory runs out.
  void AppendISO8601String(std::string& out) const;

  /// Reads that form at the beginning of `text`, and returns the number of characters read. The offset may be
  /// up to 14 hours and 59 minutes, and its two numbers may have one digit.
  ///
  /// If a "+" or "-" begins an offset that is not valid, returns 0 and leaves the object unchanged. If no
  /// offset follows, the object is overwritten and has no offset, even if nothing was read. Null is treated
  /// as an empty text.
  unsigned FromISO8601String(const char* text);

 private:
  bool mEastOfUTC = false;
  unsigned short mZoneHours = 0;
  unsigned short mZoneMinutes = 0;
};

/// Appends a number in decimal, with zeros before it up to `minDigits` digits, and returns `out`.
YLOG_EXPORT std::string& AppendUnsignedLongDecimalToString(std::string& out, unsigned long value,
                                                           unsigned minDigits);

}  // namespace YLog
