#pragma once

#include <YBase/Export.h>
#include <YBase/Localizer.h>
#include <YBase/Message.h>
#include <YBase/ReturnString.h>

namespace YBase {

/// The text of a whole tree in one language, UTF-8: a line for each message, indented by two blanks a level
/// for 32 levels. Of a text with line breaks each line is indented.
///
/// A message without a text in that language shows its neutral one. One without that shows its domain and ID
/// ("12/345"); if it has neither, the text of its lowest language, and "0/0" where there is none at all. A
/// message with neither texts nor ID that only holds others together has no line, and no more has an empty
/// text.
YBASE_EXPORT ReturnString FormatMessage(const Message& message, unsigned short language);

/// The same with the help of a localizer: it is asked for each text that is missing, in the language, and
/// then in those that it names as the more general ones, before the neutral text is taken. In each of them a
/// text of the message's own goes before one of the localizer's.
///
/// What the localizer gave is left in `localizedMessage`, as the text of `language` of the message in the
/// same place: messages that it lacks for this are added to it.
///
/// Failure: `std::bad_alloc`, and what the localizer throws; `localizedMessage` then has some of the texts.
YBASE_EXPORT ReturnString FormatMessage(const Message& message, Message& localizedMessage,
                                        unsigned short language, const Localizer& localizer);

}  // namespace YBase
