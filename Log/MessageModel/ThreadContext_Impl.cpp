#include "MessageModel/ThreadContext_Impl.h"

#include <YBase/System.h>
#include <YBase/TextConversion.h>
#include <YLog/ThreadSpecificLogHeaders.h>

#include "ModuleMain.h"

namespace YLog {

namespace {

MessageHeader& GetHeaderOfThread() {
  return *gModuleMainPtr->GetThreadContext()->GetMessageHeader();
}

/// Replaces what is not valid UTF-8, so that the result is the same as for a text that was set in wide
/// characters.
YBase::ReturnString Normalise(const std::string& text) {
  return YBase::WideCharToUTF8(YBase::UTF8ToWideChar(text.c_str()).c_str());
}

}  // namespace

ThreadContext::~ThreadContext() = default;

ThreadContext_Impl::ThreadContext_Impl() : mpMessageHeader(CreateMessageHeader()) {
  mpMessageHeader->SetComputerName(gModuleMainPtr->GetComputerName());
  mpMessageHeader->SetProcessID(YBase::GetCurrentProcessID());
  mpMessageHeader->SetThreadID(YBase::GetCurrentThreadID());
}

void ThreadContext_Impl::Delete() {
  delete this;
}

MessageBody* ThreadContext_Impl::GetMessageBody() {
  // Most threads log plain texts only, and the first body of a process makes ICU list all languages.
  if (!mpMessageBody) mpMessageBody = CreateMessageBody();
  return mpMessageBody.Get();
}

void ThreadContext_Impl::TakeOverAfterFork() noexcept {
  mpMessageHeader->SetProcessID(YBase::GetCurrentProcessID());
  mpMessageHeader->SetThreadID(YBase::GetCurrentThreadID());
}

void SetUserIDToThreadContext(const wchar_t* id) {
  GetHeaderOfThread().SetUserID(YBase::WideCharToUTF8(id).c_str());
}

void SetSessionIDToThreadContext(const wchar_t* id) {
  GetHeaderOfThread().SetSessionID(YBase::WideCharToUTF8(id).c_str());
}

void SetObjectIDToThreadContext(const wchar_t* id) {
  GetHeaderOfThread().SetObjectID(YBase::WideCharToUTF8(id).c_str());
}

YBase::ReturnWString GetObjectIDFromThreadContext() {
  return YBase::UTF8ToWideChar(GetHeaderOfThread().GetObjectID());
}

void SetEpisodeNumber(unsigned long long number) {
  gModuleMainPtr->GetThreadContext()->GetEpisodeNumber() = number;
}

unsigned long long GetEpisodeNumber() {
  return gModuleMainPtr->GetThreadContext()->GetEpisodeNumber();
}

void SetThreadSpecificLogHeaders(const ThreadSpecificLogHeaders& headers) {
  MessageHeader& header = GetHeaderOfThread();
  if (!headers.userID.empty()) header.SetUserID(Normalise(headers.userID).c_str());
  if (!headers.sessionID.empty()) header.SetSessionID(Normalise(headers.sessionID).c_str());
  if (!headers.objectID.empty()) header.SetObjectID(Normalise(headers.objectID).c_str());
}

void ClearThreadSpecificLogHeaders() {
  MessageHeader& header = GetHeaderOfThread();
  header.SetUserID(nullptr);
  header.SetSessionID(nullptr);
  header.SetObjectID(nullptr);
}

std::shared_ptr<ThreadSpecificLogHeaders> GetThreadSpecificLogHeaders() {
  const MessageHeader& header = GetHeaderOfThread();
  return std::make_shared<ThreadSpecificLogHeaders>(
      ThreadSpecificLogHeaders{header.GetUserID(), header.GetSessionID(), header.GetObjectID()});
}

}  // namespace YLog
