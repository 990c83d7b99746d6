#include "qx/accumulators/qxprovmeans.h"

#include <cmath>
#include <cstddef>

namespace QXMath_850 {

QXProvMeans::QXProvMeans() = default;

QXProvMeans::QXProvMeans(int n, bool withIntercept) : QXMeansXProdData(n, withIntercept) {}

QXProvMeans::~QXProvMeans() = default;

bool QXProvMeans::Update(const std::vector<double>& x, double w) {
  if (static_cast<std::size_t>(nVars) > x.size()) return false;
  const double total = wCases + w;
  if (total < 0.0 || std::isnan(total)) return false;
  if (total == 0.0) {
    Clear();
    return true;
  }
  if (w > 0.0) {
    AddCase(x, w);
  } else if (w < 0.0) {
    DeleteCase(x, -w);
  }
  return true;
}

void QXProvMeans::Display() const {
  QXMeansXProdData::Display();
}

}  // namespace QXMath_850
