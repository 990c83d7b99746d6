#include "qx/charts/qxclassificationmatrix.h"

#include <cmath>

#include "qx/charts/internal/chartxml.h"
#include "qx/documents/qxstatxmltags.h"
#include "qx/documents/qxstatxmlutil.h"
#include "qx/foundation/qxmissingvalue.h"
#include "qx/markup/xmlelement.h"

namespace QXMath_850 {

using QXCommon_850::QXMV;
using QXXML_850::QXStatXMLUtil;

QXClassificationMatrix::QXClassificationMatrix(const std::string& target,
                                               const std::vector<std::string>& categoryLabels)
    : targetName(target),
      labels(categoryLabels),
      cells(categoryLabels.size() * categoryLabels.size(), 0.0),
      total(0.0),
      invalid(0.0) {}

QXClassificationMatrix::~QXClassificationMatrix() {}

bool QXClassificationMatrix::Update(double observed, double predicted, double weight) {
  if (!std::isfinite(weight) || weight <= 0.0) return false;
  const double k = static_cast<double>(labels.size());
  // Comparisons written so that NaN fails them; the sentinel is negative.
  if (!(observed >= 0.0 && observed < k && predicted >= 0.0 && predicted < k)) {
    invalid += weight;
    return false;
  }
  cells[static_cast<size_t>(observed) * labels.size() + static_cast<size_t>(predicted)] += weight;
  total += weight;
  return true;
}

double QXClassificationMatrix::GetCount(int observed, int predicted) const {
  const int k = GetNCategories();
  if (observed < 0 || observed >= k || predicted < 0 || predicted >= k) return 0.0;
  return cells[static_cast<size_t>(observed) * labels.size() + static_cast<size_t>(predicted)];
}

double QXClassificationMatrix::RowTotal(int category) const {
  double sum = 0.0;
  for (int j = 0; j < GetNCategories(); ++j)
    sum += GetCount(category, j);
  return sum;
}

double QXClassificationMatrix::GetOverallAccuracy() const {
  if (total <= 0.0) return QXMV::Missing();
  double diagonal = 0.0;
  for (int i = 0; i < GetNCategories(); ++i)
    diagonal += GetCount(i, i);
  return diagonal / total;
}

double QXClassificationMatrix::GetClassAccuracy(int category) const {
  const double row = RowTotal(category);
  return row > 0.0 ? GetCount(category, category) / row : QXMV::Missing();
}

QXXML_850::QXVariateData QXClassificationMatrix::GetVariateData() const {
  QXXML_850::QXVariateData data;
  data.fDescription = "Classification of " + targetName;
  data.fCounts.push_back(
      internal::Counts(total, QXMV::Missing(), invalid, static_cast<double>(labels.size())));
  data.fIsStringStats = false;
  data.fStatNames = {QXXML_850::QXStatXMLTags::XML_VAL_ACCURACY};
  data.fStatValues = {GetOverallAccuracy()};
  std::vector<double> observed, accuracy;
  for (int i = 0; i < GetNCategories(); ++i) {
    observed.push_back(RowTotal(i));
    accuracy.push_back(GetClassAccuracy(i));
  }
  data.fCoordinates = {internal::Coordinates("category", targetName, labels),
                       internal::Coordinates("observed", targetName, "frequency", observed),
                       internal::Coordinates("accuracy", targetName, "percentCorrect", accuracy)};
  return data;
}

QXXML_850::XMLElement* QXClassificationMatrix::GetStatXMLElem() const {
  QXXML_850::XMLElement* section = GetVariateData().GetMultiVariateDataElem();
  QXXML_850::XMLElement* rowColLabels =
      QXStatXMLUtil::CreateElemRowColLabels(QXStatXMLUtil::CreateElemArray(labels), "both");
  const unsigned int k = static_cast<unsigned int>(labels.size());
  section->AddElement(
      QXStatXMLUtil::CreateElemMatrix(QXStatXMLUtil::CreateElemMatrixLabels({rowColLabels}), {},
                                      QXStatXMLUtil::CreateElemArray(cells), nullptr, k, k,
                                      QXXML_850::QXStatXMLTags::XML_VAL_ANY, true));
  return section;
}

}  // namespace QXMath_850
