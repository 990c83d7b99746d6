#include "qx/charts/qxscatterplotdata.h"

#include <algorithm>
#include <cmath>

#include "qx/charts/internal/chartxml.h"
#include "qx/documents/qxstatxmltags.h"
#include "qx/foundation/qxmissingvalue.h"
#include "qx/markup/xmlelement.h"

namespace QXMath_850 {

using QXCommon_850::QXMV;

QXScatterPlotData::QXScatterPlotData(const std::string& xName, const std::string& yName, int points,
                                     unsigned long seed)
    : xStats(xName),
      yStats(yName),
      maxPoints(std::max(points, 0)),
      nCases(0),
      pairWeight(0.0),
      missingWeight(0.0),
      meanX(0.0),
      meanY(0.0),
      sxx(0.0),
      syy(0.0),
      sxy(0.0) {
  twister.Initialize(seed);
}

QXScatterPlotData::~QXScatterPlotData() {}

// Weighted reservoir sampling, Efraimidis and Spirakis (2006), "Weighted
// random sampling with a reservoir", Inf. Process. Lett. 97(5), algorithm
// A-Res, with the key taken as log(u) / w, which orders as u^(1/w) does
// without underflow. Moments by West (1979), Comm. ACM 22(9).
bool QXScatterPlotData::Update(double x, double y, double weight) {
  const bool xIn = xStats.Update(x, weight);
  const bool yIn = yStats.Update(y, weight);
  const long index = nCases++;
  if (!xIn || !yIn) {
    if (std::isfinite(weight) && weight > 0.0) missingWeight += weight;
    return false;
  }
  const double before = pairWeight;
  pairWeight += weight;
  const double dx = x - meanX, dy = y - meanY;
  const double share = weight / pairWeight;
  meanX += dx * share;
  meanY += dy * share;
  sxx += before * dx * dx * share;
  syy += before * dy * dy * share;
  sxy += before * dx * dy * share;

  if (maxPoints == 0) return true;
  const double key = std::log(twister.GetRealOpen()) / weight;
  const auto above = [](const Point& a, const Point& b) { return a.key > b.key; };
  if (heap.size() < static_cast<size_t>(maxPoints)) {
    heap.push_back({key, index, x, y, weight});
    std::push_heap(heap.begin(), heap.end(), above);
  } else if (key > heap.front().key) {
    std::pop_heap(heap.begin(), heap.end(), above);
    heap.back() = {key, index, x, y, weight};
    std::push_heap(heap.begin(), heap.end(), above);
  }
  return true;
}

double QXScatterPlotData::GetCovariance() const {
  return pairWeight > 1.0 ? sxy / (pairWeight - 1.0) : QXMV::Missing();
}

double QXScatterPlotData::GetCorrelation() const {
  return sxx > 0.0 && syy > 0.0 ? sxy / std::sqrt(sxx * syy) : QXMV::Missing();
}

std::vector<QXScatterPlotData::Point> QXScatterPlotData::SampleInCaseOrder() const {
  std::vector<Point> points(heap);
  std::sort(points.begin(), points.end(),
            [](const Point& a, const Point& b) { return a.index < b.index; });
  return points;
}

std::vector<double> QXScatterPlotData::SampleColumn(double Point::*member) const {
  std::vector<double> column;
  for (const Point& p : SampleInCaseOrder())
    column.push_back(p.*member);
  return column;
}

std::vector<double> QXScatterPlotData::GetSampleX() const {
  return SampleColumn(&Point::x);
}

std::vector<double> QXScatterPlotData::GetSampleY() const {
  return SampleColumn(&Point::y);
}

std::vector<double> QXScatterPlotData::GetSampleWeights() const {
  return SampleColumn(&Point::weight);
}

QXXML_850::QXVariateData QXScatterPlotData::GetVariateData() const {
  namespace Tags = QXXML_850::QXStatXMLTags;
  QXXML_850::QXVariateData data;
  const std::string& xName = xStats.GetVarName();
  const std::string& yName = yStats.GetVarName();
  data.fDescription = "Scatterplot of " + yName + " by " + xName;
  data.fCounts.push_back(
      internal::Counts(pairWeight + missingWeight, missingWeight, QXMV::Missing(), -1.0));
  data.fIsStringStats = false;
  data.fStatNames = {Tags::XML_VAL_TOTALPAIRS, Tags::XML_VAL_COVARIANCE, Tags::XML_VAL_PEARSONSR,
                     "sampledPoints"};
  data.fStatValues = {pairWeight, GetCovariance(), GetCorrelation(),
                      static_cast<double>(heap.size())};
  data.fCoordinates = {internal::Coordinates("x", xName, Tags::XML_VAL_OBSERVED, GetSampleX()),
                       internal::Coordinates("y", yName, Tags::XML_VAL_OBSERVED, GetSampleY()),
                       internal::Coordinates("weight", "", "", GetSampleWeights())};
  return data;
}

QXXML_850::XMLElement* QXScatterPlotData::GetStatXMLElem() const {
  return GetVariateData().GetBivariateDataElem();
}

}  // namespace QXMath_850
