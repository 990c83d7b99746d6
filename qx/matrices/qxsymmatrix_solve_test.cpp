// The solvers of possibly singular systems, on both matrix classes.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "qx/matrices/internal/testutil.h"
#include "qx/matrices/qxrectmatrix.h"
#include "qx/matrices/qxsymmatrix.h"

namespace QXMath_850 {
namespace {

using Vec = std::vector<double>;
using Bits = std::vector<bool>;

Vec Times(const QXSymMatrix& a, const Vec& x) {
  Vec y;
  a.ComputeSV(x, y);
  return y;
}
Vec Times(const QXRectMatrix& a, const Vec& x) {
  Vec y;
  a.ComputeRV(x, y);
  return y;
}

// Largest |A x - b| relative to the largest |b|.
template <typename Matrix>
double RelResidual(const Matrix& a, const Vec& x, const Vec& b) {
  const Vec ax = Times(a, x);
  double worst = 0.0, scale = 0.0;
  for (std::size_t i = 0; i < b.size(); ++i) {
    worst = std::fmax(worst, std::fabs(ax[i] - b[i]));
    scale = std::fmax(scale, std::fabs(b[i]));
  }
  return worst / scale;
}

// b = A y for half-integers y: exact, and no solution is 0.0 by chance.
template <typename Matrix>
Vec ConsistentRhs(const Matrix& a, int n) {
  Vec y(n);
  for (int i = 0; i < n; ++i)
    y[i] = (i * 7 % 11) - 5.5;
  return Times(a, y);
}

// The exact integer product X Y of rank k.
QXRectMatrix RankK(int m, int n, int k, unsigned seed) {
  std::mt19937 gen(seed);
  std::uniform_int_distribution<int> small(-9, 9);
  QXRectMatrix x(m, k, true), y(k, n, true), a;
  for (QXRectMatrix* f : {&x, &y}) {
    for (double& v : f->AsVector())
      v = small(gen);
  }
  x.ComputeMatrixProduct(y, a);
  return a;
}

TEST(SolveTest, ConsistentSingularSymmetricSystemsAreSolved) {
  for (int n : {2, 5, 8, 13}) {
    for (auto kind : {internal::Kind::kRankDeficient, internal::Kind::kInteger}) {
      QXSymMatrix s = internal::TestMatrix(n, 40u + n, kind);  // rank n / 2, and n
      const Vec b = ConsistentRhs(s, n);
      Vec x;
      ASSERT_TRUE(s.SolveIndefinite(1e-10, b, x)) << n;
      EXPECT_LT(RelResidual(s, x, b), 1e-10) << n;
      EXPECT_EQ(std::count(x.begin(), x.end(), 0.0),
                kind == internal::Kind::kInteger ? 0 : n - n / 2);
      ASSERT_TRUE(s.SolveIndefiniteGI(1e-10, b, x));
      EXPECT_LT(RelResidual(s, x, b), 1e-8) << n;
    }
  }
}

TEST(SolveTest, SymmetricZeroRowsSecondReductionAndRefusals) {
  // Row 1 is zero. Row 2 lies beyond keep's bits and is kept, not being zero
  // in column 0; with every bit true the whole singular matrix is used.
  QXSymMatrix s = internal::Packed({2, 0, 0, 1, 0, -3});
  const Vec b{2, 0, 8};
  Vec x, y;
  ASSERT_TRUE(s.SolveIndefinite(0.0, b, x));
  ASSERT_TRUE(s.SolveIndefinite(QXBitSet(Bits{true, false}), b, y));
  EXPECT_EQ(x, y);
  EXPECT_EQ(x[1], 0.0);
  EXPECT_LT(RelResidual(s, x, b), 1e-15);
  EXPECT_FALSE(s.SolveIndefinite(QXBitSet(Bits{true, true}), b, x));
  EXPECT_FALSE(s.SolveIndefinite(QXBitSet(3), b, x));
  EXPECT_FALSE(s.SolveIndefinite(-0.1, b, x));
  EXPECT_FALSE(s.SolveIndefinite(0.1, {2, 0}, x));
  EXPECT_FALSE(QXSymMatrix(3, true).SolveIndefinite(0.1, b, x));
  EXPECT_FALSE(s.SolveIndefiniteGI(-0.1, b, x));
  // tol 0.0 makes the inner Cholesky solve refuse (-1), which reads as true.
  x = {7};
  EXPECT_TRUE(s.SolveIndefiniteGI(0.0, b, x));
  EXPECT_EQ(x, Vec{7});
  // Rows 1 and 2 pass the first search, but their own block is singular to
  // rounding: the second keeps row 1 alone, though b is column 2.
  QXSymMatrix twice = internal::Packed({0, 0, 1, 0, 1, 1 + 1e-12, 0, 1, 0, 1e12 + 1});
  ASSERT_TRUE(twice.SolveIndefinite(1e-10, {0, 1, 1 + 1e-12, 0}, x));
  EXPECT_EQ(x, (Vec{0, 1, 0, 0}));
}

TEST(SolveTest, RedundantColumnsAndRowsOfRankKProducts) {
  QXBitSet bits;
  std::vector<int> indices;
  QXRectMatrix full;
  for (int k : {1, 3, 5}) {
    QXRectMatrix a = RankK(9, 6, k, 10u + k);
    EXPECT_EQ(a.FindRedundancies(1e-6, bits, true), 9 - k);
    EXPECT_EQ(a.FindRedundancies(1e-6, bits, false), 6 - k);
    ASSERT_EQ(a.ExtractFullRank(1e-6, full, indices, false), k);
    EXPECT_EQ(full.FindRedundancies(1e-6, bits, false), 0);
    EXPECT_EQ(full.GetElem(8, k - 1), a.GetElem(8, indices.back()));
    EXPECT_EQ(a.ExtractFullRank(1e-6, full, indices, true), k);
    EXPECT_EQ(full.GetNRows(), k);
  }
  // The tolerance is on the scale of norms: the second column keeps about
  // 2e-5 of its norm. Without the last row, it is twice the first.
  QXRectMatrix c(3, 2, true);
  c.AsVector() = {1, 2, 2, 4, 0, 1e-4};
  EXPECT_EQ(c.FindRedundancies(1e-6, bits, false), 0);
  EXPECT_EQ(c.FindRedundancies(1e-4, bits, false), 1);
  c.DeleteOneRow(2);
  EXPECT_EQ(c.FindRedundancies(1e-8, bits, false), 1);
  EXPECT_TRUE(bits.IsIn(0) && !bits.IsIn(1));
  EXPECT_EQ(c.FindRedundancies(-1e-8, bits, false), -1);
  EXPECT_EQ(c.ExtractFullRank(-1e-8, full, indices, false), -1);
}

TEST(SolveTest, ProjectionResidualsAreOrthogonalToZ) {
  QXRectMatrix z = internal::TestRect(12, 4, 5), a = internal::TestRect(12, 3, 6);
  for (int i = 0; i < 12; ++i) {
    z.SetElem(i, 3, z.GetElem(i, 0) + z.GetElem(i, 1));  // aliased
    // Nearly in the span of z: keeps about 1e-12 of its sum of squares.
    a.SetElem(i, 1, 1e6 * (2.0 * z.GetElem(i, 2) - z.GetElem(i, 0)) + a.GetElem(i, 1));
  }
  const QXRectMatrix before = a;
  QXBitSet zKept(1), left(9);
  ASSERT_TRUE(a.ResidOfOrthProjection(z, 1e-8, zKept, left));
  EXPECT_EQ(zKept, QXBitSet(Bits{true, true, true, false}));
  EXPECT_EQ(left, QXBitSet(Bits{true, false, true}));
  for (int j = 0; j < 12; ++j)
    EXPECT_LT(std::fabs(z.DotProductColCol(j / 3, a, j % 3)),
              1e-13 * before.ColNorm(j % 3) * z.ColNorm(j / 3));
  EXPECT_FALSE(a.ResidOfOrthProjection(z, 0.0, zKept, left));
  EXPECT_FALSE(a.ResidOfOrthProjection(internal::TestRect(11, 4, 5), 1e-8, zKept, left));
}

TEST(SolveTest, SquareAndGeneralizedLinearSolves) {
  QXRectMatrix a = internal::TestRect(7, 7, 21);  // not symmetric: job 1 matters
  a.AddToDiagonal(50.0);
  QXRectMatrix singular = RankK(6, 6, 4, 3);
  Vec x{7};
  EXPECT_FALSE(a.SolveLinearSquare(ConsistentRhs(a, 7), x, 1.0));  // no estimate is above 1.0
  EXPECT_FALSE(singular.SolveLinearSquare(Vec(6, 1.0), x, 1e-12));
  EXPECT_EQ(x, Vec{7});
  // Square and well conditioned: 0; otherwise the normal equations' count.
  struct Case {
    QXRectMatrix a;
    int result;
  } cases[] = {{a, 0}, {singular, 2}, {RankK(10, 4, 4, 8), 0}, {RankK(10, 5, 3, 9), 2}};
  for (Case& c : cases) {
    const Vec b = ConsistentRhs(c.a, c.a.GetNCols());
    EXPECT_EQ(c.a.EstimateLinearGI(b, x, 1e-10), c.result);
    EXPECT_LT(RelResidual(c.a, x, b), 1e-9);
  }
  EXPECT_EQ(a.EstimateLinearGI(x, x, 0.0), -1);
  EXPECT_EQ(QXRectMatrix(0, 3, true).EstimateLinearGI({}, x, 1e-10), -1);
}

}  // namespace
}  // namespace QXMath_850
