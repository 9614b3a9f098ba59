// Header and text laid out as one record in memory, compared with a peer whose pattern has the same fields.

#include <benchmark/benchmark.h>
#include <spdlog/details/log_msg.h>
#include <spdlog/pattern_formatter.h>

#include <YLog/YLog.h>

namespace {

constexpr const char* TEXT = "Order 4711 of a customer with a name was accepted in 12.5 ms";

void Formatting(benchmark::State& state) {
  const YBase::SmartPtrI<YLog::MessageHeader> header = YLog::CreateMessageHeader();
  header->SetComputerName("computer");
  header->SetProcessID(4711);
  header->SetThreadID(4712);
  for (auto _ : state) {
    header->SetTimestampToNowLocal();
    header->SetLoggerName("Benchmark");
    header->SetDispatcherName("Info");
    benchmark::DoNotOptimize(YLog::FormatMultiLineMessageText(0, header->ToString(), TEXT));
  }
}
BENCHMARK(Formatting);

void Formatting_spdlog(benchmark::State& state) {
  spdlog::pattern_formatter formatter(
      "%Y-%m-%d %H:%M:%S.%e%z [HOST:computer][SERVER:][PID:%P][THR:%t][%n][%l][UID:0][SID:0][OID:0] %v");
  spdlog::memory_buf_t record;
  for (auto _ : state) {
    record.clear();
    formatter.format(spdlog::details::log_msg("Benchmark", spdlog::level::info, TEXT), record);
    benchmark::DoNotOptimize(record.data());
  }
}
BENCHMARK(Formatting_spdlog);

}  // namespace
