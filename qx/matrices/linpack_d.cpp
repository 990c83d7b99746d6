#include "qx/matrices/linpack_d.h"

#include <cmath>
#include <cstddef>
#include <cstdlib>

#include "qx/matrices/blas1_d.h"

// Each routine follows the published LINPACK text (Dongarra, Bunch, Moler and
// Stewart, LINPACK Users' Guide, SIAM 1979) loop for loop, with indices
// counted from 1 as there; the level-1 calls go to Blas1.

namespace QXMath_850 {

namespace {

// Element (i, j) of a column-major array, both counted from 1.
class ColMajor {
 public:
  ColMajor(double* a, int ld) : a_(a), ld_(ld) {}
  double& operator()(int i, int j) const { return a_[(i - 1) + (j - 1) * ld_]; }

 private:
  double* a_;
  std::ptrdiff_t ld_;
};

// Element i of a vector, counted from 1.
template <typename T>
class OneBased {
 public:
  explicit OneBased(T* v) : v_(v) {}
  T& operator()(int i) const { return v_[i - 1]; }

 private:
  T* v_;
};

// Fortran's DSIGN: the magnitude of a with the sign of b (b = 0 counts as +).
inline double Sign(double a, double b) {
  const double m = std::fabs(a);
  return b >= 0.0 ? m : -m;
}

inline int Min(int a, int b) {
  return Blas1::I_Min(a, b);
}
inline int Max(int a, int b) {
  return Blas1::I_Max(a, b);
}

// Multiplies the determinant by `factor` and brings det[0] back into
// [1, 10) in magnitude by powers of ten kept in det[1]. False when the
// product is zero, which ends the published loops. A product that is not
// finite is left as it is rather than divided by ten for ever.
bool MultiplyDet(double* det, double factor) {
  det[0] = factor * det[0];
  if (det[0] == 0.0) return false;
  const double ten = 10.0;
  if (!std::isfinite(det[0])) return true;
  while (std::fabs(det[0]) < 1.0) {
    det[0] = ten * det[0];
    det[1] = det[1] - 1.0;
  }
  while (std::fabs(det[0]) >= ten) {
    det[0] = det[0] / ten;
    det[1] = det[1] + 1.0;
  }
  return true;
}

// The condition estimators' rescaling: z is scaled to unit 1-norm, and the
// factor is carried into ynorm when one is given.
void ScaleToUnitNorm(int n, double* z, double* ynorm) {
  const double s = 1.0 / Blas1::DASum(n, z, 1);
  Blas1::DScal(n, s, z, 1);
  if (ynorm != nullptr) *ynorm = s * *ynorm;
}

// Keeps |z(k)| within `bound` before a division by it, scaling all of z (and
// ynorm, when given) down if needed.
void LimitGrowth(int n, double* z, int k, double bound, double* ynorm) {
  if (std::fabs(z[k - 1]) <= bound) return;
  const double s = bound / std::fabs(z[k - 1]);
  Blas1::DScal(n, s, z, 1);
  if (ynorm != nullptr) *ynorm = s * *ynorm;
}

inline double Rcond(double ynorm, double anorm) {
  return anorm != 0.0 ? ynorm / anorm : 0.0;
}

// Step k of the estimators' solve of trans(U) w = e, with e_k = +-1 chosen to
// make w grow: ukk is the pivot and row(j) element (k, j) of U for j in
// [j1, j2]. z(k) is set, and z(j1..j2) updated.
template <typename Row>
void EstimateStep(int n, double* z, int k, double ukk, int j1, int j2, Row row, double& ek) {
  OneBased<double> Z(z);
  if (Z(k) != 0.0) ek = Sign(ek, -Z(k));
  if (!(std::fabs(ek - Z(k)) <= std::fabs(ukk))) {
    const double s = std::fabs(ukk) / std::fabs(ek - Z(k));
    Blas1::DScal(n, s, z, 1);
    ek = s * ek;
  }
  double wk = ek - Z(k);
  double wkm = -ek - Z(k);
  double s = std::fabs(wk);
  double sm = std::fabs(wkm);
  if (ukk != 0.0) {
    wk = wk / ukk;
    wkm = wkm / ukk;
  } else {
    wk = 1.0;
    wkm = 1.0;
  }
  if (j1 <= j2) {
    for (int j = j1; j <= j2; ++j) {
      sm = sm + std::fabs(Z(j) + wkm * row(j));
      Z(j) = Z(j) + wk * row(j);
      s = s + std::fabs(Z(j));
    }
    if (!(s >= sm)) {
      const double t = wkm - wk;
      wk = wkm;
      for (int j = j1; j <= j2; ++j)
        Z(j) = Z(j) + t * row(j);
    }
  }
  Z(k) = wk;
}

// Step k's pivot in DGEFA and DGBFA, on the len elements of column k from
// the diagonal down: the largest in magnitude (the first of equals) is
// swapped to the top and the rest become the negated multipliers. Returns
// its offset from the diagonal, or -1, with nothing changed, when it is 0.0.
int PivotColumn(double* col, int len) {
  const int offset = Blas1::IDAMax(len, col, 1) - 1;
  if (col[offset] == 0.0) return -1;
  if (offset != 0) {
    const double t = col[offset];
    col[offset] = col[0];
    col[0] = t;
  }
  const double t = -1.0 / col[0];
  Blas1::DScal(len - 1, t, col + 1, 1);
  return offset;
}

// The estimators' first solve, trans(U) w = e: z starts at zero, step(k, ek)
// makes step k (by EstimateStep) for k = 1..n, and z ends at unit 1-norm.
template <typename Step>
void EstimateFirstSolve(int n, double* z, Step step) {
  for (int j = 0; j < n; ++j)
    z[j] = 0.0;
  double ek = 1.0;
  for (int k = 1; k <= n; ++k)
    step(k, ek);
  ScaleToUnitNorm(n, z, nullptr);
}

// The step of the symmetric estimators (DSICO, DSPCO) that divides by the
// 1 by 1 pivot akk, or by the 2 by 2 block [akm1k1 akm1k; akm1k akk].
void ApplyPivotInverse(double* z, int n, int k, int ks, double akk, double akm1k, double akm1km1,
                       double& scaleFactor) {
  OneBased<double> Z(z);
  if (ks == 1) {
    if (!(std::fabs(Z(k)) <= std::fabs(akk))) {
      const double s = std::fabs(akk) / std::fabs(Z(k));
      Blas1::DScal(n, s, z, 1);
      scaleFactor = s * scaleFactor;
    }
    if (akk != 0.0) Z(k) = Z(k) / akk;
    if (akk == 0.0) Z(k) = 1.0;
    return;
  }
  const double ak = akk / akm1k;
  const double akm1 = akm1km1 / akm1k;
  const double bk = Z(k) / akm1k;
  const double bkm1 = Z(k - 1) / akm1k;
  const double denom = ak * akm1 - 1.0;
  Z(k) = (akm1 * bk - bkm1) / denom;
  Z(k - 1) = (ak * bkm1 - bk) / denom;
}

// Swaps z(i) and z(j) when they differ.
inline void SwapIfDifferent(double* z, int i, int j) {
  if (i == j) return;
  const double t = z[i - 1];
  z[i - 1] = z[j - 1];
  z[j - 1] = t;
}

// The middle solves of DGECO and DGBCO, trans(L) y = w and then L v = y, with
// the multipliers of column k below the diagonal at lower(k), lowerCount(k)
// of them; both solves rescale z as they go. Returns ynorm.
template <typename Lower, typename LowerCount>
double EstimateLowerSolves(int n, double* z, const int* ipvt, Lower lower, LowerCount lowerCount) {
  OneBased<double> Z(z);
  for (int kb = 1; kb <= n; ++kb) {
    const int k = n + 1 - kb;
    if (k < n) Z(k) = Z(k) + Blas1::DDot(lowerCount(k), lower(k), 1, &Z(k + 1), 1);
    if (!(std::fabs(Z(k)) <= 1.0)) {
      const double s = 1.0 / std::fabs(Z(k));
      Blas1::DScal(n, s, z, 1);
    }
    SwapIfDifferent(z, ipvt[k - 1], k);
  }
  ScaleToUnitNorm(n, z, nullptr);
  double ynorm = 1.0;
  for (int k = 1; k <= n; ++k) {
    const int l = ipvt[k - 1];
    const double t = Z(l);
    Z(l) = Z(k);
    Z(k) = t;
    if (k < n) Blas1::Daxpy(lowerCount(k), t, lower(k), 1, &Z(k + 1), 1);
    LimitGrowth(n, z, k, 1.0, &ynorm);
  }
  ScaleToUnitNorm(n, z, &ynorm);
  return ynorm;
}

// The upper triangle of a symmetric matrix, column by column: element
// (i, j), i <= j, is Col(j)[i - 1]. The full form reads a column-major array
// with its leading dimension; the packed form reads the published packed
// store, where column j starts at position j*(j-1)/2. The LINPACK routines
// for the two forms do the same arithmetic on the same column segments, so
// each pair below is written once over these two accessors.
class FullUpper {
 public:
  FullUpper(double* a, int lda) : a_(a), lda_(lda) {}
  double* Col(int j) const { return a_ + (j - 1) * lda_; }
  double& operator()(int i, int j) const { return Col(j)[i - 1]; }

 private:
  double* a_;
  std::ptrdiff_t lda_;
};

class PackedUpper {
 public:
  explicit PackedUpper(double* ap) : ap_(ap) {}
  double* Col(int j) const { return ap_ + static_cast<std::ptrdiff_t>(j) * (j - 1) / 2; }
  double& operator()(int i, int j) const { return Col(j)[i - 1]; }

 private:
  double* ap_;
};

// inverse(U) in place, column by column, as DGEDI, DPODI, DPPDI and DTRDI
// form it. With checkZero a zero diagonal element stops it and its index
// comes back (DTRDI's info); otherwise 0.
template <typename Upper>
int InvertUpper(Upper a, int n, bool checkZero) {
  for (int k = 1; k <= n; ++k) {
    if (checkZero && a(k, k) == 0.0) return k;
    a(k, k) = 1.0 / a(k, k);
    double t = -a(k, k);
    Blas1::DScal(k - 1, t, a.Col(k), 1);
    for (int j = k + 1; j <= n; ++j) {
      t = a(k, j);
      a(k, j) = 0.0;
      Blas1::Daxpy(k, t, a.Col(k), 1, a.Col(j), 1);
    }
  }
  return 0;
}

// 1-norm of a symmetric matrix from its upper triangle; z is work.
template <typename Upper>
double SymmetricNorm(Upper a, int n, double* z) {
  OneBased<double> Z(z);
  for (int j = 1; j <= n; ++j) {
    Z(j) = Blas1::DASum(j, a.Col(j), 1);
    for (int i = 1; i <= j - 1; ++i)
      Z(i) = Z(i) + std::fabs(a(i, j));
  }
  double anorm = 0.0;
  for (int j = 1; j <= n; ++j)
    anorm = Blas1::D_Max(anorm, Z(j));
  return anorm;
}

// LINPACK DPOFA and DPPFA: Cholesky factor R (A = trans(R) R) by columns,
// each element by an inner product; info is the order of the first leading
// minor that isn't positive definite.
template <typename Upper>
int PoFactor(Upper a, int n) {
  for (int j = 1; j <= n; ++j) {
    double s = 0.0;
    for (int k = 1; k <= j - 1; ++k) {
      double t = a(k, j) - Blas1::DDot(k - 1, a.Col(k), 1, a.Col(j), 1);
      t = t / a(k, k);
      a(k, j) = t;
      s = s + t * t;
    }
    s = a(j, j) - s;
    if (s <= 0.0) return j;
    a(j, j) = std::sqrt(s);
  }
  return 0;
}

// LINPACK DPOSL and DPPSL: trans(R) y = b, then R x = y.
template <typename Upper>
void PoSolve(Upper a, int n, double* b) {
  OneBased<double> B(b);
  for (int k = 1; k <= n; ++k) {
    const double t = Blas1::DDot(k - 1, a.Col(k), 1, b, 1);
    B(k) = (B(k) - t) / a(k, k);
  }
  for (int kb = 1; kb <= n; ++kb) {
    const int k = n + 1 - kb;
    B(k) = B(k) / a(k, k);
    const double t = -B(k);
    Blas1::Daxpy(k - 1, t, a.Col(k), 1, b, 1);
  }
}

// LINPACK DPOCO and DPPCO: the factor and the reciprocal condition estimate,
// 0.0 when the matrix isn't positive definite.
template <typename Upper>
double PoCondition(Upper a, int n, double* z) {
  OneBased<double> Z(z);
  const double anorm = SymmetricNorm(a, n, z);
  if (PoFactor(a, n) != 0) return 0.0;
  if (n < 1) return Rcond(1.0, anorm);

  // Solve trans(R) w = e.
  EstimateFirstSolve(n, z, [&](int k, double& ek) {
    EstimateStep(
        n, z, k, a(k, k), k + 1, n, [&](int j) { return a(k, j); }, ek);
  });

  // Solve R y = w, trans(R) v = y and R z = v, rescaling as they go.
  auto solveR = [&](double* ynorm) {
    for (int kb = 1; kb <= n; ++kb) {
      const int k = n + 1 - kb;
      LimitGrowth(n, z, k, a(k, k), ynorm);
      Z(k) = Z(k) / a(k, k);
      const double t = -Z(k);
      Blas1::Daxpy(k - 1, t, a.Col(k), 1, z, 1);
    }
  };
  solveR(nullptr);
  ScaleToUnitNorm(n, z, nullptr);
  double ynorm = 1.0;
  for (int k = 1; k <= n; ++k) {
    Z(k) = Z(k) - Blas1::DDot(k - 1, a.Col(k), 1, z, 1);
    LimitGrowth(n, z, k, a(k, k), &ynorm);
    Z(k) = Z(k) / a(k, k);
  }
  ScaleToUnitNorm(n, z, &ynorm);
  solveR(&ynorm);
  ScaleToUnitNorm(n, z, &ynorm);
  return Rcond(ynorm, anorm);
}

// LINPACK DPODI and DPPDI: determinant (job tens digit) and the upper half of
// the inverse (units digit) from R.
template <typename Upper>
void PoDetInverse(Upper a, int n, double* det, int job) {
  if (job / 10 != 0) {
    det[0] = 1.0;
    det[1] = 0.0;
    for (int i = 1; i <= n; ++i) {
      if (!MultiplyDet(det, a(i, i) * a(i, i))) break;
    }
  }
  if (job % 10 == 0) return;
  InvertUpper(a, n, false);
  // inverse(R) * trans(inverse(R)).
  for (int j = 1; j <= n; ++j) {
    for (int k = 1; k <= j - 1; ++k) {
      const double t = a(k, j);
      Blas1::Daxpy(k, t, a.Col(j), 1, a.Col(k), 1);
    }
    const double t = a(j, j);
    Blas1::DScal(j, t, a.Col(j), 1);
  }
}

// The symmetric interchange of rows and columns p < k within the leading k:
// the two columns above row p, then column k from row k up to row p against
// row p, in the published order.
template <typename Upper>
void SiInterchange(Upper a, int p, int k) {
  Blas1::DSwap(p, a.Col(p), 1, a.Col(k), 1);
  for (int jj = p; jj <= k; ++jj) {
    const int j = k + p - jj;
    const double t = a(j, k);
    a(j, k) = a(p, j);
    a(p, j) = t;
  }
}

// LINPACK DSIFA and DSPFA: U D trans(U) by elimination with the symmetric
// pivoting of Bunch and Kaufman; 1 by 1 and 2 by 2 pivot blocks, the latter
// marked by negative entries in kpvt.
template <typename Upper>
int SiFactor(Upper a, int n, int* kpvt) {
  OneBased<int> KPVT(kpvt);
  // alpha chooses the size of the pivot block.
  const double alpha = (1.0 + std::sqrt(17.0)) / 8.0;
  int info = 0;
  // Main loop on k, from n down to 1.
  int k = n;
  while (k != 0) {
    if (k == 1) {
      KPVT(1) = 1;
      if (a(1, 1) == 0.0) info = 1;
      break;
    }
    // Kind of elimination: kstep is the size of the pivot block, swap whether
    // an interchange is needed.
    const int km1 = k - 1;
    const double absakk = std::fabs(a(k, k));
    // Largest off-diagonal element in column k.
    const int imax = Blas1::IDAMax(k - 1, a.Col(k), 1);
    const double colmax = std::fabs(a(imax, k));
    int kstep;
    bool swap;
    if (!(absakk < alpha * colmax)) {
      kstep = 1;
      swap = false;
    } else {
      // Largest off-diagonal element in row imax.
      double rowmax = 0.0;
      for (int j = imax + 1; j <= k; ++j)
        rowmax = Blas1::D_Max(rowmax, std::fabs(a(imax, j)));
      if (imax != 1) {
        const int jmax = Blas1::IDAMax(imax - 1, a.Col(imax), 1);
        rowmax = Blas1::D_Max(rowmax, std::fabs(a(jmax, imax)));
      }
      if (!(std::fabs(a(imax, imax)) < alpha * rowmax)) {
        kstep = 1;
        swap = true;
      } else if (!(absakk < alpha * colmax * (colmax / rowmax))) {
        kstep = 1;
        swap = false;
      } else {
        kstep = 2;
        swap = imax != km1;
      }
    }
    if (Blas1::D_Max(absakk, colmax) == 0.0) {
      // Column k is zero.
      KPVT(k) = k;
      info = k;
    } else if (kstep == 1) {
      if (swap) SiInterchange(a, imax, k);
      for (int jj = 1; jj <= km1; ++jj) {
        const int j = k - jj;
        const double mulk = -a(j, k) / a(k, k);
        const double t = mulk;
        Blas1::Daxpy(j, t, a.Col(k), 1, a.Col(j), 1);
        a(j, k) = mulk;
      }
      KPVT(k) = swap ? imax : k;
    } else {
      if (swap) {
        SiInterchange(a, imax, km1);
        const double t = a(k - 1, k);
        a(k - 1, k) = a(imax, k);
        a(imax, k) = t;
      }
      const int km2 = k - 2;
      if (km2 != 0) {
        const double ak = a(k, k) / a(k - 1, k);
        const double akm1 = a(k - 1, k - 1) / a(k - 1, k);
        const double denom = 1.0 - ak * akm1;
        for (int jj = 1; jj <= km2; ++jj) {
          const int j = km1 - jj;
          const double bk = a(j, k) / a(k - 1, k);
          const double bkm1 = a(j, k - 1) / a(k - 1, k);
          const double mulk = (akm1 * bk - bkm1) / denom;
          const double mulkm1 = (ak * bkm1 - bk) / denom;
          double t = mulk;
          Blas1::Daxpy(j, t, a.Col(k), 1, a.Col(j), 1);
          t = mulkm1;
          Blas1::Daxpy(j, t, a.Col(k - 1), 1, a.Col(j), 1);
          a(j, k) = mulk;
          a(j, k - 1) = mulkm1;
        }
      }
      KPVT(k) = swap ? -imax : 1 - k;
      KPVT(k - 1) = KPVT(k);
    }
    k = k - kstep;
  }
  return info;
}

// The two passes of trans(U) that the symmetric estimators make: z(k) (and
// z(k+1) for a 2 by 2 block) gain the dot of their column above the block
// with z, then the interchange is undone.
template <typename Upper>
void SiApplyUTrans(Upper a, int n, const int* kpvt, double* z) {
  OneBased<double> Z(z);
  int k = 1;
  while (k <= n) {
    const int ks = kpvt[k - 1] < 0 ? 2 : 1;
    if (k != 1) {
      Z(k) = Z(k) + Blas1::DDot(k - 1, a.Col(k), 1, z, 1);
      if (ks == 2) Z(k + 1) = Z(k + 1) + Blas1::DDot(k - 1, a.Col(k + 1), 1, z, 1);
      SwapIfDifferent(z, k, std::abs(kpvt[k - 1]));
    }
    k = k + ks;
  }
}

// LINPACK DSICO and DSPCO: the factor and the reciprocal condition estimate.
template <typename Upper>
double SiCondition(Upper a, int n, int* kpvt, double* z) {
  OneBased<double> Z(z);
  const double anorm = SymmetricNorm(a, n, z);
  SiFactor(a, n, kpvt);
  if (n < 1) return Rcond(1.0, anorm);

  // Solve U D w = e.
  double ek = 1.0;
  for (int j = 1; j <= n; ++j)
    Z(j) = 0.0;
  int k = n;
  while (k != 0) {
    const int ks = kpvt[k - 1] < 0 ? 2 : 1;
    const int kp = std::abs(kpvt[k - 1]);
    const int kps = k + 1 - ks;
    SwapIfDifferent(z, kps, kp);
    if (Z(k) != 0.0) ek = Sign(ek, Z(k));
    Z(k) = Z(k) + ek;
    Blas1::Daxpy(k - ks, Z(k), a.Col(k), 1, z, 1);
    if (ks == 2) {
      if (Z(k - 1) != 0.0) ek = Sign(ek, Z(k - 1));
      Z(k - 1) = Z(k - 1) + ek;
      Blas1::Daxpy(k - ks, Z(k - 1), a.Col(k - 1), 1, z, 1);
    }
    if (ks == 1) {
      ApplyPivotInverse(z, n, k, ks, a(k, k), 0.0, 0.0, ek);
    } else {
      ApplyPivotInverse(z, n, k, ks, a(k, k), a(k - 1, k), a(k - 1, k - 1), ek);
    }
    k = k - ks;
  }
  ScaleToUnitNorm(n, z, nullptr);

  // Solve trans(U) y = w.
  SiApplyUTrans(a, n, kpvt, z);
  ScaleToUnitNorm(n, z, nullptr);

  double ynorm = 1.0;
  // Solve U D v = y.
  k = n;
  while (k != 0) {
    const int ks = kpvt[k - 1] < 0 ? 2 : 1;
    if (k != ks) {
      const int kp = std::abs(kpvt[k - 1]);
      const int kps = k + 1 - ks;
      SwapIfDifferent(z, kps, kp);
      Blas1::Daxpy(k - ks, Z(k), a.Col(k), 1, z, 1);
      if (ks == 2) Blas1::Daxpy(k - ks, Z(k - 1), a.Col(k - 1), 1, z, 1);
    }
    if (ks == 1) {
      ApplyPivotInverse(z, n, k, ks, a(k, k), 0.0, 0.0, ynorm);
    } else {
      ApplyPivotInverse(z, n, k, ks, a(k, k), a(k - 1, k), a(k - 1, k - 1), ynorm);
    }
    k = k - ks;
  }
  ScaleToUnitNorm(n, z, &ynorm);

  // Solve trans(U) z = v.
  SiApplyUTrans(a, n, kpvt, z);
  ScaleToUnitNorm(n, z, &ynorm);
  return Rcond(ynorm, anorm);
}

// LINPACK DSISL and DSPSL: applies the transformations and inverse(D) going
// back, then the transformations going forward.
template <typename Upper>
void SiSolve(Upper a, int n, const int* kpvt, double* b) {
  OneBased<double> B(b);
  int k = n;
  while (k != 0) {
    if (kpvt[k - 1] >= 0) {
      // 1 by 1 pivot block.
      if (k != 1) {
        SwapIfDifferent(b, k, kpvt[k - 1]);
        Blas1::Daxpy(k - 1, B(k), a.Col(k), 1, b, 1);
      }
      B(k) = B(k) / a(k, k);
      k = k - 1;
    } else {
      // 2 by 2 pivot block.
      if (k != 2) {
        SwapIfDifferent(b, k - 1, std::abs(kpvt[k - 1]));
        Blas1::Daxpy(k - 2, B(k), a.Col(k), 1, b, 1);
        Blas1::Daxpy(k - 2, B(k - 1), a.Col(k - 1), 1, b, 1);
      }
      const double ak = a(k, k) / a(k - 1, k);
      const double akm1 = a(k - 1, k - 1) / a(k - 1, k);
      const double bk = B(k) / a(k - 1, k);
      const double bkm1 = B(k - 1) / a(k - 1, k);
      const double denom = ak * akm1 - 1.0;
      B(k) = (akm1 * bk - bkm1) / denom;
      B(k - 1) = (ak * bkm1 - bk) / denom;
      k = k - 2;
    }
  }
  k = 1;
  while (k <= n) {
    if (kpvt[k - 1] >= 0) {
      if (k != 1) {
        B(k) = B(k) + Blas1::DDot(k - 1, a.Col(k), 1, b, 1);
        SwapIfDifferent(b, k, kpvt[k - 1]);
      }
      k = k + 1;
    } else {
      if (k != 1) {
        B(k) = B(k) + Blas1::DDot(k - 1, a.Col(k), 1, b, 1);
        B(k + 1) = B(k + 1) + Blas1::DDot(k - 1, a.Col(k + 1), 1, b, 1);
        SwapIfDifferent(b, k, std::abs(kpvt[k - 1]));
      }
      k = k + 2;
    }
  }
}

// Column k of the inverse above the diagonal, from the columns before it:
// the inner step of DSIDI and DSPDI.
template <typename Upper>
void SiInverseColumn(Upper a, int km1, int col, int diagRow, double* work) {
  OneBased<double> W(work);
  Blas1::DCopy(km1, a.Col(col), 1, work, 1);
  for (int j = 1; j <= km1; ++j) {
    a(j, col) = Blas1::DDot(j, a.Col(j), 1, work, 1);
    Blas1::Daxpy(j - 1, W(j), a.Col(j), 1, a.Col(col), 1);
  }
  a(diagRow, col) = a(diagRow, col) + Blas1::DDot(km1, work, 1, a.Col(col), 1);
}

// LINPACK DSIDI and DSPDI: inertia (job hundreds digit), determinant (tens)
// and the upper triangle of the inverse (units) from the factors.
template <typename Upper>
void SiDetInverse(Upper a, int n, const int* kpvt, double* det, int* inert, double* work, int job) {
  const bool noinv = job % 10 == 0;
  const bool nodet = job % 100 / 10 == 0;
  const bool noert = job % 1000 / 100 == 0;
  if (!(nodet && noert)) {
    if (!noert) inert[0] = inert[1] = inert[2] = 0;
    if (!nodet) {
      det[0] = 1.0;
      det[1] = 0.0;
    }
    double t = 0.0;
    for (int k = 1; k <= n; ++k) {
      double d = a(k, k);
      if (kpvt[k - 1] <= 0) {
        // 2 by 2 block: det [d s; s c] = (d/t * c - t) * t with t = |s|,
        // taken in two passes with t as the flag, against over- and
        // underflow.
        if (t == 0.0) {
          t = std::fabs(a(k, k + 1));
          d = (d / t) * a(k + 1, k + 1) - t;
        } else {
          d = t;
          t = 0.0;
        }
      }
      if (!noert) {
        if (d > 0.0) inert[0] = inert[0] + 1;
        if (d < 0.0) inert[1] = inert[1] + 1;
        if (d == 0.0) inert[2] = inert[2] + 1;
      }
      if (!nodet) MultiplyDet(det, d);
    }
  }
  if (noinv) return;
  int k = 1;
  while (k <= n) {
    const int km1 = k - 1;
    int kstep;
    if (kpvt[k - 1] >= 0) {
      // 1 by 1.
      a(k, k) = 1.0 / a(k, k);
      if (km1 >= 1) SiInverseColumn(a, km1, k, k, work);
      kstep = 1;
    } else {
      // 2 by 2.
      const double t = std::fabs(a(k, k + 1));
      const double ak = a(k, k) / t;
      const double akp1 = a(k + 1, k + 1) / t;
      const double akkp1 = a(k, k + 1) / t;
      const double d = t * (ak * akp1 - 1.0);
      a(k, k) = akp1 / d;
      a(k + 1, k + 1) = ak / d;
      a(k, k + 1) = -akkp1 / d;
      if (km1 >= 1) {
        SiInverseColumn(a, km1, k + 1, k + 1, work);
        a(k, k + 1) = a(k, k + 1) + Blas1::DDot(km1, a.Col(k), 1, a.Col(k + 1), 1);
        SiInverseColumn(a, km1, k, k, work);
      }
      kstep = 2;
    }
    // Undo the interchange.
    const int ks = std::abs(kpvt[k - 1]);
    if (ks != k) {
      SiInterchange(a, ks, k);
      if (kstep != 1) {
        const double temp = a(ks, k + 1);
        a(ks, k + 1) = a(k, k + 1);
        a(k, k + 1) = temp;
      }
    }
    k = k + kstep;
  }
}

}  // namespace

// ---------------------------------------------------------------------------
// General matrices

// LINPACK DGEFA: Gaussian elimination with partial pivoting, column oriented.
int Linpack::Dgefa(double* a, int lda, int n, int* ipvt) {
  ColMajor A(a, lda);
  int info = 0;
  if (n < 1) return info;
  const int nm1 = n - 1;
  for (int k = 1; k <= nm1; ++k) {
    const int kp1 = k + 1;
    // Pivot index.
    // Pivot and multipliers; a zero pivot means this column is already
    // triangular.
    const int offset = PivotColumn(&A(k, k), n - k + 1);
    const int l = k + Max(offset, 0);
    ipvt[k - 1] = l;
    if (offset < 0) {
      info = k;
      continue;
    }
    // Row elimination with column indexing.
    for (int j = kp1; j <= n; ++j) {
      const double t = A(l, j);
      if (l != k) {
        A(l, j) = A(k, j);
        A(k, j) = t;
      }
      Blas1::Daxpy(n - k, t, &A(k + 1, k), 1, &A(k + 1, j), 1);
    }
  }
  ipvt[n - 1] = n;
  if (A(n, n) == 0.0) info = n;
  return info;
}

// LINPACK DGECO: DGEFA and an estimate of the reciprocal condition in the
// 1-norm, by the solves trans(A) y = e and A z = y.
double Linpack::Dgeco(double* a, int lda, int n, int* ipvt, double* z) {
  ColMajor A(a, lda);
  OneBased<double> Z(z);
  // 1-norm of A.
  double anorm = 0.0;
  for (int j = 1; j <= n; ++j)
    anorm = Blas1::D_Max(anorm, Blas1::DASum(n, &A(1, j), 1));
  Dgefa(a, lda, n, ipvt);
  if (n < 1) return Rcond(1.0, anorm);

  // Solve trans(U) w = e.
  EstimateFirstSolve(n, z, [&](int k, double& ek) {
    EstimateStep(
        n, z, k, A(k, k), k + 1, n, [&](int j) { return A(k, j); }, ek);
  });

  // Solve trans(L) y = w and L v = y.
  double ynorm = EstimateLowerSolves(
      n, z, ipvt, [&](int k) { return &A(k + 1, k); }, [&](int k) { return n - k; });

  // Solve U z = v.
  for (int kb = 1; kb <= n; ++kb) {
    const int k = n + 1 - kb;
    LimitGrowth(n, z, k, std::fabs(A(k, k)), &ynorm);
    if (A(k, k) != 0.0) Z(k) = Z(k) / A(k, k);
    if (A(k, k) == 0.0) Z(k) = 1.0;
    const double t = -Z(k);
    Blas1::Daxpy(k - 1, t, &A(1, k), 1, &Z(1), 1);
  }
  ScaleToUnitNorm(n, z, &ynorm);
  return Rcond(ynorm, anorm);
}

// LINPACK DGESL: solves A x = b (job 0) or trans(A) x = b (any other job)
// from the factors of DGEFA.
void Linpack::Dgesl(double* a, int lda, int n, int* ipvt, double* b, int job) {
  ColMajor A(a, lda);
  OneBased<double> B(b);
  const int nm1 = n - 1;
  if (job == 0) {
    // L y = b.
    for (int k = 1; k <= nm1; ++k) {
      const int l = ipvt[k - 1];
      const double t = B(l);
      if (l != k) {
        B(l) = B(k);
        B(k) = t;
      }
      Blas1::Daxpy(n - k, t, &A(k + 1, k), 1, &B(k + 1), 1);
    }
    // U x = y.
    for (int kb = 1; kb <= n; ++kb) {
      const int k = n + 1 - kb;
      B(k) = B(k) / A(k, k);
      const double t = -B(k);
      Blas1::Daxpy(k - 1, t, &A(1, k), 1, &B(1), 1);
    }
    return;
  }
  // trans(U) y = b.
  for (int k = 1; k <= n; ++k) {
    const double t = Blas1::DDot(k - 1, &A(1, k), 1, &B(1), 1);
    B(k) = (B(k) - t) / A(k, k);
  }
  // trans(L) x = y.
  for (int kb = 1; kb <= nm1; ++kb) {
    const int k = n - kb;
    B(k) = B(k) + Blas1::DDot(n - k, &A(k + 1, k), 1, &B(k + 1), 1);
    const int l = ipvt[k - 1];
    if (l != k) {
      const double t = B(l);
      B(l) = B(k);
      B(k) = t;
    }
  }
}

// LINPACK DGEDI: determinant (job tens digit) and inverse (units digit) from
// the factors of DGEFA.
void Linpack::Dgedi(double* a, int lda, int n, int* ipvt, double* det, double* work, int job) {
  ColMajor A(a, lda);
  OneBased<double> W(work);
  if (job / 10 != 0) {
    det[0] = 1.0;
    det[1] = 0.0;
    for (int i = 1; i <= n; ++i) {
      if (ipvt[i - 1] != i) det[0] = -det[0];
      if (!MultiplyDet(det, A(i, i))) break;
    }
  }
  if (job % 10 == 0) return;
  InvertUpper(FullUpper(a, lda), n, false);
  // inverse(U) * inverse(L).
  const int nm1 = n - 1;
  for (int kb = 1; kb <= nm1; ++kb) {
    const int k = n - kb;
    const int kp1 = k + 1;
    for (int i = kp1; i <= n; ++i) {
      W(i) = A(i, k);
      A(i, k) = 0.0;
    }
    for (int j = kp1; j <= n; ++j) {
      const double t = W(j);
      Blas1::Daxpy(n, t, &A(1, j), 1, &A(1, k), 1);
    }
    const int l = ipvt[k - 1];
    if (l != k) Blas1::DSwap(n, &A(1, k), 1, &A(1, l), 1);
  }
}

// ---------------------------------------------------------------------------
// General band matrices

// LINPACK DGBFA: band Gaussian elimination with partial pivoting.
int Linpack::Dgbfa(double* abd, int lda, int n, int ml, int mu, int* ipvt) {
  ColMajor ABD(abd, lda);
  const int m = ml + mu + 1;
  int info = 0;
  if (n < 1) return info;
  // Zero the initial fill-in columns.
  const int j0 = mu + 2;
  const int j1 = Min(n, m) - 1;
  for (int jz = j0; jz <= j1; ++jz) {
    const int i0 = m + 1 - jz;
    for (int i = i0; i <= ml; ++i)
      ABD(i, jz) = 0.0;
  }
  int jz = j1;
  int ju = 0;
  const int nm1 = n - 1;
  for (int k = 1; k <= nm1; ++k) {
    const int kp1 = k + 1;
    // Zero the next fill-in column.
    jz = jz + 1;
    if (jz <= n && ml >= 1) {
      for (int i = 1; i <= ml; ++i)
        ABD(i, jz) = 0.0;
    }
    // Pivot index.
    const int lm = Min(ml, n - k);
    const int offset = PivotColumn(&ABD(m, k), lm + 1);
    int l = m + Max(offset, 0);
    ipvt[k - 1] = l + k - m;
    if (offset < 0) {
      info = k;
      continue;
    }
    // Row elimination with column indexing.
    ju = Min(Max(ju, mu + ipvt[k - 1]), n);
    int mm = m;
    for (int j = kp1; j <= ju; ++j) {
      l = l - 1;
      mm = mm - 1;
      const double t = ABD(l, j);
      if (l != mm) {
        ABD(l, j) = ABD(mm, j);
        ABD(mm, j) = t;
      }
      Blas1::Daxpy(lm, t, &ABD(m + 1, k), 1, &ABD(mm + 1, j), 1);
    }
  }
  ipvt[n - 1] = n;
  if (ABD(m, n) == 0.0) info = n;
  return info;
}

// LINPACK DGBCO: DGBFA and the reciprocal condition estimate.
double Linpack::Dgbco(double* abd, int lda, int n, int ml, int mu, int* ipvt, double* z) {
  ColMajor ABD(abd, lda);
  OneBased<double> Z(z);
  // 1-norm of A.
  double anorm = 0.0;
  int l = ml + 1;
  int is = l + mu;
  for (int j = 1; j <= n; ++j) {
    anorm = Blas1::D_Max(anorm, Blas1::DASum(l, &ABD(is, j), 1));
    if (is > ml + 1) is = is - 1;
    if (j <= mu) l = l + 1;
    if (j >= n - ml) l = l - 1;
  }
  Dgbfa(abd, lda, n, ml, mu, ipvt);
  if (n < 1) return Rcond(1.0, anorm);

  // Solve trans(U) w = e; row k of U runs up the band: element (k, j) is
  // abd(m - (j - k), j).
  const int m = ml + mu + 1;
  int ju = 0;
  EstimateFirstSolve(n, z, [&](int k, double& ek) {
    ju = Min(Max(ju, mu + ipvt[k - 1]), n);
    EstimateStep(
        n, z, k, ABD(m, k), k + 1, ju, [&](int j) { return ABD(m - (j - k), j); }, ek);
  });

  // Solve trans(L) y = w and L v = y.
  double ynorm = EstimateLowerSolves(
      n, z, ipvt, [&](int k) { return &ABD(m + 1, k); }, [&](int k) { return Min(ml, n - k); });

  // Solve U z = w.
  for (int kb = 1; kb <= n; ++kb) {
    const int k = n + 1 - kb;
    LimitGrowth(n, z, k, std::fabs(ABD(m, k)), &ynorm);
    if (ABD(m, k) != 0.0) Z(k) = Z(k) / ABD(m, k);
    if (ABD(m, k) == 0.0) Z(k) = 1.0;
    const int lm = Min(k, m) - 1;
    const int la = m - lm;
    const int lz = k - lm;
    const double t = -Z(k);
    Blas1::Daxpy(lm, t, &ABD(la, k), 1, &Z(lz), 1);
  }
  ScaleToUnitNorm(n, z, &ynorm);
  return Rcond(ynorm, anorm);
}

// LINPACK DGBSL: solves the band system A x = b (job 0) or trans(A) x = b.
void Linpack::Dgbsl(double* abd, int lda, int n, int ml, int mu, int* ipvt, double* b, int job) {
  ColMajor ABD(abd, lda);
  OneBased<double> B(b);
  const int m = mu + ml + 1;
  const int nm1 = n - 1;
  if (job == 0) {
    // L y = b.
    if (ml != 0) {
      for (int k = 1; k <= nm1; ++k) {
        const int lm = Min(ml, n - k);
        const int l = ipvt[k - 1];
        const double t = B(l);
        if (l != k) {
          B(l) = B(k);
          B(k) = t;
        }
        Blas1::Daxpy(lm, t, &ABD(m + 1, k), 1, &B(k + 1), 1);
      }
    }
    // U x = y.
    for (int kb = 1; kb <= n; ++kb) {
      const int k = n + 1 - kb;
      B(k) = B(k) / ABD(m, k);
      const int lm = Min(k, m) - 1;
      const int la = m - lm;
      const int lb = k - lm;
      const double t = -B(k);
      Blas1::Daxpy(lm, t, &ABD(la, k), 1, &B(lb), 1);
    }
    return;
  }
  // trans(U) y = b.
  for (int k = 1; k <= n; ++k) {
    const int lm = Min(k, m) - 1;
    const int la = m - lm;
    const int lb = k - lm;
    const double t = Blas1::DDot(lm, &ABD(la, k), 1, &B(lb), 1);
    B(k) = (B(k) - t) / ABD(m, k);
  }
  // trans(L) x = y.
  if (ml == 0) return;
  for (int kb = 1; kb <= nm1; ++kb) {
    const int k = n - kb;
    const int lm = Min(ml, n - k);
    B(k) = B(k) + Blas1::DDot(lm, &ABD(m + 1, k), 1, &B(k + 1), 1);
    const int l = ipvt[k - 1];
    if (l != k) {
      const double t = B(l);
      B(l) = B(k);
      B(k) = t;
    }
  }
}

// LINPACK DGBDI: determinant of a band matrix from the factors of DGBFA.
void Linpack::Dgbdi(double* abd, int lda, int n, int ml, int mu, int* ipvt, double* det) {
  ColMajor ABD(abd, lda);
  const int m = ml + mu + 1;
  det[0] = 1.0;
  det[1] = 0.0;
  for (int i = 1; i <= n; ++i) {
    if (ipvt[i - 1] != i) det[0] = -det[0];
    if (!MultiplyDet(det, ABD(m, i))) break;
  }
}

// ---------------------------------------------------------------------------
// Tridiagonal systems

// LINPACK DGTSL: general tridiagonal solve by elimination with partial
// pivoting; c, d and e are overwritten.
int Linpack::Dgtsl(int n, double* c, double* d, double* e, double* b) {
  OneBased<double> C(c), D(d), E(e), B(b);
  int info = 0;
  if (n < 1) return info;
  C(1) = D(1);
  const int nm1 = n - 1;
  if (nm1 >= 1) {
    D(1) = E(1);
    E(1) = 0.0;
    E(n) = 0.0;
    for (int k = 1; k <= nm1; ++k) {
      const int kp1 = k + 1;
      // Take the larger of the two rows as pivot.
      if (!(std::fabs(C(kp1)) < std::fabs(C(k)))) {
        double t = C(kp1);
        C(kp1) = C(k);
        C(k) = t;
        t = D(kp1);
        D(kp1) = D(k);
        D(k) = t;
        t = E(kp1);
        E(kp1) = E(k);
        E(k) = t;
        t = B(kp1);
        B(kp1) = B(k);
        B(k) = t;
      }
      if (C(k) == 0.0) return k;
      const double t = -C(kp1) / C(k);
      C(kp1) = D(kp1) + t * D(k);
      D(kp1) = E(kp1) + t * E(k);
      E(kp1) = 0.0;
      B(kp1) = B(kp1) + t * B(k);
    }
  }
  if (C(n) == 0.0) return n;
  // Back solve.
  const int nm2 = n - 2;
  B(n) = B(n) / C(n);
  if (n == 1) return info;
  B(nm1) = (B(nm1) - D(nm1) * B(n)) / C(nm1);
  for (int kb = 1; kb <= nm2; ++kb) {
    const int k = nm2 - kb + 1;
    B(k) = (B(k) - D(k) * B(k + 1) - E(k) * B(k + 2)) / C(k);
  }
  return info;
}

// LINPACK DPTSL: positive definite tridiagonal solve, eliminating from both
// ends towards the middle; d is overwritten.
void Linpack::Dptsl(int n, double* d, double* e, double* b) {
  OneBased<double> D(d), E(e), B(b);
  if (n < 1) return;
  if (n == 1) {
    B(1) = B(1) / D(1);
    return;
  }
  const int nm1 = n - 1;
  const int nm1d2 = nm1 / 2;
  if (n != 2) {
    int kbm1 = n - 1;
    // Zero the top half of the sub-diagonal and the bottom half of the
    // super-diagonal.
    for (int k = 1; k <= nm1d2; ++k) {
      const double t1 = E(k) / D(k);
      D(k + 1) = D(k + 1) - t1 * E(k);
      B(k + 1) = B(k + 1) - t1 * B(k);
      const double t2 = E(kbm1) / D(kbm1 + 1);
      D(kbm1) = D(kbm1) - t2 * E(kbm1);
      B(kbm1) = B(kbm1) - t2 * B(kbm1 + 1);
      kbm1 = kbm1 - 1;
    }
  }
  int kp1 = nm1d2 + 1;
  // A possible 2 by 2 block at the centre.
  if (n % 2 == 0) {
    const double t1 = E(kp1) / D(kp1);
    D(kp1 + 1) = D(kp1 + 1) - t1 * E(kp1);
    B(kp1 + 1) = B(kp1 + 1) - t1 * B(kp1);
    kp1 = kp1 + 1;
  }
  // Back solve from the centre towards both ends.
  B(kp1) = B(kp1) / D(kp1);
  if (n != 2) {
    int k = kp1 - 1;
    const int ke = kp1 + nm1d2 - 1;
    for (int kf = kp1; kf <= ke; ++kf) {
      B(k) = (B(k) - E(k) * B(k + 1)) / D(k);
      B(kf + 1) = (B(kf + 1) - E(kf) * B(kf)) / D(kf + 1);
      k = k - 1;
    }
  }
  if (n % 2 == 0) B(1) = (B(1) - E(1) * B(2)) / D(1);
}

// ---------------------------------------------------------------------------
// Positive definite matrices, full and packed

int Linpack::Dpofa(double* a, int lda, int n) {
  return PoFactor(FullUpper(a, lda), n);
}

double Linpack::Dpoco(double* a, int lda, int n, double* z) {
  return PoCondition(FullUpper(a, lda), n, z);
}

void Linpack::Dposl(double* a, int lda, int n, double* b) {
  PoSolve(FullUpper(a, lda), n, b);
}

int Linpack::Dpodi(double* a, int lda, int n, double* det, int job) {
  PoDetInverse(FullUpper(a, lda), n, det, job);
  return 0;
}

int Linpack::Dppfa(double* ap, int n) {
  return PoFactor(PackedUpper(ap), n);
}

double Linpack::Dppco(double* ap, int n, double* z) {
  return PoCondition(PackedUpper(ap), n, z);
}

void Linpack::Dppsl(double* ap, int n, double* b) {
  PoSolve(PackedUpper(ap), n, b);
}

int Linpack::Dppdi(double* ap, int n, double* det, int job) {
  PoDetInverse(PackedUpper(ap), n, det, job);
  return 0;
}

// ---------------------------------------------------------------------------
// Positive definite band matrices: the upper triangle in m + 1 rows, the
// diagonal in row m + 1.

// LINPACK DPBFA: band Cholesky by inner products.
int Linpack::Dpbfa(double* abd, int lda, int n, int m) {
  ColMajor ABD(abd, lda);
  for (int j = 1; j <= n; ++j) {
    double s = 0.0;
    int ik = m + 1;
    int jk = Max(j - m, 1);
    const int mu = Max(m + 2 - j, 1);
    for (int k = mu; k <= m; ++k) {
      double t = ABD(k, j) - Blas1::DDot(k - mu, &ABD(ik, jk), 1, &ABD(mu, j), 1);
      t = t / ABD(m + 1, jk);
      ABD(k, j) = t;
      s = s + t * t;
      ik = ik - 1;
      jk = jk + 1;
    }
    s = ABD(m + 1, j) - s;
    if (s <= 0.0) return j;
    ABD(m + 1, j) = std::sqrt(s);
  }
  return 0;
}

// LINPACK DPBCO: DPBFA and the reciprocal condition estimate, 0.0 when the
// matrix isn't positive definite.
double Linpack::Dpbco(double* abd, int lda, int n, int m, double* z) {
  ColMajor ABD(abd, lda);
  OneBased<double> Z(z);
  // 1-norm of A.
  for (int j = 1; j <= n; ++j) {
    const int l = Min(j, m + 1);
    const int mu = Max(m + 2 - j, 1);
    Z(j) = Blas1::DASum(l, &ABD(mu, j), 1);
    int k = j - l;
    for (int i = mu; i <= m; ++i) {
      k = k + 1;
      Z(k) = Z(k) + std::fabs(ABD(i, j));
    }
  }
  double anorm = 0.0;
  for (int j = 1; j <= n; ++j)
    anorm = Blas1::D_Max(anorm, Z(j));
  if (Dpbfa(abd, lda, n, m) != 0) return 0.0;
  if (n < 1) return Rcond(1.0, anorm);

  // Solve trans(R) w = e; row k of R runs up the band.
  EstimateFirstSolve(n, z, [&](int k, double& ek) {
    EstimateStep(
        n, z, k, ABD(m + 1, k), k + 1, Min(k + m, n),
        [&](int j) { return ABD(m + 1 - (j - k), j); }, ek);
  });

  // Solve R y = w, trans(R) v = y and R z = v, rescaling as they go.
  auto solveR = [&](double* ynorm) {
    for (int kb = 1; kb <= n; ++kb) {
      const int k = n + 1 - kb;
      LimitGrowth(n, z, k, ABD(m + 1, k), ynorm);
      Z(k) = Z(k) / ABD(m + 1, k);
      const int lm = Min(k - 1, m);
      const int la = m + 1 - lm;
      const int lb = k - lm;
      const double t = -Z(k);
      Blas1::Daxpy(lm, t, &ABD(la, k), 1, &Z(lb), 1);
    }
  };
  solveR(nullptr);
  ScaleToUnitNorm(n, z, nullptr);
  double ynorm = 1.0;
  for (int k = 1; k <= n; ++k) {
    const int lm = Min(k - 1, m);
    const int la = m + 1 - lm;
    const int lb = k - lm;
    Z(k) = Z(k) - Blas1::DDot(lm, &ABD(la, k), 1, &Z(lb), 1);
    LimitGrowth(n, z, k, ABD(m + 1, k), &ynorm);
    Z(k) = Z(k) / ABD(m + 1, k);
  }
  ScaleToUnitNorm(n, z, &ynorm);
  solveR(&ynorm);
  ScaleToUnitNorm(n, z, &ynorm);
  return Rcond(ynorm, anorm);
}

// LINPACK DPBSL: trans(R) y = b, then R x = y, in band storage.
void Linpack::Dpbsl(double* abd, int lda, int n, int m, double* b) {
  ColMajor ABD(abd, lda);
  OneBased<double> B(b);
  for (int k = 1; k <= n; ++k) {
    const int lm = Min(k - 1, m);
    const int la = m + 1 - lm;
    const int lb = k - lm;
    const double t = Blas1::DDot(lm, &ABD(la, k), 1, &B(lb), 1);
    B(k) = (B(k) - t) / ABD(m + 1, k);
  }
  for (int kb = 1; kb <= n; ++kb) {
    const int k = n + 1 - kb;
    const int lm = Min(k - 1, m);
    const int la = m + 1 - lm;
    const int lb = k - lm;
    B(k) = B(k) / ABD(m + 1, k);
    const double t = -B(k);
    Blas1::Daxpy(lm, t, &ABD(la, k), 1, &B(lb), 1);
  }
}

// LINPACK DPBDI: determinant from the band factor.
void Linpack::Dpbdi(double* abd, int lda, int n, int m, double* det) {
  ColMajor ABD(abd, lda);
  det[0] = 1.0;
  det[1] = 0.0;
  for (int i = 1; i <= n; ++i) {
    if (!MultiplyDet(det, ABD(m + 1, i) * ABD(m + 1, i))) break;
  }
}

// ---------------------------------------------------------------------------
// Symmetric indefinite matrices, full and packed

int Linpack::Dsifa(double* a, int lda, int n, int* kpvt) {
  return SiFactor(FullUpper(a, lda), n, kpvt);
}

double Linpack::Dsico(double* a, int lda, int n, int* kpvt, double* z) {
  return SiCondition(FullUpper(a, lda), n, kpvt, z);
}

void Linpack::Dsisl(double* a, int lda, int n, int* kpvt, double* b) {
  SiSolve(FullUpper(a, lda), n, kpvt, b);
}

int Linpack::Dsidi(double* a, int lda, int n, int* kpvt, double* det, int* inert, double* work,
                   int job) {
  SiDetInverse(FullUpper(a, lda), n, kpvt, det, inert, work, job);
  return 0;
}

int Linpack::Dspfa(double* ap, int n, int* kpvt) {
  return SiFactor(PackedUpper(ap), n, kpvt);
}

double Linpack::Dspco(double* ap, int n, int* kpvt, double* z) {
  return SiCondition(PackedUpper(ap), n, kpvt, z);
}

void Linpack::Dspsl(double* ap, int n, int* kpvt, double* b) {
  SiSolve(PackedUpper(ap), n, kpvt, b);
}

int Linpack::Dspdi(double* ap, int n, int* kpvt, double* det, int* inert, double* work, int job) {
  SiDetInverse(PackedUpper(ap), n, kpvt, det, inert, work, job);
  return 0;
}

// ---------------------------------------------------------------------------
// Triangular matrices

// LINPACK DTRCO: reciprocal condition estimate of a lower (job 0) or upper
// triangular matrix.
double Linpack::Dtrco(double* t, int ldt, int n, double* z, int job) {
  ColMajor T(t, ldt);
  OneBased<double> Z(z);
  const bool lower = job == 0;
  // 1-norm of T.
  double tnorm = 0.0;
  for (int j = 1; j <= n; ++j) {
    const int l = lower ? n + 1 - j : j;
    const int i1 = lower ? j : 1;
    tnorm = Blas1::D_Max(tnorm, Blas1::DASum(l, &T(i1, j), 1));
  }
  if (n < 1) return Rcond(1.0, tnorm);

  // Solve trans(T) y = e.
  EstimateFirstSolve(n, z, [&](int kk, double& ek) {
    const int k = lower ? n + 1 - kk : kk;
    int j1 = lower ? 1 : k + 1;
    int j2 = lower ? k - 1 : n;
    if (kk == n) j1 = j2 + 1;
    EstimateStep(
        n, z, k, T(k, k), j1, j2, [&](int j) { return T(k, j); }, ek);
  });

  double ynorm = 1.0;
  // Solve T z = y.
  for (int kk = 1; kk <= n; ++kk) {
    const int k = lower ? kk : n + 1 - kk;
    LimitGrowth(n, z, k, std::fabs(T(k, k)), &ynorm);
    if (T(k, k) != 0.0) Z(k) = Z(k) / T(k, k);
    if (T(k, k) == 0.0) Z(k) = 1.0;
    const int i1 = lower ? k + 1 : 1;
    if (kk < n) {
      const double w = -Z(k);
      Blas1::Daxpy(n - kk, w, &T(i1, k), 1, &Z(i1), 1);
    }
  }
  ScaleToUnitNorm(n, z, &ynorm);
  return Rcond(ynorm, tnorm);
}

// LINPACK DTRSL: solves T x = b or trans(T) x = b, T lower or upper
// triangular (job 00, 01, 10, 11); info is the first zero diagonal element.
int Linpack::Dtrsl(double* t, int ldt, int n, double* b, int job) {
  ColMajor T(t, ldt);
  OneBased<double> B(b);
  for (int info = 1; info <= n; ++info) {
    if (T(info, info) == 0.0) return info;
  }
  if (n < 1) return 0;
  int kase = 1;
  if (job % 10 != 0) kase = 2;
  if (job % 100 / 10 != 0) kase = kase + 2;
  switch (kase) {
    case 1:  // T x = b, T lower triangular.
      B(1) = B(1) / T(1, 1);
      for (int j = 2; j <= n; ++j) {
        const double temp = -B(j - 1);
        Blas1::Daxpy(n - j + 1, temp, &T(j, j - 1), 1, &B(j), 1);
        B(j) = B(j) / T(j, j);
      }
      break;
    case 2:  // T x = b, T upper triangular.
      B(n) = B(n) / T(n, n);
      for (int jj = 2; jj <= n; ++jj) {
        const int j = n - jj + 1;
        const double temp = -B(j + 1);
        Blas1::Daxpy(j, temp, &T(1, j + 1), 1, &B(1), 1);
        B(j) = B(j) / T(j, j);
      }
      break;
    case 3:  // trans(T) x = b, T lower triangular.
      B(n) = B(n) / T(n, n);
      for (int jj = 2; jj <= n; ++jj) {
        const int j = n - jj + 1;
        B(j) = B(j) - Blas1::DDot(jj - 1, &T(j + 1, j), 1, &B(j + 1), 1);
        B(j) = B(j) / T(j, j);
      }
      break;
    default:  // trans(T) x = b, T upper triangular.
      B(1) = B(1) / T(1, 1);
      for (int j = 2; j <= n; ++j) {
        B(j) = B(j) - Blas1::DDot(j - 1, &T(1, j), 1, &B(1), 1);
        B(j) = B(j) / T(j, j);
      }
      break;
  }
  return 0;
}

// LINPACK DTRDI: determinant (job hundreds digit) and inverse (tens digit;
// units digit 1 upper, 0 lower) of a triangular matrix; info is the zero
// diagonal element that stopped the inverse.
int Linpack::Dtrdi(double* t, int ldt, int n, double* det, int job) {
  ColMajor T(t, ldt);
  int info = 0;
  if (job / 100 != 0) {
    det[0] = 1.0;
    det[1] = 0.0;
    for (int i = 1; i <= n; ++i) {
      if (!MultiplyDet(det, T(i, i))) break;
    }
  }
  if (job / 10 % 10 == 0) return info;
  if (job % 10 != 0) return InvertUpper(FullUpper(t, ldt), n, true);
  // Inverse of lower triangular.
  for (int kb = 1; kb <= n; ++kb) {
    const int k = n + 1 - kb;
    if (T(k, k) == 0.0) return k;
    T(k, k) = 1.0 / T(k, k);
    double temp = -T(k, k);
    if (k != n) Blas1::DScal(n - k, temp, &T(k + 1, k), 1);
    for (int j = 1; j <= k - 1; ++j) {
      temp = T(k, j);
      T(k, j) = 0.0;
      Blas1::Daxpy(n - k + 1, temp, &T(k, k), 1, &T(k, j), 1);
    }
  }
  return 0;
}

// ---------------------------------------------------------------------------
// QR and singular value decompositions

// LINPACK DQRDC (Stewart): Householder QR of the n by p matrix x, with
// column pivoting on the reduced column norms when job is non-zero (jpvt > 0
// marks initial, < 0 final, 0 free columns).
int Linpack::Dqrdc(double* x, int ldx, int n, int p, double* qraux, int* jpvt, double* work,
                   int job) {
  ColMajor X(x, ldx);
  OneBased<double> QRAUX(qraux), WORK(work);
  OneBased<int> JPVT(jpvt);
  int pl = 1;
  int pu = 0;
  if (job != 0) {
    // Move the initial columns to the front and the final ones to the back.
    for (int j = 1; j <= p; ++j) {
      const bool swapj = JPVT(j) > 0;
      const bool negj = JPVT(j) < 0;
      JPVT(j) = negj ? -j : j;
      if (swapj) {
        if (j != pl) Blas1::DSwap(n, &X(1, pl), 1, &X(1, j), 1);
        JPVT(j) = JPVT(pl);
        JPVT(pl) = j;
        pl = pl + 1;
      }
    }
    pu = p;
    for (int jj = 1; jj <= p; ++jj) {
      const int j = p - jj + 1;
      if (JPVT(j) < 0) {
        JPVT(j) = -JPVT(j);
        if (j != pu) {
          Blas1::DSwap(n, &X(1, pu), 1, &X(1, j), 1);
          const int jp = JPVT(pu);
          JPVT(pu) = JPVT(j);
          JPVT(j) = jp;
        }
        pu = pu - 1;
      }
    }
  }
  // Norms of the free columns.
  for (int j = pl; j <= pu; ++j) {
    QRAUX(j) = Blas1::DNrm2(n, &X(1, j), 1);
    WORK(j) = QRAUX(j);
  }
  // Householder reduction.
  const int lup = Min(n, p);
  for (int l = 1; l <= lup; ++l) {
    if (!(l < pl || l >= pu)) {
      // Bring the free column of largest reduced norm into the pivot place.
      double maxnrm = 0.0;
      int maxj = l;
      for (int j = l; j <= pu; ++j) {
        if (!(QRAUX(j) <= maxnrm)) {
          maxnrm = QRAUX(j);
          maxj = j;
        }
      }
      if (maxj != l) {
        Blas1::DSwap(n, &X(1, l), 1, &X(1, maxj), 1);
        QRAUX(maxj) = QRAUX(l);
        WORK(maxj) = WORK(l);
        const int jp = JPVT(maxj);
        JPVT(maxj) = JPVT(l);
        JPVT(l) = jp;
      }
    }
    QRAUX(l) = 0.0;
    if (l == n) continue;
    // Householder transformation for column l.
    double nrmxl = Blas1::DNrm2(n - l + 1, &X(l, l), 1);
    if (nrmxl == 0.0) continue;
    if (X(l, l) != 0.0) nrmxl = Sign(nrmxl, X(l, l));
    Blas1::DScal(n - l + 1, 1.0 / nrmxl, &X(l, l), 1);
    X(l, l) = 1.0 + X(l, l);
    // Apply it to the remaining columns, updating their norms.
    for (int j = l + 1; j <= p; ++j) {
      double t = -Blas1::DDot(n - l + 1, &X(l, l), 1, &X(l, j), 1) / X(l, l);
      Blas1::Daxpy(n - l + 1, t, &X(l, l), 1, &X(l, j), 1);
      if (j < pl || j > pu) continue;
      if (QRAUX(j) == 0.0) continue;
      const double q = std::fabs(X(l, j)) / QRAUX(j);
      double tt = 1.0 - q * q;
      tt = Blas1::D_Max(tt, 0.0);
      t = tt;
      const double ratio = QRAUX(j) / WORK(j);
      tt = 1.0 + 0.05 * tt * (ratio * ratio);
      if (tt != 1.0) {
        QRAUX(j) = QRAUX(j) * std::sqrt(t);
      } else {
        QRAUX(j) = Blas1::DNrm2(n - l, &X(l + 1, j), 1);
        WORK(j) = QRAUX(j);
      }
    }
    // Save the transformation.
    QRAUX(l) = X(l, l);
    X(l, l) = -nrmxl;
  }
  return 0;
}

// LINPACK DQRSL (Stewart): from the output of DQRDC, Q y, trans(Q) y, the
// least-squares coefficients, residual and fit, as the digits of job
// (abcde) ask; info is the first zero diagonal of R when b is asked for.
int Linpack::Dqrsl(double* x, int ldx, int n, int k, double* qraux, double* y, double* qy,
                   double* qty, double* b, double* rsd, double* xb, int job) {
  ColMajor X(x, ldx);
  OneBased<double> QRAUX(qraux), Y(y), QY(qy), QTY(qty), B(b), RSD(rsd), XB(xb);
  int info = 0;
  const bool cqy = job / 10000 != 0;
  const bool cqty = job % 10000 != 0;
  const bool cb = job % 1000 / 100 != 0;
  const bool cr = job % 100 / 10 != 0;
  const bool cxb = job % 10 != 0;
  const int ju = Min(k, n - 1);

  if (ju == 0) {
    // n = 1.
    if (cqy) QY(1) = Y(1);
    if (cqty) QTY(1) = Y(1);
    if (cxb) XB(1) = Y(1);
    if (cb) {
      if (X(1, 1) != 0.0) {
        B(1) = Y(1) / X(1, 1);
      } else {
        info = 1;
      }
    }
    if (cr) RSD(1) = 0.0;
    return info;
  }

  // Applies the Householder transformation j, kept in column j of x and in
  // qraux(j), to v from row j on.
  auto reflect = [&](int j, double* v) {
    const double temp = X(j, j);
    X(j, j) = QRAUX(j);
    const double t = -Blas1::DDot(n - j + 1, &X(j, j), 1, v + (j - 1), 1) / X(j, j);
    Blas1::Daxpy(n - j + 1, t, &X(j, j), 1, v + (j - 1), 1);
    X(j, j) = temp;
  };

  if (cqy) Blas1::DCopy(n, y, 1, qy, 1);
  if (cqty) Blas1::DCopy(n, y, 1, qty, 1);
  if (cqy) {
    // Q y.
    for (int jj = 1; jj <= ju; ++jj) {
      const int j = ju - jj + 1;
      if (QRAUX(j) != 0.0) reflect(j, qy);
    }
  }
  if (cqty) {
    // trans(Q) y.
    for (int j = 1; j <= ju; ++j) {
      if (QRAUX(j) != 0.0) reflect(j, qty);
    }
  }
  // Set up b, rsd and xb.
  if (cb) Blas1::DCopy(k, qty, 1, b, 1);
  const int kp1 = k + 1;
  if (cxb) Blas1::DCopy(k, qty, 1, xb, 1);
  if (cr && k < n) Blas1::DCopy(n - k, &QTY(kp1), 1, &RSD(kp1), 1);
  if (cxb) {
    for (int i = kp1; i <= n; ++i)
      XB(i) = 0.0;
  }
  if (cr) {
    for (int i = 1; i <= k; ++i)
      RSD(i) = 0.0;
  }
  if (cb) {
    // b by back substitution in R.
    for (int jj = 1; jj <= k; ++jj) {
      const int j = k - jj + 1;
      if (X(j, j) == 0.0) {
        info = j;
        break;
      }
      B(j) = B(j) / X(j, j);
      if (j != 1) {
        const double t = -B(j);
        Blas1::Daxpy(j - 1, t, &X(1, j), 1, b, 1);
      }
    }
  }
  if (cr || cxb) {
    // rsd and xb.
    for (int jj = 1; jj <= ju; ++jj) {
      const int j = ju - jj + 1;
      if (QRAUX(j) == 0.0) continue;
      if (cr) reflect(j, rsd);
      if (cxb) reflect(j, xb);
    }
  }
  return info;
}

// LINPACK DSVDC (Stewart, with the 1984 correction of the shift): reduction
// to bidiagonal form by Householder transformations, then implicitly shifted
// QR on the bidiagonal. job's tens digit asks for the left vectors (1 all n,
// 2 the first min(n, p)), its units digit for the right ones; info is the
// count of singular values that failed to converge in 30 iterations.
int Linpack::Dsvdc(double* x, int ldx, int n, int p, double* s, double* e, double* u, int ldu,
                   double* v, int ldv, double* work, int job) {
  ColMajor X(x, ldx), U(u, ldu), V(v, ldv);
  OneBased<double> S(s), E(e), WORK(work);
  const int maxit = 30;

  // What to compute.
  const int jobu = job % 100 / 10;
  const int ncu = jobu > 1 ? Min(n, p) : n;
  const bool wantu = jobu != 0;
  const bool wantv = job % 10 != 0;

  // Reduce x to bidiagonal form: diagonal in s, super-diagonal in e.
  int info = 0;
  const int nct = Min(n - 1, p);
  const int nrt = Max(0, Min(p - 2, n));
  const int lu = Max(nct, nrt);
  for (int l = 1; l <= lu; ++l) {
    const int lp1 = l + 1;
    if (l <= nct) {
      // Transformation for column l; the l-th diagonal goes to s(l).
      S(l) = Blas1::DNrm2(n - l + 1, &X(l, l), 1);
      if (S(l) != 0.0) {
        if (X(l, l) != 0.0) S(l) = Sign(S(l), X(l, l));
        Blas1::DScal(n - l + 1, 1.0 / S(l), &X(l, l), 1);
        X(l, l) = 1.0 + X(l, l);
      }
      S(l) = -S(l);
    }
    for (int j = lp1; j <= p; ++j) {
      if (l <= nct && S(l) != 0.0) {
        const double t = -Blas1::DDot(n - l + 1, &X(l, l), 1, &X(l, j), 1) / X(l, l);
        Blas1::Daxpy(n - l + 1, t, &X(l, l), 1, &X(l, j), 1);
      }
      // Row l of x into e, for the row transformation.
      E(j) = X(l, j);
    }
    if (wantu && l <= nct) {
      // Keep the transformation in u for the back multiplication.
      for (int i = l; i <= n; ++i)
        U(i, l) = X(i, l);
    }
    if (l <= nrt) {
      // Row transformation l; the l-th super-diagonal goes to e(l).
      E(l) = Blas1::DNrm2(p - l, &E(lp1), 1);
      if (E(l) != 0.0) {
        if (E(lp1) != 0.0) E(l) = Sign(E(l), E(lp1));
        Blas1::DScal(p - l, 1.0 / E(l), &E(lp1), 1);
        E(lp1) = 1.0 + E(lp1);
      }
      E(l) = -E(l);
      if (lp1 <= n && E(l) != 0.0) {
        for (int i = lp1; i <= n; ++i)
          WORK(i) = 0.0;
        for (int j = lp1; j <= p; ++j)
          Blas1::Daxpy(n - l, E(j), &X(lp1, j), 1, &WORK(lp1), 1);
        for (int j = lp1; j <= p; ++j)
          Blas1::Daxpy(n - l, -E(j) / E(lp1), &WORK(lp1), 1, &X(lp1, j), 1);
      }
      if (wantv) {
        // Keep the transformation in v for the back multiplication.
        for (int i = lp1; i <= p; ++i)
          V(i, l) = E(i);
      }
    }
  }

  // The final bidiagonal matrix, of order m.
  int m = Min(p, n + 1);
  const int nctp1 = nct + 1;
  const int nrtp1 = nrt + 1;
  if (nct < p) S(nctp1) = X(nctp1, nctp1);
  if (n < m) S(m) = 0.0;
  if (nrtp1 < m) E(nrtp1) = X(nrtp1, m);
  E(m) = 0.0;

  if (wantu) {
    // Generate u.
    for (int j = nctp1; j <= ncu; ++j) {
      for (int i = 1; i <= n; ++i)
        U(i, j) = 0.0;
      U(j, j) = 1.0;
    }
    for (int ll = 1; ll <= nct; ++ll) {
      const int l = nct - ll + 1;
      if (S(l) != 0.0) {
        for (int j = l + 1; j <= ncu; ++j) {
          const double t = -Blas1::DDot(n - l + 1, &U(l, l), 1, &U(l, j), 1) / U(l, l);
          Blas1::Daxpy(n - l + 1, t, &U(l, l), 1, &U(l, j), 1);
        }
        Blas1::DScal(n - l + 1, -1.0, &U(l, l), 1);
        U(l, l) = 1.0 + U(l, l);
        for (int i = 1; i <= l - 1; ++i)
          U(i, l) = 0.0;
      } else {
        for (int i = 1; i <= n; ++i)
          U(i, l) = 0.0;
        U(l, l) = 1.0;
      }
    }
  }
  if (wantv) {
    // Generate v.
    for (int ll = 1; ll <= p; ++ll) {
      const int l = p - ll + 1;
      const int lp1 = l + 1;
      if (l <= nrt && E(l) != 0.0) {
        for (int j = lp1; j <= p; ++j) {
          const double t = -Blas1::DDot(p - l, &V(lp1, l), 1, &V(lp1, j), 1) / V(lp1, l);
          Blas1::Daxpy(p - l, t, &V(lp1, l), 1, &V(lp1, j), 1);
        }
      }
      for (int i = 1; i <= p; ++i)
        V(i, l) = 0.0;
      V(l, l) = 1.0;
    }
  }

  // Main iteration for the singular values.
  const int mm = m;
  int iter = 0;
  while (m != 0) {
    if (iter >= maxit) {
      info = m;
      break;
    }
    // Look for negligible elements of s and e. kase and l become:
    // 1 if s(m) and e(l-1) are negligible and l < m;
    // 2 if s(l) is negligible and l < m;
    // 3 if e(l-1) is negligible, l < m, and s(l..m) are not (a QR step);
    // 4 if e(m-1) is negligible (convergence).
    int l = 0;
    for (int ll = 1; ll <= m; ++ll) {
      l = m - ll;
      if (l == 0) break;
      const double test = std::fabs(S(l)) + std::fabs(S(l + 1));
      const double ztest = test + std::fabs(E(l));
      if (ztest == test) {
        E(l) = 0.0;
        break;
      }
    }
    int kase;
    if (l == m - 1) {
      kase = 4;
    } else {
      const int lp1 = l + 1;
      const int mp1 = m + 1;
      int ls = l;
      for (int lls = lp1; lls <= mp1; ++lls) {
        ls = m - lls + lp1;
        if (ls == l) break;
        double test = 0.0;
        if (ls != m) test = test + std::fabs(E(ls));
        if (ls != l + 1) test = test + std::fabs(E(ls - 1));
        const double ztest = test + std::fabs(S(ls));
        if (ztest == test) {
          S(ls) = 0.0;
          break;
        }
      }
      if (ls == l) {
        kase = 3;
      } else if (ls == m) {
        kase = 1;
      } else {
        kase = 2;
        l = ls;
      }
    }
    l = l + 1;

    double cs, sn;
    if (kase == 1) {
      // Deflate a negligible s(m).
      const int mm1 = m - 1;
      double f = E(m - 1);
      E(m - 1) = 0.0;
      for (int kk = l; kk <= mm1; ++kk) {
        const int k = mm1 - kk + l;
        double t1 = S(k);
        Blas1::DRotG(&t1, &f, &cs, &sn);
        S(k) = t1;
        if (k != l) {
          f = -sn * E(k - 1);
          E(k - 1) = cs * E(k - 1);
        }
        if (wantv) Blas1::DRot(p, &V(1, k), 1, &V(1, m), 1, cs, sn);
      }
    } else if (kase == 2) {
      // Split at a negligible s(l).
      double f = E(l - 1);
      E(l - 1) = 0.0;
      for (int k = l; k <= m; ++k) {
        double t1 = S(k);
        Blas1::DRotG(&t1, &f, &cs, &sn);
        S(k) = t1;
        f = -sn * E(k);
        E(k) = cs * E(k);
        if (wantu) Blas1::DRot(n, &U(1, k), 1, &U(1, l - 1), 1, cs, sn);
      }
    } else if (kase == 3) {
      // One QR step; first the shift.
      const double scale = Blas1::D_Max(
          Blas1::D_Max(
              Blas1::D_Max(Blas1::D_Max(std::fabs(S(m)), std::fabs(S(m - 1))), std::fabs(E(m - 1))),
              std::fabs(S(l))),
          std::fabs(E(l)));
      const double sm = S(m) / scale;
      const double smm1 = S(m - 1) / scale;
      const double emm1 = E(m - 1) / scale;
      const double sl = S(l) / scale;
      const double el = E(l) / scale;
      const double b = ((smm1 + sm) * (smm1 - sm) + emm1 * emm1) / 2.0;
      const double c = (sm * emm1) * (sm * emm1);
      double shift = 0.0;
      if (!(b == 0.0 && c == 0.0)) {
        shift = std::sqrt(b * b + c);
        if (b < 0.0) shift = -shift;
        shift = c / (b + shift);
      }
      double f = (sl + sm) * (sl - sm) + shift;
      double g = sl * el;
      // Chase the zeros.
      const int mm1 = m - 1;
      for (int k = l; k <= mm1; ++k) {
        Blas1::DRotG(&f, &g, &cs, &sn);
        if (k != l) E(k - 1) = f;
        f = cs * S(k) + sn * E(k);
        E(k) = cs * E(k) - sn * S(k);
        g = sn * S(k + 1);
        S(k + 1) = cs * S(k + 1);
        if (wantv) Blas1::DRot(p, &V(1, k), 1, &V(1, k + 1), 1, cs, sn);
        Blas1::DRotG(&f, &g, &cs, &sn);
        S(k) = f;
        f = cs * E(k) + sn * S(k + 1);
        S(k + 1) = -sn * E(k) + cs * S(k + 1);
        g = sn * E(k + 1);
        E(k + 1) = cs * E(k + 1);
        if (wantu && k < n) Blas1::DRot(n, &U(1, k), 1, &U(1, k + 1), 1, cs, sn);
      }
      E(m - 1) = f;
      iter = iter + 1;
    } else {
      // Convergence: make the singular value positive, then move it into
      // its place in descending order.
      if (S(l) < 0.0) {
        S(l) = -S(l);
        if (wantv) Blas1::DScal(p, -1.0, &V(1, l), 1);
      }
      while (l != mm && !(S(l) >= S(l + 1))) {
        const double t = S(l);
        S(l) = S(l + 1);
        S(l + 1) = t;
        if (wantv && l < p) Blas1::DSwap(p, &V(1, l), 1, &V(1, l + 1), 1);
        if (wantu && l < n) Blas1::DSwap(n, &U(1, l), 1, &U(1, l + 1), 1);
        l = l + 1;
      }
      iter = 0;
      m = m - 1;
    }
  }
  return info;
}

// ---------------------------------------------------------------------------
// Cholesky decomposition and its updates

// LINPACK DCHDC (Dongarra and Stewart): Cholesky factor of a positive
// semidefinite matrix in the upper triangle, with diagonal pivoting when job
// is non-zero (jpvt as in DQRDC); info is the last positive pivot's index.
int Linpack::Dchdc(double* a, int lda, int p, double* work, int* jpvt, int job) {
  ColMajor A(a, lda);
  OneBased<double> WORK(work);
  OneBased<int> JPVT(jpvt);
  // Swaps elements (i, j) and (k, l) of the upper triangle.
  auto swapElem = [&](int i, int j, int k, int l) {
    const double temp = A(i, j);
    A(i, j) = A(k, l);
    A(k, l) = temp;
  };
  // The symmetric interchange of rows and columns lo < hi in the upper
  // triangle, as the published routine makes it while arranging jpvt.
  auto interchange = [&](int lo, int hi) {
    Blas1::DSwap(lo - 1, &A(1, hi), 1, &A(1, lo), 1);
    swapElem(hi, hi, lo, lo);
    for (int j = lo + 1; j <= p; ++j) {
      if (j < hi) {
        swapElem(lo, j, j, hi);
      } else if (j != hi) {
        swapElem(hi, j, lo, j);
      }
    }
  };
  int pl = 1;
  int pu = 0;
  int info = p;
  if (job != 0) {
    // Move the initial elements to the front and the final ones to the back.
    for (int k = 1; k <= p; ++k) {
      const bool swapk = JPVT(k) > 0;
      const bool negk = JPVT(k) < 0;
      JPVT(k) = negk ? -k : k;
      if (!swapk) continue;
      if (k != pl) {
        interchange(pl, k);
        JPVT(k) = JPVT(pl);
        JPVT(pl) = k;
      }
      pl = pl + 1;
    }
    pu = p;
    for (int kb = pl; kb <= p; ++kb) {
      const int k = p - kb + pl;
      if (JPVT(k) >= 0) continue;
      JPVT(k) = -JPVT(k);
      if (pu != k) {
        interchange(k, pu);
        const int jt = JPVT(k);
        JPVT(k) = JPVT(pu);
        JPVT(pu) = jt;
      }
      pu = pu - 1;
    }
  }
  for (int k = 1; k <= p; ++k) {
    // Reduction loop: the pivot first.
    double maxdia = A(k, k);
    const int kp1 = k + 1;
    int maxl = k;
    if (!(k < pl || k >= pu)) {
      for (int l = kp1; l <= pu; ++l) {
        if (!(A(l, l) <= maxdia)) {
          maxdia = A(l, l);
          maxl = l;
        }
      }
    }
    // Quit at a pivot that isn't positive.
    if (!(maxdia > 0.0)) return k - 1;
    if (k != maxl) {
      Blas1::DSwap(k - 1, &A(1, k), 1, &A(1, maxl), 1);
      A(maxl, maxl) = A(k, k);
      A(k, k) = maxdia;
      const int jp = JPVT(maxl);
      JPVT(maxl) = JPVT(k);
      JPVT(k) = jp;
    }
    // Reduction step, with the pivoting carried across the rows.
    WORK(k) = std::sqrt(A(k, k));
    A(k, k) = WORK(k);
    for (int j = kp1; j <= p; ++j) {
      if (k != maxl) {
        if (j < maxl) {
          swapElem(k, j, j, maxl);
        } else if (j != maxl) {
          swapElem(k, j, maxl, j);
        }
      }
      A(k, j) = A(k, j) / WORK(k);
      WORK(j) = A(k, j);
      const double temp = -A(k, j);
      Blas1::Daxpy(j - k, temp, &WORK(kp1), 1, &A(kp1, j), 1);
    }
  }
  return info;
}

// LINPACK DCHUD (Stewart): updates the triangular factor R (and the nz
// columns of z, the residual norms rho) for an added row x (and y), by plane
// rotations kept in c and s.
void Linpack::Dchud(double* r, int ldr, int p, double* x, double* z, int ldz, int nz, double* y,
                    double* rho, double* c, double* s) {
  ColMajor R(r, ldr), Z(z, ldz);
  OneBased<double> X(x), Y(y), RHO(rho), C(c), S(s);
  for (int j = 1; j <= p; ++j) {
    double xj = X(j);
    // The rotations so far.
    for (int i = 1; i <= j - 1; ++i) {
      const double t = C(i) * R(i, j) + S(i) * xj;
      xj = C(i) * xj - S(i) * R(i, j);
      R(i, j) = t;
    }
    // The next one.
    Blas1::DRotG(&R(j, j), &xj, &C(j), &S(j));
  }
  for (int j = 1; j <= nz; ++j) {
    double zeta = Y(j);
    for (int i = 1; i <= p; ++i) {
      const double t = C(i) * Z(i, j) + S(i) * zeta;
      zeta = C(i) * zeta - S(i) * Z(i, j);
      Z(i, j) = t;
    }
    const double azeta = std::fabs(zeta);
    if (azeta != 0.0 && RHO(j) >= 0.0) {
      const double scale = azeta + RHO(j);
      RHO(j) = scale *
               std::sqrt((azeta / scale) * (azeta / scale) + (RHO(j) / scale) * (RHO(j) / scale));
    }
  }
}

// LINPACK DCHDD (Stewart): downdates R (and z, rho) for a removed row x (and
// y). info: 0 done; -1 R couldn't be downdated and nothing changed; 1 some
// rho couldn't be, and those are set to -1.
int Linpack::Dchdd(double* r, int ldr, int p, double* x, double* z, int ldz, int nz, double* y,
                   double* rho, double* c, double* s) {
  ColMajor R(r, ldr), Z(z, ldz);
  OneBased<double> X(x), Y(y), RHO(rho), C(c), S(s);
  int info = 0;
  if (p < 1) return info;
  // Solve trans(R) a = x into s.
  S(1) = X(1) / R(1, 1);
  for (int j = 2; j <= p; ++j) {
    S(j) = X(j) - Blas1::DDot(j - 1, &R(1, j), 1, s, 1);
    S(j) = S(j) / R(j, j);
  }
  double norm = Blas1::DNrm2(p, s, 1);
  if (!(norm < 1.0)) return -1;
  double alpha = std::sqrt(1.0 - norm * norm);
  // The transformations.
  for (int ii = 1; ii <= p; ++ii) {
    const int i = p - ii + 1;
    const double scale = alpha + std::fabs(S(i));
    const double a = alpha / scale;
    const double b = S(i) / scale;
    norm = std::sqrt(a * a + b * b);
    C(i) = a / norm;
    S(i) = b / norm;
    alpha = scale * norm;
  }
  // Apply them to R.
  for (int j = 1; j <= p; ++j) {
    double xx = 0.0;
    for (int ii = 1; ii <= j; ++ii) {
      const int i = j - ii + 1;
      const double t = C(i) * xx + S(i) * R(i, j);
      R(i, j) = C(i) * R(i, j) - S(i) * xx;
      xx = t;
    }
  }
  // Downdate z and rho.
  for (int j = 1; j <= nz; ++j) {
    double zeta = Y(j);
    for (int i = 1; i <= p; ++i) {
      Z(i, j) = (Z(i, j) - S(i) * zeta) / C(i);
      zeta = C(i) * zeta - S(i) * Z(i, j);
    }
    const double azeta = std::fabs(zeta);
    if (azeta <= RHO(j)) {
      RHO(j) = RHO(j) * std::sqrt(1.0 - (azeta / RHO(j)) * (azeta / RHO(j)));
    } else {
      info = 1;
      RHO(j) = -1.0;
    }
  }
  return info;
}

// LINPACK DCHEX (Stewart): updates R for a circular shift of columns k..l,
// right (job 1: l moves to k) or left (job 2: k moves to l), and applies the
// rotations to the nz columns of z.
void Linpack::Dchex(double* r, int ldr, int p, int k, int l, double* z, int ldz, int nz, double* c,
                    double* s, int job) {
  ColMajor R(r, ldr), Z(z, ldz);
  OneBased<double> C(c), S(s);
  const int km1 = k - 1;
  const int kp1 = k + 1;
  const int lmk = l - k;
  const int lm1 = l - 1;
  if (job != 2) {
    // Right circular shift: reorder the columns.
    for (int i = 1; i <= l; ++i) {
      const int ii = l - i + 1;
      S(i) = R(ii, l);
    }
    for (int jj = k; jj <= lm1; ++jj) {
      const int j = lm1 - jj + k;
      for (int i = 1; i <= j; ++i)
        R(i, j + 1) = R(i, j);
      R(j + 1, j + 1) = 0.0;
    }
    for (int i = 1; i <= km1; ++i) {
      const int ii = l - i + 1;
      R(i, k) = S(ii);
    }
    // The rotations.
    double t = S(1);
    for (int i = 1; i <= lmk; ++i) {
      Blas1::DRotG(&S(i + 1), &t, &C(i), &S(i));
      t = S(i + 1);
    }
    R(k, k) = t;
    for (int j = kp1; j <= p; ++j) {
      const int il = Max(1, l - j + 1);
      for (int ii = il; ii <= lmk; ++ii) {
        const int i = l - ii;
        t = C(ii) * R(i, j) + S(ii) * R(i + 1, j);
        R(i + 1, j) = C(ii) * R(i + 1, j) - S(ii) * R(i, j);
        R(i, j) = t;
      }
    }
    // Apply them to z.
    for (int j = 1; j <= nz; ++j) {
      for (int ii = 1; ii <= lmk; ++ii) {
        const int i = l - ii;
        t = C(ii) * Z(i, j) + S(ii) * Z(i + 1, j);
        Z(i + 1, j) = C(ii) * Z(i + 1, j) - S(ii) * Z(i, j);
        Z(i, j) = t;
      }
    }
    return;
  }
  // Left circular shift: reorder the columns.
  for (int i = 1; i <= k; ++i) {
    const int ii = lmk + i;
    S(ii) = R(i, k);
  }
  for (int j = k; j <= lm1; ++j) {
    for (int i = 1; i <= j; ++i)
      R(i, j) = R(i, j + 1);
    const int jj = j - km1;
    S(jj) = R(j + 1, j + 1);
  }
  for (int i = 1; i <= k; ++i) {
    const int ii = lmk + i;
    R(i, l) = S(ii);
  }
  for (int i = kp1; i <= l; ++i)
    R(i, l) = 0.0;
  // Reduction loop.
  for (int j = k; j <= p; ++j) {
    if (j != k) {
      // Apply the rotations.
      const int iu = Min(j - 1, l - 1);
      for (int i = k; i <= iu; ++i) {
        const int ii = i - k + 1;
        const double t = C(ii) * R(i, j) + S(ii) * R(i + 1, j);
        R(i + 1, j) = C(ii) * R(i + 1, j) - S(ii) * R(i, j);
        R(i, j) = t;
      }
    }
    if (j < l) {
      const int jj = j - k + 1;
      double t = S(jj);
      Blas1::DRotG(&R(j, j), &t, &C(jj), &S(jj));
    }
  }
  // Apply them to z.
  for (int j = 1; j <= nz; ++j) {
    for (int i = k; i <= lm1; ++i) {
      const int ii = i - km1;
      const double t = C(ii) * Z(i, j) + S(ii) * Z(i + 1, j);
      Z(i + 1, j) = C(ii) * Z(i + 1, j) - S(ii) * Z(i, j);
      Z(i, j) = t;
    }
  }
}

}  // namespace QXMath_850
