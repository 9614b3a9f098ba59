#include <YResource/MessageTemplate.h>

#include <string>

namespace {

TEST(MessageTemplate, CopiesItsText) {
  std::string text = "Order %1";
  const YResource::MessageTemplate messageTemplate = YResource::GetMessageTemplate(text.c_str());
  text = "changed!";
  EXPECT_EQ(messageTemplate.GetText(), "Order %1");
}

TEST(MessageTemplate, TreatsNullAsAnEmptyText) {
  EXPECT_EQ(YResource::GetMessageTemplate(nullptr).GetText(), "");
  EXPECT_EQ(YResource::MessageTemplate().GetText(), "");
}

}  // namespace
