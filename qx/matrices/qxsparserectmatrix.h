#ifndef QX_MATRICES_QXSPARSERECTMATRIX_H
#define QX_MATRICES_QXSPARSERECTMATRIX_H

#include <cstddef>
#include <vector>

#include "qx/foundation/qxexport.h"
#include "qx/matrices/qxrectmatrix.h"
#include "qx/matrices/qxsparsevector.h"

namespace QXMath_850 {

// Sparse rectangular matrix in compressed rows, the second implementation of
// IQXRectMatrix (type tag 1). Components keep blocks of cases in it whose
// rows are mostly zero, such as the one-hot codes of categorical predictors;
// products with it, and the cross-product accumulation of
// QXSymMatrix::UpdateXXCornerBlock, cost in proportion to its non-zeros.
// QXRectMatrix and QXSymMatrix accept it wherever they take an operand
// through the interface.
//
// Store: rowStart holds nRows + 1 offsets into colIndex and values, row i's
// elements lying at rowStart[i] .. rowStart[i+1] - 1. Invariants: rowStart
// starts at 0 and never falls, and ends at the length of the other two;
// within a row the columns rise strictly and lie in 0 .. nCols-1; no stored
// value is 0.0 (writing 0.0 removes an element), so the store is exactly the
// pattern of non-zeros. A failed allocation while sizing, converting or
// copying leaves both counts -1 and the store empty.
//
// Choices:
// - Rows, not columns or coordinates: cases arrive and are read a row at a
//   time, and AddRow of a QXSparseVector appends in the row's own cost.
//   Column access searches each row; Transpose gives a column store when
//   many columns are wanted.
// - Each operation with a dense counterpart adds its terms in the order the
//   dense one does, leaving out only the zero ones, so that on finite
//   values both agree to the bit.
// - Resize and SetNRowsCols keep the dense meaning: elements keep their
//   row-major positions and are read in the new shape.
// - Element access is checked: an unchecked write can't be made safe in a
//   compressed store. Outputs typed IQXRectMatrix may be dense or sparse.
// - Writing single elements out of row order costs a shift of the store;
//   building row by row with AddRow or converting from dense doesn't.
class QXCOMMON_API QXSparseRectMatrix : public IQXRectMatrix {
 public:
  QXSparseRectMatrix();
  // An all-zero matrix; negative counts are taken as 0.
  QXSparseRectMatrix(int nRows, int nCols);
  // The non-zero elements of a dense matrix.
  explicit QXSparseRectMatrix(const QXRectMatrix& dense);
  QXSparseRectMatrix(const QXSparseRectMatrix& other);
  QXSparseRectMatrix& operator=(const QXSparseRectMatrix& other);
  ~QXSparseRectMatrix() override;

  // Conversions. SetFromDense takes the shape and non-zeros of dense (false,
  // and invalid, if the store can't be had); ToDense sizes out to this shape.
  bool SetFromDense(const QXRectMatrix& dense);
  bool ToDense(QXRectMatrix& out) const;

  // The store.
  std::size_t GetNNonZeros() const { return values.size(); }
  const std::vector<std::size_t>& GetRowStarts() const { return rowStart; }
  const std::vector<int>& GetColIndices() const { return colIndex; }
  const std::vector<double>& GetValues() const { return values; }
  // The row's number of elements, with pointers to its columns and values;
  // 0 and null pointers for an empty or bad row.
  int GetRowEntries(int row, const int*& cols, const double*& vals) const;

  // The interface.
  int GetMatrixType() const override;
  bool IsValidMatrix() const override;
  int GetNRows() const override;
  int GetNCols() const override;
  // 0.0 outside the matrix.
  double GetElem(int row, int col) const override;
  bool GetRow(int row, std::vector<double>& out) const override;
  bool GetCol(int col, std::vector<double>& out) const override;
  // Appends a zero row; the new row count, or -1 on an invalid matrix.
  int AddRow() override;
  // Appends the sparse row; false for an invalid view or one wider than the
  // matrix.
  bool AddRow(const QXSparseVector& row) override;
  // All elements 0.0; the shape stays.
  void Clear() override;
  // Euclidean norm by the scaled sum of squares; the missing value out of
  // range.
  double ColNorm(int col) const override;
  // out = A B for b dense or sparse with nCols rows; out may be either.
  bool ComputeMatrixProduct(const IQXRectMatrix& b, IQXRectMatrix& out) const override;
  // out = A B^T; false unless b has nCols columns.
  bool ComputeProductMatrixTrans(const IQXRectMatrix& b, QXRectMatrix& out) const override;
  // out = A v (v of nCols), out = v^T A (v of nRows).
  bool ComputeRV(const std::vector<double>& v, std::vector<double>& out) const override;
  bool ComputeVR(const std::vector<double>& v, std::vector<double>& out) const override;
  bool CopyColToVec(int col, std::vector<double>& out) const override;
  // This matrix becomes rows first..first+count-1 of a dense or sparse source.
  bool CopyRows(const IQXRectMatrix& source, int first, int count) override;
  // Replaces row targetRow of a dense or sparse target of as many columns.
  bool CopyRowToRow(int row, int targetRow, IQXRectMatrix& target) const override;
  // out = this matrix repeated `copies` times along a block diagonal.
  bool CreateBlockDiagonal(int copies, IQXRectMatrix& out) const override;
  // Dots of two columns, two rows, a row with another matrix's column or row;
  // the missing value on bad arguments.
  double DotProductCol(int col1, int col2) const override;
  double DotProductRows(int row1, int row2) const override;
  double DotProductRowCol(int row, const IQXRectMatrix& other, int col) const override;
  double DotProductRowRow(int row, const IQXRectMatrix& other, int otherRow) const override;
  // out (dense or sparse) gets the listed columns (rows) that exist, in list
  // order, and their number is returned; -1 for an out of another type or
  // when the last listed index lies beyond the matrix.
  int ExtractColumns(const std::vector<int>& columns, IQXRectMatrix& out) const override;
  int ExtractRows(const std::vector<int>& rows, IQXRectMatrix& out) const override;
  // v[offset + k] += scale * element (k, col) for k below count and nRows.
  bool IncrVecByColumn(int col, std::vector<double>& v, int offset, int count, double scale,
                       bool check) const override;
  bool IsRowZero(int row) const override;
  // Elements keep their row-major positions and are read in the new shape;
  // those beyond it are dropped.
  bool Resize(int nRows, int nCols) override;
  double RowNorm(int row) const override;
  // Writes, inserts or (for 0.0) removes the element; false out of range.
  bool SetElem(int row, int col, double value) override;
  // As Resize, then with `clear` every element 0.0.
  bool SetNRowsCols(int nRows, int nCols, bool clear) override;
  bool SetRow(int row, const QXSparseVector& values) override;
  // out = [0, A] with `shift` zero columns in front ([0; A] for rows).
  bool ShiftColumns(int shift, IQXRectMatrix& out) const override;
  bool ShiftRows(int shift, IQXRectMatrix& out) const override;
  // Clears columns first..last of the row, inclusive.
  bool ZeroOutRowPart(int row, int first, int last) override;
  void Display() const override;
  void DisplayF() const override;

  // v[offset + j] += scale * element (row, j) over the row's non-zeros;
  // false for a bad row, a negative offset or a v too short.
  bool IncrVecByRow(int row, std::vector<double>& v, int offset, double scale) const;
  // In place, through a counting pass over the columns; counts swap.
  void Transpose();

 private:
  // Hands a result formed apart to out, dense or sparse (the sparse one takes
  // its store over); false for an out of another type.
  static bool Deliver(QXSparseRectMatrix& result, IQXRectMatrix& out);
  // Position of element (row, col) in the store, or -1.
  long Find(int row, int col) const;
  // Marks the matrix invalid after a failed allocation.
  void MakeInvalid();
  // Appends a row of n dense values, leaving out the zeros.
  void AppendDenseRow(const double* row, int n);
  // Replaces row `row` by count entries; cols and vals may point into this
  // matrix's own store.
  void ReplaceRow(int row, int count, const int* cols, const double* vals);

  int nRows;
  int nCols;
  std::vector<std::size_t> rowStart;
  std::vector<int> colIndex;
  std::vector<double> values;
};

}  // namespace QXMath_850

#endif  // QX_MATRICES_QXSPARSERECTMATRIX_H
