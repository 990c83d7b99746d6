// Gains tables, areas under the ROC curve and classification matrices against
// the values of testdata/gains_reference.py (numpy and scikit-learn) on
// weighted cases with many tied scores; how ties and bad cases are treated;
// and the sections that libxml2 reads back.
#include "qx/charts/gainschart.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "qx/charts/classgainschart.h"
#include "qx/charts/internal/charttest.h"
#include "qx/charts/qxclassificationmatrix.h"
#include "qx/charts/reggainschart.h"
#include "qx/foundation/qxmissingvalue.h"
#include "qx/markup/xmlelement.h"

namespace QXMath_850 {
namespace {

const double MV = QXCommon_850::QXMV::Missing();

struct Reference {
  std::vector<std::vector<double>> classCases, regCases;  // score, observed, [predicted,] weight
  std::map<std::string, std::vector<std::vector<double>>> tables;  // "<kind> <n>": rows
  std::map<std::string, double> values;                            // "auc", "confusion 0 1", ...
};

const Reference& Load() {
  static Reference ref;
  if (!ref.classCases.empty()) return ref;
  std::ifstream in(std::string(QX_TEST_SOURCE_DIR) + "/testdata/gains_reference.txt");
  std::string line, kind;
  while (std::getline(in, line)) {
    if (line.empty() || line[0] == '#') continue;
    std::istringstream fields(line);
    fields >> kind;
    std::vector<double> v;
    for (std::string t; fields >> t;)
      v.push_back(t == "nan" ? MV : std::stod(t));
    if (kind == "class") {
      ref.classCases.push_back(v);
    } else if (kind == "reg") {
      ref.regCases.push_back(v);
    } else if (kind.find("gains") != std::string::npos) {
      ref.tables[kind + " " + std::to_string(int(v[0]))].push_back({v.begin() + 2, v.end()});
    } else if (kind == "confusion" || kind == "classaccuracy") {
      std::string key = kind;
      for (size_t i = 0; i + 1 < v.size(); ++i)
        key += " " + std::to_string(int(v[i]));
      ref.values[key] = v.back();
    } else {
      ref.values[kind] = v[0];
    }
  }
  return ref;
}

// Every column of the table against the reference rows: cases exactly (the
// weights are quarters, so the quantile cuts can't differ), the rest to a few
// units in the last place, as sums of responses may round differently.
void ExpectTable(const GainsChart& chart, const std::vector<std::vector<double>>& rows) {
  ASSERT_EQ(chart.GetNQuantiles(), static_cast<int>(rows.size()));
  const std::vector<const std::vector<double>*> columns = {
      &chart.GetCases(),         &chart.GetResponses(),
      &chart.GetResponseRates(), &chart.GetCumulativePercentCases(),
      &chart.GetGains(),         &chart.GetLifts(),
      &chart.GetIndices()};
  for (size_t q = 0; q < rows.size(); ++q) {
    EXPECT_EQ((*columns[0])[q], rows[q][0]) << "quantile " << q + 1;
    for (size_t c = 1; c < columns.size(); ++c)
      EXPECT_NEAR((*columns[c])[q], rows[q][c], 1e-12 * std::fabs(rows[q][c]))
          << "quantile " << q + 1 << ", column " << c;
  }
}

TEST(GainsChartTest, ClassifierTablesAndAreaMatchReference) {
  const Reference& ref = Load();
  ASSERT_EQ(ref.classCases.size(), 2000u) << "testdata/gains_reference.txt not read";
  for (int n : {10, 7}) {
    ClassGainsChart weighted("y", 1), unit("y", 1);
    for (const std::vector<double>& c : ref.classCases) {
      EXPECT_TRUE(weighted.Update(c[0], c[1], c[3]));
      unit.Update(c[0], c[1]);
    }
    // Bad cases are dropped and change nothing.
    EXPECT_FALSE(weighted.Update(MV, 1.0, 1.0));
    EXPECT_FALSE(weighted.Update(std::nan(""), 1.0, 1.0));
    EXPECT_FALSE(weighted.Update(0.5, MV, 1.0));
    EXPECT_FALSE(weighted.Update(0.5, 1.0, 0.0));
    EXPECT_FALSE(weighted.Update(0.5, 1.0, -2.0));
    ASSERT_TRUE(weighted.Compute(n));
    ASSERT_TRUE(unit.Compute(n));
    EXPECT_EQ(weighted.GetDroppedCount(), 5.0);
    ExpectTable(weighted, ref.tables.at("classgains " + std::to_string(n)));
    ExpectTable(unit, ref.tables.at("unitgains " + std::to_string(n)));
    EXPECT_NEAR(weighted.GetAUC(), ref.values.at("auc"), 1e-14);
    EXPECT_NEAR(unit.GetAUC(), ref.values.at("unitauc"), 1e-14);
  }
}

TEST(GainsChartTest, RegressionTableMatchesReference) {
  const Reference& ref = Load();
  for (int n : {10, 7}) {
    RegGainsChart chart("amount");
    for (const std::vector<double>& c : ref.regCases)
      chart.Update(c[0], c[1], c[2]);
    ASSERT_TRUE(chart.Compute(n));
    ExpectTable(chart, ref.tables.at("reggains " + std::to_string(n)));
  }
}

TEST(GainsChartTest, TiedScoresStayTogetherAndEdgeCasesAreMissing) {
  // Ten unit cases, four tied at the top: the group's middle (weight 2 of
  // 10) lies in the second quintile, so it goes there whole and the first
  // stays empty. Adding in another order gives the same table.
  RegGainsChart ties("y");
  const double scores[] = {0.5, 0.9, 0.9, 0.1, 0.9, 0.3, 0.9, 0.2, 0.4, 0.6};
  const double y[] = {1, 1, 0, 0, 1, 0, 1, 0, 1, 0};
  for (int i = 9; i >= 0; --i)
    ties.Update(scores[i], y[i]);
  ASSERT_TRUE(ties.Compute(5));
  EXPECT_EQ(ties.GetCases(), (std::vector<double>{0, 4, 2, 2, 2}));
  EXPECT_EQ(ties.GetResponses(), (std::vector<double>{0, 3, 1, 1, 0}));
  EXPECT_EQ(ties.GetResponseRates()[0], MV);
  EXPECT_EQ(ties.GetIndices()[0], MV);
  EXPECT_EQ(ties.GetLifts()[0], MV);
  EXPECT_DOUBLE_EQ(ties.GetLifts()[1], 0.75 / 0.5);
  EXPECT_EQ(ties.GetMaxScores()[1], 0.9);
  EXPECT_EQ(ties.GetMinScores()[2], 0.5);
  EXPECT_EQ(ties.GetGains().back(), 100.0);

  // All scores equal: one group, in the middle quantile; the area is 1/2.
  ClassGainsChart flat("y", 0);
  for (int i = 0; i < 6; ++i)
    flat.Update(0.3, i % 2);
  ASSERT_TRUE(flat.Compute(3));
  EXPECT_EQ(flat.GetCases(), (std::vector<double>{0, 6, 0}));
  EXPECT_EQ(flat.GetAUC(), 0.5);

  // One class only: no area; no responses: no gain, lift or index.
  ClassGainsChart oneClass("y", 2);
  oneClass.Update(0.7, 1);
  oneClass.Update(0.2, 0);
  ASSERT_TRUE(oneClass.Compute(2));
  EXPECT_EQ(oneClass.GetAUC(), MV);
  EXPECT_EQ(oneClass.GetGains()[0], MV);
  EXPECT_EQ(oneClass.GetLifts()[0], MV);
  EXPECT_FALSE(oneClass.Compute(0));
  EXPECT_EQ(oneClass.GetNQuantiles(), 0);
  EXPECT_FALSE(RegGainsChart("y").Compute(10));
}

TEST(QXClassificationMatrixTest, WeightedCountsAndAccuraciesMatchReference) {
  const Reference& ref = Load();
  QXClassificationMatrix matrix("y", {"low", "mid", "high"});
  for (const std::vector<double>& c : ref.classCases)
    EXPECT_TRUE(matrix.Update(c[1], c[2], c[3]));
  EXPECT_FALSE(matrix.Update(3.0, 0.0, 2.0));
  EXPECT_FALSE(matrix.Update(MV, 0.0, 1.5));
  EXPECT_FALSE(matrix.Update(0.0, std::nan(""), 0.5));
  EXPECT_FALSE(matrix.Update(0.0, 0.0, 0.0));
  EXPECT_EQ(matrix.GetInvalidCount(), 4.0);
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 3; ++j)
      EXPECT_EQ(matrix.GetCount(i, j),
                ref.values.at("confusion " + std::to_string(i) + " " + std::to_string(j)));
    EXPECT_NEAR(matrix.GetClassAccuracy(i), ref.values.at("classaccuracy " + std::to_string(i)),
                1e-15);
  }
  EXPECT_NEAR(matrix.GetOverallAccuracy(), ref.values.at("accuracy"), 1e-15);
  EXPECT_EQ(matrix.GetCount(3, 0), 0.0);
  EXPECT_EQ(QXClassificationMatrix("y", {"a", "b"}).GetOverallAccuracy(), MV);
  // The section and its matrix read back; the gains section has a
  // coordinates object per column.
  const internal::ReadBack section(matrix.GetStatXMLElem());
  if (!section.name.empty()) {
    EXPECT_EQ(section.arrays.at(0), "low mid high");
  }
  ClassGainsChart chart("y", 1);
  chart.Update(0.5, 1.0);
  chart.Compute(4);
  const internal::ReadBack gains(chart.GetStatXMLElem());
  if (!gains.name.empty()) {
    EXPECT_EQ(gains.arrays.size(), 10u);
  }
}

}  // namespace
}  // namespace QXMath_850
