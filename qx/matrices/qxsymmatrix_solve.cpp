// Solvers of QXSymMatrix for systems that may be singular: an independent
// set of rows is chosen first, and the system is solved on it.

#include <vector>

#include "qx/matrices/linpack_d.h"
#include "qx/matrices/qxsymmatrix.h"

namespace QXMath_850 {

namespace {

// x = a^-1 b by LINPACK's DSPCO and DSPSL on a copy of the packed store
// (the upper triangle by columns, position for position); false, with x
// untouched, unless the reciprocal condition estimate is above 0.0.
bool SolvePacked(const QXSymMatrix& a, const std::vector<double>& b, std::vector<double>& x) {
  const int n = a.GetNRows();
  if (n < 1 || static_cast<int>(b.size()) < n) return false;
  std::vector<double> ap(a.AsVectorConst());
  std::vector<int> kpvt(n);
  std::vector<double> z(n);
  const double rcond = Linpack::Dspco(ap.data(), n, kpvt.data(), z.data());
  if (!(rcond > 0.0)) return false;
  std::vector<double> solution(b.begin(), b.begin() + n);
  Linpack::Dspsl(ap.data(), n, kpvt.data(), solution.data());
  x.swap(solution);
  return true;
}

// The rows of a that its cross-products S^T S show independent at tol.
int IndependentRows(const QXSymMatrix& a, double tol, std::vector<int>& rows) {
  QXSymMatrix cross;
  if (!a.ComputeSTransS(cross)) {
    rows.clear();
    return 0;
  }
  return cross.CholIndNonRed(0, tol, rows);
}

// a x = b on the listed rows and columns of a, x spread out over zeros to
// a's order.
bool SolveOnRows(const QXSymMatrix& a, const std::vector<int>& rows, const std::vector<double>& b,
                 std::vector<double>& x) {
  QXSymMatrix sub;
  std::vector<double> bSub, xSub;
  return a.ExtractSubmatrix(rows, sub) && VecExtract(b, rows, bSub) &&
         SolvePacked(sub, bSub, xSub) && VecExpand2(xSub, rows, a.GetNRows(), x);
}

}  // namespace

bool VecExtract(const std::vector<double>& v, const std::vector<int>& indices,
                std::vector<double>& out) {
  std::vector<double> result(indices.size());
  for (std::size_t k = 0; k < indices.size(); ++k) {
    const int p = indices[k];
    if (p < 0 || static_cast<std::size_t>(p) >= v.size()) return false;
    result[k] = v[p];
  }
  out.swap(result);
  return true;
}

bool VecExpand2(const std::vector<double>& v, const std::vector<int>& indices, int n,
                std::vector<double>& out) {
  if (v.size() != indices.size() || n < 0) return false;
  std::vector<double> result(n, 0.0);
  for (std::size_t k = 0; k < indices.size(); ++k) {
    const int p = indices[k];
    if (p < 0 || p >= n) return false;
    result[p] = v[k];
  }
  out.swap(result);
  return true;
}

// Two reductions at most: the independent rows of S, then those of the
// submatrix on them, since rounding in the first search can let through a
// row that is dependent within the smaller block.
bool QXSymMatrix::SolveIndefinite(double tol, const std::vector<double>& b,
                                  std::vector<double>& x) {
  const int n = nRows;
  if (n < 1 || !(tol >= 0.0) || static_cast<int>(b.size()) != n) return false;
  std::vector<int> rows1;
  const int found1 = IndependentRows(*this, 2.0 * tol, rows1);
  if (found1 == 0) return false;
  if (found1 == n) return SolvePacked(*this, b, x);

  QXSymMatrix s1;
  std::vector<double> b1;
  if (!ExtractSubmatrix(rows1, s1) || !VecExtract(b, rows1, b1)) return false;
  std::vector<int> rows2;
  const int found2 = IndependentRows(s1, 2.0 * tol, rows2);
  if (found2 == 0) return false;
  std::vector<double> x1;
  const bool solved = found2 == found1 ? SolvePacked(s1, b1, x1) : SolveOnRows(s1, rows2, b1, x1);
  return solved && VecExpand2(x1, rows1, n, x);
}

bool QXSymMatrix::SolveIndefinite(const QXBitSet& keep, const std::vector<double>& b,
                                  std::vector<double>& x) {
  const int n = nRows;
  const int m = n < keep.Size() ? n : keep.Size();
  if (n < 1 || static_cast<int>(b.size()) != n) return false;
  const int kept = keep.InRangeS(0, m);
  if (kept < 1) return false;
  if (kept == m) return SolvePacked(*this, b, x);
  std::vector<int> rows;
  for (int i = 0; i < n; ++i) {
    if ((i >= m || keep.IsIn(i)) && !IsZeroRow(i, keep)) rows.push_back(i);
  }
  return !rows.empty() && SolveOnRows(*this, rows, b, x);
}

// The result compares only the count with n, so a refused solve (-1) also
// reads as success.
bool QXSymMatrix::SolveIndefiniteGI(double tol, const std::vector<double>& b,
                                    std::vector<double>& x) {
  const int n = nRows;
  if (n < 1 || !(tol >= 0.0)) return false;
  QXSymMatrix cross;
  std::vector<double> c;
  if (!ComputeSTransS(cross) || !ComputeSV(b, c)) return false;
  return cross.LTSolve(c, tol, x) < n;
}

}  // namespace QXMath_850
