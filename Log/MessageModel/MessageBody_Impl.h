#pragma once

#include <map>
#include <string>

#include <YBase/ConstMessageCursor.h>
#include <YBase/Localizer.h>
#include <YBase/Message.h>
#include <YBase/MessageCursor.h>
#include <YBase/SmartPtrI.h>
#include <YLog/MessageBody.h>
#include <YSynch/AtomicLong.h>
#include <YSynch/ReferenceCountedImpl.h>

namespace YLog {

class MessageBody_Impl final : public virtual MessageBody,
                               public virtual YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
 public:
  class MessageMerger;

  MessageBody_Impl();

  void SetMessage(const YBase::Message& message) override;
  const YBase::Message& GetMessage() override;
  const char* GetText(unsigned short language) const override;

 private:
  using LocalizedMessages = std::map<unsigned short, YBase::Message>;

  ~MessageBody_Impl() override = default;

  std::string Format(unsigned short language) const;

  YBase::Message mMessage;
  const YBase::SmartPtrI<YBase::Localizer> mpLocalizer;
  mutable std::map<unsigned short, std::string> mTexts;
  // What the localizer gave for a language and has not been merged into the message yet.
  mutable LocalizedMessages mLocalizedMessages;
};

/// Copies texts into a message from messages of its shape, each of which has them for one language. The
/// construction is the work.
class MessageBody_Impl::MessageMerger {
 public:
  MessageMerger(const LocalizedMessages& localizedMessages, YBase::Message& message);

  bool LowerLevelMessageIsUnvisited() const noexcept { return mMessage.LowerLevelMessageIsUnvisited(); }
  bool GoToLowerLevelMessage();
  bool GoToSameLevelMessage();
  bool GoToParent();

 private:
  void MergeTexts();

  std::map<unsigned short, YBase::ConstMessageCursor> mLocalizedMessages;
  YBase::MessageCursor mMessage;
};

}  // namespace YLog
