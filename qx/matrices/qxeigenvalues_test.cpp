#include "qx/matrices/qxeigenvalues.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "qx/foundation/internal/testutil.h"
#include "qx/matrices/internal/lapackbaseline.h"
#include "qx/matrices/internal/testutil.h"
#include "qx/matrices/qxrectmatrix.h"
#include "qx/matrices/qxsymmatrix.h"

namespace QXMath_850 {
namespace {

using internal::Kind;
using internal::MaxDiff;
using internal::Packed;
using internal::TestMatrix;
using Vec = std::vector<double>;
constexpr double kEps = std::numeric_limits<double>::epsilon();

// Q diag(lambda) Q^T for a random orthogonal Q.
QXSymMatrix WithSpectrum(const Vec& lambda, unsigned seed) {
  const int n = static_cast<int>(lambda.size());
  const Vec full = internal::WithSpectrum(lambda, seed);
  QXSymMatrix h(n, true);
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j <= i; ++j)
      h.SetElem(i, j, full[i * n + j]);
  }
  return h;
}

// Wilkinson's W21+: diagonal |10 - i|, off-diagonal 1.
QXSymMatrix Wilkinson21() {
  QXSymMatrix w(21, true);
  for (int i = 0; i < 21; ++i) {
    w.SetElem(i, i, std::fabs(10.0 - i));
    if (i > 0) w.SetElem(i, i - 1, 1.0);
  }
  return w;
}

// The eigenvalues of a symmetric tridiagonal matrix by Sturm bisection in
// long double, ascending.
Vec TridiagonalEigenvalues(const QXSymMatrix& t) {
  const int n = t.GetNRows();
  auto countBelow = [&](long double x) {
    int count = 0;
    long double q = 1.0L;
    for (int i = 0; i < n; ++i) {
      const long double off = i > 0 ? t.GetElem(i, i - 1) : 0.0;
      q = t.GetElem(i, i) - x - (i > 0 ? off * off / q : 0.0L);
      if (q == 0.0L) q = -1e-300L;
      if (q < 0.0L) ++count;
    }
    return count;
  };
  Vec out(n);
  for (int k = 0; k < n; ++k) {
    long double lo = -100.0L, hi = 100.0L;
    for (int step = 0; step < 200; ++step) {
      const long double mid = (lo + hi) / 2.0L;
      if (countBelow(mid) > k) {
        hi = mid;
      } else {
        lo = mid;
      }
    }
    out[k] = static_cast<double>((lo + hi) / 2.0L);
  }
  return out;
}

double NormInf(const QXSymMatrix& h) {
  double worst = 0.0;
  for (int i = 0; i < h.GetNRows(); ++i) {
    double sum = 0.0;
    for (int j = 0; j < h.GetNRows(); ++j)
      sum += std::fabs(h.GetElem(i, j));
    worst = std::max(worst, sum);
  }
  return worst;
}

// Largest |H v_k - lambda_k E v_k| (E = I when null), and the largest
// departure of V E V^T from I.
void ExpectEigenpairs(const QXSymMatrix& h, const QXSymMatrix* e, const Vec& values,
                      const QXRectMatrix& vectors, double tol) {
  const int n = h.GetNRows();
  auto eElem = [&](int i, int j) { return e ? e->GetElem(i, j) : (i == j ? 1.0 : 0.0); };
  double residual = 0.0, orthogonality = 0.0;
  for (int k = 0; k < n; ++k) {
    for (int i = 0; i < n; ++i) {
      long double hv = 0.0L, ev = 0.0L;
      for (int j = 0; j < n; ++j) {
        hv += static_cast<long double>(h.GetElem(i, j)) * vectors.GetElem(k, j);
        ev += static_cast<long double>(eElem(i, j)) * vectors.GetElem(k, j);
      }
      residual = std::max(residual, static_cast<double>(std::fabs(hv - values[k] * ev)));
    }
    for (int l = 0; l <= k; ++l) {
      long double dot = 0.0L;
      for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j)
          dot +=
              vectors.GetElem(k, i) * static_cast<long double>(eElem(i, j)) * vectors.GetElem(l, j);
      }
      orthogonality = std::max(orthogonality, std::fabs(static_cast<double>(dot) - (k == l)));
    }
  }
  EXPECT_LE(residual, tol * NormInf(h));
  EXPECT_LE(orthogonality, tol);
}

Vec Sorted(Vec v) {
  std::sort(v.begin(), v.end());
  return v;
}

TEST(QXEigenValuesTest, EigenpairsOfMatricesWithKnownSpectra) {
  std::vector<Vec> spectra = {
      {4.0},
      {3.0, -1.0, 2.0, 2.0, 2.0, 0.5},  // a repeated eigenvalue
      {1e-3, 1.0, 1e3, -7.0, 0.0},      // wide range and a zero
  };
  Vec many;
  for (int i = 0; i < 60; ++i)
    many.push_back(std::floor(i / 3.0) - 8.0);  // each value three times
  spectra.push_back(many);
  std::vector<QXSymMatrix> matrices;
  std::vector<Vec> expected;
  for (std::size_t s = 0; s < spectra.size(); ++s) {
    // The diagonal matrix itself, then the rotated one.
    QXSymMatrix d(static_cast<int>(spectra[s].size()), true);
    for (std::size_t i = 0; i < spectra[s].size(); ++i)
      d.SetElem(static_cast<int>(i), static_cast<int>(i), spectra[s][i]);
    matrices.insert(matrices.end(), {d, WithSpectrum(spectra[s], 17u + s)});
    expected.insert(expected.end(), 2, Sorted(spectra[s]));
  }
  const QXSymMatrix w = Wilkinson21();
  matrices.push_back(w);
  expected.push_back(TridiagonalEigenvalues(w));

  for (std::size_t m = 0; m < matrices.size(); ++m) {
    const QXSymMatrix& h = matrices[m];
    const int n = h.GetNRows();
    QXEigenValues eig(h, 1e-15, 30);
    Vec values;
    QXRectMatrix vectors;
    ASSERT_EQ(eig.Compute(values, vectors), n) << "matrix " << m;
    const double tol = 20.0 * n * kEps;
    EXPECT_LE(MaxDiff(Sorted(values), expected[m]), tol * NormInf(h)) << "matrix " << m;
    ExpectEigenpairs(h, nullptr, values, vectors, tol);
    // Values alone are the same values.
    Vec alone;
    QXEigenValues plain(h, 1e-15, 30);
    EXPECT_EQ(plain.Compute(alone), n);
    EXPECT_EQ(alone, values);
  }
  // W21+ holds its nearly equal pair apart.
  QXEigenValues eig(w, 1e-15, 30);
  Vec sorted;
  ASSERT_EQ(eig.GetSorted(sorted, true), 21);
  EXPECT_NEAR(sorted[0], 10.746194182903393, 1e-13);
  EXPECT_NEAR(sorted[1], 10.746194182903322, 1e-13);
}

TEST(QXEigenValuesTest, GeneralizedProblemThroughTheCholeskyFactorOfE) {
  // E = L L^T and H = L Q D Q^T L^T have generalized eigenvalues D.
  const int n = 12;
  const Vec lambda = {5.0, -2.0, 0.25, 3.0, 3.0, -1.0, 8.0, 0.5, 1.5, -4.0, 2.0, 6.0};
  std::mt19937_64 engine(5u);
  std::uniform_real_distribution<double> uniform(-1.0, 1.0);
  std::vector<Vec> l(n, Vec(n, 0.0));
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j < i; ++j)
      l[i][j] = uniform(engine);
    l[i][i] = 1.5 + uniform(engine);
  }
  const QXSymMatrix inner = WithSpectrum(lambda, 9u);
  QXSymMatrix h(n, true), e(n, true);
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j <= i; ++j) {
      long double hs = 0.0L, es = 0.0L;
      for (int a = 0; a <= i; ++a) {
        es += a <= j ? static_cast<long double>(l[i][a]) * l[j][a] : 0.0L;
        for (int b = 0; b <= j; ++b)
          hs += static_cast<long double>(l[i][a]) * inner.GetElem(a, b) * l[j][b];
      }
      h.SetElem(i, j, static_cast<double>(hs));
      e.SetElem(i, j, static_cast<double>(es));
    }
  }
  QXEigenValues eig(h, e, 1e-14, 30);
  ASSERT_TRUE(eig.IsValidEMatrix());
  Vec values;
  QXRectMatrix vectors;
  ASSERT_EQ(eig.Compute(values, vectors), n);
  EXPECT_LE(MaxDiff(Sorted(values), Sorted(lambda)), 1e-11);
  ExpectEigenpairs(h, &e, values, vectors, 1e-11);
  // Sorted with vectors: the rows follow their values.
  Vec sorted;
  QXRectMatrix sortedVectors;
  ASSERT_EQ(eig.GetSorted(sorted, sortedVectors, false), n);
  EXPECT_TRUE(std::is_sorted(sorted.begin(), sorted.end()));
  ExpectEigenpairs(h, &e, sorted, sortedVectors, 1e-11);

  // An E of the wrong order is refused and dropped; a new H of the same
  // order keeps a usable E.
  QXEigenValues other(h, 1e-12, 30);
  EXPECT_FALSE(other.SetEMatrix(QXSymMatrix(n - 1, true)));
  EXPECT_FALSE(other.IsValidEMatrix());
  EXPECT_FALSE(other.SetEMatrix(QXSymMatrix(n, true)));  // rank 0
  EXPECT_TRUE(eig.SetHMatrix(h) == n && eig.IsValidEMatrix());
}

TEST(QXEigenValuesTest, SettingsEdgeCasesAndPartialResults) {
  QXEigenValues eig(0.0, 0);
  EXPECT_EQ(eig.GetTolerance(), 1e-12);
  EXPECT_EQ(eig.GetMaxIter(), 30);
  EXPECT_FALSE(eig.SetMaxIter(0));
  EXPECT_FALSE(eig.SetTolerance(-1.0));
  EXPECT_EQ(eig.GetMaxIter(), 30);
  Vec values = {7.0};
  EXPECT_EQ(eig.Compute(values), -2);  // no matrix yet
  EXPECT_EQ(values, Vec{7.0});

  EXPECT_EQ(eig.SetHMatrix(Packed({-3.5})), 1);
  ASSERT_TRUE(eig.SetMaxIter(1));
  EXPECT_EQ(eig.Compute(values), 1);
  EXPECT_EQ(values, Vec{-3.5});

  eig.SetHMatrix(Packed({1, 0, 3, 0, 0, 2}));
  ASSERT_EQ(eig.GetSorted(values, true), 3);
  EXPECT_EQ(values, (Vec{3.0, 2.0, 1.0}));
  ASSERT_EQ(eig.GetSorted(values, false), 3);
  EXPECT_EQ(values, (Vec{1.0, 2.0, 3.0}));

  // One iteration per eigenvalue isn't enough for W21+: a partial result.
  eig.SetHMatrix(Wilkinson21());
  const int count = eig.Compute(values);
  EXPECT_GE(count, 0);
  EXPECT_LT(count, 21);
  bool pd = true;
  EXPECT_FALSE(eig.IsPDHMatrix(0.0, pd));

  const std::string text = QXCommon_850::internal::CaptureDisplay([&] { eig.Display(); });
  EXPECT_EQ(text.find("\nQXEigenValues display start"), 0u);
  EXPECT_NE(text.find("QXEigenValues display end"), std::string::npos);
}

TEST(QXEigenValuesTest, PositiveDefiniteTestAndRepair) {
  // Smallest eigenvalue 5e-7: not positive definite against the default
  // 1e-06, positive definite against 1e-07.
  const Vec lambda = {2.0, 5e-7, 1.0, 4.0};
  const QXSymMatrix h = WithSpectrum(lambda, 3u);
  QXEigenValues eig(h, 1e-15, 30);
  bool pd = true;
  ASSERT_TRUE(eig.IsPDHMatrix(0.0, pd));
  EXPECT_FALSE(pd);
  ASSERT_TRUE(eig.IsPDHMatrix(1e-7, pd));
  EXPECT_TRUE(pd);

  QXSymMatrix out;
  bool changed = true;
  ASSERT_TRUE(eig.GetPDHMatrix(1e-7, out, changed));
  EXPECT_FALSE(changed);
  EXPECT_EQ(out.AsVectorConst(), h.AsVectorConst());

  // An indefinite matrix: its negative eigenvalues are raised to minValue,
  // the rest of the spectrum and the eigenvectors stay.
  const Vec mixed = {3.0, -2.0, 1.0, -0.5, 6.0};
  const QXSymMatrix indefinite = WithSpectrum(mixed, 4u);
  eig.SetHMatrix(indefinite);
  ASSERT_TRUE(eig.GetPDHMatrix(0.01, out, changed));
  EXPECT_TRUE(changed);
  QXEigenValues check(out, 1e-15, 30);
  Vec repaired;
  ASSERT_EQ(check.GetSorted(repaired, false), 5);
  EXPECT_LE(MaxDiff(repaired, {0.01, 0.01, 1.0, 3.0, 6.0}), 1e-13);
  Vec values;
  QXRectMatrix vectors;
  ASSERT_EQ(eig.Compute(values, vectors), 5);
  ExpectEigenpairs(indefinite, nullptr, values, vectors, 1e-13);
  for (int k = 0; k < 5; ++k) {
    if (values[k] > 0.0) continue;
    // out - H = (0.01 - lambda_k) x_k x_k^T over the raised ones.
    long double quad = 0.0L;
    for (int i = 0; i < 5; ++i) {
      for (int j = 0; j < 5; ++j)
        quad += vectors.GetElem(k, i) * static_cast<long double>(out.GetElem(i, j)) *
                vectors.GetElem(k, j);
    }
    EXPECT_NEAR(static_cast<double>(quad), 0.01, 1e-13);
  }
}

// Opens the reduction for a comparison of bits.
class TridiagonalForm : public QXEigenValues {
 public:
  explicit TridiagonalForm(const QXSymMatrix& h) : QXEigenValues(h, 1e-12, 30) {}
  void Reduce(bool vectors) {
    wantVectors = vectors;
    TriDiag();
  }
  const Vec& Diagonal() const { return diagonal; }
  const Vec& SubDiagonal() const { return subDiagonal; }
  const QXSymMatrix& Work() const { return work; }
};

TEST(QXEigenValuesTest, ReductionGivesTheBitsOfThePlainLoop) {
  for (int n : {1, 2, 3, 9, 40, 131}) {
    QXSymMatrix h = TestMatrix(n, 100u + n, Kind::kRandom);
    if (n > 3) h.SetElem(n - 1, 1, 0.0);
    if (n > 5) {
      for (int j = 0; j < 3; ++j)
        h.SetElem(4, j, 0.0);  // a zero row part: scale 0
    }
    // The reduction written plainly: row dots for S u, one Daxpy pair per
    // row for the rank-two update.
    Vec a = h.AsVectorConst(), d(n, 0.0), e(n, 0.0), u(n), p(n);
    auto at = [&](int i, int j) -> double& {
      return i >= j ? a[i * (i + 1) / 2 + j] : a[j * (j + 1) / 2 + i];
    };
    for (int i = n - 1; i >= 1; --i) {
      double scale = 0.0;
      for (int k = 0; k < i; ++k)
        scale += std::fabs(at(i, k));
      if (scale <= 2.2250738585072014e-308) {
        d[i] = at(i, i);
        at(i, i) = 0.0;
        continue;
      }
      double h2 = 0.0;
      for (int k = 0; k < i; ++k) {
        u[k] = at(i, k) * (1.0 / scale);
        h2 += u[k] * u[k];
      }
      double g = std::sqrt(h2);
      if (u[i - 1] >= 0.0) g = -g;
      e[i] = scale * g;
      h2 -= u[i - 1] * g;
      u[i - 1] -= g;
      at(i, i - 1) = u[i - 1] * scale;
      double c = 0.0;
      for (int j = 0; j < i; ++j) {
        double sum = 0.0;
        for (int k = 0; k < i; ++k)
          sum += at(j, k) * u[k];
        p[j] = sum * (1.0 / h2);
        c += u[j] * p[j];
      }
      for (int j = 0; j < i; ++j)
        p[j] -= (1.0 / h2) * 0.5 * c * u[j];
      for (int j = 0; j < i; ++j) {
        for (int k = 0; k <= j; ++k) {
          if (u[j] != 0.0) at(j, k) = at(j, k) + -u[j] * p[k];
          if (p[j] != 0.0) at(j, k) = at(j, k) + -p[j] * u[k];
        }
      }
      d[i] = at(i, i);
      at(i, i) = std::sqrt(h2) * scale;
    }
    d[0] = a[0];
    a[0] = 0.0;
    TridiagonalForm form(h);
    form.Reduce(true);
    EXPECT_EQ(form.Diagonal(), d) << "n " << n;
    EXPECT_EQ(form.SubDiagonal(), e) << "n " << n;
    EXPECT_EQ(form.Work().AsVectorConst(), a) << "n " << n;
  }
}

#if defined(QX_HAVE_LAPACK)
TEST(QXEigenValuesTest, AgreesWithLapackDsyev) {
  for (int n : {7, 60, 200}) {
    const QXSymMatrix h = TestMatrix(n, 300u + n, Kind::kRandom);
    Vec full(static_cast<std::size_t>(n) * n), w(n), work(1);
    for (int i = 0; i < n; ++i) {
      for (int j = 0; j < n; ++j)
        full[i + static_cast<std::size_t>(j) * n] = h.GetElem(i, j);
    }
    int lwork = -1, info = 0;
    dsyev_("N", "L", &n, full.data(), &n, w.data(), work.data(), &lwork, &info);
    lwork = static_cast<int>(work[0]);
    work.resize(lwork);
    dsyev_("N", "L", &n, full.data(), &n, w.data(), work.data(), &lwork, &info);
    ASSERT_EQ(info, 0);
    QXEigenValues eig(h, 1e-15, 30);
    Vec values;
    ASSERT_EQ(eig.GetSorted(values, false), n);
    EXPECT_LE(MaxDiff(values, w), 10.0 * n * kEps * NormInf(h)) << "n " << n;
  }
}
#endif

}  // namespace
}  // namespace QXMath_850
