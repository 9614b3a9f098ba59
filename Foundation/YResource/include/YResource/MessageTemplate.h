#pragma once

#include <string>
#include <utility>

#include <YBase/ReturnString.h>
#include <YResource/Export.h>

namespace YResource {

/// A text in UTF-8 with placeholders for arguments: `%1` to `%N`, where all digits are part of the number;
/// `%%` is a percent sign.
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

/// A template made of the text, which is copied. Null is the empty text.
YRESOURCE_EXPORT MessageTemplate GetMessageTemplate(const char* text);

}  // namespace YResource
