#ifndef QX_MATRICES_QXMATHFUN_H
#define QX_MATRICES_QXMATHFUN_H

#include <vector>

#include "qx/foundation/qxexport.h"

namespace QXMath_850 {

// Static numeric helpers on std::vector<double>: stride-based vector kernels
// with a start index, and the walkers of a packed lower triangle that the
// symmetric matrices use for their column walks, products and inverses.
//
// A walk of n elements from `start` at `stride` reads start, start + stride,
// ...; a negative stride starts at start + (1 - n) * stride, as in the BLAS.
// The "II" walkers instead advance by inc + t after step t = 0, 1, ..., so
// that with start at element (k, j) of a packed triangle (k*(k+1)/2 + j) and
// inc = k + 1 they go down column j. Only DASum checks its indices.
class QXCOMMON_API QXMathFun {
 public:
  // Sum of n elements from element 0 (BLAS start rule); n * x[0] at stride 0.
  static double DSum(int n, const std::vector<double>& x, int stride);
  // Sum of absolute values; an index outside x is skipped.
  static double DASum(int n, const std::vector<double>& x, int start, int stride);
  // x *= a.
  static void DScal(int n, double a, std::vector<double>& x, int start, int stride);
  // x = value.
  static void DLoad(int n, double value, std::vector<double>& x, int start, int stride);
  // Dot product.
  static double DDot(int n, const std::vector<double>& x, int xStart, int xStride,
                     const std::vector<double>& y, int yStart, int yStride);
  // y += a * x; nothing when a == 0.0.
  static void Daxpy(int n, double a, const std::vector<double>& x, int xStart, int xStride,
                    std::vector<double>& y, int yStart, int yStride);
  // Euclidean norm without overflow.
  static double DNrm2(int n, const std::vector<double>& x, int start, int stride);

  // Dot product on the growing walk; 0.0 for n < 1.
  static double IIDot(int n, const std::vector<double>& x, int xStart, int xInc,
                      const std::vector<double>& y, int yStart, int yInc);
  // y += a * x on the growing walk.
  static void IIAxpy(int n, double a, const std::vector<double>& x, int xStart, int xInc,
                     std::vector<double>& y, int yStart, int yInc);
  // x = value on the growing walk.
  static void IIInit(int n, double value, std::vector<double>& x, int start, int inc);
  // x *= a on the growing walk.
  static void IIScal(int n, double a, std::vector<double>& x, int start, int inc);
  // Clears count elements from start.
  static void LRZero(std::vector<double>& x, int start, int count);
  // Replaces the packed lower triangle L of order n by L^T L, in place.
  static void LTGltl(int n, std::vector<double>& l);
  // True if ref > 0 and |x| is below ref times the double precision epsilon.
  static bool QLReps(double x, double ref);

  // Quadratic form v^T S v of the packed symmetric S of order n, with v_j at
  // start + j * stride: the sum over rows i of RVD(row i) * v_i.
  static double VSV(int n, const std::vector<double>& s, const std::vector<double>& v, int start,
                    int stride);
  // Dot of the full symmetric row `row` of the packed S of order n with v_j at
  // start + j * stride, summed over j in order; 0.0 for a row outside 0..n-1.
  static double RVD(int n, const std::vector<double>& s, int row, const std::vector<double>& v,
                    int start, int stride);

  // ---- Special functions and searches (qxmathfun_special.cpp).

  // True for finite doubles, the missing value included; NaN and infinities
  // are not valid.
  static bool IsValidDouble(double x);
  // x if |x| >= t, otherwise t with the sign of x: small values are pushed
  // out to the limit.
  static double ReplaceIfSmall(double x, double t);
  // Largest |a[i] - b[i]| / (|b[i]| + d) over the shorter length, with d =
  // |den|, or 1e-06 when den is 0; 0 for an empty vector.
  static double VMaxRelDiff(const std::vector<double>& a, const std::vector<double>& b, double den);
  // Largest |a[i] - b[i]| over the shorter length (a maximum, not a sum).
  static double VNrm1Diff(const std::vector<double>& a, const std::vector<double>& b);
  // The largest and second largest value; both missing for an empty vector,
  // second missing for one element. A value equal to the largest so far
  // becomes the second.
  static void FindTwoLargest(const std::vector<double>& values, double& first, double& second);
  // The same over the values that are not missing.
  static void FindTwoLargestNonMiss(const std::vector<double>& values, double& first,
                                    double& second);
  // Position of value in the ascending values[lo..hi]: -2 for a bad range,
  // -1 when value lies beyond values[hi] (or at it, with `after`) or before
  // values[lo-1] (or at it, without `after`); otherwise the index of an
  // exact hit (plus one with `after`), or the insertion index.
  static int BinSearch(const std::vector<double>& values, int lo, int hi, double value, bool after);
  static int BinSearch(const std::vector<int>& values, int lo, int hi, int value, bool after);
  // Digamma and trigamma by the asymptotic series at x + 10 and the
  // recurrence; the missing value unless x > 1e-16.
  static double Digamma(double x);
  static double Trigamma(double x);
};

}  // namespace QXMath_850

#endif  // QX_MATRICES_QXMATHFUN_H
