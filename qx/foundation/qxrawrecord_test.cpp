#include "qx/foundation/qxrawrecord.h"

#include <gtest/gtest.h>

namespace QXCommon_850 {
namespace {

void ExpectInitial(const RawRecord::Cell& cell) {
  EXPECT_EQ(cell.first, 0);
  EXPECT_TRUE(cell.second);
  EXPECT_TRUE(cell.fourth.empty());
}

TEST(RawRecordTest, CellsStartInitialAndCopyAsAWhole) {
  EXPECT_EQ(RawRecord(-2).Size(), 1);
  EXPECT_EQ(RawRecord(0).GetAll(), nullptr);

  RawRecord r(2);
  ExpectInitial(r[0]);
  ExpectInitial(r[1]);
  r[1].first = 4;
  r[1].second = false;
  r[1].third = 2.5;
  r[1].fourth = "a long enough text to live on the heap";

  RawRecord copy(r);
  copy[1].fourth = "changed";
  EXPECT_EQ(r[1].fourth, "a long enough text to live on the heap");
  EXPECT_EQ(copy[1].first, 4);
  EXPECT_FALSE(copy[1].second);
  EXPECT_EQ(copy[1].third, 2.5);

  RawRecord same(2);
  const RawRecord::Cell* before = same.GetAll();
  same = r;
  EXPECT_EQ(same.GetAll(), before);
  EXPECT_EQ(same[1].fourth, r[1].fourth);
  RawRecord longer(5);
  longer = r;
  EXPECT_EQ(longer.Size(), 2);
  EXPECT_EQ(longer[1].third, 2.5);

  // Resize to another size leaves only initial cells.
  EXPECT_TRUE(r.Resize(2));
  EXPECT_EQ(r[1].first, 4);
  EXPECT_TRUE(r.Resize(3));
  for (int i = 0; i < 3; ++i)
    ExpectInitial(r[i]);
  EXPECT_TRUE(r.Resize(-1));
  EXPECT_EQ(r.Size(), 0);
}

}  // namespace
}  // namespace QXCommon_850
