#include "MessageModel/MessageBody_Impl.h"

#include <YBase/AdvanceMessageCursor.h>
#include <YBase/ConstMessageCursor.h>
#include <YBase/FormatMessage.h>
#include <YBase/MessageCursor.h>
#include <YResource/Localizer.h>

namespace YLog {

namespace {

/// Walks a message and its localized counterparts in step.
class MessageMerger {
 public:
  MessageMerger(const MessageBody_Impl::LocalizedMessages& localizedMessages, YBase::Message& message)
      : mMessage(message) {
    for (const auto& [language, localized] : localizedMessages)
      mLocalizedMessages.emplace(language, localized);
  }

  void MergeTexts() {
    for (const auto& [language, cursor] : mLocalizedMessages) {
      const char* const text = cursor.GetCurrentMessage().GetLocalizedText(language);
      if (text != nullptr) mMessage.GetCurrentMessage().SetLocalizedText(language, text);
    }
  }

  bool LowerLevelMessageIsUnvisited() const noexcept { return mMessage.LowerLevelMessageIsUnvisited(); }
  bool GoToLowerLevelMessage() {
    mMessage.GoToLowerLevelMessage(false);
    for (auto& [language, cursor] : mLocalizedMessages) cursor.GoToLowerLevelMessage(true);
    return true;
  }
  bool GoToSameLevelMessage() {
    mMessage.GoToSameLevelMessage(false);
    for (auto& [language, cursor] : mLocalizedMessages) cursor.GoToSameLevelMessage(true);
    return true;
  }
  bool GoToParent() {
    if (!mMessage.GoToParent()) return false;
    for (auto& [language, cursor] : mLocalizedMessages) cursor.GoToParent();
    return true;
  }

 private:
  std::map<unsigned short, YBase::ConstMessageCursor> mLocalizedMessages;
  YBase::MessageCursor mMessage;
};

}  // namespace

MessageBody::~MessageBody() = default;

MessageBody_Impl::MessageBody_Impl() : mpLocalizer(YResource::GetLocalizer()) {}

void MessageBody_Impl::SetMessage(const YBase::Message& message) {
  mMessage = message;
  mTexts.clear();
  mLocalizedMessages.clear();
}

const YBase::Message& MessageBody_Impl::GetMessage() {
  MergeTexts(mLocalizedMessages, mMessage);
  mLocalizedMessages.clear();
  return mMessage;
}

const char* MessageBody_Impl::GetText(unsigned short language) const {
  auto text = mTexts.find(language);
  // Kept only when it is complete.
  if (text == mTexts.end()) text = mTexts.emplace(language, Format(language)).first;
  return text->second.c_str();
}

std::string MessageBody_Impl::Format(unsigned short language) const {
  if (mMessage.GetLocalizedText(language) != nullptr) return YBase::FormatMessage(mMessage, language);
  return YBase::FormatMessage(mMessage, mLocalizedMessages[language], language, *mpLocalizer);
}

void MessageBody_Impl::MergeTexts(const LocalizedMessages& localizedMessages, YBase::Message& message) {
  MessageMerger merger(localizedMessages, message);
  do {
    merger.MergeTexts();
  } while (YBase::AdvanceMessageCursor(merger));
}

YBase::SmartPtrI<MessageBody> CreateMessageBody() {
  return YBase::SmartPtrI<MessageBody>(new MessageBody_Impl);
}

}  // namespace YLog
