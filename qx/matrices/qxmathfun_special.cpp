// The special functions and searches of QXMathFun.
#include <cmath>
#include <limits>

#include "qx/foundation/qxmissingvalue.h"
#include "qx/matrices/qxmathfun.h"

namespace QXMath_850 {

using QXCommon_850::QXMV;

namespace {

template <typename T>
int BinSearchIn(const std::vector<T>& values, int lo, int hi, T value, bool after) {
  if (lo < 0 || hi < lo || hi >= static_cast<int>(values.size())) return -2;
  if (value > values[hi] || (after && value == values[hi])) return -1;
  if (lo > 0 && (value < values[lo - 1] || (!after && value == values[lo - 1]))) return -1;
  if (lo == hi) return lo;
  int l = lo, h = hi - 1;
  while (l <= h) {
    const int mid = l + (h - l) / 2;
    if (values[mid] == value) return after ? mid + 1 : mid;
    if (values[mid] < value) {
      l = mid + 1;
    } else {
      h = mid - 1;
    }
  }
  return l;
}

void TwoLargest(const std::vector<double>& values, bool skipMissing, double& first,
                double& second) {
  first = second = QXMV::Missing();
  bool haveFirst = false, haveSecond = false;
  for (double v : values) {
    if (skipMissing && QXMV::IsMissing(v)) continue;
    if (!haveFirst) {
      first = v;
      haveFirst = true;
    } else if (v > first) {
      second = first;
      first = v;
      haveSecond = true;
    } else if (!haveSecond || v > second || v == first) {
      second = v;
      haveSecond = true;
    }
  }
}

}  // namespace

bool QXMathFun::IsValidDouble(double x) {
  const double big = std::numeric_limits<double>::max();
  return x >= -big && x <= big;
}

double QXMathFun::ReplaceIfSmall(double x, double t) {
  if (std::fabs(x) >= t) return x;
  return x < 0.0 ? -t : t;
}

double QXMathFun::VMaxRelDiff(const std::vector<double>& a, const std::vector<double>& b,
                              double den) {
  const double d = den > 0.0 ? den : (den < 0.0 ? -den : 1e-06);
  const size_t n = std::min(a.size(), b.size());
  double largest = 0.0;
  for (size_t i = 0; i < n; i++)
    largest = std::max(largest, std::fabs(a[i] - b[i]) / (std::fabs(b[i]) + d));
  return largest;
}

double QXMathFun::VNrm1Diff(const std::vector<double>& a, const std::vector<double>& b) {
  const size_t n = std::min(a.size(), b.size());
  double largest = 0.0;
  for (size_t i = 0; i < n; i++)
    largest = std::max(largest, std::fabs(a[i] - b[i]));
  return largest;
}

void QXMathFun::FindTwoLargest(const std::vector<double>& values, double& first, double& second) {
  TwoLargest(values, false, first, second);
}

void QXMathFun::FindTwoLargestNonMiss(const std::vector<double>& values, double& first,
                                      double& second) {
  TwoLargest(values, true, first, second);
}

int QXMathFun::BinSearch(const std::vector<double>& values, int lo, int hi, double value,
                         bool after) {
  return BinSearchIn(values, lo, hi, value, after);
}

int QXMathFun::BinSearch(const std::vector<int>& values, int lo, int hi, int value, bool after) {
  return BinSearchIn(values, lo, hi, value, after);
}

// psi(x) = psi(x + 10) - sum 1/(x + i - 1), with the asymptotic series of
// psi at y = x + 10 to the term in y^-12.
double QXMathFun::Digamma(double x) {
  if (!(x > 1e-16)) return QXMV::Missing();
  if (x < 1e-05) return -1.0 / x - 0.5772156649015329;
  const double y = x + 10.0;
  const double w = 1.0 / y / y;
  double sum = 0.0;
  for (int i = 1; i <= 10; i++)
    sum += 1.0 / (y - i);
  return -0.5 / y + std::log(y) +
         (((((w * 0.021092796092796094 - 0.007575757575757576) * w + 0.004166666666666667) * w -
            0.003968253968253968) *
               w +
           0.008333333333333333) *
              w -
          0.08333333333333333) *
             w -
         sum;
}

// psi'(x) = psi'(x + 10) + sum 1/(x + i - 1)^2, with the asymptotic series
// of psi' at y = x + 10.
double QXMathFun::Trigamma(double x) {
  if (!(x > 1e-16)) return QXMV::Missing();
  if (x < 0.0001) return 1.0 / x / x;
  const double y = x + 10.0;
  const double w = 1.0 / y / y;
  double sum = 0.0;
  for (int i = 1; i <= 10; i++)
    sum += 1.0 / ((y - i) * (y - i));
  return ((((((w * -0.2531135531135531 + 0.07575757575757576) * w - 0.03333333333333333) * w +
             0.023809523809523808) *
                w -
            0.03333333333333333) *
               w +
           0.16666666666666666) *
              w +
          1.0) /
             y +
         w * 0.5 + sum;
}

}  // namespace QXMath_850
