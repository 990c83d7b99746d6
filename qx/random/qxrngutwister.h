#ifndef QX_RANDOM_QXRNGUTWISTER_H
#define QX_RANDOM_QXRNGUTWISTER_H

#include <cstdint>

#include "qx/foundation/qxexport.h"
#include "qx/random/qxrngenerator.h"

namespace QXMath_850 {

// The Mersenne Twister MT19937 as a QXRNGenerator: 53-bit uniform values in
// [0, 1) and a seed that may be any double. Whole seeds from 0 to 2^31 - 1
// give the reference init_genrand streams; every other double, fractional,
// negative or large, is turned into a key of three words for init_by_array,
// so each seed has a stream of its own. Used before SetSeed, it behaves as if
// seeded with 5489. Copies take the whole state and continue the sequence.
class QXCOMMON_API QXRNGUTwister : public QXRNGenerator {
 public:
  // The generator's state: 624 32-bit words and the index of the next word to
  // temper; 625 means never seeded.
  struct Data {
    std::uint32_t mt[624];
    std::int32_t mti;
  };

  QXRNGUTwister();
  QXRNGUTwister(const QXRNGUTwister& other);
  QXRNGUTwister& operator=(const QXRNGUTwister& other);
  ~QXRNGUTwister() override;

  // A whole seed in [0, 2147483647] is init_genrand(seed). Otherwise, with
  // |seed| = v * 2^e and v in [0.5, 1) (e counted as a number of halvings
  // for |seed| >= 1, of doublings below), the key is {z + 2*(neg + 2*(big +
  // 2*e)), the top 26 bits of v, the next 27 bits}, where neg marks a
  // negative seed, big |seed| >= 1, and z a zero. NaN counts as a zero
  // (key {1, 0, 0}) and an infinity as the largest finite double of its sign.
  void SetSeed(double seed) override;
  // genrand_res53 on this state: two outputs a, b as ((a>>5) * 2^26 +
  // (b>>6)) / 2^53, in [0, 1).
  double GetNext() override;

  const Data& GetData() const { return *data; }

 private:
  Data* data;
};

// The reference routines of MT19937 on a QXRNGUTwister's state.
QXCOMMON_API void init_genrand(unsigned int seed, QXRNGUTwister::Data& data);
QXCOMMON_API unsigned long genrand_int32(QXRNGUTwister::Data& data);

}  // namespace QXMath_850

#endif  // QX_RANDOM_QXRNGUTWISTER_H
