#include "qx/markup/qxvecvalue.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "qx/foundation/internal/testutil.h"
#include "qx/markup/qxnumvalue.h"

namespace QXXML_850 {
namespace {

using StrInt = std::pair<std::string, int>;
using StrDouble = std::pair<std::string, double>;
using StrStr = std::pair<std::string, std::string>;

TEST(QXVecValueTest, EachElementTypeHasItsSubtype) {
  EXPECT_EQ(QXVecValue<int>().GetSubType(), 1);
  EXPECT_EQ(QXVecValue<double>().GetSubType(), 2);
  EXPECT_EQ(QXVecValue<std::string>().GetSubType(), 3);
  EXPECT_EQ(QXVecValue<StrInt>().GetSubType(), 4);
  EXPECT_EQ(QXVecValue<StrDouble>().GetSubType(), 5);
  EXPECT_EQ(QXVecValue<StrStr>().GetSubType(), 6);
  EXPECT_EQ(QXVecValue<QXSettings>().GetSubType(), 7);
  EXPECT_EQ(QXVecValue<int>().GetType(), 2);
}

TEST(QXVecValueTest, ScalarReadsTreatItAsACollection) {
  QXVecValue<double> v({1.5, 2.25});
  EXPECT_EQ(v.GetInt(), 2);
  EXPECT_EQ(v.GetDouble(), 2.0);
  EXPECT_TRUE(v.GetBool());
  EXPECT_EQ(v.GetString(), "1.5,2.25");
  EXPECT_FALSE(QXVecValue<int>().GetBool());
  EXPECT_EQ(QXVecValue<StrInt>({{"a", 1}, {"b", 2}}).GetString(), "a:1,b:2");

  std::unique_ptr<IQXSettingValue> clone(v.Clone());
  v.Add(3.0);
  EXPECT_EQ(v.Size(), 3);
  EXPECT_EQ(clone->GetInt(), 2);
}

TEST(QXVecValueTest, ComparesSameElementTypeOnly) {
  const double one = 1.0, next = std::nextafter(1.0, 2.0);
  EXPECT_TRUE(QXVecValue<double>({one, 2.0}) == QXVecValue<double>({next, 2.0}));
  EXPECT_FALSE(QXVecValue<double>({one}) == QXVecValue<double>({one, one}));
  EXPECT_TRUE(QXVecValue<StrDouble>({{"a", one}}) == QXVecValue<StrDouble>({{"a", next}}));
  EXPECT_FALSE(QXVecValue<StrDouble>({{"a", one}}) == QXVecValue<StrDouble>({{"b", one}}));
  EXPECT_FALSE(QXVecValue<int>({1}) == QXVecValue<double>({1.0}));
  EXPECT_FALSE(QXVecValue<int>({1}) < QXVecValue<double>({2.0}));
  EXPECT_FALSE(QXVecValue<int>({1}) == QXNumValue(1));

  EXPECT_TRUE(QXVecValue<int>({1, 2}) < QXVecValue<int>({1, 3}));
  EXPECT_TRUE(QXVecValue<int>({1}) < QXVecValue<int>({1, 0}));

  QXSettings small, large;
  small.AddNewSetting("x", 1.0);
  large.AddNewSetting("x", 2.0);
  EXPECT_TRUE(QXVecValue<QXSettings>({small}) < QXVecValue<QXSettings>({large}));
  EXPECT_FALSE(QXVecValue<QXSettings>({small}) == QXVecValue<QXSettings>({large}));
}

TEST(QXVecValueTest, Display) {
  EXPECT_EQ(QXCommon_850::internal::CaptureDisplay([] {
              QXVecValue<int>({1, 2}).Display();
              QXVecValue<StrStr>(std::vector<StrStr>{{"k", "v"}}).Display();
            }),
            "\nSetting Value Type = List\nSetting Value (size = 2)\n  1 2\n"
            "\nSetting Value Type = List\nSetting Value (size = 1)\n  \"k:v\"\n");
}

}  // namespace
}  // namespace QXXML_850
