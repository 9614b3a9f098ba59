#pragma once

#include <list>
#include <map>
#include <string>

#include <YBase/Export.h>
#include <YBase/ReturnString.h>

namespace YBase {

/// The domain of a message that belongs to no catalogue.
inline constexpr unsigned MESSAGE_DOMAIN_UNKNOWN = 0;

/// A structured message: a text per language, the number under which catalogues know it, and the messages
/// beneath it that say why.
///
/// Languages are the 16-bit identifiers of the resource library; 0 is the neutral one. Texts are UTF-8.
///
/// Ownership: a value; a copy shares nothing with its source. A tree may be as deep as memory allows.
///
/// Threads: like any value: several may read, one may change when nobody reads.
///
/// Failure: memory that runs out throws `std::bad_alloc` and leaves the message as it was.
class YBASE_EXPORT Message {
 public:
  Message() = default;
  /// A message with one neutral text. Null is the empty text.
  explicit Message(const char* utf8Text);
  Message(const Message& other);
  Message(Message&&) noexcept = default;
  Message& operator=(const Message& other);
  Message& operator=(Message&&) noexcept = default;
  ~Message();

  void SetDomainAndID(unsigned domain, unsigned id) noexcept;
  unsigned GetDomain() const noexcept { return mDomain; }
  unsigned GetID() const noexcept { return mID; }

  /// Null is the empty text.
  void SetLocalizedText(unsigned short language, const char* utf8Text);
  /// The text in just this language, or null. Valid until the text of that language is set again.
  const char* GetLocalizedText(unsigned short language) const noexcept;
  /// The text that is there whatever the language: the neutral one, else that of the lowest; null without
  /// any.
  const char* GetTextOfLowestLanguage() const noexcept;

  /// Adds `message` as the last of those beneath this one.
  void AddLowerLevelMessage(Message message);

  /// The neutral text of the whole tree: a line for each message, indented by two blanks a level for 32
  /// levels; of a text with line breaks each line is. A message without a neutral text shows that of its
  /// lowest language, one without any text its domain and ID ("12/345") if they are set. What has nothing to
  /// show has no line.
  ReturnWString GetMessage() const;

 private:
  template <class MessageType>
  friend class BasicMessageCursor;

  std::string GetOwnText() const;

  unsigned mDomain = MESSAGE_DOMAIN_UNKNOWN;
  unsigned mID = 0;
  std::map<unsigned short, std::string> mTexts;
  std::list<Message> mLowerLevelMessages;
};

}  // namespace YBase
