#ifndef QX_RANDOM_INTERNAL_TESTUTIL_H
#define QX_RANDOM_INTERNAL_TESTUTIL_H

// Test support of the random-number tests; never installed.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <functional>
#include <vector>

#include <gtest/gtest.h>

#include "qx/random/qxrngenerator.h"
#include "qx/random/qxrngucongruential.h"

namespace QXMath_850 {
namespace internal {

// The Kolmogorov-Smirnov distance between a sample and a continuous
// distribution function.
template <class Cdf>
double KSDistance(std::vector<double> sample, Cdf cdf) {
  std::sort(sample.begin(), sample.end());
  const double n = static_cast<double>(sample.size());
  double d = 0.0;
  for (std::size_t i = 0; i < sample.size(); ++i) {
    const double f = cdf(sample[i]);
    d = std::max({d, f - i / n, (i + 1) / n - f});
  }
  return d;
}

// The distance a correct generator exceeds with probability 0.001 (the
// asymptotic Kolmogorov quantile 1.9495 over sqrt(n)): each KS check below
// raises a false alarm once in a thousand seeds.
inline double KSCritical(std::size_t n) {
  return 1.9495 / std::sqrt(static_cast<double>(n));
}

// A golden sequence: `count` draws of a generator from a fixed seed, summed in
// order, so that a change anywhere in the stream changes the sum.
struct Golden {
  const char* what;
  std::function<double()> draw;
  int count;
  double sum;
};

inline void ExpectGoldenSums(const std::vector<Golden>& cases) {
  for (const Golden& g : cases) {
    double sum = 0.0;
    for (int i = 0; i < g.count; ++i)
      sum += g.draw();
    char text[40];
    std::snprintf(text, sizeof text, "%.17g", sum);
    EXPECT_EQ(sum, g.sum) << g.what << ": " << text;
  }
}

// A congruential generator that counts its draws.
class CountingSource : public QXRNGenerator {
 public:
  void SetSeed(double seed) override { inner.SetSeed(seed); }
  double GetNext() override {
    ++draws;
    return inner.GetNext();
  }
  long draws = 0;

 private:
  QXRNGUCongruential inner;
};

// A source stuck at one value, as a congruential state of 0 is.
class StuckSource : public QXRNGenerator {
 public:
  explicit StuckSource(double v) : value(v) {}
  void SetSeed(double) override {}
  double GetNext() override { return value; }

 private:
  double value;
};

}  // namespace internal
}  // namespace QXMath_850

#endif  // QX_RANDOM_INTERNAL_TESTUTIL_H
