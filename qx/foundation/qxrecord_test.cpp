#include "qx/foundation/qxrecord.h"

#include <gtest/gtest.h>

namespace QXCommon_850 {
namespace {

TEST(RecordTest, SizingCopyingAndResize) {
  EXPECT_EQ(Record(-5).Size(), 1);
  const Record empty(0);
  EXPECT_EQ(empty.Size(), 0);
  EXPECT_EQ(empty.GetAll(), nullptr);

  Record r(3);
  EXPECT_EQ(r[0], 0.0);
  EXPECT_EQ(r[2], 0.0);
  r[0] = 1.5;
  r[2] = -2.0;

  Record copy(r);
  copy[0] = 9.0;
  EXPECT_EQ(r[0], 1.5);
  EXPECT_EQ(copy[2], -2.0);

  // Assignment keeps the array when the sizes agree, and replaces it otherwise.
  Record same(3);
  const double* before = same.GetAll();
  same = r;
  EXPECT_EQ(same.GetAll(), before);
  EXPECT_EQ(same[2], -2.0);
  Record other(1);
  other = r;
  EXPECT_EQ(other.Size(), 3);
  EXPECT_EQ(other[0], 1.5);
  other = empty;
  EXPECT_EQ(other.Size(), 0);

  // Resize to the same size keeps the content; any other size loses it.
  EXPECT_TRUE(r.Resize(3));
  EXPECT_EQ(r[0], 1.5);
  EXPECT_TRUE(r.Resize(4));
  EXPECT_EQ(r.Size(), 4);
  EXPECT_EQ(r[0], 0.0);
  EXPECT_TRUE(r.Resize(-1));
  EXPECT_EQ(r.Size(), 0);
  EXPECT_EQ(r.GetAll(), nullptr);
}

}  // namespace
}  // namespace QXCommon_850
