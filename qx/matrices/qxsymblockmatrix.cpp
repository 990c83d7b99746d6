#include "qx/matrices/qxsymblockmatrix.h"

#include <cmath>
#include <cstddef>
#include <new>
#include <string>
#include <utility>

#include "qx/foundation/qxcomponentdisplay.h"
#include "qx/matrices/internal/packedlayout.h"
#include "qx/matrices/internal/symproducts.h"

namespace QXMath_850 {

namespace {

using internal::RowStart;

inline bool InRange(int i, int n) {
  return i >= 0 && i < n;
}

// The store of a block, writable or not as the block is.
inline double* Store(QXRectMatrix& r) {
  return r.AsVector().data();
}
inline const double* Store(const QXRectMatrix& r) {
  return r.AsVectorConst().data();
}
inline double* Store(QXSymMatrix& s) {
  return s.AsVector().data();
}
inline const double* Store(const QXSymMatrix& s) {
  return s.AsVectorConst().data();
}

}  // namespace

template <typename Self, typename F>
void QXSymBlockMatrix::ForEachElement(Self& self, F f) {
  const int q = self.GetNBlocks();
  for (int bi = 0; bi < q; ++bi) {
    const int si = self.starts[bi], mi = self.sizes[bi];
    for (int bj = 0; bj < bi; ++bj) {
      const int sj = self.starts[bj], mj = self.sizes[bj];
      auto* x = Store(self.offBlocks[OffIndex(bi, bj)]);
      for (int i = 0; i < mi; ++i) {
        for (int j = 0; j < mj; ++j)
          f(si + i, sj + j, x[static_cast<std::size_t>(i) * mj + j]);
      }
    }
    auto* x = Store(self.diagBlocks[bi]);
    internal::WalkLower(x, mi, [&](int i, int j, auto& e) { f(si + i, si + j, e); });
  }
}

// ---------------------------------------------------------------------------
// Structure

QXSymBlockMatrix::QXSymBlockMatrix() : nRows(0) {}

QXSymBlockMatrix::QXSymBlockMatrix(const std::vector<int>& blockSizes) : nRows(0) {
  SetBlockSizes(blockSizes);
}

QXSymBlockMatrix::QXSymBlockMatrix(int nBlocks, int blockSize) : nRows(0) {
  if (nBlocks > 0 && blockSize > 0) SetBlockSizes(std::vector<int>(nBlocks, blockSize));
}

void QXSymBlockMatrix::MakeInvalid() {
  nRows = -1;
  sizes.clear();
  starts.clear();
  rowBlock.clear();
  diagBlocks.clear();
  offBlocks.clear();
}

bool QXSymBlockMatrix::SetBlockSizes(const std::vector<int>& blockSizes) {
  for (int m : blockSizes) {
    if (m < 1) return false;
  }
  try {
    const int q = static_cast<int>(blockSizes.size());
    std::vector<int> first(q);
    std::vector<int> owner;
    std::vector<QXSymMatrix> diag;
    std::vector<QXRectMatrix> off;
    diag.reserve(q);
    off.reserve(static_cast<std::size_t>(q) * (q > 0 ? q - 1 : 0) / 2);
    int n = 0;
    for (int bi = 0; bi < q; ++bi) {
      first[bi] = n;
      n += blockSizes[bi];
      owner.insert(owner.end(), blockSizes[bi], bi);
      for (int bj = 0; bj < bi; ++bj) {
        off.emplace_back(blockSizes[bi], blockSizes[bj], true);
        if (!off.back().IsValidMatrix()) throw std::bad_alloc();
      }
      diag.emplace_back(blockSizes[bi], true);
      if (!diag.back().IsValidMatrix()) throw std::bad_alloc();
    }
    sizes = blockSizes;
    starts.swap(first);
    rowBlock.swap(owner);
    diagBlocks.swap(diag);
    offBlocks.swap(off);
    nRows = n;
  } catch (...) {
    MakeInvalid();
    return false;
  }
  return true;
}

bool QXSymBlockMatrix::IsValidMatrix() const {
  if (nRows < 0) return false;
  for (const QXSymMatrix& s : diagBlocks) {
    if (!s.IsValidMatrix()) return false;
  }
  for (const QXRectMatrix& r : offBlocks) {
    if (!r.IsValidMatrix()) return false;
  }
  return true;
}

int QXSymBlockMatrix::GetBlockSize(int block) const {
  return InRange(block, GetNBlocks()) ? sizes[block] : -1;
}

int QXSymBlockMatrix::GetBlockStart(int block) const {
  return InRange(block, GetNBlocks()) ? starts[block] : -1;
}

// ---------------------------------------------------------------------------
// Blocks and elements

QXSymMatrix* QXSymBlockMatrix::GetDiagBlock(int block) {
  return InRange(block, GetNBlocks()) ? &diagBlocks[block] : nullptr;
}

const QXSymMatrix* QXSymBlockMatrix::GetDiagBlock(int block) const {
  return InRange(block, GetNBlocks()) ? &diagBlocks[block] : nullptr;
}

QXRectMatrix* QXSymBlockMatrix::GetOffDiagBlock(int blockRow, int blockCol) {
  if (!InRange(blockRow, GetNBlocks()) || !InRange(blockCol, blockRow)) return nullptr;
  return &offBlocks[OffIndex(blockRow, blockCol)];
}

const QXRectMatrix* QXSymBlockMatrix::GetOffDiagBlock(int blockRow, int blockCol) const {
  if (!InRange(blockRow, GetNBlocks()) || !InRange(blockCol, blockRow)) return nullptr;
  return &offBlocks[OffIndex(blockRow, blockCol)];
}

bool QXSymBlockMatrix::SetDiagBlock(int block, const QXSymMatrix& s) {
  if (!InRange(block, GetNBlocks()) || s.GetNRows() != sizes[block]) return false;
  diagBlocks[block].AsVector() = s.AsVectorConst();
  return true;
}

bool QXSymBlockMatrix::SetBlock(int blockRow, int blockCol, const QXRectMatrix& r) {
  const int q = GetNBlocks();
  if (!InRange(blockRow, q) || !InRange(blockCol, q) || blockRow == blockCol ||
      r.GetNRows() != sizes[blockRow] || r.GetNCols() != sizes[blockCol]) {
    return false;
  }
  if (blockRow > blockCol) {
    offBlocks[OffIndex(blockRow, blockCol)] = r;
  } else {
    QXRectMatrix& target = offBlocks[OffIndex(blockCol, blockRow)];
    target = r;
    target.Transpose();
  }
  return true;
}

bool QXSymBlockMatrix::GetBlock(int blockRow, int blockCol, QXRectMatrix& out) const {
  const int q = GetNBlocks();
  if (!InRange(blockRow, q) || !InRange(blockCol, q) ||
      !out.SetNRowsCols(sizes[blockRow], sizes[blockCol], false)) {
    return false;
  }
  for (int i = 0; i < sizes[blockRow]; ++i) {
    for (int j = 0; j < sizes[blockCol]; ++j)
      out.SetElem(i, j, GetElem(starts[blockRow] + i, starts[blockCol] + j));
  }
  return true;
}

double QXSymBlockMatrix::GetElem(int row, int col) const {
  if (!InRange(row, nRows) || !InRange(col, nRows)) return 0.0;
  if (row < col) std::swap(row, col);
  const int bi = rowBlock[row], bj = rowBlock[col];
  const int i = row - starts[bi], j = col - starts[bj];
  return bi == bj ? diagBlocks[bi].GetElem(i, j) : offBlocks[OffIndex(bi, bj)].GetElem(i, j);
}

double QXSymBlockMatrix::GetElem(int blockRow, int blockCol, int i, int j) const {
  const int q = GetNBlocks();
  if (!InRange(blockRow, q) || !InRange(blockCol, q) || !InRange(i, sizes[blockRow]) ||
      !InRange(j, sizes[blockCol])) {
    return 0.0;
  }
  return GetElem(starts[blockRow] + i, starts[blockCol] + j);
}

bool QXSymBlockMatrix::SetElem(int row, int col, double value) {
  if (!InRange(row, nRows) || !InRange(col, nRows)) return false;
  if (row < col) std::swap(row, col);
  const int bi = rowBlock[row], bj = rowBlock[col];
  const int i = row - starts[bi], j = col - starts[bj];
  return bi == bj ? diagBlocks[bi].SetElem(i, j, value)
                  : offBlocks[OffIndex(bi, bj)].SetElem(i, j, value);
}

// ---------------------------------------------------------------------------
// Conversions

bool QXSymBlockMatrix::ToSymMatrix(QXSymMatrix& out) const {
  if (!IsValidMatrix() || !out.SetNRows(nRows, false)) return false;
  double* a = out.AsVector().data();
  ForEachElement(*this, [a](int i, int j, double e) { a[RowStart(i) + j] = e; });
  bool equal = true;
  for (int m : sizes)
    equal = equal && m == sizes[0];
  if (equal && !sizes.empty()) out.SetNBlocks(GetNBlocks());
  return true;
}

bool QXSymBlockMatrix::FromSymMatrix(const QXSymMatrix& s, const std::vector<int>& blockSizes) {
  long total = 0;
  for (int m : blockSizes)
    total += m;
  if (total != s.GetNRows() || !SetBlockSizes(blockSizes)) return false;
  const double* a = s.AsVectorConst().data();
  ForEachElement(*this, [a](int i, int j, double& e) { e = a[RowStart(i) + j]; });
  return true;
}

bool QXSymBlockMatrix::SetKronecker(const QXSymMatrix& sigma, const QXSymMatrix& a) {
  const int q = sigma.GetNRows(), m = a.GetNRows();
  if (q < 1 || m < 1 || !SetBlockSizes(std::vector<int>(q, m))) return false;
  ForEachElement(*this, [&](int i, int j, double& e) {
    e = sigma.GetElem(i / m, j / m) * a.GetElem(i % m, j % m);
  });
  return true;
}

// ---------------------------------------------------------------------------
// Whole-matrix operations

void QXSymBlockMatrix::Clear() {
  ForEachElement(*this, [](int, int, double& e) { e = 0.0; });
}

void QXSymBlockMatrix::MultiplyByNumber(double factor) {
  ForEachElement(*this, [factor](int, int, double& e) { e *= factor; });
}

double QXSymBlockMatrix::Trace() const {
  double sum = 0.0;
  for (const QXSymMatrix& block : diagBlocks)
    internal::WalkDiagonal(block.AsVectorConst().data(), 0, block.GetNRows(),
                           [&sum](int, double a) { sum += a; });
  return sum;
}

bool QXSymBlockMatrix::ComputeAXpY(double a, const QXSymBlockMatrix& x) {
  if (x.sizes != sizes || x.nRows != nRows) return false;
  if (a == 0.0) return true;
  for (std::size_t b = 0; b < diagBlocks.size(); ++b) {
    std::vector<double>& y = diagBlocks[b].AsVector();
    const std::vector<double>& v = x.diagBlocks[b].AsVectorConst();
    for (std::size_t k = 0; k < y.size(); ++k)
      y[k] = y[k] + a * v[k];
  }
  for (std::size_t b = 0; b < offBlocks.size(); ++b) {
    std::vector<double>& y = offBlocks[b].AsVector();
    const std::vector<double>& v = x.offBlocks[b].AsVectorConst();
    for (std::size_t k = 0; k < y.size(); ++k)
      y[k] = y[k] + a * v[k];
  }
  return true;
}

// ---------------------------------------------------------------------------
// Products

// Row i's sum takes its terms column by column across the block row: the
// stored block left of the diagonal along its row, the diagonal block along
// its symmetric row, and the blocks right of it down a column of their
// stored transposes.
bool QXSymBlockMatrix::ComputeSV(const std::vector<double>& v, std::vector<double>& out) const {
  if (static_cast<int>(v.size()) != nRows || nRows < 0) return false;
  const int q = GetNBlocks();
  std::vector<double> result(nRows);
  for (int bi = 0; bi < q; ++bi) {
    const int mi = sizes[bi];
    for (int i = 0; i < mi; ++i) {
      double sum = 0.0;
      for (int bj = 0; bj < bi; ++bj) {
        const double* x = offBlocks[OffIndex(bi, bj)].GetRowPtr(i);
        const double* vj = v.data() + starts[bj];
        for (int j = 0; j < sizes[bj]; ++j)
          sum = sum + vj[j] * x[j];
      }
      const double* vi = v.data() + starts[bi];
      internal::WalkSymmetricRow(diagBlocks[bi].AsVectorConst().data(), i, mi,
                                 [&sum, vi](int j, double e) { sum = sum + vi[j] * e; });
      for (int bj = bi + 1; bj < q; ++bj) {
        const double* x = offBlocks[OffIndex(bj, bi)].AsVectorConst().data() + i;
        const double* vj = v.data() + starts[bj];
        for (int j = 0; j < sizes[bj]; ++j)
          sum = sum + vj[j] * x[static_cast<std::size_t>(j) * mi];
      }
      result[starts[bi] + i] = sum;
    }
  }
  out.swap(result);
  return true;
}

double QXSymBlockMatrix::ComputeVSW(const std::vector<double>& v,
                                    const std::vector<double>& w) const {
  if (static_cast<int>(w.size()) != nRows || nRows < 1) return 0.0;
  std::vector<double> t;
  if (!ComputeSV(v, t)) return 0.0;
  double sum = 0.0;
  for (int i = 0; i < nRows; ++i)
    sum = sum + t[i] * w[i];
  return sum;
}

double QXSymBlockMatrix::ComputeVSV(const std::vector<double>& v) const {
  return ComputeVSW(v, v);
}

// Column c of the result is R^T (S r_c), as the dense product forms it.
bool QXSymBlockMatrix::ComputeRTransSR(const QXRectMatrix& r, QXSymMatrix& out) const {
  if (r.GetNRows() != nRows || nRows < 0) return false;
  const int m = r.GetNCols();
  if (!internal::PrepareSymOut(out, m, false)) return false;
  std::vector<double> v, t;
  for (int c = 0; c < m; ++c) {
    r.GetCol(c, v);
    ComputeSV(v, t);
    r.ComputeVR(t, v);
    for (int e = 0; e <= c; ++e)
      out.SetElem(c, e, v[e]);
  }
  return true;
}

// Element (e, f), f <= e: with t_(I, f) the sum over J of c_J S_IJ(f, e),
// the sum over I of t_(I, f) c_I, both in block order: the terms of R^T S R
// for R = c (x) I_m that aren't zero, in the dense order.
bool QXSymBlockMatrix::ComputeBlockCombination(const std::vector<double>& c,
                                               QXSymMatrix& out) const {
  const int q = GetNBlocks();
  if (q < 1 || static_cast<int>(c.size()) != q || nRows < 0) return false;
  const int m = sizes[0];
  for (int size : sizes) {
    if (size != m) return false;
  }
  if (!internal::PrepareSymOut(out, m, false)) return false;
  std::vector<double> t(static_cast<std::size_t>(q) * m);
  for (int e = 0; e < m; ++e) {
    for (int bi = 0; bi < q; ++bi) {
      for (int f = 0; f < m; ++f) {
        double sum = 0.0;
        for (int bj = 0; bj < q; ++bj)
          sum = sum + c[bj] * GetElem(bi * m + f, bj * m + e);
        t[static_cast<std::size_t>(bi) * m + f] = sum;
      }
    }
    for (int f = 0; f <= e; ++f) {
      double sum = 0.0;
      for (int bi = 0; bi < q; ++bi)
        sum = sum + t[static_cast<std::size_t>(bi) * m + f] * c[bi];
      out.SetElem(e, f, sum);
    }
  }
  return true;
}

// ---------------------------------------------------------------------------
// The sweep

// Goodnight's (1979) sweep of one row, element by element: with b the row's
// column before the sweep and d = -1/b_row, each other element (i, j) gains
// c_i (|d| b_j), where c_i is b_i with the sign of -d; the column becomes
// |d| b and the pivot d.
bool QXSymBlockMatrix::Sweep(int row, double tol, const std::vector<double>& diag,
                             QXBitSet& swept) {
  const int n = nRows;
  if (!InRange(row, n) || tol <= 0.0 || swept.Size() < n || static_cast<int>(diag.size()) < n)
    return false;
  for (int i = 0; i < n; ++i) {
    if (diag[i] < 0.0) return false;
  }
  std::vector<double> b(n);
  for (int i = 0; i < n; ++i)
    b[i] = GetElem(i, row);
  const double p = b[row];
  const bool wasSwept = swept.IsIn(row);
  if (!wasSwept) {
    if (tol * diag[row] >= p) return false;
    // A row already in holds minus an element of the inverse on its diagonal;
    // the new pivot may not push it beyond the tolerance.
    for (int i = 0; i < n; ++i) {
      if (!swept.IsIn(i)) continue;
      const double q = GetElem(i, i) - (b[i] / p) * b[i];
      if (!((q * tol * diag[i]) > -1.0)) return false;
    }
  }
  const double d = -1.0 / p;
  const double s = std::fabs(d);
  std::vector<double> c(n), scaled(n);
  for (int i = 0; i < n; ++i) {
    scaled[i] = s * b[i];
    c[i] = d < 0.0 ? -b[i] : b[i];
  }
  // The row's own elements are updated with the rest and then overwritten.
  ForEachElement(*this, [&](int i, int j, double& e) { e += c[i] * scaled[j]; });
  for (int i = 0; i < n; ++i)
    SetElem(i, row, scaled[i]);
  SetElem(row, row, d);
  swept.Set(row, !wasSwept);
  return true;
}

int QXSymBlockMatrix::SweepBlock(int block, double tol, const std::vector<double>& diag,
                                 QXBitSet& swept) {
  if (!InRange(block, GetNBlocks()) || tol <= 0.0 || swept.Size() < nRows ||
      static_cast<int>(diag.size()) < nRows) {
    return -1;
  }
  for (int i = 0; i < nRows; ++i) {
    if (diag[i] < 0.0) return -1;
  }
  int count = 0;
  for (int row = starts[block]; row < starts[block] + sizes[block]; ++row) {
    if (Sweep(row, tol, diag, swept)) ++count;
  }
  return count;
}

// ---------------------------------------------------------------------------
// Display

void QXSymBlockMatrix::Display() const {
  using namespace QXDisplay_850;
  DisplayText(1, "QXSymBlockMatrix display start");
  DisplayI("Number of rows", nRows);
  DisplayI("Number of blocks", GetNBlocks());
  DisplayIV("Block sizes", sizes);
  for (int bi = 0; bi < GetNBlocks(); ++bi) {
    for (int bj = 0; bj < bi; ++bj) {
      DisplayText(1, "Block " + std::to_string(bi) + ", " + std::to_string(bj));
      offBlocks[OffIndex(bi, bj)].Display();
    }
    DisplayText(1, "Block " + std::to_string(bi) + ", " + std::to_string(bi));
    diagBlocks[bi].Display();
  }
  DisplayText(1, "QXSymBlockMatrix display end");
}

}  // namespace QXMath_850
