#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <YBase/TextConversion.h>
#include <YLog/Initializer.h>
#include <YLog/MessageHeader.h>

#include "Destinations/Destination_DiskFile_Impl.h"
#include "support/ChildProcess.h"
#include "support/FakeClock.h"
#include "support/FileCallHook.h"
#include "support/New.h"
#include "support/ReadFile.h"
#include "support/TemporaryDirectory.h"

namespace {

namespace fs = std::filesystem;

constexpr int RECORDS = 14;
// The records written after a kill, enough for a rotation.
constexpr int FIRST_AFTERWARDS = 2000;
constexpr int LAST_AFTERWARDS = 2006;

/// What is known of a killed process, in memory that outlives it.
struct Trace {
  int acknowledged = 0;
  // Between completing a copy and emptying the log, a kill may double records if the log is moved as well.
  bool isInTheWindow = false;
};

/// Logs numbered records, and looks for them in every file of a folder: the log, its backups, and files that
/// were moved away.
class DiskFileEachCall : public testing::Test {
 protected:
  using FilePtr = YBase::SmartPtrI<YLog::Destination_DiskFile_Impl>;

  FilePtr Open(const fs::path& path) const {
    const auto file =
        Support::New<YLog::Destination_DiskFile_Impl>(YBase::UTF8ToWideChar(path.c_str()).c_str());
    // Rotates after about every other record.
    file->SetMaximumFileSize(300);
    file->SetMaximumFileBackup(256);
    return file;
  }
  void Log(const FilePtr& file, int number) const {
    file->LogMessage(("record " + std::to_string(number) + " end").c_str(), *mHeader);
  }

  /// How often each numbered record is in the files of the folder; torn records are counted under -1.
  static std::map<int, int> CountRecords(const fs::path& folder) {
    std::map<int, int> counts;
    for (const auto& entry : fs::directory_iterator(folder)) {
      // A link leads to a file that is counted anyway.
      if (entry.is_symlink()) continue;
      for (const std::string& line : Support::Lines(Support::ReadFile(entry.path()))) {
        int number = -1;
        const std::size_t text = line.find(" record ");
        if (text == std::string::npos) continue;
        const bool isWhole =
            line.ends_with(" end") && std::sscanf(line.c_str() + text, " record %d", &number) == 1;
        ++counts[isWhole ? number : -1];
      }
    }
    return counts;
  }

  const YLog::Initializer mInitializer;
  const YBase::SmartPtrI<YLog::MessageHeader> mHeader = YLog::CreateMessageHeader();
};

// Processes that are killed.

enum class Operator { IDLE, MOVES_THE_LOG, APPENDS_A_LINE, WRITES_THROUGH_A_LINK };

class KilledAtEachFileCall : public DiskFileEachCall, public testing::WithParamInterface<Operator> {
 protected:
  KilledAtEachFileCall()
      : mpTrace(new (mmap(nullptr, sizeof(Trace), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0))
                    Trace) {}
  ~KilledAtEachFileCall() override { munmap(mpTrace, sizeof(Trace)); }

  /// Logs in a process that is killed before call number `victim`; false if there is no such call.
  bool LogUntilKilled(const fs::path& path, int victim) {
    *mpTrace = {};
    Support::ChildProcess child([&] {
      const FilePtr file = Open(path);
      int calls = 0;
      const Support::FileCallHook hook([&](std::string_view call) {
        if (calls++ == victim) kill(getpid(), SIGKILL);
        if (call == "change permissions") mpTrace->isInTheWindow = true;
        if (call == "rename") mpTrace->isInTheWindow = false;
        return 0;
      });
      for (int number = 0; number < RECORDS; ++number) {
        Log(file, number);
        mpTrace->acknowledged = number + 1;
      }
      return 0;
    });
    return child.Wait() == -SIGKILL;
  }

  void ActAsOperator(const fs::path& path) const {
    const fs::path link = path.string() + "-link";
    if (GetParam() == Operator::MOVES_THE_LOG && fs::exists(path)) fs::rename(path, path.string() + "-moved");
    if (GetParam() == Operator::APPENDS_A_LINE) std::ofstream(path, std::ios::app) << "by hand\n";
    if (GetParam() != Operator::WRITES_THROUGH_A_LINK) return;
    fs::create_symlink(path, link);
    const FilePtr file = Open(link);
    // A rotation under another name takes the records elsewhere, as a move does.
    file->SetMaximumFileSize(2'000'000);
    Log(file, 1000);
  }

  void ExpectEachAcknowledgedRecordOnce(const fs::path& folder, int victim) {
    std::map<int, int> counts = CountRecords(folder);
    const bool mayDouble = GetParam() == Operator::MOVES_THE_LOG && mpTrace->isInTheWindow;
    for (int number = 0; number < mpTrace->acknowledged; ++number) {
      EXPECT_GE(counts[number], 1) << "record " << number << ", killed before call " << victim;
      EXPECT_LE(counts[number], mayDouble ? 2 : 1)
          << "record " << number << ", killed before call " << victim;
    }
    EXPECT_LE(counts[mpTrace->acknowledged], mayDouble ? 2 : 1)
        << "the unacknowledged record, killed before call " << victim;
    EXPECT_EQ(counts[-1], 0) << "killed before call " << victim;
    for (int number = FIRST_AFTERWARDS; number < LAST_AFTERWARDS; ++number)
      EXPECT_EQ(counts[number], 1) << "record " << number << ", written after the kill before call "
                                   << victim;
    if (mayDouble) ++mMayHaveDoubled;
  }

  Trace* mpTrace;
  int mMayHaveDoubled = 0;
};

TEST_P(KilledAtEachFileCall, LosesNothingAndDoublesNothingUnlessTheLogIsMovedBeforeItIsEmptied) {
  int victim = 0;
  for (bool wasKilled = true; wasKilled; ++victim) {
    const Support::TemporaryDirectory directory;
    const fs::path path = directory.Path() / "a.log";
    wasKilled = LogUntilKilled(path, victim);
    ActAsOperator(path);
    const FilePtr file = Open(path);
    for (int number = FIRST_AFTERWARDS; number < LAST_AFTERWARDS; ++number) Log(file, number);
    ExpectEachAcknowledgedRecordOnce(directory.Path(), victim);
    EXPECT_FALSE(fs::exists(path.string() + ".part")) << "killed before call " << victim;
  }
  EXPECT_GT(victim, 100) << "there were too few calls";
  EXPECT_EQ(mMayHaveDoubled > 0, GetParam() == Operator::MOVES_THE_LOG);
}

std::string NameOfOperator(const testing::TestParamInfo<Operator>& tested) {
  switch (tested.param) {
    case Operator::IDLE:
      return "WithoutAnOperator";
    case Operator::MOVES_THE_LOG:
      return "WhileTheLogIsMovedAway";
    case Operator::APPENDS_A_LINE:
      return "WhileALineIsAppendedByHand";
    case Operator::WRITES_THROUGH_A_LINK:
      return "WhileOthersWriteThroughALink";
  }
  return "";
}

INSTANTIATE_TEST_SUITE_P(DiskFile, KilledAtEachFileCall,
                         testing::Values(Operator::IDLE, Operator::MOVES_THE_LOG, Operator::APPENDS_A_LINE,
                                         Operator::WRITES_THROUGH_A_LINK),
                         NameOfOperator);

// Calls that fail.

struct Errors {
  int mNumber;
  int mTimes;
};

class FailingAtEachFileCall : public DiskFileEachCall, public testing::WithParamInterface<Errors> {
 protected:
  /// Logs with errors from call number `first` on; false if there is no such call.
  bool LogWithErrors(const FilePtr& file, int first) const {
    int calls = 0;
    const Support::FileCallHook hook([&](std::string_view) {
      const int call = calls++;
      return call >= first && call < first + GetParam().mTimes ? GetParam().mNumber : 0;
    });
    for (int number = 0; number < RECORDS; ++number) Log(file, number);
    return calls > first;
  }

  /// The sum of the numbers in the Missed records of all files.
  static int CountMissed(const fs::path& folder) {
    int sum = 0;
    for (const auto& entry : fs::directory_iterator(folder)) {
      const std::string content = Support::ReadFile(entry.path());
      for (std::size_t found = 0; (found = content.find("] Missed ", found)) != std::string::npos; ++found) {
        sum += std::atoi(content.c_str() + found + std::string_view("] Missed ").size());
      }
    }
    return sum;
  }

  Support::FakeClock mClock{std::chrono::sys_days(std::chrono::year(2024) / 3 / 5)};
};

TEST_P(FailingAtEachFileCall, WritesOrCountsEachRecordExactlyOnce) {
  int first = 0;
  for (bool hasFailed = true; hasFailed; ++first) {
    const Support::TemporaryDirectory directory;
    const FilePtr file = Open(directory.Path() / "a.log");
    hasFailed = LogWithErrors(file, first);
    mClock.Advance(std::chrono::seconds(300));
    for (int number = RECORDS; number < RECORDS + 4; ++number) Log(file, number);

    const std::map<int, int> counts = CountRecords(directory.Path());
    for (const auto& [number, count] : counts) EXPECT_EQ(count, 1) << number << ", error at call " << first;
    EXPECT_EQ(counts.count(-1), 0U) << "error at call " << first;
    EXPECT_EQ(static_cast<int>(counts.size()) + CountMissed(directory.Path()), RECORDS + 4)
        << "error at call " << first;
    EXPECT_EQ(counts.count(RECORDS + 3), 1U) << "the last record is missing, error at call " << first;
  }
  EXPECT_GT(first, 10) << "there were too few calls";
}

constexpr int LASTING = 1'000'000;

std::string NameOfErrors(const testing::TestParamInfo<Errors>& tested) {
  const std::string name = strerrorname_np(tested.param.mNumber);
  return name + (tested.param.mTimes == LASTING ? "Lasting" : "Times" + std::to_string(tested.param.mTimes));
}

const std::vector<Errors> ERRORS = {
    {EIO, 1},    {EIO, 2},    {EIO, 5},          {EIO, LASTING}, {ENOSPC, 1}, {ENOSPC, LASTING}, {EACCES, 1},
    {EACCES, 2}, {ENOMEM, 1}, {EACCES, LASTING}, {ENOMEM, 3},    {ENOLCK, 1}, {ENOLCK, LASTING}, {EINTR, 1},
    {EINTR, 5},  {EROFS, 2},  {EMFILE, LASTING}, {EDQUOT, 1},    {EPERM, 1},
};

INSTANTIATE_TEST_SUITE_P(DiskFile, FailingAtEachFileCall, testing::ValuesIn(ERRORS), NameOfErrors);

}  // namespace
