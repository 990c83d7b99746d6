#include "qx/foundation/qxmissingvalue.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

namespace QXCommon_850 {
namespace {

std::uint64_t Bits(double x) {
  std::uint64_t bits;
  std::memcpy(&bits, &x, sizeof bits);
  return bits;
}

TEST(QXMVTest, SentinelIsTheMostNegativeFiniteDoubleComparedExactly) {
  EXPECT_EQ(Bits(QXMV::gMissingValue), 0xFFEFFFFFFFFFFFFFULL);
  EXPECT_EQ(Bits(QXMV::Missing()), 0xFFEFFFFFFFFFFFFFULL);
  EXPECT_TRUE(QXMV::IsMissing(std::numeric_limits<double>::lowest()));
  EXPECT_FALSE(QXMV::IsMissing(std::nextafter(QXMV::Missing(), 0.0)));
  EXPECT_FALSE(QXMV::IsMissing(std::numeric_limits<double>::quiet_NaN()));
  EXPECT_FALSE(QXMV::IsMissing(-std::numeric_limits<double>::infinity()));
  EXPECT_FALSE(QXMV::IsMissing(std::numeric_limits<double>::max()));
}

}  // namespace
}  // namespace QXCommon_850
