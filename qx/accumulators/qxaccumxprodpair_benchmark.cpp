// Speed of pairwise accumulation over 100,000 cases of 10, 50 and 200
// variables with 5% of the values missing, in cases per second
// (items_per_second), against QXMeansXProducts on the same cases complete,
// measured in the same run: its two-pass Compute and its one-pass path.
// Pairwise work is case by case and keeps seven sums per pair where listwise
// keeps one, so the ratio to listwise is the figure to watch.

#include <benchmark/benchmark.h>

#include <memory>
#include <random>
#include <vector>

#include "qx/accumulators/qxaccumxprodpair.h"
#include "qx/accumulators/qxmeansxproducts.h"
#include "qx/foundation/internal/benchmarkratio.h"
#include "qx/foundation/qxmissingvalue.h"
#include "qx/matrices/qxrectmatrix.h"

namespace QXMath_850 {
namespace {

constexpr int kCases = 100000;
constexpr double kMissingShare = 0.05;

// kCases complete cases of p variables, and the same cases with the holes
// the pairwise runs see. Only the latest p is kept (320 MB at 200).
struct Cases {
  int p = 0;
  QXRectMatrix complete;
  QXRectMatrix holed;
};

const Cases& CasesOf(int p) {
  static std::unique_ptr<Cases> cached;
  if (!cached || cached->p != p) {
    cached.reset();
    cached = std::make_unique<Cases>();
    cached->p = p;
    cached->complete = QXRectMatrix(kCases, p, false);
    std::mt19937_64 engine(7u + p);
    std::normal_distribution<double> normal(0.0, 1.0);
    std::bernoulli_distribution missing(kMissingShare);
    for (double& v : cached->complete.AsVector())
      v = 10.0 + normal(engine);
    cached->holed = cached->complete;
    for (double& v : cached->holed.AsVector()) {
      if (missing(engine)) v = QXCommon_850::QXMV::Missing();
    }
  }
  return *cached;
}

void CountCases(benchmark::State& state) {
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * kCases);
}

// All the cases in one block, then Finish.
void RunPairwise(benchmark::State& state, int nAccum) {
  const int p = static_cast<int>(state.range(0));
  const Cases& cases = CasesOf(p);
  for (auto _ : state) {
    QXAccumXProdPair acc(p, nAccum);
    benchmark::DoNotOptimize(acc.UpdateCases(cases.holed, 0));
    benchmark::DoNotOptimize(acc.Finish());
    benchmark::DoNotOptimize(acc.GetCovar().AsVectorConst().data());
  }
  CountCases(state);
}

// A fold every 100 updates of a pair, and a fold at every update.
void BM_PairUpdateCases(benchmark::State& state) {
  RunPairwise(state, 100);
}
void BM_PairUpdateCasesFoldEach(benchmark::State& state) {
  RunPairwise(state, 1);
}

// One case at a time, as a component that sees its cases singly.
void BM_PairUpdateCase(benchmark::State& state) {
  const int p = static_cast<int>(state.range(0));
  const Cases& cases = CasesOf(p);
  std::vector<double> x(p);
  for (auto _ : state) {
    QXAccumXProdPair acc(p, 100);
    for (int r = 0; r < kCases; ++r) {
      const double* row = cases.holed.GetRowPtr(r);
      x.assign(row, row + p);
      acc.UpdateCase(x, 1.0);
    }
    benchmark::DoNotOptimize(acc.Finish());
  }
  CountCases(state);
}

void BM_ListwiseCompute(benchmark::State& state) {
  const int p = static_cast<int>(state.range(0));
  const Cases& cases = CasesOf(p);
  QXMeansXProducts acc(p, true, false, false);
  for (auto _ : state) {
    benchmark::DoNotOptimize(acc.Compute(cases.complete, 0));
    benchmark::ClobberMemory();
  }
  CountCases(state);
}

void BM_ListwiseOnePass(benchmark::State& state) {
  const int p = static_cast<int>(state.range(0));
  const Cases& cases = CasesOf(p);
  QXMeansXProducts acc(p, true, false, false);
  for (auto _ : state) {
    acc.StartUpdateOnePass();
    benchmark::DoNotOptimize(acc.UpdateOnePass(cases.complete, 0));
    acc.FinishUpdateOnePass();
    benchmark::ClobberMemory();
  }
  CountCases(state);
}

// Grouped by p, so that one data set serves each group.
void Sizes(benchmark::internal::Benchmark* b) {
  b->Unit(benchmark::kMillisecond);
}
#define QX_PAIR_BENCHMARKS(p)                                  \
  BENCHMARK(BM_ListwiseCompute)->Arg(p)->Apply(Sizes);         \
  BENCHMARK(BM_ListwiseOnePass)->Arg(p)->Apply(Sizes);         \
  BENCHMARK(BM_PairUpdateCases)->Arg(p)->Apply(Sizes);         \
  BENCHMARK(BM_PairUpdateCasesFoldEach)->Arg(p)->Apply(Sizes); \
  BENCHMARK(BM_PairUpdateCase)->Arg(p)->Apply(Sizes)
QX_PAIR_BENCHMARKS(10);
QX_PAIR_BENCHMARKS(50);
QX_PAIR_BENCHMARKS(200);
QX_BENCHMARK_RATIO("BM_PairUpdateCases", "BM_ListwiseCompute");
QX_BENCHMARK_RATIO("BM_PairUpdateCases", "BM_ListwiseOnePass");
QX_BENCHMARK_RATIO("BM_PairUpdateCasesFoldEach", "BM_ListwiseCompute");
QX_BENCHMARK_RATIO("BM_PairUpdateCase", "BM_ListwiseCompute");

}  // namespace
}  // namespace QXMath_850
