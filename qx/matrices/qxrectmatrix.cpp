#include "qx/matrices/qxrectmatrix.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "qx/foundation/qxcomponentdisplay.h"
#include "qx/foundation/qxmissingvalue.h"
#include "qx/matrices/internal/displayrow.h"
#include "qx/matrices/internal/packedlayout.h"
#include "qx/matrices/internal/sparselists.h"
#include "qx/matrices/qxdiagmatrix.h"
#include "qx/matrices/qxmathfun.h"
#include "qx/matrices/qxsparserectmatrix.h"
#include "qx/matrices/qxsymblockdiagmatrix.h"
#include "qx/matrices/qxsymmatrix.h"

namespace QXMath_850 {

using QXCommon_850::QXMV;

namespace {

// Dot product of n elements, added left to right.
inline double Dot(int n, const double* x, std::size_t incx, const double* y, std::size_t incy) {
  double sum = 0.0;
  for (int k = 0; k < n; ++k, x += incx, y += incy)
    sum = sum + *x * *y;
  return sum;
}

inline std::size_t Cells(int rows, int cols) {
  return rows > 0 && cols > 0 ? static_cast<std::size_t>(rows) * static_cast<std::size_t>(cols) : 0;
}

// True when `out` is the very object `self`, so a result has to be formed
// apart before it is written.
inline bool Same(const IQXRectMatrix& out, const IQXRectMatrix* self) {
  return &out == self;
}

// The indices in [0, limit), in the order given; the extractors skip the rest.
std::vector<int> IndicesBelow(const std::vector<int>& indices, int limit) {
  std::vector<int> kept;
  for (int i : indices) {
    if (i >= 0 && i < limit) kept.push_back(i);
  }
  return kept;
}

}  // namespace

IQXRectMatrix::~IQXRectMatrix() = default;

// ---------------------------------------------------------------------------
// Construction and sizing

QXRectMatrix::QXRectMatrix() : nRows(0), nCols(0) {}

QXRectMatrix::QXRectMatrix(int rows, int cols, bool clear)
    : nRows(rows < 0 ? 0 : rows), nCols(cols < 0 ? 0 : cols) {
  if (ResizeNRowsCols(data, nRows, nCols) && clear) {
    for (double& a : data)
      a = 0.0;
  }
}

QXRectMatrix::QXRectMatrix(const QXRectMatrix& other)
    : IQXRectMatrix(other), nRows(other.nRows), nCols(other.nCols) {
  if (ResizeNRowsCols(data, nRows, nCols))
    std::copy_n(other.data.begin(), std::min(other.data.size(), data.size()), data.begin());
}

QXRectMatrix& QXRectMatrix::operator=(const QXRectMatrix& other) {
  if (this == &other) return *this;
  nRows = other.nRows;
  nCols = other.nCols;
  if (ResizeNRowsCols(data, nRows, nCols))
    std::copy_n(other.data.begin(), std::min(other.data.size(), data.size()), data.begin());
  return *this;
}

QXRectMatrix::~QXRectMatrix() = default;

bool QXRectMatrix::ResizeNRowsCols(std::vector<double>& store, int& rows, int& cols) {
  if (rows > 0 && cols > 0) {
    const std::size_t needed = Cells(rows, cols);
    if (store.size() > needed) {
      store.resize(needed);
    } else if (store.size() < needed) {
      try {
        store.resize(needed, 0.0);
      } catch (...) {
        rows = -1;
        cols = -1;
      }
    }
  }
  if (rows <= 0 || cols <= 0) store.clear();
  return rows >= 0 && cols >= 0;
}

bool QXRectMatrix::SetNRowsCols(int rows, int cols, bool clear) {
  nRows = rows < 0 ? 0 : rows;
  nCols = cols < 0 ? 0 : cols;
  const bool ok = ResizeNRowsCols(data, nRows, nCols);
  if (ok && clear) Clear();
  return ok;
}

bool QXRectMatrix::Resize(int rows, int cols) {
  nRows = rows < 0 ? 0 : rows;
  nCols = cols < 0 ? 0 : cols;
  return ResizeNRowsCols(data, nRows, nCols);
}

// ---------------------------------------------------------------------------
// Element access

int QXRectMatrix::GetMatrixType() const {
  return 0;
}
bool QXRectMatrix::IsValidMatrix() const {
  return nRows >= 0 && nCols >= 0;
}
int QXRectMatrix::GetNRows() const {
  return nRows;
}
int QXRectMatrix::GetNCols() const {
  return nCols;
}

double QXRectMatrix::GetElem(int row, int col) const {
  return data[static_cast<std::size_t>(row) * nCols + col];
}

bool QXRectMatrix::SetElem(int row, int col, double value) {
  data[static_cast<std::size_t>(row) * nCols + col] = value;
  return true;
}

const double* QXRectMatrix::GetRowPtr(int row) const {
  if (row < 0 || row >= nRows || data.empty()) return nullptr;
  return data.data() + static_cast<std::size_t>(row) * nCols;
}

const double* QXRectMatrix::GetColPtr(int col) const {
  if (col < 0 || col >= nCols || data.empty()) return nullptr;
  return data.data() + col;
}

bool QXRectMatrix::GetRow(int row, std::vector<double>& out) const {
  if (row < 0 || row >= nRows) return false;
  const auto first = data.begin() + static_cast<std::ptrdiff_t>(row) * nCols;
  out.assign(first, first + nCols);
  return true;
}

bool QXRectMatrix::GetCol(int col, std::vector<double>& out) const {
  if (col < 0 || col >= nCols) return false;
  out.resize(nRows);
  for (int i = 0; i < nRows; ++i)
    out[i] = data[static_cast<std::size_t>(i) * nCols + col];
  return true;
}

bool QXRectMatrix::CopyColToVec(int col, std::vector<double>& out) const {
  return GetCol(col, out);
}

// ---------------------------------------------------------------------------
// Rows and columns

int QXRectMatrix::AddRow() {
  if (!IsValidMatrix()) return -1;
  data.resize(data.size() + nCols, 0.0);
  return ++nRows;
}

bool QXRectMatrix::AddRow(const QXSparseVector& row) {
  if (!row.IsValid() || !IsValidMatrix() || row.GetMinVecSize() > nCols) return false;
  AddRow();
  return SetRow(nRows - 1, row);
}

bool QXRectMatrix::SetRow(int row, const QXSparseVector& values) {
  if (row < 0 || row >= nRows || !values.IsValid() || values.GetMinVecSize() > nCols) return false;
  double* target = data.data() + static_cast<std::size_t>(row) * nCols;
  std::fill(target, target + nCols, 0.0);
  const std::vector<int>& index = values.GetIndices();
  const std::vector<double>& value = values.GetValues();
  for (std::size_t k = 0; k < index.size(); ++k)
    target[index[k]] = value[k];
  return true;
}

int QXRectMatrix::AddColumn() {
  if (!IsValidMatrix()) return -1;
  const int cols = nCols + 1;
  data.resize(Cells(nRows, cols), 0.0);
  // Move the rows to their new places from the last one down, so that no
  // element is overwritten before it is moved.
  for (int i = nRows - 1; i >= 0; --i) {
    const std::size_t from = static_cast<std::size_t>(i) * nCols;
    const std::size_t to = static_cast<std::size_t>(i) * cols;
    for (int j = nCols - 1; j >= 0; --j)
      data[to + j] = data[from + j];
    data[to + nCols] = 0.0;
  }
  nCols = cols;
  return nCols;
}

bool QXRectMatrix::DeleteOneRow(int row) {
  if (row < 0 || row >= nRows) return false;
  const auto first = data.begin() + static_cast<std::ptrdiff_t>(row) * nCols;
  data.erase(first, first + nCols);
  --nRows;
  return true;
}

bool QXRectMatrix::DeleteOneCol(int col) {
  if (col < 0 || col >= nCols) return false;
  std::size_t to = 0;
  for (std::size_t from = 0; from < data.size(); ++from) {
    if (static_cast<int>(from % nCols) != col) data[to++] = data[from];
  }
  data.resize(to);
  --nCols;
  if (nCols == 0) data.clear();
  return true;
}

void QXRectMatrix::Transpose() {
  if (!data.empty()) {
    const std::vector<double> copy(data);
    for (int i = 0; i < nRows; ++i) {
      for (int j = 0; j < nCols; ++j)
        data[static_cast<std::size_t>(j) * nRows + i] =
            copy[static_cast<std::size_t>(i) * nCols + j];
    }
  }
  std::swap(nRows, nCols);
}

void QXRectMatrix::Clear() {
  for (double& a : data)
    a = 0.0;
}

bool QXRectMatrix::AddToDiagonal(double value) {
  if (nRows != nCols) return false;
  for (int i = 0; i < nRows; ++i)
    data[static_cast<std::size_t>(i) * nCols + i] += value;
  return true;
}

bool QXRectMatrix::ColScale(int col, double factor) {
  if (col < 0 || col >= nCols) return false;
  for (int i = 0; i < nRows; ++i)
    data[static_cast<std::size_t>(i) * nCols + col] *= factor;
  return true;
}

bool QXRectMatrix::AddToColumn(int col, const QXRectMatrix& source, int sourceCol, double scale) {
  if (col < 0 || col >= nCols || sourceCol < 0 || sourceCol >= source.nCols ||
      source.nRows != nRows) {
    return false;
  }
  for (int i = 0; i < nRows; ++i) {
    data[static_cast<std::size_t>(i) * nCols + col] +=
        scale * source.data[static_cast<std::size_t>(i) * source.nCols + sourceCol];
  }
  return true;
}

bool QXRectMatrix::ZeroOutCol(int col) {
  if (col < 0 || col >= nCols) return false;
  for (int i = 0; i < nRows; ++i)
    data[static_cast<std::size_t>(i) * nCols + col] = 0.0;
  return true;
}

bool QXRectMatrix::ZeroOutRowPart(int row, int first, int last) {
  if (row < 0 || row >= nRows || first < 0 || first > last || last >= nCols) return false;
  double* r = data.data() + static_cast<std::size_t>(row) * nCols;
  std::fill(r + first, r + last + 1, 0.0);
  return true;
}

bool QXRectMatrix::IsRowZero(int row) const {
  if (row < 0 || row >= nRows || nCols < 1) return false;
  const double* r = data.data() + static_cast<std::size_t>(row) * nCols;
  for (int j = 0; j < nCols; ++j) {
    if (r[j] != 0.0) return false;
  }
  return true;
}

bool QXRectMatrix::IsColZero(int col) const {
  if (col < 0 || col >= nCols) return false;
  for (int i = 0; i < nRows; ++i) {
    if (data[static_cast<std::size_t>(i) * nCols + col] != 0.0) return false;
  }
  return true;
}

double QXRectMatrix::RowNorm(int row) const {
  if (row < 0 || row >= nRows) return QXMV::Missing();
  return QXMathFun::DNrm2(nCols, data, row * nCols, 1);
}

double QXRectMatrix::ColNorm(int col) const {
  if (col < 0 || col >= nCols) return QXMV::Missing();
  return QXMathFun::DNrm2(nRows, data, col, nCols);
}

bool QXRectMatrix::IncrVecByColumn(int col, std::vector<double>& v, int offset, int count,
                                   double scale, bool check) const {
  if (check) {
    if (col < 0 || col >= nCols || count <= 0 || count > nRows || offset < 0 ||
        static_cast<std::size_t>(offset) + count > v.size()) {
      return false;
    }
  }
  const int m = count < nRows ? count : nRows;
  for (int k = 0; k < m; ++k)
    v[offset + k] += scale * data[static_cast<std::size_t>(k) * nCols + col];
  return true;
}

// ---------------------------------------------------------------------------
// Dot products. A sparse row is read from its store and a sparse column
// through the interface; either way the sum takes its terms in the dense
// order, the zero ones left out.

double QXRectMatrix::DotProductRows(int row1, int row2) const {
  if (row1 < 0 || row1 >= nRows || row2 < 0 || row2 >= nRows) return QXMV::Missing();
  return Dot(nCols, data.data() + static_cast<std::size_t>(row1) * nCols, 1,
             data.data() + static_cast<std::size_t>(row2) * nCols, 1);
}

double QXRectMatrix::DotProductCol(int col1, int col2) const {
  if (col1 < 0 || col1 >= nCols || col2 < 0 || col2 >= nCols) return QXMV::Missing();
  return Dot(nRows, data.data() + col1, nCols, data.data() + col2, nCols);
}

double QXRectMatrix::DotProductColCol(int col, const QXRectMatrix& other, int otherCol) const {
  if (col < 0 || col >= nCols || otherCol < 0 || otherCol >= other.nCols || other.nRows != nRows) {
    return QXMV::Missing();
  }
  return Dot(nRows, data.data() + col, nCols, other.data.data() + otherCol, other.nCols);
}

double QXRectMatrix::DotProductRowCol(int row, const IQXRectMatrix& other, int col) const {
  const int tag = other.GetMatrixType();
  if ((tag != 0 && tag != 1) || row < 0 || row >= nRows || col < 0 || col >= other.GetNCols() ||
      other.GetNRows() != nCols) {
    return QXMV::Missing();
  }
  const double* r = data.data() + static_cast<std::size_t>(row) * nCols;
  if (tag == 0) {
    const QXRectMatrix& b = static_cast<const QXRectMatrix&>(other);
    return Dot(nCols, r, 1, b.data.data() + col, b.nCols);
  }
  std::vector<double> column;
  if (!other.GetCol(col, column) || static_cast<int>(column.size()) != nCols) {
    return QXMV::Missing();
  }
  return Dot(nCols, r, 1, column.data(), 1);
}

double QXRectMatrix::DotProductRowRow(int row, const IQXRectMatrix& other, int otherRow) const {
  const int tag = other.GetMatrixType();
  if ((tag != 0 && tag != 1) || row < 0 || row >= nRows || otherRow < 0 ||
      otherRow >= other.GetNRows() || other.GetNCols() != nCols) {
    return QXMV::Missing();
  }
  const double* r = data.data() + static_cast<std::size_t>(row) * nCols;
  if (tag == 0) {
    const QXRectMatrix& b = static_cast<const QXRectMatrix&>(other);
    return Dot(nCols, r, 1, b.data.data() + static_cast<std::size_t>(otherRow) * nCols, 1);
  }
  const int* cols = nullptr;
  const double* x = nullptr;
  const int count = static_cast<const QXSparseRectMatrix&>(other).GetRowEntries(otherRow, cols, x);
  double sum = 0.0;
  for (int k = 0; k < count; ++k)
    sum = sum + r[cols[k]] * x[k];
  return sum;
}

// ---------------------------------------------------------------------------
// Products

bool QXRectMatrix::ComputeMatrixProduct(const IQXRectMatrix& b, IQXRectMatrix& out) const {
  const int tag = b.GetMatrixType();
  if ((tag != 0 && tag != 1) || b.GetNRows() != nCols) return false;
  if (Same(out, this) || Same(out, &b)) {
    QXRectMatrix product;
    if (!ComputeMatrixProduct(b, product)) return false;
    if (!out.SetNRowsCols(product.nRows, product.nCols, true)) return false;
    for (int i = 0; i < product.nRows; ++i) {
      for (int j = 0; j < product.nCols; ++j)
        out.SetElem(i, j, product.GetElem(i, j));
    }
    return true;
  }
  const int cols = b.GetNCols();
  if (!out.SetNRowsCols(nRows, cols, true)) return false;
  if (tag == 1 && out.GetMatrixType() == 0) {
    // Row i of A B gathers a_ik times the sparse row k of b, for k in order.
    const QXSparseRectMatrix& sparse = static_cast<const QXSparseRectMatrix&>(b);
    std::vector<double> acc;
    double* target = static_cast<QXRectMatrix&>(out).data.data();
    for (int i = 0; i < nRows; ++i) {
      acc.assign(cols, 0.0);
      const double* r = data.data() + static_cast<std::size_t>(i) * nCols;
      for (int k = 0; k < nCols; ++k) {
        if (r[k] != 0.0) sparse.IncrVecByRow(k, acc, 0, r[k]);
      }
      std::copy(acc.begin(), acc.end(), target + static_cast<std::size_t>(i) * cols);
    }
    return true;
  }
  for (int i = 0; i < nRows; ++i) {
    for (int j = 0; j < cols; ++j)
      out.SetElem(i, j, DotProductRowCol(i, b, j));
  }
  return true;
}

bool QXRectMatrix::ComputeProductMatrixTrans(const IQXRectMatrix& b, QXRectMatrix& out) const {
  const int tag = b.GetMatrixType();
  if ((tag != 0 && tag != 1) || b.GetNCols() != nCols) return false;
  if (&out == this || Same(b, &out)) {
    QXRectMatrix product;
    if (!ComputeProductMatrixTrans(b, product)) return false;
    out = product;
    return out.IsValidMatrix();
  }
  const int rows = b.GetNRows();
  if (!out.SetNRowsCols(nRows, rows, true)) return false;
  for (int i = 0; i < nRows; ++i) {
    for (int j = 0; j < rows; ++j)
      out.SetElem(i, j, DotProductRowRow(i, b, j));
  }
  return true;
}

void QXRectMatrix::ComputeRV(const double* v, double* out) const {
  for (int i = 0; i < nRows; ++i)
    out[i] = Dot(nCols, data.data() + static_cast<std::size_t>(i) * nCols, 1, v, 1);
}

bool QXRectMatrix::ComputeRV(const std::vector<double>& v, std::vector<double>& out) const {
  if (static_cast<int>(v.size()) != nCols || nRows < 0) return false;
  if (&v == &out) {
    std::vector<double> result(nRows);
    ComputeRV(v.data(), result.data());
    out.swap(result);
    return true;
  }
  out.resize(nRows);
  ComputeRV(v.data(), out.data());
  return true;
}

// Row by row, so that each out[j] is summed over the rows in order.
bool QXRectMatrix::ComputeVR(const std::vector<double>& v, std::vector<double>& out) const {
  if (static_cast<int>(v.size()) != nRows || nCols < 0) return false;
  std::vector<double> result(nCols, 0.0);
  for (int i = 0; i < nRows; ++i) {
    const double* r = data.data() + static_cast<std::size_t>(i) * nCols;
    for (int j = 0; j < nCols; ++j)
      result[j] = result[j] + v[i] * r[j];
  }
  out.swap(result);
  return true;
}

bool QXRectMatrix::ComputeRV(const std::vector<int>& index, const std::vector<double>& v,
                             std::vector<double>& out) const {
  if (index.size() != v.size() || nRows < 0) return false;
  for (int p : index) {
    if (p < 0 || p >= nCols) return false;
  }
  std::vector<double> result(nRows, 0.0);
  for (int i = 0; i < nRows; ++i) {
    const double* r = data.data() + static_cast<std::size_t>(i) * nCols;
    double sum = 0.0;
    for (std::size_t s = 0; s < index.size(); ++s)
      sum = sum + r[index[s]] * v[s];
    result[i] = sum;
  }
  out.swap(result);
  return true;
}

bool QXRectMatrix::ComputeVR(const std::vector<int>& index, const std::vector<double>& v,
                             std::vector<double>& out) const {
  if (index.size() != v.size() || nCols < 0) return false;
  for (int p : index) {
    if (p < 0 || p >= nRows) return false;
  }
  std::vector<double> result(nCols, 0.0);
  for (std::size_t s = 0; s < index.size(); ++s) {
    const double* r = data.data() + static_cast<std::size_t>(index[s]) * nCols;
    for (int j = 0; j < nCols; ++j)
      result[j] = result[j] + v[s] * r[j];
  }
  out.swap(result);
  return true;
}

bool QXRectMatrix::ComputeRDiagV(const std::vector<double>& v, std::vector<double>& out) const {
  if (nRows < 1 || nCols < 1 || v.size() % static_cast<std::size_t>(nCols) != 0) return false;
  const std::size_t slices = v.size() / nCols;
  std::vector<double> result(slices * nRows);
  for (std::size_t s = 0; s < slices; ++s)
    ComputeRV(v.data() + s * nCols, result.data() + s * nRows);
  out.swap(result);
  return true;
}

double QXRectMatrix::ComputeVRW(const std::vector<int>& vIndex, const std::vector<double>& v,
                                const std::vector<int>& wIndex,
                                const std::vector<double>& w) const {
  if (vIndex.size() != v.size() || wIndex.size() != w.size()) return QXMV::Missing();
  return ComputeSpVRSpW(static_cast<int>(v.size()), vIndex, v, static_cast<int>(w.size()), wIndex,
                        w);
}

double QXRectMatrix::ComputeSpVRSpW(int vCount, const std::vector<int>& vIndex,
                                    const std::vector<double>& v, int wCount,
                                    const std::vector<int>& wIndex,
                                    const std::vector<double>& w) const {
  if (!internal::SparseListFits(vCount, vIndex, v, nRows) ||
      !internal::SparseListFits(wCount, wIndex, w, nCols)) {
    return QXMV::Missing();
  }
  double sum = 0.0;
  for (int s = 0; s < vCount; ++s) {
    const double* r = data.data() + static_cast<std::size_t>(vIndex[s]) * nCols;
    double aw = 0.0;
    for (int t = 0; t < wCount; ++t)
      aw = aw + r[wIndex[t]] * w[t];
    sum = sum + v[s] * aw;
  }
  return sum;
}

bool QXRectMatrix::ComputeVecProduct(const std::vector<double>& v, const std::vector<double>& w) {
  const std::vector<double> vc(v), wc(w);  // either may be this matrix's own store
  if (!SetNRowsCols(static_cast<int>(vc.size()), static_cast<int>(wc.size()), false)) return false;
  for (int i = 0; i < nRows; ++i) {
    for (int j = 0; j < nCols; ++j)
      data[static_cast<std::size_t>(i) * nCols + j] = vc[i] * wc[j];
  }
  return true;
}

// ---------------------------------------------------------------------------
// Copying, extraction and expansion

bool QXRectMatrix::CopyRows(const IQXRectMatrix& source, int first, int count) {
  const int tag = source.GetMatrixType();
  if (first < 0 || count < 1 || first > source.GetNRows() - count || (tag != 0 && tag != 1)) {
    return false;
  }
  if (tag == 0) {
    const QXRectMatrix& s = static_cast<const QXRectMatrix&>(source);
    const int cols = s.nCols;
    const std::size_t begin = static_cast<std::size_t>(first) * cols;
    if (&s == this) {
      // The rows move towards the front, so a forward copy never overwrites
      // a row before it is read.
      if (begin > 0) {
        std::copy(data.begin() + begin, data.begin() + begin + Cells(count, cols), data.begin());
      }
      return SetNRowsCols(count, cols, false);
    }
    if (!SetNRowsCols(count, cols, false)) return false;
    std::copy(s.data.begin() + begin, s.data.begin() + begin + Cells(count, cols), data.begin());
    return true;
  }
  if (!SetNRowsCols(count, source.GetNCols(), true)) return false;
  for (int k = 0; k < count; ++k) {
    if (!source.CopyRowToRow(first + k, k, *this)) return false;
  }
  return true;
}

bool QXRectMatrix::CopyColumns(const QXRectMatrix& source, int first, int count) {
  if (first < 0 || count < 1 || first > source.nCols - count) return false;
  if (&source == this) {
    const QXRectMatrix copy(source);
    return CopyColumns(copy, first, count);
  }
  if (!SetNRowsCols(source.nRows, count, false)) return false;
  for (int i = 0; i < nRows; ++i) {
    const auto from = source.data.begin() + static_cast<std::ptrdiff_t>(i) * source.nCols + first;
    std::copy(from, from + count, data.begin() + static_cast<std::ptrdiff_t>(i) * nCols);
  }
  return true;
}

bool QXRectMatrix::CopyRowToRow(int row, int targetRow, IQXRectMatrix& target) const {
  if (target.GetMatrixType() != 0 || row < 0 || row >= nRows || targetRow < 0 ||
      targetRow >= target.GetNRows() || target.GetNCols() != nCols) {
    return false;
  }
  QXRectMatrix& t = static_cast<QXRectMatrix&>(target);
  const auto from = data.begin() + static_cast<std::ptrdiff_t>(row) * nCols;
  std::copy(from, from + nCols, t.data.begin() + static_cast<std::ptrdiff_t>(targetRow) * nCols);
  return true;
}

bool QXRectMatrix::CopyColToCol(int col, int targetCol, QXRectMatrix& target) const {
  if (col < 0 || col >= nCols || targetCol < 0 || targetCol >= target.nCols ||
      target.nRows != nRows) {
    return false;
  }
  for (int i = 0; i < nRows; ++i)
    target.SetElem(i, targetCol, GetElem(i, col));
  return true;
}

bool QXRectMatrix::CopyColToRow(const QXRectMatrix& source, int col, int row) {
  if (col < 0 || col >= source.nCols || row < 0 || row >= nRows || source.nRows != nCols) {
    return false;
  }
  std::vector<double> column;
  source.GetCol(col, column);
  std::copy(column.begin(), column.end(), data.begin() + static_cast<std::ptrdiff_t>(row) * nCols);
  return true;
}

int QXRectMatrix::ExtractRows(const std::vector<int>& rows, IQXRectMatrix& out) const {
  if (out.GetMatrixType() != 0) return -1;
  if (!rows.empty() && rows.back() >= nRows) return -1;
  if (Same(out, this)) {
    const QXRectMatrix copy(*this);
    return copy.ExtractRows(rows, out);
  }
  const std::vector<int> usable = IndicesBelow(rows, nRows);
  QXRectMatrix& target = static_cast<QXRectMatrix&>(out);
  if (!target.SetNRowsCols(static_cast<int>(usable.size()), nCols, false)) return -1;
  for (std::size_t k = 0; k < usable.size(); ++k)
    CopyRowToRow(usable[k], static_cast<int>(k), target);
  return static_cast<int>(usable.size());
}

int QXRectMatrix::ExtractColumns(const std::vector<int>& columns, IQXRectMatrix& out) const {
  if (out.GetMatrixType() != 0) return -1;
  if (!columns.empty() && columns.back() >= nCols) return -1;
  if (Same(out, this)) {
    const QXRectMatrix copy(*this);
    return copy.ExtractColumns(columns, out);
  }
  const std::vector<int> usable = IndicesBelow(columns, nCols);
  QXRectMatrix& target = static_cast<QXRectMatrix&>(out);
  const int m = static_cast<int>(usable.size());
  if (!target.SetNRowsCols(nRows, m, false)) return -1;
  for (int i = 0; i < nRows; ++i) {
    for (int k = 0; k < m; ++k)
      target.data[static_cast<std::size_t>(i) * m + k] = GetElem(i, usable[k]);
  }
  return m;
}

bool QXRectMatrix::ShiftColumns(int shift, IQXRectMatrix& out) const {
  if (shift < 0 || nRows < 1 || nCols < 1 || out.GetMatrixType() != 0) return false;
  if (Same(out, this)) {
    const QXRectMatrix copy(*this);
    return copy.ShiftColumns(shift, out);
  }
  QXRectMatrix& target = static_cast<QXRectMatrix&>(out);
  if (!target.SetNRowsCols(nRows, nCols + shift, true)) return false;
  for (int i = 0; i < nRows; ++i) {
    const auto from = data.begin() + static_cast<std::ptrdiff_t>(i) * nCols;
    std::copy(from, from + nCols,
              target.data.begin() + static_cast<std::ptrdiff_t>(i) * target.nCols + shift);
  }
  return true;
}

bool QXRectMatrix::ShiftRows(int shift, IQXRectMatrix& out) const {
  if (shift < 0 || nRows < 1 || nCols < 1 || out.GetMatrixType() != 0) return false;
  if (Same(out, this)) {
    const QXRectMatrix copy(*this);
    return copy.ShiftRows(shift, out);
  }
  QXRectMatrix& target = static_cast<QXRectMatrix&>(out);
  if (!target.SetNRowsCols(nRows + shift, nCols, true)) return false;
  std::copy(data.begin(), data.end(),
            target.data.begin() + static_cast<std::ptrdiff_t>(shift) * nCols);
  return true;
}

bool QXRectMatrix::CreateBlockDiagonal(int copies, IQXRectMatrix& out) const {
  if (copies < 1 || nRows < 1 || nCols < 1 || out.GetMatrixType() != 0) return false;
  if (Same(out, this)) {
    const QXRectMatrix copy(*this);
    return copy.CreateBlockDiagonal(copies, out);
  }
  QXRectMatrix& target = static_cast<QXRectMatrix&>(out);
  if (!target.SetNRowsCols(copies * nRows, copies * nCols, true)) return false;
  for (int b = 0; b < copies; ++b) {
    for (int i = 0; i < nRows; ++i) {
      const auto from = data.begin() + static_cast<std::ptrdiff_t>(i) * nCols;
      const std::size_t to = static_cast<std::size_t>(b * nRows + i) * target.nCols + b * nCols;
      std::copy(from, from + nCols, target.data.begin() + to);
    }
  }
  return true;
}

bool QXRectMatrix::ExpandRectangular(const QXRectMatrix& r) {
  if (r.nCols != nCols || !IsValidMatrix()) return false;
  const std::vector<double> rows(r.data);  // r may be this matrix
  data.insert(data.end(), rows.begin(), rows.end());
  nRows += r.nRows;
  return true;
}

bool QXRectMatrix::ExpandSquare(const QXRectMatrix& r, QXRectMatrix& out) const {
  if (nRows != nCols || nRows < 1 || r.nCols != nCols) return false;
  if (&out == this || &out == &r) {
    const QXRectMatrix a(*this), b(r);
    return a.ExpandSquare(b, out);
  }
  const int n = nRows, m = r.nRows, order = n + m;
  if (!out.SetNRowsCols(order, order, true)) return false;
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j < n; ++j)
      out.data[static_cast<std::size_t>(i) * order + j] = GetElem(i, j);
  }
  for (int a = 0; a < m; ++a) {
    for (int j = 0; j < n; ++j) {
      out.data[static_cast<std::size_t>(n + a) * order + j] = r.GetElem(a, j);
      out.data[static_cast<std::size_t>(j) * order + n + a] = r.GetElem(a, j);
    }
  }
  return true;
}

bool QXRectMatrix::Expand(const QXBitSet& keep, bool rows, QXRectMatrix& out) const {
  if (&out == this) {
    const QXRectMatrix copy(*this);
    return copy.Expand(keep, rows, out);
  }
  const int size = keep.Size();
  if (rows) {
    if (!out.SetNRowsCols(size, nCols, true)) return false;
    int next = 0;
    for (int i = 0; i < size && next < nRows; ++i) {
      if (keep.IsIn(i)) CopyRowToRow(next++, i, out);
    }
  } else {
    if (!out.SetNRowsCols(nRows, size, true)) return false;
    int next = 0;
    for (int j = 0; j < size && next < nCols; ++j) {
      if (keep.IsIn(j)) CopyColToCol(next++, j, out);
    }
  }
  return true;
}

// ---------------------------------------------------------------------------
// Products with symmetric matrices

bool QXRectMatrix::ComputeR1TransSR2(const QXRectMatrix& r1, int r1First, const QXRectMatrix& r2,
                                     int r2First, const QXSymMatrix& s, int sFirst, int sCount) {
  if (r1First < 0 || r2First < 0 || sFirst < 0 || sCount < 0 || sFirst > s.GetNRows() - sCount ||
      r1First > r1.nRows - sCount || r2First > r2.nRows - sCount) {
    return false;
  }
  // T = S_sub R2_sub first, then R1_sub^T T, column by column of the result.
  const int c1 = r1.nCols, c2 = r2.nCols;
  std::vector<double> t(Cells(sCount, c2), 0.0);
  for (int k = 0; k < sCount; ++k) {
    for (int b = 0; b < c2; ++b) {
      double sum = 0.0;
      for (int l = 0; l < sCount; ++l)
        sum = sum + s.GetElem(sFirst + k, sFirst + l) * r2.GetElem(r2First + l, b);
      t[static_cast<std::size_t>(k) * c2 + b] = sum;
    }
  }
  QXRectMatrix result(c1, c2, true);
  if (!result.IsValidMatrix()) return false;
  for (int a = 0; a < c1; ++a) {
    for (int b = 0; b < c2; ++b) {
      double sum = 0.0;
      for (int k = 0; k < sCount; ++k)
        sum = sum + r1.GetElem(r1First + k, a) * t[static_cast<std::size_t>(k) * c2 + b];
      result.data[static_cast<std::size_t>(a) * c2 + b] = sum;
    }
  }
  *this = result;
  return IsValidMatrix();
}

bool QXRectMatrix::TraceOfProductSqS(const QXSymMatrix& s, double& trace) const {
  if (nRows != nCols || s.GetNRows() != nRows) return false;
  double sum = 0.0;
  for (int i = 0; i < nRows; ++i) {
    for (int k = 0; k < nCols; ++k)
      sum = sum + GetElem(i, k) * s.GetElem(k, i);
  }
  trace = sum;
  return true;
}

bool QXRectMatrix::TraceOfProductSubMatSym(int first, const IQXSymMatrix& s, double& trace) const {
  if (s.GetType() != 0 || nRows != nCols || first < 0 || nRows - first != s.GetNRows()) {
    return false;
  }
  const int m = nRows - first;
  double sum = 0.0;
  for (int i = 0; i < m; ++i) {
    for (int k = 0; k < m; ++k)
      sum = sum + GetElem(first + i, first + k) * s.GetElem(k, i);
  }
  trace = sum;
  return true;
}

bool QXRectMatrix::SubtractSymMatrix(const QXSymMatrix& s, double factor) {
  if (nRows != nCols || s.GetNRows() != nRows) return false;
  for (int i = 0; i < nRows; ++i) {
    for (int j = 0; j < nCols; ++j)
      data[static_cast<std::size_t>(i) * nCols + j] -= factor * s.GetElem(i, j);
  }
  return true;
}

bool QXRectMatrix::ComputeDiagR(const QXDiagMatrix& d) {
  if (d.GetNRows() != nRows) return false;
  for (int i = 0; i < nRows; ++i) {
    const double di = d.GetElem(i);
    double* row = data.data() + static_cast<std::size_t>(i) * nCols;
    for (int j = 0; j < nCols; ++j)
      row[j] = di * row[j];
  }
  return true;
}

// Diagonal blocks scale the rows they cover; a dense block's rows go against
// each column of the rectangle, read down s's packed column when it lies in
// the lower triangle and gathered element by element otherwise.
bool QXRectMatrix::ComputeBlockDiagSR(const QXSymBlockDiagMatrix& b, int firstRow,
                                      const QXSymMatrix& s, int rowOffset, int firstCol, int limit,
                                      int nColumns) {
  const int m = b.GetNRows();
  const int order = s.GetNRows();
  if (rowOffset < 0 || firstRow < 0 || firstCol < 0 || limit < 0 || nColumns < 0 ||
      limit + rowOffset > order || limit < m + firstRow || firstCol > order - nColumns) {
    return false;
  }
  const int top = rowOffset + firstRow;
  QXRectMatrix result(m, nColumns, true);
  if (!result.IsValidMatrix()) return false;
  std::vector<double> column;
  for (int k = 0; k < b.GetNBlocks(); ++k) {
    const int start = b.GetBlockStartIndex(k);
    const int size = b.GetBlockSize(k);
    const std::vector<double>* d = nullptr;
    const QXSymMatrix* block = nullptr;
    if (b.GetDiagonalBlock(k, d)) {
      for (int i = 0; i < size; ++i) {
        for (int j = 0; j < nColumns; ++j)
          result.SetElem(start + i, j, (*d)[i] * s.GetElem(top + start + i, firstCol + j));
      }
      continue;
    }
    if (!b.GetDenseBlock(k, block)) continue;
    const int row0 = top + start;
    for (int j = 0; j < nColumns; ++j) {
      const int col = firstCol + j;
      for (int i = 0; i < size; ++i) {
        double sum = 0.0;
        if (row0 >= col) {
          const int at = static_cast<int>(internal::PackedIndex(row0, col));
          block->ComputeDotColVecIIncrPart(i, s.AsVectorConst(), at, row0 + 1, 0, size, sum);
        } else {
          column.resize(size);
          for (int t = 0; t < size; ++t)
            column[t] = s.GetElem(row0 + t, col);
          sum = block->ComputeRVD(i, column, 1);
        }
        result.SetElem(start + i, j, sum);
      }
    }
  }
  *this = result;
  return IsValidMatrix();
}

// ---------------------------------------------------------------------------
// Linear dependencies

// Each row L (a contrast) is compared with H L^T restricted to the kept
// columns, where c counts the kept columns met so far; the difference, scaled
// by the row's norm, must stay within tol.
bool QXRectMatrix::IsEstimable(const QXRectMatrix& h, const QXBitSet& kept, double tol) const {
  if (nRows < 1 || nCols < 1 || !(tol > 0.0) || kept.Size() < nCols || h.nRows != nCols) {
    return false;
  }
  if (kept.InRange(0, nCols - 1) > h.nCols) return false;
  for (int row = 0; row < nRows; ++row) {
    const double r = RowNorm(row);
    if (!(r > 0.0)) continue;
    const double* l = data.data() + static_cast<std::size_t>(row) * nCols;
    double total = 0.0;
    for (int k = 0; k < h.nRows; ++k) {
      double s = 0.0;
      int c = 0;
      for (int j = 0; j < nCols; ++j) {
        if (kept.IsIn(j)) s = s + h.GetElem(k, c++) * l[j];
      }
      const double d = s / r - l[k] / r;
      total = total + d * d;
    }
    if (total > tol * tol) return false;
  }
  return true;
}

int QXRectMatrix::CheckAddColRedundancies(const QXBitSet& from, QXBitSet& out) const {
  const int n = nCols > 0 ? nCols : 0;
  QXBitSet survivors;
  survivors.Resize(n, true);
  for (int row = 0; row < nRows; ++row) {
    int col = -1;
    if (IsRowZeroButOne(row, from, col)) survivors.Set(col, false);
  }
  out.Resize(n, true);
  const int shared = std::min(from.Size(), n);
  for (int j = 0; j < shared; ++j)
    out.Set(j, from.IsIn(j) && survivors.IsIn(j));
  int count = 0;
  for (int j = 0; j < n; ++j) {
    if (out.IsIn(j) && !IsColZero(j)) ++count;
  }
  return count;
}

bool QXRectMatrix::IsRowZeroButOne(int row, const QXBitSet& among, int& col) const {
  col = -1;
  if (row < 0 || row >= nRows) return false;
  const double* r = data.data() + static_cast<std::size_t>(row) * nCols;
  int found = 0, last = -1;
  for (int j = 0; j < nCols; ++j) {
    if (r[j] != 0.0 && (j >= among.Size() || among.IsIn(j))) {
      ++found;
      last = j;
    }
  }
  if (found != 1) return false;
  col = last;
  return true;
}

int QXRectMatrix::FindFirstNonZeroInRow(int row, double tol) const {
  if (row < 0 || row >= nRows || !(tol >= 0.0)) return -1;
  const double* r = data.data() + static_cast<std::size_t>(row) * nCols;
  for (int j = 0; j < nCols; ++j) {
    if (std::fabs(r[j]) > tol) return j;
  }
  return -1;
}

bool QXRectMatrix::ZeroOutPivotRow(int row, double tol, int& pivotCol) {
  pivotCol = -1;
  if (row < 0 || row >= nRows || !(tol > 0.0)) return false;
  pivotCol = FindFirstNonZeroInRow(row, tol);
  if (pivotCol < 0) return false;
  for (int j = 0; j < nCols; ++j) {
    if (j != pivotCol) AddToColumn(j, *this, pivotCol, GetElem(row, j));
  }
  ZeroOutCol(pivotCol);
  return true;
}

bool QXRectMatrix::IsERowMultipleOfAnother(int row1, int row2, double extra1, double extra2,
                                           double& ratio) const {
  if (nCols < 1 || row1 < 0 || row1 >= nRows || row2 < 0 || row2 >= nRows) return false;
  const double* a = data.data() + static_cast<std::size_t>(row1) * nCols;
  const double* b = data.data() + static_cast<std::size_t>(row2) * nCols;
  bool zero1 = extra1 == 0.0, zero2 = extra2 == 0.0;
  for (int j = 0; j < nCols; ++j) {
    zero1 = zero1 && a[j] == 0.0;
    zero2 = zero2 && b[j] == 0.0;
  }
  if (zero1 || zero2) return false;

  double r = 0.0;
  bool found = false;
  for (int j = 0; j < nCols && !found; ++j) {
    if (a[j] != 0.0 && b[j] != 0.0) {
      r = a[j] / b[j];
      found = true;
    } else if ((a[j] == 0.0) != (b[j] == 0.0)) {
      return false;
    }
  }
  if (!found) {
    if (extra1 == 0.0 || extra2 == 0.0) return false;
    r = extra1 / extra2;
  }
  double m = std::fabs(extra1);
  for (int j = 0; j < nCols; ++j)
    m = std::fmax(m, std::fabs(a[j]));
  const double eps = 2.220446049250313e-16;
  for (int j = 0; j < nCols; ++j) {
    if (!(std::fabs(a[j] - r * b[j]) / m <= eps)) return false;
  }
  if (!(std::fabs(extra1 - r * extra2) / m <= eps)) return false;
  ratio = r;
  return true;
}

void QXRectMatrix::CheckForOnes(double tol) {
  if (!(tol > 0.0)) return;
  for (double& a : data) {
    if (std::fabs(a - 1.0) < tol) {
      a = 1.0;
    } else if (std::fabs(a + 1.0) < tol) {
      a = -1.0;
    }
  }
}

bool QXRectMatrix::ColClean(int col, double tol) {
  if (col < 0 || col >= nCols) return false;
  const double ref = tol * 10000.0;
  const double r = ColNorm(col);
  if (QXMathFun::QLReps(r, ref)) return ZeroOutCol(col);
  const double inverse = 1.0 / r;
  for (int i = 0; i < nRows; ++i) {
    double& a = data[static_cast<std::size_t>(i) * nCols + col];
    a *= inverse;
    if (QXMathFun::QLReps(a, ref)) {
      a = 0.0;
    } else {
      a *= r;
    }
  }
  return true;
}

// Householder QR (Golub and Van Loan, 5.2.1) with each reflection formed as a
// full matrix row by row; kept simple because it serves small matrices only.
// With long >= short the counts of A (transposed if it is wide), q collects
// the reflections H_{s-1} ... H_0 and is transposed at the end.
bool QXRectMatrix::QRDecompositionH(QXSymMatrix& r, QXRectMatrix& q) const {
  if (nRows < 1 || nCols < 1) return false;
  const bool wide = nRows < nCols;
  const int lng = wide ? nCols : nRows;
  const int srt = wide ? nRows : nCols;
  QXRectMatrix a(*this);  // taken first: q may be this matrix
  if (wide) a.Transpose();
  if (r.GetNRows() != srt && !r.SetNRows(srt, false)) return false;
  if ((q.nRows != lng || q.nCols != lng) && !q.SetNRowsCols(lng, lng, false)) return false;
  r.Clear();
  q.Clear();

  QXRectMatrix b(lng, srt, true), h(lng, lng, true);
  if (!a.IsValidMatrix() || !b.IsValidMatrix() || !h.IsValidMatrix()) return false;
  for (int i = 0; i < lng; ++i)
    q.SetElem(i, i, 1.0);

  std::vector<double> c, u(lng), reflect(lng);
  for (int k = 0; k < srt; ++k) {
    const int len = lng - k;
    a.GetCol(k, c);
    double nrm = QXMathFun::DNrm2(len, c, k, 1);
    if (c[k] > 0.0) nrm = -nrm;
    c[k] -= nrm;
    const double nv = QXMathFun::DNrm2(len, c, k, 1);
    if (nv == 0.0) return false;
    for (int i = k; i < lng; ++i)
      u[i] = c[i] / nv;

    for (int i = k; i < lng; ++i) {
      for (int j = k; j < lng; ++j)
        reflect[j] = (u[i] * -2.0) * u[j];
      reflect[i] += 1.0;
      for (int j = i == k ? k : k + 1; j < srt; ++j) {
        const double value = QXMathFun::DDot(len, reflect, k, 1, a.data, k * srt + j, srt);
        b.SetElem(i, j, value);
        if (i == k) r.SetElem(k, j, value);
      }
      for (int j = 0; j < lng; ++j)
        h.SetElem(i, j, QXMathFun::DDot(len, reflect, k, 1, q.data, k * lng + j, lng));
    }
    a = b;
    q = h;
  }
  q.Transpose();
  return true;
}

// ---------------------------------------------------------------------------
// Display

void QXRectMatrix::Display() const {
  using namespace QXDisplay_850;
  DisplayText(1, "QXRectMatrix display start");
  DisplayI("Number of rows", nRows);
  DisplayI("Number of columns", nCols);
  DisplayDV("Elements by rows", data);
  DisplayText(1, "QXRectMatrix display end");
}

void QXRectMatrix::DisplayF() const {
  using namespace QXDisplay_850;
  DisplayText(1, "QXRectMatrix full matrix display start");
  DisplayI("Number of rows", nRows);
  DisplayI("Number of columns", nCols);
  for (int i = 0; i < nRows; ++i)
    internal::DisplayFullRow(i, GetRowPtr(i), nCols);
  DisplayText(1, "QXRectMatrix display end");
}

}  // namespace QXMath_850
