// The in-place factorizations of QXSymMatrix: the sweep operator, the
// rank-tolerant row-wise Cholesky factorization, and what is built on them.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "qx/foundation/qxmissingvalue.h"
#include "qx/matrices/blas1_d.h"
#include "qx/matrices/internal/factorization.h"
#include "qx/matrices/internal/kernels.h"
#include "qx/matrices/internal/packedlayout.h"
#include "qx/matrices/qxmathfun.h"
#include "qx/matrices/qxsymmatrix.h"

namespace QXMath_850 {

namespace {

using internal::DiagIndex;
using internal::PackedIndex;
using internal::RowStart;
using internal::Scratch;
using internal::WalkColumn;
using internal::WalkDiagonal;
using internal::WalkSymmetricRow;
using QXCommon_850::QXMV;

// r[j] += c * x[j] for j < len.
inline void AddScaledTo1(int len, const double* __restrict__ x, double* __restrict__ r, double c) {
  for (int j = 0; j < len; ++j) {
    r[j] += c * x[j];
  }
}

// Columns of the factor, and steps of the triangular inverse and of L^T L,
// that the blocked Cholesky routines take together.
constexpr int kCholBlock = 32;
// Columns of a panel of the factor.
constexpr int kCholPanel = 16;

// Calls run(top, count) for each run of consecutive k, from hi down to lo,
// with keep[k - base] set: the run takes k = top, top - 1, ..., in that order.
template <typename Run>
void ForEachKeptRunDown(int hi, int lo, int base, const unsigned char* keep, Run run) {
  int k = hi;
  while (k >= lo) {
    if (!keep[k - base]) {
      --k;
      continue;
    }
    int end = k;
    while (end - 1 >= lo && keep[end - 1 - base])
      --end;
    run(k, k - end + 1);
    k = end - 1;
  }
}

// Cholesky-Banachiewicz factorization in the packed store a of order n,
// tolerant of rank deficiency: a pivot at or below tol * diag[i] is set to
// 0.0 and its row counts as redundant, and a zero pivot turns the elements of
// later rows in its column into 0.0. accept(i) is called for each accepted
// pivot, in order; with limit > 0 the work stops once limit pivots are in,
// leaving the store part-way. Returns the number of redundant rows met.
//
// Element L_ij is (a_ij - s_ij) / L_jj, where s_ij adds L_ik * L_jk to 0.0
// for k = 0..j-1 in order, as a row-by-row loop with DDot forms it. The sums
// are carried in a triangle of their own and the factor is made by panels
// of columns, held transposed: a panel's columns take the terms of their own
// panel column by column, every row side by side, and then the triangle to
// the right takes the panel's terms through the block kernel. Each element
// still takes its terms in order, so the bits are those of the plain loop.
template <typename Accept>
int RowCholesky(double* a, int n, const double* diag, double tol, int limit, Accept accept) {
  if (n < 1) return 0;
  const std::size_t nn = static_cast<std::size_t>(n);
  const std::size_t panel = kCholPanel * nn;
  // One allocation: the panel's factor, sums and originals, then the sums'
  // triangle beyond the first panel.
  const std::size_t triangle = n > kCholPanel ? internal::PackedSize(n) : 0;
  Scratch work(3 * panel + triangle);
  double* l = work.data();  // l[c * n + i] = L(i, k0 + c)
  double* s = l + panel;    // s[c * n + i] = s(i, k0 + c)
  double* g = s + panel;    // g[c * n + i] = a(i, k0 + c)
  double* sums = n > kCholPanel ? g + panel : nullptr;
  std::fill(sums, sums + triangle, 0.0);
  int redundant = 0;
  int accepted = 0;
  for (int k0 = 0; k0 < n; k0 += kCholPanel) {
    const int k1 = n - k0 < kCholPanel ? n : k0 + kCholPanel;
    for (int i = k0; i < n; ++i) {
      const std::size_t at = RowStart(i) + k0;
      const int cols = (i < k1 ? i + 1 : k1) - k0;
      for (int c = 0; c < cols; ++c) {
        g[c * nn + i] = a[at + c];
        s[c * nn + i] = k0 == 0 ? 0.0 : sums[at + c];
      }
    }
    for (int c = 0; c < k1 - k0; ++c) {
      const int j = k0 + c;
      double* sc = s + c * nn;
      const double* gc = g + c * nn;
      double* lc = l + c * nn;
      internal::UpdateVector(sc + j, n - j, c, l + j, n, l + j, n);
      const double r = gc[j] - sc[j];
      double ljj = 0.0;
      if (r > tol * diag[j]) {
        ljj = std::sqrt(r);
        accept(j);
        ++accepted;
      } else {
        ++redundant;
      }
      lc[j] = ljj;
      if (limit > 0 && accepted >= limit) return redundant;
      if (ljj != 0.0) {
        for (int i = j + 1; i < n; ++i)
          lc[i] = (gc[i] - sc[i]) / ljj;
      } else {
        for (int i = j + 1; i < n; ++i)
          lc[i] = 0.0;
      }
    }
    for (int i = k0; i < n; ++i) {
      const std::size_t at = RowStart(i) + k0;
      const int cols = (i < k1 ? i + 1 : k1) - k0;
      for (int c = 0; c < cols; ++c)
        a[at + c] = l[c * nn + i];
    }
    if (k1 < n) internal::UpdateRegion(sums, k1, n, k1, n, true, k1 - k0, l, n, l, n, nullptr);
  }
  return redundant;
}

// LINPACK DTRDI's inverse of the lower triangular factor in the packed store
// a of order n, in place; a zero pivot zeroes its row and column. Element
// (r, j), r > j, of the inverse X takes, in this order: 0.0 + L_rj * (1 /
// L_rr), or 0.0 for a zero L_rr; then X_rk * L_kj for k = r - 1 down to
// j + 1, skipping zero L_kk; then the factor -1 / L_jj, or 0.0 for a zero
// L_jj. That is DTRDI's column walk, step k for k = n - 1 down to 0.
//
// The steps go in blocks K = k0..k1-1, from the last. A block's own square
// takes its steps as DTRDI does; the columns K below it then take theirs
// column by column, every row side by side; the rows below the block, left
// of it, take the block's steps through the block kernel; and the block's
// rows left of it start and take their own steps as whole vectors. The
// originals of the block's rows, which every step reads, are copied first.
void InvertLower(double* a, int n) {
  const std::size_t nn = static_cast<std::size_t>(n);
  Scratch work(static_cast<std::size_t>(kCholBlock) * (2 * nn + kCholBlock));
  unsigned char keep[kCholBlock];
  double factor[kCholBlock];
  for (int k1 = n; k1 > 0; k1 -= kCholBlock) {
    const int k0 = k1 > kCholBlock ? k1 - kCholBlock : 0;
    const int w = k1 - k0;
    const int below = n - k1;
    double* left = work.data();  // left[c * k0 + j] = L(k0 + c, j), j < k0
    double* square = left + static_cast<std::size_t>(w) * k0;  // [c * w + e] = L(k0 + c, k0 + e)
    double* cols = square + static_cast<std::size_t>(w) * w;   // [c * n + r] = (r, k0 + c), r >= k1
    for (int c = 0; c < w; ++c) {
      const double* row = a + RowStart(k0 + c);
      std::copy(row, row + k0, left + static_cast<std::size_t>(c) * k0);
      std::copy(row + k0, row + k0 + c + 1, square + static_cast<std::size_t>(c) * w);
    }

    // The block's square, step by step.
    for (int k = k1 - 1; k >= k0; --k) {
      double* rowK = a + RowStart(k);
      if (rowK[k] == 0.0) {
        keep[k - k0] = 0;
        for (int r = k + 1; r < k1; ++r)
          a[RowStart(r) + k] = 0.0;
        for (int j = k0; j <= k; ++j)
          rowK[j] = 0.0;
        continue;
      }
      keep[k - k0] = 1;
      rowK[k] = 1.0 / rowK[k];
      factor[k - k0] = -rowK[k];
      for (int r = k + 1; r < k1; ++r) {
        double* row = a + RowStart(r);
        row[k] = factor[k - k0] * row[k];
        AddScaledTo1(k - k0, rowK + k0, row + k0, row[k]);
      }
      for (int j = k0; j < k; ++j)
        rowK[j] = 0.0 + rowK[j] * rowK[k];
    }

    // Columns K below the block, the last first: each takes the later
    // columns' steps, then its own factor.
    if (below > 0) {
      for (int r = k1; r < n; ++r) {
        const double* row = a + RowStart(r) + k0;
        for (int c = 0; c < w; ++c)
          cols[c * nn + r] = row[c];
      }
      for (int c = w - 1; c >= 0; --c) {
        double* v = cols + c * nn + k1;
        ForEachKeptRunDown(k1 - 1, k0 + c + 1, k0, keep, [&](int top, int count) {
          const int t = top - k0;
          internal::UpdateVector(v, below, count, cols + t * nn + k1, -n, square + t * w + c, -w);
        });
        if (keep[c]) {
          for (int r = 0; r < below; ++r)
            v[r] = factor[c] * v[r];
        } else {
          std::fill(v, v + below, 0.0);
        }
      }
      for (int r = k1; r < n; ++r) {
        double* row = a + RowStart(r) + k0;
        for (int c = 0; c < w; ++c)
          row[c] = cols[c * nn + r];
      }
    }
    if (k0 == 0) continue;

    // Rows below the block, left of it: the block's steps in one pass.
    if (below > 0) {
      ForEachKeptRunDown(k1 - 1, k0, k0, keep, [&](int top, int count) {
        const int t = top - k0;
        internal::UpdateRegion(a, k1, n, 0, k0, false, count, cols + t * nn, -n,
                               left + static_cast<std::size_t>(t) * k0, -k0, nullptr);
      });
    }
    // The block's rows left of it: the start, then the block's steps.
    for (int r = k0; r < k1; ++r) {
      double* row = a + RowStart(r);
      if (!keep[r - k0]) {
        std::fill(row, row + k0, 0.0);
      } else {
        const double inverse = row[r];
        for (int j = 0; j < k0; ++j)
          row[j] = 0.0 + row[j] * inverse;
      }
      ForEachKeptRunDown(r - 1, k0, k0, keep, [&](int top, int count) {
        internal::UpdateVector(row, k0, count, left + static_cast<std::size_t>(top - k0) * k0, -k0,
                               row + top, -1);
      });
    }
  }
}

// X^T X in place of the lower triangular X in the packed store a of order
// n: element (i, j), i >= j, is 0.0 + X_ij * X_ii, then X_ri * X_rj added for
// r = i + 1..n-1 in order. Rows r are taken in blocks R, in order: the rows
// above R take R's terms through the block kernel, from a copy of R's rows,
// and then R's own rows take theirs row by row.
void LowerTransTimesLower(double* a, int n) {
  Scratch work(static_cast<std::size_t>(kCholBlock) * (n > 0 ? n : 0));
  double* rows = work.data();
  for (int r0 = 0; r0 < n; r0 += kCholBlock) {
    const int r1 = n - r0 < kCholBlock ? n : r0 + kCholBlock;
    if (r0 > 0) {
      for (int r = r0; r < r1; ++r)
        std::copy(a + RowStart(r), a + RowStart(r) + r0,
                  rows + static_cast<std::size_t>(r - r0) * r0);
      internal::UpdateRegion(a, 0, r0, 0, r0, true, r1 - r0, rows, r0, rows, r0, nullptr);
    }
    for (int r = r0; r < r1; ++r) {
      double* rowR = a + RowStart(r);
      internal::UpdateRegion(a, r0, r, 0, r, true, 1, rowR, 0, rowR, 0, nullptr);
      const double last = rowR[r];
      for (int j = 0; j <= r; ++j)
        rowR[j] = 0.0 + rowR[j] * last;
    }
  }
}

double SmallestDiagonal(const std::vector<double>& a, int n) {
  double smallest = a[0];
  WalkDiagonal(a.data(), 0, n, [&smallest](int, double d) {
    if (d < smallest) smallest = d;
  });
  return smallest;
}

// Sum over j > row of element (j, row) * x[j], walking down the column.
double ColumnBelowDiagonalDot(const std::vector<double>& a, int n, int row,
                              const std::vector<double>& x) {
  double sum = 0.0;
  WalkColumn(a.data(), row, row + 1, n, [&](int j, double e) { sum += e * x[j]; });
  return sum;
}

// Sum over j < row of element (row, j) * x[j].
double RowBeforeDiagonalDot(const std::vector<double>& a, int row, const std::vector<double>& x) {
  double sum = 0.0;
  const std::size_t start = RowStart(row);
  for (int j = 0; j < row; ++j)
    sum += a[start + j] * x[j];
  return sum;
}

// Forward substitution with the factor in a: x_i = (b_i - s_i) / L_ii, or
// 0.0 for a zero L_ii, where s_i adds L_ij * x_j to 0.0 for j < i in order.
// Eight rows go together over the columns left of all of them, as eight
// independent sums, and then finish one by one. b and x may be the same.
void ForwardSubstitute(const double* a, int n, const double* b, double* x) {
  constexpr int kTogether = 8;
  for (int i0 = 0; i0 < n; i0 += kTogether) {
    const int m = n - i0 < kTogether ? n - i0 : kTogether;
    const double* row[kTogether];
    double sum[kTogether];
    for (int r = 0; r < kTogether; ++r) {
      row[r] = a + RowStart(i0 + (r < m ? r : 0));
      sum[r] = 0.0;
    }
    for (int j = 0; j < i0; ++j) {
      const double xj = x[j];
#pragma GCC unroll 8
      for (int r = 0; r < kTogether; ++r)
        sum[r] = sum[r] + row[r][j] * xj;
    }
    for (int r = 0; r < m; ++r) {
      const int i = i0 + r;
      double s = sum[r];
      for (int j = i0; j < i; ++j)
        s = s + row[r][j] * x[j];
      const double aii = row[r][i];
      x[i] = aii == 0.0 ? 0.0 : (b[i] - s) / aii;
    }
  }
}

// Solves L L^T x = b with the factor in a: forward, then backward down the
// columns. A zero diagonal gives a zero component in both passes. The
// backward sums can't go together: each starts with the component found
// just before it.
void SubstituteBoth(const std::vector<double>& a, int n, const std::vector<double>& b,
                    std::vector<double>& x) {
  ForwardSubstitute(a.data(), n, b.data(), x.data());
  for (int i = n - 1; i >= 0; --i) {
    const double aii = a[DiagIndex(i)];
    x[i] = aii == 0.0 ? 0.0 : (x[i] - ColumnBelowDiagonalDot(a, n, i, x)) / aii;
  }
}

// The start of SweepOnSelected and SweepOnMany: an empty record of swept rows
// is sized to the matrix, and the reference diagonal is the caller's array or
// else a copy of the matrix's own, kept in `local`.
double* PrepareBulkSweep(const QXSymMatrix& a, double* diag, std::vector<double>& local,
                         QXBitSet& swept) {
  if (diag == nullptr) {
    a.GetDiagonal(local);
    diag = local.data();
  }
  if (swept.Size() == 0) swept.Resize(a.QXSymMatrix::GetNRows(), false);
  return diag;
}

// The last check of the checked bulk sweeps: a negative reference diagonal
// is refused; otherwise it is floored at 1, in the caller's array.
bool CheckAndFloorDiagonal(double* diag, int n) {
  for (int i = 0; i < n; ++i) {
    if (diag[i] < 0.0) return false;
  }
  for (int i = 0; i < n; ++i) {
    if (diag[i] < 1.0) diag[i] = 1.0;
  }
  return true;
}

// Rows that SweepOnMany takes together.
constexpr int kSweepBlock = 48;

// Elements (r, j), j0 <= j < j1 < r, take the recorded sweeps m0..m1-1: the
// multipliers of sweep m are cs[m * n + i] and the new pivot column values
// ys[m * n + j].
void CatchUpRow(double* a, int n, int r, int j0, int j1, int m0, int m1, const double* cs,
                const double* ys) {
  if (j1 <= j0 || m1 <= m0) return;
  const std::size_t at = static_cast<std::size_t>(m0) * n;
  internal::UpdateVector(a + RowStart(r) + j0, j1 - j0, m1 - m0, ys + at + j0, n, cs + at + r, n);
}

// Elements (i, r), r < i0 <= i < n, take the recorded sweeps m0..m1-1,
// through the contiguous copy col.
void CatchUpColumn(double* a, int n, int r, int i0, int m0, int m1, const double* cs,
                   const double* ys, double* col) {
  if (i0 >= n || m1 <= m0) return;
  WalkColumn(a, r, i0, n, [&](int i, double v) { col[i] = v; });
  const std::size_t at = static_cast<std::size_t>(m0) * n;
  internal::UpdateVector(col + i0, n - i0, m1 - m0, cs + at + i0, n, ys + at + r, n);
  WalkColumn(a, r, i0, n, [&](int i, double& v) { v = col[i]; });
}

// The sweeps of rows k0..k1-1 of the packed store a of order n, in order,
// each with the pivot and damage tests of QXSymMatrix::Sweep and the same
// bits. A sweep of row t adds c_i * y_j to every element (i, j), i >= j, off
// row and column t, where c_i is minus (for a positive pivot) the element
// (i, t) before the sweep and y_j = (j, t) / |pivot| its new value; those
// are recorded. Each sweep reads only the diagonal, kept up to date at every
// sweep, and its own row and column, which first take the recorded sweeps
// they have missed. At the end the block's rows and columns take the sweeps
// after their own, and every other element takes all of them through the
// kernel; each element's sweeps still come in order. ok[t - k0] tells
// whether row t was swept; before and after hold its diagonal around it.
void SweepBlock(double* a, int n, int k0, int k1, double tol, const double* diag, QXBitSet& swept,
                std::vector<double>& work, unsigned char* ok, double* before, double* after) {
  work.resize((2 * static_cast<std::size_t>(k1 - k0) + 1) * n);
  double* cs = work.data();
  double* ys = cs + static_cast<std::size_t>(k1 - k0) * n;
  double* col = ys + static_cast<std::size_t>(k1 - k0) * n;
  // The recorded sweeps that row and column r of the block have taken.
  int done[kSweepBlock];
  int steps = 0;
  const int limit = n < swept.Size() ? n : swept.Size();
  for (int t = k0; t < k1; ++t) {
    CatchUpRow(a, n, t, 0, k0, 0, steps, cs, ys);
    for (int r = k0; r < t; ++r)
      CatchUpRow(a, n, t, r, r + 1, done[r - k0], steps, cs, ys);
    CatchUpColumn(a, n, t, t + 1, 0, steps, cs, ys, col);
    done[t - k0] = steps;
    const std::size_t tt = DiagIndex(t);
    const double p = a[tt];
    before[t - k0] = p;
    after[t - k0] = p;
    ok[t - k0] = 0;
    const bool wasSwept = swept.IsIn(t);
    if (!wasSwept) {
      if (tol * diag[t] >= p) continue;
      bool damaged = false;
      for (int i = 0; i < limit && !damaged; ++i) {
        if (!swept.IsIn(i)) continue;
        const double ait = a[PackedIndex(i, t)];
        const double q = a[DiagIndex(i)] - (ait / p) * ait;
        damaged = !((q * tol * diag[i]) > -1.0);
      }
      if (damaged) continue;
    }
    const double d = -1.0 / p;
    const double scale = std::fabs(d);
    double* c = cs + static_cast<std::size_t>(steps) * n;
    double* y = ys + static_cast<std::size_t>(steps) * n;
    for (int i = 0; i < n; ++i) {
      if (i == t) {
        c[i] = 0.0;
        y[i] = 0.0;
        continue;
      }
      double& ait = a[PackedIndex(i, t)];
      const double b = ait;
      c[i] = d < 0.0 ? -b : b;
      y[i] = scale * b;
      ait = y[i];
    }
    a[tt] = d;
    WalkDiagonal(a, 0, n, [&](int i, double& aii) {
      if (i != t) aii += c[i] * y[i];
    });
    swept.Set(t, !wasSwept);
    ok[t - k0] = 1;
    after[t - k0] = d;
    done[t - k0] = ++steps;
  }
  for (int r = k0; r < k1; ++r) {
    CatchUpRow(a, n, r, 0, r, done[r - k0], steps, cs, ys);
    CatchUpColumn(a, n, r, k1, done[r - k0], steps, cs, ys, col);
  }
  // Left of the diagonal, outside the block's rows and columns.
  internal::UpdateRegion(a, 0, k0, 0, k0, false, steps, cs, n, ys, n, nullptr);
  internal::UpdateRegion(a, k1, n, 0, k0, false, steps, cs, n, ys, n, nullptr);
  internal::UpdateRegion(a, k1, n, k1, n, false, steps, cs, n, ys, n, nullptr);
}

}  // namespace

// ---------------------------------------------------------------------------
// The sweep operator

// Goodnight's (1979) sweep of row k, with a tolerance test against the
// reference diagonal; four rows share each load of the pivot column.
bool QXSymMatrix::Sweep(int k, double tol, const double* diag, QXBitSet& swept, bool check) {
  const int n = nRows;
  if (check) {
    if (k < 0 || k >= n) return false;
    if (tol <= 0.0) return false;
    if (swept.Size() < n) return false;
    for (int i = 0; i < n; ++i) {
      if (diag[i] < 0.0) return false;
    }
  }
  double* a = data.data();
  const std::size_t rk = RowStart(k);
  const bool wasSwept = swept.IsIn(k);
  const double p = a[rk + k];

  if (!wasSwept) {
    if (tol * diag[k] >= p) return false;
    // A row already in holds minus an element of the inverse on its diagonal;
    // the new pivot may not push it beyond the tolerance.
    const int limit = n < swept.Size() ? n : swept.Size();
    for (int i = 0; i < limit; ++i) {
      if (!swept.IsIn(i)) continue;
      const double aik = a[PackedIndex(i, k)];
      const double q = a[DiagIndex(i)] - (aik / p) * aik;
      if (!((q * tol * diag[i]) > -1.0)) return false;
    }
  }

  const double d = -1.0 / p;
  a[rk + k] = d;
  const double s = std::fabs(d);
  const bool negate = d < 0.0;
  // Every element (i, j) off row and column k takes c_i * y_j, where c_i is
  // the element (i, k) before the sweep, negated for a positive pivot, and
  // y_j the scaled (j, k) after it; the three regions around row and column
  // k take it through the kernel, a row at a time.
  Scratch work(2 * static_cast<std::size_t>(n));
  double* c = work.data();
  double* y = c + n;
  WalkSymmetricRow(a, k, n, [&](int i, double& e) {
    if (i == k) return;
    const double b = e;
    e = s * b;
    c[i] = negate ? -b : b;
    y[i] = e;
  });
  internal::UpdateRegion(a, 0, k, 0, k, true, 1, c, 0, y, 0, nullptr);
  internal::UpdateRegion(a, k + 1, n, 0, k, false, 1, c, 0, y, 0, nullptr);
  internal::UpdateRegion(a, k + 1, n, k + 1, n, true, 1, c, 0, y, 0, nullptr);
  swept.Set(k, !wasSwept);
  return true;
}

bool QXSymMatrix::Sweep(int k, double tol, const std::vector<double>& diag, QXBitSet& swept,
                        bool check) {
  if (check && static_cast<long>(diag.size()) < nRows) return false;
  return Sweep(k, tol, diag.data(), swept, check);
}

// The sweep one row and one element at a time, as the steps read.
bool QXSymMatrix::SweepOrig(int k, double tol, const std::vector<double>& diag, QXBitSet& swept,
                            bool check) {
  const int n = nRows;
  if (check) {
    if (k < 0 || k >= n) return false;
    if (!(tol > 0.0)) return false;
    if (swept.Size() < n) return false;
    if (static_cast<long>(diag.size()) != n) return false;
    for (int i = 0; i < n; ++i) {
      if (diag[i] < 0.0) return false;
    }
  }
  auto at = [this](int row, int col) -> double& { return data[PackedIndex(row, col)]; };
  const bool wasSwept = swept.IsIn(k);
  const double p = at(k, k);
  if (!wasSwept) {
    if (tol * diag[k] >= p) return false;
    for (int i = 0; i < n; ++i) {
      if (!swept.IsIn(i)) continue;
      const double aik = at(i, k);
      const double q = at(i, i) - (aik / p) * aik;
      if (!((q * tol * diag[i]) > -1.0)) return false;
    }
  }
  const double d = -1.0 / p;
  at(k, k) = d;
  const double s = std::fabs(d);
  for (int i = 0; i < n; ++i) {
    if (i == k) continue;
    const double b = at(i, k);
    at(i, k) = s * b;
    const double c = d < 0.0 ? -b : b;
    for (int j = 0; j <= i; ++j) {
      if (j != k) at(i, j) += c * at(j, k);
    }
  }
  swept.Set(k, !wasSwept);
  return true;
}

bool QXSymMatrix::SweepOnSelected(const std::vector<int>& rows, double tol, QXBitSet& swept,
                                  bool check, double* diag) {
  std::vector<double> local;
  diag = PrepareBulkSweep(*this, diag, local, swept);
  if (check) {
    if (swept.Size() < nRows) return false;
    for (int row : rows) {
      if (row < 0 || row >= nRows) return false;
    }
    if (!CheckAndFloorDiagonal(diag, nRows)) return false;
  }
  for (int row : rows)
    Sweep(row, tol, diag, swept, false);
  return true;
}

bool QXSymMatrix::SweepOnMany(int count, double tol, bool pivotBefore, QXBitSet& swept,
                              double& logDet, bool check, double* diag) {
  std::vector<double> local;
  diag = PrepareBulkSweep(*this, diag, local, swept);
  if (check) {
    if (count < 1 || count > nRows) return false;
    if (tol <= 0.0) return false;
    if (count > swept.Size()) return false;
    if (!CheckAndFloorDiagonal(diag, nRows)) return false;
  }
  logDet = 0.0;
  for (int i = 0; i < count; ++i)
    swept.Set(i, false);
  std::vector<double> work;
  unsigned char ok[kSweepBlock];
  double before[kSweepBlock], after[kSweepBlock];
  for (int k0 = 0; k0 < count; k0 += kSweepBlock) {
    const int k1 = count - k0 < kSweepBlock ? count : k0 + kSweepBlock;
    SweepBlock(data.data(), nRows, k0, k1, tol, diag, swept, work, ok, before, after);
    for (int t = 0; t < k1 - k0; ++t) {
      // The pivot itself, or minus its value after the sweep, 1 / pivot.
      const double v = pivotBefore ? before[t] : -after[t];
      if (ok[t] && v > 0.0) logDet += std::log(v);
    }
  }
  return true;
}

bool QXSymMatrix::GetRegCoeffs(std::vector<double>& coeffs, const QXBitSet& swept) const {
  const int p = nRows - 1;
  if (p > swept.Size()) return false;
  if (p > 0) {
    coeffs.resize(p);
    const std::size_t start = RowStart(p);
    for (int j = 0; j < p; ++j)
      coeffs[j] = swept.IsIn(j) ? data[start + j] : 0.0;
  } else {
    coeffs.clear();
  }
  return true;
}

// ---------------------------------------------------------------------------
// Cholesky factorization and its uses

void QXSymMatrix::GetNCheckDiagonal(std::vector<double>& diag, double /*lower*/,
                                    double /*replacement*/) const {
  GetDiagonal(diag);
  double largest = 0.0;
  for (double d : diag) {
    if (d > largest) largest = d;
  }
  for (double& d : diag) {
    if (d < largest) d = largest;
  }
}

void QXSymMatrix::GetNCheckDiagonalOld(std::vector<double>& diag, double lower,
                                       double replacement) const {
  GetDiagonal(diag);
  for (double& d : diag) {
    if (!(d >= lower)) d = replacement;
  }
}

int QXSymMatrix::LTChol(const std::vector<double>& diag, double tol, bool check) {
  if (check && tol < 0.0) return -1;
  if (nRows < 1) return 0;
  if (check) {
    if (static_cast<long>(diag.size()) < nRows) return -1;
    for (int i = 0; i < nRows; ++i) {
      if (diag[i] < 0.0) return -1;
    }
  }
  return RowCholesky(data.data(), nRows, diag.data(), tol, 0, [](int) {});
}

int QXSymMatrix::LTChol(const std::vector<double>& diag, double tol, QXBitSet& nonRedundant,
                        bool check) {
  if (check) {
    if (tol < 0.0) return -1;
    if (static_cast<long>(diag.size()) < nRows) return -1;
    for (int i = 0; i < nRows; ++i) {
      if (diag[i] < 0.0) return -1;
    }
  }
  if (nonRedundant.Size() < nRows) {
    nonRedundant.Resize(nRows, false);
  } else {
    nonRedundant.Clear();
  }
  return RowCholesky(data.data(), nRows, diag.data(), tol, 0,
                     [&nonRedundant](int i) { nonRedundant.Set(i, true); });
}

int QXSymMatrix::LTChol(double tol, double& minPivot, bool check) {
  minPivot = QXMV::Missing();
  std::vector<double> diag;
  GetNCheckDiagonal(diag, tol, 1.0);
  const int r = LTChol(diag, tol, check);
  if (r >= 0 && nRows > 0) minPivot = SmallestDiagonal(data, nRows);
  return r;
}

// LINPACK DTRDI for a lower triangular factor in packed storage, with the
// count of zero diagonals as result; a zero pivot zeroes its row and column,
// so that L^T L of the result is a generalized inverse.
int QXSymMatrix::LTDetInverse(double* det, int job) {
  const int n = nRows;
  int zeros = 0;
  WalkDiagonal(data.data(), 0, n, [&zeros](int, double d) {
    if (d == 0.0) ++zeros;
  });

  if (job % 10 != 0 && det != nullptr) {
    if (zeros != 0) {
      det[0] = 0.0;
      det[1] = 0.0;
    } else {
      det[0] = 1.0;
      det[1] = 0.0;
      WalkDiagonal(data.data(), 0, n, [det](int, double d) {
        det[0] = d * det[0];
        if (det[0] == 0.0) return false;
        internal::RenormalizeDeterminant(det);
        return true;
      });
    }
  }

  if (job / 10 != 0) InvertLower(data.data(), n);
  return zeros;
}

void QXSymMatrix::LTLTransL() {
  LowerTransTimesLower(data.data(), nRows);
}

void QXSymMatrix::LTLLTrans() {
  std::vector<double> product(data.size());
  double* a = data.data();
  internal::WalkLower(product.data(), nRows, [a](int i, int j, double& out) {
    out = Blas1::DDot(j + 1, a + RowStart(i), 1, a + RowStart(j), 1);
  });
  data.swap(product);
}

bool QXSymMatrix::LTInverse() {
  double det[2] = {0.0, 0.0};
  LTDetInverse(det, 10);
  LTLTransL();
  return true;
}

int QXSymMatrix::CholInverse(const std::vector<double>& diag, double tol,
                             IQXSymMatrix& inverse) const {
  return internal::FactorAndInvert(
      *this, 0, inverse, [&](QXSymMatrix& target) { return target.LTChol(diag, tol, false); });
}

int QXSymMatrix::CholInverse(const std::vector<double>& diag, double tol, IQXSymMatrix& inverse,
                             QXBitSet& nonRedundant) const {
  return internal::FactorAndInvert(*this, 0, inverse, [&](QXSymMatrix& target) {
    return target.LTChol(diag, tol, nonRedundant, false);
  });
}

int QXSymMatrix::CholInverse(const std::vector<double>& diag, double tol, IQXSymMatrix& inverse,
                             double& minPivot) const {
  minPivot = QXMV::Missing();
  return internal::FactorAndInvert(*this, 0, inverse, [&](QXSymMatrix& target) {
    const int r = target.LTChol(diag, tol, false);
    if (r >= 0 && target.nRows > 0) minPivot = SmallestDiagonal(target.data, target.nRows);
    return r;
  });
}

int QXSymMatrix::LTSolve(const std::vector<double>& b, double tol, std::vector<double>& x) {
  if (tol <= 0.0 || static_cast<long>(b.size()) < nRows) return -1;
  // x first serves as the reference diagonal, which would overwrite b.
  if (&b == &x) return LTSolve(std::vector<double>(b), tol, x);
  GetDiagonal(x);
  const int r = LTChol(x, tol, false);
  if (r >= 0) SubstituteBoth(data, nRows, b, x);
  return r;
}

int QXSymMatrix::LTSubstitute(const std::vector<double>& b, std::vector<double>& x) const {
  if (static_cast<long>(b.size()) < nRows) return -1;
  const int n = nRows > 0 ? nRows : 0;
  x.resize(n);
  SubstituteBoth(data, n, b, x);
  return 0;
}

bool QXSymMatrix::TSolveSubst(const std::vector<double>& b, std::vector<double>& x,
                              bool transposed) const {
  if (static_cast<long>(b.size()) != nRows) return false;
  const int n = nRows;
  x.resize(n);
  double sum = 0.0;
  if (transposed) {
    for (int i = n - 1; i >= 0; --i) {
      const double aii = data[DiagIndex(i)];
      DotProdColBelowDiagBackVec(i, x, sum);
      x[i] = aii == 0.0 ? 0.0 : (b[i] - sum) / aii;
    }
  } else {
    ForwardSubstitute(data.data(), n, b.data(), x.data());
  }
  return true;
}

bool QXSymMatrix::DotProdColBelowDiagBackVec(int row, const std::vector<double>& x,
                                             double& sum) const {
  if (row < 0 || row >= nRows || static_cast<long>(x.size()) < nRows) return false;
  sum = ColumnBelowDiagonalDot(data, nRows, row, x);
  return true;
}

bool QXSymMatrix::DotProdRowBeforeDiagFrontVec(int row, const std::vector<double>& x,
                                               double& sum) const {
  if (row < 0 || row >= nRows || static_cast<long>(x.size()) < row) return false;
  sum = RowBeforeDiagonalDot(data, row, x);
  return true;
}

bool QXSymMatrix::ComputeDeterminant(double tol, double* det) const {
  if (nRows == 0 || det == nullptr) return false;
  QXSymMatrix factor(*this);
  double minPivot = 0.0;
  if (factor.LTChol(tol, minPivot, true) == -1) return false;
  if (minPivot == 0.0) {
    det[0] = 0.0;
    det[1] = 0.0;
    return true;
  }
  factor.LTDetInverse(det, 1);
  det[0] = det[0] * det[0];
  det[1] = det[1] * 2.0;
  internal::RenormalizeDeterminant(det);
  return true;
}

int QXSymMatrix::CholIndNonRed(int limit, double tol, std::vector<int>& rows) {
  rows.clear();
  if (limit < 1 || limit > nRows) limit = nRows;
  if (tol < 0.0 || nRows < 1) return 0;
  std::vector<double> work(data);
  std::vector<double> diag;
  GetDiagonal(diag);
  RowCholesky(work.data(), nRows, diag.data(), tol, limit, [&rows](int i) { rows.push_back(i); });
  return static_cast<int>(rows.size());
}

int QXSymMatrix::CheckMDependent(int m, const std::vector<double>& packed, const QXBitSet& keep,
                                 double tol) {
  if (m < 0 || RowStart(m) > packed.size() || m > keep.Size()) return -1;
  if (m < 1) return 0;
  if (!SetNRows(keep.InRangeS(0, m), false)) return -2;
  std::size_t to = 0;
  for (int i = 0; i < m; ++i) {
    if (!keep.IsIn(i)) continue;
    const std::size_t start = RowStart(i);
    for (int j = 0; j <= i; ++j) {
      if (keep.IsIn(j)) data[to++] = packed[start + j];
    }
  }
  std::vector<double> diag;
  GetNCheckDiagonal(diag, tol, 1.0);
  return LTChol(diag, tol, false);
}

// Rank-one update of a Cholesky factor by Givens rotations (LINPACK DCHUD).
bool QXSymMatrix::LTCholUpdateR1(const std::vector<double>& x, std::vector<double>& c,
                                 std::vector<double>& s) {
  const long n = nRows;
  if (static_cast<long>(x.size()) != n || static_cast<long>(c.size()) != n ||
      static_cast<long>(s.size()) != n) {
    return false;
  }
  double* a = data.data();
  for (int i = 0; i < n; ++i) {
    double* row = a + RowStart(i);
    double t = x[i];
    for (int j = 0; j < i; ++j) {
      const double u = row[j];
      const double next = c[j] * t - u * s[j];
      row[j] = c[j] * u + s[j] * t;
      t = next;
    }
    Blas1::DRotG(row + i, &t, &c[i], &s[i]);
  }
  return true;
}

// Rank-one downdate of a Cholesky factor (LINPACK DCHDD), with an optional
// rescaling that forces it through when it would lose definiteness.
bool QXSymMatrix::LTCholDowndate(const std::vector<double>& x, std::vector<double>& c,
                                 std::vector<double>& s, bool force) {
  const long n = nRows;
  if (static_cast<long>(x.size()) != n || static_cast<long>(c.size()) != n ||
      static_cast<long>(s.size()) != n) {
    return false;
  }
  if (n < 1 || !(data[0] > 0.0)) return false;
  double* a = data.data();

  double largest = 0.0;
  WalkDiagonal(a, 0, static_cast<int>(n), [&largest](int, double d) {
    if (d > largest) largest = d;
  });
  WalkDiagonal(a, 0, static_cast<int>(n), [largest](int, double& d) {
    if (d <= 0.0) d = largest * 0.1;
  });

  for (int i = 0; i < n; ++i)
    s[i] = (x[i] - Blas1::DDot(i, a + RowStart(i), 1, s.data(), 1)) / a[DiagIndex(i)];
  double rho = QXMathFun::DNrm2(static_cast<int>(n), s, 0, 1);
  if (rho >= 1.0) {
    if (!force) return false;
    const double f = rho / 0.9;
    MultiplyByNumber(f);
    const double shrink = 1.0 / f;
    for (double& v : s)
      v *= shrink;
    rho = 0.9;
  }

  double alpha = std::sqrt(1.0 - rho * rho);
  for (long i = n - 1; i >= 0; --i) {
    const double t = std::fabs(s[i]) + alpha;
    const double ca = alpha / t;
    const double cb = s[i] / t;
    const double r = std::sqrt(ca * ca + cb * cb);
    c[i] = ca / r;
    s[i] = cb / r;
    alpha = r * t;
  }

  for (int j = 0; j < n; ++j) {
    double* row = a + RowStart(j);
    double u = 0.0;
    for (int k = j; k >= 0; --k) {
      const double v = row[k];
      row[k] = v * c[k] - u * s[k];
      u = c[k] * u + s[k] * v;
    }
  }
  return true;
}

// Finds the smallest diagonal shift under which the factorization accepts
// every row: an additive search for an upper bound, then bisection.
int QXSymMatrix::TransformToPositiveDefinite(double tol, bool& changed, double& shift) {
  changed = false;
  shift = 0.0;
  if (nRows <= 1) return -1;
  if (!(tol > 0.0)) return -2;
  // The shift search below would never end on a matrix no shift can repair.
  for (double v : data) {
    if (!std::isfinite(v)) return -3;
  }

  std::vector<double> diag;
  GetNCheckDiagonal(diag, 1e-06, 1.0);
  QXSymMatrix work(*this);
  int r = work.LTChol(diag, tol, false);
  int trials = 1;
  if (r == 0) return 1;

  work = *this;
  double largestDiag = 0.0, smallestDiag = 0.0, largestOff = 0.0, smallestOff = 0.0;
  work.MaxMinDiagOffDiag(largestDiag, smallestDiag, largestOff, smallestOff);
  double step = nRows == 2 ? 1.0 : static_cast<double>(nRows - 2);
  step = std::fmax(step, std::fabs(largestDiag));
  step = std::fmax(step, std::fabs(smallestDiag));
  step = std::fmax(step, std::fabs(largestOff));
  step = std::fmax(step, std::fabs(smallestOff));

  while (r > 0) {
    shift += step;
    work.AddToDiagonal(shift);
    r = work.LTChol(diag, tol, false);
    ++trials;
    work = *this;
  }

  // The gap is relative above 1.0 and absolute below it.
  double lo = 0.0;
  double hi = shift;
  double mid = (lo + hi) * 0.5;
  double gap = mid > 1.0 ? (hi - lo) / mid : hi - lo;
  while (tol < gap * 0.5) {
    work.AddToDiagonal(mid);
    r = work.LTChol(diag, tol, false);
    ++trials;
    work = *this;
    if (r < 1) {
      hi = mid;
    } else {
      lo = mid;
    }
    mid = (lo + hi) * 0.5;
    gap = mid > 1.0 ? (hi - lo) / mid : hi - lo;
  }

  shift = hi;
  AddToDiagonal(shift);
  double largest = 0.0, smallest = 0.0;
  MaxMinDiag(largest, smallest);
  const double extra = 0.01 * largest;
  AddToDiagonal(extra);
  shift += extra;
  MultiplyByNumber(1.0 / (shift + diag[0]));
  changed = true;
  return trials;
}

bool QXSymMatrix::AdjustOffDiagCorr(double margin) {
  if (margin < 0.0 || margin >= 1.0) return false;
  if (nRows < 1) return true;
  const double bound = 1.0 - margin;
  internal::WalkLower(data.data(), nRows, [bound](int i, int j, double& a) {
    if (j == i) return;
    if (a >= 1.0) {
      a = bound;
    } else if (a <= -1.0) {
      a = -bound;
    }
  });
  return true;
}

}  // namespace QXMath_850
