#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/LogFiles.h"
#include "support/ReadFile.h"
#include "support/ShellWord.h"
#include "support/TemporaryDirectory.h"

namespace {

namespace fs = std::filesystem;

struct Call {
  std::string mName;
  int mIndex;       ///< The number of the call among those of that name, from 1.
  bool mIsBetween;  ///< Between the two marks.
};

/// Runs the program LOG_RECORDS under strace.
class SystemCalls : public testing::Test {
 protected:
  /// Every system call of a run, in order.
  std::vector<Call> Trace(const std::string& arguments) {
    const fs::path trace = mDirectory.Path() / "trace";
    Run("-o " + Support::ShellWord(trace.string()), arguments);
    std::vector<Call> calls;
    std::map<std::string, int> index;
    for (const std::string& line : Support::Lines(Support::ReadFile(trace))) {
      const std::string name = line.substr(0, line.find('('));
      calls.push_back({name, ++index[name], index["getppid"] == 1 && name != "getppid"});
    }
    return calls;
  }

  void Run(const std::string& straceOptions, const std::string& arguments) {
    const std::string command = "strace " + straceOptions + " " + Support::ShellWord(LOG_RECORDS) + " " +
                                Support::ShellWord(Path().string()) + " " + arguments + " > " +
                                Support::ShellWord(Acknowledgements().string()) + " 2>/dev/null";
    // NOLINTNEXTLINE(cert-env33-c, concurrency-mt-unsafe): a test, of its own program, in one thread.
    mLastStatus = std::system(command.c_str());
  }

  void Clear() {
    for (const auto& entry : fs::directory_iterator(mDirectory.Path())) fs::remove(entry.path());
  }

  fs::path Path() const { return mDirectory.Path() / "a.log"; }
  fs::path Acknowledgements() const { return mDirectory.Path() / "acknowledged"; }

  const Support::TemporaryDirectory mDirectory;
  int mLastStatus = -1;
};

TEST_F(SystemCalls, RecordInSteadyStateMakesFour) {
  constexpr int RECORDS = 1000;
  std::map<std::string, int> counts;
  for (const Call& call : Trace("2000000 1 10 1000 record quiet"))
    counts[call.mName] += call.mIsBetween ? 1 : 0;
  EXPECT_EQ(counts["flock"], 2 * RECORDS);
  EXPECT_EQ(counts["statx"], RECORDS);
  EXPECT_EQ(counts["write"] + counts["writev"], RECORDS);
  // The file-size limit is read once a second.
  EXPECT_LE(counts["prlimit64"], 20);
  for (const char* known : {"flock", "statx", "write", "writev", "prlimit64"}) counts.erase(known);
  for (const auto& [name, count] : counts) EXPECT_EQ(count, 0) << name;
}

/// Expects each acknowledged record once, and the one after them at most once.
void ExpectAcknowledgedOnce(const std::vector<std::string>& lines, int acknowledged,
                            const std::string& where) {
  std::map<std::string, int> seen;
  for (const std::string& line : lines) {
    const std::string text = Support::TextOf(line);
    if (text.ends_with(" end")) ++seen[text.substr(0, text.find(" x"))];
  }
  for (int number = 0; number < acknowledged; ++number) {
    EXPECT_EQ(seen["record " + std::to_string(number)], 1) << where << ": " << number;
  }
  EXPECT_LE(seen["record " + std::to_string(acknowledged)], 1) << where;
}

TEST_F(SystemCalls, KillAtAnyOfThemDuringARotationLosesAndDoublesNothing) {
  // Every second record finds the file full. When the last one does, there are two backups and room for a
  // third.
  const std::string arguments = "400 3 6 1 record";
  int killed = 0;
  int renames = 0;
  for (const Call& call : Trace(arguments)) {
    if (!call.mIsBetween) continue;
    const std::string where = call.mName + " " + std::to_string(call.mIndex);
    Clear();
    Run("-o /dev/null -e inject=" + call.mName + ":signal=KILL:when=" + std::to_string(call.mIndex),
        arguments);
    ASSERT_NE(mLastStatus, 0) << where << " was not killed";
    ++killed;
    renames += call.mName.starts_with("rename") ? 1 : 0;
    const int acknowledged = static_cast<int>(Support::Lines(Support::ReadFile(Acknowledgements())).size());
    ASSERT_EQ(acknowledged, call.mName == "write" && acknowledged == 7 ? 7 : 6) << where;
    // Another process finishes the rotation.
    Run("-o /dev/null", "400 3 0 1 last");
    ExpectAcknowledgedOnce(Support::ReadLogFiles(Path()).mLines, acknowledged, where);
  }
  EXPECT_GT(killed, 10);
  EXPECT_EQ(renames, 3) << "two backups and the copy must be renamed";
}

}  // namespace
