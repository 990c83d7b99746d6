// Speed of the LINPACK factorizations at orders 100, 300 and 1000, each
// beside the LAPACK routine that does the same job, measured in the same run
// where LAPACK was found at configure time: Dgefa and Dgesl against dgetrf
// and dgetrs, Dpofa against dpotrf, Dqrdc with pivoting against dgeqp3, and
// Dsvdc against dgesvd, with and without the singular vectors.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <vector>

#include "qx/foundation/internal/benchmarkratio.h"
#include "qx/matrices/internal/lapackbaseline.h"
#include "qx/matrices/linpack_d.h"

namespace QXMath_850 {
namespace {

using internal::RandomSquare;

void Flops(benchmark::State& state, double perIteration) {
  state.counters["flops"] =
      benchmark::Counter(perIteration, benchmark::Counter::kIsIterationInvariantRate);
}

void BM_DgefaDgesl(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const std::vector<double> original = RandomSquare(n, 1u, false);
  std::vector<int> ipvt(n);
  std::vector<double> b(n);
  for (auto _ : state) {
    std::vector<double> a = original;
    std::fill(b.begin(), b.end(), 1.0);
    benchmark::DoNotOptimize(Linpack::Dgefa(a.data(), n, n, ipvt.data()));
    Linpack::Dgesl(a.data(), n, n, ipvt.data(), b.data(), 0);
    benchmark::DoNotOptimize(b.data());
  }
  Flops(state, 2.0 * n * n * n / 3.0);
}

void BM_Dpofa(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const std::vector<double> original = RandomSquare(n, 2u, true);
  for (auto _ : state) {
    std::vector<double> a = original;
    benchmark::DoNotOptimize(Linpack::Dpofa(a.data(), n, n));
  }
  Flops(state, n * double(n) * n / 3.0);
}

void BM_Dqrdc(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const std::vector<double> original = RandomSquare(n, 3u, false);
  std::vector<double> qraux(n), work(n);
  std::vector<int> jpvt(n);
  for (auto _ : state) {
    std::vector<double> a = original;
    std::fill(jpvt.begin(), jpvt.end(), 0);
    Linpack::Dqrdc(a.data(), n, n, n, qraux.data(), jpvt.data(), work.data(), 1);
    benchmark::DoNotOptimize(a.data());
  }
  Flops(state, 4.0 * n * n * n / 3.0);
}

// job 11 (all vectors) or 0 (values only).
void Svd(benchmark::State& state, int job) {
  const int n = static_cast<int>(state.range(0));
  const std::vector<double> original = RandomSquare(n, 4u, false);
  std::vector<double> s(n + 1), e(n + 1), u(job ? n * n : 1), v(job ? n * n : 1), work(n);
  for (auto _ : state) {
    std::vector<double> a = original;
    benchmark::DoNotOptimize(Linpack::Dsvdc(a.data(), n, n, n, s.data(), e.data(), u.data(), n,
                                            v.data(), n, work.data(), job));
  }
}

void BM_Dsvdc(benchmark::State& state) {
  Svd(state, 11);
}
void BM_DsvdcValues(benchmark::State& state) {
  Svd(state, 0);
}

#define QX_ORDERS ->Arg(100)->Arg(300)->Arg(1000)->Unit(benchmark::kMillisecond)
BENCHMARK(BM_DgefaDgesl) QX_ORDERS;
BENCHMARK(BM_Dpofa) QX_ORDERS;
BENCHMARK(BM_Dqrdc) QX_ORDERS;
BENCHMARK(BM_Dsvdc) QX_ORDERS;
BENCHMARK(BM_DsvdcValues) QX_ORDERS;

#if defined(QX_HAVE_LAPACK)
void BM_DgetrfDgetrs(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const std::vector<double> original = RandomSquare(n, 1u, false);
  std::vector<int> ipiv(n);
  std::vector<double> b(n);
  const int one = 1;
  int info = 0;
  for (auto _ : state) {
    std::vector<double> a = original;
    std::fill(b.begin(), b.end(), 1.0);
    dgetrf_(&n, &n, a.data(), &n, ipiv.data(), &info);
    dgetrs_("N", &n, &one, a.data(), &n, ipiv.data(), b.data(), &n, &info);
    benchmark::DoNotOptimize(b.data());
  }
  Flops(state, 2.0 * n * n * n / 3.0);
}

void BM_Dpotrf(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const std::vector<double> original = RandomSquare(n, 2u, true);
  int info = 0;
  for (auto _ : state) {
    std::vector<double> a = original;
    dpotrf_("U", &n, a.data(), &n, &info);
    benchmark::DoNotOptimize(a.data());
  }
  Flops(state, n * double(n) * n / 3.0);
}

void BM_Dgeqp3(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const std::vector<double> original = RandomSquare(n, 3u, false);
  std::vector<double> tau(n), work(1);
  std::vector<int> jpvt(n, 0);
  int lwork = -1, info = 0;
  std::vector<double> a = original;
  dgeqp3_(&n, &n, a.data(), &n, jpvt.data(), tau.data(), work.data(), &lwork, &info);
  lwork = static_cast<int>(work[0]);
  work.resize(lwork);
  for (auto _ : state) {
    a = original;
    std::fill(jpvt.begin(), jpvt.end(), 0);
    dgeqp3_(&n, &n, a.data(), &n, jpvt.data(), tau.data(), work.data(), &lwork, &info);
    benchmark::DoNotOptimize(a.data());
  }
  Flops(state, 4.0 * n * n * n / 3.0);
}

// "A" (all vectors) or "N" (values only).
void LapackSvd(benchmark::State& state, const char* job) {
  const int n = static_cast<int>(state.range(0));
  const std::vector<double> original = RandomSquare(n, 4u, false);
  const bool vectors = job[0] == 'A';
  std::vector<double> s(n), u(vectors ? n * n : 1), vt(vectors ? n * n : 1), work(1);
  int lwork = -1, info = 0;
  std::vector<double> a = original;
  dgesvd_(job, job, &n, &n, a.data(), &n, s.data(), u.data(), &n, vt.data(), &n, work.data(),
          &lwork, &info);
  lwork = static_cast<int>(work[0]);
  work.resize(lwork);
  for (auto _ : state) {
    a = original;
    dgesvd_(job, job, &n, &n, a.data(), &n, s.data(), u.data(), &n, vt.data(), &n, work.data(),
            &lwork, &info);
    benchmark::DoNotOptimize(s.data());
  }
}

void BM_Dgesvd(benchmark::State& state) {
  LapackSvd(state, "A");
}
void BM_DgesvdValues(benchmark::State& state) {
  LapackSvd(state, "N");
}

BENCHMARK(BM_DgetrfDgetrs) QX_ORDERS;
BENCHMARK(BM_Dpotrf) QX_ORDERS;
BENCHMARK(BM_Dgeqp3) QX_ORDERS;
BENCHMARK(BM_Dgesvd) QX_ORDERS;
BENCHMARK(BM_DgesvdValues) QX_ORDERS;
QX_BENCHMARK_RATIO("BM_DgefaDgesl", "BM_DgetrfDgetrs");
QX_BENCHMARK_RATIO("BM_Dpofa", "BM_Dpotrf");
QX_BENCHMARK_RATIO("BM_Dqrdc", "BM_Dgeqp3");
QX_BENCHMARK_RATIO("BM_Dsvdc", "BM_Dgesvd");
QX_BENCHMARK_RATIO("BM_DsvdcValues", "BM_DgesvdValues");
#endif

}  // namespace
}  // namespace QXMath_850
