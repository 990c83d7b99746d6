#ifndef QX_ACCUMULATORS_QXPROVMEANS_H
#define QX_ACCUMULATORS_QXPROVMEANS_H

#include <vector>

#include "qx/accumulators/qxmeansxproddata.h"
#include "qx/foundation/qxexport.h"

namespace QXMath_850 {

// Provisional means and cross-products updated one case at a time with a
// signed weight, for components that see their cases singly and may take
// one out again (leave-one-out, moving windows, deleted outliers).
class QXCOMMON_API QXProvMeans : public QXMeansXProdData {
 public:
  QXProvMeans();
  QXProvMeans(int nVars, bool intercept);
  ~QXProvMeans() override;

  // Adds the case for w > 0 and takes it out for w < 0. False, with nothing
  // changed, if x is shorter than nVars or the total weight would fall below
  // 0 (or be NaN); a total of exactly 0 clears the object, so the last
  // deletion leaves exact zeros.
  bool Update(const std::vector<double>& x, double w);

  void Display() const override;
};

}  // namespace QXMath_850

#endif  // QX_ACCUMULATORS_QXPROVMEANS_H
