#include "MessageModel/MessageBody_Impl.h"

#include <YBase/AdvanceMessageCursor.h>
#include <YBase/FormatMessage.h>
#include <YResource/Localizer.h>

namespace YLog {

MessageBody::~MessageBody() = default;

MessageBody_Impl::MessageBody_Impl() : mpLocalizer(YResource::GetLocalizer()) {}

void MessageBody_Impl::SetMessage(const YBase::Message& message) {
  mMessage = message;
  mTexts.clear();
  mLocalizedMessages.clear();
}

const YBase::Message& MessageBody_Impl::GetMessage() {
  [[maybe_unused]] const MessageMerger merger(mLocalizedMessages, mMessage);
  mLocalizedMessages.clear();
  return mMessage;
}

const char* MessageBody_Impl::GetText(unsigned short language) const {
  auto text = mTexts.find(language);
  // Kept only when it is complete: a text that failed half way is no text.
  if (text == mTexts.end()) text = mTexts.emplace(language, Format(language)).first;
  return text->second.c_str();
}

std::string MessageBody_Impl::Format(unsigned short language) const {
  if (mMessage.GetLocalizedText(language) != nullptr) return YBase::FormatMessage(mMessage, language);
  return YBase::FormatMessage(mMessage, mLocalizedMessages[language], language, *mpLocalizer);
}

MessageBody_Impl::MessageMerger::MessageMerger(const LocalizedMessages& localizedMessages,
                                               YBase::Message& message)
    : mMessage(message) {
  for (const auto& [language, localizedMessage] : localizedMessages) {
    mLocalizedMessages.emplace(language, localizedMessage);
  }
  do {
    MergeTexts();
  } while (YBase::AdvanceMessageCursor(*this));
}

void MessageBody_Impl::MessageMerger::MergeTexts() {
  for (const auto& [language, cursor] : mLocalizedMessages) {
    const char* const text = cursor.GetCurrentMessage().GetLocalizedText(language);
    if (text != nullptr) mMessage.GetCurrentMessage().SetLocalizedText(language, text);
  }
}

bool MessageBody_Impl::MessageMerger::GoToLowerLevelMessage() {
  mMessage.GoToLowerLevelMessage(false);
  for (auto& [language, cursor] : mLocalizedMessages) cursor.GoToLowerLevelMessage(true);
  return true;
}

bool MessageBody_Impl::MessageMerger::GoToSameLevelMessage() {
  mMessage.GoToSameLevelMessage(false);
  for (auto& [language, cursor] : mLocalizedMessages) cursor.GoToSameLevelMessage(true);
  return true;
}

bool MessageBody_Impl::MessageMerger::GoToParent() {
  if (!mMessage.GoToParent()) return false;
  for (auto& [language, cursor] : mLocalizedMessages) cursor.GoToParent();
  return true;
}

YBase::SmartPtrI<MessageBody> CreateMessageBody() {
  return YBase::SmartPtrI<MessageBody>(new MessageBody_Impl);
}

}  // namespace YLog
