#ifndef QX_MATRICES_QXSPARSEVECTOR_H
#define QX_MATRICES_QXSPARSEVECTOR_H

#include <vector>

#include "qx/foundation/qxexport.h"

namespace QXMath_850 {

class QXSymMatrix;

// A light view of one sparse row: ascending positions and their values, both
// owned by the caller, who must keep them alive and unchanged while the view
// is used. Components add such rows to vectors and cross-product matrices at
// the cost of their non-zero elements only, and hand them to IQXRectMatrix.
//
// The view is valid when it has elements, both lists have the same length and
// the positions are 0 or above and rise strictly. Operations that place
// values by position refuse an invalid view.
class QXCOMMON_API QXSparseVector {
 public:
  QXSparseVector(const std::vector<int>& indices, const std::vector<double>& values);

  bool IsValid() const { return valid; }
  int GetNElements() const { return count; }
  // Last position + 1: the shortest regular vector that holds this one; 0
  // when there are no elements.
  int GetMinVecSize() const;
  // Position i; -1 out of range.
  int GetIndex(int i) const;
  // Value i; the missing value out of range.
  double GetValue(int i) const;
  const std::vector<int>& GetIndices() const { return *indices; }
  const std::vector<double>& GetValues() const { return *values; }

  // v[offset + position] += factor * value; false, with v untouched, if
  // offset < 0 or the last position lands beyond v.
  bool IncrementPart(std::vector<double>& v, int offset, double factor) const;
  // Sum of value * v[offset + position]; the missing value under the same
  // conditions as IncrementPart, 0.0 for no elements.
  double InnerProductWithPart(const std::vector<double>& v, int offset) const;
  // Dot product of two sparse vectors by a merge of their ascending
  // positions; the missing value for a null pointer or a negative count.
  static double InnerProduct(const int* aIndex, const double* aValue, int aCount, const int* bIndex,
                             const double* bValue, int bCount);
  // v is grown to GetMinVecSize() if shorter (a longer v keeps its size),
  // cleared, and the values placed; returns v's size, or -1 for an invalid
  // view, with v untouched.
  int ConvertToRegularVector(std::vector<double>& v) const;

  // s becomes the outer product of this vector with itself: cleared when its
  // order suffices, otherwise sized anew to GetMinVecSize().
  bool QuadraticOuterProduct(QXSymMatrix& s) const;
  // s(p_i, p_j) += (w * value_i) * value_j for j <= i; s is sized anew, and
  // so cleared, only when its order is too small.
  bool QuadraticOuterProductIncr(QXSymMatrix& s, double w) const;
  // The same increment at positions offset + p; false if offset < 0 or s's
  // order is too small.
  bool QuadraticOuterProductPartIncr(QXSymMatrix& s, int offset, double w) const;
  // s(row, offset + p) += factor * value; false for a bad row or offset, or
  // when s's order is too small.
  bool IncrementRowPart(QXSymMatrix& s, int row, int offset, double factor) const;

  // Multinomial logit probabilities of one case with this vector as its row:
  // category k < nCategories - 1 has the linear predictor
  // InnerProductWithPart(coefficients, k * stride), the last category 0. The
  // exponents are shifted so that nothing overflows; logLast is the log of
  // the last category's probability.
  bool ComputeProbabilities(const std::vector<double>& coefficients, int nCategories, int stride,
                            std::vector<double>& probabilities, double& logLast) const;

  void Display() const;

 private:
  int count;
  const std::vector<int>* indices;
  const std::vector<double>* values;
  bool valid;
};

}  // namespace QXMath_850

#endif  // QX_MATRICES_QXSPARSEVECTOR_H
