#include "qx/dictionary/qxbinningencoder.h"

#include <limits>

#include "qx/foundation/qxcomponentdisplay.h"
#include "qx/foundation/qxmissingvalue.h"

namespace QXXML_850 {

namespace {

// The two ends of the double range; the lower one is also the missing sentinel.
const double kLowest = -std::numeric_limits<double>::max();
const double kHighest = std::numeric_limits<double>::max();

void Fill(std::vector<double>& out, size_t first, size_t last, double value) {
  for (size_t k = first; k <= last; ++k)
    out[k] = value;
}

}  // namespace

QXBinningEncoder::QXBinningEncoder() : nBins(0) {}

QXBinningEncoder::QXBinningEncoder(const std::vector<double>& cuts)
    : nBins(static_cast<int>(cuts.size()) + 1), cutPoints(cuts) {}

QXBinningEncoder::QXBinningEncoder(double min, double max, int n) : nBins(0) {
  if (n < 1) return;
  nBins = n;
  const double step = (max - min) / n;
  cutPoints.reserve(static_cast<size_t>(n) - 1);
  for (int i = 1; i < n; ++i)
    cutPoints.push_back(i * step + min);
}

int QXBinningEncoder::GetNumberOfCategories() const {
  return nBins;
}

const std::vector<double>& QXBinningEncoder::GetBinningCutpoints() const {
  return cutPoints;
}

void QXBinningEncoder::SetBinningCutpoints(const std::vector<double>& cuts) {
  cutPoints = cuts;
  nBins = static_cast<int>(cutPoints.size()) + 1;
}

double QXBinningEncoder::Encode(double x) const {
  if (QXCommon_850::QXMV::IsMissing(x)) return -1.0;
  if (nBins < 2 || cutPoints.empty()) return x < 0.0 ? 0.0 : 1.0;
  // Binary search; a value equal to a cut point belongs to the bin below it.
  int low = 0;
  int high = static_cast<int>(cutPoints.size()) - 1;
  int mid = 0;
  while (low <= high) {
    mid = (low + high) / 2;
    if (x == cutPoints[mid]) return mid;
    if (cutPoints[mid] > x) {
      high = mid - 1;
    } else {
      low = mid + 1;
    }
  }
  return cutPoints[mid] > x ? mid : mid + 1;
}

bool QXBinningEncoder::ComputeCutpoints(const std::vector<double>& counts,
                                        std::vector<double>& out) const {
  const size_t n = counts.size();
  if (n < 1) return false;
  size_t positive = 0;
  for (double count : counts) {
    if (count > 0.0) ++positive;
  }
  if (positive >= n || positive < 2) return false;
  if (cutPoints.size() < n - 1 || out.size() < n - 1) return false;

  size_t last = 0;
  if (counts[0] == 0.0) {
    size_t f = 1;
    while (!(counts[f] > 0.0))
      ++f;
    Fill(out, 0, f - 1, kLowest);
    last = f;
  }
  size_t i = last + 1;
  while (i < n - 1) {
    if (counts[i] > 0.0) {
      last = i;
      ++i;
      continue;
    }
    size_t j = i + 1;
    while (j <= n - 1 && !(counts[j] > 0.0))
      ++j;
    if (j > n - 1) {
      Fill(out, last, n - 2, kHighest);
      break;
    }
    Fill(out, last, j - 1, (cutPoints[last] + cutPoints[j - 1]) * 0.5);
    if (j < n - 1) last = j;
    i = j + 1;
  }
  if (counts[n - 1] == 0.0) out[n - 2] = kHighest;
  return true;
}

void QXBinningEncoder::AdjustBinning(const std::vector<double>& counts) {
  if (!ComputeCutpoints(counts, cutPoints)) return;
  const size_t size = cutPoints.size();
  size_t i = 0;
  if (cutPoints[0] == kLowest) {
    while (i < size && cutPoints[i] == kLowest)
      ++i;
    if (i == size) return;  // every cut point at the lower extreme: nothing to remove
  }
  size_t j = i + 1;
  while (j < size && cutPoints[j] < kHighest) {
    if (cutPoints[j] > cutPoints[i]) cutPoints[++i] = cutPoints[j];
    ++j;
  }
  cutPoints.erase(cutPoints.begin() + static_cast<std::ptrdiff_t>(i + 1),
                  cutPoints.begin() + static_cast<std::ptrdiff_t>(j));
  nBins = static_cast<int>(cutPoints.size()) + 1;
}

QXBinningEncoder* QXBinningEncoder::CreateRebinned(const std::vector<double>& counts) const {
  std::vector<double> out = cutPoints;
  if (ComputeCutpoints(counts, out)) return new QXBinningEncoder(out);
  return Clone();
}

QXBinningEncoder* QXBinningEncoder::Clone() const {
  return new QXBinningEncoder(*this);
}

void QXBinningEncoder::Display() const {
  QXDisplay_850::DisplayI("\tQXBinningEncoder: number of bins", nBins);
  QXDisplay_850::DisplayDV("\t\tCutpoints", cutPoints);
  QXDisplay_850::DisplayText(1, "");
}

}  // namespace QXXML_850
