#include "qx/matrices/qxdiagmatrix.h"

#include <cmath>
#include <cstddef>

#include "qx/foundation/qxcomponentdisplay.h"
#include "qx/foundation/qxmissingvalue.h"
#include "qx/matrices/internal/displayrow.h"
#include "qx/matrices/internal/factorization.h"
#include "qx/matrices/internal/packedlayout.h"
#include "qx/matrices/internal/symproducts.h"
#include "qx/matrices/qxrectmatrix.h"

namespace QXMath_850 {

using QXCommon_850::QXMV;

namespace {

inline bool InRange(int i, int n) {
  return i >= 0 && i < n;
}

// The bit set of the rows kept: sized to n false bits when shorter,
// otherwise cleared, keeping its size.
void ResetBits(QXBitSet& bits, int n) {
  if (bits.Size() < n) {
    bits.Resize(n, false);
  } else {
    bits.Clear();
  }
}

}  // namespace

// ---------------------------------------------------------------------------
// Construction and sizing

QXDiagMatrix::QXDiagMatrix() : nRows(0) {}

QXDiagMatrix::QXDiagMatrix(int n, bool clear) : nRows(n < 0 ? 0 : n) {
  if (ResizeNRows(diagonal, nRows) && clear) Clear();
}

QXDiagMatrix::QXDiagMatrix(const std::vector<double>& values) : nRows(0) {
  ReplaceDiagonal(values);
}

QXDiagMatrix::QXDiagMatrix(const QXDiagMatrix& other) : IQXSymMatrix(other), nRows(other.nRows) {
  try {
    diagonal = other.diagonal;
  } catch (...) {
    diagonal.clear();
    nRows = -1;
  }
}

QXDiagMatrix& QXDiagMatrix::operator=(const QXDiagMatrix& other) {
  if (this == &other) return *this;
  nRows = other.nRows;
  try {
    diagonal = other.diagonal;
  } catch (...) {
    diagonal.clear();
    nRows = -1;
  }
  return *this;
}

QXDiagMatrix::~QXDiagMatrix() = default;

bool QXDiagMatrix::ResizeNRows(std::vector<double>& store, int& n) {
  if (n > 0) {
    try {
      store.resize(static_cast<std::size_t>(n), 0.0);
    } catch (...) {
      n = -1;
    }
  }
  if (n <= 0) store.clear();
  return n >= 0;
}

bool QXDiagMatrix::SetNRows(int n, bool clear) {
  nRows = n < 0 ? 0 : n;
  const bool ok = ResizeNRows(diagonal, nRows);
  if (ok && clear) Clear();
  return ok;
}

bool QXDiagMatrix::Resize(int n) {
  nRows = n < 0 ? 0 : n;
  return ResizeNRows(diagonal, nRows);
}

bool QXDiagMatrix::ReplaceDiagonal(const std::vector<double>& values) {
  if (values.empty()) return false;
  if (&values == &diagonal) return true;
  nRows = static_cast<int>(values.size());
  if (!ResizeNRows(diagonal, nRows)) return false;
  diagonal.assign(values.begin(), values.end());
  return true;
}

// ---------------------------------------------------------------------------
// Element access

int QXDiagMatrix::GetType() const {
  return 1;
}
int QXDiagMatrix::GetNRows() const {
  return nRows;
}
bool QXDiagMatrix::IsValidMatrix() const {
  return nRows >= 0 && static_cast<std::size_t>(nRows) == diagonal.size();
}

double QXDiagMatrix::GetElem(int row, int col) const {
  return row == col ? diagonal[row] : 0.0;
}

bool QXDiagMatrix::SetElem(int row, int col, double value) {
  if (row != col) return false;
  diagonal[row] = value;
  return true;
}

void QXDiagMatrix::GetDiagonal(std::vector<double>& diag) const {
  diag.assign(diagonal.begin(), diagonal.end());
}

bool QXDiagMatrix::GetRow(int row, std::vector<double>& out) const {
  if (!InRange(row, nRows)) return false;
  out.assign(nRows, 0.0);
  out[row] = diagonal[row];
  return true;
}

bool QXDiagMatrix::PutRow(int row, const std::vector<double>& in) {
  if (!InRange(row, nRows) || static_cast<int>(in.size()) < nRows) return false;
  for (int k = 0; k < nRows; ++k) {
    if (k != row && in[k] != 0.0) return false;
  }
  diagonal[row] = in[row];
  return true;
}

bool QXDiagMatrix::SetRowColToConst(int row, double value) {
  if (!InRange(row, nRows)) return false;
  diagonal[row] = value;
  return true;
}

bool QXDiagMatrix::ZeroOut(int row) {
  return SetRowColToConst(row, 0.0);
}

void QXDiagMatrix::ZeroOutNonDiag(double /*ratio*/) {}

bool QXDiagMatrix::IncrVecByRow(int row, std::vector<double>& v, int offset, int count,
                                double scale, bool check) const {
  if (check) {
    if (!InRange(row, nRows) || count <= 0 || count > nRows || offset < 0 ||
        static_cast<std::size_t>(offset) + count > v.size()) {
      return false;
    }
  }
  if (InRange(row, nRows) && row < count) v[offset + row] += scale * diagonal[row];
  return true;
}

bool QXDiagMatrix::IsZeroRow(int row, const QXBitSet& columns) const {
  if (!InRange(row, nRows)) return false;
  const int m = nRows < columns.Size() ? nRows : columns.Size();
  if (m < 1) return false;
  return !(row < m && columns.IsIn(row) && diagonal[row] != 0.0);
}

// ---------------------------------------------------------------------------
// Whole-matrix operations

void QXDiagMatrix::Clear() {
  for (double& d : diagonal)
    d = 0.0;
}

void QXDiagMatrix::ChangeSign() {
  for (double& d : diagonal)
    d = -d;
}

void QXDiagMatrix::MultiplyByNumber(double factor) {
  for (double& d : diagonal)
    d *= factor;
}

void QXDiagMatrix::AddToDiagonal(double value) {
  for (double& d : diagonal)
    d += value;
}

double QXDiagMatrix::Trace() const {
  double sum = 0.0;
  for (int i = 0; i < nRows; ++i)
    sum += diagonal[i];
  return sum;
}

void QXDiagMatrix::MaxMinDiag(double& largest, double& smallest) const {
  if (nRows < 1) return;
  largest = -1.7976931348623157e+308;
  smallest = 1.7976931348623157e+308;
  for (int i = 0; i < nRows; ++i) {
    if (diagonal[i] > largest) largest = diagonal[i];
    if (diagonal[i] < smallest) smallest = diagonal[i];
  }
}

void QXDiagMatrix::MaxMinDiagOffDiag(double& largestDiag, double& smallestDiag, double& largestOff,
                                     double& smallestOff) const {
  largestOff = 0.0;
  smallestOff = 0.0;
  MaxMinDiag(largestDiag, smallestDiag);
}

void QXDiagMatrix::GetNCheckDiagonal(std::vector<double>& diag, double lower,
                                     double replacement) const {
  diag.resize(nRows > 0 ? nRows : 0);
  for (int i = 0; i < nRows; ++i)
    diag[i] = diagonal[i] >= lower ? diagonal[i] : replacement;
}

bool QXDiagMatrix::ComputeAXpY(double a, const IQXSymMatrix& x) {
  if (x.GetNRows() != nRows || x.GetType() != 1) return false;
  if (a == 0.0) return true;
  const std::vector<double>& xd = static_cast<const QXDiagMatrix&>(x).diagonal;
  for (int i = 0; i < nRows; ++i)
    diagonal[i] += a * xd[i];
  return true;
}

// ---------------------------------------------------------------------------
// Factorization: each element is its own pivot

namespace {

// d_i = sqrt(d_i) where d_i > tol * ref[i], otherwise 0.0 and counted;
// accept(i) for each accepted row.
template <typename Accept>
int FactorDiagonal(std::vector<double>& d, int n, const std::vector<double>& ref, double tol,
                   Accept accept) {
  int redundant = 0;
  for (int i = 0; i < n; ++i) {
    if (d[i] > tol * ref[i]) {
      d[i] = std::sqrt(d[i]);
      accept(i);
    } else {
      d[i] = 0.0;
      ++redundant;
    }
  }
  return redundant;
}

bool BadReference(const std::vector<double>& diag, int n) {
  if (static_cast<int>(diag.size()) < n) return true;
  for (int i = 0; i < n; ++i) {
    if (diag[i] < 0.0) return true;
  }
  return false;
}

}  // namespace

int QXDiagMatrix::LTChol(const std::vector<double>& diag, double tol, bool check) {
  if (check && tol < 0.0) return -1;
  if (nRows < 1) return 0;
  if (check && BadReference(diag, nRows)) return -1;
  return FactorDiagonal(diagonal, nRows, diag, tol, [](int) {});
}

int QXDiagMatrix::LTChol(const std::vector<double>& diag, double tol, QXBitSet& nonRedundant,
                         bool check) {
  if (check && (tol < 0.0 || BadReference(diag, nRows))) return -1;
  ResetBits(nonRedundant, nRows);
  return FactorDiagonal(diagonal, nRows, diag, tol,
                        [&nonRedundant](int i) { nonRedundant.Set(i, true); });
}

int QXDiagMatrix::LTChol(double tol, double& minPivot, bool check) {
  minPivot = QXMV::Missing();
  std::vector<double> diag;
  GetNCheckDiagonal(diag, tol, 1.0);
  const int r = LTChol(diag, tol, check);
  if (r >= 0 && nRows > 0) {
    minPivot = diagonal[0];
    for (double d : diagonal) {
      if (d < minPivot) minPivot = d;
    }
  }
  return r;
}

int QXDiagMatrix::LTDetInverse(double* det, int job) {
  int zeros = 0;
  for (int i = 0; i < nRows; ++i) {
    if (diagonal[i] == 0.0) ++zeros;
  }
  if (job % 10 != 0 && det != nullptr) {
    if (zeros != 0) {
      det[0] = 0.0;
      det[1] = 0.0;
    } else {
      internal::DeterminantOfProduct(
          nRows, [this](int i) { return diagonal[i]; }, det);
    }
  }
  if (job / 10 != 0) LTInverse();
  return zeros;
}

bool QXDiagMatrix::LTInverse() {
  for (double& d : diagonal) {
    if (d != 0.0) d = 1.0 / d;
  }
  return true;
}

void QXDiagMatrix::LTLLTrans() {
  for (double& d : diagonal)
    d = d * d;
}

void QXDiagMatrix::LTLTransL() {
  LTLLTrans();
}

// The bound is absolute here, and a rejected row keeps its small element in
// x rather than 0.0.
int QXDiagMatrix::LTSolve(const std::vector<double>& b, double tol, std::vector<double>& x) {
  if (!(tol > 0.0) || static_cast<int>(b.size()) < nRows) return -1;
  x.resize(nRows > 0 ? nRows : 0);
  int rejected = 0;
  for (int i = 0; i < nRows; ++i) {
    const double d = diagonal[i];
    if (d < 0.0) return -1;
    if (d > tol) {
      x[i] = b[i] / d;
    } else {
      x[i] = d;
      ++rejected;
    }
  }
  return rejected;
}

namespace {

// The diagonal CholInverse: 1/d_i into inverse for each d_i above tol;
// accept(i, l) is called for every row with the factor's element l, 0.0 for
// a rejected row. d is a copy, since inverse may be the matrix itself.
template <typename Accept>
int InvertAboveTol(const std::vector<double> d, int n, double tol, IQXSymMatrix& inverse,
                   Accept accept) {
  const bool sized = inverse.GetNRows() == n ? (inverse.Clear(), true) : inverse.SetNRows(n, true);
  if (!sized) return 0;
  int rank = 0;
  for (int i = 0; i < n; ++i) {
    if (d[i] > tol) {
      inverse.SetElem(i, i, 1.0 / d[i]);
      ++rank;
      accept(i, std::sqrt(d[i]));
    } else {
      accept(i, 0.0);
    }
  }
  return rank;
}

}  // namespace

int QXDiagMatrix::CholInverse(const std::vector<double>& /*diag*/, double tol,
                              IQXSymMatrix& inverse) const {
  return InvertAboveTol(diagonal, nRows, tol, inverse, [](int, double) {});
}

int QXDiagMatrix::CholInverse(const std::vector<double>& /*diag*/, double tol,
                              IQXSymMatrix& inverse, QXBitSet& nonRedundant) const {
  ResetBits(nonRedundant, nRows);
  return InvertAboveTol(diagonal, nRows, tol, inverse, [&](int i, double l) {
    if (l != 0.0) nonRedundant.Set(i, true);
  });
}

int QXDiagMatrix::CholInverse(const std::vector<double>& /*diag*/, double tol,
                              IQXSymMatrix& inverse, double& minPivot) const {
  minPivot = QXMV::Missing();
  return InvertAboveTol(diagonal, nRows, tol, inverse, [&](int i, double l) {
    if (i == 0 || l < minPivot) minPivot = l;
  });
}

bool QXDiagMatrix::ComputeDeterminant(double /*tol*/, double* det) const {
  if (nRows < 1 || det == nullptr) return false;
  internal::DeterminantOfProduct(
      nRows, [this](int i) { return diagonal[i]; }, det);
  return true;
}

// ---------------------------------------------------------------------------
// Extraction

bool QXDiagMatrix::ExtractFirstNRows(IQXSymMatrix& out) const {
  const int tag = out.GetType();
  if (tag != 0 && tag != 1) return tag != 0;
  if (nRows <= 1) return out.SetNRows(0, true);
  const std::vector<double> kept(diagonal.begin(), diagonal.end() - 1);
  if (!out.SetNRows(nRows - 1, true)) return false;
  for (int i = 0; i < nRows - 1; ++i)
    out.SetElem(i, i, kept[i]);
  return true;
}

bool QXDiagMatrix::ExtractSubmatrix(const std::vector<int>& rows, IQXSymMatrix& out) const {
  const int tag = out.GetType();
  if (tag != 0 && tag != 1) return false;
  const int m = static_cast<int>(rows.size());
  if (m > nRows) return false;
  std::vector<double> kept(m);
  for (int a = 0; a < m; ++a) {
    if (!InRange(rows[a], nRows) || (a > 0 && rows[a] <= rows[a - 1])) return false;
    kept[a] = diagonal[rows[a]];
  }
  if (!out.SetNRows(m, true)) return false;
  for (int a = 0; a < m; ++a)
    out.SetElem(a, a, kept[a]);
  return true;
}

// ---------------------------------------------------------------------------
// Row dots and forms: each is a single product per element

double QXDiagMatrix::ComputeDotProduct2Rows(int row1, int row2) const {
  if (!InRange(row1, nRows) || !InRange(row2, nRows) || row1 != row2) return 0.0;
  return diagonal[row1] * diagonal[row1];
}

double QXDiagMatrix::ComputeRVD(int row, const double* v, int stride) const {
  if (!InRange(row, nRows)) return 0.0;
  return v[static_cast<long>(row) * stride] * diagonal[row];
}

double QXDiagMatrix::ComputeRVD(int row, const std::vector<double>& v, int stride) const {
  return ComputeRVD(row, v.data(), stride);
}

double QXDiagMatrix::ComputeRowDotProductS(int row, const IQXSymMatrix& s, int otherRow) const {
  if (!InRange(row, nRows) || !InRange(otherRow, nRows) || s.GetNRows() != nRows) return 0.0;
  return diagonal[row] * s.GetElem(otherRow, row);
}

double QXDiagMatrix::ComputeRowDotProductS(int row, const std::vector<double>& packed,
                                           int otherRow) const {
  if (!InRange(row, nRows) || !InRange(otherRow, nRows) ||
      packed.size() != internal::PackedSize(nRows)) {
    return 0.0;
  }
  return diagonal[row] * packed[internal::PackedIndex(otherRow, row)];
}

double QXDiagMatrix::ComputeVSW(const double* v, int vStride, const double* w, int wStride) const {
  double sum = 0.0;
  for (int i = 0; i < nRows; ++i)
    sum = sum + v[static_cast<long>(i) * vStride] * diagonal[i] * w[static_cast<long>(i) * wStride];
  return sum;
}

double QXDiagMatrix::ComputeVSW(const std::vector<double>& v, const std::vector<double>& w) const {
  if (static_cast<int>(v.size()) != nRows || static_cast<int>(w.size()) != nRows) return 0.0;
  return ComputeVSW(v.data(), 1, w.data(), 1);
}

double QXDiagMatrix::ComputeVSW(const std::vector<double>& v, int first, int last,
                                int other) const {
  return internal::SymVSWStretch(*this, v, first, last, other);
}

double QXDiagMatrix::ComputeVSV(const std::vector<double>& v) const {
  return ComputeVSW(v, v);
}

double QXDiagMatrix::ComputeVSV(const IQXRectMatrix& r, int row) const {
  if (r.GetNCols() != nRows || !InRange(row, r.GetNRows())) return 0.0;
  std::vector<double> v;
  internal::RectRow(r, row, v);
  return ComputeVSW(v, v);
}

double QXDiagMatrix::ComputeVSWParts(const double* v, int vCount, const double* w,
                                     int wCount) const {
  int m = vCount < wCount ? vCount : wCount;
  if (m > nRows) m = nRows;
  double sum = 0.0;
  for (int i = 0; i < m; ++i)
    sum = sum + v[i] * diagonal[i] * w[i];
  return sum;
}

double QXDiagMatrix::ComputeVSWParts(const std::vector<double>& v, int vCount,
                                     const std::vector<double>& w, int wCount) const {
  if (vCount > static_cast<int>(v.size())) vCount = static_cast<int>(v.size());
  if (wCount > static_cast<int>(w.size())) wCount = static_cast<int>(w.size());
  return ComputeVSWParts(v.data(), vCount, w.data(), wCount);
}

// ---------------------------------------------------------------------------
// Products with vectors: L, L^T and S are all D here

bool QXDiagMatrix::ComputeSV(int firstRow, const std::vector<double>& v,
                             std::vector<double>& out) const {
  if (static_cast<int>(v.size()) != nRows || firstRow < 0 || firstRow > nRows) return false;
  std::vector<double> result(nRows, 0.0);
  for (int i = firstRow; i < nRows; ++i)
    result[i] = v[i] * diagonal[i];
  out.swap(result);
  return true;
}

bool QXDiagMatrix::ComputeSV(const std::vector<double>& v, std::vector<double>& out) const {
  return ComputeSV(0, v, out);
}

bool QXDiagMatrix::ComputeLV(const std::vector<double>& v, std::vector<double>& out) const {
  return ComputeSV(0, v, out);
}

bool QXDiagMatrix::ComputeLTransV(const std::vector<double>& v, std::vector<double>& out) const {
  return ComputeSV(0, v, out);
}

bool QXDiagMatrix::ComputeLV(const std::vector<int>& index, const std::vector<double>& v,
                             std::vector<double>& out) const {
  if (index.size() != v.size() || nRows < 0) return false;
  for (int p : index) {
    if (!InRange(p, nRows)) return false;
  }
  std::vector<double> result(nRows, 0.0);
  for (std::size_t k = 0; k < index.size(); ++k)
    result[index[k]] += v[k] * diagonal[index[k]];
  out.swap(result);
  return true;
}

bool QXDiagMatrix::ComputeLTransV(const std::vector<int>& index, const std::vector<double>& v,
                                  std::vector<double>& out) const {
  return ComputeLV(index, v, out);
}

bool QXDiagMatrix::ComputeRTransSV(const IQXRectMatrix& r, const std::vector<double>& v,
                                   std::vector<double>& out) const {
  return internal::SymRTransSV(*this, r, v, out);
}

// ---------------------------------------------------------------------------
// Products with matrices: scalings of rows and columns by d

bool QXDiagMatrix::ComputeRS(const IQXRectMatrix& r, IQXRectMatrix& out) const {
  return internal::SymRS(*this, r, out);
}

bool QXDiagMatrix::ComputeRTransS(const IQXRectMatrix& r, IQXRectMatrix& out) const {
  return internal::SymRTransS(*this, r, out);
}

bool QXDiagMatrix::ComputeRSRTrans(const IQXRectMatrix& r, IQXSymMatrix& out) const {
  return internal::SymRSRTrans(*this, r, out);
}

bool QXDiagMatrix::ComputeRTransSR(const IQXRectMatrix& r, IQXSymMatrix& out) const {
  return internal::SymRTransSR(*this, r, out);
}

// D S: element (i, j) is d_i s_ji.
bool QXDiagMatrix::ComputeSS(const IQXSymMatrix& s, IQXRectMatrix& out) const {
  if (s.GetNRows() != nRows || out.GetMatrixType() != 0 || nRows < 0) return false;
  std::vector<double> scaled(static_cast<std::size_t>(nRows) * nRows);
  for (int i = 0; i < nRows; ++i) {
    for (int j = 0; j < nRows; ++j)
      scaled[static_cast<std::size_t>(i) * nRows + j] = diagonal[i] * s.GetElem(j, i);
  }
  if (!internal::PrepareRectOut(out, nRows, nRows)) return false;
  static_cast<QXRectMatrix&>(out).AsVector().swap(scaled);
  return true;
}

bool QXDiagMatrix::ComputeSTransS(IQXSymMatrix& out) const {
  return internal::SymSTransS(*this, out);
}

// D S D: element (i, j) is d_i s_ij d_j. The values are formed before out
// is touched, since out may be s or this matrix.
bool QXDiagMatrix::ComputeGSG(const IQXSymMatrix& s, IQXSymMatrix& out) const {
  const bool diagonalResult = s.GetType() == 1;
  const int tag = out.GetType();
  if (s.GetNRows() != nRows || (tag != 0 && !(tag == 1 && diagonalResult))) return false;
  std::vector<double> values;
  for (int i = 0; i < nRows; ++i) {
    for (int j = tag == 1 ? i : 0; j <= i; ++j)
      values.push_back(diagonal[i] * s.GetElem(i, j) * diagonal[j]);
  }
  if (!internal::PrepareSymOut(out, nRows, diagonalResult)) return false;
  std::size_t p = 0;
  for (int i = 0; i < nRows; ++i) {
    for (int j = tag == 1 ? i : 0; j <= i; ++j)
      out.SetElem(i, j, values[p++]);
  }
  return true;
}

bool QXDiagMatrix::ComputeGMG(const std::vector<double>& g, QXSymMatrix& out) const {
  return internal::SymGMG(*this, g, out);
}

bool QXDiagMatrix::ComputeMGN(const IQXSymMatrix& g, const IQXSymMatrix& n,
                              IQXSymMatrix& out) const {
  return internal::SymMGN(*this, g, n, out);
}

bool QXDiagMatrix::ComputeGMGNG(const IQXSymMatrix& m, const IQXSymMatrix& n, IQXSymMatrix& out,
                                std::vector<double>& work) const {
  return internal::SymGMGNG(*this, m, n, out, work);
}

bool QXDiagMatrix::ComputeLSLTrans(const IQXSymMatrix& s, IQXSymMatrix& out) const {
  return internal::SymLSLTrans(*this, s, out);
}

bool QXDiagMatrix::ComputeLTransSL(const IQXSymMatrix& s, IQXSymMatrix& out, int nBlocks) const {
  return internal::SymLTransSL(*this, s, out, nBlocks);
}

double QXDiagMatrix::TraceOfProduct(const IQXSymMatrix& s) const {
  if (s.GetNRows() != nRows) return 0.0;
  double sum = 0.0;
  for (int i = 0; i < nRows; ++i)
    sum = sum + diagonal[i] * s.GetElem(i, i);
  return sum;
}

double QXDiagMatrix::TraceOfProductOfThree(const IQXSymMatrix& s, const IQXSymMatrix& t) const {
  return internal::SymTraceOfProductOfThree(*this, s, t);
}

// ---------------------------------------------------------------------------
// Extras of the diagonal class

bool QXDiagMatrix::ComputeLTransR(const QXRectMatrix& r, QXRectMatrix& out, int nBlocks) const {
  if (nBlocks < 1 || nRows < 1 || r.GetNRows() != nRows * nBlocks) return false;
  QXRectMatrix result(r);
  if (!result.IsValidMatrix()) return false;
  const int cols = r.GetNCols();
  std::vector<double>& a = result.AsVector();
  for (int i = 0; i < r.GetNRows(); ++i) {
    const double d = diagonal[i % nRows];
    for (int j = 0; j < cols; ++j)
      a[static_cast<std::size_t>(i) * cols + j] = d * a[static_cast<std::size_t>(i) * cols + j];
  }
  out = result;
  return out.IsValidMatrix();
}

double QXDiagMatrix::ComputeRVD(int row, const IQXRectMatrix& r, int rRow, int offset) const {
  if (!InRange(row, nRows) || !InRange(rRow, r.GetNRows()) || !InRange(offset + row, r.GetNCols()))
    return 0.0;
  return diagonal[row] * r.GetElem(rRow, offset + row);
}

double QXDiagMatrix::ComputeRTransVD(int row, const IQXRectMatrix& r, int rCol, int offset) const {
  if (!InRange(row, nRows) || !InRange(rCol, r.GetNCols()) || !InRange(offset + row, r.GetNRows()))
    return 0.0;
  return diagonal[row] * r.GetElem(offset + row, rCol);
}

// ---------------------------------------------------------------------------
// Display

void QXDiagMatrix::Display() const {
  using namespace QXDisplay_850;
  DisplayText(1, "QXDiagMatrix display start");
  DisplayI("The number of rows", nRows);
  DisplayDV("Diagonal", diagonal);
  DisplayText(1, "QXDiagMatrix display end");
}

void QXDiagMatrix::DisplayF() const {
  using namespace QXDisplay_850;
  DisplayText(1, "QXDiagMatrix full matrix display start");
  DisplayI("Number of rows", nRows);
  std::vector<double> row;
  for (int i = 0; i < nRows; ++i) {
    GetRow(i, row);
    internal::DisplayFullRow(i, row.data(), nRows);
  }
  DisplayText(1, "QXDiagMatrix display end");
}

}  // namespace QXMath_850
