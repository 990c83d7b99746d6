#include "qx/matrices/qxsymmatrix.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "qx/foundation/qxcomponentdisplay.h"
#include "qx/matrices/internal/displayrow.h"
#include "qx/matrices/internal/kernels.h"
#include "qx/matrices/internal/packedlayout.h"
#include "qx/matrices/qxrectmatrix.h"

namespace QXMath_850 {

using internal::DiagIndex;
using internal::PackedIndex;
using internal::PackedSize;
using internal::RowStart;
using internal::WalkDiagonal;
using internal::WalkSymmetricRow;

namespace {

inline int Order(int n) {
  return n > 0 ? n : 0;
}

// a_ij = a_ij + (w * x_i) * x_j for j <= i < n, the multipliers formed once;
// with skipZeros the rows whose x_i is zero are left alone.
void AddScaledRankOne(double* a, int n, const double* x, double w, bool skipZeros) {
  if (n < 1) return;
  internal::Scratch work(static_cast<std::size_t>(n));
  double* s = work.data();
  for (int i = 0; i < n; ++i)
    s[i] = w * x[i];
  if (!skipZeros) {
    internal::UpdateRegion(a, 0, n, 0, n, true, 1, s, 0, x, 0, nullptr);
    return;
  }
  int i = 0;
  while (i < n) {
    if (x[i] == 0.0) {
      ++i;
      continue;
    }
    int end = i + 1;
    while (end < n && x[end] != 0.0)
      ++end;
    internal::UpdateRegion(a, i, end, 0, end, true, 1, s, 0, x, 0, nullptr);
    i = end;
  }
}

}  // namespace

IQXSymMatrix::~IQXSymMatrix() = default;

// ---------------------------------------------------------------------------
// Construction and sizing

QXSymMatrix::QXSymMatrix() : nRows(0), nBlocks(0), blockSize(0) {}

QXSymMatrix::QXSymMatrix(int n, bool clear) {
  if (n < 0) n = 0;
  nRows = n;
  nBlocks = 1;
  blockSize = n;
  if (ResizeNRows(data, nRows) && clear) {
    for (double& a : data)
      a = 0.0;
  }
}

QXSymMatrix::QXSymMatrix(int blocks, int size, bool clear) {
  if (blocks < 1 || size < 1) {
    blocks = 0;
    size = 0;
  }
  nRows = blocks * size;
  nBlocks = blocks;
  blockSize = size;
  if (ResizeNRows(data, nRows) && clear) {
    for (double& a : data)
      a = 0.0;
  }
}

QXSymMatrix::QXSymMatrix(const QXSymMatrix& other)
    : IQXSymMatrix(other), nRows(other.nRows), nBlocks(other.nBlocks), blockSize(other.blockSize) {
  if (!ResizeNCopy(data, other.data)) nRows = -1;
}

QXSymMatrix& QXSymMatrix::operator=(const QXSymMatrix& other) {
  if (this == &other) return *this;
  nRows = other.nRows;
  nBlocks = other.nBlocks;
  blockSize = other.blockSize;
  if (!ResizeNCopy(data, other.data)) nRows = -1;
  return *this;
}

QXSymMatrix::~QXSymMatrix() = default;

bool QXSymMatrix::ResizeNRows(std::vector<double>& store, int& n) {
  if (n > 0) {
    const std::size_t needed = PackedSize(n);
    if (store.size() > needed) {
      store.resize(needed);
    } else if (store.size() < needed) {
      try {
        store.resize(needed, 0.0);
      } catch (...) {
        n = -1;
      }
    }
  }
  if (n <= 0) store.clear();
  return n >= 0;
}

bool QXSymMatrix::ResizeNCopy(std::vector<double>& store, const std::vector<double>& source) {
  try {
    store = source;
  } catch (...) {
    store.clear();
    return false;
  }
  return true;
}

void QXSymMatrix::SetData(const QXSymMatrix& source) {
  nRows = source.GetNRows();
  nBlocks = source.GetNBlocks();
  blockSize = source.GetBlockSize();
  data = source.AsVectorConst();
}

bool QXSymMatrix::SetNRows(int n, bool clear) {
  if (n < 0) {
    nRows = 0;
    nBlocks = 0;
    blockSize = 0;
  } else {
    nRows = n;
    nBlocks = 1;
    blockSize = n;
  }
  const bool ok = ResizeNRows(data, nRows);
  if (ok && clear) Clear();
  return ok;
}

bool QXSymMatrix::Resize(int n) {
  if (n < 0) n = 0;
  nRows = n;
  nBlocks = 1;
  blockSize = n;
  return ResizeNRows(data, nRows);
}

bool QXSymMatrix::SetNBlocks(int blocks) {
  if (blocks < 1 || nRows < 1 || nRows % blocks != 0) return false;
  nBlocks = blocks;
  blockSize = nRows / blocks;
  return true;
}

// Removes row and column `row` by moving every later element down over the
// gap; destinations never pass their sources, so one forward pass suffices.
bool QXSymMatrix::DeleteOneRow(int row) {
  if (row < 0 || row >= nRows) return false;
  std::size_t to = RowStart(row);
  std::size_t from = RowStart(row + 1);
  for (int i = row + 1; i < nRows; ++i) {
    for (int j = 0; j <= i; ++j, ++from) {
      if (j != row) data[to++] = data[from];
    }
  }
  data.resize(to);
  --nRows;
  --blockSize;
  return true;
}

bool QXSymMatrix::SetToVV(const std::vector<double>& v) {
  if (!SetNRows(static_cast<int>(v.size()), false)) return false;
  internal::WalkLower(data.data(), nRows, [&](int i, int j, double& a) { a = v[i] * v[j]; });
  return true;
}

bool QXSymMatrix::SetToVW(const std::vector<double>& v, const std::vector<double>& w) {
  if (v.size() != w.size()) return false;
  if (!SetNRows(static_cast<int>(v.size()), false)) return false;
  internal::WalkLower(data.data(), nRows,
                      [&](int i, int j, double& a) { a = v[i] * w[j] + w[i] * v[j]; });
  return true;
}

// ---------------------------------------------------------------------------
// Element access

int QXSymMatrix::GetType() const {
  return 0;
}
int QXSymMatrix::GetNRows() const {
  return nRows;
}
bool QXSymMatrix::IsValidMatrix() const {
  return nRows >= 0;
}

double QXSymMatrix::GetElem(int row, int col) const {
  return data[PackedIndex(row, col)];
}

bool QXSymMatrix::SetElem(int row, int col, double value) {
  data[PackedIndex(row, col)] = value;
  return true;
}

double QXSymMatrix::GetElem(int blockRow, int blockCol, int i, int j) const {
  return GetElem(blockRow * blockSize + i, blockCol * blockSize + j);
}

bool QXSymMatrix::SetElem(int position, double value) {
  if (position < 0 || static_cast<std::size_t>(position) >= PackedSize(nRows)) return false;
  data[position] = value;
  return true;
}

bool QXSymMatrix::GetRow(int row, std::vector<double>& out) const {
  if (row < 0 || row >= nRows) return false;
  out.resize(nRows, 0.0);
  WalkSymmetricRow(data.data(), row, nRows, [&out](int j, double a) { out[j] = a; });
  return true;
}

bool QXSymMatrix::PutRow(int row, const std::vector<double>& in) {
  if (row < 0 || row >= nRows || static_cast<int>(in.size()) < nRows) return false;
  WalkSymmetricRow(data.data(), row, nRows, [&in](int j, double& a) { a = in[j]; });
  return true;
}

void QXSymMatrix::GetDiagonal(std::vector<double>& diag) const {
  const int n = Order(nRows);
  diag.resize(n, 0.0);
  WalkDiagonal(data.data(), 0, n, [&diag](int i, double a) { diag[i] = a; });
}

bool QXSymMatrix::GetPCol(int col, int first, int last, std::vector<double>& out,
                          int stride) const {
  if (col < 0 || col >= nRows || first < 0 || first >= nRows || last < 0 || last >= nRows) {
    return false;
  }
  const int count = last - first + 1;
  if (count < 1) return true;
  const long step = stride;
  const long start = step < 0 ? (1 - count) * step : 0;
  const long far = start + (count - 1) * step;
  const std::size_t needed = static_cast<std::size_t>(std::max(start, far)) + 1;
  if (out.size() < needed) out.resize(needed, 0.0);
  long at = start;
  for (int k = 0; k < count; ++k, at += step)
    out[at] = GetElem(first + k, col);
  return true;
}

bool QXSymMatrix::CopyRowToRColumn(int row, QXRectMatrix& r, int col, int count) const {
  if (row < 0 || row >= nRows || col < 0 || col >= r.GetNCols()) return false;
  if (count < 0 || count > r.GetNRows()) count = r.GetNRows();
  if (count > nRows) count = nRows;
  for (int k = 0; k < count; ++k)
    r.SetElem(k, col, GetElem(row, k));
  return true;
}

bool QXSymMatrix::IncrVecByRow(int row, std::vector<double>& v, int offset, int count, double scale,
                               bool check) const {
  if (check) {
    if (row < 0 || row >= nRows || count <= 0 || count > nRows || offset < 0 ||
        static_cast<std::size_t>(offset) + count > v.size()) {
      return false;
    }
  }
  const int m = count < nRows ? count : nRows;
  WalkSymmetricRow(data.data(), row, m, [&](int k, double a) { v[offset + k] += scale * a; });
  return true;
}

// ---------------------------------------------------------------------------
// Rank-one updates

// Row i takes (w * x_i) * x_j, its multiplier formed once, through the
// single-step kernel; UpdateXX skips the rows whose x_i is zero.
void QXSymMatrix::IncrementByVV(const double* x, double w) {
  AddScaledRankOne(data.data(), nRows, x, w, false);
}

bool QXSymMatrix::UpdateXX(const std::vector<double>& x, double w) {
  if (!(w > 0.0)) return false;
  return UpdateXXPosNegW(x, w);
}

bool QXSymMatrix::UpdateXXPosNegW(const std::vector<double>& x, double w) {
  if (static_cast<int>(x.size()) != nRows) return false;
  AddScaledRankOne(data.data(), nRows, x.data(), w, true);
  return true;
}

bool QXSymMatrix::UpdateXXNonRedun(const std::vector<double>& x, const QXBitSet& keep, double w) {
  if (static_cast<int>(x.size()) != nRows) return false;
  for (int i = 0; i < nRows; ++i) {
    if (x[i] == 0.0 || !keep.IsIn(i)) continue;
    const double wx = w * x[i];
    const std::size_t start = RowStart(i);
    for (int j = 0; j <= i; ++j) {
      if (keep.IsIn(j)) data[start + j] += wx * x[j];
    }
  }
  return true;
}

bool QXSymMatrix::UpdateXXSparse(int count, const std::vector<int>& indices,
                                 const std::vector<double>& values, double w) {
  if (count > static_cast<int>(indices.size()) || count > static_cast<int>(values.size()) ||
      !(w > 0.0)) {
    return false;
  }
  for (int s = 0; s < count; ++s) {
    const int p = indices[s];
    if (p < 0 || p >= nRows) return false;
    const double wv = w * values[s];
    const std::size_t start = RowStart(p);
    for (int t = 0; t < count; ++t) {
      const int q = indices[t];
      if (q < 0 || q >= nRows) return false;
      if (p >= q) data[start + q] += wv * values[t];
    }
  }
  return true;
}

// ---------------------------------------------------------------------------
// Whole-matrix operations

void QXSymMatrix::Clear() {
  for (double& a : data)
    a = 0.0;
}

void QXSymMatrix::ChangeSign() {
  for (double& a : data)
    a = -a;
}

void QXSymMatrix::MultiplyByNumber(double factor) {
  for (double& a : data)
    a *= factor;
}

void QXSymMatrix::AddToDiagonal(double value) {
  WalkDiagonal(data.data(), 0, nRows, [value](int, double& a) { a += value; });
}

bool QXSymMatrix::AddToDiagonalPart(int first, int count, double value) {
  if (first < 0 || count < 0 || first + count >= nRows) return false;
  WalkDiagonal(data.data(), first, count, [value](int, double& a) { a += value; });
  return true;
}

double QXSymMatrix::Trace() const {
  double sum = 0.0;
  WalkDiagonal(data.data(), 0, nRows, [&sum](int, double a) { sum += a; });
  return sum;
}

void QXSymMatrix::MaxMinDiag(double& largest, double& smallest) const {
  if (nRows < 1) return;
  largest = -1.7976931348623157e+308;
  smallest = 1.7976931348623157e+308;
  WalkDiagonal(data.data(), 0, nRows, [&](int, double d) {
    if (d > largest) largest = d;
    if (d < smallest) smallest = d;
  });
}

void QXSymMatrix::MaxMinDiagOffDiag(double& largestDiag, double& smallestDiag, double& largestOff,
                                    double& smallestOff) const {
  if (nRows < 1) return;
  largestDiag = -1.7976931348623157e+308;
  smallestDiag = 1.7976931348623157e+308;
  largestOff = -1.7976931348623157e+308;
  smallestOff = 1.7976931348623157e+308;
  internal::WalkLower(data.data(), nRows, [&](int i, int j, double a) {
    double& largest = j < i ? largestOff : largestDiag;
    double& smallest = j < i ? smallestOff : smallestDiag;
    if (a > largest) largest = a;
    if (a < smallest) smallest = a;
  });
}

bool QXSymMatrix::SetRowColToConst(int row, double value) {
  if (row < 0 || row >= nRows) return false;
  WalkSymmetricRow(data.data(), row, nRows, [value](int, double& a) { a = value; });
  return true;
}

bool QXSymMatrix::ZeroOut(int row) {
  return SetRowColToConst(row, 0.0);
}

bool QXSymMatrix::SetCovarZeros(QXSymMatrix& other) {
  if (other.nRows != nRows) return false;
  for (int i = 0; i < nRows; ++i) {
    const std::size_t p = DiagIndex(i);
    if (data[p] <= 0.0 || other.data[p] <= 0.0) {
      ZeroOut(i);
      other.ZeroOut(i);
    }
  }
  return true;
}

bool QXSymMatrix::ZeroOutRedundant(const QXBitSet& keep) {
  if (nRows > keep.Size()) return false;
  for (int i = 0; i < nRows; ++i) {
    if (!keep.IsIn(i)) ZeroOut(i);
  }
  return true;
}

void QXSymMatrix::ZeroOutAllSmall(double ratio) {
  if (!(ratio > 0.0)) return;
  double m = 0.0;
  WalkDiagonal(data.data(), 0, nRows, [&m](int, double a) {
    const double d = std::fabs(a);
    if (d > m) m = d;
  });
  const double limit = ratio * m;
  for (double& a : data) {
    if (std::fabs(a) < limit) a = 0.0;
  }
}

// The maximum is a running one: a small row ahead of a larger one escapes.
void QXSymMatrix::ZeroOutRowsForSmallDiag(double ratio) {
  if (!(ratio > 0.0) || nRows < 1) return;
  double m = 0.0;
  // ZeroOut(i) clears no diagonal below row i, so the walk may go on.
  WalkDiagonal(data.data(), 0, nRows, [&](int i, double a) {
    const double d = std::fabs(a);
    if (d > m) m = d;
    if (m == 0.0 || d / m < ratio) ZeroOut(i);
  });
}

void QXSymMatrix::ZeroOutNonDiag(double ratio) {
  if (!(ratio > 0.0)) return;
  // Only elements off the diagonal change, so the diagonals read stay put.
  double* d = data.data();
  internal::WalkLower(d, nRows, [=](int i, int j, double& a) {
    if (j < i && std::fabs(a) <=
                     ratio * std::sqrt(std::fabs(d[DiagIndex(i)]) * std::fabs(d[DiagIndex(j)]))) {
      a = 0.0;
    }
  });
}

bool QXSymMatrix::ReplaceDiagZeroes(double ratio) {
  if (ratio < 0.0 || nRows < 1) return false;
  double m = 0.0;
  bool anyPositive = false;
  WalkDiagonal(data.data(), 0, nRows, [&](int, double d) {
    if (d > 0.0) {
      if (!anyPositive || d > m) m = d;
      anyPositive = true;
    }
  });
  if (!anyPositive) return false;
  WalkDiagonal(data.data(), 0, nRows, [&](int, double& d) {
    if (d <= 0.0 || d / m <= ratio) d = m;
  });
  return true;
}

bool QXSymMatrix::IsZeroRow(int row, const QXBitSet& columns) const {
  if (row < 0 || row >= nRows) return false;
  const int m = nRows < columns.Size() ? nRows : columns.Size();
  if (m < 1) return false;
  for (int j = 0; j < m; ++j) {
    if (columns.IsIn(j) && GetElem(row, j) != 0.0) return false;
  }
  return true;
}

// ---------------------------------------------------------------------------
// Extraction and expansion

bool QXSymMatrix::ExtractFirstNRows(IQXSymMatrix& out) const {
  const int tag = out.GetType();
  if (tag != 0) return tag != 0;
  QXSymMatrix& target = static_cast<QXSymMatrix&>(out);
  if (nRows <= 1) return target.SetNRows(0, true);
  const int m = nRows - 1;
  if (!target.SetNRows(m, false)) return false;
  if (&target != this) {
    std::copy(data.begin(), data.begin() + RowStart(m), target.data.begin());
  }
  return true;
}

bool QXSymMatrix::ExtractSubmatrix(const std::vector<int>& rows, IQXSymMatrix& out) const {
  if (out.GetType() != 0) return false;
  const int m = static_cast<int>(rows.size());
  if (m > nRows) return false;
  for (int a = 0; a < m; ++a) {
    if (rows[a] < 0 || rows[a] >= nRows) return false;
    if (a > 0 && rows[a] <= rows[a - 1]) return false;
  }
  QXSymMatrix& target = static_cast<QXSymMatrix&>(out);
  if (&target == this) {
    const QXSymMatrix copy(*this);
    return copy.ExtractSubmatrix(rows, out);
  }
  if (!target.SetNRows(m, false)) return false;
  std::size_t p = 0;
  for (int a = 0; a < m; ++a) {
    const std::size_t start = RowStart(rows[a]);
    for (int b = 0; b <= a; ++b)
      target.data[p++] = data[start + rows[b]];
  }
  return true;
}

bool QXSymMatrix::ExtractDiagBlock(int first, int size, QXSymMatrix& out) const {
  if (first < 0 || first + size > nRows || out.nRows != size) return false;
  std::size_t p = 0;
  for (int a = 0; a < size; ++a) {
    const std::size_t start = RowStart(first + a) + first;
    for (int b = 0; b <= a; ++b)
      out.data[p++] += data[start + b];
  }
  return true;
}

bool QXSymMatrix::ExtractBlockAndLastRow(int first, int size, QXSymMatrix& out) const {
  if (first < 0 || first + size >= nRows || out.nRows != size + 1) return false;
  std::size_t p = 0;
  for (int a = 0; a < size; ++a) {
    const std::size_t start = RowStart(first + a) + first;
    for (int b = 0; b <= a; ++b)
      out.data[p++] += data[start + b];
  }
  const std::size_t last = RowStart(nRows - 1);
  for (int b = 0; b < size; ++b)
    out.data[p++] += data[last + first + b];
  out.data[p] += data[last + nRows - 1];
  return true;
}

bool QXSymMatrix::ExtractPartOfLastRow(int first, int count, std::vector<double>& out) const {
  if (first < 0 || count < 1 || first + count > nRows) return false;
  if (static_cast<int>(out.size()) < count) out.resize(count, 0.0);
  const std::size_t start = RowStart(nRows - 1) + first;
  for (int k = 0; k < count; ++k)
    out[k] = data[start + k];
  return true;
}

bool QXSymMatrix::ExtractBlockInLowTriangular(int row, int col, int nr, int nc,
                                              QXRectMatrix& out) const {
  if (row < 0 || col < 0 || nr < 0 || nc < 0 || row + nr > nRows || col + nc > row + 1 ||
      out.GetNRows() != nr || out.GetNCols() != nc) {
    return false;
  }
  for (int a = 0; a < nr; ++a) {
    const std::size_t start = RowStart(row + a) + col;
    for (int b = 0; b < nc; ++b)
      out.SetElem(a, b, out.GetElem(a, b) + data[start + b]);
  }
  return true;
}

bool QXSymMatrix::ExpandSym(const QXRectMatrix& r, QXSymMatrix& out) const {
  if (nRows < 1 || r.GetNCols() != nRows) return false;
  if (&out == this) {
    const QXSymMatrix copy(*this);
    return copy.ExpandSym(r, out);
  }
  const int m = r.GetNRows();
  if (!out.SetNRows(nRows + m, true)) return false;
  std::copy(data.begin(), data.end(), out.data.begin());
  for (int a = 0; a < m; ++a) {
    const std::size_t start = RowStart(nRows + a);
    for (int j = 0; j < nRows; ++j)
      out.data[start + j] = r.GetElem(a, j);
  }
  return true;
}

bool QXSymMatrix::Expand(const QXBitSet& rows, QXSymMatrix& out) const {
  if (&out == this) {
    const QXSymMatrix copy(*this);
    return copy.Expand(rows, out);
  }
  if (!out.SetNRows(rows.Size(), true)) return false;
  std::vector<int> target;
  for (int i = 0; i < rows.Size() && static_cast<int>(target.size()) < nRows; ++i) {
    if (rows.IsIn(i)) target.push_back(i);
  }
  std::size_t p = 0;
  for (std::size_t a = 0; a < target.size(); ++a) {
    const std::size_t start = RowStart(target[a]);
    for (std::size_t b = 0; b <= a; ++b)
      out.data[start + target[b]] = data[p++];
  }
  return true;
}

bool QXSymMatrix::ReplaceFirstRows(const QXSymMatrix& source, int m) {
  if (m < 1 || m > nRows || m > source.nRows) return false;
  std::copy(source.data.begin(), source.data.begin() + RowStart(m), data.begin());
  return true;
}

// ---------------------------------------------------------------------------
// Display

void QXSymMatrix::Display() const {
  using namespace QXDisplay_850;
  DisplayText(1, "QXSymMatrix display start");
  DisplayI("The number of rows", nRows);
  DisplayI("The number of blocks", nBlocks);
  DisplayI("The block size", blockSize);
  DisplayDVTR("Lower triangular", data, nRows);
  DisplayText(1, "QXSymMatrix display end");
}

void QXSymMatrix::DisplayF() const {
  using namespace QXDisplay_850;
  DisplayText(1, "QXSymMatrix full matrix display start");
  DisplayI("Number of rows", nRows);
  std::vector<double> row;
  for (int i = 0; i < nRows; ++i) {
    GetRow(i, row);
    internal::DisplayFullRow(i, row.data(), nRows);
  }
  DisplayText(1, "QXSymMatrix display end");
}

void QXSymMatrix::DisplayS() const {
  QXDisplay_850::DisplayDVTRS(data, nRows);
}

}  // namespace QXMath_850
