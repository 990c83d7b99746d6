#ifndef QX_RANDOM_QXRANDOMTWISTER_H
#define QX_RANDOM_QXRANDOMTWISTER_H

#include <cstdint>

#include "qx/foundation/qxexport.h"

namespace QXMath_850 {

// The Mersenne Twister MT19937 (Matsumoto and Nishimura, ACM TOMACS 8(1),
// 1998, with the 2002 initialisation), in every output form of the reference
// program. QXURandom uses it as its portable source; callers may also use it
// directly. The same seed gives the same sequence on every platform.
//
// The state is 624 words on the heap, of which only the low 32 bits are kept,
// and an index; 625 means never seeded, and such a generator seeds itself with
// 5489 on its first draw, as the reference does. Copies are full copies and
// continue the same sequence.
class QXCOMMON_API QXRandomTwister {
 public:
  QXRandomTwister();
  QXRandomTwister(const QXRandomTwister& other);
  QXRandomTwister& operator=(const QXRandomTwister& other);
  ~QXRandomTwister();

  // init_genrand with the low 32 bits of the seed.
  void Initialize(unsigned long seed);
  // init_by_array with the low 32 bits of each of the `length` key words.
  void InitByArray(const unsigned long* key, unsigned long length);

  // genrand_int32: a whole number in [0, 2^32 - 1].
  unsigned long GetInteger32() {
    if (index >= kStateSize) Twist();
    return Temper(static_cast<std::uint32_t>(words[index++]));
  }
  // genrand_int31: GetInteger32() >> 1.
  long GetInteger31() { return static_cast<long>(GetInteger32() >> 1); }
  // genrand_real1: GetInteger32() / (2^32 - 1), in [0, 1].
  double GetRealClosed() { return static_cast<double>(GetInteger32()) * (1.0 / 4294967295.0); }
  // genrand_real2: GetInteger32() / 2^32, in [0, 1).
  double GetRealClosedOpen() {
    return static_cast<double>(GetInteger32()) * 2.3283064365386963e-10;
  }
  // genrand_real3: (GetInteger32() + 0.5) / 2^32, in (0, 1).
  double GetRealOpen() {
    return (static_cast<double>(GetInteger32()) + 0.5) * 2.3283064365386963e-10;
  }
  // genrand_res53: two outputs a, then b, as (a>>5) * 2^26 + (b>>6), over
  // 2^53: 53 random bits in [0, 1).
  double GetRealRes53();

  // The output tempering of MT19937, applied to each state word drawn.
  static std::uint32_t Temper(std::uint32_t y) {
    y ^= y >> 11;
    y ^= (y << 7) & 0x9d2c5680u;
    y ^= (y << 15) & 0xefc60000u;
    y ^= y >> 18;
    return y;
  }

 private:
  static constexpr int kStateSize = 624;

  // The next 624 words; seeds with 5489 first if never seeded.
  void Twist();

  std::uint64_t* words;
  std::int32_t index;
};

}  // namespace QXMath_850

#endif  // QX_RANDOM_QXRANDOMTWISTER_H
