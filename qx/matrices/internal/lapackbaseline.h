#ifndef QX_MATRICES_INTERNAL_LAPACKBASELINE_H
#define QX_MATRICES_INTERNAL_LAPACKBASELINE_H

// The LAPACK and BLAS routines that the matrix benchmarks and tests measure
// the library against where LAPACK was found at configure time
// (QX_HAVE_LAPACK), and the random data they share. Never installed; the
// library itself never calls LAPACK.

#include <cstddef>
#include <random>
#include <vector>

#if defined(QX_HAVE_LAPACK)
extern "C" {
void dgetrf_(const int* m, const int* n, double* a, const int* lda, int* ipiv, int* info);
void dgetrs_(const char* trans, const int* n, const int* nrhs, const double* a, const int* lda,
             const int* ipiv, double* b, const int* ldb, int* info);
void dpotrf_(const char* uplo, const int* n, double* a, const int* lda, int* info);
void dgeqp3_(const int* m, const int* n, double* a, const int* lda, int* jpvt, double* tau,
             double* work, const int* lwork, int* info);
void dgesvd_(const char* jobu, const char* jobvt, const int* m, const int* n, double* a,
             const int* lda, double* s, double* u, const int* ldu, double* vt, const int* ldvt,
             double* work, const int* lwork, int* info);
void dsyev_(const char* jobz, const char* uplo, const int* n, double* a, const int* lda, double* w,
            double* work, const int* lwork, int* info);
void dpotri_(const char* uplo, const int* n, double* a, const int* lda, int* info);
void dsyrk_(const char* uplo, const char* trans, const int* n, const int* k, const double* alpha,
            const double* a, const int* lda, const double* beta, double* c, const int* ldc);
void dsymv_(const char* uplo, const int* n, const double* alpha, const double* a, const int* lda,
            const double* x, const int* incx, const double* beta, double* y, const int* incy);
void dsymm_(const char* side, const char* uplo, const int* m, const int* n, const double* alpha,
            const double* a, const int* lda, const double* b, const int* ldb, const double* beta,
            double* c, const int* ldc);
void dgemm_(const char* transa, const char* transb, const int* m, const int* n, const int* k,
            const double* alpha, const double* a, const int* lda, const double* b, const int* ldb,
            const double* beta, double* c, const int* ldc);
void dtrmm_(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
            const int* n, const double* alpha, const double* a, const int* lda, double* b,
            const int* ldb);
double ddot_(const int* n, const double* x, const int* incx, const double* y, const int* incy);
// OpenBLAS only; null when another BLAS is linked.
void openblas_set_num_threads(int n) __attribute__((weak));
}

namespace QXMath_850 {
namespace internal {

// The baselines run on one thread, as the library does.
inline bool SingleThreadedBlas() {
  if (openblas_set_num_threads != nullptr) openblas_set_num_threads(1);
  return true;
}
inline const bool kSingleThreadedBlas = SingleThreadedBlas();

}  // namespace internal
}  // namespace QXMath_850
#endif

namespace QXMath_850 {
namespace internal {

// An n by n column-major matrix of standard normal values; with `spd` it is
// made symmetric positive definite as G^T G / n + I.
inline std::vector<double> RandomSquare(int n, unsigned seed, bool spd) {
  std::mt19937_64 engine(seed);
  std::normal_distribution<double> normal(0.0, 1.0);
  const std::size_t size = static_cast<std::size_t>(n) * n;
  std::vector<double> g(size);
  for (double& v : g)
    v = normal(engine);
  if (!spd) return g;
  std::vector<double> a(size, 0.0);
  for (int j = 0; j < n; ++j) {
    for (int i = 0; i <= j; ++i) {
      double sum = i == j ? 1.0 : 0.0;
      const double* gi = g.data() + static_cast<std::size_t>(i) * n;
      const double* gj = g.data() + static_cast<std::size_t>(j) * n;
      for (int t = 0; t < n; ++t)
        sum += gi[t] * gj[t] / n;
      a[i + static_cast<std::size_t>(j) * n] = a[j + static_cast<std::size_t>(i) * n] = sum;
    }
  }
  return a;
}

}  // namespace internal
}  // namespace QXMath_850

#endif  // QX_MATRICES_INTERNAL_LAPACKBASELINE_H
