// The cost of logging by message ID, in a language that the catalogue has or lacks, compared with a plain
// text. The destination lays out the header but writes nothing, so that the kernel does not hide the
// difference.

#include <benchmark/benchmark.h>

#include <cstring>

#include <YBase/Message.h>
#include <YLog/YLog.h>
#include <YResource/Language.h>
#include <YResource/Localizer.h>
#include <YResource/MemoryBundle.h>

#include "support/New.h"

namespace {

constexpr unsigned short GERMAN = 0x0007;
constexpr unsigned short GERMAN_OF_AUSTRIA = 0x0C07;
constexpr unsigned DOMAIN = 7;
constexpr unsigned KNOWN = 300;
constexpr unsigned KNOWN_BY_ARGUMENTS = 301;
constexpr unsigned UNKNOWN = 302;
constexpr const char* TEXT = "An order of a customer with a name was accepted by the warehouse";
constexpr const char* TEMPLATE = "Order %1 of customer %2 with a name was accepted in %3 ms";

class NullDestination final : public YLog::Destination,
                              public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
 public:
  void LogMessage(const char* text, const YLog::MessageHeader& header) const override {
    benchmark::DoNotOptimize(std::strlen(header.ToString()) + std::strlen(text));
  }
  void LogMessage(const YLog::MessageHeader& header, const YLog::MessageBody& body) const override {
    LogMessage(body.GetText(GERMAN), header);
  }
  void SetCallstackMessageIDs(const unsigned*, unsigned) override {}
  unsigned short GetLanguageID() const override { return GERMAN; }
  void SetLanguageID(unsigned short) override {}

 private:
  ~NullDestination() override = default;
};

class Message : public benchmark::Fixture {
 public:
  Message() {
    YDataType::ObjectCollection<YLog::Destination> destinations;
    destinations.Add(Support::New<NullDestination>());
    mpRouter->GetDispatcher()->SetDestinations(destinations);
    mpBundle->SetText(KNOWN, GERMAN, TEXT);
    mpBundle->SetText(KNOWN_BY_ARGUMENTS, GERMAN, TEMPLATE);
    mpRouter->GetLogger()->SetResourceBundle(mpBundle.Get());
    YResource::RegisterBundle(DOMAIN, mpBundle);
    YResource::SetProcessLanguageID(GERMAN);
  }
  ~Message() override { YResource::UnregisterBundle(DOMAIN); }

 protected:
  void LogByID(benchmark::State& state, unsigned id, unsigned short language) {
    YResource::SetProcessLanguageID(language);
    for (auto _ : state) {
      YLog::LogMessage(*mpRouter, id, YLog::GetMessageFormatter() << 4711 << "Smith" << 12.5, TEMPLATE);
    }
  }
  void LogStringByID(benchmark::State& state, unsigned id, unsigned short language) {
    YResource::SetProcessLanguageID(language);
    for (auto _ : state) YLog::LogString(*mpRouter, id, TEXT);
  }
  void LogStructured(benchmark::State& state, unsigned id) {
    YBase::Message message(TEXT);
    message.SetDomainAndID(DOMAIN, id);
    for (auto _ : state) mpRouter->LogMessage(std::as_const(message));
  }

  const YLog::Initializer mInitializer;
  const YBase::SmartPtrI<YLog::Router> mpRouter =
      YLog::CreateRouter("Benchmark", "Info", YSynch::LOCK_STACK_CATEGORY_OBJECT);
  const YBase::SmartPtrI<YResource::MemoryBundle> mpBundle = YResource::CreateMemoryBundle(DOMAIN);
};

BENCHMARK_F(Message, PlainText)(benchmark::State& state) {
  for (auto _ : state) YLog::LogString(*mpRouter, TEXT);
}
BENCHMARK_F(Message, StringByID_Hit)(benchmark::State& state) {
  LogStringByID(state, KNOWN, GERMAN);
}
BENCHMARK_F(Message, StringByID_HitInParentLanguage)(benchmark::State& state) {
  LogStringByID(state, KNOWN, GERMAN_OF_AUSTRIA);
}
BENCHMARK_F(Message, StringByID_Miss)(benchmark::State& state) {
  LogStringByID(state, UNKNOWN, GERMAN);
}

BENCHMARK_F(Message, PlainTemplate)(benchmark::State& state) {
  for (auto _ : state) {
    YLog::LogMessage(*mpRouter, TEMPLATE, YLog::GetMessageFormatter() << 4711 << "Smith" << 12.5);
  }
}
BENCHMARK_F(Message, TemplateByID_Hit)(benchmark::State& state) {
  LogByID(state, KNOWN_BY_ARGUMENTS, GERMAN);
}
BENCHMARK_F(Message, TemplateByID_HitInParentLanguage)(benchmark::State& state) {
  LogByID(state, KNOWN_BY_ARGUMENTS, GERMAN_OF_AUSTRIA);
}
BENCHMARK_F(Message, TemplateByID_Miss)(benchmark::State& state) {
  LogByID(state, UNKNOWN, GERMAN);
}

BENCHMARK_F(Message, Structured_Hit)(benchmark::State& state) {
  LogStructured(state, KNOWN);
}
BENCHMARK_F(Message, Structured_Miss)(benchmark::State& state) {
  LogStructured(state, UNKNOWN);
}

BENCHMARK_F(Message, DisabledByID)(benchmark::State& state) {
  mpRouter->mEnabled = false;
  YResource::MessageFormatter formatter;
  formatter << 4711;
  for (auto _ : state) {
    benchmark::ClobberMemory();
    YLog::LogMessage(*mpRouter, KNOWN_BY_ARGUMENTS, formatter, TEMPLATE);
  }
}
BENCHMARK_F(Message, DisabledScopeGuard)(benchmark::State& state) {
  mpRouter->mEnabled = false;
  for (auto _ : state) {
    benchmark::ClobberMemory();
    const YLog::ScopeGuard guard(*mpRouter, "Run", "job.cpp", 42);
  }
}

}  // namespace
