#include "qx/foundation/qxstatusshared.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "qx/foundation/qxexception.h"

namespace QXCommon_850 {
namespace {

TEST(QXStatusTest, SenseAloneDecidesWarningOrError) {
  const QXStatus ok;
  EXPECT_TRUE(ok.IsOK());
  EXPECT_FALSE(ok.IsWarning());
  EXPECT_FALSE(ok.IsError());
  EXPECT_EQ(ok.GetErrorCode(), 0);

  const QXStatus warning(5, true), error(5, false), errorZero(0, false);
  EXPECT_TRUE(warning.IsWarning());
  EXPECT_FALSE(warning.IsOK());
  EXPECT_TRUE(error.IsError());
  EXPECT_TRUE(errorZero.IsError());  // code 0 does not make it OK
  EXPECT_FALSE(warning == error);    // same code, other sense
  EXPECT_FALSE(errorZero == ok);
  for (unsigned int i = 0; i < 3; ++i) {
    EXPECT_EQ(warning.GetDiscreteDatum(i), 0);
    EXPECT_EQ(warning.GetScaleDatum(i), 0.0);
  }
}

TEST(QXStatusTest, EqualityCoversEveryDatumAndNaNIsNeverEqual) {
  QXStatus a(7, true);
  QXStatus b = a;
  EXPECT_TRUE(a == b);
  b.SetDiscreteDatum(2, 1L << 40);
  EXPECT_FALSE(a == b);
  EXPECT_EQ(b.GetDiscreteDatum(2), 1L << 40);
  b = a;
  b.SetScaleDatum(1, 0.5);
  EXPECT_FALSE(a == b);
  a.SetScaleDatum(1, 0.5);
  EXPECT_TRUE(a == b);

  // Signed zeros compare equal as doubles.
  a.SetScaleDatum(0, 0.0);
  b.SetScaleDatum(0, -0.0);
  EXPECT_TRUE(a == b);

  QXStatus withNaN(7, true);
  withNaN.SetScaleDatum(2, std::numeric_limits<double>::quiet_NaN());
  const QXStatus copy = withNaN;
  EXPECT_FALSE(withNaN == copy);
  EXPECT_FALSE(withNaN == withNaN);
  EXPECT_TRUE(std::isnan(copy.GetScaleDatum(2)));
}

// A thrown QXException's code and message are checked where the library
// throws them (qxvalue_test.cpp); here the default.
TEST(QXExceptionTest, DefaultIsCodeZeroAndNoMessage) {
  const QXException empty;
  EXPECT_EQ(empty.GetCode(), 0);
  EXPECT_EQ(empty.GetMessage(), "");
}

}  // namespace
}  // namespace QXCommon_850
