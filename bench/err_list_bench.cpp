// Filling an error list with 100,000 messages, one in ten a repeat of an
// earlier message that the list drops, as a long check of a large building
// produces them. After the run the program prints the time of one fill
// against its target of less than a second.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "bench_ratio.h"
#include "messages/cqv_err_list.h"
#include "messages/cqv_err_msg.h"

namespace {

constexpr int kMessages = 100000;

std::vector<std::shared_ptr<qv::CQvErrMsg>> MakeMessages() {
  std::vector<std::shared_ptr<qv::CQvErrMsg>> messages;
  messages.reserve(kMessages);
  for (int i = 0; i < kMessages; ++i) {
    const int source = i % 10 == 9 ? i - 7 : i;  // every tenth repeats
    auto msg = std::make_shared<qv::CQvErrMsg>();
    msg->m_eModul = 1;
    msg->m_lNum = source % 500;
    msg->m_eKind = static_cast<qv::QvErrKind>(source % 4);
    msg->m_sMsg = "Raum R" + std::to_string(source) + ": U-Wert zu hoch";
    msg->addField("Raum", "R" + std::to_string(source));
    msg->addField("U", source * 0.01);
    messages.push_back(std::move(msg));
  }
  return messages;
}

void BM_FillErrList(benchmark::State& state) {
  const auto messages = MakeMessages();
  int32_t kept = 0;
  for (auto _ : state) {
    qv::CQvErrList list;
    for (const auto& msg : messages) list.addError(*msg);
    kept = list.m_colErrMsg()->Count();
    benchmark::DoNotOptimize(kept);
  }
  state.counters["kept"] = kept;
}
BENCHMARK(BM_FillErrList)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  qv::bench::RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  // CPU time, which a busy shared machine disturbs far less than wall-clock
  // time; the wall-clock time is printed beside it.
  const double cpu = reporter.Cpu("BM_FillErrList");
  if (cpu <= 0) {
    std::printf("errList fill: not measured\n");
    return 0;
  }
  std::printf("errList fill of %d messages: %.1f ms (target < 1000 ms)\n",
              kMessages, cpu);
  std::printf("  (CPU time; wall-clock %.1f ms)\n",
              reporter.Real("BM_FillErrList"));
  return 0;
}
