#include "Foundation/YResource/src/Placeholder.h"

#include <YResource/MessageFormatter.h>
#include <rapidcheck/gtest.h>

#include <string>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using YResource::FindPlaceholders;

TEST(Placeholder, IsFoundWithAllItsDigits) {
  EXPECT_THAT(FindPlaceholders("%1 of %2, %12 and %1 again"), ElementsAre(1, 2, 12));
  EXPECT_THAT(FindPlaceholders("%007"), ElementsAre(7));
}

TEST(Placeholder, IsNotFoundWhereNoArgumentCanBe) {
  EXPECT_THAT(FindPlaceholders(""), IsEmpty());
  EXPECT_THAT(FindPlaceholders("100 %"), IsEmpty());
  EXPECT_THAT(FindPlaceholders("%0 %x %-1 %%1"), IsEmpty());
  EXPECT_THAT(FindPlaceholders("%99999999999999999999999"), IsEmpty());
}

TEST(Placeholder, FollowsAnEscapedPercentSign) {
  EXPECT_THAT(FindPlaceholders("%%%1%%2"), ElementsAre(1));
}

RC_GTEST_PROP(Place, IsExactlyWhereTheFormatterPutsAnArgument, ()) {
  const auto text = *rc::gen::container<std::string>(rc::gen::element('%', '0', '1', '2', '3', 'x'));
  YResource::MessageFormatter formatter;
  for (int i = 0; i < 400; ++i) formatter << "<argument>";
  const std::string formatted = formatter.Format(YResource::GetMessageTemplate(text.c_str()));
  const auto places = FindPlaceholders(text);
  const bool hasPlace = !places.empty() && *places.begin() <= 400;
  RC_ASSERT(hasPlace == (formatted.find("<argument>") != std::string::npos));
}

}  // namespace
