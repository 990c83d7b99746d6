#include "qx/distributions/lobattoquad.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <sstream>
#include <string>
#include <utility>

#include "qx/foundation/internal/testutil.h"
#include "qx/foundation/qxmissingvalue.h"

namespace QXMath_850 {
namespace {

using QXCommon_850::QXMV;

// An integrand from a lambda that counts its calls.
class Fn : public IIntegrand {
 public:
  explicit Fn(std::function<double(double)> f) : f(std::move(f)) {}
  double operator()(double x) override {
    calls++;
    return f(x);
  }
  std::function<double(double)> f;
  int calls = 0;
};

bool HasWarning(const LobattoQuad& q, long code) {
  for (const auto& s : q.GetWarnings().GetWarnings(true))
    if (s.GetErrorCode() == code && s.IsWarning()) return true;
  return false;
}

// A quadrature that integrates exactly what it is given, with no end
// adjustment and no range left out.
LobattoQuad Plain(IIntegrand* f, double tol) {
  LobattoQuad q(f);
  q.SetAdjustLeft(false);
  q.SetAdjustRight(false);
  q.SetCloseness(0.0);
  q.SetTolerance(tol);
  return q;
}

TEST(LobattoQuadTest, RuleIsExactForPolynomialsUpToDegreeSeven) {
  Fn p7([](double x) { return ((((((2 * x - 1) * x + 3) * x) * x - 5) * x + 1) * x - 4) * x + 7; });
  // Antiderivative of 2x^7 - x^6 + 3x^5 - 5x^3 + x^2 - 4x + 7.
  auto prim = [](double x) {
    return 2 * std::pow(x, 8) / 8 - std::pow(x, 7) / 7 + 3 * std::pow(x, 6) / 6 -
           5 * std::pow(x, 4) / 4 + std::pow(x, 3) / 3 - 2 * x * x + 7 * x;
  };
  LobattoQuad q = Plain(&p7, 1e-6);
  const double exact = prim(1.5) - prim(-0.75);
  EXPECT_NEAR(q.SumUp(-0.75, 1.5), exact, 1e-13 * std::fabs(exact));
  EXPECT_NEAR(q.Integrate(-0.75, 1.5), exact, 1e-13 * std::fabs(exact));
  EXPECT_EQ(q.GetNIterations(), 1);  // one rule and its halves agree at once

  // SumUp of an empty or reversed interval is 0 without a call.
  p7.calls = 0;
  EXPECT_EQ(q.SumUp(2.0, 2.0), 0.0);
  EXPECT_EQ(q.SumUp(3.0, 2.0), 0.0);
  EXPECT_EQ(p7.calls, 0);
  // A reversed range integrates to 0 without a warning.
  EXPECT_EQ(q.Integrate(1.0, -1.0), 0.0);
  EXPECT_TRUE(q.GetWarnings().GetWarnings(true).empty());
}

TEST(LobattoQuadTest, SmoothFunctionsReachTheTolerance) {
  Fn osc([](double x) { return std::exp(-x) * std::cos(5 * x); });
  const double exact = (1 - std::exp(-8.0) * (std::cos(40.0) - 5 * std::sin(40.0))) / 26;
  for (double tol : {1e-6, 1e-9, 1e-12}) {
    LobattoQuad q = Plain(&osc, tol);
    const double got = q.Integrate(0.0, 8.0);
    EXPECT_NEAR(got, exact, 20 * tol * std::fabs(exact)) << tol;
    EXPECT_GT(q.GetNIterations(), 1);
  }
  // Absolute convergence on a small integrand.
  Fn tiny([](double x) { return 1e-9 * std::sqrt(x); });
  LobattoQuad q = Plain(&tiny, 1e-16);
  q.SetAbsConvergence(true);
  EXPECT_NEAR(q.Integrate(0.0, 4.0), 1e-9 * 16.0 / 3, 1e-15);
}

TEST(LobattoQuadTest, EndAdjustmentTamesLongRanges) {
  Fn normal([](double x) { return std::exp(-0.5 * x * x); });
  LobattoQuad q(&normal);
  q.SetCloseness(0.0);
  q.SetTolerance(1e-10);
  q.SetBoundaryAdjustmentPivot(0.0);
  const double got = q.Integrate(-1e6, 1e6);
  EXPECT_NEAR(got, std::sqrt(2 * M_PI), 1e-9);
  EXPECT_TRUE(q.GetWarnings().GetWarnings(true).empty());
}

TEST(LobattoQuadTest, ClosenessLeavesTheRightEndOut) {
  // Splitting to the tolerance of a kinked function: the loop stops once at
  // most 10% of the range is left, and that part is missing from the sum.
  Fn kink([](double x) { return std::fabs(x - 0.95) + 1.0; });
  LobattoQuad q(&kink);
  q.SetAdjustLeft(false);
  q.SetAdjustRight(false);
  q.SetTolerance(1e-12);
  q.SetCloseness(0.1);
  const double got = q.Integrate(0.0, 1.0);
  const double exact = 1.0 + (0.95 * 0.95 + 0.05 * 0.05) / 2;
  EXPECT_LT(got, exact);
  EXPECT_GT(got, exact * 0.85);
  EXPECT_TRUE(q.GetWarnings().GetWarnings(true).empty());
}

TEST(LobattoQuadTest, WarningsForFailureAndIterationLimit) {
  // A missing value at the pivot fails, whatever the range.
  Fn holeAtOne([](double x) { return x == 1.0 ? QXMV::Missing() : x; });
  LobattoQuad q(&holeAtOne);
  EXPECT_TRUE(QXMV::IsMissing(q.Integrate(2.0, 3.0)));
  EXPECT_TRUE(HasWarning(q, 902));
  EXPECT_TRUE(QXMV::IsMissing(q.Integrate(5.0, 4.0)));

  // A missing value inside the range, without adjustment.
  Fn holeAtHalf([](double x) { return x == 0.5 ? QXMV::Missing() : 1.0; });
  LobattoQuad h = Plain(&holeAtHalf, 1e-6);
  EXPECT_TRUE(QXMV::IsMissing(h.Integrate(0.0, 1.0)));
  EXPECT_TRUE(HasWarning(h, 902));
  EXPECT_FALSE(HasWarning(h, 901));

  // maxIter 0: the first test stops, and the whole range is integrated once.
  Fn sq([](double x) { return x * x; });
  LobattoQuad m = Plain(&sq, 1e-6);
  m.SetMaxIter(0);
  EXPECT_NEAR(m.Integrate(0.0, 3.0), 9.0, 1e-14);
  EXPECT_EQ(m.GetNIterations(), 0);
  EXPECT_TRUE(HasWarning(m, 901));
  EXPECT_EQ(m.GetWarnings().GetWarnings(true).size(), 1u);
  // Warnings accumulate; the iteration count does not.
  m.SetMaxIter(10);
  EXPECT_NEAR(m.Integrate(0.0, 3.0), 9.0, 1e-14);
  EXPECT_EQ(m.GetNIterations(), 1);
  EXPECT_TRUE(HasWarning(m, 901));

  // No integrand: 0.
  LobattoQuad none(nullptr);
  EXPECT_EQ(none.Integrate(0.0, 1.0), 0.0);
}

TEST(LobattoQuadTest, BoundsListSplitsLeftToRight) {
  Fn id([](double x) { return x; });
  LobattoQuad q = Plain(&id, 1e-6);
  BoundsList list(&q);
  EXPECT_EQ(list.GetFirstLeft(), 0.0);
  double i0 = 1, i1 = 1;
  list.ComputeI0andI1(i0, i1);
  EXPECT_EQ(i0, 0.0);
  EXPECT_EQ(i1, 0.0);
  list.Initialize(2.0, 6.0);
  EXPECT_EQ(list.Split(), 2);
  EXPECT_EQ(list.Split(), 3);
  EXPECT_EQ(list.GetFirstLeft(), 2.0);
  list.ComputeI0andI1(i0, i1);  // on [2, 3]
  EXPECT_DOUBLE_EQ(i0, 2.5);
  EXPECT_DOUBLE_EQ(i1, 2.5);
  EXPECT_EQ(list.Remove(), 2);
  EXPECT_EQ(list.GetFirstLeft(), 3.0);
  std::ostringstream out;
  list.Display(out);
  const std::string text = out.str();
  EXPECT_EQ(text.find("\nBoundsList display start\nSize of the list = 2\nList index = 0"), 0u);
  EXPECT_NE(text.find("Left boundary = 4\nRight boundary = 6\nBoundsList display end"),
            std::string::npos);
  EXPECT_EQ(list.Remove(), 1);
  EXPECT_EQ(list.Remove(), 0);
  EXPECT_EQ(list.Remove(), 0);

  const std::string shown = QXCommon_850::internal::CaptureDisplay([&] { q.Display(); });
  EXPECT_NE(shown.find("LobattoQuad display start"), std::string::npos);
  EXPECT_NE(shown.find("Closeness ratio"), std::string::npos);
  EXPECT_NE(shown.find("LobattoQuad display end"), std::string::npos);
}

}  // namespace
}  // namespace QXMath_850
