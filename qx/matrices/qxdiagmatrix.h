#ifndef QX_MATRICES_QXDIAGMATRIX_H
#define QX_MATRICES_QXDIAGMATRIX_H

#include <vector>

#include "qx/foundation/qxexport.h"
#include "qx/matrices/qxbitset.h"
#include "qx/matrices/qxsymmatrix.h"

namespace QXMath_850 {

class IQXRectMatrix;
class QXRectMatrix;

// A symmetric matrix with nothing off its diagonal, kept in n doubles. It
// answers the whole symmetric interface, so a covariance or a block of a
// block-diagonal matrix can take this form; each product is a scaling of
// the other operand's rows or columns. Its type tag is 1.
class QXCOMMON_API QXDiagMatrix : public IQXSymMatrix {
 public:
  QXDiagMatrix();
  QXDiagMatrix(int nRows, bool clear);
  explicit QXDiagMatrix(const std::vector<double>& values);
  QXDiagMatrix(const QXDiagMatrix& other);
  QXDiagMatrix& operator=(const QXDiagMatrix& other);
  ~QXDiagMatrix() override;

  // The interface. Arguments of type IQXSymMatrix are read through their
  // tag and GetElem, so any of the three structures is accepted; a matrix
  // result goes to a dense out, or to a diagonal one when it is diagonal.
  int GetType() const override;
  int GetNRows() const override;
  // nRows >= 0 and one stored double per row.
  bool IsValidMatrix() const override;
  // 0.0 off the diagonal, without any check.
  double GetElem(int row, int col) const override;
  void GetDiagonal(std::vector<double>& diag) const override;
  bool GetRow(int row, std::vector<double>& out) const override;
  void AddToDiagonal(double value) override;
  void ChangeSign() override;
  // The inverse of each element above tol (compared directly, the reference
  // diag unread) into an inverse of any structure; the rank.
  int CholInverse(const std::vector<double>& diag, double tol,
                  IQXSymMatrix& inverse) const override;
  int CholInverse(const std::vector<double>& diag, double tol, IQXSymMatrix& inverse,
                  QXBitSet& nonRedundant) const override;
  int CholInverse(const std::vector<double>& diag, double tol, IQXSymMatrix& inverse,
                  double& minPivot) const override;
  void Clear() override;
  // Only for a diagonal x of the same order.
  bool ComputeAXpY(double a, const IQXSymMatrix& x) override;
  // The product of the elements as det[0] * 10^det[1]; tol is ignored.
  bool ComputeDeterminant(double tol, double* det) const override;
  double ComputeDotProduct2Rows(int row1, int row2) const override;
  bool ComputeGMG(const std::vector<double>& g, QXSymMatrix& out) const override;
  bool ComputeGMGNG(const IQXSymMatrix& m, const IQXSymMatrix& n, IQXSymMatrix& out,
                    std::vector<double>& work) const override;
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
  double ComputeVSV(const std::vector<double>& v) const override;
  double ComputeVSV(const IQXRectMatrix& r, int row) const override;
  // The sum of v_i * d_i * w_i.
  double ComputeVSW(const std::vector<double>& v, const std::vector<double>& w) const override;
  double ComputeVSW(const double* v, int vStride, const double* w, int wStride) const override;
  double ComputeVSW(const std::vector<double>& v, int first, int last, int other) const override;
  double ComputeVSWParts(const std::vector<double>& v, int vCount, const std::vector<double>& w,
                         int wCount) const override;
  double ComputeVSWParts(const double* v, int vCount, const double* w, int wCount) const override;
  // Into a diagonal or dense out; the tag of any other out is returned.
  bool ExtractFirstNRows(IQXSymMatrix& out) const override;
  bool ExtractSubmatrix(const std::vector<int>& rows, IQXSymMatrix& out) const override;
  // diag[i] = d_i where d_i >= lower, and replacement elsewhere.
  void GetNCheckDiagonal(std::vector<double>& diag, double lower,
                         double replacement) const override;
  bool IncrVecByRow(int row, std::vector<double>& v, int offset, int count, double scale,
                    bool check) const override;
  bool IsZeroRow(int row, const QXBitSet& columns) const override;
  // d_i = sqrt(d_i) where d_i > tol * diag[i], otherwise 0.0 and counted.
  int LTChol(const std::vector<double>& diag, double tol, bool check) override;
  int LTChol(const std::vector<double>& diag, double tol, QXBitSet& nonRedundant,
             bool check) override;
  int LTChol(double tol, double& minPivot, bool check) override;
  // The elements as the diagonal of L: the count of exact zeros, the
  // determinant for job % 10, and 1/d_i of the non-zero ones for job / 10.
  int LTDetInverse(double* det, int job) override;
  // 1/d_i for the non-zero elements.
  bool LTInverse() override;
  // Both square every element.
  void LTLLTrans() override;
  void LTLTransL() override;
  // x_i = b_i / d_i where d_i > tol (an absolute bound); otherwise x_i keeps
  // d_i and the row is counted. -1 at once for a negative d_i. Nothing is
  // factored and the matrix doesn't change.
  int LTSolve(const std::vector<double>& b, double tol, std::vector<double>& x) override;
  void MaxMinDiag(double& largest, double& smallest) const override;
  // The off-diagonal outputs are 0.0.
  void MaxMinDiagOffDiag(double& largestDiag, double& smallestDiag, double& largestOff,
                         double& smallestOff) const override;
  void MultiplyByNumber(double factor) override;
  // False unless every element of in but in[row] is 0.0.
  bool PutRow(int row, const std::vector<double>& in) override;
  bool Resize(int nRows) override;
  // Writes only on the diagonal; false, dropping the value, elsewhere.
  bool SetElem(int row, int col, double value) override;
  bool SetNRows(int nRows, bool clear) override;
  bool SetRowColToConst(int row, double value) override;
  double Trace() const override;
  double TraceOfProduct(const IQXSymMatrix& s) const override;
  double TraceOfProductOfThree(const IQXSymMatrix& s, const IQXSymMatrix& t) const override;
  bool ZeroOut(int row) override;
  // Nothing to do.
  void ZeroOutNonDiag(double ratio) override;
  void Display() const override;
  void DisplayF() const override;

  // Element i of the diagonal, unchecked.
  double GetElem(int i) const { return diagonal[i]; }
  void SetElem(int i, double value) { diagonal[i] = value; }
  // Becomes the given diagonal; false for an empty vector.
  bool ReplaceDiagonal(const std::vector<double>& values);
  std::vector<double>& AsVector() { return diagonal; }
  const std::vector<double>& AsVectorConst() const { return diagonal; }

  // out = L^T R for the factor L = this diagonal repeated nBlocks times: row
  // i of r scaled by d_(i mod n).
  bool ComputeLTransR(const QXRectMatrix& r, QXRectMatrix& out, int nBlocks) const;
  // d_row times element (rRow, offset + row) of r, and times element
  // (offset + row, rCol); 0.0 for a position outside d or r.
  double ComputeRVD(int row, const IQXRectMatrix& r, int rRow, int offset) const;
  double ComputeRTransVD(int row, const IQXRectMatrix& r, int rCol, int offset) const;

 protected:
  // Sizes the store to n doubles with the recovery of the dense class.
  static bool ResizeNRows(std::vector<double>& store, int& n);

  int nRows;
  std::vector<double> diagonal;
};

}  // namespace QXMath_850

#endif  // QX_MATRICES_QXDIAGMATRIX_H
