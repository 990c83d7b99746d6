#include "qx/random/qxrngbeta.h"

#include <cmath>

#include "qx/distributions/qxdistfun.h"
#include "qx/random/internal/normalvariate.h"
#include "qx/random/internal/sharedsource.h"
#include "qx/random/qxrngnormal.h"

namespace QXMath_850 {

namespace {

constexpr int kMaxRounds = 5000;

}  // namespace

struct QXRNGBeta::Impl {
  // The inner normal generator draws from the same source.
  internal::ChainedSource<QXRNGNormal> source{QXRNGNormal(0.0, 1.0)};
  double a = 1.0;
  double b = 1.0;
  double maxExp = 709.0;
  double minExp = -708.0;

  void Set(double x, double y) {
    const bool bad = !(x > 0.0) || !(y > 0.0);
    a = bad ? 1.0 : x;
    b = bad ? 1.0 : y;
  }
  double GetNext() { return GetNextImpl(a, b); }
  // A uniform above 0; false if the source never gives one.
  bool Positive(double& u) {
    for (long i = 0; i < internal::kMaxRejections; ++i) {
      u = source.Next();
      if (u > 0.0) return true;
    }
    return false;
  }
  // exp(log(u) / shape), or 0 when the exponent is below the limit.
  double Root(double u, double shape) const {
    const double e = std::log(u) / shape;
    return e < minExp ? 0.0 : std::exp(e);
  }
  double GetNextImpl(double p, double q);
  bool NormalEnvelope(double p, double q, double& x);
  bool Johnk(double p, double q, double& x);
};

// Rejection from a normal envelope centred on the mode (p-1)/(p+q-2) with
// standard deviation 0.5/sqrt(p+q-2), which covers the beta density.
bool QXRNGBeta::Impl::NormalEnvelope(double p, double q, double& x) {
  const double a1 = p - 1.0;
  const double b1 = q - 1.0;
  const double n = a1 + b1;
  const double l = std::log(n);
  const double s = std::sqrt(n);
  for (int round = 0; round < kMaxRounds; ++round) {
    double z = 0.0;
    long tries = 0;
    do {
      if (++tries > internal::kMaxRejections) return false;
      z = source.GetInner().GetNext();
      x = (0.5 / s) * z + a1 / n;
    } while (!(x >= 0.0 && x <= 1.0));
    double u;
    if (!Positive(u)) return false;
    if (std::log(u) <=
        std::log(x / a1) * a1 + std::log((1.0 - x) / b1) * b1 + l * n + z * 0.5 * z) {
      return true;
    }
  }
  return false;
}

// Johnk (1964): x = u1^(1/p), y = u2^(1/q), accepted when x + y <= 1.
bool QXRNGBeta::Impl::Johnk(double p, double q, double& x) {
  for (int round = 0; round < kMaxRounds; ++round) {
    double u1, u2;
    if (!Positive(u1) || !Positive(u2)) return false;
    const double xp = Root(u1, p);
    const double yq = Root(u2, q);
    if (xp + yq > 0.0 && xp + yq <= 1.0) {
      x = xp / (xp + yq);
      return true;
    }
  }
  return false;
}

double QXRNGBeta::Impl::GetNextImpl(double p, double q) {
  source.Ensure();
  if (!(p > 0.0) || !(q > 0.0)) return -1.0;
  double x;
  if (p > 1.0 && q > 1.0) {
    if (NormalEnvelope(p, q, x)) return x;
  } else if (p == 1.0 || q == 1.0) {
    // Inversion of the closed-form distribution function.
    const double u = source.Next();
    if (p == 1.0 && q == 1.0) return u;
    if (p == 1.0) return u > 0.0 ? 1.0 - Root(u, q) : 1.0;
    return u > 0.0 ? Root(u, p) : 0.0;
  } else if (Johnk(p, q, x)) {
    return x;
  }
  return QXDistFun::IdfBeta(source.Next(), p, q);
}

QX_RANDOM_VARIATE_MEMBERS(QXRNGBeta)

double QXRNGBeta::GetNext(double a, double b) {
  return impl->GetNextImpl(a, b);
}

}  // namespace QXMath_850
