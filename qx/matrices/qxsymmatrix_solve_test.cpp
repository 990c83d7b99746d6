// Solvers of possibly singular symmetric systems.

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "qx/matrices/internal/testutil.h"
#include "qx/matrices/qxsymmatrix.h"

namespace QXMath_850 {
namespace {

using Vec = std::vector<double>;
using Bits = std::vector<bool>;
using internal::RelResidual;

TEST(SymSolveTest, ConsistentSingularSystemsAreSolved) {
  for (int n : {2, 5, 8, 13}) {
    for (auto kind : {internal::Kind::kRankDeficient, internal::Kind::kInteger}) {
      QXSymMatrix s = internal::TestMatrix(n, 40u + n, kind);  // rank n / 2, and n
      const Vec b = internal::ConsistentRhs(s, n);
      Vec x;
      ASSERT_TRUE(s.SolveIndefinite(1e-10, b, x)) << n;
      EXPECT_LT(RelResidual(s, x, b), 1e-10) << n;
      // The rows left out, and only they, are 0.0.
      EXPECT_EQ(std::count(x.begin(), x.end(), 0.0),
                kind == internal::Kind::kInteger ? 0 : n - n / 2);
      ASSERT_TRUE(s.SolveIndefiniteGI(1e-10, b, x));
      EXPECT_LT(RelResidual(s, x, b), 1e-8) << n;
    }
  }
}

TEST(SymSolveTest, ZeroRowsSecondReductionAndRefusals) {
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
  EXPECT_FALSE(QXSymMatrix(3, true).SolveIndefinite(0.1, b, x));
  EXPECT_FALSE(s.SolveIndefiniteGI(-0.1, b, x));
  // tol 0.0 makes the inner Cholesky solve refuse (-1), which reads as true.
  x = {7};
  EXPECT_TRUE(s.SolveIndefiniteGI(0.0, b, x));
  EXPECT_EQ(x, Vec{7});
  // Rows 1 and 2 pass the first search, but their own block is singular to
  // rounding: the second search keeps row 1 alone, though b is column 2.
  QXSymMatrix twice = internal::Packed({0, 0, 1, 0, 1, 1 + 1e-12, 0, 1, 0, 1e12 + 1});
  ASSERT_TRUE(twice.SolveIndefinite(1e-10, {0, 1, 1 + 1e-12, 0}, x));
  EXPECT_EQ(x, (Vec{0, 1, 0, 0}));
}

}  // namespace
}  // namespace QXMath_850
