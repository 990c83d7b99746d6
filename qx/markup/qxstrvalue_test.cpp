#include "qx/markup/qxstrvalue.h"

#include <gtest/gtest.h>

#include <iostream>
#include <locale>
#include <memory>

#include "qx/foundation/internal/testutil.h"

namespace QXXML_850 {
namespace {

TEST(QXStrValueTest, ConversionsAreLenient) {
  EXPECT_TRUE(QXStrValue("true").GetBool());
  EXPECT_FALSE(QXStrValue("True").GetBool() || QXStrValue("1").GetBool());
  EXPECT_EQ(QXStrValue("12abc").GetInt(), 12);
  EXPECT_EQ(QXStrValue("abc").GetInt(), 0);
  EXPECT_EQ(QXStrValue("9000000000").GetLongLong(), 9000000000LL);
  EXPECT_EQ(QXStrValue("2.5x").GetDouble(), 2.5);
  EXPECT_EQ(QXStrValue("x").GetDouble(), 0.0);

  const QXStrValue empty;
  EXPECT_EQ(empty.GetDouble(), -1.7976931348623157e308);
  EXPECT_EQ(empty.GetInt(), 0);
  EXPECT_EQ(empty.GetLength(), 0);
}

TEST(QXStrValueTest, DecimalPointFollowsTheOutputLocale) {
  const std::locale comma(std::locale::classic(), new QXCommon_850::internal::CommaDecimalPoint);
  const std::locale oldGlobal = std::locale::global(comma);
  const std::locale oldCout = std::cout.imbue(comma);
  const double read = QXStrValue("2.5").GetDouble();
  std::locale::global(oldGlobal);
  std::cout.imbue(oldCout);
  EXPECT_EQ(read, 2.5);
}

TEST(QXStrValueTest, ComparesTextsOnly) {
  EXPECT_TRUE(QXStrValue("a") == QXStrValue("a"));
  EXPECT_FALSE(QXStrValue("a") == QXStrValue("b"));
  EXPECT_TRUE(QXStrValue("a") < QXStrValue("b"));
  QXStrValue a("x");
  std::unique_ptr<IQXSettingValue> clone(a.Clone());
  a.SetString("y");
  EXPECT_EQ(clone->GetString(), "x");
}

}  // namespace
}  // namespace QXXML_850
