#include "qx/foundation/qxvaluerecord.h"

#include <gtest/gtest.h>

#include <sstream>

namespace QXCommon_850 {
namespace {

using Names = std::vector<std::string>;

// The name index must cover positions 0..Size()-1 exactly once.
void ExpectDenseIndex(const ValueRecord& r) {
  const Names byPosition = r.Names(true);
  ASSERT_EQ(static_cast<int>(byPosition.size()), r.Size());
  for (int i = 0; i < r.Size(); ++i) {
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
  // AddAll goes in name order, so the other's positions aren't kept.
  ValueRecord merged;
  merged.Add("z", 0);
  EXPECT_TRUE(merged.AddAll(order));
  EXPECT_TRUE(merged.AddAll(merged));
  EXPECT_EQ(merged.Names(true), (Names{"z", "a", "b"}));
  EXPECT_EQ(merged.Get("b").GetInteger(), 1);
  ExpectDenseIndex(merged);
}

TEST(ValueRecordTest, RemoveKeepsPositionsDense) {
  ValueRecord r;
  r.Add("x", 1);
  r.Add("y", 2);
  r.Add("z", 3);
  r.Remove("nobody");
  r.Remove("x");
  EXPECT_EQ(r.IndexOf("y"), 0);
  EXPECT_EQ(r.IndexOf("z"), 1);
  EXPECT_EQ(r.GetName(2), "");
  EXPECT_EQ(r[1].GetInteger(), 3);
  r.Add("x", 4);
  r.Remove("z");
  EXPECT_EQ(r.Names(true), (Names{"y", "x"}));
  ExpectDenseIndex(r);
  r.Clear();
  EXPECT_EQ(r.IndexOf("y"), -1);
}

TEST(ValueRecordTest, LookupsSetAndClear) {
  ValueRecord r;
  r.Add("a", 2.5);
  EXPECT_TRUE(r.Get(-1).IsNull() && r.Get(1).IsNull() && r.Get("unknown").IsNull());
  EXPECT_FALSE(r.Contains("unknown"));
  EXPECT_EQ(r.Size(), 1);
  r["n"];  // operator[] by name adds it, as null
  EXPECT_EQ(r.IndexOf("n"), 1);
  EXPECT_EQ(r.GetRecord(), nullptr);

  EXPECT_FALSE(r.Set("missing", Value(1), false));
  EXPECT_FALSE(r.Set("a", Value(1), true));  // a real isn't replaced by an integer
  EXPECT_EQ(r.Get("a").GetReal(), 2.5);
  EXPECT_TRUE(r.Set("n", Value(1), true));  // a null value takes any kind
  EXPECT_EQ(r.Get("n").GetType(), Value::INTEGER_TYPE);
  EXPECT_TRUE(r.Set("a", Value(1), false));
  EXPECT_TRUE(r.SetValue(0, "text"));  // by assignment: the kind follows
  EXPECT_EQ(r[0].GetType(), Value::STRING_TYPE);
  r.SetMissingValue(1);
  EXPECT_TRUE(r[1].IsNull());

  Value array;
  array[1] = 2;
  r.Add("b", array);
  r.ClearValues();
  EXPECT_TRUE(r[0].IsNull());
  EXPECT_EQ(r[2].Size(), 2);
  ExpectDenseIndex(r);
}

TEST(ValueRecordTest, EqualityIgnoresNamesAndNullsSpoilIt) {
  ValueRecord a, b, swapped;
  a.Add("x", 1);
  a.Add("y", 2.0);
  b.Add("p", 1);
  b.Add("q", 2.0);
  EXPECT_TRUE(a == b);  // values in name order agree, names don't count
  swapped.Add("q", 1);
  swapped.Add("p", 2.0);  // in name order: 2.0, 1
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
  std::ostringstream empty, out;
  empty << r;
  EXPECT_EQ(empty.str(), "[]");
  r.Add("b", "x");
  r.Add("a", 1);
  r["c"][0] = true;
  out << r;
  EXPECT_EQ(out.str(), "[a:1,b:x,c:{1}]");
}

}  // namespace
}  // namespace QXCommon_850
