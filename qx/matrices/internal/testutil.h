#ifndef QX_MATRICES_INTERNAL_TESTUTIL_H
#define QX_MATRICES_INTERNAL_TESTUTIL_H

// Test support shared by the matrix tests; never installed.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <random>
#include <vector>

#include "qx/matrices/internal/kernels.h"
#include "qx/matrices/qxrectmatrix.h"
#include "qx/matrices/qxsymmatrix.h"

namespace QXMath_850 {
namespace internal {

// Random values of either sign from 10^-maxExponent to 10^maxExponent, so
// that a changed order of additions shows in a sum.
inline std::vector<double> WideRangeData(int size, unsigned seed, int maxExponent) {
  std::mt19937 gen(seed);
  std::uniform_real_distribution<double> mant(-1.0, 1.0);
  std::uniform_int_distribution<int> expo(-maxExponent, maxExponent);
  std::vector<double> v(size);
  for (double& d : v)
    d = mant(gen) * std::pow(10.0, expo(gen));
  return v;
}

// The matrix whose packed lower triangle is `packed`.
inline QXSymMatrix Packed(const std::vector<double>& packed) {
  int n = 0;
  while (static_cast<std::size_t>(n) * (n + 1) / 2 < packed.size())
    ++n;
  QXSymMatrix a(n, true);
  a.AsVector() = packed;
  return a;
}

// Q diag(lambda) Q^T as a full, exactly symmetric n by n array, Q the
// product of two random Householder reflections. Everything is accumulated
// in long double, so that lambda is the spectrum to working precision.
inline std::vector<double> WithSpectrum(const std::vector<double>& lambda, unsigned seed) {
  const int n = static_cast<int>(lambda.size());
  std::mt19937_64 engine(seed);
  std::normal_distribution<double> normal(0.0, 1.0);
  std::vector<long double> q(static_cast<std::size_t>(n) * n, 0.0L), v(n);
  for (int i = 0; i < n; ++i)
    q[i * n + i] = 1.0L;
  for (int pass = 0; pass < 2; ++pass) {
    long double vv = 0.0L;
    for (long double& x : v) {
      x = normal(engine);
      vv += x * x;
    }
    for (int j = 0; j < n; ++j) {
      long double dot = 0.0L;
      for (int i = 0; i < n; ++i)
        dot += v[i] * q[i * n + j];
      for (int i = 0; i < n; ++i)
        q[i * n + j] -= 2.0L * v[i] * dot / vv;
    }
  }
  std::vector<double> h(static_cast<std::size_t>(n) * n);
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j <= i; ++j) {
      long double sum = 0.0L;
      for (int k = 0; k < n; ++k)
        sum += q[i * n + k] * lambda[k] * q[j * n + k];
      h[i * n + j] = h[j * n + i] = static_cast<double>(sum);
    }
  }
  return h;
}

// True when the two doubles have the same bits: a reordered sum shows here
// even where it compares equal.
inline bool SameBits(double a, double b) {
  std::uint64_t x, y;
  std::memcpy(&x, &a, sizeof x);
  std::memcpy(&y, &b, sizeof y);
  return x == y;
}

// True when the two vectors hold the same bits, element by element.
inline bool SameBitsAll(const std::vector<double>& a, const std::vector<double>& b) {
  if (a.size() != b.size()) return false;
  for (std::size_t k = 0; k < a.size(); ++k) {
    if (!SameBits(a[k], b[k])) return false;
  }
  return true;
}

// Largest |a_k - b_k| over two vectors of one length.
inline double MaxDiff(const std::vector<double>& a, const std::vector<double>& b) {
  double worst = 0.0;
  for (std::size_t k = 0; k < a.size(); ++k)
    worst = std::fmax(worst, std::fabs(a[k] - b[k]));
  return worst;
}

// The full square of a symmetric matrix of any structure, row by row.
inline std::vector<double> Full(const IQXSymMatrix& a) {
  const int n = a.GetNRows();
  std::vector<double> full(static_cast<std::size_t>(n) * n);
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j < n; ++j)
      full[static_cast<std::size_t>(i) * n + j] = a.GetElem(i, j);
  }
  return full;
}

// The kinds of test matrix: wide-ranging random values, small integers
// (every product exact), and the exact integer product X X^T of rank n / 2.
enum class Kind { kRandom, kInteger, kRankDeficient };

inline QXSymMatrix TestMatrix(int n, unsigned seed, Kind kind) {
  QXSymMatrix a(n, true);
  std::mt19937 gen(seed);
  std::uniform_int_distribution<int> small(-9, 9);
  if (kind == Kind::kRandom) {
    a.AsVector() = WideRangeData(static_cast<int>(a.AsVectorConst().size()), seed, 3);
  } else if (kind == Kind::kInteger) {
    for (double& x : a.AsVector())
      x = small(gen);
  } else {
    const int rank = n / 2;
    std::vector<double> x(static_cast<std::size_t>(n) * rank);
    for (double& v : x)
      v = small(gen);
    for (int i = 0; i < n; ++i) {
      for (int j = 0; j <= i; ++j) {
        double s = 0.0;
        for (int k = 0; k < rank; ++k)
          s += x[i * rank + k] * x[j * rank + k];
        a.SetElem(i, j, s);
      }
    }
  }
  return a;
}

// A positive definite matrix of order n with small integer elements, its
// diagonal dominating each row.
inline QXSymMatrix SpdMatrix(int n, unsigned seed) {
  QXSymMatrix a = TestMatrix(n, seed, Kind::kInteger);
  a.AddToDiagonal(10.0 * n);
  return a;
}

// A dense rows by cols matrix of wide-ranging values.
inline QXRectMatrix TestRect(int rows, int cols, unsigned seed) {
  QXRectMatrix r(rows, cols, true);
  if (rows > 0 && cols > 0) r.AsVector() = WideRangeData(rows * cols, seed, 2);
  return r;
}

// Runs f(path) with the kernels forced onto each path the processor runs,
// the narrowest first, and leaves the widest in place. Only for test
// programs linked with the library's objects (qx_add_internal_tests).
template <typename F>
void ForEachKernelPath(F&& f) {
  const KernelPath best = BestKernelPath();
  for (KernelPath path : {KernelPath::kSse2, KernelPath::kAvx2, KernelPath::kAvx512}) {
    if (!ForceKernelPath(path)) continue;
    f(path);
  }
  ForceKernelPath(best);
}

// A v for either kind of dense matrix.
inline std::vector<double> Times(const QXSymMatrix& a, const std::vector<double>& v) {
  std::vector<double> out;
  a.ComputeSV(v, out);
  return out;
}
inline std::vector<double> Times(const QXRectMatrix& a, const std::vector<double>& v) {
  std::vector<double> out;
  a.ComputeRV(v, out);
  return out;
}

// Largest |A x - b| relative to the largest |b|.
template <typename Matrix>
double RelResidual(const Matrix& a, const std::vector<double>& x, const std::vector<double>& b) {
  const std::vector<double> ax = Times(a, x);
  if (ax.size() != b.size()) return HUGE_VAL;
  double worst = 0.0, scale = 0.0;
  for (std::size_t i = 0; i < b.size(); ++i) {
    worst = std::fmax(worst, std::fabs(ax[i] - b[i]));
    scale = std::fmax(scale, std::fabs(b[i]));
  }
  return worst / scale;
}

// b = A y for half-integers y of A's column count: a consistent right-hand
// side, exact for integer A, with no element of y 0.0.
template <typename Matrix>
std::vector<double> ConsistentRhs(const Matrix& a, int cols) {
  std::vector<double> y(cols);
  for (int i = 0; i < cols; ++i)
    y[i] = (i * 7 % 11) - 5.5;
  return Times(a, y);
}

}  // namespace internal
}  // namespace QXMath_850

#endif  // QX_MATRICES_INTERNAL_TESTUTIL_H
