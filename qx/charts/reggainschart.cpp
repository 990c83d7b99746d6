#include "qx/charts/reggainschart.h"

namespace QXMath_850 {

RegGainsChart::RegGainsChart(const std::string& target)
    : GainsChart(target, "Gains of " + target) {}

RegGainsChart::~RegGainsChart() {}

bool RegGainsChart::Update(double predicted, double observed, double weight) {
  return AddCase(predicted, observed, weight);
}

}  // namespace QXMath_850
