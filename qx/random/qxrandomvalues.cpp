#include "qx/random/qxrandomvalues.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "qx/distributions/qxpower.h"
#include "qx/foundation/qxcomponentdisplay.h"
#include "qx/foundation/qxmissingvalue.h"
#include "qx/random/internal/normalvariate.h"

namespace QXMath_850 {

using QXCommon_850::QXMV;

namespace {

constexpr unsigned long kDefaultSeed = 34567;

QXSymMatrix Identity(int n) {
  QXSymMatrix m(n, true);
  for (int i = 0; i < n; ++i)
    m.SetElem(i, i, 1.0);
  return m;
}

}  // namespace

QXRandomValues::QXRandomValues()
    : seed(kDefaultSeed),
      tolerance(1e-12),
      urng(new QXURandom(kDefaultSeed, true, true, nullptr)),
      ownsURNG(true),
      distType(Uniform),
      isUnivariate(true),
      nVariates(0),
      isStandard(true),
      uniLow(0.0),
      uniHigh(1.0),
      normMean(0.0),
      normSigma2(1.0),
      chiDF(0.0),
      gamShape(0.0),
      gamScale(0.0),
      wishP(0),
      wishM(0.0),
      normSigma(1.0) {}

QXRandomValues::~QXRandomValues() {
  if (ownsURNG) delete urng;
}

void QXRandomValues::Select(DistType type, bool univariate, int n, bool standard) {
  distType = type;
  isUnivariate = univariate;
  nVariates = n;
  isStandard = standard;
}

bool QXRandomValues::Factor(const QXSymMatrix& m, QXSymMatrix& chol) const {
  chol = m;
  double minPivot;
  const int redundant = chol.LTChol(tolerance, minPivot, true);
  return redundant != -1 && redundant < chol.GetNRows();
}

bool QXRandomValues::SetTolerance(double t) {
  if (!(t > 0.0)) return false;
  tolerance = t;
  return true;
}

bool QXRandomValues::SetParamUniform() {
  return SetParamUniform(0.0, 1.0);
}

bool QXRandomValues::SetParamUniform(double lo, double hi) {
  if (!(hi > lo)) return false;
  uniLow = lo;
  uniHigh = hi;
  Select(Uniform, true, 0, lo == 0.0 && hi == 1.0);
  return true;
}

bool QXRandomValues::SetParamUniform(int n) {
  if (n < 1) return false;
  return SetParamUniform(std::vector<double>(n, 0.0), std::vector<double>(n, 1.0));
}

bool QXRandomValues::SetParamUniform(const std::vector<double>& lo, const std::vector<double>& hi) {
  if (lo.empty() || lo.size() != hi.size()) return false;
  bool standard = true;
  for (std::size_t i = 0; i < lo.size(); ++i) {
    if (!(lo[i] < hi[i])) return false;
    standard = standard && lo[i] == 0.0 && hi[i] == 1.0;
  }
  const int n = static_cast<int>(lo.size());
  uniLows = lo;
  uniHighs = hi;
  if (n == 1) {
    uniLow = lo[0];
    uniHigh = hi[0];
  }
  Select(Uniform, n == 1, n, standard);
  return true;
}

bool QXRandomValues::SetParamNormal() {
  normMean = 0.0;
  normSigma2 = 1.0;
  normSigma = 1.0;
  Select(Normal, true, 0, true);
  return true;
}

bool QXRandomValues::SetParamNormal(double mean, double sigma2) {
  if (!(sigma2 > 0.0)) return false;
  normMean = mean;
  normSigma2 = sigma2;
  normSigma = std::sqrt(sigma2);
  Select(Normal, true, 0, false);
  return true;
}

bool QXRandomValues::SetParamNormal(int n) {
  if (n < 1) return false;
  normCov = Identity(n);
  // Only displayed: a standard draw adds no mean.
  normMeans.assign(n, 1.0);
  if (n == 1) {
    normMean = 0.0;
    normSigma2 = 1.0;
    normSigma = 1.0;
  }
  Select(Normal, n == 1, n, true);
  return true;
}

bool QXRandomValues::SetParamNormal(const std::vector<double>& means, double sigma2,
                                    const QXSymMatrix& cov) {
  const int n = static_cast<int>(means.size());
  if (n < 1 || cov.GetNRows() != n || !(sigma2 > 0.0)) return false;
  normMeans = means;
  normSigma2 = sigma2;
  normSigma = std::sqrt(sigma2);
  normCov = cov;
  Select(Normal, n == 1, n, false);
  if (n == 1) {
    normMean = means[0];
    return true;
  }
  return Factor(cov, normChol);
}

bool QXRandomValues::SetParamChi(double df) {
  if (!(df > 0.0)) return false;
  chiDF = df;
  Select(ChiSquare, true, 0, false);
  return true;
}

bool QXRandomValues::SetParamGamma(double shape, double rate) {
  if (!(shape > 0.0) || !(rate > 0.0)) return false;
  gamShape = shape;
  gamScale = rate;
  Select(Gamma, true, 0, false);
  return true;
}

bool QXRandomValues::SetParamWishart(int p, double m) {
  if (p < 1 || !(p <= m)) return false;
  wishP = p;
  wishM = m;
  wishScale = Identity(p);
  fmWishartChol = wishScale;
  Select(Wishart, false, p, true);
  return true;
}

bool QXRandomValues::SetParamWishart(int p, double m, const QXSymMatrix& scale) {
  if (p < 1 || !(p <= m) || scale.GetNRows() != p) return false;
  wishP = p;
  wishM = m;
  wishScale = scale;
  Select(Wishart, false, p, false);
  return Factor(scale, fmWishartChol);
}

bool QXRandomValues::SetURNGPtr(QXURandom* source) {
  if (source != nullptr && ownsURNG && source != urng) {
    delete urng;
    urng = source;
    ownsURNG = false;
  }
  return source != nullptr;
}

void QXRandomValues::SetSeed(unsigned long s) {
  delete urng;
  seed = s;
  urng = new QXURandom(s, true, true, nullptr);
  ownsURNG = true;
}

double QXRandomValues::GetRandom() {
  if (!isUnivariate) return QXMV::Missing();
  switch (distType) {
    case Uniform:
      return RVUni(uniLow, uniHigh);
    case Normal:
      return RVNor(normMean, normSigma);
    case ChiSquare:
      return RVChi(chiDF);
    case Gamma:
      return RVGam(gamShape, gamScale);
    default:
      return QXMV::Missing();
  }
}

bool QXRandomValues::GetRandom(std::vector<double>& out) {
  if (isUnivariate || (distType != Uniform && distType != Normal)) return false;
  out.resize(nVariates);
  if (distType == Uniform) {
    for (int i = 0; i < nVariates; ++i)
      out[i] = RVUni(uniLows[i], uniHighs[i]);
    return true;
  }
  for (int i = 0; i < nVariates; ++i) {
    out[i] = RVSNor();
    if (QXMV::IsMissing(out[i])) return false;
  }
  if (isStandard) return true;
  std::vector<double> y;
  normChol.ComputeLV(out, y);
  for (int i = 0; i < nVariates; ++i)
    out[i] = normSigma * y[i] + normMeans[i];
  return true;
}

bool QXRandomValues::GetRandom(QXSymMatrix& out) {
  if (isUnivariate || distType != Wishart) return false;
  QXSymMatrix l(nVariates, true);
  for (int i = 0; i < wishP; ++i) {
    // The same degrees of freedom in every row, by design (see the header).
    const double c = RVChi(wishM - wishP);
    if (QXMV::IsMissing(c) || c < 0.0) return false;
    l.SetElem(i, i, std::sqrt(c));
    for (int j = 0; j < i; ++j) {
      const double z = RVSNor();
      if (QXMV::IsMissing(z)) return false;
      l.SetElem(i, j, z);
    }
  }
  if (isStandard) {
    out = l;
    out.LTLLTrans();
    return true;
  }
  l.LTLLTrans();
  return l.ComputeLSLTrans(fmWishartChol, out);
}

double QXRandomValues::RVUni(double lo, double hi) {
  if (!(hi >= lo)) return QXMV::Missing();
  return urng->GetRandom() * (hi - lo) + lo;
}

double QXRandomValues::RVExp(double rate) {
  if (!(rate > 0.0)) return QXMV::Missing();
  const double u = urng->GetRandom();
  if (!(u < 1.0)) return QXMV::Missing();
  return -std::log(1.0 - u) / rate;
}

double QXRandomValues::RVSNor() {
  return internal::KindermanRamage([this] { return urng->GetRandom(); });
}

double QXRandomValues::RVNor(double mean, double sd) {
  if (sd == 0.0) return mean;
  if (!(sd > 0.0)) return QXMV::Missing();
  const double z = RVSNor();
  return QXMV::IsMissing(z) ? z : z * sd + mean;
}

double QXRandomValues::RVChi(double df) {
  if (!(df > 0.0)) return QXMV::Missing();
  return RVGam(df / 2.0, 0.5);
}

double QXRandomValues::RVGam(double shape, double rate) {
  if (!(shape > 0.0) || !(rate > 0.0) || std::isinf(shape)) return QXMV::Missing();
  double x = 0.0;
  if (shape == 1.0) {
    x = RVExp(1.0);
    if (QXMV::IsMissing(x)) return x;
  } else if (shape > 1.0) {
    // Fishman (1976): an exponential of mean `shape`, accepted with
    // probability (e exp(1 - e))^(shape - 1). It takes about 1.1 sqrt(shape)
    // rounds, so the bound on rounds grows with the shape.
    const double rounds = std::min(1e8, internal::kMaxRejections + 1000.0 * std::sqrt(shape));
    double e = 0.0;
    for (double round = 0.0;; round += 1.0) {
      if (round >= rounds) return QXMV::Missing();
      e = -std::log(1.0 - urng->GetRandom());
      if (std::log(1.0 - urng->GetRandom()) <= (1.0 - e + std::log(e)) * (shape - 1.0)) break;
    }
    x = shape * e;
  } else {
    // Ahrens and Dieter (1974), algorithm GS.
    const double b = (shape + 2.718281828459045) / 2.718281828459045;
    for (long round = 0;; ++round) {
      if (round >= internal::kMaxRejections) return QXMV::Missing();
      const double u = urng->GetRandom();
      if (u == 0.0) continue;
      const double p = u * b;
      if (p > 1.0) {
        x = -std::log((b - p) / shape);
        if (x > 0.0 && std::log(1.0 - urng->GetRandom()) <= std::log(x) * (shape - 1.0)) break;
      } else {
        QXPower::Exponent(std::log(p) / shape, x);
        if (urng->GetRandom() <= std::exp(-x)) break;
      }
    }
  }
  return x / rate;
}

double QXRandomValues::RVAuxF(double x) {
  return internal::KRAuxDensity(x);
}

void QXRandomValues::Display() const {
  using namespace QXDisplay_850;
  static const char* const kNames[] = {"Uniform", "Normal", "Chi-square", "Gamma", "Wishart"};
  DisplayText(1, "QXRandomValues display start");
  DisplayS("Current seed", std::to_string(seed));
  DisplayD("Computational tolerance", tolerance);
  DisplayText(1, urng == nullptr ? "Standard uniform random number generator undefined"
                                 : "Standard uniform random number generator is defined");
  const int type = distType >= Uniform && distType <= Wishart ? distType : Uniform;
  DisplayText(1, std::string("Distribution type: ") + kNames[type]);
  if (isUnivariate) {
    DisplayText(1, "Distribution is univariate");
  } else {
    DisplayText(1, "Distribution is multivariate");
    DisplayI("Number of variates", nVariates);
  }
  DisplayText(1, isStandard ? "Distribution is standard" : "Distribution is not standard");
  if (!isStandard) {
    switch (distType) {
      case Uniform:
        if (isUnivariate) {
          DisplayD("Uniform low boundary", uniLow);
          DisplayD("Uniform upper boundary", uniHigh);
        } else {
          DisplayDV("Uniform low boundaries", uniLows);
          DisplayDV("Uniform upper boundaries", uniHighs);
        }
        break;
      case Normal:
        if (isUnivariate) {
          DisplayD("Normal mean", normMean);
        } else {
          DisplayDV("Normal means", normMeans);
        }
        DisplayD("Normal sigma squared", normSigma2);
        DisplayD("Normal sigma", normSigma);
        if (!isUnivariate) {
          DisplayText(1, "Multivariate normal proportional covariance matrix:");
          normCov.Display();
          DisplayText(1, "Multivariate normal Cholesky factor:");
          normChol.Display();
        }
        break;
      case ChiSquare:
        if (isUnivariate) {
          DisplayD("Chi-square number of degrees of freedom", chiDF);
        } else {
          DisplayDV("Chi-square numbers of degrees of freedom", chiDFs);
        }
        break;
      case Gamma:
        DisplayD("Gamma shape parameter", gamShape);
        DisplayD("Gamma scale parameter", gamScale);
        break;
      case Wishart:
        DisplayI("Wishart parameter P", wishP);
        DisplayD("Wishart parameter M", wishM);
        DisplayText(1, "Wishart scale matrix:");
        wishScale.Display();
        DisplayText(1, "Cholesky factor fmWishartChol:");
        fmWishartChol.Display();
        break;
    }
  }
  DisplayText(1, "QXRandomValues display end");
}

}  // namespace QXMath_850
