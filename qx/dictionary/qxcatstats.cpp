#include "qx/dictionary/qxcatstats.h"

#include "qx/foundation/qxcomponentdisplay.h"
#include "qx/foundation/qxmissingvalue.h"

namespace QXMath_850 {

using QXCommon_850::QXMV;

bool QXCatStats::Update(double code, double weight) {
  if (QXMV::IsMissing(code) || !(code >= 0.0) || QXMV::IsMissing(weight)) return false;
  if (!(weight > 0.0)) weight = 1.0;
  // Truncation to unsigned int; a code past its range counts in the last.
  const unsigned int index = code < 4294967296.0 ? static_cast<unsigned int>(code) : 4294967295u;
  if (index >= counts.size()) counts.resize(static_cast<size_t>(index) + 1, 0.0);
  counts[index] += weight;
  return true;
}

void QXCatStats::Pool(const QXCatStats& other) {
  if (counts.size() < other.counts.size()) counts.resize(other.counts.size(), 0.0);
  for (size_t k = 0; k < other.counts.size(); ++k)
    counts[k] += other.counts[k];
}

int QXCatStats::GetNCategories(bool includeEmpty) const {
  int m = static_cast<int>(counts.size());
  if (includeEmpty || counts.empty()) return m;
  int i = 0;
  do {
    if (counts[i] == 0.0) --m;
    ++i;
  } while (m > i);
  return m;
}

double QXCatStats::GetSumCounts() const {
  double sum = 0.0;
  for (double count : counts)
    sum += count;
  return sum;
}

double QXCatStats::GetCatCount(unsigned int code) const {
  return code < counts.size() ? counts[code] : 0.0;
}

const std::vector<double>& QXCatStats::GetCatCounts() const {
  return counts;
}

void QXCatStats::Display() const {
  QXDisplay_850::DisplayText(1, "QXCatStats");
  QXDisplay_850::DisplayDV("Category counts", counts);
}

}  // namespace QXMath_850
