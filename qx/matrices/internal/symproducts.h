#ifndef QX_MATRICES_INTERNAL_SYMPRODUCTS_H
#define QX_MATRICES_INTERNAL_SYMPRODUCTS_H

// Products of symmetric matrices of any structure, written only against the
// interface: each is built from S v (ComputeSV) and row reads (GetRow) of its
// operands, row by row of the result, so that no temporary beyond a few
// vectors is formed. The diagonal and block-diagonal classes answer their
// matrix products with these, and the dense class its products with a
// non-dense operand. Never installed.

#include <vector>

#include "qx/matrices/qxrectmatrix.h"
#include "qx/matrices/qxsymmatrix.h"

namespace QXMath_850 {
namespace internal {

// Makes out ready for a symmetric result of order n: it must be dense, or
// diagonal when `diagonalResult`; it is sized anew if its order differs and
// cleared otherwise. False, with out untouched, when it can't take the result.
bool PrepareSymOut(IQXSymMatrix& out, int n, bool diagonalResult);
// The same for a dense rectangular result of rows by cols.
bool PrepareRectOut(IQXRectMatrix& out, int rows, int cols);

// Row i of r into v (through the row pointer when r is dense).
void RectRow(const IQXRectMatrix& r, int i, std::vector<double>& v);

// Sum over k of x[k] * y[k], in order.
double Dot(const std::vector<double>& x, const std::vector<double>& y);

// The products, each with the meaning of the interface slot of the same name;
// a is the matrix the slot is called on. Sizes are checked here.
bool SymRS(const IQXSymMatrix& a, const IQXRectMatrix& r, IQXRectMatrix& out);
bool SymRTransS(const IQXSymMatrix& a, const IQXRectMatrix& r, IQXRectMatrix& out);
bool SymRSRTrans(const IQXSymMatrix& a, const IQXRectMatrix& r, IQXSymMatrix& out);
bool SymRTransSR(const IQXSymMatrix& a, const IQXRectMatrix& r, IQXSymMatrix& out);
bool SymRTransSV(const IQXSymMatrix& a, const IQXRectMatrix& r, const std::vector<double>& v,
                 std::vector<double>& out);
bool SymSS(const IQXSymMatrix& a, const IQXSymMatrix& s, IQXRectMatrix& out);
bool SymSTransS(const IQXSymMatrix& a, IQXSymMatrix& out);
bool SymGSG(const IQXSymMatrix& g, const IQXSymMatrix& s, IQXSymMatrix& out);
bool SymGMG(const IQXSymMatrix& m, const std::vector<double>& g, IQXSymMatrix& out);
bool SymMGN(const IQXSymMatrix& m, const IQXSymMatrix& g, const IQXSymMatrix& n, IQXSymMatrix& out);
bool SymGMGNG(const IQXSymMatrix& g, const IQXSymMatrix& m, const IQXSymMatrix& n,
              IQXSymMatrix& out, std::vector<double>& work);
bool SymLSLTrans(const IQXSymMatrix& a, const IQXSymMatrix& s, IQXSymMatrix& out);
bool SymLTransSL(const IQXSymMatrix& a, const IQXSymMatrix& s, IQXSymMatrix& out, int nBlocks);
// 0.0 on a size mismatch.
double SymTraceOfProduct(const IQXSymMatrix& a, const IQXSymMatrix& s);
double SymTraceOfProductOfThree(const IQXSymMatrix& a, const IQXSymMatrix& s,
                                const IQXSymMatrix& t);
// Sum over rows i < min(n, wCount) of (sum over columns j < min(n, vCount) of
// v[j] a_ij) * w[i], rows read through GetRow.
double SymVSWParts(const IQXSymMatrix& a, const double* v, int vCount, const double* w, int wCount);
// The form of ComputeVSW(v, first, last, other), through GetElem.
double SymVSWStretch(const IQXSymMatrix& a, const std::vector<double>& v, int first, int last,
                     int other);

}  // namespace internal
}  // namespace QXMath_850

#endif  // QX_MATRICES_INTERNAL_SYMPRODUCTS_H
