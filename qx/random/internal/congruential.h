#ifndef QX_RANDOM_INTERNAL_CONGRUENTIAL_H
#define QX_RANDOM_INTERNAL_CONGRUENTIAL_H

// The portable congruential recurrence x' = 397204094 x mod (2^31 - 1), shared
// by QXURandom's congruential mode and QXRNGUCongruential.

#include <cmath>
#include <cstdint>

namespace QXMath_850 {
namespace internal {

// x' / 2^31 is the uniform value: the divisor is the power of two, not the
// modulus, so values lie in [0, 1 - 2^-31].
constexpr double kCongruentialScale = 4.656612873077393e-10;
constexpr double kCongruentialModulus = 2147483647.0;

// One step, entirely in double arithmetic with the multiplier split into
// 16-bit halves (Schrage's decomposition in floating point), so that the
// sequence does not depend on the width of integers. For 0 < x < 2^31 - 1 the
// result is exactly 397204094 x mod (2^31 - 1); 0 stays 0. Larger states (up
// to 2^64) are not reduced first: each step shrinks them by a factor of about
// 5.4 until they fall in range. Every intermediate stays well inside int64.
// std::floor, exactly, without a call into the C library on machines where
// floor is not one instruction: below 2^52 a non-negative double truncates to
// its floor, and from 2^52 on every double is whole.
inline double Floor(double v) {
  if (v >= 0.0 && v < 4503599627370496.0) {
    return static_cast<double>(static_cast<std::int64_t>(v));
  }
  return std::floor(v);
}

inline std::int64_t CongruentialNext(double x) {
  const double a = 397204094.0;
  const double h = Floor(x * 1.52587890625e-5);
  const double u = (x - 65536.0 * h) * a;
  const double g = Floor(u * 1.52587890625e-5);
  const double t = a * h + g;
  const double m = Floor(t * 3.0517578125e-5);
  std::int64_t next = static_cast<std::int64_t>(
      m + ((t - 32768.0 * m) * 65536.0 + (u - 65536.0 * g - 2147483647.0)));
  if (next < 0) next += 2147483647;
  return next;
}

}  // namespace internal
}  // namespace QXMath_850

#endif  // QX_RANDOM_INTERNAL_CONGRUENTIAL_H
