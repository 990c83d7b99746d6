#ifndef QX_MARKUP_INTERNAL_COUNTINGALLOCATOR_H
#define QX_MARKUP_INTERNAL_COUNTINGALLOCATOR_H

// Benchmark support (never installed): replaces the global operator new and
// delete of the program that includes it, once, to count the bytes alive on
// the heap and their peak. The library's own allocations go through these
// too, since a program's operators replace the shared library's.

#include <malloc.h>

#include <cstddef>
#include <cstdlib>
#include <new>

namespace QXXML_850 {
namespace internal {

struct HeapCounter {
  static std::size_t& Live() {
    static std::size_t live = 0;
    return live;
  }
  static std::size_t& Peak() {
    static std::size_t peak = 0;
    return peak;
  }
  // Starts a new peak from what is alive now; returns that baseline.
  static std::size_t ResetPeak() { return Peak() = Live(); }
};

inline void* CountedAllocate(std::size_t size) {
  void* p = std::malloc(size == 0 ? 1 : size);
  if (p == nullptr) throw std::bad_alloc();
  HeapCounter::Live() += malloc_usable_size(p);
  if (HeapCounter::Live() > HeapCounter::Peak()) HeapCounter::Peak() = HeapCounter::Live();
  return p;
}

inline void CountedFree(void* p) {
  if (p == nullptr) return;
  HeapCounter::Live() -= malloc_usable_size(p);
  std::free(p);
}

}  // namespace internal
}  // namespace QXXML_850

void* operator new(std::size_t size) {
  return QXXML_850::internal::CountedAllocate(size);
}
void* operator new[](std::size_t size) {
  return QXXML_850::internal::CountedAllocate(size);
}
void operator delete(void* p) noexcept {
  QXXML_850::internal::CountedFree(p);
}
void operator delete[](void* p) noexcept {
  QXXML_850::internal::CountedFree(p);
}
void operator delete(void* p, std::size_t) noexcept {
  QXXML_850::internal::CountedFree(p);
}
void operator delete[](void* p, std::size_t) noexcept {
  QXXML_850::internal::CountedFree(p);
}

#endif  // QX_MARKUP_INTERNAL_COUNTINGALLOCATOR_H
