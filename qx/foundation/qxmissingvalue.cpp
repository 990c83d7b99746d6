#include "qx/foundation/qxmissingvalue.h"

#include <cstdint>
#include <cstring>

namespace QXCommon_850 {

namespace {
double SentinelFromBits() {
  const std::uint64_t bits = 0xFFEFFFFFFFFFFFFFULL;
  double value;
  std::memcpy(&value, &bits, sizeof value);
  return value;
}
}  // namespace

double QXMV::gMissingValue = SentinelFromBits();

double QXMV::Missing() {
  return gMissingValue;
}

bool QXMV::IsMissing(double x) {
  return x == gMissingValue;
}

}  // namespace QXCommon_850
