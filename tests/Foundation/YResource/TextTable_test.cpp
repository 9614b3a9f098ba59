#include "Foundation/YResource/src/TextTable.h"

#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace {

using testing::IsNull;
using testing::Pointee;
using YResource::TextTable;

TEST(TextTable, FindsATextByItsIdAndJustItsLanguage) {
  TextTable table(8);
  table.Set(1, 0x0407, "eins");
  table.Set(1, 0, "one");
  EXPECT_THAT(table.Find(1, 0x0407), Pointee(std::string("eins")));
  EXPECT_THAT(table.Find(1, 0), Pointee(std::string("one")));
  EXPECT_THAT(table.Find(1, 0x0007), IsNull());
  EXPECT_THAT(table.Find(2, 0), IsNull());
}

TEST(TextTable, TakesANewTextForAnOldOne) {
  TextTable table(1);
  table.Set(1, 0, "old");
  const std::string* const old = table.Find(1, 0);
  table.Set(1, 0, "new");
  EXPECT_THAT(table.Find(1, 0), Pointee(std::string("new")));
  EXPECT_THAT(old, Pointee(std::string("old"))) << "a reader may still look at it";
  table.Set(1, 0, "");
  EXPECT_THAT(table.Find(1, 0), IsNull());
}

TEST(TextTable, KeepsATextThatIsSetToItself) {
  TextTable table(4);
  table.Set(1, 0, "same");
  const std::string* const text = table.Find(1, 0);
  table.Set(1, 0, "same");
  EXPECT_EQ(table.Find(1, 0), text);
}

TEST(TextTable, HoldsMoreThanWasExpected) {
  for (const std::size_t expected : {0u, 1u, 3u, 64u}) {
    TextTable table(expected);
    for (unsigned id = 0; id < 500; ++id)
      table.Set(id, static_cast<unsigned short>(id % 3), std::to_string(id + 1));
    for (unsigned id = 0; id < 500; ++id) {
      ASSERT_THAT(table.Find(id, static_cast<unsigned short>(id % 3)), Pointee(std::to_string(id + 1)));
    }
  }
}

TEST(TextTable, IsReadWhileItIsFilled) {
  constexpr unsigned TEXTS = 2000;
  TextTable table(16);
  std::atomic<unsigned> filled{0};
  std::vector<std::thread> readers;
  std::atomic<unsigned> missing{0};
  for (int i = 0; i < 3; ++i) {
    readers.emplace_back([&] {
      for (unsigned seen = 0; seen < TEXTS; seen = filled.load()) {
        if (seen != 0 && table.Find(seen, 0) == nullptr) ++missing;
      }
    });
  }
  for (unsigned id = 1; id <= TEXTS; ++id) {
    table.Set(id, 0, "text");
    filled = id;
  }
  for (std::thread& reader : readers) reader.join();
  EXPECT_EQ(missing, 0u);
}

}  // namespace
