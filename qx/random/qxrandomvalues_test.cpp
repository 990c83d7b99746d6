#include "qx/random/qxrandomvalues.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "qx/distributions/qxdistfun.h"
#include "qx/foundation/internal/testutil.h"
#include "qx/foundation/qxmissingvalue.h"
#include "qx/random/internal/testutil.h"

namespace QXMath_850 {
namespace {

using QXCommon_850::QXMV;

QXSymMatrix Matrix(int n, const std::vector<double>& packed) {
  QXSymMatrix m(n, true);
  m.AsVector() = packed;
  return m;
}

std::string Describe(const QXRandomValues& v) {
  return QXCommon_850::internal::CaptureDisplay([&] { v.Display(); });
}

// Sample means of `count` quantities over `draws` calls of `draw`, each held
// to its expectation within 4.5 standard errors (a false alarm about once in
// 150,000 per quantity).
void ExpectMeans(int draws, int count, const std::function<void(std::vector<double>&)>& draw,
                 const std::vector<double>& expected) {
  std::vector<double> sum(count, 0.0), squares(count, 0.0), values(count);
  for (int d = 0; d < draws; ++d) {
    draw(values);
    for (int k = 0; k < count; ++k) {
      sum[k] += values[k];
      squares[k] += values[k] * values[k];
    }
  }
  for (int k = 0; k < count; ++k) {
    const double mean = sum[k] / draws;
    const double se = std::sqrt((squares[k] / draws - mean * mean) / draws);
    EXPECT_NEAR(mean, expected[k], 4.5 * se) << "quantity " << k;
  }
}

TEST(QXRandomValuesTest, DrawsFromTheTwisterSeeded34567UntilGivenASource) {
  QXRandomValues v;
  QXURandom reference(34567, true, true, nullptr), expected(5, true, false, nullptr);
  EXPECT_EQ(Describe(v),
            "\nQXRandomValues display start\nCurrent seed = 34567\n"
            "Computational tolerance = 1e-12\n"
            "Standard uniform random number generator is defined\nDistribution type: Uniform\n"
            "Distribution is univariate\nDistribution is standard\nQXRandomValues display end");
  const double u = v.GetRandom();
  EXPECT_TRUE(u > 0.0 && u < 1.0);
  EXPECT_EQ(u, reference.GetRandom());
  auto* mine = new QXURandom(5, true, false, nullptr);
  QXURandom other(6, true, false, nullptr);
  EXPECT_FALSE(v.SetURNGPtr(nullptr));
  EXPECT_TRUE(v.SetURNGPtr(mine));
  EXPECT_TRUE(v.SetURNGPtr(&other));  // ignored
  EXPECT_EQ(v.GetRandom(), expected.GetRandom());
  // SetSeed deletes even the caller's source (here `mine`) and owns the new one.
  v.SetSeed(7);
  QXURandom twister(7, true, true, nullptr);
  EXPECT_EQ(v.GetSeed(), 7ul);
  EXPECT_EQ(v.GetRandom(), twister.GetRandom());
}

TEST(QXRandomValuesTest, SettersCheckTheirArgumentsAndARefusalKeepsTheDistribution) {
  QXRandomValues v;
  ASSERT_TRUE(v.SetParamGamma(2.0, 3.0));
  const std::string gamma = Describe(v);
  const QXSymMatrix identity3 = Matrix(3, {1, 0, 1, 0, 0, 1});
  const std::vector<double> none, two = {0.0, 1.0};
  const std::vector<std::function<bool()>> refused = {
      [&] { return v.SetTolerance(0.0); },
      [&] { return v.SetParamUniform(5.0, 5.0); },
      [&] { return v.SetParamUniform(0); },
      [&] { return v.SetParamUniform(none, none); },
      [&] { return v.SetParamUniform(two, two); },
      [&] { return v.SetParamNormal(0.0, 0.0); },
      [&] { return v.SetParamNormal(two, 1.0, identity3); },
      [&] { return v.SetParamChi(0.0); },
      [&] { return v.SetParamGamma(std::nan(""), 1.0); },
      [&] { return v.SetParamWishart(3, 2.5); },
      [&] { return v.SetParamWishart(2, 3.0, identity3); }};
  for (std::size_t i = 0; i < refused.size(); ++i) {
    EXPECT_FALSE(refused[i]()) << "call " << i;
    EXPECT_EQ(Describe(v), gamma) << "call " << i;
  }
  EXPECT_TRUE(v.SetParamNormal(0.0, 1.0) && !v.IsStandard());
  EXPECT_TRUE(v.SetParamUniform(1) && v.IsUnivariate() && v.IsStandard());
  EXPECT_EQ(v.RVUni(5.0, 5.0), 5.0);
  // One variate: univariate N(means[0], sigma2); the 1-by-1 matrix isn't used.
  QXRandomValues one, reference;
  EXPECT_TRUE(one.SetParamNormal({2.0}, 4.0, Matrix(1, {9.0})) && one.IsUnivariate());
  EXPECT_EQ(one.GetRandom(), 2.0 + 2.0 * reference.RVSNor());

  // A matrix that can't be factored: false, yet the distribution has switched.
  std::vector<double> out;
  QXSymMatrix w;
  EXPECT_FALSE(v.SetParamNormal(two, 1.0, Matrix(2, {0, 0, 0})));
  EXPECT_EQ(v.GetDistType(), QXRandomValues::Normal);
  EXPECT_FALSE(v.SetParamWishart(2, 4.0, Matrix(2, {-1, 0, -1})));
  EXPECT_EQ(v.GetDistType(), QXRandomValues::Wishart);
  EXPECT_TRUE(QXMV::IsMissing(v.GetRandom()));
  EXPECT_FALSE(v.GetRandom(out));
  // m = p: the chi-square has no degrees of freedom and the draw fails.
  EXPECT_TRUE(v.SetParamWishart(3, 3.0));
  EXPECT_FALSE(v.GetRandom(w));
  EXPECT_TRUE(v.SetParamChi(3.0));
  EXPECT_FALSE(v.GetRandom(out) || v.GetRandom(w));
}

// Each generator on the twister seeded with 2024, and once on the congruential
// source; multivariate draws are summed over their elements.
TEST(QXRandomValuesTest, GoldenSequences) {
  QXRandomValues uniform, normal, rv, chi, multi, multinormal, wishart, scaled, congruential;
  for (QXRandomValues* v :
       {&uniform, &normal, &rv, &chi, &multi, &multinormal, &wishart, &scaled, &congruential}) {
    v->SetSeed(2024);
  }
  ASSERT_TRUE(uniform.SetParamUniform(-2.0, 3.0) && normal.SetParamNormal(5.0, 4.0) &&
              chi.SetParamChi(4.0) && multi.SetParamUniform({0.0, 10.0}, {1.0, 20.0}) &&
              multinormal.SetParamNormal({1.0, 2.0}, 3.0, Matrix(2, {4, 2, 5})) &&
              wishart.SetParamWishart(3, 5.5) &&
              scaled.SetParamWishart(2, 4.5, Matrix(2, {4, 2, 5})) &&
              congruential.SetURNGPtr(new QXURandom(2024, true, false, nullptr)));
  std::vector<double> out;
  QXSymMatrix w;
  auto total = [](bool ok, const std::vector<double>& x) {
    double sum = ok ? 0.0 : std::nan("");
    for (double e : x)
      sum += e;
    return sum;
  };
  internal::ExpectGoldenSums(
      {{"uniform", [&] { return uniform.GetRandom(); }, 2000, 1024.5014250080567},
       {"normal", [&] { return normal.GetRandom(); }, 2000, 10097.83373737104},
       {"standard normal", [&] { return rv.RVSNor(); }, 2000, 48.916868685530588},
       {"gamma 0.4", [&] { return rv.RVGam(0.4, 2.0); }, 2000, 402.96221604139794},
       {"gamma 1", [&] { return rv.RVGam(1.0, 2.0); }, 2000, 997.55896244378118},
       {"gamma 3.5", [&] { return rv.RVGam(3.5, 2.0); }, 2000, 3525.8293238731039},
       {"exponential", [&] { return rv.RVExp(2.0); }, 2000, 1000.4390632759465},
       {"chi-square", [&] { return chi.GetRandom(); }, 2000, 7839.5033900707922},
       {"multivariate uniform", [&] { return total(multi.GetRandom(out), out); }, 1000,
        15491.777611043304},
       {"Wishart", [&] { return total(wishart.GetRandom(w), w.AsVector()); }, 500,
        5292.7677394451484},
       {"multivariate normal", [&] { return total(multinormal.GetRandom(out), out); }, 1000,
        3218.3832651825087},
       {"scaled Wishart", [&] { return total(scaled.GetRandom(w), w.AsVector()); }, 500,
        16033.747397447412},
       {"normal on the congruential source", [&] { return congruential.RVSNor(); }, 2000,
        17.279987257698128}});
  congruential.SetSeed(1);  // deletes the source given above
}

// Kolmogorov-Smirnov at a false-alarm rate of 0.001 per distribution, with
// the default twister at fixed seeds.
TEST(QXRandomValuesTest, UnivariateDrawsFollowTheirDistributions) {
  struct Case {
    std::function<bool(QXRandomValues&)> set;
    std::function<double(double)> cdf;
  };
  const std::vector<Case> cases = {{[](QXRandomValues& v) { return v.SetParamUniform(-1.0, 3.0); },
                                    [](double x) { return (x + 1.0) / 4.0; }},
                                   {[](QXRandomValues& v) { return v.SetParamNormal(5.0, 4.0); },
                                    [](double x) { return QXDistFun::CdfNorm(x, 5.0, 2.0); }},
                                   {[](QXRandomValues& v) { return v.SetParamChi(0.7); },
                                    [](double x) { return QXDistFun::CdfChi(x, 0.7); }},
                                   {[](QXRandomValues& v) { return v.SetParamChi(30.0); },
                                    [](double x) { return QXDistFun::CdfChi(x, 30.0); }},
                                   {[](QXRandomValues& v) { return v.SetParamGamma(0.3, 2.0); },
                                    [](double x) { return QXDistFun::CdfGam(x, 0.3, 2.0); }},
                                   {[](QXRandomValues& v) { return v.SetParamGamma(1.0, 0.5); },
                                    [](double x) { return QXDistFun::CdfGam(x, 1.0, 0.5); }},
                                   {[](QXRandomValues& v) { return v.SetParamGamma(4.5, 3.0); },
                                    [](double x) { return QXDistFun::CdfGam(x, 4.5, 3.0); }}};
  const int n = 20000;
  for (std::size_t c = 0; c < cases.size(); ++c) {
    QXRandomValues v;
    v.SetSeed(c + 1);
    ASSERT_TRUE(cases[c].set(v)) << c;
    std::vector<double> sample(n);
    for (double& x : sample)
      x = v.GetRandom();
    EXPECT_LT(internal::KSDistance(sample, cases[c].cdf), internal::KSCritical(n)) << c;
  }
}

TEST(QXRandomValuesTest, MultivariateDrawsHaveTheirExpectedMoments) {
  // Normal with covariance sigma2 * cov, the third variable being the sum of
  // the first two: cov is only semi-definite and its factor has a zero row.
  const std::vector<double> means = {1.0, -2.0, 0.5};
  const QXSymMatrix cov = Matrix(3, {4, 1, 2, 5, 3, 8});
  QXRandomValues v;
  v.SetSeed(31);
  ASSERT_TRUE(v.SetParamNormal(means, 0.25, cov));
  std::vector<double> x, expected = means;
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j <= i; ++j)
      expected.push_back(0.25 * cov.GetElem(i, j));
  }
  ExpectMeans(
      20000, 9,
      [&](std::vector<double>& out) {
        ASSERT_TRUE(v.GetRandom(x));
        out = x;
        for (int i = 0; i < 3; ++i) {
          for (int j = 0; j <= i; ++j)
            out.push_back((x[i] - means[i]) * (x[j] - means[j]));
        }
      },
      expected);
  EXPECT_NEAR(x[2] - means[2], (x[0] - means[0]) + (x[1] - means[1]), 1e-12);

  // Wishart: with the same m - p degrees of freedom on every diagonal the
  // mean is diag(m - p + i), and with scale S = C C^T it is C diag(...) C^T.
  QXSymMatrix w;
  auto draw = [&](std::vector<double>& out) {
    ASSERT_TRUE(v.GetRandom(w));
    out = w.AsVector();
  };
  ASSERT_TRUE(v.SetParamWishart(3, 7.5));
  ExpectMeans(20000, 6, draw, {4.5, 0.0, 5.5, 0.0, 0.0, 6.5});
  ASSERT_TRUE(v.SetParamWishart(2, 4.5, Matrix(2, {4, 2, 5})));  // C = (2 0; 1 2)
  ExpectMeans(20000, 3, draw, {4.0 * 2.5, 2.0 * 2.5, 2.5 + 4.0 * 3.5});
}

}  // namespace
}  // namespace QXMath_850
