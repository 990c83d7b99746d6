// Every kernel path against the plain loops it stands for, bit for bit, on
// orders 0 to 67 and step counts that fill no vector or tile evenly.

#include "qx/matrices/internal/kernels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <string>
#include <vector>

#include "qx/matrices/internal/packedlayout.h"
#include "qx/matrices/internal/testutil.h"
#include "qx/matrices/qxbitset.h"
#include "qx/matrices/qxsymmatrix.h"

namespace QXMath_850 {
namespace internal {
namespace {

TEST(Kernels, UpdateRegionGivesTheBitsOfThePlainLoopOnEveryPath) {
  ForEachKernelPath([](KernelPath path) {
    ASSERT_EQ(ActiveKernelPath(), path);
    for (int n = 0; n <= 67; ++n) {
      for (int count : {1, 7, 70}) {
        const long sStride = n + 3, yStride = n + 1;
        const std::vector<double> s = WideRangeData(count * sStride, 7 * n + count, 3);
        const std::vector<double> y = WideRangeData(count * yStride, 11 * n + count, 3);
        const std::vector<double> w = WideRangeData(count, 13 * n + count, 1);
        const std::vector<double> start = WideRangeData(static_cast<int>(PackedSize(n)), n, 2);
        // The whole triangle, a block left of the diagonal, a band with it.
        const int regions[3][5] = {
            {0, n, 0, n, 1}, {n / 3, n, n / 5, n / 2 + 1, 0}, {n / 4, n - n / 7, n / 4, n, 1}};
        for (const auto& r : regions) {
          for (bool weighted : {false, true}) {
            std::vector<double> want = start, got = start;
            for (int i = r[0]; i < r[1]; ++i) {
              const int end = std::min(r[3], r[4] ? i + 1 : i);
              for (int j = r[2]; j < end; ++j) {
                double& e = want[RowStart(i) + j];
                for (int t = 0; t < count; ++t) {
                  const double p = s[t * sStride + i] * y[t * yStride + j];
                  e = weighted ? e + p * w[t] : e + p;
                }
              }
            }
            UpdateRegion(got.data(), r[0], r[1], r[2], r[3], r[4] != 0, count, s.data(), sStride,
                         y.data(), yStride, weighted ? w.data() : nullptr);
            EXPECT_TRUE(SameBitsAll(want, got)) << KernelPathName(path) << ", order " << n;
          }
        }
      }
    }
  });
}

// UpdateXX adds (w * x_i) * x_j and skips the rows of zero values, where a
// -0.0 would otherwise turn into +0.0 (IncrementByVV is the same path
// without the skip).
TEST(Kernels, UpdateXXGivesTheBitsOfThePlainLoopOnEveryPath) {
  ForEachKernelPath([](KernelPath path) {
    for (int n = 0; n <= 67; ++n) {
      std::vector<double> want = WideRangeData(static_cast<int>(PackedSize(n)), 800 + n, 2);
      for (std::size_t k = 0; k < want.size(); k += 5)
        want[k] = -0.0;
      std::vector<double> x = WideRangeData(n, 900 + n, 2);
      for (int i = 0; i < n; i += 3)
        x[i] = 0.0;
      QXSymMatrix got = Packed(want);
      ASSERT_TRUE(got.UpdateXX(x, 0.37));
      for (int i = 0; i < n; ++i) {
        const double wx = 0.37 * x[i];
        for (int j = 0; j <= i && x[i] != 0.0; ++j)
          want[RowStart(i) + j] += wx * x[j];
      }
      EXPECT_TRUE(SameBitsAll(want, got.AsVectorConst())) << KernelPathName(path) << ", " << n;
    }
  });
}

// The blocked SweepOnMany, and Sweep through SweepOnSelected, against the
// element-by-element SweepOrig, on matrices that accept every pivot, refuse
// some, or refuse most, with a row above the swept ones already marked in;
// sweeping the first row out again takes a pivot of the other sign.
TEST(Kernels, SweepsGiveTheBitsOfTheElementLoopOnEveryPath) {
  ForEachKernelPath([](KernelPath path) {
    for (int n = 1; n <= 67; ++n) {
      for (Kind kind : {Kind::kRandom, Kind::kRankDeficient}) {
        QXSymMatrix start = TestMatrix(n, 100 + n, kind);
        if (kind == Kind::kRandom && n % 2 == 0) start.AddToDiagonal(1000.0 * n);
        const int count = n % 3 == 0 ? n : n - n / 3;
        for (bool pivotBefore : {false, true}) {
          QXSymMatrix want = start, got = start, single = start;
          QXBitSet wantSwept(n);
          if (count < n) wantSwept.Set(n - 1, true);
          QXBitSet gotSwept = wantSwept, singleSwept = wantSwept;
          std::vector<double> diag, gotDiag;
          start.GetDiagonal(diag);
          gotDiag = diag;
          double wantLogDet = 0.0, gotLogDet = 0.0;
          for (int i = 0; i < count; ++i) {
            const double before = want.GetElem(i, i);
            const bool ok = want.SweepOrig(i, 1e-6, diag, wantSwept, false);
            const double v = pivotBefore ? before : -want.GetElem(i, i);
            if (ok && v > 0.0) wantLogDet += std::log(v);
          }
          ASSERT_TRUE(got.SweepOnMany(count, 1e-6, pivotBefore, gotSwept, gotLogDet, false,
                                      gotDiag.data()));
          EXPECT_TRUE(SameBitsAll(want.AsVectorConst(), got.AsVectorConst()))
              << KernelPathName(path) << ", order " << n;
          EXPECT_TRUE(SameBits(wantLogDet, gotLogDet)) << KernelPathName(path) << ", order " << n;
          for (int i = 0; i < n; ++i)
            EXPECT_EQ(wantSwept.IsIn(i), gotSwept.IsIn(i)) << "order " << n << ", row " << i;

          std::vector<int> rows(count);
          std::iota(rows.begin(), rows.end(), 0);
          ASSERT_TRUE(single.SweepOnSelected(rows, 1e-6, singleSwept, false, diag.data()));
          EXPECT_EQ(want.SweepOrig(0, 1e-6, diag, wantSwept, false),
                    single.Sweep(0, 1e-6, diag, singleSwept, false));
          EXPECT_TRUE(SameBitsAll(want.AsVectorConst(), single.AsVectorConst()))
              << KernelPathName(path) << ", order " << n;
        }
      }
    }
  });
}

// The row-by-row Cholesky loop: each element's dot product from 0.0 in
// column order, a pivot at or below tol * diag[i] set to zero. Returns the
// redundant rows; accepted lists the others.
int PlainCholesky(std::vector<double>& a, int n, const std::vector<double>& diag, double tol,
                  std::vector<int>& accepted) {
  int redundant = 0;
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j <= i; ++j) {
      double dot = 0.0;
      for (int k = 0; k < j; ++k)
        dot = dot + a[RowStart(i) + k] * a[RowStart(j) + k];
      const double r = a[RowStart(i) + j] - dot;
      if (j < i) {
        const double ljj = a[DiagIndex(j)];
        a[RowStart(i) + j] = ljj != 0.0 ? r / ljj : 0.0;
      } else if (r > tol * diag[i]) {
        a[DiagIndex(i)] = std::sqrt(r);
        accepted.push_back(i);
      } else {
        a[DiagIndex(i)] = 0.0;
        ++redundant;
      }
    }
  }
  return redundant;
}

// LINPACK DTRDI's column walk on the lower factor, zero pivots zeroing their
// row and column, then L^T L with each sum in ascending row order.
void PlainInverseFromFactor(std::vector<double>& a, int n) {
  auto at = [&a](int i, int j) -> double& { return a[RowStart(i) + j]; };
  for (int k = n - 1; k >= 0; --k) {
    if (at(k, k) == 0.0) {
      for (int r = k + 1; r < n; ++r)
        at(r, k) = 0.0;
      for (int j = 0; j <= k; ++j)
        at(k, j) = 0.0;
      continue;
    }
    at(k, k) = 1.0 / at(k, k);
    const double temp = -at(k, k);
    for (int r = k + 1; r < n; ++r) {
      at(r, k) = temp * at(r, k);
      for (int j = 0; j < k; ++j)
        at(r, j) = at(r, j) + at(r, k) * at(k, j);
    }
    for (int j = 0; j < k; ++j)
      at(k, j) = 0.0 + at(k, j) * at(k, k);
  }
  for (int r = 0; r < n; ++r) {
    for (int i = 0; i < r; ++i) {
      for (int j = 0; j <= i; ++j)
        at(i, j) = at(i, j) + at(r, i) * at(r, j);
    }
    const double last = at(r, r);
    for (int j = 0; j <= r; ++j)
      at(r, j) = 0.0 + at(r, j) * last;
  }
}

// Matrices whose factorization accepts every pivot, drops the dependent
// half of the rows, or meets negative pivots and drops those.
std::vector<QXSymMatrix> CholeskyCases(int n) {
  QXSymMatrix definite = TestMatrix(n, 300 + n, Kind::kRandom);
  definite.AddToDiagonal(1000.0 * n);
  QXSymMatrix indefinite = TestMatrix(n, 500 + n, Kind::kRandom);
  for (int i = 0; i < n; ++i)
    indefinite.SetElem(i, i, std::fabs(indefinite.GetElem(i, i)));
  return {definite, TestMatrix(n, 400 + n, Kind::kRankDeficient), indefinite};
}

// LTChol, forward substitution, CholIndNonRed and CholInverse against the
// plain loops; the factor's panels are 16 columns wide and the inverse's
// blocks 32, so orders up to 67 cross several block edges.
TEST(Kernels, CholeskyAndItsInverseGiveTheBitsOfThePlainLoopsOnEveryPath) {
  ForEachKernelPath([](KernelPath path) {
    for (int n = 0; n <= 67; ++n) {
      for (const QXSymMatrix& start : CholeskyCases(n)) {
        const std::string where =
            std::string(KernelPathName(path)) + ", order " + std::to_string(n);
        std::vector<double> diag;
        start.GetDiagonal(diag);
        const double tol = 1e-9;
        std::vector<double> want = start.AsVectorConst();
        std::vector<int> wantRows, keptRows;
        const int wantRedundant = PlainCholesky(want, n, diag, tol, wantRows);

        QXSymMatrix got = start;
        QXBitSet kept;
        EXPECT_EQ(got.LTChol(diag, tol, kept, true), wantRedundant) << where;
        EXPECT_TRUE(SameBitsAll(want, got.AsVectorConst())) << where;
        for (int i = 0; i < n; ++i) {
          if (kept.IsIn(i)) keptRows.push_back(i);
        }
        EXPECT_EQ(keptRows, wantRows) << where;

        const std::vector<double> b = WideRangeData(n, 600 + n, 2);
        std::vector<double> forward(n), x;
        for (int i = 0; i < n; ++i) {
          double dot = 0.0;
          for (int j = 0; j < i; ++j)
            dot = dot + want[RowStart(i) + j] * forward[j];
          const double lii = want[DiagIndex(i)];
          forward[i] = lii == 0.0 ? 0.0 : (b[i] - dot) / lii;
        }
        EXPECT_TRUE(got.TSolveSubst(b, x, false) && SameBitsAll(forward, x)) << where;

        // The search for independent rows stops at its limit.
        std::vector<int> rows;
        const std::size_t limit = wantRows.size() / 2 + 1;
        QXSymMatrix(start).CholIndNonRed(static_cast<int>(limit), tol, rows);
        wantRows.resize(std::min(wantRows.size(), limit));
        EXPECT_EQ(rows, wantRows) << where;

        PlainInverseFromFactor(want, n);
        QXSymMatrix inverse;
        EXPECT_EQ(start.CholInverse(diag, tol, inverse), n - wantRedundant) << where;
        EXPECT_TRUE(SameBitsAll(want, inverse.AsVectorConst())) << where;
      }
    }
  });
}

}  // namespace
}  // namespace internal
}  // namespace QXMath_850
