#include "qx/dictionary/qxcontstats.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "qx/dictionary/qxcatstats.h"
#include "qx/foundation/qxmissingvalue.h"

namespace QXMath_850 {
namespace {

const double MV = QXCommon_850::QXMV::Missing();

// Weighted mean and sum of squares by two plain passes.
void TwoPass(const std::vector<double>& x, const std::vector<double>& w, double& mean,
             double& ssq) {
  double sw = 0.0, swx = 0.0;
  for (size_t i = 0; i < x.size(); ++i) {
    sw += w[i];
    swx += w[i] * x[i];
  }
  mean = swx / sw;
  ssq = 0.0;
  for (size_t i = 0; i < x.size(); ++i)
    ssq += w[i] * (x[i] - mean) * (x[i] - mean);
}

TEST(ContStatsTest, UpdatesAndPoolingAgreeWithTwoPasses) {
  const std::vector<double> x = {3.5, -1.0, 8.25, 1e3, 2.0, 2.0, -7.5, 0.125};
  const std::vector<double> f = {1.0, 2.0, 0.5, 1.0, 3.0, 1.0, 1.0, 2.0};
  const std::vector<double> r = {1.0, 1.0, 2.0, 0.25, 1.0, 4.0, 1.0, 1.0};
  std::vector<double> w(x.size());
  double fSum = 0.0;
  for (size_t i = 0; i < x.size(); ++i) {
    w[i] = f[i] * r[i];
    fSum += f[i];
  }
  double mean, ssq;
  TwoPass(x, w, mean, ssq);
  QXContStats whole, first, second;
  for (size_t i = 0; i < x.size(); ++i) {
    EXPECT_TRUE(whole.Update(x[i], f[i], r[i]));
    EXPECT_TRUE((i < 3 ? first : second).Update(x[i], f[i], r[i]));
  }
  EXPECT_FALSE(whole.Update(MV, 1.0, 1.0));
  EXPECT_FALSE(whole.Update(1.0, MV, 1.0));
  EXPECT_NEAR(whole.GetMean(), mean, 1e-13 * std::fabs(mean));
  EXPECT_NEAR(whole.GetVariance(), ssq / (fSum - 1.0), 1e-12 * ssq);
  EXPECT_EQ(whole.GetSumFreqWeights(), fSum);
  EXPECT_EQ(whole.GetExtrema(), std::make_pair(-7.5, 1e3));
  first.Pool(second);
  EXPECT_NEAR(first.GetMean(), mean, 1e-13 * std::fabs(mean));
  EXPECT_NEAR(first.GetVariance(), whole.GetVariance(), 1e-12 * whole.GetVariance());
  EXPECT_EQ(first.GetExtrema(), whole.GetExtrema());
  QXContStats empty;
  empty.Pool(first);  // an empty side takes the other whole
  EXPECT_EQ(empty.GetMean(), first.GetMean());
  first.Pool(QXContStats());
  EXPECT_EQ(empty.GetVariance(), first.GetVariance());

  // Unweighted updates are the weighted ones with weights 1.
  QXContStats plain, ones;
  for (double v : x) {
    plain.Update(v);
    ones.Update(v, 1.0, 1.0);
  }
  EXPECT_EQ(plain.GetMean(), ones.GetMean());
  EXPECT_EQ(plain.GetVariance(), ones.GetVariance());
}

TEST(ContStatsTest, WeightsAndSmallSums) {
  QXContStats s;
  EXPECT_EQ(s.GetMean(), MV);
  EXPECT_EQ(s.GetExtrema(), std::make_pair(MV, MV));
  EXPECT_TRUE(s.Update(4.0, 0.0, -2.0));  // weights not above zero count as 1
  EXPECT_EQ(s.GetSumFreqWeights(), 1.0);
  EXPECT_EQ(s.GetMean(), 4.0);
  EXPECT_EQ(s.GetVariance(), MV);  // a frequency sum of exactly 1
}

TEST(CatStatsTest, CountsByTruncatedCode) {
  QXCatStats s;
  EXPECT_TRUE(s.Update(2.9, 1.0));
  EXPECT_TRUE(s.Update(0.0, -4.0));  // counts as 1
  EXPECT_FALSE(s.Update(-0.5, 1.0));
  EXPECT_FALSE(s.Update(MV, 1.0));
  EXPECT_FALSE(s.Update(1.0, MV));
  EXPECT_FALSE(s.Update(std::nan(""), 1.0));
  EXPECT_EQ(s.GetCatCounts(), (std::vector<double>{1.0, 0.0, 1.0}));
  EXPECT_EQ(s.GetCatCount(7), 0.0);
  EXPECT_EQ(s.GetNCategories(true), 3);
  EXPECT_EQ(s.GetNCategories(false), 2);
  QXCatStats other;
  other.Update(5.0, 2.5);
  s.Pool(other);
  EXPECT_EQ(s.GetCatCounts(), (std::vector<double>{1.0, 0.0, 1.0, 0.0, 0.0, 2.5}));
  EXPECT_EQ(s.GetSumCounts(), 4.5);
  // The scan's bound shrinks as it drops empty categories: of 0, 5, 0, 0, 5
  // the last empty one goes uncounted.
  QXCatStats late;
  late.Update(1.0, 5.0);
  late.Update(4.0, 5.0);
  EXPECT_EQ(late.GetNCategories(false), 3);
  EXPECT_EQ(QXCatStats().GetNCategories(false), 0);
}

}  // namespace
}  // namespace QXMath_850
