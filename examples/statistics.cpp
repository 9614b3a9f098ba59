// Counts and times two commands and the messages sent to three destinations, and prints the statistics to
// commands.txt and messages.txt.

#include <exception>
#include <filesystem>
#include <initializer_list>
#include <iostream>
#include <string>

#include <YLog/YLog.h>

namespace {

constexpr unsigned long THREAD = 1;

// The application decides what the numbers mean: IDs of commands and messages, milliseconds, outcomes.
constexpr int COMMAND_LIST = 7;
constexpr int COMMAND_ORDER = 93;
constexpr int MESSAGE_CONFIRMATION = 17;

enum Outcome { DELIVERED, QUEUED, REFUSED };

std::wstring InThisFolder(const char* name) {
  return YBase::UTF8ToWideChar((std::filesystem::current_path() / name).c_str());
}

void PrintTo(const char* name, YLog::LogTrace& trace) {
  trace.SetOutputFileName(InThisFolder(name).c_str());
  // What has been reported so far becomes a snapshot, and the snapshots are printed.
  trace.CollectLogTrace();
  const unsigned status = trace.PrintAllLogTrace();
  if (status != 0) std::cerr << "statistics: " << name << " was not written: " << std::hex << status << '\n';
}

void TraceCommands() {
  YLog::CmdLogTrace commands;
  for (const long long milliseconds : {12, 9, 30}) commands.AddToLogTrace(THREAD, COMMAND_LIST, milliseconds);
  commands.AddToLogTrace(THREAD, COMMAND_ORDER, 250);
  PrintTo("commands.txt", commands);
}

void Send(const std::wstring& destination, int milliseconds, Outcome outcome) {
  YLog::MsgLogTrace::SendToLogTrace(THREAD, MESSAGE_CONFIRMATION, destination, milliseconds, outcome);
}

void TraceMessages() {
  Send(L"mail", 40, DELIVERED);  // Not counted: nothing is counted before the next line.
  YLog::MsgLogTrace::SetMsgLogTrace(true);
  Send(L"mail", 40, DELIVERED);
  Send(L"mail", 60, QUEUED);
  Send(L"billing", 5, DELIVERED);
  Send(L"warehouse", 900, REFUSED);
  PrintTo("messages.txt", *YLog::MsgLogTrace::getInstance());
}

}  // namespace

int main() {
  try {
    const YLog::Initializer initializer;
    TraceCommands();
    TraceMessages();
  } catch (const std::exception& failure) {
    std::cerr << "statistics: " << failure.what() << '\n';
    return 1;
  }
}
