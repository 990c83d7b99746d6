// The body of one instruction-set build of the kernels, included once by each
// of kernels_sse2.cpp, kernels_avx2.cpp and kernels_avx512.cpp after they
// define QX_KERNEL_WIDTH (doubles in a vector register) and QX_KERNEL_TABLE
// (the table's name). Everything here has internal linkage, so that no
// function compiled for one instruction set is shared with another build.
// Never installed.

#include "qx/matrices/internal/kerneltable.h"

namespace QXMath_850 {
namespace internal {
namespace {

constexpr int kWidth = QX_KERNEL_WIDTH;
// Vectors of a row that a tile keeps in registers, and rows of a tile.
constexpr int kVectors = kWidth == 8 ? 3 : 2;
constexpr int kRows = 4;

typedef double Vec
    __attribute__((vector_size(kWidth * sizeof(double)), aligned(sizeof(double)), may_alias));

inline Vec Load(const double* p) {
  return *reinterpret_cast<const Vec*>(p);
}

inline void Store(double* p, Vec v) {
  *reinterpret_cast<Vec*>(p) = v;
}

inline long RowStartOf(int i) {
  return static_cast<long>(i) * (i + 1) / 2;
}

// One step of one element: a + s * y, or a + (s * y) * w.
template <bool kWeighted, typename T>
inline T Step(T a, double s, T y, double w) {
  if (kWeighted) return a + (s * y) * w;
  return a + s * y;
}

// Rows i..i+R-1 at columns j..j+V*kWidth-1, held in registers over all
// steps.
template <bool kWeighted, int R, int V>
inline void Tile(const RegionUpdate& u, int i, int j) {
  double* row[R];
  Vec acc[R][V];
#pragma GCC unroll 4
  for (int r = 0; r < R; ++r) {
    row[r] = u.a + RowStartOf(i + r) + j;
#pragma GCC unroll 4
    for (int v = 0; v < V; ++v)
      acc[r][v] = Load(row[r] + v * kWidth);
  }
  const double* s = u.s + i;
  const double* y = u.y + j;
  for (int t = 0; t < u.count; ++t) {
    const double w = kWeighted ? u.w[t] : 0.0;
    Vec yv[V];
#pragma GCC unroll 4
    for (int v = 0; v < V; ++v)
      yv[v] = Load(y + v * kWidth);
#pragma GCC unroll 4
    for (int r = 0; r < R; ++r) {
      const double sr = s[r];
#pragma GCC unroll 4
      for (int v = 0; v < V; ++v)
        acc[r][v] = Step<kWeighted>(acc[r][v], sr, yv[v], w);
    }
    s += u.sStride;
    y += u.yStride;
  }
#pragma GCC unroll 4
  for (int r = 0; r < R; ++r) {
#pragma GCC unroll 4
    for (int v = 0; v < V; ++v)
      Store(row[r] + v * kWidth, acc[r][v]);
  }
}

// Element (i, j) alone.
template <bool kWeighted>
inline void Single(const RegionUpdate& u, int i, int j) {
  double* a = u.a + RowStartOf(i) + j;
  double acc = *a;
  const double* s = u.s + i;
  const double* y = u.y + j;
  for (int t = 0; t < u.count; ++t) {
    acc = Step<kWeighted>(acc, *s, *y, kWeighted ? u.w[t] : 0.0);
    s += u.sStride;
    y += u.yStride;
  }
  *a = acc;
}

// One past the last column of row i in the region.
inline int ColumnEnd(const RegionUpdate& u, int i) {
  const int last = u.diagonal ? i + 1 : i;
  return last < u.j1 ? last : u.j1;
}

// Columns from j to the row's end, for one row alone.
template <bool kWeighted>
inline void RowTail(const RegionUpdate& u, int i, int j) {
  const int end = ColumnEnd(u, i);
  for (; j + kVectors * kWidth <= end; j += kVectors * kWidth)
    Tile<kWeighted, 1, kVectors>(u, i, j);
  for (; j + kWidth <= end; j += kWidth)
    Tile<kWeighted, 1, 1>(u, i, j);
  for (; j < end; ++j)
    Single<kWeighted>(u, i, j);
}

// Rows in groups of kRows over the columns they all have, then each row's
// own remaining columns.
template <bool kWeighted>
void Region(const RegionUpdate& u) {
  int i = u.i0;
  for (; i + kRows <= u.i1; i += kRows) {
    const int end = ColumnEnd(u, i);
    int j = u.j0;
    for (; j + kVectors * kWidth <= end; j += kVectors * kWidth)
      Tile<kWeighted, kRows, kVectors>(u, i, j);
    for (; j + kWidth <= end; j += kWidth)
      Tile<kWeighted, kRows, 1>(u, i, j);
    for (int r = 0; r < kRows; ++r)
      RowTail<kWeighted>(u, i + r, j);
  }
  for (; i < u.i1; ++i)
    RowTail<kWeighted>(u, i, u.j0);
}

void UpdateRegionKernel(const RegionUpdate& u) {
  if (u.count < 1 || u.i0 >= u.i1 || u.j0 >= u.j1) return;
  if (u.w != nullptr) {
    Region<true>(u);
  } else {
    Region<false>(u);
  }
}

}  // namespace

extern const KernelTable QX_KERNEL_TABLE;
const KernelTable QX_KERNEL_TABLE = {QX_KERNEL_NAME, &UpdateRegionKernel};

}  // namespace internal
}  // namespace QXMath_850
