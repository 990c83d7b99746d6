#include "qx/matrices/qxsparsevector.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "qx/foundation/internal/testutil.h"
#include "qx/foundation/qxmissingvalue.h"
#include "qx/matrices/qxsymmatrix.h"

namespace QXMath_850 {
namespace {

using QXCommon_850::QXMV;
using IVec = std::vector<int>;
using Vec = std::vector<double>;

TEST(QXSparseVectorTest, ValidityAccessAndMergedDotProduct) {
  const IVec repeated = {1, 1}, negative = {-1, 2}, two = {0, 2}, three = {1, 3}, empty;
  const Vec pair = {1.0, 2.0}, triple = {1.0, 2.0, 3.0}, none;
  EXPECT_FALSE(QXSparseVector(repeated, pair).IsValid());
  EXPECT_FALSE(QXSparseVector(negative, pair).IsValid());
  EXPECT_FALSE(QXSparseVector(two, triple).IsValid());
  EXPECT_FALSE(QXSparseVector(empty, none).IsValid());

  const QXSparseVector v(three, pair);
  ASSERT_TRUE(v.IsValid());
  EXPECT_EQ(v.GetMinVecSize(), 4);
  EXPECT_EQ(v.GetIndex(1), 3);
  EXPECT_EQ(v.GetIndex(-1), -1);
  EXPECT_TRUE(QXMV::IsMissing(v.GetValue(-1)));

  // Disjoint positions give 0; shared ones are multiplied pairwise.
  EXPECT_EQ(QXSparseVector::InnerProduct(two.data(), pair.data(), 2, three.data(), pair.data(), 2),
            0.0);
  const IVec a = {0, 3, 5, 9}, b = {3, 4, 9};
  const Vec av = {1.0, 2.0, 3.0, 4.0}, bv = {10.0, 20.0, 30.0};
  EXPECT_EQ(QXSparseVector::InnerProduct(a.data(), av.data(), 4, b.data(), bv.data(), 3),
            2.0 * 10.0 + 4.0 * 30.0);
  EXPECT_TRUE(
      QXMV::IsMissing(QXSparseVector::InnerProduct(nullptr, av.data(), 1, b.data(), bv.data(), 3)));

  // Parts of a regular vector: one element past the end is refused whole.
  Vec target(6, 1.0);
  EXPECT_FALSE(v.IncrementPart(target, 3, 2.0));
  EXPECT_EQ(target, Vec(6, 1.0));
  ASSERT_TRUE(v.IncrementPart(target, 2, 2.0));
  EXPECT_EQ(target, Vec({1.0, 1.0, 1.0, 3.0, 1.0, 5.0}));
  EXPECT_EQ(v.InnerProductWithPart(target, 2), 1.0 * 3.0 + 2.0 * 5.0);
  EXPECT_TRUE(QXMV::IsMissing(v.InnerProductWithPart(target, 3)));
  EXPECT_EQ(QXSparseVector(empty, none).InnerProductWithPart(target, 0), 0.0);

  // A longer vector keeps its size and loses its old contents.
  Vec regular(7, 9.0);
  EXPECT_EQ(v.ConvertToRegularVector(regular), 7);
  EXPECT_EQ(regular, Vec({0.0, 1.0, 0.0, 2.0, 0.0, 0.0, 0.0}));

  const std::string text = QXCommon_850::internal::CaptureDisplay([&] { v.Display(); });
  EXPECT_EQ(text.rfind("\nQXSparseVector display start\nNumber of sparse vector elements = 2", 0),
            0u);
}

// Sparse rows added to a cross-products matrix give exactly what the dense
// rank-one update gives on the same rows written out in full.
TEST(QXSparseVectorTest, SparseUpdatesEqualTheDenseOnes) {
  std::mt19937_64 engine(11u);
  std::uniform_real_distribution<double> u(-2.0, 2.0);
  const int n = 9;
  QXSymMatrix sparse(n, true), dense(n, true), shifted(n + 3, true), denseShifted(n + 3, true);
  for (int c = 0; c < 40; ++c) {
    IVec index;
    Vec value;
    for (int p = 0; p < n; ++p) {
      if ((engine() % 3) == 0) {
        index.push_back(p);
        value.push_back(u(engine));
      }
    }
    if (index.empty()) continue;
    const QXSparseVector row(index, value);
    Vec full(n);
    ASSERT_EQ(row.ConvertToRegularVector(full), n);
    const double w = 0.5 + (c % 4);
    ASSERT_TRUE(row.QuadraticOuterProductIncr(sparse, w));
    ASSERT_TRUE(dense.UpdateXX(full, w));
    ASSERT_TRUE(row.QuadraticOuterProductPartIncr(shifted, 3, w));
    Vec padded(3, 0.0);
    padded.insert(padded.end(), full.begin(), full.end());
    ASSERT_TRUE(denseShifted.UpdateXX(padded, w));
  }
  EXPECT_EQ(sparse.AsVectorConst(), dense.AsVectorConst());
  EXPECT_EQ(shifted.AsVectorConst(), denseShifted.AsVectorConst());

  const IVec index = {1, 4};
  const Vec value = {3.0, -2.0};
  const QXSparseVector row(index, value);
  EXPECT_FALSE(row.QuadraticOuterProductPartIncr(shifted, 8, 1.0));
  EXPECT_FALSE(row.IncrementRowPart(shifted, n + 3, 0, 1.0));
  const double before = shifted.GetElem(2, 7);
  ASSERT_TRUE(row.IncrementRowPart(shifted, 2, 3, 0.5));
  EXPECT_EQ(shifted.GetElem(2, 7), before + 0.5 * -2.0);

  // The outer product sizes a small matrix and clears a large one.
  QXSymMatrix small(2, true), large(6, true);
  large.AddToDiagonal(5.0);
  ASSERT_TRUE(row.QuadraticOuterProduct(small));
  ASSERT_TRUE(row.QuadraticOuterProduct(large));
  EXPECT_EQ(small.GetNRows(), 5);
  EXPECT_EQ(large.GetNRows(), 6);
  for (const QXSymMatrix* s : {&small, &large}) {
    EXPECT_EQ(s->GetElem(1, 1), 9.0);
    EXPECT_EQ(s->GetElem(4, 1), -6.0);
    EXPECT_EQ(s->GetElem(4, 4), 4.0);
    EXPECT_EQ(s->Trace(), 13.0);
  }
  // The increment only grows a matrix that is too small, clearing it.
  QXSymMatrix grown(2, true);
  grown.AddToDiagonal(1.0);
  ASSERT_TRUE(row.QuadraticOuterProductIncr(grown, 2.0));
  EXPECT_EQ(grown.GetNRows(), 5);
  EXPECT_EQ(grown.Trace(), 26.0);
}

TEST(QXSparseVectorTest, ProbabilitiesAreAStableSoftmax) {
  const IVec index = {0, 1};
  const Vec x = {1.0, 2.0};
  const QXSparseVector row(index, x);
  Vec p;
  double logLast = 0.0;
  // Two equal predictors of 0: each of the three categories gets a third.
  ASSERT_TRUE(row.ComputeProbabilities(Vec(4, 0.0), 3, 2, p, logLast));
  for (int k = 0; k < 3; ++k)
    EXPECT_NEAR(p[k], 1.0 / 3.0, 1e-16);
  EXPECT_NEAR(logLast, -std::log(3.0), 1e-15);

  // Moderate predictors agree with the textbook formula; extreme ones keep
  // their ratios and never overflow.
  for (double scale : {0.1, 1.0, 300.0, 2000.0}) {
    const Vec coef = {0.5 * scale, -0.2 * scale, -1.0 * scale, 0.3 * scale, 0.0, 0.1 * scale};
    ASSERT_TRUE(row.ComputeProbabilities(coef, 4, 2, p, logLast));
    long double e[3], total = 1.0L;
    for (int k = 0; k < 3; ++k) {
      e[k] = static_cast<long double>(coef[2 * k]) + 2.0L * coef[2 * k + 1];
      total += std::exp(e[k]);
    }
    double sum = 0.0;
    for (int k = 0; k < 4; ++k) {
      const long double expected = (k < 3 ? std::exp(e[k]) : 1.0L) / total;
      EXPECT_NEAR(p[k], static_cast<double>(expected), 1e-13) << scale << " " << k;
      sum += p[k];
    }
    EXPECT_NEAR(sum, 1.0, 1e-14);
    EXPECT_TRUE(std::isfinite(logLast));
  }

  // All predictors equal and beyond the exponent range.
  p.clear();
  ASSERT_TRUE(row.ComputeProbabilities({800.0, 0.0, 800.0, 0.0}, 3, 2, p, logLast));
  EXPECT_EQ(p, Vec({0.5, 0.5, 0.0}));
  EXPECT_DOUBLE_EQ(logLast, -800.0 - std::log(2.0));
  ASSERT_TRUE(row.ComputeProbabilities({-800.0, 0.0, -800.0, 0.0}, 3, 2, p, logLast));
  EXPECT_EQ(p, Vec({0.0, 0.0, 1.0}));
  EXPECT_EQ(logLast, 0.0);

  EXPECT_FALSE(row.ComputeProbabilities(Vec(4, 0.0), 1, 2, p, logLast));
  EXPECT_FALSE(row.ComputeProbabilities(Vec(3, 0.0), 3, 2, p, logLast));
}

}  // namespace
}  // namespace QXMath_850
