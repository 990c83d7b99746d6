#include "qx/matrices/internal/sparseproducts.h"

#include <algorithm>
#include <cstddef>

#include "qx/matrices/internal/packedlayout.h"
#include "qx/matrices/internal/symproducts.h"

namespace QXMath_850 {
namespace internal {

namespace {

// t = S x for the packed s of order n and x given by count entries at
// ascending positions: each t_i takes the terms x_j a_ij in the order of j,
// as the dense S v does, by walking the symmetric row of each position.
void SymTimesSparse(const double* a, int n, int count, const int* index, const double* x,
                    std::vector<double>& t) {
  t.assign(n, 0.0);
  for (int l = 0; l < count; ++l) {
    const double xl = x[l];
    WalkSymmetricRow(a, index[l], n, [&t, xl](int i, double e) { t[i] = t[i] + xl * e; });
  }
}

// Sum over the entries of a sparse row of t at its position times its value.
double DotWithEntries(const std::vector<double>& t, int count, const int* index, const double* x) {
  double sum = 0.0;
  for (int q = 0; q < count; ++q)
    sum = sum + t[index[q]] * x[q];
  return sum;
}

// Hands f(c, t, columns) each column c of r that has a non-zero, in order,
// with t = S r_c; columns is r's transpose, so that its row c is column c.
template <typename F>
void ForEachSTimesColumn(const QXSymMatrix& s, const QXSparseRectMatrix& r, F f) {
  QXSparseRectMatrix columns(r);
  columns.Transpose();
  std::vector<double> t;
  const int* rows = nullptr;
  const double* x = nullptr;
  for (int c = 0; c < columns.GetNRows(); ++c) {
    const int count = columns.GetRowEntries(c, rows, x);
    if (count == 0) continue;
    SymTimesSparse(s.AsVectorConst().data(), s.GetNRows(), count, rows, x, t);
    f(c, t, columns);
  }
}

// Element (c, e), e <= c, of R^T S R is handed to sink(c, e, value) for each
// c and e whose columns of r are both non-zero (the others are 0.0): the dot
// of S r_c with column e, read in the order of r's rows.
template <typename Sink>
void RTransSRByColumns(const QXSymMatrix& s, const QXSparseRectMatrix& r, Sink sink) {
  ForEachSTimesColumn(
      s, r, [&sink](int c, const std::vector<double>& t, const QXSparseRectMatrix& columns) {
        const int* rows = nullptr;
        const double* x = nullptr;
        for (int e = 0; e <= c; ++e) {
          const int other = columns.GetRowEntries(e, rows, x);
          if (other > 0) sink(c, e, DotWithEntries(t, other, rows, x));
        }
      });
}

}  // namespace

bool SparseRTransS(const QXSymMatrix& s, const QXSparseRectMatrix& r, IQXRectMatrix& out) {
  const int n = s.GetNRows();
  if (r.GetNRows() != n || n < 0 || !PrepareRectOut(out, r.GetNCols(), n)) return false;
  double* target = static_cast<QXRectMatrix&>(out).AsVector().data();
  ForEachSTimesColumn(s, r,
                      [target, n](int c, const std::vector<double>& t, const QXSparseRectMatrix&) {
                        std::copy(t.begin(), t.end(), target + static_cast<std::size_t>(c) * n);
                      });
  return true;
}

// Row i of R S R^T: t = S r_i, then its dots with the rows of r up to i.
bool SparseRSRTrans(const QXSymMatrix& s, const QXSparseRectMatrix& r, IQXSymMatrix& out) {
  const int n = s.GetNRows();
  if (r.GetNCols() != n || n < 0) return false;
  const int k = r.GetNRows();
  QXSymMatrix temp;
  QXSymMatrix& target = &out == &s ? temp : static_cast<QXSymMatrix&>(out);
  if (!PrepareSymOut(target, k, false)) return false;
  std::vector<double> t;
  const int* cols = nullptr;
  const double* x = nullptr;
  for (int i = 0; i < k; ++i) {
    const int count = r.GetRowEntries(i, cols, x);
    if (count == 0) continue;
    SymTimesSparse(s.AsVectorConst().data(), n, count, cols, x, t);
    double* row = target.AsVector().data() + RowStart(i);
    for (int j = 0; j <= i; ++j) {
      const int other = r.GetRowEntries(j, cols, x);
      row[j] = DotWithEntries(t, other, cols, x);
    }
  }
  if (&target != &out) static_cast<QXSymMatrix&>(out) = temp;
  return out.IsValidMatrix();
}

bool SparseRTransSR(const QXSymMatrix& s, const QXSparseRectMatrix& r, IQXSymMatrix& out) {
  const int n = s.GetNRows();
  if (r.GetNRows() != n || n < 0) return false;
  QXSymMatrix temp;
  QXSymMatrix& target = &out == &s ? temp : static_cast<QXSymMatrix&>(out);
  if (!PrepareSymOut(target, r.GetNCols(), false)) return false;
  double* a = target.AsVector().data();
  RTransSRByColumns(s, r, [a](int c, int e, double value) { a[RowStart(c) + e] = value; });
  if (&target != &out) static_cast<QXSymMatrix&>(out) = temp;
  return out.IsValidMatrix();
}

void AddSparseRTransSR(QXSymMatrix& a, const QXSparseRectMatrix& r, const QXSymMatrix& s) {
  const int corner = a.GetNRows() - r.GetNCols();
  double* store = a.AsVector().data();
  RTransSRByColumns(s, r, [store, corner](int c, int e, double value) {
    store[RowStart(corner + c) + corner + e] += value;
  });
}

// Case k adds (w_k x_p) x_q to element (p, q), p >= q, of the corner for
// each pair of its non-zeros: the grouping and, element by element, the
// order of the dense rank-one updates, at the cost of the pairs alone.
void AddSparseCrossProducts(QXSymMatrix& a, const QXSparseRectMatrix& r,
                            const std::vector<double>& w) {
  const int corner = a.GetNRows() - r.GetNCols();
  double* store = a.AsVector().data();
  const int* cols = nullptr;
  const double* x = nullptr;
  for (int k = 0; k < r.GetNRows(); ++k) {
    const int count = r.GetRowEntries(k, cols, x);
    const double wk = w[k];
    if (count == 0 || wk == 0.0) continue;
    for (int l = 0; l < count; ++l) {
      const double s = wk * x[l];
      double* row = store + RowStart(corner + cols[l]) + corner;
      for (int q = 0; q <= l; ++q)
        row[cols[q]] += s * x[q];
    }
  }
}

}  // namespace internal
}  // namespace QXMath_850
