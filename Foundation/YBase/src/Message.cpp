#include <YBase/AdvanceMessageCursor.h>
#include <YBase/ConstMessageCursor.h>
#include <YBase/Message.h>
#include <YBase/NullText.h>
#include <YBase/TextConversion.h>

#include <utility>
#include <vector>

#include "MessageLine.h"

namespace YBase {

// Trees are not walked recursively: even a deep one must not exhaust the stack of a thread.

Message::Message(const char* utf8Text) {
  SetLocalizedText(0, utf8Text);
}

// A delegating constructor: if memory runs out half way, the destructor disposes of what was copied.
Message::Message(const Message& other) : Message() {
  std::vector<std::pair<const Message*, Message*>> pending{{&other, this}};
  while (!pending.empty()) {
    const auto [source, copy] = pending.back();
    pending.pop_back();
    copy->mDomain = source->mDomain;
    copy->mID = source->mID;
    copy->mTexts = source->mTexts;
    for (const Message& lower : source->mLowerLevelMessages) {
      pending.emplace_back(&lower, &copy->mLowerLevelMessages.emplace_back());
    }
  }
}

Message& Message::operator=(const Message& other) {
  *this = Message(other);
  return *this;
}

Message::~Message() {
  while (!mLowerLevelMessages.empty()) {
    auto& lower = mLowerLevelMessages.front().mLowerLevelMessages;
    mLowerLevelMessages.splice(mLowerLevelMessages.end(), lower);
    mLowerLevelMessages.pop_front();
  }
}

void Message::SetDomainAndID(unsigned domain, unsigned id) noexcept {
  mDomain = domain;
  mID = id;
}

void Message::SetLocalizedText(unsigned short language, const char* utf8Text) {
  mTexts.insert_or_assign(language, std::string(EmptyIfNull(utf8Text)));
}

const char* Message::GetLocalizedText(unsigned short language) const noexcept {
  const auto text = mTexts.find(language);
  return text != mTexts.end() ? text->second.c_str() : nullptr;
}

void Message::AddLowerLevelMessage(Message message) {
  mLowerLevelMessages.push_back(std::move(message));
}

ReturnWString Message::GetMessage() const {
  std::string text;
  ConstMessageCursor cursor(*this);
  do {
    AppendMessageLine(text, cursor.GetCurrentMessage().GetOwnText(), cursor.GetLevel());
  } while (AdvanceMessageCursor(cursor));
  return UTF8ToWideChar(text.c_str());
}

const char* Message::GetTextOfLowestLanguage() const noexcept {
  return !mTexts.empty() ? mTexts.begin()->second.c_str() : nullptr;
}

std::string Message::GetOwnText() const {
  // The neutral language is the lowest.
  if (const char* text = GetTextOfLowestLanguage()) return text;
  if (mDomain == MESSAGE_DOMAIN_UNKNOWN && mID == 0) return {};
  return FormatDomainAndID(*this);
}

}  // namespace YBase
