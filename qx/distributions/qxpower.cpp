#include "qx/distributions/qxpower.h"

#include <algorithm>
#include <cmath>

#include "qx/foundation/qxmissingvalue.h"

namespace QXMath_850 {

using QXCommon_850::QXMV;

bool QXPower::AlmostEqual(double a, double b, double scale) {
  if (a == 0.0) return b == 0.0;
  if (b == 0.0) return false;
  if ((a < 0.0) != (b < 0.0)) return false;
  const double fa = std::fabs(a), fb = std::fabs(b);
  const double ratio = std::fabs(fa - fb) / std::max(fa, fb);
  return scale * gMachineEpsilon >= ratio;
}

bool QXPower::IsOneOverOddInteger(double x, double scale) {
  if (x == 0.0 || std::fabs(1.0 / x) > gMachineMaxInt) return false;
  const double d = (1.0 / x) * 0.5 + 0.5;
  return AlmostEqual(d, std::floor(d + 0.5), scale);
}

bool QXPower::IsOneOverEvenInteger(double x, double scale) {
  if (x == 0.0 || std::fabs(1.0 / x) > gMachineMaxInt) return false;
  const double d = (1.0 / x) * 0.5;
  return AlmostEqual(d, std::floor(d + 0.5), scale);
}

int QXPower::Exponent(double x, double& out) {
  if (x < gMachineMinExp) {
    out = 0.0;
    return 1;
  }
  if (x > gMachineMaxExp) {
    out = QXMV::Missing();
    return 2;
  }
  out = std::exp(x);
  return 0;
}

double QXPower::Multiply(double a, double b) {
  if (a == 0.0 || b == 0.0) return 0.0;
  double out;
  Exponent(std::log(std::fabs(a)) + std::log(std::fabs(b)), out);
  if ((a < 0.0) != (b < 0.0) && !QXMV::IsMissing(out)) out = -out;
  return out;
}

int QXPower::Power(double base, double e, double& out) {
  out = QXMV::Missing();
  if (base == 0.0) {
    if (e == 0.0) {
      out = 1.0;
      return 7;
    }
    if (e > 0.0) {
      out = 0.0;
      return 0;
    }
    return 6;
  }
  if (base > 0.0) {
    if (e == 0.0) {
      out = 1.0;
      return 0;
    }
    return Exponent(std::log(base) * e, out);
  }
  if (e == 0.0) {
    out = 1.0;
    return 5;
  }
  if (e <= gMachineMaxInt && e == std::floor(e)) {
    // A whole exponent: an even one gives a positive power.
    if (e / 2.0 == std::floor(e / 2.0)) return Exponent(std::log(-base) * e, out);
  } else if (!IsOneOverOddInteger(e, 32.0)) {
    return 4;
  }
  // An odd exponent or an odd root of a negative base: a negative power.
  int code = Exponent(std::log(-base) * e, out);
  if (!QXMV::IsMissing(out)) {
    out = -out;
  } else if (e > 0.0) {
    code = 3;
  }
  return code;
}

}  // namespace QXMath_850
