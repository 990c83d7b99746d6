#include "qx/foundation/localeutil.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "qx/foundation/internal/testlocale.h"

namespace QXXML_850 {
namespace {

TEST(LocaleUtilTest, NumbersInTheClassicLocale) {
  const double values[] = {0.1, 1.0 / 3.0, -2.5e-7, 1e15, std::numeric_limits<double>::lowest()};
  const char* const texts[] = {"0.1", "0.333333333333333", "-2.5e-07", "1e+15",
                               "-1.79769313486232e+308"};
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(Format(values[i], false, nullptr), texts[i]);
    EXPECT_EQ(Format(values[i], true, nullptr), texts[i]);
  }
  EXPECT_EQ(ReplaceSep(0.1), "0.1000000000000000");
  EXPECT_EQ(Format(1234567890123456789L), "1.23456789012346e+18");  // 15 digits
  char fixed[] = "%.3f", wide[] = "%.600f";
  EXPECT_EQ(Format(2.5, true, fixed), "2.500");
  EXPECT_EQ(Format(2.5, false, fixed), "2.5");        // the classic path ignores the format
  EXPECT_EQ(Format(1e300, true, wide).size(), 511u);  // cut, never written past the buffer
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
  EXPECT_EQ(Format(1234567890123456789L), "1,23456789012346e+18");
  QXCommon_850::internal::UseClassicLocale();
}

}  // namespace
}  // namespace QXXML_850
