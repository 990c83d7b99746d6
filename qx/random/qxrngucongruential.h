#ifndef QX_RANDOM_QXRNGUCONGRUENTIAL_H
#define QX_RANDOM_QXRNGUCONGRUENTIAL_H

#include <cstdint>

#include "qx/foundation/qxexport.h"
#include "qx/random/qxrngenerator.h"

namespace QXMath_850 {

// The portable congruential generator x' = 397204094 x mod (2^31 - 1), done in
// double arithmetic so that every platform gives the same sequence, returning
// x' / 2^31 (the power of two, not the modulus). It starts at state 1. The
// variate generators create one when they are given no generator. Copies
// continue the same sequence.
class QXCOMMON_API QXRNGUCongruential : public QXRNGenerator {
 public:
  QXRNGUCongruential();

  // The state becomes floor(|seed|), with 0 made 1 and values above
  // 2147483647 made 2147483647. That last value is the modulus itself, whose
  // next state is 0 for ever after: seeds of 2^31 - 1 and above give a
  // sequence of zeros.
  void SetSeed(double seed) override;
  // One step of the recurrence; a value in [0, 1).
  double GetNext() override;

  std::int64_t GetState() const { return state; }

 private:
  std::int64_t state;
};

}  // namespace QXMath_850

#endif  // QX_RANDOM_QXRNGUCONGRUENTIAL_H
