#include "qx/dictionary/qxcontstats.h"

#include "qx/foundation/qxcomponentdisplay.h"
#include "qx/foundation/qxmissingvalue.h"

namespace QXMath_850 {

using QXCommon_850::QXMV;

namespace {

void Extend(double x, double& min, double& max) {
  if (QXMV::IsMissing(min) || min > x) min = x;
  if (QXMV::IsMissing(max) || x > max) max = x;
}

}  // namespace

QXContStats::QXContStats()
    : min(QXMV::Missing()),
      max(QXMV::Missing()),
      sumFreqWts(0.0),
      sumCompWts(0.0),
      mean(0.0),
      ssq(0.0) {}

// Provisional means (Welford 1962): the mean and the sum of squared
// deviations are updated case by case, without a second pass.
bool QXContStats::Update(double x) {
  if (QXMV::IsMissing(x)) return false;
  Extend(x, min, max);
  const double old = sumCompWts;
  sumFreqWts += 1.0;
  sumCompWts = old + 1.0;
  const double d = x - mean;
  mean += d / (old + 1.0);
  ssq += d * d * (old / (old + 1.0));
  return true;
}

// Weighted provisional means (West 1979).
bool QXContStats::Update(double x, double f, double r) {
  if (QXMV::IsMissing(x) || QXMV::IsMissing(f) || QXMV::IsMissing(r)) return false;
  Extend(x, min, max);
  // Each weight on its own: not above 0.0 counts as 1.0, and a NaN stays.
  if (f <= 0.0) f = 1.0;
  if (r <= 0.0) r = 1.0;
  const double w = f * r;
  const double old = sumCompWts;
  sumFreqWts += f;
  const double updated = old + w;
  const double d = x - mean;
  mean += d * w / updated;
  ssq += d * d * (old * w / updated);
  sumCompWts = updated;
  return true;
}

// Pooled mean and sum of squares of two parts (Chan, Golub and LeVeque 1979).
void QXContStats::Pool(const QXContStats& other) {
  if (sumFreqWts == 0.0) {
    if (other.sumFreqWts != 0.0) *this = other;
    return;
  }
  if (other.sumFreqWts == 0.0) return;
  const double d = other.mean - mean;
  const double w = sumCompWts + other.sumCompWts;
  if (other.min < min) min = other.min;
  if (other.max > max) max = other.max;
  ssq += sumCompWts * other.sumCompWts * d * d / w + other.ssq;
  mean += d * other.sumCompWts / w;
  sumFreqWts += other.sumFreqWts;
  sumCompWts = w;
}

std::pair<double, double> QXContStats::GetExtrema() const {
  return {min, max};
}

double QXContStats::GetSumFreqWeights() const {
  return sumFreqWts;
}

double QXContStats::GetMean() const {
  return sumFreqWts == 0.0 ? QXMV::Missing() : mean;
}

double QXContStats::GetVariance() const {
  return sumFreqWts > 1.0 ? ssq / (sumFreqWts - 1.0) : QXMV::Missing();
}

void QXContStats::Display() const {
  using namespace QXDisplay_850;
  DisplayText(1, "QXContStats");
  const double extremes[] = {min, max};
  const double sums[] = {sumFreqWts, sumCompWts};
  DisplayDA("Min & max", extremes, 2);
  DisplayDA("Sum of freq. wgts, composite wgts", sums, 2);
  DisplayD("Mean", mean);
  DisplayD("SSQ", ssq);
}

}  // namespace QXMath_850
