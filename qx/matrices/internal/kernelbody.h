// The body of one instruction-set build of the kernels, included once by each
// of kernels_sse2.cpp, kernels_avx2.cpp and kernels_avx512.cpp after they
// define QX_KERNEL_WIDTH (doubles in a vector register) and QX_KERNEL_TABLE
// (the table's name). Everything here has internal linkage, so that no
// function compiled for one instruction set is shared with another build.
// Never installed.

#include "qx/matrices/internal/kerneltable.h"

#if QX_KERNEL_WIDTH == 8
#include <immintrin.h>
#endif

namespace QXMath_850 {
namespace internal {
namespace {

constexpr int kWidth = QX_KERNEL_WIDTH;
// Vectors of a row that a tile keeps in registers, and rows of a tile.
constexpr int kVectors = kWidth == 8 ? 3 : 2;
constexpr int kRows = kWidth == 8 ? 6 : 4;

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

// The same step with s read from memory. On AVX-512 the broadcast of s is
// folded into the multiply's memory operand, which GCC won't do for a value
// it uses more than once; that saves an instruction for each row and vector
// of a tile, and about a sixth of the accumulation's time on the AVX-512
// processors measured. The product, and so every bit, is the same.
template <bool kWeighted>
inline Vec StepFrom(Vec a, const double* s, Vec y, double w) {
#if QX_KERNEL_WIDTH == 8
  Vec product;
  __asm__("vmulpd %1%{1to8%}, %2, %0" : "=v"(product) : "m"(*s), "v"(y));
#else
  const Vec product = *s * y;
#endif
  if (kWeighted) return a + product * w;
  return a + product;
}

// Rows i..i+R-1 at columns j..j+V*kWidth-1, held in registers over all
// steps.
template <bool kWeighted, int R, int V>
inline void Tile(const RegionUpdate& u, int i, int j) {
  double* row[R];
  Vec acc[R][V];
#pragma GCC unroll 8
  for (int r = 0; r < R; ++r) {
    row[r] = u.a + RowStartOf(i + r) + j;
#pragma GCC unroll 8
    for (int v = 0; v < V; ++v)
      acc[r][v] = Load(row[r] + v * kWidth);
  }
  const double* s = u.s + i;
  const double* y = u.y + j;
  for (int t = 0; t < u.count; ++t) {
    const double w = kWeighted ? u.w[t] : 0.0;
    Vec yv[V];
#pragma GCC unroll 8
    for (int v = 0; v < V; ++v)
      yv[v] = Load(y + v * kWidth);
#pragma GCC unroll 8
    for (int r = 0; r < R; ++r) {
#pragma GCC unroll 8
      for (int v = 0; v < V; ++v)
        acc[r][v] = StepFrom<kWeighted>(acc[r][v], s + r, yv[v], w);
    }
    s += u.sStride;
    y += u.yStride;
  }
#pragma GCC unroll 8
  for (int r = 0; r < R; ++r) {
#pragma GCC unroll 8
    for (int v = 0; v < V; ++v)
      Store(row[r] + v * kWidth, acc[r][v]);
  }
}

// One past the last column of row i in the region.
inline int ColumnEnd(const RegionUpdate& u, int i) {
  const int last = u.diagonal ? i + 1 : i;
  return last < u.j1 ? last : u.j1;
}

#if QX_KERNEL_WIDTH == 8
// The columns from j to the ends of rows i..i+R-1, fewer than two vectors'
// worth, through loads and stores masked to each row's length, so that the
// short rows go at the speed of whole ones; the masked-off lanes are neither
// read nor written.
template <bool kWeighted, int R>
inline void TailTile(const RegionUpdate& u, int i, int j) {
  __mmask8 mask[R][2];
  int widest = 0;
  for (int r = 0; r < R; ++r) {
    const int end = ColumnEnd(u, i + r);
    const int len = end > j ? end - j : 0;
    if (len > widest) widest = len;
    mask[r][0] = static_cast<__mmask8>(len >= 8 ? 0xFF : (1u << len) - 1u);
    mask[r][1] = static_cast<__mmask8>(len >= 16 ? 0xFF : len > 8 ? (1u << (len - 8)) - 1u : 0u);
  }
  if (widest == 0) return;
  const __mmask8 y0Mask = static_cast<__mmask8>(widest >= 8 ? 0xFF : (1u << widest) - 1u);
  const __mmask8 y1Mask = static_cast<__mmask8>(widest > 8 ? (1u << (widest - 8)) - 1u : 0u);
  Vec acc[R][2];
#pragma GCC unroll 8
  for (int r = 0; r < R; ++r) {
    const double* row = u.a + RowStartOf(i + r) + j;
    acc[r][0] = Vec(_mm512_maskz_loadu_pd(mask[r][0], row));
    acc[r][1] = Vec(_mm512_maskz_loadu_pd(mask[r][1], row + kWidth));
  }
  const double* y = u.y + j;
  const double* s = u.s + i;
  for (int t = 0; t < u.count; ++t, y += u.yStride, s += u.sStride) {
    const double w = kWeighted ? u.w[t] : 0.0;
    const Vec y0 = Vec(_mm512_maskz_loadu_pd(y0Mask, y));
    const Vec y1 = Vec(_mm512_maskz_loadu_pd(y1Mask, y + kWidth));
#pragma GCC unroll 8
    for (int r = 0; r < R; ++r) {
      acc[r][0] = StepFrom<kWeighted>(acc[r][0], s + r, y0, w);
      acc[r][1] = StepFrom<kWeighted>(acc[r][1], s + r, y1, w);
    }
  }
#pragma GCC unroll 8
  for (int r = 0; r < R; ++r) {
    double* row = u.a + RowStartOf(i + r) + j;
    _mm512_mask_storeu_pd(row, mask[r][0], __m512d(acc[r][0]));
    _mm512_mask_storeu_pd(row + kWidth, mask[r][1], __m512d(acc[r][1]));
  }
}
#else
// The columns from j to the ends of rows i..i+R-1, fewer than two vectors'
// worth, with the values copied into zero-padded vectors so that the short
// rows go at the speed of whole ones; the padding lanes are dropped.
template <bool kWeighted, int R>
inline void TailTile(const RegionUpdate& u, int i, int j) {
  constexpr int kLanes = 2 * kWidth;
  constexpr int kSteps = 64;
  int len[R];
  int widest = 0;
  double held[R][kLanes];
  for (int r = 0; r < R; ++r) {
    const int end = ColumnEnd(u, i + r);
    len[r] = end > j ? end - j : 0;
    if (len[r] > widest) widest = len[r];
    const double* row = u.a + RowStartOf(i + r) + j;
    for (int k = 0; k < kLanes; ++k)
      held[r][k] = k < len[r] ? row[k] : 0.0;
  }
  if (widest == 0) return;
  Vec acc[R][2];
#pragma GCC unroll 8
  for (int r = 0; r < R; ++r) {
    acc[r][0] = Load(held[r]);
    acc[r][1] = Load(held[r] + kWidth);
  }
  double ys[kSteps][kLanes];
  for (int t0 = 0; t0 < u.count; t0 += kSteps) {
    const int steps = u.count - t0 < kSteps ? u.count - t0 : kSteps;
    const double* y = u.y + t0 * u.yStride + j;
    for (int t = 0; t < steps; ++t, y += u.yStride) {
      for (int k = 0; k < kLanes; ++k)
        ys[t][k] = k < widest ? y[k] : 0.0;
    }
    const double* s = u.s + t0 * u.sStride + i;
    for (int t = 0; t < steps; ++t, s += u.sStride) {
      const double w = kWeighted ? u.w[t0 + t] : 0.0;
      const Vec y0 = Load(ys[t]), y1 = Load(ys[t] + kWidth);
#pragma GCC unroll 8
      for (int r = 0; r < R; ++r) {
        acc[r][0] = Step<kWeighted>(acc[r][0], s[r], y0, w);
        acc[r][1] = Step<kWeighted>(acc[r][1], s[r], y1, w);
      }
    }
  }
  for (int r = 0; r < R; ++r) {
    Store(held[r], acc[r][0]);
    Store(held[r] + kWidth, acc[r][1]);
    double* row = u.a + RowStartOf(i + r) + j;
    for (int k = 0; k < len[r]; ++k)
      row[k] = held[r][k];
  }
}

#endif

// Rows i..i+R-1 from column j0: whole tiles over the columns they all have,
// then the rest of each row.
template <bool kWeighted, int R>
inline void Rows(const RegionUpdate& u, int i) {
  const int end = ColumnEnd(u, i);
  int j = u.j0;
  for (; j + kVectors * kWidth <= end; j += kVectors * kWidth)
    Tile<kWeighted, R, kVectors>(u, i, j);
  for (; j + kWidth <= end; j += kWidth)
    Tile<kWeighted, R, 1>(u, i, j);
  TailTile<kWeighted, R>(u, i, j);
}

template <bool kWeighted>
void Region(const RegionUpdate& u) {
  int i = u.i0;
  for (; i + kRows <= u.i1; i += kRows)
    Rows<kWeighted, kRows>(u, i);
  for (; i < u.i1; ++i)
    Rows<kWeighted, 1>(u, i);
}

// A single step, row by row: each element is loaded and stored once anyway,
// so tiles would only add work.
template <bool kWeighted>
void SingleStep(const RegionUpdate& u) {
  const double w = kWeighted ? u.w[0] : 0.0;
  for (int i = u.i0; i < u.i1; ++i) {
    double* row = u.a + RowStartOf(i);
    const double si = u.s[i];
    const int end = ColumnEnd(u, i);
    int j = u.j0;
    for (; j + kWidth <= end; j += kWidth)
      Store(row + j, Step<kWeighted>(Load(row + j), si, Load(u.y + j), w));
    for (; j < end; ++j)
      row[j] = Step<kWeighted>(row[j], si, u.y[j], w);
  }
}

void UpdateRegionKernel(const RegionUpdate& u) {
  if (u.count < 1 || u.i0 >= u.i1 || u.j0 >= u.j1) return;
  if (u.count == 1) {
    if (u.w != nullptr) {
      SingleStep<true>(u);
    } else {
      SingleStep<false>(u);
    }
    return;
  }
  if (u.w != nullptr) {
    Region<true>(u);
  } else {
    Region<false>(u);
  }
}

// v[i] = v[i] + x_m[i] * c_m for m = 0..count-1 in order, i < n, with each
// element held in a register over all steps.
void UpdateVectorKernel(double* v, int n, int count, const double* x, long xStride, const double* c,
                        long cStride) {
  int i = 0;
  for (; i + kVectors * kWidth <= n; i += kVectors * kWidth) {
    Vec acc[kVectors];
#pragma GCC unroll 8
    for (int k = 0; k < kVectors; ++k)
      acc[k] = Load(v + i + k * kWidth);
    const double* xm = x + i;
    for (int m = 0; m < count; ++m, xm += xStride) {
      const double cm = c[m * cStride];
#pragma GCC unroll 8
      for (int k = 0; k < kVectors; ++k)
        acc[k] = acc[k] + Load(xm + k * kWidth) * cm;
    }
#pragma GCC unroll 8
    for (int k = 0; k < kVectors; ++k)
      Store(v + i + k * kWidth, acc[k]);
  }
  for (; i < n; ++i) {
    double acc = v[i];
    for (int m = 0; m < count; ++m)
      acc = acc + x[m * xStride + i] * c[m * cStride];
    v[i] = acc;
  }
}

// a[j] = a[j] + ((d1[j] * c1 + o[j]) + d2[j] * c2) for j < n.
void PoolRowKernel(double* a, int n, const double* o, const double* d1, double c1, const double* d2,
                   double c2) {
  int j = 0;
  for (; j + kWidth <= n; j += kWidth)
    Store(a + j, Load(a + j) + ((Load(d1 + j) * c1 + Load(o + j)) + Load(d2 + j) * c2));
  for (; j < n; ++j)
    a[j] = a[j] + ((d1[j] * c1 + o[j]) + d2[j] * c2);
}

}  // namespace

extern const KernelTable QX_KERNEL_TABLE;
const KernelTable QX_KERNEL_TABLE = {QX_KERNEL_NAME, &UpdateRegionKernel, &UpdateVectorKernel,
                                     &PoolRowKernel};

}  // namespace internal
}  // namespace QXMath_850
