// Speed of the packed symmetric matrix's central operations: the full sweep,
// the rank-tolerant Cholesky and its inverse, and the rank-one accumulation of
// cross-products. Each is compared, in the same run, with a baseline: LAPACK
// (dpotrf, dpotri, dsyrk) where it was found at configure time, and a plain
// loop over the packed triangle for the accumulation.

#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include "qx/foundation/internal/benchmarkratio.h"
#include "qx/matrices/qxbitset.h"
#include "qx/matrices/qxsymmatrix.h"

#if defined(QX_HAVE_LAPACK)
extern "C" {
void dpotrf_(const char* uplo, const int* n, double* a, const int* lda, int* info);
void dpotri_(const char* uplo, const int* n, double* a, const int* lda, int* info);
void dsyrk_(const char* uplo, const char* trans, const int* n, const int* k, const double* alpha,
            const double* a, const int* lda, const double* beta, double* c, const int* ldc);
}
#endif

namespace QXMath_850 {
namespace {

constexpr int kCases = 10000;

// Random cases, row-major: kCases rows of p values.
std::vector<double> RandomCases(int p, unsigned seed) {
  std::mt19937_64 engine(seed);
  std::normal_distribution<double> normal(0.0, 1.0);
  std::vector<double> x(static_cast<size_t>(kCases) * p);
  for (double& v : x)
    v = normal(engine);
  return x;
}

// A well-conditioned positive definite matrix of order n: X'X/m + I from
// m = 2n random cases.
QXSymMatrix RandomSpd(int n) {
  std::mt19937_64 engine(12345u + n);
  std::normal_distribution<double> normal(0.0, 1.0);
  QXSymMatrix a(n, true);
  std::vector<double> x(n);
  for (int c = 0; c < 2 * n; ++c) {
    for (double& v : x)
      v = normal(engine);
    a.UpdateXX(x, 1.0 / (2 * n));
  }
  a.AddToDiagonal(1.0);
  return a;
}

// The same matrix as a full column-major array for LAPACK.
std::vector<double> ToFull(const QXSymMatrix& a) {
  const int n = a.GetNRows();
  std::vector<double> full(static_cast<size_t>(n) * n);
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j < n; ++j)
      full[static_cast<size_t>(j) * n + i] = a.GetElem(i, j);
  }
  return full;
}

void SetFlops(benchmark::State& state, double flopsPerIteration) {
  state.counters["flops"] =
      benchmark::Counter(flopsPerIteration, benchmark::Counter::kIsIterationInvariantRate);
}

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
  const std::vector<double> original = ToFull(RandomSpd(n));
  int info = 0;
  for (auto _ : state) {
    std::vector<double> a = original;
    dpotrf_("L", &n, a.data(), &n, &info);
    if (invert) dpotri_("L", &n, a.data(), &n, &info);
    benchmark::DoNotOptimize(a.data());
  }
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
QX_BENCHMARK_RATIO("BM_CholInverse", "BM_LapackPotrfPotri");
QX_BENCHMARK_RATIO("BM_LTChol", "BM_LapackPotrf");
QX_BENCHMARK_RATIO("BM_UpdateXX", "BM_BlasDsyrk");
QX_BENCHMARK_RATIO("BM_IncrementByVV", "BM_BlasDsyrk");
#endif

}  // namespace
}  // namespace QXMath_850
