#pragma once

#include <string>

namespace YBase {

/// A text returned by value: the caller owns it. UTF-8 unless an operation says otherwise.
using ReturnString = std::string;

/// The same in wide characters, each a Unicode code point.
using ReturnWString = std::wstring;

}  // namespace YBase
