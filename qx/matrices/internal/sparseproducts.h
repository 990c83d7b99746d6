#ifndef QX_MATRICES_INTERNAL_SPARSEPRODUCTS_H
#define QX_MATRICES_INTERNAL_SPARSEPRODUCTS_H

// Products of the dense symmetric matrix with a sparse rectangular one, and
// the accumulation of a sparse block's cross-products into it. Each costs in
// proportion to the sparse matrix's non-zeros, and adds its terms in the
// order of the dense product, leaving out only the zero ones, so that on
// finite values the two agree to the bit. Never installed.

#include <vector>

#include "qx/matrices/qxsparserectmatrix.h"
#include "qx/matrices/qxsymmatrix.h"

namespace QXMath_850 {
namespace internal {

// R^T S, R S R^T and R^T S R for s of order n; the meaning, checks and
// output handling of the QXSymMatrix slots of the same names.
bool SparseRTransS(const QXSymMatrix& s, const QXSparseRectMatrix& r, IQXRectMatrix& out);
bool SparseRSRTrans(const QXSymMatrix& s, const QXSparseRectMatrix& r, IQXSymMatrix& out);
bool SparseRTransSR(const QXSymMatrix& s, const QXSparseRectMatrix& r, IQXSymMatrix& out);

// Add R^T S R, or the sum over rows k of w_k r_k r_k^T, to the trailing
// block of a of order cols(r). Sizes are checked by the caller.
void AddSparseRTransSR(QXSymMatrix& a, const QXSparseRectMatrix& r, const QXSymMatrix& s);
void AddSparseCrossProducts(QXSymMatrix& a, const QXSparseRectMatrix& r,
                            const std::vector<double>& w);

}  // namespace internal
}  // namespace QXMath_850

#endif  // QX_MATRICES_INTERNAL_SPARSEPRODUCTS_H
