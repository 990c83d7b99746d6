#ifndef QX_CHARTS_QXCLASSIFICATIONMATRIX_H
#define QX_CHARTS_QXCLASSIFICATIONMATRIX_H

#include <string>
#include <vector>

#include "qx/documents/qxvariatedata.h"
#include "qx/foundation/qxexport.h"

namespace QXXML_850 {
class XMLElement;
}

namespace QXMath_850 {

// The weighted classification (confusion) matrix of a classifier: rows are
// the observed categories, columns the predicted ones, each cell the weight
// of the cases so classified. A classifying component fills it case by case
// after scoring and reports the overall accuracy (the weight on the diagonal
// over the total) and each category's accuracy (its diagonal cell over its
// row, the share of that category predicted correctly).
//
// The categories are fixed at construction, codes 0 to k - 1 as the encoders
// give them; a case whose observed or predicted code is missing or outside
// them is counted as invalid and not entered, since a matrix that grew with
// the data would change shape between training and testing runs.
class QXCOMMON_API QXClassificationMatrix {
 public:
  // One category per label, in code order.
  QXClassificationMatrix(const std::string& targetName, const std::vector<std::string>& labels);
  virtual ~QXClassificationMatrix();

  // One case; false if it was not entered. A weight that isn't a positive
  // finite number drops the case silently; bad codes count it as invalid.
  bool Update(double observed, double predicted, double weight = 1.0);

  int GetNCategories() const { return static_cast<int>(labels.size()); }
  const std::vector<std::string>& GetLabels() const { return labels; }
  // The weight of cases of observed category i predicted as j; 0.0 for codes
  // outside the matrix.
  double GetCount(int observed, int predicted) const;
  double GetTotal() const { return total; }
  double GetInvalidCount() const { return invalid; }
  // Missing when no case (or no case of the category) was entered.
  double GetOverallAccuracy() const;
  double GetClassAccuracy(int category) const;

  // Counts (total and invalid weight, number of categories), the overall
  // accuracy, and per category its label, observed weight and accuracy.
  QXXML_850::QXVariateData GetVariateData() const;
  // A new "MultivariateData" element of that section followed by the matrix
  // as a "Matrix" of kind "any", row-major, labelled on both dimensions.
  QXXML_850::XMLElement* GetStatXMLElem() const;
  void Display() const { GetVariateData().Display(); }

 private:
  double RowTotal(int category) const;

  std::string targetName;
  std::vector<std::string> labels;
  std::vector<double> cells;  // row-major, observed by predicted
  double total;
  double invalid;
};

}  // namespace QXMath_850

#endif  // QX_CHARTS_QXCLASSIFICATIONMATRIX_H
