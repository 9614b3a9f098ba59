#include "Foundation/YFileSystem/src/UnwrittenPieces.h"

#include <array>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace {

template <std::size_t Capacity>
std::vector<std::string> Describe(const YFileSystem::UnwrittenPieces& pieces) {
  std::array<iovec, Capacity> vectors;
  std::vector<std::string> texts;
  const int count = pieces.Describe(vectors);
  for (int i = 0; i < count; ++i) {
    const iovec& vector = vectors.at(static_cast<std::size_t>(i));
    texts.emplace_back(static_cast<const char*>(vector.iov_base), vector.iov_len);
  }
  return texts;
}

using Texts = std::vector<std::string>;

TEST(UnwrittenPieces, AreAllOfThemAtFirst) {
  const std::vector<std::string_view> texts = {"one", "two"};
  const YFileSystem::UnwrittenPieces pieces(texts);
  EXPECT_EQ(pieces.GetSize(), 6U);
  EXPECT_EQ(Describe<8>(pieces), (Texts{"one", "two"}));
}

TEST(UnwrittenPieces, LeaveEmptyOnesOut) {
  const std::vector<std::string_view> texts = {"", "one", "", "", "two", ""};
  YFileSystem::UnwrittenPieces pieces(texts);
  EXPECT_EQ(Describe<2>(pieces), (Texts{"one", "two"}));
  pieces.Advance(3);
  EXPECT_EQ(Describe<2>(pieces), (Texts{"two"}));
}

TEST(UnwrittenPieces, BeginInsideAPieceOfWhichAPartIsWritten) {
  const std::vector<std::string_view> texts = {"one", "two", "three"};
  YFileSystem::UnwrittenPieces pieces(texts);
  pieces.Advance(4);
  EXPECT_EQ(pieces.GetSize(), 7U);
  EXPECT_EQ(Describe<8>(pieces), (Texts{"wo", "three"}));
  pieces.Advance(1);
  EXPECT_EQ(Describe<8>(pieces), (Texts{"o", "three"}));
}

TEST(UnwrittenPieces, AreNoneAfterTheLastByte) {
  const std::vector<std::string_view> texts = {"one", "two", ""};
  YFileSystem::UnwrittenPieces pieces(texts);
  pieces.Advance(6);
  EXPECT_EQ(pieces.GetSize(), 0U);
  EXPECT_EQ(Describe<8>(pieces), Texts{});
}

TEST(UnwrittenPieces, FillNoMoreVectorsThanThereAre) {
  const std::vector<std::string_view> texts = {"1", "2", "3"};
  EXPECT_EQ(Describe<2>(YFileSystem::UnwrittenPieces(texts)), (Texts{"1", "2"}));
}

RC_GTEST_PROP(UnwrittenPieces, GiveTheWholeTextHoweverItIsCut, (const Texts& texts)) {
  std::string whole;
  std::vector<std::string_view> views;
  for (const std::string& text : texts) {
    whole += text;
    views.emplace_back(text);
  }
  YFileSystem::UnwrittenPieces pieces(views);
  std::string written;
  while (pieces.GetSize() != 0) {
    std::string next;
    for (const std::string& text : Describe<3>(pieces)) next += text;
    const auto count = *rc::gen::inRange<std::size_t>(1, next.size() + 1);
    written += next.substr(0, count);
    pieces.Advance(count);
  }
  RC_ASSERT(written == whole);
}

}  // namespace
