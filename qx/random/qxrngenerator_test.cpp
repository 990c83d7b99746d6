// The QXRNGenerator family: the two uniform generators and the normal, beta
// and binomial generators that draw through them.
#include "qx/random/qxrngenerator.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "qx/distributions/qxdistfun.h"
#include "qx/random/internal/testutil.h"
#include "qx/random/qxrandomtwister.h"
#include "qx/random/qxrngbeta.h"
#include "qx/random/qxrngbinomial.h"
#include "qx/random/qxrngnormal.h"
#include "qx/random/qxrngucongruential.h"
#include "qx/random/qxrngutwister.h"

namespace QXMath_850 {
namespace {

using internal::CountingSource;

double Res53(std::mt19937& g) {
  const double a = g() >> 5, b = g() >> 6;
  return (a * 67108864.0 + b) / 9007199254740992.0;
}

TEST(QXRNGUTwisterTest, WholeSeedsAreInitGenrandAndOtherDoublesAreKeys) {
  std::mt19937 reference, defaultSeed;  // init_genrand(5489)
  QXRNGUTwister::Data data;
  init_genrand(5489, data);
  for (int i = 0; i < 1000; ++i)
    ASSERT_EQ(genrand_int32(data), reference());
  QXRNGUTwister unseeded, whole;
  for (int i = 0; i < 700; ++i)
    ASSERT_EQ(unseeded.GetNext(), Res53(defaultSeed));
  whole.SetSeed(2147483647.0);
  std::mt19937 largest(2147483647u);
  EXPECT_EQ(whole.GetNext(), Res53(largest));
  // 1.5 = 0.75 * 2^1 and -1.0 = -0.5 * 2^1 give the keys
  // {z + 2(neg + 2(big + 2e)), top 26 bits of the fraction, next 27 bits}.
  const std::vector<std::pair<double, std::vector<unsigned long>>> keyed = {
      {1.5, {12, 50331648, 0}}, {-1.0, {14, 33554432, 0}}};
  for (const auto& k : keyed) {
    QXRNGUTwister g;
    g.SetSeed(k.first);
    QXRandomTwister expected;
    expected.InitByArray(k.second.data(), 3);
    for (int i = 0; i < 5; ++i)
      EXPECT_EQ(g.GetNext(), expected.GetRealRes53()) << k.first;
  }
  // Odd seeds give streams of their own; a copy continues the sequence.
  std::vector<double> firsts;
  for (double seed : {1.0, 0.5, 2147483648.0, 1e-300, std::nan(""), HUGE_VAL}) {
    QXRNGUTwister g;
    g.SetSeed(seed);
    firsts.push_back(g.GetNext());
    for (std::size_t j = 0; j + 1 < firsts.size(); ++j)
      EXPECT_NE(firsts.back(), firsts[j]) << seed;
  }
  QXRNGUTwister copy(unseeded);
  for (int i = 0; i < 700; ++i)
    ASSERT_EQ(copy.GetNext(), unseeded.GetNext());
}

TEST(QXRNGVariatesTest, ParameterRules) {
  QXRNGNormal standard, negative(5.0, -1.0);
  standard.SetSeed(11);
  negative.SetSeed(11);
  EXPECT_EQ(negative.GetNext(), standard.GetNext());
  EXPECT_EQ(negative.GetNext(3.0, -2.0), standard.GetNext());

  // A bad beta pair becomes (1, 1), whose draw is the uniform itself.
  QXRNGBeta beta(-1.0, 3.0);
  QXRNGUCongruential uniform;
  beta.SetSeed(5);
  uniform.SetSeed(5);
  EXPECT_EQ(beta.GetNext(), uniform.GetNext());
  EXPECT_EQ(beta.GetNext(0.0, 2.0), -1.0);
  EXPECT_EQ(beta.GetNext(std::nan(""), 2.0), -1.0);

  QXRNGBinomial binomial(10.0, 1.5);
  EXPECT_EQ(binomial.GetNext() + binomial.GetNext(10.5, 0.5) + binomial.GetNext(HUGE_VAL, 0.5),
            0.0);
  EXPECT_EQ(binomial.GetNext(1000.0, 1.0), 1000.0);
}

TEST(QXRNGVariatesTest, OneSourceFeedsTheWholeChainAndCopiesFollowIt) {
  // n = 99 is all Bernoulli trials; n = 100 splits once: one trial peeled
  // off, one Beta(50, 50) draw, then 49 trials.
  CountingSource plain, split, betaOnly;
  QXRNGBinomial binomial(99.0, 0.3);
  binomial.SetURNGenerator(plain);
  binomial.GetNext();
  EXPECT_EQ(plain.draws, 99);
  binomial.SetURNGenerator(split);
  binomial.SetSeed(17);
  binomial.GetNext(100.0, 0.3);
  QXRNGBeta beta;
  beta.SetURNGenerator(betaOnly);
  betaOnly.SetSeed(17);
  betaOnly.GetNext();
  beta.GetNext(50.0, 50.0);
  EXPECT_EQ(split.draws, 1 + (betaOnly.draws - 1) + 49);

  // An owned source is duplicated with its state, and the copy's inner
  // generators draw from the copy's own source.
  QXRNGBinomial original(500.0, 0.4);
  original.SetSeed(3);
  original.GetNext();
  QXRNGBinomial copy(original), twin(original);
  for (int i = 0; i < 5; ++i)
    copy.GetNext();
  for (int i = 0; i < 20; ++i)
    ASSERT_EQ(twin.GetNext(), original.GetNext());

  // A caller's source stays shared by copies: they take turns on one stream.
  QXRNGUCongruential shared, alone;
  shared.SetSeed(8);
  alone.SetSeed(8);
  QXRNGNormal first, reference;
  first.SetURNGenerator(shared);
  reference.SetURNGenerator(alone);
  QXRNGNormal second(first);
  for (int i = 0; i < 10; ++i) {
    EXPECT_EQ(first.GetNext(), reference.GetNext());
    EXPECT_EQ(second.GetNext(), reference.GetNext());
  }
  second.SetSeed(8);  // seeds the shared generator
  alone.SetSeed(8);
  EXPECT_EQ(first.GetNext(), reference.GetNext());
}

TEST(QXRNGVariatesTest, GoldenSequences) {
  QXRNGNormal normal(1.0, 2.0);
  QXRNGBeta envelope(2.5, 4.0), inverseA(1.0, 3.0), inverseB(3.0, 1.0), johnk(0.5, 0.5);
  QXRNGBinomial small(20.0, 0.3), split(1000.0, 0.3), large(1e9, 0.3);
  for (QXRNGenerator* g : std::vector<QXRNGenerator*>{&normal, &envelope, &inverseA, &inverseB,
                                                      &johnk, &small, &split, &large}) {
    g->SetSeed(12345);
  }
  internal::ExpectGoldenSums(
      {{"normal", [&] { return normal.GetNext(); }, 2000, 1951.5363525064149},
       {"beta envelope", [&] { return envelope.GetNext(); }, 2000, 764.67368007350319},
       {"beta a = 1", [&] { return inverseA.GetNext(); }, 2000, 493.50117684333247},
       {"beta b = 1", [&] { return inverseB.GetNext(); }, 2000, 1506.4988231566685},
       {"beta Johnk", [&] { return johnk.GetNext(); }, 2000, 1004.0287404619005},
       {"binomial 20", [&] { return small.GetNext(); }, 2000, 11704},
       {"binomial 1000", [&] { return split.GetNext(); }, 200, 59615},
       {"binomial 1e9", [&] { return large.GetNext(); }, 20, 5999930371}});
}

// Kolmogorov-Smirnov at a false-alarm rate of 0.001 per distribution, on
// draws from the congruential source at fixed seeds.
TEST(QXRNGVariatesTest, DrawsFollowTheirDistributions) {
  const int n = 10000;
  std::vector<double> sample(n);
  // The normal envelope, both inversions and Johnk's method.
  QXRNGBeta beta;
  beta.SetSeed(202);
  for (const auto& ab : std::vector<std::pair<double, double>>{
           {2.5, 4.0}, {40.0, 7.0}, {1.0, 3.0}, {3.0, 1.0}, {0.5, 0.5}, {0.3, 2.0}}) {
    for (double& x : sample)
      x = beta.GetNext(ab.first, ab.second);
    const double d = internal::KSDistance(
        sample, [&](double x) { return QXDistFun::CdfBeta(x, ab.first, ab.second); });
    EXPECT_LT(d, internal::KSCritical(n)) << ab.first << " " << ab.second;
  }
  // Binomial: chi-square over cells of expected count 5 or more, tails
  // pooled, against its 0.999 quantile.
  QXRNGBinomial binomial;
  binomial.SetSeed(303);
  for (const auto& np : std::vector<std::pair<double, double>>{{1000.0, 0.3}}) {
    std::vector<double> counts(static_cast<std::size_t>(np.first) + 1, 0.0);
    for (int i = 0; i < n; ++i)
      counts[static_cast<std::size_t>(binomial.GetNext(np.first, np.second))] += 1.0;
    double chi2 = 0.0, observed = 0.0, expected = 0.0, total = 0.0;
    int cells = 0;
    for (std::size_t k = 0; k < counts.size(); ++k) {
      long status = 0;
      const double e = n * QXDistFun::PdfBin(static_cast<double>(k), np.first, np.second, status);
      observed += counts[k];
      expected += e;
      total += e;
      if (expected >= 5.0 && (n - total >= 5.0 || k + 1 == counts.size())) {
        chi2 += (observed - expected) * (observed - expected) / expected;
        observed = expected = 0.0;
        ++cells;
      }
    }
    EXPECT_LT(chi2, QXDistFun::IdfChi(0.999, cells - 1)) << np.first;
  }
}

TEST(QXRNGVariatesTest, ADegenerateSourceCannotHangADraw) {
  internal::StuckSource zeros(0.0);
  QXRNGBeta beta;
  beta.SetURNGenerator(zeros);
  for (const auto& ab : std::vector<std::pair<double, double>>{{3.0, 4.0}, {0.5, 0.5}})
    EXPECT_FALSE(std::isnan(beta.GetNext(ab.first, ab.second)));
  QXRNGBinomial binomial(1000.0, 0.3);
  binomial.SetURNGenerator(zeros);
  EXPECT_FALSE(std::isnan(binomial.GetNext()));
}

}  // namespace
}  // namespace QXMath_850
