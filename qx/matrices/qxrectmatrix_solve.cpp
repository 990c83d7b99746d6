// Redundancy search, residuals of a projection and solvers of QXRectMatrix,
// built on the cross-product Cholesky and sweep of QXSymMatrix and on the
// LINPACK LU factorization.

#include <vector>

#include "qx/matrices/linpack_d.h"
#include "qx/matrices/qxrectmatrix.h"
#include "qx/matrices/qxsymmatrix.h"

namespace QXMath_850 {

namespace {

// w = A^T A, whose rank-tolerant Cholesky finds independent columns, or
// A A^T for rows.
bool CrossProducts(const QXRectMatrix& a, bool rows, QXSymMatrix& w) {
  return rows ? w.ComputeRByRTrans(a) : w.ComputeRTransByR(a);
}

}  // namespace

// The tolerance is squared because the cross-products are squares of the
// matrix's elements: a column is redundant when its residual on the earlier
// kept ones has lost all but tol of its norm.
int QXRectMatrix::FindRedundancies(double tol, QXBitSet& nonRedundant, bool rows) {
  if (tol < 0.0) return -1;
  QXSymMatrix w;
  if (!CrossProducts(*this, rows, w)) return -1;
  std::vector<double> diag;
  w.GetDiagonal(diag);
  return w.LTChol(diag, tol * tol, nonRedundant, false);
}

int QXRectMatrix::FindNonRedunIndices(double tol, std::vector<int>& indices, bool rows) const {
  QXSymMatrix w;
  if (!CrossProducts(*this, rows, w)) {
    indices.clear();
    return 0;
  }
  return w.CholIndNonRed(0, tol * tol, indices);
}

int QXRectMatrix::ExtractFullRank(double tol, QXRectMatrix& out, std::vector<int>& indices,
                                  bool rows) const {
  if (tol < 0.0) return -1;
  FindNonRedunIndices(tol, indices, rows);
  return rows ? ExtractRows(indices, out) : ExtractColumns(indices, out);
}

// The cross-products of [z, A] are swept on z's rows, which leaves in the
// block of A against z the coefficients of A's columns regressed on the
// admitted columns of z; subtracting those multiples leaves the residuals.
bool QXRectMatrix::ResidOfOrthProjection(const QXRectMatrix& z, double tol, QXBitSet& zKept,
                                         QXBitSet& columnsLeft) {
  const int p = nCols;
  const int q = z.nCols;
  if (z.nRows != nRows || nRows < 1 || p < 1 || q < 1 || tol <= 0.0) return false;
  if (&z == this) {
    const QXRectMatrix copy(z);
    return ResidOfOrthProjection(copy, tol, zKept, columnsLeft);
  }
  zKept.Resize(q, false);
  columnsLeft.Resize(p, false);

  QXSymMatrix w(q + p, true);
  if (!w.UpdateXXMat2(z, *this, 1.0)) return false;
  std::vector<double> diag;
  w.GetDiagonal(diag);
  for (int i = 0; i < q; ++i)
    w.Sweep(i, tol, diag, zKept, false);

  for (int i = 0; i < q; ++i) {
    if (!zKept.IsIn(i)) continue;
    for (int j = 0; j < p; ++j)
      AddToColumn(j, z, i, -w.GetElem(q + j, i));
  }
  for (int j = 0; j < p; ++j)
    columnsLeft.Set(j, DotProductCol(j, j) > tol * diag[q + j]);
  return true;
}

// The row-major store reads as A^T to the column-major LINPACK routines, so
// DGECO factors A^T and DGESL with job 1 solves (A^T)^T x = b.
bool QXRectMatrix::SolveLinearSquare(const std::vector<double>& b, std::vector<double>& x,
                                     double minRcond) {
  const int n = nRows;
  if (n != nCols || n < 1 || !(minRcond >= 0.0) || static_cast<int>(b.size()) != n) return false;
  std::vector<double> a(data);
  std::vector<int> ipvt(n);
  std::vector<double> z(n);
  const double rcond = Linpack::Dgeco(a.data(), n, n, ipvt.data(), z.data());
  if (!(rcond > minRcond)) return false;
  std::vector<double> solution(b);
  Linpack::Dgesl(a.data(), n, n, ipvt.data(), solution.data(), 1);
  x.swap(solution);
  return true;
}

// tol serves twice: as the least reciprocal condition of the square solve,
// and as the Cholesky tolerance of the normal equations.
int QXRectMatrix::EstimateLinearGI(const std::vector<double>& b, std::vector<double>& x,
                                   double tol) {
  if (nRows < 1 || nCols < 1 || tol <= 0.0) return -1;
  if (nRows == nCols && SolveLinearSquare(b, x, tol)) return 0;
  QXSymMatrix w;
  std::vector<double> c;
  if (!w.ComputeRTransByR(*this) || !ComputeVR(b, c)) return -1;
  return w.LTSolve(c, tol, x);
}

}  // namespace QXMath_850
