// The cost of masking per byte, for texts from 10 kB to 10 MB with a value in every 100 bytes. The bytes per
// second must not fall with the length by more than caches and the allocator explain: if the allocator
// returns the memory of a result to the system, the next result pays for every page of it.
// MALLOC_TRIM_THRESHOLD_ and MALLOC_MMAP_THRESHOLD_ in the environment, both above the longest text, prevent
// that.

#include <cstddef>
#include <cstdint>
#include <string>

#include <benchmark/benchmark.h>

#include <YLog/SensitiveData.h>

namespace {

/// A text of `size` bytes with `entry` at every 100th.
std::string RepeatEntry(std::size_t size, const std::string& entry) {
  std::string text;
  text.reserve(size);
  const std::string padded = entry + std::string(100 - entry.size(), '.');
  while (text.size() < size) text += padded;
  return text;
}

void CountBytes(benchmark::State& state, const std::string& text) {
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void MaskHTTPBody(benchmark::State& state, const std::string& entry, const std::string& end) {
  const std::string text = RepeatEntry(static_cast<std::size_t>(state.range(0)), entry) + end;
  for (auto iteration : state) benchmark::DoNotOptimize(YLog::ReplaceSensitiveMessageInHTTP(text.c_str()));
  CountBytes(state, text);
}

void MaskAttributes(benchmark::State& state, const std::string& entry, const std::string& tagName) {
  const std::string text = RepeatEntry(static_cast<std::size_t>(state.range(0)), entry);
  for (auto iteration : state) {
    benchmark::DoNotOptimize(YLog::ReplaceSensitiveMessage(text.c_str(), tagName.c_str(), "***"));
  }
  CountBytes(state, text);
}

void Sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->Arg(10'000)->Arg(1'000'000)->Arg(10'000'000);
}

BENCHMARK_CAPTURE(MaskHTTPBody, values, R"({"user":"ann","password":"s3cret"},)", "")->Apply(Sizes);
// The only escaped quote is at the very end, so a search for the next one would run there from every value.
BENCHMARK_CAPTURE(MaskHTTPBody, values_and_one_escaped_quote, R"("password":"s3cret")", R"(\")")
    ->Apply(Sizes);
BENCHMARK_CAPTURE(MaskHTTPBody, escaped_quotes, R"("password":"\"\"\"\"\"\"\"\"\"\"\"\"\"\"\"\"\"\"\"")", "")
    ->Apply(Sizes);
BENCHMARK_CAPTURE(MaskHTTPBody, nothing_to_mask, R"({"user":"ann","pass":"s3cret"},)", "")->Apply(Sizes);
BENCHMARK_CAPTURE(MaskAttributes, values, R"( user="ann" pwd="s3cret")", "pwd")->Apply(Sizes);
// The text begins the pattern again and again, and never completes it.
BENCHMARK_CAPTURE(MaskAttributes, blanks, std::string(100, ' '), std::string(1000, ' '))->Apply(Sizes);

}  // namespace
