#include <YBase/System.h>
#include <YBase/TextConversion.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>

#include "support/ReadFile.h"
#include "support/ShellWord.h"
#include "support/TemporaryDirectory.h"

namespace {

using Support::ReadFile;
using Support::ShellWord;
using Support::TemporaryDirectory;

TEST(System, KnowsTheNameOfTheComputer) {
  char name[256] = {};
  ASSERT_EQ(::gethostname(name, sizeof name - 1), 0);
  EXPECT_EQ(YBase::WideCharToUTF8(YBase::GetComputerName().c_str()), name);
}

TEST(System, UsesTheKernelsNumbersForProcessAndThread) {
  EXPECT_EQ(YBase::GetCurrentProcessID(), static_cast<unsigned>(::getpid()));
  EXPECT_EQ(YBase::GetCurrentThreadID(), static_cast<unsigned long>(::syscall(SYS_gettid)));
}

TEST(System, GivesEachThreadItsOwnNumber) {
  unsigned long other = 0;
  std::thread([&] { other = YBase::GetCurrentThreadID(); }).join();
  EXPECT_NE(other, 0u);
  EXPECT_NE(other, YBase::GetCurrentThreadID());
}

TEST(System, GivesAForkedChildItsOwnNumbers) {
  ASSERT_EQ(YBase::GetCurrentThreadID(), YBase::GetCurrentProcessID());
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    const auto own = static_cast<unsigned>(::getpid());
    ::_exit(YBase::GetCurrentProcessID() == own && YBase::GetCurrentThreadID() == own ? 0 : 1);
  }
  int status = -1;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
}

TEST(System, KnowsThePathOfTheProgram) {
  const std::filesystem::path path = YBase::GetExecutablePath();
  EXPECT_TRUE(path.is_absolute());
  EXPECT_EQ(path.filename(), "ybase_tests");
  EXPECT_TRUE(std::filesystem::exists(path));
}

TEST(System, KnowsThePathOfADeeplyNestedProgram) {
  const TemporaryDirectory folder;
  std::filesystem::path deep = folder.Path();
  for (int level = 0; level < 5; ++level) deep /= std::string(200, 'd');
  std::filesystem::create_directories(deep);
  std::filesystem::copy_file("/proc/self/exe", deep / "ybase_tests");
  const std::filesystem::path output = folder.Path() / "output";
  const std::string command = ShellWord((deep / "ybase_tests").string()) +
                              " --gtest_filter=System.KnowsThePathOfTheProgram >" +
                              ShellWord(output.string());
  EXPECT_EQ(std::system(command.c_str()), 0);
  EXPECT_THAT(ReadFile(output), testing::HasSubstr("[  PASSED  ] 1 test"));
}

}  // namespace
