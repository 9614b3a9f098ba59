// A statement whose router is disabled, compared with a peer's whose level is off.

#include <benchmark/benchmark.h>
#include <spdlog/sinks/null_sink.h>
#include <spdlog/spdlog.h>

#include <YLog/YLog.h>

namespace {

void DisabledStatement(benchmark::State& state) {
  const YLog::Initializer initializer;
  const auto router = YLog::CreateRouter("Benchmark", "Disabled", YSynch::LOCK_STACK_CATEGORY_OBJECT);
  for (auto _ : state) {
    YLog::LogString(*router, "never written");
    benchmark::ClobberMemory();
  }
}
BENCHMARK(DisabledStatement);

void DisabledStatement_spdlog(benchmark::State& state) {
  const auto logger = spdlog::create<spdlog::sinks::null_sink_mt>("disabled");
  logger->set_level(spdlog::level::off);
  for (auto _ : state) {
    logger->info("never written");
    benchmark::ClobberMemory();
  }
  spdlog::drop("disabled");
}
BENCHMARK(DisabledStatement_spdlog);

}  // namespace
