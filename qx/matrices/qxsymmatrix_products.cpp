// The product algebra of QXSymMatrix: row dots, bilinear forms, products with
// vectors, rectangular and symmetric matrices, traces, the companions of the
// block-diagonal matrix, and the block updates. Each walks the packed store
// in the order its elements lie; where a summation order is part of a
// routine's result, the comment above it says which, and the faster loops
// keep it: they only interleave independent sums.

#include <cmath>
#include <cstddef>
#include <vector>

#include "qx/foundation/qxmissingvalue.h"
#include "qx/matrices/blas1_d.h"
#include "qx/matrices/internal/packedlayout.h"
#include "qx/matrices/internal/sparselists.h"
#include "qx/matrices/internal/sparseproducts.h"
#include "qx/matrices/internal/symproducts.h"
#include "qx/matrices/qxdiagmatrix.h"
#include "qx/matrices/qxrectmatrix.h"
#include "qx/matrices/qxsparserectmatrix.h"
#include "qx/matrices/qxsymblockdiagmatrix.h"
#include "qx/matrices/qxsymmatrix.h"

namespace QXMath_850 {

using QXCommon_850::QXMV;

namespace {

using internal::PackedIndex;
using internal::PackedSize;
using internal::RowStart;

inline bool InRange(int i, int n) {
  return i >= 0 && i < n;
}

// Walks the symmetric row `row` of a packed store from column `from` on: the
// stored part left of the diagonal side by side, then down column `row`.
class RowCursor {
 public:
  RowCursor(const double* a, int row, int from)
      : a(a), row(row), j(from), p(PackedIndex(row, from)) {}
  double Next() {
    const double x = a[p];
    p += j < row ? 1 : static_cast<std::size_t>(j) + 1;
    ++j;
    return x;
  }

 private:
  const double* a;
  int row;
  int j;
  std::size_t p;
};

// Walks a vector from `start` with steps inc + delay, inc + delay + 1, ...:
// down a column of a packed matrix, entered `delay` rows late.
class GrowingWalk {
 public:
  GrowingWalk(const double* v, long start, long inc, long delay)
      : v(v), p(start), step(inc + delay) {}
  double Next() {
    const double x = v[p];
    p += step++;
    return x;
  }

 private:
  const double* v;
  long p;
  long step;
};

// out[i] = the dot of row i of L up to its diagonal with v, added in order;
// four rows share the loads of v.
void LowerTimesVector(const double* a, int n, const double* v, double* out) {
  int r = 0;
  for (; r + 3 < n; r += 4) {
    const double* r0 = a + RowStart(r);
    const double* r1 = r0 + r + 1;
    const double* r2 = r1 + r + 2;
    const double* r3 = r2 + r + 3;
    double s0 = 0.0, s1 = 0.0, s2 = 0.0, s3 = 0.0;
    for (int j = 0; j <= r; ++j) {
      const double vj = v[j];
      s0 = s0 + r0[j] * vj;
      s1 = s1 + r1[j] * vj;
      s2 = s2 + r2[j] * vj;
      s3 = s3 + r3[j] * vj;
    }
    s1 = s1 + r1[r + 1] * v[r + 1];
    s2 = s2 + r2[r + 1] * v[r + 1];
    s2 = s2 + r2[r + 2] * v[r + 2];
    s3 = s3 + r3[r + 1] * v[r + 1];
    s3 = s3 + r3[r + 2] * v[r + 2];
    s3 = s3 + r3[r + 3] * v[r + 3];
    out[r] = s0;
    out[r + 1] = s1;
    out[r + 2] = s2;
    out[r + 3] = s3;
  }
  for (; r < n; ++r) {
    const double* row = a + RowStart(r);
    double s = 0.0;
    for (int j = 0; j <= r; ++j)
      s = s + row[j] * v[j];
    out[r] = s;
  }
}

// out[i] = the sum over r >= i, in order, of a_ri v_r: one pass down the
// rows, each adding its column terms to the sums above it.
void LowerTransTimesVector(const double* a, int n, const double* v, double* out) {
  for (int r = 0; r < n; ++r) {
    const double* __restrict__ row = a + RowStart(r);
    const double vr = v[r];
    double* __restrict__ o = out;
    for (int j = 0; j < r; ++j)
      o[j] = o[j] + row[j] * vr;
    out[r] = 0.0 + row[r] * vr;
  }
}

// v's elements at the stride, side by side.
const double* Contiguous(const double* v, int n, int stride, std::vector<double>& copy) {
  if (stride == 1) return v;
  copy.resize(n);
  for (int j = 0; j < n; ++j)
    copy[j] = v[static_cast<long>(j) * stride];
  return copy.data();
}

// Sums, over rows i of rowFirst..rowEnd-1, of (sum over columns j of
// colFirst..colEnd-1 of v(j) a_ij) * w(i): the bilinear form on a rectangle.
template <typename V, typename W>
double FormOnRectangle(const double* a, int rowFirst, int rowEnd, int colFirst, int colEnd, V v,
                       W w) {
  double sum = 0.0;
  for (int i = rowFirst; i < rowEnd; ++i) {
    RowCursor row(a, i, colFirst);
    double t = 0.0;
    for (int j = colFirst; j < colEnd; ++j)
      t = t + v(j) * row.Next();
    sum = sum + t * w(i);
  }
  return sum;
}

// dot(t, r_j) for j = 0..last into u, four rows of r at a time sharing t.
void DotsWithRows(const std::vector<double>& t, const QXRectMatrix& r, int last, double* u) {
  const int n = static_cast<int>(t.size());
  const double* base = r.AsVectorConst().data();
  const std::size_t cols = r.GetNCols();
  int j = 0;
  for (; j + 3 <= last; j += 4) {
    const double* x0 = base + j * cols;
    const double* x1 = x0 + cols;
    const double* x2 = x1 + cols;
    const double* x3 = x2 + cols;
    double s0 = 0.0, s1 = 0.0, s2 = 0.0, s3 = 0.0;
    for (int k = 0; k < n; ++k) {
      const double tk = t[k];
      s0 = s0 + tk * x0[k];
      s1 = s1 + tk * x1[k];
      s2 = s2 + tk * x2[k];
      s3 = s3 + tk * x3[k];
    }
    u[j] = s0;
    u[j + 1] = s1;
    u[j + 2] = s2;
    u[j + 3] = s3;
  }
  for (; j <= last; ++j) {
    const double* x = base + j * cols;
    double s = 0.0;
    for (int k = 0; k < n; ++k)
      s = s + t[k] * x[k];
    u[j] = s;
  }
}

}  // namespace

// ---------------------------------------------------------------------------
// Row dots

// The rows are walked side by side in their runs: before the smaller index
// both lie in their stored rows, between the two one goes down a column, and
// after both do. Summed over the columns in order.
double QXSymMatrix::ComputeDotProduct2Rows(int row1, int row2) const {
  if (!InRange(row1, nRows) || !InRange(row2, nRows)) return 0.0;
  RowCursor x(data.data(), row1, 0), y(data.data(), row2, 0);
  double sum = 0.0;
  for (int k = 0; k < nRows; ++k)
    sum = sum + x.Next() * y.Next();
  return sum;
}

double QXSymMatrix::ComputeRowDotProductS(int row, const std::vector<double>& packed,
                                          int otherRow) const {
  if (!InRange(row, nRows) || !InRange(otherRow, nRows) || packed.size() != data.size()) return 0.0;
  RowCursor x(data.data(), row, 0), y(packed.data(), otherRow, 0);
  double sum = 0.0;
  for (int k = 0; k < nRows; ++k)
    sum = sum + x.Next() * y.Next();
  return sum;
}

double QXSymMatrix::ComputeRowDotProductS(int row, const IQXSymMatrix& s, int otherRow) const {
  if (s.GetType() != 0) return QXMV::Missing();
  return ComputeRowDotProductS(row, static_cast<const QXSymMatrix&>(s).data, otherRow);
}

double QXSymMatrix::ComputeRVD(int row, const double* v, int stride) const {
  if (!InRange(row, nRows)) return 0.0;
  RowCursor x(data.data(), row, 0);
  double t = 0.0;
  for (int j = 0; j < nRows; ++j)
    t = t + v[static_cast<long>(j) * stride] * x.Next();
  return t;
}

double QXSymMatrix::ComputeRVD(int row, const std::vector<double>& v, int stride) const {
  return ComputeRVD(row, v.data(), stride);
}

double QXSymMatrix::ComputeRVD(int row, const int* index, const double* v, int count) const {
  if (!InRange(row, nRows) || count < 0) return 0.0;
  for (int k = 0; k < count; ++k) {
    if (!InRange(index[k], nRows)) return 0.0;
  }
  double t = 0.0;
  for (int k = 0; k < count; ++k)
    t = t + v[k] * GetElem(row, index[k]);
  return t;
}

// ---------------------------------------------------------------------------
// Bilinear and quadratic forms: sum over rows i of (sum over columns j of
// v_j a_ij) * w_i, the full symmetric matrix read in that order.

double QXSymMatrix::ComputeVSW(const double* v, int vStride, const double* w, int wStride) const {
  if (nRows < 1) return 0.0;
  std::vector<double> vCopy, t(nRows);
  internal::SymmetricTimesVector(data.data(), nRows, Contiguous(v, nRows, vStride, vCopy),
                                 t.data());
  double sum = 0.0;
  for (int i = 0; i < nRows; ++i)
    sum = sum + t[i] * w[static_cast<long>(i) * wStride];
  return sum;
}

double QXSymMatrix::ComputeVSW(const std::vector<double>& v, const std::vector<double>& w) const {
  if (static_cast<int>(v.size()) != nRows || static_cast<int>(w.size()) != nRows) return 0.0;
  return ComputeVSW(v.data(), 1, w.data(), 1);
}

double QXSymMatrix::ComputeVSW(const std::vector<double>& v, int first, int last, int other) const {
  return internal::SymVSWStretch(*this, v, first, last, other);
}

double QXSymMatrix::ComputeVSV(const std::vector<double>& v) const {
  return ComputeVSW(v, v);
}

double QXSymMatrix::ComputeVSV(const IQXRectMatrix& r, int row) const {
  if (r.GetNCols() != nRows || !InRange(row, r.GetNRows())) return 0.0;
  if (r.GetMatrixType() == 1) {
    // Rows and columns of the form that meet a zero of the row add nothing.
    const int* cols = nullptr;
    const double* x = nullptr;
    const int count = static_cast<const QXSparseRectMatrix&>(r).GetRowEntries(row, cols, x);
    const std::vector<int> index(cols, cols + count);
    const std::vector<double> v(x, x + count);
    return ComputeSpVSSpW(count, index, v, count, index, v);
  }
  std::vector<double> v;
  internal::RectRow(r, row, v);
  return ComputeVSW(v.data(), 1, v.data(), 1);
}

double QXSymMatrix::ComputeVSWParts(const double* v, int vFirst, int vCount, const double* w,
                                    int wFirst, int wCount) const {
  if (vFirst < 0 || wFirst < 0) return 0.0;
  const int rowEnd = wCount < nRows - wFirst ? wFirst + wCount : nRows;
  const int colEnd = vCount < nRows - vFirst ? vFirst + vCount : nRows;
  return FormOnRectangle(
      data.data(), wFirst, rowEnd, vFirst, colEnd, [v](int j) { return v[j]; },
      [w](int i) { return w[i]; });
}

double QXSymMatrix::ComputeVSWParts(const double* v, int vCount, const double* w,
                                    int wCount) const {
  return ComputeVSWParts(v, 0, vCount, w, 0, wCount);
}

double QXSymMatrix::ComputeVSWParts(const std::vector<double>& v, int vCount,
                                    const std::vector<double>& w, int wCount) const {
  if (vCount > static_cast<int>(v.size())) vCount = static_cast<int>(v.size());
  if (wCount > static_cast<int>(w.size())) wCount = static_cast<int>(w.size());
  return ComputeVSWParts(v.data(), 0, vCount, w.data(), 0, wCount);
}

double QXSymMatrix::ComputeVSWii(const double* v, int vStride, const double* w, int wStep) const {
  if (nRows < 1) return 0.0;
  std::vector<double> vCopy, t(nRows);
  internal::SymmetricTimesVector(data.data(), nRows, Contiguous(v, nRows, vStride, vCopy),
                                 t.data());
  GrowingWalk wWalk(w, 0, wStep, 0);
  double sum = 0.0;
  for (int i = 0; i < nRows; ++i)
    sum = sum + t[i] * wWalk.Next();
  return sum;
}

double QXSymMatrix::ComputeViiSW(const double* v, int vStep, const double* w, int wStride) const {
  std::vector<double> vCopy(nRows > 0 ? nRows : 0);
  GrowingWalk vWalk(v, 0, vStep, 0);
  for (double& x : vCopy)
    x = vWalk.Next();
  return ComputeVSW(vCopy.data(), 1, w, wStride);
}

double QXSymMatrix::ComputeVSSubWParts(int first, const double* v, int vCount, const double* w,
                                       int wCount) const {
  if (first < 0 || first > nRows) return 0.0;
  const int m = nRows - first;
  const int rowEnd = first + (wCount < m ? wCount : m);
  const int colEnd = first + (vCount < m ? vCount : m);
  return FormOnRectangle(
      data.data(), first, rowEnd, first, colEnd, [v, first](int j) { return v[j - first]; },
      [w, first](int i) { return w[i - first]; });
}

double QXSymMatrix::ComputeVSymSubW(int first, int count, const std::vector<double>& v, int vOffset,
                                    const std::vector<double>& w, int wOffset) const {
  if (first < 0 || count < 0 || first > nRows - count || vOffset < 0 || wOffset < 0 ||
      static_cast<std::size_t>(vOffset) + count > v.size() ||
      static_cast<std::size_t>(wOffset) + count > w.size()) {
    return 0.0;
  }
  const int shiftV = vOffset - first, shiftW = wOffset - first;
  return FormOnRectangle(
      data.data(), first, first + count, first, first + count,
      [&v, shiftV](int j) { return v[j + shiftV]; }, [&w, shiftW](int i) { return w[i + shiftW]; });
}

double QXSymMatrix::ComputeBlockVSW(int blockRow, int blockCol, const std::vector<double>& v,
                                    const std::vector<double>& w) const {
  const int bs = blockSize;
  if (!InRange(blockRow, nBlocks) || !InRange(blockCol, nBlocks) ||
      static_cast<int>(v.size()) != bs || static_cast<int>(w.size()) != bs) {
    return 0.0;
  }
  const int r0 = blockRow * bs, c0 = blockCol * bs;
  return FormOnRectangle(
      data.data(), r0, r0 + bs, c0, c0 + bs, [&v, c0](int j) { return v[j - c0]; },
      [&w, r0](int i) { return w[i - r0]; });
}

double QXSymMatrix::ComputeBlockVSV(int blockRow, int blockCol,
                                    const std::vector<double>& v) const {
  return ComputeBlockVSW(blockRow, blockCol, v, v);
}

double QXSymMatrix::ComputeVSV(const std::vector<int>& index, const std::vector<double>& v) const {
  const int count = static_cast<int>(index.size());
  return v.size() == index.size() ? ComputeSpVSSpW(count, index, v, count, index, v) : 0.0;
}

// w's entries give the rows, v's the columns.
double QXSymMatrix::ComputeSpVSSpW(int vCount, const std::vector<int>& vIndex,
                                   const std::vector<double>& v, int wCount,
                                   const std::vector<int>& wIndex,
                                   const std::vector<double>& w) const {
  if (!internal::SparseListFits(vCount, vIndex, v, nRows) ||
      !internal::SparseListFits(wCount, wIndex, w, nRows)) {
    return 0.0;
  }
  double sum = 0.0;
  for (int s = 0; s < wCount; ++s) {
    double t = 0.0;
    for (int k = 0; k < vCount; ++k)
      t = t + v[k] * GetElem(wIndex[s], vIndex[k]);
    sum = sum + t * w[s];
  }
  return sum;
}

double QXSymMatrix::SquareRootVSV(const std::vector<double>& v) const {
  const double q = ComputeVSV(v);
  return q > 0.0 ? std::sqrt(q) : 0.0;
}

// ---------------------------------------------------------------------------
// Products with a vector

bool QXSymMatrix::ComputeSV(const std::vector<double>& v, std::vector<double>& out) const {
  return ComputeSV(0, v, out);
}

// Every row's dot is formed in the one pass; those above firstRow are
// then set to 0.0.
bool QXSymMatrix::ComputeSV(int firstRow, const std::vector<double>& v,
                            std::vector<double>& out) const {
  if (static_cast<int>(v.size()) != nRows || firstRow < 0 || firstRow > nRows) return false;
  std::vector<double> result(nRows);
  internal::SymmetricTimesVector(data.data(), nRows, v.data(), result.data());
  for (int i = 0; i < firstRow; ++i)
    result[i] = 0.0;
  out.swap(result);
  return true;
}

namespace {

// A sparse vector of values v at positions index, all within order n.
bool SparseFits(const std::vector<int>& index, const std::vector<double>& v, int n) {
  if (index.size() != v.size() || n < 0) return false;
  for (int p : index) {
    if (!InRange(p, n)) return false;
  }
  return true;
}

// L v (or L^T v) for a sparse v: out_i = the sum, over the entries k in list
// order whose position p lies on the factor's side of row i (p <= i, or p >=
// i), of element (i, p) times v[k].
void SparseTriangular(const double* a, int n, const std::vector<int>& index,
                      const std::vector<double>& v, bool transposed, std::vector<double>& out) {
  std::vector<double> result(n);
  for (int i = 0; i < n; ++i) {
    double s = 0.0;
    for (std::size_t k = 0; k < index.size(); ++k) {
      const int p = index[k];
      if (transposed ? p >= i : p <= i) s = s + a[PackedIndex(i, p)] * v[k];
    }
    result[i] = s;
  }
  out.swap(result);
}

}  // namespace

bool QXSymMatrix::ComputeSV(const std::vector<int>& index, const std::vector<double>& v,
                            std::vector<double>& out) const {
  if (!SparseFits(index, v, nRows)) return false;
  std::vector<double> result(nRows);
  for (int i = 0; i < nRows; ++i)
    result[i] = ComputeRVD(i, index.data(), v.data(), static_cast<int>(index.size()));
  out.swap(result);
  return true;
}

bool QXSymMatrix::ComputeLV(const std::vector<double>& v, std::vector<double>& out) const {
  if (static_cast<int>(v.size()) != nRows) return false;
  std::vector<double> result(nRows);
  LowerTimesVector(data.data(), nRows, v.data(), result.data());
  out.swap(result);
  return true;
}

bool QXSymMatrix::ComputeLTransV(const std::vector<double>& v, std::vector<double>& out) const {
  if (static_cast<int>(v.size()) != nRows) return false;
  std::vector<double> result(nRows);
  LowerTransTimesVector(data.data(), nRows, v.data(), result.data());
  out.swap(result);
  return true;
}

bool QXSymMatrix::ComputeLV(const std::vector<int>& index, const std::vector<double>& v,
                            std::vector<double>& out) const {
  if (!SparseFits(index, v, nRows)) return false;
  SparseTriangular(data.data(), nRows, index, v, false, out);
  return true;
}

bool QXSymMatrix::ComputeLTransV(const std::vector<int>& index, const std::vector<double>& v,
                                 std::vector<double>& out) const {
  if (!SparseFits(index, v, nRows)) return false;
  SparseTriangular(data.data(), nRows, index, v, true, out);
  return true;
}

bool QXSymMatrix::ComputeRTransSV(const IQXRectMatrix& r, const std::vector<double>& v,
                                  std::vector<double>& out) const {
  return internal::SymRTransSV(*this, r, v, out);
}

// ---------------------------------------------------------------------------
// Partial dots: stretches of a row or of a factor's column against a vector

namespace {

// Sums count products x.Next() * y.Next().
template <typename X, typename Y>
double WalkDot(int count, X x, Y y) {
  double sum = 0.0;
  for (int k = 0; k < count; ++k)
    sum = sum + x.Next() * y.Next();
  return sum;
}

// Down column col of the packed store from row `from`.
class ColumnCursor {
 public:
  ColumnCursor(const double* a, int col, int from) : a(a), p(PackedIndex(from, col)), r(from) {}
  double Next() {
    const double x = a[p];
    p += static_cast<std::size_t>(r) + 1;
    ++r;
    return x;
  }

 private:
  const double* a;
  std::size_t p;
  int r;
};

// Side by side along a vector.
class Straight {
 public:
  Straight(const double* v, long start) : v(v + start) {}
  double Next() { return *v++; }

 private:
  const double* v;
};

// A stretch of count elements of v from start: within v, and start >= 0.
bool FitsIn(const std::vector<double>& v, long start, long count) {
  return start >= 0 && count >= 0 && start + count <= static_cast<long>(v.size());
}

// The growing walk of count steps from start stays within v.
bool GrowingFits(const std::vector<double>& v, long start, long inc, long delay, long count) {
  if (count <= 0) return start >= 0 && count == 0;
  const long last = start + (count - 1) * (inc + delay) + (count - 1) * (count - 2) / 2;
  return start >= 0 && inc + delay >= 0 && last < static_cast<long>(v.size());
}

}  // namespace

bool QXSymMatrix::ComputeDotLColVecPart(int col, const std::vector<double>& v, int first, int count,
                                        double& result) const {
  if (col < 0 || first < col || count < 0 || first > nRows - count || !FitsIn(v, first, count))
    return false;
  result = WalkDot(count, ColumnCursor(data.data(), col, first), Straight(v.data(), first));
  return true;
}

bool QXSymMatrix::ComputeDotLRowVecPart(int row, const std::vector<double>& v, int first, int count,
                                        double& result) const {
  if (!InRange(row, nRows) || first < 0 || count < 0 || first > row + 1 - count ||
      !FitsIn(v, first, count)) {
    return false;
  }
  result = WalkDot(count, Straight(data.data() + RowStart(row), first), Straight(v.data(), first));
  return true;
}

bool QXSymMatrix::DotLColVecDelayedIIncrPart(int col, const std::vector<double>& v, int vStart,
                                             int vInc, int delay, int first, int count,
                                             double& result) const {
  if (col < 0 || first < col || count < 0 || first > nRows - count || delay < 0 ||
      !GrowingFits(v, vStart, vInc, delay, count)) {
    return false;
  }
  result = WalkDot(count, ColumnCursor(data.data(), col, first),
                   GrowingWalk(v.data(), vStart, vInc, delay));
  return true;
}

bool QXSymMatrix::ComputeDotLColVecIIncrPart(int col, const std::vector<double>& v, int vStart,
                                             int vInc, int first, int count, double& result) const {
  return DotLColVecDelayedIIncrPart(col, v, vStart, vInc, 0, first, count, result);
}

bool QXSymMatrix::ComputeDotLColVecIIncrDiag(int col, const std::vector<double>& v, int vStart,
                                             int vInc, double& result) const {
  return DotLColVecDelayedIIncrPart(col, v, vStart, vInc, 0, col, nRows - col, result);
}

bool QXSymMatrix::DotRowVecDelayedIIncrPart(int row, const std::vector<double>& v, int vStart,
                                            int vInc, int delay, int first, int count,
                                            double& result) const {
  if (!InRange(row, nRows) || first < 0 || count < 0 || first > nRows - count || delay < 0 ||
      !GrowingFits(v, vStart, vInc, delay, count)) {
    return false;
  }
  result = WalkDot(count, RowCursor(data.data(), row, first),
                   GrowingWalk(v.data(), vStart, vInc, delay));
  return true;
}

bool QXSymMatrix::ComputeDotColVecIIncrPart(int col, const std::vector<double>& v, int vStart,
                                            int vInc, int first, int count, double& result) const {
  return DotRowVecDelayedIIncrPart(col, v, vStart, vInc, 0, first, count, result);
}

bool QXSymMatrix::DotProductLColRowPart(int col, int row, int first, int count,
                                        double& result) const {
  if (col < 0 || !InRange(row, nRows) || first < col || count < 0 || first > row + 1 - count)
    return false;
  result = WalkDot(count, ColumnCursor(data.data(), col, first),
                   Straight(data.data() + RowStart(row), first));
  return true;
}

bool QXSymMatrix::DotLColRowPart(int col, const std::vector<double>& packed, int otherRow,
                                 int first, int count, double& result) const {
  if (col < 0 || first < col || count < 0 || first > nRows - count || !InRange(otherRow, nRows) ||
      packed.size() != data.size()) {
    return false;
  }
  result = WalkDot(count, ColumnCursor(data.data(), col, first),
                   RowCursor(packed.data(), otherRow, first));
  return true;
}

namespace {

// out[j] = sum over k >= j of part[k] L(first + k, first + j), down column
// first + j of the factor.
void PartByL(const double* a, const std::vector<double>& part, int first,
             std::vector<double>& out) {
  const int count = static_cast<int>(part.size());
  std::vector<double> result(count);
  for (int j = 0; j < count; ++j) {
    result[j] = WalkDot(count - j, ColumnCursor(a, first + j, first + j), Straight(part.data(), j));
  }
  out.swap(result);
}

}  // namespace

bool QXSymMatrix::ComputeVecIIncPartByL(const std::vector<double>& v, int vStart, int vInc,
                                        int first, int count, std::vector<double>& out) const {
  if (first < 0 || count < 0 || first > nRows - count || !GrowingFits(v, vStart, vInc, 0, count))
    return false;
  std::vector<double> part(count);
  GrowingWalk walk(v.data(), vStart, vInc, 0);
  for (double& x : part)
    x = walk.Next();
  PartByL(data.data(), part, first, out);
  return true;
}

bool QXSymMatrix::ComputeVecPartByL(const std::vector<double>& v, int first, int count,
                                    std::vector<double>& out) const {
  if (first < 0 || count < 0 || first > nRows - count || !FitsIn(v, first, count)) return false;
  PartByL(data.data(), std::vector<double>(v.begin() + first, v.begin() + first + count), first,
          out);
  return true;
}

// ---------------------------------------------------------------------------
// Products with matrices

bool QXSymMatrix::ComputeRS(const IQXRectMatrix& r, IQXRectMatrix& out) const {
  if (r.GetMatrixType() != 0 || out.GetMatrixType() != 0) return false;
  return internal::SymRS(*this, r, out);
}

bool QXSymMatrix::ComputeRTransS(const IQXRectMatrix& r, IQXRectMatrix& out) const {
  if (out.GetMatrixType() != 0) return false;
  if (r.GetMatrixType() == 1)
    return internal::SparseRTransS(*this, static_cast<const QXSparseRectMatrix&>(r), out);
  return r.GetMatrixType() == 0 && internal::SymRTransS(*this, r, out);
}

bool QXSymMatrix::ComputeRTransSR(const IQXRectMatrix& r, IQXSymMatrix& out) const {
  if (out.GetType() != 0) return false;
  if (r.GetMatrixType() == 1)
    return internal::SparseRTransSR(*this, static_cast<const QXSparseRectMatrix&>(r), out);
  return r.GetMatrixType() == 0 && internal::SymRTransSR(*this, r, out);
}

// Row k of R S R^T: t = S r_k in one pass over the store, then its dots with
// the rows of r up to k.
bool QXSymMatrix::ComputeRSRTrans(const IQXRectMatrix& r, IQXSymMatrix& out) const {
  if (out.GetType() != 0) return false;
  if (r.GetMatrixType() == 1)
    return internal::SparseRSRTrans(*this, static_cast<const QXSparseRectMatrix&>(r), out);
  if (r.GetMatrixType() != 0 || r.GetNCols() != nRows || nRows < 0) return false;
  const QXRectMatrix& dense = static_cast<const QXRectMatrix&>(r);
  const int m = dense.GetNRows();
  QXSymMatrix temp;
  QXSymMatrix& target = &out == this ? temp : static_cast<QXSymMatrix&>(out);
  if (!internal::PrepareSymOut(target, m, false)) return false;
  std::vector<double> t(nRows);
  for (int k = 0; k < m; ++k) {
    internal::SymmetricTimesVector(data.data(), nRows, dense.GetRowPtr(k), t.data());
    DotsWithRows(t, dense, k, target.data.data() + RowStart(k));
  }
  if (&out == this) static_cast<QXSymMatrix&>(out) = temp;
  return out.IsValidMatrix();
}

bool QXSymMatrix::ComputeSS(const IQXSymMatrix& s, IQXRectMatrix& out) const {
  if (s.GetType() != 0 || out.GetMatrixType() != 0) return false;
  return internal::SymSS(*this, s, out);
}

bool QXSymMatrix::ComputeSTransS(IQXSymMatrix& out) const {
  if (out.GetType() != 0) return out.GetType() != 0;
  return internal::SymSTransS(*this, out);
}

bool QXSymMatrix::ComputeGSG(const IQXSymMatrix& s, IQXSymMatrix& out) const {
  if (out.GetType() != 0) return false;
  return internal::SymGSG(*this, s, out);
}

bool QXSymMatrix::ComputeGMG(const std::vector<double>& g, QXSymMatrix& out) const {
  return internal::SymGMG(*this, g, out);
}

bool QXSymMatrix::ComputeMGN(const IQXSymMatrix& g, const IQXSymMatrix& n,
                             IQXSymMatrix& out) const {
  if (out.GetType() != 0) return false;
  return internal::SymMGN(*this, g, n, out);
}

bool QXSymMatrix::ComputeGMGNG(const IQXSymMatrix& m, const IQXSymMatrix& n, IQXSymMatrix& out,
                               std::vector<double>& work) const {
  if (out.GetType() != 0) return false;
  return internal::SymGMGNG(*this, m, n, out, work);
}

bool QXSymMatrix::ComputeLSLTrans(const IQXSymMatrix& s, IQXSymMatrix& out) const {
  if (out.GetType() != 0) return false;
  return internal::SymLSLTrans(*this, s, out);
}

double QXSymMatrix::TraceOfProduct(const IQXSymMatrix& s) const {
  if (s.GetType() != 0) return QXMV::Missing();
  return internal::SymTraceOfProduct(*this, s);
}

double QXSymMatrix::TraceOfProductOfThree(const IQXSymMatrix& s, const IQXSymMatrix& t) const {
  if (s.GetType() != 0 || t.GetType() != 0) return QXMV::Missing();
  return internal::SymTraceOfProductOfThree(*this, s, t);
}

// ---------------------------------------------------------------------------
// L^T S L with the factor repeated along the diagonal

namespace {

// The factor of order q by columns: column p from its diagonal down, the
// columns one after the other, so that the dots of the product run side by
// side.
std::vector<double> FactorByColumns(const std::vector<double>& l, int q,
                                    std::vector<std::size_t>& colStart) {
  std::vector<double> cols(l.size());
  colStart.resize(q > 0 ? q : 0);
  std::size_t at = 0;
  for (int p = 0; p < q; ++p) {
    colStart[p] = at;
    internal::WalkColumn(l.data(), p, p, q, [&](int, double x) { cols[at++] = x; });
  }
  return cols;
}

// One row r of L^T A L: d(c) = (A L)(r, c) for c <= r, summed down c's
// column of the factor, then out(u, c) += L(r, u) d(c) for the rows u of r's
// block up to r. With skipZeros the zero elements of the factor are passed
// over.
void LTransSLRow(const std::vector<double>& a, int n, const std::vector<double>& l, int q,
                 const std::vector<double>& cols, const std::vector<std::size_t>& colStart, int r,
                 bool skipZeros, std::vector<double>& arow, std::vector<double>& d,
                 std::vector<double>& out) {
  internal::WalkSymmetricRow(a.data(), r, n, [&arow](int k, double x) { arow[k] = x; });
  for (int c = 0; c <= r; ++c) {
    const int pc = c % q;
    const double* x = arow.data() + c;
    const double* y = cols.data() + colStart[pc];
    double sum = 0.0;
    for (int k = 0; k < q - pc; ++k) {
      if (!skipZeros || y[k] != 0.0) sum = sum + x[k] * y[k];
    }
    d[c] = sum;
  }
  const int rowBlock = r - r % q;
  const double* lrow = l.data() + RowStart(r - rowBlock);
  for (int t = 0; t <= r - rowBlock; ++t) {
    const double coef = lrow[t];
    if (skipZeros && coef == 0.0) continue;
    const int u = rowBlock + t;
    double* __restrict__ o = out.data() + RowStart(u);
    const double* __restrict__ dd = d.data();
    for (int c = 0; c <= u; ++c)
      o[c] = o[c] + coef * dd[c];
  }
}

// Four rows r..r+3 of one block at once, with the terms of each element in
// the order of the single rows: their four dots run side by side on the
// factor's column, and an element of out takes the rows' terms in turn, in
// one pass over it.
void LTransSLFourRows(const std::vector<double>& a, int n, const std::vector<double>& l, int q,
                      const std::vector<double>& cols, const std::vector<std::size_t>& colStart,
                      int r, std::vector<double>* arow, std::vector<double>* d,
                      std::vector<double>& out) {
  for (int i = 0; i < 4; ++i) {
    std::vector<double>& row = arow[i];
    internal::WalkSymmetricRow(a.data(), r + i, n, [&row](int k, double x) { row[k] = x; });
  }
  for (int c = 0; c <= r + 3; ++c) {
    const int pc = c % q;
    const double* x0 = arow[0].data() + c;
    const double* x1 = arow[1].data() + c;
    const double* x2 = arow[2].data() + c;
    const double* x3 = arow[3].data() + c;
    const double* y = cols.data() + colStart[pc];
    double s0 = 0.0, s1 = 0.0, s2 = 0.0, s3 = 0.0;
    for (int k = 0; k < q - pc; ++k) {
      const double yk = y[k];
      s0 = s0 + x0[k] * yk;
      s1 = s1 + x1[k] * yk;
      s2 = s2 + x2[k] * yk;
      s3 = s3 + x3[k] * yk;
    }
    d[0][c] = s0;
    d[1][c] = s1;
    d[2][c] = s2;
    d[3][c] = s3;
  }
  const int rowBlock = r - r % q;
  const int pr = r - rowBlock;
  const double* l0 = l.data() + RowStart(pr);
  const double* l1 = l0 + pr + 1;
  const double* l2 = l1 + pr + 2;
  const double* l3 = l2 + pr + 3;
  const double* __restrict__ d0 = d[0].data();
  const double* __restrict__ d1 = d[1].data();
  const double* __restrict__ d2 = d[2].data();
  const double* __restrict__ d3 = d[3].data();
  for (int t = 0; t <= pr + 3; ++t) {
    const int u = rowBlock + t;
    double* __restrict__ o = out.data() + RowStart(u);
    if (t <= pr) {
      const double c0 = l0[t], c1 = l1[t], c2 = l2[t], c3 = l3[t];
      for (int c = 0; c <= u; ++c)
        o[c] = (((o[c] + c0 * d0[c]) + c1 * d1[c]) + c2 * d2[c]) + c3 * d3[c];
    } else if (t == pr + 1) {
      const double c1 = l1[t], c2 = l2[t], c3 = l3[t];
      for (int c = 0; c <= u; ++c)
        o[c] = ((o[c] + c1 * d1[c]) + c2 * d2[c]) + c3 * d3[c];
    } else if (t == pr + 2) {
      const double c2 = l2[t], c3 = l3[t];
      for (int c = 0; c <= u; ++c)
        o[c] = (o[c] + c2 * d2[c]) + c3 * d3[c];
    } else {
      const double c3 = l3[t];
      for (int c = 0; c <= u; ++c)
        o[c] = o[c] + c3 * d3[c];
    }
  }
}

// out = L^T A L into the zeroed packed out of order n, with A in a and the
// factor's packed store l of order q repeated along the diagonal. Every
// element of out takes its terms in ascending r, the row of A they come
// from.
void LTransSLDense(const std::vector<double>& a, int n, const std::vector<double>& l, int q,
                   bool skipZeros, std::vector<double>& out) {
  std::vector<std::size_t> colStart;
  const std::vector<double> cols = FactorByColumns(l, q, colStart);
  std::vector<double> arow[4], d[4];
  for (int i = 0; i < 4; ++i) {
    arow[i].resize(n);
    d[i].resize(n);
  }
  int r = 0;
  while (r < n) {
    if (!skipZeros && r % q + 3 < q) {
      LTransSLFourRows(a, n, l, q, cols, colStart, r, arow, d, out);
      r += 4;
    } else {
      LTransSLRow(a, n, l, q, cols, colStart, r, skipZeros, arow[0], d[0], out);
      ++r;
    }
  }
}

}  // namespace

bool QXSymMatrix::ComputeLTransSL(const IQXSymMatrix& s, IQXSymMatrix& out, int blocks) const {
  const int q = s.GetNRows();
  const int tag = s.GetType();
  if (blocks < 1 || q < 1 || nRows != q * blocks || out.GetType() != 0 || tag < 0 || tag > 2)
    return false;
  std::vector<double> result(PackedSize(nRows), 0.0);
  if (tag == 1) {
    std::vector<double> d;
    s.GetDiagonal(d);
    std::size_t p = 0;
    for (int i = 0; i < nRows; ++i) {
      for (int j = 0; j <= i; ++j, ++p)
        result[p] = d[i % q] * d[j % q] * data[p];
    }
  } else if (tag == 0) {
    LTransSLDense(data, nRows, static_cast<const QXSymMatrix&>(s).data, q, false, result);
  } else {
    QXSymMatrix factor;
    if (!static_cast<const QXSymBlockDiagMatrix&>(s).FillDenseMatrix(factor)) return false;
    LTransSLDense(data, nRows, factor.data, q, true, result);
  }
  QXSymMatrix& target = static_cast<QXSymMatrix&>(out);
  if (!target.SetNRows(nRows, false)) return false;
  target.data.swap(result);
  return true;
}

bool QXSymMatrix::DotProductLBlockColRow(int col, const std::vector<double>& s, int blocks, int row,
                                         double& result) const {
  if (blocks < 1 || nRows % blocks != 0 || !InRange(col, nRows) || !InRange(row, nRows))
    return false;
  const int q = nRows / blocks;
  if (s.size() != PackedSize(q)) return false;
  const int start = (col / q) * q;
  RowCursor a(data.data(), row, col);
  ColumnCursor l(s.data(), col - start, col - start);
  result = WalkDot(start + q - col, a, l);
  return true;
}

bool QXSymMatrix::DotProductLBlockDiagColRow(int col, const QXSymBlockDiagMatrix& b, int blocks,
                                             int row, double& result) const {
  const int q = b.GetNRows();
  if (blocks < 1 || q < 1 || nRows != q * blocks || !InRange(col, nRows) || !InRange(row, nRows))
    return false;
  const int start = (col / q) * q;
  RowCursor a(data.data(), row, col);
  double sum = 0.0;
  for (int r = col; r < start + q; ++r) {
    const double x = a.Next();
    const double y = b.GetElem(r - start, col - start);
    if (y != 0.0) sum = sum + x * y;
  }
  result = sum;
  return true;
}

// ---------------------------------------------------------------------------
// Sandwiches with rectangular matrices

// A^T S B + B^T S A, column by column of a: t1 = S a_c and t2 = S b_c, each
// element the dot of a column with a full row of S; then element (c, j) is
// DDot(t1, b_j) + DDot(t2, a_j), the columns read in place at their stride.
bool QXSymMatrix::ComputeRSRTrans2(const QXRectMatrix& a, const QXRectMatrix& b,
                                   QXSymMatrix& out) const {
  const int cols = a.GetNCols();
  if (a.GetNRows() < 1 || cols < 1 || a.GetNRows() != nRows || b.GetNRows() != nRows ||
      b.GetNCols() != cols) {
    return false;
  }
  QXSymMatrix temp;
  QXSymMatrix& target = &out == this ? temp : out;
  if (!internal::PrepareSymOut(target, cols, false)) return false;
  double* ab = const_cast<double*>(a.AsVectorConst().data());
  double* bb = const_cast<double*>(b.AsVectorConst().data());
  std::vector<double> column, t1(nRows), t2(nRows);
  for (int c = 0; c < cols; ++c) {
    internal::SymmetricTimesVector(data.data(), nRows, Contiguous(ab + c, nRows, cols, column),
                                   t1.data());
    internal::SymmetricTimesVector(data.data(), nRows, Contiguous(bb + c, nRows, cols, column),
                                   t2.data());
    double* row = target.data.data() + RowStart(c);
    for (int j = 0; j <= c; ++j) {
      row[j] = Blas1::DDot(nRows, t1.data(), 1, bb + j, cols) +
               Blas1::DDot(nRows, t2.data(), 1, ab + j, cols);
    }
  }
  if (&out == this) out = temp;
  return out.IsValidMatrix();
}

bool QXSymMatrix::ComputeRSRTrans2(const QXSymMatrix& s, int first, int count,
                                   const QXRectMatrix& r, QXSymMatrix& out) {
  if (first < 0 || count < 1 || first > s.nRows - count || r.GetNCols() != count) return false;
  QXSymMatrix block(count, true);
  if (!s.ExtractDiagBlock(first, count, block)) return false;
  return block.ComputeRSRTrans(r, out);
}

bool QXSymMatrix::ComputeRDiagSRDiagTrans(const QXRectMatrix& r, QXSymMatrix& out) const {
  if (r.GetNCols() != nRows) return false;
  std::vector<double> d;
  GetDiagonal(d);
  const QXDiagMatrix diagonal(d);
  return diagonal.ComputeRSRTrans(r, out);
}

bool QXSymMatrix::ComputeRTransByR(const QXRectMatrix& r) {
  const int m = r.GetNCols();
  if (!SetNRows(m, false)) return false;
  std::size_t p = 0;
  for (int i = 0; i < m; ++i) {
    for (int j = 0; j <= i; ++j)
      data[p++] = r.DotProductCol(i, j);
  }
  return true;
}

bool QXSymMatrix::ComputeRByRTrans(const QXRectMatrix& r) {
  const int m = r.GetNRows();
  if (!SetNRows(m, false)) return false;
  std::size_t p = 0;
  for (int i = 0; i < m; ++i) {
    for (int j = 0; j <= i; ++j)
      data[p++] = r.DotProductRows(i, j);
  }
  return true;
}

namespace {

// Adds the packed matrix part of order m into the diagonal block of a from
// row first.
void AddToDiagonalBlock(std::vector<double>& a, int first, const std::vector<double>& part, int m) {
  std::size_t p = 0;
  for (int i = 0; i < m; ++i) {
    double* row = a.data() + RowStart(first + i) + first;
    for (int j = 0; j <= i; ++j)
      row[j] += part[p++];
  }
}

// Overwrites the diagonal block of a from row first with the packed part.
void PutDiagonalBlock(std::vector<double>& a, int first, const std::vector<double>& part, int m) {
  std::size_t p = 0;
  for (int i = 0; i < m; ++i) {
    double* row = a.data() + RowStart(first + i) + first;
    for (int j = 0; j <= i; ++j)
      row[j] = part[p++];
  }
}

}  // namespace

bool QXSymMatrix::ComputeRTransSymR(const QXRectMatrix& r, int first, const IQXSymMatrix& s) {
  const int m = r.GetNCols();
  if (first < 0 || first > nRows - m || s.GetNRows() != r.GetNRows()) return false;
  QXSymMatrix product;
  if (!s.ComputeRTransSR(r, product)) return false;
  AddToDiagonalBlock(data, first, product.data, m);
  return true;
}

bool QXSymMatrix::ComputeRTransBlockDiagR(const QXRectMatrix& r, int first,
                                          const QXSymBlockDiagMatrix& b) {
  return ComputeRTransSymR(r, first, b);
}

bool QXSymMatrix::ExpandSymToRect(const QXRectMatrix& r, QXRectMatrix& out) const {
  if (nRows < 1 || r.GetNCols() != nRows) return false;
  const int total = nRows + r.GetNRows();
  QXRectMatrix result(total, total, true);
  if (!result.IsValidMatrix()) return false;
  for (int i = 0; i < nRows; ++i) {
    for (int j = 0; j < nRows; ++j)
      result.SetElem(i, j, GetElem(i, j));
  }
  for (int a = 0; a < r.GetNRows(); ++a) {
    for (int j = 0; j < nRows; ++j) {
      result.SetElem(nRows + a, j, r.GetElem(a, j));
      result.SetElem(j, nRows + a, r.GetElem(a, j));
    }
  }
  out = result;
  return out.IsValidMatrix();
}

bool QXSymMatrix::TraceOfProductSubSym(const std::vector<double>& v, int first,
                                       double& trace) const {
  int m = 0;
  while (PackedSize(m) < v.size())
    ++m;
  if (PackedSize(m) != v.size() || first < 0 || first > nRows - m) return false;
  double sum = 0.0;
  for (int i = 0; i < m; ++i) {
    RowCursor x(data.data(), first + i, first), y(v.data(), i, 0);
    sum = sum + WalkDot(m, x, y);
  }
  trace = sum;
  return true;
}

bool QXSymMatrix::TraceOfProductSubMatSym(int first, const IQXSymMatrix& s, double& trace) const {
  if (s.GetType() != 0) return false;
  return TraceOfProductSubSym(static_cast<const QXSymMatrix&>(s).data, first, trace);
}

// ---------------------------------------------------------------------------
// With a block-diagonal matrix

bool QXSymMatrix::ComputeVBW(int first, int row1, int row2, const QXSymBlockDiagMatrix& b,
                             int fromBlock, int toBlock, double& result) const {
  const int m = b.GetNRows();
  if (first < 0 || !InRange(row1, m) || !InRange(row2, m) || first > nRows - m || fromBlock < 0 ||
      toBlock < fromBlock || toBlock >= b.GetNBlocks()) {
    return false;
  }
  // Rows row1 and row2 of the sub-block, read in their two runs.
  std::vector<double> u(m), w(m);
  RowCursor cu(data.data(), first + row1, first), cw(data.data(), first + row2, first);
  for (int t = 0; t < m; ++t) {
    u[t] = cu.Next();
    w[t] = cw.Next();
  }
  double sum = 0.0;
  for (int k = fromBlock; k <= toBlock; ++k) {
    const int start = b.GetBlockStartIndex(k);
    const int size = b.GetBlockSize(k);
    const std::vector<double>* d = nullptr;
    const QXSymMatrix* block = nullptr;
    if (b.GetDiagonalBlock(k, d)) {
      for (int t = 0; t < size; ++t)
        sum = sum + (*d)[t] * u[start + t] * w[start + t];
    } else if (b.GetDenseBlock(k, block)) {
      sum = sum + block->ComputeVSW(u.data() + start, 1, w.data() + start, 1);
    }
  }
  result = sum;
  return true;
}

bool QXSymMatrix::ComputeVBW(int first, int row1, int row2, const QXSymBlockDiagMatrix& b,
                             double& result) const {
  if (b.GetNBlocks() < 1) return false;
  return ComputeVBW(first, row1, row2, b, 0, b.GetNBlocks() - 1, result);
}

bool QXSymMatrix::ComputeSSubBSSub(int first, int count, const QXSymBlockDiagMatrix& b, int bFirst,
                                   QXSymMatrix& out) const {
  if (first < 0 || count < 0 || first > nRows - count || bFirst < 0 ||
      bFirst > b.GetNRows() - count) {
    return false;
  }
  QXSymMatrix block(count, true);
  if (!ExtractDiagBlock(first, count, block)) return false;
  std::vector<int> rows(count);
  for (int k = 0; k < count; ++k)
    rows[k] = bFirst + k;
  QXSymBlockDiagMatrix part;
  if (!b.ExtractSubmatrix(rows, part)) return false;
  return block.ComputeGSG(part, out);
}

bool QXSymMatrix::ComputeSSubBSSub(int first, const QXSymBlockDiagMatrix& b,
                                   QXSymMatrix& out) const {
  return ComputeSSubBSSub(first, b.GetNRows(), b, 0, out);
}

bool QXSymMatrix::SubSymBlockLTSBlockL(int first, const QXSymBlockDiagMatrix& b) {
  const int m = b.GetNRows();
  if (first < 0 || first > nRows - m) return false;
  QXSymMatrix block(m, true), product;
  if (!ExtractDiagBlock(first, m, block) || !block.ComputeLTransSL(b, product, 1)) return false;
  PutDiagonalBlock(data, first, product.data, m);
  return true;
}

bool QXSymMatrix::SubSymSBlockL(int first, const QXSymBlockDiagMatrix& b) {
  const int m = b.GetNRows();
  if (first < 0 || first > nRows - m) return false;
  QXSymMatrix block(m, true), product;
  if (!ExtractDiagBlock(first, m, block) || !block.ComputeLSLTrans(b, product)) return false;
  PutDiagonalBlock(data, first, product.data, m);
  return true;
}

// The row's part at the block's columns lies side by side in its stored row.
bool QXSymMatrix::SubSymVectBlockL(int first, int row, const QXSymBlockDiagMatrix& b) {
  const int m = b.GetNRows();
  if (first < 0 || row < first + m || row >= nRows) return false;
  double* part = data.data() + RowStart(row) + first;
  std::vector<double> x(part, part + m), y;
  if (!b.ComputeLTransV(x, y)) return false;
  for (int k = 0; k < m; ++k)
    part[k] = y[k];
  return true;
}

bool QXSymMatrix::SubSymRectTBlockL(int first, const QXSymBlockDiagMatrix& b) {
  const int m = b.GetNRows();
  if (first < 0 || first > nRows - m) return false;
  for (int row = first + m; row < nRows; ++row)
    SubSymVectBlockL(first, row, b);
  return true;
}

bool QXSymMatrix::AugmentUsingBlockDiagL(int first, const QXSymBlockDiagMatrix& b) {
  const int m = b.GetNRows();
  if (!SubSymBlockLTSBlockL(first, b) || !SubSymRectTBlockL(first, b)) return false;
  // The rectangle left of the block: each of its columns becomes L^T times it.
  std::vector<double> x(m), y;
  for (int c = 0; c < first; ++c) {
    for (int k = 0; k < m; ++k)
      x[k] = data[RowStart(first + k) + c];
    b.ComputeLTransV(x, y);
    for (int k = 0; k < m; ++k)
      data[RowStart(first + k) + c] = y[k];
  }
  return true;
}

bool QXSymMatrix::SubSymRectV(int row, int col, int nr, int nc, const std::vector<double>& v,
                              std::vector<double>& out) const {
  if (row < 0 || col < 0 || nr < 0 || nc < 0 || row > nRows - nr || col > nRows - nc ||
      static_cast<int>(v.size()) != nc) {
    return false;
  }
  std::vector<double> result(nr);
  for (int i = 0; i < nr; ++i) {
    RowCursor x(data.data(), row + i, col);
    result[i] = WalkDot(nc, x, Straight(v.data(), 0));
  }
  out.swap(result);
  return true;
}

// The rectangle's transpose is the rectangle mirrored across the diagonal.
bool QXSymMatrix::SubSymRectTV(int row, int col, int nr, int nc, const std::vector<double>& v,
                               std::vector<double>& out) const {
  return SubSymRectV(col, row, nc, nr, v, out);
}

bool QXSymMatrix::SubSymSV(int first, int count, const std::vector<double>& v,
                           std::vector<double>& out) const {
  return SubSymRectV(first, first, count, count, v, out);
}

// ---------------------------------------------------------------------------
// Accumulating updates

bool QXSymMatrix::UpdateXXMat2(const QXRectMatrix& a, const QXRectMatrix& b, double w) {
  const int ca = a.GetNCols(), cb = b.GetNCols(), m = a.GetNRows();
  if (b.GetNRows() != m || ca < 0 || cb < 0 || ca + cb != nRows) return false;
  auto column = [&](int c) -> const double* {
    return c < ca ? a.AsVectorConst().data() + c : b.AsVectorConst().data() + (c - ca);
  };
  auto stride = [&](int c) -> std::size_t { return c < ca ? ca : cb; };
  std::size_t p = 0;
  for (int i = 0; i < nRows; ++i) {
    for (int j = 0; j <= i; ++j, ++p) {
      const double* x = column(i);
      const double* y = column(j);
      double sum = 0.0;
      for (int k = 0; k < m; ++k)
        sum = sum + x[k * stride(i)] * y[k * stride(j)];
      data[p] += w * sum;
    }
  }
  return true;
}

bool QXSymMatrix::UpdateXXCornerSparse(int count, const std::vector<int>& indices,
                                       const std::vector<double>& values, double w, int corner) {
  if (corner < 0 || count < 0 || count > static_cast<int>(indices.size())) return false;
  std::vector<int> shifted(indices.begin(), indices.begin() + count);
  for (int& p : shifted)
    p = p < 0 ? -1 : p + corner;
  return UpdateXXSparse(count, shifted, values, w);
}

bool QXSymMatrix::UpdateXXCornerBlock(const QXSparseRectMatrix& r,
                                      const std::vector<double>& weights) {
  if (!r.IsValidMatrix() || r.GetNCols() > nRows ||
      weights.size() != static_cast<std::size_t>(r.GetNRows())) {
    return false;
  }
  internal::AddSparseCrossProducts(*this, r, weights);
  return true;
}

bool QXSymMatrix::UpdateXXCornerBlock(const QXSparseRectMatrix& r, const QXSymMatrix& s) {
  if (!r.IsValidMatrix() || r.GetNCols() > nRows || s.nRows != r.GetNRows()) return false;
  if (&s == this) {
    const QXSymMatrix copy(s);
    return UpdateXXCornerBlock(r, copy);
  }
  internal::AddSparseRTransSR(*this, r, s);
  return true;
}

// ---------------------------------------------------------------------------
// this += a x for any structure of x

bool QXSymMatrix::ComputeAXpY(double a, const IQXSymMatrix& x) {
  if (x.GetNRows() != nRows) return false;
  switch (x.GetType()) {
    case 0: {
      const QXSymMatrix& dense = static_cast<const QXSymMatrix&>(x);
      Blas1::Daxpy(static_cast<int>(data.size()), a, const_cast<double*>(dense.data.data()), 1,
                   data.data(), 1);
      return true;
    }
    case 1: {
      const std::vector<double>& d = static_cast<const QXDiagMatrix&>(x).AsVectorConst();
      internal::WalkDiagonal(data.data(), 0, nRows, [&](int i, double& aii) { aii += a * d[i]; });
      return true;
    }
    case 2: {
      const QXSymBlockDiagMatrix& b = static_cast<const QXSymBlockDiagMatrix&>(x);
      for (int k = 0; k < b.GetNBlocks(); ++k) {
        const int start = b.GetBlockStartIndex(k);
        const std::vector<double>* d = nullptr;
        const QXSymMatrix* block = nullptr;
        if (b.GetDiagonalBlock(k, d)) {
          internal::WalkDiagonal(data.data(), start, static_cast<int>(d->size()),
                                 [&](int i, double& aii) { aii += a * (*d)[i - start]; });
        } else if (b.GetDenseBlock(k, block)) {
          const int size = block->nRows;
          std::size_t q = 0;
          for (int i = 0; i < size; ++i) {
            double* row = data.data() + RowStart(start + i) + start;
            for (int j = 0; j <= i; ++j)
              row[j] += a * block->data[q++];
          }
        }
      }
      return true;
    }
    default:
      return false;
  }
}

}  // namespace QXMath_850
