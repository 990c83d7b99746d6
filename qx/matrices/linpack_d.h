#ifndef QX_MATRICES_LINPACK_D_H
#define QX_MATRICES_LINPACK_D_H

#include "qx/foundation/qxexport.h"

namespace QXMath_850 {

// The library's double-precision LINPACK: one static function per published
// routine, on raw column-major arrays, with the kernels of Blas1 underneath.
// QXSymMatrix and QXRectMatrix solve indefinite and square systems with it;
// components call the rest directly.
//
// Conventions shared by every routine:
// - element (i, j), counted from 1, is a[(i - 1) + (j - 1) * lda];
// - pivot vectors hold 1-based row numbers, as in the published routines;
// - the published trailing scalar output (rcond of the "co" routines, info of
//   the factoring ones) is the function's value instead of an argument;
// - a determinant is det[0] * 10^det[1] with 1 <= |det[0]| < 10, or det[0] 0.0;
// - packed forms hold the upper triangle by columns, which is position for
//   position the lower triangle by rows of QXSymMatrix, so that matrix's store
//   can be handed over as it stands;
// - arguments are not checked, and nothing is reported but the published
//   info, rcond and zero-pivot conventions.
class QXCOMMON_API Linpack {
 public:
  // General matrices.
  static int Dgefa(double* a, int lda, int n, int* ipvt);
  static double Dgeco(double* a, int lda, int n, int* ipvt, double* z);
  static void Dgesl(double* a, int lda, int n, int* ipvt, double* b, int job);
  static void Dgedi(double* a, int lda, int n, int* ipvt, double* det, double* work, int job);

  // General band matrices in the published band storage (2*ml + mu + 1 rows).
  static int Dgbfa(double* abd, int lda, int n, int ml, int mu, int* ipvt);
  static double Dgbco(double* abd, int lda, int n, int ml, int mu, int* ipvt, double* z);
  static void Dgbsl(double* abd, int lda, int n, int ml, int mu, int* ipvt, double* b, int job);
  static void Dgbdi(double* abd, int lda, int n, int ml, int mu, int* ipvt, double* det);

  // Tridiagonal systems: general (c sub-, d main, e super-diagonal) and
  // positive definite (d main, e off-diagonal).
  static int Dgtsl(int n, double* c, double* d, double* e, double* b);
  static void Dptsl(int n, double* d, double* e, double* b);

  // Positive definite matrices: full, packed and band. The "co" forms give
  // 0.0 when the matrix is not positive definite (the published routines
  // leave rcond unset then).
  static int Dpofa(double* a, int lda, int n);
  static double Dpoco(double* a, int lda, int n, double* z);
  static void Dposl(double* a, int lda, int n, double* b);
  // Always 0; the published routine has no status.
  static int Dpodi(double* a, int lda, int n, double* det, int job);
  static int Dppfa(double* ap, int n);
  static double Dppco(double* ap, int n, double* z);
  static void Dppsl(double* ap, int n, double* b);
  // Always 0; the published routine has no status.
  static int Dppdi(double* ap, int n, double* det, int job);
  static int Dpbfa(double* abd, int lda, int n, int m);
  static double Dpbco(double* abd, int lda, int n, int m, double* z);
  static void Dpbsl(double* abd, int lda, int n, int m, double* b);
  static void Dpbdi(double* abd, int lda, int n, int m, double* det);

  // Symmetric indefinite matrices, full and packed (Bunch-Kaufman pivoting).
  // The "di" forms always return 0; the published routines have no status.
  static int Dsifa(double* a, int lda, int n, int* kpvt);
  static double Dsico(double* a, int lda, int n, int* kpvt, double* z);
  static void Dsisl(double* a, int lda, int n, int* kpvt, double* b);
  static int Dsidi(double* a, int lda, int n, int* kpvt, double* det, int* inert, double* work,
                   int job);
  static int Dspfa(double* ap, int n, int* kpvt);
  static double Dspco(double* ap, int n, int* kpvt, double* z);
  static void Dspsl(double* ap, int n, int* kpvt, double* b);
  static int Dspdi(double* ap, int n, int* kpvt, double* det, int* inert, double* work, int job);

  // Triangular matrices.
  static double Dtrco(double* t, int ldt, int n, double* z, int job);
  static int Dtrsl(double* t, int ldt, int n, double* b, int job);
  static int Dtrdi(double* t, int ldt, int n, double* det, int job);

  // Householder QR with optional column pivoting, and its uses. Dqrdc always
  // returns 0; the published routine has no status.
  static int Dqrdc(double* x, int ldx, int n, int p, double* qraux, int* jpvt, double* work,
                   int job);
  static int Dqrsl(double* x, int ldx, int n, int k, double* qraux, double* y, double* qy,
                   double* qty, double* b, double* rsd, double* xb, int job);

  // Singular value decomposition; s and e need max(n + 1, p) elements.
  static int Dsvdc(double* x, int ldx, int n, int p, double* s, double* e, double* u, int ldu,
                   double* v, int ldv, double* work, int job);

  // Cholesky with pivoting, and updating, downdating and permuting a factor.
  static int Dchdc(double* a, int lda, int p, double* work, int* jpvt, int job);
  static void Dchud(double* r, int ldr, int p, double* x, double* z, int ldz, int nz, double* y,
                    double* rho, double* c, double* s);
  static int Dchdd(double* r, int ldr, int p, double* x, double* z, int ldz, int nz, double* y,
                   double* rho, double* c, double* s);
  static void Dchex(double* r, int ldr, int p, int k, int l, double* z, int ldz, int nz, double* c,
                    double* s, int job);
};

}  // namespace QXMath_850

#endif  // QX_MATRICES_LINPACK_D_H
