#ifndef QX_RANDOM_QXRANDOM_H
#define QX_RANDOM_QXRANDOM_H

#include "qx/foundation/qxexport.h"

namespace QXCommon_850 {

// A source of uniform random numbers that a component supplies itself, for
// instance to share one stream across several parts of an analysis. Given to
// QXURandom, it takes precedence over every built-in source. The library only
// holds pointers to it; the caller keeps it alive.
class QXCOMMON_API QXRandom {
 public:
  virtual ~QXRandom();
  // The next uniform value, in whatever range the caller's generator promises
  // (QXURandom's own sources give values in [0, 1]).
  virtual double NextUniform() = 0;
};

}  // namespace QXCommon_850

#endif  // QX_RANDOM_QXRANDOM_H
