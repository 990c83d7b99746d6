#ifndef QX_MATRICES_QXSYMMATRIX_H
#define QX_MATRICES_QXSYMMATRIX_H

#include <vector>

#include "qx/foundation/qxexport.h"
#include "qx/matrices/qxbitset.h"

namespace QXMath_850 {

class IQXRectMatrix;
class QXRectMatrix;
class QXSparseRectMatrix;
class QXSymBlockDiagMatrix;
class QXSymMatrix;

// The one interface behind which statistical code keeps a symmetric matrix,
// implemented by the dense QXSymMatrix, the diagonal QXDiagMatrix and the
// block-diagonal QXSymBlockDiagMatrix. Operations that take a second matrix
// ask it for its type tag first (0 dense, 1 diagonal, 2 block-diagonal) and
// take the path for its structure or refuse. The slots stay in this order.
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
  virtual double ComputeDotProduct2Rows(int row1, int row2) const = 0;
  virtual bool ComputeGMG(const std::vector<double>& g, QXSymMatrix& out) const = 0;
  virtual bool ComputeGMGNG(const IQXSymMatrix& m, const IQXSymMatrix& n, IQXSymMatrix& out,
                            std::vector<double>& work) const = 0;
  virtual bool ComputeMGN(const IQXSymMatrix& g, const IQXSymMatrix& n,
                          IQXSymMatrix& out) const = 0;
  virtual bool ComputeGSG(const IQXSymMatrix& s, IQXSymMatrix& out) const = 0;
  virtual bool ComputeLSLTrans(const IQXSymMatrix& s, IQXSymMatrix& out) const = 0;
  virtual bool ComputeLTransSL(const IQXSymMatrix& s, IQXSymMatrix& out, int nBlocks) const = 0;
  virtual bool ComputeLTransV(const std::vector<double>& v, std::vector<double>& out) const = 0;
  virtual bool ComputeLTransV(const std::vector<int>& index, const std::vector<double>& v,
                              std::vector<double>& out) const = 0;
  virtual bool ComputeLV(const std::vector<double>& v, std::vector<double>& out) const = 0;
  virtual bool ComputeLV(const std::vector<int>& index, const std::vector<double>& v,
                         std::vector<double>& out) const = 0;
  virtual double ComputeRowDotProductS(int row, const IQXSymMatrix& s, int otherRow) const = 0;
  virtual double ComputeRowDotProductS(int row, const std::vector<double>& packed,
                                       int otherRow) const = 0;
  virtual bool ComputeRS(const IQXRectMatrix& r, IQXRectMatrix& out) const = 0;
  virtual bool ComputeRSRTrans(const IQXRectMatrix& r, IQXSymMatrix& out) const = 0;
  virtual bool ComputeRTransS(const IQXRectMatrix& r, IQXRectMatrix& out) const = 0;
  virtual bool ComputeRTransSR(const IQXRectMatrix& r, IQXSymMatrix& out) const = 0;
  virtual bool ComputeRTransSV(const IQXRectMatrix& r, const std::vector<double>& v,
                               std::vector<double>& out) const = 0;
  virtual double ComputeRVD(int row, const std::vector<double>& v, int stride) const = 0;
  virtual double ComputeRVD(int row, const double* v, int stride) const = 0;
  virtual bool ComputeSS(const IQXSymMatrix& s, IQXRectMatrix& out) const = 0;
  virtual bool ComputeSTransS(IQXSymMatrix& out) const = 0;
  virtual bool ComputeSV(const std::vector<double>& v, std::vector<double>& out) const = 0;
  virtual bool ComputeSV(int firstRow, const std::vector<double>& v,
                         std::vector<double>& out) const = 0;
  virtual double ComputeVSV(const std::vector<double>& v) const = 0;
  virtual double ComputeVSV(const IQXRectMatrix& r, int row) const = 0;
  virtual double ComputeVSW(const std::vector<double>& v, const std::vector<double>& w) const = 0;
  virtual double ComputeVSW(const double* v, int vStride, const double* w, int wStride) const = 0;
  virtual double ComputeVSW(const std::vector<double>& v, int first, int last, int other) const = 0;
  virtual double ComputeVSWParts(const std::vector<double>& v, int vCount,
                                 const std::vector<double>& w, int wCount) const = 0;
  virtual double ComputeVSWParts(const double* v, int vCount, const double* w,
                                 int wCount) const = 0;
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
  virtual double TraceOfProduct(const IQXSymMatrix& s) const = 0;
  virtual double TraceOfProductOfThree(const IQXSymMatrix& s, const IQXSymMatrix& t) const = 0;
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
  // this += a x for x of any of the three structures, of the same order.
  bool ComputeAXpY(double a, const IQXSymMatrix& x) override;
  bool ComputeDeterminant(double tol, double* det) const override;
  // Dot of the symmetric rows row1 and row2, summed over the columns in
  // order; 0.0 for a bad row.
  double ComputeDotProduct2Rows(int row1, int row2) const override;
  // out = G M G, this matrix being M and G given by its packed store.
  bool ComputeGMG(const std::vector<double>& g, QXSymMatrix& out) const override;
  // out = G M G N G, this matrix being G, formed row by row from the left;
  // m and n may be of any structure, out must be dense.
  bool ComputeGMGNG(const IQXSymMatrix& m, const IQXSymMatrix& n, IQXSymMatrix& out,
                    std::vector<double>& work) const override;
  // out = the lower triangle of M G N, this matrix being M.
  bool ComputeMGN(const IQXSymMatrix& g, const IQXSymMatrix& n, IQXSymMatrix& out) const override;
  // out = G S G, this matrix being G; s of any structure, out dense.
  bool ComputeGSG(const IQXSymMatrix& s, IQXSymMatrix& out) const override;
  // out = L S L^T, this matrix being S and L the lower triangle of s (a
  // Cholesky factor, of any structure).
  bool ComputeLSLTrans(const IQXSymMatrix& s, IQXSymMatrix& out) const override;
  // out = L^T S L, this matrix being S of order q * nBlocks and L the lower
  // triangle of s (of order q) repeated nBlocks times along the diagonal.
  bool ComputeLTransSL(const IQXSymMatrix& s, IQXSymMatrix& out, int nBlocks) const override;
  // L^T v and L v for the factor L in the lower triangle; the index forms
  // take a sparse v, value k at row index[k].
  bool ComputeLTransV(const std::vector<double>& v, std::vector<double>& out) const override;
  bool ComputeLTransV(const std::vector<int>& index, const std::vector<double>& v,
                      std::vector<double>& out) const override;
  bool ComputeLV(const std::vector<double>& v, std::vector<double>& out) const override;
  bool ComputeLV(const std::vector<int>& index, const std::vector<double>& v,
                 std::vector<double>& out) const override;
  // Dot of row `row` of this matrix with row otherRow of s (dense only, else
  // the missing value) or of the packed store of another matrix of this
  // order; 0.0 for a bad row or order.
  double ComputeRowDotProductS(int row, const IQXSymMatrix& s, int otherRow) const override;
  double ComputeRowDotProductS(int row, const std::vector<double>& packed,
                               int otherRow) const override;
  // Products with a rectangular R: R S, R S R^T, R^T S, R^T S R, R^T S v. R S
  // takes a dense R only; the others also a sparse one, at the cost of its
  // non-zeros and with the dense result to the bit on finite values.
  bool ComputeRS(const IQXRectMatrix& r, IQXRectMatrix& out) const override;
  bool ComputeRSRTrans(const IQXRectMatrix& r, IQXSymMatrix& out) const override;
  bool ComputeRTransS(const IQXRectMatrix& r, IQXRectMatrix& out) const override;
  bool ComputeRTransSR(const IQXRectMatrix& r, IQXSymMatrix& out) const override;
  bool ComputeRTransSV(const IQXRectMatrix& r, const std::vector<double>& v,
                       std::vector<double>& out) const override;
  // Dot of the symmetric row with v at the given stride; 0.0 for a bad row.
  double ComputeRVD(int row, const std::vector<double>& v, int stride) const override;
  double ComputeRVD(int row, const double* v, int stride) const override;
  // out (square, dense) = this matrix times the dense s.
  bool ComputeSS(const IQXSymMatrix& s, IQXRectMatrix& out) const override;
  // out = S^T S; a non-dense out is left alone and its tag returned.
  bool ComputeSTransS(IQXSymMatrix& out) const override;
  // S v; the second form only for the rows from firstRow on, the rows above
  // it getting 0.0.
  bool ComputeSV(const std::vector<double>& v, std::vector<double>& out) const override;
  bool ComputeSV(int firstRow, const std::vector<double>& v,
                 std::vector<double>& out) const override;
  // Quadratic form; 0.0 when v isn't of the order.
  double ComputeVSV(const std::vector<double>& v) const override;
  // Quadratic form of row `row` of r.
  double ComputeVSV(const IQXRectMatrix& r, int row) const override;
  // The bilinear form: sum over rows i of (sum over columns j of v_j a_ij)
  // times w_i, the full symmetric matrix read in that order.
  double ComputeVSW(const std::vector<double>& v, const std::vector<double>& w) const override;
  double ComputeVSW(const double* v, int vStride, const double* w, int wStride) const override;
  // The form of v's elements first..last with the rectangle of those rows and
  // of the columns from `other` on, v's elements from `other` on taking the
  // column side: sum over i of (sum over k of v[other + k] a(i, other + k))
  // times v[i].
  double ComputeVSW(const std::vector<double>& v, int first, int last, int other) const override;
  // The form over the rows below min(n, wCount) and the columns below
  // min(n, vCount).
  double ComputeVSWParts(const std::vector<double>& v, int vCount, const std::vector<double>& w,
                         int wCount) const override;
  double ComputeVSWParts(const double* v, int vCount, const double* w, int wCount) const override;
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
  // Sum over i of ComputeRowDotProductS(i, s, i): the trace of S1 S2.
  double TraceOfProduct(const IQXSymMatrix& s) const override;
  // Trace of S1 S2 S3, with s and t dense.
  double TraceOfProductOfThree(const IQXSymMatrix& s, const IQXSymMatrix& t) const override;
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

  // A sparse rank-one update from row and column `corner` on: index k of the
  // list stands for row corner + index[k].
  bool UpdateXXCornerSparse(int count, const std::vector<int>& indices,
                            const std::vector<double>& values, double w, int corner);
  // this += w [a, b]^T [a, b], of order cols(a) + cols(b): each element gets
  // w times the dot of its two columns.
  bool UpdateXXMat2(const QXRectMatrix& a, const QXRectMatrix& b, double w);
  // Cross-products of a sparse block added to the trailing block of order
  // cols(r): the sum over rows k of weights[k] r_k r_k^T (any sign; a zero
  // weight skips the row), or R^T S R for s of order rows(r). False, with
  // nothing added, when cols(r) exceeds the order or the weights or s don't
  // match r's rows. The first costs in proportion to the sum over the rows of
  // their non-zeros squared, and equals the dense rank-one updates row by row
  // to the bit on finite values.
  bool UpdateXXCornerBlock(const QXSparseRectMatrix& r, const std::vector<double>& weights);
  bool UpdateXXCornerBlock(const QXSparseRectMatrix& r, const QXSymMatrix& s);

  // ---- Forms and products beyond the interface (qxsymmatrix_products.cpp).

  // Dot of the row with a sparse vector of count entries.
  double ComputeRVD(int row, const int* index, const double* v, int count) const;
  // Quadratic and bilinear forms of sparse vectors by positions and values;
  // w on the row side, v on the column side.
  double ComputeVSV(const std::vector<int>& index, const std::vector<double>& v) const;
  double ComputeSpVSSpW(int vCount, const std::vector<int>& vIndex, const std::vector<double>& v,
                        int wCount, const std::vector<int>& wIndex,
                        const std::vector<double>& w) const;
  // sqrt(v^T S v), 0.0 where rounding leaves the form below zero.
  double SquareRootVSV(const std::vector<double>& v) const;
  // The form over rows wFirst..wFirst+wCount-1 and columns vFirst..
  // vFirst+vCount-1 (held to the order), v and w indexed by matrix position.
  double ComputeVSWParts(const double* v, int vFirst, int vCount, const double* w, int wFirst,
                         int wCount) const;
  // As ComputeVSW, but w (ii) or v (Vii) is read down a column of a packed
  // matrix: its position grows by step + i after element i.
  double ComputeVSWii(const double* v, int vStride, const double* w, int wStep) const;
  double ComputeViiSW(const double* v, int vStep, const double* w, int wStride) const;
  // Forms on the diagonal sub-block from row `first`: over wCount rows and
  // vCount columns of it, and over count rows with v and w from the offsets.
  double ComputeVSSubWParts(int first, const double* v, int vCount, const double* w,
                            int wCount) const;
  double ComputeVSymSubW(int first, int count, const std::vector<double>& v, int vOffset,
                         const std::vector<double>& w, int wOffset) const;
  // Forms on block (blockRow, blockCol) of the block view, v and w of the
  // block size; 0.0 for a bad block or size.
  double ComputeBlockVSW(int blockRow, int blockCol, const std::vector<double>& v,
                         const std::vector<double>& w) const;
  double ComputeBlockVSV(int blockRow, int blockCol, const std::vector<double>& v) const;

  // S v for a sparse v.
  bool ComputeSV(const std::vector<int>& index, const std::vector<double>& v,
                 std::vector<double>& out) const;

  // Partial dots over count elements from `first`, false on a bad range.
  // L-forms walk only the factor's lower triangle; IIncr forms read v from
  // vStart with steps vInc, vInc + 1, ... (down a column of a packed
  // matrix), and the Delayed forms begin that walk `delay` steps in.
  bool ComputeDotLColVecPart(int col, const std::vector<double>& v, int first, int count,
                             double& result) const;
  bool ComputeDotLRowVecPart(int row, const std::vector<double>& v, int first, int count,
                             double& result) const;
  bool ComputeDotLColVecIIncrPart(int col, const std::vector<double>& v, int vStart, int vInc,
                                  int first, int count, double& result) const;
  // From the diagonal to the last row.
  bool ComputeDotLColVecIIncrDiag(int col, const std::vector<double>& v, int vStart, int vInc,
                                  double& result) const;
  // The symmetric column (not only its lower part).
  bool ComputeDotColVecIIncrPart(int col, const std::vector<double>& v, int vStart, int vInc,
                                 int first, int count, double& result) const;
  bool DotLColVecDelayedIIncrPart(int col, const std::vector<double>& v, int vStart, int vInc,
                                  int delay, int first, int count, double& result) const;
  bool DotRowVecDelayedIIncrPart(int row, const std::vector<double>& v, int vStart, int vInc,
                                 int delay, int first, int count, double& result) const;
  // Column col of L against row `row` of L, over columns first.. of the row.
  bool DotProductLColRowPart(int col, int row, int first, int count, double& result) const;
  // Column col of L against row otherRow of another packed matrix of this order.
  bool DotLColRowPart(int col, const std::vector<double>& packed, int otherRow, int first,
                      int count, double& result) const;
  // out (count) = L_block^T v_part for the diagonal block of L from `first`:
  // out[j] = sum over k >= j of v[first + k] L(first + k, first + j).
  bool ComputeVecPartByL(const std::vector<double>& v, int first, int count,
                         std::vector<double>& out) const;
  bool ComputeVecIIncPartByL(const std::vector<double>& v, int vStart, int vInc, int first,
                             int count, std::vector<double>& out) const;

  // out = A^T S B + B^T S A for a and b of n rows and equal shape.
  bool ComputeRSRTrans2(const QXRectMatrix& a, const QXRectMatrix& b, QXSymMatrix& out) const;
  // out = R S_sub R^T for the diagonal sub-block of s of count rows from
  // first, r having count columns.
  static bool ComputeRSRTrans2(const QXSymMatrix& s, int first, int count, const QXRectMatrix& r,
                               QXSymMatrix& out);
  // out = R diag(S) R^T.
  bool ComputeRDiagSRDiagTrans(const QXRectMatrix& r, QXSymMatrix& out) const;
  // This matrix becomes R^T R (R R^T), one block.
  bool ComputeRTransByR(const QXRectMatrix& r);
  bool ComputeRByRTrans(const QXRectMatrix& r);
  // Add R^T S R (R^T B R) to the diagonal sub-block from row `first`, of
  // order cols(r); s (b) is of order rows(r).
  bool ComputeRTransSymR(const QXRectMatrix& r, int first, const IQXSymMatrix& s);
  bool ComputeRTransBlockDiagR(const QXRectMatrix& r, int first, const QXSymBlockDiagMatrix& b);
  // As ExpandSym, into a full square out.
  bool ExpandSymToRect(const QXRectMatrix& r, QXRectMatrix& out) const;
  // Trace of S_sub V for the diagonal sub-block from `first` of the order of
  // V, given by its packed store v or as a dense s.
  bool TraceOfProductSubSym(const std::vector<double>& v, int first, double& trace) const;
  bool TraceOfProductSubMatSym(int first, const IQXSymMatrix& s, double& trace) const;

  // ---- With a block-diagonal matrix b of order m (qxsymmatrix_products.cpp).

  // u^T B w for rows row1 (u) and row2 (w) of the diagonal sub-block of
  // order m from `first`; the second form over b's blocks fromBlock..toBlock.
  bool ComputeVBW(int first, int row1, int row2, const QXSymBlockDiagMatrix& b,
                  double& result) const;
  bool ComputeVBW(int first, int row1, int row2, const QXSymBlockDiagMatrix& b, int fromBlock,
                  int toBlock, double& result) const;
  // out = S_sub B S_sub for the diagonal sub-block from `first` of order m,
  // or of order count against b's principal block from row bFirst.
  bool ComputeSSubBSSub(int first, const QXSymBlockDiagMatrix& b, QXSymMatrix& out) const;
  bool ComputeSSubBSSub(int first, int count, const QXSymBlockDiagMatrix& b, int bFirst,
                        QXSymMatrix& out) const;
  // Replace parts of this matrix by their products with the factor L held in
  // b: the sub-block from `first` by L^T S_sub L (or L S_sub L^T); row `row`
  // below it, or every row below it, at columns first..first+m-1 by
  // (that part) L; and the whole matrix by T^T S T with T = diag(I, L, I).
  bool SubSymBlockLTSBlockL(int first, const QXSymBlockDiagMatrix& b);
  bool SubSymSBlockL(int first, const QXSymBlockDiagMatrix& b);
  bool SubSymVectBlockL(int first, int row, const QXSymBlockDiagMatrix& b);
  bool SubSymRectTBlockL(int first, const QXSymBlockDiagMatrix& b);
  bool AugmentUsingBlockDiagL(int first, const QXSymBlockDiagMatrix& b);
  // out = S_sub v for the sub-block of count rows from first; out = A_rect v
  // and A_rect^T v for the nr by nc rectangle at (row, col).
  bool SubSymSV(int first, int count, const std::vector<double>& v, std::vector<double>& out) const;
  bool SubSymRectV(int row, int col, int nr, int nc, const std::vector<double>& v,
                   std::vector<double>& out) const;
  bool SubSymRectTV(int row, int col, int nr, int nc, const std::vector<double>& v,
                    std::vector<double>& out) const;
  // The element (row, col) of S L for the factor L of order q = n / nBlocks
  // repeated along the diagonal, held in a packed store s or in b: the sum
  // over the rows r of col's block, r >= col, of S(row, r) L(r, col).
  bool DotProductLBlockColRow(int col, const std::vector<double>& s, int nBlocks, int row,
                              double& result) const;
  bool DotProductLBlockDiagColRow(int col, const QXSymBlockDiagMatrix& b, int nBlocks, int row,
                                  double& result) const;

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

  // ---- Systems that may be singular (qxsymmatrix_solve.cpp).

  // S x = b on an independent set of rows, chosen by up to two redundancy
  // searches on the cross-products S^T S at tolerance 2 tol, the chosen block
  // solved by the symmetric indefinite factorization; x is 0.0 at the rows
  // left out. False unless n > 0, tol >= 0.0 and b has n elements, when no
  // row is independent, or when the chosen block is singular.
  bool SolveIndefinite(double tol, const std::vector<double>& b, std::vector<double>& x);
  // The same on the rows the caller keeps: those with a true bit (below
  // min(n, keep.Size())) and every row beyond keep, less the rows that are
  // zero in the kept columns. With every bit true the whole matrix is solved.
  bool SolveIndefinite(const QXBitSet& keep, const std::vector<double>& b, std::vector<double>& x);
  // x from the normal equations (S^T S) x = S b by the rank-tolerant
  // Cholesky solve. True when fewer than n rows were redundant, which
  // includes a refused solve (count -1); false unless n > 0, tol >= 0.0 and
  // b has n elements.
  bool SolveIndefiniteGI(double tol, const std::vector<double>& b, std::vector<double>& x);

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

// out[k] = v[indices[k]]: v gathered at a list of positions. False, with out
// unchanged, when a position lies outside v.
QXCOMMON_API bool VecExtract(const std::vector<double>& v, const std::vector<int>& indices,
                             std::vector<double>& out);
// out, of n elements, is 0.0 but at indices[k], where it is v[k]: the reverse
// of VecExtract. False, with out unchanged, when v and indices differ in
// length or a position lies outside 0..n-1.
QXCOMMON_API bool VecExpand2(const std::vector<double>& v, const std::vector<int>& indices, int n,
                             std::vector<double>& out);

}  // namespace QXMath_850

#endif  // QX_MATRICES_QXSYMMATRIX_H
