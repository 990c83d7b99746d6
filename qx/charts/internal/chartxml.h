#ifndef QX_CHARTS_INTERNAL_CHARTXML_H
#define QX_CHARTS_INTERNAL_CHARTXML_H

// Shorthands (never installed) for the records the chart classes fill.

#include <string>
#include <vector>

#include "qx/documents/qxvariatedata.h"

namespace QXMath_850 {
namespace internal {

inline QXXML_850::QXXMLCoordinates Coordinates(const std::string& feature, const std::string& field,
                                               const std::string& statistic,
                                               const std::vector<double>& values) {
  QXXML_850::QXXMLCoordinates c;
  c.fFeature = feature;
  c.fField = field;
  c.fStatistic = statistic;
  c.fValueType = 1;
  c.fDoubleValues = values;
  return c;
}

inline QXXML_850::QXXMLCoordinates Coordinates(const std::string& feature, const std::string& field,
                                               const std::vector<std::string>& values) {
  QXXML_850::QXXMLCoordinates c;
  c.fFeature = feature;
  c.fField = field;
  c.fValueType = 2;
  c.fStringValues = values;
  return c;
}

inline QXXML_850::QXXMLCounts Counts(double total, double missing, double invalid,
                                     double cardinality) {
  QXXML_850::QXXMLCounts c;
  c.fTotalFreq = total;
  c.fMissingFreq = missing;
  c.fInvalidFreq = invalid;
  c.fCardinality = cardinality;
  return c;
}

}  // namespace internal
}  // namespace QXMath_850

#endif  // QX_CHARTS_INTERNAL_CHARTXML_H
