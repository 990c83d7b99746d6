#include "qx/accumulators/qxaccumxprodpair.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
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

constexpr double kEps = std::numeric_limits<double>::epsilon();

// Cases of n variables away from zero (variable j near 3(j+1), spread j+1)
// with weights that are exact binary fractions, so that weight totals are
// exact whatever the order of summing. Each value is missing with the given
// probability.
struct Data {
  std::vector<Vec> x;
  Vec w;
};

Data MakeData(int rows, int n, double missing, unsigned seed) {
  std::mt19937_64 engine(seed);
  std::normal_distribution<double> normal(0.0, 1.0);
  std::uniform_int_distribution<int> halves(1, 6);
  std::bernoulli_distribution hole(missing);
  Data d;
  for (int r = 0; r < rows; ++r) {
    Vec x(n);
    for (int j = 0; j < n; ++j)
      x[j] = hole(engine) ? QXMV::Missing() : 3.0 * (j + 1) + (j + 1) * normal(engine);
    d.x.push_back(x);
    d.w.push_back(0.5 * halves(engine));
  }
  return d;
}

// Weighted statistics of variables i and j over the cases where both are
// present, in long double.
struct PairStats {
  double w, mx, my, vx, vy, cov;
};

PairStats Reference(const Data& d, int i, int j) {
  long double w = 0, sx = 0, sy = 0;
  for (std::size_t r = 0; r < d.x.size(); ++r) {
    if (QXMV::IsMissing(d.x[r][i]) || QXMV::IsMissing(d.x[r][j])) continue;
    w += d.w[r];
    sx += d.w[r] * static_cast<long double>(d.x[r][i]);
    sy += d.w[r] * static_cast<long double>(d.x[r][j]);
  }
  const long double mx = sx / w, my = sy / w;
  long double ssx = 0, ssy = 0, sxy = 0;
  for (std::size_t r = 0; r < d.x.size(); ++r) {
    if (QXMV::IsMissing(d.x[r][i]) || QXMV::IsMissing(d.x[r][j])) continue;
    const long double dx = d.x[r][i] - mx, dy = d.x[r][j] - my;
    ssx += d.w[r] * dx * dx;
    ssy += d.w[r] * dy * dy;
    sxy += d.w[r] * dx * dy;
  }
  return {static_cast<double>(w),
          static_cast<double>(mx),
          static_cast<double>(my),
          static_cast<double>(ssx / (w - 1)),
          static_cast<double>(ssy / (w - 1)),
          static_cast<double>(sxy / (w - 1))};
}

double At(const QXSymMatrix& m, int k) {
  return m.AsVectorConst()[k];
}

// The fold works from raw sums, so its rounding scales with the second
// moments about zero, mean^2 + variance, of the two variables.
void ExpectPair(const QXAccumXProdPair& acc, int k, const PairStats& ref, double ulps) {
  const double sx = std::sqrt(ref.mx * ref.mx + ref.vx);
  const double sy = std::sqrt(ref.my * ref.my + ref.vy);
  EXPECT_EQ(At(acc.GetTotCases(), k), ref.w) << "pair " << k;
  EXPECT_NEAR(At(acc.GetMeanX(), k), ref.mx, ulps * kEps * sx) << "pair " << k;
  EXPECT_NEAR(At(acc.GetMeanY(), k), ref.my, ulps * kEps * sy) << "pair " << k;
  EXPECT_NEAR(At(acc.GetVarX(), k), ref.vx, ulps * kEps * sx * sx) << "pair " << k;
  EXPECT_NEAR(At(acc.GetVarY(), k), ref.vy, ulps * kEps * sy * sy) << "pair " << k;
  EXPECT_NEAR(At(acc.GetCovar(), k), ref.cov, ulps * kEps * sx * sy) << "pair " << k;
}

// The cases as one block with a weight column, the way a component hands
// them over.
QXRectMatrix AsBlock(const Data& d, int n) {
  QXRectMatrix block(static_cast<int>(d.x.size()), n + 1, true);
  for (int r = 0; r < block.GetNRows(); ++r) {
    for (int j = 0; j < n; ++j)
      block.SetElem(r, j, d.x[r][j]);
    block.SetElem(r, n, d.w[r]);
  }
  return block;
}

QXAccumXProdPair Accumulate(const Data& d, int n, int nAccum) {
  QXAccumXProdPair acc(n, nAccum);
  EXPECT_TRUE(acc.UpdateCases(AsBlock(d, n), 0));
  return acc;
}

TEST(QXAccumXProdPairTest, CompleteCasesMatchMeansXProductsForAnyBlockSize) {
  const int n = 5;
  const Data d = MakeData(240, n, 0.0, 11);
  QXMeansXProducts listwise(n, true, true, false);
  ASSERT_TRUE(listwise.Compute(AsBlock(d, n), 0));
  const double total = listwise.GetNCases();
  const auto& m = listwise.GetMeans();
  const auto& xp = listwise.GetXProds();

  for (int nAccum : {1, 16, 1000}) {
    SCOPED_TRACE(nAccum);
    QXAccumXProdPair acc = Accumulate(d, n, nAccum);
    ASSERT_TRUE(acc.Finish());
    for (int i = 1; i < n; ++i) {
      for (int j = 0; j < i; ++j) {
        const PairStats same = {total,
                                m[i],
                                m[j],
                                xp.GetElem(i, i) / (total - 1),
                                xp.GetElem(j, j) / (total - 1),
                                xp.GetElem(i, j) / (total - 1)};
        ExpectPair(acc, acc.GetPairIndex(i, j), same, 64);
      }
    }
  }
}

// Equal double results, NaN matching NaN.
bool Same(double a, double b) {
  return (std::isnan(a) && std::isnan(b)) || std::memcmp(&a, &b, sizeof a) == 0;
}

TEST(QXAccumXProdPairTest, HolesGiveEachPairItsOwnCases) {
  const int n = 7;
  const Data d = MakeData(300, n, 0.15, 23);
  for (int nAccum : {1, 5, 64}) {
    SCOPED_TRACE(nAccum);
    QXAccumXProdPair acc = Accumulate(d, n, nAccum);
    ASSERT_TRUE(acc.Finish());
    for (int i = 1; i < n; ++i) {
      for (int j = 0; j < i; ++j)
        ExpectPair(acc, acc.GetPairIndex(i, j), Reference(d, i, j), 64);
    }
  }
}

TEST(QXAccumXProdPairTest, BlockCaseAndPairUpdatesAgreeBitForBit) {
  // Enough variables for rows of several pieces, enough cases for two slices.
  const int n = 70;
  Data d = MakeData(130, n, 0.1, 29);
  // A present infinity next to a missing partner must not reach that pair, a
  // row with a missing weight is no case, and the three ways in give the
  // same result bit for bit.
  Vec odd(n, 1.0);
  odd[2] = std::numeric_limits<double>::infinity();
  odd[1] = QXMV::Missing();
  odd[40] = QXMV::Missing();
  odd[65] = odd[2];
  d.x.insert(d.x.begin() + 17, odd);
  d.w.insert(d.w.begin() + 17, 2.0);
  d.x.insert(d.x.begin() + 30, Vec(n, 1e6));
  d.w.insert(d.w.begin() + 30, QXMV::Missing());
  QXAccumXProdPair byBlock = Accumulate(d, n, 5);
  QXAccumXProdPair byCase(n, 5), byPair(n, 5);
  for (std::size_t r = 0; r < d.x.size(); ++r) {
    EXPECT_EQ(byCase.UpdateCase(d.x[r], d.w[r]), r != 30);
    for (int i = 1; i < n && r != 30; ++i) {
      for (int j = 0; j < i; ++j) {
        if (!QXMV::IsMissing(d.x[r][i]) && !QXMV::IsMissing(d.x[r][j]))
          byPair.Update(i, d.x[r][i], j, d.x[r][j], d.w[r]);
      }
    }
  }
  byBlock.Finish();
  byCase.Finish();
  byPair.Finish();
  for (int k = 0; k < n * (n - 1) / 2; ++k) {
    for (auto get :
         {&QXAccumXProdPair::GetTotCases, &QXAccumXProdPair::GetMeanX, &QXAccumXProdPair::GetMeanY,
          &QXAccumXProdPair::GetVarX, &QXAccumXProdPair::GetVarY, &QXAccumXProdPair::GetCovar})
      for (const QXAccumXProdPair* acc : {&byCase, &byBlock})
        EXPECT_TRUE(Same(At((acc->*get)(), k), At((byPair.*get)(), k))) << "pair " << k;
  }
  EXPECT_TRUE(std::isfinite(At(byCase.GetCovar(), byCase.GetPairIndex(2, 1))));
  EXPECT_TRUE(std::isfinite(At(byCase.GetCovar(), byCase.GetPairIndex(65, 40))));
  EXPECT_TRUE(std::isnan(At(byCase.GetCovar(), byCase.GetPairIndex(3, 2))));
}

TEST(QXAccumXProdPairTest, VariableMissingEverywhereStopsFinishAtItsFirstPair) {
  const int n = 4;
  Data d = MakeData(60, n, 0.1, 5);
  for (Vec& x : d.x)
    x[2] = QXMV::Missing();
  QXAccumXProdPair acc = Accumulate(d, n, 100);
  // Pair (1,0) folds; (2,0) has no weight and refuses; (3,0) and (3,1) wait.
  EXPECT_FALSE(acc.Finish());
  EXPECT_GT(At(acc.GetTotCases(), 0), 0.0);
  for (int k = 1; k < 6; ++k)
    EXPECT_EQ(At(acc.GetTotCases(), k), 0.0) << k;
  EXPECT_FALSE(acc.IncrStats(acc.GetPairIndex(3, 2)));
  for (int j : {0, 1}) {
    EXPECT_TRUE(acc.IncrStats(acc.GetPairIndex(3, j)));
    ExpectPair(acc, acc.GetPairIndex(3, j), Reference(d, 3, j), 64);
  }

  QXSymMatrix r;
  acc.GetPairCorr(r);
  ASSERT_EQ(r.GetNRows(), n);
  for (int j = 0; j < n; ++j) {
    EXPECT_EQ(r.GetElem(j, j), 1.0);
    if (j != 2) {
      EXPECT_TRUE(QXMV::IsMissing(r.GetElem(2, j)));
    }
  }
  const PairStats p = Reference(d, 3, 1);
  EXPECT_NEAR(r.GetElem(3, 1), p.cov / std::sqrt(p.vx * p.vy), 1e-12);

  // The kept correlation matrix reads the pair store at indices of order n;
  // what lies beyond the store is missing, never read.
  const QXSymMatrix& c = acc.GetCorr();
  ASSERT_EQ(c.GetNRows(), n);
  EXPECT_TRUE(QXMV::IsMissing(c.GetElem(3, 3)));
}

TEST(QXAccumXProdPairTest, BlockAndIndexRules) {
  QXAccumXProdPair acc(3, 1);
  acc.SetNAccum(0);
  EXPECT_EQ(acc.GetNAccum(), 1);
  EXPECT_EQ(acc.GetPairIndex(2, 1), 2);
  EXPECT_EQ(acc.GetPairIndex(1, 1), -1);
  EXPECT_EQ(acc.GetPairIndex(3, 0), -1);
  EXPECT_FALSE(acc.Update(3, 1.0, 2.0, 1.0));
  EXPECT_FALSE(acc.Update(-1, 1.0, 2.0, 1.0));
  EXPECT_FALSE(acc.Update(1, 1.0, 2, 2.0, 1.0));
  EXPECT_FALSE(acc.UpdateCase({1.0, 2.0}, 1.0));
  EXPECT_FALSE(acc.UpdateCase({1.0, 2.0, 3.0}, QXMV::Missing()));
  EXPECT_FALSE(acc.UpdateCases(QXRectMatrix(4, 5, true), 0));
  EXPECT_FALSE(acc.IncrStats(0));  // nothing at all yet

  // With one update per block the first fold waits for a total above 1 and
  // keeps its sums; the second takes both cases.
  EXPECT_FALSE(acc.Update(2, 1.0, 1, 10.0, 1.0));
  EXPECT_EQ(At(acc.GetTotCases(), 2), 0.0);
  EXPECT_TRUE(acc.Update(2, 3.0, 1, 14.0, 1.0));
  EXPECT_EQ(At(acc.GetTotCases(), 2), 2.0);
  EXPECT_EQ(At(acc.GetMeanX(), 2), 2.0);
  EXPECT_EQ(At(acc.GetMeanY(), 2), 12.0);
  EXPECT_EQ(At(acc.GetVarX(), 2), 2.0);
  EXPECT_EQ(At(acc.GetVarY(), 2), 8.0);
  EXPECT_EQ(At(acc.GetCovar(), 2), 4.0);
  // An empty block of a folded pair is a fold with nothing to do.
  EXPECT_TRUE(acc.IncrStats(2));

  // A copy owns its stores.
  QXAccumXProdPair copy(acc);
  copy.Update(2, 5.0, 1, 0.0, 1.0);
  EXPECT_EQ(At(copy.GetTotCases(), 2), 3.0);
  EXPECT_EQ(At(acc.GetTotCases(), 2), 2.0);

  const std::string text = QXCommon_850::internal::CaptureDisplay([&] { acc.Display(); });
  std::size_t at = 0;
  for (const char* label :
       {"QXAccumXProdPair display start", "Number of variables = 3", "Number of accumulations = 1",
        "The matrix of counts of accumulations", "The matrix of accumulated sums of cross-products",
        "The matrix of total numbers of cases", "The matrix of covariances",
        "The matrix of correlations", "QXAccumXProdPair display end"}) {
    at = text.find(label, at);
    EXPECT_NE(at, std::string::npos) << label;
  }
}

TEST(QXAccumXProdPairTest, MergePoolsPairsAndKeepsItsRules) {
  const int n = 4;
  const Data d = MakeData(200, n, 0.1, 77);
  // The second half repeats one value across the variables of a case, so its
  // second-variable statistics equal its first-variable ones: the one kind of
  // data whose pooled second variable doesn't depend on which mean is read.
  Data first, second, all;
  for (int r = 0; r < 200; ++r) {
    Vec x = d.x[r];
    for (int j = 0; j < n && r >= 100; ++j) {
      if (!QXMV::IsMissing(x[j])) x[j] = 5.0 + 0.25 * (r % 11);
    }
    Data& part = r < 100 ? first : second;
    part.x.push_back(x);
    part.w.push_back(d.w[r]);
    all.x.push_back(x);
    all.w.push_back(d.w[r]);
  }
  QXAccumXProdPair a = Accumulate(first, n, 8);
  QXAccumXProdPair b = Accumulate(second, n, 8);
  a.Finish();
  b.Finish();

  QXAccumXProdPair fresh(0, 8);
  ASSERT_TRUE(fresh.Merge(std::vector<const QXAccumXProdPair*>{nullptr, &b}));
  EXPECT_EQ(fresh.GetNVars(), n);
  QXAccumXProdPair pooled(a);
  ASSERT_TRUE(pooled.Merge(b));
  for (int i = 1; i < n; ++i) {
    for (int j = 0; j < i; ++j) {
      const int k = pooled.GetPairIndex(i, j);
      ExpectPair(fresh, k, Reference(second, i, j), 64);
      ExpectPair(pooled, k, Reference(all, i, j), 64);
    }
  }

  // Pooling into an empty accumulator takes the other's first-variable mean
  // for both variables.
  QXAccumXProdPair empty(n, 8);
  ASSERT_TRUE(empty.Merge(a));
  EXPECT_EQ(At(empty.GetMeanY(), 3), At(a.GetMeanX(), 3));

  QXAccumXProdPair other(n + 1, 8);
  EXPECT_FALSE(pooled.Merge(other));
  EXPECT_FALSE(pooled.Merge(std::vector<QXAccumXProdPair*>{nullptr, nullptr}));
  EXPECT_FALSE(pooled.Merge(std::vector<QXAccumXProdPair*>{&a, &other}));
}

}  // namespace
}  // namespace QXMath_850
