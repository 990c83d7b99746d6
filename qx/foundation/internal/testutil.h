#ifndef QX_FOUNDATION_INTERNAL_TESTUTIL_H
#define QX_FOUNDATION_INTERNAL_TESTUTIL_H

// Test support shared by the test programs of every subsystem; never
// installed.

#include <cmath>
#include <iostream>
#include <locale>
#include <sstream>
#include <string>

#include "qx/foundation/qxcomponentdisplay.h"

namespace QXCommon_850 {
namespace internal {

// What `show` writes through the display functions; the display stream is
// std::cout again afterwards.
template <typename Show>
std::string CaptureDisplay(Show show) {
  std::ostringstream text;
  QXDisplay_850::SetOutStream(text);
  show();
  QXDisplay_850::SetOutStream(std::cout);
  return text.str();
}

// 1.0 moved up by `ulps` units in the last place.
inline double OnePlusUlps(int ulps) {
  double x = 1.0;
  for (int i = 0; i < ulps; ++i)
    x = std::nextafter(x, 2.0);
  return x;
}

// A numeric facet with a decimal comma, for a C++ locale that is no system's.
struct CommaDecimalPoint : std::numpunct<char> {
  char do_decimal_point() const override { return ','; }
};

}  // namespace internal
}  // namespace QXCommon_850

#endif  // QX_FOUNDATION_INTERNAL_TESTUTIL_H
