#include "qx/charts/qxbarchartdata.h"

#include "qx/charts/internal/chartxml.h"
#include "qx/documents/qxstatxmltags.h"
#include "qx/foundation/qxmissingvalue.h"
#include "qx/markup/xmlelement.h"

namespace QXMath_850 {

QXBarChartData::QXBarChartData(const std::string& varName,
                               const std::vector<std::string>& categoryLabels)
    : stats(varName, static_cast<int>(categoryLabels.size())), labels(categoryLabels) {}

QXBarChartData::~QXBarChartData() {}

bool QXBarChartData::Update(double code, double weight) {
  return stats.Update(code, weight);
}

int QXBarChartData::GetNCategories() const {
  return static_cast<int>(stats.GetFrequencies().size());
}

std::vector<double> QXBarChartData::GetFrequencies() const {
  return stats.GetFrequencies();
}

std::vector<double> QXBarChartData::GetPercents() const {
  const double valid = stats.GetNumberOfCases() - stats.GetMissingFreq();
  std::vector<double> percents;
  for (double f : stats.GetFrequencies())
    percents.push_back(valid > 0.0 ? 100.0 * f / valid : QXCommon_850::QXMV::Missing());
  return percents;
}

std::string QXBarChartData::GetLabel(int category) const {
  if (category >= 0 && category < static_cast<int>(labels.size())) return labels[category];
  return std::to_string(category);
}

QXXML_850::QXVariateData QXBarChartData::GetVariateData() const {
  QXXML_850::QXVariateData data;
  data.fDescription = "Bar chart of " + GetVarName();
  data.fCounts.push_back(internal::Counts(stats.GetNumberOfCases(), stats.GetMissingFreq(),
                                          QXCommon_850::QXMV::Missing(), GetNCategories()));
  std::vector<std::string> names;
  for (int k = 0; k < GetNCategories(); ++k)
    names.push_back(GetLabel(k));
  data.fCoordinates = {
      internal::Coordinates("category", GetVarName(), names),
      internal::Coordinates(QXXML_850::QXStatXMLTags::XML_VAL_frequency, GetVarName(),
                            QXXML_850::QXStatXMLTags::XML_VAL_frequency, GetFrequencies())};
  return data;
}

QXXML_850::XMLElement* QXBarChartData::GetStatXMLElem() const {
  return GetVariateData().GetUnivariateDataElem();
}

}  // namespace QXMath_850
