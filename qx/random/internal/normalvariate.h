#ifndef QX_RANDOM_INTERNAL_NORMALVARIATE_H
#define QX_RANDOM_INTERNAL_NORMALVARIATE_H

// The standard normal generator shared by QXRandomValues (on a QXURandom) and
// QXRNGNormal (on a QXRNGenerator); each draws from its own source.

#include <algorithm>
#include <cmath>

#include "qx/foundation/qxmissingvalue.h"

namespace QXMath_850 {
namespace internal {

// Bound on the rounds of any rejection loop of the variate generators. A
// working source never comes near it; a degenerate one (a congruential state
// of 0 gives 0 for ever) would otherwise hang the draw.
constexpr long kMaxRejections = 1000000;

// The auxiliary density of Kinderman and Ramage's method: the normal density
// less its triangular part, never below 0.
inline double KRAuxDensity(double x) {
  if (x == 0.0) return 0.0;
  const double v = std::exp(x * -0.5 * x) * 0.3989422804014327 -
                   0.180025191068563 * std::max(2.216035867166471 - std::fabs(x), 0.0);
  return std::max(0.0, v);
}

// Kinderman and Ramage (1976), "Computer generation of normal random
// variables", JASA 71, 893-896: a triangle covering 88% of draws, three
// rejection regions and a tail. `uniform()` gives the next uniform value.
// The missing value if a rejection loop runs past kMaxRejections.
template <class Uniform>
double KindermanRamage(Uniform uniform) {
  const double a = 2.216035867166471;
  const double u = uniform();
  if (u < 0.884070402298758) {
    const double v = uniform();
    return (u * 1.13113163544418 + v) * a - a;
  }
  if (u >= 0.973310954173898) {
    // Tail beyond a, by Marsaglia's method on the rescaled exponential.
    for (long round = 0; round < kMaxRejections; ++round) {
      const double v = uniform();
      const double w = uniform();
      const double s = 2.455407482284127 - std::log(w);
      if (v * v * s <= 2.455407482284127) {
        const double z = std::sqrt(2.0 * s);
        return u >= 0.986655477086949 ? -z : z;
      }
    }
    return QXCommon_850::QXMV::Missing();
  }
  // The three middle regions differ only in their constants.
  double base, slope, accept, scale;
  bool needPositive = false;
  if (u < 0.911312780288703) {
    base = 0.479727404222441, slope = -0.59550713801594;
    accept = 0.805577924423817, scale = 0.053377549506886;
    needPositive = true;
  } else if (u < 0.958720824790463) {
    base = 0.479727404222441, slope = 1.10547366102207;
    accept = 0.87283497667179, scale = 0.049264496373128;
  } else {
    base = a, slope = -0.63083480192196;
    accept = 0.755591531667601, scale = 0.034240503750111;
  }
  for (long round = 0; round < kMaxRejections; ++round) {
    const double v = uniform();
    const double w = uniform();
    const double t = base + slope * std::min(v, w);
    if (std::max(v, w) <= accept ||
        ((!needPositive || t >= 0.0) && KRAuxDensity(t) >= std::fabs(v - w) * scale)) {
      return w <= v ? -t : t;
    }
  }
  return QXCommon_850::QXMV::Missing();
}

}  // namespace internal
}  // namespace QXMath_850

#endif  // QX_RANDOM_INTERNAL_NORMALVARIATE_H
