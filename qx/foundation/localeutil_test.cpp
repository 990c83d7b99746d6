#include "qx/foundation/localeutil.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "qx/foundation/internal/testlocale.h"

namespace QXXML_850 {
namespace {

TEST(LocaleUtilTest, ClassicFormats) {
  EXPECT_EQ(GetDefaultNumericFormat(), "%.15g");
  EXPECT_EQ(GetListSeparator(), ";");
  EXPECT_EQ(GetDecimalCharacter(), ".");

  EXPECT_EQ(Format(0.1, false, nullptr), "0.1");
  EXPECT_EQ(Format(1.0 / 3.0, false, nullptr), "0.333333333333333");
  EXPECT_EQ(Format(1.0 / 3.0, true, nullptr), "0.333333333333333");
  EXPECT_EQ(Format(-2.5e-7, false, nullptr), "-2.5e-07");
  EXPECT_EQ(Format(1e15, false, nullptr), "1e+15");
  EXPECT_EQ(Format(123456789012345.0, false, nullptr), "123456789012345");
  EXPECT_EQ(Format(std::numeric_limits<double>::lowest(), false, nullptr),
            "-1.79769313486232e+308");
  EXPECT_EQ(ReplaceSep(0.1), "0.1000000000000000");
  EXPECT_EQ(ReplaceSep(-3.0), "-3.0000000000000000");

  // A long goes through a double and keeps 15 significant digits.
  EXPECT_EQ(Format(1234567890123456789L), "1.23456789012346e+18");
  EXPECT_EQ(Format(-42L), "-42");

  char fixed[] = "%.3f";
  EXPECT_EQ(Format(2.5, true, fixed), "2.500");
  EXPECT_EQ(Format(2.5, false, fixed), "2.5");  // the classic path ignores the format
  // A result longer than the buffer is cut, never written past it.
  char wide[] = "%.600f";
  EXPECT_EQ(Format(1e300, true, wide).size(), 511u);
}

TEST(LocaleUtilTest, DecimalCommaLocale) {
  std::string why;
  if (!QXCommon_850::internal::UseLocale("de_DE.UTF-8", "de_DE", "UTF-8",
                                         QX_TEST_BINARY_DIR "/test-locales", why)) {
    GTEST_SKIP() << why;
  }
  EXPECT_EQ(GetDecimalCharacter(), ",");
  EXPECT_EQ(ReplaceSep(0.1, nullptr), "0.1");
  EXPECT_EQ(ReplaceSep(2.5), "2.5000000000000000");
  EXPECT_EQ(Format(0.1, false, nullptr), "0.1");
  EXPECT_EQ(Format(0.1, true, nullptr), "0,1");
  EXPECT_EQ(Format(-2.5e-7, true, nullptr), "-2,5e-07");
  EXPECT_EQ(Format(1234567890123456789L), "1,23456789012346e+18");
  QXCommon_850::internal::UseClassicLocale();
  EXPECT_EQ(Format(0.1, true, nullptr), "0.1");
}

}  // namespace
}  // namespace QXXML_850
