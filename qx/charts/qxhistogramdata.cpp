#include "qx/charts/qxhistogramdata.h"

#include <cmath>

#include "qx/charts/internal/chartxml.h"
#include "qx/documents/qxstatxmltags.h"
#include "qx/foundation/qxmissingvalue.h"
#include "qx/markup/xmlelement.h"

namespace QXMath_850 {

QXHistogramData::QXHistogramData(const std::string& varName)
    : stats(varName), below(0.0), above(0.0) {}

QXHistogramData::~QXHistogramData() {}

bool QXHistogramData::SetEdges(std::vector<double> newEdges) {
  stats = QXUniStats(stats.GetVarName());
  // Edges that rounding made equal (a width far below the values) bin nothing.
  for (size_t j = 1; j < newEdges.size(); ++j) {
    if (!(newEdges[j - 1] < newEdges[j])) newEdges.clear();
  }
  edges.swap(newEdges);
  frequencies.assign(edges.empty() ? 0 : edges.size() - 1, 0.0);
  below = above = 0.0;
  return !edges.empty();
}

bool QXHistogramData::SetBinsByCount(double lower, double upper, int nBins) {
  if (nBins < 1 || nBins > kMaxBins || !std::isfinite(upper - lower) || lower > upper) {
    return SetEdges({});
  }
  if (lower == upper) {
    lower -= 0.5;
    upper += 0.5;
  }
  std::vector<double> e(static_cast<size_t>(nBins) + 1);
  for (int j = 0; j < nBins; ++j)
    e[j] = lower + (upper - lower) * j / nBins;
  e[nBins] = upper;
  return SetEdges(e);
}

bool QXHistogramData::SetBinsByWidth(double lower, double upper, double width) {
  if (!(width > 0.0) || !std::isfinite(width) || !std::isfinite(lower) || !std::isfinite(upper) ||
      lower > upper) {
    return SetEdges({});
  }
  const double first = std::floor(lower / width);
  const double bins = std::floor(upper / width) - first + 1.0;
  if (!(bins <= kMaxBins)) return SetEdges({});
  std::vector<double> e;
  for (double j = 0.0; j <= bins; j += 1.0)
    e.push_back((first + j) * width);
  return SetEdges(e);
}

bool QXHistogramData::Update(double value, double weight) {
  if (!stats.Update(value, weight) || edges.empty()) return false;
  const size_t k = frequencies.size();
  if (value < edges.front()) {
    below += weight;
    return false;
  }
  if (value > edges.back()) {
    above += weight;
    return false;
  }
  // The bin by division, then moved to agree with the stored edges, which
  // rounding of the division may contradict by one.
  const double guess = (value - edges.front()) / (edges.back() - edges.front()) * k;
  size_t j = guess < static_cast<double>(k) ? static_cast<size_t>(guess) : k - 1;
  while (j > 0 && value < edges[j])
    --j;
  while (j + 1 < k && value >= edges[j + 1])
    ++j;
  frequencies[j] += weight;
  return true;
}

QXXML_850::QXVariateData QXHistogramData::GetVariateData() const {
  QXXML_850::QXVariateData data;
  data.fDescription = "Histogram of " + GetVarName();
  data.fCounts.push_back(internal::Counts(stats.GetNumberOfCases(), stats.GetMissingFreq(),
                                          below + above, GetNBins()));
  data.fIsStringStats = false;
  data.fStatNames = {"minimum", "maximum", "mean", "standardDeviation"};
  data.fStatValues = stats.GetSummStats();
  data.fCoordinates = {
      internal::Coordinates("interval", GetVarName(), "edge", edges),
      internal::Coordinates(QXXML_850::QXStatXMLTags::XML_VAL_frequency, GetVarName(),
                            QXXML_850::QXStatXMLTags::XML_VAL_frequency, frequencies)};
  return data;
}

QXXML_850::XMLElement* QXHistogramData::GetStatXMLElem() const {
  return GetVariateData().GetUnivariateDataElem();
}

}  // namespace QXMath_850
