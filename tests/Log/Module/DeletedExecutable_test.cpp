#include <cstdlib>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "support/ReadFile.h"
#include "support/ShellWord.h"
#include "support/TemporaryDirectory.h"

namespace {

namespace fs = std::filesystem;
using Support::ShellWord;

/// A program that keeps running while its file is deleted or replaced, as a server does during an upgrade.
class DeletedExecutable : public testing::Test {
 protected:
  /// The container in which a program of that name puts a log with a relative path.
  std::string ContainerOf(const std::string& name, const std::string& argument) const {
    const fs::path program = mDirectory.Path() / name;
    const fs::path output = mDirectory.Path() / "output";
    fs::copy_file(PRINT_LOG_PATH, program, fs::copy_options::overwrite_existing);
    const std::string command = "HOME=" + ShellWord(mDirectory.Path().string()) + " " +
                                ShellWord(program.string()) + " " + argument + " >" +
                                ShellWord(output.string());
    EXPECT_EQ(std::system(command.c_str()), 0);
    EXPECT_EQ(fs::exists(program), argument.empty());
    return fs::path(Support::Lines(Support::ReadFile(output)).at(0))
        .lexically_relative(mDirectory.Path() / "Library" / "Containers")
        .begin()
        ->string();
  }

  const Support::TemporaryDirectory mDirectory;
};

const std::string ATELIER = "com.vellatorquine.Atelier.FolioComposer";
const std::string OBSERVATORY = "com.vellatorquine.Observatory.FolioComposer";

TEST_F(DeletedExecutable, LogsToTheSameFolderAsBefore) {
  EXPECT_EQ(ContainerOf("Vellatorquine Atelier", ""), ATELIER);
  EXPECT_EQ(ContainerOf("Vellatorquine Atelier", "deleted"), ATELIER);
}

TEST_F(DeletedExecutable, IsDistinguishedFromAProgramNamedDeleted) {
  EXPECT_EQ(ContainerOf("Vellatorquine Atelier (deleted)", ""), OBSERVATORY);
  EXPECT_EQ(ContainerOf("Vellatorquine Atelier (deleted)", "deleted"), OBSERVATORY);
}

TEST_F(DeletedExecutable, IsDistinguishedFromAnotherFileWithTheNameThatTheSystemReports) {
  fs::copy_file(PRINT_LOG_PATH, mDirectory.Path() / "Vellatorquine Atelier (deleted)");
  EXPECT_EQ(ContainerOf("Vellatorquine Atelier", "deleted"), ATELIER);
}

}  // namespace
