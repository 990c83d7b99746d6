// The normal distribution functions of QXDistFun: the error function and its
// complement, the standard normal cumulative function and quantile, and the
// public normal functions built on them.
#include <cmath>

#include "qx/distributions/internal/distfunbase.h"
#include "qx/distributions/internal/specialfuntables.h"
#include "qx/distributions/qxdistfun.h"

namespace QXMath_850 {

namespace {

using internal::Horner;
using internal::IsMissing;
using internal::kExpFloor;
using internal::Missing;

constexpr double kSqrt2 = 1.4142135623730951;

// derfc's expansion in v = w - 0.5, w = k/(t+k), highest degree first.
constexpr double kErfcK = 3.97886080735226;
constexpr double kErfc[23] = {
    0.0012710976495261409, 0.00011931402283834095, -0.003963850973605135, -0.0008707796353172959,
    0.007736725283135267,  0.003833351262648873,   -0.012722381378212275, -0.013382364453346007,
    0.016131532973325226,  0.039097684558848406,   0.002493672000535033,  -0.0838864557023002,
    -0.11946395996432542,  0.016620792496936737,   0.35752427444953105,   0.8052764087529106,
    1.1890298290927332,    1.3704021768233816,     1.313146538310231,     1.0792551515585667,
    0.7743681991195386,    0.49016508058531844,    0.2753747415973768};

// AS 241 coefficients, numerator and denominator, highest degree first.
constexpr double kP241A[8] = {2509.0809287301226727, 33430.575583588128105, 67265.770927008700853,
                              45921.953931549871457, 13731.693765509461125, 1971.5909503065514427,
                              133.14166789178437745, 3.387132872796366608};
constexpr double kP241B[8] = {
    5226.495278852854561,  28729.085735721942674, 39307.89580009271061,  21213.794301586595867,
    5394.1960214247511077, 687.1870074920579083,  42.313330701600911252, 1.0};
constexpr double kP241C[8] = {7.7454501427834140764e-4, 0.0227238449892691845833,
                              0.24178072517745061177,   1.27045825245236838258,
                              3.64784832476320460504,   5.7694972214606914055,
                              4.6303378461565452959,    1.42343711074968357734};
constexpr double kP241D[8] = {1.05075007164441684324e-9, 5.475938084995344946e-4,
                              0.0151986665636164571966,  0.14810397642748007459,
                              0.68976733498510000455,    1.6763848301838038494,
                              2.05319162663775882187,    1.0};
constexpr double kP241E[8] = {2.01033439929228813265e-7, 2.71155556874348757815e-5,
                              0.0012426609473880784386,  0.026532189526576123093,
                              0.29656057182850489123,    1.7848265399172913358,
                              5.4637849111641143699,     6.6579046435011037772};
constexpr double kP241F[8] = {2.04426310338993978564e-15, 1.4215117583164458887e-7,
                              1.8463183175100546818e-5,   7.868691311456132591e-4,
                              0.0148753612908506148525,   0.13692988092273580531,
                              0.59983220655588793769,     1.0};

}  // namespace

// erf by piecewise polynomials: erf(t)/t in t*t below 2.2, and erfc(t)^(1/16)
// in t from 2.2 to 6.9, so that 1 - w^16 keeps full accuracy near 1.
double QXDistFun::derf(const double& x) {
  const double t = std::fabs(x);
  if (t == 0.0) return 0.0;
  double r;
  if (t < 2.2) {
    const double s = t * t;
    const int i = static_cast<int>(std::floor(s));
    r = t * Horner(internal::kErfA[i], s - i);
  } else if (t < 6.9) {
    const int i = static_cast<int>(std::floor(t));
    double w = Horner(internal::kErfB[i - 2], t - i);
    w = w * w;
    w = w * w;
    w = w * w;
    w = w * w;
    r = 1.0 - w;
  } else if (t >= 6.9) {
    r = 1.0;
  } else {
    return x;  // NaN
  }
  return x < 0.0 ? -r : r;
}

// erfc as exp(-t*t) times a 23-term expansion in w = k/(t+k).
double QXDistFun::derfc(const double& x) {
  if (std::isnan(x)) return x;
  const double t = std::fabs(x);
  if (t == 0.0) return 1.0;
  const double w = kErfcK / (t + kErfcK);
  const double v = w - 0.5;
  const double value = Horner(kErfc, v) * w;
  double r = 0.0;
  if (value > 0.0) {
    const double L = std::log(value) - t * t;
    r = L >= kExpFloor ? std::exp(L) : 0.0;
  }
  return x < 0.0 ? 2.0 - r : r;
}

// The upper half through derf, the lower tail through derfc.
double QXDistFun::prbnrm(const double& z) {
  if (z > 0.0) return (derf(z / kSqrt2) + 1.0) * 0.5;
  if (z < 0.0) return derfc(z / -kSqrt2) * 0.5;
  if (z == 0.0) return 0.5;
  return z;  // NaN
}

// Wichura (1988), AS 241 (PPND16).
double QXDistFun::probit(const double& p) {
  if (!(p > 0.0) || p >= 1.0) return Missing();
  if (p == 0.5) return 0.0;
  const double q = p - 0.5;
  if (std::fabs(q) <= 0.425) {
    const double r = 0.180625 - q * q;
    return q * Horner(kP241A, r) / Horner(kP241B, r);
  }
  double r = q < 0.0 ? p : 1.0 - p;
  r = std::sqrt(-std::log(r));
  double value;
  if (r <= 5.0) {
    r = r - 1.6;
    value = Horner(kP241C, r) / Horner(kP241D, r);
  } else {
    r = r - 5.0;
    value = Horner(kP241E, r) / Horner(kP241F, r);
  }
  return q < 0.0 ? -value : value;
}

double QXDistFun::CdfStdNorm(double z) {
  return prbnrm(z);
}

double QXDistFun::CdfNorm(double x, double mean, double sd) {
  if (!(sd > 0.0)) return Missing();
  return prbnrm((x - mean) / sd);
}

double QXDistFun::PdfNormalStandard(double x) {
  return std::exp(x * (x * -0.5)) * 0.3989422804014327;
}

double QXDistFun::PdfNormal(double x, double mean, double sd) {
  if (sd == 0.0) return Missing();
  return PdfNormalStandard((x - mean) / sd) / sd;
}

double QXDistFun::IdfStdNorm(double p) {
  if (!(p > 0.0 && p < 1.0)) return Missing();
  if (p == 0.5) return 0.0;
  return probit(p);
}

double QXDistFun::IdfNorm(double p, double mean, double sd) {
  if (!(p > 0.0 && p < 1.0) || !(sd > 0.0)) return Missing();
  if (p == 0.5) return mean;
  const double z = probit(p);
  if (IsMissing(z)) return z;
  return sd * z + mean;
}

}  // namespace QXMath_850
