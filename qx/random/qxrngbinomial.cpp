#include "qx/random/qxrngbinomial.h"

#include <cmath>

#include "qx/random/internal/sharedsource.h"
#include "qx/random/qxrngbeta.h"

namespace QXMath_850 {

namespace {

bool GoodPair(double n, double p) {
  return std::isfinite(n) && n >= 0.0 && n == std::floor(n) && p >= 0.0 && p <= 1.0;
}

}  // namespace

struct QXRNGBinomial::Impl {
  // The inner beta generator draws from the same source.
  internal::ChainedSource<QXRNGBeta> source{QXRNGBeta(1.0, 1.0)};
  double n = 0.0;
  double p = 0.0;

  void Set(double count, double prob) {
    const bool good = GoodPair(count, prob);
    n = good ? count : 0.0;
    p = good ? prob : 0.0;
  }
  double GetNext() { return GetNextImpl(n, p); }
  // Bernoulli trials one by one: the number of m uniforms not above q. A q
  // just above 1 can only come from rounding in the splitting (p = 1 at the
  // top of its window) and counts as 1.
  double SimpleMethod(int m, double q) {
    if (m < 1) return 0.0;
    if (q >= 1.0) return m;
    if (!(q > 0.0 && q < 1.0)) return 0.0;
    int k = 0;
    for (int i = 0; i < m; ++i) {
      if (q >= source.Next()) ++k;
    }
    return k;
  }
  double GetNextImpl(double count, double prob);
};

// Beta splitting: the median of an odd number m = 2i - 1 of uniforms on the
// current window is a Beta(i, i) draw; the trials below it or above it are
// uniform on their part of the window, and p falls in one of the two.
double QXRNGBinomial::Impl::GetNextImpl(double count, double prob) {
  source.Ensure();
  if (!(count > 0.0) || !(prob > 0.0)) return 0.0;
  double k = 0.0, lo = 0.0, width = 1.0, q = prob, m = count;
  while (m > 99.0) {
    if (std::fmod(m, 2.0) == 0.0) {
      m -= 1.0;
      if (source.Next() <= q) k += 1.0;
    }
    const double i = (m + 1.0) / 2.0;
    const double v = width * source.GetInner().GetNext(i, i);
    const double t = lo + v;
    if (prob < t) {
      q = (prob - lo) / v;
      width = v;
    } else {
      q = (prob - t) / (width - v);
      k += i;
      lo = t;
      width -= v;
    }
    m = i - 1.0;
  }
  return k + SimpleMethod(static_cast<int>(m), q);
}

QX_RANDOM_VARIATE_MEMBERS(QXRNGBinomial)

double QXRNGBinomial::GetNext(double n, double p) {
  if (!GoodPair(n, p)) return 0.0;
  return impl->GetNextImpl(n, p);
}

}  // namespace QXMath_850
