#ifndef QX_FOUNDATION_INTERNAL_DOUBLEBITS_H
#define QX_FOUNDATION_INTERNAL_DOUBLEBITS_H

#include <cstdint>
#include <cstring>

namespace QXCommon_850 {
namespace internal {

// Bit patterns of the constants that globals in several units are set from
// at load time. Each unit builds its own from the bits, so none depends on
// the order in which another unit's globals are initialised.
constexpr std::uint64_t kMissingValueBits = 0xFFEFFFFFFFFFFFFFULL;  // -1.7976931348623157e+308
constexpr std::uint64_t kInfinityBits = 0x7FF0000000000000ULL;

inline double DoubleFromBits(std::uint64_t bits) {
  double value;
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

}  // namespace internal
}  // namespace QXCommon_850

#endif  // QX_FOUNDATION_INTERNAL_DOUBLEBITS_H
