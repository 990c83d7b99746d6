#include "qx/random/qxrngucongruential.h"

#include <cmath>

#include "qx/random/internal/congruential.h"

namespace QXMath_850 {

QXRNGUCongruential::QXRNGUCongruential() : state(1) {}

void QXRNGUCongruential::SetSeed(double seed) {
  double s = std::floor(std::fabs(seed));
  if (s == 0.0 || s != s) s = 1.0;  // NaN too: a usable state
  if (s > internal::kCongruentialModulus) s = internal::kCongruentialModulus;
  state = static_cast<std::int64_t>(s);
}

double QXRNGUCongruential::GetNext() {
  state = internal::CongruentialNext(static_cast<double>(state));
  return static_cast<double>(state) * internal::kCongruentialScale;
}

}  // namespace QXMath_850
