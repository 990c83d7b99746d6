#include "qx/accumulators/qxaccumxprodpair.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "qx/accumulators/qxmeansxproducts.h"
#include "qx/foundation/internal/testutil.h"
#include "qx/foundation/qxmissingvalue.h"
#include "qx/matrices/qxrectmatrix.h"

namespace QXMath_850 {
namespace {

using QXCommon_850::QXMV;
using Vec = std::vector<double>;

const double kMiss = QXMV::Missing();

// Rows of n variables away from zero (variable j near 3(j+1), spread j+1),
// then a weight that is an exact binary fraction, so that weight totals are
// exact in any order. Each value is missing with the given probability.
QXRectMatrix MakeCases(int rows, int n, double missing, unsigned seed) {
  std::mt19937_64 engine(seed);
  std::normal_distribution<double> normal(0.0, 1.0);
  std::bernoulli_distribution hole(missing);
  QXRectMatrix m(rows, n + 1, true);
  for (int r = 0; r < rows; ++r) {
    for (int j = 0; j < n; ++j)
      m.SetElem(r, j, hole(engine) ? kMiss : 3.0 * (j + 1) + (j + 1) * normal(engine));
    m.SetElem(r, n, 0.5 * static_cast<double>(1 + engine() % 6));
  }
  return m;
}

Vec Row(const QXRectMatrix& m, int r) {
  return Vec(m.GetRowPtr(r), m.GetRowPtr(r) + m.GetNCols());
}

struct PairStats {
  double w, mx, my, vx, vy, cov;
};

// Weighted statistics of variables i and j over the rows where both are
// present, by two passes in long double.
PairStats Reference(const QXRectMatrix& m, int i, int j) {
  const int n = m.GetNCols() - 1;
  long double w = 0, mx = 0, my = 0, sxx = 0, syy = 0, sxy = 0;
  for (int pass = 0; pass < 2; ++pass) {
    for (int r = 0; r < m.GetNRows(); ++r) {
      if (m.GetElem(r, i) == kMiss || m.GetElem(r, j) == kMiss) continue;
      const long double c = m.GetElem(r, n), dx = m.GetElem(r, i) - mx, dy = m.GetElem(r, j) - my;
      if (pass == 0) {
        w += c;
        mx += c * m.GetElem(r, i);
        my += c * m.GetElem(r, j);
        continue;
      }
      sxx += c * dx * dx;
      syy += c * dy * dy;
      sxy += c * dx * dy;
    }
    mx = pass == 0 ? mx / w : mx;
    my = pass == 0 ? my / w : my;
  }
  return {double(w),
          double(mx),
          double(my),
          double(sxx / (w - 1)),
          double(syy / (w - 1)),
          double(sxy / (w - 1))};
}

double At(const QXSymMatrix& m, int k) {
  return m.AsVectorConst()[k];
}

// The fold works from raw sums, so its rounding scales with the second
// moments about zero (mean^2 + variance) of the two variables.
void ExpectPair(const QXAccumXProdPair& acc, int k, const PairStats& ref) {
  const double tol = 64 * std::numeric_limits<double>::epsilon();
  const double sx = std::sqrt(ref.mx * ref.mx + ref.vx), sy = std::sqrt(ref.my * ref.my + ref.vy);
  EXPECT_EQ(At(acc.GetTotCases(), k), ref.w) << "pair " << k;
  EXPECT_NEAR(At(acc.GetMeanX(), k), ref.mx, tol * sx) << "pair " << k;
  EXPECT_NEAR(At(acc.GetMeanY(), k), ref.my, tol * sy) << "pair " << k;
  EXPECT_NEAR(At(acc.GetVarX(), k), ref.vx, tol * sx * sx) << "pair " << k;
  EXPECT_NEAR(At(acc.GetVarY(), k), ref.vy, tol * sy * sy) << "pair " << k;
  EXPECT_NEAR(At(acc.GetCovar(), k), ref.cov, tol * sx * sy) << "pair " << k;
}

void ExpectAllPairs(const QXAccumXProdPair& acc, const QXRectMatrix& cases) {
  for (int i = 1; i < acc.GetNVars(); ++i) {
    for (int j = 0; j < i; ++j)
      ExpectPair(acc, acc.GetPairIndex(i, j), Reference(cases, i, j));
  }
}

QXAccumXProdPair Accumulate(const QXRectMatrix& cases, int nAccum) {
  QXAccumXProdPair acc(cases.GetNCols() - 1, nAccum);
  EXPECT_TRUE(acc.UpdateCases(cases, 0));
  return acc;
}

TEST(QXAccumXProdPairTest, MatchesListwiseWhenCompleteAndEachPairsOwnCasesWithHolesForAnyBlock) {
  const QXRectMatrix complete = MakeCases(240, 5, 0.0, 11), holed = MakeCases(300, 7, 0.15, 23);
  QXMeansXProducts listwise(5, true, true, false);
  ASSERT_TRUE(listwise.Compute(complete, 0));
  const double w = listwise.GetNCases();
  const QXSymMatrix& xp = listwise.GetXProds();
  for (int nAccum : {1, 16, 1000}) {
    SCOPED_TRACE(nAccum);
    QXAccumXProdPair acc = Accumulate(complete, nAccum);
    ASSERT_TRUE(acc.Finish());
    for (int i = 1; i < 5; ++i) {
      for (int j = 0; j < i; ++j) {
        const Vec& m = listwise.GetMeans();
        ExpectPair(acc, acc.GetPairIndex(i, j),
                   {w, m[i], m[j], xp.GetElem(i, i) / (w - 1), xp.GetElem(j, j) / (w - 1),
                    xp.GetElem(i, j) / (w - 1)});
      }
    }
    acc = Accumulate(holed, nAccum);
    ASSERT_TRUE(acc.Finish());
    ExpectAllPairs(acc, holed);
  }
}

TEST(QXAccumXProdPairTest, BlockCaseAndPairUpdatesAgreeBitForBit) {
  // Enough variables for rows of several pieces, enough cases for two slices.
  const int n = 70;
  QXRectMatrix cases = MakeCases(130, n, 0.1, 29);
  // An infinity beside a missing partner (in the first and in a later piece
  // of its row) must not reach that pair, and a row with a missing weight is
  // no case.
  for (int j : {1, 40})
    cases.SetElem(17, j, kMiss);
  for (int j : {2, 65})
    cases.SetElem(17, j, std::numeric_limits<double>::infinity());
  cases.SetElem(30, n, kMiss);
  QXAccumXProdPair byBlock = Accumulate(cases, 5), byCase(n, 5), byPair(n, 5);
  for (int r = 0; r < cases.GetNRows(); ++r) {
    const Vec x = Row(cases, r);
    EXPECT_EQ(byCase.UpdateCase(x, x[n]), r != 30);
    for (int i = 1; i < n && r != 30; ++i) {
      for (int j = 0; j < i; ++j) {
        if (x[i] != kMiss && x[j] != kMiss) byPair.Update(i, x[i], j, x[j], x[n]);
      }
    }
  }
  for (QXAccumXProdPair* acc : {&byBlock, &byCase, &byPair})
    acc->Finish();
  const auto same = [](double a, double b) {
    return (std::isnan(a) && std::isnan(b)) || std::memcmp(&a, &b, sizeof a) == 0;
  };
  for (int k = 0; k < n * (n - 1) / 2; ++k) {
    for (auto get :
         {&QXAccumXProdPair::GetTotCases, &QXAccumXProdPair::GetMeanX, &QXAccumXProdPair::GetMeanY,
          &QXAccumXProdPair::GetVarX, &QXAccumXProdPair::GetVarY, &QXAccumXProdPair::GetCovar}) {
      EXPECT_TRUE(same(At((byBlock.*get)(), k), At((byPair.*get)(), k))) << "pair " << k;
      EXPECT_TRUE(same(At((byCase.*get)(), k), At((byPair.*get)(), k))) << "pair " << k;
    }
  }
  EXPECT_TRUE(std::isfinite(At(byBlock.GetCovar(), byBlock.GetPairIndex(2, 1))));
  EXPECT_TRUE(std::isfinite(At(byBlock.GetCovar(), byBlock.GetPairIndex(65, 40))));
  EXPECT_TRUE(std::isnan(At(byBlock.GetCovar(), byBlock.GetPairIndex(3, 2))));
}

TEST(QXAccumXProdPairTest, VariableMissingEverywhereStopsFinishAtItsFirstPair) {
  QXRectMatrix cases = MakeCases(60, 4, 0.1, 5);
  for (int r = 0; r < 60; ++r)
    cases.SetElem(r, 2, kMiss);
  QXAccumXProdPair acc = Accumulate(cases, 100);
  // Pair (1,0) folds; (2,0) has no weight and refuses; (3,0) and (3,1) wait.
  EXPECT_FALSE(acc.Finish());
  EXPECT_GT(At(acc.GetTotCases(), 0), 0.0);
  for (int k = 1; k < 6; ++k)
    EXPECT_EQ(At(acc.GetTotCases(), k), 0.0) << k;
  EXPECT_FALSE(acc.IncrStats(acc.GetPairIndex(3, 2)));
  for (int j : {0, 1}) {
    EXPECT_TRUE(acc.IncrStats(acc.GetPairIndex(3, j)));
    ExpectPair(acc, acc.GetPairIndex(3, j), Reference(cases, 3, j));
  }

  QXSymMatrix r;
  acc.GetPairCorr(r);
  ASSERT_EQ(r.GetNRows(), 4);
  EXPECT_EQ(r.GetElem(2, 2), 1.0);
  EXPECT_TRUE(QXMV::IsMissing(r.GetElem(2, 0)) && QXMV::IsMissing(r.GetElem(3, 2)));
  const PairStats p = Reference(cases, 3, 1);
  EXPECT_NEAR(r.GetElem(3, 1), p.cov / std::sqrt(p.vx * p.vy), 1e-12);
  // The kept correlation matrix reads the pair store at indices of order
  // nVars; what lies beyond the store is missing, never read.
  const QXSymMatrix& c = acc.GetCorr();
  ASSERT_EQ(c.GetNRows(), 4);
  EXPECT_TRUE(QXMV::IsMissing(c.GetElem(3, 3)));
}

TEST(QXAccumXProdPairTest, BlockIndexAndMergeRules) {
  QXAccumXProdPair acc(3, 1);
  acc.SetNAccum(0);
  EXPECT_EQ(acc.GetNAccum(), 1);
  EXPECT_EQ(acc.GetPairIndex(2, 1), 2);
  EXPECT_EQ(acc.GetPairIndex(1, 1) + acc.GetPairIndex(3, 0), -2);
  EXPECT_FALSE(acc.Update(3, 1.0, 2.0, 1.0) || acc.Update(1, 1.0, 2, 2.0, 1.0));
  EXPECT_FALSE(acc.UpdateCase({1.0, 2.0}, 1.0) || acc.UpdateCase({1.0, 2.0, 3.0}, kMiss));
  EXPECT_FALSE(acc.UpdateCases(QXRectMatrix(4, 5, true), 0));
  EXPECT_FALSE(acc.IncrStats(0));  // nothing at all yet
  // With one update per block the first fold waits for a total above 1 and
  // keeps its sums; the second takes both cases.
  EXPECT_FALSE(acc.Update(2, 1.0, 1, 10.0, 1.0));
  EXPECT_EQ(At(acc.GetTotCases(), 2), 0.0);
  EXPECT_TRUE(acc.Update(2, 3.0, 1, 14.0, 1.0));
  const Vec expected{2.0, 2.0, 12.0, 2.0, 8.0, 4.0};
  const Vec got{At(acc.GetTotCases(), 2), At(acc.GetMeanX(), 2), At(acc.GetMeanY(), 2),
                At(acc.GetVarX(), 2),     At(acc.GetVarY(), 2),  At(acc.GetCovar(), 2)};
  EXPECT_EQ(got, expected);
  const std::string text = QXCommon_850::internal::CaptureDisplay([&] { acc.Display(); });
  EXPECT_EQ(text.find("\nQXAccumXProdPair display start\nNumber of variables = 3\n"
                      "Number of accumulations = 1\nThe matrix of counts of accumulations"),
            0u);
  EXPECT_NE(text.find("The matrix of correlations"), std::string::npos);

  // Pooling: the second half repeats one value across the variables of a
  // case, so its second-variable statistics equal its first-variable ones,
  // the one kind of data whose pooled result doesn't depend on the other's
  // second-variable mean, which pooling never reads.
  const int n = 4;
  QXRectMatrix all = MakeCases(200, n, 0.1, 77), first(100, n + 1, true), second(100, n + 1, true);
  for (int r = 0; r < 200; ++r) {
    for (int j = 0; j < n && r >= 100; ++j) {
      if (all.GetElem(r, j) != kMiss) all.SetElem(r, j, 5.0 + 0.25 * (r % 11));
    }
    for (int j = 0; j <= n; ++j)
      (r < 100 ? first : second).SetElem(r % 100, j, all.GetElem(r, j));
  }
  QXAccumXProdPair a = Accumulate(first, 8), b = Accumulate(second, 8), fresh(0, 8);
  a.Finish();
  b.Finish();
  ASSERT_TRUE(fresh.Merge(std::vector<const QXAccumXProdPair*>{nullptr, &b}));
  EXPECT_EQ(fresh.GetNVars(), n);
  ExpectAllPairs(fresh, second);
  QXAccumXProdPair pooled(a);
  ASSERT_TRUE(pooled.Merge(b));
  ExpectAllPairs(pooled, all);
  EXPECT_EQ(At(a.GetTotCases(), 3), Reference(first, 3, 0).w);  // the copy left a alone
  QXAccumXProdPair empty(n, 8), wider(n + 1, 8);
  ASSERT_TRUE(empty.Merge(a));
  EXPECT_EQ(At(empty.GetMeanY(), 3), At(a.GetMeanX(), 3));
  EXPECT_FALSE(pooled.Merge(wider));
  EXPECT_FALSE(pooled.Merge(std::vector<QXAccumXProdPair*>{nullptr, nullptr}));
  EXPECT_FALSE(pooled.Merge(std::vector<QXAccumXProdPair*>{&a, &wider}));
}

// A state taken mid-block and put back into a fresh accumulator carries on
// exactly as the original: same folds, same merges, to the bit.
TEST(QXAccumXProdPairTest, StateRoundTripCarriesOnBitForBit) {
  const int n = 4;
  const QXRectMatrix cases = MakeCases(37, n, 0.2, 5);
  QXAccumXProdPair acc = Accumulate(cases, 8), other = Accumulate(MakeCases(20, n, 0.1, 6), 8);
  Vec state;
  ASSERT_TRUE(acc.GetState(state));
  ASSERT_EQ(state.size(), 13u * 6u);
  QXAccumXProdPair copy(n, 8);
  ASSERT_TRUE(copy.SetState(state));
  ASSERT_TRUE(acc.Merge(other) && copy.Merge(other));
  acc.Finish();
  copy.Finish();
  Vec a, b;
  ASSERT_TRUE(acc.GetState(a) && copy.GetState(b));
  EXPECT_EQ(std::memcmp(a.data(), b.data(), a.size() * sizeof(double)), 0);
  state.pop_back();
  EXPECT_FALSE(copy.SetState(state));
  EXPECT_FALSE(QXAccumXProdPair(n + 1, 8).SetState(b));
  ASSERT_TRUE(QXAccumXProdPair(1, 8).GetState(state));
  EXPECT_TRUE(state.empty());
}

}  // namespace
}  // namespace QXMath_850
