// Every kernel path against the plain loops it stands for, bit for bit, on
// orders 0 to 67 and step counts that fill no vector or tile evenly.

#include "qx/matrices/internal/kernels.h"

#include <gtest/gtest.h>

#include <cmath>
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

// The blocked SweepOnMany against the row-by-row sweeps it replaces, on
// matrices that accept every pivot, refuse some, or refuse most, with a row
// above the swept ones already marked in.
TEST(Kernels, SweepOnManyGivesTheBitsOfSweepingRowByRowOnEveryPath) {
  ForEachKernelPath([](KernelPath path) {
    for (int n = 1; n <= 67; ++n) {
      for (Kind kind : {Kind::kRandom, Kind::kRankDeficient}) {
        QXSymMatrix start = TestMatrix(n, 100 + n, kind);
        if (kind == Kind::kRandom && n % 2 == 0) start.AddToDiagonal(1000.0 * n);
        const int count = n % 3 == 0 ? n : n - n / 3;
        for (bool pivotBefore : {false, true}) {
          QXSymMatrix want = start, got = start;
          QXBitSet wantSwept(n), gotSwept(n);
          if (count < n) {
            wantSwept.Set(n - 1, true);
            gotSwept.Set(n - 1, true);
          }
          std::vector<double> diag, gotDiag;
          start.GetDiagonal(diag);
          gotDiag = diag;
          double wantLogDet = 0.0, gotLogDet = 0.0;
          for (int i = 0; i < count; ++i) {
            const double before = want.GetElem(i, i);
            const bool ok = want.Sweep(i, 1e-6, diag.data(), wantSwept, false);
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
        }
      }
    }
  });
}

}  // namespace
}  // namespace internal
}  // namespace QXMath_850
