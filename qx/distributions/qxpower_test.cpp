#include "qx/distributions/qxpower.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "qx/foundation/qxmissingvalue.h"

namespace QXMath_850 {
namespace {

using QXCommon_850::QXMV;

TEST(QXPowerTest, AlmostEqualIsRelativeAndSignAware) {
  EXPECT_TRUE(QXPower::AlmostEqual(0.0, 0.0, 1.0));
  EXPECT_FALSE(QXPower::AlmostEqual(0.0, 1e-300, 1e10));
  EXPECT_FALSE(QXPower::AlmostEqual(1e-300, 0.0, 1e10));
  EXPECT_FALSE(QXPower::AlmostEqual(1.0, -1.0, 1e20));
  // Scale counts epsilons of the larger magnitude.
  const double eps = std::numeric_limits<double>::epsilon();
  EXPECT_TRUE(QXPower::AlmostEqual(1.0, 1.0 + 4 * eps, 4.0));
  EXPECT_FALSE(QXPower::AlmostEqual(1.0, 1.0 + 4 * eps, 3.0));
  EXPECT_TRUE(QXPower::AlmostEqual(-1.0, -(1.0 + 2 * eps), 2.0));
}

TEST(QXPowerTest, OneOverOddAndEvenIntegers) {
  EXPECT_TRUE(QXPower::IsOneOverOddInteger(1.0 / 3, 32.0));
  EXPECT_TRUE(QXPower::IsOneOverOddInteger(-1.0 / 5, 32.0));
  EXPECT_TRUE(QXPower::IsOneOverOddInteger(1.0, 32.0));
  EXPECT_FALSE(QXPower::IsOneOverOddInteger(0.25, 32.0));
  EXPECT_FALSE(QXPower::IsOneOverOddInteger(0.3, 32.0));
  EXPECT_FALSE(QXPower::IsOneOverOddInteger(0.0, 32.0));
  EXPECT_FALSE(QXPower::IsOneOverOddInteger(1e-10, 32.0));  // 1/x beyond the largest int
  EXPECT_TRUE(QXPower::IsOneOverEvenInteger(0.25, 32.0));
  EXPECT_TRUE(QXPower::IsOneOverEvenInteger(0.5, 32.0));
  EXPECT_FALSE(QXPower::IsOneOverEvenInteger(1.0 / 3, 32.0));
}

TEST(QXPowerTest, ExponentAndMultiplyReportRangeByCode) {
  double out = 5.0;
  EXPECT_EQ(QXPower::Exponent(-709.0, out), 1);
  EXPECT_EQ(out, 0.0);
  EXPECT_EQ(QXPower::Exponent(709.5, out), 2);
  EXPECT_TRUE(QXMV::IsMissing(out));
  EXPECT_EQ(QXPower::Exponent(-708.0, out), 0);
  EXPECT_EQ(out, std::exp(-708.0));
  EXPECT_EQ(QXPower::Exponent(709.0, out), 0);
  EXPECT_EQ(out, std::exp(709.0));

  EXPECT_EQ(QXPower::Multiply(0.0, 1e300), 0.0);
  EXPECT_DOUBLE_EQ(QXPower::Multiply(-3.0, 7.0), -21.0);
  EXPECT_DOUBLE_EQ(QXPower::Multiply(-3.0, -7.0), 21.0);
  EXPECT_TRUE(QXMV::IsMissing(QXPower::Multiply(-1e300, 1e300)));  // no sign on missing
  EXPECT_EQ(QXPower::Multiply(1e-300, 1e-300), 0.0);
}

TEST(QXPowerTest, PowerCodesCoverEveryDomainCase) {
  struct Case {
    double base, e;
    int code;
    double out;  // NaN: expect the missing value
  };
  const double miss = std::numeric_limits<double>::quiet_NaN();
  const Case cases[] = {
      {0.0, 0.0, 7, 1.0},      {0.0, 2.5, 0, 0.0},       {0.0, -1.0, 6, miss},
      {2.0, 0.0, 0, 1.0},      {2.0, 10.0, 0, 1024.0},   {2.0, 1e4, 2, miss},
      {2.0, -1e4, 1, 0.0},     {-8.0, 0.0, 5, 1.0},      {-2.0, 2.0, 0, 4.0},
      {-2.0, 3.0, 0, -8.0},    {-2.0, -1.0, 0, -0.5},    {-8.0, 1.0 / 3, 0, -2.0},
      {-8.0, 0.5, 4, miss},    {-2.0, 2.5, 4, miss},     {-2.0, 1025.0, 3, miss},
      {-2.0, 1024.0, 2, miss}, {-2.0, -1075.0, 1, -0.0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.base << "^" << c.e);
    double out = 123.0;
    EXPECT_EQ(QXPower::Power(c.base, c.e, out), c.code);
    if (std::isnan(c.out)) {
      EXPECT_TRUE(QXMV::IsMissing(out));
    } else {
      EXPECT_NEAR(out, c.out, 4e-16 * std::fabs(c.out));
    }
  }
}

}  // namespace
}  // namespace QXMath_850
