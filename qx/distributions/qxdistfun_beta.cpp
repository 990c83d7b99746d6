// The beta family of QXDistFun: the incomplete beta function and its
// inverse, and the beta, Student t and F distributions built on them.
#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "qx/distributions/internal/distfunbase.h"
#include "qx/distributions/qxdistfun.h"
#include "qx/distributions/qxpower.h"

namespace QXMath_850 {

namespace {

using internal::ExpOrZero;
using internal::Fail;
using internal::IsMissing;
using internal::kExpFloor;
using internal::kLnSqrtPi;
using internal::kPi;
using internal::Missing;
using internal::ValueOrMissing;

}  // namespace

double QXDistFun::cbtaux(const double& x) {
  static const double bound = std::sqrt(std::numeric_limits<double>::max());
  if (x == 0.0) return 1.0;
  if (x < 0.0) return Missing();
  if (x > bound) return -1.0;
  if (1.0 - x == 0.0) return 0.0;
  return (1.0 - x * x + 2.0 * x * std::log(x)) / ((1.0 - x) * (1.0 - x));
}

namespace {

// What a caller that evaluates the incomplete beta at many x for one (a, b)
// can share with it: the log-gammas of the final step, known in advance, and
// the logarithms of x and 1 - x, handed back when the final step made them.
struct BetaShared {
  bool logGammasKnown = false;
  double lgAB = 0.0, lgA = 0.0, lgB = 0.0, lgA1 = 0.0, lgB1 = 0.0;  // of a+b, a, b, a+1, b+1
  bool logsMade = false;
  double logX = 0.0, log1mX = 0.0;  // log(x), log(1 - x)
};

// Whether the power series of the incomplete beta, t_k = t_(k-1) * (ab + k) /
// (k + p + 1) * X summed for k = 0 to 10000, cannot reach a term below 1e-15.
// With d = ab - p - 1 <= 0 every factor is at most 1, so the terms fall, and
// log(1 + y) >= y / (1 + y) bounds the log of the last exact term from below
// by 10001 log X + d (1/ab + log(1 + 10000/ab)). When that bound is above
// -34.5 (1e-15 is e^-34.54), even the rounding of 50,005 operations (a
// relative 6e-12) leaves every computed term above 1e-15: the series would
// run out and its sum be thrown away, so skipping it changes nothing.
// Declining to skip is always safe, so the logarithms are spared where log X
// <= X - 1 already puts the bound below the edge.
bool SeriesCannotConverge(double ab, double p, double X) {
  const double d = ab - p - 1.0;
  if (!(d <= 0.0) || 10001.0 * (X - 1.0) <= -34.5) return false;
  const double bound = 10001.0 * std::log(X) + d * (1.0 / ab + std::log1p(10000.0 / ab));
  return bound > -34.5;
}

// The power series, then the continued fraction (in the form of Numerical
// Recipes' betacf), then a Peizer-Pratt normal approximation.
double IncompleteBeta(double x, double a, double b, long& status, BetaShared* shared) {
  status = 0;
  if (!(a > 0.0) || !(b > 0.0)) return Fail(status, 1);
  if (!(x > 0.0)) return 0.0;
  if (!(1.0 - x > 0.0)) return 1.0;
  if (a == 1.0) {
    if (b == 1.0) return x;
    const double L = b * std::log(1.0 - x);
    return L < kExpFloor ? 1.0 : 1.0 - std::exp(L);
  }
  if (b == 1.0) return ExpOrZero(a * std::log(x));

  double p = a, q = b, X = x, Y = 1.0 - x;
  bool direct = true;  // also: p is a, q is b, X is x
  bool series;
  if (a <= 1.0 || (a == 0.5 && b == 0.5 && x != 0.5)) {
    std::swap(p, q);
    std::swap(X, Y);
    direct = false;
    series = true;
  } else {
    series = b <= 1.0;
  }
  if (series && SeriesCannotConverge(a + b, p, X)) series = false;

  double sum = 0.0;
  bool done = false;
  if (series) {
    double t = 1.0;
    sum = 1.0;
    for (int k = 0; k <= 10000; k++) {
      t *= (a + b + k) / (k + p + 1.0) * X;
      sum += t;
      if (std::fabs(t) < 1e-15) {
        done = true;
        break;
      }
    }
  }
  if (!done) {
    const double scale = 10.0 * std::max(a + b, 1.0);
    if (X >= (p + 1.0) / (a + b + 2.0)) {
      std::swap(p, q);
      std::swap(X, Y);
      direct = !direct;
    }
    double bz = 1.0 - (a + b) / (p + 1.0) * X;
    double az = 1.0, am = 1.0, bm = 1.0;
    double prev = 1.0 / bz;
    for (int m = 1; m <= 10000; m++) {
      const double d = (m / (p + 2.0 * m)) * X * ((q - m) / (p + 2.0 * m - 1.0));
      const double ap = d * am + az;
      const double bp = d * bm + bz;
      const double e = -X * ((p + m) / (p + 2.0 * m)) * ((p + m + q) / (p + 2.0 * m + 1.0));
      const double app = ap + e * az;
      const double bpp = bp + e * bz;
      if (bpp == 0.0) {
        az = app;
        am = ap;
        bz = bpp;
        bm = bp;
        continue;
      }
      az = app / bpp;
      if (QXPower::AlmostEqual(az, prev, scale)) {
        sum = az;
        done = true;
        break;
      }
      am = ap / bpp;
      bm = bp / bpp;
      prev = az;
      bz = 1.0;
    }
  }

  if (done) {
    double v = 0.0;
    if (sum > 0.0) {
      const double logX = std::log(X), logY = std::log(Y);
      double lgAB, lgP1, lgQ;
      if (shared != nullptr && shared->logGammasKnown) {
        lgAB = shared->lgAB;
        lgP1 = direct ? shared->lgA1 : shared->lgB1;
        lgQ = direct ? shared->lgB : shared->lgA;
      } else {
        lgAB = QXDistFun::dnlgam(a + b);
        lgP1 = QXDistFun::dnlgam(p + 1.0);
        lgQ = QXDistFun::dnlgam(q);
      }
      if (shared != nullptr) {
        shared->logsMade = true;
        shared->logX = direct ? logX : logY;
        shared->log1mX = direct ? logY : logX;
      }
      const double L = logX * p + logY * q + std::log(sum) + lgAB - lgP1 - lgQ;
      v = ExpOrZero(L);
    }
    return direct ? v : 1.0 - v;
  }

  // Peizer-Pratt; the arguments of cbtaux are not divided by X or Y.
  const double n = a + b - 1.0;
  const double c1 = QXDistFun::cbtaux((p - 0.5) / n);
  const double c2 = QXDistFun::cbtaux((q - 0.5) / n);
  const double S = (1.0 + c2 * Y + c1 * X) / ((n + 0.16666666666666666) * X * Y);
  double z = 0.0;
  if (S > 0.0) {
    z = std::sqrt(S) *
        ((X + 1.0) / 3.0 + (X - p / n) * n + ((X / q - Y / p) + (X - 0.5) / (a + b)) / 50.0);
  }
  if (!direct) z = -z;
  return QXDistFun::prbnrm(z);
}

}  // namespace

double QXDistFun::cdfbet(const double& x, const double& a, const double& b, long& status) {
  return IncompleteBeta(x, a, b, status, nullptr);
}

// Newton's method with step control, after Majumder and Bhattacharjee (1973),
// AS 63/64 and AS 109; the start values are those of AS 109.
double QXDistFun::betinv(const double& p, const double& a, const double& b) {
  static const double half = 0.5;
  if (p == 0.0) return 0.0;
  if (p == 1.0) return 1.0;
  if (!(a > 0.0) || !(b > 0.0) || !(p >= 0.0 && p <= 1.0)) return -1.0;
  if (a == b) {
    if (p == half) return half;
    if (a == half) {
      const double s = std::sin(p * half * kPi);
      return s * s;
    }
  }
  if (a == 1.0) {
    const double L = std::log(1.0 - p) / b;
    return (1.0 - p > 0.0 && L >= kExpFloor) ? 1.0 - std::exp(L) : 1.0;
  }
  if (b == 1.0) return ExpOrZero(std::log(p) / a);
  if (b <= a * 1e-20) return 1.0;

  double y = probit(p);
  if (IsMissing(y)) return -1.0;
  double P, Q, alpha;
  const bool upper = p > half;
  if (upper) {
    P = b;
    Q = a;
    alpha = 1.0 - p;
  } else {
    P = a;
    Q = b;
    alpha = p;
    y = -y;
  }
  // The log-gammas of every Newton step's incomplete beta, made once.
  BetaShared shared;
  shared.lgA = dnlgam(P);
  shared.lgB = dnlgam(Q);
  shared.lgAB = dnlgam(P + Q);
  const double beta = shared.lgA + shared.lgB - shared.lgAB;

  double x;
  if (P > 1.0 && Q > 1.0) {
    const double r = (y * y - 3.0) / 6.0;
    const double s = 1.0 / (2.0 * P - 1.0);
    const double t = 1.0 / (2.0 * Q - 1.0);
    const double h = 2.0 / (s + t);
    const double w =
        y * std::sqrt(h + r) / h - (t - s) * (r + 0.8333333333333334 + 2.0 / (-3.0 * h));
    x = P / (P + Q * std::exp(2.0 * w));
  } else {
    const double c = 2.0 * Q;
    const double t = 1.0 / (9.0 * Q);
    const double base = 1.0 - t + y * std::sqrt(t);
    double u = c * (base * base * base);
    if (u <= 0.0) {
      const double L = (std::log((1.0 - alpha) * Q) + beta) / Q;
      if (L > 709.0) return a / (a + b);
      x = L < kExpFloor ? 1.0 : 1.0 - std::exp(L);
    } else {
      u = (4.0 * P + c - 2.0) / u;
      if (u > 1.0) {
        x = 1.0 - 2.0 / (u + 1.0);
      } else {
        // Divided by alpha, not P: this only shapes the start value.
        const double L = (std::log(alpha * P) + beta) / alpha;
        if (L > 709.0) return a / (a + b);
        x = ExpOrZero(L);
      }
    }
  }
  if (x < 1e-8) x = 1e-8;
  if (x > 0.9999999) x = 0.9999999;

  shared.lgA1 = dnlgam(P + 1.0);
  shared.lgB1 = dnlgam(Q + 1.0);
  shared.logGammasKnown = true;

  double prev = 1.0, sq = 1.0, yprev = 0.0;
  for (int iter = 0; iter < 50; iter++) {
    long status;
    shared.logsMade = false;
    const double c = IncompleteBeta(x, P, Q, status, &shared);
    if (status > 0) return -1.0;
    // The incomplete beta's last step took the same two logarithms.
    const double log1mX = shared.logsMade ? shared.log1mX : std::log(1.0 - x);
    const double logX = shared.logsMade ? shared.logX : std::log(x);
    const double L = (1.0 - Q) * log1mX + (1.0 - P) * logX + beta;
    if (L > 709.0) return a / (a + b);
    const double yn = (c - alpha) * ExpOrZero(L);
    if (std::isnan(yn)) return -1.0;
    if (!(yprev * yn > 0.0)) prev = sq;
    double g = 1.0, tx;
    for (;;) {
      const double adj = g * yn;
      sq = adj * adj;
      if (sq >= prev) {
        g /= 3.0;
        continue;
      }
      tx = x - adj;
      if (std::fabs(tx) < 1e-12) {
        tx = 1e-12;
        break;
      }
      if (std::fabs(tx - 1.0) < 1e-12) {
        tx = 0.999999999999;
        break;
      }
      if (tx > 0.0 && tx < 1.0) break;
      g /= 3.0;
    }
    if (prev <= 1e-20 || yn * yn <= 1e-20 || std::fabs(tx - x) < 1e-12) break;
    x = tx;
    yprev = yn;
  }
  return upper ? 1.0 - x : x;
}

// Student t through the incomplete beta, Abramowitz and Stegun (1964) 26.5.27;
// the normal function above 1e8 degrees of freedom, and atan at 1.
double QXDistFun::kvatcdft(const double& t, const double& df, long& status) {
  static const double half = 0.5;
  status = 0;
  if (!(df > 0.0) || std::isnan(t)) return Fail(status, 1);
  if (df > 100000000.0) {
    const double r = CdfNorm(t, 0.0, 1.0);
    if (IsMissing(r)) status = 2;
    return r;
  }
  if (t == 0.0) return 0.5;
  if (df == 1.0) return std::atan(t) / kPi + 0.5;
  const double at = std::fabs(t);
  double result;
  if (at <= 1.0) {
    const double u = at / (df / at + at);
    double v = cdfbet(u, half, df / 2.0, status);
    if (IsMissing(v)) {
      result = v;
    } else {
      if (t < 0.0) v = -v;
      result = v * 0.5 + 0.5;
    }
  } else {
    const double u = (df / at) / (at + df / at);
    double v = cdfbet(u, df / 2.0, half, status);
    if (IsMissing(v)) {
      result = v;
    } else {
      v *= 0.5;
      result = t > 1.0 ? 1.0 - v : v;
    }
  }
  if (IsMissing(result) && status == 0) status = 2;
  if (status > 0) return Missing();
  return result;
}

double QXDistFun::SigT(double t, double df) {
  static const double half = 0.5;
  if (!(df > 0.0)) return Missing();
  if (t == 0.0) return 0.5;
  if (std::isnan(t)) return Missing();
  if (df == 1.0) return std::atan(t) / -kPi + 0.5;
  long status;
  const double at = std::fabs(t);
  double result;
  if (at <= 1.0) {
    const double u = at / (df / at + at);
    double v = cdfbet(u, half, df / 2.0, status);
    if (t > 0.0) v = -v;
    result = v * 0.5 + 0.5;
  } else {
    const double u = (df / at) / (at + df / at);
    const double v = cdfbet(u, df / 2.0, half, status) * 0.5;
    result = t < -1.0 ? (0.5 - v) + 0.5 : v;
  }
  return status > 0 ? Missing() : result;
}

double QXDistFun::kvatcdff(const double& f, const double& df1, const double& df2, long& status) {
  status = 0;
  if (!(df1 > 0.0) || !(df2 > 0.0)) return Fail(status, 1);
  if (!(f > 0.0)) return 0.0;
  double result = Missing();
  if (df1 == 1.0) {
    const double r = kvatcdft(std::sqrt(f), df2, status);
    if (!IsMissing(r)) result = 2.0 * r - 1.0;
  } else if (f < 1.0) {
    result = cdfbet(f / (df2 / df1 + f), df1 / 2.0, df2 / 2.0, status);
  } else if (f >= 1.0) {
    result = 1.0 - cdfbet((df2 / df1) / (df2 / df1 + f), df2 / 2.0, df1 / 2.0, status);
  }
  if (IsMissing(result) && status == 0) status = 2;
  return status > 0 ? Missing() : result;
}

double QXDistFun::SigF(double f, double df1, double df2) {
  if (!(df1 > 0.0) || !(df2 > 0.0)) return Missing();
  long status = 0;
  double result;
  if (f >= 1.0) {
    result = cdfbet((df2 / df1) / (f + df2 / df1), df2 / 2.0, df1 / 2.0, status);
  } else if (!(f > 0.0)) {
    result = 1.0;
  } else {
    result = 1.0 - cdfbet(f / (df2 / df1 + f), df1 / 2.0, df2 / 2.0, status);
  }
  return status > 0 ? Missing() : result;
}

double QXDistFun::kvatidft(const double& p, const double& df, long& status) {
  static const double half = 0.5;
  status = 0;
  if (!(p > 0.0 && p < 1.0) || !(df > 0.0)) return Fail(status, 1);
  if (p == 0.5) return 0.0;
  if (df >= 100000000.0) return IdfStdNorm(p);
  const double q = p >= 0.5 ? (2.0 - p) - p : p + p;
  const double dfHalf = df / 2.0;
  const double b = betinv(q, dfHalf, half);
  if (b == -1.0) return Fail(status, 2);
  const double v = (1.0 / b - 1.0) * df;
  if (v < 0.0) return Fail(status, 2);
  const double t = std::sqrt(v);
  return p < 0.5 ? -t : t;
}

double QXDistFun::kvatidff(const double& p, const double& df1, const double& df2, long& status) {
  status = 0;
  if (!(p >= 0.0 && p < 1.0) || !(df1 > 0.0) || !(df2 > 0.0)) return Fail(status, 1);
  if (p == 0.0) return 0.0;
  if (df1 == 1.0) {
    const double t = kvatidft(p * 0.5 + 0.5, df2, status);
    if (IsMissing(t)) return Fail(status, 2);
    return t * t;
  }
  const double b = betinv(p, df1 / 2.0, df2 / 2.0);
  if (IsMissing(b) || !(b >= 0.0 && b < 1.0)) return Fail(status, 2);
  return (df2 / df1) * (b / (1.0 - b));
}

double QXDistFun::CdfT(double t, double df) {
  return ValueOrMissing([&](long& s) { return kvatcdft(t, df, s); });
}

double QXDistFun::IdfT(double p, double df) {
  return ValueOrMissing([&](long& s) { return kvatidft(p, df, s); });
}

double QXDistFun::PdfT(double t, double df, long& status) {
  status = 0;
  if (!(df > 0.0)) return Fail(status, 1);
  double L = -0.5 * std::log(df) + dnlgam((df + 1.0) / 2.0) - dnlgam(df / 2.0) - kLnSqrtPi;
  if (t != 0.0) L += -0.5 * (1.0 + df) * std::log(t * t / df + 1.0);
  return ExpOrZero(L);
}

double QXDistFun::CdfF(double f, double df1, double df2) {
  return ValueOrMissing([&](long& s) { return kvatcdff(f, df1, df2, s); });
}

double QXDistFun::IdfF(double p, double df1, double df2) {
  return ValueOrMissing([&](long& s) { return kvatidff(p, df1, df2, s); });
}

double QXDistFun::CdfBeta(double x, double a, double b) {
  return ValueOrMissing([&](long& s) { return cdfbet(x, a, b, s); });
}

double QXDistFun::IdfBeta(const double& p, const double& a, const double& b) {
  return betinv(p, a, b);
}

}  // namespace QXMath_850
