#ifndef QX_DICTIONARY_INTERNAL_CATEGORYLABELS_H
#define QX_DICTIONARY_INTERNAL_CATEGORYLABELS_H

// What the two categorical encoders share beyond the persisted form. Never
// installed.

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

namespace QXXML_850 {
namespace internal {

// The room made ahead for a number of categories a caller announces: none for
// a negative number, and never more than 65536 (the vector grows beyond).
inline size_t ReserveCap(int n) {
  return n > 0 ? std::min(static_cast<size_t>(n), static_cast<size_t>(65536)) : 0;
}

// Labels code `code`, after extending the labels with empty ones to the
// number of categories if they are fewer; a code without a category is
// ignored.
inline void SetLabel(std::vector<std::string>& labels, size_t nCategories, int code,
                     const std::string& label) {
  if (labels.size() < nCategories) labels.resize(nCategories);
  if (code >= 0 && static_cast<size_t>(code) < nCategories) labels[code] = label;
}

}  // namespace internal
}  // namespace QXXML_850

#endif  // QX_DICTIONARY_INTERNAL_CATEGORYLABELS_H
