#ifndef QX_MATRICES_BLAS1_D_H
#define QX_MATRICES_BLAS1_D_H

#include "qx/foundation/qxexport.h"

namespace QXMath_850 {

// Double-precision level-1 vector kernels in the LINPACK manner, on raw arrays
// with a count and strides that count doubles. The packed matrices and the
// LINPACK routines call them in their innermost loops.
//
// Common rules: a count below 1 does nothing (or gives 0.0); both strides 1
// take a straight, unrolled path; otherwise a negative stride starts at element
// (1 - n) * stride of its array and a positive one at element 0.
class QXCOMMON_API Blas1 {
 public:
  // x if x >= 0.0, else -x (so a NaN comes back as -x).
  static double D_Abs(double x);
  // a if a > b, else b.
  static double D_Max(double a, double b);
  // One-argument sign: -1.0 below zero, 1.0 otherwise (0.0 and NaN included).
  static double D_Sign(double x);
  static int I_Max(int a, int b);
  static int I_Min(int a, int b);

  // Sum of absolute values; walks from element 0 whatever the stride's sign.
  static double DASum(int n, double* x, int incx);
  // y += a * x; nothing at all when a == 0.0.
  static void Daxpy(int n, double a, double* x, int incx, double* y, int incy);
  // y = x.
  static void DCopy(int n, double* x, int incx, double* y, int incy);
  // Dot product of x and y.
  static double DDot(int n, double* x, int incx, double* y, int incy);
  // Applies the plane rotation: x' = c*x + s*y, y' = c*y - s*x.
  static void DRot(int n, double* x, int incx, double* y, int incy, double c, double s);
  // Constructs a plane rotation; a becomes r and b becomes z.
  static void DRotG(double* a, double* b, double* c, double* s);
  // x *= a; a stride of 0 or below is walked as given.
  static void DScal(int n, double a, double* x, int incx);
  // Swaps x and y.
  static void DSwap(int n, double* x, int incx, double* y, int incy);
  // 1-based index of the first element of largest absolute value; 0 if n < 1
  // or incx < 1.
  static int IDAMax(int n, double* x, int incx);
  // Euclidean norm without overflow; 0.0 if n < 1 or incx < 1.
  static double DNrm2(int n, double* x, int incx);
  // True if the characters are equal, or are the same ASCII letter in the
  // other case.
  static bool LSame(char a, char b);
  // Machine constants, computed at each call: 1 the relative precision,
  // 2 the smallest safe magnitude, 3 its reciprocal. Any other job is fatal.
  static double DMach(int job);
  // Reports an illegal argument on std::cout and ends the process with exit(1).
  [[noreturn]] static void XErBla(char* name, int position);
};

}  // namespace QXMath_850

#endif  // QX_MATRICES_BLAS1_D_H
