#include <YBase/AdvanceMessageCursor.h>
#include <YBase/ConstMessageCursor.h>
#include <YBase/FormatMessage.h>
#include <YBase/MessageCursor.h>

#include <string>

#include "MessageLine.h"

namespace YBase {

namespace {

/// What is shown of a message that has no suitable text. The cursor has just reached that message.
std::string DescribeWithoutText(const ConstMessageCursor& cursor) {
  const Message& message = cursor.GetCurrentMessage();
  const bool hasNumber = message.GetDomain() != MESSAGE_DOMAIN_UNKNOWN || message.GetID() != 0;
  if (!hasNumber) {
    if (const char* text = message.GetTextOfLowestLanguage()) return text;
    const bool onlyHoldsOthers = cursor.LowerLevelMessageIsUnvisited();
    if (onlyHoldsOthers) return {};
  }
  return FormatDomainAndID(message);
}

std::string GetLine(const ConstMessageCursor& cursor, unsigned short language) {
  const Message& message = cursor.GetCurrentMessage();
  if (const char* text = message.GetLocalizedText(language)) return text;
  if (const char* text = message.GetLocalizedText(0)) return text;
  return DescribeWithoutText(cursor);
}

/// Walks a message in step with the one that receives the localizer's texts.
class LocalizedWalk {
 public:
  LocalizedWalk(const Message& message, Message& localizedMessage, unsigned short language,
                const Localizer& localizer)
      : mMessage(message), mLocalizedMessage(localizedMessage), mLanguage(language), mLocalizer(localizer) {}

  bool LowerLevelMessageIsUnvisited() const noexcept { return mMessage.LowerLevelMessageIsUnvisited(); }
  bool GoToLowerLevelMessage() {
    return mMessage.GoToLowerLevelMessage() && mLocalizedMessage.GoToLowerLevelMessage(true);
  }
  bool GoToSameLevelMessage() {
    return mMessage.GoToSameLevelMessage() && mLocalizedMessage.GoToSameLevelMessage(true);
  }
  bool GoToParent() noexcept { return mMessage.GoToParent() && mLocalizedMessage.GoToParent(); }

  std::size_t GetLevel() const noexcept { return mMessage.GetLevel(); }
  std::string GetLine();

 private:
  bool FindLine(unsigned short language, std::string& line);

  ConstMessageCursor mMessage;
  MessageCursor mLocalizedMessage;
  const unsigned short mLanguage;
  const Localizer& mLocalizer;
};

std::string LocalizedWalk::GetLine() {
  // Languages have few ancestors. The bound is for a localizer in which two languages are each other's
  // parent.
  constexpr int MAXIMUM_ANCESTORS = 8;
  std::string line;
  unsigned short language = mLanguage;
  for (int i = 0; i < MAXIMUM_ANCESTORS && language != 0; ++i) {
    if (FindLine(language, line)) return line;
    language = mLocalizer.GetParentLanguage(language);
  }
  return FindLine(0, line) ? line : DescribeWithoutText(mMessage);
}

bool LocalizedWalk::FindLine(unsigned short language, std::string& line) {
  const Message& message = mMessage.GetCurrentMessage();
  if (const char* text = message.GetLocalizedText(language)) {
    line = text;
    return true;
  }
  line = mLocalizer.GetText(message.GetDomain(), message.GetID(), language);
  if (line.empty()) return false;
  mLocalizedMessage.GetCurrentMessage().SetLocalizedText(mLanguage, line.c_str());
  return true;
}

}  // namespace

ReturnString FormatMessage(const Message& message, unsigned short language) {
  std::string text;
  ConstMessageCursor cursor(message);
  do {
    AppendMessageLine(text, GetLine(cursor, language), cursor.GetLevel());
  } while (AdvanceMessageCursor(cursor));
  return text;
}

ReturnString FormatMessage(const Message& message, Message& localizedMessage, unsigned short language,
                           const Localizer& localizer) {
  std::string text;
  LocalizedWalk walk(message, localizedMessage, language, localizer);
  do {
    AppendMessageLine(text, walk.GetLine(), walk.GetLevel());
  } while (AdvanceMessageCursor(walk));
  return text;
}

}  // namespace YBase
