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

}  // namespace internal
}  // namespace QXMath_850

#endif  // QX_MATRICES_INTERNAL_TESTUTIL_H
