#ifndef QX_DISTRIBUTIONS_INTERNAL_TESTUTIL_H
#define QX_DISTRIBUTIONS_INTERNAL_TESTUTIL_H

// Test support shared by the tests of the distribution functions; never
// installed.

#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "qx/foundation/qxmissingvalue.h"

namespace QXMath_850 {
namespace internal {

inline bool Miss(double x) {
  return QXCommon_850::QXMV::IsMissing(x);
}

// A call of a routine that reports through a status, and the status it must
// leave.
struct StatusCase {
  const char* what;
  std::function<double(long&)> call;
  long status;
};

// Runs each call with a stale status in the variable: the routine must set
// the status every time, and give the missing value exactly when it is not 0.
inline void ExpectStatuses(const std::vector<StatusCase>& cases) {
  for (const StatusCase& c : cases) {
    long status = 77;
    const double value = c.call(status);
    EXPECT_EQ(status, c.status) << c.what;
    EXPECT_EQ(Miss(value), status != 0) << c.what;
  }
}

}  // namespace internal
}  // namespace QXMath_850

#endif  // QX_DISTRIBUTIONS_INTERNAL_TESTUTIL_H
