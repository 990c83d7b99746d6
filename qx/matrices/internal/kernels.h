#ifndef QX_MATRICES_INTERNAL_KERNELS_H
#define QX_MATRICES_INTERNAL_KERNELS_H

// The vectorised kernels behind the accumulators and the blocked sweep: a
// block of rank-one updates applied to a region of the packed triangle. The
// kernel exists in an SSE2, an AVX2 and an AVX-512 build; the widest one the
// processor runs is picked when the library loads, and tests may force any.
//
// Every build updates independent elements side by side and gives each
// element its steps in the order of the plain loop, with separate multiplies
// and adds (never fused), so that every path gives the same bits as that
// loop. Never installed.

#include <cstddef>
#include <vector>

namespace QXMath_850 {
namespace internal {

enum class KernelPath { kSse2 = 0, kAvx2 = 1, kAvx512 = 2 };

// The widest path the processor and the system support.
KernelPath BestKernelPath();
// The path the kernels take now.
KernelPath ActiveKernelPath();
// Makes the kernels take `path`; false, and no change, when the processor
// can't run it. For tests; not meant to be called while kernels run.
bool ForceKernelPath(KernelPath path);
const char* KernelPathName(KernelPath path);

// For t = 0..count-1 in that order, a_ij = a_ij + s_t[i] * y_t[j], or with
// weights a_ij + (s_t[i] * y_t[j]) * w[t], where s_t = s + t * sStride and
// y_t = y + t * yStride are indexed by row and column number. Covers rows
// i0 <= i < i1 and columns j0 <= j < j1 of the packed store a, left of the
// diagonal and the diagonal itself when `diagonal`.
void UpdateRegion(double* a, int i0, int i1, int j0, int j1, bool diagonal, int count,
                  const double* s, long sStride, const double* y, long yStride, const double* w);

// For m = 0..count-1 in that order, v[i] = v[i] + x_m[i] * c_m for i < n,
// where x_m = x + m * xStride and c_m = c[m * cStride].
void UpdateVector(double* v, int n, int count, const double* x, long xStride, const double* c,
                  long cStride);

// a[j] = a[j] + ((d1[j] * c1 + o[j]) + d2[j] * c2) for j < n: one row of two
// pooled cross-product triangles, d1 and d2 the moves of the two means.
void PoolRow(double* a, int n, const double* o, const double* d1, double c1, const double* d2,
             double c2);

// a_ij = a_ij + s[i] * y[j] for every j <= i < n.
inline void UpdateRankOne(double* a, int n, const double* s, const double* y) {
  UpdateRegion(a, 0, n, 0, n, true, 1, s, 0, y, 0, nullptr);
}

// Work space for the kernels' callers. Each thread keeps up to 8 MB of it
// between calls, so that repeated factorizations and updates don't fault in
// fresh pages every time; a larger request, or one made while the kept space
// is in use, gets space of its own, freed after use. Not cleared.
class Scratch {
 public:
  explicit Scratch(std::size_t size);
  ~Scratch();
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;
  double* data() { return data_; }

 private:
  std::vector<double> own_;
  double* data_ = nullptr;
  bool* busy_ = nullptr;
};

// Cases that the accumulators take together for a triangle of order n: the
// block of values stays within about 256 KB.
inline int CaseBlock(int n) {
  const int block = n > 0 ? 32768 / n : 512;
  return block < 32 ? 32 : block > 512 ? 512 : block;
}

}  // namespace internal
}  // namespace QXMath_850

#endif  // QX_MATRICES_INTERNAL_KERNELS_H
