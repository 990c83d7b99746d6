#include "qx/matrices/qxsparserectmatrix.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "qx/foundation/internal/testutil.h"
#include "qx/foundation/qxmissingvalue.h"
#include "qx/matrices/internal/testutil.h"
#include "qx/matrices/qxdiagmatrix.h"
#include "qx/matrices/qxsymblockdiagmatrix.h"
#include "qx/matrices/qxsymmatrix.h"

namespace QXMath_850 {
namespace {

using internal::SameBits;
using internal::SameBitsAll;
using QXCommon_850::QXMV;
using Vec = std::vector<double>;
using Rects = std::vector<const IQXRectMatrix*>;

// Wide-ranging values of which about a third are kept, with row 1 and
// column 2 all zero, so that skipped terms and empty rows and columns occur.
QXRectMatrix SparseData(int rows, int cols, unsigned seed) {
  QXRectMatrix m = internal::TestRect(rows, cols, seed);
  std::mt19937 gen(seed);
  std::bernoulli_distribution keep(0.35);
  for (int i = 0; i < rows; ++i) {
    for (int j = 0; j < cols; ++j) {
      if (!keep(gen) || i == 1 || j == 2) m.SetElem(i, j, 0.0);
    }
  }
  return m;
}

Vec Dense(const IQXRectMatrix& m) {
  QXRectMatrix d;
  if (m.GetMatrixType() == 0) return static_cast<const QXRectMatrix&>(m).AsVectorConst();
  EXPECT_TRUE(static_cast<const QXSparseRectMatrix&>(m).ToDense(d));
  return d.AsVectorConst();
}

// s holds exactly d: the same shape and elements, read every way, and a
// store that keeps its invariants.
void ExpectHolds(const QXSparseRectMatrix& s, const QXRectMatrix& d) {
  ASSERT_EQ(s.GetNRows(), d.GetNRows());
  ASSERT_EQ(s.GetNCols(), d.GetNCols());
  EXPECT_TRUE(SameBitsAll(Dense(s), d.AsVectorConst()));
  const std::vector<std::size_t>& starts = s.GetRowStarts();
  ASSERT_EQ(starts.size(), static_cast<std::size_t>(s.GetNRows()) + 1);
  EXPECT_EQ(starts.back(), s.GetNNonZeros());
  std::size_t nonZeros = 0;
  Vec u, v;
  for (int i = 0; i < s.GetNRows(); ++i) {
    for (std::size_t p = starts[i]; p < starts[i + 1]; ++p) {
      EXPECT_NE(s.GetValues()[p], 0.0);
      if (p > starts[i]) {
        EXPECT_LT(s.GetColIndices()[p - 1], s.GetColIndices()[p]);
      }
    }
    ASSERT_TRUE(s.GetRow(i, u) && d.GetRow(i, v));
    EXPECT_EQ(u, v);
    for (int j = 0; j < s.GetNCols(); ++j) {
      EXPECT_EQ(s.GetElem(i, j), d.GetElem(i, j));
      nonZeros += d.GetElem(i, j) != 0.0;
    }
  }
  EXPECT_EQ(s.GetNNonZeros(), nonZeros);
  for (int j = 0; j < s.GetNCols(); ++j) {
    ASSERT_TRUE(s.GetCol(j, u) && d.GetCol(j, v));
    EXPECT_EQ(u, v);
  }
}

TEST(QXSparseRectMatrixTest, HoldsItsDenseCopyThroughEveryEdit) {
  QXRectMatrix d = SparseData(7, 5, 1u);
  QXSparseRectMatrix s(d);
  EXPECT_EQ(s.GetMatrixType(), 1);
  ExpectHolds(s, d);

  // Insert, overwrite and remove; out of range reads are 0.0, writes false.
  int stored = 0;
  while (d.GetElem(5, stored) == 0.0)
    ++stored;
  ASSERT_LT(stored, 5);
  const std::vector<std::tuple<int, int, double>> edits = {
      {0, 4, 2.5}, {1, 0, -3.0}, {1, 0, 7.0}, {5, stored, 0.0}, {6, 2, 0.0}};
  for (auto [i, j, x] : edits) {
    ASSERT_TRUE(s.SetElem(i, j, x));
    d.SetElem(i, j, x);
  }
  ExpectHolds(s, d);
  EXPECT_FALSE(s.SetElem(7, 0, 1.0));
  EXPECT_EQ(s.GetElem(-1, 0), 0.0);

  // Rows in and out: sparse rows, a cleared part, an appended zero row.
  const std::vector<int> index = {1, 4};
  const Vec value = {0.5, -2.0};
  const QXSparseVector row(index, value);
  for (IQXRectMatrix* m : std::vector<IQXRectMatrix*>{&s, &d}) {
    ASSERT_TRUE(m->AddRow(row));
    ASSERT_TRUE(m->SetRow(2, row));
    ASSERT_TRUE(m->ZeroOutRowPart(3, 1, 3));
    ASSERT_EQ(m->AddRow(), 9);
    EXPECT_FALSE(m->ZeroOutRowPart(0, 2, 5));
  }
  ExpectHolds(s, d);
  EXPECT_TRUE(s.IsRowZero(8));
  EXPECT_FALSE(s.IsRowZero(2));

  // Reshaping reads the elements in their row-major places, as dense does.
  for (auto [rows, cols] : std::vector<std::pair<int, int>>{{5, 8}, {9, 3}, {4, 0}, {3, 3}}) {
    ASSERT_TRUE(s.Resize(rows, cols));
    ASSERT_TRUE(d.Resize(rows, cols));
    ExpectHolds(s, d);
  }
  s.Transpose();
  d.Transpose();
  ExpectHolds(s, d);
  ASSERT_TRUE(s.SetNRowsCols(2, 6, true));
  EXPECT_EQ(s.GetNNonZeros(), 0u);

  // A copy, and the display.
  QXSparseRectMatrix copy;
  copy = QXSparseRectMatrix(SparseData(3, 4, 9u));
  ExpectHolds(copy, SparseData(3, 4, 9u));
  const std::string text = QXCommon_850::internal::CaptureDisplay([&] {
    copy.Display();
    copy.DisplayF();
  });
  EXPECT_EQ(text.rfind("\nQXSparseRectMatrix display start\nNumber of rows = 3", 0), 0u);
  EXPECT_NE(text.find("QXSparseRectMatrix full matrix display start"), std::string::npos);
}

// Every product and dot, with either operand sparse, gives the dense bits.
TEST(QXSparseRectMatrixTest, ProductsAndDotsGiveTheDenseBits) {
  const QXRectMatrix ad = SparseData(6, 5, 2u), bd = SparseData(5, 4, 3u),
                     cd = SparseData(3, 5, 4u);
  const QXSparseRectMatrix a(ad), b(bd), c(cd);
  QXRectMatrix ab, act;
  ASSERT_TRUE(ad.ComputeMatrixProduct(bd, ab));
  ASSERT_TRUE(ad.ComputeProductMatrixTrans(cd, act));
  for (const IQXRectMatrix* left : Rects{&ad, &a}) {
    for (const IQXRectMatrix* right : Rects{&bd, &b}) {
      QXRectMatrix dense;
      QXSparseRectMatrix sparse;
      ASSERT_TRUE(left->ComputeMatrixProduct(*right, dense));
      ASSERT_TRUE(left->ComputeMatrixProduct(*right, sparse));
      EXPECT_TRUE(SameBitsAll(dense.AsVectorConst(), ab.AsVectorConst()));
      EXPECT_TRUE(SameBitsAll(Dense(sparse), ab.AsVectorConst()));
    }
    for (const IQXRectMatrix* right : Rects{&cd, &c}) {
      QXRectMatrix dense;
      ASSERT_TRUE(left->ComputeProductMatrixTrans(*right, dense));
      EXPECT_TRUE(SameBitsAll(dense.AsVectorConst(), act.AsVectorConst()));
    }
  }
  EXPECT_FALSE(a.ComputeMatrixProduct(c, act));

  const Vec v5 = internal::WideRangeData(5, 5u, 2), v6 = internal::WideRangeData(6, 6u, 2);
  Vec x, y;
  ASSERT_TRUE(a.ComputeRV(v5, x) && ad.ComputeRV(v5, y));
  EXPECT_TRUE(SameBitsAll(x, y));
  ASSERT_TRUE(a.ComputeVR(v6, x) && ad.ComputeVR(v6, y));
  EXPECT_TRUE(SameBitsAll(x, y));
  EXPECT_FALSE(a.ComputeRV(v6, x));
  x.assign(7, 1.0);
  y.assign(7, 1.0);
  ASSERT_TRUE(a.IncrVecByColumn(3, x, 1, 6, -2.0, true) &&
              ad.IncrVecByColumn(3, y, 1, 6, -2.0, true));
  EXPECT_TRUE(SameBitsAll(x, y));
  EXPECT_FALSE(a.IncrVecByColumn(3, x, 2, 6, 1.0, true));

  for (int i = 0; i < 6; ++i) {
    EXPECT_TRUE(SameBits(a.RowNorm(i), ad.RowNorm(i)));
    for (int j = 0; j < 6; ++j)
      EXPECT_TRUE(SameBits(a.DotProductRows(i, j), ad.DotProductRows(i, j)));
    for (int j = 0; j < 4; ++j) {
      EXPECT_TRUE(SameBits(a.DotProductRowCol(i, b, j), ad.DotProductRowCol(i, bd, j)));
      EXPECT_TRUE(SameBits(ad.DotProductRowCol(i, b, j), ad.DotProductRowCol(i, bd, j)));
    }
    for (int j = 0; j < 3; ++j)
      EXPECT_TRUE(SameBits(a.DotProductRowRow(i, cd, j), ad.DotProductRowRow(i, c, j)));
  }
  for (int i = 0; i < 5; ++i) {
    EXPECT_TRUE(SameBits(a.ColNorm(i), ad.ColNorm(i)));
    for (int j = 0; j < 5; ++j)
      EXPECT_TRUE(SameBits(a.DotProductCol(i, j), ad.DotProductCol(i, j)));
  }
  EXPECT_TRUE(QXMV::IsMissing(a.DotProductRows(0, 6)));
  EXPECT_TRUE(QXMV::IsMissing(a.DotProductRowRow(0, bd, 0)));
  EXPECT_TRUE(QXMV::IsMissing(a.ColNorm(5)));
}

// The copying and reshaping operations fill a dense or a sparse target with
// what the dense class gives, this matrix included as its own target.
TEST(QXSparseRectMatrixTest, CopiesAndExtractsAsTheDenseClassDoes) {
  const QXRectMatrix ad = SparseData(4, 3, 6u);
  const QXSparseRectMatrix a(ad);
  QXRectMatrix expected;
  QXRectMatrix dense;
  QXSparseRectMatrix sparse;
  auto check = [&](auto op) {
    for (IQXRectMatrix* out : std::vector<IQXRectMatrix*>{&dense, &sparse}) {
      ASSERT_TRUE(op(a, *out));
      ASSERT_TRUE(op(ad, expected));
      EXPECT_TRUE(SameBitsAll(Dense(*out), expected.AsVectorConst()));
      EXPECT_EQ(out->GetNCols(), expected.GetNCols());
    }
  };
  check([](const IQXRectMatrix& m, IQXRectMatrix& out) { return m.ShiftColumns(2, out); });
  check([](const IQXRectMatrix& m, IQXRectMatrix& out) { return m.ShiftRows(1, out); });
  check([](const IQXRectMatrix& m, IQXRectMatrix& out) { return m.CreateBlockDiagonal(2, out); });
  check([](const IQXRectMatrix& m, IQXRectMatrix& out) {
    return m.ExtractRows({3, -1, 0, 3}, out) == 3;
  });
  check([](const IQXRectMatrix& m, IQXRectMatrix& out) {
    return m.ExtractColumns({2, 9, 0, 1}, out) == 3;
  });
  check([](const IQXRectMatrix& m, IQXRectMatrix& out) {
    return out.SetNRowsCols(2, 3, true) && m.CopyRowToRow(3, 1, out);
  });
  check([](const IQXRectMatrix& m, IQXRectMatrix& out) { return out.CopyRows(m, 1, 3); });
  EXPECT_EQ(a.ExtractRows({0, 4}, sparse), -1);
  QXSparseRectMatrix narrow(2, 2);
  EXPECT_FALSE(a.CopyRowToRow(0, 0, narrow));
  EXPECT_FALSE(sparse.CopyRows(a, 2, 3));

  // A matrix as its own target.
  QXSparseRectMatrix self(a);
  ASSERT_EQ(self.ExtractRows({2, 0}, self), 2);
  ASSERT_TRUE(self.ComputeMatrixProduct(QXSparseRectMatrix(SparseData(3, 3, 7u)), self));
  QXRectMatrix rows, product;
  ASSERT_EQ(ad.ExtractRows({2, 0}, rows), 2);
  ASSERT_TRUE(rows.ComputeMatrixProduct(SparseData(3, 3, 7u), product));
  EXPECT_TRUE(SameBitsAll(Dense(self), product.AsVectorConst()));
}

// QXSymMatrix, QXDiagMatrix and QXSymBlockDiagMatrix take a sparse R in every
// product that reads R through the interface, and give the bits of a dense R.
TEST(QXSparseRectMatrixTest, SymmetricProductsTakeItWithTheDenseBits) {
  const QXSymMatrix s = internal::TestMatrix(5, 8u, internal::Kind::kRandom);
  const QXDiagMatrix diag(internal::WideRangeData(5, 9u, 2));
  QXBitSet isDiag(2);
  isDiag.Set(0, true);
  QXSymBlockDiagMatrix blocks({2, 3}, isDiag);
  ASSERT_TRUE(blocks.ReplaceBlock(0, Vec{1.5, -2.0}));
  ASSERT_TRUE(blocks.ReplaceBlock(1, internal::TestMatrix(3, 10u, internal::Kind::kRandom)));
  const QXRectMatrix rd = SparseData(7, 5, 11u), td = SparseData(5, 7, 12u);
  const QXSparseRectMatrix r(rd), t(td);
  const Vec v = internal::WideRangeData(5, 13u, 2);
  for (const IQXSymMatrix* m : std::vector<const IQXSymMatrix*>{&s, &diag, &blocks}) {
    QXSymMatrix symDense, symSparse;
    QXRectMatrix rectDense, rectSparse;
    ASSERT_TRUE(m->ComputeRSRTrans(rd, symDense) && m->ComputeRSRTrans(r, symSparse));
    EXPECT_TRUE(SameBitsAll(symDense.AsVectorConst(), symSparse.AsVectorConst()));
    ASSERT_TRUE(m->ComputeRTransSR(td, symDense) && m->ComputeRTransSR(t, symSparse));
    EXPECT_TRUE(SameBitsAll(symDense.AsVectorConst(), symSparse.AsVectorConst()));
    ASSERT_TRUE(m->ComputeRTransS(td, rectDense) && m->ComputeRTransS(t, rectSparse));
    EXPECT_TRUE(SameBitsAll(rectDense.AsVectorConst(), rectSparse.AsVectorConst()));
    Vec x, y;
    ASSERT_TRUE(m->ComputeRTransSV(td, v, x) && m->ComputeRTransSV(t, v, y));
    EXPECT_TRUE(SameBitsAll(x, y));
    for (int i = 0; i < 7; ++i)
      EXPECT_TRUE(SameBits(m->ComputeVSV(rd, i), m->ComputeVSV(r, i)));
  }
  // The dense class keeps R S for a dense R, and takes its own store as out.
  QXRectMatrix rs;
  EXPECT_FALSE(s.ComputeRS(r, rs));
  QXSymMatrix self(s), expected;
  const QXRectMatrix square = SparseData(5, 5, 14u);
  ASSERT_TRUE(s.ComputeRSRTrans(square, expected));
  ASSERT_TRUE(self.ComputeRSRTrans(QXSparseRectMatrix(square), self));
  EXPECT_TRUE(SameBitsAll(self.AsVectorConst(), expected.AsVectorConst()));
}

// The sparse block updates equal the dense rank-one updates row by row, and
// the dense R^T S R, added in the trailing corner.
TEST(QXSparseRectMatrixTest, UpdateXXCornerBlockAddsTheDenseUpdates) {
  const int order = 9, cols = 6, rows = 40, corner = order - cols;
  const QXRectMatrix xd = SparseData(rows, cols, 15u);
  const QXSparseRectMatrix x(xd);
  Vec w = internal::WideRangeData(rows, 16u, 1);
  w[3] = 0.0;
  const QXSymMatrix start = internal::TestMatrix(order, 17u, internal::Kind::kRandom);

  QXSymMatrix sparse(start), dense(start);
  ASSERT_TRUE(sparse.UpdateXXCornerBlock(x, w));
  Vec padded(order, 0.0);
  for (int k = 0; k < rows; ++k) {
    for (int j = 0; j < cols; ++j)
      padded[corner + j] = xd.GetElem(k, j);
    ASSERT_TRUE(dense.UpdateXXPosNegW(padded, w[k]));
  }
  EXPECT_TRUE(SameBitsAll(sparse.AsVectorConst(), dense.AsVectorConst()));

  const QXSymMatrix weight = internal::TestMatrix(rows, 18u, internal::Kind::kRandom);
  QXSymMatrix product;
  ASSERT_TRUE(weight.ComputeRTransSR(xd, product));
  sparse = start;
  dense = start;
  ASSERT_TRUE(sparse.UpdateXXCornerBlock(x, weight));
  for (int i = 0; i < cols; ++i) {
    for (int j = 0; j <= i; ++j)
      dense.SetElem(corner + i, corner + j,
                    dense.GetElem(corner + i, corner + j) + product.GetElem(i, j));
  }
  EXPECT_TRUE(SameBitsAll(sparse.AsVectorConst(), dense.AsVectorConst()));

  QXSymMatrix small(cols - 1, true);
  EXPECT_FALSE(small.UpdateXXCornerBlock(x, w));
  EXPECT_FALSE(sparse.UpdateXXCornerBlock(x, Vec(rows - 1, 1.0)));
  EXPECT_FALSE(sparse.UpdateXXCornerBlock(x, start));
}

}  // namespace
}  // namespace QXMath_850
