#ifndef QX_CHARTS_REGGAINSCHART_H
#define QX_CHARTS_REGGAINSCHART_H

#include <string>

#include "qx/charts/gainschart.h"
#include "qx/foundation/qxexport.h"

namespace QXMath_850 {

// The gains table of a regression model: cases ranked by their predicted
// value, each with its observed value as the response, so a quantile's
// response rate is the mean observed value of its cases and the lift compares
// the cumulative mean with the overall mean. Meant for targets of one sign
// (amounts, counts); with an overall mean of zero lift and index are missing.
class QXCOMMON_API RegGainsChart : public GainsChart {
 public:
  explicit RegGainsChart(const std::string& targetName);
  ~RegGainsChart() override;

  // One case: its predicted and its observed value. A value that is missing
  // or not finite, or a weight that isn't a positive finite number, drops it.
  bool Update(double predicted, double observed, double weight = 1.0);
};

}  // namespace QXMath_850

#endif  // QX_CHARTS_REGGAINSCHART_H
