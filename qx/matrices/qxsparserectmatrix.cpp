#include "qx/matrices/qxsparserectmatrix.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "qx/foundation/qxcomponentdisplay.h"
#include "qx/foundation/qxmissingvalue.h"
#include "qx/matrices/internal/displayrow.h"
#include "qx/matrices/internal/scalednorm.h"

namespace QXMath_850 {

using QXCommon_850::QXMV;

namespace {

inline bool InRange(int i, int n) {
  return i >= 0 && i < n;
}

inline bool IsRectTag(int tag) {
  return tag == 0 || tag == 1;
}

// The indices in [0, limit), in the order given; the extractors skip the rest.
std::vector<int> IndicesBelow(const std::vector<int>& indices, int limit) {
  std::vector<int> kept;
  for (int i : indices) {
    if (InRange(i, limit)) kept.push_back(i);
  }
  return kept;
}

}  // namespace

// ---------------------------------------------------------------------------
// Construction, sizing and conversion

QXSparseRectMatrix::QXSparseRectMatrix() : nRows(0), nCols(0), rowStart(1, 0) {}

QXSparseRectMatrix::QXSparseRectMatrix(int rows, int cols)
    : nRows(rows < 0 ? 0 : rows), nCols(cols < 0 ? 0 : cols) {
  try {
    rowStart.assign(static_cast<std::size_t>(nRows) + 1, 0);
  } catch (...) {
    MakeInvalid();
  }
}

QXSparseRectMatrix::QXSparseRectMatrix(const QXRectMatrix& dense) : nRows(0), nCols(0) {
  SetFromDense(dense);
}

QXSparseRectMatrix::QXSparseRectMatrix(const QXSparseRectMatrix& other)
    : IQXRectMatrix(other), nRows(0), nCols(0) {
  *this = other;
}

QXSparseRectMatrix& QXSparseRectMatrix::operator=(const QXSparseRectMatrix& other) {
  if (this == &other) return *this;
  nRows = other.nRows;
  nCols = other.nCols;
  try {
    rowStart = other.rowStart;
    colIndex = other.colIndex;
    values = other.values;
  } catch (...) {
    MakeInvalid();
  }
  return *this;
}

QXSparseRectMatrix::~QXSparseRectMatrix() = default;

void QXSparseRectMatrix::MakeInvalid() {
  nRows = -1;
  nCols = -1;
  rowStart.clear();
  colIndex.clear();
  values.clear();
}

bool QXSparseRectMatrix::SetFromDense(const QXRectMatrix& dense) {
  if (!dense.IsValidMatrix()) {
    MakeInvalid();
    return false;
  }
  const int rows = dense.GetNRows(), cols = dense.GetNCols();
  const std::vector<double>& a = dense.AsVectorConst();
  try {
    QXSparseRectMatrix result(0, cols);
    const std::size_t nonZeros =
        a.size() - static_cast<std::size_t>(std::count(a.begin(), a.end(), 0.0));
    result.rowStart.reserve(static_cast<std::size_t>(rows) + 1);
    result.colIndex.reserve(nonZeros);
    result.values.reserve(nonZeros);
    for (int i = 0; i < rows; ++i)
      result.AppendDenseRow(dense.GetRowPtr(i), cols);
    Deliver(result, *this);
  } catch (...) {
    MakeInvalid();
    return false;
  }
  return true;
}

bool QXSparseRectMatrix::ToDense(QXRectMatrix& out) const {
  if (!IsValidMatrix() || !out.SetNRowsCols(nRows, nCols, true)) return false;
  double* a = out.AsVector().data();
  for (int i = 0; i < nRows; ++i) {
    for (std::size_t p = rowStart[i]; p < rowStart[i + 1]; ++p)
      a[static_cast<std::size_t>(i) * nCols + colIndex[p]] = values[p];
  }
  return true;
}

bool QXSparseRectMatrix::Deliver(QXSparseRectMatrix& result, IQXRectMatrix& out) {
  switch (out.GetMatrixType()) {
    case 0:
      return result.ToDense(static_cast<QXRectMatrix&>(out));
    case 1: {
      QXSparseRectMatrix& target = static_cast<QXSparseRectMatrix&>(out);
      std::swap(target.nRows, result.nRows);
      std::swap(target.nCols, result.nCols);
      target.rowStart.swap(result.rowStart);
      target.colIndex.swap(result.colIndex);
      target.values.swap(result.values);
      return true;
    }
    default:
      return false;
  }
}

bool QXSparseRectMatrix::Resize(int rows, int cols) {
  rows = rows < 0 ? 0 : rows;
  cols = cols < 0 ? 0 : cols;
  try {
    std::vector<std::size_t> starts(static_cast<std::size_t>(rows) + 1, 0);
    std::vector<int> newCols;
    std::vector<double> newValues;
    // Positions rise through the store, so the elements arrive in the new
    // row-major order and the first one beyond the new shape ends the walk.
    const std::size_t limit = static_cast<std::size_t>(rows) * static_cast<std::size_t>(cols);
    for (int i = 0; i < nRows; ++i) {
      std::size_t p = rowStart[i];
      for (; p < rowStart[i + 1]; ++p) {
        const std::size_t at = static_cast<std::size_t>(i) * nCols + colIndex[p];
        if (at >= limit) break;
        newCols.push_back(static_cast<int>(at % cols));
        newValues.push_back(values[p]);
        ++starts[at / cols + 1];
      }
      if (p < rowStart[i + 1]) break;
    }
    for (int i = 0; i < rows; ++i)
      starts[i + 1] += starts[i];
    rowStart.swap(starts);
    colIndex.swap(newCols);
    values.swap(newValues);
  } catch (...) {
    MakeInvalid();
    return false;
  }
  nRows = rows;
  nCols = cols;
  return true;
}

bool QXSparseRectMatrix::SetNRowsCols(int rows, int cols, bool clear) {
  const bool ok = Resize(rows, cols);
  if (ok && clear) Clear();
  return ok;
}

void QXSparseRectMatrix::Clear() {
  colIndex.clear();
  values.clear();
  std::fill(rowStart.begin(), rowStart.end(), 0);
}

void QXSparseRectMatrix::Transpose() {
  if (IsValidMatrix()) {
    std::vector<std::size_t> starts(static_cast<std::size_t>(nCols) + 1, 0);
    for (int c : colIndex)
      ++starts[c + 1];
    for (int j = 0; j < nCols; ++j)
      starts[j + 1] += starts[j];
    std::vector<std::size_t> next(starts.begin(), starts.end() - 1);
    std::vector<int> cols(colIndex.size());
    std::vector<double> vals(values.size());
    for (int i = 0; i < nRows; ++i) {
      for (std::size_t p = rowStart[i]; p < rowStart[i + 1]; ++p) {
        const std::size_t q = next[colIndex[p]]++;
        cols[q] = i;
        vals[q] = values[p];
      }
    }
    rowStart.swap(starts);
    colIndex.swap(cols);
    values.swap(vals);
  }
  std::swap(nRows, nCols);
}

// ---------------------------------------------------------------------------
// Element access

int QXSparseRectMatrix::GetMatrixType() const {
  return 1;
}
bool QXSparseRectMatrix::IsValidMatrix() const {
  return nRows >= 0 && nCols >= 0;
}
int QXSparseRectMatrix::GetNRows() const {
  return nRows;
}
int QXSparseRectMatrix::GetNCols() const {
  return nCols;
}

long QXSparseRectMatrix::Find(int row, int col) const {
  const auto first = colIndex.begin() + static_cast<std::ptrdiff_t>(rowStart[row]);
  const auto last = colIndex.begin() + static_cast<std::ptrdiff_t>(rowStart[row + 1]);
  const auto at = std::lower_bound(first, last, col);
  return at != last && *at == col ? static_cast<long>(at - colIndex.begin()) : -1;
}

int QXSparseRectMatrix::GetRowEntries(int row, const int*& cols, const double*& vals) const {
  cols = nullptr;
  vals = nullptr;
  if (!InRange(row, nRows) || rowStart[row] == rowStart[row + 1]) return 0;
  cols = colIndex.data() + rowStart[row];
  vals = values.data() + rowStart[row];
  return static_cast<int>(rowStart[row + 1] - rowStart[row]);
}

double QXSparseRectMatrix::GetElem(int row, int col) const {
  if (!InRange(row, nRows) || !InRange(col, nCols)) return 0.0;
  const long p = Find(row, col);
  return p < 0 ? 0.0 : values[p];
}

bool QXSparseRectMatrix::SetElem(int row, int col, double value) {
  if (!InRange(row, nRows) || !InRange(col, nCols)) return false;
  const auto first = colIndex.begin() + static_cast<std::ptrdiff_t>(rowStart[row]);
  const auto last = colIndex.begin() + static_cast<std::ptrdiff_t>(rowStart[row + 1]);
  const auto at = std::lower_bound(first, last, col);
  const std::ptrdiff_t p = at - colIndex.begin();
  if (at != last && *at == col) {
    if (value != 0.0) {
      values[p] = value;
      return true;
    }
    colIndex.erase(at);
    values.erase(values.begin() + p);
    for (int i = row + 1; i <= nRows; ++i)
      --rowStart[i];
    return true;
  }
  if (value == 0.0) return true;
  colIndex.insert(at, col);
  values.insert(values.begin() + p, value);
  for (int i = row + 1; i <= nRows; ++i)
    ++rowStart[i];
  return true;
}

bool QXSparseRectMatrix::GetRow(int row, std::vector<double>& out) const {
  if (!InRange(row, nRows)) return false;
  out.assign(nCols, 0.0);
  for (std::size_t p = rowStart[row]; p < rowStart[row + 1]; ++p)
    out[colIndex[p]] = values[p];
  return true;
}

bool QXSparseRectMatrix::GetCol(int col, std::vector<double>& out) const {
  if (!InRange(col, nCols)) return false;
  std::vector<double> result(nRows, 0.0);
  for (int i = 0; i < nRows; ++i) {
    const long p = Find(i, col);
    if (p >= 0) result[i] = values[p];
  }
  out.swap(result);
  return true;
}

bool QXSparseRectMatrix::CopyColToVec(int col, std::vector<double>& out) const {
  return GetCol(col, out);
}

// ---------------------------------------------------------------------------
// Rows

void QXSparseRectMatrix::AppendDenseRow(const double* row, int n) {
  for (int j = 0; j < n; ++j) {
    if (row[j] != 0.0) {
      colIndex.push_back(j);
      values.push_back(row[j]);
    }
  }
  rowStart.push_back(values.size());
  ++nRows;
}

void QXSparseRectMatrix::ReplaceRow(int row, int count, const int* cols, const double* vals) {
  std::vector<int> newCols;
  std::vector<double> newValues;
  for (int k = 0; k < count; ++k) {
    if (vals[k] != 0.0) {
      newCols.push_back(cols[k]);
      newValues.push_back(vals[k]);
    }
  }
  const auto first = static_cast<std::ptrdiff_t>(rowStart[row]);
  const auto last = static_cast<std::ptrdiff_t>(rowStart[row + 1]);
  colIndex.erase(colIndex.begin() + first, colIndex.begin() + last);
  values.erase(values.begin() + first, values.begin() + last);
  colIndex.insert(colIndex.begin() + first, newCols.begin(), newCols.end());
  values.insert(values.begin() + first, newValues.begin(), newValues.end());
  const std::ptrdiff_t shift = static_cast<std::ptrdiff_t>(newCols.size()) - (last - first);
  for (int i = row + 1; i <= nRows; ++i)
    rowStart[i] = static_cast<std::size_t>(static_cast<std::ptrdiff_t>(rowStart[i]) + shift);
}

int QXSparseRectMatrix::AddRow() {
  if (!IsValidMatrix()) return -1;
  rowStart.push_back(values.size());
  return ++nRows;
}

bool QXSparseRectMatrix::AddRow(const QXSparseVector& row) {
  if (!row.IsValid() || !IsValidMatrix() || row.GetMinVecSize() > nCols) return false;
  AddRow();
  return SetRow(nRows - 1, row);
}

bool QXSparseRectMatrix::SetRow(int row, const QXSparseVector& entries) {
  if (!InRange(row, nRows) || !entries.IsValid() || entries.GetMinVecSize() > nCols) return false;
  ReplaceRow(row, entries.GetNElements(), entries.GetIndices().data(), entries.GetValues().data());
  return true;
}

bool QXSparseRectMatrix::ZeroOutRowPart(int row, int first, int last) {
  if (!InRange(row, nRows) || first < 0 || first > last || last >= nCols) return false;
  const auto begin = colIndex.begin() + static_cast<std::ptrdiff_t>(rowStart[row]);
  const auto end = colIndex.begin() + static_cast<std::ptrdiff_t>(rowStart[row + 1]);
  const auto lo = std::lower_bound(begin, end, first);
  const auto hi = std::upper_bound(lo, end, last);
  const std::ptrdiff_t from = lo - colIndex.begin(), removed = hi - lo;
  colIndex.erase(lo, hi);
  values.erase(values.begin() + from, values.begin() + from + removed);
  for (int i = row + 1; i <= nRows; ++i)
    rowStart[i] -= static_cast<std::size_t>(removed);
  return true;
}

bool QXSparseRectMatrix::IsRowZero(int row) const {
  if (!InRange(row, nRows) || nCols < 1) return false;
  return rowStart[row] == rowStart[row + 1];
}

double QXSparseRectMatrix::RowNorm(int row) const {
  if (!InRange(row, nRows)) return QXMV::Missing();
  return internal::ScaledNorm2(static_cast<int>(rowStart[row + 1] - rowStart[row]),
                               values.data() + rowStart[row], 1);
}

double QXSparseRectMatrix::ColNorm(int col) const {
  if (!InRange(col, nCols)) return QXMV::Missing();
  std::vector<double> column;
  for (int i = 0; i < nRows; ++i) {
    const long p = Find(i, col);
    if (p >= 0) column.push_back(values[p]);
  }
  return internal::ScaledNorm2(static_cast<int>(column.size()), column.data(), 1);
}

bool QXSparseRectMatrix::IncrVecByColumn(int col, std::vector<double>& v, int offset, int count,
                                         double scale, bool check) const {
  if (check) {
    if (!InRange(col, nCols) || count <= 0 || count > nRows || offset < 0 ||
        static_cast<std::size_t>(offset) + count > v.size()) {
      return false;
    }
  }
  if (!InRange(col, nCols)) return true;
  const int m = count < nRows ? count : nRows;
  for (int k = 0; k < m; ++k) {
    const long p = Find(k, col);
    if (p >= 0) v[offset + k] += scale * values[p];
  }
  return true;
}

bool QXSparseRectMatrix::IncrVecByRow(int row, std::vector<double>& v, int offset,
                                      double scale) const {
  if (!InRange(row, nRows) || offset < 0 || static_cast<std::size_t>(offset) + nCols > v.size())
    return false;
  for (std::size_t p = rowStart[row]; p < rowStart[row + 1]; ++p)
    v[offset + colIndex[p]] += scale * values[p];
  return true;
}

// ---------------------------------------------------------------------------
// Dot products, each over the non-zero terms in the dense order

double QXSparseRectMatrix::DotProductRows(int row1, int row2) const {
  if (!InRange(row1, nRows) || !InRange(row2, nRows)) return QXMV::Missing();
  const std::size_t end1 = rowStart[row1 + 1], end2 = rowStart[row2 + 1];
  double sum = 0.0;
  for (std::size_t p = rowStart[row1], q = rowStart[row2]; p < end1 && q < end2;) {
    if (colIndex[p] == colIndex[q]) {
      sum = sum + values[p++] * values[q++];
    } else if (colIndex[p] < colIndex[q]) {
      ++p;
    } else {
      ++q;
    }
  }
  return sum;
}

double QXSparseRectMatrix::DotProductCol(int col1, int col2) const {
  if (!InRange(col1, nCols) || !InRange(col2, nCols)) return QXMV::Missing();
  double sum = 0.0;
  for (int i = 0; i < nRows; ++i) {
    const long p = Find(i, col1);
    if (p < 0) continue;
    const long q = Find(i, col2);
    if (q >= 0) sum = sum + values[p] * values[q];
  }
  return sum;
}

double QXSparseRectMatrix::DotProductRowCol(int row, const IQXRectMatrix& other, int col) const {
  if (!IsRectTag(other.GetMatrixType()) || !InRange(row, nRows) ||
      !InRange(col, other.GetNCols()) || other.GetNRows() != nCols) {
    return QXMV::Missing();
  }
  double sum = 0.0;
  for (std::size_t p = rowStart[row]; p < rowStart[row + 1]; ++p)
    sum = sum + values[p] * other.GetElem(colIndex[p], col);
  return sum;
}

double QXSparseRectMatrix::DotProductRowRow(int row, const IQXRectMatrix& other,
                                            int otherRow) const {
  const int tag = other.GetMatrixType();
  if (!IsRectTag(tag) || !InRange(row, nRows) || !InRange(otherRow, other.GetNRows()) ||
      other.GetNCols() != nCols) {
    return QXMV::Missing();
  }
  if (tag == 1) {
    const QXSparseRectMatrix& b = static_cast<const QXSparseRectMatrix&>(other);
    const std::size_t end1 = rowStart[row + 1], end2 = b.rowStart[otherRow + 1];
    double sum = 0.0;
    for (std::size_t p = rowStart[row], q = b.rowStart[otherRow]; p < end1 && q < end2;) {
      if (colIndex[p] == b.colIndex[q]) {
        sum = sum + values[p++] * b.values[q++];
      } else if (colIndex[p] < b.colIndex[q]) {
        ++p;
      } else {
        ++q;
      }
    }
    return sum;
  }
  const double* x = static_cast<const QXRectMatrix&>(other).GetRowPtr(otherRow);
  double sum = 0.0;
  for (std::size_t p = rowStart[row]; p < rowStart[row + 1]; ++p)
    sum = sum + values[p] * x[colIndex[p]];
  return sum;
}

// ---------------------------------------------------------------------------
// Products

// Row i of A B is the sum over the row's non-zeros a_ik of a_ik times row k
// of b, so each element takes its terms in the order of k, as the dense dot
// does.
bool QXSparseRectMatrix::ComputeMatrixProduct(const IQXRectMatrix& b, IQXRectMatrix& out) const {
  const int tag = b.GetMatrixType();
  if (!IsRectTag(tag) || !IsValidMatrix() || !b.IsValidMatrix() || b.GetNRows() != nCols ||
      !IsRectTag(out.GetMatrixType())) {
    return false;
  }
  const int cols = b.GetNCols();
  QXSparseRectMatrix result(0, cols);
  std::vector<double> acc(cols, 0.0);
  for (int i = 0; i < nRows; ++i) {
    for (std::size_t p = rowStart[i]; p < rowStart[i + 1]; ++p) {
      const double a = values[p];
      if (tag == 1) {
        const QXSparseRectMatrix& s = static_cast<const QXSparseRectMatrix&>(b);
        for (std::size_t q = s.rowStart[colIndex[p]]; q < s.rowStart[colIndex[p] + 1]; ++q)
          acc[s.colIndex[q]] = acc[s.colIndex[q]] + a * s.values[q];
      } else {
        const double* x = static_cast<const QXRectMatrix&>(b).GetRowPtr(colIndex[p]);
        for (int j = 0; j < cols; ++j)
          acc[j] = acc[j] + a * x[j];
      }
    }
    result.AppendDenseRow(acc.data(), cols);
    std::fill(acc.begin(), acc.end(), 0.0);
  }
  return Deliver(result, out);
}

bool QXSparseRectMatrix::ComputeProductMatrixTrans(const IQXRectMatrix& b,
                                                   QXRectMatrix& out) const {
  if (!IsRectTag(b.GetMatrixType()) || b.GetNCols() != nCols || !IsValidMatrix()) return false;
  QXRectMatrix temp;
  QXRectMatrix& target = &out == &b ? temp : out;
  const int rows = b.GetNRows();
  if (!target.SetNRowsCols(nRows, rows, true)) return false;
  for (int i = 0; i < nRows; ++i) {
    for (int j = 0; j < rows; ++j)
      target.SetElem(i, j, DotProductRowRow(i, b, j));
  }
  if (&target != &out) out = temp;
  return out.IsValidMatrix();
}

bool QXSparseRectMatrix::ComputeRV(const std::vector<double>& v, std::vector<double>& out) const {
  if (static_cast<int>(v.size()) != nCols || nRows < 0) return false;
  std::vector<double> result(nRows);
  for (int i = 0; i < nRows; ++i) {
    double sum = 0.0;
    for (std::size_t p = rowStart[i]; p < rowStart[i + 1]; ++p)
      sum = sum + values[p] * v[colIndex[p]];
    result[i] = sum;
  }
  out.swap(result);
  return true;
}

bool QXSparseRectMatrix::ComputeVR(const std::vector<double>& v, std::vector<double>& out) const {
  if (static_cast<int>(v.size()) != nRows || nCols < 0) return false;
  std::vector<double> result(nCols, 0.0);
  for (int i = 0; i < nRows; ++i) {
    for (std::size_t p = rowStart[i]; p < rowStart[i + 1]; ++p)
      result[colIndex[p]] = result[colIndex[p]] + v[i] * values[p];
  }
  out.swap(result);
  return true;
}

// ---------------------------------------------------------------------------
// Copying, extraction and reshaping. Each result is formed apart, so that
// out may be this matrix or the source.

bool QXSparseRectMatrix::CopyRows(const IQXRectMatrix& source, int first, int count) {
  const int tag = source.GetMatrixType();
  if (first < 0 || count < 1 || first > source.GetNRows() - count || !IsRectTag(tag)) return false;
  QXSparseRectMatrix result(0, source.GetNCols());
  for (int k = 0; k < count; ++k) {
    if (tag == 0) {
      const QXRectMatrix& dense = static_cast<const QXRectMatrix&>(source);
      result.AppendDenseRow(dense.GetRowPtr(first + k), dense.GetNCols());
    } else {
      const int* cols = nullptr;
      const double* vals = nullptr;
      const int n =
          static_cast<const QXSparseRectMatrix&>(source).GetRowEntries(first + k, cols, vals);
      result.colIndex.insert(result.colIndex.end(), cols, cols + n);
      result.values.insert(result.values.end(), vals, vals + n);
      result.rowStart.push_back(result.values.size());
      ++result.nRows;
    }
  }
  return Deliver(result, *this);
}

bool QXSparseRectMatrix::CopyRowToRow(int row, int targetRow, IQXRectMatrix& target) const {
  const int tag = target.GetMatrixType();
  if (!IsRectTag(tag) || !InRange(row, nRows) || !InRange(targetRow, target.GetNRows()) ||
      target.GetNCols() != nCols) {
    return false;
  }
  const int* cols = nullptr;
  const double* vals = nullptr;
  const int n = GetRowEntries(row, cols, vals);
  if (tag == 1) {
    static_cast<QXSparseRectMatrix&>(target).ReplaceRow(targetRow, n, cols, vals);
    return true;
  }
  double* t = static_cast<QXRectMatrix&>(target).AsVector().data() +
              static_cast<std::size_t>(targetRow) * nCols;
  std::fill(t, t + nCols, 0.0);
  for (int k = 0; k < n; ++k)
    t[cols[k]] = vals[k];
  return true;
}

int QXSparseRectMatrix::ExtractRows(const std::vector<int>& rows, IQXRectMatrix& out) const {
  if (!IsRectTag(out.GetMatrixType())) return -1;
  if (!rows.empty() && rows.back() >= nRows) return -1;
  const std::vector<int> usable = IndicesBelow(rows, nRows);
  QXSparseRectMatrix result(0, nCols);
  for (int i : usable) {
    result.colIndex.insert(result.colIndex.end(), colIndex.begin() + rowStart[i],
                           colIndex.begin() + rowStart[i + 1]);
    result.values.insert(result.values.end(), values.begin() + rowStart[i],
                         values.begin() + rowStart[i + 1]);
    result.rowStart.push_back(result.values.size());
    ++result.nRows;
  }
  return Deliver(result, out) ? static_cast<int>(usable.size()) : -1;
}

int QXSparseRectMatrix::ExtractColumns(const std::vector<int>& columns, IQXRectMatrix& out) const {
  if (!IsRectTag(out.GetMatrixType())) return -1;
  if (!columns.empty() && columns.back() >= nCols) return -1;
  const std::vector<int> usable = IndicesBelow(columns, nCols);
  const int m = static_cast<int>(usable.size());
  QXSparseRectMatrix result(0, m);
  for (int i = 0; i < nRows; ++i) {
    for (int k = 0; k < m; ++k) {
      const long p = Find(i, usable[k]);
      if (p < 0) continue;
      result.colIndex.push_back(k);
      result.values.push_back(values[p]);
    }
    result.rowStart.push_back(result.values.size());
    ++result.nRows;
  }
  return Deliver(result, out) ? m : -1;
}

bool QXSparseRectMatrix::ShiftColumns(int shift, IQXRectMatrix& out) const {
  if (shift < 0 || nRows < 1 || nCols < 1 || !IsRectTag(out.GetMatrixType())) return false;
  QXSparseRectMatrix result(*this);
  for (int& c : result.colIndex)
    c += shift;
  result.nCols = nCols + shift;
  return Deliver(result, out);
}

bool QXSparseRectMatrix::ShiftRows(int shift, IQXRectMatrix& out) const {
  if (shift < 0 || nRows < 1 || nCols < 1 || !IsRectTag(out.GetMatrixType())) return false;
  QXSparseRectMatrix result(*this);
  result.rowStart.insert(result.rowStart.begin(), static_cast<std::size_t>(shift), 0);
  result.nRows = nRows + shift;
  return Deliver(result, out);
}

bool QXSparseRectMatrix::CreateBlockDiagonal(int copies, IQXRectMatrix& out) const {
  if (copies < 1 || nRows < 1 || nCols < 1 || !IsRectTag(out.GetMatrixType())) return false;
  QXSparseRectMatrix result(0, copies * nCols);
  for (int b = 0; b < copies; ++b) {
    for (int i = 0; i < nRows; ++i) {
      for (std::size_t p = rowStart[i]; p < rowStart[i + 1]; ++p) {
        result.colIndex.push_back(b * nCols + colIndex[p]);
        result.values.push_back(values[p]);
      }
      result.rowStart.push_back(result.values.size());
      ++result.nRows;
    }
  }
  return Deliver(result, out);
}

// ---------------------------------------------------------------------------
// Display

void QXSparseRectMatrix::Display() const {
  using namespace QXDisplay_850;
  DisplayText(1, "QXSparseRectMatrix display start");
  DisplayI("Number of rows", nRows);
  DisplayI("Number of columns", nCols);
  DisplayL("Number of non-zero elements", static_cast<long>(values.size()));
  DisplayIV("Row starts", std::vector<int>(rowStart.begin(), rowStart.end()));
  DisplayIV("Column indices", colIndex);
  DisplayDV("Values", values);
  DisplayText(1, "QXSparseRectMatrix display end");
}

void QXSparseRectMatrix::DisplayF() const {
  using namespace QXDisplay_850;
  DisplayText(1, "QXSparseRectMatrix full matrix display start");
  DisplayI("Number of rows", nRows);
  DisplayI("Number of columns", nCols);
  std::vector<double> row;
  for (int i = 0; i < nRows; ++i) {
    GetRow(i, row);
    internal::DisplayFullRow(i, row.data(), nCols);
  }
  DisplayText(1, "QXSparseRectMatrix display end");
}

}  // namespace QXMath_850
