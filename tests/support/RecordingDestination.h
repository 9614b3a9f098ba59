#pragma once

#include <atomic>
#include <functional>
#include <initializer_list>
#include <mutex>
#include <string>
#include <vector>

#include <YBase/SmartPtrI.h>
#include <YDataType/ObjectCollection.h>
#include <YLog/Destination.h>
#include <YLog/MessageBody.h>
#include <YLog/MessageHeader.h>
#include <YSynch/AtomicLong.h>
#include <YSynch/ReferenceCountedImpl.h>

namespace Support {

/// What a destination received. These are copies, because text and header are valid only during the call.
struct Record {
  explicit Record(const char* messageText, const YLog::MessageHeader& header)
      : text(messageText),
        line(header.ToString()),
        computerName(header.GetComputerName()),
        serverInstanceName(header.GetServerInstanceName()),
        processID(header.GetProcessID()),
        threadID(header.GetThreadID()),
        timestamp(header.GetTimestamp()),
        loggerName(header.GetLoggerName()),
        dispatcherName(header.GetDispatcherName()),
        messageID(header.GetMessageID()),
        fileName(header.GetFileName()),
        funcName(header.GetFuncName()),
        lineNumber(header.GetLineNumber()),
        userID(header.GetUserID()),
        sessionID(header.GetSessionID()),
        objectID(header.GetObjectID()) {}

  std::string text;
  std::string line;
  std::string computerName;
  std::string serverInstanceName;
  unsigned processID;
  unsigned long threadID;
  YLog::Timestamp timestamp;
  std::string loggerName;
  std::string dispatcherName;
  unsigned messageID;
  std::string fileName;
  std::string funcName;
  int lineNumber;
  std::string userID;
  std::string sessionID;
  std::string objectID;
};

/// Keeps every record, then runs an action of the test. Threads: any.
class RecordingDestination final : public YLog::Destination,
                                   public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
 public:
  using Action = std::function<void(const char* text, const YLog::MessageHeader& header)>;

  explicit RecordingDestination(Action onMessage = nullptr, std::function<void()> onDestruction = nullptr)
      : mOnMessage(std::move(onMessage)), mOnDestruction(std::move(onDestruction)) {}

  void LogMessage(const char* text, const YLog::MessageHeader& header) const override {
    {
      const std::lock_guard lock(mMutex);
      mRecords.emplace_back(text, header);
    }
    if (mOnMessage) mOnMessage(text, header);
  }
  /// Logs the text of the body in the language of this destination.
  void LogMessage(const YLog::MessageHeader& header, const YLog::MessageBody& body) const override {
    LogMessage(body.GetText(GetLanguageID()), header);
  }
  void SetCallstackMessageIDs(const unsigned*, unsigned) override {}
  unsigned short GetLanguageID() const override { return mLanguage; }
  void SetLanguageID(unsigned short language) override { mLanguage = language; }

  std::vector<Record> Records() const {
    const std::lock_guard lock(mMutex);
    return mRecords;
  }
  std::vector<std::string> Texts() const {
    std::vector<std::string> texts;
    for (const Record& record : Records()) texts.push_back(record.text);
    return texts;
  }

 private:
  ~RecordingDestination() override {
    if (mOnDestruction) mOnDestruction();
  }

  const Action mOnMessage;
  const std::function<void()> mOnDestruction;
  std::atomic<unsigned short> mLanguage{0};
  mutable std::mutex mMutex;
  mutable std::vector<Record> mRecords;
};

/// The list that `Dispatcher::SetDestinations` takes.
inline YDataType::ObjectCollection<YLog::Destination> Destinations(
    std::initializer_list<YBase::SmartPtrI<YLog::Destination>> destinations = {}) {
  YDataType::ObjectCollection<YLog::Destination> collection;
  for (const auto& destination : destinations) collection.Add(destination);
  return collection;
}

}  // namespace Support
