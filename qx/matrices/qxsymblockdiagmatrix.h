#ifndef QX_MATRICES_QXSYMBLOCKDIAGMATRIX_H
#define QX_MATRICES_QXSYMBLOCKDIAGMATRIX_H

#include <vector>

#include "qx/foundation/qxexport.h"
#include "qx/matrices/qxbitset.h"
#include "qx/matrices/qxsymmatrix.h"

namespace QXMath_850 {

class IQXRectMatrix;

// A symmetric matrix that is zero outside square blocks along its diagonal,
// each block dense (a QXSymMatrix) or diagonal (its diagonal only). Mixed
// models and covariance structures hold their block-diagonal parts in it;
// every operation is the block-wise one, so factoring or inverting costs
// the sum over the blocks. Its type tag is 2.
class QXCOMMON_API QXSymBlockDiagMatrix : public IQXSymMatrix {
 public:
  QXSymBlockDiagMatrix();
  QXSymBlockDiagMatrix(const std::vector<int>& sizes, const QXBitSet& isDiag);
  // Copies the blocks in order, a block-diagonal one contributing its own
  // blocks; an empty list gives the empty matrix.
  explicit QXSymBlockDiagMatrix(const std::vector<IQXSymMatrix*>& blocks);
  QXSymBlockDiagMatrix(const QXSymBlockDiagMatrix& other);
  QXSymBlockDiagMatrix& operator=(const QXSymBlockDiagMatrix& other);
  ~QXSymBlockDiagMatrix() override;

  // Structure.
  // Zeroed blocks of the given sizes, block b diagonal when its bit is set;
  // nBlocks is isDiag.Size().
  bool SetStructure(const std::vector<int>& sizes, const QXBitSet& isDiag);
  bool CopyStructure(QXSymBlockDiagMatrix& out) const;
  // Appends m (a block-diagonal m block by block); the new block count, or
  // -1 for an empty m or an unknown type.
  int AddBlock(const IQXSymMatrix& m);
  int AddBlock(const std::vector<double>& diag);
  // Replaces block b by values of the same kind and size (a block-diagonal
  // m replaces blocks b, b+1, ...); false, with nothing changed, otherwise.
  bool ReplaceBlock(int b, const std::vector<double>& diag);
  bool ReplaceBlock(int b, const IQXSymMatrix& m);
  // Removes every block.
  void ClearAll();

  // Queries.
  int GetNBlocks() const { return nBlocks; }
  int GetNDenseBlocks() const { return static_cast<int>(denseBlocks.size()); }
  int GetNDiagBlocks() const { return static_cast<int>(diagBlocks.size()); }
  const std::vector<int>& GetBlockSizes() const { return blockSizes; }
  const std::vector<int>& GetStartingIndices() const { return startIndices; }
  const std::vector<int>& GetBlockIndexForRow() const { return rowBlocks; }
  int GetBlockSize(int b) const;
  int GetBlockStartIndex(int b) const;
  bool GetIsBlockDiagonal(int b) const;
  bool GetDiagonalBlock(int b, std::vector<double>*& block);
  bool GetDiagonalBlock(int b, const std::vector<double>*& block) const;
  bool GetDenseBlock(int b, QXSymMatrix*& block);
  bool GetDenseBlock(int b, const QXSymMatrix*& block) const;
  // The row's block, that block's first row, row - start and its kind.
  bool FindAbsBlockRelColIndex(int row, int& block, int& start, int& rel, bool& isDiag) const;
  // The position in the dense or diagonal list of the block holding element
  // (i, j), with its relative indices; -1 when the element lies outside the
  // blocks. The indices aren't range-checked.
  int FindBlock(int i, int j, bool& isDiag, int& relRow, int& relCol) const;
  // The first column of the row that can be non-zero in the lower triangle,
  // and with `data` the row's stored elements (its packed row in a dense
  // block, its one element in a diagonal block).
  bool GetIndexFirstInRow(int row, int& first) const;
  bool GetIndexFirstInRow(int row, int& first, const double*& data) const;
  bool IsSameStructure(const IQXSymMatrix& m) const;
  // out becomes the full dense matrix.
  bool FillDenseMatrix(QXSymMatrix& out) const;

  // The interface, block by block.
  int GetType() const override;
  int GetNRows() const override;
  bool IsValidMatrix() const override;
  // 0.0 outside the blocks.
  double GetElem(int row, int col) const override;
  void GetDiagonal(std::vector<double>& diag) const override;
  bool GetRow(int row, std::vector<double>& out) const override;
  void AddToDiagonal(double value) override;
  void ChangeSign() override;
  // The inverse goes to a block-diagonal target only (-1 otherwise).
  int CholInverse(const std::vector<double>& diag, double tol,
                  IQXSymMatrix& inverse) const override;
  int CholInverse(const std::vector<double>& diag, double tol, IQXSymMatrix& inverse,
                  QXBitSet& nonRedundant) const override;
  int CholInverse(const std::vector<double>& diag, double tol, IQXSymMatrix& inverse,
                  double& minPivot) const override;
  void Clear() override;
  // For x diagonal, or block-diagonal of the same structure.
  bool ComputeAXpY(double a, const IQXSymMatrix& x) override;
  // The diagonal blocks first, then the dense ones.
  bool ComputeDeterminant(double tol, double* det) const override;
  // The missing value for a bad row, 0.0 for rows of different blocks.
  double ComputeDotProduct2Rows(int row1, int row2) const override;
  bool ComputeGMG(const std::vector<double>& g, QXSymMatrix& out) const override;
  bool ComputeGMGNG(const IQXSymMatrix& m, const IQXSymMatrix& n, IQXSymMatrix& out,
                    std::vector<double>& work) const override;
  // Refused: false.
  bool ComputeMGN(const IQXSymMatrix& g, const IQXSymMatrix& n, IQXSymMatrix& out) const override;
  bool ComputeGSG(const IQXSymMatrix& s, IQXSymMatrix& out) const override;
  bool ComputeLSLTrans(const IQXSymMatrix& s, IQXSymMatrix& out) const override;
  bool ComputeLTransSL(const IQXSymMatrix& s, IQXSymMatrix& out, int nBlocks) const override;
  bool ComputeLTransV(const std::vector<double>& v, std::vector<double>& out) const override;
  bool ComputeLTransV(const std::vector<int>& index, const std::vector<double>& v,
                      std::vector<double>& out) const override;
  bool ComputeLV(const std::vector<double>& v, std::vector<double>& out) const override;
  bool ComputeLV(const std::vector<int>& index, const std::vector<double>& v,
                 std::vector<double>& out) const override;
  double ComputeRowDotProductS(int row, const IQXSymMatrix& s, int otherRow) const override;
  double ComputeRowDotProductS(int row, const std::vector<double>& packed,
                               int otherRow) const override;
  bool ComputeRS(const IQXRectMatrix& r, IQXRectMatrix& out) const override;
  bool ComputeRSRTrans(const IQXRectMatrix& r, IQXSymMatrix& out) const override;
  bool ComputeRTransS(const IQXRectMatrix& r, IQXRectMatrix& out) const override;
  bool ComputeRTransSR(const IQXRectMatrix& r, IQXSymMatrix& out) const override;
  bool ComputeRTransSV(const IQXRectMatrix& r, const std::vector<double>& v,
                       std::vector<double>& out) const override;
  double ComputeRVD(int row, const std::vector<double>& v, int stride) const override;
  double ComputeRVD(int row, const double* v, int stride) const override;
  bool ComputeSS(const IQXSymMatrix& s, IQXRectMatrix& out) const override;
  bool ComputeSTransS(IQXSymMatrix& out) const override;
  bool ComputeSV(const std::vector<double>& v, std::vector<double>& out) const override;
  bool ComputeSV(int firstRow, const std::vector<double>& v,
                 std::vector<double>& out) const override;
  // The missing value unless v has nRows elements.
  double ComputeVSV(const std::vector<double>& v) const override;
  double ComputeVSV(const IQXRectMatrix& r, int row) const override;
  double ComputeVSW(const std::vector<double>& v, const std::vector<double>& w) const override;
  double ComputeVSW(const double* v, int vStride, const double* w, int wStride) const override;
  double ComputeVSW(const std::vector<double>& v, int first, int last, int other) const override;
  double ComputeVSWParts(const std::vector<double>& v, int vCount, const std::vector<double>& w,
                         int wCount) const override;
  double ComputeVSWParts(const double* v, int vCount, const double* w, int wCount) const override;
  // The form of the result follows out's type: diagonal (only without dense
  // blocks), block-diagonal or dense.
  bool ExtractFirstNRows(IQXSymMatrix& out) const override;
  bool ExtractSubmatrix(const std::vector<int>& rows, IQXSymMatrix& out) const override;
  void GetNCheckDiagonal(std::vector<double>& diag, double lower,
                         double replacement) const override;
  bool IncrVecByRow(int row, std::vector<double>& v, int offset, int count, double scale,
                    bool check) const override;
  bool IsZeroRow(int row, const QXBitSet& columns) const override;
  // Block by block. A diagonal block's element k is judged against diag[k],
  // k counted inside the block; a dense block gets its own slice of diag.
  int LTChol(const std::vector<double>& diag, double tol, bool check) override;
  int LTChol(const std::vector<double>& diag, double tol, QXBitSet& nonRedundant,
             bool check) override;
  int LTChol(double tol, double& minPivot, bool check) override;
  int LTDetInverse(double* det, int job) override;
  bool LTInverse() override;
  void LTLLTrans() override;
  void LTLTransL() override;
  int LTSolve(const std::vector<double>& b, double tol, std::vector<double>& x) override;
  void MaxMinDiag(double& largest, double& smallest) const override;
  void MaxMinDiagOffDiag(double& largestDiag, double& smallestDiag, double& largestOff,
                         double& smallestOff) const override;
  void MultiplyByNumber(double factor) override;
  bool PutRow(int row, const std::vector<double>& in) override;
  // The shape changes only through the structure operations: false.
  bool Resize(int nRows) override;
  // False outside the blocks.
  bool SetElem(int row, int col, double value) override;
  // False.
  bool SetNRows(int nRows, bool clear) override;
  bool SetRowColToConst(int row, double value) override;
  double Trace() const override;
  double TraceOfProduct(const IQXSymMatrix& s) const override;
  double TraceOfProductOfThree(const IQXSymMatrix& s, const IQXSymMatrix& t) const override;
  bool ZeroOut(int row) override;
  void ZeroOutNonDiag(double ratio) override;
  void Display() const override;
  void DisplayF() const override;

 private:
  // Appends one block of either kind without rebuilding the row map.
  void AppendDiagonal(const std::vector<double>& diag);
  void AppendDense(const QXSymMatrix& block);
  // rowBlocks from the block sizes.
  void SetBlockIndicesForRow();
  // Calls dense(b, block, start) or diagonal(b, values, start) for each
  // block in order.
  template <typename Dense, typename Diagonal>
  void ForEachBlock(Dense dense, Diagonal diagonal) const;
  template <typename Dense, typename Diagonal>
  void ForEachBlock(Dense dense, Diagonal diagonal);

  int nRows;
  int nBlocks;
  std::vector<QXSymMatrix> denseBlocks;
  std::vector<std::vector<double>> diagBlocks;
  std::vector<int> blockSizes;
  QXBitSet isDiagBlock;
  std::vector<int> startIndices;
  std::vector<int> blockPositions;
  std::vector<int> rowBlocks;
};

}  // namespace QXMath_850

#endif  // QX_MATRICES_QXSYMBLOCKDIAGMATRIX_H
