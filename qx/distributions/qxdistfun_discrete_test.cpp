// Binomial and hypergeometric functions with their own status codes, the
// median's confidence interval and the grouped percentile.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "qx/distributions/internal/testutil.h"
#include "qx/distributions/qxdistfun.h"

namespace QXMath_850 {
namespace {

using D = QXDistFun;

using internal::Miss;

TEST(QXDistFunDiscreteTest, StatusCodesDifferByFunction) {
  internal::ExpectStatuses({
      // CdfBin: 1 for n below 1 or p outside [0, 1], 3 for a fractional n.
      {"CdfBin n=10.5", [](long& s) { return D::CdfBin(2.0, 10.5, 0.3, s); }, 3},
      {"CdfBin n=0.5", [](long& s) { return D::CdfBin(2.0, 0.5, 0.3, s); }, 1},
      {"CdfBin p=1.3", [](long& s) { return D::CdfBin(2.0, 10.0, 1.3, s); }, 1},
      // IdfBin: 1 for a fractional n, 2 for the rest.
      {"IdfBin n=10.5", [](long& s) { return D::IdfBin(0.5, 10.5, 0.3, s); }, 1},
      {"IdfBin n=0", [](long& s) { return D::IdfBin(0.5, 0.0, 0.3, s); }, 2},
      {"IdfBin prob=1.5", [](long& s) { return D::IdfBin(1.5, 10.0, 0.3, s); }, 2},
      {"IdfBin p=-0.1", [](long& s) { return D::IdfBin(0.5, 10.0, -0.1, s); }, 2},
      // PdfBin: 1 for bad n or p, 2 on overflow (the log-gamma difference of
      // a huge n no longer cancels to a probability). A fractional n is
      // allowed here; a fractional x, or one outside [0, n], has probability 0.
      {"PdfBin n=0.5", [](long& s) { return D::PdfBin(1.0, 0.5, 0.3, s); }, 1},
      {"PdfBin n=1e18", [](long& s) { return D::PdfBin(5e17, 1e18, 0.5, s); }, 2},
      {"PdfBin n=10.5", [](long& s) { return D::PdfBin(2.0, 10.5, 0.3, s); }, 0},
      {"dnlbnc k>n", [](long& s) { return D::dnlbnc(3.0, 4.0, s); }, 1},
      {"dnlbnc k<0", [](long& s) { return D::dnlbnc(3.0, -1.0, s); }, 1},
  });
  long s;
  EXPECT_GT(D::PdfBin(2.0, 10.5, 0.3, s), 0.0);
  for (double x : {2.5, -1.0, 11.0})
    EXPECT_EQ(D::PdfBin(x, 10.0, 0.3, s), 0.0) << x;
  // CDFHyper reports through an int.
  int is;
  for (double a : {3.5, 11.0, 0.0}) {
    is = 9;
    EXPECT_TRUE(Miss(D::CDFHyper(1.0, 10.0, a, 4.0, is))) << a;
    EXPECT_EQ(is, 1) << a;
  }
  EXPECT_EQ(D::CDFHyper(1.0, 10.0, 3.0, 4.0, is), D::CDFHyper(1.9, 10.0, 3.0, 4.0, is));
  EXPECT_EQ(is, 0);
  EXPECT_TRUE(Miss(D::PdfHyper(5, 10, 3, 4)));  // beyond min(a, b)
  EXPECT_TRUE(Miss(D::PdfHyper(0, 10, 8, 4)));  // below a + b - total
  EXPECT_TRUE(Miss(D::PdfHyper(1, 10, 0, 4)));
}

TEST(QXDistFunDiscreteTest, ExactValuesAndLimits) {
  long s;
  EXPECT_EQ(D::dnlbnc(7.0, 0.0, s), 0.0);
  EXPECT_EQ(D::dnlbnc(7.0, 7.0, s), 0.0);
  EXPECT_DOUBLE_EQ(D::dnlbnc(10.0, 3.0, s), std::log(120.0));
  EXPECT_DOUBLE_EQ(D::dnlbnc(33.0, 16.0, s), std::log(1166803110.0));
  EXPECT_NEAR(D::dnlbnc(34.0, 17.0, s), std::log(2333606220.0), 4e-14);
  EXPECT_EQ(D::PdfBin(0.0, 10.0, 0.0, s), 1.0);
  EXPECT_EQ(D::PdfBin(3.0, 10.0, 0.0, s), 0.0);
  EXPECT_EQ(D::PdfBin(10.0, 10.0, 1.0, s), 1.0);
  EXPECT_EQ(D::PdfBin(10.0, 10.0, 0.5, s), std::pow(0.5, 10.0));
  EXPECT_EQ(D::CdfBin(-0.5, 10.0, 0.3, s), 0.0);
  EXPECT_EQ(D::CdfBin(10.0, 10.0, 0.3, s), 1.0);
  EXPECT_EQ(D::CdfBin(3.0, 10.0, 0.0, s), 1.0);
  EXPECT_EQ(D::CdfBin(9.0, 10.0, 1.0, s), 0.0);
  EXPECT_EQ(D::CdfBin(0.7, 10.0, 0.2, s), std::exp(10.0 * std::log(0.8)));
  // IdfBin at the ends of the probability range.
  EXPECT_EQ(D::IdfBin(0.0, 12.0, 0.4, s), -1.0);
  EXPECT_EQ(D::IdfBin(0.0, 12.0, 1.0, s), 11.0);
  EXPECT_EQ(D::IdfBin(1.0, 12.0, 0.0, s), 0.0);
  EXPECT_EQ(D::IdfBin(1.0, 12.0, 0.4, s), 12.0);
}

TEST(QXDistFunDiscreteTest, CumulativeFunctionsAreRunningSumsAndInvert) {
  long s;
  for (double n : {1.0, 7.0, 40.0, 300.0}) {
    for (double p : {0.02, 0.3, 0.5, 0.85}) {
      double running = 0.0;
      for (double k = 0; k < n; k += 1.0) {
        running += D::PdfBin(k, n, p, s);
        const double c = D::CdfBin(k + 0.5, n, p, s);
        ASSERT_NEAR(c, running, 1e-14 * std::max(1.0, n / 10)) << n << " " << p << " " << k;
        // The largest k with F(k) <= prob. (Below F(0) the answer is -1 or
        // 0 depending on where the normal estimate starts the walk.)
        if (c > 1e-6 && c < 1 - 1e-6) {
          EXPECT_EQ(D::IdfBin(c * (1 + 1e-9), n, p, s), k) << n << " " << p << " " << k;
          if (k > 0) {
            EXPECT_EQ(D::IdfBin(c * (1 - 1e-9), n, p, s), k - 1) << n << " " << p << " " << k;
          }
        }
      }
    }
  }
  for (long total : {12L, 60L, 900L, 3000L}) {
    const long a = total / 3, b = total / 4;
    double running = 0.0;
    int is;
    for (long x = std::max(a + b - total, 0L); x < std::min(a, b); x++) {
      EXPECT_NEAR(D::PdfHyper(x, total, a, b), D::PdfHyper(x, total, b, a),
                  1e-11 * D::PdfHyper(x, total, a, b));
      running += D::PdfHyper(x, total, a, b);
      EXPECT_NEAR(D::CDFHyper(x, total, a, b, is), running, 1e-11) << total << " " << x;
    }
    EXPECT_EQ(D::CDFHyper(-1.0, total, a, b, is), 0.0);
    EXPECT_EQ(D::CDFHyper(b, total, a, b, is), 1.0);
  }
  // Large tables far from both ends use the normal approximation.
  int is;
  const double approx = D::CDFHyper(500.0, 50000.0, 1000.0, 25000.0, is);
  EXPECT_EQ(approx, D::CdfStdNorm(0.5 / std::sqrt(0.5 * 500.0 * (49000.0 / 49999.0))));
}

TEST(QXDistFunDiscreteTest, MedianConfidenceInterval) {
  std::vector<double> v, f;
  for (int i = 1; i <= 20; i++) {
    v.push_back(i);
    f.push_back(1.0);
  }
  double lo, hi, level;
  // 20 cases at 95%: ranks 6 and 15, covering 1 - 2 P(Bin(20, 1/2) <= 5).
  QXDistFun::Mednci(20, v, f, 20.0, 95.0, true, lo, hi, level);
  EXPECT_EQ(lo, 6.0);
  EXPECT_EQ(hi, 15.0);
  long s;
  EXPECT_NEAR(level, 100.0 * (1.0 - 2.0 * D::CdfBin(5.0, 20.0, 0.5, s)), 1e-9);
  QXDistFun::Mednci(20, v, f, 20.0, 95.0, false, lo, hi, level);
  EXPECT_TRUE(Miss(level));
  // The same ranks over grouped values.
  QXDistFun::Mednci(3, {1.0, 2.0, 3.0}, {5.0, 10.0, 5.0}, 20.0, 95.0, false, lo, hi, level);
  EXPECT_EQ(lo, 2.0);
  EXPECT_EQ(hi, 2.0);
  // Two cases, or too few for any interval: the extremes at 100%.
  QXDistFun::Mednci(2, {4.0, 9.0}, {1.0, 1.0}, 2.0, 95.0, true, lo, hi, level);
  EXPECT_EQ(lo, 4.0);
  EXPECT_EQ(hi, 9.0);
  EXPECT_EQ(level, 100.0);
  QXDistFun::Mednci(3, {4.0, 6.0, 9.0}, {1.0, 1.0, 1.0}, 3.0, 95.0, true, lo, hi, level);
  EXPECT_EQ(lo, 4.0);
  EXPECT_EQ(hi, 9.0);
  EXPECT_EQ(level, 100.0);
  // Fewer than two cases, or a fractional total: no interval.
  QXDistFun::Mednci(1, {4.0}, {1.0}, 1.0, 95.0, true, lo, hi, level);
  EXPECT_TRUE(Miss(lo) && Miss(hi) && Miss(level));
  QXDistFun::Mednci(20, v, f, 20.5, 95.0, true, lo, hi, level);
  EXPECT_TRUE(Miss(lo) && Miss(hi) && Miss(level));
}

TEST(QXDistFunDiscreteTest, GroupedPercentile) {
  double r;
  long flag;
  const std::vector<double> none;
  QXDistFun::GPTile(1, 50.0, {1.0}, {1.0}, none, 0, r, flag);
  EXPECT_EQ(flag, -1);
  EXPECT_TRUE(Miss(r));

  // Equal widths of 10 around 10, 20, 30: groups [5,15), [15,25), [25,35).
  const std::vector<double> v = {10.0, 20.0, 30.0}, f = {2.0, 3.0, 5.0}, w = {10.0};
  QXDistFun::GPTile(3, 40.0, v, f, w, 1, r, flag);  // target 4 in the second group
  EXPECT_EQ(flag, 0);
  EXPECT_DOUBLE_EQ(r, 15.0 + 10.0 * 2.0 / 3.0);
  QXDistFun::GPTile(3, 50.0, v, f, w, 1, r, flag);  // target 5 opens the third
  EXPECT_EQ(r, 25.0);
  QXDistFun::GPTile(3, 100.0, v, f, w, 1, r, flag);  // target at the last count
  EXPECT_EQ(r, 35.0);
  QXDistFun::GPTile(3, 100.0 * 2 / 7, v, {2.0, 0.0, 5.0}, w, 1, r, flag);  // empty group skipped
  EXPECT_EQ(r, 25.0);

  // Cuts at 2, 4, 6; the last group ends at 7 reflected in 6.
  const std::vector<double> odd = {1.0, 3.0, 5.0, 7.0, 9.0}, ones(5, 1.0), cuts = {2.0, 4.0, 6.0};
  QXDistFun::GPTile(5, 50.0, odd, ones, cuts, 3, r, flag);  // 2.5 of 5 in [4, 6)
  EXPECT_DOUBLE_EQ(r, 5.0);
  QXDistFun::GPTile(5, 80.0, odd, ones, cuts, 3, r, flag);  // 4 of 5 in [6, 8)
  EXPECT_DOUBLE_EQ(r, 7.0);
  QXDistFun::GPTile(5, 100.0, odd, ones, cuts, 3, r, flag);
  EXPECT_EQ(r, 8.0);
  QXDistFun::GPTile(5, 10.0, odd, ones, cuts, 3, r, flag);  // below the first cut's count
  EXPECT_TRUE(Miss(r));
  EXPECT_EQ(flag, 0);

  // Values as group centres at half their counts: 0.5, 1.5, 2.5, 3.5.
  const std::vector<double> c = {1.0, 2.0, 3.0, 4.0}, c1(4, 1.0);
  QXDistFun::GPTile(4, 50.0, c, c1, none, 0, r, flag);
  EXPECT_DOUBLE_EQ(r, 2.5);
  QXDistFun::GPTile(4, 5.0, c, c1, none, 0, r, flag);
  EXPECT_EQ(flag, 1);
  EXPECT_TRUE(Miss(r));
  QXDistFun::GPTile(4, 95.0, c, c1, none, 0, r, flag);
  EXPECT_EQ(flag, 2);
  QXDistFun::GPTile(4, 87.5, c, c1, none, 0, r, flag);
  EXPECT_EQ(r, 4.0);
}

}  // namespace
}  // namespace QXMath_850
