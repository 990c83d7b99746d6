#ifndef QX_RANDOM_QXRNGBINOMIAL_H
#define QX_RANDOM_QXRNGBINOMIAL_H

#include "qx/foundation/qxexport.h"
#include "qx/random/qxrngenerator.h"

namespace QXMath_850 {

// Binomial variates drawn through any QXRNGenerator, shared with an inner beta
// generator. Large n is split at the median of n uniforms, a beta variate, so
// a draw costs about log2(n) beta draws and at most 99 Bernoulli trials.
// Counts are held as doubles: exact for n up to 2^53. Sources and copies
// behave as for QXRNGNormal.
class QXCOMMON_API QXRNGBinomial : public QXRNGenerator {
 public:
  // Unless n is a finite whole number >= 0 and 0 <= p <= 1, the pair becomes
  // (0, 0), whose draws are 0.
  explicit QXRNGBinomial(double n = 0.0, double p = 0.0);
  QXRNGBinomial(const QXRNGBinomial& other);
  QXRNGBinomial& operator=(const QXRNGBinomial& other);
  ~QXRNGBinomial() override;

  void SetParameters(double n, double p);
  void SetURNGenerator(QXRNGenerator& g);
  void SetSeed(double seed) override;
  double GetNext() override;
  // A draw with these parameters, which are not kept; 0 for a bad pair.
  double GetNext(double n, double p);

 private:
  struct Impl;
  Impl* impl;
};

}  // namespace QXMath_850

#endif  // QX_RANDOM_QXRNGBINOMIAL_H
