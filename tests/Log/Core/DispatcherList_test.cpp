#include "Core/DispatcherList.h"

#include <string>

#include <YBase/ExceptionImpl.h>
#include <YBase/Message.h>

namespace {

using YLog::CreateDispatcher;
using YLog::DispatcherList;

TEST(DispatcherList, ConvertsPlacesToCookiesAndBack) {
  EXPECT_EQ(0xDAFF, DispatcherList::ToCookie(0));
  EXPECT_EQ(0xDAFE, DispatcherList::ToCookie(1));
  for (std::size_t index = 0; index < DispatcherList::MAX_COUNT; ++index) {
    ASSERT_EQ(index, DispatcherList::ToIndex(DispatcherList::ToCookie(index)));
  }
}

TEST(DispatcherList, FindsTheFirstDispatcherOfAName) {
  DispatcherList list;
  EXPECT_EQ(0U, list.FindName("Error"));
  list.Add(CreateDispatcher("Info"));
  list.Add(CreateDispatcher("Error"));
  list.Add(CreateDispatcher("Error"));
  EXPECT_EQ(1U, list.FindName("Error"));
  EXPECT_EQ(3U, list.FindName("error"));
}

TEST(DispatcherList, ReplacesADispatcherInItsPlace) {
  DispatcherList list;
  const auto previous = CreateDispatcher("Error");
  const auto replacement = CreateDispatcher("Error");
  list.Add(previous);
  EXPECT_EQ(previous, list.Replace(0, replacement));
  EXPECT_EQ(replacement, list.Get(0));
  EXPECT_TRUE(list.Contains(*replacement));
  EXPECT_FALSE(list.Contains(*previous));
}

TEST(DispatcherList, TreatsADispatcherAsConfiguredUntilSetOtherwise) {
  DispatcherList list;
  EXPECT_FALSE(list.IsConfigured(0));
  list.Add(CreateDispatcher("Error"));
  list.Add(CreateDispatcher("Info"));
  list.SetConfigured(1, false);
  EXPECT_TRUE(list.IsConfigured(0));
  EXPECT_FALSE(list.IsConfigured(1));
  list.SetConfigured(1, true);
  EXPECT_TRUE(list.IsConfigured(1));
  EXPECT_FALSE(list.IsConfigured(2));
}

TEST(DispatcherList, RefusesMoreDispatchersThanThereAreCookies) {
  DispatcherList list;
  const auto dispatcher = CreateDispatcher("Error");
  while (list.GetCount() < DispatcherList::MAX_COUNT) list.Add(dispatcher);
  try {
    list.Add(dispatcher);
    FAIL() << "the list accepted one dispatcher too many";
  } catch (const YBase::ExceptionImpl<YBase::Message>& failure) {
    EXPECT_TRUE(std::string(failure.what()).starts_with("YLog::DispatcherList::Add: ")) << failure.what();
  }
  EXPECT_EQ(DispatcherList::MAX_COUNT, list.GetCount());
}

}  // namespace
