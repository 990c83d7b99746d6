#ifndef QX_MATRICES_INTERNAL_KERNELTABLE_H
#define QX_MATRICES_INTERNAL_KERNELTABLE_H

// The table through which kernels.cpp reaches one instruction-set build of
// the kernels (kernels_sse2.cpp, kernels_avx2.cpp, kernels_avx512.cpp).
// Only plain data and function pointers cross it: the builds include no
// inline code shared with the rest of the library, so that no function
// compiled for a wider instruction set can stand in for another's copy.
// Never installed.

namespace QXMath_850 {
namespace internal {

struct RegionUpdate {
  double* a;
  int i0, i1, j0, j1;
  bool diagonal;
  int count;
  const double* s;
  long sStride;
  const double* y;
  long yStride;
  const double* w;
};

struct KernelTable {
  const char* name;
  void (*updateRegion)(const RegionUpdate& u);
  void (*updateVector)(double* v, int n, int count, const double* x, long xStride, const double* c,
                       long cStride);
  void (*poolRow)(double* a, int n, const double* o, const double* d1, double c1, const double* d2,
                  double c2);
};

extern const KernelTable kKernelsSse2;
extern const KernelTable kKernelsAvx2;
extern const KernelTable kKernelsAvx512;

}  // namespace internal
}  // namespace QXMath_850

#endif  // QX_MATRICES_INTERNAL_KERNELTABLE_H
