#include <YBase/TextBuffer.h>

#include <string>
#include <type_traits>

namespace {

using Buffer = YBase::TextBuffer<8>;

static_assert(!std::is_copy_constructible_v<Buffer> && !std::is_move_constructible_v<Buffer>);

TEST(TextBuffer, IsEmptyAtFirst) {
  Buffer buffer;
  EXPECT_TRUE(buffer.Empty());
  EXPECT_EQ(buffer.Size(), 0u);
  EXPECT_EQ(buffer.View(), "");
  EXPECT_STREQ(buffer.CStr(), "");
}

TEST(TextBuffer, KeepsItsTextWhenItOutgrowsItsOwnStorage) {
  Buffer buffer;
  std::string expected;
  for (int i = 0; i < 1000; ++i) {
    const char character = static_cast<char>('a' + i % 26);
    buffer.Append(character);
    expected += character;
    ASSERT_EQ(buffer.View(), expected);
  }
}

TEST(TextBuffer, TerminatesItsTextWithoutCountingTheTerminator) {
  Buffer buffer;
  buffer.Append("12345678");
  EXPECT_STREQ(buffer.CStr(), "12345678");
  EXPECT_EQ(buffer.Size(), 8u);
  buffer.Append('9');
  EXPECT_EQ(buffer.View(), "123456789");
}

TEST(TextBuffer, KeepsNulBytesAndAcceptsEmptyTexts) {
  Buffer buffer;
  buffer.Append(std::string_view("a\0b", 3));
  buffer.Append(std::string_view());
  EXPECT_EQ(buffer.View(), std::string_view("a\0b", 3));
}

TEST(TextBuffer, StartsAfreshAfterClear) {
  Buffer buffer;
  buffer.Append("a text on the heap");
  buffer.Clear();
  EXPECT_TRUE(buffer.Empty());
  buffer.Append("next");
  EXPECT_EQ(buffer.View(), "next");
}

}  // namespace
