// Histogram, bar chart and scatterplot data: bin and category counts against
// a direct count over the same weighted cases, the edges of both ways of
// binning, the sample of points, and the sections that libxml2 reads back.
#include "qx/charts/qxhistogramdata.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "qx/charts/internal/charttest.h"
#include "qx/charts/qxbarchartdata.h"
#include "qx/charts/qxscatterplotdata.h"
#include "qx/foundation/qxmissingvalue.h"
#include "qx/markup/xmlelement.h"

namespace QXMath_850 {
namespace {

const double MV = QXCommon_850::QXMV::Missing();

TEST(QXHistogramDataTest, BinCountsAgreeWithDirectCount) {
  std::mt19937 random(7);
  std::normal_distribution<double> normal(3.0, 2.0);
  std::vector<double> x, w;
  for (int i = 0; i < 5000; ++i) {
    x.push_back(std::round(normal(random) * 8.0) / 8.0);  // many values on the edges
    w.push_back(1 + random() % 3);
  }
  x[0] = -1.0;  // the lower end
  x[1] = 7.0;   // the upper end counts in the last bin
  QXHistogramData byCount("x"), byWidth("x");
  ASSERT_TRUE(byCount.SetBinsByCount(-1.0, 7.0, 16));
  ASSERT_TRUE(byWidth.SetBinsByWidth(-1.0, 7.0, 0.75));
  for (size_t i = 0; i < x.size(); ++i) {
    byCount.Update(x[i], w[i]);
    byWidth.Update(x[i], w[i]);
  }
  byCount.Update(MV, 4.0);
  for (const QXHistogramData* h : {&byCount, &byWidth}) {
    const std::vector<double>& e = h->GetEdges();
    const int k = h->GetNBins();
    ASSERT_EQ(e.size(), static_cast<size_t>(k) + 1);
    std::vector<double> expected(k, 0.0);
    double below = 0.0, above = 0.0;
    for (size_t i = 0; i < x.size(); ++i) {
      if (x[i] < e[0]) {
        below += w[i];
      } else if (x[i] > e[k]) {
        above += w[i];
      } else {
        int j = 0;
        while (j + 1 < k && x[i] >= e[j + 1])
          ++j;
        expected[j] += w[i];
      }
    }
    EXPECT_EQ(h->GetFrequencies(), expected);
    EXPECT_EQ(h->GetBelowFreq(), below);
    EXPECT_EQ(h->GetAboveFreq(), above);
    EXPECT_GT(below + above, 0.0);
  }
  EXPECT_EQ(byCount.GetEdges()[1], -0.5);
  EXPECT_EQ(byCount.GetEdges()[16], 7.0);
  // Width 0.75: edges on its multiples, from -1.5 to the first above 7.
  EXPECT_EQ(byWidth.GetEdges().front(), -1.5);
  EXPECT_EQ(byWidth.GetEdges().back(), 7.5);
  EXPECT_EQ(byCount.GetUniStats().GetMissingFreq(), 4.0);

  const internal::ReadBack section(byCount.GetStatXMLElem());
  if (!section.name.empty()) {
    EXPECT_EQ(section.name, "UnivariateData");
    ASSERT_EQ(section.arrays.size(), 2u);
    std::istringstream frequencies(section.arrays[1]);
    for (double f : byCount.GetFrequencies()) {
      double read = 0.0;
      frequencies >> read;
      EXPECT_EQ(read, f);
    }
  }
}

TEST(QXHistogramDataTest, RefusesBadBinsAndWidensOnePoint) {
  QXHistogramData h("x");
  EXPECT_FALSE(h.SetBinsByCount(0.0, 1.0, 0));
  EXPECT_FALSE(h.SetBinsByCount(2.0, 1.0, 4));
  EXPECT_FALSE(h.SetBinsByCount(0.0, HUGE_VAL, 4));
  EXPECT_FALSE(h.SetBinsByWidth(0.0, 1.0, 0.0));
  EXPECT_FALSE(h.SetBinsByWidth(0.0, 1.0, 1e-9));          // too many bins
  EXPECT_FALSE(h.SetBinsByWidth(1e17, 1e17 + 64.0, 1.0));  // edges that round together
  EXPECT_FALSE(h.SetBinsByCount(-1e308, 1e308, 4));        // a range beyond the doubles
  EXPECT_FALSE(h.Update(0.5));
  EXPECT_EQ(h.GetNBins(), 0);
  ASSERT_TRUE(h.SetBinsByCount(4.0, 4.0, 2));
  EXPECT_EQ(h.GetEdges(), (std::vector<double>{3.5, 4.0, 4.5}));
  EXPECT_TRUE(h.Update(4.0, 2.0));
  EXPECT_EQ(h.GetFrequencies(), (std::vector<double>{0.0, 2.0}));
}

TEST(QXBarChartDataTest, CategoryCountsAgreeWithDirectCount) {
  std::mt19937 random(3);
  QXBarChartData bars("colour", {"red", "green", "blue"});
  std::map<int, double> expected;
  double missing = 0.0;
  for (int i = 0; i < 3000; ++i) {
    const int code = static_cast<int>(random() % 6) - 1;  // -1 is missing; 3 and 4 unlabelled
    const double weight = 0.5 * (1 + random() % 4);
    bars.Update(code, weight);
    (code < 0 ? missing : expected[code]) += weight;
  }
  bars.Update(MV, 1.0);
  missing += 1.0;
  ASSERT_EQ(bars.GetNCategories(), 5);
  double valid = 0.0;
  for (int k = 0; k < 5; ++k) {
    EXPECT_EQ(bars.GetFrequencies()[k], expected[k]);
    valid += expected[k];
  }
  EXPECT_EQ(bars.GetUniStats().GetMissingFreq(), missing);
  EXPECT_DOUBLE_EQ(bars.GetPercents()[2], 100.0 * expected[2] / valid);
  EXPECT_EQ(bars.GetLabel(1), "green");
  EXPECT_EQ(bars.GetLabel(4), "4");
  const internal::ReadBack section(bars.GetStatXMLElem());
  if (!section.name.empty()) {
    EXPECT_EQ(section.arrays.at(0), "red green blue 3 4");
  }
}

TEST(QXScatterPlotDataTest, SampleIsCappedReproducibleAndFavoursWeight) {
  // y = 2x + 1 exactly on the heavy cases; light ones are noise.
  std::mt19937 random(5);
  std::uniform_real_distribution<double> u(0.0, 1.0);
  QXScatterPlotData a("x", "y", 200), b("x", "y", 200), other("x", "y", 200, 99);
  double heavyWeight = 0.0, totalWeight = 0.0;
  for (int i = 0; i < 20000; ++i) {
    const double x = u(random);
    const bool heavy = i % 10 == 0;
    const double w = heavy ? 9.0 : 1.0;
    const double y = 2.0 * x + 1.0;
    for (QXScatterPlotData* s : {&a, &b, &other})
      EXPECT_TRUE(s->Update(x, y, w));
    heavyWeight += heavy ? w : 0.0;
    totalWeight += w;
  }
  EXPECT_FALSE(a.Update(MV, 1.0, 1.0));
  EXPECT_FALSE(a.Update(1.0, std::nan(""), 1.0));
  EXPECT_EQ(a.GetPairWeight(), totalWeight);
  EXPECT_NEAR(a.GetCorrelation(), 1.0, 1e-12);
  EXPECT_NEAR(a.GetCovariance(), 2.0 / 12.0, 0.01);
  const std::vector<double> x = a.GetSampleX(), weights = a.GetSampleWeights();
  ASSERT_EQ(x.size(), 200u);
  EXPECT_EQ(x, b.GetSampleX());      // same seed, same sample
  EXPECT_NE(x, other.GetSampleX());  // another seed, another one
  // Heavy cases hold half the weight, so about half the sample (binomial
  // standard deviation about 7 of 100).
  double heavyPoints = 0.0;
  for (double w : weights)
    heavyPoints += w == 9.0;
  EXPECT_NEAR(heavyPoints, 200.0 * heavyWeight / totalWeight, 30.0);
  const std::vector<double> y = a.GetSampleY();
  for (size_t i = 0; i < x.size(); ++i)
    EXPECT_EQ(y[i], 2.0 * x[i] + 1.0);
  const internal::ReadBack section(a.GetStatXMLElem());
  if (!section.name.empty()) {
    EXPECT_EQ(section.arrays.size(), 3u);
  }
  QXScatterPlotData none("x", "y", -3);
  EXPECT_TRUE(none.Update(1.0, 2.0));
  EXPECT_TRUE(none.GetSampleX().empty());
  EXPECT_EQ(none.GetCorrelation(), MV);
}

}  // namespace
}  // namespace QXMath_850
