#pragma once

#include <functional>
#include <string>

#include <gtest/gtest.h>

#include <YBase/ExceptionImpl.h>
#include <YBase/Message.h>

/// The text of the exception that `work` throws.
inline std::string ThrownText(const std::function<void()>& work) {
  try {
    work();
  } catch (const YBase::ExceptionImpl<YBase::Message>& failure) {
    return failure.what();
  }
  ADD_FAILURE() << "nothing was thrown";
  return {};
}
