#include <YResource/MessageFormat.h>
#include <YResource/MessageFormatter.h>

#include <new>
#include <string>

#include "support/AllocationCounter.h"

namespace {

using Support::AllocationFailure;
using Support::GetAllocationCount;
using YResource::FormattedText;
using YResource::MessageFormatter;
namespace MessageFormat = YResource::MessageFormat;

std::string Format(const char* messageTemplate, MessageFormatter& formatter) {
  return formatter.Format(YResource::GetMessageTemplate(messageTemplate));
}

TEST(MessageFormatter, DoesNotAllocateForOrdinaryLengths) {
  int object = 0;
  FormattedText text;
  const unsigned long before = GetAllocationCount();
  MessageFormatter formatter;
  formatter << "order" << 4711 << L"gr\u00FC\u00DFe" << 0.1L << MessageFormat::WideHex << 255 << &object
            << true << 'c';
  formatter.Format("%1 %2 %3 %4 %5 %6 %7 %8 of %1", text);
  EXPECT_EQ(GetAllocationCount(), before);
  EXPECT_EQ(text.View().substr(0, 33),
            "order 4711 gr\xC3\xBC\xC3\x9F"
            "e 0.1 0x000000FF");
}

TEST(MessageFormatter, KeepsEarlierArgumentsWhenMemoryRunsOut) {
  const std::string longText(1000, 'x');
  MessageFormatter formatter;
  formatter << "one";
  {
    const AllocationFailure failure(0);
    EXPECT_THROW(formatter << longText, std::bad_alloc);
  }
  formatter << "two";
  EXPECT_EQ(Format("%1 %2 %3", formatter), "one two %3");
}

TEST(MessageFormatter, KeepsItsArgumentsWhenMemoryRunsOutWhileFormatting) {
  const std::string longText(2000, 'x');
  MessageFormatter formatter;
  formatter << longText;
  FormattedText text;
  {
    const AllocationFailure failure(0);
    EXPECT_THROW(formatter.Format("%1", text), std::bad_alloc);
  }
  EXPECT_EQ(Format("%1", formatter), longText);
}

}  // namespace
