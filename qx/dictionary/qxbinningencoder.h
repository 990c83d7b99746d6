#ifndef QX_DICTIONARY_QXBINNINGENCODER_H
#define QX_DICTIONARY_QXBINNINGENCODER_H

#include <vector>

#include "qx/foundation/qxexport.h"

namespace QXXML_850 {

// Maps a number to a bin by an ascending list of cut points, cut point k being
// the inclusive upper bound of bin k, and rebuilds its cut points from bin
// counts so that empty bins vanish. A binned QXContEncoder owns one; a
// component that wants bin indexes asks the encoder for it.
class QXCOMMON_API QXBinningEncoder {
 public:
  // No bins and no cut points.
  QXBinningEncoder();
  // Bins = the number of cut points + 1.
  explicit QXBinningEncoder(const std::vector<double>& cutPoints);
  // nBins bins of equal width over [min, max]: cut point i is
  // i * ((max - min) / nBins) + min for i = 1 .. nBins - 1. nBins below 1
  // gives the empty object of the default constructor.
  QXBinningEncoder(double min, double max, int nBins);

  int GetNumberOfCategories() const;
  const std::vector<double>& GetBinningCutpoints() const;
  // Copies the cut points, unchecked for order; bins = their number + 1.
  void SetBinningCutpoints(const std::vector<double>& cutPoints);

  // The number of cut points strictly below x, as a double; -1.0 for the
  // missing sentinel. An encoder with fewer than 2 bins answers 0.0 for
  // x < 0.0 and 1.0 otherwise. A NaN lands in the top bin.
  double Encode(double x) const;

  // Cut points that join the runs of empty bins in `counts` (one count per
  // bin) onto one midpoint, with empty bins at either end pushed out to the
  // extremes of the double range. Writes into `out` by index, so `out` must
  // hold at least counts.size() - 1 elements; entries not concerned stay.
  // False, and `out` untouched, when there is no empty bin, fewer than two
  // bins with a positive count, or counts and `out` don't fit the cut points.
  bool ComputeCutpoints(const std::vector<double>& counts, std::vector<double>& out) const;
  // ComputeCutpoints in place, then the repeated midpoints are removed; the
  // runs at the extremes stay, so bin numbers still count from them.
  void AdjustBinning(const std::vector<double>& counts);
  // A new encoder, owned by the caller, on the cut points ComputeCutpoints
  // gives, or a copy of this one when it answers false.
  QXBinningEncoder* CreateRebinned(const std::vector<double>& counts) const;

  QXBinningEncoder* Clone() const;
  void Display() const;

 private:
  int nBins;
  std::vector<double> cutPoints;
};

}  // namespace QXXML_850

#endif  // QX_DICTIONARY_QXBINNINGENCODER_H
