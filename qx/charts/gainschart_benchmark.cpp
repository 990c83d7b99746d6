// The gains chart of scored cases (1M and 10M, with weights and ties), against
// std::sort of the same scores in the same run: the chart sorts once and
// makes one pass, so its time ratio to the sort stays flat as n grows, which
// is what O(n log n) looks like.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <random>
#include <vector>

#include "qx/charts/classgainschart.h"
#include "qx/foundation/internal/benchmarkratio.h"

namespace QXMath_850 {
namespace {

struct Scored {
  std::vector<double> score, observed, weight;
};

const Scored& Data(size_t n) {
  static std::map<size_t, Scored> cache;
  Scored& d = cache[n];
  if (d.score.empty()) {
    std::mt19937_64 random(17);
    std::uniform_real_distribution<double> u(0.0, 1.0);
    for (size_t i = 0; i < n; ++i) {
      const double s = std::round(u(random) * 1e5) / 1e5;  // ties
      d.score.push_back(s);
      d.observed.push_back(u(random) < s ? 1.0 : 0.0);
      d.weight.push_back(1.0 + static_cast<double>(i % 4));
    }
  }
  return d;
}

void BM_ClassGainsChart(benchmark::State& state) {
  const Scored& d = Data(static_cast<size_t>(state.range(0)));
  for (auto _ : state) {
    ClassGainsChart chart("y", 1);
    for (size_t i = 0; i < d.score.size(); ++i)
      chart.Update(d.score[i], d.observed[i], d.weight[i]);
    chart.Compute(10);
    benchmark::DoNotOptimize(chart.GetAUC());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_StdSortScores(benchmark::State& state) {
  const Scored& d = Data(static_cast<size_t>(state.range(0)));
  for (auto _ : state) {
    std::vector<double> s(d.score);
    std::sort(s.begin(), s.end(), std::greater<double>());
    benchmark::DoNotOptimize(s.data());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(BM_ClassGainsChart)->Arg(1000000)->Arg(10000000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StdSortScores)->Arg(1000000)->Arg(10000000)->Unit(benchmark::kMillisecond);
QX_BENCHMARK_RATIO("BM_ClassGainsChart", "BM_StdSortScores");

}  // namespace
}  // namespace QXMath_850
