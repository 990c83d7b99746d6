#include "linregsolve.h"

#include <algorithm>
#include <cmath>

namespace linreg {

using QXMath_850::Linpack;
using QXMath_850::QXBitSet;
using QXMath_850::QXRectMatrix;
using QXMath_850::QXSymMatrix;

SweepSolver::SweepSolver(int nColumns, bool intercept, bool weighted)
    : q(nColumns), acc(nColumns + 1, intercept, false, weighted) {}

void SweepSolver::Add(const QXRectMatrix& block, int rows) {
  acc.Update(block, rows);
}

Solution SweepSolver::Solve(double tol) const {
  QXSymMatrix a = acc.GetXProds();
  std::vector<double> diag;
  a.GetDiagonal(diag);
  QXBitSet swept(q + 1);
  for (int k = 0; k < q; ++k)
    a.Sweep(k, tol, diag, swept, true);
  Solution s;
  a.GetRegCoeffs(s.coef, swept);
  s.coef.resize(q);
  s.kept.resize(q);
  s.inverse.assign(static_cast<std::size_t>(q) * q, 0.0);
  for (int i = 0; i < q; ++i) {
    s.kept[i] = swept.IsIn(i);
    for (int j = 0; j < q && s.kept[i]; ++j) {
      // Swept rows hold minus the inverse of their block.
      if (swept.IsIn(j)) s.inverse[i * q + j] = -a.GetElem(i, j);
    }
  }
  s.rss = std::fmax(a.GetElem(q, q), 0.0);
  s.tss = diag[q];
  s.means = acc.GetMeans();
  s.weightSum = acc.GetNCases();
  return s;
}

QRSolver::QRSolver(int q, bool withIntercept, bool isWeighted)
    : p(q + 1),
      intercept(withIntercept),
      weighted(isWeighted),
      means(q + 1, 0.0),
      r(static_cast<std::size_t>(q + 1) * (q + 1), 0.0),
      qraux(q + 1),
      work(q + 1),
      blockMeans(q + 1),
      jpvt(q + 1, 0) {}

void QRSolver::Add(const QXRectMatrix& block, int rows) {
  const int stride = block.GetNCols();
  const double* data = block.AsVectorConst().data();
  const auto weight = [&](int i) { return weighted ? data[i * stride + p] : 1.0; };
  // The block's weighted means, from its first row so that a constant column
  // has exactly its value as mean.
  double blockWeight = 0.0;
  for (int i = 0; i < rows; ++i)
    blockWeight += weight(i);
  if (!(blockWeight > 0.0)) return;
  for (int j = 0; j < p; ++j) {
    double sum = 0.0;
    for (int i = 0; i < rows; ++i)
      sum += weight(i) * (data[i * stride + j] - data[j]);
    blockMeans[j] = data[j] + sum / blockWeight;
  }
  // The stack: R, the block's rows, the row of the shift of means.
  const bool shift = intercept && weightSum > 0.0;
  const int n = p + rows + (shift ? 1 : 0);
  stack.assign(static_cast<std::size_t>(n) * p, 0.0);
  const double total = weightSum + blockWeight;
  const double shiftScale = shift ? std::sqrt(weightSum * blockWeight / total) : 0.0;
  for (int j = 0; j < p; ++j) {
    double* column = &stack[static_cast<std::size_t>(j) * n];
    for (int i = 0; i <= j; ++i)
      column[i] = r[static_cast<std::size_t>(j) * p + i];
    const double centre = intercept ? blockMeans[j] : 0.0;
    for (int i = 0; i < rows; ++i)
      column[p + i] = std::sqrt(weight(i)) * (data[i * stride + j] - centre);
    if (shift) column[n - 1] = shiftScale * (means[j] - blockMeans[j]);
  }
  Linpack::Dqrdc(stack.data(), n, n, p, qraux.data(), jpvt.data(), work.data(), 0);
  for (int j = 0; j < p; ++j) {
    for (int i = 0; i <= j; ++i)
      r[static_cast<std::size_t>(j) * p + i] = stack[static_cast<std::size_t>(j) * n + i];
  }
  for (int j = 0; j < p; ++j)
    means[j] += (blockMeans[j] - means[j]) * (blockWeight / total);
  weightSum = total;
}

Solution QRSolver::Solve(double tol) const {
  const int q = p - 1;
  const double normTol = std::sqrt(tol);
  // Each column's whole norm, against which what is left of it is judged.
  std::vector<double> norm(p, 0.0);
  for (int j = 0; j < p; ++j) {
    for (int i = 0; i <= j; ++i)
      norm[j] += r[static_cast<std::size_t>(j) * p + i] * r[static_cast<std::size_t>(j) * p + i];
  }
  // Refuse columns one at a time, in order, as final columns of a pivoted
  // Dqrdc, until every column kept in front holds more than tol of its norm.
  std::vector<int> refused(q, 0), pivot(q);
  std::vector<double> a, aux(q > 0 ? q : 1), scratch(q > 0 ? q : 1);
  int kept = 0;
  while (true) {
    a.assign(r.begin(), r.begin() + static_cast<std::size_t>(q) * p);
    kept = 0;
    for (int j = 0; j < q; ++j) {
      pivot[j] = refused[j] ? -1 : 1;
      kept += refused[j] ? 0 : 1;
    }
    if (q > 0) Linpack::Dqrdc(a.data(), p, p, q, aux.data(), pivot.data(), scratch.data(), 1);
    int bad = -1;
    for (int k = 0; k < kept && bad < 0; ++k) {
      const int column = pivot[k] - 1;
      if (!(std::fabs(a[static_cast<std::size_t>(k) * p + k]) >
            normTol * std::sqrt(norm[column]))) {
        bad = column;
      }
    }
    if (bad < 0) break;
    refused[bad] = 1;
  }
  Solution s;
  s.kept.assign(q, false);
  s.coef.assign(q, 0.0);
  s.inverse.assign(static_cast<std::size_t>(q) * q, 0.0);
  std::vector<double> y(r.begin() + static_cast<std::size_t>(q) * p, r.end());
  std::vector<double> qy(p), qty(p), b(p), rsd(p), xb(p);
  if (kept > 0) {
    Linpack::Dqrsl(a.data(), p, p, kept, aux.data(), y.data(), qy.data(), qty.data(), b.data(),
                   rsd.data(), xb.data(), 110);
  } else {
    rsd = y;
  }
  for (int i = 0; i < p; ++i)
    s.rss += rsd[i] * rsd[i];
  // The inverse of the kept columns' cross-products: R^-1 R^-T.
  double det[2];
  Linpack::Dtrdi(a.data(), p, kept, det, 11);
  for (int k = 0; k < kept; ++k) {
    const int ck = pivot[k] - 1;
    s.kept[ck] = true;
    s.coef[ck] = b[k];
    for (int l = 0; l < kept; ++l) {
      double sum = 0.0;
      for (int m = std::max(k, l); m < kept; ++m)
        sum += a[static_cast<std::size_t>(m) * p + k] * a[static_cast<std::size_t>(m) * p + l];
      s.inverse[ck * q + (pivot[l] - 1)] = sum;
    }
  }
  s.tss = norm[q];
  s.means = means;
  s.weightSum = weightSum;
  return s;
}

}  // namespace linreg
