#include "qx/matrices/internal/kernels.h"

#include <atomic>

#include "qx/matrices/internal/kerneltable.h"

namespace QXMath_850 {
namespace internal {

namespace {

const KernelTable* TableOf(KernelPath path) {
  switch (path) {
    case KernelPath::kAvx512:
      return &kKernelsAvx512;
    case KernelPath::kAvx2:
      return &kKernelsAvx2;
    case KernelPath::kSse2:
      break;
  }
  return &kKernelsSse2;
}

// Null until the first use or the load of the library, whichever comes first.
std::atomic<const KernelTable*> gActive{nullptr};

const KernelTable& Active() {
  const KernelTable* table = gActive.load(std::memory_order_relaxed);
  if (table == nullptr) {
    table = TableOf(BestKernelPath());
    gActive.store(table, std::memory_order_relaxed);
  }
  return *table;
}

// Picks the path when the library loads.
const bool kPicked = (Active(), true);

}  // namespace

KernelPath BestKernelPath() {
  __builtin_cpu_init();
  // The checks include the system's support for the wider registers' state.
  if (__builtin_cpu_supports("avx512f")) return KernelPath::kAvx512;
  if (__builtin_cpu_supports("avx2")) return KernelPath::kAvx2;
  return KernelPath::kSse2;
}

KernelPath ActiveKernelPath() {
  const KernelTable* table = &Active();
  if (table == &kKernelsAvx512) return KernelPath::kAvx512;
  if (table == &kKernelsAvx2) return KernelPath::kAvx2;
  return KernelPath::kSse2;
}

bool ForceKernelPath(KernelPath path) {
  if (static_cast<int>(path) > static_cast<int>(BestKernelPath())) return false;
  gActive.store(TableOf(path), std::memory_order_relaxed);
  return true;
}

const char* KernelPathName(KernelPath path) {
  return TableOf(path)->name;
}

Scratch::Scratch(std::size_t size) {
  constexpr std::size_t kKeptDoubles = std::size_t{1} << 20;
  static thread_local std::vector<double> kept;
  static thread_local bool busy = false;
  if (size <= kKeptDoubles && !busy) {
    if (kept.size() < size) kept.resize(size);
    data_ = kept.data();
    busy_ = &busy;
    busy = true;
  } else {
    own_.resize(size);
    data_ = own_.data();
  }
}

Scratch::~Scratch() {
  if (busy_ != nullptr) *busy_ = false;
}

void UpdateRegion(double* a, int i0, int i1, int j0, int j1, bool diagonal, int count,
                  const double* s, long sStride, const double* y, long yStride, const double* w) {
  const RegionUpdate u{a, i0, i1, j0, j1, diagonal, count, s, sStride, y, yStride, w};
  Active().updateRegion(u);
}

void UpdateVector(double* v, int n, int count, const double* x, long xStride, const double* c,
                  long cStride) {
  if (n < 1 || count < 1) return;
  Active().updateVector(v, n, count, x, xStride, c, cStride);
}

void PoolRow(double* a, int n, const double* o, const double* d1, double c1, const double* d2,
             double c2) {
  if (n < 1) return;
  Active().poolRow(a, n, o, d1, c1, d2, c2);
}

}  // namespace internal
}  // namespace QXMath_850
