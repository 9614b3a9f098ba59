#pragma once

#include <exception>
#include <string>
#include <utility>

#include <YBase/Export.h>
#include <YBase/TextConversion.h>

namespace YBase {

/// A message that can be thrown. It may be caught as `T`, which is `Message` or derived from it, or as
/// `std::exception`.
///
/// `what()` returns the text of the message at the time of its construction, in UTF-8.
template <class T>
class YBASE_EXPORT ExceptionImpl : public T, public std::exception {
 public:
  template <class... Arguments>
  explicit ExceptionImpl(Arguments&&... arguments)
      : T(std::forward<Arguments>(arguments)...), mWhat(WideCharToUTF8(T::GetMessage().c_str())) {}

  const char* what() const noexcept override { return mWhat.c_str(); }

 private:
  std::string mWhat;
};

}  // namespace YBase
