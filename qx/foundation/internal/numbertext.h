#ifndef QX_FOUNDATION_INTERNAL_NUMBERTEXT_H
#define QX_FOUNDATION_INTERNAL_NUMBERTEXT_H

#include <charconv>

namespace QXXML_850 {
namespace internal {

// Room for any double written by NumberText15, the longest being
// "-1.23456789012345e-308" (22 characters).
constexpr int kNumberTextSize = 32;

// Writes `value` as "%.15g" writes it in the classic locale (always a point,
// "inf", "-nan" and the like for the special values) into `buffer`, which has
// kNumberTextSize characters, without a terminating zero; returns the end.
// No stream and no locale is touched, so it costs a fraction of either.
inline char* NumberText15(double value, char* buffer) {
  return std::to_chars(buffer, buffer + kNumberTextSize, value, std::chars_format::general, 15).ptr;
}

}  // namespace internal
}  // namespace QXXML_850

#endif  // QX_FOUNDATION_INTERNAL_NUMBERTEXT_H
