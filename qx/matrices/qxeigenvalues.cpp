#include "qx/matrices/qxeigenvalues.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "qx/foundation/qxcomponentdisplay.h"
#include "qx/matrices/blas1_d.h"
#include "qx/matrices/internal/packedlayout.h"
#include "qx/matrices/qxmathfun.h"

namespace QXMath_850 {

namespace {

using internal::RowStart;

constexpr double kDefaultTolerance = 1e-12;
constexpr int kDefaultMaxIter = 30;
constexpr double kDefaultMinValue = 1e-06;
// Below this a row's scale counts as zero: the smallest normal double.
constexpr double kTinyScale = 2.2250738585072014e-308;

// Row j of the leading triangle gets -u_j p and then -p_j u, element by
// element as the two Daxpy calls would (each skipped when its factor is
// 0.0), in one pass over the row.
void RankTwoUpdate(double* a, int m, const double* u, const double* p) {
  for (int j = 0; j < m; ++j) {
    double* r = a + RowStart(j);
    const double a1 = -u[j];
    const double a2 = -p[j];
    if (a1 != 0.0 && a2 != 0.0) {
      for (int k = 0; k <= j; ++k)
        r[k] = (r[k] + a1 * p[k]) + a2 * u[k];
    } else if (a1 != 0.0) {
      for (int k = 0; k <= j; ++k)
        r[k] = r[k] + a1 * p[k];
    } else if (a2 != 0.0) {
      for (int k = 0; k <= j; ++k)
        r[k] = r[k] + a2 * u[k];
    }
  }
}

}  // namespace

QXEigenValues::QXEigenValues() : QXEigenValues(kDefaultTolerance, kDefaultMaxIter) {}

QXEigenValues::QXEigenValues(double tol, int maxIter)
    : nRows(0),
      tolerance(tol > 0.0 ? tol : kDefaultTolerance),
      maxIter(maxIter > 0 ? maxIter : kDefaultMaxIter),
      wantVectors(false),
      eRank(0),
      eValid(false),
      nConverged(0),
      valuesReady(false),
      vectorsReady(false) {}

QXEigenValues::QXEigenValues(const QXSymMatrix& h, double tol, int maxIter)
    : QXEigenValues(tol, maxIter) {
  SetHMatrix(h);
}

QXEigenValues::QXEigenValues(const QXSymMatrix& h, const QXSymMatrix& e, double tol, int maxIter)
    : QXEigenValues(h, tol, maxIter) {
  SetEMatrix(e);
}

QXEigenValues::~QXEigenValues() = default;

bool QXEigenValues::SetTolerance(double tol) {
  if (!(tol > 0.0)) return false;
  tolerance = tol;
  return true;
}

bool QXEigenValues::SetMaxIter(int iterations) {
  if (iterations < 1) return false;
  maxIter = iterations;
  return true;
}

int QXEigenValues::SetHMatrix(const QXSymMatrix& h) {
  hMatrix = h;
  nRows = std::max(0, hMatrix.GetNRows());
  valuesReady = vectorsReady = false;
  nConverged = 0;
  if (eValid) {
    if (eMatrix.GetNRows() == nRows) {
      const QXSymMatrix e = eMatrix;
      SetEMatrix(e);
    } else {
      ResetE();
    }
  }
  return nRows;
}

void QXEigenValues::ResetE() {
  eMatrix.SetNRows(0, false);
  eFactor.SetNRows(0, false);
  eFactorInverse.SetNRows(0, false);
  transformed.SetNRows(0, false);
  eDiagonal.clear();
  eRank = 0;
  eValid = false;
}

bool QXEigenValues::SetEMatrix(const QXSymMatrix& e) {
  valuesReady = vectorsReady = false;
  if (e.GetNRows() != nRows) {
    ResetE();
    return false;
  }
  eMatrix = e;
  eFactor = e;
  eMatrix.GetDiagonal(eDiagonal);
  const int redundant = eFactor.LTChol(eDiagonal, tolerance, false);
  if (redundant < 0 || redundant >= nRows) {
    ResetE();
    return false;
  }
  eRank = nRows - redundant;
  eFactorInverse = eFactor;
  double det[2] = {0.0, 0.0};
  eFactorInverse.LTDetInverse(det, 10);
  if (!eFactorInverse.IsValidMatrix() || !hMatrix.ComputeLSLTrans(eFactorInverse, transformed)) {
    ResetE();
    return false;
  }
  eValid = true;
  return true;
}

// ---------------------------------------------------------------------------
// Tridiagonalization

void QXEigenValues::TriDiag() {
  work = eValid ? transformed : hMatrix;
  Tred3();
  if (!wantVectors) work.SetNRows(0, false);
}

// Householder reduction of the packed store, from the last row up, after
// EISPACK TRED3 (Smith et al., Matrix Eigensystem Routines, 1976). Row i
// keeps the Householder vector (unscaled) and, in its diagonal place,
// scale * sqrt(h) for the back-transformation.
void QXEigenValues::Tred3() {
  const int n = nRows;
  diagonal.assign(n, 0.0);
  subDiagonal.assign(n, 0.0);
  if (n < 1) return;
  std::vector<double>& a = work.AsVector();
  std::vector<double> u(n), p(n);
  for (int i = n - 1; i >= 1; --i) {
    double* row = a.data() + RowStart(i);
    const double scale = QXMathFun::DASum(i, a, static_cast<int>(RowStart(i)), 1);
    if (scale <= kTinyScale) {
      subDiagonal[i] = 0.0;
      diagonal[i] = row[i];
      row[i] = 0.0;
      continue;
    }
    std::copy(row, row + i, u.begin());
    Blas1::DScal(i, 1.0 / scale, u.data(), 1);
    double h = Blas1::DDot(i, u.data(), 1, u.data(), 1);
    const double f = u[i - 1];
    double g = std::sqrt(h);
    if (f >= 0.0) g = -g;
    subDiagonal[i] = scale * g;
    h = h - f * g;
    u[i - 1] = f - g;
    row[i - 1] = u[i - 1] * scale;

    // p = S u / h on the leading rows, then p -= (u.p / 2h) u.
    const double hInv = 1.0 / h;
    internal::SymmetricTimesVector(a.data(), i, u.data(), p.data());
    for (int j = 0; j < i; ++j)
      p[j] = p[j] * hInv;
    const double c = Blas1::DDot(i, u.data(), 1, p.data(), 1);
    const double hh = hInv * 0.5 * c;
    for (int j = 0; j < i; ++j)
      p[j] = p[j] - hh * u[j];
    RankTwoUpdate(a.data(), i, u.data(), p.data());
    diagonal[i] = row[i];
    row[i] = std::sqrt(h) * scale;
  }
  diagonal[0] = a[0];
  a[0] = 0.0;
  subDiagonal[0] = 0.0;
}

// ---------------------------------------------------------------------------
// QL iteration

// The tridiagonal QL algorithm with implicit shifts (Bowdler, Martin, Reinsch
// and Wilkinson, 1968, the EISPACK TQL2 family), on the diagonal and the
// sub-diagonal shifted down one place; with vectors, the rotations are
// applied to the rows of eigenVectors.
int QXEigenValues::EigenValuesTQLI() {
  const int n = nRows;
  if (n < 1 || static_cast<int>(diagonal.size()) != n ||
      static_cast<int>(subDiagonal.size()) != n) {
    return -1;
  }
  double* d = diagonal.data();
  double* e = subDiagonal.data();
  double* x = nullptr;
  if (wantVectors) {
    eigenVectors.SetNRowsCols(n, n, true);
    x = eigenVectors.AsVector().data();
    for (int k = 0; k < n; ++k)
      x[static_cast<std::size_t>(k) * n + k] = 1.0;
  }
  for (int i = 1; i < n; ++i)
    e[i - 1] = e[i];
  e[n - 1] = 0.0;

  for (int l = 0; l < n; ++l) {
    int iter = 0;
    for (;;) {
      int m = l;
      for (; m < n - 1; ++m) {
        if (std::fabs(e[m]) <= (std::fabs(d[m]) + std::fabs(d[m + 1])) * tolerance) break;
      }
      if (m == l) break;
      if (iter == maxIter) {
        nConverged = l;
        return l + 1;
      }
      ++iter;
      // The shift.
      double g = (d[l + 1] - d[l]) / (2.0 * e[l]);
      double r = std::sqrt(g * g + 1.0);
      g = d[m] - d[l] + e[l] / (g + (g >= 0.0 ? std::fabs(r) : -std::fabs(r)));
      double s = 1.0, c = 1.0, p = 0.0;
      for (int i = m - 1; i >= l; --i) {
        const double f = s * e[i];
        const double b = c * e[i];
        if (std::fabs(f) < std::fabs(g)) {
          const double t = f / g;
          r = std::sqrt(t * t + 1.0);
          e[i + 1] = g * r;
          c = 1.0 / r;
          s = t * c;
        } else {
          const double t = g / f;
          r = std::sqrt(t * t + 1.0);
          e[i + 1] = f * r;
          s = 1.0 / r;
          c = t * s;
        }
        g = d[i + 1] - p;
        r = (d[i] - g) * s + 2.0 * c * b;
        p = s * r;
        d[i + 1] = g + p;
        g = c * r - b;
        if (x != nullptr) {
          double* xi = x + static_cast<std::size_t>(i) * n;
          double* xi1 = xi + n;
          for (int k = 0; k < n; ++k) {
            const double a0 = xi[k];
            const double a1 = xi1[k];
            xi1[k] = s * a0 + c * a1;
            xi[k] = c * a0 - s * a1;
          }
        }
      }
      d[l] = d[l] - p;
      e[l] = g;
      e[m] = 0.0;
    }
  }
  nConverged = n;
  return 0;
}

void QXEigenValues::BackTransVectors() {
  const int n = nRows;
  if (work.GetNRows() != n || eigenVectors.GetNRows() != n) return;
  const std::vector<double>& a = work.AsVectorConst();
  double* x = eigenVectors.AsVector().data();
  for (int i = 1; i < n; ++i) {
    const double* u = a.data() + RowStart(i);
    const double h = u[i];
    if (h == 0.0) continue;
    for (int k = 0; k < nConverged; ++k) {
      double* xk = x + static_cast<std::size_t>(k) * n;
      double s = Blas1::DDot(i, const_cast<double*>(u), 1, xk, 1);
      s = (s / h) / h;
      Blas1::Daxpy(i, -s, const_cast<double*>(u), 1, xk, 1);
    }
  }
}

// ---------------------------------------------------------------------------
// Results

int QXEigenValues::Compute(std::vector<double>& values) {
  valuesReady = vectorsReady = false;
  TriDiag();
  const int r = EigenValuesTQLI();
  const int count = r == 0 ? nRows : r - 1;
  if (count <= 0) return count;
  eigenValues.assign(nRows, 0.0);
  std::copy(diagonal.begin(), diagonal.begin() + count, eigenValues.begin());
  values = eigenValues;
  valuesReady = true;
  return count;
}

int QXEigenValues::Compute(std::vector<double>& values, QXRectMatrix& vectors) {
  wantVectors = true;
  const int count = Compute(values);
  if (count <= 0) return count;
  BackTransVectors();
  vectorsReady = true;
  std::vector<int> order(nRows);
  for (int k = 0; k < nRows; ++k)
    order[k] = k;
  CopyVectorsOut(order, vectors);
  return count;
}

void QXEigenValues::CopyVectorsOut(const std::vector<int>& order, QXRectMatrix& vectors) const {
  const int n = nRows;
  const int rows = static_cast<int>(order.size());
  vectors.SetNRowsCols(rows, n, true);
  const double* x = eigenVectors.AsVectorConst().data();
  double* out = vectors.AsVector().data();
  std::vector<double> y(eValid ? n : 0), v;
  for (int r = 0; r < rows; ++r) {
    const double* xk = x + static_cast<std::size_t>(order[r]) * n;
    double* o = out + static_cast<std::size_t>(r) * n;
    if (!eValid) {
      std::copy(xk, xk + n, o);
      continue;
    }
    // The generalized problem's vector is L^-T y.
    std::copy(xk, xk + n, y.begin());
    eFactorInverse.ComputeLTransV(y, v);
    std::copy(v.begin(), v.end(), o);
  }
}

int QXEigenValues::EnsureComputed(bool vectors) {
  if (valuesReady && (!vectors || vectorsReady)) return nConverged;
  std::vector<double> values;
  if (!vectors) return Compute(values);
  QXRectMatrix unused;
  return Compute(values, unused);
}

bool QXEigenValues::CompareD(double a, double b) {
  return a > b;
}

bool QXEigenValues::CompareA(double a, double b) {
  return a < b;
}

bool QXEigenValues::PCompareD(const std::pair<double, int>& a, const std::pair<double, int>& b) {
  return a.first > b.first;
}

bool QXEigenValues::PCompareA(const std::pair<double, int>& a, const std::pair<double, int>& b) {
  return a.first < b.first;
}

int QXEigenValues::GetSorted(std::vector<double>& values, bool descending) {
  const int count = EnsureComputed(false);
  if (count <= 0) return count;
  values.assign(eigenValues.begin(), eigenValues.begin() + nConverged);
  std::stable_sort(values.begin(), values.end(), descending ? CompareD : CompareA);
  return count;
}

int QXEigenValues::GetSorted(std::vector<double>& values, QXRectMatrix& vectors, bool descending) {
  const int count = EnsureComputed(true);
  if (count <= 0) return count;
  std::vector<std::pair<double, int>> pairs(nConverged);
  for (int k = 0; k < nConverged; ++k)
    pairs[k] = {eigenValues[k], k};
  std::stable_sort(pairs.begin(), pairs.end(), descending ? PCompareD : PCompareA);
  values.resize(nConverged);
  std::vector<int> order(nConverged);
  for (int k = 0; k < nConverged; ++k) {
    values[k] = pairs[k].first;
    order[k] = pairs[k].second;
  }
  CopyVectorsOut(order, vectors);
  return count;
}

bool QXEigenValues::IsPDHMatrix(double minValue, bool& isPD) {
  if (!(minValue > 0.0)) minValue = kDefaultMinValue;
  if (EnsureComputed(false) != nRows || nRows < 1) return false;
  isPD = *std::min_element(eigenValues.begin(), eigenValues.end()) >= minValue;
  return true;
}

bool QXEigenValues::GetPDHMatrix(double minValue, QXSymMatrix& out, bool& changed) {
  changed = false;
  if (!(minValue > 0.0)) minValue = kDefaultMinValue;
  const int n = nRows;
  out.SetNRows(n, true);
  if (!valuesReady || !wantVectors) {
    // The eigenvectors of the tridiagonal form, carried back only if needed.
    wantVectors = true;
    std::vector<double> values;
    Compute(values);
  }
  if (!valuesReady || nConverged != n || n < 1) return false;
  if (*std::min_element(eigenValues.begin(), eigenValues.end()) >= minValue) {
    out = hMatrix;
    return true;
  }
  if (!vectorsReady) {
    BackTransVectors();
    vectorsReady = true;
  }
  // H rebuilt as the sum of value_k x_k x_k^T with the raised values.
  QXSymMatrix sum(n, true);
  std::vector<double> xk(n);
  const double* x = eigenVectors.AsVectorConst().data();
  for (int k = 0; k < n; ++k) {
    std::copy(x + static_cast<std::size_t>(k) * n, x + static_cast<std::size_t>(k + 1) * n,
              xk.begin());
    eigenScratch.SetToVV(xk);
    sum.ComputeAXpY(std::max(eigenValues[k], minValue), eigenScratch);
  }
  // With E, the repaired reduced matrix goes back through L: L T L^T.
  if (eValid) {
    if (!sum.ComputeLSLTrans(eFactor, out)) return false;
  } else {
    out = sum;
  }
  changed = true;
  return true;
}

bool QXEigenValues::GetPDHMatrix(double minValue, QXSymMatrix& out) {
  bool changed = false;
  return GetPDHMatrix(minValue, out, changed);
}

void QXEigenValues::Display() const {
  using namespace QXDisplay_850;
  DisplayText(1, "QXEigenValues display start");
  DisplayI("The number of rows", nRows);
  DisplayD("The tolerance", tolerance);
  DisplayI("The maximum number of iterations", maxIter);
  DisplayB("Eigenvectors wanted", wantVectors);
  DisplayB("Valid E matrix", eValid);
  DisplayI("The rank of E", eRank);
  DisplayI("The number converged", nConverged);
  DisplayDV("Eigenvalues", eigenValues);
  DisplayText(1, "QXEigenValues display end");
}

}  // namespace QXMath_850
