#pragma once

#include <list>
#include <map>
#include <string>

#include <YBase/Export.h>
#include <YBase/ReturnString.h>

namespace YBase {

/// The domain of a message that belongs to no catalogue.
inline constexpr unsigned MESSAGE_DOMAIN_UNKNOWN = 0;

/// A structured message: a text for each language, the number by which catalogues identify it, and the
/// lower-level messages that explain it.
///
/// Languages are the 16-bit identifiers of the resource library; 0 is the neutral one. Texts are UTF-8.
///
/// Ownership: a value; a copy shares nothing with its source. A tree may be as deep as memory allows.
///
/// Threads: like any value: several threads may read it, or one may change it while no other reads it.
///
/// Failure: if memory runs out, `std::bad_alloc` is thrown and the message stays as it was.
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
  /// The text in exactly this language, or null. Valid until the text of that language is set again.
  const char* GetLocalizedText(unsigned short language) const noexcept;
  /// The neutral text if there is one, otherwise the text of the lowest language; null if there is no text.
  const char* GetTextOfLowestLanguage() const noexcept;

  /// Adds `message` as the last one directly below this one.
  void AddLowerLevelMessage(Message message);

  /// The neutral text of the whole tree: a line for each message, indented by two blanks a level for 32
  /// levels. If a text has several lines, each of them is indented. A message without a neutral text shows
  /// that of its lowest language; one without any text shows its domain and ID ("12/345") if they are set. A
  /// message with nothing to show has no line.
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
