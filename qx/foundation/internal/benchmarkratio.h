#ifndef QX_FOUNDATION_INTERNAL_BENCHMARKRATIO_H
#define QX_FOUNDATION_INTERNAL_BENCHMARKRATIO_H

// Support for the library's benchmark programs (never installed): a reporter
// that prints, after the usual table, how each of the library's operations
// compares in time with a baseline measured in the same run, such as a plain
// loop or the LAPACK routine that does the same job.

#include <benchmark/benchmark.h>

#include <unistd.h>

#include <cstdio>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace QXMath_850 {
namespace internal {

class RatioReporter : public benchmark::ConsoleReporter {
 public:
  // Colours only on a terminal, so that output sent to a file stays plain.
  RatioReporter() : ConsoleReporter(isatty(STDOUT_FILENO) ? OO_ColorTabular : OO_Tabular) {}

  // Runs named "<ours>/<args>" are compared with "<baseline>/<args>".
  void AddPair(const std::string& ours, const std::string& baseline) {
    pairs.emplace_back(ours, baseline);
  }

  // The ratios are of CPU times, which the other work on a shared machine
  // disturbs less than wall-clock times; with repetitions, of the medians.
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.error_occurred) continue;
      if (run.run_type == Run::RT_Iteration) {
        if (medians.count(run.run_name.str()) == 0) {
          times[run.run_name.str()] = run.GetAdjustedCPUTime();
        }
      } else if (run.aggregate_name == "median") {
        times[run.run_name.str()] = run.GetAdjustedCPUTime();
        medians.insert(run.run_name.str());
      }
    }
    ConsoleReporter::ReportRuns(runs);
  }

  void Finalize() override {
    ConsoleReporter::Finalize();
    bool header = false;
    for (const auto& entry : times) {
      for (const auto& pair : pairs) {
        const std::string& name = entry.first;
        if (name.compare(0, pair.first.size() + 1, pair.first + "/") != 0) continue;
        const std::string args = name.substr(pair.first.size());
        const auto base = times.find(pair.second + args);
        if (base == times.end() || base->second <= 0.0) continue;
        if (!header) {
          std::printf("\n%-44s %-36s %10s\n", "operation", "baseline", "time ratio");
          header = true;
        }
        std::printf("%-44s %-36s %10.2f\n", name.c_str(), base->first.c_str(),
                    entry.second / base->second);
      }
    }
    if (header) {
      std::printf(
          "(time ratio = library CPU time / baseline CPU time, of the medians when\n"
          " repeated; below 1 is faster)\n");
    }
    std::fflush(stdout);
  }

 private:
  std::vector<std::pair<std::string, std::string>> pairs;
  std::map<std::string, double> times;
  std::set<std::string> medians;
};

// The pairs to compare, registered by each benchmark file through
// QX_BENCHMARK_RATIO and read by the common main (benchmarkmain.cpp).
inline std::vector<std::pair<std::string, std::string>>& RatioPairs() {
  static std::vector<std::pair<std::string, std::string>> pairs;
  return pairs;
}

struct RatioPairRegistrar {
  RatioPairRegistrar(const char* ours, const char* baseline) {
    RatioPairs().emplace_back(ours, baseline);
  }
};

}  // namespace internal
}  // namespace QXMath_850

#define QX_BENCHMARK_RATIO_CONCAT2(a, b) a##b
#define QX_BENCHMARK_RATIO_CONCAT(a, b) QX_BENCHMARK_RATIO_CONCAT2(a, b)
// Compares runs "ours/<args>" with "baseline/<args>" at the end of the report.
#define QX_BENCHMARK_RATIO(ours, baseline)                                     \
  static ::QXMath_850::internal::RatioPairRegistrar QX_BENCHMARK_RATIO_CONCAT( \
      qxBenchmarkRatio, __LINE__)(ours, baseline)

#endif  // QX_FOUNDATION_INTERNAL_BENCHMARKRATIO_H
