#include "qx/accumulators/qxextremenum.h"

#include <cmath>

namespace QXMath_850 {

// With p = |a|sqrt(|b|) and q = |c|sqrt(|d|) the sum is +-p^2 +- q^2; the
// larger of p and q is taken out of the root, so only a ratio below 1 is
// squared.
bool QXExtremeNum::SumSqRoot(double a, double b, double c, double d, double& result) {
  const bool bNegative = b < 0.0;
  const bool dNegative = d < 0.0;
  if (bNegative && dNegative) return false;
  const double p = std::fabs(a) * std::sqrt(std::fabs(b));
  const double q = std::fabs(c) * std::sqrt(std::fabs(d));
  if (!bNegative && !dNegative) {
    if (p > q) {
      const double r = q / p;
      result = p * std::sqrt(r * r + 1.0);
    } else if (q > p) {
      const double r = p / q;
      result = q * std::sqrt(r * r + 1.0);
    } else {
      result = p * 1.4142135623730951;
    }
    return true;
  }
  // One term is subtracted: the positive one must be the larger.
  const double plus = bNegative ? q : p;
  const double minus = bNegative ? p : q;
  if (plus > minus) {
    const double r = minus / plus;
    result = plus * std::sqrt(1.0 - r * r);
  } else if (minus > plus) {
    return false;
  } else {
    result = 0.0;
  }
  return true;
}

}  // namespace QXMath_850
