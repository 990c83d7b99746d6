#ifndef QX_ACCUMULATORS_QXMEANSXPRODUCTS_H
#define QX_ACCUMULATORS_QXMEANSXPRODUCTS_H

#include <vector>

#include "qx/accumulators/qxmeansxproddata.h"
#include "qx/foundation/qxexport.h"
#include "qx/matrices/qxrectmatrix.h"
#include "qx/matrices/qxsymmatrix.h"

namespace QXMath_850 {

// Means and cross-products of whole blocks of cases held as rows of a
// QXRectMatrix: nVars variable columns, then a frequency-weight column and a
// regression-weight column when the flags say so (a case's weight is their
// product). The result feeds the sweep of a component's model.
//
// Two paths: Compute/Update are two-pass per block (means first, then
// deviations; blocks pooled by Merge), the most accurate; StartUpdateOnePass,
// UpdateOnePass, FinishUpdateOnePass keep raw sums and always finish with the
// corrected cross-products, whatever the intercept flag.
class QXCOMMON_API QXMeansXProducts : public QXMeansXProdData {
 public:
  // No variables; a frequency-weight column is expected by default.
  QXMeansXProducts();
  QXMeansXProducts(int nVars, bool intercept, bool freqWeight, bool regWeight);
  QXMeansXProducts(const QXMeansXProducts& other);
  QXMeansXProducts& operator=(const QXMeansXProducts& other);
  ~QXMeansXProducts() override;

  // The result of the block alone, replacing what is held. nRows above 0
  // limits the rows read; 0 or below reads them all. False, with nothing
  // changed, unless the block has nVars plus the weight columns.
  bool Compute(const QXRectMatrix& data, int nRows);
  // Adds a block to what is held: Compute of the block, then Merge.
  bool Update(const QXRectMatrix& data, int nRows);
  // Do nothing; they let the two paths be driven alike.
  void StartUpdate();
  void FinishUpdate();

  // Resets the one-pass sums; the held result is not touched.
  void StartUpdateOnePass();
  // Adds a block to the one-pass sums; the first block after a reset starts
  // the run by itself.
  bool UpdateOnePass(const QXRectMatrix& data, int nRows);
  // Turns the one-pass sums into the count, means and corrected
  // cross-products. The sums are kept, so more blocks may follow.
  void FinishUpdateOnePass();

  void Display() const override;

 private:
  int WeightColumns() const { return (freqWeight ? 1 : 0) + (regWeight ? 1 : 0); }
  // Rows to read under the limit rule.
  static int RowsToRead(const QXRectMatrix& data, int nRows);

  bool freqWeight;
  bool regWeight;
  double onePassW;
  std::vector<double> onePassSums;
  QXSymMatrix onePassXProds;
};

}  // namespace QXMath_850

#endif  // QX_ACCUMULATORS_QXMEANSXPRODUCTS_H
