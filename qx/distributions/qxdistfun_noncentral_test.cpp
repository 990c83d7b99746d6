// Noncentral distributions: reductions to the central ones, status rules,
// identities between the families, and the noncentrality searches.
#include <gtest/gtest.h>

#include <cmath>

#include "qx/distributions/internal/testutil.h"
#include "qx/distributions/qxdistfun.h"

namespace QXMath_850 {
namespace {

using D = QXDistFun;
using internal::Miss;

TEST(QXDistFunNoncentralTest, ZeroNoncentralityIsTheCentralFunction) {
  for (double df : {0.5, 3.0, 40.0}) {
    for (double x : {0.2, 2.0, 9.0, 80.0}) {
      EXPECT_EQ(D::NonCentralCdfChi(x, df, 0.0), D::CdfChi(x, df)) << x << " " << df;
      EXPECT_NEAR(D::NonCentralCdfF(x, 2.0, df, 0.0, 1e-12), D::CdfF(x, 2.0, df), 1e-15);
    }
    for (double t : {-3.0, -0.2, 0.7, 5.0}) {
      EXPECT_EQ(D::NonCentralCdfT(t, df, 0.0), D::CdfT(t, df));
      long s1 = 9, s2 = 9;
      EXPECT_EQ(D::NonCentralPdfT(t, df, 0.0, s1), D::PdfT(t, df, s2));
      EXPECT_EQ(s1, 0);
    }
    for (double delta : {-2.0, 0.5, 7.0})
      EXPECT_EQ(D::NonCentralCdfT(0.0, df, delta), D::prbnrm(-delta));
  }
  long status = 9;
  EXPECT_EQ(D::ncdbet(0.3, 2.0, 5.0, 0.0, status, 1e-12), D::CdfBeta(0.3, 2.0, 5.0));
  EXPECT_EQ(status, 0);
}

// The refusals of the cumulative functions are in their reference tables
// (qxdistfun_accuracy_test.cpp).
TEST(QXDistFunNoncentralTest, InvalidArgumentsAndLimits) {
  EXPECT_EQ(D::NonCentralCdfChi(0.0, 2.0, 5.0), 0.0);
  EXPECT_EQ(D::NonCentralCdfChi(-4.0, 2.0, 5.0), 0.0);
  EXPECT_TRUE(Miss(D::NonCentralCdfF(1.0, 2.0, 0.0, 1.0, 1e-12)));
  EXPECT_EQ(D::NonCentralCdfF(0.0, 2.0, 3.0, 1.0, 1e-12), 0.0);
  // A bound that can't be met within the step limit.
  EXPECT_TRUE(Miss(D::NonCentralCdfF(1.0, 2.0, 3.0, 5.0, -1.0)));

  internal::ExpectStatuses({
      {"ncdbet a=0", [](long& s) { return D::ncdbet(0.5, 0.0, 1.0, 1.0, s, 1e-12); }, 1},
      {"ncdbet ncp<0", [](long& s) { return D::ncdbet(0.5, 1.0, 1.0, -1.0, s, 1e-12); }, 1},
      {"ncdbet x=1", [](long& s) { return D::ncdbet(1.0, 1.0, 1.0, 2.0, s, 1e-12); }, 0},
      {"ncdbet tol<0", [](long& s) { return D::ncdbet(0.5, 2.0, 3.0, 4.0, s, -1.0); }, 2},
      {"NonCentralPdfT df<0", [](long& s) { return D::NonCentralPdfT(1.0, -1.0, 1.0, s); }, 1},
  });
  long status;
  EXPECT_EQ(D::ncdbet(0.0, 1.0, 1.0, 2.0, status, 1e-12), 0.0);
  EXPECT_EQ(D::ncdbet(1.0, 1.0, 1.0, 2.0, status, 1e-12), 1.0);
}

TEST(QXDistFunNoncentralTest, BetaWithoutRefinementIsTheFirstWeightedTerm) {
  // With tol >= 1 only the term at the start index counts: below a Poisson
  // mean of about 50 that is index 0, weight exp(-ncp/2).
  long status;
  for (double ncp : {0.5, 4.0, 30.0}) {
    const double first = std::exp(-ncp / 2) * D::CdfBeta(0.4, 1.5, 3.0);
    EXPECT_NEAR(D::ncdbet(0.4, 1.5, 3.0, ncp, status, 1.0), first, 1e-15 * first);
    EXPECT_GT(D::ncdbet(0.4, 1.5, 3.0, ncp, status, 1e-12), first);
  }
}

TEST(QXDistFunNoncentralTest, IdentitiesBetweenFamilies) {
  for (double df : {1.0, 4.0, 25.0}) {
    for (double delta : {-3.0, -0.5, 1.0, 4.0}) {
      for (double t : {-6.0, -1.0, 0.4, 2.0, 9.0}) {
        SCOPED_TRACE(testing::Message() << "t=" << t << " df=" << df << " delta=" << delta);
        // Reflection: F(t; delta) = 1 - F(-t; -delta).
        EXPECT_NEAR(D::NonCentralCdfT(t, df, delta), 1.0 - D::NonCentralCdfT(-t, df, -delta),
                    3e-12);
        // t squared is noncentral F(1, df) with noncentrality delta squared.
        const double f = t * t;
        const double viaT = D::NonCentralCdfT(std::fabs(t), df, delta) -
                            D::NonCentralCdfT(-std::fabs(t), df, delta);
        EXPECT_NEAR(D::NonCentralCdfF(f, 1.0, df, delta * delta, 1e-13), viaT, 5e-12);
        // The density is the slope of the cumulative function.
        long status;
        const double h = 1e-4;
        const double slope =
            (D::NonCentralCdfT(t + h, df, delta) - D::NonCentralCdfT(t - h, df, delta)) / (2 * h);
        EXPECT_NEAR(D::NonCentralPdfT(t, df, delta, status), slope, 1e-7);
      }
    }
    // Chi-square with noncentrality: the mean is df + ncp, so the cumulative
    // function falls as ncp grows.
    double prev = 1.0;
    for (double ncp : {0.0, 1.0, 10.0, 100.0, 1000.0}) {
      const double c = D::NonCentralCdfChi(df + 20.0, df, ncp);
      EXPECT_LT(c, prev);
      prev = c;
    }
  }
  // An alternating sum that cancels to slightly below 0 is returned as 0.
  long status;
  EXPECT_EQ(D::NonCentralPdfT(-8.0, 50.0, 6.0, status), 0.0);
  EXPECT_EQ(status, 0);
}

TEST(QXDistFunNoncentralTest, SearchesRecoverTheNoncentrality) {
  // Searched at probabilities well above the series' absolute bound of 1e-12.
  for (double ncp : {0.3, 4.0, 25.0, 150.0}) {
    const double df = 5.0, x = 0.8 * (df + ncp);
    const double p = D::NonCentralCdfChi(x, df, ncp);
    EXPECT_NEAR(D::FindNCParamChi(x, df, p, 1e-10), ncp, 1e-6 * (1 + ncp)) << ncp;
    const double f = 0.9 * (3.0 + ncp) / 3.0;
    const double pf = D::NonCentralCdfF(f, 3.0, 20.0, ncp, 1e-13);
    EXPECT_NEAR(D::FindNCParamF(f, 3.0, 20.0, pf, 1e-12), ncp, 1e-5 * (1 + ncp)) << ncp;
  }
  for (double delta : {-2.5, -0.3, 0.8, 3.0, 11.0}) {
    const double t = 2.2, df = 9.0;
    const double p = D::NonCentralCdfT(t, df, delta);
    EXPECT_NEAR(D::FindNCParamT(t, df, p, 1e-11), delta, 1e-6) << delta;
  }
  // The central value already at or below p: 0.
  EXPECT_EQ(D::FindNCParamChi(3.0, 4.0, D::CdfChi(3.0, 4.0), 1e-8), 0.0);
  EXPECT_EQ(D::FindNCParamChi(3.0, 4.0, 0.99, 1e-8), 0.0);
  EXPECT_EQ(D::FindNCParamF(1.0, 4.0, 6.0, 0.99, 1e-8), 0.0);
  EXPECT_EQ(D::FindNCParamT(1.5, 6.0, D::CdfT(1.5, 6.0), 1e-8), 0.0);
  // Refused arguments.
  EXPECT_TRUE(Miss(D::FindNCParamT(-1.0, 6.0, 0.5, 1e-8)));
  EXPECT_TRUE(Miss(D::FindNCParamT(1.0, 0.0, 0.5, 1e-8)));
  EXPECT_TRUE(Miss(D::FindNCParamChi(3.0, 0.0, 0.5, 1e-8)));
  EXPECT_TRUE(Miss(D::FindNCParamChi(3.0, 2.0, 1.5, 1e-8)));
  EXPECT_TRUE(Miss(D::FindNCParamChi(3.0, 2.0, 0.5, -1.0)));
  EXPECT_TRUE(Miss(D::FindNCParamF(1.0, 2.0, 0.0, 0.5, 1e-8)));
}

}  // namespace
}  // namespace QXMath_850
