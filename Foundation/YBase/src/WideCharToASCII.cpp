#include <YBase/WideCharToASCII.h>

#include <cwchar>
#include <string>

#include <YBase/ExceptionImpl.h>
#include <YBase/Message.h>
#include <YBase/NullText.h>

namespace YBase {

ReturnString WideCharToASCII(const wchar_t* text) {
  static constexpr const char* FUNCTION_NAME = "YBase::WideCharToASCII";
  ReturnString result;
  text = EmptyIfNull(text);
  result.reserve(std::wcslen(text));
  for (; *text != L'\0'; ++text) {
    if (*text < 0 || *text > 0x7F) {
      throw ExceptionImpl<Message>((std::string(FUNCTION_NAME) + ": the text is not ASCII.").c_str());
    }
    result += static_cast<char>(*text);
  }
  return result;
}

}  // namespace YBase
