#pragma once

#include <functional>
#include <string>
#include <utility>

#include <YResource/Bundle.h>
#include <YSynch/AtomicLong.h>
#include <YSynch/ReferenceCountedImpl.h>

namespace Support {

/// A catalogue that returns one text for every request. Records the request, and then runs an action of the
/// test.
class RecordingBundle final : public YResource::Bundle,
                              public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
 public:
  explicit RecordingBundle(std::string text, std::function<void()> onQuestion = nullptr,
                           std::function<void()> onDestruction = nullptr)
      : mText(std::move(text)),
        mOnQuestion(std::move(onQuestion)),
        mOnDestruction(std::move(onDestruction)) {}

  YResource::MessageTemplate GetMessageTemplate(unsigned id, unsigned short language,
                                                const char* defaultTemplate) const override {
    return YResource::MessageTemplate(Answer("template", id, language, defaultTemplate));
  }
  YBase::ReturnString GetString(unsigned id, unsigned short language,
                                const char* defaultText) const override {
    return Answer("string", id, language, defaultText);
  }

  /// The last request, as in "template 300 1031 default".
  std::string GetQuestion() const { return mQuestion; }

 private:
  ~RecordingBundle() override {
    if (mOnDestruction) mOnDestruction();
  }

  std::string Answer(const std::string& kind, unsigned id, unsigned short language,
                     const char* defaultText) const {
    mQuestion = kind + ' ' + std::to_string(id) + ' ' + std::to_string(language) + ' ' +
                (defaultText != nullptr ? defaultText : "(null)");
    if (mOnQuestion) mOnQuestion();
    return mText;
  }

  const std::string mText;
  const std::function<void()> mOnQuestion;
  const std::function<void()> mOnDestruction;
  mutable std::string mQuestion;
};

}  // namespace Support
