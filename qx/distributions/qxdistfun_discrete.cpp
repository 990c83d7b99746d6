// Binomial and hypergeometric functions of QXDistFun, the confidence interval
// of a median and the grouped percentile.
#include <algorithm>
#include <cmath>

#include "qx/distributions/internal/distfunbase.h"
#include "qx/distributions/qxdistfun.h"
#include "qx/distributions/qxpower.h"

namespace QXMath_850 {

namespace {

using internal::Fail;
using internal::kExpFloor;
using internal::Missing;

// 2^-52 (bits 0x3cb0000000000000): IdfBin accepts its normal estimate within
// 128 of these.
const double mEpsilon = 2.220446049250313e-16;
constexpr double kExpCeiling = 709.0;

bool IsWhole(double x) {
  return x == std::floor(x);
}

// The hypergeometric probability of j scaled by `scale`, as a product of
// ratios ordered so that the running value stays in range.
double ScaledHyperProduct(double j, double total, double a, double b, double scale) {
  const double r = a - j;
  double v = scale;
  double i1 = 1, i2 = 1, id = 1;
  while (i1 <= j || i2 <= r || id <= a) {
    const bool upsLeft = i1 <= j || i2 <= r;
    if ((v > 1.0 && id <= a) || !upsLeft) {
      v *= id / (total - a + id);
      id += 1;
    } else if (i1 <= j) {
      v *= (b - j + i1) / i1;
      i1 += 1;
    } else {
      v *= (total - b - r + i2) / i2;
      i2 += 1;
    }
  }
  return v;
}

double Interpolate(double t, double c0, double c1, double lower, double upper) {
  if (c1 == c0) return Missing();
  const double f = (t - c0) / (c1 - c0);
  if (f == 0.0) return lower;
  return (1.0 - f) * lower + f * upper;
}

}  // namespace

double QXDistFun::dnlbnc(const double& n, const double& k, long& status) {
  status = 0;
  if (!(n >= 0.0 && k >= 0.0 && n >= k)) return Fail(status, 1);
  if (k == 0.0 || k == n) return 0.0;
  if (n <= 33.0 && IsWhole(n) && IsWhole(k)) {
    const double m = std::min(k, n - k);
    double product = 1.0;
    for (double i = 0; i < m; i += 1)
      product *= (n - i) / (m - i);
    return std::log(product);
  }
  const double r = dnlgam(n + 1.0) - (dnlgam(k + 1.0) + dnlgam(n - k + 1.0));
  return r < 0.0 ? 0.0 : r;
}

double QXDistFun::PdfBin(double x, double n, double p, long& status) {
  status = 0;
  if (!(p >= 0.0 && p <= 1.0) || !(n >= 1.0)) return Fail(status, 1);
  if (!(x >= 0.0 && x <= n) || x != std::floor(x + 0.5)) return 0.0;
  if (p == 0.0) return x == 0.0 ? 1.0 : 0.0;
  if (p == 1.0) return x == n ? 1.0 : 0.0;
  if (x == n) return std::pow(p, n);
  if (x == 0.0) return std::pow(1.0 - p, n);
  long s;
  const double L = dnlbnc(n, x, s) + x * std::log(p) + (n - x) * std::log(1.0 - p);
  if (L > kExpCeiling) return Fail(status, 2);
  if (L < kExpFloor) return 0.0;
  return std::exp(L);
}

// Sums the probabilities outward from the mode (or from k below it), and
// falls back to the Peizer-Pratt normal approximation when the starting term
// underflows.
double QXDistFun::CdfBin(double x, double n, double p, long& status) {
  status = 0;
  if (!(n >= 1.0) || !(p >= 0.0 && p <= 1.0)) return Fail(status, 1);
  if (!IsWhole(n)) return Fail(status, 3);
  const double k = std::floor(x);
  const double q = 1.0 - p;
  if (p == 0.0) return k >= 0.0 ? 1.0 : 0.0;
  if (p == 1.0) return n > k ? 0.0 : 1.0;
  if (k < 0.0) return 0.0;
  if (k == 0.0) {
    const double L = n * std::log(q);
    return L < kExpFloor ? 0.0 : std::exp(L);
  }
  if (k >= n) return 1.0;

  const double m = std::floor(p * (n + 1.0));
  const double j = std::min(k, m);
  double L;
  if (j == 0.0) {
    L = n * std::log(q);
  } else if (j == n) {
    L = n * std::log(p);
  } else {
    const double C = dnlgam(n + 1.0) - dnlgam(j + 1.0) - dnlgam(n + 1.0 - j);
    L = p == 0.5 ? C + n * -0.6931471805599453 : C + j * std::log(p) + (n - j) * std::log(q);
  }
  if (L >= kExpFloor) {
    const double t0 = std::exp(L);
    double sum = t0, t = t0;
    for (double i = j - 1.0; i >= 0.0; i -= 1.0) {
      t *= ((i + 1.0) / (n - i)) * (q / p);
      const double next = sum + t;
      if (next == sum) break;
      sum = next;
    }
    if (k > m) {
      t = t0;
      for (double i = m + 1.0; i <= k; i += 1.0) {
        t *= ((n + 1.0 - i) / i) * (p / q);
        const double next = sum + t;
        if (next == sum) break;
        sum = next;
      }
    }
    return sum < 1.0 ? sum : 1.0;
  }

  // Peizer and Pratt (1968); the added and subtracted 1.0 round e.
  const double d = k / n - p;
  const double e = 0.5 / n + d + 1.0 - 1.0;
  if (e == 0.0) return 0.5;
  const double a = e + p, b = 1.0 - a;
  const double G = b * std::log(b / q) + a * std::log(a / p);
  if (!(G > 0.0)) return 0.5;
  const double c = (q / (k + 1.0) - p / (n - k) + (0.5 - p) / (n + 1.0)) / (n * 50.0);
  const double z = std::sqrt(2.0 * G) * ((d + (2.0 - p) / (3.0 * n) + c) / std::fabs(e)) *
                   (n / std::sqrt(n + 0.16666666666666666));
  return prbnrm(z);
}

double QXDistFun::IdfBin(double prob, double n, double p, long& status) {
  status = 0;
  if (!IsWhole(n)) return Fail(status, 1);
  if (!(n >= 1.0) || !(p >= 0.0 && p <= 1.0) || !(prob >= 0.0 && prob <= 1.0))
    return Fail(status, 2);
  if (prob == 0.0) return p >= 1.0 ? n - 1.0 : -1.0;
  if (prob == 1.0) return p > 0.0 ? n : 0.0;
  const double q = 1.0 - p;
  double k = std::floor(probit(prob) * std::sqrt(n * p * q) + n * p - 0.5);
  k = std::min(std::max(k, 0.0), n);
  long s;
  double c = CdfBin(k, n, p, s);
  if (std::fabs(c - prob) < 128.0 * mEpsilon) return k;
  double f = PdfBin(k, n, p, s);
  if (c > prob) {
    for (;;) {
      c -= f;
      if (!(c > prob) || !(k - 1.0 > 0.0)) return k - 1.0;
      f *= (q / p) * (k / (n - k + 1.0));
      k -= 1.0;
    }
  }
  for (;;) {
    f = ((n - k) / (k + 1.0)) * (f * (p / q));
    c += f;
    if (c > prob || k > n) return k;
    k += 1.0;
  }
}

double QXDistFun::PdfHyper(long x, long total, long a, long b) {
  if (!(a >= 1 && a <= total && b >= 1 && b <= total)) return Missing();
  if (x < std::max(a + b - total, 0L) || x > std::min(a, b)) return Missing();
  long s;
  const double L = dnlbnc(b, x, s) + dnlbnc(total - b, a - x, s) - dnlbnc(total, a, s);
  return L < QXPower::gMachineMinExp ? 0.0 : std::exp(L);
}

// After Lund (1980), AS 152: the shorter tail is summed by the recurrence of
// the probabilities from a starting term scaled by 1e35, so that terms far in
// the tail don't underflow; a normal approximation for large tables.
double QXDistFun::CDFHyper(double x, double total, double a, double b, int& status) {
  status = 0;
  if (!IsWhole(total) || !IsWhole(a) || !IsWhole(b) || !(std::min(a, b) >= 1.0) ||
      !(std::max(a, b) <= total)) {
    status = 1;
    return Missing();
  }
  const double k = std::floor(x);
  const double lo = std::max(a + b - total, 0.0), hi = std::min(a, b);
  if (k < lo) return 0.0;
  if (k >= hi) return 1.0;
  if (total > 10000.0 &&
      16.0 * std::max(b / (total - b), (total - b) / b) < std::min(a, total - a)) {
    const double mean = (a / total) * b;
    const double sd = std::sqrt(((total - b) / total) * mean * ((total - a) / (total - 1.0)));
    return prbnrm((k - mean + 0.5) / sd);
  }

  const double scale = 1e35;
  // The lower tail holds k - lo + 1 terms, the upper tail hi - k.
  const bool lower = k - lo + 1.0 <= hi - k;
  const double j0 = lower ? k : k + 1.0;
  double first = 0.0;
  if (total < 1001.0) first = ScaledHyperProduct(j0, total, a, b, scale);
  if (!(first > 0.0)) {
    long s;
    const double L =
        dnlbnc(b, j0, s) + dnlbnc(total - b, a - j0, s) - dnlbnc(total, a, s) + 80.5904782547916;
    if (L < -kExpCeiling) return k < a * b / total ? 0.0 : 1.0;
    first = std::exp(L);
  }
  const double rest = total - a - b;
  double sum = 0.0, t = first;
  if (lower) {
    for (double i = j0; i > lo; i -= 1.0) {
      t *= i * (rest + i) / ((a - i + 1.0) * (b - i + 1.0));
      if (!(t > 0.0)) break;
      sum += t;
    }
    return std::min((sum + first) / scale, 1.0);
  }
  for (double i = j0; i < hi; i += 1.0) {
    t *= (a - i) * (b - i) / ((i + 1.0) * (rest + i + 1.0));
    if (!(t > 0.0)) break;
    sum += t;
  }
  return std::max(1.0 - (sum + first) / scale, 0.0);
}

void QXDistFun::Mednci(long n, const std::vector<double>& values, const std::vector<double>& freqs,
                       double total, double conf, bool coverage, double& low, double& high,
                       double& level) {
  low = high = level = Missing();
  if (n < 1 || values.size() < static_cast<size_t>(n) || freqs.size() < static_cast<size_t>(n)) {
    return;
  }
  if (total == 2.0) {
    low = values[0];
    high = values[n - 1];
    level = 100.0;
    return;
  }
  if (!(total >= 2.0)) return;
  long status;
  const double k = IdfBin(conf / -200.0 + 0.5, total, 0.5, status);
  if (status != 0) return;
  if (k < 0.0) {
    low = values[0];
    high = values[n - 1];
    level = 100.0;
    return;
  }
  // The lower bound is the value of rank k + 1, the upper one of rank total - k.
  double r = k + 1.0;
  if (r < total) {
    low = values[n - 1];
    double cum = 0.0;
    for (long i = 0; i < n - 1; i++) {
      cum += freqs[i];
      if (cum >= r) {
        low = values[i];
        break;
      }
    }
  } else {
    r = total;
    low = values[n - 1];
  }
  double h = total - k;
  if (!(h > 1.0)) {
    h = 1.0;
    high = values[0];
  } else {
    double running = total;
    high = values[0];
    for (long i = n - 1; i >= 0; i--) {
      running -= freqs[i];
      if (h > running) {
        high = values[i];
        break;
      }
    }
  }
  if (coverage) {
    const double c = cdfbet(0.5, r, h, status);
    if (status == 0) level = std::max((c - 0.5) * 200.0, 0.0);
  }
}

void QXDistFun::GPTile(long n, double pct, const std::vector<double>& values,
                       const std::vector<double>& freqs, const std::vector<double>& cuts,
                       long nCuts, double& result, long& flag) {
  result = Missing();
  flag = -1;
  if (n < 2 || values.size() < static_cast<size_t>(n) || freqs.size() < static_cast<size_t>(n) ||
      nCuts < 0 || cuts.size() < static_cast<size_t>(nCuts)) {
    return;
  }
  flag = 0;
  double total = 0.0;
  for (long i = 0; i < n; i++)
    total += freqs[i];
  const double t = total * pct / 100.0;

  if (nCuts == 1) {
    // Groups of equal width centred on the values; an empty group never
    // holds the target.
    const double w = cuts[0];
    double c0 = 0.0;
    for (long i = 0; i < n; i++) {
      const double c1 = c0 + freqs[i];
      if (c0 <= t && t < c1) {
        result = Interpolate(t, c0, c1, values[i] - w / 2.0, values[i] + w / 2.0);
        return;
      }
      c0 = c1;
    }
    if (t == c0) result = values[n - 1] + w / 2.0;
    return;
  }

  if (nCuts > 1) {
    // Bounds: the cuts, then the first value above the last cut reflected
    // in that cut. Counts below a bound count the values below it.
    std::vector<double> bounds(cuts.begin(), cuts.begin() + nCuts);
    const double lastCut = cuts[nCuts - 1];
    for (long i = 0; i < n; i++) {
      if (values[i] > lastCut) {
        bounds.push_back(values[i] + (values[i] - lastCut));
        break;
      }
    }
    std::vector<double> counts(bounds.size(), 0.0);
    for (size_t j = 0; j < static_cast<size_t>(nCuts); j++)
      for (long i = 0; i < n; i++)
        if (values[i] < bounds[j]) counts[j] += freqs[i];
    if (bounds.size() > static_cast<size_t>(nCuts)) counts.back() = total;
    for (size_t j = 0; j + 1 < bounds.size(); j++) {
      if (counts[j] <= t && t < counts[j + 1]) {
        result = Interpolate(t, counts[j], counts[j + 1], bounds[j], bounds[j + 1]);
        return;
      }
    }
    if (t == counts.back()) result = bounds.back();
    return;
  }

  // No groups: each value is a group centre at half its frequency.
  std::vector<double> mids(n);
  double cum = 0.0;
  for (long i = 0; i < n; i++) {
    mids[i] = cum + freqs[i] / 2.0;
    cum += freqs[i];
  }
  if (t < mids[0]) {
    flag = 1;
    return;
  }
  if (t > mids[n - 1]) {
    flag = 2;
    return;
  }
  for (long i = 0; i + 1 < n; i++) {
    if (mids[i] <= t && t < mids[i + 1]) {
      result = Interpolate(t, mids[i], mids[i + 1], values[i], values[i + 1]);
      return;
    }
  }
  result = values[n - 1];  // t at the last centre
}

}  // namespace QXMath_850
