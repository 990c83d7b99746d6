#include "qx/markup/qxnumvalue.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <memory>

#include "qx/foundation/internal/testutil.h"
#include "qx/markup/qxstrvalue.h"

namespace QXXML_850 {
namespace {

using QXCommon_850::internal::CaptureDisplay;
using QXCommon_850::internal::OnePlusUlps;

TEST(QXNumValueTest, DefaultIsUndefined) {
  const QXNumValue undefined;
  EXPECT_EQ(undefined.GetString(), "Undefined");
  EXPECT_FALSE(undefined.GetBool());
  EXPECT_EQ(undefined.GetInt(), INT_MIN);
  EXPECT_EQ(undefined.GetLongLong(), -2147483648LL);
  EXPECT_EQ(undefined.GetDouble(), -1.7976931348623157e308);
  EXPECT_EQ(QXNumValue(-QXNumValue::gInfinity).GetString(), "Undefined");
}

TEST(QXNumValueTest, EveryViewIsFilled) {
  const QXNumValue half(2.5);
  EXPECT_EQ(half.GetInt(), 2);
  EXPECT_EQ(half.GetLongLong(), 2);
  EXPECT_EQ(QXNumValue(-2.5).GetInt(), -2);
  EXPECT_EQ(QXNumValue(1e300).GetInt(), INT_MAX);  // saturates rather than wraps
  EXPECT_EQ(QXNumValue(1e300).GetLongLong(), LLONG_MAX);

  const QXNumValue wide(0x100000005LL);
  EXPECT_EQ(wide.GetInt(), 5);  // the low 32 bits
  EXPECT_EQ(wide.GetDouble(), 4294967301.0);
  EXPECT_EQ(wide.GetNumValueType(), 2);
  EXPECT_EQ(wide.GetString(), "4294967301");

  EXPECT_EQ(QXNumValue(1234567.0).GetString(), "1.23457e+06");
  EXPECT_FALSE(QXNumValue(-1).GetBool());
  EXPECT_TRUE(QXNumValue(0.5).GetBool());  // a double is judged by its own view
}

TEST(QXNumValueTest, EqualityAndOrder) {
  EXPECT_TRUE(QXNumValue(0.1) == QXNumValue(0.1));
  EXPECT_FALSE(QXNumValue(0.0) == QXNumValue(1e-300));
  EXPECT_TRUE(QXNumValue(0.0) == QXNumValue(-0.0));
  // A strict tolerance of one 2.22045e-16: one ulp of 1.0 passes, two don't.
  EXPECT_TRUE(QXNumValue(1.0) == QXNumValue(OnePlusUlps(1)));
  EXPECT_FALSE(QXNumValue(1.0) == QXNumValue(OnePlusUlps(2)));
  const double tiny = std::numeric_limits<double>::denorm_min();
  EXPECT_TRUE(QXNumValue(tiny) == QXNumValue(tiny));
  EXPECT_TRUE(QXNumValue(QXNumValue::gInfinity) == QXNumValue(QXNumValue::gInfinity));
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_FALSE(QXNumValue(nan) == QXNumValue(nan));
  EXPECT_TRUE(QXNumValue() == QXNumValue::SYSINI);
  EXPECT_FALSE(QXNumValue() == QXNumValue(-1e308));

  // Of two numeric types only the int views count.
  EXPECT_TRUE(QXNumValue(1.9) == QXNumValue(1));
  EXPECT_FALSE(QXNumValue(1.9) < QXNumValue(1) || QXNumValue(1) < QXNumValue(1.9));
  EXPECT_TRUE(QXNumValue(1.9) < QXNumValue(2));
  EXPECT_FALSE(QXNumValue(0x100000001LL) == QXNumValue(0x200000001LL));
  EXPECT_TRUE(QXNumValue(0x100000001LL) == QXNumValue(1));
  EXPECT_TRUE(QXNumValue(1.5) < QXNumValue(1.75));

  // Never equal to, nor ordered with, another class.
  const QXStrValue text("1");
  EXPECT_FALSE(QXNumValue(1) == text || QXNumValue(1) < text);
  EXPECT_FALSE(text == QXNumValue(1) || text < QXNumValue(1));
}

TEST(QXNumValueTest, CopiesAndDisplay) {
  QXNumValue a(3LL);
  std::unique_ptr<IQXSettingValue> clone(a.Clone());
  a.SetNumValue(9);
  EXPECT_EQ(clone->GetLongLong(), 3);
  EXPECT_EQ(clone->GetType(), 0);

  EXPECT_EQ(CaptureDisplay([] {
              QXNumValue(2.5).Display();
              QXNumValue().Display();
            }),
            "\nSetting Value Type = Numeric\nSetting Value = 2.5\n"
            "\nSetting Value Type = Numeric\nSetting Value = miss\n");
}

}  // namespace
}  // namespace QXXML_850
