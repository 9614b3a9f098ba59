#pragma once

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <YLog/Initializer.h>
#include <YLog/MessageHeader.h>

#include "Destinations/Destination_DiskFile_Impl.h"
#include "support/ReadFile.h"
#include "support/TemporaryDirectory.h"

/// A disk file in its own folder. Its backups are written and read by the suffixes of their names.
class RotationTest : public testing::Test {
 protected:
  inline static const std::string HEAD = "\xEF\xBB\xBF# Vellatorquine Log version 2.0\n";

  void Log(const std::string& text) { mDestination->LogMessage(text.c_str(), *mHeader); }
  std::string Record(const std::string& text) const { return mHeader->ToString() + (" " + text + "\n"); }
  std::size_t SizeOf(const std::string& text) const { return HEAD.size() + Record(text).size(); }

  std::filesystem::path Path(const std::string& suffix = "") const {
    return mDirectory.Path() / ("a.log" + suffix);
  }
  std::string Content(const std::string& suffix = "") const { return Support::ReadFile(Path(suffix)); }
  bool Exists(const std::string& suffix) const {
    return std::filesystem::exists(std::filesystem::symlink_status(Path(suffix)));
  }
  bool IsCopyLeft() const { return Exists(".part"); }
  void Write(const std::string& suffix, const std::string& content) const {
    std::ofstream(Path(suffix), std::ios::binary) << content;
  }
  /// Writes the copy of a rotation that was killed.
  void WriteCopy(const std::string& content, unsigned permissions) const {
    Write(".part", content);
    std::filesystem::permissions(Path(".part"), std::filesystem::perms(permissions));
  }
  static std::string BackupSuffix(int number) {
    char suffix[16];
    std::snprintf(suffix, sizeof suffix, ".bak%02d", number);
    return suffix;
  }
  void WriteBackups(int count) const {
    for (int number = 0; number < count; ++number) Write(BackupSuffix(number), "b" + std::to_string(number));
  }

  const YLog::Initializer mInitializer;
  const Support::TemporaryDirectory mDirectory;
  const YBase::SmartPtrI<YLog::MessageHeader> mHeader = YLog::CreateMessageHeader();
  const YBase::SmartPtrI<YLog::Destination_DiskFile_Impl> mDestination{
      new YLog::Destination_DiskFile_Impl(Path().wstring().c_str())};
};
