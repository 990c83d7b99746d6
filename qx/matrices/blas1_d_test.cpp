#include "qx/matrices/blas1_d.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <iostream>
#include <limits>
#include <vector>

#include "qx/matrices/internal/testutil.h"

namespace QXMath_850 {
namespace {

std::vector<double> Data(int size, unsigned seed) {
  return internal::WideRangeData(size, seed, 8);
}

// Element i of a walk of n elements; a negative stride starts at the far end.
int At(int n, int inc, int i) {
  return (inc < 0 ? (1 - n) * inc : 0) + i * inc;
}

TEST(Blas1Test, ScalarHelpers) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_FALSE(std::signbit(Blas1::D_Abs(-0.0)));
  EXPECT_TRUE(std::signbit(Blas1::D_Abs(nan)));  // a NaN comes back as -x
  EXPECT_EQ(Blas1::D_Max(nan, 3.0), 3.0);
  EXPECT_EQ(Blas1::D_Sign(0.0), 1.0);
  EXPECT_EQ(Blas1::D_Sign(nan), 1.0);
  EXPECT_TRUE(Blas1::LSame('a', 'A'));
  EXPECT_FALSE(Blas1::LSame('[', '{'));  // 32 apart, but not letters
}

// Each kernel against a plain loop in the same order, bit for bit, including
// the elements between the strides, which must stay untouched.
TEST(Blas1Test, KernelsMatchPlainLoopsExactly) {
  const double a = -1.7320508075688772, c = 0.6, s = 0.8;
  for (int n = 0; n <= 20; n++) {
    for (int incx : {1, 2, 3, -1, -3}) {
      for (int incy : {1, 3, -2}) {
        SCOPED_TRACE(testing::Message() << "n=" << n << " incx=" << incx << " incy=" << incy);
        const std::vector<double> x0 = Data(3 * n + 1, 11 * n + 1), y0 = Data(3 * n + 1, 13 * n);
        std::vector<double> x = x0, y = y0, xr = x0, yr = y0, ya = y0, yc = y0, xs = x0;
        std::vector<double> xw = x0, yw = y0;
        double dot = 0.0;
        for (int i = 0; i < n; i++) {
          int ix = At(n, incx, i), iy = At(n, incy, i);
          dot = dot + x0[ix] * y0[iy];
          ya[iy] = ya[iy] + a * x0[ix];
          yc[iy] = x0[ix];
          xs[ix] = a * x0[ix];
          xw[ix] = y0[iy];
          yw[iy] = x0[ix];
          xr[ix] = c * x0[ix] + s * y0[iy];
          yr[iy] = c * y0[iy] - s * x0[ix];
        }
        EXPECT_EQ(Blas1::DDot(n, x.data(), incx, y.data(), incy), dot);
        Blas1::Daxpy(n, a, x.data(), incx, y.data(), incy);
        EXPECT_EQ(y, ya);
        Blas1::DCopy(n, x.data(), incx, y.data(), incy);
        EXPECT_EQ(y, yc);
        y = y0;
        Blas1::DSwap(n, x.data(), incx, y.data(), incy);
        EXPECT_EQ(x, xw);
        EXPECT_EQ(y, yw);
        x = x0;
        y = y0;
        Blas1::DRot(n, x.data(), incx, y.data(), incy, c, s);
        EXPECT_EQ(x, xr);
        EXPECT_EQ(y, yr);
        x = x0;
        Blas1::DScal(n, a, x.data(), incx);
        EXPECT_EQ(x, xs);
      }
    }
  }
}

TEST(Blas1Test, SumsAndSearches) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  std::vector<double> y = {1.0, nan, 3.0};
  Blas1::Daxpy(3, 0.0, nullptr, 1, y.data(), 1);  // a == 0.0 reads nothing
  EXPECT_EQ(y[0], 1.0);
  EXPECT_TRUE(std::isnan(y[1]));

  std::vector<double> x = {-1.0, 2.0, -4.0, 8.0, -16.0};
  EXPECT_EQ(Blas1::DASum(3, x.data(), 2), 21.0);
  EXPECT_EQ(Blas1::DASum(3, x.data() + 4, -2), 21.0);  // no start correction

  std::vector<double> equal = {-2.0, 2.0, -2.0};
  EXPECT_EQ(Blas1::IDAMax(3, equal.data(), 1), 1);
  EXPECT_EQ(Blas1::IDAMax(5, x.data(), 1), 5);
  EXPECT_EQ(Blas1::IDAMax(2, x.data() + 1, 2), 2);
  EXPECT_EQ(Blas1::IDAMax(3, x.data(), 0), 0);

  std::vector<double> big = {1e300, 0.0, -1e300};
  EXPECT_DOUBLE_EQ(Blas1::DNrm2(3, big.data(), 1), 1e300 * std::sqrt(2.0));
  std::vector<double> small = {3e-300, -4e-300};
  EXPECT_DOUBLE_EQ(Blas1::DNrm2(2, small.data(), 1), 5e-300);
  EXPECT_EQ(Blas1::DNrm2(1, x.data() + 4, 1), 16.0);
  EXPECT_EQ(Blas1::DNrm2(3, x.data(), -1), 0.0);
}

TEST(Blas1Test, DRotGBuildsRotations) {
  double a = 4.0, b = 3.0, c, s;
  Blas1::DRotG(&a, &b, &c, &s);
  EXPECT_DOUBLE_EQ(a, 5.0);
  EXPECT_DOUBLE_EQ(c, 0.8);
  EXPECT_EQ(b, s);  // |c| > s: z is s

  a = 3.0, b = -4.0;  // r takes the sign of b, the larger; s >= |c| gives z = 1/c
  Blas1::DRotG(&a, &b, &c, &s);
  EXPECT_DOUBLE_EQ(a, -5.0);
  EXPECT_EQ(b, 1.0 / c);

  a = 0.0, b = 0.0;
  Blas1::DRotG(&a, &b, &c, &s);
  EXPECT_EQ(c, 1.0);
  EXPECT_EQ(s, 0.0);
  EXPECT_EQ(a, 0.0);
  EXPECT_EQ(b, 0.0);

  // |a| > |b| by one ulp, yet s rounds to c: the test on s stores 1/c where
  // reference BLAS DROTG (|a| > |b| gives s) would store s.
  a = 1.9, b = std::nextafter(1.9, 0.0);
  Blas1::DRotG(&a, &b, &c, &s);
  ASSERT_EQ(s, c);
  EXPECT_EQ(b, 1.0 / c);
}

TEST(Blas1Test, DMachConstants) {
  EXPECT_EQ(Blas1::DMach(1), 2.220446049250313e-16);
  EXPECT_EQ(Blas1::DMach(2), 8.900295434028806e-306);
  EXPECT_EQ(Blas1::DMach(3), 1.1235582092889475e+305);
}

// The message goes to std::cout; the child hands it to stderr for the matcher.
TEST(Blas1DeathTest, BadDMachJobIsFatal) {
  EXPECT_EXIT(
      {
        std::cout.rdbuf(std::cerr.rdbuf());
        Blas1::DMach(4);
      },
      testing::ExitedWithCode(1),
      "^\nXERBLA - Fatal error!\n  On entry to routine DMACH\n"
      "  input parameter number 1 had an illegal value\\.\n$");
}

}  // namespace
}  // namespace QXMath_850
