#include "qx/foundation/qxvaluerecord.h"

#include <gtest/gtest.h>

#include <sstream>

namespace QXCommon_850 {
namespace {

using Names = std::vector<std::string>;

// The name index must cover positions 0..Size()-1 exactly once, in step with
// the values.
void ExpectDenseIndex(const ValueRecord& r) {
  const Names byPosition = r.Names(true);
  ASSERT_EQ(static_cast<int>(byPosition.size()), r.Size());
  for (int i = 0; i < r.Size(); ++i) {
    EXPECT_FALSE(byPosition[static_cast<size_t>(i)].empty()) << "position " << i;
    EXPECT_EQ(r.IndexOf(byPosition[static_cast<size_t>(i)]), i);
    EXPECT_EQ(r.GetName(i), byPosition[static_cast<size_t>(i)]);
  }
}

TEST(ValueRecordTest, AddReplacesKnownNamesAndAppendsNewOnes) {
  ValueRecord r(4);
  EXPECT_EQ(r.Add("a", 1), 0);
  EXPECT_EQ(r.Add("b", 2), 1);
  EXPECT_EQ(r.Add("a", 3), 0);
  EXPECT_EQ(r.Size(), 2);
  EXPECT_EQ(r.Get("a").GetInteger(), 3);

  ValueRecord order;
  order.Add("b", 1);
  order.Add("a", 2);
  EXPECT_EQ(order.Names(false), (Names{"a", "b"}));
  EXPECT_EQ(order.Names(true), (Names{"b", "a"}));
  ExpectDenseIndex(order);

  // AddAll goes in name order, so the other's positions aren't kept.
  ValueRecord merged;
  merged.Add("z", 0);
  EXPECT_TRUE(merged.AddAll(order));
  EXPECT_EQ(merged.Names(true), (Names{"z", "a", "b"}));
  EXPECT_EQ(merged.Get("b").GetInteger(), 1);
  EXPECT_TRUE(merged.AddAll(merged));
  EXPECT_EQ(merged.Size(), 3);
  ExpectDenseIndex(merged);
}

TEST(ValueRecordTest, RemoveKeepsPositionsDense) {
  ValueRecord r;
  r.Add("x", 1);
  r.Add("y", 2);
  r.Add("z", 3);
  r.Remove("nobody");
  EXPECT_EQ(r.Size(), 3);
  r.Remove("x");
  EXPECT_EQ(r.IndexOf("y"), 0);
  EXPECT_EQ(r.IndexOf("z"), 1);
  EXPECT_EQ(r.GetName(2), "");
  EXPECT_EQ(r[1].GetInteger(), 3);
  ExpectDenseIndex(r);
  r.Add("x", 4);
  r.Remove("z");
  EXPECT_EQ(r.Names(true), (Names{"y", "x"}));
  ExpectDenseIndex(r);
  r.Clear();
  EXPECT_EQ(r.Size(), 0);
  EXPECT_EQ(r.IndexOf("y"), -1);
}

TEST(ValueRecordTest, LookupsReportByTheirResult) {
  ValueRecord r;
  r.Add("a", 1.5);
  EXPECT_TRUE(r.Get(-1).IsNull());
  EXPECT_TRUE(r.Get(1).IsNull());
  EXPECT_TRUE(r.Get("unknown").IsNull());
  EXPECT_FALSE(r.Contains("unknown"));
  EXPECT_EQ(r.Size(), 1);
  r["unknown"];  // operator[] by name adds it
  EXPECT_TRUE(r.Contains("unknown"));
  EXPECT_EQ(r.IndexOf("unknown"), 1);
  r["a"] = "now text";
  EXPECT_EQ(r.Get(0).GetStringRef(), "now text");
  EXPECT_EQ(r.GetRecord(), nullptr);

  // A copy from Get is independent of the record.
  Value copy = r.Get("a");
  copy = 5;
  EXPECT_EQ(r.Get("a").GetType(), Value::STRING_TYPE);
}

TEST(ValueRecordTest, SetChecksTheKindOnRequest) {
  ValueRecord r;
  r.Add("a", 2.5);
  r.Add("n", Value());
  EXPECT_FALSE(r.Set("missing", Value(1), false));
  EXPECT_FALSE(r.Set("a", Value(1), true));
  EXPECT_EQ(r.Get("a").GetReal(), 2.5);
  EXPECT_TRUE(r.Set("n", Value(1), true));
  EXPECT_EQ(r.Get("n").GetType(), Value::INTEGER_TYPE);
  EXPECT_TRUE(r.Set("a", Value(1), false));
  EXPECT_EQ(r.Get("a").GetType(), Value::INTEGER_TYPE);

  // SetValue assigns, so the kind follows the argument.
  EXPECT_TRUE(r.SetValue(0, "text"));
  EXPECT_EQ(r[0].GetType(), Value::STRING_TYPE);
  EXPECT_TRUE(r.SetValue(0, 7LL));
  EXPECT_EQ(r[0].GetInteger(), 7);
  EXPECT_TRUE(r.SetValue(1, false));
  EXPECT_EQ(r[1].GetType(), Value::BOOL_TYPE);
  r.SetMissingValue(1);
  EXPECT_TRUE(r[1].IsNull());
}

TEST(ValueRecordTest, ClearValuesKeepsNamesAndStructure) {
  ValueRecord r;
  r.Add("a", 1);
  Value array;
  array[1] = 2;
  r.Add("b", array);
  r.ClearValues();
  EXPECT_EQ(r.Size(), 2);
  EXPECT_TRUE(r[0].IsNull());
  EXPECT_EQ(r[1].Size(), 2);
  ExpectDenseIndex(r);
}

TEST(ValueRecordTest, EqualityIgnoresNamesAndNullsSpoilIt) {
  ValueRecord a, b;
  a.Add("x", 1);
  a.Add("y", 2.0);
  b.Add("p", 1);
  b.Add("q", 2.0);
  EXPECT_TRUE(a == b);  // values in name order agree, names don't count
  ValueRecord swapped;
  swapped.Add("q", 1);
  swapped.Add("p", 2.0);  // name order p, q gives 2.0, 1
  EXPECT_FALSE(a == swapped);
  b.Add("r", 3);
  EXPECT_FALSE(a == b);

  a.Add("z", Value());
  ValueRecord copy(a);
  EXPECT_TRUE(a == a);
  EXPECT_FALSE(a == copy);
}

TEST(ValueRecordTest, DisplayLooksLikeAMap) {
  ValueRecord r;
  std::ostringstream empty;
  empty << r;
  EXPECT_EQ(empty.str(), "[]");
  r.Add("b", "x");
  r.Add("a", 1);
  r["c"][0] = true;
  std::ostringstream out;
  out << r;
  EXPECT_EQ(out.str(), "[a:1,b:x,c:{1}]");
}

}  // namespace
}  // namespace QXCommon_850
