#ifndef QX_MATRICES_INTERNAL_SPARSELISTS_H
#define QX_MATRICES_INTERNAL_SPARSELISTS_H

// The check shared by the bilinear forms of two sparse vectors, each given
// as a count, its positions and its values. Never installed.

#include <cstddef>
#include <vector>

namespace QXMath_850 {
namespace internal {

// True when the first count entries of a sparse vector exist in both of its
// lists and their positions lie in 0..limit-1.
inline bool SparseListFits(int count, const std::vector<int>& index,
                           const std::vector<double>& values, int limit) {
  if (count < 0 || static_cast<std::size_t>(count) > index.size() ||
      static_cast<std::size_t>(count) > values.size()) {
    return false;
  }
  for (int k = 0; k < count; ++k) {
    if (index[k] < 0 || index[k] >= limit) return false;
  }
  return true;
}

}  // namespace internal
}  // namespace QXMath_850

#endif  // QX_MATRICES_INTERNAL_SPARSELISTS_H
