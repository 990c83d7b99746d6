#ifndef QX_CHARTS_QXBARCHARTDATA_H
#define QX_CHARTS_QXBARCHARTDATA_H

#include <string>
#include <vector>

#include "qx/documents/qxunistats.h"
#include "qx/documents/qxvariatedata.h"
#include "qx/foundation/qxexport.h"

namespace QXXML_850 {
class XMLElement;
}

namespace QXMath_850 {

// The bar chart of one weighted categorical variable: the weighted frequency
// of each category code, as the encoders give it, with the category labels.
// A descriptive component feeds the codes case by case and writes the chart
// as a "UnivariateData" section. The counting is QXUniStats's, so a code
// beyond the labels still counts (the chart grows and labels it by its
// number) and a missing or negative code counts as missing.
class QXCOMMON_API QXBarChartData {
 public:
  // One category per label, in code order; more may appear in the data.
  QXBarChartData(const std::string& varName, const std::vector<std::string>& labels);
  virtual ~QXBarChartData();

  // One case; true if its code was counted.
  bool Update(double code, double weight = 1.0);

  const std::string& GetVarName() const { return stats.GetVarName(); }
  int GetNCategories() const;
  // The frequency of each category, at least one per label.
  std::vector<double> GetFrequencies() const;
  // Each frequency as a percentage of the weight of the valid cases; missing
  // while there is none.
  std::vector<double> GetPercents() const;
  // The label of a category: its own, or its code as text beyond them.
  std::string GetLabel(int category) const;
  const QXUniStats& GetUniStats() const { return stats; }

  // Counts (all cases, missing, the number of categories) and two
  // coordinates: the labels and the frequencies.
  QXXML_850::QXVariateData GetVariateData() const;
  // A new "UnivariateData" element of that section, owned by the caller.
  QXXML_850::XMLElement* GetStatXMLElem() const;
  void Display() const { GetVariateData().Display(); }

 private:
  QXUniStats stats;
  std::vector<std::string> labels;
};

}  // namespace QXMath_850

#endif  // QX_CHARTS_QXBARCHARTDATA_H
