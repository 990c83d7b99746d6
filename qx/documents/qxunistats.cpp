#include "qx/documents/qxunistats.h"

#include <algorithm>
#include <climits>
#include <cmath>

#include "qx/foundation/qxmissingvalue.h"

namespace QXMath_850 {

using QXCommon_850::QXMV;

QXUniStats::QXUniStats(const std::string& name)
    : varName(name),
      valid(!name.empty()),
      categorical(false),
      openLeft(false),
      totalFreq(0.0),
      missingFreq(0.0),
      validWeight(0.0),
      minimum(QXMV::Missing()),
      maximum(QXMV::Missing()),
      mean(0.0),
      sumSquares(0.0),
      fixedResults(false),
      fixedStdDev(QXMV::Missing()) {}

QXUniStats::QXUniStats(const std::string& name, const std::vector<double>& cuts, bool left)
    : QXUniStats(name) {
  openLeft = left;
  cutPoints = cuts;
  for (size_t j = 1; j < cuts.size(); ++j)
    valid = valid && cuts[j - 1] < cuts[j];
  for (double cut : cuts)
    valid = valid && !std::isnan(cut);
  if (cuts.size() > 1) frequencies.assign(cuts.size() - 1, 0.0);
}

QXUniStats::QXUniStats(const std::string& name, int nCategories) : QXUniStats(name) {
  categorical = true;
  valid = valid && nCategories >= 0;
  frequencies.assign(static_cast<size_t>(std::max(nCategories, 0)), 0.0);
}

QXUniStats::~QXUniStats() {}

// Weighted updating of the mean and the sum of squared deviations, West
// (1979), Comm. ACM 22(9): one pass, no cancellation of large sums.
bool QXUniStats::Update(double value, double weight) {
  if (!valid || fixedResults || !std::isfinite(weight) || weight <= 0.0) return false;
  totalFreq += weight;
  if (QXMV::IsMissing(value) || !std::isfinite(value) || (categorical && value < 0.0)) {
    missingFreq += weight;
    return false;
  }
  if (categorical) {
    if (value >= static_cast<double>(INT_MAX)) {
      missingFreq += weight;
      return false;
    }
    const size_t code = static_cast<size_t>(value);
    if (code >= frequencies.size()) frequencies.resize(code + 1, 0.0);
    frequencies[code] += weight;
    validWeight += weight;
    return true;
  }
  if (QXMV::IsMissing(minimum) || value < minimum) minimum = value;
  if (QXMV::IsMissing(maximum) || value > maximum) maximum = value;
  const double before = validWeight;
  validWeight += weight;
  const double delta = value - mean;
  const double r = delta * weight / validWeight;
  mean += r;
  sumSquares += before * delta * r;
  CountInterval(value, weight);
  return true;
}

void QXUniStats::CountInterval(double value, double weight) {
  if (cutPoints.size() < 2) return;
  // The first cut point not below the value (open on the left), or above it.
  const auto at = openLeft ? std::lower_bound(cutPoints.begin(), cutPoints.end(), value)
                           : std::upper_bound(cutPoints.begin(), cutPoints.end(), value);
  const auto index = at - cutPoints.begin();
  if (index >= 1 && index < static_cast<long>(cutPoints.size())) frequencies[index - 1] += weight;
}

// Pooled mean and sum of squares of two parts, Chan, Golub and LeVeque
// (1979), "Updating formulae and a pairwise algorithm for computing sample
// variances".
bool QXUniStats::Merge(const QXUniStats& other) {
  if (!valid || !other.valid || fixedResults || other.fixedResults || varName != other.varName ||
      categorical != other.categorical || openLeft != other.openLeft ||
      cutPoints != other.cutPoints) {
    return false;
  }
  if (frequencies.size() < other.frequencies.size()) frequencies.resize(other.frequencies.size());
  for (size_t j = 0; j < other.frequencies.size(); ++j)
    frequencies[j] += other.frequencies[j];
  totalFreq += other.totalFreq;
  missingFreq += other.missingFreq;
  if (other.validWeight == 0.0) return true;
  if (categorical || validWeight == 0.0) {
    if (!categorical) {
      minimum = other.minimum;
      maximum = other.maximum;
      mean = other.mean;
      sumSquares = other.sumSquares;
    }
    validWeight += other.validWeight;
    return true;
  }
  minimum = std::min(minimum, other.minimum);
  maximum = std::max(maximum, other.maximum);
  const double total = validWeight + other.validWeight;
  const double delta = other.mean - mean;
  sumSquares += other.sumSquares + delta * delta * (validWeight * other.validWeight / total);
  mean += delta * (other.validWeight / total);
  validWeight = total;
  return true;
}

bool QXUniStats::SetResults(double numberOfCases, const std::vector<double>& summStats,
                            const std::vector<double>& freqs) {
  const size_t intervals = cutPoints.size() > 1 ? cutPoints.size() - 1 : 0;
  if (summStats.size() != 4 || (!categorical && freqs.size() != intervals)) return false;
  fixedResults = true;
  totalFreq = numberOfCases;
  minimum = summStats[0];
  maximum = summStats[1];
  mean = summStats[2];
  fixedStdDev = summStats[3];
  frequencies = freqs;
  return true;
}

bool QXUniStats::IsValid() const {
  return valid;
}

const std::string& QXUniStats::GetVarName() const {
  return varName;
}

double QXUniStats::GetNumberOfCases() const {
  return totalFreq;
}

double QXUniStats::GetMissingFreq() const {
  return missingFreq;
}

bool QXUniStats::IsCategorical() const {
  return categorical;
}

const std::vector<double>& QXUniStats::GetFrequencies() const {
  return frequencies;
}

const std::vector<double>& QXUniStats::GetCutPoints() const {
  return cutPoints;
}

bool QXUniStats::AreIntervalsOpenLeft() const {
  return openLeft;
}

std::vector<double> QXUniStats::GetSummStats() const {
  const double mv = QXMV::Missing();
  if (fixedResults) return {minimum, maximum, mean, fixedStdDev};
  if (categorical || validWeight == 0.0) return {mv, mv, mv, mv};
  const double sd = validWeight > 1.0 ? std::sqrt(sumSquares / (validWeight - 1.0)) : mv;
  return {minimum, maximum, mean, sd};
}

namespace {
constexpr std::size_t kStateScalars = 7;
}  // namespace

bool QXUniStats::GetState(std::vector<double>& out) const {
  out.clear();
  if (!valid || fixedResults) return false;
  out = {totalFreq, missingFreq, validWeight, minimum, maximum, mean, sumSquares};
  out.insert(out.end(), frequencies.begin(), frequencies.end());
  return true;
}

bool QXUniStats::SetState(const std::vector<double>& state) {
  if (!valid || fixedResults || state.size() < kStateScalars) return false;
  const std::size_t count = state.size() - kStateScalars;
  if (!categorical && count != frequencies.size()) return false;
  totalFreq = state[0];
  missingFreq = state[1];
  validWeight = state[2];
  minimum = state[3];
  maximum = state[4];
  mean = state[5];
  sumSquares = state[6];
  frequencies.assign(state.begin() + kStateScalars, state.end());
  return true;
}

}  // namespace QXMath_850
