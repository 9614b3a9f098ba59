// A record that the kernel has received when the call returns: with this library, with a peer that flushes
// each one (and neither checks its file nor shares it between processes), and with the bare write of the same
// bytes.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spdlog/sinks/rotating_file_sink.h>
#include <spdlog/spdlog.h>
#include <unistd.h>

#include <filesystem>
#include <optional>
#include <string>

#include "support/DiskFileClient.h"

namespace {

namespace fs = std::filesystem;

constexpr const char* TEXT = "Order 4711 of a customer with a name was accepted in 12.5 ms";
constexpr std::size_t LIMIT = 100'000'000;

fs::path FreshFolder() {
  const fs::path folder = fs::temp_directory_path() / ("ylog-benchmark-" + std::to_string(getpid()));
  fs::remove_all(folder);
  fs::create_directory(folder);
  return folder;
}

class Record : public benchmark::Fixture {
 public:
  void SetUp(const benchmark::State& state) override {
    if (state.thread_index() == 0) mFolder = FreshFolder();
  }
  void TearDown(const benchmark::State& state) override {
    if (state.thread_index() == 0) fs::remove_all(mFolder);
  }

 protected:
  fs::path mFolder;
};

std::optional<Support::DiskFileClient> sClient;

BENCHMARK_DEFINE_F(Record, OnDisk)(benchmark::State& state) {
  if (state.thread_index() == 0)
    sClient.emplace(mFolder / "a.log", Support::DiskFileClient::Limits{LIMIT, 1});
  for (auto _ : state) sClient->Log(TEXT);
  if (state.thread_index() == 0) sClient.reset();
}
BENCHMARK_REGISTER_F(Record, OnDisk)->Threads(1)->Threads(2)->Threads(8)->UseRealTime();

std::shared_ptr<spdlog::logger> sLogger;

BENCHMARK_DEFINE_F(Record, OnDisk_spdlog)(benchmark::State& state) {
  if (state.thread_index() == 0) {
    sLogger = spdlog::rotating_logger_mt("record", (mFolder / "a.log").string(), LIMIT, 1);
    sLogger->flush_on(spdlog::level::trace);
    sLogger->set_pattern(
        "%Y-%m-%d %H:%M:%S.%e%z [HOST:computer][SERVER:][PID:%P][THR:%t][%n][%l][UID:0][SID:0][OID:0] %v");
  }
  for (auto _ : state) sLogger->info(TEXT);
  if (state.thread_index() == 0) {
    sLogger.reset();
    spdlog::drop("record");
  }
}
BENCHMARK_REGISTER_F(Record, OnDisk_spdlog)->Threads(1)->Threads(2)->Threads(8)->UseRealTime();

BENCHMARK_DEFINE_F(Record, BareWrite)(benchmark::State& state) {
  const int file = open((mFolder / "a.log").c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
  const std::string record(190, 'x');
  for (auto _ : state) benchmark::DoNotOptimize(write(file, record.data(), record.size()));
  close(file);
}
BENCHMARK_REGISTER_F(Record, BareWrite)->UseRealTime();

}  // namespace
