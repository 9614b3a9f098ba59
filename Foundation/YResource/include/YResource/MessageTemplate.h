#pragma once

#include <string>
#include <utility>

#include <YBase/ReturnString.h>
#include <YResource/Export.h>

namespace YResource {

/// A text with places for arguments: `%1` to `%N`, each with all its digits; `%%` is a percent sign. UTF-8.
///
/// A value that owns its text.
class YRESOURCE_EXPORT MessageTemplate {
 public:
  MessageTemplate() = default;
  explicit MessageTemplate(YBase::ReturnString text) : mText(std::move(text)) {}

  const std::string& GetText() const noexcept { return mText; }

 private:
  std::string mText;
};

/// A template of the given text, which is copied. Null is the empty text.
YRESOURCE_EXPORT MessageTemplate GetMessageTemplate(const char* text);

}  // namespace YResource
