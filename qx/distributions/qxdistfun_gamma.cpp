// The gamma family of QXDistFun: log gamma, the incomplete gamma function,
// the chi-square, gamma and exponential distributions and their quantiles.
#include <algorithm>
#include <cmath>

#include "qx/distributions/internal/distfunbase.h"
#include "qx/distributions/internal/specialfuntables.h"
#include "qx/distributions/qxdistfun.h"
#include "qx/distributions/qxpower.h"

namespace QXMath_850 {

namespace {

using internal::Fail;
using internal::Horner;
using internal::IsMissing;
using internal::kExpFloor;
using internal::kLn2;
using internal::kLnSqrtPi;
using internal::Missing;
using internal::ValueOrMissing;

}  // namespace

// Stirling's series from 8 up; below, one polynomial per interval. Between
// 0.5 and 3.5 the variable s = x - 4.5/(x+0.5) moves the pole at 0 away, and
// the factor (x-1)(x-2) carries the zeros at 1 and 2.
double QXDistFun::dnlgam(const double& x) {
  if (x >= 8.0) {
    const double w = 1.0 / (x * x);
    double s = -0.0016331235920050082;
    s = s * w + 0.0008364453370338596;
    s = s * w - 0.0005951894757572819;
    s = s * w + 0.0007936505750541542;
    s = s * w - 0.0027777777773546303;
    s = s * w + 0.08333333333333309;
    return s / x + 0.9189385332046728 + ((x - 0.5) * std::log(x) - x);
  }
  if (x >= 3.5) {
    const int i = static_cast<int>(std::floor(x)) - 3;
    return Horner(internal::kLogGammaC[i], x - (i + 3.5));
  }
  if (x == 1.0 || x == 2.0) return 0.0;
  if (x > 0.5) {
    const double t = -4.5 / (x + 0.5);
    const double v = t + x + 4.0;
    const int i = std::min(std::max(static_cast<int>(std::floor(v)), 0), 6);
    const double u = t + x - (i - 3.5);
    return (x - 1.0) * (x - 2.0) * Horner(internal::kLogGammaB[i], u);
  }
  if (x == 0.5) return kLnSqrtPi;
  if (x < 0.5) {
    // w = 1/Gamma(x). The polynomial also stays positive a little below 0,
    // where w turns negative; further down it need not, hence the test of x.
    const double w = Horner(internal::kLogGammaA[x < 0.25 ? 0 : 1], x) * x;
    if (!(w > 0.0) || !(x > 0.0)) return Missing();
    return -std::log(w);
  }
  return Missing();  // NaN
}

double QXDistFun::kvatdnlgam(const double& x) {
  return dnlgam(x);
}

// Shea (1988), AS 239: series, Legendre's continued fraction, and the
// Peizer-Pratt or Wilson-Hilferty normal approximations where neither is safe.
double QXDistFun::gammad(const double& x, const double& a, const bool& lower, long& status) {
  status = 0;
  if (!(a > 0.0)) return Fail(status, 1);
  if (!(x > 0.0)) return lower ? 0.0 : 1.0;
  if (a == 1.0) {
    const double e = -x < kExpFloor ? 0.0 : std::exp(-x);
    return lower ? 1.0 - e : e;
  }

  enum { kSeries, kFraction, kNormal } method = kNormal;
  double c = 0.0;
  if (x > 1.0 && a < x) {
    const double g = dnlgam(a);
    if (!IsMissing(g) && !(std::log(x) * 4.0 >= 709.0)) {
      method = kFraction;
      c = a * std::log(x) - (g + x);
    }
  } else {
    const double r = std::log10(x / (a + 1.0));
    bool normal = r == 0.0;
    if (!normal) {
      const double s = -14.0 / r;
      if (s > 0.0) {
        const double n = 2.0 * std::sqrt(s) + 10.0;
        normal = n * n >= 2147483647.0;
      }
    }
    if (!normal) {
      const double g = dnlgam(a + 1.0);
      if (!IsMissing(g)) {
        method = kSeries;
        c = a * std::log(x) - (g + x);
      }
    }
  }

  if (method == kSeries) {
    double t = 1.0, sum = 1.0, b = a;
    do {
      b += 1.0;
      t = t * x / b;
      sum += t;
    } while (t >= 1e-14);
    const double L = std::log(sum) + c;
    if (!(L > 0.0)) {
      if (L < kExpFloor) return lower ? 0.0 : 1.0;
      const double e = std::exp(L);
      return lower ? e : 1.0 - e;
    }
  } else if (method == kFraction) {
    double u = 1.0 - a, v = u + x + 1.0, m = 0.0;
    double p1 = 1.0, q1 = x, p2 = x + 1.0, q2 = v * x;
    double r = p2 / q2;
    for (;;) {
      u += 1.0;
      v += 2.0;
      m += 1.0;
      const double k = u * m;
      const double p3 = v * p2 - k * p1;
      const double q3 = v * q2 - k * q1;
      if (std::fabs(q3) > 0.0) {
        const double rn = p3 / q3;
        if (std::fabs(r - rn) <= std::min(1e-14, 1e-14 * rn)) break;
        r = rn;
      }
      if (std::isnan(q3)) break;
      p1 = p2;
      p2 = p3;
      q1 = q2;
      q2 = q3;
      if (std::fabs(p3) >= 1.34e154) {
        p1 /= 1.34e154;
        p2 /= 1.34e154;
        q1 /= 1.34e154;
        q2 /= 1.34e154;
      }
    }
    const double L = std::log(r) + c;
    if (!(L > 0.0)) {
      if (L < kExpFloor) return lower ? 1.0 : 0.0;
      const double e = std::exp(L);
      return lower ? 1.0 - e : e;
    }
  }

  // Normal approximations: Peizer-Pratt for the upper tail with a >= 0.5,
  // Wilson-Hilferty otherwise.
  if (!lower && a >= 0.5) {
    const double y = (a - 0.5) / x;
    double s;
    if (y == 0.0) {
      s = std::sqrt(2.0 / x);
    } else if (y == 1.0) {
      s = std::sqrt(1.0 / x);
    } else {
      s = std::sqrt(2.0 * (y * std::log(y) + 1.0 - y) / x) / std::fabs(1.0 - y);
    }
    return prbnrm((a + 0.022 / a - x - 0.3333333333333333) * s);
  }
  const double h = 3.0 * std::sqrt(a);
  double z;
  if (x == a) {
    z = 1.0 / h;
  } else {
    const double L = std::log(x / a) / 3.0;
    const double e = L < kExpFloor ? 0.0 : std::exp(L);
    z = (1.0 / (9.0 * a) + e - 1.0) * h;
  }
  if (!lower) z = -z;
  return prbnrm(z);
}

double QXDistFun::cdfexp(const double& x, const double& rate, long& status) {
  status = 0;
  if (!(rate > 0.0)) return Fail(status, 1);
  if (!(x > 0.0)) return 0.0;
  double v;
  QXPower::Exponent(x * -rate, v);
  return 1.0 - v;
}

// Best and Roberts (1975), AS 91, with its single-precision constants widened
// to double; bisection (idfchb) when its refinement fails.
double QXDistFun::kvatidfchi(const double& p, const double& df, long& status) {
  status = 0;
  if (!(p >= 0.0 && p < 1.0) || !(df > 0.0)) return Fail(status, 1);
  if (p == 0.0) return 0.0;
  const double xx = df / 2.0;
  const double g = dnlgam(xx);
  const double c = xx - 1.0;

  double ch;
  bool refine = true;
  if (-1.2400000095367432 * std::log(p) > df) {
    // Small chi-square: the leading term of the lower tail, inverted.
    const double L = (std::log(p) + std::log(xx) + g + xx * kLn2) / xx;
    if (L < kExpFloor) return 0.0;
    if (L > 141.8) return Fail(status, 2);
    ch = std::exp(L);
    if (ch < 5e-7) return ch;
  } else if (df <= 0.3199999928474426) {
    ch = 0.4000000059604645;
    const double a = std::log(1.0 - p);
    double q;
    do {
      q = ch;
      const double p1 = 1.0 + ch * (4.670000076293945 + ch);
      const double p2 = ch * (6.659999847412109 + ch * (6.730000019073486 + ch));
      const double t = -0.5 + (4.670000076293945 + 2.0 * ch) / p1 -
                       (6.659999847412109 + ch * (13.319999694824219 + 3.0 * ch)) / p2;
      const double L = g + a + 0.5 * ch + c * kLn2 + std::log(p2) - std::log(p1);
      if (L > 141.8) return Fail(status, 2);
      const double e = L < kExpFloor ? 0.0 : std::exp(L);
      ch = ch - (1.0 - e) / t;
    } while (std::fabs(q / ch - 1.0) > 0.009999999776482582);
  } else {
    // Wilson and Hilferty, with the correction for p near 1.
    const double x = probit(p);
    if (IsMissing(x)) return Fail(status, 2);
    const double p1 = 0.2222220003604889 / df;
    const double w = x * std::sqrt(p1) + 1.0 - p1;
    if (w == 0.0) {
      ch = 0.0;
    } else {
      const double L = 3.0 * std::log(std::fabs(w)) + std::log(df);
      if (L > 141.8) return Fail(status, 2);
      ch = L < kExpFloor ? 0.0 : std::exp(L);
      if (w < 0.0) ch = -ch;
    }
    if (ch > 2.200000047683716 * df + 6.0) {
      ch = -2.0 * (std::log(1.0 - p) - c * std::log(ch / 2.0) + g);
    }
  }

  const double ch0 = ch;
  if (!(ch > 0.0)) refine = false;
  for (int round = 0; refine && round < 20; round++) {
    const double q = ch;
    const double p1 = ch / 2.0;
    long gstatus;
    const double p2 = p - gammad(p1, xx, true, gstatus);
    if (gstatus > 0) break;
    const double L = xx * kLn2 + g + p1 - c * std::log(ch);
    if (L > 141.8) break;
    const double t = L < kExpFloor ? 0.0 : p2 * std::exp(L);
    const double b = t / ch;
    const double a = 0.5 * t - b * c;
    const double s1 =
        (210.0 + a * (140.0 + a * (105.0 + a * (84.0 + a * (70.0 + 60.0 * a))))) / 420.0;
    const double s2 = (420.0 + a * (735.0 + a * (966.0 + a * (1141.0 + 1278.0 * a)))) / 2520.0;
    const double s3 = (210.0 + a * (462.0 + a * (707.0 + 932.0 * a))) / 2520.0;
    const double s4 =
        (252.0 + a * (672.0 + 1182.0 * a) + c * (294.0 + a * (889.0 + 1740.0 * a))) / 5040.0;
    const double s5 = (84.0 + 264.0 * a + c * (175.0 + 606.0 * a)) / 2520.0;
    const double s6 = (120.0 + c * (346.0 + 127.0 * c)) / 5040.0;
    ch = ch + t * (1.0 + 0.5 * t * s1 -
                   b * c * (s1 - b * (s2 - b * (s3 - b * (s4 - b * (s5 - b * s6))))));
    if (!(ch > 0.0)) break;
    if (5e-7 * ch >= std::fabs(q - ch)) return ch;
  }
  return idfchb(p, df, ch0, status);
}

// Bisection on half the chi-square, from the bracket [x0/4, x0], widened once.
double QXDistFun::idfchb(const double& p, const double& df, const double& x0, long& status) {
  status = 0;
  if (!(x0 > 0.0)) return Fail(status, 1);
  const double shape = df / 2.0;
  double lo = x0 / 4.0, hi = x0;
  long s1, s2;
  const double plo = gammad(lo, shape, true, s1);
  double phi = gammad(hi, shape, true, s2);
  if (s1 > 0 || s2 > 0 || p < plo) return Fail(status, 2);
  if (phi < p) {
    hi = 2.0 * hi;
    phi = gammad(hi, shape, true, s2);
    if (s2 > 0 || phi < p) return Fail(status, 2);
  }
  double mid = (lo + hi) / 2.0;
  for (int round = 0; round < 40; round++) {
    mid = (lo + hi) / 2.0;
    const double width = hi - lo;
    if (width <= 1e-8 * mid) break;
    const double pm = gammad(mid, shape, true, s1);
    if (s1 > 0) return Fail(status, 2);
    if (pm > p) {
      hi = mid;
    } else {
      lo = mid;
    }
  }
  return 2.0 * mid;
}

double QXDistFun::CdfChi(double x, double df) {
  if (!(df > 0.0)) return Missing();
  if (!(x > 0.0)) return 0.0;
  return ValueOrMissing([&](long& s) { return gammad(x / 2.0, df / 2.0, true, s); });
}

double QXDistFun::SigChi(double x, double df) {
  if (!(df > 0.0)) return Missing();
  if (!(x > 0.0)) return 1.0;
  return ValueOrMissing([&](long& s) { return gammad(x / 2.0, df / 2.0, false, s); });
}

double QXDistFun::IdfChi(double p, double df) {
  return ValueOrMissing([&](long& s) { return kvatidfchi(p, df, s); });
}

double QXDistFun::CdfGam(double x, double shape, double rate) {
  if (!(shape > 0.0) || !(rate > 0.0)) return Missing();
  if (!(x > 0.0)) return 0.0;
  return ValueOrMissing([&](long& s) {
    return shape == 1.0 ? cdfexp(x, rate, s) : gammad(x * rate, shape, true, s);
  });
}

double QXDistFun::IdfGam(const double& p, const double& shape, const double& rate) {
  if (!(p >= 0.0 && p < 1.0) || !(shape >= 0.0) || !(rate > 0.0)) return Missing();
  if (p == 0.0) return 0.0;
  long status;
  const double c = kvatidfchi(p, 2.0 * shape, status);
  return status == 0 ? c * 0.5 / rate : c;
}

double QXDistFun::PdfGamma(double x, double shape, double rate) {
  if (!(shape > 0.0) || !(rate > 0.0)) return Missing();
  if (x > 0.0) {
    const double t = x * rate;
    const double L = shape == 1.0
                         ? std::log(rate) - t
                         : std::log(rate) + (shape - 1.0) * std::log(t) - t - dnlgam(shape);
    if (L < QXPower::gMachineMinExp) return 0.0;
    if (L > QXPower::gMachineMaxExp) return Missing();
    return std::exp(L);
  }
  if (x == 0.0) {
    if (shape > 1.0) return 0.0;
    if (shape == 1.0) return rate;
    return Missing();
  }
  return 0.0;
}

}  // namespace QXMath_850
