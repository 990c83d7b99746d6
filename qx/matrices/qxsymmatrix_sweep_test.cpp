#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include "qx/matrices/internal/testutil.h"
#include "qx/matrices/qxbitset.h"
#include "qx/matrices/qxmathfun.h"
#include "qx/matrices/qxsymmatrix.h"

namespace QXMath_850 {
namespace {

using Vec = std::vector<double>;
using internal::Packed;
constexpr double kEps = std::numeric_limits<double>::epsilon();

// Same bits, and the largest difference, of the two packed stores.
bool SameBits(const QXSymMatrix& a, const QXSymMatrix& b) {
  return internal::SameBitsAll(a.AsVectorConst(), b.AsVectorConst());
}
double MaxDiff(const QXSymMatrix& a, const QXSymMatrix& b) {
  return internal::MaxDiff(a.AsVectorConst(), b.AsVectorConst());
}

// Random symmetric matrix with a dominant diagonal, hence positive definite.
QXSymMatrix RandomSpd(int n, unsigned seed) {
  QXSymMatrix a = Packed(internal::WideRangeData(n * (n + 1) / 2, seed, 0));
  a.AddToDiagonal(n + 1.0);
  return a;
}

// Cross-products of m random cases of n variables; with `collinear` the last
// variable is the sum of the first two.
QXSymMatrix RandomCrossProducts(int n, int m, unsigned seed, bool collinear) {
  std::mt19937_64 engine(seed);
  std::normal_distribution<double> normal(0.0, 1.0);
  QXSymMatrix a(n, true);
  Vec x(n);
  for (int c = 0; c < m; ++c) {
    for (double& v : x)
      v = normal(engine);
    if (collinear) x[n - 1] = x[0] + x[1];
    a.UpdateXX(x, 1.0);
  }
  return a;
}

TEST(QXSymMatrixSweepTest, FourRowSweepGivesTheBitsOfThePlainOne) {
  for (int n = 1; n <= 40; n += (n < 14 ? 1 : 9)) {
    for (bool collinear : {false, true}) {
      if (collinear && n < 3) continue;
      QXSymMatrix a = RandomCrossProducts(n, n + 5, 100u + n, collinear);
      QXSymMatrix b(a);
      Vec diag;
      a.GetDiagonal(diag);
      QXBitSet sa(n), sb(n);
      // Rows near both ends and the middle, one swept out again, then each row.
      std::vector<int> order = {0, n - 1, n / 2, n > 1 ? 1 : 0, n > 2 ? n - 2 : 0, n / 2};
      for (int k = 0; k < n; ++k)
        order.push_back(k);
      for (int k : order) {
        ASSERT_EQ(a.Sweep(k, 1e-9, diag, sa, true), b.SweepOrig(k, 1e-9, diag, sb, true));
        ASSERT_TRUE(sa == sb);
        ASSERT_TRUE(SameBits(a, b)) << "n " << n << " k " << k;
      }
    }
  }
}

TEST(QXSymMatrixSweepTest, PivotAndDamageTestsAndArgumentChecks) {
  const Vec ones = {1.0, 1.0};
  QXSymMatrix a = Packed({1, 0.999999, 1}), loose(a);
  QXBitSet s1(2), s2(2);
  ASSERT_TRUE(a.Sweep(0, 1e-4, ones, s1, true));
  const QXSymMatrix once(a);
  EXPECT_FALSE(a.Sweep(1, 1e-4, ones, s1, true));
  EXPECT_TRUE(SameBits(a, once));
  EXPECT_FALSE(s1.IsIn(1));
  ASSERT_TRUE(loose.Sweep(0, 1e-8, ones, s2, true));
  EXPECT_TRUE(loose.Sweep(1, 1e-8, ones, s2, true));

  // A pivot equal to tol * diag[k] is refused, and so are zero and negative
  // ones; a row comes out again with no test, even from a zero diagonal.
  QXSymMatrix p = Packed({0.5, 0, 0, 0, 0, -1});
  const Vec ref = {1.0, 0.0, 0.0};
  QXBitSet s(3);
  for (int k : {0, 1, 2})
    EXPECT_FALSE(p.Sweep(k, 0.5, ref, s, true)) << k;
  EXPECT_TRUE(p.Sweep(0, 0.25, ref, s, true));
  p.SetElem(0, 0, 0.0);
  EXPECT_TRUE(p.Sweep(0, 0.25, ref, s, true));
  EXPECT_TRUE(std::isinf(p.GetElem(0, 0)));
  EXPECT_FALSE(s.IsIn(0));

  // The damage test: the second row would leave the first too collinear,
  // measured against its large reference diagonal.
  QXSymMatrix d = Packed({2, 0.5, 0.5}), d2(d);
  QXBitSet sd(2), sd2(2);
  ASSERT_TRUE(d.Sweep(0, 0.1, Vec{19.0, 1.0}, sd, true));
  EXPECT_FALSE(d.Sweep(1, 0.1, Vec{19.0, 1.0}, sd, true));
  ASSERT_TRUE(d2.Sweep(0, 0.1, ones, sd2, true));
  EXPECT_TRUE(d2.Sweep(1, 0.1, ones, sd2, true));

  QXSymMatrix c = RandomSpd(3, 1u);
  const Vec diag = {1.0, 1.0, 1.0};
  QXBitSet bits(3), shortBits(2);
  EXPECT_FALSE(c.Sweep(3, 1e-8, diag, bits, true));
  EXPECT_FALSE(c.Sweep(0, 0.0, diag, bits, true));
  EXPECT_FALSE(c.Sweep(0, 1e-8, Vec{1.0, -1.0, 1.0}, bits, true));
  EXPECT_FALSE(c.Sweep(0, 1e-8, diag, shortBits, true));
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_FALSE(c.SweepOrig(0, nan, diag, bits, true));
  EXPECT_FALSE(c.SweepOrig(0, 1e-8, Vec(4, 1.0), bits, true));
  EXPECT_TRUE(c.Sweep(0, nan, diag, bits, true));
  EXPECT_TRUE(bits.IsIn(0));

  Vec coeffs = {9.0};
  EXPECT_FALSE(c.GetRegCoeffs(coeffs, QXBitSet(1)));
  EXPECT_TRUE(RandomSpd(1, 2u).GetRegCoeffs(coeffs, QXBitSet()));
  EXPECT_TRUE(coeffs.empty());
}

TEST(QXSymMatrixSweepTest, BulkSweepsKeepTheBits) {
  const QXSymMatrix a = RandomSpd(6, 3u);
  double got = 0.0;

  // Rows below the count start unswept whatever the record said; higher
  // bits stay as they were.
  QXSymMatrix b(a), fresh(a);
  QXBitSet old(6), clean(6);
  old.SetSubset({1, 4, 5}, true);
  ASSERT_TRUE(b.SweepOnMany(4, 1e-10, true, old, got, true, nullptr));
  ASSERT_TRUE(fresh.SweepOnMany(4, 1e-10, true, clean, got, true, nullptr));
  EXPECT_EQ(old.InSet(), 6);
  EXPECT_TRUE(SameBits(b, fresh));

  Vec ref = {0.5, 2.0, 1.0, 1.0, 1.0, 1.0};
  QXBitSet s3;
  QXSymMatrix e(a);
  EXPECT_FALSE(e.SweepOnMany(0, 1e-10, true, s3, got, true, ref.data()));
  EXPECT_FALSE(e.SweepOnMany(2, 0.0, true, s3, got, true, ref.data()));
  EXPECT_EQ(ref[0], 0.5);
  ASSERT_TRUE(e.SweepOnSelected({3, 1}, 1e-10, s3, true, ref.data()));
  EXPECT_EQ(ref[0], 1.0);  // floored in the caller's array
  EXPECT_EQ(s3.InSet(), 2);
  EXPECT_TRUE(s3.IsIn(1) && s3.IsIn(3));
  const QXSymMatrix before(e);
  EXPECT_FALSE(e.SweepOnSelected({0, 6}, 1e-10, s3, true, nullptr));
  EXPECT_TRUE(SameBits(e, before));

  // A refused row in the list just stays out.
  QXSymMatrix f = RandomCrossProducts(4, 10, 5u, true);
  QXBitSet s4;
  ASSERT_TRUE(f.SweepOnSelected({0, 1, 3, 2}, 1e-9, s4, true, nullptr));
  EXPECT_EQ(s4.InSet(), 3);
  EXPECT_FALSE(s4.IsIn(3));
}

TEST(QXSymMatrixSweepTest, CholeskyRebuildsTheMatrix) {
  for (int n = 1; n <= 200; n += (n < 40 ? 1 : 23)) {
    const QXSymMatrix a = RandomSpd(n, 1000u + n);
    Vec diag;
    a.GetDiagonal(diag);
    QXSymMatrix l(a);
    QXBitSet kept;
    ASSERT_EQ(l.LTChol(diag, 1e-12, kept, true), 0);
    EXPECT_EQ(kept.InSet(), n);
    l.LTLLTrans();
    EXPECT_LE(MaxDiff(l, a), 4.0 * n * kEps * (n + 2.0)) << "n " << n;
  }
}

long double Binomial(int n, int k) {
  long double c = 1.0L;
  for (int i = 1; i <= k; ++i)
    c = c * (n - k + i) / i;
  return c;
}

// Hilbert matrices, whose inverses are known integers and whose determinants
// are known: the inverse, a solve, minus the inverse that sweeping every row
// leaves and the log-determinant are off by no more than n eps times the
// condition number (infinity norm), relative; sweeping back returns H.
TEST(QXSymMatrixSweepTest, HilbertInversesStayWithinTheirCondition) {
  for (int n = 2; n <= 10; ++n) {
    QXSymMatrix h(n, true), g;
    Vec exact(n * n), diag, x(n, 0.0);
    double hNorm = 0.0, inverseNorm = 0.0, largest = 0.0;
    for (int i = 0; i < n; ++i) {
      double hRow = 0.0, inverseRow = 0.0;
      for (int j = 0; j < n; ++j) {  // (-1)^(i+j) (i+j+1) C(n+i, n-j-1) C(n+j, n-i-1) C(i+j, i)^2
        const long double c = Binomial(i + j, i);
        exact[i * n + j] = static_cast<double>((i + j) % 2 ? -1 : 1) * (i + j + 1) *
                           Binomial(n + i, n - j - 1) * Binomial(n + j, n - i - 1) * c * c;
        h.SetElem(i, j, 1.0 / (i + j + 1));
        hRow += h.GetElem(i, j);
        inverseRow += std::fabs(exact[i * n + j]);
        largest = std::fmax(largest, std::fabs(exact[i * n + j]));
      }
      hNorm = std::fmax(hNorm, hRow);
      inverseNorm = std::fmax(inverseNorm, inverseRow);
    }
    const double bound = n * kEps * hNorm * inverseNorm * largest;
    double logDet = 0.0, got = 0.0, det[2];  // det H = c(n)^4 / c(2n), c(n) = 1! 2! ... (n-1)!
    for (int i = 1; i < 2 * n; ++i)
      logDet += (i < n ? 3.0 : -1.0) * std::lgamma(i + 1.0);
    ASSERT_TRUE(h.ComputeDeterminant(1e-15, det));
    EXPECT_NEAR((std::log10(det[0]) + det[1]) * std::log(10.0), logDet, bound / largest);
    h.GetDiagonal(diag);
    ASSERT_EQ(h.CholInverse(diag, 1e-15, g), n);
    x[0] = 1.0;
    ASSERT_EQ(QXSymMatrix(h).LTSolve(x, 1e-15, x), 0);  // the first column of the inverse
    QXSymMatrix swept(h);
    QXBitSet in, before;  // log pivots before the sweeps, then of their inverses
    ASSERT_TRUE(QXSymMatrix(h).SweepOnMany(n, 1e-15, true, before, got, false, diag.data()));
    EXPECT_NEAR(got, logDet, bound / largest);
    ASSERT_TRUE(swept.SweepOnMany(n, 1e-15, false, in, got, false, diag.data()));
    EXPECT_NEAR(got, -logDet, bound / largest);
    EXPECT_EQ(in.InSet(), n);
    for (int i = 0; i < n; ++i) {
      EXPECT_NEAR(x[i], exact[i * n], bound) << "n " << n;
      for (int j = 0; j < n; ++j) {
        EXPECT_NEAR(g.GetElem(i, j), exact[i * n + j], bound) << "n " << n;
        EXPECT_NEAR(-swept.GetElem(i, j), exact[i * n + j], bound) << "n " << n;
      }
    }
    for (int k = n - 1; k >= 0; --k)
      ASSERT_TRUE(swept.Sweep(k, 1e-15, diag, in, true));
    EXPECT_EQ(in.InSet(), 0);
    EXPECT_LE(MaxDiff(swept, h), bound / largest);
  }
}

TEST(QXSymMatrixSweepTest, CholeskyOfRankDeficientMatricesGivesAGeneralizedInverse) {
  QXSymMatrix g, l;
  Vec diag, row;
  EXPECT_EQ(Packed({1, 0, 0.5}).LTChol({1.0, 1.0}, 0.5, true), 1);  // pivot at tol * diag

  // A = B B^T with B an 8 by r integer matrix whose top r rows are unit lower
  // triangular: A is exact, of rank r, and rows r..7 are the redundant ones,
  // with a zero pivot in L and zero rows in G; the independent rows found
  // without factoring are 0..r-1.
  QXSymMatrix work;
  QXBitSet all(8);
  all.SetRange(0, 7, true);
  std::vector<int> rows;
  const auto b = [](int i, int k, int r) {
    return i >= r ? (i * k + 3) % 7 - 3.0 : i == k ? 1.0 : i > k ? (i + 2 * k) % 3 - 1.0 : 0.0;
  };
  for (int r = 1; r < 8; ++r) {
    QXSymMatrix a;
    for (int k = 0; k < r; ++k) {
      Vec column(8);
      for (int i = 0; i < 8; ++i)
        column[i] = b(i, k, r);
      k == 0 ? a.SetToVV(column) : a.UpdateXXPosNegW(column, 1.0);
    }
    a.GetDiagonal(diag);
    l = a;
    ASSERT_EQ(l.LTChol(diag, 1e-9, true), 8 - r);
    for (int i = r; i < 8; ++i)
      EXPECT_EQ(l.GetElem(i, i), 0.0);
    EXPECT_EQ(a.CholIndNonRed(0, 1e-9, rows), r);
    EXPECT_EQ(rows.back(), r - 1);
    EXPECT_EQ(work.CheckMDependent(8, a.AsVectorConst(), all, 1e-9), 8 - r);
    QXBitSet kept(12);
    kept.SetRange(0, 11, true);
    ASSERT_EQ(a.CholInverse(diag, 1e-9, g, kept), r);
    EXPECT_EQ(kept.Size(), 12);
    EXPECT_EQ(kept.InRange(0, r - 1), r);
    EXPECT_EQ(kept.InSet(), r);
    const double scale = a.Trace();
    for (int i = 0; i < 8; ++i) {  // A G A = A, and G is zero in the redundant rows
      g.GetRow(i, row);
      EXPECT_TRUE(i < r || row == Vec(8, 0.0));
      for (int j = 0; j <= i; ++j) {
        double sum = 0.0;
        for (int pq = 0; pq < 64; ++pq)
          sum += a.GetElem(i, pq / 8) * g.GetElem(pq / 8, pq % 8) * a.GetElem(pq % 8, j);
        EXPECT_NEAR(sum, a.GetElem(i, j), 1e-12 * scale) << "rank " << r;
      }
    }
  }

  const QXSymMatrix a = RandomSpd(8, 11u);
  QXSymMatrix empty, keep(a);
  EXPECT_EQ(empty.LTChol(diag, -1.0, true), -1);
  EXPECT_EQ(empty.LTChol(diag, 1.0, true), 0);
  EXPECT_EQ(keep.LTChol(Vec(8, -1.0), 1e-9, true), -1);
  EXPECT_EQ(keep.LTChol(Vec(3, 1.0), 1e-9, true), -1);
  EXPECT_EQ(keep.CholIndNonRed(2, 1e-9, rows), 2);
  EXPECT_EQ(rows, (std::vector<int>{0, 1}));
  EXPECT_EQ(keep.CholIndNonRed(0, -1.0, rows), 0);
  EXPECT_TRUE(rows.empty());
  EXPECT_TRUE(SameBits(keep, a));
  all.SetSubset({1, 3, 4, 6, 7}, false);  // rows 0, 2 and 5, compacted
  EXPECT_EQ(work.CheckMDependent(8, a.AsVectorConst(), all, 1e-9), 0);
  EXPECT_EQ(work.GetNRows(), 3);
  EXPECT_EQ(work.CheckMDependent(9, a.AsVectorConst(), all, 1e-9), -1);
  EXPECT_EQ(work.CheckMDependent(0, a.AsVectorConst(), all, 1e-9), 0);
}

// LINPACK DTRDI's inverse of a lower triangle as it reads, down the columns
// with the growing-stride walkers of QXMathFun. Those walkers, and LTGltl with
// IIDot below, are held here bit for bit to the row-wise inverse, which the
// Hilbert test holds to the exact one.
void ColumnWalkInverse(int n, Vec& l) {
  for (int k = n - 1; k >= 0; --k) {
    const int row = k * (k + 1) / 2, kk = row + k;
    if (l[kk] == 0.0) {
      QXMathFun::IIInit(n - k, 0.0, l, kk, k + 1);
      QXMathFun::LRZero(l, row, k + 1);
      continue;
    }
    l[kk] = 1.0 / l[kk];
    QXMathFun::IIScal(n - k - 1, -l[kk], l, kk + k + 1, k + 2);
    for (int j = 0; j < k; ++j) {
      const double t = l[row + j];
      l[row + j] = 0.0;
      QXMathFun::IIAxpy(n - k, t, l, kk, k + 1, l, row + j, k + 1);
    }
  }
}

TEST(QXSymMatrixSweepTest, InverseGivesTheBitsOfTheColumnWalks) {
  for (int n : {1, 2, 5, 17, 40}) {
    QXSymMatrix l = RandomCrossProducts(n, n + 2, 50u + n, n > 2);
    Vec diag;
    l.GetDiagonal(diag);
    l.LTChol(diag, 1e-9, false);  // with a zero pivot where collinear
    Vec walked = l.AsVectorConst();
    ColumnWalkInverse(n, walked);
    double det[2];
    l.LTDetInverse(det, 10);
    ASSERT_EQ(std::memcmp(walked.data(), l.AsVectorConst().data(), walked.size() * 8), 0);
    QXMathFun::LTGltl(n, walked);
    l.LTLTransL();
    ASSERT_EQ(std::memcmp(walked.data(), l.AsVectorConst().data(), walked.size() * 8), 0);
  }
}

TEST(QXSymMatrixSweepTest, InversesAndSolvesAgree) {
  const QXSymMatrix a = RandomSpd(7, 21u);
  const Vec b = {1, -2, 3, 0.5, -1, 4, 2};
  Vec diag, x, x2, y;
  a.GetDiagonal(diag);
  QXSymMatrix g, l(a);
  double minPivot = 0.0;
  ASSERT_EQ(a.CholInverse(diag, 1e-10, g, minPivot), 7);
  ASSERT_EQ(l.LTChol(diag, 1e-10, false), 0);
  double largest = 0.0, smallest = 0.0;
  l.MaxMinDiag(largest, smallest);
  EXPECT_EQ(minPivot, smallest);
  QXSymMatrix inv(l);
  EXPECT_TRUE(inv.LTInverse());
  EXPECT_TRUE(SameBits(inv, g));

  QXSymMatrix solver(a);
  ASSERT_EQ(solver.LTSolve(b, 1e-10, x), 0);
  x2 = b;  // both solves may work in place
  ASSERT_EQ(solver.LTSubstitute(x2, x2), 0);
  EXPECT_EQ(x2, x);
  y = b;
  ASSERT_TRUE(solver.TSolveSubst(y, y, false));
  ASSERT_TRUE(solver.TSolveSubst(y, y, true));
  EXPECT_EQ(y, x);
  double sum = 0.0, below = 0.0;
  ASSERT_TRUE(solver.DotProdRowBeforeDiagFrontVec(6, b, sum));
  ASSERT_TRUE(solver.DotProdColBelowDiagBackVec(0, b, below));
  for (int j = 0; j < 6; ++j) {
    sum -= solver.GetElem(6, j) * b[j];
    below -= solver.GetElem(j + 1, 0) * b[j + 1];
  }
  EXPECT_NEAR(sum, 0.0, 1e-14);
  EXPECT_NEAR(below, 0.0, 1e-14);
  EXPECT_FALSE(solver.DotProdColBelowDiagBackVec(7, b, sum));

  EXPECT_EQ(QXSymMatrix(a).LTSolve(b, 0.0, x), -1);
  EXPECT_EQ(solver.LTSubstitute({1.0}, x), -1);

  // A singular system: the redundant component comes back as 0.0.
  QXSymMatrix r = Packed({1, 2, 4});
  ASSERT_EQ(r.LTSolve({1.0, 2.0}, 1e-9, x), 1);
  EXPECT_EQ(x, (Vec{1.0, 0.0}));
}

TEST(QXSymMatrixSweepTest, DeterminantsBeyondTheDoubleRange) {
  double det[2] = {-1.0, -1.0};
  QXSymMatrix m(4, true);
  m.AddToDiagonal(1.0);
  ASSERT_TRUE(m.ComputeDeterminant(1e-10, det));
  EXPECT_EQ(Vec(det, det + 2), (Vec{1.0, 0.0}));
  m = QXSymMatrix(3, true);
  m.AddToDiagonal(1e300);
  ASSERT_TRUE(m.ComputeDeterminant(1e-10, det));
  EXPECT_TRUE(det[1] == 900.0 && std::fabs(det[0] - 1.0) < 1e-13);
  EXPECT_FALSE(m.ComputeDeterminant(-1.0, det));
  ASSERT_TRUE(Packed({1, 1, 1}).ComputeDeterminant(1e-10, det));
  EXPECT_EQ(Vec(det, det + 2), (Vec{0.0, 0.0}));
  EXPECT_FALSE(QXSymMatrix().ComputeDeterminant(1e-10, det));

  // With a zero on the diagonal the determinant is 0 * 10^0 at once.
  EXPECT_EQ(Packed({20, 0, 0, 0, 0, 3}).LTDetInverse(det, 1), 1);
  EXPECT_EQ(Vec(det, det + 2), (Vec{0.0, 0.0}));
}

TEST(QXSymMatrixSweepTest, UpdateThenDowndateReturnsTheFactor) {
  const QXSymMatrix a = RandomSpd(6, 8u);
  Vec diag, c(6), s(6), shortVec(5);
  a.GetDiagonal(diag);
  QXSymMatrix l(a);
  ASSERT_EQ(l.LTChol(diag, 1e-12, false), 0);
  const Vec x = {0.3, -0.2, 0.5, 0.1, -0.4, 0.25};
  QXSymMatrix up(l);
  ASSERT_TRUE(up.LTCholUpdateR1(x, c, s));
  QXSymMatrix product(up), expected(a);
  product.LTLLTrans();
  expected.UpdateXXPosNegW(x, 1.0);
  EXPECT_LT(MaxDiff(product, expected), 1e-13);
  ASSERT_TRUE(up.LTCholDowndate(x, c, s, false));
  EXPECT_LT(MaxDiff(up, l), 1e-13);

  // A downdate that would lose definiteness is refused, unless forced.
  const Vec large = {10, 0, 0, 0, 0, 0};
  QXSymMatrix refused(l);
  EXPECT_FALSE(refused.LTCholDowndate(large, c, s, false));
  EXPECT_TRUE(SameBits(refused, l));
  EXPECT_TRUE(refused.LTCholDowndate(large, c, s, true));
  EXPECT_GT(refused.GetElem(0, 0), 0.0);

  EXPECT_FALSE(up.LTCholDowndate(x, shortVec, s, true));
  EXPECT_FALSE(QXSymMatrix(6, true).LTCholDowndate(x, c, s, true));
}

TEST(QXSymMatrixSweepTest, RepairsOfIndefiniteAndCorrelationMatrices) {
  QXSymMatrix a = Packed({1, 2, 1});
  bool changed = false;
  double shift = -1.0, minPivot = 0.0;
  EXPECT_GT(a.TransformToPositiveDefinite(1e-6, changed, shift), 2);
  EXPECT_TRUE(changed);
  EXPECT_NEAR(shift, 1.02, 1e-5);  // the bisected shift of 1, plus 1% of the new diagonal
  EXPECT_NEAR(a.GetElem(0, 0), 1.0, 1e-12);
  EXPECT_EQ(QXSymMatrix(a).LTChol(1e-6, minPivot, true), 0);

  QXSymMatrix pd = RandomSpd(4, 3u);
  const QXSymMatrix before(pd);
  EXPECT_EQ(pd.TransformToPositiveDefinite(1e-6, changed, shift), 1);
  EXPECT_FALSE(changed);
  EXPECT_TRUE(SameBits(pd, before));
  EXPECT_EQ(pd.TransformToPositiveDefinite(0.0, changed, shift), -2);
  QXSymMatrix one = Packed({-3});
  EXPECT_EQ(one.TransformToPositiveDefinite(1e-6, changed, shift), -1);
  EXPECT_EQ(one.GetElem(0, 0), -3.0);
  QXSymMatrix withNaN = Packed({1, std::nan(""), 1});
  EXPECT_EQ(withNaN.TransformToPositiveDefinite(1e-6, changed, shift), -3);
  EXPECT_FALSE(changed);

  QXSymMatrix r = Packed({1, 1.5, 1, -2, 0.3, 1});
  EXPECT_FALSE(r.AdjustOffDiagCorr(1.0));
  ASSERT_TRUE(r.AdjustOffDiagCorr(0.0));
  EXPECT_EQ(r.AsVectorConst(), (Vec{1, 1.0, 1, -1.0, 0.3, 1}));
  ASSERT_TRUE(r.AdjustOffDiagCorr(0.25));
  EXPECT_EQ(r.AsVectorConst(), (Vec{1, 0.75, 1, -0.75, 0.3, 1}));

  Vec diag;
  const QXSymMatrix d = Packed({1, 0, 5, 0, 0, -2});
  d.GetNCheckDiagonal(diag, 0.0, 1.0);
  EXPECT_EQ(diag, (Vec{5, 5, 5}));
  d.GetNCheckDiagonalOld(diag, 0.0, 1.0);
  EXPECT_EQ(diag, (Vec{1, 5, 1}));
}

}  // namespace
}  // namespace QXMath_850
