// Status rules, exact values, identities and round trips of the central
// distributions. Accuracy against the reference tables is in
// qxdistfun_accuracy_test.cpp.
#include "qx/distributions/qxdistfun.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

#include "qx/distributions/internal/testutil.h"

namespace QXMath_850 {
namespace {

using D = QXDistFun;

const double kNaN = std::numeric_limits<double>::quiet_NaN();

using internal::Miss;

TEST(QXDistFunTest, ComputingTierResetsStatusAndPairsErrorsWithMissing) {
  internal::ExpectStatuses({
      {"gammad ok", [](long& s) { return D::gammad(2.0, 3.0, true, s); }, 0},
      {"gammad a=0", [](long& s) { return D::gammad(2.0, 0.0, true, s); }, 1},
      {"gammad a<0 at x=0", [](long& s) { return D::gammad(0.0, -1.0, false, s); }, 1},
      {"gammad a NaN", [](long& s) { return D::gammad(1.0, kNaN, true, s); }, 1},
      {"cdfbet ok", [](long& s) { return D::cdfbet(0.3, 2.0, 3.0, s); }, 0},
      {"cdfbet b=0 at x=1", [](long& s) { return D::cdfbet(1.0, 2.0, 0.0, s); }, 1},
      {"cdfexp ok", [](long& s) { return D::cdfexp(1.0, 2.0, s); }, 0},
      {"cdfexp rate=0", [](long& s) { return D::cdfexp(1.0, 0.0, s); }, 1},
      {"kvatcdft ok", [](long& s) { return D::kvatcdft(1.5, 4.0, s); }, 0},
      {"kvatcdft df=0", [](long& s) { return D::kvatcdft(1.5, 0.0, s); }, 1},
      {"kvatcdft t NaN", [](long& s) { return D::kvatcdft(kNaN, 4.0, s); }, 1},
      {"kvatcdff ok", [](long& s) { return D::kvatcdff(1.5, 4.0, 6.0, s); }, 0},
      {"kvatcdff df2<0", [](long& s) { return D::kvatcdff(1.5, 4.0, -6.0, s); }, 1},
      {"kvatidft ok", [](long& s) { return D::kvatidft(0.9, 4.0, s); }, 0},
      {"kvatidft p=1", [](long& s) { return D::kvatidft(1.0, 4.0, s); }, 1},
      {"kvatidft p NaN", [](long& s) { return D::kvatidft(kNaN, 4.0, s); }, 1},
      {"kvatidff ok", [](long& s) { return D::kvatidff(0.9, 4.0, 6.0, s); }, 0},
      {"kvatidff p=1", [](long& s) { return D::kvatidff(1.0, 4.0, 6.0, s); }, 1},
      {"kvatidff df1=0", [](long& s) { return D::kvatidff(0.5, 0.0, 6.0, s); }, 1},
      {"kvatidfchi ok", [](long& s) { return D::kvatidfchi(0.9, 4.0, s); }, 0},
      {"kvatidfchi p=1", [](long& s) { return D::kvatidfchi(1.0, 4.0, s); }, 1},
      {"kvatidfchi df=0", [](long& s) { return D::kvatidfchi(0.5, 0.0, s); }, 1},
      {"idfchb ok", [](long& s) { return D::idfchb(0.9, 4.0, 7.0, s); }, 0},
      {"idfchb x0=0", [](long& s) { return D::idfchb(0.9, 4.0, 0.0, s); }, 1},
      {"idfchb p below bracket", [](long& s) { return D::idfchb(1e-10, 4.0, 7.0, s); }, 2},
      {"idfchb p above bracket", [](long& s) { return D::idfchb(0.999999, 4.0, 2.0, s); }, 2},
      {"PdfT ok", [](long& s) { return D::PdfT(0.5, 3.0, s); }, 0},
      {"PdfT df=0", [](long& s) { return D::PdfT(0.5, 0.0, s); }, 1},
  });
}

// The refusals of the functions with reference tables are checked with
// those tables, in qxdistfun_accuracy_test.cpp.
TEST(QXDistFunTest, PublicTierGivesMissingOnBadInput) {
  const double bad[] = {
      D::CdfNorm(1.0, 0.0, 0.0), D::PdfNormal(1.0, 0.0, 0.0),    D::IdfStdNorm(kNaN),
      D::IdfNorm(0.5, 1.0, 0.0), D::IdfNorm(1.5, 1.0, 2.0),      D::SigT(kNaN, 3.0),
      D::SigF(1.0, 1.0, 0.0),    D::IdfGam(1.0, 2.0, 1.0),       D::IdfGam(0.5, -1.0, 1.0),
      D::IdfGam(0.5, 2.0, 0.0),  D::PdfGamma(1e-320, 0.01, 1.0),  // overflows
  };
  for (size_t i = 0; i < sizeof bad / sizeof bad[0]; i++)
    EXPECT_TRUE(Miss(bad[i])) << "case " << i;
  // The one neighbour that fails with -1.0 instead.
  EXPECT_EQ(D::IdfBeta(0.3, -1.0, 1.0), -1.0);
  EXPECT_EQ(D::betinv(0.3, 1.0, 0.0), -1.0);
  EXPECT_EQ(D::betinv(1.3, 1.0, 2.0), -1.0);
  // p = 0 and p = 1 are answered before the arguments are looked at.
  EXPECT_EQ(D::IdfBeta(0.0, -1.0, 1.0), 0.0);
  EXPECT_EQ(D::betinv(1.0, 2.0, -3.0), 1.0);
}

TEST(QXDistFunTest, ExactSpecialValues) {
  for (double df : {0.3, 1.0, 7.0, 1e9}) {
    EXPECT_EQ(D::CdfT(0.0, df), 0.5) << df;
    EXPECT_EQ(D::SigT(0.0, df), 0.5) << df;
    EXPECT_EQ(D::IdfT(0.5, df), 0.0) << df;
  }
  EXPECT_EQ(D::IdfStdNorm(0.5), 0.0);
  EXPECT_EQ(D::probit(0.5), 0.0);
  EXPECT_EQ(D::IdfNorm(0.5, -3.25, 9.0), -3.25);
  EXPECT_EQ(D::prbnrm(0.0), 0.5);
  EXPECT_EQ(D::derf(0.0), 0.0);
  EXPECT_EQ(D::derfc(0.0), 1.0);
  EXPECT_EQ(D::derf(7.0), 1.0);
  EXPECT_EQ(D::derf(-7.0), -1.0);
  EXPECT_EQ(D::dnlgam(1.0), 0.0);
  EXPECT_EQ(D::dnlgam(2.0), 0.0);
  EXPECT_EQ(D::dnlgam(0.5), 0.5723649429247001);
  EXPECT_EQ(D::kvatdnlgam(2.0), 0.0);
  for (double x : {0.0, -1.0, -0.5, -1.5, -2.5, -3.5, -1e300, kNaN})
    EXPECT_TRUE(Miss(D::dnlgam(x))) << x;
  EXPECT_EQ(D::PdfGamma(0.0, 1.0, 2.5), 2.5);
  EXPECT_EQ(D::PdfGamma(0.0, 3.0, 2.5), 0.0);
  EXPECT_EQ(D::PdfGamma(-1.0, 3.0, 2.5), 0.0);
  EXPECT_EQ(D::cbtaux(0.0), 1.0);
  EXPECT_EQ(D::cbtaux(1.0), 0.0);
  EXPECT_EQ(D::cbtaux(1e200), -1.0);
  EXPECT_TRUE(Miss(D::cbtaux(-0.5)));
  EXPECT_EQ(D::IdfChi(0.0, 3.0), 0.0);
  EXPECT_EQ(D::IdfGam(0.0, 3.0, 2.0), 0.0);
  EXPECT_EQ(D::IdfF(0.0, 3.0, 2.0), 0.0);
  // Limits are values with status 0, not errors.
  long s = 9;
  EXPECT_EQ(D::gammad(0.0, 2.0, true, s), 0.0);
  EXPECT_EQ(s, 0);
  EXPECT_EQ(D::gammad(-3.0, 2.0, false, s), 1.0);
  EXPECT_EQ(D::cdfbet(0.0, 2.0, 3.0, s), 0.0);
  EXPECT_EQ(D::cdfbet(1.0, 2.0, 3.0, s), 1.0);
  EXPECT_EQ(s, 0);
  EXPECT_EQ(D::cdfbet(0.25, 1.0, 1.0, s), 0.25);
  EXPECT_EQ(D::CdfChi(-1.0, 3.0), 0.0);
  EXPECT_EQ(D::SigChi(0.0, 3.0), 1.0);
  EXPECT_EQ(D::CdfF(0.0, 3.0, 4.0), 0.0);
  EXPECT_EQ(D::SigF(-2.0, 3.0, 4.0), 1.0);
  EXPECT_EQ(D::CdfGam(0.0, 3.0, 4.0), 0.0);
  // A negative sd is not refused by the density: it gives a negative value.
  EXPECT_DOUBLE_EQ(D::PdfNormal(1.0, 0.0, -2.0), -D::PdfNormal(1.0, 0.0, 2.0));
}

TEST(QXDistFunTest, IdentitiesBetweenFunctions) {
  for (double df : {0.7, 1.0, 2.0, 5.5, 40.0, 3000.0}) {
    for (double t : {-30.0, -2.5, -1.0, -0.4, 0.2, 1.0, 1.3, 8.0}) {
      SCOPED_TRACE(testing::Message() << "t=" << t << " df=" << df);
      const double cdf = D::CdfT(t, df), sig = D::SigT(t, df);
      EXPECT_NEAR(cdf + sig, 1.0, 1e-15);
      EXPECT_NEAR(D::CdfT(-t, df), sig, 1e-15);
      // t squared is F(1, df).
      EXPECT_NEAR(D::CdfF(t * t, 1.0, df), std::fabs(2.0 * cdf - 1.0), 1e-14);
      // The density is the slope of the cumulative function.
      long status;
      const double h = 1e-5 * std::max(1.0, std::fabs(t));
      const double slope = (D::CdfT(t + h, df) - D::CdfT(t - h, df)) / (2 * h);
      EXPECT_NEAR(D::PdfT(t, df, status), slope, 1e-7 * std::max(slope, 1e-3));
    }
  }
  for (double df : {0.3, 1.0, 4.0, 25.0, 400.0}) {
    for (double x : {0.01, 0.5, 3.0, 20.0, 300.0}) {
      SCOPED_TRACE(testing::Message() << "x=" << x << " df=" << df);
      EXPECT_NEAR(D::CdfChi(x, df) + D::SigChi(x, df), 1.0, 1e-15);
      // Chi-square is gamma with shape df/2 and rate 1/2.
      EXPECT_EQ(D::CdfChi(x, df), D::CdfGam(x, df / 2, 0.5));
      EXPECT_NEAR(D::CdfF(x, df, 7.0) + D::SigF(x, df, 7.0), 1.0, 1e-14);
    }
  }
  // The exponential is gamma with shape 1.
  EXPECT_NEAR(D::CdfGam(0.7, 1.0, 3.0), 1.0 - std::exp(-2.1), 2e-16);
  for (double z : {-9.0, -1.0, 0.3, 4.0})
    EXPECT_NEAR(D::CdfNorm(3.0 + 2.0 * z, 3.0, 2.0), D::CdfStdNorm(z), 2e-16);
  EXPECT_NEAR(D::derf(0.8) + D::derfc(0.8), 1.0, 1e-16);
  EXPECT_NEAR(D::derfc(-0.8), 2.0 - D::derfc(0.8), 1e-16);
}

TEST(QXDistFunTest, LargeDegreesOfFreedomShortcutIsTheCumulativeOnly) {
  // Above 1e8 the t cumulative function is the normal one; its upper tail
  // still runs the beta path.
  const double t = -2.0, df = 2e8;
  EXPECT_EQ(D::CdfT(t, df), D::CdfStdNorm(t));
  EXPECT_NE(D::SigT(-t, df), D::CdfStdNorm(t));
  // The continued fraction stops at 10 * (a + b) epsilons: about 4e-7 here.
  EXPECT_NEAR(D::SigT(-t, df), D::CdfStdNorm(t), 1e-6 * D::CdfStdNorm(t));
  EXPECT_EQ(D::IdfT(0.975, df), D::IdfStdNorm(0.975));
}

// A series that cannot stop within its 10,001 terms is not run at all; that
// must never be one that would have stopped. Around the edge (last terms of
// 1e-16 to 1e-14), wherever the plain series stops, cdfbet gives its answer
// bit for bit.
TEST(QXDistFunTest, IncompleteBetaSkipsOnlySeriesThatRunOut) {
  std::mt19937_64 random(3);
  std::uniform_real_distribution<double> uniform(0.0, 1.0);
  int stopped = 0;
  for (int i = 0; i < 3000; ++i) {
    // A first parameter of at most 1 (a series in 1 - x), or a second one.
    const double small = i % 5 == 0 ? 0.5 : std::exp(uniform(random) * std::log(1e-3));
    const double large = std::exp((uniform(random) - 0.3) * 20.0) + (i % 2 == 0 ? 0.0 : 1.0);
    const bool swapped = i % 2 == 0;
    const double a = swapped ? small : large, b = swapped ? large : small;
    const double p = swapped ? b : a, q = swapped ? a : b;
    // X with 10001 log X + (a+b-p-1) (log(10001/(a+b) + 1) + 0.5/(a+b)) at the edge.
    const double edge = -37.0 + 5.0 * uniform(random);
    const double H = std::log(10001.0 / (a + b) + 1.0) + 0.5 / (a + b);
    const double X = std::exp((edge - (a + b - p - 1.0) * H) / 10001.0), Y = 1.0 - X;
    const double x = swapped ? Y : X;
    if (!(x > 0.0 && x < 1.0) || a == 1.0 || b == 1.0) continue;
    double t = 1.0, sum = 1.0;
    bool stops = false;
    for (int k = 0; k <= 10000 && !stops; k++) {
      t *= (a + b + k) / (k + p + 1.0) * X;
      sum += t;
      stops = std::fabs(t) < 1e-15;
    }
    if (!stops) continue;
    const double L = std::log(X) * p + std::log(Y) * q + std::log(sum) + D::dnlgam(a + b) -
                     D::dnlgam(p + 1.0) - D::dnlgam(q);
    const double v = L < -708.0 ? 0.0 : std::exp(L), expected = swapped ? 1.0 - v : v;
    long status;
    const double got = D::cdfbet(x, a, b, status);
    ASSERT_EQ(std::memcmp(&got, &expected, sizeof got), 0)
        << got << " " << expected << " at x=" << x << " a=" << a << " b=" << b;
    ++stopped;
  }
  EXPECT_GT(stopped, 1000);
}

TEST(QXDistFunTest, ChiSquareQuantileFallsBackToBisection) {
  // In the far lower tail of many degrees of freedom the AS 91 refinement
  // gives up; the bisection answers with status 0 to its 1e-8 width.
  for (double df : {50.0, 200.0, 1e4}) {
    for (double p : {1e-100, 1e-20}) {
      long status = 5;
      const double x = D::kvatidfchi(p, df, status);
      EXPECT_EQ(status, 0) << df << " " << p;
      EXPECT_NEAR(D::CdfChi(x, df) / p, 1.0, 1e-6 * df) << df << " " << p;
    }
  }
}

TEST(QXDistFunTest, QuantilesInvertTheCumulativeFunctions) {
  // |F(Q(p)) - p| relative to the smaller tail: the normal to rounding, the
  // chi-square and gamma to the AS 91 refinement.
  const double ps[] = {1e-8, 1e-4, 0.01, 0.1, 0.3, 0.5, 0.6, 0.9, 0.99, 0.9999};
  auto rel = [](double back, double p) { return std::fabs(back - p) / std::min(p, 1 - p); };
  double worstNorm = 0, worstChi = 0, worstT = 0, worstF = 0;
  for (double p : ps) {
    worstNorm = std::max(worstNorm, rel(D::CdfStdNorm(D::IdfStdNorm(p)), p));
    worstNorm = std::max(worstNorm, rel(D::CdfNorm(D::IdfNorm(p, 2.0, 3.0), 2.0, 3.0), p));
    for (double df : {0.2, 1.0, 3.0, 30.0, 1000.0}) {
      worstChi = std::max(worstChi, rel(D::CdfChi(D::IdfChi(p, df), df), p));
      worstChi = std::max(worstChi, rel(D::CdfGam(D::IdfGam(p, df, 3.0), df, 3.0), p));
    }
  }
  EXPECT_LT(worstNorm, 1e-14);
  EXPECT_LT(worstChi, 2e-8);

  // betinv stops on Newton steps of 1e-10 (or moves of 1e-12) in the beta
  // variable, so its round trip is held to the density times that step.
  for (double p : ps) {
    for (double a : {0.5, 2.0, 40.0}) {
      for (double b : {0.7, 3.0, 100.0}) {
        const double x = D::IdfBeta(p, a, b);
        const double dens = std::exp((a - 1) * std::log(x) + (b - 1) * std::log1p(-x) -
                                     D::dnlgam(a) - D::dnlgam(b) + D::dnlgam(a + b));
        EXPECT_NEAR(D::CdfBeta(x, a, b), p, dens * 2e-10 + 1e-13 * p)
            << "p=" << p << " a=" << a << " b=" << b;
      }
    }
  }
  // The t and F quantiles map that step through 1/x - 1, which is well
  // conditioned away from the extreme tails and tiny degrees of freedom.
  for (double p : {1e-4, 0.01, 0.1, 0.3, 0.6, 0.9, 0.99, 0.9999}) {
    for (double df : {1.0, 3.0, 30.0, 1000.0}) {
      worstT = std::max(worstT, rel(D::CdfT(D::IdfT(p, df), df), p));
      if (df > 1) worstF = std::max(worstF, rel(D::CdfF(D::IdfF(p, 2.5, df), 2.5, df), p));
    }
  }
  EXPECT_LT(worstT, 1e-7);
  EXPECT_LT(worstF, 2e-6);
}

}  // namespace
}  // namespace QXMath_850
