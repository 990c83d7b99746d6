// Speed of the packed symmetric matrix's central operations: the full sweep,
// the rank-tolerant Cholesky and its inverse, and the rank-one accumulation of
// cross-products. Each is compared, in the same run, with a baseline: LAPACK
// (dpotrf, dpotri, dsyrk) where it was found at configure time, and a plain
// loop over the packed triangle for the accumulation.

#include <benchmark/benchmark.h>

#include <vector>

#include "qx/foundation/internal/benchmarkratio.h"
#include "qx/matrices/internal/benchmarkdata.h"
#include "qx/matrices/qxbitset.h"
#include "qx/matrices/qxsymmatrix.h"

namespace QXMath_850 {
namespace {

constexpr int kCases = 10000;

// Random cases, row-major: kCases rows of p values.
std::vector<double> RandomCases(int p, unsigned seed) {
  return internal::RandomVector(static_cast<size_t>(kCases) * p, seed);
}

using internal::RandomSpd;
using internal::SetFlops;
using internal::ToFull;

void BM_SweepOnMany(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const QXSymMatrix original = RandomSpd(n);
  for (auto _ : state) {
    QXSymMatrix a = original;
    QXBitSet swept(n);
    double logDet = 0.0;
    benchmark::DoNotOptimize(a.SweepOnMany(n, 1e-12, true, swept, logDet, true, nullptr));
    benchmark::DoNotOptimize(logDet);
  }
  SetFlops(state, 1.0 * n * n * n);  // each sweep updates about n*n/2 elements, 2 flops each
}

// The same sweep of all rows one row at a time, each a pass over the whole
// triangle.
void BM_SweepOnSelected(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const QXSymMatrix original = RandomSpd(n);
  std::vector<int> rows(n);
  for (int i = 0; i < n; ++i)
    rows[i] = i;
  for (auto _ : state) {
    QXSymMatrix a = original;
    QXBitSet swept(n);
    benchmark::DoNotOptimize(a.SweepOnSelected(rows, 1e-12, swept, true, nullptr));
  }
  SetFlops(state, 1.0 * n * n * n);
}

void BM_LTChol(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const QXSymMatrix original = RandomSpd(n);
  std::vector<double> diag;
  original.GetDiagonal(diag);
  for (auto _ : state) {
    QXSymMatrix a = original;
    benchmark::DoNotOptimize(a.LTChol(diag, 1e-12, false));
  }
  SetFlops(state, n * double(n) * n / 3.0);
}

void BM_CholInverse(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const QXSymMatrix original = RandomSpd(n);
  std::vector<double> diag;
  original.GetDiagonal(diag);
  QXSymMatrix inverse;
  for (auto _ : state) {
    benchmark::DoNotOptimize(original.CholInverse(diag, 1e-12, inverse));
  }
  SetFlops(state, 1.0 * n * n * n);
}

// Accumulates kCases random cases of p values into a fresh matrix, one
// rank-one update per case.
template <typename Update>
void AccumulateCases(benchmark::State& state, Update update) {
  const int p = static_cast<int>(state.range(0));
  const std::vector<double> cases = RandomCases(p, 7u);
  std::vector<double> x(p);
  for (auto _ : state) {
    QXSymMatrix a(p, true);
    for (int c = 0; c < kCases; ++c)
      update(a, cases.data() + static_cast<long>(c) * p, x);
    benchmark::DoNotOptimize(a.AsVector().data());
  }
  SetFlops(state, double(kCases) * p * (p + 1));
}

void BM_UpdateXX(benchmark::State& state) {
  AccumulateCases(state, [](QXSymMatrix& a, const double* row, std::vector<double>& x) {
    std::copy(row, row + x.size(), x.begin());
    a.UpdateXX(x, 1.0);
  });
}

void BM_IncrementByVV(benchmark::State& state) {
  AccumulateCases(state, [](QXSymMatrix& a, const double* row, std::vector<double>&) {
    a.IncrementByVV(row, 1.0);
  });
}

// The plain loop a caller would otherwise write over the packed triangle.
void BM_PlainPackedLoop(benchmark::State& state) {
  const int p = static_cast<int>(state.range(0));
  const std::vector<double> cases = RandomCases(p, 7u);
  for (auto _ : state) {
    std::vector<double> packed(static_cast<size_t>(p) * (p + 1) / 2, 0.0);
    for (int c = 0; c < kCases; ++c) {
      const double* x = cases.data() + static_cast<long>(c) * p;
      size_t pos = 0;
      for (int i = 0; i < p; ++i) {
        const double wx = 1.0 * x[i];
        for (int j = 0; j <= i; ++j)
          packed[pos++] += wx * x[j];
      }
    }
    benchmark::DoNotOptimize(packed.data());
  }
  SetFlops(state, double(kCases) * p * (p + 1));
}

BENCHMARK(BM_SweepOnMany)->Arg(100)->Arg(300)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SweepOnSelected)->Arg(100)->Arg(300)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LTChol)->Arg(100)->Arg(300)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CholInverse)->Arg(100)->Arg(300)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_UpdateXX)->Arg(100)->Arg(500)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_IncrementByVV)->Arg(100)->Arg(500)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PlainPackedLoop)->Arg(100)->Arg(500)->Unit(benchmark::kMillisecond);
QX_BENCHMARK_RATIO("BM_UpdateXX", "BM_PlainPackedLoop");
QX_BENCHMARK_RATIO("BM_IncrementByVV", "BM_PlainPackedLoop");

#if defined(QX_HAVE_LAPACK)
// LAPACK Cholesky factor (dpotrf), and with `invert` the inverse from it
// (dpotri): the work of LTChol, and of a full sweep or CholInverse.
void LapackCholesky(benchmark::State& state, bool invert) {
  const int n = static_cast<int>(state.range(0));
  internal::LapackCholesky(state, ToFull(RandomSpd(n)), n, invert);
  SetFlops(state, invert ? 1.0 * n * n * n : n * double(n) * n / 3.0);
}

void BM_LapackPotrfPotri(benchmark::State& state) {
  LapackCholesky(state, true);
}
void BM_LapackPotrf(benchmark::State& state) {
  LapackCholesky(state, false);
}

// Cross-products of all cases in one BLAS-3 call (the cases are row-major,
// which is the transposed column-major p-by-kCases matrix dsyrk wants).
void BM_BlasDsyrk(benchmark::State& state) {
  const int p = static_cast<int>(state.range(0));
  const std::vector<double> cases = RandomCases(p, 7u);
  const int k = kCases;
  const double one = 1.0, zero = 0.0;
  std::vector<double> c(static_cast<size_t>(p) * p);
  for (auto _ : state) {
    dsyrk_("L", "N", &p, &k, &one, cases.data(), &p, &zero, c.data(), &p);
    benchmark::DoNotOptimize(c.data());
  }
  SetFlops(state, double(kCases) * p * (p + 1));
}

BENCHMARK(BM_LapackPotrfPotri)->Arg(100)->Arg(300)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LapackPotrf)->Arg(100)->Arg(300)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_BlasDsyrk)->Arg(100)->Arg(500)->Unit(benchmark::kMillisecond);
QX_BENCHMARK_RATIO("BM_SweepOnMany", "BM_LapackPotrfPotri");
QX_BENCHMARK_RATIO("BM_SweepOnSelected", "BM_LapackPotrfPotri");
QX_BENCHMARK_RATIO("BM_CholInverse", "BM_LapackPotrfPotri");
QX_BENCHMARK_RATIO("BM_LTChol", "BM_LapackPotrf");
QX_BENCHMARK_RATIO("BM_UpdateXX", "BM_BlasDsyrk");
QX_BENCHMARK_RATIO("BM_IncrementByVV", "BM_BlasDsyrk");
#endif

}  // namespace
}  // namespace QXMath_850
