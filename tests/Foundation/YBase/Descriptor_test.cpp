#include <YBase/Descriptor.h>
#include <fcntl.h>
#include <unistd.h>

#include <utility>

#include <gtest/gtest.h>

namespace {

using YBase::Descriptor;

bool IsOpen(int descriptor) {
  return fcntl(descriptor, F_GETFD) >= 0;
}

Descriptor OpenSomething() {
  return Descriptor(open("/dev/null", O_RDONLY | O_CLOEXEC));
}

TEST(Descriptor, IsClosedOnDestruction) {
  int number = -1;
  {
    const Descriptor descriptor = OpenSomething();
    number = descriptor.Get();
    EXPECT_TRUE(IsOpen(number));
  }
  EXPECT_FALSE(IsOpen(number));
}

TEST(Descriptor, ClosesItsNumberOnlyOnce) {
  Descriptor descriptor = OpenSomething();
  const int number = descriptor.Get();
  descriptor.Close();
  EXPECT_FALSE(descriptor);
  const Descriptor another = OpenSomething();
  ASSERT_EQ(another.Get(), number);
  descriptor.Close();
  EXPECT_TRUE(IsOpen(number));
}

TEST(Descriptor, BelongsToTheObjectItWasMovedTo) {
  Descriptor first = OpenSomething();
  const int number = first.Get();
  Descriptor second(std::move(first));
  Descriptor third;
  third = std::move(second);
  EXPECT_EQ(third.Get(), number);
  EXPECT_FALSE(first);   // NOLINT(bugprone-use-after-move)
  EXPECT_FALSE(second);  // NOLINT(bugprone-use-after-move)
  EXPECT_TRUE(IsOpen(number));
}

}  // namespace
