#ifndef QX_ACCUMULATORS_QXMEANSXPRODDATA_H
#define QX_ACCUMULATORS_QXMEANSXPRODDATA_H

#include <vector>

#include "qx/foundation/qxexport.h"
#include "qx/matrices/qxsymmatrix.h"

namespace QXMath_850 {

// Weighted means and the lower triangle of the cross-products of a set of
// cases: corrected for the means when the intercept flag is set, raw
// otherwise. Components add or delete single cases and pool results that
// were accumulated apart (by block, by thread, by data partition).
// Refusals are a false result with the state untouched; nothing is thrown
// except on allocation failure.
class QXCOMMON_API QXMeansXProdData {
 public:
  QXMeansXProdData();
  // A negative nVars fails as an allocation failure (std::bad_alloc).
  QXMeansXProdData(int nVars, bool intercept);
  QXMeansXProdData(const QXMeansXProdData& other);
  QXMeansXProdData& operator=(const QXMeansXProdData& other);
  virtual ~QXMeansXProdData();

  // Sets the flag only; what is held is not converted.
  void SetIntercept(bool value) { intercept = value; }
  bool IsIntercept() const { return intercept; }
  int GetNVars() const { return nVars; }
  // The weighted number of cases.
  double GetNCases() const { return wCases; }
  const std::vector<double>& GetMeans() const { return means; }
  const QXSymMatrix& GetXProds() const { return xprods; }

  // Back to no cases: zero count, means and cross-products.
  void Clear();
  // New number of variables, then Clear; false with no change for n < 0.
  bool SetNVars(int n);

  // Adds one case of positive weight w (no check of w or of x's length
  // beyond ignoring an x shorter than nVars).
  void AddCase(const std::vector<double>& x, double w);
  // Takes out a case that was added with positive weight w. The count must
  // not reach 0; QXProvMeans::Update guards that.
  void DeleteCase(const std::vector<double>& x, double w);
  // Adds f times the outer product of the case (as deviations from the
  // current means under the intercept) to the cross-products.
  void UpdateXX(const std::vector<double>& x, double f);

  // Pools another result into this one by the pairwise updating formula.
  // False, with nothing changed, if the number of variables or the
  // intercept flag differ; an object with no variables takes on the other's.
  bool Merge(const QXMeansXProdData& other);
  // Pools a list in order; null entries are skipped. Stops with false at the
  // first refusal, keeping the entries merged before it.
  bool Merge(const std::vector<QXMeansXProdData*>& list);
  bool Merge(const std::vector<const QXMeansXProdData*>& list);

  virtual void Display() const;

 protected:
  int nVars;
  bool intercept;
  double wCases;
  std::vector<double> means;
  QXSymMatrix xprods;
};

}  // namespace QXMath_850

#endif  // QX_ACCUMULATORS_QXMEANSXPRODDATA_H
