#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <YResource/FolderBundle.h>

#include "support/ChildProcess.h"
#include "support/ClosedDescriptors.h"
#include "support/DiskFileClient.h"
#include "support/ReadFile.h"
#include "support/TemporaryDirectory.h"

namespace {

namespace fs = std::filesystem;

/// A host that has closed standard input, output or error but still writes there.
class ClosedStandardDescriptors : public testing::Test {
 protected:
  ClosedStandardDescriptors() {
    fs::create_directory(mDirectory.Path() / "catalogue");
    std::ofstream(mDirectory.Path() / "catalogue" / "orders.json")
        << R"({"domain": 12, "locale": "neutral", "texts": {"1": "order %1"}})";
  }

  std::wstring Wide(const char* name) const { return (mDirectory.Path() / name).wstring(); }

  /// Uses everything that opens a file except the system log.
  void UseEverything(Support::DiskFileClient& client) const {
    YLog::GetDestination_DebugOutput()->LogMessage("to nobody");
    YLog::GetDestination_KafkaLog(Wide("kafka.log").c_str())
        ->LogMessage("text", *YLog::CreateMessageHeader());
    YLog::CmdLogTrace trace;
    trace.SetOutputFileName(Wide("statistics").c_str());
    trace.CollectLogTrace();
    trace.PrintAllLogTrace();
    YResource::OpenBundle(Wide("catalogue").c_str());
    const unsigned showsStack = 7;
    client.File().SetCallstackMessageIDs(&showsStack, 1);
    YLog::LogString(client.Router(), showsStack, "with a stack");
    for (int record = 0; record < 30; ++record) client.Log("enough for a rotation");
  }

  void ExpectFilesWithoutForeignText(int files) const {
    for (const auto& entry : fs::directory_iterator(mDirectory.Path())) {
      if (!entry.is_regular_file()) continue;
      --files;
      EXPECT_THAT(Support::ReadFile(entry.path()), testing::Not(testing::HasSubstr("foreign")))
          << entry.path();
    }
    EXPECT_EQ(files, 0);
  }

  const Support::TemporaryDirectory mDirectory;
};

TEST_F(ClosedStandardDescriptors, LetNoForeignTextIntoAnyFile) {
  for (const int closed : Support::CLOSED_IN_ANY_WAY) {
    EXPECT_EQ(Support::ChildProcess([&] {
                Support::CloseDescriptors(closed);
                Support::DiskFileClient client(mDirectory.Path() / "a.log", {.mSize = 1'000});
                UseEverything(client);
                return Support::UseClosed(closed);
              }).Wait(),
              0)
        << "closed: " << closed;
    ExpectFilesWithoutForeignText(4);
  }
}

TEST_F(ClosedStandardDescriptors, LetNoForeignTextIntoAFileThatIsBeingOpened) {
  EXPECT_EQ(Support::ChildProcess([&] {
              Support::CloseDescriptors(7);
              std::atomic<bool> enough{false};
              int taken = 0;
              std::thread host([&] {
                while (!enough) taken += Support::UseClosed(7);
              });
              {
                Support::DiskFileClient client(mDirectory.Path() / "a.log", {.mSize = 500});
                for (int i = 0; i < 30; ++i) UseEverything(client);
              }
              enough = true;
              host.join();
              return taken == 0 ? 0 : 1;
            }).Wait(),
            0);
  ExpectFilesWithoutForeignText(4);
}

}  // namespace
