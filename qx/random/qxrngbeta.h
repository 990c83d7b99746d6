#ifndef QX_RANDOM_QXRNGBETA_H
#define QX_RANDOM_QXRNGBETA_H

#include "qx/foundation/qxexport.h"
#include "qx/random/qxrngenerator.h"

namespace QXMath_850 {

// Beta variates drawn through any QXRNGenerator, shared with an inner normal
// generator so that the whole draw uses one stream. Both parameters above 1:
// rejection from a normal envelope; one of them 1: inversion; otherwise
// Johnk's method. If 5000 rounds of rejection pass without success, the
// beta quantile of one more uniform is returned instead. Sources and copies
// behave as for QXRNGNormal.
class QXCOMMON_API QXRNGBeta : public QXRNGenerator {
 public:
  // A parameter not above 0 makes the pair (1, 1).
  explicit QXRNGBeta(double a = 1.0, double b = 1.0);
  QXRNGBeta(const QXRNGBeta& other);
  QXRNGBeta& operator=(const QXRNGBeta& other);
  ~QXRNGBeta() override;

  void SetParameters(double a, double b);
  void SetURNGenerator(QXRNGenerator& g);
  void SetSeed(double seed) override;
  double GetNext() override;
  // A draw with these parameters, which are not kept; -1.0 when either is not
  // above 0.
  double GetNext(double a, double b);

 private:
  struct Impl;
  Impl* impl;
};

}  // namespace QXMath_850

#endif  // QX_RANDOM_QXRNGBETA_H
