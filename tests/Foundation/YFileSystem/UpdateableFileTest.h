#pragma once

#include <filesystem>
#include <fstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <YFileSystem/UpdateableFile.h>

#include "ThrownText.h"
#include "support/ReadFile.h"
#include "support/TemporaryDirectory.h"

/// A temporary folder with a path in it for the file under test.
class UpdateableFileTest : public testing::Test {
 protected:
  using FilePtr = YBase::SmartPtrI<YFileSystem::UpdateableFile>;
  using WriteLock = YFileSystem::WriteableFile::WriteSmartLock;

  FilePtr Open(const std::filesystem::path& path) const {
    return YFileSystem::OpenUpdateableFile(path.wstring().c_str(), YFileSystem::KEEP_WHAT_WAS_WRITTEN);
  }
  FilePtr Open() const { return Open(mPath); }

  /// What a destination does for a record.
  static void Append(YFileSystem::UpdateableFile& file, std::string_view text) {
    const WriteLock lock(file);
    file.Append(file.QueryPath().mSize, text);
  }
  static std::string ReadAll(YFileSystem::UpdateableFile& file) {
    std::string text(100'000, '\0');
    file.SetPosition(0);
    text.resize(file.Read(text.data(), text.size()));
    return text;
  }

  void Write(const std::string& content) const { std::ofstream(mPath, std::ios::binary) << content; }
  std::string Content() const { return Support::ReadFile(mPath); }
  std::string OpeningFailure(const std::string& reason) const {
    return "YFileSystem::OpenUpdateableFile: cannot open '" + mPath.string() + "': " + reason;
  }
  std::string Failure(const std::string& operation, const std::string& action,
                      const std::string& reason) const {
    return "YFileSystem::UpdateableFile_Impl::" + operation + ": cannot " + action + " '" + mPath.string() +
           "': " + reason;
  }

  const Support::TemporaryDirectory mDirectory;
  const std::filesystem::path mPath = mDirectory.Path() / "a.log";
};
