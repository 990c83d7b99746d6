// Speed of QXEigenValues::Compute at orders 100, 300 and 1000, values alone
// and with the eigenvectors, beside LAPACK's dsyev measured in the same run
// where LAPACK was found at configure time.

#include <benchmark/benchmark.h>

#include <vector>

#include "qx/foundation/internal/benchmarkratio.h"
#include "qx/matrices/internal/lapackbaseline.h"
#include "qx/matrices/qxeigenvalues.h"

namespace QXMath_850 {
namespace {

// A random symmetric matrix, packed and as a full column-major array.
QXSymMatrix RandomSymmetric(int n) {
  const std::vector<double> full = internal::RandomSquare(n, 9u, false);
  QXSymMatrix h(n, true);
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j <= i; ++j)
      h.SetElem(i, j, full[i + static_cast<std::size_t>(j) * n]);
  }
  return h;
}

void Eigen(benchmark::State& state, bool vectors) {
  const int n = static_cast<int>(state.range(0));
  QXEigenValues eig(RandomSymmetric(n), 1e-12, 30);
  std::vector<double> values;
  QXRectMatrix v;
  for (auto _ : state) {
    benchmark::DoNotOptimize(vectors ? eig.Compute(values, v) : eig.Compute(values));
  }
}

void BM_EigenValues(benchmark::State& state) {
  Eigen(state, false);
}
void BM_EigenVectors(benchmark::State& state) {
  Eigen(state, true);
}

BENCHMARK(BM_EigenValues)->Arg(100)->Arg(300)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EigenVectors)->Arg(100)->Arg(300)->Arg(1000)->Unit(benchmark::kMillisecond);

#if defined(QX_HAVE_LAPACK)
void Dsyev(benchmark::State& state, const char* jobz) {
  const int n = static_cast<int>(state.range(0));
  const QXSymMatrix h = RandomSymmetric(n);
  std::vector<double> original(static_cast<std::size_t>(n) * n), w(n), work(1);
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j < n; ++j)
      original[i + static_cast<std::size_t>(j) * n] = h.GetElem(i, j);
  }
  int lwork = -1, info = 0;
  std::vector<double> a = original;
  dsyev_(jobz, "L", &n, a.data(), &n, w.data(), work.data(), &lwork, &info);
  lwork = static_cast<int>(work[0]);
  work.resize(lwork);
  for (auto _ : state) {
    a = original;
    dsyev_(jobz, "L", &n, a.data(), &n, w.data(), work.data(), &lwork, &info);
    benchmark::DoNotOptimize(w.data());
  }
}

void BM_Dsyev(benchmark::State& state) {
  Dsyev(state, "N");
}
void BM_DsyevVectors(benchmark::State& state) {
  Dsyev(state, "V");
}

BENCHMARK(BM_Dsyev)->Arg(100)->Arg(300)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DsyevVectors)->Arg(100)->Arg(300)->Arg(1000)->Unit(benchmark::kMillisecond);
QX_BENCHMARK_RATIO("BM_EigenValues", "BM_Dsyev");
QX_BENCHMARK_RATIO("BM_EigenVectors", "BM_DsyevVectors");
#endif

}  // namespace
}  // namespace QXMath_850
