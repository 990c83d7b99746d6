#ifndef QX_CHARTS_CLASSGAINSCHART_H
#define QX_CHARTS_CLASSGAINSCHART_H

#include <string>

#include "qx/charts/gainschart.h"
#include "qx/foundation/qxexport.h"

namespace QXMath_850 {

// The gains table of a classifier for one target category: each case's score
// is the model's probability (or any score ranking the same way) of that
// category, and its response is 1 when its observed category is the target
// category and 0 otherwise, so the response rate is the proportion of the
// category. Compute also gives the area under the ROC curve.
class QXCOMMON_API ClassGainsChart : public GainsChart {
 public:
  // targetCategory is the code (as the encoders give it) of the category
  // whose gains the chart shows.
  ClassGainsChart(const std::string& targetName, int targetCategory);
  ~ClassGainsChart() override;

  // One case: its score and its observed category code. A missing or
  // negative code, a score that isn't finite or a weight that isn't a
  // positive finite number drops the case.
  bool Update(double score, double observedCategory, double weight = 1.0);

  int GetTargetCategory() const { return targetCategory; }
  // The area under the ROC curve of the last Compute: the weighted
  // probability that a case of the target category scores above one of
  // another category, ties counting one half (the trapezoidal area). Missing
  // when either kind of case is absent.
  double GetAUC() const { return auc; }

 protected:
  void ComputeFromRanked() override;
  void AddStatistics(QXXML_850::QXVariateData& data) const override;

 private:
  int targetCategory;
  double auc;
};

}  // namespace QXMath_850

#endif  // QX_CHARTS_CLASSGAINSCHART_H
