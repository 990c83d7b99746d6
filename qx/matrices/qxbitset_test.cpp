#include "qx/matrices/qxbitset.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "qx/foundation/internal/testutil.h"

namespace QXMath_850 {
namespace {

using QXCommon_850::internal::CaptureDisplay;

using Bits = std::vector<bool>;

Bits Flags(const QXBitSet& set) {
  Bits out;
  for (int i = 0; i < set.Size(); i++)
    out.push_back(set.IsIn(i));
  return out;
}

TEST(QXBitSetTest, SingleBitsAndSizes) {
  EXPECT_EQ(QXBitSet(-3).Size(), 0);
  QXBitSet set(4);
  EXPECT_TRUE(set.Set(2, true));
  EXPECT_FALSE(set.Set(4, true));
  EXPECT_FALSE(set.IsIn(-1));
  EXPECT_EQ(Flags(set), (Bits{false, false, true, false}));
  QXBitSet copy(set);
  copy.Negate();
  EXPECT_EQ(Flags(copy), (Bits{true, true, false, true}));
  EXPECT_EQ(set.InSet(), 1);  // the copy is independent
  copy.Clear();
  EXPECT_EQ(copy.Size(), 4);
  EXPECT_EQ(copy.InSet(), 0);

  // Resize re-initialises every bit; Duplicate repeats the contents on entry.
  set.Resize(3, true);
  EXPECT_EQ(Flags(set), Bits(3, true));
  set.Resize(7, false);
  EXPECT_EQ(Flags(set), Bits(7, false));
  set.Resize(-1, true);
  EXPECT_EQ(set.Size(), 0);
  set = QXBitSet(Bits{true, false});
  EXPECT_TRUE(set.Duplicate(2));
  EXPECT_EQ(Flags(set), (Bits{true, false, true, false, true, false}));
  EXPECT_TRUE(set.Duplicate(0));
  EXPECT_FALSE(set.Duplicate(-1));
  EXPECT_EQ(set.Size(), 6);
}

TEST(QXBitSetTest, RangesRefuseBadBoundsAndChangeNothing) {
  QXBitSet set(Bits{true, false, true, true, false});
  EXPECT_EQ(set.InRange(1, 3), 2);
  EXPECT_EQ(set.InRange(2, 1), -1);
  EXPECT_EQ(set.InRange(0, 5), -1);
  EXPECT_EQ(set.InRangeS(2, 0), 0);
  EXPECT_EQ(set.InRangeS(1, 3), 2);
  EXPECT_EQ(set.InRangeS(3, 3), -1);
  EXPECT_EQ(set.InRangeS(0, -1), -1);
  EXPECT_EQ(set.InRangeS(6, 0), -1);
  EXPECT_FALSE(set.SetRange(3, 5, true));
  EXPECT_FALSE(set.SetRange(-1, 2, true));
  EXPECT_FALSE(set.SetSubset({0, 1, 5}, true));
  EXPECT_FALSE(set.SetSubset({-1, 1}, true));
  EXPECT_EQ(set.InSet(), 3);
  EXPECT_TRUE(set.SetSubset({}, true));
  EXPECT_TRUE(set.SetSubset({4, 1}, true));
  EXPECT_TRUE(set.SetRange(0, 2, false));
  EXPECT_EQ(Flags(set), (Bits{false, false, false, true, true}));

  EXPECT_EQ(Flags(set.GetSubset(-5, 3)), (Bits{false, false, false, true}));
  EXPECT_EQ(Flags(set.GetSubset(3, 99)), (Bits{true, true}));
  EXPECT_EQ(set.GetSubset(5, 9).Size(), 0);
}

TEST(QXBitSetTest, CombinationsComparisonsAndDisplay) {
  QXBitSet a(Bits{true, false, true}), b(Bits{false, true, true, true, true}), r(9);
  r.DoOR(a, b);
  EXPECT_EQ(Flags(r), (Bits{true, true, true}));  // the shorter size, also for OR
  r.DoAND(b, a);
  EXPECT_EQ(Flags(r), (Bits{false, false, true}));
  b.DoOR(b, a);  // the result may replace an operand
  EXPECT_EQ(Flags(b), (Bits{true, true, true}));

  QXBitSet before(Bits{true, true, false, true}), after(Bits{true, true, true, false});
  EXPECT_TRUE(before.IsNewFalse(after, 4));
  EXPECT_FALSE(before.IsNewFalse(after, 3));
  EXPECT_FALSE(after.IsNewFalse(before, 2));
  EXPECT_TRUE(before < after);
  EXPECT_FALSE(after < before);
  EXPECT_TRUE(before.GetSubset(0, 2) < before);  // a prefix comes first
  EXPECT_FALSE(before == before.GetSubset(0, 2));
  r = before;
  EXPECT_TRUE(r == before);

  const std::string text = CaptureDisplay([] { QXBitSet(Bits{true, false}).Display(); });
  const std::string end = "\nQXBitSet display end";
  EXPECT_EQ(text.rfind("\nQXBitSet display start\nfbVec", 0), 0u) << text;
  EXPECT_NE(text.find(" t f"), std::string::npos) << text;
  ASSERT_GE(text.size(), end.size());
  EXPECT_EQ(text.substr(text.size() - end.size()), end) << text;
}

}  // namespace
}  // namespace QXMath_850
