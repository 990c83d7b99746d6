#include "qx/matrices/qxsparsevector.h"

#include <cmath>
#include <cstddef>

#include "qx/foundation/qxcomponentdisplay.h"
#include "qx/foundation/qxmissingvalue.h"
#include "qx/matrices/internal/packedlayout.h"
#include "qx/matrices/qxsymmatrix.h"

namespace QXMath_850 {

using QXCommon_850::QXMV;

QXSparseVector::QXSparseVector(const std::vector<int>& idx, const std::vector<double>& val)
    : count(static_cast<int>(idx.size())), indices(&idx), values(&val), valid(false) {
  valid = count != 0 && idx.size() == val.size() && idx[0] >= 0;
  for (int i = 1; valid && i < count; ++i)
    valid = idx[i] > idx[i - 1];
}

int QXSparseVector::GetMinVecSize() const {
  return count > 0 ? (*indices)[count - 1] + 1 : 0;
}

int QXSparseVector::GetIndex(int i) const {
  return i >= 0 && i < count ? (*indices)[i] : -1;
}

double QXSparseVector::GetValue(int i) const {
  return i >= 0 && static_cast<std::size_t>(i) < values->size() ? (*values)[i] : QXMV::Missing();
}

bool QXSparseVector::IncrementPart(std::vector<double>& v, int offset, double factor) const {
  if (!valid || offset < 0 ||
      static_cast<std::size_t>(GetMinVecSize()) + static_cast<std::size_t>(offset) > v.size()) {
    return false;
  }
  const int* p = indices->data();
  const double* a = values->data();
  for (int i = 0; i < count; ++i)
    v[offset + p[i]] += factor * a[i];
  return true;
}

double QXSparseVector::InnerProductWithPart(const std::vector<double>& v, int offset) const {
  if (offset < 0) return QXMV::Missing();
  if (count == 0) return 0.0;
  if (!valid ||
      static_cast<std::size_t>(GetMinVecSize()) + static_cast<std::size_t>(offset) > v.size()) {
    return QXMV::Missing();
  }
  const int* p = indices->data();
  const double* a = values->data();
  double sum = 0.0;
  for (int i = 0; i < count; ++i)
    sum += a[i] * v[offset + p[i]];
  return sum;
}

// Two-pointer merge of two ascending position lists.
double QXSparseVector::InnerProduct(const int* aIndex, const double* aValue, int aCount,
                                    const int* bIndex, const double* bValue, int bCount) {
  if (aIndex == nullptr || aValue == nullptr || bIndex == nullptr || bValue == nullptr ||
      aCount < 0 || bCount < 0) {
    return QXMV::Missing();
  }
  double sum = 0.0;
  int i = 0, j = 0;
  while (i < aCount && j < bCount) {
    if (aIndex[i] == bIndex[j]) {
      sum += aValue[i] * bValue[j];
      ++i;
      ++j;
    } else if (aIndex[i] < bIndex[j]) {
      ++i;
    } else {
      ++j;
    }
  }
  return sum;
}

int QXSparseVector::ConvertToRegularVector(std::vector<double>& v) const {
  if (!valid) return -1;
  const std::size_t needed = static_cast<std::size_t>(GetMinVecSize());
  if (v.size() < needed) v.resize(needed);
  for (double& a : v)
    a = 0.0;
  for (int i = 0; i < count; ++i)
    v[(*indices)[i]] = (*values)[i];
  return static_cast<int>(v.size());
}

bool QXSparseVector::QuadraticOuterProduct(QXSymMatrix& s) const {
  if (!valid) return false;
  if (s.GetNRows() >= GetMinVecSize()) {
    s.Clear();
  } else if (!s.SetNRows(GetMinVecSize(), true)) {
    return false;
  }
  const int* p = indices->data();
  const double* a = values->data();
  for (int i = 0; i < count; ++i) {
    for (int j = 0; j <= i; ++j)
      s.SetElem(p[i], p[j], a[i] * a[j]);
  }
  return true;
}

bool QXSparseVector::QuadraticOuterProductIncr(QXSymMatrix& s, double w) const {
  if (!valid) return false;
  if (s.GetNRows() < GetMinVecSize() && !s.SetNRows(GetMinVecSize(), true)) return false;
  return QuadraticOuterProductPartIncr(s, 0, w);
}

// Element (offset + p_i, offset + p_j), j <= i, lies in row offset + p_i of
// the triangle at column offset + p_j, since the indices ascend.
bool QXSparseVector::QuadraticOuterProductPartIncr(QXSymMatrix& s, int offset, double w) const {
  if (!valid || offset < 0 || s.GetNRows() < GetMinVecSize() + offset) return false;
  std::vector<double>& store = s.AsVector();
  const int* p = indices->data();
  const double* a = values->data();
  for (int i = 0; i < count; ++i) {
    const std::size_t base = internal::RowStart(offset + p[i]) + offset;
    const double wa = w * a[i];
    for (int j = 0; j <= i; ++j)
      store[base + p[j]] += wa * a[j];
  }
  return true;
}

bool QXSparseVector::IncrementRowPart(QXSymMatrix& s, int row, int offset, double factor) const {
  const int n = s.GetNRows();
  if (!valid || row < 0 || row >= n || offset < 0 || n < GetMinVecSize() + offset) return false;
  for (int i = 0; i < count; ++i) {
    const int col = offset + (*indices)[i];
    s.SetElem(row, col, s.GetElem(row, col) + factor * (*values)[i]);
  }
  return true;
}

// Multinomial logit with the last category as reference. The exponents are
// kept within [minExp, maxExp] by a whole-number shift c, and terms whose
// exponent falls below minExp are left out as zeros.
bool QXSparseVector::ComputeProbabilities(const std::vector<double>& coefficients, int nCategories,
                                          int stride, std::vector<double>& probabilities,
                                          double& logLast) const {
  const int k = nCategories - 1;
  if (!valid || k < 1 || stride < 1 ||
      static_cast<double>(k) * stride > static_cast<double>(coefficients.size()) ||
      GetMinVecSize() > stride) {
    return false;
  }
  if (static_cast<int>(probabilities.size()) < nCategories) probabilities.resize(nCategories);
  const double maxExp = 709.0;
  const double minExp = -708.39;

  std::vector<double> e(k);
  double hi = 0.0, lo = 0.0;
  for (int c = 0; c < k; ++c) {
    e[c] = InnerProductWithPart(coefficients, c * stride);
    if (c == 0 || e[c] > hi) hi = e[c];
    if (c == 0 || e[c] < lo) lo = e[c];
  }

  if (hi == lo) {
    if (hi > maxExp) {
      for (int c = 0; c < k; ++c)
        probabilities[c] = 1.0 / k;
      probabilities[k] = 0.0;
      logLast = -hi - std::log(static_cast<double>(k));
    } else if (hi < minExp) {
      for (int c = 0; c < k; ++c)
        probabilities[c] = 0.0;
      probabilities[k] = 1.0;
      logLast = 0.0;
    } else {
      const double t = k * std::exp(hi) + 1.0;
      for (int c = 0; c < k; ++c)
        probabilities[c] = std::exp(hi) / t;
      probabilities[k] = 1.0 / t;
      logLast = -std::log(t);
    }
    return true;
  }

  double shift = 0.0;
  if (hi > maxExp) {
    shift = std::trunc(hi - maxExp);
  } else if (lo < minExp) {
    shift = std::fmax(std::trunc(hi - maxExp), std::trunc(lo - minExp));
  }
  double s = 0.0;
  for (int c = 0; c < k; ++c) {
    if (e[c] - hi >= minExp) s += std::exp(e[c] - hi);
  }
  if (-hi >= minExp) s += std::exp(-hi);
  const double l = hi - shift + std::log(s);
  for (int c = 0; c < k; ++c) {
    const double x = e[c] - shift - l;
    probabilities[c] = x < minExp ? 0.0 : std::exp(x);
  }
  logLast = -shift - l;
  probabilities[k] = logLast < minExp ? 0.0 : std::exp(logLast);
  return true;
}

void QXSparseVector::Display() const {
  using namespace QXDisplay_850;
  DisplayText(1, "QXSparseVector display start");
  DisplayI("Number of sparse vector elements", count);
  DisplayIV("Vector of indices", *indices);
  DisplayDV("Vector of values", *values);
  DisplayB("Validity indicator", valid);
  DisplayText(1, "QXSparseVector display end");
}

}  // namespace QXMath_850
