#ifndef QX_DISTRIBUTIONS_QXDISTFUN_H
#define QX_DISTRIBUTIONS_QXDISTFUN_H

#include <vector>

#include "qx/foundation/qxexport.h"

namespace QXMath_850 {

// Cumulative, upper-tail, inverse and density functions of the distributions
// that components turn their statistics into probabilities with, and the
// special functions beneath them. Stateless and re-entrant.
//
// Two tiers. The lower-case computing routines take references and report
// through a `long&` status, written to 0 at entry: 0 computed, 1 invalid
// argument, 2 no result (iteration failure, overflow, or a lower routine's
// missing value); any status above 0 comes with the missing value. The
// capitalised public functions take plain doubles and return the missing
// value on any bad input. IdfBeta alone fails with -1.0, as betinv does.
class QXCOMMON_API QXDistFun {
 public:
  // ---- Computing tier: special functions.

  // Error function and its complement, to full double accuracy (derfc loses
  // relative accuracy in proportion to x*x in its far tail).
  static double derf(const double& x);
  static double derfc(const double& x);
  // Natural log of the gamma function for x > 0; exactly 0 at 1 and 2, the
  // missing value for x not above 0.
  static double dnlgam(const double& x);
  static double kvatdnlgam(const double& x);
  // Standard normal cumulative function.
  static double prbnrm(const double& z);
  // Standard normal quantile; the missing value unless 0 < p < 1.
  static double probit(const double& p);
  // Auxiliary function of the normal approximation to the beta.
  static double cbtaux(const double& x);

  // ---- Computing tier: distributions.

  // Regularised incomplete gamma: P(a, x) when lower, else Q(a, x).
  static double gammad(const double& x, const double& a, const bool& lower, long& status);
  // Regularised incomplete beta I_x(a, b).
  static double cdfbet(const double& x, const double& a, const double& b, long& status);
  // Inverse of cdfbet in p; -1.0 on failure.
  static double betinv(const double& p, const double& a, const double& b);
  // Exponential cumulative function.
  static double cdfexp(const double& x, const double& rate, long& status);
  // Student t and F cumulative functions and quantiles, chi-square quantile.
  static double kvatcdft(const double& t, const double& df, long& status);
  static double kvatcdff(const double& f, const double& df1, const double& df2, long& status);
  static double kvatidft(const double& p, const double& df, long& status);
  static double kvatidff(const double& p, const double& df1, const double& df2, long& status);
  static double kvatidfchi(const double& p, const double& df, long& status);
  // Chi-square quantile by bisection from a start value x0 (> 0).
  static double idfchb(const double& p, const double& df, const double& x0, long& status);

  // ---- Public tier.

  static double CdfStdNorm(double z);
  static double CdfNorm(double x, double mean, double sd);
  static double PdfNormalStandard(double x);
  // A negative sd is not refused and gives a negative density.
  static double PdfNormal(double x, double mean, double sd);
  static double IdfStdNorm(double p);
  static double IdfNorm(double p, double mean, double sd);

  static double CdfT(double t, double df);
  static double SigT(double t, double df);
  static double IdfT(double p, double df);
  static double PdfT(double t, double df, long& status);

  static double CdfF(double f, double df1, double df2);
  static double SigF(double f, double df1, double df2);
  static double IdfF(double p, double df1, double df2);

  static double CdfChi(double x, double df);
  static double SigChi(double x, double df);
  static double IdfChi(double p, double df);

  static double CdfBeta(double x, double a, double b);
  // Fails with -1.0, not the missing value.
  static double IdfBeta(const double& p, const double& a, const double& b);

  // Gamma with shape and rate (mean shape / rate).
  static double CdfGam(double x, double shape, double rate);
  static double IdfGam(const double& p, const double& shape, const double& rate);
  static double PdfGamma(double x, double shape, double rate);

  // ---- Noncentral distributions: Poisson mixtures of the central routines,
  // summed forward from about 7 standard deviations below the centre of the
  // weights until an error bound is met (at most 60000 steps).

  // Noncentral chi-square; the sum stops when the remaining weight times the
  // next term is at most 1e-12.
  static double NonCentralCdfChi(double x, double df, double ncp);
  // Noncentral incomplete beta with the caller's error bound tol (tol >= 1:
  // the first weighted term only); status as in the computing tier.
  static double ncdbet(const double& x, const double& a, const double& b, const double& ncp,
                       long& status, double tol);
  static double NonCentralCdfF(double f, double df1, double df2, double ncp, double tol);
  // Noncentral Student t in the form of AS 243; error bound 1e-12.
  static double NonCentralCdfT(double t, double df, double delta);
  // Noncentral Student t density, summed outward from its largest term.
  static double NonCentralPdfT(double t, double df, double delta, long& status);
  // The noncentrality at which the cumulative function equals p, by bracket
  // and bisection; the missing value as soon as an evaluation gives it.
  static double FindNCParamChi(double x, double df, double p, double tol);
  static double FindNCParamF(double f, double df1, double df2, double p, double tol);
  // t must be non-negative; the result may be negative.
  static double FindNCParamT(double t, double df, double p, double tol);

  // ---- Discrete distributions. Their status codes differ from the rest,
  // deliberately: see each function.

  // Log of the binomial coefficient; status 1 and the missing value unless
  // n >= k >= 0.
  static double dnlbnc(const double& n, const double& k, long& status);
  // Binomial probability of x; status 1 for n below 1 or p outside [0, 1],
  // 2 on overflow. x outside 0..n or not whole has probability 0.
  static double PdfBin(double x, double n, double p, long& status);
  // Binomial cumulative function at floor(x); status 1 for n below 1 or p
  // outside [0, 1], 3 for a fractional n.
  static double CdfBin(double x, double n, double p, long& status);
  // Largest k with CdfBin(k) <= prob; status 1 for a fractional n, 2 for n
  // below 1 or p or prob outside [0, 1].
  static double IdfBin(double prob, double n, double p, long& status);
  // Probability of x marked items among b drawn from total holding a marked;
  // the missing value outside the support or for inconsistent sizes.
  static double PdfHyper(long x, long total, long a, long b);
  // Hypergeometric cumulative function, after AS 152; status 1 when an
  // argument is not whole or the sizes are inconsistent.
  static double CDFHyper(double x, double total, double a, double b, int& status);
  // Order-statistic confidence interval of the median of sorted values with
  // frequencies (n of them, `total` cases) at `conf` percent; with
  // `coverage`, `level` is the interval's exact coverage in percent. Outputs
  // stay missing where no interval exists.
  static void Mednci(long n, const std::vector<double>& values, const std::vector<double>& freqs,
                     double total, double conf, bool coverage, double& low, double& high,
                     double& level);
  // Percentile `pct` of grouped data: nCuts = 1, groups of width cuts[0]
  // centred on the values; nCuts > 1, groups between the cuts; nCuts = 0,
  // the values are group centres. flag: -1 fewer than 2 values, 0 computed
  // (or no group holds the target), 1 below the first centre, 2 above the
  // last.
  static void GPTile(long n, double pct, const std::vector<double>& values,
                     const std::vector<double>& freqs, const std::vector<double>& cuts, long nCuts,
                     double& result, long& flag);
};

}  // namespace QXMath_850

#endif  // QX_DISTRIBUTIONS_QXDISTFUN_H
