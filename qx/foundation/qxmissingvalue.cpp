#include "qx/foundation/qxmissingvalue.h"

#include "qx/foundation/internal/doublebits.h"

namespace QXCommon_850 {

double QXMV::gMissingValue = internal::DoubleFromBits(internal::kMissingValueBits);

double QXMV::Missing() {
  return gMissingValue;
}

bool QXMV::IsMissing(double x) {
  return x == gMissingValue;
}

}  // namespace QXCommon_850
