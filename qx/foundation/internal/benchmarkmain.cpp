// The main of every benchmark program: the usual Google Benchmark run, then
// the time ratios of the library's operations to their baselines.
#include "qx/foundation/internal/benchmarkratio.h"

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  QXMath_850::internal::RatioReporter reporter;
  for (const auto& pair : QXMath_850::internal::RatioPairs()) {
    reporter.AddPair(pair.first, pair.second);
  }
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return 0;
}
