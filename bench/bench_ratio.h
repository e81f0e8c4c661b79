// Shared by the benchmarks that compare the library with raw SQLite: runs
// the registered benchmarks, keeps each one's CPU and real time per
// iteration, and prints the ratio of the library's time to the raw time
// against a target. The ratio is taken from CPU time, which a busy shared
// machine disturbs far less than wall-clock time (both sides read from the
// page cache); the wall-clock ratio is printed beside it.
#ifndef QVGLOBAL_BENCH_BENCH_RATIO_H_
#define QVGLOBAL_BENCH_BENCH_RATIO_H_

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

namespace qv::bench {

class RatioReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      // With --benchmark_repetitions the median of the repetitions counts;
      // it is reported after them and replaces their times.
      const bool median =
          run.run_type == Run::RT_Aggregate && run.aggregate_name == "median";
      if (!run.error_occurred &&
          (run.run_type == Run::RT_Iteration || median)) {
        // A run is found by its full name ("BM_X/NextRoom") and, where
        // it ran a fixed number of iterations, also without that suffix
        // ("BM_X/iterations:3" as BM_X).
        const std::string name = run.run_name.str();
        for (const std::string& key : {name, WithoutIterations(name)}) {
          cpu_[key] = run.GetAdjustedCPUTime();
          real_[key] = run.GetAdjustedRealTime();
        }
      }
    }
    ConsoleReporter::ReportRuns(runs);
  }
  // CPU and real time per iteration of a benchmark, 0 when it did not run.
  double Cpu(const std::string& name) const { return Find(cpu_, name); }
  double Real(const std::string& name) const { return Find(real_, name); }

 private:
  static std::string WithoutIterations(const std::string& name) {
    const size_t at = name.rfind("/iterations:");
    return at == std::string::npos ? name : name.substr(0, at);
  }
  static double Find(const std::map<std::string, double>& times,
                     const std::string& name) {
    const auto it = times.find(name);
    return it == times.end() ? 0 : it->second;
  }

  std::map<std::string, double> cpu_, real_;
};

// For BENCHMARK(...)->Apply(FixedIterationsFromEnv): with QV_BENCH_ITERATIONS
// set, the benchmark runs exactly that many iterations, once, so that an
// instruction count taken under callgrind divides into a cost per call
// (scripts/callgrind-ratio.sh).
inline void FixedIterationsFromEnv(benchmark::internal::Benchmark* b) {
  if (const char* n = std::getenv("QV_BENCH_ITERATIONS")) {
    b->Iterations(std::strtoll(n, nullptr, 10));
  }
}

// One ratio to print: the library's benchmark, the raw one, a label naming
// both sides ("readBlock/raw") and the target (0: printed for reference).
struct Ratio {
  std::string ours;
  std::string raw;
  std::string label;
  double target;
};

// Runs the benchmarks and prints "<label> ratio: X.XX (target <= T)" for
// each ratio. Both benchmarks of a ratio must use the same time unit.
inline int RunWithRatios(int argc, char** argv,
                         const std::vector<Ratio>& ratios) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  for (const Ratio& r : ratios) {
    const double a = reporter.Cpu(r.ours), b = reporter.Cpu(r.raw);
    if (a <= 0 || b <= 0) {
      std::printf("%s ratio: not measured (both benchmarks must run)\n",
                  r.label.c_str());
      continue;
    }
    if (r.target > 0) {
      std::printf("%s ratio: %.2f (target <= %g)\n", r.label.c_str(), a / b,
                  r.target);
    } else {
      std::printf("%s ratio: %.2f (for reference)\n", r.label.c_str(), a / b);
    }
    std::printf("  (CPU time; wall-clock ratio %.2f)\n",
                reporter.Real(r.ours) / reporter.Real(r.raw));
  }
  return 0;
}

inline int RunWithRatio(int argc, char** argv, const std::string& ours,
                        const std::string& raw, const char* label,
                        double target) {
  return RunWithRatios(argc, argv, {{ours, raw, label, target}});
}

}  // namespace qv::bench

#endif  // QVGLOBAL_BENCH_BENCH_RATIO_H_
