#include "qx/matrices/qxmathfun.h"

#include <cmath>

#include "qx/matrices/internal/packedlayout.h"
#include "qx/matrices/internal/scalednorm.h"

namespace QXMath_850 {

namespace {

// First index of a walk of n elements from start at stride, BLAS style.
inline int StartOf(int n, int start, int stride) {
  return stride < 0 ? start + (1 - n) * stride : start;
}

}  // namespace

double QXMathFun::DSum(int n, const std::vector<double>& x, int stride) {
  if (n < 1) return 0.0;
  if (stride == 0) return n * x[0];
  double sum = 0.0;
  int ix = StartOf(n, 0, stride);
  for (int i = 0; i < n; i++) {
    sum = sum + x[ix];
    ix += stride;
  }
  return sum;
}

double QXMathFun::DASum(int n, const std::vector<double>& x, int start, int stride) {
  double sum = 0.0;
  if (n < 1) return sum;
  const int size = static_cast<int>(x.size());
  int ix = StartOf(n, start, stride);
  for (int i = 0; i < n; i++) {
    if (ix >= 0 && ix < size) sum = sum + std::fabs(x[ix]);
    ix += stride;
  }
  return sum;
}

void QXMathFun::DScal(int n, double a, std::vector<double>& x, int start, int stride) {
  int ix = StartOf(n, start, stride);
  for (int i = 0; i < n; i++) {
    x[ix] = a * x[ix];
    ix += stride;
  }
}

void QXMathFun::DLoad(int n, double value, std::vector<double>& x, int start, int stride) {
  int ix = StartOf(n, start, stride);
  for (int i = 0; i < n; i++) {
    x[ix] = value;
    ix += stride;
  }
}

// BLAS DDOT on vectors: both strides 1 take the path unrolled by 5, with each
// block added to the running sum left to right in one expression.
double QXMathFun::DDot(int n, const std::vector<double>& x, int xStart, int xStride,
                       const std::vector<double>& y, int yStart, int yStride) {
  double dtemp = 0.0;
  if (n < 1) return dtemp;
  if (xStride == 1 && yStride == 1) {
    const double* dx = x.data() + xStart;
    const double* dy = y.data() + yStart;
    int m = n % 5;
    for (int i = 0; i < m; i++)
      dtemp = dtemp + dx[i] * dy[i];
    if (n < 5) return dtemp;
    for (int i = m; i < n; i += 5) {
      dtemp = dtemp + dx[i] * dy[i] + dx[i + 1] * dy[i + 1] + dx[i + 2] * dy[i + 2] +
              dx[i + 3] * dy[i + 3] + dx[i + 4] * dy[i + 4];
    }
    return dtemp;
  }
  int ix = StartOf(n, xStart, xStride);
  int iy = StartOf(n, yStart, yStride);
  for (int i = 0; i < n; i++) {
    dtemp = dtemp + x[ix] * y[iy];
    ix += xStride;
    iy += yStride;
  }
  return dtemp;
}

void QXMathFun::Daxpy(int n, double a, const std::vector<double>& x, int xStart, int xStride,
                      std::vector<double>& y, int yStart, int yStride) {
  if (n < 1 || a == 0.0) return;
  int ix = StartOf(n, xStart, xStride);
  int iy = StartOf(n, yStart, yStride);
  for (int i = 0; i < n; i++) {
    y[iy] = y[iy] + a * x[ix];
    ix += xStride;
    iy += yStride;
  }
}

double QXMathFun::DNrm2(int n, const std::vector<double>& x, int start, int stride) {
  if (n < 1) return 0.0;
  return internal::ScaledNorm2(n, x.data() + StartOf(n, start, stride), stride);
}

double QXMathFun::IIDot(int n, const std::vector<double>& x, int xStart, int xInc,
                        const std::vector<double>& y, int yStart, int yInc) {
  double sum = 0.0;
  int ix = xStart;
  int iy = yStart;
  for (int t = 0; t < n; t++) {
    sum = sum + x[ix] * y[iy];
    ix += xInc + t;
    iy += yInc + t;
  }
  return sum;
}

void QXMathFun::IIAxpy(int n, double a, const std::vector<double>& x, int xStart, int xInc,
                       std::vector<double>& y, int yStart, int yInc) {
  int ix = xStart;
  int iy = yStart;
  for (int t = 0; t < n; t++) {
    y[iy] = y[iy] + a * x[ix];
    ix += xInc + t;
    iy += yInc + t;
  }
}

void QXMathFun::IIInit(int n, double value, std::vector<double>& x, int start, int inc) {
  int ix = start;
  for (int t = 0; t < n; t++) {
    x[ix] = value;
    ix += inc + t;
  }
}

void QXMathFun::IIScal(int n, double a, std::vector<double>& x, int start, int inc) {
  int ix = start;
  for (int t = 0; t < n; t++) {
    x[ix] = a * x[ix];
    ix += inc + t;
  }
}

void QXMathFun::LRZero(std::vector<double>& x, int start, int count) {
  for (int i = 0; i < count; i++)
    x[start + i] = 0.0;
}

// L^T L in place, column by column and down each column: element (j, i) is
// the dot of columns i and j from row j on. Columns right of i and rows below
// j of column i are still those of L when they are read.
void QXMathFun::LTGltl(int n, std::vector<double>& l) {
  for (int i = 0; i < n; i++) {
    for (int j = i; j < n; j++) {
      const int diag = static_cast<int>(internal::RowStart(j));
      l[diag + i] = IIDot(n - j, l, diag + i, j + 1, l, diag + j, j + 1);
    }
  }
}

bool QXMathFun::QLReps(double x, double ref) {
  return ref > 0 && ref * 2.220446049250313e-16 > std::fabs(x);
}

double QXMathFun::VSV(int n, const std::vector<double>& s, const std::vector<double>& v, int start,
                      int stride) {
  double sum = 0.0;
  for (int i = 0; i < n; i++)
    sum = sum + RVD(n, s, i, v, start, stride) * v[start + i * stride];
  return sum;
}

// The whole symmetric row: (row, 0..row-1) side by side in the store, then
// (row..n-1, row) down the column.
double QXMathFun::RVD(int n, const std::vector<double>& s, int row, const std::vector<double>& v,
                      int start, int stride) {
  double t = 0.0;
  if (row < 0 || row >= n) return t;
  int iv = start;
  internal::WalkSymmetricRow(s.data(), row, n, [&](int, double e) {
    t = t + v[iv] * e;
    iv += stride;
  });
  return t;
}

}  // namespace QXMath_850
