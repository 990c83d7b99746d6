// Record (cells of doubles) and RawRecord (cells of int, flag, double and
// text) share their rules of sizing, copying and resizing: one typed test.
#include "qx/foundation/qxrecord.h"

#include <gtest/gtest.h>

#include <string>

#include "qx/foundation/qxrawrecord.h"

namespace QXCommon_850 {
namespace {

// Each record's cells: writes contents told apart by k, and recognises them.
struct RecordCells {
  using Record = QXCommon_850::Record;
  static void Write(double& cell, int k) { cell = k + 0.5; }
  static bool Holds(double cell, int k) { return cell == k + 0.5; }
  static bool Fresh(double cell) { return cell == 0.0; }
};
struct RawRecordCells {
  using Record = RawRecord;
  // The text is long enough to live on the heap, so a shallow copy would show.
  static std::string Text(int k) { return std::string(40, static_cast<char>('a' + k)); }
  static void Write(RawRecord::Cell& cell, int k) { cell = {k, false, k + 0.5, Text(k)}; }
  static bool Holds(const RawRecord::Cell& cell, int k) {
    return cell.first == k && !cell.second && cell.third == k + 0.5 && cell.fourth == Text(k);
  }
  // The double of a fresh cell is not to be counted on.
  static bool Fresh(const RawRecord::Cell& cell) {
    return cell.first == 0 && cell.second && cell.fourth.empty();
  }
};

template <typename K>
class RecordTest : public ::testing::Test {};
using Kinds = ::testing::Types<RecordCells, RawRecordCells>;
TYPED_TEST_SUITE(RecordTest, Kinds);

TYPED_TEST(RecordTest, SizingCopyingAndResize) {
  using R = typename TypeParam::Record;
  using C = TypeParam;
  EXPECT_EQ(R(-5).Size(), 1);
  const R empty(0);
  EXPECT_EQ(empty.Size(), 0);
  EXPECT_EQ(empty.GetAll(), nullptr);

  R r(3);
  for (int i = 0; i < 3; ++i)
    EXPECT_TRUE(C::Fresh(r[i]));
  C::Write(r[0], 1);
  C::Write(r[2], 2);

  R copy(r);
  C::Write(copy[0], 7);
  EXPECT_TRUE(C::Holds(r[0], 1));
  EXPECT_TRUE(C::Holds(copy[2], 2));

  // Assignment keeps the array when the sizes agree, and replaces it otherwise.
  R same(3);
  const auto* before = same.GetAll();
  same = r;
  EXPECT_EQ(same.GetAll(), before);
  EXPECT_TRUE(C::Holds(same[2], 2));
  R other(1);
  other = r;
  EXPECT_EQ(other.Size(), 3);
  EXPECT_TRUE(C::Holds(other[0], 1));
  other = empty;
  EXPECT_EQ(other.Size(), 0);

  // Resize to the same size keeps the content; any other size loses it.
  EXPECT_TRUE(r.Resize(3));
  EXPECT_TRUE(C::Holds(r[0], 1));
  EXPECT_TRUE(r.Resize(4));
  EXPECT_EQ(r.Size(), 4);
  for (int i = 0; i < 4; ++i)
    EXPECT_TRUE(C::Fresh(r[i]));
  EXPECT_TRUE(r.Resize(-1));
  EXPECT_EQ(r.Size(), 0);
  EXPECT_EQ(r.GetAll(), nullptr);
}

}  // namespace
}  // namespace QXCommon_850
