// Logs its input, the body of an HTTP request, to requests.log as one record without its passwords:
//
//     http_masking <request.json
//
// It masks the members "password" of JSON and the attributes password="..." of a command, also in texts
// inside the body whose quotes are escaped. That is all: other names, other spellings, numbers, headers and
// forms (password=s3cret&user=ann) are logged as they are.

#include <cstddef>
#include <exception>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <string>
#include <string_view>

#include <YLog/YLog.h>

namespace {

/// Sends every message to requests.log in the current folder.
class Hook final : public YLog::ConfigurationHook, public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
  void ConfigureLogger(YLog::Logger&) override {}
  void ConfigureDispatcher(YBase::SmartPtrI<YLog::Dispatcher>& dispatcher, YLog::Logger&) override {
    const std::filesystem::path file = std::filesystem::current_path() / "requests.log";
    YDataType::ObjectCollection<YLog::Destination> destinations;
    destinations.Add(YLog::GetDestination_DiskFile(YBase::UTF8ToWideChar(file.c_str()).c_str()));
    dispatcher->SetDestinations(destinations);
  }
};

/// Makes one blank of each run of blanks, tabs and line breaks: an attribute is recognised only if a blank
/// precedes its name.
std::string JoinLines(const std::string& text) {
  std::string line;
  for (const char character : text) {
    const bool isSpace = std::string_view(" \t\r\n").find(character) != std::string_view::npos;
    if (!isSpace || !line.ends_with(' ')) line += isSpace ? ' ' : character;
  }
  if (line.ends_with(' ')) line.pop_back();
  return line;
}

/// Removes one level of escaping, so that the quotes of a text inside a JSON string look like those of the
/// body.
std::string Unescape(const std::string& text) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char next = text[i] == '\\' && i + 1 < text.size() ? text[i + 1] : '\0';
    if (next == '"' || next == '\\') {
      result += text[++i];
    } else if (next == 'n' || next == 'r' || next == 't') {
      result += ' ';
      ++i;
    } else {
      result += text[i];
    }
  }
  return result;
}

std::string MaskQuoted(const std::string& text) {
  return YLog::ReplaceSensitiveMessage(YLog::ReplaceSensitiveMessageInHTTP(text.c_str()).c_str(),
                                       YLog::REST_TAG_PASSWORD, "***");
}

/// Masks from the outside in: before a level of escaping is removed, it shows where a member's value ends.
std::string Mask(const std::string& request) {
  std::string text = MaskQuoted(JoinLines(request));
  while (text.find("\\\"") != std::string::npos) text = MaskQuoted(Unescape(text));
  return text;
}

}  // namespace

int main() {
  try {
    const YLog::Initializer initializer;
    YLog::SetConfigurationHook(new Hook);
    const auto router = YLog::CreateRouter("Requests", "Info", YSynch::LOCK_STACK_CATEGORY_OBJECT);

    const std::string request(std::istreambuf_iterator<char>(std::cin), {});
    // Masked before it is logged: what a destination has received cannot be taken back.
    YLog::LogString(*router, Mask(request).c_str());
  } catch (const std::exception& failure) {
    std::cerr << "http_masking: " << failure.what() << '\n';
    return 1;
  }
}
