#ifndef QX_MATRICES_INTERNAL_DISPLAYROW_H
#define QX_MATRICES_INTERNAL_DISPLAYROW_H

#include <cstdio>
#include <string>

#include "qx/foundation/qxcomponentdisplay.h"

namespace QXMath_850 {
namespace internal {

// One row of a matrix's full display (DisplayF): "row <i>: " on a line of
// its own, then the n values.
inline void DisplayFullRow(int i, const double* values, int n) {
  char number[16];
  std::snprintf(number, sizeof number, "%d", i);
  QXDisplay_850::DisplayText(1, std::string("row ") + number + ": ");
  QXDisplay_850::DisplayDAS(values, n);
}

}  // namespace internal
}  // namespace QXMath_850

#endif  // QX_MATRICES_INTERNAL_DISPLAYROW_H
