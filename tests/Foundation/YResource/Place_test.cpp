#include "Foundation/YResource/src/Place.h"

#include <YResource/MessageFormatter.h>
#include <rapidcheck/gtest.h>

#include <string>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using YResource::FindPlaces;

TEST(Place, IsFoundWithAllItsDigits) {
  EXPECT_THAT(FindPlaces("%1 of %2, %12 and %1 again"), ElementsAre(1, 2, 12));
  EXPECT_THAT(FindPlaces("%007"), ElementsAre(7));
}

TEST(Place, IsNoneWhereNoArgumentCanStand) {
  EXPECT_THAT(FindPlaces(""), IsEmpty());
  EXPECT_THAT(FindPlaces("100 %"), IsEmpty());
  EXPECT_THAT(FindPlaces("%0 %x %-1 %%1"), IsEmpty());
  EXPECT_THAT(FindPlaces("%99999999999999999999999"), IsEmpty());
}

TEST(Place, FollowsAPercentSignThatStandsForItself) {
  EXPECT_THAT(FindPlaces("%%%1%%2"), ElementsAre(1));
}

RC_GTEST_PROP(Place, IsJustWhereTheFormatterPutsAnArgument, ()) {
  const auto text = *rc::gen::container<std::string>(rc::gen::element('%', '0', '1', '2', '3', 'x'));
  YResource::MessageFormatter formatter;
  for (int i = 0; i < 400; ++i) formatter << "<argument>";
  const std::string formatted = formatter.Format(YResource::GetMessageTemplate(text.c_str()));
  const auto places = FindPlaces(text);
  const bool hasPlace = !places.empty() && *places.begin() <= 400;
  RC_ASSERT(hasPlace == (formatted.find("<argument>") != std::string::npos));
}

}  // namespace
