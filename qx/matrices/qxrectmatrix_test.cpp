#include "qx/matrices/qxrectmatrix.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "qx/foundation/internal/testutil.h"
#include "qx/foundation/qxmissingvalue.h"
#include "qx/matrices/internal/testutil.h"
#include "qx/matrices/qxbitset.h"
#include "qx/matrices/qxsparserectmatrix.h"
#include "qx/matrices/qxsymmatrix.h"

namespace QXMath_850 {
namespace {

using QXCommon_850::internal::CaptureDisplay;

using QXCommon_850::QXMV;
using IVec = std::vector<int>;
using Vec = std::vector<double>;

QXRectMatrix FromRows(int rows, int cols, const Vec& values) {
  QXRectMatrix m(rows, cols, true);
  m.AsVector() = values;
  return m;
}

QXRectMatrix Random(int rows, int cols, unsigned seed) {
  std::mt19937_64 engine(seed);
  std::uniform_real_distribution<double> u(-1.0, 1.0);
  QXRectMatrix m(rows, cols, true);
  for (double& a : m.AsVector())
    a = u(engine);
  return m;
}

// Largest |(A B)_ij - C_ij| with A B formed in long double.
double ProductError(const QXRectMatrix& a, const QXRectMatrix& b, const QXRectMatrix& c) {
  double worst = 0.0;
  for (int i = 0; i < a.GetNRows(); ++i) {
    for (int j = 0; j < b.GetNCols(); ++j) {
      long double sum = 0.0L;
      for (int k = 0; k < a.GetNCols(); ++k)
        sum += static_cast<long double>(a.GetElem(i, k)) * b.GetElem(k, j);
      worst = std::fmax(worst, std::fabs(static_cast<double>(sum - c.GetElem(i, j))));
    }
  }
  return worst;
}

TEST(QXRectMatrixTest, SizingReshapingAndTheInvalidState) {
  QXRectMatrix a = FromRows(3, 2, {1, 2, 3, 4, 5, 6});
  EXPECT_EQ(a.GetMatrixType(), 0);
  ASSERT_TRUE(a.Resize(2, 3));
  EXPECT_EQ(a.AsVectorConst(), Vec({1, 2, 3, 4, 5, 6}));
  EXPECT_EQ(a.GetElem(1, 0), 4.0);
  a.Transpose();
  EXPECT_EQ(a.AsVectorConst(), Vec({1, 4, 2, 5, 3, 6}));
  EXPECT_EQ(a.AddColumn(), 3);
  EXPECT_EQ(a.AsVectorConst(), Vec({1, 4, 0, 2, 5, 0, 3, 6, 0}));
  EXPECT_EQ(a.AddRow(), 4);
  ASSERT_TRUE(a.DeleteOneCol(1));
  ASSERT_TRUE(a.DeleteOneRow(0));
  EXPECT_EQ(a.AsVectorConst(), Vec({2, 0, 3, 0, 0, 0}));
  EXPECT_FALSE(a.DeleteOneRow(3));
  EXPECT_FALSE(a.AddToDiagonal(1.0));

  QXRectMatrix empty(0, 4, true);
  empty.Transpose();
  EXPECT_EQ(empty.GetNRows(), 4);
  EXPECT_EQ(empty.GetNCols(), 0);

  // A store that can't be had leaves an invalid matrix, and so do its copies.
  QXRectMatrix huge(INT_MAX, INT_MAX, false);
  EXPECT_FALSE(huge.IsValidMatrix());
  EXPECT_EQ(huge.GetNRows(), -1);
  EXPECT_EQ(huge.GetNCols(), -1);
  QXRectMatrix copy(huge);
  EXPECT_FALSE(copy.IsValidMatrix());
  EXPECT_EQ(copy.AddRow(), -1);
  ASSERT_TRUE(copy.SetNRowsCols(2, 2, true));
  EXPECT_EQ(copy.AsVectorConst(), Vec(4, 0.0));
}

TEST(QXRectMatrixTest, RowsColumnsExtractionAndExpansion) {
  const QXRectMatrix a = FromRows(3, 3, {1, 2, 3, 4, 5, 6, 7, 8, 9});
  Vec v;
  ASSERT_TRUE(a.GetCol(1, v));
  EXPECT_EQ(v, Vec({2, 5, 8}));
  EXPECT_FALSE(a.GetRow(3, v));
  EXPECT_TRUE(QXMV::IsMissing(a.RowNorm(-1)));
  EXPECT_EQ(a.DotProductCol(0, 2), 1 * 3 + 4 * 6 + 7 * 9);
  EXPECT_DOUBLE_EQ(a.ColNorm(0), std::sqrt(1.0 + 16.0 + 49.0));
  EXPECT_EQ(a.DotProductRows(0, 2), 1 * 7 + 2 * 8 + 3 * 9);
  EXPECT_EQ(a.DotProductColCol(1, a, 2), 2 * 3 + 5 * 6 + 8 * 9);
  EXPECT_TRUE(QXMV::IsMissing(a.DotProductRows(0, 3)));
  EXPECT_TRUE(QXMV::IsMissing(a.DotProductColCol(0, FromRows(2, 1, {1, 1}), 0)));
  QXSparseRectMatrix sparse(a);
  for (const IQXRectMatrix* other :
       {static_cast<const IQXRectMatrix*>(&a), static_cast<const IQXRectMatrix*>(&sparse)}) {
    EXPECT_EQ(a.DotProductRowCol(0, *other, 2), 1 * 3 + 2 * 6 + 3 * 9);
    EXPECT_EQ(a.DotProductRowRow(0, *other, 2), 1 * 7 + 2 * 8 + 3 * 9);
    EXPECT_TRUE(QXMV::IsMissing(a.DotProductRowCol(0, *other, 3)));
    EXPECT_TRUE(QXMV::IsMissing(a.DotProductRowRow(3, *other, 0)));
  }
  EXPECT_EQ(a.GetRowPtr(2)[1], 8.0);
  EXPECT_EQ(a.GetColPtr(2)[3], 6.0);
  EXPECT_EQ(a.GetRowPtr(3), nullptr);
  EXPECT_EQ(a.GetColPtr(-1), nullptr);
  ASSERT_TRUE(a.CopyColToVec(1, v));
  EXPECT_EQ(v, Vec({2, 5, 8}));
  v.assign(4, 1.0);
  ASSERT_TRUE(a.IncrVecByColumn(1, v, 1, 3, 2.0, true));
  EXPECT_EQ(v, Vec({1, 5, 11, 17}));
  EXPECT_FALSE(a.IncrVecByColumn(1, v, 2, 3, 2.0, true));  // runs past v

  // Copies between rows and columns, then edits of a column or a row part.
  QXRectMatrix c(3, 3, true);
  ASSERT_TRUE(a.CopyRowToRow(2, 0, c));
  ASSERT_TRUE(c.CopyColToRow(a, 1, 1));
  ASSERT_TRUE(a.CopyColToCol(0, 2, c));
  EXPECT_EQ(c.AsVectorConst(), Vec({7, 8, 1, 2, 5, 4, 0, 0, 7}));
  EXPECT_FALSE(a.CopyRowToRow(0, 0, sparse));
  EXPECT_FALSE(FromRows(2, 1, {1, 2}).CopyColToCol(0, 0, c));
  ASSERT_TRUE(c.ColScale(0, 2.0));
  ASSERT_TRUE(c.AddToColumn(1, a, 2, -1.0));
  ASSERT_TRUE(c.ZeroOutRowPart(2, 0, 1));
  EXPECT_FALSE(c.IsRowZero(2));
  ASSERT_TRUE(c.ZeroOutCol(2));
  EXPECT_EQ(c.AsVectorConst(), Vec({14, 5, 0, 4, -1, 0, 0, 0, 0}));
  EXPECT_TRUE(c.IsRowZero(2) && c.IsColZero(2));
  EXPECT_FALSE(c.IsRowZero(0) || c.IsColZero(0) || c.IsColZero(3));
  EXPECT_FALSE(c.ZeroOutRowPart(0, 2, 1));
  EXPECT_FALSE(c.ColScale(3, 1.0));
  EXPECT_FALSE(c.AddToColumn(0, FromRows(2, 1, {1, 1}), 0, 1.0));
  EXPECT_EQ(c.FindFirstNonZeroInRow(0, 5.0), 0);
  EXPECT_EQ(c.FindFirstNonZeroInRow(1, 4.0), -1);
  ASSERT_TRUE(c.ComputeVecProduct({1, 2}, {3, 4, 5}));
  EXPECT_EQ(c.AsVectorConst(), Vec({3, 4, 5, 6, 8, 10}));

  // Only the last index is checked against the size; others that miss are
  // skipped.
  QXRectMatrix out;
  EXPECT_EQ(a.ExtractRows({0, 7}, out), -1);
  ASSERT_EQ(a.ExtractRows({-1, 2}, out), 1);
  EXPECT_EQ(out.AsVectorConst(), Vec({7, 8, 9}));
  ASSERT_EQ(a.ExtractColumns({2, 5, 0}, out), 2);
  EXPECT_EQ(out.AsVectorConst(), Vec({3, 1, 6, 4, 9, 7}));
  EXPECT_EQ(a.ExtractRows({0}, sparse), -1);

  // Expansion puts extracted rows back at their bits.
  QXBitSet keep(5);
  keep.SetSubset({1, 4}, true);
  ASSERT_EQ(a.ExtractRows({0, 2}, out), 2);
  QXRectMatrix back;
  ASSERT_TRUE(out.Expand(keep, true, back));
  EXPECT_EQ(back.AsVectorConst(), Vec({0, 0, 0, 1, 2, 3, 0, 0, 0, 0, 0, 0, 7, 8, 9}));
  ASSERT_TRUE(FromRows(1, 2, {5, 6}).Expand(keep, false, back));
  EXPECT_EQ(back.AsVectorConst(), Vec({0, 5, 0, 0, 6}));

  ASSERT_TRUE(FromRows(2, 2, {1, 2, 3, 4}).ShiftColumns(1, out));
  EXPECT_EQ(out.AsVectorConst(), Vec({0, 1, 2, 0, 3, 4}));
  EXPECT_FALSE(QXRectMatrix().ShiftRows(1, out));
  ASSERT_TRUE(FromRows(1, 2, {1, 2}).CreateBlockDiagonal(2, out));
  EXPECT_EQ(out.AsVectorConst(), Vec({1, 2, 0, 0, 0, 0, 1, 2}));
  ASSERT_TRUE(FromRows(1, 1, {5}).ExpandSquare(FromRows(2, 1, {1, 2}), out));
  EXPECT_EQ(out.AsVectorConst(), Vec({5, 1, 2, 1, 0, 0, 2, 0, 0}));

  QXRectMatrix b = FromRows(1, 3, {1, 1, 1});
  ASSERT_TRUE(b.ExpandRectangular(b));
  EXPECT_EQ(b.GetNRows(), 2);
  ASSERT_TRUE(b.CopyRows(a, 1, 2));
  EXPECT_EQ(b.AsVectorConst(), Vec({4, 5, 6, 7, 8, 9}));
  ASSERT_TRUE(b.CopyRows(sparse, 0, 1));
  EXPECT_EQ(b.AsVectorConst(), Vec({1, 2, 3}));
  EXPECT_FALSE(b.CopyRows(a, 2, 2));
  ASSERT_TRUE(b.CopyColumns(a, 1, 2));
  EXPECT_EQ(b.AsVectorConst(), Vec({2, 3, 5, 6, 8, 9}));

  // A sparse row lands in a dense one with zeros around it.
  const IVec index = {0, 2};
  const Vec value = {-1.0, 4.0};
  const QXSparseVector row(index, value);
  ASSERT_TRUE(b.SetNRowsCols(1, 3, true));
  ASSERT_TRUE(b.AddRow(row));
  EXPECT_EQ(b.AsVectorConst(), Vec({0, 0, 0, -1, 0, 4}));
  ASSERT_TRUE(b.SetRow(0, row));
  EXPECT_FALSE(FromRows(1, 2, {1, 2}).SetRow(0, row));

  // The packed symmetric matrix reads into and expands with rectangles.
  const QXSymMatrix s = internal::Packed({0, 10, 11, 20, 21, 22});
  QXRectMatrix r(3, 2, true);
  ASSERT_TRUE(s.CopyRowToRColumn(1, r, 1, -1));
  EXPECT_EQ(r.AsVectorConst(), Vec({0, 10, 0, 11, 0, 21}));
  QXRectMatrix block(2, 2, true);
  block.AddToDiagonal(100.0);
  ASSERT_TRUE(s.ExtractBlockInLowTriangular(1, 0, 2, 2, block));
  EXPECT_EQ(block.AsVectorConst(), Vec({110, 11, 20, 121}));
  EXPECT_FALSE(s.ExtractBlockInLowTriangular(0, 0, 1, 2, block));
  QXSymMatrix big;
  ASSERT_TRUE(s.ExpandSym(FromRows(1, 3, {7, 8, 9}), big));
  EXPECT_EQ(big.AsVectorConst(), Vec({0, 10, 11, 20, 21, 22, 7, 8, 9, 0}));
}

// Products agree with a long double reference. That an operand reached
// through the interface gives the dense path's bits is held in the sparse
// matrix's tests.
TEST(QXRectMatrixTest, ProductsMatchALongDoubleReference) {
  const QXRectMatrix a = Random(5, 4, 1u), b = Random(4, 6, 2u), c = Random(3, 4, 3u);
  QXRectMatrix dense;
  ASSERT_TRUE(a.ComputeMatrixProduct(b, dense));
  EXPECT_LT(ProductError(a, b, dense), 1e-15);
  EXPECT_FALSE(a.ComputeMatrixProduct(c, dense));
  ASSERT_TRUE(a.ComputeProductMatrixTrans(c, dense));
  QXRectMatrix ct(c);
  ct.Transpose();
  EXPECT_LT(ProductError(a, ct, dense), 1e-15);

  // A product may overwrite its own left operand.
  QXRectMatrix self(a);
  ASSERT_TRUE(self.ComputeMatrixProduct(b, self));
  ASSERT_TRUE(a.ComputeMatrixProduct(b, dense));
  EXPECT_EQ(self.AsVectorConst(), dense.AsVectorConst());

  // Dense and sparse vectors, on either side.
  const Vec v = {0.0, 2.5, 0.0, -1.0};
  const IVec vIndex = {1, 3};
  const Vec vValues = {2.5, -1.0};
  Vec rv, rvSparse, vr, vrSparse;
  ASSERT_TRUE(a.ComputeRV(v, rv));
  ASSERT_TRUE(a.ComputeRV(vIndex, vValues, rvSparse));
  ASSERT_EQ(rv.size(), 5u);
  EXPECT_LT(ProductError(a, FromRows(4, 1, v), FromRows(5, 1, rv)), 1e-15);
  EXPECT_EQ(rvSparse, rv);
  const Vec u = {1.0, 0.0, 0.0, -2.0, 0.5};
  ASSERT_TRUE(a.ComputeVR(u, vr));
  ASSERT_TRUE(a.ComputeVR({0, 3, 4}, {1.0, -2.0, 0.5}, vrSparse));
  EXPECT_EQ(vr, vrSparse);
  EXPECT_NEAR(a.ComputeVRW({0, 3, 4}, {1.0, -2.0, 0.5}, vIndex, vValues),
              std::inner_product(vr.begin(), vr.end(), v.begin(), 0.0), 1e-14);
  EXPECT_TRUE(QXMV::IsMissing(a.ComputeVRW({5}, {1.0}, vIndex, vValues)));
  // Only the leading entries that the counts say are read.
  EXPECT_EQ(a.ComputeSpVRSpW(2, {0, 3, 4}, {1.0, -2.0, 0.5}, 1, vIndex, vValues),
            a.GetElem(0, 1) * 2.5 - 2.0 * (a.GetElem(3, 1) * 2.5));
  EXPECT_TRUE(
      QXMV::IsMissing(a.ComputeSpVRSpW(4, {0, 3, 4}, {1.0, -2.0, 0.5}, 1, vIndex, vValues)));
  EXPECT_FALSE(a.ComputeRV(Vec(3, 1.0), rv));

  // Slices of v against a block diagonal of copies of the matrix.
  Vec twice = v;
  twice.insert(twice.end(), {1.0, 1.0, 1.0, 1.0});
  ASSERT_TRUE(a.ComputeRDiagV(twice, vr));
  ASSERT_EQ(vr.size(), 10u);
  EXPECT_EQ(Vec(vr.begin(), vr.begin() + 5), rv);
  EXPECT_DOUBLE_EQ(vr[5], a.GetElem(0, 0) + a.GetElem(0, 1) + a.GetElem(0, 2) + a.GetElem(0, 3));

  // R1^T S R2 on the sub-block of S from row 2, R1 entering at row 1: R1
  // there picks rows 1 and 0 of the block, and R2 permutes its columns.
  const QXSymMatrix s = internal::Packed(internal::WideRangeData(21, 6u, 0));
  const QXRectMatrix r1 = FromRows(4, 2, {9, 9, 0, 1, 1, 0, 0, 0});
  const QXRectMatrix r2 = FromRows(3, 3, {0, 0, 1, 1, 0, 0, 0, 1, 0});
  QXRectMatrix got;
  ASSERT_TRUE(got.ComputeR1TransSR2(r1, 1, r2, 0, s, 2, 3));
  EXPECT_EQ(got.AsVectorConst(), Vec({s.GetElem(3, 3), s.GetElem(3, 4), s.GetElem(3, 2),
                                      s.GetElem(2, 3), s.GetElem(2, 4), s.GetElem(2, 2)}));
  EXPECT_FALSE(got.ComputeR1TransSR2(r1, 3, r2, 0, s, 2, 3));

  // S written out in full by subtraction: tr(S S) is the sum of the squares
  // of its elements, also over a trailing block, and S - S is zero.
  const QXSymMatrix s3 = internal::Packed({1, 2, 3, 3, 4, 5});
  QXRectMatrix full(3, 3, true);
  ASSERT_TRUE(full.SubtractSymMatrix(s3, -1.0));
  double trace = 0.0;
  ASSERT_TRUE(full.TraceOfProductSqS(s3, trace));
  EXPECT_EQ(trace, 93.0);
  QXSymMatrix tail;
  ASSERT_TRUE(s3.ExtractSubmatrix({1, 2}, tail));
  ASSERT_TRUE(full.TraceOfProductSubMatSym(1, tail, trace));
  EXPECT_EQ(trace, 66.0);
  EXPECT_FALSE(full.TraceOfProductSqS(s, trace));
  ASSERT_TRUE(full.SubtractSymMatrix(s3, 1.0));
  EXPECT_EQ(full.AsVectorConst(), Vec(9, 0.0));
}

TEST(QXRectMatrixTest, HouseholderQRReproducesTheMatrixWithOrthogonalQ) {
  for (const auto& shape : {std::pair<int, int>{7, 4}, {6, 6}, {3, 5}, {1, 1}, {12, 1}}) {
    const int m = shape.first, n = shape.second;
    const QXRectMatrix a = Random(m, n, 40u + m * n);
    const int lng = std::max(m, n), srt = std::min(m, n);
    QXSymMatrix r;
    QXRectMatrix q;
    ASSERT_TRUE(a.QRDecompositionH(r, q)) << m << "x" << n;
    ASSERT_EQ(r.GetNRows(), srt);
    ASSERT_EQ(q.GetNRows(), lng);
    ASSERT_EQ(q.GetNCols(), lng);
    // A (transposed when wide) = Q R, with R upper triangular.
    for (int i = 0; i < lng; ++i) {
      for (int j = 0; j < srt; ++j) {
        double sum = 0.0;
        for (int k = 0; k <= j; ++k)
          sum += q.GetElem(i, k) * r.GetElem(k, j);
        const double aij = m >= n ? a.GetElem(i, j) : a.GetElem(j, i);
        EXPECT_NEAR(sum, aij, 20 * lng * 2.2e-16) << m << "x" << n << " at " << i << "," << j;
      }
    }
    for (int i = 0; i < lng; ++i) {
      for (int j = 0; j < lng; ++j)
        EXPECT_NEAR(q.DotProductCol(i, j), i == j ? 1.0 : 0.0, 20 * lng * 2.2e-16);
    }
  }
  // A zero column stops the factorization.
  QXSymMatrix r;
  QXRectMatrix q;
  EXPECT_FALSE(FromRows(3, 2, {0, 1, 0, 2, 0, 3}).QRDecompositionH(r, q));
}

TEST(QXRectMatrixTest, LinearDependencyTools) {
  QXRectMatrix m = FromRows(3, 2, {1, 2, 2, 4, 0, 0});
  double ratio = 0.0;
  ASSERT_TRUE(m.IsERowMultipleOfAnother(0, 1, 3.0, 6.0, ratio));
  EXPECT_EQ(ratio, 0.5);
  EXPECT_FALSE(m.IsERowMultipleOfAnother(0, 1, 3.0, 5.0, ratio));
  EXPECT_FALSE(m.IsERowMultipleOfAnother(0, 2, 1.0, 0.0, ratio));
  ASSERT_TRUE(m.IsERowMultipleOfAnother(2, 2, 3.0, 1.5, ratio));
  EXPECT_EQ(ratio, 2.0);

  QXRectMatrix ones = FromRows(1, 4, {0.9999999999, -1.0000000001, 0.5, 1.1});
  ones.CheckForOnes(1e-9);
  EXPECT_EQ(ones.AsVectorConst(), Vec({1.0, -1.0, 0.5, 1.1}));

  QXRectMatrix clean = FromRows(3, 2, {1e-300, 3.0, -2e-300, 1e-20, 3e-300, 4.0});
  ASSERT_TRUE(clean.ColClean(0, 1.0));
  ASSERT_TRUE(clean.ColClean(1, 1.0));
  const Vec cleaned = {0.0, 3.0, 0.0, 0.0, 0.0, 4.0};
  for (int k = 0; k < 6; ++k)
    EXPECT_DOUBLE_EQ(clean.AsVectorConst()[k], cleaned[k]);
  EXPECT_FALSE(clean.ColClean(2, 1.0));

  // Eliminating on the first element above tol: the row becomes zero, and
  // every column takes its multiple of the pivot column.
  QXRectMatrix e = FromRows(2, 3, {0.0, -1.0, 2.0, 1.0, 3.0, 5.0});
  int pivot = 0;
  ASSERT_TRUE(e.ZeroOutPivotRow(0, 1e-12, pivot));
  EXPECT_EQ(pivot, 1);
  EXPECT_EQ(e.AsVectorConst(), Vec({0.0, 0.0, 0.0, 1.0, 0.0, 11.0}));
  EXPECT_FALSE(e.ZeroOutPivotRow(0, 1e-12, pivot));
  EXPECT_EQ(pivot, -1);

  // Constraint rows with one element make their column redundant.
  const QXRectMatrix constraints = FromRows(3, 4, {0, 1, 0, 0, 1, 0, 1, 0, 0, 0, 0, 0});
  QXBitSet from(4), out;
  from.SetRange(0, 3, true);
  EXPECT_EQ(constraints.CheckAddColRedundancies(from, out), 2);
  EXPECT_TRUE(out.IsIn(0));
  EXPECT_FALSE(out.IsIn(1));
  EXPECT_TRUE(out.IsIn(3));
  int col = 0;
  QXBitSet among(3);
  among.Set(2, true);
  EXPECT_TRUE(constraints.IsRowZeroButOne(1, among, col));
  EXPECT_EQ(col, 2);

  // Two equal columns: h maps L^T onto itself only for L with equal parts.
  const QXRectMatrix h = FromRows(2, 2, {1, 0, 1, 0});
  QXBitSet kept(2);
  kept.SetRange(0, 1, true);
  EXPECT_TRUE(FromRows(2, 2, {1, 1, 0, 0}).IsEstimable(h, kept, 1e-9));
  EXPECT_FALSE(FromRows(1, 2, {1, 0}).IsEstimable(h, kept, 1e-9));
  EXPECT_FALSE(FromRows(1, 2, {1, 1}).IsEstimable(h, kept, 0.0));
  QXBitSet first(2);
  first.Set(0, true);
  EXPECT_TRUE(FromRows(1, 2, {1, 0}).IsEstimable(FromRows(2, 1, {1, 0}), first, 1e-9));

  const std::string s = CaptureDisplay([&] {
    m.Display();
    m.DisplayF();
  });
  EXPECT_EQ(s.rfind("\nQXRectMatrix display start\nNumber of rows = 3", 0), 0u);
  EXPECT_EQ(s.substr(s.size() - 25), "\nQXRectMatrix display end");
}

}  // namespace
}  // namespace QXMath_850
