#include "qx/matrices/qxsymblockdiagmatrix.h"

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

inline double Largest(double a, double b) {
  return b > a ? b : a;
}
inline double Smallest(double a, double b) {
  return b < a ? b : a;
}

// Elements start..start+count-1 of v.
std::vector<double> Slice(const std::vector<double>& v, int start, int count) {
  return std::vector<double>(v.begin() + start, v.begin() + start + count);
}

}  // namespace

template <typename Dense, typename Diagonal>
void QXSymBlockDiagMatrix::ForEachBlock(Dense dense, Diagonal diagonal) const {
  for (int b = 0; b < nBlocks; ++b) {
    if (isDiagBlock.IsIn(b)) {
      diagonal(b, diagBlocks[blockPositions[b]], startIndices[b]);
    } else {
      dense(b, denseBlocks[blockPositions[b]], startIndices[b]);
    }
  }
}

template <typename Dense, typename Diagonal>
void QXSymBlockDiagMatrix::ForEachBlock(Dense dense, Diagonal diagonal) {
  for (int b = 0; b < nBlocks; ++b) {
    if (isDiagBlock.IsIn(b)) {
      diagonal(b, diagBlocks[blockPositions[b]], startIndices[b]);
    } else {
      dense(b, denseBlocks[blockPositions[b]], startIndices[b]);
    }
  }
}

// ---------------------------------------------------------------------------
// Construction and structure

QXSymBlockDiagMatrix::QXSymBlockDiagMatrix() : nRows(0), nBlocks(0), startIndices(1, 0) {}

QXSymBlockDiagMatrix::QXSymBlockDiagMatrix(const std::vector<int>& sizes, const QXBitSet& isDiag)
    : QXSymBlockDiagMatrix() {
  SetStructure(sizes, isDiag);
}

QXSymBlockDiagMatrix::QXSymBlockDiagMatrix(const std::vector<IQXSymMatrix*>& blocks)
    : QXSymBlockDiagMatrix() {
  std::size_t dense = 0, diagonal = 0;
  for (const IQXSymMatrix* m : blocks) {
    if (m == nullptr) continue;
    if (m->GetType() == 2) {
      const QXSymBlockDiagMatrix& b = static_cast<const QXSymBlockDiagMatrix&>(*m);
      dense += b.denseBlocks.size();
      diagonal += b.diagBlocks.size();
    } else if (m->GetType() == 1) {
      ++diagonal;
    } else {
      ++dense;
    }
  }
  denseBlocks.reserve(dense);
  diagBlocks.reserve(diagonal);
  for (const IQXSymMatrix* m : blocks) {
    if (m != nullptr) AddBlock(*m);
  }
}

QXSymBlockDiagMatrix::QXSymBlockDiagMatrix(const QXSymBlockDiagMatrix& other) = default;

QXSymBlockDiagMatrix& QXSymBlockDiagMatrix::operator=(const QXSymBlockDiagMatrix& other) {
  if (this == &other) return *this;
  nRows = other.nRows;
  nBlocks = other.nBlocks;
  denseBlocks = other.denseBlocks;
  diagBlocks = other.diagBlocks;
  blockSizes = other.blockSizes;
  isDiagBlock = other.isDiagBlock;
  startIndices = other.startIndices;
  blockPositions = other.blockPositions;
  rowBlocks = other.rowBlocks;
  return *this;
}

QXSymBlockDiagMatrix::~QXSymBlockDiagMatrix() = default;

void QXSymBlockDiagMatrix::ClearAll() {
  nRows = 0;
  nBlocks = 0;
  denseBlocks.clear();
  diagBlocks.clear();
  blockSizes.clear();
  isDiagBlock.Resize(0, false);
  startIndices.assign(1, 0);
  blockPositions.clear();
  rowBlocks.clear();
}

bool QXSymBlockDiagMatrix::SetStructure(const std::vector<int>& sizes, const QXBitSet& isDiag) {
  ClearAll();
  const int count = isDiag.Size();
  if (static_cast<int>(sizes.size()) < count) return false;
  for (int b = 0; b < count; ++b) {
    if (sizes[b] < 1) {
      ClearAll();
      return false;
    }
    try {
      if (isDiag.IsIn(b)) {
        AppendDiagonal(std::vector<double>(sizes[b], 0.0));
      } else {
        QXSymMatrix block;
        if (!block.Resize(sizes[b])) {
          ClearAll();
          return false;
        }
        AppendDense(block);
      }
    } catch (...) {
      ClearAll();
      return false;
    }
  }
  SetBlockIndicesForRow();
  return true;
}

bool QXSymBlockDiagMatrix::CopyStructure(QXSymBlockDiagMatrix& out) const {
  return out.SetStructure(blockSizes, isDiagBlock);
}

void QXSymBlockDiagMatrix::AppendDiagonal(const std::vector<double>& diag) {
  diagBlocks.push_back(diag);
  blockPositions.push_back(static_cast<int>(diagBlocks.size()) - 1);
  isDiagBlock.Append(true);
  blockSizes.push_back(static_cast<int>(diag.size()));
  nRows += static_cast<int>(diag.size());
  startIndices.push_back(nRows);
  ++nBlocks;
}

void QXSymBlockDiagMatrix::AppendDense(const QXSymMatrix& block) {
  denseBlocks.push_back(block);
  blockPositions.push_back(static_cast<int>(denseBlocks.size()) - 1);
  isDiagBlock.Append(false);
  blockSizes.push_back(block.GetNRows());
  nRows += block.GetNRows();
  startIndices.push_back(nRows);
  ++nBlocks;
}

void QXSymBlockDiagMatrix::SetBlockIndicesForRow() {
  if (nBlocks < 1) return;
  rowBlocks.resize(nRows);
  for (int b = 0; b < nBlocks; ++b) {
    for (int i = startIndices[b]; i < startIndices[b + 1]; ++i)
      rowBlocks[i] = b;
  }
}

int QXSymBlockDiagMatrix::AddBlock(const IQXSymMatrix& m) {
  if (m.GetNRows() < 1) return -1;
  switch (m.GetType()) {
    case 0:
      AppendDense(static_cast<const QXSymMatrix&>(m));
      break;
    case 1: {
      std::vector<double> diag;
      m.GetDiagonal(diag);
      AppendDiagonal(diag);
      break;
    }
    case 2: {
      const QXSymBlockDiagMatrix source(static_cast<const QXSymBlockDiagMatrix&>(m));
      source.ForEachBlock([this](int, const QXSymMatrix& block, int) { AppendDense(block); },
                          [this](int, const std::vector<double>& d, int) { AppendDiagonal(d); });
      break;
    }
    default:
      return -1;
  }
  SetBlockIndicesForRow();
  return nBlocks;
}

int QXSymBlockDiagMatrix::AddBlock(const std::vector<double>& diag) {
  if (diag.empty()) return -1;
  AppendDiagonal(diag);
  SetBlockIndicesForRow();
  return nBlocks;
}

bool QXSymBlockDiagMatrix::ReplaceBlock(int b, const std::vector<double>& diag) {
  if (!InRange(b, nBlocks) || diag.empty() || !isDiagBlock.IsIn(b) ||
      static_cast<int>(diag.size()) != blockSizes[b]) {
    return false;
  }
  diagBlocks[blockPositions[b]] = diag;
  return true;
}

bool QXSymBlockDiagMatrix::ReplaceBlock(int b, const IQXSymMatrix& m) {
  const int order = m.GetNRows();
  if (!InRange(b, nBlocks) || order < 1) return false;
  switch (m.GetType()) {
    case 0:
      if (isDiagBlock.IsIn(b) || order != blockSizes[b]) return false;
      denseBlocks[blockPositions[b]] = static_cast<const QXSymMatrix&>(m);
      return true;
    case 1:
      if (!isDiagBlock.IsIn(b) || order != blockSizes[b]) return false;
      m.GetDiagonal(diagBlocks[blockPositions[b]]);
      return true;
    case 2: {
      const QXSymBlockDiagMatrix source(static_cast<const QXSymBlockDiagMatrix&>(m));
      if (b + source.nBlocks > nBlocks) return false;
      for (int k = 0; k < source.nBlocks; ++k) {
        if (source.blockSizes[k] != blockSizes[b + k] ||
            source.isDiagBlock.IsIn(k) != isDiagBlock.IsIn(b + k)) {
          return false;
        }
      }
      source.ForEachBlock(
          [&](int k, const QXSymMatrix& block, int) { denseBlocks[blockPositions[b + k]] = block; },
          [&](int k, const std::vector<double>& d, int) { diagBlocks[blockPositions[b + k]] = d; });
      return true;
    }
    default:
      return false;
  }
}

// ---------------------------------------------------------------------------
// Queries

int QXSymBlockDiagMatrix::GetBlockSize(int b) const {
  return InRange(b, nBlocks) ? blockSizes[b] : -1;
}

int QXSymBlockDiagMatrix::GetBlockStartIndex(int b) const {
  return InRange(b, nBlocks) ? startIndices[b] : -1;
}

bool QXSymBlockDiagMatrix::GetIsBlockDiagonal(int b) const {
  return InRange(b, nBlocks) && isDiagBlock.IsIn(b);
}

bool QXSymBlockDiagMatrix::GetDiagonalBlock(int b, std::vector<double>*& block) {
  if (!GetIsBlockDiagonal(b)) return false;
  block = &diagBlocks[blockPositions[b]];
  return true;
}

bool QXSymBlockDiagMatrix::GetDiagonalBlock(int b, const std::vector<double>*& block) const {
  if (!GetIsBlockDiagonal(b)) return false;
  block = &diagBlocks[blockPositions[b]];
  return true;
}

bool QXSymBlockDiagMatrix::GetDenseBlock(int b, QXSymMatrix*& block) {
  if (!InRange(b, nBlocks) || isDiagBlock.IsIn(b)) return false;
  block = &denseBlocks[blockPositions[b]];
  return true;
}

bool QXSymBlockDiagMatrix::GetDenseBlock(int b, const QXSymMatrix*& block) const {
  if (!InRange(b, nBlocks) || isDiagBlock.IsIn(b)) return false;
  block = &denseBlocks[blockPositions[b]];
  return true;
}

bool QXSymBlockDiagMatrix::FindAbsBlockRelColIndex(int row, int& block, int& start, int& rel,
                                                   bool& isDiag) const {
  if (!InRange(row, nRows)) return false;
  block = rowBlocks[row];
  start = startIndices[block];
  rel = row - start;
  isDiag = isDiagBlock.IsIn(block);
  return true;
}

int QXSymBlockDiagMatrix::FindBlock(int i, int j, bool& isDiag, int& relRow, int& relCol) const {
  const int hi = i > j ? i : j;
  const int lo = i > j ? j : i;
  const int b = rowBlocks[hi];
  relCol = lo - startIndices[b];
  isDiag = isDiagBlock.IsIn(b);
  if (isDiag ? hi != lo : relCol < 0 || relCol >= blockSizes[b]) return -1;
  relRow = hi - startIndices[b];
  return blockPositions[b];
}

bool QXSymBlockDiagMatrix::GetIndexFirstInRow(int row, int& first) const {
  const double* data = nullptr;
  return GetIndexFirstInRow(row, first, data);
}

bool QXSymBlockDiagMatrix::GetIndexFirstInRow(int row, int& first, const double*& data) const {
  if (!InRange(row, nRows)) return false;
  bool isDiag = false;
  int rel = 0, relCol = 0;
  const int pos = FindBlock(row, row, isDiag, rel, relCol);
  if (isDiag) {
    first = row;
    data = &diagBlocks[pos][rel];
  } else {
    first = row - relCol;
    data = denseBlocks[pos].AsVectorConst().data() + internal::RowStart(rel);
  }
  return true;
}

bool QXSymBlockDiagMatrix::IsSameStructure(const IQXSymMatrix& m) const {
  if (m.GetType() != 2 || m.GetNRows() != nRows) return false;
  const QXSymBlockDiagMatrix& other = static_cast<const QXSymBlockDiagMatrix&>(m);
  if (other.nBlocks != nBlocks) return false;
  for (int b = 0; b < nBlocks; ++b) {
    if (other.blockSizes[b] != blockSizes[b] || other.isDiagBlock.IsIn(b) != isDiagBlock.IsIn(b))
      return false;
  }
  return true;
}

bool QXSymBlockDiagMatrix::FillDenseMatrix(QXSymMatrix& out) const {
  if (!out.SetNRows(nRows, true)) return false;
  ForEachBlock(
      [&out](int, const QXSymMatrix& block, int start) {
        for (int i = 0; i < block.GetNRows(); ++i) {
          for (int j = 0; j <= i; ++j)
            out.SetElem(start + i, start + j, block.GetElem(i, j));
        }
      },
      [&out](int, const std::vector<double>& d, int start) {
        for (std::size_t k = 0; k < d.size(); ++k)
          out.SetElem(start + static_cast<int>(k), start + static_cast<int>(k), d[k]);
      });
  return true;
}

// ---------------------------------------------------------------------------
// Element and row access

int QXSymBlockDiagMatrix::GetType() const {
  return 2;
}
int QXSymBlockDiagMatrix::GetNRows() const {
  return nRows;
}
bool QXSymBlockDiagMatrix::IsValidMatrix() const {
  return nRows >= 0;
}

double QXSymBlockDiagMatrix::GetElem(int row, int col) const {
  if (!InRange(row, nRows) || !InRange(col, nRows)) return 0.0;
  bool isDiag = false;
  int i = 0, j = 0;
  const int pos = FindBlock(row, col, isDiag, i, j);
  if (pos < 0) return 0.0;
  return isDiag ? diagBlocks[pos][i] : denseBlocks[pos].GetElem(i, j);
}

bool QXSymBlockDiagMatrix::SetElem(int row, int col, double value) {
  if (!InRange(row, nRows) || !InRange(col, nRows)) return false;
  bool isDiag = false;
  int i = 0, j = 0;
  const int pos = FindBlock(row, col, isDiag, i, j);
  if (pos < 0) return false;
  if (isDiag) {
    diagBlocks[pos][i] = value;
    return true;
  }
  return denseBlocks[pos].SetElem(i, j, value);
}

void QXSymBlockDiagMatrix::GetDiagonal(std::vector<double>& diag) const {
  diag.resize(nRows);
  std::vector<double> part;
  ForEachBlock(
      [&](int, const QXSymMatrix& block, int start) {
        block.GetDiagonal(part);
        for (std::size_t k = 0; k < part.size(); ++k)
          diag[start + k] = part[k];
      },
      [&](int, const std::vector<double>& d, int start) {
        for (std::size_t k = 0; k < d.size(); ++k)
          diag[start + k] = d[k];
      });
}

bool QXSymBlockDiagMatrix::GetRow(int row, std::vector<double>& out) const {
  int b = 0, start = 0, rel = 0;
  bool isDiag = false;
  if (!FindAbsBlockRelColIndex(row, b, start, rel, isDiag)) return false;
  out.assign(nRows, 0.0);
  if (isDiag) {
    out[row] = diagBlocks[blockPositions[b]][rel];
    return true;
  }
  std::vector<double> part;
  denseBlocks[blockPositions[b]].GetRow(rel, part);
  for (std::size_t k = 0; k < part.size(); ++k)
    out[start + k] = part[k];
  return true;
}

bool QXSymBlockDiagMatrix::PutRow(int row, const std::vector<double>& in) {
  int b = 0, start = 0, rel = 0;
  bool isDiag = false;
  if (static_cast<int>(in.size()) < nRows || !FindAbsBlockRelColIndex(row, b, start, rel, isDiag))
    return false;
  if (isDiag) {
    diagBlocks[blockPositions[b]][rel] = in[row];
    return true;
  }
  QXSymMatrix& block = denseBlocks[blockPositions[b]];
  for (int k = 0; k <= rel; ++k)
    block.SetElem(rel, k, in[start + k]);
  return true;
}

bool QXSymBlockDiagMatrix::SetRowColToConst(int row, double value) {
  int b = 0, start = 0, rel = 0;
  bool isDiag = false;
  if (!FindAbsBlockRelColIndex(row, b, start, rel, isDiag)) return false;
  if (isDiag) {
    diagBlocks[blockPositions[b]][rel] = value;
    return true;
  }
  return denseBlocks[blockPositions[b]].SetRowColToConst(rel, value);
}

bool QXSymBlockDiagMatrix::ZeroOut(int row) {
  return SetRowColToConst(row, 0.0);
}

void QXSymBlockDiagMatrix::ZeroOutNonDiag(double tol) {
  if (!(tol > 0.0)) return;
  for (QXSymMatrix& block : denseBlocks)
    block.ZeroOutNonDiag(tol);
}

bool QXSymBlockDiagMatrix::IncrVecByRow(int row, std::vector<double>& v, int offset, int count,
                                        double scale, bool check) const {
  if (check && (!InRange(row, nRows) || count <= 0 || count > nRows || offset < 0 ||
                static_cast<std::size_t>(offset) + count > v.size())) {
    return false;
  }
  int b = 0, start = 0, rel = 0;
  bool isDiag = false;
  if (!FindAbsBlockRelColIndex(row, b, start, rel, isDiag)) return false;
  const int end = startIndices[b + 1] < count ? startIndices[b + 1] : count;
  for (int k = start; k < end; ++k)
    v[offset + k] += scale * GetElem(row, k);
  return true;
}

bool QXSymBlockDiagMatrix::IsZeroRow(int row, const QXBitSet& columns) const {
  int b = 0, start = 0, rel = 0;
  bool isDiag = false;
  if (!FindAbsBlockRelColIndex(row, b, start, rel, isDiag)) return false;
  const int m = nRows < columns.Size() ? nRows : columns.Size();
  if (m < 1) return false;
  const int end = startIndices[b + 1] < m ? startIndices[b + 1] : m;
  for (int k = start; k < end; ++k) {
    if (columns.IsIn(k) && GetElem(row, k) != 0.0) return false;
  }
  return true;
}

// ---------------------------------------------------------------------------
// Whole-matrix operations, block by block

void QXSymBlockDiagMatrix::Clear() {
  for (QXSymMatrix& block : denseBlocks)
    block.Clear();
  for (std::vector<double>& d : diagBlocks) {
    for (double& x : d)
      x = 0.0;
  }
}

void QXSymBlockDiagMatrix::ChangeSign() {
  MultiplyByNumber(-1.0);
}

void QXSymBlockDiagMatrix::MultiplyByNumber(double factor) {
  for (QXSymMatrix& block : denseBlocks)
    block.MultiplyByNumber(factor);
  for (std::vector<double>& d : diagBlocks) {
    for (double& x : d)
      x *= factor;
  }
}

void QXSymBlockDiagMatrix::AddToDiagonal(double value) {
  for (QXSymMatrix& block : denseBlocks)
    block.AddToDiagonal(value);
  for (std::vector<double>& d : diagBlocks) {
    for (double& x : d)
      x += value;
  }
}

double QXSymBlockDiagMatrix::Trace() const {
  double sum = 0.0;
  ForEachBlock([&](int, const QXSymMatrix& block, int) { sum += block.Trace(); },
               [&](int, const std::vector<double>& d, int) {
                 for (double x : d)
                   sum += x;
               });
  return sum;
}

void QXSymBlockDiagMatrix::MaxMinDiag(double& largest, double& smallest) const {
  if (nRows < 1) return;
  double hi = -1.7976931348623157e+308, lo = 1.7976931348623157e+308;
  ForEachBlock(
      [&](int, const QXSymMatrix& block, int) {
        double bh = hi, bl = lo;
        block.MaxMinDiag(bh, bl);
        hi = Largest(hi, bh);
        lo = Smallest(lo, bl);
      },
      [&](int, const std::vector<double>& d, int) {
        for (double x : d) {
          hi = Largest(hi, x);
          lo = Smallest(lo, x);
        }
      });
  largest = hi;
  smallest = lo;
}

void QXSymBlockDiagMatrix::MaxMinDiagOffDiag(double& largestDiag, double& smallestDiag,
                                             double& largestOff, double& smallestOff) const {
  if (nRows < 1) return;
  MaxMinDiag(largestDiag, smallestDiag);
  double hi = -1.7976931348623157e+308, lo = 1.7976931348623157e+308;
  for (const QXSymMatrix& block : denseBlocks) {
    double dh = 0.0, dl = 0.0, oh = hi, ol = lo;
    block.MaxMinDiagOffDiag(dh, dl, oh, ol);
    hi = Largest(hi, oh);
    lo = Smallest(lo, ol);
  }
  largestOff = hi;
  smallestOff = lo;
}

namespace {

// Applies a product of the factor with its transpose block by block: the
// dense blocks by `product`, the diagonal ones by squaring their elements.
void MultiplyOutFactor(std::vector<QXSymMatrix>& dense, std::vector<std::vector<double>>& diagonal,
                       void (QXSymMatrix::*product)()) {
  for (QXSymMatrix& block : dense)
    (block.*product)();
  for (std::vector<double>& d : diagonal) {
    for (double& x : d)
      x = x * x;
  }
}

}  // namespace

void QXSymBlockDiagMatrix::LTLTransL() {
  MultiplyOutFactor(denseBlocks, diagBlocks, &QXSymMatrix::LTLTransL);
}

void QXSymBlockDiagMatrix::LTLLTrans() {
  MultiplyOutFactor(denseBlocks, diagBlocks, &QXSymMatrix::LTLLTrans);
}

bool QXSymBlockDiagMatrix::Resize(int /*nRows*/) {
  return false;
}

bool QXSymBlockDiagMatrix::SetNRows(int /*nRows*/, bool /*clear*/) {
  return false;
}

bool QXSymBlockDiagMatrix::ComputeAXpY(double a, const IQXSymMatrix& x) {
  if (x.GetNRows() != nRows) return false;
  if (x.GetType() == 1) {
    std::vector<double> xd;
    x.GetDiagonal(xd);
    for (int i = 0; i < nRows; ++i)
      SetElem(i, i, GetElem(i, i) + a * xd[i]);
    return true;
  }
  if (!IsSameStructure(x)) return false;
  const QXSymBlockDiagMatrix& other = static_cast<const QXSymBlockDiagMatrix&>(x);
  for (std::size_t k = 0; k < denseBlocks.size(); ++k)
    denseBlocks[k].ComputeAXpY(a, other.denseBlocks[k]);
  for (std::size_t k = 0; k < diagBlocks.size(); ++k) {
    for (std::size_t i = 0; i < diagBlocks[k].size(); ++i)
      diagBlocks[k][i] += a * other.diagBlocks[k][i];
  }
  return true;
}

// ---------------------------------------------------------------------------
// Factorization, block by block

void QXSymBlockDiagMatrix::GetNCheckDiagonal(std::vector<double>& diag, double lower,
                                             double replacement) const {
  diag.resize(nRows);
  std::vector<double> part;
  ForEachBlock(
      [&](int, const QXSymMatrix& block, int start) {
        block.GetNCheckDiagonal(part, lower, replacement);
        for (std::size_t k = 0; k < part.size(); ++k)
          diag[start + k] = part[k];
      },
      [&](int, const std::vector<double>& d, int start) {
        for (std::size_t k = 0; k < d.size(); ++k)
          diag[start + k] = d[k] < lower ? replacement : d[k];
      });
}

namespace {

// A diagonal block's share of LTChol: element k against ref[k], k counted
// inside the block; accept(k) for each accepted element.
template <typename Accept>
int FactorDiagonalBlock(std::vector<double>& d, const std::vector<double>& ref, double tol,
                        Accept accept) {
  int redundant = 0;
  for (std::size_t k = 0; k < d.size(); ++k) {
    if (d[k] > tol * ref[k]) {
      d[k] = std::sqrt(d[k]);
      accept(static_cast<int>(k));
    } else {
      d[k] = 0.0;
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

int QXSymBlockDiagMatrix::LTChol(const std::vector<double>& diag, double tol, bool check) {
  if (check && (tol < 0.0 || BadReference(diag, nRows))) return -1;
  int redundant = 0;
  ForEachBlock(
      [&](int b, QXSymMatrix& block, int start) {
        redundant += block.LTChol(Slice(diag, start, blockSizes[b]), tol, check);
      },
      [&](int, std::vector<double>& d, int) {
        redundant += FactorDiagonalBlock(d, diag, tol, [](int) {});
      });
  return redundant;
}

int QXSymBlockDiagMatrix::LTChol(const std::vector<double>& diag, double tol,
                                 QXBitSet& nonRedundant, bool check) {
  if (nonRedundant.Size() < nRows) {
    nonRedundant.Resize(nRows, false);
  } else {
    nonRedundant.Clear();
  }
  if (check && (tol < 0.0 || BadReference(diag, nRows))) return -1;
  int redundant = 0;
  ForEachBlock(
      [&](int b, QXSymMatrix& block, int start) {
        QXBitSet kept(blockSizes[b]);
        redundant += block.LTChol(Slice(diag, start, blockSizes[b]), tol, kept, check);
        for (int k = 0; k < blockSizes[b]; ++k)
          nonRedundant.Set(start + k, kept.IsIn(k));
      },
      [&](int, std::vector<double>& d, int start) {
        redundant +=
            FactorDiagonalBlock(d, diag, tol, [&](int k) { nonRedundant.Set(start + k, true); });
      });
  return redundant;
}

int QXSymBlockDiagMatrix::LTChol(double tol, double& minPivot, bool check) {
  minPivot = QXMV::Missing();
  std::vector<double> diag;
  GetNCheckDiagonal(diag, tol, 1.0);
  const int r = LTChol(diag, tol, check);
  if (r >= 0 && nRows > 0) {
    double largest = 0.0;
    MaxMinDiag(largest, minPivot);
  }
  return r;
}

int QXSymBlockDiagMatrix::CholInverse(const std::vector<double>& diag, double tol,
                                      IQXSymMatrix& inverse) const {
  return internal::FactorAndInvert(*this, 2, inverse, [&](QXSymBlockDiagMatrix& target) {
    return target.LTChol(diag, tol, false);
  });
}

int QXSymBlockDiagMatrix::CholInverse(const std::vector<double>& diag, double tol,
                                      IQXSymMatrix& inverse, QXBitSet& nonRedundant) const {
  return internal::FactorAndInvert(*this, 2, inverse, [&](QXSymBlockDiagMatrix& target) {
    return target.LTChol(diag, tol, nonRedundant, false);
  });
}

int QXSymBlockDiagMatrix::CholInverse(const std::vector<double>& diag, double tol,
                                      IQXSymMatrix& inverse, double& minPivot) const {
  minPivot = QXMV::Missing();
  return internal::FactorAndInvert(*this, 2, inverse, [&](QXSymBlockDiagMatrix& target) {
    const int r = target.LTChol(diag, tol, false);
    if (r >= 0 && target.GetNRows() > 0) {
      double largest = 0.0;
      target.MaxMinDiag(largest, minPivot);
    }
    return r;
  });
}

// Digits of job as in LINPACK: job % 10 asks for the determinant of L, job /
// 10 for its inverse in place. A block with an exact zero on its diagonal
// adds its zeros to the result and, having no determinant, leaves (0, 0).
int QXSymBlockDiagMatrix::LTDetInverse(double* det, int job) {
  const bool wantDet = job % 10 != 0 && det != nullptr;
  const bool wantInverse = job / 10 != 0;
  double pair[2] = {1.0, 0.0};
  int zeros = 0;
  ForEachBlock(
      [&](int, QXSymMatrix& block, int) {
        double part[2] = {1.0, 0.0};
        const int r = block.LTDetInverse(part, job);
        if (r == 0 && wantDet) {
          pair[0] = pair[0] * part[0];
          pair[1] = pair[1] + part[1];
          internal::RenormalizeDeterminant(pair);
        }
        if (r > 0) zeros += r;
      },
      [&](int, std::vector<double>& d, int) {
        double part[2] = {1.0, 0.0};
        int blockZeros = 0;
        for (double& x : d) {
          if (x == 0.0) {
            ++blockZeros;
            continue;
          }
          if (blockZeros == 0 && wantDet) {
            part[0] = x * part[0];
            internal::RenormalizeDeterminant(part);
          }
          if (wantInverse) x = 1.0 / x;
        }
        if (blockZeros == 0 && wantDet) {
          pair[0] = pair[0] * part[0];
          pair[1] = pair[1] + part[1];
          internal::RenormalizeDeterminant(pair);
        }
        zeros += blockZeros;
      });
  if (wantDet) {
    det[0] = zeros == 0 ? pair[0] : 0.0;
    det[1] = zeros == 0 ? pair[1] : 0.0;
  }
  return zeros;
}

bool QXSymBlockDiagMatrix::LTInverse() {
  double det[2] = {0.0, 0.0};
  LTDetInverse(det, 10);
  LTLTransL();
  return true;
}

int QXSymBlockDiagMatrix::LTSolve(const std::vector<double>& b, double tol,
                                  std::vector<double>& x) {
  if (!(tol > 0.0) || static_cast<int>(b.size()) < nRows) return -1;
  x.resize(nRows);
  int redundant = 0;
  std::vector<double> part;
  ForEachBlock(
      [&](int k, QXSymMatrix& block, int start) {
        redundant += block.LTSolve(Slice(b, start, blockSizes[k]), tol, part);
        for (int i = 0; i < blockSizes[k]; ++i)
          x[start + i] = part[i];
      },
      [&](int, std::vector<double>& d, int start) {
        for (std::size_t i = 0; i < d.size(); ++i) {
          if (d[i] == 0.0) {
            x[start + i] = 0.0;
            ++redundant;
          } else {
            x[start + i] = b[start + i] / d[i];
          }
        }
      });
  return redundant;
}

// All diagonal blocks first, then the dense ones, so that an exact zero in a
// diagonal block answers before any dense block is factored.
bool QXSymBlockDiagMatrix::ComputeDeterminant(double tol, double* det) const {
  if (det == nullptr) return false;
  det[0] = 1.0;
  det[1] = 0.0;
  for (const std::vector<double>& d : diagBlocks) {
    for (double x : d) {
      det[0] = x * det[0];
      if (det[0] == 0.0) {
        det[1] = 0.0;
        return true;
      }
      internal::RenormalizeDeterminant(det);
    }
  }
  for (const QXSymMatrix& block : denseBlocks) {
    double part[2] = {1.0, 0.0};
    if (!block.ComputeDeterminant(tol, part)) return false;
    if (part[0] == 0.0) {
      det[0] = 0.0;
      det[1] = 0.0;
      return true;
    }
    det[0] = det[0] * part[0];
    det[1] = det[1] + part[1];
    internal::RenormalizeDeterminant(det);
  }
  return true;
}

// ---------------------------------------------------------------------------
// Row dots and forms: a row is non-zero only over its block

double QXSymBlockDiagMatrix::ComputeDotProduct2Rows(int row1, int row2) const {
  if (!InRange(row1, nRows) || !InRange(row2, nRows)) return QXMV::Missing();
  bool isDiag = false;
  int i = 0, j = 0;
  const int pos = FindBlock(row1, row2, isDiag, i, j);
  if (pos < 0) return 0.0;
  if (isDiag) return diagBlocks[pos][i] * diagBlocks[pos][i];
  const int start = row1 > row2 ? row1 - i : row2 - i;
  return denseBlocks[pos].ComputeDotProduct2Rows(row1 - start, row2 - start);
}

double QXSymBlockDiagMatrix::ComputeRVD(int row, const double* v, int stride) const {
  int b = 0, start = 0, rel = 0;
  bool isDiag = false;
  if (!FindAbsBlockRelColIndex(row, b, start, rel, isDiag)) return 0.0;
  if (isDiag) return v[static_cast<long>(row) * stride] * diagBlocks[blockPositions[b]][rel];
  return denseBlocks[blockPositions[b]].ComputeRVD(rel, v + static_cast<long>(start) * stride,
                                                   stride);
}

double QXSymBlockDiagMatrix::ComputeRVD(int row, const std::vector<double>& v, int stride) const {
  return ComputeRVD(row, v.data(), stride);
}

double QXSymBlockDiagMatrix::ComputeRowDotProductS(int row, const IQXSymMatrix& s,
                                                   int otherRow) const {
  int b = 0, start = 0, rel = 0;
  bool isDiag = false;
  if (s.GetNRows() != nRows || !InRange(otherRow, nRows) ||
      !FindAbsBlockRelColIndex(row, b, start, rel, isDiag)) {
    return 0.0;
  }
  double sum = 0.0;
  for (int k = start; k < startIndices[b + 1]; ++k)
    sum = sum + GetElem(row, k) * s.GetElem(otherRow, k);
  return sum;
}

double QXSymBlockDiagMatrix::ComputeRowDotProductS(int row, const std::vector<double>& packed,
                                                   int otherRow) const {
  int b = 0, start = 0, rel = 0;
  bool isDiag = false;
  if (packed.size() != internal::PackedSize(nRows) || !InRange(otherRow, nRows) ||
      !FindAbsBlockRelColIndex(row, b, start, rel, isDiag)) {
    return 0.0;
  }
  double sum = 0.0;
  for (int k = start; k < startIndices[b + 1]; ++k)
    sum = sum + GetElem(row, k) * packed[internal::PackedIndex(otherRow, k)];
  return sum;
}

double QXSymBlockDiagMatrix::ComputeVSW(const double* v, int vStride, const double* w,
                                        int wStride) const {
  double sum = 0.0;
  for (int i = 0; i < nRows; ++i)
    sum = sum + ComputeRVD(i, v, vStride) * w[static_cast<long>(i) * wStride];
  return sum;
}

double QXSymBlockDiagMatrix::ComputeVSW(const std::vector<double>& v,
                                        const std::vector<double>& w) const {
  if (static_cast<int>(v.size()) != nRows || static_cast<int>(w.size()) != nRows) return 0.0;
  return ComputeVSW(v.data(), 1, w.data(), 1);
}

double QXSymBlockDiagMatrix::ComputeVSW(const std::vector<double>& v, int first, int last,
                                        int other) const {
  return internal::SymVSWStretch(*this, v, first, last, other);
}

double QXSymBlockDiagMatrix::ComputeVSV(const std::vector<double>& v) const {
  if (static_cast<int>(v.size()) != nRows) return QXMV::Missing();
  return ComputeVSW(v.data(), 1, v.data(), 1);
}

double QXSymBlockDiagMatrix::ComputeVSV(const IQXRectMatrix& r, int row) const {
  if (r.GetNCols() != nRows || !InRange(row, r.GetNRows())) return 0.0;
  std::vector<double> v;
  internal::RectRow(r, row, v);
  return ComputeVSW(v.data(), 1, v.data(), 1);
}

double QXSymBlockDiagMatrix::ComputeVSWParts(const double* v, int vCount, const double* w,
                                             int wCount) const {
  return internal::SymVSWParts(*this, v, vCount, w, wCount);
}

double QXSymBlockDiagMatrix::ComputeVSWParts(const std::vector<double>& v, int vCount,
                                             const std::vector<double>& w, int wCount) const {
  if (vCount > static_cast<int>(v.size())) vCount = static_cast<int>(v.size());
  if (wCount > static_cast<int>(w.size())) wCount = static_cast<int>(w.size());
  return internal::SymVSWParts(*this, v.data(), vCount, w.data(), wCount);
}

// ---------------------------------------------------------------------------
// Products with vectors, block by block

namespace {

// out = the block-wise product with v: a diagonal block scales its rows, a
// dense block runs product(block, slice, result) on its own rows.
template <typename Product>
bool BlockwiseVectorProduct(const QXSymBlockDiagMatrix& m, const std::vector<double>& v,
                            std::vector<double>& out, Product product) {
  const int n = m.GetNRows();
  if (static_cast<int>(v.size()) != n) return false;
  std::vector<double> result(n), part;
  for (int b = 0; b < m.GetNBlocks(); ++b) {
    const int start = m.GetBlockStartIndex(b);
    const int size = m.GetBlockSize(b);
    const std::vector<double>* d = nullptr;
    const QXSymMatrix* block = nullptr;
    if (m.GetDiagonalBlock(b, d)) {
      for (int k = 0; k < size; ++k)
        result[start + k] = v[start + k] * (*d)[k];
    } else if (m.GetDenseBlock(b, block)) {
      product(*block, Slice(v, start, size), part);
      for (int k = 0; k < size; ++k)
        result[start + k] = part[k];
    }
  }
  out.swap(result);
  return true;
}

// The full vector of a sparse one: value k at row index[k].
bool Scatter(const std::vector<int>& index, const std::vector<double>& v, int n,
             std::vector<double>& full) {
  if (index.size() != v.size()) return false;
  full.assign(n, 0.0);
  for (std::size_t k = 0; k < index.size(); ++k) {
    if (!InRange(index[k], n)) return false;
    full[index[k]] += v[k];
  }
  return true;
}

}  // namespace

bool QXSymBlockDiagMatrix::ComputeSV(const std::vector<double>& v, std::vector<double>& out) const {
  return BlockwiseVectorProduct(*this, v, out,
                                [](const QXSymMatrix& block, const std::vector<double>& x,
                                   std::vector<double>& y) { block.ComputeSV(x, y); });
}

bool QXSymBlockDiagMatrix::ComputeSV(int firstRow, const std::vector<double>& v,
                                     std::vector<double>& out) const {
  if (firstRow < 0 || firstRow > nRows || !ComputeSV(v, out)) return false;
  for (int i = 0; i < firstRow; ++i)
    out[i] = 0.0;
  return true;
}

bool QXSymBlockDiagMatrix::ComputeLV(const std::vector<double>& v, std::vector<double>& out) const {
  return BlockwiseVectorProduct(*this, v, out,
                                [](const QXSymMatrix& block, const std::vector<double>& x,
                                   std::vector<double>& y) { block.ComputeLV(x, y); });
}

bool QXSymBlockDiagMatrix::ComputeLTransV(const std::vector<double>& v,
                                          std::vector<double>& out) const {
  return BlockwiseVectorProduct(*this, v, out,
                                [](const QXSymMatrix& block, const std::vector<double>& x,
                                   std::vector<double>& y) { block.ComputeLTransV(x, y); });
}

bool QXSymBlockDiagMatrix::ComputeLV(const std::vector<int>& index, const std::vector<double>& v,
                                     std::vector<double>& out) const {
  std::vector<double> full;
  return Scatter(index, v, nRows, full) && ComputeLV(full, out);
}

bool QXSymBlockDiagMatrix::ComputeLTransV(const std::vector<int>& index,
                                          const std::vector<double>& v,
                                          std::vector<double>& out) const {
  std::vector<double> full;
  return Scatter(index, v, nRows, full) && ComputeLTransV(full, out);
}

bool QXSymBlockDiagMatrix::ComputeRTransSV(const IQXRectMatrix& r, const std::vector<double>& v,
                                           std::vector<double>& out) const {
  return internal::SymRTransSV(*this, r, v, out);
}

// ---------------------------------------------------------------------------
// Products with matrices: only their mathematical result is fixed

bool QXSymBlockDiagMatrix::ComputeRS(const IQXRectMatrix& r, IQXRectMatrix& out) const {
  return internal::SymRS(*this, r, out);
}

bool QXSymBlockDiagMatrix::ComputeRTransS(const IQXRectMatrix& r, IQXRectMatrix& out) const {
  return internal::SymRTransS(*this, r, out);
}

bool QXSymBlockDiagMatrix::ComputeRTransSR(const IQXRectMatrix& r, IQXSymMatrix& out) const {
  return internal::SymRTransSR(*this, r, out);
}

// Through R^T: a dense copy of r, transposed, goes to ComputeRTransSR.
bool QXSymBlockDiagMatrix::ComputeRSRTrans(const IQXRectMatrix& r, IQXSymMatrix& out) const {
  if (r.GetNCols() != nRows) return false;
  QXRectMatrix copy(r.GetNRows(), r.GetNCols(), true);
  std::vector<double> row;
  for (int i = 0; i < r.GetNRows(); ++i) {
    r.GetRow(i, row);
    for (int j = 0; j < r.GetNCols(); ++j)
      copy.SetElem(i, j, row[j]);
  }
  copy.Transpose();
  return ComputeRTransSR(copy, out);
}

// Element (i, j) is the dot of row i of this matrix with row j of m, over
// the block of row i.
bool QXSymBlockDiagMatrix::ComputeSS(const IQXSymMatrix& m, IQXRectMatrix& out) const {
  if (out.GetMatrixType() != 0 || m.GetNRows() < nRows) return false;
  QXRectMatrix result(nRows, nRows, true);
  if (!result.IsValidMatrix()) return false;
  for (int i = 0; i < nRows; ++i) {
    const int b = rowBlocks[i];
    for (int j = 0; j < nRows; ++j) {
      double sum = 0.0;
      for (int k = startIndices[b]; k < startIndices[b + 1]; ++k)
        sum = sum + GetElem(i, k) * m.GetElem(j, k);
      result.SetElem(i, j, sum);
    }
  }
  static_cast<QXRectMatrix&>(out) = result;
  return out.IsValidMatrix();
}

bool QXSymBlockDiagMatrix::ComputeSTransS(IQXSymMatrix& out) const {
  return internal::SymSTransS(*this, out);
}

bool QXSymBlockDiagMatrix::ComputeGSG(const IQXSymMatrix& s, IQXSymMatrix& out) const {
  return internal::SymGSG(*this, s, out);
}

bool QXSymBlockDiagMatrix::ComputeGMG(const std::vector<double>& g, QXSymMatrix& out) const {
  return internal::SymGMG(*this, g, out);
}

bool QXSymBlockDiagMatrix::ComputeMGN(const IQXSymMatrix& /*g*/, const IQXSymMatrix& /*n*/,
                                      IQXSymMatrix& /*out*/) const {
  return false;
}

bool QXSymBlockDiagMatrix::ComputeGMGNG(const IQXSymMatrix& m, const IQXSymMatrix& n,
                                        IQXSymMatrix& out, std::vector<double>& work) const {
  return internal::SymGMGNG(*this, m, n, out, work);
}

bool QXSymBlockDiagMatrix::ComputeLSLTrans(const IQXSymMatrix& s, IQXSymMatrix& out) const {
  return internal::SymLSLTrans(*this, s, out);
}

bool QXSymBlockDiagMatrix::ComputeLTransSL(const IQXSymMatrix& s, IQXSymMatrix& out,
                                           int blocks) const {
  return internal::SymLTransSL(*this, s, out, blocks);
}

double QXSymBlockDiagMatrix::TraceOfProduct(const IQXSymMatrix& s) const {
  return internal::SymTraceOfProduct(*this, s);
}

double QXSymBlockDiagMatrix::TraceOfProductOfThree(const IQXSymMatrix& s,
                                                   const IQXSymMatrix& t) const {
  return internal::SymTraceOfProductOfThree(*this, s, t);
}

// ---------------------------------------------------------------------------
// Extraction

bool QXSymBlockDiagMatrix::ExtractFirstNRows(IQXSymMatrix& out) const {
  if (&out == this) {
    const QXSymBlockDiagMatrix copy(*this);
    return copy.ExtractFirstNRows(out);
  }
  if (nRows < 2) return out.SetNRows(0, true);
  const int m = nRows - 1;
  switch (out.GetType()) {
    case 1: {
      if (!denseBlocks.empty()) return false;
      std::vector<double> diag;
      GetDiagonal(diag);
      if (!out.SetNRows(m, true)) return false;
      for (int i = 0; i < m; ++i)
        out.SetElem(i, i, diag[i]);
      return true;
    }
    case 2: {
      QXSymBlockDiagMatrix& target = static_cast<QXSymBlockDiagMatrix&>(out);
      target.ClearAll();
      const int last = nBlocks - 1;
      ForEachBlock(
          [&](int b, const QXSymMatrix& block, int) {
            if (b < last) {
              target.AppendDense(block);
            } else if (block.GetNRows() > 1) {
              QXSymMatrix shorter;
              block.ExtractFirstNRows(shorter);
              target.AppendDense(shorter);
            }
          },
          [&](int b, const std::vector<double>& d, int) {
            if (b < last) {
              target.AppendDiagonal(d);
            } else if (d.size() > 1) {
              target.AppendDiagonal(std::vector<double>(d.begin(), d.end() - 1));
            }
          });
      target.SetBlockIndicesForRow();
      return true;
    }
    case 0: {
      QXSymMatrix full;
      if (!FillDenseMatrix(full)) return false;
      return full.ExtractFirstNRows(out);
    }
    default:
      return false;
  }
}

bool QXSymBlockDiagMatrix::ExtractSubmatrix(const std::vector<int>& rows, IQXSymMatrix& out) const {
  const int k = static_cast<int>(rows.size());
  if (k > nRows) return false;
  for (int a = 0; a < k; ++a) {
    if (!InRange(rows[a], nRows) || (a > 0 && rows[a] <= rows[a - 1])) return false;
  }
  if (&out == this) {
    const QXSymBlockDiagMatrix copy(*this);
    return copy.ExtractSubmatrix(rows, out);
  }
  // The selected rows of each block, relative to its start.
  std::vector<std::vector<int>> chosen(nBlocks);
  for (int row : rows)
    chosen[rowBlocks[row]].push_back(row - startIndices[rowBlocks[row]]);
  switch (out.GetType()) {
    case 1: {
      for (int b = 0; b < nBlocks; ++b) {
        if (isDiagBlock.IsIn(b)) continue;
        const QXSymMatrix& block = denseBlocks[blockPositions[b]];
        for (std::size_t x = 0; x < chosen[b].size(); ++x) {
          for (std::size_t y = 0; y < x; ++y) {
            if (block.GetElem(chosen[b][x], chosen[b][y]) != 0.0) return false;
          }
        }
      }
      if (!out.SetNRows(k, true)) return false;
      for (int a = 0; a < k; ++a)
        out.SetElem(a, a, GetElem(rows[a], rows[a]));
      return true;
    }
    case 2: {
      QXSymBlockDiagMatrix& target = static_cast<QXSymBlockDiagMatrix&>(out);
      target.ClearAll();
      for (int b = 0; b < nBlocks; ++b) {
        if (chosen[b].empty()) continue;
        if (isDiagBlock.IsIn(b)) {
          std::vector<double> values;
          for (int r : chosen[b])
            values.push_back(diagBlocks[blockPositions[b]][r]);
          target.AppendDiagonal(values);
        } else {
          QXSymMatrix part;
          denseBlocks[blockPositions[b]].ExtractSubmatrix(chosen[b], part);
          target.AppendDense(part);
        }
      }
      target.SetBlockIndicesForRow();
      return true;
    }
    case 0: {
      if (!out.SetNRows(k, true)) return false;
      for (int a = 0; a < k; ++a) {
        for (int c = 0; c <= a; ++c)
          out.SetElem(a, c, GetElem(rows[a], rows[c]));
      }
      return true;
    }
    default:
      return false;
  }
}

// ---------------------------------------------------------------------------
// Display

void QXSymBlockDiagMatrix::Display() const {
  using namespace QXDisplay_850;
  DisplayText(1, "Lower triangular of QXSymBlockDiagMatrix display start");
  DisplayI("Number of rows", nRows);
  DisplayI("Number of columns", nRows);
  DisplayI("Number of blocks", nBlocks);
  DisplayIV("Block sizes", blockSizes);
  DisplayIV("Block indices", blockPositions);
  DisplayIV("Start Indices", startIndices);
  DisplayIV("Block indices for each row", rowBlocks);
  std::vector<double> row;
  for (int i = 0; i < nRows; ++i) {
    GetRow(i, row);
    internal::DisplayFullRow(i, row.data(), i + 1);
  }
  DisplayText(1, "QXSymBlockDiagMatrix display end");
}

void QXSymBlockDiagMatrix::DisplayF() const {
  using namespace QXDisplay_850;
  DisplayText(1, "QXSymBlockDiagMatrix display start");
  DisplayI("Number of rows", nRows);
  DisplayI("Number of columns", nRows);
  DisplayI("Number of blocks", nBlocks);
  std::vector<double> row;
  for (int i = 0; i < nRows; ++i) {
    GetRow(i, row);
    internal::DisplayFullRow(i, row.data(), nRows);
  }
  DisplayText(1, "QXSymBlockDiagMatrix display end");
}

}  // namespace QXMath_850
