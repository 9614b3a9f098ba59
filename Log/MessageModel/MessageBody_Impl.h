#pragma once

#include <map>
#include <string>

#include <YBase/Localizer.h>
#include <YBase/Message.h>
#include <YBase/SmartPtrI.h>
#include <YLog/MessageBody.h>
#include <YSynch/AtomicLong.h>
#include <YSynch/ReferenceCountedImpl.h>

namespace YLog {

class MessageBody_Impl final : public virtual MessageBody,
                               public virtual YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
 public:
  using LocalizedMessages = std::map<unsigned short, YBase::Message>;

  MessageBody_Impl();

  void SetMessage(const YBase::Message& message) override;
  const YBase::Message& GetMessage() override;
  const char* GetText(unsigned short language) const override;

  /// Copies into `message` the texts of messages of the same shape, each of which is for one language.
  static void MergeTexts(const LocalizedMessages& localizedMessages, YBase::Message& message);

 private:
  ~MessageBody_Impl() override = default;

  std::string Format(unsigned short language) const;

  YBase::Message mMessage;
  const YBase::SmartPtrI<YBase::Localizer> mpLocalizer;
  mutable std::map<unsigned short, std::string> mTexts;
  // What the localizer gave for each language, until it is merged into the message.
  mutable LocalizedMessages mLocalizedMessages;
};

}  // namespace YLog
