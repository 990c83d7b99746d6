#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

#include "qx/foundation/qxmissingvalue.h"
#include "qx/matrices/internal/testutil.h"
#include "qx/matrices/qxdiagmatrix.h"
#include "qx/matrices/qxrectmatrix.h"
#include "qx/matrices/qxsymblockdiagmatrix.h"
#include "qx/matrices/qxsymmatrix.h"

namespace QXMath_850 {
namespace {

using internal::Full;
using internal::Kind;
using internal::SameBits;
using internal::TestMatrix;
using internal::TestRect;
using internal::WideRangeData;
using QXCommon_850::QXMV;
using Vec = std::vector<double>;

constexpr double kEps = std::numeric_limits<double>::epsilon();

// A plain row-major matrix for the reference loops.
struct Plain {
  int rows = 0, cols = 0;
  Vec x;
  double& at(int i, int j) { return x[static_cast<std::size_t>(i) * cols + j]; }
  double at(int i, int j) const { return x[static_cast<std::size_t>(i) * cols + j]; }
};

Plain Square(const IQXSymMatrix& a) {
  return {a.GetNRows(), a.GetNRows(), Full(a)};
}
Plain FromRect(const QXRectMatrix& r) {
  return {r.GetNRows(), r.GetNCols(), r.AsVectorConst()};
}
Plain Transposed(const Plain& a) {
  Plain t{a.cols, a.rows, Vec(a.x.size())};
  for (int i = 0; i < a.rows; ++i) {
    for (int j = 0; j < a.cols; ++j)
      t.at(j, i) = a.at(i, j);
  }
  return t;
}
// The product, and with `absolute` the product of absolute values, which
// bounds the rounding of any order of summation.
Plain Times(const Plain& a, const Plain& b, bool absolute = false) {
  Plain c{a.rows, b.cols, Vec(static_cast<std::size_t>(a.rows) * b.cols, 0.0)};
  for (int i = 0; i < a.rows; ++i) {
    for (int j = 0; j < b.cols; ++j) {
      double s = 0.0;
      for (int k = 0; k < a.cols; ++k)
        s += absolute ? std::fabs(a.at(i, k)) * std::fabs(b.at(k, j)) : a.at(i, k) * b.at(k, j);
      c.at(i, j) = s;
    }
  }
  return c;
}
Plain Abs(const Plain& a) {
  Plain b = a;
  for (double& v : b.x)
    v = std::fabs(v);
  return b;
}
// The lower triangle of a factor held in a symmetric store.
Plain Lower(const IQXSymMatrix& s) {
  Plain l = Square(s);
  for (int i = 0; i < l.rows; ++i) {
    for (int j = i + 1; j < l.cols; ++j)
      l.at(i, j) = 0.0;
  }
  return l;
}

// Every element of the symmetric result within k * n * eps of the
// reference, relative to the same product of absolute values.
void ExpectNear(const IQXSymMatrix& got, const Plain& want, const Plain& bound, int k,
                const char* what) {
  ASSERT_EQ(got.GetNRows(), want.rows) << what;
  const double factor = k * (want.rows + 2) * kEps;
  for (int i = 0; i < want.rows; ++i) {
    for (int j = 0; j <= i; ++j) {
      ASSERT_LE(std::fabs(got.GetElem(i, j) - want.at(i, j)), factor * bound.at(i, j) + 1e-300)
          << what << " (" << i << ", " << j << ")";
    }
  }
}

const Kind kKinds[] = {Kind::kRandom, Kind::kInteger, Kind::kRankDeficient};

TEST(QXSymMatrixProductsTest, RowDotsAndFormsKeepTheirSummationOrder) {
  for (Kind kind : kKinds) {
    for (int n : {0, 1, 2, 3, 7, 50, 200}) {
      SCOPED_TRACE(n);
      const QXSymMatrix a = TestMatrix(n, 11u + n, kind);
      const QXSymMatrix b = TestMatrix(n, 99u + n, kind);
      const QXSymMatrix c = TestMatrix(n, 7u + n, kind);
      const Plain f = Square(a), g = Square(b), h = Square(c);
      const Vec v = WideRangeData(n, 3u + n, 3), w = WideRangeData(n, 5u + n, 3);

      // Row dots t_i = sum_j v_j a_ij, and the forms built on them.
      Vec t(n), vw(n), lv(n), ltv(n, 0.0);
      double form = 0.0, quad = 0.0;
      for (int i = 0; i < n; ++i) {
        double s = 0.0;
        for (int j = 0; j < n; ++j)
          s = s + v[j] * f.at(i, j);
        t[i] = s;
        form = form + s * w[i];
        quad = quad + s * v[i];
        double l = 0.0;
        for (int k = 0; k <= i; ++k)
          l = l + f.at(i, k) * v[k];
        lv[i] = l;
        double lt = 0.0;
        for (int r = i; r < n; ++r)
          lt = lt + f.at(r, i) * v[r];
        ltv[i] = lt;
      }
      EXPECT_TRUE(SameBits(a.ComputeVSW(v, w), form));
      EXPECT_TRUE(SameBits(a.ComputeVSV(v), quad));
      Vec strided(2 * n + 1, 1e300);
      for (int j = 0; j < n; ++j)
        strided[2 * j] = v[j];
      EXPECT_TRUE(SameBits(a.ComputeVSW(strided.data(), 2, w.data(), 1), form));
      Vec out;
      ASSERT_TRUE(a.ComputeSV(v, out));
      Vec lOut, ltOut;
      ASSERT_TRUE(a.ComputeLV(v, lOut));
      ASSERT_TRUE(a.ComputeLTransV(v, ltOut));
      for (int i = 0; i < n; ++i) {
        ASSERT_TRUE(SameBits(out[i], t[i])) << i;
        ASSERT_TRUE(SameBits(a.ComputeRVD(i, strided, 2), t[i])) << i;
        ASSERT_TRUE(SameBits(lOut[i], lv[i])) << i;
        ASSERT_TRUE(SameBits(ltOut[i], ltv[i])) << i;
      }

      // Dots of two rows, of this matrix and of another; traces.
      double trace2 = 0.0, trace3 = 0.0;
      for (int i = 0; i < n; ++i) {
        double d = 0.0;
        for (int k = 0; k < n; ++k)
          d = d + f.at(i, k) * g.at(i, k);
        trace2 = trace2 + d;
        for (int j = 0; j < n; ++j) {
          double s = 0.0, p = 0.0;
          for (int k = 0; k < n; ++k) {
            s = s + f.at(i, k) * f.at(j, k);
            p = p + f.at(j, k) * g.at(i, k);
          }
          trace3 = trace3 + p * h.at(i, j);
          if (j % 7 != 0 && n > 50) continue;
          ASSERT_TRUE(SameBits(a.ComputeDotProduct2Rows(i, j), s)) << i << ", " << j;
          ASSERT_TRUE(SameBits(a.ComputeRowDotProductS(j, b, i), p)) << i << ", " << j;
        }
      }
      EXPECT_TRUE(SameBits(a.TraceOfProduct(b), trace2));
      EXPECT_TRUE(SameBits(a.TraceOfProductOfThree(b, c), trace3));

      // The partial form: rows below wCount, columns below vCount.
      const int vCount = n / 2, wCount = n - 1;
      double part = 0.0;
      for (int i = 0; i < wCount; ++i) {
        double s = 0.0;
        for (int j = 0; j < vCount; ++j)
          s = s + v[j] * f.at(i, j);
        part = part + s * w[i];
      }
      EXPECT_TRUE(SameBits(a.ComputeVSWParts(v, vCount, w, wCount), part));
    }
  }
}

// L^T S L with the factor repeated along the diagonal, by the order of its
// definition: d(r, c) = sum over r' of S(r, r') L(r', c) down c's column of
// the block, then out(u, c) takes L(r, u) d(r, c) for r from u to its
// block's end.
Plain PlainLTransSL(const Plain& f, const Plain& l, int q) {
  const int n = f.rows;
  Plain out{n, n, Vec(static_cast<std::size_t>(n) * n, 0.0)};
  for (int u = 0; u < n; ++u) {
    const int bu = u / q * q;
    for (int c = 0; c <= u; ++c) {
      const int bc = c / q * q;
      double sum = 0.0;
      for (int r = u; r < bu + q; ++r) {
        double d = 0.0;
        for (int rr = c; rr < bc + q; ++rr)
          d = d + f.at(r, rr) * l.at(rr - bc, c - bc);
        sum = sum + l.at(r - bu, u - bu) * d;
      }
      out.at(u, c) = sum;
    }
  }
  return out;
}

TEST(QXSymMatrixProductsTest, MatrixProductsKeepTheirOrderOrTheirBound) {
  for (Kind kind : kKinds) {
    for (int n : {1, 2, 6, 30}) {
      SCOPED_TRACE(n);
      const QXSymMatrix a = TestMatrix(n, 21u + n, kind);
      const QXSymMatrix b = TestMatrix(n, 31u + n, kind);
      const Plain f = Square(a), g = Square(b);
      const QXRectMatrix r = TestRect(n + 2, n, 41u + n), p = TestRect(n, 3, 43u + n),
                         q = TestRect(n, 3, 47u + n);
      const Plain pr = FromRect(r), pp = FromRect(p), pq = FromRect(q);

      // R S: element (k, j) is the row dot of S's row j with r's row k.
      QXRectMatrix rs;
      ASSERT_TRUE(a.ComputeRS(r, rs));
      QXRectMatrix ss;
      ASSERT_TRUE(a.ComputeSS(b, ss));
      QXSymMatrix sts;
      ASSERT_TRUE(a.ComputeSTransS(sts));
      for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j) {
          double x = 0.0, y = 0.0, z = 0.0;
          for (int k = 0; k < n; ++k) {
            x = x + pr.at(i, k) * f.at(j, k);
            y = y + f.at(i, k) * g.at(j, k);
            z = z + f.at(i, k) * f.at(j, k);
          }
          ASSERT_TRUE(SameBits(rs.GetElem(i, j), x));
          ASSERT_TRUE(SameBits(ss.GetElem(i, j), y));
          if (j <= i) {
            ASSERT_TRUE(SameBits(sts.GetElem(i, j), z));
          }
        }
      }

      // A^T S B + B^T S A by its columns; with b = a it is twice A^T S A.
      QXSymMatrix two, twice;
      ASSERT_TRUE(a.ComputeRSRTrans2(p, q, two));
      ASSERT_TRUE(a.ComputeRSRTrans2(p, p, twice));
      for (int c = 0; c < 3; ++c) {
        Vec t1(n), t2(n);
        for (int i = 0; i < n; ++i) {
          for (int k = 0; k < n; ++k) {
            t1[i] = t1[i] + pp.at(k, c) * f.at(i, k);
            t2[i] = t2[i] + pq.at(k, c) * f.at(i, k);
          }
        }
        for (int j = 0; j <= c; ++j) {
          double x = 0.0, y = 0.0;
          for (int i = 0; i < n; ++i) {
            x = x + t1[i] * pq.at(i, j);
            y = y + t2[i] * pp.at(i, j);
          }
          ASSERT_TRUE(SameBits(two.GetElem(c, j), x + y));
        }
      }
      const Plain ata = Times(Times(Transposed(pp), f), pp);
      const Plain bound = Times(Times(Transposed(Abs(pp)), Abs(f)), Abs(pp));
      Plain doubled = ata, doubledBound = bound;
      for (double& x : doubled.x)
        x *= 2.0;
      for (double& x : doubledBound.x)
        x *= 2.0;
      ExpectNear(twice, doubled, doubledBound, 4, "RSRTrans2(a, a)");

      // Products whose order isn't fixed: within the bound of any order.
      QXSymMatrix out;
      ASSERT_TRUE(a.ComputeRSRTrans(r, out));
      ExpectNear(out, Times(Times(pr, f), Transposed(pr)),
                 Times(Times(Abs(pr), Abs(f)), Transposed(Abs(pr))), 4, "RSRTrans");
      ASSERT_TRUE(a.ComputeRTransSR(p, out));
      ExpectNear(out, ata, bound, 4, "RTransSR");
      ASSERT_TRUE(a.ComputeGSG(b, out));
      ExpectNear(out, Times(Times(f, g), f), Times(Times(Abs(f), Abs(g)), Abs(f)), 4, "GSG");
      ASSERT_TRUE(a.ComputeGMG(b.AsVectorConst(), out));
      ExpectNear(out, Times(Times(g, f), g), Times(Times(Abs(g), Abs(f)), Abs(g)), 4, "GMG");
      ASSERT_TRUE(a.ComputeMGN(b, a, out));
      ExpectNear(out, Times(Times(f, g), f), Times(Times(Abs(f), Abs(g)), Abs(f)), 4, "MGN");
      Vec work;
      ASSERT_TRUE(b.ComputeGMGNG(a, a, out, work));
      const Plain gfg = Times(Times(g, f), g), absGfg = Times(Times(Abs(g), Abs(f)), Abs(g));
      ExpectNear(out, Times(Times(gfg, f), g), Times(Times(absGfg, Abs(f)), Abs(g)), 6, "GMGNG");
      const Plain l = Lower(b);
      ASSERT_TRUE(a.ComputeLSLTrans(b, out));
      ExpectNear(out, Times(Times(l, f), Transposed(l)),
                 Times(Times(Abs(l), Abs(f)), Transposed(Abs(l))), 4, "LSLTrans");
      QXRectMatrix rts;
      ASSERT_TRUE(a.ComputeRTransS(p, rts));
      Vec rtsv;
      ASSERT_TRUE(a.ComputeRTransSV(p, Vec(n, 1.0), rtsv));
      const Plain ptf = Times(Transposed(pp), f), absPtf = Times(Transposed(Abs(pp)), Abs(f));
      for (int c = 0; c < 3; ++c) {
        double row = 0.0, rowBound = 0.0;
        for (int j = 0; j < n; ++j) {
          ASSERT_LE(std::fabs(rts.GetElem(c, j) - ptf.at(c, j)), 4 * n * kEps * absPtf.at(c, j));
          row += ptf.at(c, j);
          rowBound += absPtf.at(c, j);
        }
        ASSERT_LE(std::fabs(rtsv[c] - row), 4 * n * kEps * rowBound);
      }

      // L^T S L by its definition, with the factor once, and repeated.
      for (int blocks : {1, 2, 3}) {
        const QXSymMatrix big = TestMatrix(n * blocks, 53u + n, kind);
        QXSymMatrix lts;
        ASSERT_TRUE(big.ComputeLTransSL(b, lts, blocks));
        const Plain want = PlainLTransSL(Square(big), l, n);
        for (int i = 0; i < n * blocks; ++i) {
          for (int j = 0; j <= i; ++j)
            ASSERT_TRUE(SameBits(lts.GetElem(i, j), want.at(i, j))) << i << ", " << j;
        }
      }
    }
  }
}

TEST(QXSymMatrixProductsTest, LTransSLTakesEachStructureOfTheFactor) {
  // A diagonal factor of order 2 under a matrix of order 4 is read as
  // d0, d1, d0, d1: element (i, j) is (d_i d_j) a_ij.
  const QXSymMatrix a = TestMatrix(4, 5u, Kind::kRandom);
  const QXDiagMatrix d(Vec{3.0, -0.5});
  QXSymMatrix out;
  ASSERT_TRUE(a.ComputeLTransSL(d, out, 2));
  const double dd[] = {3.0, -0.5, 3.0, -0.5};
  for (int i = 0; i < 4; ++i) {
    for (int j = 0; j <= i; ++j)
      EXPECT_TRUE(SameBits(out.GetElem(i, j), dd[i] * dd[j] * a.GetElem(i, j)));
  }
  // A block-diagonal factor gives what its dense copy gives, zero terms
  // passed over.
  QXSymBlockDiagMatrix b;
  b.AddBlock(internal::SpdMatrix(2, 3u));
  b.AddBlock(Vec{2.0, 0.0});
  b.AddBlock(internal::SpdMatrix(3, 4u));
  QXSymMatrix dense;
  ASSERT_TRUE(b.FillDenseMatrix(dense));
  const QXSymMatrix big = TestMatrix(14, 6u, Kind::kRandom);
  QXSymMatrix viaBlocks, viaDense;
  ASSERT_TRUE(big.ComputeLTransSL(b, viaBlocks, 2));
  ASSERT_TRUE(big.ComputeLTransSL(dense, viaDense, 2));
  EXPECT_EQ(Full(viaBlocks), Full(viaDense));
  double d01 = 0.0;
  ASSERT_TRUE(big.DotProductLBlockDiagColRow(3, b, 2, 9, d01));
  double want = 0.0;
  ASSERT_TRUE(big.DotProductLBlockColRow(3, dense.AsVectorConst(), 2, 9, want));
  EXPECT_EQ(d01, want);
}

TEST(QXSymMatrixProductsTest, RefusalsLeaveArgumentsAndMatrixAlone) {
  const QXSymMatrix a = TestMatrix(4, 1u, Kind::kInteger);
  const QXSymMatrix before = a;
  QXDiagMatrix diag(Vec{1, 2, 3, 4});
  QXSymBlockDiagMatrix blocks;
  blocks.AddBlock(diag);

  // A structure the dense store can't read: the missing value, false or
  // -1, and a non-dense out of ComputeSTransS hears its own tag.
  EXPECT_EQ(a.TraceOfProduct(diag), QXMV::Missing());
  EXPECT_EQ(a.TraceOfProductOfThree(a, blocks), QXMV::Missing());
  EXPECT_EQ(a.ComputeRowDotProductS(0, diag, 0), QXMV::Missing());
  QXRectMatrix rect(2, 2, true);
  EXPECT_FALSE(a.ComputeSS(diag, rect));
  EXPECT_EQ(rect.GetNRows(), 2);
  EXPECT_EQ(a.CholInverse(Vec(4, 1.0), 1e-8, diag), -1);
  EXPECT_TRUE(a.ComputeSTransS(diag));
  EXPECT_FALSE(a.ComputeGSG(a, diag));
  EXPECT_FALSE(a.ComputeLTransSL(a, diag, 1));
  EXPECT_EQ(diag.AsVectorConst(), (Vec{1, 2, 3, 4}));

  // Wrong sizes: 0.0 for a value, false for an output left as it was.
  Vec out{7.0};
  EXPECT_EQ(a.ComputeVSV(Vec(3, 1.0)), 0.0);
  EXPECT_EQ(a.ComputeVSW(Vec(4, 1.0), Vec(5, 1.0)), 0.0);
  EXPECT_EQ(a.ComputeRVD(4, Vec(4, 1.0), 1), 0.0);
  EXPECT_EQ(a.ComputeDotProduct2Rows(-1, 0), 0.0);
  EXPECT_EQ(a.ComputeRowDotProductS(0, Vec(9, 1.0), 0), 0.0);
  EXPECT_FALSE(a.ComputeSV(Vec(3, 1.0), out));
  EXPECT_FALSE(a.ComputeLV(Vec(5, 1.0), out));
  EXPECT_FALSE(a.ComputeSV(5, Vec(4, 1.0), out));
  EXPECT_FALSE(a.ComputeLV({0, 4}, {1.0, 1.0}, out));
  EXPECT_EQ(out, Vec{7.0});
  QXSymMatrix sym(2, true);
  EXPECT_FALSE(a.ComputeRSRTrans(TestRect(3, 5, 1u), sym));
  EXPECT_FALSE(a.ComputeRTransSR(TestRect(5, 3, 1u), sym));
  EXPECT_FALSE(a.ComputeRSRTrans2(TestRect(4, 2, 1u), TestRect(4, 3, 1u), sym));
  EXPECT_FALSE(a.ComputeLTransSL(TestMatrix(3, 2u, Kind::kInteger), sym, 1));
  EXPECT_FALSE(a.ComputeLTransSL(TestMatrix(2, 2u, Kind::kInteger), sym, 0));
  EXPECT_FALSE(a.ComputeGMG(Vec(9, 1.0), sym));
  EXPECT_FALSE(a.ComputeGSG(TestMatrix(3, 2u, Kind::kInteger), sym));
  EXPECT_EQ(sym.GetNRows(), 2);
  EXPECT_EQ(a.AsVectorConst(), before.AsVectorConst());

  // Products whose out is also an operand are formed apart first.
  QXSymMatrix self = a;
  ASSERT_TRUE(self.ComputeGSG(self, self));
  QXSymMatrix want;
  ASSERT_TRUE(a.ComputeGSG(a, want));
  EXPECT_EQ(self.AsVectorConst(), want.AsVectorConst());
}

TEST(QXSymMatrixProductsTest, PartialDotsWalkTheirStretches) {
  const int n = 9;
  const QXSymMatrix a = TestMatrix(n, 3u, Kind::kRandom);
  const QXSymMatrix other = TestMatrix(n, 4u, Kind::kRandom);
  const Plain f = Square(a), g = Square(other);
  const Vec v = WideRangeData(60, 8u, 2);
  // The growing walk from 5 with step 2: positions 5, 7, 10, 14, 19, ...
  auto grow = [&v](int start, int inc, int delay, int k) {
    int p = start;
    for (int t = 0; t < k; ++t)
      p += inc + delay + t;
    return v[p];
  };
  double got = 0.0;
  for (int first = 2; first < 5; ++first) {
    const int count = 4;
    double lc = 0.0, lr = 0.0, li = 0.0, ld = 0.0, sc = 0.0, lcr = 0.0, oth = 0.0;
    for (int k = 0; k < count; ++k) {
      lc = lc + f.at(first + k, 1) * v[first + k];
      lr = lr + f.at(7, first + k) * v[first + k];
      li = li + f.at(first + k, 1) * grow(5, 2, 0, k);
      ld = ld + f.at(first + k, 1) * grow(5, 2, 3, k);
      sc = sc + f.at(6, first + k) * grow(5, 2, 1, k);
      lcr = lcr + f.at(first + k, 1) * f.at(8, first + k);
      oth = oth + f.at(first + k, 1) * g.at(3, first + k);
    }
    ASSERT_TRUE(a.ComputeDotLColVecPart(1, v, first, count, got));
    EXPECT_TRUE(SameBits(got, lc));
    ASSERT_TRUE(a.ComputeDotLRowVecPart(7, v, first, count, got));
    EXPECT_TRUE(SameBits(got, lr));
    ASSERT_TRUE(a.ComputeDotLColVecIIncrPart(1, v, 5, 2, first, count, got));
    EXPECT_TRUE(SameBits(got, li));
    ASSERT_TRUE(a.DotLColVecDelayedIIncrPart(1, v, 5, 2, 3, first, count, got));
    EXPECT_TRUE(SameBits(got, ld));
    ASSERT_TRUE(a.DotRowVecDelayedIIncrPart(6, v, 5, 2, 1, first, count, got));
    EXPECT_TRUE(SameBits(got, sc));
    ASSERT_TRUE(a.DotProductLColRowPart(1, 8, first, count, got));
    EXPECT_TRUE(SameBits(got, lcr));
    ASSERT_TRUE(a.DotLColRowPart(1, other.AsVectorConst(), 3, first, count, got));
    EXPECT_TRUE(SameBits(got, oth));
  }
  double diag = 0.0;
  for (int r = 4; r < n; ++r)
    diag = diag + f.at(r, 4) * grow(0, 1, 0, r - 4);
  ASSERT_TRUE(a.ComputeDotLColVecIIncrDiag(4, v, 0, 1, got));
  EXPECT_TRUE(SameBits(got, diag));
  ASSERT_TRUE(a.ComputeDotColVecIIncrPart(6, v, 5, 2, 0, n, got));
  Vec byL, byLGrow;
  ASSERT_TRUE(a.ComputeVecPartByL(v, 3, 4, byL));
  ASSERT_TRUE(a.ComputeVecIIncPartByL(v, 5, 2, 3, 4, byLGrow));
  for (int j = 0; j < 4; ++j) {
    double s = 0.0, t = 0.0;
    for (int k = j; k < 4; ++k) {
      s = s + f.at(3 + k, 3 + j) * v[3 + k];
      t = t + f.at(3 + k, 3 + j) * grow(5, 2, 0, k);
    }
    EXPECT_TRUE(SameBits(byL[j], s));
    EXPECT_TRUE(SameBits(byLGrow[j], t));
  }
  // Stretches beyond the factor's triangle, the matrix or the vector.
  EXPECT_FALSE(a.ComputeDotLColVecPart(3, v, 2, 4, got));
  EXPECT_FALSE(a.ComputeDotLRowVecPart(2, v, 1, 3, got));
  EXPECT_FALSE(a.ComputeDotLColVecPart(1, v, 6, 4, got));
  EXPECT_FALSE(a.ComputeDotLColVecIIncrPart(1, v, 50, 3, 2, 4, got));
  EXPECT_FALSE(a.DotLColRowPart(1, Vec(3), 3, 2, 4, got));
  EXPECT_FALSE(a.ComputeVecPartByL(Vec(5), 3, 4, byL));
}

TEST(QXSymMatrixProductsTest, SubBlockFormsAndUpdatesMatchTheirDefinitions) {
  // Integer data, so that every product is exact whatever its order.
  const int n = 10;
  const QXSymMatrix a = TestMatrix(n, 17u, Kind::kInteger);
  const Plain f = Square(a);
  QXSymBlockDiagMatrix b;
  b.AddBlock(TestMatrix(2, 18u, Kind::kInteger));
  b.AddBlock(Vec{2.0, -3.0});
  b.AddBlock(TestMatrix(1, 19u, Kind::kInteger));
  const Plain pb = Square(b), lb = Lower(b);
  const int first = 3, m = 5;
  Plain sub{m, m, Vec(m * m)};
  for (int i = 0; i < m; ++i) {
    for (int j = 0; j < m; ++j)
      sub.at(i, j) = f.at(first + i, first + j);
  }

  double vbw = 0.0;
  ASSERT_TRUE(a.ComputeVBW(first, 1, 4, b, vbw));
  EXPECT_EQ(vbw, Times(Times(sub, pb), sub).at(1, 4));
  ASSERT_TRUE(a.ComputeVBW(first, 1, 4, b, 1, 1, vbw));
  EXPECT_EQ(vbw, 2.0 * sub.at(1, 2) * sub.at(4, 2) - 3.0 * sub.at(1, 3) * sub.at(4, 3));
  EXPECT_FALSE(a.ComputeVBW(6, 0, 0, b, vbw));
  QXSymMatrix sbs;
  ASSERT_TRUE(a.ComputeSSubBSSub(first, b, sbs));
  EXPECT_EQ(Full(sbs), Times(Times(sub, pb), sub).x);

  // The transform T^T A T with T = diag(I, L, I) for the factor L in b,
  // and the parts of it the SubSym operations make.
  Plain t{n, n, Vec(n * n, 0.0)};
  for (int i = 0; i < n; ++i)
    t.at(i, i) = 1.0;
  for (int i = 0; i < m; ++i) {
    for (int j = 0; j < m; ++j)
      t.at(first + i, first + j) = lb.at(i, j);
  }
  QXSymMatrix aug = a;
  ASSERT_TRUE(aug.AugmentUsingBlockDiagL(first, b));
  EXPECT_EQ(Full(aug), Times(Times(Transposed(t), f), t).x);
  QXSymMatrix part = a;
  ASSERT_TRUE(part.SubSymBlockLTSBlockL(first, b));
  ASSERT_TRUE(part.SubSymRectTBlockL(first, b));
  for (int i = first; i < n; ++i) {
    for (int j = first; j <= i; ++j)
      EXPECT_EQ(part.GetElem(i, j), aug.GetElem(i, j)) << i << ", " << j;
  }
  QXSymMatrix lsl = a;
  ASSERT_TRUE(lsl.SubSymSBlockL(first, b));
  const Plain lslWant = Times(Times(lb, sub), Transposed(lb));
  EXPECT_EQ(lsl.GetElem(first + 4, first + 2), lslWant.at(4, 2));
  EXPECT_FALSE(part.SubSymVectBlockL(first, first + 2, b));

  // Products of stretches with vectors.
  const Vec v{1, -2, 3, -4, 5};
  Vec out;
  ASSERT_TRUE(a.SubSymSV(first, m, v, out));
  ASSERT_TRUE(a.SubSymRectTV(first + 1, 0, 5, 3, v, out));
  for (int j = 0; j < 3; ++j) {
    double s = 0.0;
    for (int i = 0; i < 5; ++i)
      s += f.at(first + 1 + i, j) * v[i];
    EXPECT_EQ(out[j], s);
  }
  EXPECT_EQ(a.ComputeVSymSubW(first, m, v, 0, v, 0),
            a.ComputeVSSubWParts(first, v.data(), m, v.data(), m));
  double traceSub = 0.0;
  const QXSymMatrix small = TestMatrix(m, 5u, Kind::kInteger);
  ASSERT_TRUE(a.TraceOfProductSubSym(small.AsVectorConst(), first, traceSub));
  double traceWant = 0.0;
  const Plain ps = Square(small);
  for (int i = 0; i < m; ++i) {
    for (int k = 0; k < m; ++k)
      traceWant += sub.at(i, k) * ps.at(k, i);
  }
  EXPECT_EQ(traceSub, traceWant);
  EXPECT_FALSE(a.TraceOfProductSubSym(Vec(4), first, traceSub));

  // Accumulating blocks: [a, b]^T [a, b] added with a weight, and a sparse
  // update in the corner, which is the plain sparse one shifted.
  const QXRectMatrix ra = TestRect(6, 2, 3u), rb = TestRect(6, 1, 4u);
  QXSymMatrix acc(3, true);
  acc.AddToDiagonal(1.0);
  ASSERT_TRUE(acc.UpdateXXMat2(ra, rb, 0.5));
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j <= i; ++j) {
      double s = 0.0;
      for (int k = 0; k < 6; ++k) {
        const double x = i < 2 ? ra.GetElem(k, i) : rb.GetElem(k, 0);
        const double y = j < 2 ? ra.GetElem(k, j) : rb.GetElem(k, 0);
        s = s + x * y;
      }
      EXPECT_TRUE(SameBits(acc.GetElem(i, j), (i == j ? 1.0 : 0.0) + 0.5 * s));
    }
  }
  EXPECT_FALSE(acc.UpdateXXMat2(ra, TestRect(5, 1, 4u), 1.0));
  QXSymMatrix corner(6, true), shifted(6, true);
  ASSERT_TRUE(corner.UpdateXXCornerSparse(3, {2, 0, 1}, {1.5, -2.0, 3.0}, 2.0, 3));
  ASSERT_TRUE(shifted.UpdateXXSparse(3, {5, 3, 4}, {1.5, -2.0, 3.0}, 2.0));
  EXPECT_EQ(corner.AsVectorConst(), shifted.AsVectorConst());
  EXPECT_FALSE(corner.UpdateXXCornerSparse(1, {3}, {1.0}, 1.0, 3));

  // Cross-products of a rectangle and sandwiches added into a block.
  const QXRectMatrix r = TestRect(4, 3, 9u);
  QXSymMatrix rtr, rrt, withBlock = a;
  ASSERT_TRUE(rtr.ComputeRTransByR(r));
  ASSERT_TRUE(rrt.ComputeRByRTrans(r));
  EXPECT_EQ(rtr.GetElem(2, 1), r.DotProductCol(2, 1));
  EXPECT_EQ(rrt.GetElem(3, 0), r.DotProductRows(3, 0));
  const QXSymMatrix s4 = TestMatrix(4, 2u, Kind::kInteger);
  ASSERT_TRUE(withBlock.ComputeRTransSymR(TestRect(4, 3, 0u), 6, s4));
  EXPECT_FALSE(withBlock.ComputeRTransSymR(TestRect(4, 3, 0u), 8, s4));
  QXSymMatrix rtsr;
  ASSERT_TRUE(s4.ComputeRTransSR(TestRect(4, 3, 0u), rtsr));
  EXPECT_EQ(withBlock.GetElem(8, 7), a.GetElem(8, 7) + rtsr.GetElem(2, 1));
  QXRectMatrix expanded;
  ASSERT_TRUE(s4.ExpandSymToRect(TestRect(2, 4, 1u), expanded));
  EXPECT_EQ(expanded.GetNRows(), 6);
  EXPECT_EQ(expanded.GetElem(1, 5), expanded.GetElem(5, 1));
  EXPECT_EQ(expanded.GetElem(5, 5), 0.0);
}

TEST(QXSymMatrixProductsTest, AXpYTakesEveryStructure) {
  QXSymMatrix a = TestMatrix(5, 2u, Kind::kInteger);
  const QXSymMatrix before = a;
  QXSymBlockDiagMatrix b;
  b.AddBlock(Vec{1.0});
  b.AddBlock(TestMatrix(3, 3u, Kind::kInteger));
  b.AddBlock(Vec{-2.0});
  QXSymMatrix dense;
  ASSERT_TRUE(b.FillDenseMatrix(dense));
  QXSymMatrix viaDense = a;
  ASSERT_TRUE(a.ComputeAXpY(2.0, b));
  ASSERT_TRUE(viaDense.ComputeAXpY(2.0, dense));
  EXPECT_EQ(a.AsVectorConst(), viaDense.AsVectorConst());
  ASSERT_TRUE(a.ComputeAXpY(-2.0, b));
  EXPECT_EQ(a.AsVectorConst(), before.AsVectorConst());
  ASSERT_TRUE(a.ComputeAXpY(1.0, QXDiagMatrix(Vec{1, 2, 3, 4, 5})));
  EXPECT_EQ(a.GetElem(3, 3), before.GetElem(3, 3) + 4.0);
  EXPECT_EQ(a.GetElem(3, 2), before.GetElem(3, 2));
  EXPECT_FALSE(a.ComputeAXpY(1.0, QXDiagMatrix(Vec{1, 2})));
}

}  // namespace
}  // namespace QXMath_850
