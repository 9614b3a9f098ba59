#include <YLog/Format.h>

#include <string>

#include <YLog/Log.h>

namespace {

using YLog::GetMessageFormatter;

std::string Format(YResource::MessageFormatter& formatter, const char* messageTemplate = "%1") {
  return formatter.Format(YResource::GetMessageTemplate(messageTemplate));
}

TEST(Format, PointsAtTheManipulatorsOfTheResourceLibrary) {
  EXPECT_EQ(&YResource::MessageFormat::Dec, YLog::Format::Dec);
  EXPECT_EQ(&YResource::MessageFormat::Dec, YLog::Format::WideDec);
  EXPECT_EQ(&YResource::MessageFormat::Hex, YLog::Format::Hex);
  EXPECT_EQ(&YResource::MessageFormat::WideHex, YLog::Format::WideHex);
}

TEST(Format, ShowsNumbersInTheFormThatWasInsertedLast) {
  EXPECT_EQ("FF", Format(GetMessageFormatter() << YLog::Format::Hex << 255));
  EXPECT_EQ("0x000000FF", Format(GetMessageFormatter() << YLog::Format::WideHex << 255));
  EXPECT_EQ("255", Format(GetMessageFormatter() << YLog::Format::Hex << YLog::Format::WideDec << 255));
  EXPECT_EQ(
      "10 A 10",
      Format(GetMessageFormatter() << 10 << YLog::Format::Hex << 10 << YLog::Format::Dec << 10, "%1 %2 %3"));
}

}  // namespace
