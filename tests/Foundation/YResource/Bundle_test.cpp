#include <YBase/SmartPtrI.h>
#include <YResource/Bundle.h>
#include <YSynch/AtomicLong.h>
#include <YSynch/ReferenceCountedImpl.h>

#include <type_traits>

namespace {

using YResource::Bundle;

static_assert(!std::is_destructible_v<Bundle>);
static_assert(std::is_abstract_v<Bundle>);

/// A catalogue as a client may write it.
class ClientBundle final : public Bundle, public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
 public:
  explicit ClientBundle(bool& gone) : mGone(gone) {}

  YResource::MessageTemplate GetMessageTemplate(unsigned id, unsigned short language,
                                                const char* defaultTemplate) const override {
    return YResource::GetMessageTemplate(id == 1 && language == 0x0407 ? "Auftrag %1" : defaultTemplate);
  }
  YBase::ReturnString GetString(unsigned, unsigned short, const char* defaultText) const override {
    return defaultText;
  }

 private:
  ~ClientBundle() override { mGone = true; }

  bool& mGone;
};

TEST(Bundle, CanBeImplementedByAClient) {
  bool gone = false;
  const YBase::SmartPtrI<Bundle> bundle(new ClientBundle(gone));
  EXPECT_EQ(bundle->GetMessageTemplate(1, 0x0407, "Order %1").GetText(), "Auftrag %1");
  EXPECT_EQ(bundle->GetMessageTemplate(1, 0, "Order %1").GetText(), "Order %1");
  EXPECT_EQ(bundle->GetString(2, 0, "default"), "default");
}

TEST(Bundle, IsDestroyedWithItsLastReference) {
  bool gone = false;
  YBase::SmartPtrI<Bundle> bundle(new ClientBundle(gone));
  YBase::SmartPtrI<Bundle> second = bundle;
  bundle = nullptr;
  EXPECT_FALSE(gone);
  second = nullptr;
  EXPECT_TRUE(gone);
}

}  // namespace
