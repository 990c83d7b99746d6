#ifndef QX_MATRICES_QXSYMBLOCKMATRIX_H
#define QX_MATRICES_QXSYMBLOCKMATRIX_H

#include <vector>

#include "qx/foundation/qxexport.h"
#include "qx/matrices/qxbitset.h"
#include "qx/matrices/qxrectmatrix.h"
#include "qx/matrices/qxsymmatrix.h"

namespace QXMath_850 {

// A symmetric matrix of q by q blocks whose elements are themselves
// matrices: block (I, I) is a QXSymMatrix of order m_I, block (I, J) below
// the diagonal a QXRectMatrix of m_I by m_J, and the blocks above are the
// transposes of those below and aren't stored. Multivariate and mixed-model
// components keep such covariances in it, addressed by block: for q
// responses with m coefficients each, block (I, J) is the covariance of
// response I's coefficients with response J's, often sigma_IJ A (see
// SetKronecker). They build it block by block or from one dense matrix,
// read single blocks or elements, and multiply, combine and sweep it.
//
// Invariants: every block size is at least 1, the blocks have the sizes of
// their block row and column, and the order is the sum of the sizes. Each
// element of the matrix is stored once, as in the packed dense matrix. A
// failed allocation leaves the order -1 and no blocks.
//
// Choices:
// - Not an IQXSymMatrix: it has no type tag of its own, and the dense
//   algebra reaches it through ToSymMatrix and FromSymMatrix, while the
//   operations here are the ones that gain from knowing the blocks.
// - Every operation here takes the elements in the order the dense
//   QXSymMatrix takes them (S v by columns, the bilinear form by rows, the
//   sweep element by element), so that both agree to the bit on the same
//   numbers. Speed comes from reading whole block rows, never from another
//   order of a sum.
// - Element and block access is checked; out of range reads give 0.0 or
//   null and writes false.
class QXCOMMON_API QXSymBlockMatrix {
 public:
  QXSymBlockMatrix();
  // Zero blocks of the given sizes; nBlocks blocks of one size.
  explicit QXSymBlockMatrix(const std::vector<int>& sizes);
  QXSymBlockMatrix(int nBlocks, int blockSize);

  // Structure. SetBlockSizes zeroes everything; false, with nothing changed,
  // for a size below 1. An empty list gives the empty matrix.
  bool SetBlockSizes(const std::vector<int>& sizes);
  int GetNBlocks() const { return static_cast<int>(sizes.size()); }
  int GetNRows() const { return nRows; }
  bool IsValidMatrix() const;
  const std::vector<int>& GetBlockSizes() const { return sizes; }
  // -1 for a bad block.
  int GetBlockSize(int block) const;
  int GetBlockStart(int block) const;

  // Blocks. The stored ones by pointer (null for a bad block, and for the
  // off-diagonal form unless blockRow > blockCol); SetBlock writes any block,
  // an upper one given untransposed, and is false unless r has the block's
  // shape; GetBlock copies any block out as a full matrix.
  QXSymMatrix* GetDiagBlock(int block);
  const QXSymMatrix* GetDiagBlock(int block) const;
  QXRectMatrix* GetOffDiagBlock(int blockRow, int blockCol);
  const QXRectMatrix* GetOffDiagBlock(int blockRow, int blockCol) const;
  bool SetDiagBlock(int block, const QXSymMatrix& s);
  bool SetBlock(int blockRow, int blockCol, const QXRectMatrix& r);
  bool GetBlock(int blockRow, int blockCol, QXRectMatrix& out) const;

  // Elements, by row and column of the whole matrix or within a block.
  double GetElem(int row, int col) const;
  double GetElem(int blockRow, int blockCol, int i, int j) const;
  bool SetElem(int row, int col, double value);

  // Conversions. ToSymMatrix gives out this matrix's order, with the block
  // view of the dense class when all blocks have one size; FromSymMatrix
  // takes s's elements in blocks of the given sizes, false unless they add
  // up to s's order.
  bool ToSymMatrix(QXSymMatrix& out) const;
  bool FromSymMatrix(const QXSymMatrix& s, const std::vector<int>& sizes);
  // This matrix becomes sigma (x) a: q = sigma's order blocks of a's order,
  // block (I, J) being sigma_IJ a. False if either is empty.
  bool SetKronecker(const QXSymMatrix& sigma, const QXSymMatrix& a);

  // Whole-matrix operations. ComputeAXpY (this += a x) needs the same block
  // sizes.
  void Clear();
  void MultiplyByNumber(double factor);
  double Trace() const;
  bool ComputeAXpY(double a, const QXSymBlockMatrix& x);

  // Products. out = S v; the bilinear form sum over rows i of (sum over
  // columns j of v_j a_ij) w_i, 0.0 for vectors not of the order; out =
  // R^T S R of order cols(r), r having n rows; and for blocks of one size m,
  // out = sum over I, J of c_I c_J S_IJ of order m, the covariance of the
  // combination c of the q responses (R^T S R with R = c (x) I_m).
  bool ComputeSV(const std::vector<double>& v, std::vector<double>& out) const;
  double ComputeVSW(const std::vector<double>& v, const std::vector<double>& w) const;
  double ComputeVSV(const std::vector<double>& v) const;
  bool ComputeRTransSR(const QXRectMatrix& r, QXSymMatrix& out) const;
  bool ComputeBlockCombination(const std::vector<double>& c, QXSymMatrix& out) const;

  // The sweep operator on one row of the whole matrix, with the checks, the
  // tolerance test and the arithmetic of QXSymMatrix::Sweep, so the two give
  // the same bits; and on every row of a block in turn, which is the block
  // sweep (pivoting on S_KK): the count of rows swept, rows failing the
  // tolerance being passed over, or -1 for bad arguments.
  bool Sweep(int row, double tol, const std::vector<double>& diag, QXBitSet& swept);
  int SweepBlock(int block, double tol, const std::vector<double>& diag, QXBitSet& swept);

  void Display() const;

 private:
  // Index of block (I, J), I > J, in the list of off-diagonal blocks.
  static int OffIndex(int blockRow, int blockCol) {
    return blockRow * (blockRow - 1) / 2 + blockCol;
  }
  // Calls f(i, j, element) for every stored element of self, (i, j) in the
  // lower triangle of the whole matrix, block by block.
  template <typename Self, typename F>
  static void ForEachElement(Self& self, F f);
  // Empties the matrix and marks it invalid after a failed allocation.
  void MakeInvalid();

  int nRows;
  std::vector<int> sizes;
  std::vector<int> starts;
  std::vector<int> rowBlock;
  std::vector<QXSymMatrix> diagBlocks;
  std::vector<QXRectMatrix> offBlocks;
};

}  // namespace QXMath_850

#endif  // QX_MATRICES_QXSYMBLOCKMATRIX_H
