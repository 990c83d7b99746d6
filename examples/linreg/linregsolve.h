// The two least-squares solvers of the regression component. Each reduces
// the cases, a block of rows at a time, to a summary of fixed size, and
// solves from it for the coefficients of the design columns, refusing those
// whose sum of squares left by the columns before them is at most tol of
// their own. Rows hold the design columns, then the target, then the weight.
#ifndef QX_EXAMPLES_LINREG_LINREGSOLVE_H
#define QX_EXAMPLES_LINREG_LINREGSOLVE_H

#include <qx/qxcommon.h>

#include <limits>
#include <vector>

namespace linreg {

// What both solvers give: the coefficients of the design columns (0 where
// refused) and the inverse of their corrected cross-products (raw ones
// without an intercept), zero in refused rows and columns; the residual and
// total sums of squares; the weighted means, count and sum of weights.
struct Solution {
  std::vector<bool> kept;
  std::vector<double> coef;
  std::vector<double> inverse;  // q by q, row-major
  std::vector<double> means;    // q + 1, the target last
  double rss = 0.0, tss = 0.0, weightSum = 0.0;
  // The intercept when a refinement set it; NaN: from the means.
  double intercept = std::numeric_limits<double>::quiet_NaN();
};

// Takes the rows a block at a time (the first `rows` rows of `block`).
class Solver {
 public:
  virtual ~Solver() = default;
  virtual void Add(const QXMath_850::QXRectMatrix& block, int rows) = 0;
  // The weighted means of the columns so far.
  virtual const std::vector<double>& Means() const = 0;
  virtual Solution Solve(double tol) const = 0;
  // The means and cross-products that a parallel fit pools, or null when
  // the solver keeps no such summary.
  virtual QXMath_850::QXMeansXProdData* Pooled() { return nullptr; }
};

// Accumulates blocks with QXMeansXProducts and sweeps the design columns in
// order with QXSymMatrix::Sweep.
class SweepSolver : public Solver {
 public:
  SweepSolver(int q, bool intercept, bool weighted);
  void Add(const QXMath_850::QXRectMatrix& block, int rows) override;
  const std::vector<double>& Means() const override { return acc.GetMeans(); }
  Solution Solve(double tol) const override;
  QXMath_850::QXMeansXProdData* Pooled() override { return &acc; }

 private:
  int q;
  QXMath_850::QXMeansXProducts acc;
};

// Keeps the triangular factor R of the weighted rows, centred at their means
// with an intercept: each block is stacked under R, with one more row that
// carries the shift between the block's means and those before it, and the
// stack is reduced by Householder QR (Dqrdc). Solve refuses columns in order
// by pivoting them to the end (Dqrdc's final columns) and solves with Dqrsl.
class QRSolver : public Solver {
 public:
  QRSolver(int q, bool intercept, bool weighted);
  void Add(const QXMath_850::QXRectMatrix& block, int rows) override;
  const std::vector<double>& Means() const override { return means; }
  Solution Solve(double tol) const override;

 private:
  int p;  // design columns and the target
  bool intercept, weighted;
  double weightSum = 0.0;
  std::vector<double> means;
  std::vector<double> r;  // p by p, column-major, upper triangle
  std::vector<double> stack, qraux, work, blockMeans;
  std::vector<int> jpvt;
};

}  // namespace linreg

#endif  // QX_EXAMPLES_LINREG_LINREGSOLVE_H
