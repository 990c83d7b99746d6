#ifndef QX_RANDOM_INTERNAL_MT19937_H
#define QX_RANDOM_INTERNAL_MT19937_H

// The MT19937 recurrence of Matsumoto and Nishimura (ACM TOMACS 8(1), 1998)
// with the 2002 initialisation, on a state of 624 words of any unsigned type
// wide enough for 32 bits; only the low 32 bits of each word are ever kept.
// QXRandomTwister keeps 64-bit words and QXRNGUTwister 32-bit ones: both
// share this one definition of the algorithm.

#include <cstdint>

namespace QXMath_850 {
namespace internal {

constexpr int kMTStateSize = 624;  // N
constexpr int kMTShift = 397;      // M
constexpr std::uint32_t kMTDefaultSeed = 5489;

// init_genrand: the state from one 32-bit seed.
template <class Word>
void MTInitGenrand(Word* mt, std::uint32_t seed) {
  std::uint32_t prev = seed;
  mt[0] = prev;
  for (int i = 1; i < kMTStateSize; ++i) {
    prev = 1812433253u * (prev ^ (prev >> 30)) + static_cast<std::uint32_t>(i);
    mt[i] = prev;
  }
}

// init_by_array: the state from a key of `length` words, of which the low 32
// bits count (the reference adds the whole key word and then masks). An
// empty key, which the reference would read past, counts as the key {0}.
template <class Word, class Key>
void MTInitByArray(Word* mt, const Key* key, unsigned long length) {
  static const Key zero = 0;
  if (length == 0 || key == nullptr) {
    key = &zero;
    length = 1;
  }
  MTInitGenrand(mt, 19650218u);
  int i = 1;
  unsigned long j = 0;
  const unsigned long rounds = length > kMTStateSize ? length : kMTStateSize;
  for (unsigned long k = 0; k < rounds; ++k) {
    const std::uint32_t prev = static_cast<std::uint32_t>(mt[i - 1]);
    mt[i] = static_cast<std::uint32_t>(
        (static_cast<std::uint32_t>(mt[i]) ^ ((prev ^ (prev >> 30)) * 1664525u)) +
        static_cast<std::uint32_t>(key[j]) + static_cast<std::uint32_t>(j));
    ++i;
    ++j;
    if (i >= kMTStateSize) {
      mt[0] = mt[kMTStateSize - 1];
      i = 1;
    }
    if (j >= length) j = 0;
  }
  for (int k = kMTStateSize - 1; k > 0; --k) {
    const std::uint32_t prev = static_cast<std::uint32_t>(mt[i - 1]);
    mt[i] = static_cast<std::uint32_t>(
        (static_cast<std::uint32_t>(mt[i]) ^ ((prev ^ (prev >> 30)) * 1566083941u)) -
        static_cast<std::uint32_t>(i));
    ++i;
    if (i >= kMTStateSize) {
      mt[0] = mt[kMTStateSize - 1];
      i = 1;
    }
  }
  mt[0] = 0x80000000u;  // the most significant bit is 1: a non-zero state
}

// One twist of the whole state: the next 624 untempered words. Split into
// the reference's three stretches so that each reads at a fixed offset and
// the compiler can vectorise the independent updates.
template <class Word>
inline Word MTTwistOne(Word upper, Word lower, Word far) {
  const Word y = (upper & 0x80000000u) | (lower & 0x7fffffffu);
  return far ^ (y >> 1) ^ ((0u - (y & 1u)) & 0x9908b0dfu);
}

template <class Word>
void MTTwist(Word* mt) {
  constexpr int n = kMTStateSize;
  constexpr int m = kMTShift;
  int k = 0;
  for (; k < n - m; ++k)
    mt[k] = MTTwistOne<Word>(mt[k], mt[k + 1], mt[k + m]);
  for (; k < n - 1; ++k)
    mt[k] = MTTwistOne<Word>(mt[k], mt[k + 1], mt[k + m - n]);
  mt[n - 1] = MTTwistOne<Word>(mt[n - 1], mt[0], mt[m - 1]);
}

// genrand_res53 from two successive outputs a and b: 53 bits in [0, 1).
inline double MTRes53(std::uint32_t a, std::uint32_t b) {
  return (static_cast<double>(a >> 5) * 67108864.0 + static_cast<double>(b >> 6)) *
         1.1102230246251565e-16;
}

}  // namespace internal
}  // namespace QXMath_850

#endif  // QX_RANDOM_INTERNAL_MT19937_H
