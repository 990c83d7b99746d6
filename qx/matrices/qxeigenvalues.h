#ifndef QX_MATRICES_QXEIGENVALUES_H
#define QX_MATRICES_QXEIGENVALUES_H

#include <utility>
#include <vector>

#include "qx/foundation/qxexport.h"
#include "qx/matrices/qxrectmatrix.h"
#include "qx/matrices/qxsymmatrix.h"

namespace QXMath_850 {

// Eigenvalues, and on request eigenvectors, of a symmetric matrix H, or of
// the generalized problem H v = lambda E v through E's Cholesky factor.
// Components use it for principal components and discriminants, and to test
// and repair a covariance matrix that isn't positive definite. Householder
// tridiagonalization on the packed store, then QL with implicit shifts.
//
// Results come back by value: a count of converged eigenvalues below the
// order is a partial result, and nothing is thrown.
class QXCOMMON_API QXEigenValues {
 public:
  // Tolerance 1e-12 and 30 iterations per eigenvalue; a tol that isn't above
  // 0.0 and a maxIter below 1 take those defaults.
  QXEigenValues();
  QXEigenValues(double tol, int maxIter);
  QXEigenValues(const QXSymMatrix& h, double tol, int maxIter);
  QXEigenValues(const QXSymMatrix& h, const QXSymMatrix& e, double tol, int maxIter);
  virtual ~QXEigenValues();

  // False, and nothing changed, unless tol > 0.0 (maxIter >= 1).
  bool SetTolerance(double tol);
  bool SetMaxIter(int maxIter);
  double GetTolerance() const { return tolerance; }
  int GetMaxIter() const { return maxIter; }
  bool IsValidEMatrix() const { return eValid; }

  // Copies H; returns its order. A usable E of the same order is kept and
  // the reduced matrix formed again; one of another order is dropped.
  int SetHMatrix(const QXSymMatrix& h);
  // Factors E = L L^T (rank-tolerant, with the tolerance) and forms
  // L^-1 H L^-T. False, with E dropped, for a wrong order, a failed factor
  // or an E of rank 0.
  bool SetEMatrix(const QXSymMatrix& e);

  // The tridiagonal form of H (of L^-1 H L^-T with E) into the diagonal and
  // sub-diagonal; the Householder vectors are kept only when vectors are
  // wanted.
  void TriDiag();
  // The eigenvalues, unsorted, in values (sized to the order): the number
  // that converged, all n when it is n. Below 1 nothing is written; -2 before
  // a matrix is set.
  int Compute(std::vector<double>& values);
  // The same with the eigenvectors: row k of vectors (n by n) belongs to
  // values[k], orthonormal, or E-orthonormal (v^T E v = 1) with E.
  int Compute(std::vector<double>& values, QXRectMatrix& vectors);
  // The converged eigenvalues (and vectors) in order, computed first if
  // needed; returns their number as Compute does.
  int GetSorted(std::vector<double>& values, bool descending);
  int GetSorted(std::vector<double>& values, QXRectMatrix& vectors, bool descending);

  // True when every eigenvalue converged; then isPD says whether none is
  // below minValue (1e-06 for a minValue of 0.0 or below).
  bool IsPDHMatrix(double minValue, bool& isPD);
  // out = H when no eigenvalue is below minValue; otherwise H rebuilt from
  // its spectrum with those eigenvalues raised to minValue, and changed true.
  // False unless every eigenvalue converged.
  bool GetPDHMatrix(double minValue, QXSymMatrix& out, bool& changed);
  bool GetPDHMatrix(double minValue, QXSymMatrix& out);

  void Display() const;

  // Orders for sorting: values descending and ascending, and (value, index)
  // pairs by value.
  static bool CompareD(double a, double b);
  static bool CompareA(double a, double b);
  static bool PCompareD(const std::pair<double, int>& a, const std::pair<double, int>& b);
  static bool PCompareA(const std::pair<double, int>& a, const std::pair<double, int>& b);

 protected:
  // EISPACK TRED3 on the packed store of work.
  void Tred3();
  // QL with implicit shifts on the tridiagonal form: 0 when all converged,
  // l + 1 when eigenvalue l ran out of iterations, -1 for bad sizes.
  int EigenValuesTQLI();
  // EISPACK TRBAK3: the Householder steps kept in work applied to the
  // converged eigenvectors.
  void BackTransVectors();
  void ResetE();
  // Copies the converged vectors out in the given order of rows, through
  // L^-T when E is in use.
  void CopyVectorsOut(const std::vector<int>& order, QXRectMatrix& vectors) const;
  // Ensures values (and, with `vectors`, back-transformed vectors) for the
  // current matrices; the count converged.
  int EnsureComputed(bool vectors);

  int nRows;
  double tolerance;
  int maxIter;
  bool wantVectors;
  QXSymMatrix hMatrix;
  QXSymMatrix eMatrix;
  std::vector<double> eDiagonal;
  QXSymMatrix eFactor;
  QXSymMatrix eFactorInverse;
  QXSymMatrix transformed;
  QXSymMatrix work;
  QXSymMatrix eigenScratch;
  int eRank;
  bool eValid;
  std::vector<double> diagonal;
  std::vector<double> subDiagonal;
  std::vector<double> eigenValues;
  int nConverged;
  QXRectMatrix eigenVectors;
  // What the last Compute left: values for the current matrices, and
  // eigenvectors already carried back through the Householder steps.
  bool valuesReady;
  bool vectorsReady;
};

}  // namespace QXMath_850

#endif  // QX_MATRICES_QXEIGENVALUES_H
