#include "qx/matrices/qxsymmatrix.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "qx/foundation/internal/testutil.h"
#include "qx/matrices/internal/testutil.h"
#include "qx/matrices/qxbitset.h"

namespace QXMath_850 {
namespace {

using QXCommon_850::internal::CaptureDisplay;

using Vec = std::vector<double>;
using internal::Packed;

// A matrix of order n whose element (i, j), i >= j, is 10 * i + j + 1, so
// that every element tells where it came from.
QXSymMatrix Labelled(int n) {
  QXSymMatrix a(n, true);
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j <= i; ++j)
      a.SetElem(i, j, 10.0 * i + j + 1.0);
  }
  return a;
}

TEST(QXSymMatrixTest, ElementsSitAtPackedPositions) {
  QXSymMatrix a(6, true);
  EXPECT_TRUE(a.SetElem(17, 4.5));  // 5*6/2 + 2
  EXPECT_EQ(a.GetElem(2, 5), 4.5);
  EXPECT_EQ(a.GetElem(5, 2), 4.5);
  EXPECT_TRUE(a.SetElem(1, 4, -1.0));
  EXPECT_EQ(a.AsVectorConst()[11], -1.0);
  EXPECT_FALSE(a.SetElem(21, 1.0));

  QXSymMatrix b = Labelled(4);
  Vec v;
  ASSERT_TRUE(b.GetRow(1, v));
  EXPECT_EQ(v, (Vec{11, 12, 22, 32}));
  EXPECT_FALSE(b.GetRow(4, v));
  b.GetDiagonal(v);
  EXPECT_EQ(v, (Vec{1, 12, 23, 34}));
  EXPECT_EQ(b.Trace(), 70.0);
  ASSERT_TRUE(b.SetNBlocks(2));
  EXPECT_EQ(b.GetElem(1, 0, 1, 0), 31.0);

  // Column 1, rows 0..3, at stride 2 forwards and backwards; out only grows.
  v.clear();
  ASSERT_TRUE(b.GetPCol(1, 0, 3, v, 2));
  EXPECT_EQ(v, (Vec{11, 0, 12, 0, 22, 0, 32}));
  ASSERT_TRUE(b.GetPCol(1, 0, 3, v, -2));
  EXPECT_EQ(v, (Vec{32, 0, 22, 0, 12, 0, 11}));
  EXPECT_FALSE(b.GetPCol(4, 0, 3, v, 1));

  v.assign(6, 1.0);
  EXPECT_TRUE(b.IncrVecByRow(2, v, 1, 4, 2.0, true));
  EXPECT_EQ(v, (Vec{1, 43, 45, 47, 67, 1}));
  EXPECT_FALSE(b.IncrVecByRow(2, v, 3, 4, 2.0, true));  // runs past v

  EXPECT_TRUE(b.PutRow(2, {7, 8, 9, 10}));
  EXPECT_EQ(b.AsVectorConst(), (Vec{1, 11, 12, 7, 8, 9, 31, 32, 10, 34}));
  EXPECT_FALSE(b.PutRow(2, {1, 2, 3}));
}

TEST(QXSymMatrixTest, SizingKeepsTheLeadingCornerAndReportsFailure) {
  EXPECT_EQ(QXSymMatrix().GetNBlocks(), 0);
  QXSymMatrix blocks(3, 0, true);
  EXPECT_EQ(blocks.GetNRows(), 0);
  EXPECT_TRUE(blocks.IsValidMatrix());

  QXSymMatrix a = Labelled(3);
  ASSERT_TRUE(a.Resize(5));
  EXPECT_EQ(a.AsVectorConst(), (Vec{1, 11, 12, 21, 22, 23, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
  a = Labelled(5);
  ASSERT_TRUE(a.Resize(3));
  EXPECT_EQ(a.AsVectorConst(), Labelled(3).AsVectorConst());
  ASSERT_TRUE(a.SetNRows(-1, false));
  EXPECT_EQ(a.GetNRows(), 0);
  EXPECT_EQ(a.GetNBlocks(), 0);
  EXPECT_TRUE(a.AsVectorConst().empty());

  // A store that can't be had leaves an invalid matrix, not an exception;
  // copies stay invalid and a new size makes it valid again.
  QXSymMatrix huge(INT_MAX, false);
  EXPECT_FALSE(huge.IsValidMatrix());
  EXPECT_EQ(huge.GetNRows(), -1);
  a = Labelled(2);
  EXPECT_FALSE(a.Resize(INT_MAX));
  EXPECT_EQ(a.GetNRows(), -1);
  EXPECT_TRUE(a.AsVectorConst().empty());
  QXSymMatrix copy(a);
  EXPECT_FALSE(copy.IsValidMatrix());
  EXPECT_EQ(copy.Trace(), 0.0);
  ASSERT_TRUE(copy.Resize(2));
  EXPECT_TRUE(copy.IsValidMatrix());

  QXSymMatrix d = Labelled(4);
  ASSERT_TRUE(d.SetNBlocks(2));
  ASSERT_TRUE(d.DeleteOneRow(1));
  EXPECT_EQ(d.AsVectorConst(), (Vec{1, 21, 23, 31, 33, 34}));
  EXPECT_EQ(d.GetNBlocks(), 2);
  EXPECT_EQ(d.GetBlockSize(), 1);
  QXSymMatrix one = Labelled(1);
  ASSERT_TRUE(one.DeleteOneRow(0));
  EXPECT_EQ(one.GetNRows(), 0);
}

TEST(QXSymMatrixTest, RankOneUpdatesAccumulateTheLowerTriangle) {
  const Vec x = {2.0, 0.0, -1.0, 3.0};
  QXSymMatrix a(4, true);
  ASSERT_TRUE(a.UpdateXX(x, 0.5));
  EXPECT_EQ(a.AsVectorConst(), (Vec{2, 0, 0, -1, 0, 0.5, 3, 0, -1.5, 4.5}));
  EXPECT_FALSE(a.UpdateXX(x, 0.0));
  EXPECT_FALSE(a.UpdateXX({1.0, 2.0}, 1.0));
  EXPECT_TRUE(a.UpdateXXPosNegW(x, -0.5));
  EXPECT_EQ(a.AsVectorConst(), Vec(10, 0.0));

  // UpdateXX skips a zero row whole, so an infinity elsewhere doesn't reach it.
  const double inf = std::numeric_limits<double>::infinity();
  QXSymMatrix skip(2, true), noSkip(2, true);
  ASSERT_TRUE(skip.UpdateXX({inf, 0.0}, 1.0));
  EXPECT_EQ(skip.GetElem(1, 0), 0.0);
  noSkip.IncrementByVV(Vec{inf, 0.0}.data(), 1.0);
  EXPECT_TRUE(std::isnan(noSkip.GetElem(1, 0)));

  // The sparse update in any order of indices equals the dense one.
  QXSymMatrix dense(5, true), sparse(5, true);
  ASSERT_TRUE(dense.UpdateXX({0.0, 1.5, 0.0, -2.0, 4.0}, 2.0));
  ASSERT_TRUE(sparse.UpdateXXSparse(3, {4, 1, 3}, {4.0, 1.5, -2.0}, 2.0));
  EXPECT_EQ(sparse.AsVectorConst(), dense.AsVectorConst());
  EXPECT_FALSE(sparse.UpdateXXSparse(4, {4, 1, 3}, {4.0, 1.5, -2.0, 1.0}, 2.0));
  // A bad index stops the update halfway, with the pairs before it done.
  QXSymMatrix partial(3, true);
  EXPECT_FALSE(partial.UpdateXXSparse(2, {1, 7}, {1.0, 1.0}, 1.0));
  EXPECT_EQ(partial.GetElem(1, 1), 1.0);

  QXBitSet keep(3);
  keep.SetSubset({0, 2}, true);
  QXSymMatrix nr(3, true);
  ASSERT_TRUE(nr.UpdateXXNonRedun({1.0, 2.0, 3.0}, keep, 1.0));
  EXPECT_EQ(nr.AsVectorConst(), (Vec{1, 0, 0, 3, 0, 9}));
}

TEST(QXSymMatrixTest, WholeMatrixEditsAndTheirRefusals) {
  QXSymMatrix a = Labelled(4);
  EXPECT_FALSE(a.AddToDiagonalPart(0, 4, 1.0));
  EXPECT_TRUE(a.AddToDiagonalPart(0, 3, 1.0));
  EXPECT_TRUE(a.AddToDiagonalPart(1, 0, 1.0));
  Vec v;
  a.GetDiagonal(v);
  EXPECT_EQ(v, (Vec{2, 13, 24, 34}));

  double largest = 7.0, smallest = 8.0, lo = 0.0, so = 0.0;
  QXSymMatrix().MaxMinDiag(largest, smallest);
  EXPECT_EQ(largest, 7.0);
  EXPECT_EQ(smallest, 8.0);
  a.MaxMinDiagOffDiag(largest, smallest, lo, so);
  EXPECT_EQ((Vec{largest, smallest, lo, so}), (Vec{34, 2, 33, 11}));

  ASSERT_TRUE(a.ZeroOut(1));
  EXPECT_EQ(a.AsVectorConst(), (Vec{2, 0, 0, 21, 0, 24, 31, 0, 33, 34}));
  QXBitSet cols(4);
  cols.SetRange(0, 3, true);
  EXPECT_TRUE(a.IsZeroRow(1, cols));
  EXPECT_FALSE(a.IsZeroRow(1, QXBitSet()));
  EXPECT_FALSE(a.ZeroOut(4));

  // The running maximum lets a small row escape when it comes first, and a
  // zero maximum clears the row.
  QXSymMatrix s = Packed({0.001, 0, 100, 0.5, 0, 0.01});
  s.ZeroOutRowsForSmallDiag(0.001);
  EXPECT_EQ(s.AsVectorConst(), (Vec{0.001, 0, 100, 0, 0, 0}));
  s = Packed({0, 1, 2});
  s.ZeroOutRowsForSmallDiag(0.5);
  EXPECT_EQ(s.AsVectorConst(), (Vec{0, 0, 2}));

  s = Packed({4, 2, 0, 0, 0, 0.4});
  EXPECT_TRUE(s.ReplaceDiagZeroes(0.1));
  EXPECT_EQ(s.AsVectorConst(), (Vec{4, 2, 4, 0, 0, 4}));

  s = Packed({4, 0.2, 1});
  s.ZeroOutNonDiag(0.05);
  EXPECT_EQ(s.GetElem(1, 0), 0.2);
  s.ZeroOutNonDiag(0.1);  // at the bound 0.1 * sqrt(4 * 1) is cleared
  EXPECT_EQ(s.GetElem(1, 0), 0.0);
  s = Packed({-8, 0.7, 0.5, 2, -0.79, 3});
  s.ZeroOutAllSmall(0.1);  // below 0.1 * 8, the diagonal included
  EXPECT_EQ(s.AsVectorConst(), (Vec{-8, 0, 0, 2, 0, 3}));

  // Rows with no positive diagonal in either matrix go in both.
  s = Packed({1, 2, -3, 4, 5, 6});
  QXSymMatrix t = Packed({1, 2, 3, 4, 5, 0});
  EXPECT_FALSE(s.SetCovarZeros(a));
  ASSERT_TRUE(s.SetCovarZeros(t));
  EXPECT_EQ(s.AsVectorConst(), (Vec{1, 0, 0, 0, 0, 0}));
  EXPECT_EQ(t.AsVectorConst(), s.AsVectorConst());
  t = Labelled(3);
  EXPECT_FALSE(t.ZeroOutRedundant(QXBitSet(2)));
  QXBitSet keep(3);
  keep.Set(1, true);
  ASSERT_TRUE(t.ZeroOutRedundant(keep));
  EXPECT_EQ(t.AsVectorConst(), (Vec{0, 0, 12, 0, 0, 0}));
  ASSERT_TRUE(t.SetRowColToConst(0, -1.0));
  EXPECT_EQ(t.AsVectorConst(), (Vec{-1, -1, 12, -1, 0, 0}));
  EXPECT_FALSE(t.SetRowColToConst(3, 1.0));

  t = Labelled(3);
  t.ChangeSign();
  t.MultiplyByNumber(-0.5);
  t.MultiplyByNumber(2.0);
  EXPECT_EQ(t.AsVectorConst(), Labelled(3).AsVectorConst());
  ASSERT_TRUE(t.SetToVW({1, 2, 3}, {0, 1, -1}));  // v_i w_j + w_i v_j
  EXPECT_EQ(t.AsVectorConst(), (Vec{0, 1, 4, -1, 1, -6}));
  EXPECT_FALSE(t.SetToVW({1, 2}, {0}));
}

TEST(QXSymMatrixTest, ExtractorsCopyOrAddTheChosenPartsAndDisplay) {
  const QXSymMatrix a = Labelled(5);
  QXSymMatrix out;
  ASSERT_TRUE(a.ExtractSubmatrix({0, 2, 4}, out));
  EXPECT_EQ(out.AsVectorConst(), (Vec{1, 21, 23, 41, 43, 45}));
  EXPECT_FALSE(a.ExtractSubmatrix({2, 2}, out));
  ASSERT_TRUE(a.ExtractFirstNRows(out));
  EXPECT_EQ(out.AsVectorConst(), Labelled(4).AsVectorConst());
  ASSERT_TRUE(Labelled(1).ExtractFirstNRows(out));
  EXPECT_EQ(out.GetNRows(), 0);

  // The block extractors add into what the target holds.
  QXSymMatrix block = Packed({0, 100, 0});
  ASSERT_TRUE(a.ExtractDiagBlock(2, 2, block));
  EXPECT_EQ(block.AsVectorConst(), (Vec{23, 133, 34}));
  EXPECT_FALSE(a.ExtractDiagBlock(4, 2, block));
  QXSymMatrix withLast(3, true);
  ASSERT_TRUE(a.ExtractBlockAndLastRow(1, 2, withLast));
  EXPECT_EQ(withLast.AsVectorConst(), (Vec{12, 22, 23, 42, 43, 45}));
  EXPECT_FALSE(a.ExtractBlockAndLastRow(3, 2, withLast));

  // Only as many true bits are used as there are rows.
  QXBitSet where(6);
  where.SetSubset({1, 3, 4, 5}, true);
  ASSERT_TRUE(Labelled(3).Expand(where, out));
  EXPECT_EQ(out.AsVectorConst(),
            (Vec{0, 0, 1, 0, 0, 0, 0, 11, 0, 12, 0, 21, 0, 22, 23, 0, 0, 0, 0, 0, 0}));

  Vec part = {9, 9, 9, 9};
  ASSERT_TRUE(a.ExtractPartOfLastRow(1, 3, part));
  EXPECT_EQ(part, (Vec{42, 43, 44, 9}));
  EXPECT_FALSE(a.ExtractPartOfLastRow(3, 3, part));
  QXSymMatrix head = Labelled(3);
  head.SetData(a);  // counts and store
  EXPECT_EQ(head.GetNRows(), 5);
  EXPECT_EQ(head.AsVectorConst(), a.AsVectorConst());
  head = Labelled(5);
  head.ChangeSign();
  ASSERT_TRUE(head.ReplaceFirstRows(Labelled(2), 2));
  EXPECT_EQ(head.GetElem(1, 1), 12.0);
  EXPECT_EQ(head.GetElem(2, 0), -21.0);
  EXPECT_FALSE(head.ReplaceFirstRows(Labelled(2), 3));

  QXSymMatrix sum = Labelled(3);
  EXPECT_TRUE(sum.ComputeAXpY(-1.0, Labelled(3)));
  EXPECT_EQ(sum.AsVectorConst(), Vec(6, 0.0));
  EXPECT_FALSE(sum.ComputeAXpY(1.0, Labelled(2)));

  const std::string s = CaptureDisplay([] {
    Labelled(2).Display();
    Labelled(2).DisplayF();
  });
  EXPECT_EQ(s.rfind("\nQXSymMatrix display start\nThe number of rows = 2", 0), 0u);
  EXPECT_NE(s.find("\nThe block size = 2\nLower triangular"), std::string::npos);
  EXPECT_NE(s.find("\nQXSymMatrix full matrix display start\nNumber of rows = 2\nrow 0: "),
            std::string::npos);
  EXPECT_EQ(s.substr(s.size() - 24), "\nQXSymMatrix display end");
}

}  // namespace
}  // namespace QXMath_850
