#ifndef QX_MATRICES_QXRECTMATRIX_H
#define QX_MATRICES_QXRECTMATRIX_H

#include <vector>

#include "qx/foundation/qxexport.h"
#include "qx/matrices/qxbitset.h"
#include "qx/matrices/qxsparsevector.h"

namespace QXMath_850 {

class IQXSymMatrix;
class QXDiagMatrix;
class QXRectMatrix;
class QXSymBlockDiagMatrix;
class QXSymMatrix;

// The shared face of general matrices, dense and sparse: blocks of cases,
// design and contrast matrices, intermediate products. An operation on a
// second matrix reads its tag (0 dense, 1 sparse) and takes the dense fast
// path or goes through these operations. Bad arguments give false, -1 or the
// missing value; nothing throws.
class QXCOMMON_API IQXRectMatrix {
 public:
  virtual ~IQXRectMatrix();

  virtual int GetMatrixType() const = 0;
  virtual bool IsValidMatrix() const = 0;
  virtual int GetNRows() const = 0;
  virtual int GetNCols() const = 0;
  virtual double GetElem(int row, int col) const = 0;
  virtual bool GetRow(int row, std::vector<double>& out) const = 0;
  virtual bool GetCol(int col, std::vector<double>& out) const = 0;
  virtual int AddRow() = 0;
  virtual bool AddRow(const QXSparseVector& row) = 0;
  virtual void Clear() = 0;
  virtual double ColNorm(int col) const = 0;
  virtual bool ComputeMatrixProduct(const IQXRectMatrix& b, IQXRectMatrix& out) const = 0;
  virtual bool ComputeProductMatrixTrans(const IQXRectMatrix& b, QXRectMatrix& out) const = 0;
  virtual bool ComputeRV(const std::vector<double>& v, std::vector<double>& out) const = 0;
  virtual bool ComputeVR(const std::vector<double>& v, std::vector<double>& out) const = 0;
  virtual bool CopyColToVec(int col, std::vector<double>& out) const = 0;
  virtual bool CopyRows(const IQXRectMatrix& source, int first, int count) = 0;
  virtual bool CopyRowToRow(int row, int targetRow, IQXRectMatrix& target) const = 0;
  virtual bool CreateBlockDiagonal(int copies, IQXRectMatrix& out) const = 0;
  virtual double DotProductCol(int col1, int col2) const = 0;
  virtual double DotProductRows(int row1, int row2) const = 0;
  virtual double DotProductRowCol(int row, const IQXRectMatrix& other, int col) const = 0;
  virtual double DotProductRowRow(int row, const IQXRectMatrix& other, int otherRow) const = 0;
  virtual int ExtractColumns(const std::vector<int>& columns, IQXRectMatrix& out) const = 0;
  virtual int ExtractRows(const std::vector<int>& rows, IQXRectMatrix& out) const = 0;
  virtual bool IncrVecByColumn(int col, std::vector<double>& v, int offset, int count, double scale,
                               bool check) const = 0;
  virtual bool IsRowZero(int row) const = 0;
  virtual bool Resize(int nRows, int nCols) = 0;
  virtual double RowNorm(int row) const = 0;
  virtual bool SetElem(int row, int col, double value) = 0;
  virtual bool SetNRowsCols(int nRows, int nCols, bool clear) = 0;
  virtual bool SetRow(int row, const QXSparseVector& values) = 0;
  virtual bool ShiftColumns(int shift, IQXRectMatrix& out) const = 0;
  virtual bool ShiftRows(int shift, IQXRectMatrix& out) const = 0;
  virtual bool ZeroOutRowPart(int row, int first, int last) = 0;
  virtual void Display() const = 0;
  virtual void DisplayF() const = 0;
};

// Dense rectangular matrix stored by rows: element (i, j) at i * nCols + j.
// Components carry blocks of cases in it; it also holds the linear-dependency
// tools of the statistics (redundant columns, estimability, Householder QR).
// A failed allocation marks it invalid, with both counts -1.
class QXCOMMON_API QXRectMatrix : public IQXRectMatrix {
 public:
  QXRectMatrix();
  // Negative counts are taken as 0.
  QXRectMatrix(int nRows, int nCols, bool clear);
  QXRectMatrix(const QXRectMatrix& other);
  QXRectMatrix& operator=(const QXRectMatrix& other);
  ~QXRectMatrix() override;

  // The interface.
  int GetMatrixType() const override;
  bool IsValidMatrix() const override;
  int GetNRows() const override;
  int GetNCols() const override;
  // Unchecked.
  double GetElem(int row, int col) const override;
  bool GetRow(int row, std::vector<double>& out) const override;
  bool GetCol(int col, std::vector<double>& out) const override;
  // Appends a zero row and returns the new row count (-1, with no change, on
  // an invalid matrix). An allocation failure is passed on.
  int AddRow() override;
  // Appends the sparse row; false for an invalid view or one wider than the
  // matrix.
  bool AddRow(const QXSparseVector& row) override;
  void Clear() override;
  // Euclidean norm; the missing value out of range.
  double ColNorm(int col) const override;
  // out = A B; false unless b has nCols rows.
  bool ComputeMatrixProduct(const IQXRectMatrix& b, IQXRectMatrix& out) const override;
  // out = A B^T; false unless b has nCols columns.
  bool ComputeProductMatrixTrans(const IQXRectMatrix& b, QXRectMatrix& out) const override;
  // out = A v; false unless v has nCols elements.
  bool ComputeRV(const std::vector<double>& v, std::vector<double>& out) const override;
  // out = v^T A; false unless v has nRows elements.
  bool ComputeVR(const std::vector<double>& v, std::vector<double>& out) const override;
  bool CopyColToVec(int col, std::vector<double>& out) const override;
  // This matrix becomes rows first..first+count-1 of source.
  bool CopyRows(const IQXRectMatrix& source, int first, int count) override;
  bool CopyRowToRow(int row, int targetRow, IQXRectMatrix& target) const override;
  // out = this matrix repeated `copies` times along a block diagonal.
  bool CreateBlockDiagonal(int copies, IQXRectMatrix& out) const override;
  double DotProductCol(int col1, int col2) const override;
  double DotProductRows(int row1, int row2) const override;
  // Row `row` of this matrix with column `col` of other.
  double DotProductRowCol(int row, const IQXRectMatrix& other, int col) const override;
  // Row `row` of this matrix with row `otherRow` of other.
  double DotProductRowRow(int row, const IQXRectMatrix& other, int otherRow) const override;
  // out gets the listed columns (rows) that exist, in list order, and their
  // number is returned; -1 if out is sparse or the last listed index lies
  // beyond the matrix.
  int ExtractColumns(const std::vector<int>& columns, IQXRectMatrix& out) const override;
  int ExtractRows(const std::vector<int>& rows, IQXRectMatrix& out) const override;
  // v[offset + k] += scale * element (k, col) for k below count and nRows.
  bool IncrVecByColumn(int col, std::vector<double>& v, int offset, int count, double scale,
                       bool check) const override;
  bool IsRowZero(int row) const override;
  // Keeps the doubles in place and reads them in the new shape.
  bool Resize(int nRows, int nCols) override;
  double RowNorm(int row) const override;
  // Unchecked; always true.
  bool SetElem(int row, int col, double value) override;
  bool SetNRowsCols(int nRows, int nCols, bool clear) override;
  bool SetRow(int row, const QXSparseVector& values) override;
  // out = [0, A] with `shift` zero columns in front ([0; A] for rows).
  bool ShiftColumns(int shift, IQXRectMatrix& out) const override;
  bool ShiftRows(int shift, IQXRectMatrix& out) const override;
  // Clears columns first..last of the row, inclusive.
  bool ZeroOutRowPart(int row, int first, int last) override;
  void Display() const override;
  void DisplayF() const override;

  // The store and pointers into it (null out of range).
  std::vector<double>& AsVector() { return data; }
  const std::vector<double>& AsVectorConst() const { return data; }
  const double* GetRowPtr(int row) const;
  const double* GetColPtr(int col) const;

  // Structure.
  // Appends a zero column and returns the new column count (-1, with no
  // change, on an invalid matrix).
  int AddColumn();
  bool DeleteOneRow(int row);
  bool DeleteOneCol(int col);
  void Transpose();
  bool AddToDiagonal(double value);
  bool ColScale(int col, double factor);
  // Column col += scale * column sourceCol of source.
  bool AddToColumn(int col, const QXRectMatrix& source, int sourceCol, double scale);
  bool ZeroOutCol(int col);
  bool IsColZero(int col) const;
  // Column col of this matrix with column otherCol of other.
  double DotProductColCol(int col, const QXRectMatrix& other, int otherCol) const;

  // Copying between matrices.
  bool CopyColumns(const QXRectMatrix& source, int first, int count);
  bool CopyColToCol(int col, int targetCol, QXRectMatrix& target) const;
  // Column col of source into row `row` of this matrix.
  bool CopyColToRow(const QXRectMatrix& source, int col, int row);
  // Appends r's rows below this matrix.
  bool ExpandRectangular(const QXRectMatrix& r);
  // out = [A, r^T; r, 0] for a square A.
  bool ExpandSquare(const QXRectMatrix& r, QXRectMatrix& out) const;
  // The reverse of extraction: out has keep.Size() rows (columns) of zeros,
  // and this matrix's rows (columns) go to the true bits in order.
  bool Expand(const QXBitSet& keep, bool rows, QXRectMatrix& out) const;

  // Products with vectors. The raw form checks nothing.
  void ComputeRV(const double* v, double* out) const;
  // The same with v sparse: index lists the positions of its values.
  bool ComputeRV(const std::vector<int>& index, const std::vector<double>& v,
                 std::vector<double>& out) const;
  bool ComputeVR(const std::vector<int>& index, const std::vector<double>& v,
                 std::vector<double>& out) const;
  // v cut into slices of nCols, each multiplied by this matrix; out holds
  // nRows results per slice.
  bool ComputeRDiagV(const std::vector<double>& v, std::vector<double>& out) const;
  // v^T A w for sparse v and w; the second form over the first vCount and
  // wCount entries. The missing value on bad arguments.
  double ComputeVRW(const std::vector<int>& vIndex, const std::vector<double>& v,
                    const std::vector<int>& wIndex, const std::vector<double>& w) const;
  double ComputeSpVRSpW(int vCount, const std::vector<int>& vIndex, const std::vector<double>& v,
                        int wCount, const std::vector<int>& wIndex,
                        const std::vector<double>& w) const;
  // This matrix becomes v w^T.
  bool ComputeVecProduct(const std::vector<double>& v, const std::vector<double>& w);

  // Products with symmetric matrices.
  // This matrix becomes R1^T S R2 on the sub-block of S of sCount rows from
  // sFirst, R1 and R2 entering at rows r1First and r2First.
  bool ComputeR1TransSR2(const QXRectMatrix& r1, int r1First, const QXRectMatrix& r2, int r2First,
                         const QXSymMatrix& s, int sFirst, int sCount);
  // Trace of A S for a square A of the order of S.
  bool TraceOfProductSqS(const QXSymMatrix& s, double& trace) const;
  // The same for the trailing block of A from row and column `first` on,
  // against a dense s of that order.
  bool TraceOfProductSubMatSym(int first, const IQXSymMatrix& s, double& trace) const;
  // A -= factor * S for a square A of the order of S.
  bool SubtractSymMatrix(const QXSymMatrix& s, double factor);
  // D A in place: row i scaled by d_i; false unless d is of order nRows.
  bool ComputeDiagR(const QXDiagMatrix& d);
  // This matrix becomes B R, b.GetNRows() by nColumns, where R is the
  // rectangle of s from row rowOffset + firstRow and column firstCol. False
  // for a negative rowOffset, firstRow, firstCol, limit or nColumns, when
  // limit + rowOffset exceeds s's order, limit is below b's order plus
  // firstRow, or the columns run past s.
  bool ComputeBlockDiagSR(const QXSymBlockDiagMatrix& b, int firstRow, const QXSymMatrix& s,
                          int rowOffset, int firstCol, int limit, int nColumns);

  // Linear dependencies.
  // True when every row of this matrix, as a contrast L, is reproduced by h
  // over the kept columns within tol (relative to the row's norm).
  bool IsEstimable(const QXRectMatrix& h, const QXBitSet& kept, double tol) const;
  // Columns of `from` that survive constraint rows with a single non-zero
  // element; returns the number of true, non-zero columns of out.
  int CheckAddColRedundancies(const QXBitSet& from, QXBitSet& out) const;
  // True when the row has exactly one non-zero element among the columns
  // with a true bit in `among` (columns beyond among's size always count).
  bool IsRowZeroButOne(int row, const QXBitSet& among, int& col) const;
  // First column of the row with an absolute value above tol; -1 for none.
  int FindFirstNonZeroInRow(int row, double tol) const;
  // Column elimination on the row's first element above tol: every other
  // column takes that element's multiple of the pivot column, which is then
  // cleared.
  bool ZeroOutPivotRow(int row, double tol, int& pivotCol);
  // True when [row1, extra1] is ratio times [row2, extra2], to within one
  // double epsilon relative to the largest element of the first.
  bool IsERowMultipleOfAnother(int row1, int row2, double extra1, double extra2,
                               double& ratio) const;
  // Elements strictly within tol of +1 or -1 become exactly that.
  void CheckForOnes(double tol);
  // Clears the column when its norm is negligible, otherwise its elements
  // negligible relative to the norm.
  bool ColClean(int col, double tol);
  // Householder QR with the reflections formed explicitly: A = Q R, with R's
  // upper triangle in the packed store of r (read r(k, j), j >= k) and Q in q.
  bool QRDecompositionH(QXSymMatrix& r, QXRectMatrix& q) const;

  // ---- Redundancy search and solvers (qxrectmatrix_solve.cpp).

  // Marks the independent columns (rows when `rows`) by the rank-tolerant
  // Cholesky of A^T A (A A^T) at tolerance tol * tol, relative to its
  // diagonal; returns the count of redundant ones, or -1 for tol < 0.0.
  int FindRedundancies(double tol, QXBitSet& nonRedundant, bool rows);
  // The same search, listing the independent ones in ascending order;
  // returns how many there are. tol is only squared, so its sign is lost.
  int FindNonRedunIndices(double tol, std::vector<int>& indices, bool rows) const;
  // out gets the independent columns (rows) and indices their positions;
  // returns their count, or -1 for tol < 0.0.
  int ExtractFullRank(double tol, QXRectMatrix& out, std::vector<int>& indices, bool rows) const;
  // Replaces each column by its residual on the columns of z, over the
  // columns of z the sweep admits at tolerance tol (marked in zKept);
  // columnsLeft marks the columns keeping more than tol of their sum of
  // squares. False when the row counts differ, either matrix is empty, or
  // tol <= 0.0.
  bool ResidOfOrthProjection(const QXRectMatrix& z, double tol, QXBitSet& zKept,
                             QXBitSet& columnsLeft);
  // A x = b for a square A by LU with partial pivoting; true when the
  // reciprocal condition estimate is above minRcond (x is left alone
  // otherwise). False for a non-square or empty A, minRcond < 0.0, or a b
  // not of order n.
  bool SolveLinearSquare(const std::vector<double>& b, std::vector<double>& x, double minRcond);
  // 0 when A is square and SolveLinearSquare(b, x, tol) succeeds; otherwise
  // the generalized solution of the normal equations A^T A x = A^T b, with
  // the count of redundant columns (or -1 from the solve). -1 for an empty A
  // or tol <= 0.0.
  int EstimateLinearGI(const std::vector<double>& b, std::vector<double>& x, double tol);

 protected:
  // Sizes the store to nRows * nCols; an allocation failure sets both counts
  // to -1. The store is emptied when either count is 0 or below. True when
  // both counts are 0 or more afterwards.
  static bool ResizeNRowsCols(std::vector<double>& store, int& nRows, int& nCols);

  int nRows;
  int nCols;
  std::vector<double> data;
};

}  // namespace QXMath_850

#endif  // QX_MATRICES_QXRECTMATRIX_H
