#ifndef QX_FOUNDATION_QXMISSINGVALUE_H
#define QX_FOUNDATION_QXMISSINGVALUE_H

#include "qx/foundation/qxexport.h"

namespace QXCommon_850 {

// The library's missing-value sentinel: the most negative finite double,
// -1.7976931348623157e+308 (bits 0xFFEFFFFFFFFFFFFF), tested by exact
// equality. It is set by a static initializer when the library loads; code
// that runs before that sees 0.0. The matrix arithmetic does not treat it
// specially: skipping missing values is the accumulators' and variables' job.
class QXCOMMON_API QXMV {
 public:
  static double gMissingValue;

  static double Missing();
  // Exact equality with the sentinel: NaN is not missing, and no tolerance.
  static bool IsMissing(double x);
};

}  // namespace QXCommon_850

#endif  // QX_FOUNDATION_QXMISSINGVALUE_H
