#include <YBase/ConstMessageCursor.h>
#include <YBase/FormatMessage.h>
#include <YBase/Message.h>
#include <YBase/MessageCursor.h>
#include <YLog/MessageBody.h>
#include <YResource/Localizer.h>
#include <YResource/MemoryBundle.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "Require.h"

namespace {

constexpr unsigned DOMAIN = 7;
constexpr unsigned short GERMAN = 0x0007;

/// The catalogue has a German text for every fourth ID, and a neutral one for every eighth.
void RegisterCatalogue() {
  const auto bundle = YResource::CreateMemoryBundle(DOMAIN);
  for (unsigned id = 0; id < 256; id += 4) bundle->SetText(id, GERMAN, "deutsch");
  for (unsigned id = 2; id < 256; id += 8) bundle->SetText(id, 0, "neutral");
  YResource::RegisterBundle(DOMAIN, bundle);
}

/// Each byte is a step: its low bits are the action, the others the ID.
YBase::Message MakeTree(std::string_view steps) {
  YBase::Message tree;
  YBase::MessageCursor cursor(tree);
  for (const char step : steps) {
    YBase::Message& current = cursor.GetCurrentMessage();
    switch (step & 7) {
      case 0:
      case 1:
        cursor.GoToLowerLevelMessage(true);
        break;
      case 2:
        cursor.GoToParent();
        break;
      case 3:
        current.SetLocalizedText(0, "own");
        break;
      case 4:
        current.SetLocalizedText(GERMAN, "eigen");
        break;
      case 5:
        current.SetLocalizedText(0x0409, "");
        break;
      default:
        current.SetDomainAndID(DOMAIN, static_cast<unsigned char>(step));
    }
  }
  return tree;
}

}  // namespace

// The first byte determines how the rest is divided between a message and its localized twin.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bool sIsRegistered = (RegisterCatalogue(), true);
  Fuzz::Require(sIsRegistered, "the catalogue is registered");
  if (size == 0) return 0;
  const std::string_view steps(reinterpret_cast<const char*>(data) + 1, size - 1);
  const std::size_t share = steps.size() * data[0] / 255;
  const YBase::Message message = MakeTree(steps.substr(0, share));

  const auto localizer = YResource::GetLocalizer();
  YBase::Message fresh;
  YBase::Message uneven = MakeTree(steps.substr(share));
  const std::string text = YBase::FormatMessage(message, fresh, GERMAN, *localizer);
  Fuzz::Require(YBase::FormatMessage(message, uneven, GERMAN, *localizer) == text,
                "the shape of the localized message changes no text");

  const auto body = YLog::CreateMessageBody();
  body->SetMessage(message);
  const std::string rendered = body->GetText(GERMAN);
  const std::string neutral = YBase::FormatMessage(message, 0);
  const YBase::Message& merged = body->GetMessage();
  Fuzz::Require(YBase::FormatMessage(merged, GERMAN) == rendered, "the merged message renders as before");
  Fuzz::Require(message.GetMessage().empty() || !neutral.empty(),
                "a message with a text also renders in the neutral language");
  return 0;
}
