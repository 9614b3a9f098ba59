#pragma once

#include <YBase/ReturnString.h>
#include <YLog/Export.h>

namespace YLog {

// Masks passwords and similar values in a text before it is logged.
//
// These functions search for double quotes and do not parse XML or JSON. They mask a broken text as far as
// its quotes allow. A value that is cut off has no closing quote and stays readable: mask first, then
// shorten. The time is proportional to the length of the text, however many values it contains.
//
// Threads: any, even for the first use. They work without an `Initializer`.
//
// Failure: `std::bad_alloc`. A null text or name is refused in debug builds; in others the result is the
// empty text, so that nothing is left unmasked.

/// The name of the field that contains the password in an HTTP request.
YLOG_EXPORT extern const char* const REST_TAG_PASSWORD;

/// Returns the text with the value of every attribute `tagName="value"` replaced, even an empty value. A null
/// replacement is the empty text.
///
/// An attribute is recognised only if a blank precedes its name, and if the name is exactly `tagName`, in the
/// same case. So an attribute at the very beginning of the text is left alone, and so is one whose name
/// merely ends in `tagName`. A value ends at the next double quote, whatever precedes it. A last value
/// without a closing quote is left as it is.
///
/// \pre `text` and `tagName` are not null.
YLOG_EXPORT YBase::ReturnString ReplaceSensitiveMessage(const char* text, const char* tagName,
                                                        const char* replacement);
/// The same for wide characters, which are converted by `YBase::WideCharToUTF8`. The result is UTF-8.
YLOG_EXPORT YBase::ReturnString ReplaceSensitiveMessage(const wchar_t* text, const char* tagName,
                                                        const char* replacement);

/// Returns the text, the body of an HTTP request, with "***" for the value of every JSON member
/// `"password":"value"`.
///
/// The value is the text between two double quotes: the first two after the first colon after the quoted
/// name. A double quote immediately after a backslash does not end it. So a value that ends in an escaped
/// backslash is taken to continue to the next double quote, and if the value is not a string (a number,
/// `null`, an object), the next string of the text is masked instead. A value without a closing quote is left
/// as it is.
///
/// \pre `text` is not null.
YLOG_EXPORT YBase::ReturnString ReplaceSensitiveMessageInHTTP(const char* text);

/// Appends `REST_TAG_PASSWORD` to the names that `ReplaceSensitiveMessageInHTTP` masks, even if it is already
/// among them: each appended name costs one more pass over every text. There is no need to call this, because
/// the first masking does so if the list is empty.
YLOG_EXPORT void InitHTTPSensitiveTagVector();

}  // namespace YLog
