#include "qx/matrices/blas1_d.h"

#include <cmath>
#include <cstdlib>
#include <iostream>

#include "qx/matrices/internal/scalednorm.h"

namespace QXMath_850 {

namespace {

// First element touched by a strided walk of n elements.
inline int StartOf(int n, int inc) {
  return inc < 0 ? (1 - n) * inc : 0;
}

}  // namespace

// x when x is above zero or is +0.0; otherwise -x, so -0.0 gives +0.0 and a
// NaN comes back with its sign flipped.
double Blas1::D_Abs(double x) {
  if (x > 0.0 || (x == 0.0 && !std::signbit(x))) return x;
  return -x;
}

double Blas1::D_Max(double a, double b) {
  return a > b ? a : b;
}

double Blas1::D_Sign(double x) {
  return x < 0.0 ? -1.0 : 1.0;
}

int Blas1::I_Max(int a, int b) {
  return a > b ? a : b;
}

int Blas1::I_Min(int a, int b) {
  return a < b ? a : b;
}

// BLAS DASUM, plain loop; the walk starts at element 0 for any stride.
double Blas1::DASum(int n, double* x, int incx) {
  double dtemp = 0.0;
  if (n < 1) return dtemp;
  int ix = 0;
  for (int i = 0; i < n; i++) {
    dtemp = dtemp + D_Abs(x[ix]);
    ix += incx;
  }
  return dtemp;
}

// BLAS DAXPY, unit stride unrolled by 4.
void Blas1::Daxpy(int n, double a, double* x, int incx, double* y, int incy) {
  if (n < 1) return;
  if (a == 0.0) return;
  if (incx == 1 && incy == 1) {
    int m = n % 4;
    for (int i = 0; i < m; i++)
      y[i] = y[i] + a * x[i];
    if (n < 4) return;
    for (int i = m; i < n; i += 4) {
      y[i] = y[i] + a * x[i];
      y[i + 1] = y[i + 1] + a * x[i + 1];
      y[i + 2] = y[i + 2] + a * x[i + 2];
      y[i + 3] = y[i + 3] + a * x[i + 3];
    }
    return;
  }
  int ix = StartOf(n, incx);
  int iy = StartOf(n, incy);
  for (int i = 0; i < n; i++) {
    y[iy] = y[iy] + a * x[ix];
    ix += incx;
    iy += incy;
  }
}

// BLAS DCOPY, unit stride unrolled by 7.
void Blas1::DCopy(int n, double* x, int incx, double* y, int incy) {
  if (n < 1) return;
  if (incx == 1 && incy == 1) {
    int m = n % 7;
    for (int i = 0; i < m; i++)
      y[i] = x[i];
    if (n < 7) return;
    for (int i = m; i < n; i += 7) {
      y[i] = x[i];
      y[i + 1] = x[i + 1];
      y[i + 2] = x[i + 2];
      y[i + 3] = x[i + 3];
      y[i + 4] = x[i + 4];
      y[i + 5] = x[i + 5];
      y[i + 6] = x[i + 6];
    }
    return;
  }
  int ix = StartOf(n, incx);
  int iy = StartOf(n, incy);
  for (int i = 0; i < n; i++) {
    y[iy] = x[ix];
    ix += incx;
    iy += incy;
  }
}

// BLAS DDOT, unit stride unrolled by 5. Each block of five is added to the
// running sum left to right in one expression; the order shows in the result.
double Blas1::DDot(int n, double* x, int incx, double* y, int incy) {
  double dtemp = 0.0;
  if (n < 1) return dtemp;
  if (incx == 1 && incy == 1) {
    int m = n % 5;
    for (int i = 0; i < m; i++)
      dtemp = dtemp + x[i] * y[i];
    if (n < 5) return dtemp;
    for (int i = m; i < n; i += 5) {
      dtemp = dtemp + x[i] * y[i] + x[i + 1] * y[i + 1] + x[i + 2] * y[i + 2] +
              x[i + 3] * y[i + 3] + x[i + 4] * y[i + 4];
    }
    return dtemp;
  }
  int ix = StartOf(n, incx);
  int iy = StartOf(n, incy);
  for (int i = 0; i < n; i++) {
    dtemp = dtemp + x[ix] * y[iy];
    ix += incx;
    iy += incy;
  }
  return dtemp;
}

// BLAS DROT, not unrolled.
void Blas1::DRot(int n, double* x, int incx, double* y, int incy, double c, double s) {
  if (n < 1) return;
  int ix = StartOf(n, incx);
  int iy = StartOf(n, incy);
  for (int i = 0; i < n; i++) {
    double dtemp = c * x[ix] + s * y[iy];
    y[iy] = c * y[iy] - s * x[ix];
    x[ix] = dtemp;
    ix += incx;
    iy += incy;
  }
}

// BLAS DROTG, except that z is 1/c whenever s >= |c| > 0 (a test on s itself,
// not on |b| >= |a|), and s otherwise.
void Blas1::DRotG(double* a, double* b, double* c, double* s) {
  double roe = (D_Abs(*a) > D_Abs(*b)) ? *a : *b;
  double scale = D_Abs(*a) + D_Abs(*b);
  double r;
  if (scale != 0.0) {
    double bs = *b / scale;
    double as = *a / scale;
    r = D_Sign(roe) * scale * std::sqrt(bs * bs + as * as);
    *c = *a / r;
    *s = *b / r;
  } else {
    *c = 1.0;
    *s = 0.0;
    r = 0.0;
  }
  double z;
  if (D_Abs(*c) > 0.0 && *s >= D_Abs(*c)) {
    z = 1.0 / *c;
  } else {
    z = *s;
  }
  *a = r;
  *b = z;
}

// BLAS DSCAL, unit stride unrolled by 5.
void Blas1::DScal(int n, double a, double* x, int incx) {
  if (n < 1) return;
  if (incx == 1) {
    int m = n % 5;
    for (int i = 0; i < m; i++)
      x[i] = a * x[i];
    if (n < 5) return;
    for (int i = m; i < n; i += 5) {
      x[i] = a * x[i];
      x[i + 1] = a * x[i + 1];
      x[i + 2] = a * x[i + 2];
      x[i + 3] = a * x[i + 3];
      x[i + 4] = a * x[i + 4];
    }
    return;
  }
  int ix = StartOf(n, incx);
  for (int i = 0; i < n; i++) {
    x[ix] = a * x[ix];
    ix += incx;
  }
}

// BLAS DSWAP, unit stride unrolled by 3.
void Blas1::DSwap(int n, double* x, int incx, double* y, int incy) {
  if (n < 1) return;
  double dtemp;
  if (incx == 1 && incy == 1) {
    int m = n % 3;
    for (int i = 0; i < m; i++) {
      dtemp = x[i];
      x[i] = y[i];
      y[i] = dtemp;
    }
    if (n < 3) return;
    for (int i = m; i < n; i += 3) {
      dtemp = x[i];
      x[i] = y[i];
      y[i] = dtemp;
      dtemp = x[i + 1];
      x[i + 1] = y[i + 1];
      y[i + 1] = dtemp;
      dtemp = x[i + 2];
      x[i + 2] = y[i + 2];
      y[i + 2] = dtemp;
    }
    return;
  }
  int ix = StartOf(n, incx);
  int iy = StartOf(n, incy);
  for (int i = 0; i < n; i++) {
    dtemp = x[ix];
    x[ix] = y[iy];
    y[iy] = dtemp;
    ix += incx;
    iy += incy;
  }
}

// BLAS IDAMAX: strict comparison, so the first of equal maxima wins.
int Blas1::IDAMax(int n, double* x, int incx) {
  if (n < 1 || incx < 1) return 0;
  if (n == 1) return 1;
  int imax = 1;
  double dmax = D_Abs(x[0]);
  int ix = incx;
  for (int i = 1; i < n; i++) {
    double v = D_Abs(x[ix]);
    if (v > dmax) {
      imax = i + 1;
      dmax = v;
    }
    ix += incx;
  }
  return imax;
}

// BLAS DNRM2 (Hammarling's scaled sum of squares); a single element is its
// absolute value.
double Blas1::DNrm2(int n, double* x, int incx) {
  if (n < 1 || incx < 1) return 0.0;
  if (n == 1) return D_Abs(x[0]);
  return internal::ScaledNorm2(n, x, incx);
}

bool Blas1::LSame(char a, char b) {
  if (a == b) return true;
  auto upper = [](char ch) { return (ch >= 'a' && ch <= 'z') ? static_cast<char>(ch - 32) : ch; };
  bool aLetter = (a >= 'a' && a <= 'z') || (a >= 'A' && a <= 'Z');
  bool bLetter = (b >= 'a' && b <= 'z') || (b >= 'A' && b <= 'Z');
  return aLetter && bLetter && upper(a) == upper(b);
}

// LINPACK DMACH: eps by halving, the smallest power of 1/16 by repeated
// division, then the safe limits derived from the two.
double Blas1::DMach(int job) {
  double eps = 1.0;
  while (1.0 + eps / 2.0 > 1.0)
    eps = eps / 2.0;
  double tiny = 1.0;
  while (tiny * 0.0625 != 0.0)
    tiny = tiny * 0.0625;
  double small = (tiny / eps) * 100.0;
  if (job == 1) return eps;
  if (job == 2) return small;
  if (job == 3) return 1.0 / small;
  char name[] = "DMACH";
  XErBla(name, 1);
}

// BLAS XERBLA: the one fatal path of the kernels.
void Blas1::XErBla(char* name, int position) {
  std::cout << "\n"
            << "XERBLA - Fatal error!\n"
            << "  On entry to routine " << name << "\n"
            << "  input parameter number " << position << " had an illegal value.\n";
  std::cout.flush();
  std::exit(1);
}

}  // namespace QXMath_850
