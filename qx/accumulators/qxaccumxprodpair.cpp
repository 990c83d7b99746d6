#include "qx/accumulators/qxaccumxprodpair.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <limits>
#include <utility>

#include "qx/foundation/qxcomponentdisplay.h"
#include "qx/foundation/qxmissingvalue.h"
#include "qx/matrices/qxrectmatrix.h"

using QXCommon_850::QXMV;

namespace QXMath_850 {

namespace {

// v, or +0.0 where the mask is all zeros. A bit mask rather than a branch or
// a product, so that the pair loop vectorises and a present infinity next to
// a missing partner can't leak a NaN into a pair it doesn't belong to.
inline double Masked(double v, std::uint64_t mask) {
  std::uint64_t bits;
  std::memcpy(&bits, &v, sizeof bits);
  bits &= mask;
  std::memcpy(&v, &bits, sizeof v);
  return v;
}

// All ones unless y has the bits of the missing value. Integer operations
// only: a floating compare would keep the loop from vectorising.
inline std::uint64_t PresentMask(double y, std::uint64_t missingBits) {
  std::uint64_t bits;
  std::memcpy(&bits, &y, sizeof bits);
  const std::uint64_t d = bits ^ missingBits;
  return 0 - ((d | (0 - d)) >> 63);
}

// Adds a case to the block sums of the pairs (i, j), j < count = i, of one
// row of the pair matrices: x is the case's value of variable i, y its
// values. Adding +0.0 for a pair with y[j] missing leaves its sums as they
// were (they start at +0.0 and so are never -0.0). Returns non-zero if some
// pair it added to has a full block.
std::uint64_t AddToRow(int count, double x, double w, const double* __restrict y,
                       std::uint64_t missingBits, double lim, double* __restrict counts,
                       double* __restrict cases, double* __restrict sumX, double* __restrict sumY,
                       double* __restrict sumXX, double* __restrict sumYY,
                       double* __restrict sumXY) {
  const double xw = x * w;
  const double xxw = x * xw;
  std::uint64_t full = 0;
  for (int j = 0; j < count; ++j) {
    const double yj = y[j];
    const std::uint64_t m = PresentMask(yj, missingBits);
    const double yw = yj * w;
    const double c = counts[j] + Masked(1.0, m);
    counts[j] = c;
    cases[j] += Masked(w, m);
    sumX[j] += Masked(xw, m);
    sumY[j] += Masked(yw, m);
    sumXX[j] += Masked(xxw, m);
    sumYY[j] += Masked(yj * yw, m);
    sumXY[j] += Masked(x * yw, m);
    full |= c >= lim ? m : 0;
  }
  return full;
}

// Cases per slice of a block: a slice of the data stays in cache while every
// row of the pair matrices passes over it.
int SliceRows(int nVars) {
  return std::max(8, std::min(256, 8192 / std::max(nVars, 1)));
}

}  // namespace

QXAccumXProdPair::QXAccumXProdPair(int n, int accum)
    : nVars(std::max(n, 0)), nAccum(accum), nPairs(0) {
  SizePairMatrices(std::max(nVars - 1, 0));
}

QXAccumXProdPair::QXAccumXProdPair(const QXAccumXProdPair& other)
    : nVars(other.nVars),
      nAccum(other.nAccum),
      nPairs(0),
      accCounts(other.accCounts),
      accCases(other.accCases),
      accSumX(other.accSumX),
      accSumY(other.accSumY),
      accSumXX(other.accSumXX),
      accSumYY(other.accSumYY),
      accSumXY(other.accSumXY),
      totCases(other.totCases),
      meanX(other.meanX),
      meanY(other.meanY),
      varX(other.varX),
      varY(other.varY),
      covar(other.covar),
      corr(other.corr) {
  RetakeFlat();
}

QXAccumXProdPair& QXAccumXProdPair::operator=(const QXAccumXProdPair& other) {
  if (this == &other) return *this;
  nVars = other.nVars;
  nAccum = other.nAccum;
  accCounts = other.accCounts;
  accCases = other.accCases;
  accSumX = other.accSumX;
  accSumY = other.accSumY;
  accSumXX = other.accSumXX;
  accSumYY = other.accSumYY;
  accSumXY = other.accSumXY;
  totCases = other.totCases;
  meanX = other.meanX;
  meanY = other.meanY;
  varX = other.varX;
  varY = other.varY;
  covar = other.covar;
  corr = other.corr;
  RetakeFlat();
  return *this;
}

QXAccumXProdPair::~QXAccumXProdPair() = default;

void QXAccumXProdPair::RetakeFlat() {
  accCountsFlat = &accCounts.AsVector();
  accCasesFlat = &accCases.AsVector();
  accSumXFlat = &accSumX.AsVector();
  accSumYFlat = &accSumY.AsVector();
  accSumXXFlat = &accSumXX.AsVector();
  accSumYYFlat = &accSumYY.AsVector();
  accSumXYFlat = &accSumXY.AsVector();
  totCasesFlat = &totCases.AsVector();
  meanXFlat = &meanX.AsVector();
  meanYFlat = &meanY.AsVector();
  varXFlat = &varX.AsVector();
  varYFlat = &varY.AsVector();
  covarFlat = &covar.AsVector();
  corrFlat = &corr.AsVector();
  std::size_t held = std::numeric_limits<std::size_t>::max();
  for (const std::vector<double>* v : StateStores())
    held = std::min(held, v->size());
  const long long pairs = static_cast<long long>(nVars) * (nVars - 1) / 2;
  nPairs = static_cast<long long>(held) >= pairs ? static_cast<int>(pairs) : 0;
}

void QXAccumXProdPair::SetNAccum(int n) {
  if (n > 0) nAccum = n;
}

int QXAccumXProdPair::GetPairIndex(int i, int j) const {
  if (j < 0 || j >= i || i >= nVars) return -1;
  return i * (i - 1) / 2 + j;
}

void QXAccumXProdPair::InitAll() {
  SizePairMatrices(nVars);
}

void QXAccumXProdPair::SizePairMatrices(int order) {
  for (QXSymMatrix* m : {&accCounts, &accCases, &accSumX, &accSumY, &accSumXX, &accSumYY, &accSumXY,
                         &totCases, &meanX, &meanY, &varX, &varY, &covar})
    m->SetNRows(order, true);
  RetakeFlat();
}

void QXAccumXProdPair::InitAccumCounts(int k) {
  if (k < 0 || k >= nPairs) return;
  for (std::vector<double>* v : {accCountsFlat, accCasesFlat, accSumXFlat, accSumYFlat,
                                 accSumXXFlat, accSumYYFlat, accSumXYFlat})
    (*v)[k] = 0.0;
}

bool QXAccumXProdPair::Update(int k, double x, double y, double w) {
  if (k < 0 || k >= nPairs) return false;
  const double c = (*accCountsFlat)[k];
  (*accCountsFlat)[k] = c + 1.0;
  (*accCasesFlat)[k] += w;
  (*accSumXFlat)[k] += x * w;
  (*accSumYFlat)[k] += y * w;
  (*accSumXXFlat)[k] += x * (x * w);
  (*accSumYYFlat)[k] += y * (y * w);
  (*accSumXYFlat)[k] += x * (y * w);
  if (c + 1.0 < nAccum) return true;
  return IncrStats(k);
}

bool QXAccumXProdPair::Update(int i, double x, int j, double y, double w) {
  const int k = GetPairIndex(i, j);
  return k >= 0 && Update(k, x, y, w);
}

bool QXAccumXProdPair::UpdateCase(const std::vector<double>& x, double w) {
  if (x.size() < static_cast<std::size_t>(nVars) || QXMV::IsMissing(w)) return false;
  AddCases(x.data(), 0, &w, 0, 1);
  return true;
}

bool QXAccumXProdPair::UpdateCases(const QXRectMatrix& data, int nRows) {
  const int cols = data.GetNCols();
  if (cols != nVars && cols != nVars + 1) return false;
  const int rows = nRows > 0 ? std::min(nRows, data.GetNRows()) : data.GetNRows();
  const int slice = SliceRows(nVars);
  for (int r = 0; r < rows; r += slice) {
    const double* x = data.GetRowPtr(r);
    AddCases(x, cols, cols > nVars ? x + nVars : nullptr, cols, std::min(slice, rows - r));
  }
  return true;
}

// Row by row of the pair matrices, so that a row's seven block sums stay in
// the nearest cache for all the cases. Each pair still takes its cases in
// order, and folds right after the update that fills its block. A row is
// taken in pieces of kPiece pairs, so that a full block is looked for only
// in the piece that has one.
void QXAccumXProdPair::AddCases(const double* rows, std::size_t stride, const double* weights,
                                std::size_t weightStride, int count) {
  if (nPairs == 0) return;
  constexpr int kPiece = 32;
  const double missing = QXMV::Missing();
  std::uint64_t missingBits;
  std::memcpy(&missingBits, &missing, sizeof missingBits);
  const double lim = nAccum;
  for (int i = 1; i < nVars; ++i) {
    const std::size_t row = static_cast<std::size_t>(i) * (i - 1) / 2;
    for (int r = 0; r < count; ++r) {
      const double* x = rows + r * stride;
      const double w = weights != nullptr ? weights[r * weightStride] : 1.0;
      if (x[i] == missing || w == missing) continue;
      for (int j = 0; j < i; j += kPiece) {
        const int n = std::min(kPiece, i - j);
        const std::size_t k = row + j;
        if (AddToRow(n, x[i], w, x + j, missingBits, lim, accCountsFlat->data() + k,
                     accCasesFlat->data() + k, accSumXFlat->data() + k, accSumYFlat->data() + k,
                     accSumXXFlat->data() + k, accSumYYFlat->data() + k, accSumXYFlat->data() + k))
          FoldFullPairs(static_cast<int>(k), x + j, n, missing);
      }
    }
  }
}

void QXAccumXProdPair::FoldFullPairs(int k, const double* y, int count, double missing) {
  const double* counts = accCountsFlat->data() + k;
  for (int j = 0; j < count; ++j) {
    if (y[j] != missing && !(counts[j] < nAccum)) IncrStats(k + j);
  }
}

// Folds a block of plain weighted sums into running means and (total weight
// less one) variances: the old sums of squares are rebuilt from the variance
// and the mean, the block's added, and the new mean's share taken off.
bool QXAccumXProdPair::IncrStats(int k) {
  if (k < 0 || k >= nPairs) return false;
  const double a = (*accCasesFlat)[k];
  const double t = (*totCasesFlat)[k];
  const double n = t + a;
  if (!(n > 1.0)) return false;
  if (!(a > 0.0)) return true;
  const double mx = (*meanXFlat)[k];
  const double my = (*meanYFlat)[k];
  const double sx = mx * t + (*accSumXFlat)[k];
  const double sy = my * t + (*accSumYFlat)[k];
  const double nx = sx / n;
  const double ny = sy / n;
  double& vx = (*varXFlat)[k];
  double& vy = (*varYFlat)[k];
  double& cxy = (*covarFlat)[k];
  vx = ((t - 1.0) * vx + mx * (mx * t) + (*accSumXXFlat)[k] - sx * nx) / (n - 1.0);
  vy = ((t - 1.0) * vy + my * (my * t) + (*accSumYYFlat)[k] - sy * ny) / (n - 1.0);
  cxy = ((t - 1.0) * cxy + mx * (my * t) + (*accSumXYFlat)[k] - sy * nx) / (n - 1.0);
  (*meanXFlat)[k] = nx;
  (*meanYFlat)[k] = ny;
  (*totCasesFlat)[k] = n;
  InitAccumCounts(k);
  return true;
}

bool QXAccumXProdPair::Finish() {
  for (int k = 0; k < nPairs; ++k) {
    if (!IncrStats(k)) return false;
  }
  return true;
}

const QXSymMatrix& QXAccumXProdPair::GetCorr() {
  const bool sized = corr.SetNRows(nVars, false);
  corrFlat = &corr.AsVector();
  if (!sized) return corr;
  const std::vector<double>& c = *covarFlat;
  const auto at = [&c](std::size_t index) { return index < c.size() ? c[index] : 0.0; };
  const auto diag = [](std::size_t i) { return i * (i + 1) / 2 + i; };
  double* out = corrFlat->data();
  std::size_t k = 0;
  for (std::size_t i = 0; i < static_cast<std::size_t>(nVars); ++i) {
    const double d = std::sqrt(at(diag(i)));
    for (std::size_t j = 0; j <= i; ++j, ++k) {
      const double e = std::sqrt(at(diag(j)));
      out[k] = d > 0.0 && e > 0.0 ? c[k] / std::sqrt(d) / std::sqrt(e) : QXMV::Missing();
    }
  }
  return corr;
}

void QXAccumXProdPair::GetPairCorr(QXSymMatrix& out) const {
  if (!out.SetNRows(nVars, false)) return;
  double* r = out.AsVector().data();
  std::size_t at = 0;
  int k = 0;
  for (int i = 0; i < nVars; ++i) {
    for (int j = 0; j < i; ++j, ++k) {
      const double vx = k < nPairs ? (*varXFlat)[k] : 0.0;
      const double vy = k < nPairs ? (*varYFlat)[k] : 0.0;
      r[at++] = vx > 0.0 && vy > 0.0 ? (*covarFlat)[k] / (std::sqrt(vx) * std::sqrt(vy))
                                     : QXMV::Missing();
    }
    r[at++] = 1.0;
  }
}

// Pairwise pooling of two sets of running statistics (Chan, Golub and
// LeVeque 1979), then a fold of the pooled block sums. The other's
// second-variable mean is not read: its first-variable mean stands in for it
// in the pooled mean, variance and covariance of the second variable.
bool QXAccumXProdPair::Merge(const QXAccumXProdPair& other) {
  if (nVars == 0) {
    nVars = other.nVars;
    InitAll();
  }
  if (nVars != other.nVars) return false;
  const int pairs = std::min(nPairs, other.nPairs);
  const int blockLimit = std::min(nVars, pairs);
  for (int k = 0; k < blockLimit; ++k) {
    (*accCasesFlat)[k] += (*other.accCasesFlat)[k];
    (*accSumXFlat)[k] += (*other.accSumXFlat)[k];
    (*accSumYFlat)[k] += (*other.accSumYFlat)[k];
    (*accSumXXFlat)[k] += (*other.accSumXXFlat)[k];
    (*accSumYYFlat)[k] += (*other.accSumYYFlat)[k];
    (*accSumXYFlat)[k] += (*other.accSumXYFlat)[k];
  }
  for (int k = 0; k < pairs; ++k) {
    const double w1 = (*totCasesFlat)[k];
    const double w2 = (*other.totCasesFlat)[k];
    const double n = w1 + w2;
    if (!(n > 1.0 && w2 > 0.0)) continue;
    const double mx = (*meanXFlat)[k];
    const double my = (*meanYFlat)[k];
    const double omx = (*other.meanXFlat)[k];
    const double a = mx * w1;
    const double b = my * w1;
    const double c = omx * w2;
    const double nx = (a + c) / n;
    const double ny = (b + c) / n;
    double& vx = (*varXFlat)[k];
    double& vy = (*varYFlat)[k];
    double& cxy = (*covarFlat)[k];
    vx = ((w1 - 1.0) * vx + mx * a + ((w2 - 1.0) * (*other.varXFlat)[k] + omx * c) - nx * (a + c)) /
         (n - 1.0);
    vy = ((w1 - 1.0) * vy + my * b + (omx * c + (w2 - 1.0) * (*other.varYFlat)[k]) - ny * (b + c)) /
         (n - 1.0);
    // a * b / w1 is mx * my * w1; for an empty pair it is 0, not 0 / 0.
    const double own = w1 != 0.0 ? a * b / w1 : 0.0;
    cxy = ((w1 - 1.0) * cxy + own + ((w2 - 1.0) * (*other.covarFlat)[k] + c * c / w2) -
           (a + c) * (b + c) / n) /
          (n - 1.0);
    (*totCasesFlat)[k] = n;
    (*meanXFlat)[k] = nx;
    (*meanYFlat)[k] = ny;
    IncrStats(k);
  }
  return true;
}

bool QXAccumXProdPair::Merge(const std::vector<const QXAccumXProdPair*>& list) {
  const auto first = std::find_if(list.begin(), list.end(),
                                  [](const QXAccumXProdPair* p) { return p != nullptr; });
  const int n = first != list.end() ? (*first)->nVars : 0;
  if (n < 1 || (nVars > 0 && nVars != n)) return false;
  if (nVars == 0) {
    nVars = n;
    InitAll();
  }
  for (const QXAccumXProdPair* entry : list) {
    if (entry != nullptr && !Merge(*entry)) return false;
  }
  return true;
}

bool QXAccumXProdPair::Merge(const std::vector<QXAccumXProdPair*>& list) {
  return Merge(std::vector<const QXAccumXProdPair*>(list.begin(), list.end()));
}

void QXAccumXProdPair::Display() const {
  using namespace QXDisplay_850;
  DisplayText(1, "QXAccumXProdPair display start");
  DisplayI("Number of variables", nVars);
  DisplayI("Number of accumulations", nAccum);
  const std::pair<const char*, const QXSymMatrix*> shown[] = {
      {"The matrix of counts of accumulations", &accCounts},
      {"The matrix of accumulated numbers of cases", &accCases},
      {"The matrix of accumulated sums of first variable", &accSumX},
      {"The matrix of accumulated sums of second variable", &accSumY},
      {"The matrix of accumulated sums of squares of first variable", &accSumXX},
      {"The matrix of accumulated sums of squares of second variable", &accSumYY},
      {"The matrix of accumulated sums of cross-products", &accSumXY},
      {"The matrix of total numbers of cases", &totCases},
      {"The matrix of means of first variable", &meanX},
      {"The matrix of means of second variable", &meanY},
      {"The matrix of variances of first variable", &varX},
      {"The matrix of variances of second variable", &varY},
      {"The matrix of covariances", &covar},
      {"The matrix of correlations", &corr}};
  for (const auto& item : shown)
    DisplayDVTR(item.first, item.second->AsVectorConst(), item.second->GetNRows());
  DisplayText(1, "QXAccumXProdPair display end");
}

std::vector<std::vector<double>*> QXAccumXProdPair::StateStores() const {
  return {accCountsFlat, accCasesFlat, accSumXFlat,  accSumYFlat, accSumXXFlat,
          accSumYYFlat,  accSumXYFlat, totCasesFlat, meanXFlat,   meanYFlat,
          varXFlat,      varYFlat,     covarFlat};
}

bool QXAccumXProdPair::GetState(std::vector<double>& out) const {
  out.clear();
  if (nPairs == 0 && nVars > 1) return false;
  const std::vector<std::vector<double>*> stores = StateStores();
  out.reserve(stores.size() * static_cast<std::size_t>(nPairs));
  for (std::vector<double>* store : stores)
    out.insert(out.end(), store->begin(), store->begin() + nPairs);
  return true;
}

bool QXAccumXProdPair::SetState(const std::vector<double>& state) {
  const std::vector<std::vector<double>*> stores = StateStores();
  if ((nPairs == 0 && nVars > 1) ||
      state.size() != stores.size() * static_cast<std::size_t>(nPairs))
    return false;
  auto from = state.begin();
  for (std::vector<double>* store : stores) {
    std::copy(from, from + nPairs, store->begin());
    from += nPairs;
  }
  return true;
}

}  // namespace QXMath_850
