#ifndef QX_FOUNDATION_INTERNAL_TRUNCATE_H
#define QX_FOUNDATION_INTERNAL_TRUNCATE_H

#include <cmath>
#include <limits>

namespace QXCommon_850 {
namespace internal {

// Truncates toward zero into an integer type without the undefined behaviour
// of an out-of-range cast: values beyond the range saturate, and NaN gives the
// type's minimum, which is also what the missing-value sentinel turns into.
template <typename Int>
inline Int TruncateToward0(double x) {
  constexpr Int lowest = std::numeric_limits<Int>::min();
  constexpr Int highest = std::numeric_limits<Int>::max();
  // -2^(bits-1) is exact as a double; 2^(bits-1) is the first value too large.
  const double low = static_cast<double>(lowest);
  if (std::isnan(x) || x < low) return lowest;
  if (x >= -low) return highest;
  return static_cast<Int>(x);
}

}  // namespace internal
}  // namespace QXCommon_850

#endif  // QX_FOUNDATION_INTERNAL_TRUNCATE_H
