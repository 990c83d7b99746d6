#include "qx/markup/qxsettings.h"

#include <gtest/gtest.h>

#include <climits>
#include <memory>

#include "qx/foundation/internal/testutil.h"
#include "qx/markup/qxsettinglistvalue.h"
#include "qx/markup/qxstrvalue.h"
#include "qx/markup/qxvecvalue.h"

namespace QXXML_850 {
namespace {

using Texts = std::vector<std::string>;

double DoubleOf(const QXSetting* s) {
  return s->GetValue()->GetDouble();
}

// The index agrees with the list: for every name, the settings it yields
// are exactly the list's settings of that name, in position order.
void ExpectConsistentIndex(const QXSettings& list) {
  Texts names;
  list.GetSettingNames(names);
  ASSERT_EQ(names.size(), list.Size());
  for (unsigned long i = 0; i < list.Size(); ++i) {
    std::vector<QXSetting*> expected;
    for (unsigned long j = 0; j < list.Size(); ++j) {
      if (names[j] == names[i]) expected.push_back(list.GetSettingAt(j));
    }
    EXPECT_EQ(list.GetSettingByName(names[i]), expected) << names[i];
    EXPECT_EQ(list.FindSetting(names[i]), expected.front()) << names[i];
  }
  EXPECT_EQ(list.GetSettingAt(list.Size()), nullptr);
}

TEST(QXSettingsTest, DuplicateNamesAndDenseDeletion) {
  QXSettings list;
  list.AddNewSetting("a", 1.0);
  list.AddNewSetting("b", "x", "kind");
  list.AddNewSetting("a", 2.0);
  list.AddNewSetting("c", 3.0);
  EXPECT_EQ(DoubleOf(list.FindSetting("a")), 1.0);  // the older one answers
  EXPECT_EQ(list.FindSetting("b")->GetType(), "kind");
  EXPECT_EQ(list.FindSetting("none"), nullptr);
  ExpectConsistentIndex(list);
  Texts names = {"kept"};
  list.GetSettingNames(names);
  EXPECT_EQ(names, (Texts{"kept", "a", "b", "a", "c"}));

  // Removing the older "a" (position 0) moves everything up by one.
  EXPECT_TRUE(list.RemoveSetting("a", false));
  EXPECT_EQ(DoubleOf(list.FindSetting("a")), 2.0);
  EXPECT_EQ(list.GetSettingAt(0)->GetName(), "b");
  EXPECT_EQ(list.GetSettingAt(3), nullptr);
  EXPECT_FALSE(list.RemoveSetting("none", true));
  // Deletion in the middle, then more additions.
  list.AddNewSetting("d", 4.0);
  EXPECT_TRUE(list.RemoveSetting("a", false));
  EXPECT_EQ(list.GetSettingAt(1)->GetName(), "c");
  list.AddNewSetting("b", 5.0);
  ExpectConsistentIndex(list);

  // Replacing leaves one entry, at the end and without a type.
  for (double x : {1.0, 2.0, 3.0}) {
    list.AddNewSetting("n", x, "typed");
  }
  EXPECT_TRUE(list.AddSetting("n", "fresh", true));
  ASSERT_EQ(list.GetSettingByName("n").size(), 1u);
  EXPECT_EQ(list.GetSettingAt(list.Size() - 1), list.FindSetting("n"));
  EXPECT_EQ(list.FindSetting("n")->GetType(), "");
  EXPECT_TRUE(list.AddSetting("n", 9.0, false));
  EXPECT_TRUE(list.RemoveSetting("n", true));
  EXPECT_EQ(list.FindSetting("n"), nullptr);
  ExpectConsistentIndex(list);
}

TEST(QXSettingsTest, TypedScalarReads) {
  QXSettings inner, list;
  inner.AddNewSetting("x", 1.0);
  list.AddNewSetting("text", "12abc");
  list.AddNewSetting("child", inner);
  list.AddNewSetting("number", 2.75);

  int i = 0;
  EXPECT_TRUE(list.GetSettingValByName("text", i));
  EXPECT_EQ(i, 12);
  EXPECT_TRUE(list.GetSettingValByName("child", i));
  EXPECT_EQ(i, INT_MIN);
  double d = 0.0;
  EXPECT_TRUE(list.GetSettingValByName("child", d));
  EXPECT_EQ(d, 2.2250738585072014e-308);
  bool b = false;
  EXPECT_TRUE(list.GetSettingValByName("child", b));
  EXPECT_TRUE(b && QXSettingListValue().GetBool());  // also for an empty list
  std::string s;
  EXPECT_TRUE(list.GetSettingValByName("number", s));
  EXPECT_EQ(s, "2.75");
  i = 77;
  EXPECT_FALSE(list.GetSettingValByName("none", i));  // unknown: out stays
  EXPECT_EQ(i, 77);

  QXSettings out;
  out.AddNewSetting("old", 0.0);
  EXPECT_FALSE(list.GetSettingValByName("number", out));
  EXPECT_EQ(out.Size(), 1u);
  EXPECT_TRUE(list.GetSettingValByName("child", out));
  EXPECT_EQ(DoubleOf(out.FindSetting("x")), 1.0);
  EXPECT_EQ(out.FindSetting("old"), nullptr);
}

TEST(QXSettingsTest, TypedVectorReadsConvertBetweenElementTypes) {
  QXSettings inner, list;
  inner.AddNewSetting("x", 1.0);
  list.AddNewSetting("texts", QXVecValue<std::string>({"1.5", "2"}));
  list.AddNewSetting("bad", QXVecValue<std::string>({"1", "x"}));
  list.AddNewSetting("doubles", QXVecValue<double>({2.75, -1.5}));
  list.AddNewSetting("ints", QXVecValue<int>({3, 4}));
  list.AddNewSetting("pairs", QXVecValue<std::pair<std::string, double>>({{"a", 0.5}}));
  list.AddNewSetting("lists", QXVecValue<QXSettings>({inner, inner}));
  list.AddNewSetting("scalar", "7");

  std::vector<double> d = {9.0};
  EXPECT_TRUE(list.GetSettingValByName("doubles", d));  // same type: replaced
  EXPECT_EQ(d, (std::vector<double>{2.75, -1.5}));
  EXPECT_TRUE(list.GetSettingValByName("ints", d));  // converted: appended
  EXPECT_EQ(d, (std::vector<double>{2.75, -1.5, 3.0, 4.0}));
  d = {9.0};
  EXPECT_TRUE(list.GetSettingValByName("texts", d));
  EXPECT_EQ(d, (std::vector<double>{9.0, 1.5, 2.0}));
  EXPECT_FALSE(list.GetSettingValByName("bad", d));
  EXPECT_TRUE(d.empty());
  d = {9.0};
  EXPECT_TRUE(list.GetSettingValByName("scalar", d));  // doesn't fit: true, untouched
  EXPECT_TRUE(list.GetSettingValByName("pairs", d));
  EXPECT_EQ(d, (std::vector<double>{9.0}));

  std::vector<int> n;
  EXPECT_TRUE(list.GetSettingValByName("doubles", n));
  EXPECT_TRUE(list.GetSettingValByName("texts", n));  // "1.5" reads as 1
  EXPECT_EQ(n, (std::vector<int>{2, -1, 1, 2}));
  Texts t;
  EXPECT_TRUE(list.GetSettingValByName("doubles", t));
  EXPECT_TRUE(list.GetSettingValByName("ints", t));
  EXPECT_EQ(t, (Texts{"2.75", "-1.5", "3", "4"}));

  // Pairs and lists say false for a source that doesn't fit.
  std::vector<std::pair<std::string, std::string>> p;
  EXPECT_TRUE(list.GetSettingValByName("pairs", p));
  EXPECT_EQ(p, (std::vector<std::pair<std::string, std::string>>{{"a", "0.5"}}));
  EXPECT_FALSE(list.GetSettingValByName("ints", p));
  std::vector<QXSettings> lists;
  EXPECT_TRUE(list.GetSettingValByName("lists", lists));
  EXPECT_EQ(lists.size(), 2u);
  EXPECT_FALSE(list.GetSettingValByName("doubles", lists));
  EXPECT_FALSE(list.MapVecValue(nullptr, d));
}

TEST(QXSettingsTest, StringConversionsReportFailure) {
  const QXSettings list;
  double d = 0.0;
  EXPECT_TRUE(list.Str2Double("2.5 and more", &d));
  EXPECT_EQ(d, 2.5);
  EXPECT_FALSE(list.Str2Double("abc", &d));
  EXPECT_FALSE(list.Str2Double("", &d));
  int i = 0;
  EXPECT_FALSE(list.Str2Int("99999999999", &i));
  std::vector<double> out = {1.0};
  EXPECT_FALSE(list.StrVec2DoubleVec({}, out));
  EXPECT_TRUE(out.empty());
  std::vector<int> ints = {5};
  EXPECT_TRUE(list.StrVec2IntVec({"1.5", "-7"}, ints));
  EXPECT_EQ(ints, (std::vector<int>{5, 1, -7}));
}

TEST(QXSettingsTest, ComparisonSeesValuesOnly) {
  QXSettings a, b, bigger, text, number;
  a.AddNewSetting("x", 1.0);
  a.AddNewSetting("y", "t");
  b.AddNewSetting("p", 1.0);
  b.AddNewSetting("q", "t", "other type");
  EXPECT_TRUE(a == b);  // other names, same values
  QXSettings longer(b);
  longer.AddNewSetting("z", 0.0);
  EXPECT_EQ(a.Compare(longer), -1);
  EXPECT_EQ(longer.Compare(a), 1);
  bigger.AddNewSetting("x", 2.0);
  EXPECT_EQ(bigger.Compare(a), 1);
  // Values of different classes are unordered, so such lists pass as equal.
  text.AddNewSetting("v", "1");
  number.AddNewSetting("v", 5.0);
  EXPECT_TRUE(text == number);

  QXSettingListValue nestedA(a), nestedB(b), nestedBigger(bigger);
  EXPECT_TRUE(nestedA == nestedB);
  EXPECT_TRUE(nestedA < nestedBigger);
  EXPECT_FALSE(nestedA == QXStrValue(""));
}

TEST(QXSettingsTest, CopiesAreDeep) {
  QXSettings inner, list, assigned;
  inner.AddNewSetting("x", 1.0);
  list.AddNewSetting("child", inner);
  list.AddNewSetting("v", QXVecValue<int>({1}));
  QXSettings copy(list);
  std::unique_ptr<QXSettings> clone(list.Clone());
  assigned.AddNewSetting("gone", 0.0);
  assigned = list;
  list.FindSetting("v")->SetValue(2.0);
  dynamic_cast<QXSettingListValue*>(list.FindSetting("child")->GetValue())->GetListValue()->Clear();
  for (const QXSettings* c : {&copy, clone.get(), &assigned}) {
    QXSettings child;
    EXPECT_TRUE(c->GetSettingValByName("child", child));
    EXPECT_EQ(child.Size(), 1u);
    EXPECT_TRUE(c->FindSetting("v")->IsList());
    ExpectConsistentIndex(*c);
  }
  EXPECT_EQ(assigned.FindSetting("gone"), nullptr);
  QXSettingListValue value(inner), other;
  other = value;
  inner.Clear();
  EXPECT_EQ(other.GetListValue()->Size(), 1u);
}

TEST(QXSettingsTest, DisplayWalksInInsertionOrder) {
  QXSettings list;
  list.AddNewSetting("b", 1.5);
  list.AddNewSetting("a", "t", "kind");
  EXPECT_EQ(QXCommon_850::internal::CaptureDisplay([&] { list.Display(); }),
            "\nSetting Name = b\nSetting Type = \nSetting Value Type = Numeric"
            "\nSetting Value = 1.5\n"
            "\nSetting Name = a\nSetting Type = kind\nSetting Value Type = String"
            "\nSetting Value = t\n");
}

}  // namespace
}  // namespace QXXML_850
