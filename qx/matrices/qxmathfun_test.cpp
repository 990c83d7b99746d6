#include "qx/matrices/qxmathfun.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "qx/matrices/blas1_d.h"
#include "qx/matrices/internal/testutil.h"

namespace QXMath_850 {
namespace {

std::vector<double> Data(int size, unsigned seed) {
  return internal::WideRangeData(size, seed, 6);
}

// Element (i, j) of a packed lower triangle, either order of the indices.
int Pos(int i, int j) {
  return i >= j ? i * (i + 1) / 2 + j : j * (j + 1) / 2 + i;
}

TEST(QXMathFunTest, StridedKernelsMatchPlainLoopsExactly) {
  const double a = 0.7071067811865476;
  const int x0 = 2, y0 = 1;  // starts inside longer vectors
  for (int n = 0; n <= 12; n++) {
    for (int sx : {1, 2, -1, -3}) {
      for (int sy : {1, 3, -2}) {
        SCOPED_TRACE(testing::Message() << "n=" << n << " sx=" << sx << " sy=" << sy);
        const std::vector<double> x = Data(3 * n + 3, n + 5), y = Data(3 * n + 3, n + 77);
        std::vector<double> walked, ya = y, ys = y, yl = y;
        double dot = 0.0, asum = 0.0;
        for (int i = 0; i < n; i++) {
          int ix = x0 + (sx < 0 ? (1 - n) * sx : 0) + i * sx;
          int iy = y0 + (sy < 0 ? (1 - n) * sy : 0) + i * sy;
          dot = dot + x[ix] * y[iy];
          asum = asum + std::fabs(x[ix]);
          walked.push_back(x[ix]);
          ya[iy] = ya[iy] + a * x[ix];
          ys[iy] = a * y[iy];
          yl[iy] = -2.5;
        }
        EXPECT_EQ(QXMathFun::DDot(n, x, x0, sx, y, y0, sy), dot);
        EXPECT_EQ(QXMathFun::DASum(n, x, x0, sx), asum);
        EXPECT_EQ(QXMathFun::DNrm2(n, x, x0, sx), Blas1::DNrm2(n, walked.data(), 1));
        std::vector<double> got = y;
        QXMathFun::Daxpy(n, a, x, x0, sx, got, y0, sy);
        EXPECT_EQ(got, ya);
        got = y;
        QXMathFun::DScal(n, a, got, y0, sy);
        EXPECT_EQ(got, ys);
        QXMathFun::DLoad(n, -2.5, got = y, y0, sy);
        EXPECT_EQ(got, yl);
      }
    }
  }
}

TEST(QXMathFunTest, SumsAndTheirSpecialWalks) {
  std::vector<double> x = {0.1, 2.0, -3.0, 4.0};
  EXPECT_EQ(QXMathFun::DSum(10, x, 0), 1.0);         // 10 * 0.1, where ten additions give less
  EXPECT_EQ(QXMathFun::DSum(2, x, -2), -3.0 + 0.1);  // from the far end
  EXPECT_EQ(QXMathFun::DSum(0, x, 1), 0.0);
  // DASum skips indices outside the vector, on either side.
  EXPECT_EQ(QXMathFun::DASum(8, x, -2, 1), 0.1 + 2.0 + 3.0 + 4.0);
  EXPECT_EQ(QXMathFun::DASum(3, x, -1, -2), 6.0);  // walks 3, 1, -1
}

TEST(QXMathFunTest, FormsOfAPackedSymmetricMatrix) {
  const int n = 7;
  const std::vector<double> s = Data(n * (n + 1) / 2, 21), v = Data(2 * n + 1, 22);
  double vsv = 0.0;
  for (int i = 0; i < n; i++) {  // v_j at 1 + 2j
    double row = 0.0;
    for (int j = 0; j < n; j++)
      row = row + v[1 + 2 * j] * s[Pos(i, j)];
    EXPECT_EQ(QXMathFun::RVD(n, s, i, v, 1, 2), row);
    vsv = vsv + row * v[1 + 2 * i];
  }
  EXPECT_EQ(QXMathFun::VSV(n, s, v, 1, 2), vsv);
  EXPECT_EQ(QXMathFun::RVD(n, s, n, v, 1, 2), 0.0);

  EXPECT_TRUE(QXMathFun::QLReps(-1e-6, 1e10));
  EXPECT_FALSE(QXMathFun::QLReps(2.220446049250313e-16, 1.0));  // strictly below
  EXPECT_FALSE(QXMathFun::QLReps(0.0, 0.0));
}

}  // namespace
}  // namespace QXMath_850
