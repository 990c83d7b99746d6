#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "qx/foundation/qxmissingvalue.h"
#include "qx/matrices/qxmathfun.h"

namespace QXMath_850 {
namespace {

using QXCommon_850::QXMV;

TEST(QXMathFunSpecialTest, ValueChecksAndDifferences) {
  EXPECT_TRUE(QXMathFun::IsValidDouble(std::numeric_limits<double>::max()));
  EXPECT_TRUE(QXMathFun::IsValidDouble(QXMV::Missing()));
  EXPECT_FALSE(QXMathFun::IsValidDouble(std::numeric_limits<double>::infinity()));
  EXPECT_FALSE(QXMathFun::IsValidDouble(std::numeric_limits<double>::quiet_NaN()));

  EXPECT_EQ(QXMathFun::ReplaceIfSmall(-0.0001, 0.01), -0.01);
  EXPECT_EQ(QXMathFun::ReplaceIfSmall(0.0001, 0.01), 0.01);
  EXPECT_EQ(QXMathFun::ReplaceIfSmall(0.0, 0.01), 0.01);
  EXPECT_EQ(QXMathFun::ReplaceIfSmall(-0.5, 0.01), -0.5);

  const std::vector<double> a = {1.0, 5.0, 2.0, 100.0}, b = {0.0, 4.0, 2.0};
  EXPECT_DOUBLE_EQ(QXMathFun::VMaxRelDiff(a, b, 0.0), 1.0 / 1e-06);  // den 0: 1e-06
  EXPECT_DOUBLE_EQ(QXMathFun::VMaxRelDiff(a, b, -2.0), 0.5);         // |den|
  EXPECT_DOUBLE_EQ(QXMathFun::VMaxRelDiff(b, a, 1.0), 0.5);
  EXPECT_EQ(QXMathFun::VMaxRelDiff({}, a, 1.0), 0.0);
  EXPECT_EQ(QXMathFun::VNrm1Diff(a, b), 1.0);  // the largest, not the sum
  EXPECT_EQ(QXMathFun::VNrm1Diff(a, {}), 0.0);
}

TEST(QXMathFunSpecialTest, TwoLargest) {
  double first = 1, second = 1;
  QXMathFun::FindTwoLargest({}, first, second);
  EXPECT_TRUE(QXMV::IsMissing(first) && QXMV::IsMissing(second));
  QXMathFun::FindTwoLargest({3.0}, first, second);
  EXPECT_EQ(first, 3.0);
  EXPECT_TRUE(QXMV::IsMissing(second));
  QXMathFun::FindTwoLargest({5.0, 1.0, 4.0, -2.0}, first, second);
  EXPECT_EQ(first, 5.0);
  EXPECT_EQ(second, 4.0);
  QXMathFun::FindTwoLargest({-3.0, 7.0, 2.0, 7.0}, first, second);  // a tie is the second
  EXPECT_EQ(first, 7.0);
  EXPECT_EQ(second, 7.0);
  const double m = QXMV::Missing();
  QXMathFun::FindTwoLargestNonMiss({m, -4.0, m, -6.0}, first, second);
  EXPECT_EQ(first, -4.0);
  EXPECT_EQ(second, -6.0);
  QXMathFun::FindTwoLargestNonMiss({m, m}, first, second);
  EXPECT_TRUE(QXMV::IsMissing(first) && QXMV::IsMissing(second));
}

TEST(QXMathFunSpecialTest, BinSearch) {
  const std::vector<double> v = {1.0, 3.0, 3.0, 5.0, 8.0, 13.0};
  EXPECT_EQ(QXMathFun::BinSearch(v, 0, 6, 2.0, false), -2);  // hi past the end
  EXPECT_EQ(QXMathFun::BinSearch(v, 3, 2, 2.0, false), -2);
  EXPECT_EQ(QXMathFun::BinSearch(v, 0, 5, 14.0, false), -1);
  EXPECT_EQ(QXMathFun::BinSearch(v, 0, 5, 13.0, true), -1);  // at values[hi] with after
  EXPECT_EQ(QXMathFun::BinSearch(v, 0, 5, 13.0, false), 5);
  EXPECT_EQ(QXMathFun::BinSearch(v, 2, 4, 1.5, false), -1);  // below values[lo-1]
  EXPECT_EQ(QXMathFun::BinSearch(v, 2, 4, 3.0, false), -1);  // at it, without after
  EXPECT_EQ(QXMathFun::BinSearch(v, 2, 4, 3.0, true), 3);
  EXPECT_EQ(QXMathFun::BinSearch(v, 4, 4, 6.0, false), 4);  // lo = hi
  EXPECT_EQ(QXMathFun::BinSearch(v, 0, 5, 5.0, false), 3);  // hit
  EXPECT_EQ(QXMathFun::BinSearch(v, 0, 5, 5.0, true), 4);
  EXPECT_EQ(QXMathFun::BinSearch(v, 0, 5, 6.0, false), 4);  // insertion index
  EXPECT_EQ(QXMathFun::BinSearch(v, 0, 5, 0.5, true), 0);
  const std::vector<int> iv = {2, 4, 6, 8};
  EXPECT_EQ(QXMathFun::BinSearch(iv, 0, 3, 5, false), 2);
  EXPECT_EQ(QXMathFun::BinSearch(iv, 0, 3, 4, true), 2);
  EXPECT_EQ(QXMathFun::BinSearch(iv, 0, 3, 8, true), -1);
  EXPECT_EQ(QXMathFun::BinSearch(iv, -1, 3, 5, false), -2);
}

TEST(QXMathFunSpecialTest, DigammaAndTrigamma) {
  // Accuracy over a grid is checked against reference tables with the
  // distribution functions; here the defining relations.
  const double euler = 0.5772156649015329, pi = 3.141592653589793;
  EXPECT_NEAR(QXMathFun::Digamma(1.0), -euler, 1e-15);
  EXPECT_NEAR(QXMathFun::Trigamma(1.0), pi * pi / 6, 1e-15);
  EXPECT_NEAR(QXMathFun::Digamma(0.5), -euler - 2 * std::log(2.0), 4e-15);
  for (double x : {0.3, 1.7, 4.0, 25.0}) {
    EXPECT_NEAR(QXMathFun::Digamma(x + 1), QXMathFun::Digamma(x) + 1 / x, 1e-14 * (1 + 1 / x));
    EXPECT_NEAR(QXMathFun::Trigamma(x + 1), QXMathFun::Trigamma(x) - 1 / (x * x), 1e-14 / (x * x));
  }
  // Below 1e-05 (resp. 1e-04) the leading terms alone.
  EXPECT_EQ(QXMathFun::Digamma(1e-6), -1e6 - euler);
  EXPECT_EQ(QXMathFun::Trigamma(1e-5), 1.0 / 1e-5 / 1e-5);
  for (double x : {0.0, -2.0, 1e-16, std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_TRUE(QXMV::IsMissing(QXMathFun::Digamma(x))) << x;
    EXPECT_TRUE(QXMV::IsMissing(QXMathFun::Trigamma(x))) << x;
  }
}

}  // namespace
}  // namespace QXMath_850
