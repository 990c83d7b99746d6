#include "qx/accumulators/qxmeansxproducts.h"

#include <cstddef>

#include "qx/foundation/qxcomponentdisplay.h"
#include "qx/matrices/internal/kernels.h"
#include "qx/matrices/internal/packedlayout.h"

namespace QXMath_850 {

namespace {

// Case weights of the first `rows` rows: 1 with no weight column, the one
// column, or the product of the frequency and the regression column.
void CaseWeights(const double* x, int rows, int cols, int nVars, int weightColumns,
                 std::vector<double>& weights) {
  weights.resize(rows);
  for (int r = 0; r < rows; ++r) {
    const double* row = x + static_cast<std::size_t>(r) * cols + nVars;
    weights[r] = weightColumns == 0 ? 1.0 : weightColumns == 1 ? row[0] : row[0] * row[1];
  }
}

}  // namespace

QXMeansXProducts::QXMeansXProducts()
    : freqWeight(true), regWeight(false), onePassW(0.0), onePassXProds(0, true) {}

QXMeansXProducts::QXMeansXProducts(int n, bool withIntercept, bool freq, bool reg)
    : QXMeansXProdData(n, withIntercept),
      freqWeight(freq),
      regWeight(reg),
      onePassW(0.0),
      onePassXProds(0, true) {}

QXMeansXProducts::QXMeansXProducts(const QXMeansXProducts& other) = default;
QXMeansXProducts& QXMeansXProducts::operator=(const QXMeansXProducts& other) = default;
QXMeansXProducts::~QXMeansXProducts() = default;

int QXMeansXProducts::RowsToRead(const QXRectMatrix& data, int nRows) {
  const int available = data.GetNRows();
  return nRows > 0 && nRows < available ? nRows : available;
}

// Two passes: the means, then the sums of products of deviations. A column
// whose values all equal its first value gets that value as its mean exactly,
// so its deviations, and its corrected sums of products, are exact zeros.
// Sums run over the rows in order for each variable; they are formed row by
// row here only so that the block is read in storage order.
bool QXMeansXProducts::Compute(const QXRectMatrix& data, int nRows) {
  const int w = WeightColumns();
  const int cols = data.GetNCols();
  if (cols != nVars + w) return false;
  const int rows = RowsToRead(data, nRows);
  Clear();
  // With no rows there is nothing to read, row 0 included.
  if (rows < 1) return true;

  const double* x = data.AsVectorConst().data();
  std::vector<double> weights;
  CaseWeights(x, rows, cols, nVars, w, weights);

  std::vector<double> sum(nVars), same(nVars);
  std::vector<char> allEqual(nVars, 1);
  if (w == 0) {
    wCases = rows;
    for (int j = 0; j < nVars; ++j) {
      sum[j] = 0.0;
      same[j] = x[j];
    }
    for (int r = 0; r < rows; ++r) {
      const double* row = x + static_cast<std::size_t>(r) * cols;
      for (int j = 0; j < nVars; ++j)
        sum[j] += row[j];
    }
    // The row-0 value added to itself rows - 1 times: equal to the plain sum
    // exactly when the column is constant (or sums as if it were).
    for (int r = 1; r < rows; ++r) {
      for (int j = 0; j < nVars; ++j)
        same[j] += x[j];
    }
    for (int j = 0; j < nVars; ++j)
      means[j] = sum[j] == same[j] ? x[j] : sum[j] / wCases;
  } else {
    wCases = weights[0];
    if (rows < 2) {
      for (int j = 0; j < nVars; ++j)
        means[j] = x[j];
    } else {
      for (int j = 0; j < nVars; ++j)
        sum[j] = weights[0] * x[j];
      for (int r = 1; r < rows; ++r) {
        const double* row = x + static_cast<std::size_t>(r) * cols;
        const double c = weights[r];
        // The total weight rides on the pass over variable 0.
        if (nVars > 0) wCases += c;
        for (int j = 0; j < nVars; ++j) {
          sum[j] += c * row[j];
          if (row[j] != x[j]) allEqual[j] = 0;
        }
      }
      for (int j = 0; j < nVars; ++j)
        means[j] = allEqual[j] ? x[j] : sum[j] / wCases;
    }
  }

  // The deviations of a block of cases, taken together over the triangle;
  // each element still adds its cases' products in row order.
  double* a = xprods.AsVector().data();
  const int block = internal::CaseBlock(nVars);
  std::vector<double> d(static_cast<std::size_t>(block) * nVars);
  for (int r0 = 0; r0 < rows; r0 += block) {
    const int count = rows - r0 < block ? rows - r0 : block;
    for (int t = 0; t < count; ++t) {
      const double* row = x + static_cast<std::size_t>(r0 + t) * cols;
      double* dt = d.data() + static_cast<std::size_t>(t) * nVars;
      for (int i = 0; i < nVars; ++i)
        dt[i] = intercept ? row[i] - means[i] : row[i];
    }
    internal::UpdateRegion(a, 0, nVars, 0, nVars, true, count, d.data(), nVars, d.data(), nVars,
                           w == 0 ? nullptr : weights.data() + r0);
  }
  return true;
}

bool QXMeansXProducts::Update(const QXRectMatrix& data, int nRows) {
  if (wCases == 0.0) return Compute(data, nRows);
  const QXMeansXProdData held(*this);
  if (!Compute(data, nRows)) return false;
  return Merge(held);
}

void QXMeansXProducts::StartUpdate() {}

void QXMeansXProducts::FinishUpdate() {}

void QXMeansXProducts::StartUpdateOnePass() {
  onePassW = 0.0;
  onePassSums.assign(nVars, 0.0);
  if (onePassXProds.GetNRows() != nVars) onePassXProds.SetNRows(nVars, true);
  onePassXProds.Clear();
}

bool QXMeansXProducts::UpdateOnePass(const QXRectMatrix& data, int nRows) {
  const int w = WeightColumns();
  const int cols = data.GetNCols();
  if (cols != nVars + w) return false;
  // A run left from a different number of variables can't be continued.
  if (onePassW == 0.0 || onePassSums.size() != static_cast<std::size_t>(nVars)) {
    StartUpdateOnePass();
  }
  const int rows = RowsToRead(data, nRows);
  if (w == 0) onePassW += rows;

  // The weighted values v_i = x_i * c of a block of cases go into the sums
  // and are the multipliers of the raw products v_i * x_j, which each element
  // adds in row order.
  const double* x = data.AsVectorConst().data();
  double* s = onePassSums.data();
  double* a = onePassXProds.AsVector().data();
  const int block = internal::CaseBlock(nVars);
  std::vector<double> v(w == 0 ? 0 : static_cast<std::size_t>(block) * nVars);
  for (int r0 = 0; r0 < rows; r0 += block) {
    const int count = rows - r0 < block ? rows - r0 : block;
    const double* first = x + static_cast<std::size_t>(r0) * cols;
    for (int t = 0; t < count; ++t) {
      const double* row = first + static_cast<std::size_t>(t) * cols;
      if (w == 0) {
        for (int i = 0; i < nVars; ++i)
          s[i] += row[i];
        continue;
      }
      const double c = w == 1 ? row[nVars] : row[nVars] * row[nVars + 1];
      onePassW += c;
      double* vt = v.data() + static_cast<std::size_t>(t) * nVars;
      for (int i = 0; i < nVars; ++i) {
        vt[i] = row[i] * c;
        s[i] += vt[i];
      }
    }
    if (w == 0) {
      internal::UpdateRegion(a, 0, nVars, 0, nVars, true, count, first, cols, first, cols, nullptr);
    } else {
      internal::UpdateRegion(a, 0, nVars, 0, nVars, true, count, v.data(), nVars, first, cols,
                             nullptr);
    }
  }
  return true;
}

// Corrected sums from raw ones: sum w x_i x_j - m_i * sum w x_j.
void QXMeansXProducts::FinishUpdateOnePass() {
  if (onePassW == 0.0 || onePassSums.size() != static_cast<std::size_t>(nVars)) {
    Clear();
    return;
  }
  wCases = onePassW;
  means.resize(nVars);
  for (int i = 0; i < nVars; ++i)
    means[i] = onePassSums[i] / onePassW;
  if (xprods.GetNRows() != nVars) xprods.SetNRows(nVars, true);
  for (int i = 0; i < nVars; ++i) {
    const std::size_t start = internal::RowStart(i);
    const double* raw = onePassXProds.AsVectorConst().data() + start;
    double* a = xprods.AsVector().data() + start;
    const double m = means[i];
    for (int j = 0; j <= i; ++j)
      a[j] = raw[j] - m * onePassSums[j];
  }
}

void QXMeansXProducts::Display() const {
  using namespace QXDisplay_850;
  DisplayText(1, "QXMeansXProducts display start");
  QXMeansXProdData::Display();
  DisplayB("Frequency weight indicator", freqWeight);
  DisplayB("Regression weight indicator", regWeight);
  DisplayD("Weighted number of cases accumulated by UpdateOnePass", onePassW);
  DisplayDV("Weighted sums accumulated by UpdateOnePass", onePassSums);
  DisplayText(1, "Weighted sums of products accumulated by UpdateOnePass");
  onePassXProds.Display();
  DisplayText(1, "QXMeansXProducts display end");
}

}  // namespace QXMath_850
