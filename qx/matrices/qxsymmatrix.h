#ifndef QX_MATRICES_QXSYMMATRIX_H
#define QX_MATRICES_QXSYMMATRIX_H

#include <vector>

#include "qx/foundation/qxexport.h"
#include "qx/matrices/qxbitset.h"

namespace QXMath_850 {

class QXRectMatrix;

// The one interface behind which statistical code keeps a symmetric matrix.
// Operations that take a second matrix ask it for its type tag first (0 dense,
// 1 diagonal, 2 block-diagonal) and take the path for its structure or refuse.
class QXCOMMON_API IQXSymMatrix {
 public:
  virtual ~IQXSymMatrix();

  virtual int GetType() const = 0;
  virtual int GetNRows() const = 0;
  virtual bool IsValidMatrix() const = 0;
  virtual double GetElem(int row, int col) const = 0;
  virtual void GetDiagonal(std::vector<double>& diag) const = 0;
  virtual bool GetRow(int row, std::vector<double>& out) const = 0;
  virtual void AddToDiagonal(double value) = 0;
  virtual void ChangeSign() = 0;
  virtual int CholInverse(const std::vector<double>& diag, double tol,
                          IQXSymMatrix& inverse) const = 0;
  virtual int CholInverse(const std::vector<double>& diag, double tol, IQXSymMatrix& inverse,
                          QXBitSet& nonRedundant) const = 0;
  virtual int CholInverse(const std::vector<double>& diag, double tol, IQXSymMatrix& inverse,
                          double& minPivot) const = 0;
  virtual void Clear() = 0;
  virtual bool ComputeAXpY(double a, const IQXSymMatrix& x) = 0;
  virtual bool ComputeDeterminant(double tol, double* det) const = 0;
  virtual bool ExtractFirstNRows(IQXSymMatrix& out) const = 0;
  virtual bool ExtractSubmatrix(const std::vector<int>& rows, IQXSymMatrix& out) const = 0;
  virtual void GetNCheckDiagonal(std::vector<double>& diag, double lower,
                                 double replacement) const = 0;
  virtual bool IncrVecByRow(int row, std::vector<double>& v, int offset, int count, double scale,
                            bool check) const = 0;
  virtual bool IsZeroRow(int row, const QXBitSet& columns) const = 0;
  virtual int LTChol(const std::vector<double>& diag, double tol, bool check) = 0;
  virtual int LTChol(const std::vector<double>& diag, double tol, QXBitSet& nonRedundant,
                     bool check) = 0;
  virtual int LTChol(double tol, double& minPivot, bool check) = 0;
  virtual int LTDetInverse(double* det, int job) = 0;
  virtual bool LTInverse() = 0;
  virtual void LTLLTrans() = 0;
  virtual void LTLTransL() = 0;
  virtual int LTSolve(const std::vector<double>& b, double tol, std::vector<double>& x) = 0;
  virtual void MaxMinDiag(double& largest, double& smallest) const = 0;
  virtual void MaxMinDiagOffDiag(double& largestDiag, double& smallestDiag, double& largestOff,
                                 double& smallestOff) const = 0;
  virtual void MultiplyByNumber(double factor) = 0;
  virtual bool PutRow(int row, const std::vector<double>& in) = 0;
  virtual bool Resize(int nRows) = 0;
  virtual bool SetElem(int row, int col, double value) = 0;
  virtual bool SetNRows(int nRows, bool clear) = 0;
  virtual bool SetRowColToConst(int row, double value) = 0;
  virtual double Trace() const = 0;
  virtual bool ZeroOut(int row) = 0;
  virtual void ZeroOutNonDiag(double ratio) = 0;
  virtual void Display() const = 0;
  virtual void DisplayF() const = 0;
};

// Dense symmetric matrix kept as its packed lower triangle by rows: element
// (i, j), i >= j, at i*(i+1)/2 + j. Cross-products are accumulated into it,
// swept or factored in place, and read back by the model-fitting code.
class QXCOMMON_API QXSymMatrix : public IQXSymMatrix {
 public:
  QXSymMatrix();
  QXSymMatrix(int nRows, bool clear);
  QXSymMatrix(int nBlocks, int blockSize, bool clear);
  QXSymMatrix(const QXSymMatrix& other);
  QXSymMatrix& operator=(const QXSymMatrix& other);
  ~QXSymMatrix() override;

  // The interface.
  int GetType() const override;
  int GetNRows() const override;
  bool IsValidMatrix() const override;
  double GetElem(int row, int col) const override;
  void GetDiagonal(std::vector<double>& diag) const override;
  bool GetRow(int row, std::vector<double>& out) const override;
  void AddToDiagonal(double value) override;
  void ChangeSign() override;
  int CholInverse(const std::vector<double>& diag, double tol,
                  IQXSymMatrix& inverse) const override;
  int CholInverse(const std::vector<double>& diag, double tol, IQXSymMatrix& inverse,
                  QXBitSet& nonRedundant) const override;
  int CholInverse(const std::vector<double>& diag, double tol, IQXSymMatrix& inverse,
                  double& minPivot) const override;
  void Clear() override;
  bool ComputeAXpY(double a, const IQXSymMatrix& x) override;
  bool ComputeDeterminant(double tol, double* det) const override;
  bool ExtractFirstNRows(IQXSymMatrix& out) const override;
  bool ExtractSubmatrix(const std::vector<int>& rows, IQXSymMatrix& out) const override;
  void GetNCheckDiagonal(std::vector<double>& diag, double lower,
                         double replacement) const override;
  bool IncrVecByRow(int row, std::vector<double>& v, int offset, int count, double scale,
                    bool check) const override;
  bool IsZeroRow(int row, const QXBitSet& columns) const override;
  int LTChol(const std::vector<double>& diag, double tol, bool check) override;
  int LTChol(const std::vector<double>& diag, double tol, QXBitSet& nonRedundant,
             bool check) override;
  int LTChol(double tol, double& minPivot, bool check) override;
  int LTDetInverse(double* det, int job) override;
  bool LTInverse() override;
  void LTLLTrans() override;
  void LTLTransL() override;
  // Factors this matrix in place (it is left holding L) and solves A x = b,
  // with 0.0 in the components of redundant rows; returns the count of
  // redundant rows, or -1 unless tol > 0.0 and b has at least n elements.
  // b and x may be the same vector.
  int LTSolve(const std::vector<double>& b, double tol, std::vector<double>& x) override;
  void MaxMinDiag(double& largest, double& smallest) const override;
  void MaxMinDiagOffDiag(double& largestDiag, double& smallestDiag, double& largestOff,
                         double& smallestOff) const override;
  void MultiplyByNumber(double factor) override;
  bool PutRow(int row, const std::vector<double>& in) override;
  bool Resize(int nRows) override;
  bool SetElem(int row, int col, double value) override;
  bool SetNRows(int nRows, bool clear) override;
  bool SetRowColToConst(int row, double value) override;
  double Trace() const override;
  bool ZeroOut(int row) override;
  void ZeroOutNonDiag(double ratio) override;
  void Display() const override;
  void DisplayF() const override;

  // Clamps the off-diagonal of a correlation matrix into
  // [-(1 - margin), 1 - margin]; false unless 0 <= margin < 1.
  virtual bool AdjustOffDiagCorr(double margin);

  // Sizing and copying.
  void SetData(const QXSymMatrix& source);
  bool SetNBlocks(int nBlocks);
  bool DeleteOneRow(int row);
  bool SetToVV(const std::vector<double>& v);
  bool SetToVW(const std::vector<double>& v, const std::vector<double>& w);

  // Element access. The store itself is handed out for the packed algorithms.
  int GetNBlocks() const { return nBlocks; }
  int GetBlockSize() const { return blockSize; }
  double GetElem(int blockRow, int blockCol, int i, int j) const;
  bool SetElem(int position, double value);
  bool GetPCol(int col, int first, int last, std::vector<double>& out, int stride) const;
  // Elements 0..count-1 of row `row` into column col of r; a negative count
  // means r's row count, and count is held to the order and to r's rows.
  bool CopyRowToRColumn(int row, QXRectMatrix& r, int col, int count) const;
  std::vector<double>& AsVector() { return data; }
  const std::vector<double>& AsVectorConst() const { return data; }

  // Rank-one updates of the lower triangle.
  void IncrementByVV(const double* x, double w);
  bool UpdateXX(const std::vector<double>& x, double w);
  bool UpdateXXPosNegW(const std::vector<double>& x, double w);
  bool UpdateXXNonRedun(const std::vector<double>& x, const QXBitSet& keep, double w);
  bool UpdateXXSparse(int count, const std::vector<int>& indices, const std::vector<double>& values,
                      double w);

  // Whole-matrix edits.
  bool AddToDiagonalPart(int first, int count, double value);
  bool SetCovarZeros(QXSymMatrix& other);
  bool ZeroOutRedundant(const QXBitSet& keep);
  void ZeroOutAllSmall(double ratio);
  void ZeroOutRowsForSmallDiag(double ratio);
  bool ReplaceDiagZeroes(double ratio);

  // Extraction and expansion; the block extractors add into their target.
  bool ExtractDiagBlock(int first, int size, QXSymMatrix& out) const;
  bool ExtractBlockAndLastRow(int first, int size, QXSymMatrix& out) const;
  bool ExtractPartOfLastRow(int first, int count, std::vector<double>& out) const;
  // Adds the nr by nc rectangle at (row, col), which must lie in the lower
  // triangle, into out.
  bool ExtractBlockInLowTriangular(int row, int col, int nr, int nc, QXRectMatrix& out) const;
  bool Expand(const QXBitSet& rows, QXSymMatrix& out) const;
  // out = [this, r^T; r, 0], of order n plus r's rows.
  bool ExpandSym(const QXRectMatrix& r, QXSymMatrix& out) const;
  bool ReplaceFirstRows(const QXSymMatrix& source, int m);

  void DisplayS() const;

  // The sweep operator and its bulk forms.
  bool Sweep(int k, double tol, const double* diag, QXBitSet& swept, bool check);
  bool Sweep(int k, double tol, const std::vector<double>& diag, QXBitSet& swept, bool check);
  bool SweepOrig(int k, double tol, const std::vector<double>& diag, QXBitSet& swept, bool check);
  bool SweepOnSelected(const std::vector<int>& rows, double tol, QXBitSet& swept, bool check,
                       double* diag);
  bool SweepOnMany(int count, double tol, bool pivotBefore, QXBitSet& swept, double& logDet,
                   bool check, double* diag);
  bool GetRegCoeffs(std::vector<double>& coeffs, const QXBitSet& swept) const;

  // Work with a Cholesky factor L held in the store. b and x may be the same
  // vector in both solves.
  void GetNCheckDiagonalOld(std::vector<double>& diag, double lower, double replacement) const;
  int LTSubstitute(const std::vector<double>& b, std::vector<double>& x) const;
  bool TSolveSubst(const std::vector<double>& b, std::vector<double>& x, bool transposed) const;
  bool DotProdColBelowDiagBackVec(int row, const std::vector<double>& x, double& sum) const;
  bool DotProdRowBeforeDiagFrontVec(int row, const std::vector<double>& x, double& sum) const;
  int CholIndNonRed(int limit, double tol, std::vector<int>& rows);
  int CheckMDependent(int m, const std::vector<double>& packed, const QXBitSet& keep, double tol);
  bool LTCholUpdateR1(const std::vector<double>& x, std::vector<double>& c, std::vector<double>& s);
  bool LTCholDowndate(const std::vector<double>& x, std::vector<double>& c, std::vector<double>& s,
                      bool force);
  // Smallest diagonal shift that makes the matrix factor, applied and then
  // rescaled; returns the Cholesky trials made, -1 for n <= 1, -2 unless
  // tol > 0.0, and -3 (matrix untouched) when an element is NaN or infinite,
  // since no shift could help then.
  int TransformToPositiveDefinite(double tol, bool& changed, double& shift);

 protected:
  // Sizes the store to n*(n+1)/2; an allocation failure sets n to -1. The store
  // is emptied when n <= 0. True when n >= 0 afterwards.
  static bool ResizeNRows(std::vector<double>& store, int& n);
  // Copies source into store; false, with store emptied, if that fails.
  static bool ResizeNCopy(std::vector<double>& store, const std::vector<double>& source);

  int nRows;
  int nBlocks;
  int blockSize;
  std::vector<double> data;
};

}  // namespace QXMath_850

#endif  // QX_MATRICES_QXSYMMATRIX_H
