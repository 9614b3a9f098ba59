#include <string>

#include <gmock/gmock.h>

#include <YBase/ExceptionImpl.h>
#include <YBase/Message.h>
#include <YBase/WideCharToASCII.h>

namespace {

using YBase::WideCharToASCII;

void ExpectRefused(wchar_t character) {
  try {
    WideCharToASCII((std::wstring(L"ab") + character).c_str());
    ADD_FAILURE() << "nothing was thrown";
  } catch (const YBase::ExceptionImpl<YBase::Message>& failure) {
    EXPECT_THAT(failure.what(), testing::StartsWith("YBase::WideCharToASCII: "));
  }
}

TEST(WideCharToASCII, KeepsEveryCharacterOfASCII) {
  std::string text;
  for (char character = 1; character < 0x7F; ++character) text += character;
  text += '\x7F';
  EXPECT_EQ(WideCharToASCII(std::wstring(text.begin(), text.end()).c_str()), text);
}

TEST(WideCharToASCII, TreatsNullAsAnEmptyText) {
  EXPECT_EQ(WideCharToASCII(nullptr), "");
  EXPECT_EQ(WideCharToASCII(L""), "");
}

TEST(WideCharToASCII, RefusesEverythingElse) {
  for (const int character : {0x80, 0xFC, 0x20AC, 0x10FFFF, 0x110000, -1, -0x7F}) {
    ExpectRefused(static_cast<wchar_t>(character));
  }
}

}  // namespace
