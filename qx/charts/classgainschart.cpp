#include "qx/charts/classgainschart.h"

#include <cmath>

#include "qx/foundation/qxmissingvalue.h"

namespace QXMath_850 {

using QXCommon_850::QXMV;

ClassGainsChart::ClassGainsChart(const std::string& target, int category)
    : GainsChart(target, "Gains of " + target), targetCategory(category), auc(QXMV::Missing()) {}

ClassGainsChart::~ClassGainsChart() {}

bool ClassGainsChart::Update(double score, double observed, double weight) {
  const bool known = !QXMV::IsMissing(observed) && std::isfinite(observed) && observed >= 0.0;
  const double response = known && std::trunc(observed) == targetCategory ? 1.0 : 0.0;
  return AddCase(score, known ? response : QXMV::Missing(), weight);
}

// The Mann-Whitney statistic over groups of tied scores, best first: each
// negative case beats none above it, ties with the group's positives by half.
void ClassGainsChart::ComputeFromRanked() {
  double positivesAbove = 0.0, positives = 0.0, negatives = 0.0, sum = 0.0;
  for (size_t i = 0; i < cases.size();) {
    double groupPositive = 0.0, groupNegative = 0.0;
    size_t j = i;
    for (; j < cases.size() && cases[j].score == cases[i].score; ++j) {
      (cases[j].response != 0.0 ? groupPositive : groupNegative) += cases[j].weight;
    }
    sum += groupNegative * (positivesAbove + 0.5 * groupPositive);
    positivesAbove += groupPositive;
    positives += groupPositive;
    negatives += groupNegative;
    i = j;
  }
  auc = positives > 0.0 && negatives > 0.0 ? sum / positives / negatives : QXMV::Missing();
}

void ClassGainsChart::AddStatistics(QXXML_850::QXVariateData& data) const {
  GainsChart::AddStatistics(data);
  data.fStatNames.push_back("targetCategory");
  data.fStatValues.push_back(targetCategory);
  data.fStatNames.push_back("areaUnderCurve");
  data.fStatValues.push_back(auc);
}

}  // namespace QXMath_850
