// The univariate summary: its one-pass moments against a two-pass reference
// on data far from zero, merging parts, the interval edges, categories, and
// what it refuses.
#include "qx/documents/qxunistats.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "qx/foundation/qxmissingvalue.h"

namespace QXMath_850 {
namespace {

const double MV = QXCommon_850::QXMV::Missing();

TEST(QXUniStatsTest, OnePassAndMergedPartsAgreeWithTwoPassReference) {
  std::mt19937 random(11);
  std::uniform_real_distribution<double> noise(-1.0, 1.0);
  std::vector<double> x, w;
  for (int i = 0; i < 3000; ++i) {
    x.push_back(1e9 + noise(random));  // a large mean: naive sums lose all digits
    w.push_back(1 + random() % 4);
  }
  const std::vector<double> cuts{1e9 - 1.0, 1e9, 1e9 + 1.0};
  QXUniStats whole("x", cuts, true);
  QXUniStats parts[3] = {{"x", cuts, true}, {"x", cuts, true}, {"x", cuts, true}};
  long double sw = 0.0L, swx = 0.0L;
  for (size_t i = 0; i < x.size(); ++i) {
    EXPECT_TRUE(whole.Update(x[i], w[i]));
    parts[i * 3 / x.size()].Update(x[i], w[i]);
    sw += w[i];
    swx += w[i] * static_cast<long double>(x[i]);
  }
  const long double mean = swx / sw;
  long double ss = 0.0L;
  for (size_t i = 0; i < x.size(); ++i)
    ss += w[i] * (x[i] - mean) * (x[i] - mean);
  const double sd = static_cast<double>(std::sqrt(ss / (sw - 1.0L)));
  // Missing values and bad weights: counted as missing, or not at all.
  for (double missing : {MV, std::nan(""), HUGE_VAL}) {
    EXPECT_FALSE(whole.Update(missing, 2.0));
  }
  for (double bad : {0.0, -1.0, MV, std::nan("")}) {
    EXPECT_FALSE(whole.Update(5.0, bad));
  }
  ASSERT_TRUE(parts[0].Merge(parts[1]));
  ASSERT_TRUE(parts[0].Merge(parts[2]));
  for (const QXUniStats* s : {&whole, &parts[0]}) {
    const std::vector<double> summary = s->GetSummStats();
    EXPECT_EQ(summary[0], *std::min_element(x.begin(), x.end()));
    EXPECT_EQ(summary[1], *std::max_element(x.begin(), x.end()));
    EXPECT_NEAR(summary[2], static_cast<double>(mean), 1e-14 * 1e9);
    // A one-pass method loses about eps * mean / sd (4e-7 here) relatively;
    // summing squares directly would lose everything.
    EXPECT_NEAR(summary[3], sd, 1e-7 * sd);
    const std::vector<double>& f = s->GetFrequencies();
    ASSERT_EQ(f.size(), 2u);
    EXPECT_EQ(f[0] + f[1], static_cast<double>(sw));
  }
  EXPECT_EQ(whole.GetNumberOfCases(), static_cast<double>(sw) + 6.0);
  EXPECT_EQ(whole.GetMissingFreq(), 6.0);
  EXPECT_EQ(parts[0].GetFrequencies(), whole.GetFrequencies());
}

TEST(QXUniStatsTest, IntervalsCountTheirClosedEndOnly) {
  const std::vector<double> cuts{1.0, 2.0, 3.0};
  QXUniStats openLeft("x", cuts, true), closedLeft("x", cuts, false);
  for (double v : {0.5, 1.0, 1.5, 2.0, 3.0, 3.5}) {
    openLeft.Update(v);
    closedLeft.Update(v);
  }
  EXPECT_EQ(openLeft.GetFrequencies(), (std::vector<double>{2.0, 1.0}));    // (1,2], (2,3]
  EXPECT_EQ(closedLeft.GetFrequencies(), (std::vector<double>{2.0, 1.0}));  // [1,2), [2,3)
  EXPECT_EQ(openLeft.GetNumberOfCases(), 6.0);
  EXPECT_TRUE(openLeft.AreIntervalsOpenLeft());
  EXPECT_EQ(QXUniStats("x", {4.0}, true).GetFrequencies().size(), 0u);
  // One case: no standard deviation yet.
  QXUniStats one("x");
  one.Update(4.0, 1.0);
  EXPECT_EQ(one.GetSummStats(), (std::vector<double>{4.0, 4.0, 4.0, MV}));
  EXPECT_EQ(QXUniStats("x").GetSummStats(), (std::vector<double>{MV, MV, MV, MV}));
}

TEST(QXUniStatsTest, CategoriesGrowAndSkipMissingCodes) {
  QXUniStats region("region", 2);
  for (double code : {0.0, 2.7, 2.0, -1.0, MV}) {
    region.Update(code, 1.5);
  }
  EXPECT_TRUE(region.IsCategorical());
  EXPECT_EQ(region.GetFrequencies(), (std::vector<double>{1.5, 0.0, 3.0}));
  EXPECT_EQ(region.GetMissingFreq(), 3.0);
  EXPECT_EQ(region.GetSummStats(), (std::vector<double>{MV, MV, MV, MV}));
  QXUniStats more("region", 5);
  more.Update(4.0);
  ASSERT_TRUE(region.Merge(more));
  EXPECT_EQ(region.GetFrequencies(), (std::vector<double>{1.5, 0.0, 3.0, 0.0, 1.0}));
}

TEST(QXUniStatsTest, RefusesWhatDoesNotFit) {
  EXPECT_FALSE(QXUniStats("").IsValid());
  EXPECT_FALSE(QXUniStats("x", {1.0, 1.0}, true).IsValid());
  EXPECT_FALSE(QXUniStats("x", {1.0, std::nan("")}, true).IsValid());
  EXPECT_FALSE(QXUniStats("x", -1).IsValid());
  QXUniStats invalid("x", {2.0, 1.0}, false);
  EXPECT_FALSE(invalid.Update(1.5));
  EXPECT_EQ(invalid.GetNumberOfCases(), 0.0);

  QXUniStats a("x", {1.0, 2.0}, true);
  a.Update(1.5);
  const std::vector<double> before = a.GetSummStats();
  for (const QXUniStats& other :
       {QXUniStats("y", {1.0, 2.0}, true), QXUniStats("x", {1.0, 2.0}, false),
        QXUniStats("x", {1.0, 3.0}, true), QXUniStats("x", 1), invalid}) {
    EXPECT_FALSE(a.Merge(other));
  }
  EXPECT_EQ(a.GetSummStats(), before);
  EXPECT_EQ(a.GetNumberOfCases(), 1.0);

  EXPECT_FALSE(a.SetResults(3.0, {1.0, 2.0, 1.5}, {3.0}));
  EXPECT_FALSE(a.SetResults(3.0, {1.0, 2.0, 1.5, 0.5}, {1.0, 2.0}));
  ASSERT_TRUE(a.SetResults(3.0, {1.0, 2.0, 1.5, MV}, {MV}));
  EXPECT_EQ(a.GetSummStats(), (std::vector<double>{1.0, 2.0, 1.5, MV}));
  EXPECT_FALSE(a.Update(1.5));
  EXPECT_EQ(a.GetFrequencies(), std::vector<double>{MV});
}

// A state put back into a summary of the same shape merges exactly as the
// summary it came from; a summary that can't take cases has no state.
TEST(QXUniStatsTest, StateRoundTripMergesAsTheOriginal) {
  QXUniStats part("x", {0.0, 1.0, 2.0}, false), rest("x", {0.0, 1.0, 2.0}, false);
  for (double v : {0.25, 1.5, MV, 3.0})
    part.Update(v, 2.0);
  rest.Update(0.75, 1.0);
  std::vector<double> state;
  ASSERT_TRUE(part.GetState(state));
  EXPECT_EQ(state.size(), 9u);
  QXUniStats copy("x", {0.0, 1.0, 2.0}, false);
  ASSERT_TRUE(copy.SetState(state));
  ASSERT_TRUE(part.Merge(rest) && copy.Merge(rest));
  EXPECT_EQ(copy.GetSummStats(), part.GetSummStats());
  EXPECT_EQ(copy.GetFrequencies(), part.GetFrequencies());
  EXPECT_EQ(copy.GetMissingFreq(), 2.0);
  state.pop_back();
  EXPECT_FALSE(copy.SetState(state));  // one interval short
  QXUniStats codes("g", 0);
  state.push_back(4.0);  // any number of categories fits
  EXPECT_TRUE(codes.SetState(state));
  EXPECT_EQ(codes.GetFrequencies().size(), 2u);
  ASSERT_TRUE(codes.SetResults(1.0, {MV, MV, MV, MV}, {1.0}));
  EXPECT_FALSE(codes.GetState(state) || codes.SetState({0, 0, 0, 0, 0, 0, 0}));
  EXPECT_TRUE(state.empty());
}

}  // namespace
}  // namespace QXMath_850
