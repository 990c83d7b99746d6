#include "qx/matrices/qxsymblockmatrix.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "qx/foundation/internal/testutil.h"
#include "qx/matrices/internal/testutil.h"

namespace QXMath_850 {
namespace {

using internal::Kind;
using internal::SameBits;
using internal::SameBitsAll;
using internal::TestMatrix;
using Vec = std::vector<double>;

Vec Packed(const QXSymBlockMatrix& b) {
  QXSymMatrix s;
  EXPECT_TRUE(b.ToSymMatrix(s));
  return s.AsVectorConst();
}

TEST(QXSymBlockMatrixTest, StandsForItsDenseMatrix) {
  QXSymMatrix s = TestMatrix(6, 1u, Kind::kRandom);
  QXSymBlockMatrix b;
  ASSERT_TRUE(b.FromSymMatrix(s, {2, 3, 1}));
  EXPECT_EQ(b.GetNRows(), 6);
  EXPECT_EQ(b.GetBlockStart(2), 5);
  EXPECT_EQ(Packed(b), s.AsVectorConst());
  for (int i = 0; i < 6; ++i) {
    for (int j = 0; j < 6; ++j)
      EXPECT_EQ(b.GetElem(i, j), s.GetElem(i, j));
  }
  EXPECT_EQ(b.GetElem(0, 1, 1, 2), s.GetElem(1, 4));
  EXPECT_EQ(b.GetElem(6, 0), 0.0);
  EXPECT_EQ(b.GetOffDiagBlock(1, 2), nullptr);

  // Blocks in and out: an upper block is the transpose of the stored lower
  // one, and written untransposed.
  QXRectMatrix upper, lower;
  ASSERT_TRUE(b.GetBlock(0, 1, upper) && b.GetBlock(1, 0, lower));
  ASSERT_EQ(upper.GetNRows(), 2);
  lower.Transpose();
  EXPECT_EQ(upper.AsVectorConst(), lower.AsVectorConst());
  QXRectMatrix r = internal::TestRect(2, 3, 2u);
  ASSERT_TRUE(b.SetBlock(0, 1, r));
  const QXSymMatrix d = TestMatrix(3, 3u, Kind::kInteger);
  ASSERT_TRUE(b.SetDiagBlock(1, d));
  ASSERT_TRUE(b.SetElem(0, 5, -4.0));
  for (int i = 0; i < 2; ++i) {
    for (int j = 0; j < 3; ++j)
      s.SetElem(i, 2 + j, r.GetElem(i, j));
  }
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j <= i; ++j)
      s.SetElem(2 + i, 2 + j, d.GetElem(i, j));
  }
  s.SetElem(5, 0, -4.0);
  EXPECT_EQ(Packed(b), s.AsVectorConst());
  EXPECT_FALSE(b.SetBlock(0, 1, internal::TestRect(3, 2, 2u)));
  EXPECT_FALSE(b.SetBlock(1, 1, internal::TestRect(3, 3, 2u)));
  EXPECT_FALSE(b.SetDiagBlock(0, d));

  // Bad structures are refused and change nothing; equal blocks give the
  // dense matrix its block view.
  EXPECT_FALSE(b.FromSymMatrix(s, {2, 3}));
  EXPECT_FALSE(b.SetBlockSizes({2, 0}));
  EXPECT_EQ(b.GetNBlocks(), 3);
  QXSymMatrix out;
  ASSERT_TRUE(QXSymBlockMatrix(3, 2).ToSymMatrix(out));
  EXPECT_EQ(out.GetNBlocks(), 3);
  EXPECT_EQ(out.GetBlockSize(), 2);
  const std::string text = QXCommon_850::internal::CaptureDisplay([&] { b.Display(); });
  EXPECT_EQ(text.rfind("\nQXSymBlockMatrix display start\nNumber of rows = 6", 0), 0u);
}

TEST(QXSymBlockMatrixTest, ProductsGiveTheDenseBits) {
  QXSymMatrix s = TestMatrix(7, 4u, Kind::kRandom);
  QXSymBlockMatrix b;
  ASSERT_TRUE(b.FromSymMatrix(s, {3, 1, 3}));
  const Vec v = internal::WideRangeData(7, 5u, 3), w = internal::WideRangeData(7, 6u, 3);
  Vec x, y;
  ASSERT_TRUE(b.ComputeSV(v, x) && s.ComputeSV(v, y));
  EXPECT_TRUE(SameBitsAll(x, y));
  EXPECT_TRUE(SameBits(b.ComputeVSW(v, w), s.ComputeVSW(v, w)));
  EXPECT_TRUE(SameBits(b.ComputeVSV(v), s.ComputeVSV(v)));
  EXPECT_TRUE(SameBits(b.Trace(), s.Trace()));
  EXPECT_FALSE(b.ComputeSV(Vec(6, 1.0), x));
  EXPECT_EQ(b.ComputeVSV(Vec(6, 1.0)), 0.0);

  const QXRectMatrix r = internal::TestRect(7, 4, 7u);
  QXSymMatrix fromBlocks, fromDense;
  ASSERT_TRUE(b.ComputeRTransSR(r, fromBlocks) && s.ComputeRTransSR(r, fromDense));
  EXPECT_TRUE(SameBitsAll(fromBlocks.AsVectorConst(), fromDense.AsVectorConst()));

  QXSymBlockMatrix other;
  const QXSymMatrix t = TestMatrix(7, 8u, Kind::kRandom);
  ASSERT_TRUE(other.FromSymMatrix(t, {3, 1, 3}));
  ASSERT_TRUE(b.ComputeAXpY(-1.5, other) && s.ComputeAXpY(-1.5, t));
  b.MultiplyByNumber(0.25);
  s.MultiplyByNumber(0.25);
  EXPECT_TRUE(SameBitsAll(Packed(b), s.AsVectorConst()));
  EXPECT_FALSE(b.ComputeAXpY(1.0, QXSymBlockMatrix(7, 1)));

  // sigma (x) A, and the combination of its responses by c, which is
  // R^T S R for R = c (x) I.
  const QXSymMatrix sigma = TestMatrix(3, 9u, Kind::kRandom), a = TestMatrix(4, 10u, Kind::kRandom);
  ASSERT_TRUE(b.SetKronecker(sigma, a));
  QXSymMatrix kron(12, true);
  for (int i = 0; i < 12; ++i) {
    for (int j = 0; j <= i; ++j)
      kron.SetElem(i, j, sigma.GetElem(i / 4, j / 4) * a.GetElem(i % 4, j % 4));
  }
  EXPECT_TRUE(SameBitsAll(Packed(b), kron.AsVectorConst()));
  const Vec c = {0.5, -2.0, 3.0};
  QXRectMatrix kc(12, 4, true);
  for (int i = 0; i < 12; ++i)
    kc.SetElem(i, i % 4, c[i / 4]);
  ASSERT_TRUE(b.ComputeBlockCombination(c, fromBlocks) && kron.ComputeRTransSR(kc, fromDense));
  EXPECT_TRUE(SameBitsAll(fromBlocks.AsVectorConst(), fromDense.AsVectorConst()));
  EXPECT_FALSE(b.ComputeBlockCombination({1.0, 2.0}, fromBlocks));
  ASSERT_TRUE(b.SetBlockSizes({4, 8}));
  EXPECT_FALSE(b.ComputeBlockCombination({1.0, 2.0}, fromBlocks));
}

// Sweeping a block row by row gives the dense sweep's bits, refused rows
// included; sweeping it again undoes it.
TEST(QXSymBlockMatrixTest, BlockSweepGivesTheDenseSweep) {
  for (Kind kind : {Kind::kInteger, Kind::kRankDeficient}) {
    QXSymMatrix s = kind == Kind::kInteger ? internal::SpdMatrix(8, 11u) : TestMatrix(8, 12u, kind);
    QXSymBlockMatrix b;
    ASSERT_TRUE(b.FromSymMatrix(s, {3, 2, 3}));
    const Vec start = s.AsVectorConst();
    Vec diag;
    s.GetDiagonal(diag);
    QXBitSet sweptDense(8), sweptBlocks(8);
    for (int block : {1, 0, 2}) {
      int count = 0;
      for (int row = b.GetBlockStart(block); row < b.GetBlockStart(block) + b.GetBlockSize(block);
           ++row)
        count += s.Sweep(row, 1e-10, diag, sweptDense, true);
      EXPECT_EQ(b.SweepBlock(block, 1e-10, diag, sweptBlocks), count);
      EXPECT_TRUE(SameBitsAll(Packed(b), s.AsVectorConst()));
      EXPECT_EQ(sweptBlocks.InRange(0, 7), sweptDense.InRange(0, 7));
    }
    if (kind == Kind::kInteger) {
      for (int block : {0, 1, 2})
        EXPECT_EQ(b.SweepBlock(block, 1e-10, diag, sweptBlocks), b.GetBlockSize(block));
      const Vec back = Packed(b);
      for (std::size_t k = 0; k < start.size(); ++k)
        EXPECT_NEAR(back[k], start[k], 1e-10 * (1.0 + std::fabs(start[k])));
    } else {
      EXPECT_LT(sweptBlocks.InRange(0, 7), 8);
    }
  }
  // A row already in vetoes a pivot that would push it past the tolerance.
  QXSymMatrix pair(2, true);
  pair.AsVector() = {1.0, 1.0 - 1e-6, 1.0};
  QXSymBlockMatrix nearly;
  ASSERT_TRUE(nearly.FromSymMatrix(pair, {1, 1}));
  const Vec reference = {10.0, 1.0};
  QXBitSet in(2), denseIn(2);
  ASSERT_TRUE(nearly.Sweep(0, 1.5e-6, reference, in) &&
              pair.Sweep(0, 1.5e-6, reference, denseIn, true));
  EXPECT_FALSE(pair.Sweep(1, 1.5e-6, reference, denseIn, true));
  EXPECT_FALSE(nearly.Sweep(1, 1.5e-6, reference, in));

  QXSymBlockMatrix b(2, 2);
  QXBitSet swept(4);
  EXPECT_EQ(b.SweepBlock(2, 1e-10, Vec(4, 1.0), swept), -1);
  EXPECT_EQ(b.SweepBlock(0, 0.0, Vec(4, 1.0), swept), -1);
  EXPECT_EQ(b.SweepBlock(0, 1e-10, Vec(3, 1.0), swept), -1);
  EXPECT_FALSE(b.Sweep(0, 1e-10, Vec(4, 1.0), swept));  // a zero pivot
}

}  // namespace
}  // namespace QXMath_850
