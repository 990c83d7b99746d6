#ifndef QX_MATRICES_INTERNAL_BENCHMARKDATA_H
#define QX_MATRICES_INTERNAL_BENCHMARKDATA_H

// Data and baselines shared by the matrix benchmark programs (never
// installed): well-conditioned random matrices, their full column-major
// copies for BLAS and LAPACK, and the LAPACK Cholesky loop. The reference
// routines are declared in lapackbaseline.h.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <random>
#include <vector>

#include "qx/matrices/internal/lapackbaseline.h"
#include "qx/matrices/qxsymmatrix.h"

namespace QXMath_850 {
namespace internal {

// A well-conditioned positive definite matrix of order n: X'X/m + I from
// m = 2n random cases.
inline QXSymMatrix RandomSpd(int n, unsigned seed = 12345u) {
  std::mt19937_64 engine(seed + n);
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

// n standard normal values.
inline std::vector<double> RandomVector(std::size_t n, unsigned seed) {
  std::mt19937_64 engine(seed);
  std::normal_distribution<double> normal(0.0, 1.0);
  std::vector<double> v(n);
  for (double& x : v)
    x = normal(engine);
  return v;
}

// The full square of a symmetric matrix of any structure, column-major (and
// so also row-major).
inline std::vector<double> ToFull(const IQXSymMatrix& a) {
  const int n = a.GetNRows();
  std::vector<double> full(static_cast<std::size_t>(n) * n);
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j < n; ++j)
      full[static_cast<std::size_t>(j) * n + i] = a.GetElem(i, j);
  }
  return full;
}

inline void SetFlops(benchmark::State& state, double flopsPerIteration) {
  state.counters["flops"] =
      benchmark::Counter(flopsPerIteration, benchmark::Counter::kIsIterationInvariantRate);
}

#if defined(QX_HAVE_LAPACK)
// The LAPACK Cholesky factor (dpotrf) of the full column-major square of
// order n, and with `invert` the inverse from it (dpotri), on a fresh copy
// in each iteration.
inline void LapackCholesky(benchmark::State& state, const std::vector<double>& full, int n,
                           bool invert) {
  int info = 0;
  for (auto _ : state) {
    std::vector<double> a = full;
    dpotrf_("L", &n, a.data(), &n, &info);
    if (invert) dpotri_("L", &n, a.data(), &n, &info);
    benchmark::DoNotOptimize(a.data());
  }
}
#endif

}  // namespace internal
}  // namespace QXMath_850

#endif  // QX_MATRICES_INTERNAL_BENCHMARKDATA_H
