#include "qx/matrices/qxsymblockdiagmatrix.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "qx/foundation/internal/testutil.h"
#include "qx/foundation/qxmissingvalue.h"
#include "qx/matrices/internal/testutil.h"
#include "qx/matrices/qxdiagmatrix.h"
#include "qx/matrices/qxrectmatrix.h"
#include "qx/matrices/qxsymmatrix.h"

namespace QXMath_850 {
namespace {

using internal::Full;
using internal::Kind;
using internal::SpdMatrix;
using internal::TestMatrix;
using QXCommon_850::QXMV;
using QXCommon_850::internal::CaptureDisplay;
using Vec = std::vector<double>;

// Blocks of sizes 3 (dense), 2 (diagonal), 1 (dense), 4 (dense), 1
// (diagonal): order 11, positive definite, small integers.
QXSymBlockDiagMatrix Mixed() {
  QXSymBlockDiagMatrix b;
  b.AddBlock(SpdMatrix(3, 1u));
  b.AddBlock(Vec{2, 7});
  b.AddBlock(SpdMatrix(1, 2u));
  b.AddBlock(SpdMatrix(4, 3u));
  b.AddBlock(Vec{5});
  return b;
}

// Small integers, so that products with it are exact.
QXRectMatrix IntegerRect(int rows, int cols) {
  QXRectMatrix r(rows, cols, true);
  for (int i = 0; i < rows; ++i) {
    for (int j = 0; j < cols; ++j)
      r.SetElem(i, j, (i * 7 + j * 3) % 11 - 5);
  }
  return r;
}

QXSymMatrix DenseCopy(const IQXSymMatrix& m) {
  QXSymMatrix d(m.GetNRows(), true);
  for (int i = 0; i < m.GetNRows(); ++i) {
    for (int j = 0; j <= i; ++j)
      d.SetElem(i, j, m.GetElem(i, j));
  }
  return d;
}

void ExpectSameElements(const IQXSymMatrix& a, const IQXSymMatrix& b, double tol,
                        const char* what) {
  ASSERT_EQ(a.GetNRows(), b.GetNRows()) << what;
  const Vec x = Full(a), y = Full(b);
  for (std::size_t k = 0; k < x.size(); ++k)
    ASSERT_NEAR(x[k], y[k], tol * (1.0 + std::fabs(y[k]))) << what << " at " << k;
}

// Every question the two structured classes share with the dense one,
// asked of m and of its dense copy. The data are small integers, so that
// the products are exact whatever their order; the factorizations are
// compared to a few units of rounding.
void ExpectAnswersOfTheDenseCopy(const IQXSymMatrix& m) {
  const QXSymMatrix d = DenseCopy(m);
  const int n = m.GetNRows();
  const Vec v = Full(TestMatrix(n, 3u, Kind::kInteger)), w(v.begin() + n, v.begin() + 2 * n);
  const Vec u(v.begin(), v.begin() + n);
  Vec x, y, work;
  double a = 0.0, b = 0.0, c = 0.0, e = 0.0;
  QXRectMatrix rect1(1, 1, true), rect2;
  QXSymMatrix out1, out2;
  // Both answer, and their outputs agree.
  auto sameVec = [&](const char* what, bool ok1, bool ok2) {
    ASSERT_TRUE(ok1 && ok2) << what;
    EXPECT_EQ(x, y) << what;
  };
  auto sameRect = [&](const char* what, bool ok1, bool ok2) {
    ASSERT_TRUE(ok1 && ok2) << what;
    EXPECT_EQ(rect1.AsVectorConst(), rect2.AsVectorConst()) << what;
  };
  auto same = [&](const char* what, bool ok1, bool ok2) {
    ASSERT_TRUE(ok1 && ok2) << what;
    EXPECT_EQ(Full(out1), Full(out2)) << what;
  };

  // Elements, rows and scalars.
  m.GetDiagonal(x);
  d.GetDiagonal(y);
  EXPECT_EQ(x, y);
  EXPECT_EQ(m.Trace(), d.Trace());
  m.MaxMinDiag(a, b);
  d.MaxMinDiag(c, e);
  EXPECT_EQ(Vec({a, b}), Vec({c, e}));
  for (int i = 0; i < n; ++i) {
    sameVec("GetRow", m.GetRow(i, x), d.GetRow(i, y));
    ASSERT_EQ(m.ComputeRVD(i, u, 1), d.ComputeRVD(i, u, 1));
    ASSERT_EQ(m.ComputeRowDotProductS(i, d.AsVectorConst(), n - 1 - i),
              d.ComputeRowDotProductS(i, d.AsVectorConst(), n - 1 - i));
    for (int j = 0; j < n; ++j)
      ASSERT_EQ(m.ComputeDotProduct2Rows(i, j), d.ComputeDotProduct2Rows(i, j));
  }

  // Products with vectors and the forms.
  sameVec("SV", m.ComputeSV(u, x), d.ComputeSV(u, y));
  sameVec("SV(3)", m.ComputeSV(3, u, x), d.ComputeSV(3, u, y));
  sameVec("LV", m.ComputeLV(u, x), d.ComputeLV(u, y));
  sameVec("LTransV", m.ComputeLTransV(u, x), d.ComputeLTransV(u, y));
  sameVec("LTransV sparse", m.ComputeLTransV({n - 1, 0}, {2.0, -1.0}, x),
          d.ComputeLTransV({n - 1, 0}, {2.0, -1.0}, y));
  EXPECT_EQ(m.ComputeVSW(u, w), d.ComputeVSW(u, w));
  EXPECT_EQ(m.ComputeVSV(u), d.ComputeVSV(u));
  EXPECT_EQ(m.ComputeVSWParts(u, 4, w, n - 2), d.ComputeVSWParts(u, 4, w, n - 2));
  EXPECT_EQ(m.ComputeVSW(u, 1, 3, 5), d.ComputeVSW(u, 1, 3, 5));

  // Products with rectangular and symmetric matrices.
  const QXRectMatrix r = IntegerRect(3, n), rt = IntegerRect(n, 2);
  sameRect("RS", m.ComputeRS(r, rect1), d.ComputeRS(r, rect2));
  sameRect("RTransS", m.ComputeRTransS(rt, rect1), d.ComputeRTransS(rt, rect2));
  sameVec("RTransSV", m.ComputeRTransSV(rt, u, x), d.ComputeRTransSV(rt, u, y));
  EXPECT_EQ(m.ComputeVSV(r, 1), d.ComputeVSV(r, 1));
  const QXSymMatrix s = TestMatrix(n, 6u, Kind::kInteger);
  const QXSymMatrix lower = TestMatrix(n, 8u, Kind::kInteger);
  sameRect("SS", m.ComputeSS(s, rect1), d.ComputeSS(s, rect2));
  same("STransS", m.ComputeSTransS(out1), d.ComputeSTransS(out2));
  same("GSG", m.ComputeGSG(s, out1), d.ComputeGSG(s, out2));
  same("GMG", m.ComputeGMG(s.AsVectorConst(), out1), d.ComputeGMG(s.AsVectorConst(), out2));
  same("GMGNG", m.ComputeGMGNG(s, lower, out1, work), d.ComputeGMGNG(s, lower, out2, work));
  same("LSLTrans", m.ComputeLSLTrans(lower, out1), d.ComputeLSLTrans(lower, out2));
  same("LTransSL", m.ComputeLTransSL(lower, out1, 1), d.ComputeLTransSL(lower, out2, 1));
  same("RSRTrans", m.ComputeRSRTrans(r, out1), d.ComputeRSRTrans(r, out2));
  same("RTransSR", m.ComputeRTransSR(rt, out1), d.ComputeRTransSR(rt, out2));
  EXPECT_EQ(m.TraceOfProduct(s), d.TraceOfProduct(s));
  EXPECT_EQ(m.TraceOfProductOfThree(s, lower), d.TraceOfProductOfThree(s, lower));
  // s given as the structured matrix itself.
  same("GSG by m", d.ComputeGSG(m, out1), d.ComputeGSG(d, out2));
  if (m.GetType() != 2) same("MGN", m.ComputeMGN(s, lower, out1), d.ComputeMGN(s, lower, out2));

  // Factor, inverse, solve and determinant, against one reference
  // diagonal for every row.
  const Vec ref(n, 10.0);
  const QXSymMatrix before = DenseCopy(m);
  ASSERT_EQ(d.CholInverse(ref, 1e-12, out2), n);
  if (m.GetType() == 1) {
    ASSERT_EQ(m.CholInverse(ref, 1e-12, out1), n);
    ExpectSameElements(out1, out2, 1e-14, "CholInverse");
  } else {
    QXSymBlockDiagMatrix inverse;
    ASSERT_EQ(m.CholInverse(ref, 1e-12, inverse), n);
    ExpectSameElements(inverse, out2, 1e-14, "CholInverse");
  }
  double det1[2], det2[2];
  ASSERT_TRUE(m.ComputeDeterminant(1e-12, det1));
  ASSERT_TRUE(d.ComputeDeterminant(1e-12, det2));
  EXPECT_NEAR(det1[0], det2[0], 1e-13 * std::fabs(det2[0]));
  EXPECT_EQ(det1[1], det2[1]);
  EXPECT_EQ(DenseCopy(m).AsVectorConst(), before.AsVectorConst());
}

TEST(QXSymBlockDiagMatrixTest, StructuredMatricesAnswerAsTheirDenseCopy) {
  {
    SCOPED_TRACE("diagonal");
    ExpectAnswersOfTheDenseCopy(QXDiagMatrix(Vec{3, 1, 4, 1, 5, 9, 2, 6}));
  }
  {
    SCOPED_TRACE("block-diagonal");
    ExpectAnswersOfTheDenseCopy(Mixed());
  }
}

TEST(QXSymBlockDiagMatrixTest, FactorsBlockByBlockAsTheDenseCopyDoes) {
  for (QXSymBlockDiagMatrix m : {Mixed(), QXSymBlockDiagMatrix({4, 2}, QXBitSet(2))}) {
    if (m.GetNBlocks() == 2) {
      m.ReplaceBlock(0, SpdMatrix(4, 9u));
      m.ReplaceBlock(1, TestMatrix(2, 1u, Kind::kRankDeficient));
    }
    QXSymMatrix d = DenseCopy(m);
    const Vec ref(m.GetNRows(), 10.0);
    QXBitSet keptBlocks, keptDense;
    ASSERT_EQ(m.LTChol(ref, 1e-12, keptBlocks, true), d.LTChol(ref, 1e-12, keptDense, true));
    EXPECT_EQ(keptBlocks, keptDense);
    ExpectSameElements(m, d, 0.0, "LTChol");
    // L L^T rebuilds the matrix; the inverse of L and L^T L give the inverse.
    QXSymBlockDiagMatrix ll = m;
    ll.LTLLTrans();
    QXSymMatrix dd = d;
    dd.LTLLTrans();
    ExpectSameElements(ll, dd, 0.0, "LTLLTrans");
    double det1[2], det2[2];
    EXPECT_EQ(m.LTDetInverse(det1, 11), d.LTDetInverse(det2, 11));
    EXPECT_NEAR(det1[0], det2[0], 1e-13 * std::fabs(det2[0]));
    m.LTLTransL();
    d.LTLTransL();
    ExpectSameElements(m, d, 1e-15, "inverse");
  }
}

TEST(QXSymBlockDiagMatrixTest, BuildsItsStructureAndMapsRowsToBlocks) {
  QXSymBlockDiagMatrix b;
  EXPECT_EQ(b.GetStartingIndices(), std::vector<int>{0});
  EXPECT_EQ(b.AddBlock(QXSymMatrix(1, true)), 1);
  EXPECT_EQ(b.AddBlock(Vec{}), -1);
  EXPECT_EQ(b.GetNRows(), 1);
  EXPECT_EQ(b.AddBlock(Mixed()), 6);
  EXPECT_EQ(b.GetNRows(), 12);
  EXPECT_EQ(b.GetNDenseBlocks(), 4);
  EXPECT_EQ(b.GetNDiagBlocks(), 2);
  EXPECT_EQ(b.GetStartingIndices(), (std::vector<int>{0, 1, 4, 6, 7, 11, 12}));
  EXPECT_EQ(b.GetBlockIndexForRow()[5], 2);
  EXPECT_EQ(b.GetBlockSize(4), 4);
  EXPECT_EQ(b.GetBlockSize(6), -1);
  EXPECT_EQ(b.GetBlockStartIndex(-1), -1);
  EXPECT_TRUE(b.GetIsBlockDiagonal(5));
  const QXSymMatrix* dense = nullptr;
  const std::vector<double>* diag = nullptr;
  EXPECT_FALSE(b.GetDenseBlock(2, dense));
  ASSERT_TRUE(b.GetDiagonalBlock(2, diag));
  EXPECT_EQ(*diag, (Vec{2, 7}));

  // Where each element lives, and where rows start.
  bool isDiag = false;
  int rel = 0, relCol = 0, block = 0, start = 0, first = 0;
  EXPECT_EQ(b.FindBlock(9, 8, isDiag, rel, relCol), 3);  // the fourth dense block
  EXPECT_EQ(rel, 2);
  EXPECT_EQ(relCol, 1);
  EXPECT_EQ(b.FindBlock(5, 4, isDiag, rel, relCol), -1);
  EXPECT_EQ(b.FindBlock(6, 2, isDiag, rel, relCol), -1);
  ASSERT_TRUE(b.FindAbsBlockRelColIndex(9, block, start, rel, isDiag));
  EXPECT_EQ(Vec({1.0 * block, 1.0 * start, 1.0 * rel}), (Vec{4, 7, 2}));
  const double* data = nullptr;
  ASSERT_TRUE(b.GetIndexFirstInRow(9, first, data));
  EXPECT_EQ(first, 7);
  EXPECT_EQ(data[2], b.GetElem(9, 9));
  ASSERT_TRUE(b.GetIndexFirstInRow(5, first, data));
  EXPECT_EQ(first, 5);
  EXPECT_EQ(*data, 7.0);
  EXPECT_FALSE(b.GetIndexFirstInRow(12, first));

  // Elements outside the blocks read 0.0 and can't be written.
  EXPECT_EQ(b.GetElem(8, 2), 0.0);
  EXPECT_FALSE(b.SetElem(8, 2, 1.0));
  EXPECT_FALSE(b.SetElem(5, 4, 1.0));
  EXPECT_TRUE(b.SetElem(8, 10, -1.5));
  EXPECT_EQ(b.GetElem(10, 8), -1.5);
  EXPECT_FALSE(b.Resize(3));
  EXPECT_FALSE(b.SetNRows(3, true));
  EXPECT_EQ(b.GetNRows(), 12);

  // PutRow writes the row's part up to the diagonal only.
  const double right = b.GetElem(8, 9);
  Vec row(12, 0.5);
  ASSERT_TRUE(b.PutRow(8, row));
  EXPECT_EQ(b.GetElem(8, 7), 0.5);
  EXPECT_EQ(b.GetElem(8, 9), right);
  EXPECT_FALSE(b.PutRow(8, Vec(11, 0.5)));
  ASSERT_TRUE(b.ZeroOut(9));
  EXPECT_EQ(b.GetElem(9, 7), 0.0);

  // Structure copies, replacement of blocks of the same kind and size.
  QXSymBlockDiagMatrix c;
  ASSERT_TRUE(b.CopyStructure(c));
  EXPECT_TRUE(c.IsSameStructure(b));
  EXPECT_EQ(c.Trace(), 0.0);
  EXPECT_TRUE(c.ReplaceBlock(2, Vec{1, 1}));
  EXPECT_FALSE(c.ReplaceBlock(2, Vec{1, 1, 1}));
  EXPECT_FALSE(c.ReplaceBlock(1, QXDiagMatrix(Vec{1, 2, 3})));
  EXPECT_TRUE(c.ReplaceBlock(1, SpdMatrix(3, 2u)));
  EXPECT_FALSE(c.ReplaceBlock(4, Mixed()));
  EXPECT_TRUE(c.ReplaceBlock(1, Mixed()));
  EXPECT_EQ(Full(c), Full([&] {
              QXSymBlockDiagMatrix m;
              m.AddBlock(QXSymMatrix(1, true));
              m.AddBlock(Mixed());
              return m;
            }()));
  const std::vector<IQXSymMatrix*> list = {&c, nullptr};
  EXPECT_EQ(QXSymBlockDiagMatrix(list).GetNBlocks(), 6);
  c.ClearAll();
  EXPECT_EQ(c.GetStartingIndices(), std::vector<int>{0});
  EXPECT_EQ(c.AddBlock(Vec{4}), 1);
  EXPECT_EQ(c.GetElem(0, 0), 4.0);

  const std::string text = CaptureDisplay([&] { b.Display(); });
  EXPECT_NE(text.find("Lower triangular of QXSymBlockDiagMatrix display start"), std::string::npos);
  EXPECT_NE(text.find("Block indices for each row"), std::string::npos);
}

TEST(QXSymBlockDiagMatrixTest, ExtractsInTheFormOfItsTarget) {
  QXSymBlockDiagMatrix m = Mixed();
  m.SetElem(2, 1, 4.0);
  // Leading rows: a last block of one row vanishes from a block target.
  QXSymBlockDiagMatrix lead;
  ASSERT_TRUE(m.ExtractFirstNRows(lead));
  EXPECT_EQ(lead.GetNBlocks(), 4);
  EXPECT_EQ(lead.GetNRows(), 10);
  QXSymMatrix dense;
  ASSERT_TRUE(m.ExtractFirstNRows(dense));
  EXPECT_EQ(Full(dense), Full(lead));
  QXDiagMatrix diag;
  EXPECT_FALSE(m.ExtractFirstNRows(diag));
  QXSymBlockDiagMatrix onlyDiagonal;
  onlyDiagonal.AddBlock(Vec{1, 2});
  onlyDiagonal.AddBlock(Vec{3});
  ASSERT_TRUE(onlyDiagonal.ExtractFirstNRows(diag));
  EXPECT_EQ(diag.AsVectorConst(), (Vec{1, 2}));

  // Chosen rows: blocks without one are skipped; a diagonal target takes
  // only selections without off-diagonal elements.
  const std::vector<int> rows = {1, 2, 4, 7, 9};
  QXSymBlockDiagMatrix sub;
  ASSERT_TRUE(m.ExtractSubmatrix(rows, sub));
  EXPECT_EQ(sub.GetBlockSizes(), (std::vector<int>{2, 1, 2}));
  ASSERT_TRUE(m.ExtractSubmatrix(rows, dense));
  EXPECT_EQ(Full(dense), Full(sub));
  for (int a = 0; a < 5; ++a) {
    for (int c = 0; c < 5; ++c)
      EXPECT_EQ(dense.GetElem(a, c), m.GetElem(rows[a], rows[c]));
  }
  EXPECT_FALSE(m.ExtractSubmatrix(rows, diag));
  ASSERT_TRUE(m.ExtractSubmatrix({0, 3, 4, 6}, diag));
  EXPECT_EQ(diag.AsVectorConst(), (Vec{m.GetElem(0, 0), 2, 7, m.GetElem(6, 6)}));
  EXPECT_FALSE(m.ExtractSubmatrix({4, 3}, dense));
}

TEST(QXSymBlockDiagMatrixTest, BlockRulesOfTheFactorizations) {
  // Only diagonal blocks: no dense code, and minPivot the smallest root. A
  // diagonal block's element k is judged against diag[k], k inside it.
  QXSymBlockDiagMatrix d;
  d.AddBlock(Vec{16, 9});
  d.AddBlock(Vec{4, 9});
  QXSymBlockDiagMatrix f = d;
  EXPECT_EQ(f.LTChol(Vec{1, 100, 1, 1}, 0.1, true), 2);
  EXPECT_EQ(f.GetElem(1, 1), 0.0);
  EXPECT_EQ(f.GetElem(3, 3), 0.0);  // judged against diag[1] = 100, not diag[3]
  EXPECT_EQ(f.GetElem(2, 2), 2.0);
  double minPivot = 0.0;
  f = d;
  EXPECT_EQ(f.LTChol(1e-12, minPivot, true), 0);
  EXPECT_EQ(minPivot, 2.0);
  EXPECT_EQ(f.LTChol(Vec{1, -1, 1, 1}, 0.1, true), -1);

  // CholInverse: a block-diagonal target only.
  QXSymMatrix denseTarget;
  EXPECT_EQ(d.CholInverse(Vec(4, 1.0), 1e-12, denseTarget), -1);
  QXSymBlockDiagMatrix inverse;
  EXPECT_EQ(d.CholInverse(Vec(4, 1.0), 1e-12, inverse, minPivot), 4);
  EXPECT_DOUBLE_EQ(inverse.GetElem(3, 3), 1.0 / 9.0);
  EXPECT_EQ(minPivot, 2.0);

  // The determinant answers (0, 0) at a zero diagonal element before any
  // dense block is factored, even one that isn't positive definite.
  QXSymBlockDiagMatrix z;
  z.AddBlock(TestMatrix(2, 1u, Kind::kRankDeficient));
  z.AddBlock(Vec{3, 0});
  double det[2] = {5, 5};
  EXPECT_TRUE(z.ComputeDeterminant(1e-12, det));
  EXPECT_EQ(Vec({det[0], det[1]}), (Vec{0, 0}));
  QXSymBlockDiagMatrix w;
  w.AddBlock(Vec{2});
  w.AddBlock(QXSymMatrix(2, true));
  EXPECT_TRUE(w.ComputeDeterminant(1e-12, det));
  EXPECT_EQ(det[0], 0.0);

  // LTDetInverse with job 1 leaves the blocks alone; job 10 gives no
  // determinant.
  QXSymBlockDiagMatrix g = Mixed();
  g.LTChol(Vec(11, 10.0), 1e-12, false);
  const Vec factor = Full(g);
  det[0] = det[1] = 7.0;
  EXPECT_EQ(g.LTDetInverse(det, 1), 0);
  EXPECT_EQ(Full(g), factor);
  det[0] = det[1] = 7.0;
  g.LTDetInverse(det, 10);
  EXPECT_EQ(Vec({det[0], det[1]}), (Vec{7, 7}));

  // LTSolve: a zero in a diagonal block gives 0 in x and counts.
  QXSymBlockDiagMatrix s;
  s.AddBlock(Vec{2, 0});
  s.AddBlock(SpdMatrix(2, 4u));
  Vec x;
  EXPECT_EQ(s.LTSolve({4, 1, 1, 1}, 1e-12, x), 1);
  EXPECT_EQ(Vec(x.begin(), x.begin() + 2), (Vec{2, 0}));
  EXPECT_EQ(s.LTSolve({4, 1}, 1e-12, x), -1);

  // Row dots across two blocks, and the missing value for a bad row.
  EXPECT_EQ(g.ComputeDotProduct2Rows(0, 5), 0.0);
  EXPECT_EQ(g.ComputeDotProduct2Rows(0, 11), QXMV::Missing());
  EXPECT_EQ(g.ComputeVSV(Vec(3, 1.0)), QXMV::Missing());
  QXSymMatrix out;
  EXPECT_FALSE(g.ComputeMGN(g, g, out));
}

}  // namespace
}  // namespace QXMath_850
