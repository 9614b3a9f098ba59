#include <YBase/AdvanceMessageCursor.h>
#include <YBase/ConstMessageCursor.h>
#include <YBase/MessageCursor.h>

#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using testing::ElementsAre;
using YBase::ConstMessageCursor;
using YBase::Message;
using YBase::MessageCursor;

static_assert(std::is_same_v<decltype(std::declval<MessageCursor>().GetCurrentMessage()), Message&>);
static_assert(
    std::is_same_v<decltype(std::declval<ConstMessageCursor>().GetCurrentMessage()), const Message&>);

Message MakeNode(const char* text, std::vector<Message> lower) {
  Message node(text);
  for (Message& message : lower) node.AddLowerLevelMessage(std::move(message));
  return node;
}

Message MakeTree() {
  return MakeNode(
      "top", {MakeNode("a", {Message("a1"), Message("a2")}), Message("b"), MakeNode("c", {Message("c1")})});
}

template <class Cursor>
std::string Text(const Cursor& cursor) {
  const char* text = cursor.GetCurrentMessage().GetLocalizedText(0);
  return text != nullptr ? text : "none";
}

/// Visits the whole tree and returns the level and text of each message.
template <class Cursor, class Root>
std::vector<std::string> Walk(Root& root) {
  Cursor cursor(root);
  std::vector<std::string> texts;
  do {
    texts.push_back(std::to_string(cursor.GetLevel()) + Text(cursor));
  } while (YBase::AdvanceMessageCursor(cursor));
  EXPECT_EQ(&cursor.GetCurrentMessage(), &root) << "at the end it is at the root again";
  return texts;
}

TEST(MessageCursor, VisitsEveryMessageOnceAndParentsBeforeChildren) {
  Message tree = MakeTree();
  EXPECT_THAT(Walk<MessageCursor>(tree), ElementsAre("0top", "1a", "2a1", "2a2", "1b", "1c", "2c1"));
  const Message& constTree = tree;
  EXPECT_THAT(Walk<ConstMessageCursor>(constTree),
              ElementsAre("0top", "1a", "2a1", "2a2", "1b", "1c", "2c1"));
}

TEST(MessageCursor, EndsAtOnceIfTheMessageHasNoChildren) {
  Message leaf("leaf");
  EXPECT_THAT(Walk<MessageCursor>(leaf), ElementsAre("0leaf"));
}

TEST(MessageCursor, DoesNotMoveInATreeOfOneMessage) {
  Message leaf("leaf");
  MessageCursor cursor(leaf);
  EXPECT_FALSE(cursor.LowerLevelMessageIsUnvisited());
  EXPECT_FALSE(cursor.GoToLowerLevelMessage(false));
  EXPECT_FALSE(cursor.GoToSameLevelMessage(false));
  EXPECT_FALSE(cursor.GoToParent());
  EXPECT_EQ(&cursor.GetCurrentMessage(), &leaf);
  EXPECT_EQ(leaf.GetMessage(), L"leaf") << "nothing was added";
}

TEST(MessageCursor, ContinuesALevelAfterReturningToTheParent) {
  Message tree = MakeTree();
  MessageCursor cursor(tree);
  ASSERT_TRUE(cursor.GoToLowerLevelMessage());
  EXPECT_EQ(Text(cursor), "a");
  ASSERT_TRUE(cursor.GoToParent());
  EXPECT_TRUE(cursor.LowerLevelMessageIsUnvisited());
  ASSERT_TRUE(cursor.GoToSameLevelMessage());
  EXPECT_EQ(Text(cursor), "b");
  EXPECT_FALSE(cursor.LowerLevelMessageIsUnvisited());
}

TEST(MessageCursor, AddsMissingMessagesOnRequest) {
  Message tree("top");
  MessageCursor cursor(tree);
  ASSERT_TRUE(cursor.GoToLowerLevelMessage(true));
  cursor.GetCurrentMessage().SetLocalizedText(0, "first");
  ASSERT_TRUE(cursor.GoToParent());
  EXPECT_FALSE(cursor.LowerLevelMessageIsUnvisited()) << "what was added has been visited";
  ASSERT_TRUE(cursor.GoToSameLevelMessage(true));
  cursor.GetCurrentMessage().SetLocalizedText(0, "second");
  EXPECT_EQ(tree.GetMessage(), L"top\n  first\n  second");
}

TEST(ConstMessageCursor, ShowsEmptyMessagesBeyondTheTree) {
  const Message tree("top");
  ConstMessageCursor cursor(tree);
  for (int level = 1; level <= 3; ++level) {
    ASSERT_TRUE(cursor.GoToLowerLevelMessage(true));
    EXPECT_EQ(cursor.GetCurrentMessage().GetLocalizedText(0), nullptr);
    EXPECT_FALSE(cursor.LowerLevelMessageIsUnvisited());
  }
  ASSERT_TRUE(cursor.GoToParent());
  ASSERT_TRUE(cursor.GoToSameLevelMessage(true));
  EXPECT_EQ(cursor.GetLevel(), 3u);
  while (cursor.GoToParent()) {
  }
  EXPECT_EQ(&cursor.GetCurrentMessage(), &tree);
  EXPECT_EQ(tree.GetMessage(), L"top");
}

TEST(MessageCursor, MovesIndependentlyOfItsCopy) {
  Message tree = MakeTree();
  MessageCursor cursor(tree);
  ASSERT_TRUE(cursor.GoToLowerLevelMessage());
  MessageCursor copy(cursor);
  ASSERT_TRUE(copy.GoToLowerLevelMessage());
  EXPECT_EQ(Text(cursor), "a");
  EXPECT_EQ(Text(copy), "a1");
  ASSERT_TRUE(cursor.GoToLowerLevelMessage());
  EXPECT_EQ(Text(cursor), "a1") << "the move of the copy does not affect this one";
}

/// Returns the given answers in turn, and records the calls.
struct ScriptedCursor {
  std::vector<bool> answers;
  bool hasParent;
  std::string calls;

  bool LowerLevelMessageIsUnvisited() {
    calls += '?';
    const bool answer = answers.front();
    answers.erase(answers.begin());
    return answer;
  }
  bool GoToLowerLevelMessage() { return Note('L'); }
  bool GoToSameLevelMessage() { return Note('S'); }
  bool GoToParent() { return Note('P') && hasParent; }
  bool Note(char call) {
    calls += call;
    return true;
  }
};

TEST(AdvanceMessageCursor, DescendsIfItCan) {
  ScriptedCursor cursor{{true}, true, ""};
  EXPECT_TRUE(YBase::AdvanceMessageCursor(cursor));
  EXPECT_EQ(cursor.calls, "?L");
}

TEST(AdvanceMessageCursor, ChecksTheSameLevelBeforeTheParent) {
  ScriptedCursor cursor{{false, true}, true, ""};
  EXPECT_TRUE(YBase::AdvanceMessageCursor(cursor));
  EXPECT_EQ(cursor.calls, "??S");
}

TEST(AdvanceMessageCursor, AscendsUntilALevelHasMoreMessages) {
  ScriptedCursor cursor{{false, false, false, true}, true, ""};
  EXPECT_TRUE(YBase::AdvanceMessageCursor(cursor));
  EXPECT_EQ(cursor.calls, "??P?P?S");
}

TEST(AdvanceMessageCursor, EndsIfThereIsNoParent) {
  ScriptedCursor cursor{{false, false}, false, ""};
  EXPECT_FALSE(YBase::AdvanceMessageCursor(cursor));
  EXPECT_EQ(cursor.calls, "??P");
}

}  // namespace
