// Noncentral chi-square, beta, F and Student t functions of QXDistFun, and the
// searches for the noncentrality parameter.
#include <algorithm>
#include <cmath>
#include <functional>

#include "qx/distributions/internal/distfunbase.h"
#include "qx/distributions/qxdistfun.h"
#include "qx/distributions/qxpower.h"

namespace QXMath_850 {

namespace {

using internal::Fail;
using internal::IsMissing;
using internal::kLn2;
using internal::kLnSqrtPi;
using internal::Missing;

// Standard deviations of the Poisson weights below their mean at which a
// series starts: the left tail skipped there is negligible.
constexpr double kLeftTail = 7.0344838253011;
constexpr double kSeriesBound = 1e-12;
constexpr int kSeriesCap = 60000;
constexpr double kDensityBound = 1e-10;
constexpr int kDensityWindow = 10000;
constexpr double kSearchCloseness = 8.0;

// Start index of a Poisson mixture with mean l.
double StartIndex(double l) {
  return std::floor(std::max(l - kLeftTail * std::sqrt(l), 0.0));
}

double Clamp01(double x) {
  return std::min(std::max(x, 0.0), 1.0);
}

// The bracket and bisection shared by the searches: lo has F > 0 and hi has
// F <= 0. Stops on `close(lo, hi, fm)` or when lo and hi are within 8
// epsilons, or when the midpoint no longer moves.
double Bisect(const std::function<double(double)>& F, double lo, double hi,
              const std::function<bool(double, double, double)>& close) {
  for (;;) {
    const double mid = (lo + hi) / 2.0;
    const double fm = F(mid);
    if (IsMissing(fm)) return fm;
    if (close(lo, hi, fm) || QXPower::AlmostEqual(lo, hi, kSearchCloseness)) return mid;
    if (mid == lo || mid == hi) return mid;
    if (fm > 0.0) {
      lo = mid;
    } else {
      hi = mid;
    }
  }
}

// The chi-square and F searches: F falls as the parameter grows. From
// `start`, one end of the bracket stays while the other is halved (towards 0)
// or doubled until F changes sign.
double SearchFalling(const std::function<double(double)>& F, double p, double start,
                     const std::function<bool(double, double, double)>& close) {
  const double f0 = F(0.0);
  if (IsMissing(f0)) return f0;
  if (f0 + p <= p) return 0.0;
  const double fs = F(start);
  if (IsMissing(fs)) return fs;
  if (fs == 0.0) return start;
  double lo = start, hi = start, flo = fs, fhi = fs;
  if (!(fs > 0.0)) {
    do {
      lo = lo / 2.0;
      flo = F(lo);
      if (IsMissing(flo)) return flo;
    } while (!(flo > 0.0));
  } else {
    do {
      hi = hi * 2.0;
      if (!std::isfinite(hi)) return Missing();
      fhi = F(hi);
      if (IsMissing(fhi)) return fhi;
    } while (fhi > 0.0);
  }
  if (flo == 0.0) return lo;
  if (fhi == 0.0) return hi;
  return Bisect(F, lo, hi, close);
}

}  // namespace

// Ding (1992), AS 275, started below the centre of the Poisson weights.
double QXDistFun::NonCentralCdfChi(double x, double df, double ncp) {
  if (!(df > 0.0) || ncp < 0.0) return Missing();
  if (!(x > 0.0)) return 0.0;
  const double h = x / 2.0, a = df / 2.0, l = ncp / 2.0;
  const double k0 = StartIndex(l);
  const double s = k0 + a;
  long status;
  const double P = gammad(h, s, true, status);
  if (status != 0) return Missing();
  if (P == 0.0) return 0.0;

  // T: the term between the incomplete gammas of index s and s + 1.
  double T;
  const double LT = s * std::log(h) - dnlgam(s + 1.0) - h;
  if (LT > QXPower::gMachineMaxExp) return Missing();
  T = LT < QXPower::gMachineMinExp ? 0.0 : std::exp(LT);

  double W = -l;
  if (k0 > 0.0) W += k0 * std::log(l) - dnlgam(k0 + 1.0);
  if (W > QXPower::gMachineMaxExp) return Missing();
  if (W < QXPower::gMachineMinExp) return 0.0;
  double w = std::exp(W);

  double sum = P * w;
  const double R = P - T;
  double rem = 1.0 - w;
  double j = k0 + 1.0;
  T *= h / (a + j);
  double N = R - T;
  w *= l / j;
  rem -= w;
  sum += w * R;
  double bound = N * rem;
  for (int round = 1; round < kSeriesCap && bound > kSeriesBound; round++) {
    j += 1.0;
    T *= h / (a + j);
    const double N2 = N - T;
    w *= l / j;
    rem -= w;
    sum += w * N;
    bound = N2 * rem;
    N = N2;
  }
  if (bound > kSeriesBound) return Missing();
  return Clamp01(sum);
}

// Lenth (1987), AS 226, started below the centre of the Poisson weights as in
// Frick (1990), AS R84.
double QXDistFun::ncdbet(const double& x, const double& a, const double& b, const double& ncp,
                         long& status, double tol) {
  status = 0;
  if (!(a > 0.0) || !(b > 0.0) || ncp < 0.0) return Fail(status, 1);
  if (!(x > 0.0)) return 0.0;
  if (x >= 1.0) return 1.0;
  if (ncp == 0.0) {
    const double r = cdfbet(x, a, b, status);
    if (status > 0) return Fail(status, 2);
    return r;
  }
  const double l = ncp / 2.0;
  const double k0 = StartIndex(l);
  const double A = k0 + a;
  double I = cdfbet(x, A, b, status);
  if (status > 0) return Fail(status, 2);

  // T: the term between the incomplete betas of index A and A + 1.
  const double L =
      A * std::log(x) + b * std::log(1.0 - x) - dnlgam(A) - dnlgam(b) + dnlgam(A + b) - std::log(A);
  if (L > QXPower::gMachineMaxExp) return Missing();  // with status 0, as designed
  double T;
  if (L < QXPower::gMachineMinExp) {
    T = 0.0;
    if (I == 0.0) return 0.0;
  } else {
    T = std::exp(L);
  }

  double W = -l;
  if (A > a) W += k0 * std::log(l) - dnlgam(k0 + 1.0);
  if (W > QXPower::gMachineMaxExp || W < QXPower::gMachineMinExp) return 0.0;
  double w = std::exp(W);
  double sum = I * w;

  if (tol < 1.0) {
    double rem = 1.0 - w;
    double R = I - T;
    double k = k0;
    double bound = 0.0;
    bool met = false;
    for (int round = 0; round < kSeriesCap; round++) {
      k += 1.0;
      T = ((a + b + k - 1.0) * x / (a + k)) * T;
      w = (l / k) * w;
      rem -= w;
      sum += w * R;
      bound = (R - T) * rem;
      if (bound <= tol) {
        met = true;
        break;
      }
      R -= T;
    }
    if (!met) return Fail(status, 2);
  }
  return Clamp01(sum);
}

double QXDistFun::NonCentralCdfF(double f, double df1, double df2, double ncp, double tol) {
  if (!(df1 > 0.0) || !(df2 > 0.0) || ncp < 0.0) return Missing();
  if (!(f > 0.0)) return 0.0;
  long status;
  const double r = ncdbet(df1 * f / (df2 + df1 * f), df1 / 2.0, df2 / 2.0, ncp, status, tol);
  return status != 0 ? Missing() : r;
}

// Lenth (1989), AS 243, started at the index of this unit's other series.
double QXDistFun::NonCentralCdfT(double t, double df, double delta) {
  if (!(df > 0.0)) return Missing();
  if (delta == 0.0) return CdfT(t, df);
  if (t == 0.0) return prbnrm(-delta);
  const double tt = delta < 0.0 ? -t : t;
  if (std::fabs(t) >= 1.3407807929942596e154) return t < delta ? 0.0 : 1.0;
  const double x2 = t * t / (df + t * t);
  if (!(x2 > 0.0)) return Missing();
  const double l = delta * delta / 2.0;
  const double k0 = StartIndex(l);

  double C = -kLn2 - l;
  if (k0 > 0.0) C += k0 * std::log(l);
  const double LP = C - dnlgam(k0 + 1.0);
  double P = LP < QXPower::gMachineMinExp ? 0.0 : std::exp(LP);
  const double LQ = C - 0.34657359027997264 + std::log(std::fabs(delta)) - dnlgam(k0 + 1.5);
  double Q = LQ < QXPower::gMachineMinExp ? 0.0 : std::exp(LQ);
  if (tt < 0.0) Q = -Q;

  double a = k0 + 0.5;
  const double b = df / 2.0;
  const double D = b * std::log(1.0 - x2) - dnlgam(b);
  long status;
  const double I1 = cdfbet(x2, a, b, status);
  if (status != 0) return Missing();
  const double L1 = dnlgam(a + b) + D - dnlgam(1.0 + a) + a * std::log(x2);
  if (L1 > QXPower::gMachineMaxExp) return Missing();
  double T1 = L1 < QXPower::gMachineMinExp ? 0.0 : std::exp(L1);
  const double I2 = cdfbet(x2, a + 0.5, b, status);
  if (status != 0) return Missing();
  const double L2 = dnlgam(a + 0.5 + b) + D - dnlgam(a + 1.5) + (a + 0.5) * std::log(x2);
  if (L2 > QXPower::gMachineMaxExp) return Missing();
  double T2 = L2 < QXPower::gMachineMinExp ? 0.0 : std::exp(L2);

  double S = I1 * P + I2 * Q;
  double e = 0.5 - P;
  double R1 = I1 - T1, R2 = I2 - T2;
  double k = k0;
  double err = 2.0 * e * R1;
  bool met = false;
  for (int round = 0; round < kSeriesCap; round++) {
    k += 1.0;
    a += 1.0;
    T1 *= (a + b - 1.0) * x2 / a;
    T2 *= (a + b - 0.5) * x2 / (a + 0.5);
    P *= l / k;
    Q *= l / (k + 0.5);
    e -= P;
    S += R1 * P + R2 * Q;
    R1 -= T1;
    R2 -= T2;
    err = 2.0 * e * R1;
    if (err <= kSeriesBound) {
      met = true;
      break;
    }
  }
  if (!met) return Missing();
  double r = tt >= 0.0 ? prbnrm(-std::fabs(delta)) + S : prbnrm(-std::fabs(delta)) - S;
  if (delta < 0.0) r = 1.0 - r;
  return Clamp01(r);
}

// The series of Johnson, Kotz and Balakrishnan (1995, ch. 31) in powers of
// t*delta/sqrt(df + t*t), summed outward from its largest term.
double QXDistFun::NonCentralPdfT(double t, double df, double delta, long& status) {
  status = 0;
  if (!(df > 0.0)) return Fail(status, 1);
  if (delta == 0.0) return PdfT(t, df, status);
  if (t == 0.0) {
    const double L = -0.5 * std::log(df) - delta * delta / 2.0 + dnlgam(df / 2.0 + 0.5) -
                     dnlgam(df / 2.0) - kLnSqrtPi;
    if (L > QXPower::gMachineMaxExp) return Fail(status, 2);
    return L <= QXPower::gMachineMinExp ? 0.0 : std::exp(L);
  }

  const double v = df + t * t;
  const double w = t * t * delta * delta / v;
  const double c = (w - 3.0 + std::sqrt((w - 2.0 + 4.0 * df) * w + 1.0)) / 2.0;
  if (c + kDensityWindow >= 2147483647.0) return Fail(status, 2);
  const double J = std::floor(c) + 1.0;
  const double logR =
      -0.5 * std::log(v) + std::log(std::fabs(t)) + std::log(std::fabs(delta) * 1.4142135623730951);
  const double B =
      (1.1447298858494002 - df * std::log(df) + (1.0 + df) * std::log(v) + delta * delta) * -0.5 -
      dnlgam(df / 2.0);
  const bool alternating = (t < 0.0) != (delta < 0.0);

  // The term of index j from its gamma logs: lf = lg(j+1), lh = lg((df+j+1)/2).
  bool overflow = false;
  auto term = [&](double j, double lf, double lh) {
    const double L = B + j * logR - lf + lh;
    if (L > QXPower::gMachineMaxExp) {
      overflow = true;
      return 0.0;
    }
    if (L < QXPower::gMachineMinExp) return 0.0;
    const double value = std::exp(L);
    return alternating && std::fmod(j, 2.0) != 0.0 ? -value : value;
  };

  // Downward side from J: lf of j, and lh of j and of j + 1 (two alternating
  // half steps). Upward side from J + 1 likewise, with lh of j and j + 1.
  double dj = J, dlf = dnlgam(J + 1.0), dlh = dnlgam((df + J + 1.0) / 2.0),
         dlhNext = dnlgam((df + J + 2.0) / 2.0);
  double uj = J + 1.0, ulf = dnlgam(J + 2.0), ulh = dlhNext, ulhNext = dnlgam((df + J + 3.0) / 2.0);
  const double lowest = std::max(J - kDensityWindow, 0.0);
  const double highest = J + kDensityWindow;
  double sum = 0.0;
  for (int round = 0; round <= kDensityWindow; round++) {
    double down = 0.0, up = 0.0;
    bool tookUp = false;
    if (dj >= lowest) {
      down = term(dj, dlf, dlh);
      sum += down;
      // Step to j - 1: lg(j) = lg(j+1) - log(j); lh(j-1) = lh(j+1) - log((df+j)/2).
      if (dj > 0.0) {
        const double prevLh = dlhNext - std::log((df + dj) / 2.0);
        dlf -= std::log(dj);
        dlhNext = dlh;
        dlh = prevLh;
      }
      dj -= 1.0;
    }
    if (uj <= highest) {
      up = term(uj, ulf, ulh);
      sum += up;
      tookUp = true;
      // Step to j + 1: lg(j+2) = lg(j+1) + log(j+1); lh(j+2) = lh(j) + log((df+j+1)/2).
      const double nextLh = ulh + std::log((df + uj + 1.0) / 2.0);
      ulf += std::log(uj + 1.0);
      ulh = ulhNext;
      ulhNext = nextLh;
      uj += 1.0;
    }
    if (overflow) return Fail(status, 2);
    if (tookUp && (std::fabs(down) + std::fabs(up)) / std::fabs(sum) <= kDensityBound) break;
  }
  return sum < 0.0 ? 0.0 : sum;
}

double QXDistFun::FindNCParamChi(double x, double df, double p, double tol) {
  if (!(df > 0.0) || !(p >= 0.0 && p <= 1.0) || !(tol >= 0.0)) return Missing();
  auto F = [&](double n) {
    const double c = NonCentralCdfChi(x, df, n);
    return IsMissing(c) ? c : c - p;
  };
  auto close = [&](double lo, double hi, double fm) {
    return std::fabs(fm) <= tol && std::fabs(hi - lo) <= tol;
  };
  return SearchFalling(F, p, x, close);
}

double QXDistFun::FindNCParamF(double f, double df1, double df2, double p, double tol) {
  if (!(df1 > 0.0) || !(df2 > 0.0) || !(p >= 0.0 && p <= 1.0) || !(tol >= 0.0)) {
    return Missing();
  }
  auto F = [&](double n) {
    const double c = NonCentralCdfF(f, df1, df2, n, tol);
    return IsMissing(c) ? c : c - p;
  };
  auto close = [&](double lo, double hi, double fm) {
    const double scale = std::max(std::max(std::fabs(lo), std::fabs(hi)), 1.0);
    return std::fabs(fm) <= tol && std::fabs(hi - lo) / scale <= tol;
  };
  return SearchFalling(F, p, f * df1, close);
}

double QXDistFun::FindNCParamT(double t, double df, double p, double tol) {
  if (!(t >= 0.0) || !(p >= 0.0 && p <= 1.0) || !(df > 0.0) || !(tol >= 0.0)) return Missing();
  auto F = [&](double d) {
    const double c = NonCentralCdfT(t, df, d);
    return IsMissing(c) ? c : c - p;
  };
  const double f0 = F(0.0);
  if (IsMissing(f0)) return f0;
  if (p == f0 + p) return 0.0;
  const double step = t > 1.0 ? t : 1.0;
  double fs = F(step);
  if (IsMissing(fs)) return fs;
  if (fs == 0.0) return step;
  // The cumulative function falls as delta grows: upward while it exceeds p,
  // downward (negative delta) otherwise.
  double lo, hi, flo, fhi;
  if (f0 > 0.0) {
    lo = 0.0;
    flo = f0;
    hi = step;
    fhi = fs;
    while (fhi > 0.0) {
      lo = hi;
      flo = fhi;
      hi += step;
      if (!std::isfinite(hi)) return Missing();
      fhi = F(hi);
      if (IsMissing(fhi)) return fhi;
    }
  } else {
    hi = 0.0;
    fhi = f0;
    lo = -step;
    flo = F(lo);
    if (IsMissing(flo)) return flo;
    while (!(flo > 0.0)) {
      hi = lo;
      fhi = flo;
      lo -= step;
      if (!std::isfinite(lo)) return Missing();
      flo = F(lo);
      if (IsMissing(flo)) return flo;
    }
  }
  if (flo == 0.0) return lo;
  if (fhi == 0.0) return hi;
  auto close = [&](double l, double h, double fm) {
    return std::fabs(fm) <= tol && std::fabs(h - l) <= tol;
  };
  return Bisect(F, lo, hi, close);
}

}  // namespace QXMath_850
