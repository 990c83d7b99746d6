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

bool SameBits(const QXSymMatrix& a, const QXSymMatrix& b) {
  const Vec& x = a.AsVectorConst();
  const Vec& y = b.AsVectorConst();
  return x.size() == y.size() && std::memcmp(x.data(), y.data(), x.size() * sizeof(double)) == 0;
}

// Largest difference between the two packed stores.
double MaxDiff(const QXSymMatrix& a, const QXSymMatrix& b) {
  double worst = 0.0;
  for (std::size_t p = 0; p < a.AsVectorConst().size(); ++p) {
    worst = std::fmax(worst, std::fabs(a.AsVectorConst()[p] - b.AsVectorConst()[p]));
  }
  return worst;
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

// Largest |(A B)_ij - c * I_ij| over the full matrices.
double ProductError(const QXSymMatrix& a, const QXSymMatrix& b, double c) {
  const int n = a.GetNRows();
  double worst = 0.0;
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j < n; ++j) {
      double sum = i == j ? -c : 0.0;
      for (int k = 0; k < n; ++k)
        sum += a.GetElem(i, k) * b.GetElem(k, j);
      worst = std::fmax(worst, std::fabs(sum));
    }
  }
  return worst;
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

TEST(QXSymMatrixSweepTest, SweepFitsTheLongleyRegression) {
  // NIST StRD Longley: y, then x1..x6.
  const double rows[16][7] = {{60323, 83.0, 234289, 2356, 1590, 107608, 1947},
                              {61122, 88.5, 259426, 2325, 1456, 108632, 1948},
                              {60171, 88.2, 258054, 3682, 1616, 109773, 1949},
                              {61187, 89.5, 284599, 3351, 1650, 110929, 1950},
                              {63221, 96.2, 328975, 2099, 3099, 112075, 1951},
                              {63639, 98.1, 346999, 1932, 3594, 113270, 1952},
                              {64989, 99.0, 365385, 1870, 3547, 115094, 1953},
                              {63761, 100.0, 363112, 3578, 3350, 116219, 1954},
                              {66019, 101.2, 397469, 2904, 3048, 117388, 1955},
                              {67857, 104.6, 419180, 2822, 2857, 118734, 1956},
                              {68169, 108.4, 442769, 2936, 2798, 120445, 1957},
                              {66513, 110.8, 444546, 4681, 2637, 121950, 1958},
                              {68655, 112.6, 482704, 3813, 2552, 123366, 1959},
                              {69564, 114.2, 502601, 3931, 2514, 125368, 1960},
                              {69331, 115.7, 518173, 4806, 2572, 127852, 1961},
                              {70551, 116.9, 554894, 4007, 2827, 130081, 1962}};
  Vec mean(7, 0.0), x(7), diag, coeffs;
  for (const auto& r : rows) {
    for (int j = 0; j < 7; ++j)
      mean[j] += r[j] / 16.0;
  }
  // Centred cross-products, predictors first and the response last.
  QXSymMatrix a(7, true);
  for (const auto& r : rows) {
    for (int j = 0; j < 7; ++j)
      x[j] = r[(j + 1) % 7] - mean[(j + 1) % 7];
    a.UpdateXXPosNegW(x, 1.0);
  }
  a.GetDiagonal(diag);
  QXBitSet swept(7);
  for (int k = 0; k < 6; ++k)
    ASSERT_TRUE(a.Sweep(k, 1e-12, diag, swept, true));
  ASSERT_TRUE(a.GetRegCoeffs(coeffs, swept));
  const Vec certified = {15.0618722713733,  -0.358191792925910E-01, -2.02022980381683,
                         -1.03322686717359, -0.511041056535807E-01, 1829.15146461355};
  ASSERT_EQ(coeffs.size(), 6u);
  for (int j = 0; j < 6; ++j)
    EXPECT_NEAR(coeffs[j], certified[j], 1e-10 * std::fabs(certified[j]));
  EXPECT_NEAR(a.GetElem(6, 6), 836424.055505915, 1e-11 * 836424.055505915);
}

TEST(QXSymMatrixSweepTest, SweepingEveryRowGivesMinusTheInverseAndBackTheStart) {
  Vec diag;
  QXSymMatrix b = RandomCrossProducts(9, 30, 7u, false);
  const QXSymMatrix original(b);
  b.GetDiagonal(diag);
  QXBitSet all(9);
  for (int k = 0; k < 9; ++k)
    ASSERT_TRUE(b.Sweep(k, 1e-9, diag, all, true));
  EXPECT_LT(ProductError(original, b, -1.0), 1e-12);
  for (int k = 8; k >= 0; --k)
    ASSERT_TRUE(b.Sweep(k, 1e-9, diag, all, true));
  EXPECT_EQ(all.InSet(), 0);
  EXPECT_LT(MaxDiff(b, original), 1e-11 * diag[0]);
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
  EXPECT_FALSE(p.Sweep(0, 0.5, ref, s, true));
  EXPECT_FALSE(p.Sweep(1, 0.5, ref, s, true));
  EXPECT_FALSE(p.Sweep(2, 0.5, ref, s, true));
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

TEST(QXSymMatrixSweepTest, BulkSweepsKeepTheLogDeterminantAndTheBits) {
  const QXSymMatrix a = RandomSpd(6, 3u);
  QXSymMatrix factor(a);
  double minPivot = 0.0, logDet = 0.0, got = 0.0, det[2];
  ASSERT_EQ(factor.LTChol(1e-12, minPivot, true), 0);
  for (int i = 0; i < 6; ++i)
    logDet += 2.0 * std::log(factor.GetElem(i, i));
  ASSERT_TRUE(a.ComputeDeterminant(1e-10, det));
  EXPECT_TRUE(det[0] >= 1.0 && det[0] < 10.0);
  EXPECT_NEAR((std::log10(det[0]) + det[1]) * std::log(10.0), logDet, 1e-12 * logDet);

  QXSymMatrix up(a), down(a);
  QXBitSet empty, s2(6);
  ASSERT_TRUE(up.SweepOnMany(6, 1e-10, true, empty, got, true, nullptr));
  EXPECT_NEAR(got, logDet, 1e-12 * logDet);
  EXPECT_EQ(empty.InSet(), 6);
  ASSERT_TRUE(down.SweepOnMany(6, 1e-10, false, s2, got, true, nullptr));
  EXPECT_NEAR(got, -logDet, 1e-12 * logDet);

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

TEST(QXSymMatrixSweepTest, CholeskyOfRankDeficientMatricesGivesAGeneralizedInverse) {
  QXSymMatrix one, l, g;
  one.SetToVV({1.0, 2.0, 3.0});
  Vec diag, row;
  one.GetDiagonal(diag);
  l = one;
  EXPECT_EQ(l.LTChol(diag, 1e-10, true), 2);
  EXPECT_EQ(l.GetElem(1, 1), 0.0);
  EXPECT_EQ(l.GetElem(2, 2), 0.0);
  ASSERT_EQ(one.CholInverse(diag, 1e-10, g), 1);
  EXPECT_EQ(g.AsVectorConst(), (Vec{1, 0, 0, 0, 0, 0}));
  EXPECT_EQ(Packed({1, 0, 0.5}).LTChol({1.0, 1.0}, 0.5, true), 1);  // pivot at tol * diag

  // A = B B^T with B of order 8 by 3, so of rank 3.
  const QXSymMatrix a = RandomCrossProducts(8, 3, 11u, false);
  a.GetDiagonal(diag);
  QXBitSet kept(12);
  kept.SetRange(0, 11, true);
  ASSERT_EQ(a.CholInverse(diag, 1e-9, g, kept), 3);
  EXPECT_EQ(kept.Size(), 12);
  EXPECT_EQ(kept.InSet(), 3);
  for (int i = 0; i < 8; ++i) {  // A G A = A, and G is zero in the redundant rows
    g.GetRow(i, row);
    EXPECT_TRUE(kept.IsIn(i) || row == Vec(8, 0.0));
    for (int j = 0; j <= i; ++j) {
      double sum = 0.0;
      for (int pq = 0; pq < 64; ++pq)
        sum += a.GetElem(i, pq / 8) * g.GetElem(pq / 8, pq % 8) * a.GetElem(pq % 8, j);
      EXPECT_NEAR(sum, a.GetElem(i, j), 1e-9);
    }
  }

  QXSymMatrix empty, keep(a);
  EXPECT_EQ(empty.LTChol(diag, -1.0, true), -1);
  EXPECT_EQ(empty.LTChol(diag, 1.0, true), 0);
  EXPECT_EQ(keep.LTChol(Vec(8, -1.0), 1e-9, true), -1);
  EXPECT_EQ(keep.LTChol(Vec(3, 1.0), 1e-9, true), -1);
  EXPECT_TRUE(SameBits(keep, a));
}

// LINPACK DTRDI's inverse of a lower triangle as it reads, down the columns.
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
  Vec diag, b(7, 0.0), x, x2, y;
  a.GetDiagonal(diag);
  QXSymMatrix g, l(a);
  double minPivot = 0.0;
  ASSERT_EQ(a.CholInverse(diag, 1e-10, g, minPivot), 7);
  EXPECT_LT(ProductError(a, g, 1.0), 16 * 7 * kEps);
  ASSERT_EQ(l.LTChol(diag, 1e-10, false), 0);
  double largest = 0.0, smallest = 0.0;
  l.MaxMinDiag(largest, smallest);
  EXPECT_EQ(minPivot, smallest);
  QXSymMatrix inv(l);
  EXPECT_TRUE(inv.LTInverse());
  EXPECT_TRUE(SameBits(inv, g));

  const Vec truth = {1, -2, 3, 0.5, -1, 4, 2};
  for (int i = 0; i < 7; ++i) {
    for (int j = 0; j < 7; ++j)
      b[i] += a.GetElem(i, j) * truth[j];
  }
  QXSymMatrix solver(a);
  ASSERT_EQ(solver.LTSolve(b, 1e-10, x), 0);
  for (int i = 0; i < 7; ++i)
    EXPECT_NEAR(x[i], truth[i], 1e-13 * 8);
  ASSERT_EQ(solver.LTSubstitute(b, x2), 0);
  EXPECT_EQ(x2, x);
  ASSERT_TRUE(solver.TSolveSubst(b, y, false));
  ASSERT_TRUE(solver.TSolveSubst(y, x2, true));
  for (int i = 0; i < 7; ++i)
    EXPECT_NEAR(x2[i], truth[i], 1e-13 * 8);

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
  EXPECT_EQ(det[0], 1.0);
  EXPECT_EQ(det[1], 0.0);
  m = QXSymMatrix(3, true);
  m.AddToDiagonal(1e300);
  ASSERT_TRUE(m.ComputeDeterminant(1e-10, det));
  EXPECT_EQ(det[1], 900.0);
  EXPECT_NEAR(det[0], 1.0, 1e-13);
  EXPECT_FALSE(m.ComputeDeterminant(-1.0, det));
  ASSERT_TRUE(Packed({1, 1, 1}).ComputeDeterminant(1e-10, det));
  EXPECT_EQ(det[0], 0.0);
  EXPECT_EQ(det[1], 0.0);
  EXPECT_FALSE(QXSymMatrix().ComputeDeterminant(1e-10, det));

  // With a zero on the diagonal the determinant is 0 * 10^0 at once.
  EXPECT_EQ(Packed({20, 0, 0, 0, 0, 3}).LTDetInverse(det, 1), 1);
  EXPECT_EQ(det[0], 0.0);
  EXPECT_EQ(det[1], 0.0);
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

TEST(QXSymMatrixSweepTest, IndependentRowsAndDependenceChecks) {
  const QXSymMatrix a = RandomCrossProducts(4, 12, 9u, true);  // row 3 = rows 0 + 1
  QXSymMatrix probe(a), work;
  std::vector<int> rows = {7};
  EXPECT_EQ(probe.CholIndNonRed(0, 1e-9, rows), 3);
  EXPECT_EQ(rows, (std::vector<int>{0, 1, 2}));
  EXPECT_EQ(probe.CholIndNonRed(2, 1e-9, rows), 2);
  EXPECT_EQ(rows, (std::vector<int>{0, 1}));
  EXPECT_EQ(probe.CholIndNonRed(0, -1.0, rows), 0);
  EXPECT_TRUE(rows.empty());
  EXPECT_TRUE(SameBits(probe, a));

  QXBitSet keep(4);
  keep.SetRange(0, 3, true);
  EXPECT_EQ(work.CheckMDependent(4, a.AsVectorConst(), keep, 1e-9), 1);
  keep.Set(1, false);
  EXPECT_EQ(work.CheckMDependent(4, a.AsVectorConst(), keep, 1e-9), 0);
  EXPECT_EQ(work.GetNRows(), 3);
  EXPECT_EQ(work.CheckMDependent(5, a.AsVectorConst(), keep, 1e-9), -1);
  EXPECT_EQ(work.CheckMDependent(0, a.AsVectorConst(), keep, 1e-9), 0);
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
