#include "qx/matrices/linpack_d.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <utility>
#include <vector>

#include "qx/matrices/internal/testutil.h"
#include "qx/matrices/qxsymmatrix.h"

namespace QXMath_850 {
namespace {

using Vec = std::vector<double>;
using LVec = std::vector<long double>;
constexpr double kEps = std::numeric_limits<double>::epsilon();

// A column-major n by p matrix, element (i, j) from 0, with leading dimension
// ld >= n (a few spare rows make a wrong stride show).
struct Mat {
  int n = 0, p = 0, ld = 0;
  Vec a;
  Mat(int rows, int cols, int spare = 3) : n(rows), p(cols), ld(rows + spare), a(ld * cols, 0.0) {}
  double& operator()(int i, int j) { return a[i + j * ld]; }
  double operator()(int i, int j) const { return a[i + j * ld]; }
  double* data() { return a.data(); }
};

// The kinds of square matrix the factor tests run over.
enum class Kind { kRandom, kBanded, kTridiagonal, kHilbert, kRankDeficient };

Mat Make(Kind kind, int n, unsigned seed) {
  std::mt19937_64 engine(seed);
  std::uniform_real_distribution<double> uniform(-1.0, 1.0);
  Mat m(n, n);
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j < n; ++j) {
      switch (kind) {
        case Kind::kRandom:
          m(i, j) = uniform(engine);
          break;
        case Kind::kBanded:
          m(i, j) = (j - i <= 3 && i - j <= 2) ? uniform(engine) : 0.0;
          break;
        case Kind::kTridiagonal:
          m(i, j) = std::abs(i - j) <= 1 ? uniform(engine) : 0.0;
          break;
        case Kind::kHilbert:
          m(i, j) = 1.0 / (i + j + 1);
          break;
        case Kind::kRankDeficient:
          break;
      }
    }
  }
  if (kind == Kind::kRankDeficient) {
    // An exact product of rank n/2 from small integers.
    const int k = std::max(1, n / 2);
    std::uniform_int_distribution<int> small(-3, 3);
    std::vector<int> left(n * k), right(k * n);
    for (int& v : left)
      v = small(engine);
    for (int& v : right)
      v = small(engine);
    for (int i = 0; i < n; ++i) {
      for (int j = 0; j < n; ++j) {
        int sum = 0;
        for (int t = 0; t < k; ++t)
          sum += left[i * k + t] * right[t * n + j];
        m(i, j) = sum;
      }
    }
  }
  return m;
}

// A symmetric positive definite matrix: G^T G / n + I for a random G, or a
// Hilbert matrix.
Mat MakeSpd(int n, unsigned seed, bool hilbert) {
  if (hilbert) return Make(Kind::kHilbert, n, seed);
  const Mat g = Make(Kind::kRandom, n, seed);
  Mat a(n, n);
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j < n; ++j) {
      double sum = i == j ? 1.0 : 0.0;
      for (int t = 0; t < n; ++t)
        sum += g(t, i) * g(t, j) / n;
      a(i, j) = sum;
    }
  }
  return a;
}

double Norm1(const Mat& m) {
  double worst = 0.0;
  for (int j = 0; j < m.p; ++j) {
    double sum = 0.0;
    for (int i = 0; i < m.n; ++i)
      sum += std::fabs(m(i, j));
    worst = std::max(worst, sum);
  }
  return worst;
}

double MaxDiff(const Mat& x, const Mat& y) {
  double worst = 0.0;
  for (int j = 0; j < x.p; ++j) {
    for (int i = 0; i < x.n; ++i)
      worst = std::max(worst, std::fabs(x(i, j) - y(i, j)));
  }
  return worst;
}

// x y, in long double.
Mat Multiply(const Mat& x, const Mat& y) {
  Mat out(x.n, y.p);
  for (int i = 0; i < x.n; ++i) {
    for (int j = 0; j < y.p; ++j) {
      long double sum = 0.0L;
      for (int t = 0; t < x.p; ++t)
        sum += static_cast<long double>(x(i, t)) * y(t, j);
      out(i, j) = static_cast<double>(sum);
    }
  }
  return out;
}

Mat Transpose(const Mat& x) {
  Mat out(x.p, x.n);
  for (int i = 0; i < x.n; ++i) {
    for (int j = 0; j < x.p; ++j)
      out(j, i) = x(i, j);
  }
  return out;
}

Mat Identity(int n) {
  Mat out(n, n);
  for (int i = 0; i < n; ++i)
    out(i, i) = 1.0;
  return out;
}

// The inverse by Gauss-Jordan in long double, and the true reciprocal
// condition in the 1-norm from it.
std::vector<LVec> InverseLong(const Mat& m) {
  const int n = m.n;
  std::vector<LVec> w(n, LVec(2 * n, 0.0L));
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j < n; ++j)
      w[i][j] = m(i, j);
    w[i][n + i] = 1.0L;
  }
  for (int k = 0; k < n; ++k) {
    int piv = k;
    for (int i = k + 1; i < n; ++i) {
      if (std::fabs(w[i][k]) > std::fabs(w[piv][k])) piv = i;
    }
    std::swap(w[k], w[piv]);
    const long double d = w[k][k];
    for (long double& v : w[k])
      v /= d;
    for (int i = 0; i < n; ++i) {
      if (i == k) continue;
      const long double f = w[i][k];
      for (int j = 0; j < 2 * n; ++j)
        w[i][j] -= f * w[k][j];
    }
  }
  for (LVec& row : w)
    row.erase(row.begin(), row.begin() + n);
  return w;
}

double TrueRcond(const Mat& m) {
  const std::vector<LVec> inv = InverseLong(m);
  long double inorm = 0.0L;
  for (int j = 0; j < m.n; ++j) {
    long double sum = 0.0L;
    for (int i = 0; i < m.n; ++i)
      sum += std::fabs(inv[i][j]);
    inorm = std::max(inorm, sum);
  }
  return static_cast<double>(1.0L / (Norm1(m) * inorm));
}

// Largest relative error of a solve of m x = b against the x that built b.
// b is formed in long double so that x is its exact solution to working
// precision.
template <typename Solve>
double SolveError(const Mat& m, unsigned seed, Solve solve) {
  std::mt19937_64 engine(seed);
  std::uniform_real_distribution<double> uniform(-1.0, 1.0);
  Vec x(m.n), b(m.n);
  for (double& v : x)
    v = uniform(engine);
  for (int i = 0; i < m.n; ++i) {
    long double sum = 0.0L;
    for (int j = 0; j < m.n; ++j)
      sum += static_cast<long double>(m(i, j)) * x[j];
    b[i] = static_cast<double>(sum);
  }
  solve(b);
  double err = 0.0, norm = 0.0;
  for (int i = 0; i < m.n; ++i) {
    err = std::max(err, std::fabs(b[i] - x[i]));
    norm = std::max(norm, std::fabs(x[i]));
  }
  return err / norm;
}

// det[0] * 10^det[1] against a value, with det[0] in the published range.
void ExpectDet(const double* det, long double expected, double relTol) {
  if (expected == 0.0L) {
    EXPECT_EQ(det[0], 0.0);
    return;
  }
  EXPECT_GE(std::fabs(det[0]), 1.0);
  EXPECT_LT(std::fabs(det[0]), 10.0);
  const long double value = det[0] * std::pow(10.0L, static_cast<long double>(det[1]));
  EXPECT_NEAR(static_cast<double>(value / expected), 1.0, relTol);
}

long double DetLong(const Mat& m) {
  const int n = m.n;
  std::vector<LVec> w(n, LVec(n));
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j < n; ++j)
      w[i][j] = m(i, j);
  }
  long double det = 1.0L;
  for (int k = 0; k < n; ++k) {
    int piv = k;
    for (int i = k + 1; i < n; ++i) {
      if (std::fabs(w[i][k]) > std::fabs(w[piv][k])) piv = i;
    }
    if (w[piv][k] == 0.0L) return 0.0L;
    if (piv != k) {
      std::swap(w[k], w[piv]);
      det = -det;
    }
    det *= w[k][k];
    for (int i = k + 1; i < n; ++i) {
      const long double f = w[i][k] / w[k][k];
      for (int j = k; j < n; ++j)
        w[i][j] -= f * w[k][j];
    }
  }
  return det;
}

// The upper triangle of a symmetric matrix packed by columns, which is the
// store of a QXSymMatrix.
Vec PackUpper(const Mat& m) {
  Vec ap;
  for (int j = 0; j < m.n; ++j) {
    for (int i = 0; i <= j; ++i)
      ap.push_back(m(i, j));
  }
  return ap;
}

// The symmetric matrix whose upper triangle is held (the lower is ignored).
Mat SymmetricFromUpper(const Mat& m) {
  Mat out(m.n, m.n);
  for (int j = 0; j < m.n; ++j) {
    for (int i = 0; i <= j; ++i)
      out(i, j) = out(j, i) = m(i, j);
  }
  return out;
}

Mat UpperPart(const Mat& m) {
  Mat out(m.n, m.p);
  for (int j = 0; j < m.p; ++j) {
    for (int i = 0; i <= std::min(j, m.n - 1); ++i)
      out(i, j) = m(i, j);
  }
  return out;
}

const Kind kKinds[] = {Kind::kRandom, Kind::kBanded, Kind::kTridiagonal, Kind::kHilbert,
                       Kind::kRankDeficient};

// ---------------------------------------------------------------------------

TEST(LinpackTest, DgefaFactorsRebuildPLUAndDgeslSolvesBothWays) {
  for (Kind kind : kKinds) {
    for (int n : {1, 2, 5, 17, 40}) {
      const Mat a = Make(kind, n, 11u * n);
      Mat f = a;
      std::vector<int> ipvt(n, -1);
      const int info = Linpack::Dgefa(f.data(), f.ld, n, ipvt.data());
      // Undo the elimination on U: the multipliers are stored negated.
      Mat m = UpperPart(f);
      for (int k = n - 2; k >= 0; --k) {
        for (int i = k + 1; i < n; ++i) {
          for (int j = 0; j < n; ++j)
            m(i, j) -= f(i, k) * m(k, j);
        }
        for (int j = 0; j < n; ++j)
          std::swap(m(k, j), m(ipvt[k] - 1, j));
      }
      EXPECT_LE(MaxDiff(m, a), 8.0 * n * kEps * std::max(1.0, Norm1(a)))
          << "kind " << static_cast<int>(kind) << " n " << n;
      EXPECT_EQ(ipvt[n - 1], n);
      if (kind == Kind::kRankDeficient && n > 1) {
        // Singular: a zero pivot, or one lost in rounding.
        double smallest = std::fabs(f(0, 0));
        for (int k = 1; k < n; ++k)
          smallest = std::min(smallest, std::fabs(f(k, k)));
        EXPECT_TRUE(info > 0 || smallest < 1e-12 * Norm1(a));
        continue;
      }
      ASSERT_EQ(info, 0);
      // Forward error within a small multiple of n eps cond, both jobs.
      const double bound = 10.0 * n * kEps / TrueRcond(a);
      for (int job : {0, 1}) {
        const Mat sys = job == 0 ? a : Transpose(a);
        EXPECT_LE(SolveError(sys, 7u + n,
                             [&](Vec& b) {
                               Linpack::Dgesl(f.data(), f.ld, n, ipvt.data(), b.data(), job);
                             }),
                  bound);
      }
    }
  }
  // Order 1: the info is n exactly when the element is zero.
  double one = 0.0;
  int pivot = 0;
  EXPECT_EQ(Linpack::Dgefa(&one, 1, 1, &pivot), 1);
  one = 2.0;
  EXPECT_EQ(Linpack::Dgefa(&one, 1, 1, &pivot), 0);
}

TEST(LinpackTest, ReciprocalConditionIsWithinTenOfTheTruthOnHilbertMatrices) {
  for (int n = 2; n <= 10; ++n) {
    const Mat h = Make(Kind::kHilbert, n, 0u);
    const double truth = TrueRcond(h);
    Vec z(n);
    std::vector<int> pivots(n);
    auto within = [&](double rcond, const char* name) {
      EXPECT_GT(rcond, truth / 10.0) << name << " n " << n;
      EXPECT_LT(rcond, truth * 10.0) << name << " n " << n;
    };
    Mat f = h;
    within(Linpack::Dgeco(f.data(), f.ld, n, pivots.data(), z.data()), "Dgeco");
    f = h;
    within(Linpack::Dpoco(f.data(), f.ld, n, z.data()), "Dpoco");
    f = h;
    within(Linpack::Dsico(f.data(), f.ld, n, pivots.data(), z.data()), "Dsico");
    Vec ap = PackUpper(h);
    within(Linpack::Dppco(ap.data(), n, z.data()), "Dppco");
    ap = PackUpper(h);
    within(Linpack::Dspco(ap.data(), n, pivots.data(), z.data()), "Dspco");
    // The band forms with full bandwidth.
    Mat band(3 * n - 2, n);
    for (int j = 0; j < n; ++j) {
      for (int i = 0; i < n; ++i)
        band(2 * (n - 1) + i - j, j) = h(i, j);
    }
    within(Linpack::Dgbco(band.data(), band.ld, n, n - 1, n - 1, pivots.data(), z.data()), "Dgbco");
    Mat pband(n, n);
    for (int j = 0; j < n; ++j) {
      for (int i = 0; i <= j; ++i)
        pband(n - 1 + i - j, j) = h(i, j);
    }
    within(Linpack::Dpbco(pband.data(), pband.ld, n, n - 1, z.data()), "Dpbco");
    // Dtrco on the Cholesky factor, upper and (transposed) lower.
    f = h;
    ASSERT_EQ(Linpack::Dpofa(f.data(), f.ld, n), 0);
    const Mat r = UpperPart(f);
    const double rTruth = TrueRcond(r);
    Mat t = r;
    EXPECT_NEAR(std::log10(Linpack::Dtrco(t.data(), t.ld, n, z.data(), 1) / rTruth), 0.0, 1.0);
    t = Transpose(r);
    EXPECT_NEAR(std::log10(Linpack::Dtrco(t.data(), t.ld, n, z.data(), 0) / rTruth), 0.0, 1.0);
  }
  // Exact singularity gives 0.0, and so does a matrix that isn't positive
  // definite in the routines that need one.
  Mat s = Make(Kind::kRankDeficient, 6, 3u);
  Vec z(6);
  std::vector<int> pivots(6);
  EXPECT_LT(Linpack::Dgeco(s.data(), s.ld, 6, pivots.data(), z.data()), 1e-15);
  Mat indefinite = Identity(3);
  indefinite(1, 1) = -1.0;
  EXPECT_EQ(Linpack::Dpoco(indefinite.data(), indefinite.ld, 3, z.data()), 0.0);
}

TEST(LinpackTest, DgediInvertsAndGivesTheDeterminantByTens) {
  for (Kind kind : kKinds) {
    const int n = 9;
    const Mat a = Make(kind, n, 5u);
    Mat f = a;
    std::vector<int> ipvt(n);
    Vec det(2), work(n);
    Linpack::Dgefa(f.data(), f.ld, n, ipvt.data());
    if (kind == Kind::kRankDeficient) {
      Linpack::Dgedi(f.data(), f.ld, n, ipvt.data(), det.data(), work.data(), 10);
      EXPECT_LT(std::fabs(det[0]) * std::pow(10.0, det[1]), 1e-9 * std::pow(Norm1(a), n));
      continue;
    }
    Linpack::Dgedi(f.data(), f.ld, n, ipvt.data(), det.data(), work.data(), 11);
    const double rcond = TrueRcond(a);
    ExpectDet(det.data(), DetLong(a), std::min(0.1, 100.0 * n * kEps / rcond));
    EXPECT_LE(MaxDiff(Multiply(f, a), Identity(n)), 50.0 * n * kEps / rcond);
  }
}

// A random matrix with lower bandwidth ml and upper bandwidth mu.
Mat MakeBand(int n, int ml, int mu, unsigned seed) {
  std::mt19937_64 engine(seed);
  std::uniform_real_distribution<double> uniform(-1.0, 1.0);
  Mat a(n, n);
  for (int j = 0; j < n; ++j) {
    for (int i = std::max(0, j - mu); i <= std::min(n - 1, j + ml); ++i)
      a(i, j) = uniform(engine);
  }
  return a;
}

TEST(LinpackTest, BandAndTridiagonalRoutinesMatchTheFullOnes) {
  // On a band matrix the band routines do the full ones' arithmetic on the
  // non-zeros alone: same pivots, same bits.
  const int shapes[][2] = {{0, 0}, {1, 2}, {2, 1}, {3, 0}, {0, 2}};
  for (int n : {1, 2, 7, 30}) {
    for (const auto& shape : shapes) {
      const int ml = std::min(shape[0], n - 1), mu = std::min(shape[1], n - 1);
      const Mat a = MakeBand(n, ml, mu, 3u * n + ml);
      Mat f = a;
      std::vector<int> ipvt(n), bpvt(n);
      const int info = Linpack::Dgefa(f.data(), f.ld, n, ipvt.data());
      const int m = ml + mu;  // the diagonal's row, from 0
      Mat abd(2 * ml + mu + 1, n);
      for (int j = 0; j < n; ++j) {
        for (int i = std::max(0, j - mu); i <= std::min(n - 1, j + ml); ++i)
          abd(i - j + m, j) = a(i, j);
      }
      EXPECT_EQ(Linpack::Dgbfa(abd.data(), abd.ld, n, ml, mu, bpvt.data()), info);
      EXPECT_EQ(bpvt, ipvt);
      if (info != 0) continue;
      for (int job : {0, 1}) {
        Vec b(n), c;
        for (int i = 0; i < n; ++i)
          b[i] = std::sin(i + 1.0);
        c = b;
        Linpack::Dgesl(f.data(), f.ld, n, ipvt.data(), b.data(), job);
        Linpack::Dgbsl(abd.data(), abd.ld, n, ml, mu, bpvt.data(), c.data(), job);
        EXPECT_EQ(b, c) << "n " << n << " ml " << ml << " mu " << mu << " job " << job;
      }
      Vec det(2), bdet(2), work(n);
      Linpack::Dgedi(f.data(), f.ld, n, ipvt.data(), det.data(), work.data(), 10);
      Linpack::Dgbdi(abd.data(), abd.ld, n, ml, mu, bpvt.data(), bdet.data());
      EXPECT_EQ(det, bdet);
    }
    // Positive definite band of half-width 2 against the full Cholesky.
    const int mb = std::min(2, n - 1);
    Mat spd = MakeBand(n, mb, mb, 9u + n);
    for (int j = 0; j < n; ++j) {
      for (int i = 0; i < j; ++i)
        spd(j, i) = spd(i, j);
      spd(j, j) = 5.0;
    }
    Mat f = spd, pbd(mb + 1, n);
    for (int j = 0; j < n; ++j) {
      for (int i = std::max(0, j - mb); i <= j; ++i)
        pbd(mb + i - j, j) = spd(i, j);
    }
    ASSERT_EQ(Linpack::Dpofa(f.data(), f.ld, n), 0);
    ASSERT_EQ(Linpack::Dpbfa(pbd.data(), pbd.ld, n, mb), 0);
    for (int j = 0; j < n; ++j) {
      for (int i = std::max(0, j - mb); i <= j; ++i)
        EXPECT_EQ(pbd(mb + i - j, j), f(i, j));
    }
    Vec b(n, 1.0), c(n, 1.0), det(2), bdet(2);
    Linpack::Dposl(f.data(), f.ld, n, b.data());
    Linpack::Dpbsl(pbd.data(), pbd.ld, n, mb, c.data());
    EXPECT_EQ(b, c);
    Linpack::Dpodi(f.data(), f.ld, n, det.data(), 10);
    Linpack::Dpbdi(pbd.data(), pbd.ld, n, mb, bdet.data());
    EXPECT_EQ(det, bdet);

    // Tridiagonal solvers against the exact solution, odd and even orders.
    const Mat tri = Make(Kind::kTridiagonal, n, 2u * n);
    EXPECT_LE(SolveError(tri, 4u,
                         [&](Vec& rhs) {
                           Vec sub(n), diag(n), sup(n);
                           for (int i = 0; i < n; ++i) {
                             diag[i] = tri(i, i);
                             if (i > 0) sub[i] = tri(i, i - 1);
                             if (i + 1 < n) sup[i] = tri(i, i + 1);
                           }
                           EXPECT_EQ(
                               Linpack::Dgtsl(n, sub.data(), diag.data(), sup.data(), rhs.data()),
                               0);
                         }),
              20.0 * n * kEps / TrueRcond(tri));
    for (int order : {n, n + 1}) {
      Mat pt(order, order);
      for (int i = 0; i < order; ++i) {
        pt(i, i) = 4.0 + std::cos(i);
        if (i + 1 < order) pt(i, i + 1) = pt(i + 1, i) = 1.0 + 0.5 * std::sin(i);
      }
      EXPECT_LE(SolveError(pt, 6u,
                           [&](Vec& rhs) {
                             Vec diag(order), off(order);
                             for (int i = 0; i < order; ++i) {
                               diag[i] = pt(i, i);
                               if (i + 1 < order) off[i] = pt(i, i + 1);
                             }
                             Linpack::Dptsl(order, diag.data(), off.data(), rhs.data());
                           }),
                20.0 * order * kEps);
    }
  }
  // A zero that elimination can't pivot away is reported by its row.
  Vec c = {0.0, 0.0, 0.0}, d = {0.0, 0.0, 1.0}, e = {0.0, 0.0, 0.0}, b = {1.0, 1.0, 1.0};
  EXPECT_EQ(Linpack::Dgtsl(3, c.data(), d.data(), e.data(), b.data()), 1);
}

TEST(LinpackTest, CholeskyRebuildsTheMatrixAndInvertsIt) {
  for (bool hilbert : {false, true}) {
    for (int n : {1, 3, 10, 30}) {
      if (hilbert && n > 10) continue;
      const Mat a = MakeSpd(n, 21u + n, hilbert);
      Mat f = a;
      if (n > 1) f(1, 0) = 123.0;  // the strict lower triangle isn't touched
      ASSERT_EQ(Linpack::Dpofa(f.data(), f.ld, n), 0);
      if (n > 1) {
        EXPECT_EQ(f(1, 0), 123.0);
      }
      const Mat r = UpperPart(f);
      EXPECT_LE(MaxDiff(Multiply(Transpose(r), r), a), 4.0 * n * kEps * Norm1(a));
      const double rcond = TrueRcond(a);
      EXPECT_LE(SolveError(a, 3u, [&](Vec& b) { Linpack::Dposl(f.data(), f.ld, n, b.data()); }),
                10.0 * n * kEps / rcond);
      Vec det(2);
      EXPECT_EQ(Linpack::Dpodi(f.data(), f.ld, n, det.data(), 11), 0);
      ExpectDet(det.data(), DetLong(a), std::min(0.1, 100.0 * n * kEps / rcond));
      EXPECT_LE(MaxDiff(Multiply(SymmetricFromUpper(f), a), Identity(n)), 50.0 * n * kEps / rcond);
    }
  }
  // The order of the first leading minor that isn't positive definite.
  Mat bad = Identity(4);
  bad(2, 2) = -1.0;
  EXPECT_EQ(Linpack::Dpofa(bad.data(), bad.ld, 4), 3);
  // An exactly zero pivot counts as not positive definite.
  Mat ones(2, 2);
  ones.a.assign(ones.a.size(), 1.0);
  EXPECT_EQ(Linpack::Dpofa(ones.data(), ones.ld, 2), 2);
}

// A symmetric matrix Q diag(lambda) Q^T with Q from Householder reflections
// of a random vector, so that its spectrum is known.
Mat WithSpectrum(const Vec& lambda, unsigned seed) {
  const int n = static_cast<int>(lambda.size());
  std::mt19937_64 engine(seed);
  std::normal_distribution<double> normal(0.0, 1.0);
  Mat q = Identity(n);
  for (int pass = 0; pass < 2; ++pass) {
    Vec v(n);
    double vv = 0.0;
    for (double& x : v) {
      x = normal(engine);
      vv += x * x;
    }
    Mat h = Identity(n);
    for (int i = 0; i < n; ++i) {
      for (int j = 0; j < n; ++j)
        h(i, j) -= 2.0 * v[i] * v[j] / vv;
    }
    q = Multiply(h, q);
  }
  Mat d(n, n);
  for (int i = 0; i < n; ++i)
    d(i, i) = lambda[i];
  return Multiply(Multiply(q, d), Transpose(q));
}

// Rebuilds A = U D trans(U) from the output of DSIFA: starting from D, the
// steps are undone from the first pivot block up to the last.
Mat RebuildUDU(const Mat& f, const std::vector<int>& kpvt) {
  const int n = f.n;
  std::vector<std::pair<int, int>> blocks;  // (k, size), k the last row, from 1
  for (int k = n; k >= 1;) {
    const int ks = kpvt[k - 1] < 0 ? 2 : 1;
    blocks.emplace_back(k, ks);
    k -= ks;
  }
  Mat m(n, n);
  for (const auto& block : blocks) {
    const int k = block.first - 1;
    m(k, k) = f(k, k);
    if (block.second == 2) {
      m(k - 1, k - 1) = f(k - 1, k - 1);
      m(k - 1, k) = m(k, k - 1) = f(k - 1, k);
    }
  }
  for (auto it = blocks.rbegin(); it != blocks.rend(); ++it) {
    const int k = it->first - 1, ks = it->second;
    // M = E^-1 M E^-T with E = I + sum over columns c of the block of
    // (multipliers of c) e_c^T.
    Mat e = Identity(n);
    for (int c = k - ks + 1; c <= k; ++c) {
      for (int j = 0; j < k - ks + 1; ++j)
        e(j, c) = -f(j, c);
    }
    m = Multiply(Multiply(e, m), Transpose(e));
    const int kps = k - ks + 1, kp = std::abs(kpvt[k]) - 1;
    for (int j = 0; j < n; ++j)
      std::swap(m(kps, j), m(kp, j));
    for (int i = 0; i < n; ++i)
      std::swap(m(i, kps), m(i, kp));
  }
  return m;
}

TEST(LinpackTest, SymmetricIndefiniteFactorsRebuildUDUAndGiveTheInertia) {
  // Known spectra: mixed signs, and a zero diagonal that forces 2 by 2 pivots.
  std::vector<Vec> spectra = {{2.0}, {-1.0, 3.0}, {5.0, -4.0, 3.0, -2.0, 1.0, -0.5, 0.25}};
  Vec wide;
  for (int i = 0; i < 25; ++i)
    wide.push_back((i % 3 == 0 ? -1.0 : 1.0) * (1.0 + i));
  spectra.push_back(wide);
  std::vector<Mat> matrices;
  for (std::size_t s = 0; s < spectra.size(); ++s)
    matrices.push_back(WithSpectrum(spectra[s], 31u + s));
  Mat swap2(4, 4);  // [0 1; 1 0] twice: no 1 by 1 pivot is usable
  swap2(0, 1) = swap2(1, 0) = swap2(2, 3) = swap2(3, 2) = 1.0;
  matrices.push_back(swap2);
  spectra.push_back({1.0, 1.0, -1.0, -1.0});
  for (std::size_t s = 0; s < matrices.size(); ++s) {
    const Mat& a = matrices[s];
    const int n = a.n;
    Mat f = a;
    std::vector<int> kpvt(n);
    ASSERT_EQ(Linpack::Dsifa(f.data(), f.ld, n, kpvt.data()), 0);
    EXPECT_LE(MaxDiff(RebuildUDU(f, kpvt), a), 20.0 * n * kEps * Norm1(a)) << "matrix " << s;
    const double rcond = TrueRcond(a);
    Mat g = a;
    Vec z(n);
    std::vector<int> gpvt(n);
    const double estimate = Linpack::Dsico(g.data(), g.ld, n, gpvt.data(), z.data());
    EXPECT_GT(estimate, rcond / 10.0);
    EXPECT_LT(estimate, rcond * 10.0);
    EXPECT_LE(SolveError(a, 8u,
                         [&](Vec& b) { Linpack::Dsisl(f.data(), f.ld, n, kpvt.data(), b.data()); }),
              20.0 * n * kEps / rcond);
    Vec det(2), work(n);
    int inert[3] = {-1, -1, -1};
    Linpack::Dsidi(f.data(), f.ld, n, kpvt.data(), det.data(), inert, work.data(), 111);
    const Vec& lambda = spectra[s];
    long double product = 1.0L;
    for (double l : lambda)
      product *= l;
    EXPECT_EQ(inert[0],
              std::count_if(lambda.begin(), lambda.end(), [](double l) { return l > 0; }));
    EXPECT_EQ(inert[1],
              std::count_if(lambda.begin(), lambda.end(), [](double l) { return l < 0; }));
    EXPECT_EQ(inert[2], 0);
    ExpectDet(det.data(), product, 1e-10);
    EXPECT_LE(MaxDiff(Multiply(SymmetricFromUpper(f), a), Identity(n)), 50.0 * n * kEps / rcond);
  }
  // A zero column is reported and gives a zero determinant.
  Mat z = Identity(3);
  z(1, 1) = 0.0;
  std::vector<int> kpvt(3);
  EXPECT_EQ(Linpack::Dsifa(z.data(), z.ld, 3, kpvt.data()), 2);
}

TEST(LinpackTest, PackedRoutinesTakeAQXSymMatrixStoreAsItStands) {
  for (int n : {1, 4, 13}) {
    Vec lambda(n);
    for (int i = 0; i < n; ++i)
      lambda[i] = (i % 2 ? -1.0 : 1.0) * (i + 2.0);
    const Mat indefinite = WithSpectrum(lambda, 5u + n);
    const Mat spd = MakeSpd(n, 6u + n, false);
    for (bool definite : {true, false}) {
      const Mat& a = definite ? spd : indefinite;
      // The packed lower triangle by rows of a QXSymMatrix.
      QXSymMatrix s(n, true);
      for (int i = 0; i < n; ++i) {
        for (int j = 0; j <= i; ++j)
          s.SetElem(i, j, a(j, i));  // the upper triangle that f's routines read
      }
      Vec& ap = s.AsVector();
      Mat f = a;
      Vec b(n), c(n), z(n), zp(n);
      for (int i = 0; i < n; ++i)
        b[i] = c[i] = 1.0 / (i + 1.0);
      std::vector<int> kpvt(n), kpvtp(n);
      double rcond, rcondp;
      if (definite) {
        rcond = Linpack::Dpoco(f.data(), f.ld, n, z.data());
        rcondp = Linpack::Dppco(ap.data(), n, zp.data());
        Linpack::Dposl(f.data(), f.ld, n, b.data());
        Linpack::Dppsl(ap.data(), n, c.data());
      } else {
        rcond = Linpack::Dsico(f.data(), f.ld, n, kpvt.data(), z.data());
        rcondp = Linpack::Dspco(ap.data(), n, kpvtp.data(), zp.data());
        EXPECT_EQ(kpvt, kpvtp);
        Linpack::Dsisl(f.data(), f.ld, n, kpvt.data(), b.data());
        Linpack::Dspsl(ap.data(), n, kpvtp.data(), c.data());
      }
      EXPECT_EQ(rcond, rcondp);
      EXPECT_EQ(b, c);
      EXPECT_EQ(PackUpper(f), ap);
      Vec det(2), detp(2), work(n);
      int inert[3], inertp[3];
      if (definite) {
        Linpack::Dpodi(f.data(), f.ld, n, det.data(), 11);
        Linpack::Dppdi(ap.data(), n, detp.data(), 11);
      } else {
        Linpack::Dsidi(f.data(), f.ld, n, kpvt.data(), det.data(), inert, work.data(), 111);
        Linpack::Dspdi(ap.data(), n, kpvtp.data(), detp.data(), inertp, work.data(), 111);
        EXPECT_TRUE(std::equal(inert, inert + 3, inertp));
      }
      EXPECT_EQ(det, detp);
      EXPECT_EQ(PackUpper(f), ap);
    }
  }
}

TEST(LinpackTest, TriangularSolvesInversesAndZeroDiagonals) {
  for (int n : {1, 6, 20}) {
    Mat upper = UpperPart(Make(Kind::kRandom, n, 41u + n));
    for (int i = 0; i < n; ++i)
      upper(i, i) = 2.0 + std::fabs(upper(i, i));
    const Mat lower = Transpose(upper);
    for (int job : {0, 1, 10, 11}) {
      const Mat& t = job % 10 ? upper : lower;
      const Mat system = job / 10 ? Transpose(t) : t;
      Mat work = t;
      EXPECT_LE(SolveError(system, 2u,
                           [&](Vec& b) {
                             EXPECT_EQ(Linpack::Dtrsl(work.data(), work.ld, n, b.data(), job), 0);
                           }),
                10.0 * n * kEps / TrueRcond(system));
    }
    for (int lowerJob : {0, 1}) {
      Mat t = lowerJob ? lower : upper;
      const Mat original = t;
      Vec det(2);
      EXPECT_EQ(Linpack::Dtrdi(t.data(), t.ld, n, det.data(), lowerJob ? 110 : 111), 0);
      long double product = 1.0L;
      for (int i = 0; i < n; ++i)
        product *= original(i, i);
      ExpectDet(det.data(), product, 1e-13);
      EXPECT_LE(MaxDiff(Multiply(t, original), Identity(n)), 20.0 * n * kEps / TrueRcond(original));
    }
  }
  // A zero on the diagonal: its index, and b left as it was.
  Mat t = Identity(3);
  t(1, 1) = 0.0;
  Vec b = {1.0, 2.0, 3.0};
  EXPECT_EQ(Linpack::Dtrsl(t.data(), t.ld, 3, b.data(), 1), 2);
  EXPECT_EQ(b, (Vec{1.0, 2.0, 3.0}));
  Vec det(2);
  EXPECT_EQ(Linpack::Dtrdi(t.data(), t.ld, 3, det.data(), 111), 2);
  EXPECT_EQ(det[0], 0.0);
}

// A random n by p matrix, of rank `rank` when that is below min(n, p).
Mat MakeRect(int n, int p, int rank, unsigned seed) {
  std::mt19937_64 engine(seed);
  std::uniform_real_distribution<double> uniform(-1.0, 1.0);
  Mat x(n, p);
  for (double& v : x.a)
    v = uniform(engine);
  if (rank >= std::min(n, p)) return x;
  Mat left(n, rank), right(rank, p);
  for (double& v : left.a)
    v = uniform(engine);
  for (double& v : right.a)
    v = uniform(engine);
  return Multiply(left, right);
}

TEST(LinpackTest, DqrdcRebuildsXAndDqrslSolvesLeastSquares) {
  const int shapes[][3] = {{1, 1, 1}, {6, 4, 4}, {30, 12, 12}, {4, 6, 4}, {20, 8, 3}};
  for (const auto& shape : shapes) {
    const int n = shape[0], p = shape[1], rank = shape[2];
    const Mat x = MakeRect(n, p, rank, 51u + n + p);
    for (int job : {0, 1}) {
      Mat f = x;
      Vec qraux(p), work(p);
      std::vector<int> jpvt(p, 0);
      if (job && p > 2) jpvt[2] = 1;  // an initial column stays first
      EXPECT_EQ(Linpack::Dqrdc(f.data(), f.ld, n, p, qraux.data(), jpvt.data(), work.data(), job),
                0);
      if (job && p > 2) {
        EXPECT_EQ(jpvt[0], 3);
      }
      // Q times each column of R gives the (permuted) column of x.
      const int k = std::min(n, p);
      double worst = 0.0;
      for (int j = 0; j < p; ++j) {
        Vec r(n, 0.0), qr(n);
        for (int i = 0; i <= std::min(j, n - 1); ++i)
          r[i] = f(i, j);
        Linpack::Dqrsl(f.data(), f.ld, n, k, qraux.data(), r.data(), qr.data(), nullptr, nullptr,
                       nullptr, nullptr, 10000);
        const int col = job ? jpvt[j] - 1 : j;
        for (int i = 0; i < n; ++i)
          worst = std::max(worst, std::fabs(qr[i] - x(i, col)));
      }
      EXPECT_LE(worst, 10.0 * n * kEps * Norm1(x));
      if (rank < k) {
        // Pivoting brings the rank deficiency to the end of R's diagonal.
        if (job) {
          EXPECT_LT(std::fabs(f(rank, rank)), 1e-12 * std::fabs(f(0, 0)));
        }
        continue;
      }
      // Least squares on the first k columns: y = xb + rsd, rsd orthogonal
      // to them, and xb = Xk b.
      Vec y(n), qty(n), b(k), rsd(n), xb(n);
      for (int i = 0; i < n; ++i)
        y[i] = std::cos(3.0 * i);
      EXPECT_EQ(Linpack::Dqrsl(f.data(), f.ld, n, k, qraux.data(), y.data(), nullptr, qty.data(),
                               b.data(), rsd.data(), xb.data(), 111),
                0);
      for (int i = 0; i < n; ++i) {
        EXPECT_NEAR(xb[i] + rsd[i], y[i], 10.0 * n * kEps);
        double fit = 0.0;
        for (int j = 0; j < k; ++j)
          fit += x(i, job ? jpvt[j] - 1 : j) * b[j];
        EXPECT_NEAR(fit, xb[i], 1e-10);
      }
      for (int j = 0; j < k; ++j) {
        double dot = 0.0;
        for (int i = 0; i < n; ++i)
          dot += x(i, job ? jpvt[j] - 1 : j) * rsd[i];
        EXPECT_NEAR(dot, 0.0, 10.0 * n * kEps * Norm1(x));
      }
    }
  }
}

TEST(LinpackTest, DsvdcRebuildsXFromUSVTransposed) {
  // Random matrices, and upper bidiagonal ones with a zero on the diagonal,
  // in the middle and at the end, which take the two deflating branches.
  const int shapes[][3] = {{1, 1, 1},  {7, 4, 4}, {4, 7, 4}, {25, 25, 25},
                           {12, 8, 3}, {6, 6, 5}, {6, 6, 5}};
  int bidiagonal = 0;
  for (const auto& shape : shapes) {
    const int n = shape[0], p = shape[1], rank = shape[2];
    Mat x = MakeRect(n, p, rank, 61u + n * p);
    if (n == 6) {
      x = Mat(n, p);
      for (int i = 0; i < n; ++i) {
        x(i, i) = i + 1.0;
        if (i + 1 < p) x(i, i + 1) = 0.5;
      }
      const int zero = bidiagonal++ == 0 ? 2 : 5;
      x(zero, zero) = 0.0;
    }
    const int mm = std::max(n + 1, p), k = std::min(n, p);
    Vec valuesOnly;
    for (int job : {0, 11, 21}) {
      Mat f = x, u(n, n), v(p, p);
      Vec s(mm), e(mm), work(n);
      ASSERT_EQ(Linpack::Dsvdc(f.data(), f.ld, n, p, s.data(), e.data(), u.data(), u.ld, v.data(),
                               v.ld, work.data(), job),
                0);
      s.resize(k);
      for (int i = 1; i < k; ++i)
        EXPECT_GE(s[i - 1], s[i]);
      EXPECT_GE(s[k - 1], 0.0);
      for (int i = rank; i < k; ++i)
        EXPECT_LT(s[i], 1e-13 * s[0]);
      if (job == 0) {
        valuesOnly = s;
        continue;
      }
      // The vectors leave the rotations on s and e as they were.
      EXPECT_EQ(s, valuesOnly);
      const int ncu = job == 21 ? k : n;
      Mat uk(n, ncu), sv(ncu, p);
      for (int j = 0; j < ncu; ++j) {
        for (int i = 0; i < n; ++i)
          uk(i, j) = u(i, j);
      }
      for (int i = 0; i < k; ++i) {
        for (int j = 0; j < p; ++j)
          sv(i, j) = s[i] * v(j, i);
      }
      const double tol = 20.0 * std::max(n, p) * kEps;
      EXPECT_LE(MaxDiff(Multiply(Transpose(uk), uk), Identity(ncu)), tol);
      Mat vp(p, p);
      for (int j = 0; j < p; ++j) {
        for (int i = 0; i < p; ++i)
          vp(i, j) = v(i, j);
      }
      EXPECT_LE(MaxDiff(Multiply(Transpose(vp), vp), Identity(p)), tol);
      EXPECT_LE(MaxDiff(Multiply(uk, sv), x), tol * s[0]);
    }
  }
}

TEST(LinpackTest, PivotedCholeskyUpdateDowndateAndExchange) {
  // A positive semidefinite matrix of rank 3: the pivoted factor stops at
  // the rank (or just past it, by rounding) and rebuilds P^T A P.
  const int p = 8;
  const Mat g = MakeRect(3, p, 3, 71u);
  const Mat a = Multiply(Transpose(g), g);
  Mat f = a;
  Vec work(p);
  std::vector<int> jpvt(p, 0);
  jpvt[4] = 1;  // column 5 goes first
  const int info = Linpack::Dchdc(f.data(), f.ld, p, work.data(), jpvt.data(), 1);
  // Rounding may leave tiny positive pivots past the rank.
  EXPECT_GE(info, 3);
  if (info > 3) {
    EXPECT_LT(f(3, 3), 1e-6 * f(0, 0));
  }
  EXPECT_EQ(jpvt[0], 5);
  for (int i = 0; i < 3; ++i) {
    for (int j = i; j < p; ++j) {
      double sum = 0.0;
      for (int t = 0; t <= i; ++t)
        sum += f(t, i) * f(t, j);
      EXPECT_NEAR(sum, a(jpvt[i] - 1, jpvt[j] - 1), 20.0 * p * kEps * Norm1(a));
    }
  }

  // Update with a row, downdate it again: R^T R follows, and rho too.
  const int n = 6;
  const Mat spd = MakeSpd(n, 81u, false);
  Mat r = spd;
  ASSERT_EQ(Linpack::Dpofa(r.data(), r.ld, n), 0);
  r = UpperPart(r);
  const Mat r0 = r;
  Vec xrow(n), c(n), s(n), zcol(n, 0.5), y = {2.0}, rho = {1.5};
  for (int i = 0; i < n; ++i)
    xrow[i] = std::sin(2.0 * i + 1.0);
  Mat xx(n, n);
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j < n; ++j)
      xx(i, j) = spd(i, j) + xrow[i] * xrow[j];
  }
  Linpack::Dchud(r.data(), r.ld, n, xrow.data(), zcol.data(), n, 1, y.data(), rho.data(), c.data(),
                 s.data());
  EXPECT_LE(MaxDiff(Multiply(Transpose(UpperPart(r)), UpperPart(r)), xx), 20.0 * n * kEps);
  EXPECT_GT(rho[0], 1.5);
  EXPECT_EQ(Linpack::Dchdd(r.data(), r.ld, n, xrow.data(), zcol.data(), n, 1, y.data(), rho.data(),
                           c.data(), s.data()),
            0);
  EXPECT_LE(MaxDiff(Multiply(Transpose(UpperPart(r)), UpperPart(r)), spd), 50.0 * n * kEps);
  EXPECT_NEAR(rho[0], 1.5, 1e-12);
  for (int i = 0; i < n; ++i)
    EXPECT_NEAR(zcol[i], 0.5, 1e-12);
  // A row that would take the factor past singularity is refused whole.
  Vec big(n, 100.0);
  const Mat before = r;
  EXPECT_EQ(Linpack::Dchdd(r.data(), r.ld, n, big.data(), nullptr, n, 0, nullptr, nullptr, c.data(),
                           s.data()),
            -1);
  EXPECT_EQ(r.a, before.a);

  // Circular shifts of columns 2..5: R^T R becomes E^T A E.
  for (int job : {1, 2}) {
    Mat rr = r0;
    Vec zz(n, 1.0);
    Linpack::Dchex(rr.data(), rr.ld, n, 2, 5, zz.data(), n, 1, c.data(), s.data(), job);
    std::vector<int> order = {0, 1, 2, 3, 4, 5};
    if (job == 1) {
      std::rotate(order.begin() + 1, order.begin() + 4, order.begin() + 5);
    } else {
      std::rotate(order.begin() + 1, order.begin() + 2, order.begin() + 5);
    }
    const Mat back = Multiply(Transpose(UpperPart(rr)), UpperPart(rr));
    for (int i = 0; i < n; ++i) {
      for (int j = 0; j < n; ++j)
        EXPECT_NEAR(back(i, j), spd(order[i], order[j]), 20.0 * n * kEps);
    }
    double norm = 0.0;
    for (double v : zz)
      norm += v * v;
    EXPECT_NEAR(norm, n, 1e-12);  // an orthogonal transformation
  }
}

}  // namespace
}  // namespace QXMath_850
