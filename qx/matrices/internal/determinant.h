#ifndef QX_MATRICES_INTERNAL_DETERMINANT_H
#define QX_MATRICES_INTERNAL_DETERMINANT_H

// The determinant held as det[0] * 10^det[1], the form in which the
// symmetric matrices return it so that no product of pivots overflows.
// Never installed.

#include <cmath>

namespace QXMath_850 {
namespace internal {

// Puts det[0] back into 1 <= |det[0]| < 10, counting the powers of ten in
// det[1]. A zero is left alone, and an infinite mantissa isn't divided
// forever.
inline void RenormalizeDeterminant(double* det) {
  if (det[0] == 0.0) return;
  while (std::fabs(det[0]) < 1.0) {
    det[0] = 10.0 * det[0];
    det[1] = det[1] - 1.0;
  }
  while (std::fabs(det[0]) >= 10.0 && std::isfinite(det[0])) {
    det[0] = det[0] / 10.0;
    det[1] = det[1] + 1.0;
  }
}

// Multiplies the factors into det, starting from (1, 0) and renormalizing
// after each; a zero product ends the walk with det = (0, 0). factor(i)
// gives the i-th of count factors.
template <typename Factor>
void DeterminantOfProduct(int count, Factor factor, double* det) {
  det[0] = 1.0;
  det[1] = 0.0;
  for (int i = 0; i < count; ++i) {
    det[0] = factor(i) * det[0];
    if (det[0] == 0.0) {
      det[1] = 0.0;
      return;
    }
    RenormalizeDeterminant(det);
  }
}

}  // namespace internal
}  // namespace QXMath_850

#endif  // QX_MATRICES_INTERNAL_DETERMINANT_H
