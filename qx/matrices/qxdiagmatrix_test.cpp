#include "qx/matrices/qxdiagmatrix.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "qx/foundation/internal/testutil.h"
#include "qx/foundation/qxmissingvalue.h"
#include "qx/matrices/internal/testutil.h"
#include "qx/matrices/qxrectmatrix.h"
#include "qx/matrices/qxsymblockdiagmatrix.h"
#include "qx/matrices/qxsymmatrix.h"

namespace QXMath_850 {
namespace {

using QXCommon_850::QXMV;
using QXCommon_850::internal::CaptureDisplay;
using Vec = std::vector<double>;

TEST(QXDiagMatrixTest, OnlyTheDiagonalCanBeWritten) {
  QXDiagMatrix empty;
  EXPECT_EQ(empty.GetType(), 1);
  EXPECT_EQ(empty.GetElem(1, 2), 0.0);

  QXDiagMatrix d(Vec{1, 2, 3});
  EXPECT_FALSE(d.SetElem(1, 2, 5.0));
  EXPECT_TRUE(d.SetElem(1, 1, 5.0));
  EXPECT_TRUE(d.PutRow(1, {0, 7, 0}));
  EXPECT_FALSE(d.PutRow(1, {1, 7, 0}));
  EXPECT_FALSE(d.PutRow(1, {0, 7}));
  EXPECT_EQ(d.AsVectorConst(), (Vec{1, 7, 3}));
  Vec row;
  ASSERT_TRUE(d.GetRow(2, row));
  EXPECT_EQ(row, (Vec{0, 0, 3}));
  EXPECT_FALSE(d.GetRow(3, row));
  d.ZeroOutNonDiag(1e300);
  EXPECT_TRUE(d.SetRowColToConst(0, -4.0));
  EXPECT_FALSE(d.ZeroOut(3));
  EXPECT_EQ(d.AsVectorConst(), (Vec{-4, 7, 3}));

  double hi = 1, lo = 1, offHi = 1, offLo = 1;
  d.MaxMinDiagOffDiag(hi, lo, offHi, offLo);
  EXPECT_EQ(Vec({hi, lo, offHi, offLo}), (Vec{7, -4, 0, 0}));
  Vec check;
  d.GetNCheckDiagonal(check, 3.0, 1.0);
  EXPECT_EQ(check, (Vec{1, 7, 3}));

  Vec v(5, 1.0);
  EXPECT_TRUE(d.IncrVecByRow(1, v, 2, 3, 2.0, true));
  EXPECT_EQ(v, (Vec{1, 1, 1, 15, 1}));
  EXPECT_FALSE(d.IncrVecByRow(1, v, 3, 3, 2.0, true));
  QXBitSet columns(3);
  columns.Set(0, true);
  EXPECT_TRUE(d.IsZeroRow(1, columns));
  EXPECT_FALSE(d.IsZeroRow(0, columns));

  // Sizing keeps what fits; the store must hold one double per row.
  ASSERT_TRUE(d.Resize(4));
  EXPECT_EQ(d.AsVectorConst(), (Vec{-4, 7, 3, 0}));
  EXPECT_FALSE(d.ReplaceDiagonal({}));
  d.AsVector().push_back(1.0);
  EXPECT_FALSE(d.IsValidMatrix());
  ASSERT_TRUE(d.SetNRows(2, true));
  EXPECT_TRUE(d.IsValidMatrix());
  EXPECT_EQ(d.AsVectorConst(), (Vec{0, 0}));

  // Extraction into a diagonal or dense target; another's tag comes back.
  const QXDiagMatrix e(Vec{1, 2, 3, 4});
  QXDiagMatrix first;
  ASSERT_TRUE(e.ExtractFirstNRows(first));
  EXPECT_EQ(first.AsVectorConst(), (Vec{1, 2, 3}));
  QXSymMatrix dense;
  ASSERT_TRUE(e.ExtractSubmatrix({1, 3}, dense));
  EXPECT_EQ(dense.AsVectorConst(), (Vec{2, 0, 4}));
  EXPECT_FALSE(e.ExtractSubmatrix({3, 1}, first));
  QXSymBlockDiagMatrix blocks;
  EXPECT_TRUE(e.ExtractFirstNRows(blocks));
  EXPECT_EQ(blocks.GetNRows(), 0);

  const std::string text = CaptureDisplay([&] { e.Display(); });
  EXPECT_NE(text.find("QXDiagMatrix display start"), std::string::npos);
  EXPECT_NE(text.find("QXDiagMatrix display end"), std::string::npos);
}

TEST(QXDiagMatrixTest, FactorSolveAndDeterminantJudgeEachElementAlone) {
  // LTSolve compares with tol itself and leaves a rejected element in x.
  QXDiagMatrix d(Vec{4, 0.5});
  Vec x;
  EXPECT_EQ(d.LTSolve({8, 3}, 1.0, x), 1);
  EXPECT_EQ(x, (Vec{2, 0.5}));
  EXPECT_EQ(d.LTSolve({8, 3}, 0.0, x), -1);
  x.clear();
  EXPECT_EQ(QXDiagMatrix(Vec{4, -1, 2}).LTSolve({8, 3, 4}, 0.1, x), -1);
  EXPECT_EQ(x[0], 2.0);

  // CholInverse: an element equal to tol is rejected; any target will do.
  QXDiagMatrix inverse;
  EXPECT_EQ(QXDiagMatrix(Vec{2, 1, 4}).CholInverse({}, 1.0, inverse), 2);
  EXPECT_EQ(inverse.AsVectorConst(), (Vec{0.5, 0, 0.25}));
  QXSymBlockDiagMatrix blockTarget;
  blockTarget.AddBlock(QXSymMatrix(3, true));
  EXPECT_EQ(QXDiagMatrix(Vec{2, 1, 4}).CholInverse({}, 0.5, blockTarget), 3);
  EXPECT_EQ(blockTarget.GetElem(2, 2), 0.25);
  QXBitSet kept;
  double minPivot = 0.0;
  EXPECT_EQ(QXDiagMatrix(Vec{9, 0, 4}).CholInverse({}, 0.5, inverse, kept), 2);
  EXPECT_FALSE(kept.IsIn(1));
  EXPECT_EQ(QXDiagMatrix(Vec{9, 16, 4}).CholInverse({}, 0.5, inverse, minPivot), 3);
  EXPECT_EQ(minPivot, 2.0);

  // LTChol takes square roots above tol * diag[i].
  QXDiagMatrix f(Vec{9, 1e-20, 16});
  EXPECT_EQ(f.LTChol(Vec{1, 1, 1}, 1e-12, true), 1);
  EXPECT_EQ(f.AsVectorConst(), (Vec{3, 0, 4}));
  EXPECT_EQ(f.LTChol(Vec{1, -1, 1}, 1e-12, true), -1);
  QXDiagMatrix g(Vec{9, 4});
  EXPECT_EQ(g.LTChol(1e-12, minPivot, true), 0);
  EXPECT_EQ(minPivot, 2.0);

  // The determinant is the product, tol ignored, in the mantissa form.
  double det[2] = {9, 9};
  EXPECT_TRUE(QXDiagMatrix(Vec{2, 5}).ComputeDeterminant(1.0, det));
  EXPECT_EQ(Vec(det, det + 2), (Vec{1, 1}));
  EXPECT_TRUE(QXDiagMatrix(Vec{2, 0, 5}).ComputeDeterminant(1.0, det));
  EXPECT_EQ(Vec(det, det + 2), (Vec{0, 0}));
  EXPECT_FALSE(QXDiagMatrix().ComputeDeterminant(1.0, det));
  EXPECT_TRUE(QXDiagMatrix(Vec{1e300, 1e300, -1e300}).ComputeDeterminant(1.0, det));
  EXPECT_TRUE(std::fabs(det[0] + 1.0) < 1e-13 && det[1] == 900.0) << det[0] << " " << det[1];

  QXDiagMatrix h(Vec{2, 0, -4});
  EXPECT_EQ(h.LTDetInverse(det, 11), 1);
  EXPECT_EQ(det[0], 0.0);
  EXPECT_EQ(h.AsVectorConst(), (Vec{0.5, 0, -0.25}));
  EXPECT_TRUE(h.LTInverse());
  h.LTLTransL();
  EXPECT_EQ(h.AsVectorConst(), (Vec{4, 0, 16}));

  // AXpY only with a diagonal of the same order.
  EXPECT_FALSE(h.ComputeAXpY(1.0, QXSymMatrix(3, true)));
  EXPECT_TRUE(h.ComputeAXpY(0.5, QXDiagMatrix(Vec{2, 2, 2})));
  EXPECT_EQ(h.AsVectorConst(), (Vec{5, 1, 17}));
}

TEST(QXDiagMatrixTest, ExtrasScaleRectangularRowsAndColumns) {
  const QXDiagMatrix d(Vec{2, -3});
  const QXRectMatrix r = internal::TestRect(4, 3, 5u);
  QXRectMatrix out;
  ASSERT_TRUE(d.ComputeLTransR(r, out, 2));
  for (int i = 0; i < 4; ++i) {
    for (int j = 0; j < 3; ++j)
      EXPECT_EQ(out.GetElem(i, j), (i % 2 == 0 ? 2.0 : -3.0) * r.GetElem(i, j));
  }
  EXPECT_FALSE(d.ComputeLTransR(r, out, 3));
  EXPECT_EQ(d.ComputeRVD(1, r, 2, 1), -3.0 * r.GetElem(2, 2));
  EXPECT_EQ(d.ComputeRTransVD(1, r, 0, 2), -3.0 * r.GetElem(3, 0));
  EXPECT_EQ(d.ComputeRVD(1, r, 2, 2), 0.0);

  QXRectMatrix scaled = internal::TestRect(2, 3, 6u);
  const QXRectMatrix before = scaled;
  ASSERT_TRUE(scaled.ComputeDiagR(d));
  EXPECT_EQ(scaled.GetElem(1, 2), -3.0 * before.GetElem(1, 2));
  QXRectMatrix wrongOrder = r;
  EXPECT_FALSE(wrongOrder.ComputeDiagR(d));
}

}  // namespace
}  // namespace QXMath_850
