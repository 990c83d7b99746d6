#ifndef QX_DISTRIBUTIONS_INTERNAL_DISTFUNBASE_H
#define QX_DISTRIBUTIONS_INTERNAL_DISTFUNBASE_H

// Constants and small helpers shared by the source files of QXDistFun, one
// family of distributions per file; never installed.

#include <cmath>

#include "qx/foundation/qxmissingvalue.h"

namespace QXMath_850 {
namespace internal {

// Below this exponent the distribution functions take exp as 0.
constexpr double kExpFloor = -708.0;
constexpr double kPi = 3.141592653589793;
constexpr double kLn2 = 0.6931471805599453;
// log(sqrt(pi)) = lgamma(0.5).
constexpr double kLnSqrtPi = 0.5723649429247001;

inline double Missing() {
  return QXCommon_850::QXMV::Missing();
}
inline bool IsMissing(double x) {
  return QXCommon_850::QXMV::IsMissing(x);
}

// Sets the status of a computing routine (1 invalid argument, 2 no result,
// or a discrete function's own code) and gives the missing value with it.
inline double Fail(long& status, long code) {
  status = code;
  return Missing();
}

// exp(L), or 0 below the floor.
inline double ExpOrZero(double L) {
  return L < kExpFloor ? 0.0 : std::exp(L);
}

// A polynomial with coefficients from the highest degree down, by Horner.
template <int N>
double Horner(const double (&c)[N], double u) {
  double r = c[0];
  for (int k = 1; k < N; k++)
    r = r * u + c[k];
  return r;
}

// The public tier's answer from a call into the computing tier: its value,
// or the missing value for any nonzero status.
template <typename Call>
double ValueOrMissing(Call call) {
  long status;
  const double r = call(status);
  return status != 0 ? Missing() : r;
}

}  // namespace internal
}  // namespace QXMath_850

#endif  // QX_DISTRIBUTIONS_INTERNAL_DISTFUNBASE_H
