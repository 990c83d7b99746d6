#ifndef QX_ACCUMULATORS_QXEXTREMENUM_H
#define QX_ACCUMULATORS_QXEXTREMENUM_H

#include "qx/foundation/qxexport.h"

namespace QXMath_850 {

// Arithmetic that would overflow or underflow if written the plain way.
class QXCOMMON_API QXExtremeNum {
 public:
  // sqrt(a*a*b + c*c*d), where b and d may be negative, scaled by the larger
  // of |a|sqrt(|b|) and |c|sqrt(|d|) so that no square overflows. False,
  // with `result` untouched, when the sum is negative (both b and d
  // negative, or the negative term the larger). A NaN b or d counts as not
  // negative.
  static bool SumSqRoot(double a, double b, double c, double d, double& result);
};

}  // namespace QXMath_850

#endif  // QX_ACCUMULATORS_QXEXTREMENUM_H
