// Speed of accumulating means and cross-products over 100,000 cases of 10, 50
// and 200 variables and 20,000 cases of 500: the two-pass Compute, the
// one-pass path and case-by-case AddCase, in cases per second
// (items_per_second). Baselines measured in the same run: the plain triple
// loop of raw cross-products over the packed triangle, and BLAS dsyrk (one
// thread) on the same row-major store when it was found.

#include <benchmark/benchmark.h>

#include <memory>
#include <random>
#include <vector>

#include "qx/accumulators/qxmeansxproddata.h"
#include "qx/accumulators/qxmeansxproducts.h"
#include "qx/foundation/internal/benchmarkratio.h"
#include "qx/matrices/qxrectmatrix.h"

#include "qx/matrices/internal/lapackbaseline.h"

namespace QXMath_850 {
namespace {

// Cases in a block of p variables: at most 160 MB of data.
int CaseCount(int p) {
  return p <= 200 ? 100000 : 20000;
}

// One block of random cases of p variables, kept for the benchmarks of the
// same p (at 200 variables it takes 160 MB, so only one is kept).
const QXRectMatrix& Cases(int p) {
  static std::unique_ptr<QXRectMatrix> cached;
  if (!cached || cached->GetNCols() != p) {
    cached.reset();
    cached = std::make_unique<QXRectMatrix>(CaseCount(p), p, false);
    std::mt19937_64 engine(99u + p);
    std::normal_distribution<double> normal(0.0, 1.0);
    for (double& v : cached->AsVector())
      v = 10.0 + normal(engine);
  }
  return *cached;
}

void CountCases(benchmark::State& state) {
  const int p = static_cast<int>(state.range(0));
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * CaseCount(p));
}

void BM_Compute(benchmark::State& state) {
  const int p = static_cast<int>(state.range(0));
  const QXRectMatrix& data = Cases(p);
  QXMeansXProducts acc(p, true, false, false);
  for (auto _ : state) {
    benchmark::DoNotOptimize(acc.Compute(data, 0));
    benchmark::ClobberMemory();
  }
  CountCases(state);
}

void BM_UpdateOnePass(benchmark::State& state) {
  const int p = static_cast<int>(state.range(0));
  const QXRectMatrix& data = Cases(p);
  QXMeansXProducts acc(p, true, false, false);
  for (auto _ : state) {
    acc.StartUpdateOnePass();
    benchmark::DoNotOptimize(acc.UpdateOnePass(data, 0));
    acc.FinishUpdateOnePass();
    benchmark::ClobberMemory();
  }
  CountCases(state);
}

void BM_AddCase(benchmark::State& state) {
  const int p = static_cast<int>(state.range(0));
  const QXRectMatrix& data = Cases(p);
  std::vector<double> x(p);
  for (auto _ : state) {
    QXMeansXProdData acc(p, true);
    for (int r = 0; r < data.GetNRows(); ++r) {
      const double* row = data.GetRowPtr(r);
      x.assign(row, row + p);
      acc.AddCase(x, 1.0);
    }
    benchmark::DoNotOptimize(acc.GetMeans().data());
  }
  CountCases(state);
}

// Raw sums of products with nothing else: the least work any method does.
void BM_PlainTripleLoop(benchmark::State& state) {
  const int p = static_cast<int>(state.range(0));
  const QXRectMatrix& data = Cases(p);
  std::vector<double> packed(static_cast<size_t>(p) * (p + 1) / 2);
  for (auto _ : state) {
    std::fill(packed.begin(), packed.end(), 0.0);
    for (int r = 0; r < data.GetNRows(); ++r) {
      const double* x = data.GetRowPtr(r);
      size_t k = 0;
      for (int i = 0; i < p; ++i) {
        for (int j = 0; j <= i; ++j)
          packed[k++] += x[i] * x[j];
      }
    }
    benchmark::DoNotOptimize(packed.data());
  }
  CountCases(state);
}

BENCHMARK(BM_Compute)->Arg(10)->Arg(50)->Arg(200)->Arg(500)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_UpdateOnePass)->Arg(10)->Arg(50)->Arg(200)->Arg(500)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_AddCase)->Arg(10)->Arg(50)->Arg(200)->Arg(500)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PlainTripleLoop)->Arg(10)->Arg(50)->Arg(200)->Arg(500)->Unit(benchmark::kMillisecond);
QX_BENCHMARK_RATIO("BM_Compute", "BM_PlainTripleLoop");
QX_BENCHMARK_RATIO("BM_UpdateOnePass", "BM_PlainTripleLoop");
QX_BENCHMARK_RATIO("BM_AddCase", "BM_PlainTripleLoop");

#if defined(QX_HAVE_LAPACK)
// X^T X in one BLAS-3 call: the row-major cases are the column-major p by
// cases matrix that dsyrk multiplies by its transpose.
void BM_BlasDsyrk(benchmark::State& state) {
  const int p = static_cast<int>(state.range(0));
  const QXRectMatrix& data = Cases(p);
  const int k = data.GetNRows();
  const double one = 1.0, zero = 0.0;
  std::vector<double> c(static_cast<size_t>(p) * p);
  for (auto _ : state) {
    dsyrk_("L", "N", &p, &k, &one, data.AsVectorConst().data(), &p, &zero, c.data(), &p);
    benchmark::DoNotOptimize(c.data());
  }
  CountCases(state);
}

BENCHMARK(BM_BlasDsyrk)->Arg(10)->Arg(50)->Arg(200)->Arg(500)->Unit(benchmark::kMillisecond);
QX_BENCHMARK_RATIO("BM_Compute", "BM_BlasDsyrk");
QX_BENCHMARK_RATIO("BM_UpdateOnePass", "BM_BlasDsyrk");
QX_BENCHMARK_RATIO("BM_AddCase", "BM_BlasDsyrk");
#endif

}  // namespace
}  // namespace QXMath_850
