#include "qx/accumulators/qxmeansxproddata.h"

#include <cstddef>
#include <new>

#include "qx/foundation/qxcomponentdisplay.h"
#include "qx/matrices/internal/kernels.h"
#include "qx/matrices/internal/packedlayout.h"

namespace QXMath_850 {

QXMeansXProdData::QXMeansXProdData() : nVars(0), intercept(true), wCases(0.0), xprods(0, true) {}

QXMeansXProdData::QXMeansXProdData(int n, bool withIntercept)
    : nVars(n), intercept(withIntercept), wCases(0.0) {
  if (n < 0) throw std::bad_alloc();
  means.assign(n, 0.0);
  xprods = QXSymMatrix(n, true);
}

QXMeansXProdData::QXMeansXProdData(const QXMeansXProdData& other) = default;
QXMeansXProdData& QXMeansXProdData::operator=(const QXMeansXProdData& other) = default;
QXMeansXProdData::~QXMeansXProdData() = default;

void QXMeansXProdData::Clear() {
  wCases = 0.0;
  means.assign(nVars, 0.0);
  xprods.SetNRows(nVars, true);
}

bool QXMeansXProdData::SetNVars(int n) {
  if (n < 0) return false;
  nVars = n;
  Clear();
  return true;
}

// Each row's multiplier (di * f) is formed first and then meets each dj, an
// order kept on purpose.
void QXMeansXProdData::UpdateXX(const std::vector<double>& x, double f) {
  if (nVars < 1 || x.size() < static_cast<std::size_t>(nVars)) return;
  // The multipliers and the deviations, on the stack for the usual sizes.
  constexpr int kOnStack = 128;
  double stack[2 * kOnStack];
  std::vector<double> heap;
  double* s = stack;
  if (nVars > kOnStack) {
    heap.resize(2 * static_cast<std::size_t>(nVars));
    s = heap.data();
  }
  double* y = s + nVars;
  for (int i = 0; i < nVars; ++i) {
    y[i] = intercept ? x[i] - means[i] : x[i];
    s[i] = y[i] * f;
  }
  internal::UpdateRankOne(xprods.AsVector().data(), nVars, s, y);
}

// Provisional means (West 1979): the cross-products take the case with the
// old means and the factor w * W / N, then the means move by w / N.
void QXMeansXProdData::AddCase(const std::vector<double>& x, double w) {
  if (x.size() < static_cast<std::size_t>(nVars)) return;
  const double before = wCases;
  const double after = before + w;
  UpdateXX(x, intercept ? w * before / after : w);
  const double r = w / after;
  for (int i = 0; i < nVars; ++i)
    means[i] += (x[i] - means[i]) * r;
  wCases = after;
}

// The reverse of AddCase: the means move back first, and the cross-products
// are then corrected with the new means.
void QXMeansXProdData::DeleteCase(const std::vector<double>& x, double w) {
  if (x.size() < static_cast<std::size_t>(nVars)) return;
  const double before = wCases;
  const double after = before - w;
  const double a = before / after;
  const double b = -w / after;
  for (int i = 0; i < nVars; ++i)
    means[i] = a * means[i] + b * x[i];
  UpdateXX(x, intercept ? after * (-w) / before : -w);
  wCases = after;
}

// Pairwise pooling of two weighted results (Chan, Golub and LeVeque 1979).
bool QXMeansXProdData::Merge(const QXMeansXProdData& other) {
  if (nVars == 0) {
    nVars = other.nVars;
    intercept = other.intercept;
    Clear();
  }
  if (nVars != other.nVars || intercept != other.intercept) return false;
  const double w1 = wCases, w2 = other.wCases;
  const double total = w1 + w2;
  if (!(total > 0.0)) return true;

  const std::vector<double>& m1 = means;
  const std::vector<double>& m2 = other.means;
  std::vector<double> m(nVars);
  const double share = w2 / total;
  for (int i = 0; i < nVars; ++i)
    m[i] = m1[i] + (m2[i] - m1[i]) * share;

  std::vector<double>& sums = xprods.AsVector();
  const std::vector<double>& otherSums = other.xprods.AsVectorConst();
  if (!intercept) {
    for (std::size_t k = 0; k < sums.size(); ++k)
      sums[k] += otherSums[k];
  } else {
    // Element (i, j) gains (m_j - m1_j) * c1_i + o_ij + (m_j - m2_j) * c2_i,
    // rows taken side by side through the kernels.
    std::vector<double> d1(nVars), d2(nVars);
    for (int i = 0; i < nVars; ++i) {
      d1[i] = m[i] - m1[i];
      d2[i] = m[i] - m2[i];
    }
    for (int i = 0; i < nVars; ++i) {
      internal::PoolRow(sums.data() + internal::RowStart(i), i + 1,
                        otherSums.data() + internal::RowStart(i), d1.data(), w1 * d1[i], d2.data(),
                        w2 * d2[i]);
    }
  }
  means = m;
  wCases = total;
  return true;
}

bool QXMeansXProdData::Merge(const std::vector<const QXMeansXProdData*>& list) {
  const QXMeansXProdData* first = nullptr;
  for (const QXMeansXProdData* entry : list) {
    if (entry != nullptr) {
      first = entry;
      break;
    }
  }
  const int n = first != nullptr ? first->nVars : 0;
  const bool flag = first != nullptr ? first->intercept : true;
  if (n < 1) return false;
  if (nVars > 0 && nVars != n) return false;
  if (nVars == 0) {
    nVars = n;
    intercept = flag;
    Clear();
  }
  for (const QXMeansXProdData* entry : list) {
    if (entry != nullptr && !Merge(*entry)) return false;
  }
  return true;
}

bool QXMeansXProdData::Merge(const std::vector<QXMeansXProdData*>& list) {
  return Merge(std::vector<const QXMeansXProdData*>(list.begin(), list.end()));
}

void QXMeansXProdData::Display() const {
  using namespace QXDisplay_850;
  DisplayText(1, "QXMeansXProdData display start");
  DisplayI("Number of variables", nVars);
  DisplayB("Intercept indicator", intercept);
  DisplayD("Weighted number of cases", wCases);
  DisplayDV("Vector of means", means);
  DisplayText(1, "Matrix of cross-products:");
  xprods.Display();
  DisplayText(1, "QXMeansXProdData display end");
}

}  // namespace QXMath_850
