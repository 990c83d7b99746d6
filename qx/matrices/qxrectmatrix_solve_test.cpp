// Redundancy search, projection residuals and solvers of QXRectMatrix.

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "qx/matrices/internal/testutil.h"
#include "qx/matrices/qxrectmatrix.h"

namespace QXMath_850 {
namespace {

using Vec = std::vector<double>;
using Bits = std::vector<bool>;

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

TEST(RectSolveTest, RedundantColumnsAndRowsOfRankKProducts) {
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
  // Only squared, the sign of the tolerance is lost here.
  EXPECT_EQ(c.FindNonRedunIndices(-1e-8, indices, false), 1);
}

TEST(RectSolveTest, ProjectionResidualsAreOrthogonalToZ) {
  QXRectMatrix z = internal::TestRect(12, 4, 5), a = internal::TestRect(12, 3, 6);
  for (int i = 0; i < 12; ++i) {
    z.SetElem(i, 3, z.GetElem(i, 0) + z.GetElem(i, 1));  // aliased
    // Nearly in the span of z: keeps about 1e-12 of its sum of squares.
    a.SetElem(i, 1, 1e6 * (2.0 * z.GetElem(i, 2) - z.GetElem(i, 0)) + a.GetElem(i, 1));
  }
  const QXRectMatrix before = a;
  QXBitSet zKept(Bits(4, true)), left(9);  // cleared, and resized
  ASSERT_TRUE(a.ResidOfOrthProjection(z, 1e-8, zKept, left));
  EXPECT_EQ(zKept, QXBitSet(Bits{true, true, true, false}));
  EXPECT_EQ(left, QXBitSet(Bits{true, false, true}));
  for (int j = 0; j < 12; ++j)
    EXPECT_LT(std::fabs(z.DotProductColCol(j / 3, a, j % 3)),
              1e-13 * before.ColNorm(j % 3) * z.ColNorm(j / 3));
  EXPECT_FALSE(a.ResidOfOrthProjection(z, 0.0, zKept, left));
  EXPECT_FALSE(a.ResidOfOrthProjection(internal::TestRect(11, 4, 5), 1e-8, zKept, left));
}

TEST(RectSolveTest, SquareAndGeneralizedLinearSolves) {
  QXRectMatrix a = internal::TestRect(7, 7, 21);  // not symmetric: the transposed solve matters
  a.AddToDiagonal(50.0);
  QXRectMatrix singular = RankK(6, 6, 4, 3);
  Vec x{7};
  EXPECT_FALSE(a.SolveLinearSquare(internal::ConsistentRhs(a, 7), x, 1.0));  // rcond <= 1.0
  EXPECT_FALSE(singular.SolveLinearSquare(Vec(6, 1.0), x, 1e-12));
  EXPECT_EQ(x, Vec{7});
  // Square and well conditioned: 0; otherwise the normal equations' count.
  struct Case {
    QXRectMatrix a;
    int result;
  } cases[] = {{a, 0}, {singular, 2}, {RankK(10, 4, 4, 8), 0}, {RankK(10, 5, 3, 9), 2}};
  for (Case& c : cases) {
    const Vec b = internal::ConsistentRhs(c.a, c.a.GetNCols());
    EXPECT_EQ(c.a.EstimateLinearGI(b, x, 1e-10), c.result);
    EXPECT_LT(internal::RelResidual(c.a, x, b), 1e-9);
  }
  EXPECT_EQ(a.EstimateLinearGI(x, x, 0.0), -1);
  EXPECT_EQ(QXRectMatrix(0, 3, true).EstimateLinearGI({}, x, 1e-10), -1);
}

}  // namespace
}  // namespace QXMath_850
