#ifndef QX_MATRICES_INTERNAL_PACKEDLAYOUT_H
#define QX_MATRICES_INTERNAL_PACKEDLAYOUT_H

// The packed lower triangle by rows, without gaps, in which the symmetric
// matrices and the accumulators keep their elements: element (i, j), i >= j,
// stands at i*(i+1)/2 + j. Row i's elements up to its diagonal lie side by
// side; a step down a column, from row r to row r + 1, moves r + 1 places; a
// step down the diagonal, from row i to row i + 1, moves i + 2. The walks
// below advance their position by those steps rather than recompute it.
// Never installed.

#include <cstddef>
#include <type_traits>

namespace QXMath_850 {
namespace internal {

// Position of element (i, 0).
inline std::size_t RowStart(int i) {
  return static_cast<std::size_t>(i) * (static_cast<std::size_t>(i) + 1) / 2;
}

// Doubles in a store of order n; 0 for n < 1.
inline std::size_t PackedSize(int n) {
  return n > 0 ? RowStart(n) : 0;
}

// Position of the diagonal element (i, i).
inline std::size_t DiagIndex(int i) {
  return RowStart(i) + static_cast<std::size_t>(i);
}

// Position of element (i, j), which is also element (j, i).
inline std::size_t PackedIndex(int i, int j) {
  return i >= j ? RowStart(i) + j : RowStart(j) + i;
}

// Calls f(i, a_ii) for rows first..first+count-1, down the diagonal. When f
// returns bool, false stops the walk.
template <typename T, typename F>
inline void WalkDiagonal(T* a, int first, int count, F&& f) {
  std::size_t p = DiagIndex(first);
  for (int i = first; i < first + count; ++i) {
    if constexpr (std::is_same_v<decltype(f(i, a[p])), bool>) {
      if (!f(i, a[p])) return;
    } else {
      f(i, a[p]);
    }
    p += i + 2;
  }
}

// Calls f(r, a_(r, col)) for rows r = from..n-1 down column col (from >= col).
template <typename T, typename F>
inline void WalkColumn(T* a, int col, int from, int n, F&& f) {
  std::size_t p = RowStart(from) + col;
  for (int r = from; r < n; ++r) {
    f(r, a[p]);
    p += r + 1;
  }
}

// Calls f(j, element (row, j)) for j = 0..count-1 along the whole symmetric
// row: the stored part left of the diagonal, then down column `row` from the
// diagonal on.
template <typename T, typename F>
inline void WalkSymmetricRow(T* a, int row, int count, F&& f) {
  T* left = a + RowStart(row);
  const int stored = count < row ? count : row;
  for (int j = 0; j < stored; ++j)
    f(j, left[j]);
  WalkColumn(a, row, row, count, f);
}

// Calls f(i, j, a_ij) for every element of order n in storage order.
template <typename T, typename F>
inline void WalkLower(T* a, int n, F&& f) {
  for (int i = 0; i < n; ++i) {
    T* row = a + RowStart(i);
    for (int j = 0; j <= i; ++j)
      f(i, j, row[j]);
  }
}

// t[i] = sum over j, in order, of v[j] * a_ij along the full symmetric row i
// of the packed store a of order n (for a leading block, n its order), for
// every i in one pass over the store: row r gives t[r] the terms of its
// stored part and, as an axpy, gives every earlier t[j] its term of column r.
// Four rows go together, so that their four sums hide one another's latency
// and the earlier t[j] are loaded once for the four; each t[j] still takes
// its terms in column order.
inline void SymmetricTimesVector(const double* a, int n, const double* v, double* t) {
  int r = 0;
  for (; r + 3 < n; r += 4) {
    const double* __restrict__ r0 = a + RowStart(r);
    const double* __restrict__ r1 = r0 + r + 1;
    const double* __restrict__ r2 = r1 + r + 2;
    const double* __restrict__ r3 = r2 + r + 3;
    double s0 = 0.0, s1 = 0.0, s2 = 0.0, s3 = 0.0;
    for (int j = 0; j < r; ++j) {
      const double vj = v[j];
      s0 = s0 + vj * r0[j];
      s1 = s1 + vj * r1[j];
      s2 = s2 + vj * r2[j];
      s3 = s3 + vj * r3[j];
    }
    const double v0 = v[r], v1 = v[r + 1], v2 = v[r + 2], v3 = v[r + 3];
    s0 = s0 + v0 * r0[r];
    s0 = s0 + v1 * r1[r];
    s0 = s0 + v2 * r2[r];
    s0 = s0 + v3 * r3[r];
    s1 = s1 + v0 * r1[r];
    s1 = s1 + v1 * r1[r + 1];
    s1 = s1 + v2 * r2[r + 1];
    s1 = s1 + v3 * r3[r + 1];
    s2 = s2 + v0 * r2[r];
    s2 = s2 + v1 * r2[r + 1];
    s2 = s2 + v2 * r2[r + 2];
    s2 = s2 + v3 * r3[r + 2];
    s3 = s3 + v0 * r3[r];
    s3 = s3 + v1 * r3[r + 1];
    s3 = s3 + v2 * r3[r + 2];
    s3 = s3 + v3 * r3[r + 3];
    double* __restrict__ tt = t;
    for (int j = 0; j < r; ++j)
      tt[j] = (((tt[j] + v0 * r0[j]) + v1 * r1[j]) + v2 * r2[j]) + v3 * r3[j];
    t[r] = s0;
    t[r + 1] = s1;
    t[r + 2] = s2;
    t[r + 3] = s3;
  }
  for (; r < n; ++r) {
    const double* __restrict__ row = a + RowStart(r);
    double s = 0.0;
    for (int j = 0; j < r; ++j)
      s = s + v[j] * row[j];
    s = s + v[r] * row[r];
    const double vr = v[r];
    double* __restrict__ tt = t;
    for (int j = 0; j < r; ++j)
      tt[j] = tt[j] + vr * row[j];
    t[r] = s;
  }
}

}  // namespace internal
}  // namespace QXMath_850

#endif  // QX_MATRICES_INTERNAL_PACKEDLAYOUT_H
