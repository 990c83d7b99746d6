#ifndef QX_DICTIONARY_QXCONTSTATS_H
#define QX_DICTIONARY_QXCONTSTATS_H

#include <utility>

#include "qx/foundation/qxexport.h"

namespace QXMath_850 {

// Running statistics of one continuous field during a pass over the data:
// extremes, the sums of frequency and composite weights, the weighted mean
// and the sum of squared deviations from it. Partial results of separate
// passes are joined with Pool. The missing sentinel is skipped.
class QXCOMMON_API QXContStats {
 public:
  QXContStats();

  // One case of weight 1 by the provisional-means update; false for a
  // missing x.
  bool Update(double x);
  // One case: the mean is weighted by the composite weight freqWeight *
  // regWeight, the frequency sum counts freqWeight alone. A weight not above
  // 0.0 counts as 1.0. False if any argument is missing.
  bool Update(double x, double freqWeight, double regWeight);
  // Joins another part of the data; either side may be empty.
  void Pool(const QXContStats& other);

  std::pair<double, double> GetExtrema() const;
  double GetSumFreqWeights() const;
  // The missing sentinel while the frequency sum is 0.0.
  double GetMean() const;
  // SSQ / (frequency sum - 1); the missing sentinel unless the sum exceeds 1.
  double GetVariance() const;
  void Display() const;

 private:
  double min;
  double max;
  double sumFreqWts;
  double sumCompWts;
  double mean;
  double ssq;
};

}  // namespace QXMath_850

#endif  // QX_DICTIONARY_QXCONTSTATS_H
