#include <YDataType/DateTime.h>
#include <YDataType/TimeSpan.h>

#include <climits>

namespace {

using YDataType::TimeSpan;

TEST(TimeSpan, IsZeroByDefault) {
  EXPECT_EQ(TimeSpan().GetTotalMilliseconds(), 0);
  EXPECT_EQ(TimeSpan().GetTotalSeconds(), 0);
}

TEST(TimeSpan, DropsFractionsOfASecond) {
  EXPECT_EQ(TimeSpan(1999).GetTotalSeconds(), 1);
  EXPECT_EQ(TimeSpan(999).GetTotalSeconds(), 0);
  EXPECT_EQ(TimeSpan(-999).GetTotalSeconds(), 0);
  EXPECT_EQ(TimeSpan(-1999).GetTotalSeconds(), -1);
}

TEST(TimeSpan, SaturatesIfTheSecondsDoNotFit32Bits) {
  EXPECT_EQ(TimeSpan(INT_MAX * 1000LL + 999).GetTotalSeconds(), INT_MAX);
  EXPECT_EQ(TimeSpan(INT_MAX * 1000LL + 1000).GetTotalSeconds(), INT_MAX);
  EXPECT_EQ(TimeSpan(INT_MIN * 1000LL - 1000).GetTotalSeconds(), INT_MIN);
  EXPECT_EQ(TimeSpan(LLONG_MAX).GetTotalSeconds(), INT_MAX);
  EXPECT_EQ(TimeSpan(LLONG_MIN).GetTotalSeconds(), INT_MIN);
}

TEST(TimeSpan, SinceTheEpochSaturatesOnceItExceeds32Bits) {
  const YDataType::DateTime late(253370764800.0);
  EXPECT_EQ((late - YDataType::DateTime(0.0)).GetTotalSeconds(), INT_MAX);
}

}  // namespace
