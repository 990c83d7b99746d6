#ifndef QX_RANDOM_QXRNGNORMAL_H
#define QX_RANDOM_QXRNGNORMAL_H

#include "qx/foundation/qxexport.h"
#include "qx/random/qxrngenerator.h"

namespace QXMath_850 {

// Normal variates by Kinderman and Ramage's method, drawn through any
// QXRNGenerator. Without one it creates and owns a QXRNGUCongruential on first
// use (or at SetSeed). Copies duplicate an owned generator with its state, so
// a copy continues the same stream; a caller's generator stays shared.
class QXCOMMON_API QXRNGNormal : public QXRNGenerator {
 public:
  // A negative sd makes the pair (0, 1).
  explicit QXRNGNormal(double mean = 0.0, double sd = 1.0);
  QXRNGNormal(const QXRNGNormal& other);
  QXRNGNormal& operator=(const QXRNGNormal& other);
  ~QXRNGNormal() override;

  void SetParameters(double mean, double sd);
  // Draws through g from now on; g is not owned and must outlive its use.
  void SetURNGenerator(QXRNGenerator& g);
  // Seeds the source, creating the owned congruential one if there is none.
  void SetSeed(double seed) override;
  // sd * z + mean, z standard normal; the missing value only if the source is
  // so degenerate that a rejection loop gives up.
  double GetNext() override;
  // The same with these parameters, which are not kept (a negative sd means
  // (0, 1)).
  double GetNext(double mean, double sd);

 private:
  struct Impl;
  Impl* impl;
};

}  // namespace QXMath_850

#endif  // QX_RANDOM_QXRNGNORMAL_H
