#include "qx/random/qxrngutwister.h"

#include <cfloat>
#include <cmath>

#include "qx/random/internal/mt19937.h"
#include "qx/random/qxrandomtwister.h"

namespace QXMath_850 {

namespace {

inline std::uint32_t Next32(QXRNGUTwister::Data& d) {
  if (d.mti >= internal::kMTStateSize) {
    if (d.mti == internal::kMTStateSize + 1) {
      internal::MTInitGenrand(d.mt, internal::kMTDefaultSeed);
    }
    internal::MTTwist(d.mt);
    d.mti = 0;
  }
  return QXRandomTwister::Temper(d.mt[d.mti++]);
}

}  // namespace

void init_genrand(unsigned int seed, QXRNGUTwister::Data& data) {
  internal::MTInitGenrand(data.mt, seed);
  data.mti = internal::kMTStateSize;
}

unsigned long genrand_int32(QXRNGUTwister::Data& data) {
  return Next32(data);
}

QXRNGUTwister::QXRNGUTwister() : data(new Data()) {
  data->mti = internal::kMTStateSize + 1;
}

QXRNGUTwister::QXRNGUTwister(const QXRNGUTwister& other) : data(new Data(*other.data)) {}

QXRNGUTwister& QXRNGUTwister::operator=(const QXRNGUTwister& other) {
  *data = *other.data;
  return *this;
}

QXRNGUTwister::~QXRNGUTwister() {
  delete data;
}

void QXRNGUTwister::SetSeed(double seed) {
  if (seed >= 0.0 && seed <= 2147483647.0 && seed == std::floor(seed)) {
    init_genrand(static_cast<unsigned int>(seed), *data);
    return;
  }
  if (std::isinf(seed)) seed = seed > 0.0 ? DBL_MAX : -DBL_MAX;
  const bool zero = !(seed == seed);
  const double magnitude = zero ? 0.0 : std::fabs(seed);
  const unsigned long neg = seed < 0.0 ? 1 : 0;
  const unsigned long big = magnitude >= 1.0 ? 1 : 0;
  double v = magnitude;
  unsigned long e = 0;
  // Exact scaling by powers of two into [0.5, 1); at most 1074 steps.
  while (v != 0.0 && !(v >= 0.5 && v < 1.0)) {
    v *= big ? 0.5 : 2.0;
    ++e;
  }
  unsigned long key[3];
  v *= 67108864.0;
  key[1] = static_cast<unsigned long>(v);
  v = (v - static_cast<double>(key[1])) * 134217728.0;
  key[2] = static_cast<unsigned long>(v);
  key[0] = (zero ? 1 : 0) + 2 * (neg + 2 * (big + 2 * e));
  internal::MTInitByArray(data->mt, key, 3);
  data->mti = internal::kMTStateSize;
}

double QXRNGUTwister::GetNext() {
  const std::uint32_t a = Next32(*data);
  return internal::MTRes53(a, Next32(*data));
}

}  // namespace QXMath_850
