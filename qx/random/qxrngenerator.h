#ifndef QX_RANDOM_QXRNGENERATOR_H
#define QX_RANDOM_QXRNGENERATOR_H

#include "qx/foundation/qxexport.h"

namespace QXMath_850 {

// A random number generator seeded by a double. The uniform members
// (QXRNGUCongruential, QXRNGUTwister) give values in [0, 1); the variate
// generators (QXRNGNormal, QXRNGBeta, QXRNGBinomial) draw through any of them,
// so a component can pick its source and its distribution apart.
class QXCOMMON_API QXRNGenerator {
 public:
  virtual ~QXRNGenerator();
  virtual void SetSeed(double seed) = 0;
  virtual double GetNext() = 0;
};

}  // namespace QXMath_850

#endif  // QX_RANDOM_QXRNGENERATOR_H
