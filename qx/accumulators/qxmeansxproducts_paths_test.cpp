// The accumulators on every kernel path against the plain case-by-case loops,
// bit for bit: 0 to 67 variables, blocks of cases that fill no case block.

#include <gtest/gtest.h>

#include <vector>

#include "qx/accumulators/qxmeansxproducts.h"
#include "qx/matrices/internal/packedlayout.h"
#include "qx/matrices/internal/testutil.h"

namespace QXMath_850 {
namespace {

using internal::RowStart;
using internal::SameBitsAll;

const int kOrders[] = {0, 1, 2, 3, 5, 8, 9, 16, 17, 31, 33, 64, 67};

// Compute and UpdateOnePass with 0, 1 and 2 weight columns, with and without
// the intercept; 601 rows run past one case block into a partial one.
TEST(MeansXProductsPaths, BlockPathsGiveTheBitsOfTheCaseByCaseLoops) {
  internal::ForEachKernelPath([](internal::KernelPath path) {
    for (int p : kOrders) {
      for (int w = 0; w <= 2; ++w) {
        const int rows = p % 2 == 0 ? 601 : 37;
        QXRectMatrix data = internal::TestRect(rows, p + w, 17 * p + w);
        for (int r = 0; r < rows; ++r) {
          for (int c = p; c < p + w; ++c)
            data.AsVector()[r * (p + w) + c] = 0.5 + (r * 7 + c) % 5;
        }
        for (bool intercept : {true, false}) {
          QXMeansXProducts acc(p, intercept, w >= 1, w == 2);
          ASSERT_TRUE(acc.Compute(data, 0));
          acc.StartUpdateOnePass();
          ASSERT_TRUE(acc.UpdateOnePass(data, 0));
          QXMeansXProducts onePass = acc;
          onePass.FinishUpdateOnePass();

          const std::vector<double>& m = acc.GetMeans();
          std::vector<double> xx(internal::PackedSize(p), 0.0), raw = xx, sums(p, 0.0);
          for (int r = 0; r < rows; ++r) {
            const double* x = data.GetRowPtr(r);
            const double c = w == 0 ? 1.0 : w == 1 ? x[p] : x[p] * x[p + 1];
            for (int i = 0; i < p; ++i) {
              const double di = intercept ? x[i] - m[i] : x[i];
              const double v = w == 0 ? x[i] : x[i] * c;
              sums[i] += v;
              for (int j = 0; j <= i; ++j) {
                const double dj = intercept ? x[j] - m[j] : x[j];
                xx[RowStart(i) + j] += w == 0 ? di * dj : di * dj * c;
                raw[RowStart(i) + j] += v * x[j];
              }
            }
          }
          EXPECT_TRUE(SameBitsAll(xx, acc.GetXProds().AsVectorConst()))
              << internal::KernelPathName(path) << ", Compute, p " << p << ", w " << w;
          std::vector<double> corrected(raw.size());
          for (int i = 0; i < p; ++i) {
            const double mi = sums[i] / onePass.GetNCases();
            for (int j = 0; j <= i; ++j)
              corrected[RowStart(i) + j] = raw[RowStart(i) + j] - mi * sums[j];
          }
          EXPECT_TRUE(SameBitsAll(corrected, onePass.GetXProds().AsVectorConst()))
              << internal::KernelPathName(path) << ", UpdateOnePass, p " << p << ", w " << w;
        }
      }
    }
  });
}

// Provisional means, case by case.
TEST(MeansXProductsPaths, AddCaseGivesTheBitsOfTheCaseByCaseLoop) {
  internal::ForEachKernelPath([](internal::KernelPath path) {
    for (int p : kOrders) {
      const QXRectMatrix data = internal::TestRect(23, p, 31 * p + 1);
      QXMeansXProdData acc(p, true);
      std::vector<double> xx(internal::PackedSize(p), 0.0), m(p, 0.0);
      for (int r = 0; r < 23; ++r) {
        const double* x = data.GetRowPtr(r);
        const double w = 1.0 + r % 3, after = acc.GetNCases() + w;
        const double f = w * acc.GetNCases() / after;
        for (int i = 0; i < p; ++i) {
          for (int j = 0; j <= i; ++j)
            xx[RowStart(i) + j] += (x[i] - m[i]) * f * (x[j] - m[j]);
        }
        for (int i = 0; i < p; ++i)
          m[i] += (x[i] - m[i]) * (w / after);
        acc.AddCase(std::vector<double>(x, x + p), w);
      }
      EXPECT_TRUE(internal::SameBitsAll(xx, acc.GetXProds().AsVectorConst()))
          << internal::KernelPathName(path) << ", p " << p;
    }
  });
}

// Pooling two partials, with and without the intercept, and into itself.
TEST(MeansXProductsPaths, MergeGivesTheBitsOfThePlainLoop) {
  internal::ForEachKernelPath([](internal::KernelPath path) {
    for (int p : kOrders) {
      for (bool intercept : {true, false}) {
        QXMeansXProducts a(p, intercept, false, false), b = a;
        ASSERT_TRUE(a.Compute(internal::TestRect(29, p, 5 * p + 1), 0));
        ASSERT_TRUE(b.Compute(internal::TestRect(11, p, 5 * p + 2), 0));
        const double w1 = a.GetNCases(), w2 = b.GetNCases(), share = w2 / (w1 + w2);
        const std::vector<double>&m1 = a.GetMeans(), &m2 = b.GetMeans();
        std::vector<double> want = a.GetXProds().AsVectorConst(), m(p);
        const std::vector<double>& o = b.GetXProds().AsVectorConst();
        for (int i = 0; i < p; ++i)
          m[i] = m1[i] + (m2[i] - m1[i]) * share;
        for (int i = 0; i < p; ++i) {
          for (int j = 0; j <= i; ++j) {
            double& e = want[RowStart(i) + j];
            e += intercept ? (m[j] - m1[j]) * (w1 * (m[i] - m1[i])) + o[RowStart(i) + j] +
                                 (m[j] - m2[j]) * (w2 * (m[i] - m2[i]))
                           : o[RowStart(i) + j];
          }
        }
        QXMeansXProducts self = a;
        ASSERT_TRUE(a.Merge(b));
        EXPECT_TRUE(SameBitsAll(want, a.GetXProds().AsVectorConst()))
            << internal::KernelPathName(path) << ", p " << p << ", intercept " << intercept;
        std::vector<double> doubled = self.GetXProds().AsVectorConst();
        for (double& e : doubled)
          e += e;
        ASSERT_TRUE(self.Merge(self));
        EXPECT_TRUE(SameBitsAll(doubled, self.GetXProds().AsVectorConst())) << p;
      }
    }
  });
}

}  // namespace
}  // namespace QXMath_850
