#ifndef QX_MATRICES_INTERNAL_SCALEDNORM_H
#define QX_MATRICES_INTERNAL_SCALEDNORM_H

// The one body of the two public Euclidean norms (Blas1::DNrm2 on raw arrays,
// QXMathFun::DNrm2 on vectors); never installed.

#include <cmath>
#include <cstddef>

namespace QXMath_850 {
namespace internal {

// BLAS DNRM2 by a running scale and a scaled sum of squares (Hammarling), so
// that no square overflows or underflows. Reads n elements from x on at the
// given stride, which the caller has already turned into a start; zero
// elements are skipped and a NaN counts as non-zero.
inline double ScaledNorm2(int n, const double* x, std::ptrdiff_t stride) {
  double scale = 0.0;
  double ssq = 1.0;
  std::ptrdiff_t ix = 0;
  for (int i = 0; i < n; ++i, ix += stride) {
    if (x[ix] != 0.0) {
      const double absx = std::fabs(x[ix]);
      if (absx > scale) {
        const double t = scale / absx;
        ssq = 1.0 + ssq * (t * t);
        scale = absx;
      } else {
        const double t = absx / scale;
        ssq = ssq + t * t;
      }
    }
  }
  return scale * std::sqrt(ssq);
}

}  // namespace internal
}  // namespace QXMath_850

#endif  // QX_MATRICES_INTERNAL_SCALEDNORM_H
