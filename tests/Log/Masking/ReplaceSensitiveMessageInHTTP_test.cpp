#include <latch>
#include <string>
#include <thread>
#include <vector>

#include <rapidcheck/gtest.h>

#include <YLog/SensitiveData.h>

#include "MaskingReference.h"
#include "RandomText.h"

namespace {

using Support::MaskHTTPSlowly;
using Support::RandomText;
using YLog::ReplaceSensitiveMessageInHTTP;

const std::vector<std::string> PIECES = {"\"password\"", "password", ":", "\"", "\\", "\\\"", " ",
                                         "null",         "{",        "}", ",",  "x",  "\n"};

TEST(ReplaceSensitiveMessageInHTTP, MasksThePasswordField) {
  EXPECT_STREQ(YLog::REST_TAG_PASSWORD, "password");
  EXPECT_EQ(ReplaceSensitiveMessageInHTTP(R"({"user":"ann","password":"s3cret","host":"h"})"),
            R"({"user":"ann","password":"***","host":"h"})");
}

TEST(ReplaceSensitiveMessageInHTTP, MasksAValueWithEscapedQuotesWhollyAndNothingAfterIt) {
  EXPECT_EQ(ReplaceSensitiveMessageInHTTP(R"({"password":"a\"b\"","next":"a\"b"})"),
            R"({"password":"***","next":"a\"b"})");
}

TEST(ReplaceSensitiveMessageInHTTP, AllowsBlanksAroundTheColon) {
  EXPECT_EQ(ReplaceSensitiveMessageInHTTP("{\"password\" \n:\t \"s3cret\"}"), "{\"password\" \n:\t \"***\"}");
}

TEST(ReplaceSensitiveMessageInHTTP, MasksAnEmptyValue) {
  EXPECT_EQ(ReplaceSensitiveMessageInHTTP(R"({"password":""})"), R"({"password":"***"})");
}

TEST(ReplaceSensitiveMessageInHTTP, MasksEveryOccurrence) {
  EXPECT_EQ(ReplaceSensitiveMessageInHTTP(R"([{"password":"1"},{"password":"22"},{"password":"333"}])"),
            R"([{"password":"***"},{"password":"***"},{"password":"***"}])");
}

TEST(ReplaceSensitiveMessageInHTTP, LeavesATextWithoutTheQuotedKeyAlone) {
  for (const char* text : {"", "{}", R"({"passwords":"1"})", R"({"Password":"1"})", R"(password:"1")",
                           R"({'password':"1"})", R"({"oldpassword":"1"})"}) {
    EXPECT_EQ(ReplaceSensitiveMessageInHTTP(text), text);
  }
}

TEST(ReplaceSensitiveMessageInHTTP, LeavesATextThatIsCutOffAlone) {
  for (const char* text : {R"({"password")", R"({"password":)", R"({"password": nu)", R"({"password":"s3cr)",
                           R"({"password":"s3cr\")", R"("password":")"}) {
    EXPECT_EQ(ReplaceSensitiveMessageInHTTP(text), text);
  }
}

TEST(ReplaceSensitiveMessageInHTTP, MasksTheNextStringIfTheValueIsNotAString) {
  EXPECT_EQ(ReplaceSensitiveMessageInHTTP(R"({"password":null,"user":"ann"})"),
            R"({"password":null,"***":"ann"})");
  EXPECT_EQ(ReplaceSensitiveMessageInHTTP(R"({"password":{"old":"1"},"user":"ann"})"),
            R"({"password":{"***":"1"},"user":"ann"})");
}

TEST(ReplaceSensitiveMessageInHTTP, UsesTheNextColonWhereverItIs) {
  EXPECT_EQ(ReplaceSensitiveMessageInHTTP(R"(["password", "user", {"host":"h"}])"),
            R"(["password", "user", {"host":"***"}])");
}

TEST(ReplaceSensitiveMessageInHTTP, ContinuesAValueThatEndsInAnEscapedBackslashToTheNextQuote) {
  EXPECT_EQ(ReplaceSensitiveMessageInHTTP(R"({"password":"a\\","user":"ann"})"),
            R"({"password":"***"user":"ann"})");
}

TEST(ReplaceSensitiveMessageInHTTP, DoesNotTreatABackslashBeforeTheValueAsPartOfIt) {
  EXPECT_EQ(ReplaceSensitiveMessageInHTTP(R"("password":\"" x)"), R"("password":\"***" x)");
}

TEST(ReplaceSensitiveMessageInHTTP, KeepsBytesThatAreNotText) {
  EXPECT_EQ(ReplaceSensitiveMessageInHTTP("\xFF\x01\"password\":\"\xC3\x28\"\xFE"),
            "\xFF\x01\"password\":\"***\"\xFE");
}

TEST(ReplaceSensitiveMessageInHTTP, MasksNothingMoreForATagThatIsListedTwice) {
  const std::string text = R"({"password":null,"user":"ann","password":"a\\","x":"y","password":"z"})";
  const std::string once = ReplaceSensitiveMessageInHTTP(text.c_str());
  YLog::InitHTTPSensitiveTagVector();
  YLog::InitHTTPSensitiveTagVector();
  EXPECT_EQ(ReplaceSensitiveMessageInHTTP(text.c_str()), once);
}

TEST(ReplaceSensitiveMessageInHTTP, MasksAfterItsListWasFilledExplicitly) {
  YLog::InitHTTPSensitiveTagVector();
  EXPECT_EQ(ReplaceSensitiveMessageInHTTP(R"({"password":"1"})"), R"({"password":"***"})");
}

TEST(ReplaceSensitiveMessageInHTTP, MasksForManyThreadsThatAllMakeTheFirstCall) {
  constexpr int THREADS = 8;
  std::latch start(THREADS);
  std::vector<std::string> results(THREADS);
  {
    std::vector<std::jthread> threads;
    for (std::string& result : results) {
      threads.emplace_back([&] {
        start.arrive_and_wait();
        result = ReplaceSensitiveMessageInHTTP(R"({"password":"1"})");
      });
    }
  }
  EXPECT_EQ(results, std::vector<std::string>(THREADS, R"({"password":"***"})"));
}

TEST(ReplaceSensitiveMessageInHTTP, MasksWhileOtherThreadsAppendToItsList) {
  constexpr int THREADS = 8;
  std::latch start(THREADS);
  std::vector<std::string> results(THREADS);
  {
    std::vector<std::jthread> threads;
    for (std::string& result : results) {
      threads.emplace_back([&] {
        start.arrive_and_wait();
        for (int i = 0; i < 20; ++i) YLog::InitHTTPSensitiveTagVector();
        result = ReplaceSensitiveMessageInHTTP(R"({"password":"1"})");
      });
    }
  }
  EXPECT_EQ(results, std::vector<std::string>(THREADS, R"({"password":"***"})"));
}

TEST(ReplaceSensitiveMessageInHTTPDeathTest, RefusesANullText) {
  EXPECT_DEBUG_DEATH(EXPECT_EQ(ReplaceSensitiveMessageInHTTP(nullptr), ""), "text");
}

RC_GTEST_PROP(ReplaceSensitiveMessageInHTTP, AgreesWithTheReference, ()) {
  const std::string text = *RandomText(PIECES);
  RC_ASSERT(ReplaceSensitiveMessageInHTTP(text.c_str()) == MaskHTTPSlowly(text));
}

TEST(ReplaceSensitiveMessageInHTTP, MasksForEachTagTheResultOfTheTagsBeforeIt) {
  YLog::InitHTTPSensitiveTagVector();
  YLog::InitHTTPSensitiveTagVector();
  EXPECT_TRUE(rc::check([] {
    const std::string text = *RandomText(PIECES);
    RC_ASSERT(ReplaceSensitiveMessageInHTTP(text.c_str()) == MaskHTTPSlowly(text, 2));
  }));
}

}  // namespace
