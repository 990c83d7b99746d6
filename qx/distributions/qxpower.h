#ifndef QX_DISTRIBUTIONS_QXPOWER_H
#define QX_DISTRIBUTIONS_QXPOWER_H

#include "qx/foundation/qxexport.h"

namespace QXMath_850 {

// The library's guarded arithmetic: an exponential and a power that report
// underflow, overflow and domain errors by return code instead of producing
// infinities, a product through logarithms, and the relative closeness test
// that iterative routines use. Its limits are shared by all distribution code.
class QXCOMMON_API QXPower {
 public:
  static constexpr double gMachineEpsilon = 2.220446049250313e-16;
  // Largest and smallest arguments handed to exp.
  static constexpr double gMachineMaxExp = 709.0;
  static constexpr double gMachineMinExp = -708.39;
  static constexpr int gMachineMaxInt = 2147483647;

  // True when a and b have the same sign and differ by at most
  // scale * gMachineEpsilon relative to the larger magnitude; a zero a is
  // equal only to a zero b, and a zero b to nothing else.
  static bool AlmostEqual(double a, double b, double scale);
  // True when x is (to scale epsilons) one over an odd, resp. even, integer.
  static bool IsOneOverOddInteger(double x, double scale);
  static bool IsOneOverEvenInteger(double x, double scale);

  // out = exp(x). 0 computed; 1 underflow (x below gMachineMinExp, out = 0);
  // 2 overflow (x above gMachineMaxExp, out = the missing value).
  static int Exponent(double x, double& out);
  // a * b through logarithms: 0 if either is 0, the missing value on overflow.
  static double Multiply(double a, double b);
  // out = base^e. Codes: 0 computed, 1 underflow (out 0), 2 overflow (out
  // missing), 3 overflow with a negative base and e > 0, 4 a negative base
  // with e neither whole nor one over an odd integer, 5 a negative base with
  // e = 0 (out 1), 6 a zero base with a negative exponent, 7 0^0 (out 1).
  static int Power(double base, double e, double& out);
};

}  // namespace QXMath_850

#endif  // QX_DISTRIBUTIONS_QXPOWER_H
