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

// The numeric facet of a German locale (a decimal comma, points between
// groups of three digits), made here so that a test does not depend on which
// locales the system has or which test loaded one before it.
struct CommaDecimalPoint : std::numpunct<char> {
  char do_decimal_point() const override { return ','; }
  char do_thousands_sep() const override { return '.'; }
  std::string do_grouping() const override { return "\3"; }
};

}  // namespace internal
}  // namespace QXCommon_850

#endif  // QX_FOUNDATION_INTERNAL_TESTUTIL_H
