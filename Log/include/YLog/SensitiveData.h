#pragma once

#include <YBase/ReturnString.h>
#include <YLog/Export.h>

namespace YLog {

// Takes passwords and the like out of a text before it is logged.
//
// These functions know quotes, not grammars: no XML or JSON is parsed, and a broken text is masked as far as
// its quotes go. A value that is cut off has no closing quote and stays readable, so mask first and shorten
// after. Time is proportional to the length of the text, however many values it holds.
//
// Threads: any, the first use included. They work without an `Initializer`.
//
// Failure: `std::bad_alloc`. A null text or name is refused in debug builds; in others the result is the
// empty text, so that nothing unmasked gets out.

/// The name of the field in which HTTP requests carry a password.
YLOG_EXPORT extern const char* const REST_TAG_PASSWORD;

/// Gives the text back with the value of every attribute `tagName="value"` replaced, the empty value too. A
/// null replacement is the empty text.
///
/// An attribute counts only where a blank stands before its name, and where its name and case are exactly
/// the same: one at the very start of the text is left alone, and so is one whose name merely ends in
/// `tagName`. A value ends at the next double quote, whatever stands before that; a last one that is not
/// ended is left as it is.
///
/// \pre `text` and `tagName` are not null.
YLOG_EXPORT YBase::ReturnString ReplaceSensitiveMessage(const char* text, const char* tagName,
                                                        const char* replacement);
/// The same for wide characters, which are converted by `YBase::WideCharToUTF8`. The result is UTF-8.
YLOG_EXPORT YBase::ReturnString ReplaceSensitiveMessage(const wchar_t* text, const char* tagName,
                                                        const char* replacement);

/// Gives the text, the body of an HTTP request, back with "***" for the value of every JSON member
/// `"password":"value"`.
///
/// The value is what stands between the next two double quotes behind the next colon behind the quoted name;
/// a double quote just behind a backslash does not end it. So a value that ends in an escaped backslash is
/// taken to run on to the next double quote, and where the value is no string (a number, `null`, an object)
/// the next string of the text is masked in its place. A value that is not ended is left as it is.
///
/// \pre `text` is not null.
YLOG_EXPORT YBase::ReturnString ReplaceSensitiveMessageInHTTP(const char* text);

/// Appends `REST_TAG_PASSWORD` to the names that `ReplaceSensitiveMessageInHTTP` masks, even when it is among
/// them: each appended name costs one more pass over every text. Nobody needs to call this, as the first
/// masking does when the list is empty.
YLOG_EXPORT void InitHTTPSensitiveTagVector();

}  // namespace YLog
