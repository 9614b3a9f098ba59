#pragma once

#include <YBase/Export.h>
#include <YBase/Localizer.h>
#include <YBase/Message.h>
#include <YBase/ReturnString.h>

namespace YBase {

/// The text of a whole tree in one language, in UTF-8: a line for each message, indented by two blanks a
/// level for 32 levels. If a text has several lines, each of them is indented.
///
/// A message without a text in that language shows its neutral text. Without that, it shows its domain and ID
/// ("12/345"); if it has neither, the text of its lowest language, or "0/0" if it has no text at all. A
/// message that has only lower-level messages, neither texts nor an ID, has no line; nor has an empty text.
YBASE_EXPORT ReturnString FormatMessage(const Message& message, unsigned short language);

/// The same with the texts of a localizer. It is asked for each text that is missing: first in the language,
/// then in the more general languages that it names, and then in the neutral one. In each language, a text of
/// the message itself takes precedence.
///
/// The texts that the localizer returns are stored in `localizedMessage`, as the text of `language` of the
/// message in the same place. Messages that `localizedMessage` lacks for this are added to it.
///
/// Failure: `std::bad_alloc`, and what the localizer throws; `localizedMessage` then has some of the texts.
YBASE_EXPORT ReturnString FormatMessage(const Message& message, Message& localizedMessage,
                                        unsigned short language, const Localizer& localizer);

}  // namespace YBase
