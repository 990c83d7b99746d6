#ifndef QX_RANDOM_QXRANDOMVALUES_H
#define QX_RANDOM_QXRANDOMVALUES_H

#include <cstdint>
#include <vector>

#include "qx/foundation/qxexport.h"
#include "qx/matrices/qxsymmatrix.h"
#include "qx/random/qxurandom.h"

namespace QXMath_850 {

// Random variates for components: bootstrap weights, random starts, simulated
// data. Choose a distribution with a SetParam... call, then draw with
// GetRandom: one value for a univariate distribution, a vector for a
// multivariate uniform or normal one, a matrix for a Wishart one. Ready at
// once as a standard uniform on the twister seeded with 34567.
//
// The uniform source is a QXURandom, owned unless given by SetURNGPtr. A
// setter whose arguments fail its check returns false and changes nothing; a
// covariance or scale matrix that can't be factored is reported by false
// after the distribution has been switched. Draws report failure by the
// missing value (QXCommon_850::QXMV) or false.
class QXCOMMON_API QXRandomValues {
 public:
  enum DistType : std::int32_t { Uniform = 0, Normal = 1, ChiSquare = 2, Gamma = 3, Wishart = 4 };

  QXRandomValues();
  ~QXRandomValues();
  QXRandomValues(const QXRandomValues&) = delete;
  QXRandomValues& operator=(const QXRandomValues&) = delete;

  // Tolerance of the Cholesky factorisations of the covariance setters; t > 0.
  bool SetTolerance(double t);

  // Standard uniform on (0, 1).
  bool SetParamUniform();
  // Uniform on [lo, hi); hi > lo.
  bool SetParamUniform(double lo, double hi);
  // n independent standard uniforms; n >= 1.
  bool SetParamUniform(int n);
  // Independent uniforms on [lo[i], hi[i]); equal non-empty sizes, lo[i] < hi[i].
  bool SetParamUniform(const std::vector<double>& lo, const std::vector<double>& hi);
  // Standard normal.
  bool SetParamNormal();
  // Normal with this mean and variance sigma2 > 0 (not standard even at 0, 1).
  bool SetParamNormal(double mean, double sigma2);
  // n independent standard normals; n >= 1.
  bool SetParamNormal(int n);
  // Multivariate normal with covariance sigma2 * cov, drawn as
  // means + sqrt(sigma2) * L z with cov = L L^T by LTChol at the tolerance. The
  // result is false when the factor has no accepted pivot; a semi-definite cov
  // is accepted and its redundant directions get no variance. With one
  // variate the draw is univariate N(means[0], sigma2): cov is not used.
  bool SetParamNormal(const std::vector<double>& means, double sigma2, const QXSymMatrix& cov);
  // Chi-square with df > 0 degrees of freedom.
  bool SetParamChi(double df);
  // Gamma with this shape and rate (the second parameter divides the draw),
  // both > 0.
  bool SetParamGamma(double shape, double rate);
  // Wishart of order p with m degrees of freedom (1 <= p <= m), identity
  // scale, by the triangular (Bartlett) construction with one deliberate
  // difference: every diagonal element is the root of a chi-square with
  // m - p degrees of freedom, so the mean is diag(m - p + i), i = 0..p-1,
  // rather than m I, and m = p can't be drawn.
  bool SetParamWishart(int p, double m);
  // The same with scale S = C C^T: draws are C W C^T; false (after the switch)
  // when S can't be factored.
  bool SetParamWishart(int p, double m, const QXSymMatrix& scale);

  // Gives the object a caller's source, never deleted by it; only the first
  // call after construction or SetSeed takes effect, later ones are ignored
  // but return true. False, changing nothing, for a null pointer.
  bool SetURNGPtr(QXURandom* source);
  // Deletes the current source, even one given by SetURNGPtr, and draws from
  // a new twister seeded with s, which this object owns.
  void SetSeed(unsigned long s);

  // A draw of the univariate distribution; the missing value when the
  // distribution is multivariate or Wishart.
  double GetRandom();
  // A draw of the multivariate uniform or normal distribution into out; false
  // for a univariate distribution, chi-square, gamma and Wishart.
  bool GetRandom(std::vector<double>& out);
  // A Wishart draw into out; false unless the distribution is a multivariate
  // Wishart, or when a chi-square draw fails (always for m = p).
  bool GetRandom(QXSymMatrix& out);

  // Single variates from the current source, whatever distribution is set.
  // Each gives the missing value for bad parameters.
  double RVUni(double lo, double hi);       // hi >= lo; lo + u (hi - lo)
  double RVExp(double rate);                // rate > 0
  double RVSNor();                          // Kinderman and Ramage
  double RVNor(double mean, double sd);     // sd >= 0; sd = 0 gives mean
  double RVChi(double df);                  // df > 0; RVGam(df/2, 0.5)
  double RVGam(double shape, double rate);  // both > 0
  // The auxiliary density of RVSNor's rejection regions.
  double RVAuxF(double x);

  DistType GetDistType() const { return distType; }
  bool IsUnivariate() const { return isUnivariate; }
  bool IsStandard() const { return isStandard; }
  int GetNVariates() const { return nVariates; }
  unsigned long GetSeed() const { return static_cast<unsigned long>(seed); }
  double GetTolerance() const { return tolerance; }

  void Display() const;

 private:
  // Selects a distribution for a successful setter.
  void Select(DistType type, bool univariate, int n, bool standard);
  // Factors a copy of m into chol; true when LTChol accepted a pivot.
  bool Factor(const QXSymMatrix& m, QXSymMatrix& chol) const;

  std::uint64_t seed;
  double tolerance;
  QXURandom* urng;
  bool ownsURNG;
  DistType distType;
  bool isUnivariate;
  std::int32_t nVariates;
  bool isStandard;
  double uniLow, uniHigh;
  std::vector<double> uniLows, uniHighs;
  double normMean;
  std::vector<double> normMeans;
  double normSigma2;
  QXSymMatrix normCov;
  double chiDF;
  std::vector<double> chiDFs;
  double gamShape, gamScale;
  std::int32_t wishP;
  double wishM;
  QXSymMatrix wishScale;
  double normSigma;
  QXSymMatrix normChol;
  QXSymMatrix fmWishartChol;
};

}  // namespace QXMath_850

#endif  // QX_RANDOM_QXRANDOMVALUES_H
