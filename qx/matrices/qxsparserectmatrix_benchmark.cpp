// Speed of the cross-product accumulation of a sparse block of cases, the
// work a component does with one-hot coded predictors: UpdateXXCornerBlock
// of the whole block against the dense path in the same run, which is the
// rank-one UpdateXX of each case as a dense row. The dense path expands one
// case at a time rather than hold the block as 800 MB of doubles; the
// expansion is a small part of its cost. The sparse update should win by at
// least a tenth of the inverse density (10 times at 1% non-zeros).

#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <vector>

#include "qx/foundation/internal/benchmarkratio.h"
#include "qx/matrices/qxsparserectmatrix.h"
#include "qx/matrices/qxsparsevector.h"
#include "qx/matrices/qxsymmatrix.h"

namespace QXMath_850 {
namespace {

// rows cases of cols columns with perRow non-zeros each, at distinct random
// columns, with standard normal values.
QXSparseRectMatrix SparseCases(int rows, int cols, int perRow) {
  std::mt19937_64 engine(2024u);
  std::uniform_int_distribution<int> column(0, cols - 1);
  std::normal_distribution<double> normal(0.0, 1.0);
  QXSparseRectMatrix x(0, cols);
  std::vector<int> index;
  std::vector<double> value(perRow);
  for (int k = 0; k < rows; ++k) {
    index.clear();
    while (static_cast<int>(index.size()) < perRow) {
      const int c = column(engine);
      if (std::find(index.begin(), index.end(), c) == index.end()) index.push_back(c);
    }
    std::sort(index.begin(), index.end());
    for (double& v : value)
      v = normal(engine);
    x.AddRow(QXSparseVector(index, value));
  }
  return x;
}

void SetCases(benchmark::State& state, int rows) {
  state.SetItemsProcessed(state.iterations() * static_cast<long>(rows));
}

void BM_SparseUpdateXX(benchmark::State& state) {
  const int rows = static_cast<int>(state.range(0)), cols = static_cast<int>(state.range(1));
  const QXSparseRectMatrix x = SparseCases(rows, cols, static_cast<int>(state.range(2)));
  const std::vector<double> weights(rows, 1.0);
  for (auto _ : state) {
    QXSymMatrix a(cols, true);
    benchmark::DoNotOptimize(a.UpdateXXCornerBlock(x, weights));
    benchmark::DoNotOptimize(a.AsVector().data());
  }
  SetCases(state, rows);
}

void BM_DenseUpdateXX(benchmark::State& state) {
  const int rows = static_cast<int>(state.range(0)), cols = static_cast<int>(state.range(1));
  const QXSparseRectMatrix x = SparseCases(rows, cols, static_cast<int>(state.range(2)));
  std::vector<double> row(cols, 0.0);
  for (auto _ : state) {
    QXSymMatrix a(cols, true);
    for (int k = 0; k < rows; ++k) {
      x.IncrVecByRow(k, row, 0, 1.0);
      a.UpdateXX(row, 1.0);
      x.IncrVecByRow(k, row, 0, -1.0);  // exact: each element returns to 0.0
    }
    benchmark::DoNotOptimize(a.AsVector().data());
  }
  SetCases(state, rows);
}

BENCHMARK(BM_SparseUpdateXX)
    ->Args({100000, 1000, 10})
    ->Args({100000, 1000, 50})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DenseUpdateXX)
    ->Args({100000, 1000, 10})
    ->Args({100000, 1000, 50})
    ->Unit(benchmark::kMillisecond);
QX_BENCHMARK_RATIO("BM_SparseUpdateXX", "BM_DenseUpdateXX");

}  // namespace
}  // namespace QXMath_850
