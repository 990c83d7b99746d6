#ifndef QX_MATRICES_INTERNAL_FACTORIZATION_H
#define QX_MATRICES_INTERNAL_FACTORIZATION_H

// Pieces of the Cholesky work that the symmetric matrices share: the
// determinant held as det[0] * 10^det[1], so that no product of pivots
// overflows, and the inverse through a factored copy. Never installed.

#include <cmath>

#include "qx/matrices/qxsymmatrix.h"

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

// The CholInverse forms of a class Matrix with type tag `tag`: inverse,
// which must be of the same class, takes a copy of source that
// factor(target) factors; then the factor is inverted in place and L^-T L^-1
// formed. The number of rows kept, -1 for a target of another class, or
// factor's negative code.
template <typename Matrix, typename Factor>
int FactorAndInvert(const Matrix& source, int tag, IQXSymMatrix& inverse, Factor factor) {
  if (inverse.GetType() != tag) return -1;
  const int n = source.Matrix::GetNRows();  // this class's count, not an override's
  Matrix& target = static_cast<Matrix&>(inverse);
  target = source;
  const int r = factor(target);
  if (r < 0) return r;
  double det[2] = {0.0, 0.0};
  target.LTDetInverse(det, 10);
  target.LTLTransL();
  return n - r;
}

}  // namespace internal
}  // namespace QXMath_850

#endif  // QX_MATRICES_INTERNAL_FACTORIZATION_H
