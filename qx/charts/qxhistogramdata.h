#ifndef QX_CHARTS_QXHISTOGRAMDATA_H
#define QX_CHARTS_QXHISTOGRAMDATA_H

#include <string>
#include <vector>

#include "qx/documents/qxunistats.h"
#include "qx/documents/qxvariatedata.h"
#include "qx/foundation/qxexport.h"

namespace QXXML_850 {
class XMLElement;
}

namespace QXMath_850 {

// The histogram of one weighted continuous variable: bins of equal width and
// their weighted frequencies, with the variable's summary (QXUniStats) beside
// them. A descriptive component sets the bins from the range it found in a
// first pass (the minimum and maximum of a QXUniStats), feeds the cases, and
// writes the chart as a "UnivariateData" section.
//
// Bins are [e(j), e(j+1)), the last closed, [e(k-1), e(k)], so the upper end
// of the range counts. A value outside the range is left out of the bins and
// counted below or above them; it still counts in the summary. Setting bins
// starts the histogram afresh.
class QXCOMMON_API QXHistogramData {
 public:
  // The largest number of bins either way of setting them accepts.
  static constexpr int kMaxBins = 100000;

  explicit QXHistogramData(const std::string& varName);
  virtual ~QXHistogramData();

  // nBins bins of equal width from lower to upper. A range of one point,
  // as constant data give, is widened to one unit centred on it. False, with
  // no bins, if nBins is outside 1..kMaxBins or the bounds and their
  // difference aren't finite with lower <= upper.
  bool SetBinsByCount(double lower, double upper, int nBins);
  // Bins of the given width whose edges are whole multiples of it, from the
  // multiple at or below lower to the first above upper, so that bins read as
  // round numbers and two histograms of one width line up. False, with no
  // bins, if the width isn't positive and finite, the bounds aren't finite
  // with lower <= upper, more than kMaxBins bins would be needed, or the
  // width is too small for the values to tell its multiples apart.
  bool SetBinsByWidth(double lower, double upper, double width);

  // One case. The summary takes it as QXUniStats::Update does (missing
  // values, bad weights); a value it counts goes to its bin. True if binned.
  bool Update(double value, double weight = 1.0);

  const std::string& GetVarName() const { return stats.GetVarName(); }
  int GetNBins() const { return static_cast<int>(frequencies.size()); }
  // The k + 1 edges and the k frequencies.
  const std::vector<double>& GetEdges() const { return edges; }
  const std::vector<double>& GetFrequencies() const { return frequencies; }
  double GetBelowFreq() const { return below; }
  double GetAboveFreq() const { return above; }
  const QXUniStats& GetUniStats() const { return stats; }

  // Counts (all cases, missing, outside the bins), minimum, maximum, mean and
  // standard deviation, and two coordinates: the edges and the frequencies.
  QXXML_850::QXVariateData GetVariateData() const;
  // A new "UnivariateData" element of that section, owned by the caller.
  QXXML_850::XMLElement* GetStatXMLElem() const;
  void Display() const { GetVariateData().Display(); }

 private:
  bool SetEdges(std::vector<double> newEdges);

  QXUniStats stats;
  std::vector<double> edges;
  std::vector<double> frequencies;
  double below;
  double above;
};

}  // namespace QXMath_850

#endif  // QX_CHARTS_QXHISTOGRAMDATA_H
