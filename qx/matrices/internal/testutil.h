#ifndef QX_MATRICES_INTERNAL_TESTUTIL_H
#define QX_MATRICES_INTERNAL_TESTUTIL_H

// Test support shared by the matrix tests; never installed.

#include <cmath>
#include <cstddef>
#include <random>
#include <vector>

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

}  // namespace internal
}  // namespace QXMath_850

#endif  // QX_MATRICES_INTERNAL_TESTUTIL_H
