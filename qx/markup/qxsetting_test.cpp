#include "qx/markup/qxsetting.h"

#include <gtest/gtest.h>

#include <memory>

#include "qx/markup/qxsettinglistvalue.h"
#include "qx/markup/qxsettings.h"
#include "qx/markup/qxvecvalue.h"

namespace QXXML_850 {
namespace {

TEST(QXSettingTest, ValueClassFollowsWhatIsSet) {
  QXSetting s("alpha", 0.05);
  EXPECT_EQ(s.GetValue()->GetType(), 0);
  EXPECT_EQ(s.GetType(), "");
  s.SetValue("text");
  EXPECT_EQ(s.GetValue()->GetType(), 1);
  QXSettings list;
  list.AddNewSetting("inner", 1.0);
  s.SetValue(list);
  EXPECT_TRUE(s.HasChild());
  EXPECT_FALSE(s.IsList());
  s.SetValue(QXVecValue<int>({1, 2}));
  EXPECT_TRUE(s.IsList());
  s.SetValue(*s.GetValue());  // a copy of its own value
  EXPECT_EQ(s.GetValue()->GetInt(), 2);
}

TEST(QXSettingTest, CopiesAreDeep) {
  QXSettings inner;
  inner.AddNewSetting("x", 1.0);
  QXSetting original("list", inner);
  inner.AddNewSetting("y", 2.0);  // the setting holds its own copy
  auto* held = dynamic_cast<QXSettingListValue*>(original.GetValue());
  ASSERT_NE(held, nullptr);
  EXPECT_EQ(held->GetListValue()->Size(), 1u);
  QXSetting copy(original);
  std::unique_ptr<QXSetting> clone(original.Clone());
  QXSetting assigned("other", 3.0);
  assigned = original;
  held->GetListValue()->AddNewSetting("z", 3.0);
  for (const QXSetting* s : {&copy, clone.get(), &assigned}) {
    EXPECT_EQ(s->GetName(), "list");
    EXPECT_EQ(dynamic_cast<QXSettingListValue*>(s->GetValue())->GetListValue()->Size(), 1u);
  }
}

TEST(QXSettingTest, EqualityIsStrictOrderLooksAtValues) {
  QXSetting a("n", 1.0), b("n", 1.0), c("m", 1.0), d("n", 2.0);
  EXPECT_TRUE(a == b);
  EXPECT_FALSE(a == c);  // another name
  b.SetType("t");
  EXPECT_FALSE(a == b);  // another type
  EXPECT_FALSE(a < c || c < a);
  EXPECT_TRUE(a < d);
  EXPECT_FALSE(a == QXSetting("n", "1"));  // another value class
}

}  // namespace
}  // namespace QXXML_850
