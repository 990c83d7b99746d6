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

// Two partials over halves of the cases, pooled; the baseline is the same
// pooling as one plain loop over the triangle.
struct MergePair {
  QXMeansXProdData a, b;
};

const MergePair& Halves(int p) {
  static std::unique_ptr<MergePair> cached;
  if (!cached || cached->a.GetNVars() != p) {
    cached = std::make_unique<MergePair>();
    QXMeansXProducts first(p, true, false, false), second = first;
    const QXRectMatrix& data = Cases(p);
    first.Compute(data, 0);
    second.Compute(data, 0);
    first.AddCase(std::vector<double>(data.GetRowPtr(0), data.GetRowPtr(0) + p), 1.0);
    cached->a = first;
    cached->b = second;
  }
  return *cached;
}

void BM_Merge(benchmark::State& state) {
  const MergePair& halves = Halves(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    QXMeansXProdData pooled = halves.a;
    benchmark::DoNotOptimize(pooled.Merge(halves.b));
    benchmark::ClobberMemory();
  }
}

void BM_MergePlainLoop(benchmark::State& state) {
  const int p = static_cast<int>(state.range(0));
  const MergePair& halves = Halves(p);
  const double w1 = halves.a.GetNCases(), w2 = halves.b.GetNCases();
  for (auto _ : state) {
    std::vector<double> pooled = halves.a.GetXProds().AsVectorConst();
    const std::vector<double>&m1 = halves.a.GetMeans(), &m2 = halves.b.GetMeans();
    std::vector<double> m(p);
    for (int i = 0; i < p; ++i)
      m[i] = m1[i] + (m2[i] - m1[i]) * (w2 / (w1 + w2));
    double* sums = pooled.data();
    const double* o = halves.b.GetXProds().AsVectorConst().data();
    for (int i = 0; i < p; ++i) {
      const double c1 = w1 * (m[i] - m1[i]), c2 = w2 * (m[i] - m2[i]);
      for (int j = 0; j <= i; ++j, ++sums, ++o)
        *sums += (m[j] - m1[j]) * c1 + *o + (m[j] - m2[j]) * c2;
    }
    benchmark::DoNotOptimize(pooled.data());
    benchmark::ClobberMemory();
  }
}

BENCHMARK(BM_Merge)->Arg(50)->Arg(200)->Arg(500)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_MergePlainLoop)->Arg(50)->Arg(200)->Arg(500)->Unit(benchmark::kMicrosecond);
QX_BENCHMARK_RATIO("BM_Merge", "BM_MergePlainLoop");

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
