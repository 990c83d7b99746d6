// Speed of the symmetric products that components call most: the bilinear
// form v^T S w, the sandwich R S R^T and the factor's L^T S L. Each runs
// against a plain loop over the full square matrix, as a caller would write
// it, and against the BLAS (dsymv, dsymm with dgemm or dtrmm) on the full
// column-major matrix where it was found at configure time.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <vector>

#include "qx/foundation/internal/benchmarkratio.h"
#include "qx/matrices/internal/benchmarkdata.h"
#include "qx/matrices/qxrectmatrix.h"
#include "qx/matrices/qxsymmatrix.h"

namespace QXMath_850 {
namespace {

using internal::RandomSpd;
using internal::RandomVector;
using internal::SetFlops;
using internal::ToFull;

QXRectMatrix RandomRect(int rows, int cols, unsigned seed) {
  QXRectMatrix r(rows, cols, true);
  r.AsVector() = RandomVector(static_cast<std::size_t>(rows) * cols, seed);
  return r;
}

// The factor of a random positive definite matrix, and its full square.
QXSymMatrix RandomFactor(int n) {
  QXSymMatrix l = RandomSpd(n, 777u);
  std::vector<double> diag;
  l.GetDiagonal(diag);
  l.LTChol(diag, 1e-12, false);
  return l;
}

std::vector<double> FullLower(const QXSymMatrix& l) {
  const int n = l.GetNRows();
  std::vector<double> full = ToFull(l);
  for (int j = 0; j < n; ++j) {
    for (int i = 0; i < j; ++i)
      full[static_cast<std::size_t>(j) * n + i] = 0.0;
  }
  return full;
}

void BM_ComputeVSW(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const QXSymMatrix a = RandomSpd(n);
  const std::vector<double> v = RandomVector(n, 1u), w = RandomVector(n, 2u);
  for (auto _ : state)
    benchmark::DoNotOptimize(a.ComputeVSW(v, w));
  SetFlops(state, 2.0 * n * n);
}

void BM_PlainVSW(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const std::vector<double> f = ToFull(RandomSpd(n));
  const std::vector<double> v = RandomVector(n, 1u), w = RandomVector(n, 2u);
  for (auto _ : state) {
    double s = 0.0;
    for (int i = 0; i < n; ++i) {
      const double* row = f.data() + static_cast<std::size_t>(i) * n;
      double t = 0.0;
      for (int j = 0; j < n; ++j)
        t += v[j] * row[j];
      s += t * w[i];
    }
    benchmark::DoNotOptimize(s);
  }
  SetFlops(state, 2.0 * n * n);
}

void BM_ComputeRSRTrans(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const QXSymMatrix a = RandomSpd(n);
  const QXRectMatrix r = RandomRect(n, n, 3u);
  QXSymMatrix out;
  for (auto _ : state)
    benchmark::DoNotOptimize(a.ComputeRSRTrans(r, out));
  SetFlops(state, 3.0 * n * n * n);
}

// T = R S, then the lower triangle of T R^T, on full row-major squares.
void BM_PlainRSRTrans(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const std::vector<double> f = ToFull(RandomSpd(n));
  const std::vector<double> r = RandomRect(n, n, 3u).AsVectorConst();
  std::vector<double> t(static_cast<std::size_t>(n) * n), out(t.size());
  for (auto _ : state) {
    for (int i = 0; i < n; ++i) {
      double* ti = t.data() + static_cast<std::size_t>(i) * n;
      for (int j = 0; j < n; ++j)
        ti[j] = 0.0;
      for (int k = 0; k < n; ++k) {
        const double rik = r[static_cast<std::size_t>(i) * n + k];
        const double* fk = f.data() + static_cast<std::size_t>(k) * n;
        for (int j = 0; j < n; ++j)
          ti[j] += rik * fk[j];
      }
    }
    for (int i = 0; i < n; ++i) {
      const double* ti = t.data() + static_cast<std::size_t>(i) * n;
      for (int j = 0; j <= i; ++j) {
        const double* rj = r.data() + static_cast<std::size_t>(j) * n;
        double s = 0.0;
        for (int k = 0; k < n; ++k)
          s += ti[k] * rj[k];
        out[static_cast<std::size_t>(i) * n + j] = s;
      }
    }
    benchmark::DoNotOptimize(out.data());
  }
  SetFlops(state, 3.0 * n * n * n);
}

void BM_ComputeLTransSL(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const QXSymMatrix a = RandomSpd(n);
  const QXSymMatrix l = RandomFactor(n);
  QXSymMatrix out;
  for (auto _ : state)
    benchmark::DoNotOptimize(a.ComputeLTransSL(l, out, 1));
  SetFlops(state, 1.0 * n * n * n);
}

// T = S L over the lower triangle of L, then the lower triangle of L^T T,
// on full row-major squares.
void BM_PlainLTransSL(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const std::vector<double> f = ToFull(RandomSpd(n));
  const QXSymMatrix factor = RandomFactor(n);
  std::vector<double> l(static_cast<std::size_t>(n) * n, 0.0);
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j <= i; ++j)
      l[static_cast<std::size_t>(i) * n + j] = factor.GetElem(i, j);
  }
  std::vector<double> t(l.size()), out(l.size());
  for (auto _ : state) {
    for (int i = 0; i < n; ++i) {
      double* ti = t.data() + static_cast<std::size_t>(i) * n;
      for (int j = 0; j < n; ++j)
        ti[j] = 0.0;
      for (int k = 0; k < n; ++k) {
        const double fik = f[static_cast<std::size_t>(i) * n + k];
        const double* lk = l.data() + static_cast<std::size_t>(k) * n;
        for (int j = 0; j <= k; ++j)
          ti[j] += fik * lk[j];
      }
    }
    for (int u = 0; u < n; ++u) {
      double* ou = out.data() + static_cast<std::size_t>(u) * n;
      for (int c = 0; c <= u; ++c)
        ou[c] = 0.0;
      for (int r = u; r < n; ++r) {
        const double lru = l[static_cast<std::size_t>(r) * n + u];
        const double* tr = t.data() + static_cast<std::size_t>(r) * n;
        for (int c = 0; c <= u; ++c)
          ou[c] += lru * tr[c];
      }
    }
    benchmark::DoNotOptimize(out.data());
  }
  SetFlops(state, 1.0 * n * n * n);
}

#define QX_PRODUCT_SIZES ->Arg(50)->Arg(200)->Arg(1000)->Unit(benchmark::kMicrosecond)
BENCHMARK(BM_ComputeVSW) QX_PRODUCT_SIZES;
BENCHMARK(BM_PlainVSW) QX_PRODUCT_SIZES;
BENCHMARK(BM_ComputeRSRTrans) QX_PRODUCT_SIZES;
BENCHMARK(BM_PlainRSRTrans) QX_PRODUCT_SIZES;
BENCHMARK(BM_ComputeLTransSL) QX_PRODUCT_SIZES;
BENCHMARK(BM_PlainLTransSL) QX_PRODUCT_SIZES;
QX_BENCHMARK_RATIO("BM_ComputeVSW", "BM_PlainVSW");
QX_BENCHMARK_RATIO("BM_ComputeRSRTrans", "BM_PlainRSRTrans");
QX_BENCHMARK_RATIO("BM_ComputeLTransSL", "BM_PlainLTransSL");

#if defined(QX_HAVE_LAPACK)
// dsymv for S v, then the dot with w.
void BM_BlasDsymvVSW(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const std::vector<double> f = ToFull(RandomSpd(n));
  const std::vector<double> v = RandomVector(n, 1u), w = RandomVector(n, 2u);
  std::vector<double> y(n);
  const double one = 1.0, zero = 0.0;
  const int inc = 1;
  for (auto _ : state) {
    dsymv_("L", &n, &one, f.data(), &n, v.data(), &inc, &zero, y.data(), &inc);
    benchmark::DoNotOptimize(ddot_(&n, y.data(), &inc, w.data(), &inc));
  }
  SetFlops(state, 2.0 * n * n);
}

// dsymm for R S (R column-major is the row-major R transposed, so S R^T is
// formed), then dgemm for R (S R^T).
void BM_BlasDsymmRSRTrans(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const std::vector<double> f = ToFull(RandomSpd(n));
  const std::vector<double> rt = RandomRect(n, n, 3u).AsVectorConst();
  std::vector<double> t(rt.size()), out(rt.size());
  const double one = 1.0, zero = 0.0;
  for (auto _ : state) {
    dsymm_("L", "L", &n, &n, &one, f.data(), &n, rt.data(), &n, &zero, t.data(), &n);
    dgemm_("T", "N", &n, &n, &n, &one, rt.data(), &n, t.data(), &n, &zero, out.data(), &n);
    benchmark::DoNotOptimize(out.data());
  }
  SetFlops(state, 3.0 * n * n * n);
}

// dsymm for S L, then dtrmm for L^T (S L).
void BM_BlasDsymmLTransSL(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const std::vector<double> f = ToFull(RandomSpd(n));
  const std::vector<double> l = FullLower(RandomFactor(n));
  std::vector<double> t(l.size());
  const double one = 1.0, zero = 0.0;
  for (auto _ : state) {
    dsymm_("L", "L", &n, &n, &one, f.data(), &n, l.data(), &n, &zero, t.data(), &n);
    dtrmm_("L", "L", "T", "N", &n, &n, &one, l.data(), &n, t.data(), &n);
    benchmark::DoNotOptimize(t.data());
  }
  SetFlops(state, 1.0 * n * n * n);
}

BENCHMARK(BM_BlasDsymvVSW) QX_PRODUCT_SIZES;
BENCHMARK(BM_BlasDsymmRSRTrans) QX_PRODUCT_SIZES;
BENCHMARK(BM_BlasDsymmLTransSL) QX_PRODUCT_SIZES;
QX_BENCHMARK_RATIO("BM_ComputeVSW", "BM_BlasDsymvVSW");
QX_BENCHMARK_RATIO("BM_ComputeRSRTrans", "BM_BlasDsymmRSRTrans");
QX_BENCHMARK_RATIO("BM_ComputeLTransSL", "BM_BlasDsymmLTransSL");
#endif

}  // namespace
}  // namespace QXMath_850
