#include "qx/matrices/linpack_d.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
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

// A column-major n by p matrix, element (i, j) from 0. The leading dimension
// has three spare rows, so that a wrong stride shows.
struct Mat {
  int n = 0, p = 0, ld = 0;
  Vec a;
  Mat(int rows, int cols) : n(rows), p(cols), ld(rows + 3), a(ld * cols, 0.0) {}
  double& operator()(int i, int j) { return a[i + j * ld]; }
  double operator()(int i, int j) const { return a[i + j * ld]; }
  double* data() { return a.data(); }
};

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

// Uniform values in (-1, 1); of rank `rank` (a product of two random
// factors) when that is below min(n, p).
Mat Random(int n, int p, unsigned seed, int rank = 1 << 30) {
  std::mt19937_64 engine(seed);
  std::uniform_real_distribution<double> uniform(-1.0, 1.0);
  Mat x(n, p);
  for (double& v : x.a)
    v = uniform(engine);
  if (rank >= std::min(n, p)) return x;
  return Multiply(Random(n, rank, seed + 1), Random(rank, p, seed + 2));
}

// Random within lower bandwidth ml and upper bandwidth mu, zero outside.
Mat Band(int n, int ml, int mu, unsigned seed) {
  Mat a = Random(n, n, seed);
  for (int j = 0; j < n; ++j) {
    for (int i = 0; i < n; ++i) {
      if (i - j > ml || j - i > mu) a(i, j) = 0.0;
    }
  }
  return a;
}

Mat Hilbert(int n) {
  Mat h(n, n);
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j < n; ++j)
      h(i, j) = 1.0 / (i + j + 1);
  }
  return h;
}

// G^T G / n + I for a random G: symmetric positive definite.
Mat Spd(int n, unsigned seed) {
  const Mat g = Random(n, n, seed);
  Mat a = Multiply(Transpose(g), g);
  for (int j = 0; j < n; ++j) {
    for (int i = 0; i < n; ++i)
      a(i, j) = a(i, j) / n + (i == j);
  }
  return a;
}

Mat WithSpectrum(const Vec& lambda, unsigned seed) {
  const int n = static_cast<int>(lambda.size());
  const Vec full = internal::WithSpectrum(lambda, seed);
  Mat a(n, n);
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j < n; ++j)
      a(i, j) = full[i * n + j];
  }
  return a;
}

// The upper triangle (and the rest zero), the symmetric matrix it stands
// for, and its packed form by columns: the store of a QXSymMatrix.
Mat UpperPart(const Mat& m) {
  Mat out(m.n, m.p);
  for (int j = 0; j < m.p; ++j) {
    for (int i = 0; i <= std::min(j, m.n - 1); ++i)
      out(i, j) = m(i, j);
  }
  return out;
}

Mat SymmetricFromUpper(const Mat& m) {
  Mat out = UpperPart(m);
  for (int j = 0; j < m.n; ++j) {
    for (int i = 0; i < j; ++i)
      out(j, i) = m(i, j);
  }
  return out;
}

Vec PackUpper(const Mat& m) {
  Vec ap;
  for (int j = 0; j < m.n; ++j) {
    for (int i = 0; i <= j; ++i)
      ap.push_back(m(i, j));
  }
  return ap;
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

// Determinant and true reciprocal condition in the 1-norm, by Gauss-Jordan
// with partial pivoting in long double.
struct Exact {
  long double det = 1.0L;
  double rcond = 0.0;
};

Exact ExactOf(const Mat& m) {
  const int n = m.n;
  std::vector<LVec> w(n, LVec(2 * n, 0.0L));
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j < n; ++j)
      w[i][j] = m(i, j);
    w[i][n + i] = 1.0L;
  }
  Exact exact;
  for (int k = 0; k < n; ++k) {
    int piv = k;
    for (int i = k + 1; i < n; ++i) {
      if (std::fabs(w[i][k]) > std::fabs(w[piv][k])) piv = i;
    }
    if (piv != k) exact.det = -exact.det;
    std::swap(w[k], w[piv]);
    const long double d = w[k][k];
    exact.det *= d;
    for (long double& v : w[k])
      v /= d;
    for (int i = 0; i < n; ++i) {
      const long double f = i == k ? 0.0L : w[i][k];
      for (int j = 0; j < 2 * n; ++j)
        w[i][j] -= f * w[k][j];
    }
  }
  long double inorm = 0.0L;
  for (int j = n; j < 2 * n; ++j) {
    long double sum = 0.0L;
    for (int i = 0; i < n; ++i)
      sum += std::fabs(w[i][j]);
    inorm = std::max(inorm, sum);
  }
  exact.rcond = static_cast<double>(1.0L / (Norm1(m) * inorm));
  return exact;
}

// Largest relative error of solve(b) for m x = b, b formed in long double
// from a known x.
template <typename Solve>
double SolveError(const Mat& m, unsigned seed, Solve solve) {
  const Mat x = Random(m.n, 1, seed);
  const Mat b = Multiply(m, x);
  Vec v(b.a.begin(), b.a.begin() + m.n);
  solve(v);
  double err = 0.0, norm = 0.0;
  for (int i = 0; i < m.n; ++i) {
    err = std::max(err, std::fabs(v[i] - x(i, 0)));
    norm = std::max(norm, std::fabs(x(i, 0)));
  }
  return err / norm;
}

// det[0] * 10^det[1] against a value, det[0] within [1, 10) in magnitude.
void ExpectDet(const Vec& det, long double expected, double relTol) {
  EXPECT_GE(std::fabs(det[0]), 1.0);
  EXPECT_LT(std::fabs(det[0]), 10.0);
  const long double value = det[0] * std::pow(10.0L, static_cast<long double>(det[1]));
  EXPECT_NEAR(static_cast<double>(value / expected), 1.0, relTol);
}

// ---------------------------------------------------------------------------

TEST(LinpackTest, DgefaRebuildsPLUAndDgeslDgediSolveAndInvert) {
  for (int n : {1, 2, 5, 17, 40}) {
    const Mat kinds[] = {Random(n, n, 11u * n), Band(n, 2, 3, n), Band(n, 1, 1, 2u * n), Hilbert(n),
                         Random(n, n, 5u * n, std::max(1, n / 2))};
    for (int kind = 0; kind < 5; ++kind) {
      const Mat& a = kinds[kind];
      const bool singular = kind == 4 && n > 1;
      Mat f = a;
      std::vector<int> ipvt(n, -1);
      const int info = Linpack::Dgefa(f.data(), f.ld, n, ipvt.data());
      // Undo the elimination on U; the multipliers are kept negated.
      Mat m = UpperPart(f);
      for (int k = n - 2; k >= 0; --k) {
        for (int i = k + 1; i < n; ++i) {
          for (int j = 0; j < n; ++j)
            m(i, j) -= f(i, k) * m(k, j);
        }
        for (int j = 0; j < n; ++j)
          std::swap(m(k, j), m(ipvt[k] - 1, j));
      }
      EXPECT_LE(MaxDiff(m, a), 8.0 * n * kEps * Norm1(a)) << "kind " << kind << " n " << n;
      EXPECT_EQ(ipvt[n - 1], n);
      if (kind == 3 && n > 12) continue;  // Hilbert: singular to working precision
      Vec det(2), work(n);
      if (singular) {
        // A zero pivot, or one lost in rounding, and a determinant to match.
        double smallest = std::fabs(f(0, 0));
        for (int k = 1; k < n; ++k)
          smallest = std::min(smallest, std::fabs(f(k, k)));
        EXPECT_TRUE(info > 0 || smallest < 1e-12 * Norm1(a));
        Linpack::Dgedi(f.data(), f.ld, n, ipvt.data(), det.data(), work.data(), 10);
        EXPECT_LT(std::fabs(det[0]) * std::pow(10.0, det[1]), 1e-9 * std::pow(Norm1(a), n));
        continue;
      }
      ASSERT_EQ(info, 0);
      // Forward errors within a small multiple of n eps cond, both jobs.
      const Exact exact = ExactOf(a);
      const double bound = 10.0 * n * kEps / exact.rcond;
      for (int job : {0, 1}) {
        EXPECT_LE(SolveError(job == 0 ? a : Transpose(a), 7u + n,
                             [&](Vec& b) {
                               Linpack::Dgesl(f.data(), f.ld, n, ipvt.data(), b.data(), job);
                             }),
                  bound);
      }
      Linpack::Dgedi(f.data(), f.ld, n, ipvt.data(), det.data(), work.data(), 11);
      ExpectDet(det, exact.det, std::min(0.1, 10.0 * bound));
      EXPECT_LE(MaxDiff(Multiply(f, a), Identity(n)), 5.0 * bound);
    }
  }
  // Order 1: info is n exactly when the element is zero.
  double zero = 0.0;
  int pivot = 0;
  EXPECT_EQ(Linpack::Dgefa(&zero, 1, 1, &pivot), 1);
}

TEST(LinpackTest, ReciprocalConditionIsWithinTenOfTheTruthOnHilbertMatrices) {
  for (int n = 2; n <= 10; ++n) {
    const Mat h = Hilbert(n);
    const double truth = ExactOf(h).rcond;
    Vec z(n);
    std::vector<int> pivots(n);
    auto within = [&](double rcond, double exact, const char* name) {
      EXPECT_GT(rcond, exact / 10.0) << name << " n " << n;
      EXPECT_LT(rcond, exact * 10.0) << name << " n " << n;
    };
    Mat f = h;
    within(Linpack::Dgeco(f.data(), f.ld, n, pivots.data(), z.data()), truth, "Dgeco");
    f = h;
    within(Linpack::Dpoco(f.data(), f.ld, n, z.data()), truth, "Dpoco");
    Vec ap = PackUpper(h);
    within(Linpack::Dppco(ap.data(), n, z.data()), truth, "Dppco");
    // The band forms with full bandwidth.
    Mat band(3 * n - 2, n), pband(n, n);
    for (int j = 0; j < n; ++j) {
      for (int i = 0; i < n; ++i) {
        band(2 * (n - 1) + i - j, j) = h(i, j);
        if (i <= j) pband(n - 1 + i - j, j) = h(i, j);
      }
    }
    within(Linpack::Dgbco(band.data(), band.ld, n, n - 1, n - 1, pivots.data(), z.data()), truth,
           "Dgbco");
    within(Linpack::Dpbco(pband.data(), pband.ld, n, n - 1, z.data()), truth, "Dpbco");
    // Dtrco on the (upper) Cholesky factor and its (lower) transpose.
    const Mat r = UpperPart(f);
    const double rTruth = ExactOf(r).rcond;
    for (int job : {1, 0}) {
      Mat t = job ? r : Transpose(r);
      within(Linpack::Dtrco(t.data(), t.ld, n, z.data(), job), rTruth, "Dtrco");
    }
  }
  // Exact singularity gives (nearly) 0.0, and a matrix that isn't positive
  // definite gives 0.0 in the routines that need one.
  Mat s = Random(6, 6, 3u, 3);
  Vec z(6);
  std::vector<int> pivots(6);
  EXPECT_LT(Linpack::Dgeco(s.data(), s.ld, 6, pivots.data(), z.data()), 1e-14);
  Mat indefinite = Identity(3);
  indefinite(1, 1) = -1.0;
  EXPECT_EQ(Linpack::Dpoco(indefinite.data(), indefinite.ld, 3, z.data()), 0.0);
}

TEST(LinpackTest, BandAndTridiagonalRoutinesMatchTheFullOnes) {
  // On a band matrix the band routines do the full ones' arithmetic on the
  // non-zeros alone: same pivots, same bits.
  const int shapes[][2] = {{0, 0}, {1, 2}, {2, 1}, {3, 0}, {0, 2}};
  for (int n : {1, 2, 7, 30}) {
    for (const auto& shape : shapes) {
      const int ml = std::min(shape[0], n - 1), mu = std::min(shape[1], n - 1);
      const Mat a = Band(n, ml, mu, 3u * n + ml);
      Mat f = a, abd(2 * ml + mu + 1, n);
      for (int j = 0; j < n; ++j) {
        for (int i = std::max(0, j - mu); i <= std::min(n - 1, j + ml); ++i)
          abd(i - j + ml + mu, j) = a(i, j);
      }
      std::vector<int> ipvt(n), bpvt(n);
      const int info = Linpack::Dgefa(f.data(), f.ld, n, ipvt.data());
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
    // Positive definite, half-bandwidth 2, against the full Cholesky.
    const int mb = std::min(2, n - 1);
    Mat spd = SymmetricFromUpper(Band(n, mb, mb, 9u + n));
    for (int j = 0; j < n; ++j)
      spd(j, j) = 5.0;
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

    // Tridiagonal solvers against the exact solution, odd and even orders;
    // Dptsl on a positive definite one.
    for (int order : {n, n + 1}) {
      Mat tri = Band(order, 1, 1, 2u * order), pt = tri;
      for (int i = 0; i < order; ++i) {
        pt(i, i) = 4.0 + std::cos(i);
        if (i + 1 < order) pt(i + 1, i) = pt(i, i + 1);
      }
      auto diagonals = [&](const Mat& t, int shift) {
        Vec out(order, 0.0);
        for (int i = 0; i < order; ++i) {
          if (i + shift >= 0 && i + shift < order) out[i] = t(i, i + shift);
        }
        return out;
      };
      EXPECT_LE(
          SolveError(tri, 4u,
                     [&](Vec& rhs) {
                       Vec sub = diagonals(tri, -1), d = diagonals(tri, 0), sup = diagonals(tri, 1);
                       EXPECT_EQ(
                           Linpack::Dgtsl(order, sub.data(), d.data(), sup.data(), rhs.data()), 0);
                     }),
          20.0 * order * kEps / ExactOf(tri).rcond);
      EXPECT_LE(SolveError(pt, 6u,
                           [&](Vec& rhs) {
                             Vec d = diagonals(pt, 0), off = diagonals(pt, 1);
                             Linpack::Dptsl(order, d.data(), off.data(), rhs.data());
                           }),
                20.0 * order * kEps);
    }
  }
  // A zero that elimination can't pivot away is reported by its row.
  Vec c = {0.0, 0.0, 0.0}, d = {0.0, 0.0, 1.0}, e = {0.0, 0.0, 0.0}, b = {1.0, 1.0, 1.0};
  EXPECT_EQ(Linpack::Dgtsl(3, c.data(), d.data(), e.data(), b.data()), 1);
}

TEST(LinpackTest, CholeskyRebuildsTheMatrixAndInvertsItFullAndPacked) {
  for (int n : {1, 3, 10, 30}) {
    for (bool hilbert : {false, true}) {
      if (hilbert && n > 10) continue;
      const Mat a = hilbert ? Hilbert(n) : Spd(n, 21u + n);
      Mat f = a;
      if (n > 1) f(1, 0) = 123.0;  // the strict lower triangle is never touched
      ASSERT_EQ(Linpack::Dpofa(f.data(), f.ld, n), 0);
      EXPECT_TRUE(n == 1 || f(1, 0) == 123.0);
      const Mat r = UpperPart(f);
      EXPECT_LE(MaxDiff(Multiply(Transpose(r), r), a), 4.0 * n * kEps * Norm1(a));
      const Exact exact = ExactOf(a);
      const double bound = 10.0 * n * kEps / exact.rcond;
      EXPECT_LE(SolveError(a, 3u, [&](Vec& b) { Linpack::Dposl(f.data(), f.ld, n, b.data()); }),
                bound);
      // The packed routines on the store of a QXSymMatrix: the same bits.
      QXSymMatrix s = internal::Packed(PackUpper(a));
      Vec& ap = s.AsVector();
      ASSERT_EQ(Linpack::Dppfa(ap.data(), n), 0);
      EXPECT_EQ(ap, PackUpper(f));
      Vec b(n, 1.0), c(n, 1.0), det(2), pdet(2);
      Linpack::Dposl(f.data(), f.ld, n, b.data());
      Linpack::Dppsl(ap.data(), n, c.data());
      EXPECT_EQ(b, c);
      EXPECT_EQ(Linpack::Dpodi(f.data(), f.ld, n, det.data(), 11), 0);
      EXPECT_EQ(Linpack::Dppdi(ap.data(), n, pdet.data(), 11), 0);
      ExpectDet(det, exact.det, std::min(0.1, 10.0 * bound));
      EXPECT_LE(MaxDiff(Multiply(SymmetricFromUpper(f), a), Identity(n)), 5.0 * bound);
      EXPECT_EQ(det, pdet);
      EXPECT_EQ(ap, PackUpper(f));
    }
  }
  // The order of the first leading minor that isn't positive definite; an
  // exactly zero pivot counts.
  Mat bad = Identity(4);
  bad(2, 2) = -1.0;
  EXPECT_EQ(Linpack::Dpofa(bad.data(), bad.ld, 4), 3);
  Mat ones(2, 2);
  ones.a.assign(ones.a.size(), 1.0);
  EXPECT_EQ(Linpack::Dpofa(ones.data(), ones.ld, 2), 2);
}

// Rebuilds A = U D trans(U) from the output of DSIFA: starting from D, the
// steps are undone from the first pivot block up to the last.
Mat RebuildUDU(const Mat& f, const std::vector<int>& kpvt) {
  const int n = f.n;
  std::vector<std::pair<int, int>> blocks;  // (last row, size)
  for (int k = n - 1; k >= 0; k -= blocks.back().second)
    blocks.emplace_back(k, kpvt[k] < 0 ? 2 : 1);
  Mat m(n, n);
  for (const auto& block : blocks) {
    const int k = block.first;
    for (int i = k - block.second + 1; i <= k; ++i) {
      for (int j = k - block.second + 1; j <= k; ++j)
        m(i, j) = f(std::min(i, j), std::max(i, j));
    }
  }
  for (auto it = blocks.rbegin(); it != blocks.rend(); ++it) {
    const int k = it->first, first = k - it->second + 1;
    // M = E^-1 M E^-T, E holding the block's multipliers above it.
    Mat e = Identity(n);
    for (int c = first; c <= k; ++c) {
      for (int j = 0; j < first; ++j)
        e(j, c) = -f(j, c);
    }
    m = Multiply(Multiply(e, m), Transpose(e));
    const int kp = std::abs(kpvt[k]) - 1;
    for (int j = 0; j < n; ++j)
      std::swap(m(first, j), m(kp, j));
    for (int i = 0; i < n; ++i)
      std::swap(m(i, first), m(i, kp));
  }
  return m;
}

TEST(LinpackTest, SymmetricIndefiniteRebuildsUDUFullAndPacked) {
  // Known spectra of mixed signs, and a zero diagonal that forces 2 by 2
  // pivots.
  std::vector<Vec> spectra = {{2.0}, {-1.0, 3.0}, {5.0, -4.0, 3.0, -2.0, 1.0, -0.5, 0.25}, {}};
  for (int i = 0; i < 25; ++i)
    spectra.back().push_back((i % 3 == 0 ? -1.0 : 1.0) * (1.0 + i));
  std::vector<Mat> matrices;
  for (std::size_t s = 0; s < spectra.size(); ++s)
    matrices.push_back(WithSpectrum(spectra[s], 31u + s));
  Mat swap2(4, 4);  // [0 1; 1 0] twice: no 1 by 1 pivot will do
  swap2(0, 1) = swap2(1, 0) = swap2(2, 3) = swap2(3, 2) = 1.0;
  matrices.push_back(swap2);
  spectra.push_back({1.0, 1.0, -1.0, -1.0});
  for (std::size_t s = 0; s < matrices.size(); ++s) {
    const Mat& a = matrices[s];
    const int n = a.n;
    Mat f = a;
    Vec z(n), zp(n);
    std::vector<int> kpvt(n), kpvtp(n);
    const Exact exact = ExactOf(a);
    const double rcond = Linpack::Dsico(f.data(), f.ld, n, kpvt.data(), z.data());
    EXPECT_GT(rcond, exact.rcond / 10.0);
    EXPECT_LT(rcond, exact.rcond * 10.0);
    EXPECT_LE(MaxDiff(RebuildUDU(f, kpvt), a), 20.0 * n * kEps * Norm1(a)) << "matrix " << s;
    // The packed form on a QXSymMatrix's store: the same bits throughout.
    QXSymMatrix packed = internal::Packed(PackUpper(a));
    Vec& ap = packed.AsVector();
    EXPECT_EQ(Linpack::Dspco(ap.data(), n, kpvtp.data(), zp.data()), rcond);
    EXPECT_EQ(kpvtp, kpvt);
    EXPECT_EQ(ap, PackUpper(f));
    Vec pb;
    const double bound = 20.0 * n * kEps / exact.rcond;
    EXPECT_LE(SolveError(a, 8u,
                         [&](Vec& b) {
                           pb = b;
                           Linpack::Dsisl(f.data(), f.ld, n, kpvt.data(), b.data());
                           Linpack::Dspsl(ap.data(), n, kpvtp.data(), pb.data());
                           EXPECT_EQ(pb, b);
                         }),
              bound);
    Vec det(2), pdet(2), work(n);
    int inert[3] = {-1, -1, -1}, pinert[3];
    Linpack::Dsidi(f.data(), f.ld, n, kpvt.data(), det.data(), inert, work.data(), 111);
    Linpack::Dspdi(ap.data(), n, kpvtp.data(), pdet.data(), pinert, work.data(), 111);
    const Vec& lambda = spectra[s];
    long double product = 1.0L;
    for (double l : lambda)
      product *= l;
    const auto positive =
        std::count_if(lambda.begin(), lambda.end(), [](double l) { return l > 0; });
    EXPECT_EQ(std::vector<long>(inert, inert + 3), (std::vector<long>{positive, n - positive, 0}));
    EXPECT_TRUE(std::equal(inert, inert + 3, pinert));
    ExpectDet(det, product, 1e-10);
    EXPECT_EQ(det, pdet);
    EXPECT_LE(MaxDiff(Multiply(SymmetricFromUpper(f), a), Identity(n)), 5.0 * bound);
    EXPECT_EQ(ap, PackUpper(f));
  }
  // A zero column is reported.
  Mat z = Identity(3);
  z(1, 1) = 0.0;
  std::vector<int> kpvt(3);
  EXPECT_EQ(Linpack::Dsifa(z.data(), z.ld, 3, kpvt.data()), 2);
}

TEST(LinpackTest, TriangularSolvesInversesAndZeroDiagonals) {
  for (int n : {1, 6, 20}) {
    Mat upper = UpperPart(Random(n, n, 41u + n));
    long double product = 1.0L;
    for (int i = 0; i < n; ++i) {
      upper(i, i) = 2.0 + std::fabs(upper(i, i));
      product *= upper(i, i);
    }
    const Mat lower = Transpose(upper);
    for (int job : {0, 1, 10, 11}) {
      const Mat& t = job % 10 ? upper : lower;
      const Mat system = job / 10 ? Transpose(t) : t;
      Mat work = t;
      EXPECT_LE(SolveError(system, 2u,
                           [&](Vec& b) {
                             EXPECT_EQ(Linpack::Dtrsl(work.data(), work.ld, n, b.data(), job), 0);
                           }),
                10.0 * n * kEps / ExactOf(system).rcond);
    }
    for (bool isLower : {false, true}) {
      const Mat original = isLower ? lower : upper;
      Mat t = original;
      Vec det(2);
      EXPECT_EQ(Linpack::Dtrdi(t.data(), t.ld, n, det.data(), isLower ? 110 : 111), 0);
      ExpectDet(det, product, 1e-13);
      EXPECT_LE(MaxDiff(Multiply(t, original), Identity(n)), 20.0 * n * kEps);
    }
  }
  // A zero on the diagonal: its index, and b left as it was.
  Mat t = Identity(3);
  t(1, 1) = 0.0;
  Vec b = {1.0, 2.0, 3.0}, det(2);
  EXPECT_EQ(Linpack::Dtrsl(t.data(), t.ld, 3, b.data(), 1), 2);
  EXPECT_EQ(b, (Vec{1.0, 2.0, 3.0}));
  EXPECT_EQ(Linpack::Dtrdi(t.data(), t.ld, 3, det.data(), 111), 2);
  EXPECT_EQ(det[0], 0.0);
}

TEST(LinpackTest, DqrdcRebuildsXAndDqrslSolvesLeastSquares) {
  const int shapes[][3] = {{1, 1, 1}, {6, 4, 4}, {30, 12, 12}, {4, 6, 4}, {20, 8, 3}};
  for (const auto& shape : shapes) {
    const int n = shape[0], p = shape[1], rank = shape[2], k = std::min(n, p);
    const Mat x = Random(n, p, 51u + n + p, rank);
    for (int job : {0, 1}) {
      Mat f = x;
      Vec qraux(p), work(p);
      std::vector<int> jpvt(p, 0);
      if (job && p > 2) {
        jpvt[2] = 1;   // an initial column goes first
        jpvt[0] = -1;  // and a final one last
      }
      EXPECT_EQ(Linpack::Dqrdc(f.data(), f.ld, n, p, qraux.data(), jpvt.data(), work.data(), job),
                0);
      EXPECT_TRUE(!job || p <= 2 || (jpvt[0] == 3 && jpvt[p - 1] == 1));
      auto column = [&](int j) { return job ? jpvt[j] - 1 : j; };
      // Q times each column of R gives the (permuted) column of x.
      double worst = 0.0;
      for (int j = 0; j < p; ++j) {
        Vec r(n, 0.0), qr(n);
        for (int i = 0; i <= std::min(j, n - 1); ++i)
          r[i] = f(i, j);
        Linpack::Dqrsl(f.data(), f.ld, n, k, qraux.data(), r.data(), qr.data(), nullptr, nullptr,
                       nullptr, nullptr, 10000);
        for (int i = 0; i < n; ++i)
          worst = std::max(worst, std::fabs(qr[i] - x(i, column(j))));
      }
      EXPECT_LE(worst, 10.0 * n * kEps * Norm1(x));
      if (rank < k) {
        // Pivoting brings the rank deficiency to the end of R's diagonal.
        EXPECT_TRUE(!job || std::fabs(f(rank, rank)) < 1e-12 * std::fabs(f(0, 0)));
        continue;
      }
      // Least squares on the first k columns: y = xb + rsd, xb = Xk b, and
      // rsd orthogonal to those columns.
      Vec y(n), qty(n), b(k), rsd(n), xb(n);
      for (int i = 0; i < n; ++i)
        y[i] = std::cos(3.0 * i);
      EXPECT_EQ(Linpack::Dqrsl(f.data(), f.ld, n, k, qraux.data(), y.data(), nullptr, qty.data(),
                               b.data(), rsd.data(), xb.data(), 111),
                0);
      for (int i = 0; i < n; ++i) {
        double fit = 0.0;
        for (int j = 0; j < k; ++j)
          fit += x(i, column(j)) * b[j];
        EXPECT_NEAR(xb[i] + rsd[i], y[i], 10.0 * n * kEps);
        EXPECT_NEAR(fit, xb[i], 1e-10);
      }
      for (int j = 0; j < k; ++j) {
        double dot = 0.0;
        for (int i = 0; i < n; ++i)
          dot += x(i, column(j)) * rsd[i];
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
    const int mm = std::max(n + 1, p), k = std::min(n, p);
    Mat x = Random(n, p, 61u + n * p, rank);
    if (n == 6) {
      x = Mat(n, p);
      for (int i = 0; i < n; ++i) {
        x(i, i) = i + 1.0;
        if (i + 1 < p) x(i, i + 1) = 0.5;
      }
      const int zero = bidiagonal++ == 0 ? 2 : 5;
      x(zero, zero) = 0.0;
    }
    Vec valuesOnly;
    for (int job : {0, 11, 21}) {
      const int ncu = job == 21 ? k : n;
      Mat f = x, u(n, ncu), v(p, p);
      Vec s(mm), e(mm), work(n);
      ASSERT_EQ(Linpack::Dsvdc(f.data(), f.ld, n, p, s.data(), e.data(), u.data(), u.ld, v.data(),
                               v.ld, work.data(), job),
                0);
      s.resize(k);
      EXPECT_TRUE(std::is_sorted(s.rbegin(), s.rend()));
      EXPECT_GE(s[k - 1], 0.0);
      for (int i = rank; i < k; ++i)
        EXPECT_LT(s[i], 1e-13 * s[0]);
      if (job == 0) {
        valuesOnly = s;
        continue;
      }
      // The vectors leave the rotations of s and e as they were.
      EXPECT_EQ(s, valuesOnly);
      Mat sv(ncu, p);
      for (int i = 0; i < k; ++i) {
        for (int j = 0; j < p; ++j)
          sv(i, j) = s[i] * v(j, i);
      }
      const double tol = 20.0 * std::max(n, p) * kEps;
      EXPECT_LE(MaxDiff(Multiply(Transpose(u), u), Identity(ncu)), tol);
      EXPECT_LE(MaxDiff(Multiply(Transpose(v), v), Identity(p)), tol);
      EXPECT_LE(MaxDiff(Multiply(u, sv), x), tol * s[0]);
    }
  }
}

TEST(LinpackTest, PivotedCholeskyUpdateDowndateAndExchange) {
  // A positive semidefinite matrix of rank 3: the pivoted factor stops at
  // the rank (or past it, on tiny pivots left by rounding) and rebuilds
  // P^T A P in its leading rows.
  const int p = 8;
  const Mat g = Random(3, p, 71u);
  const Mat a = Multiply(Transpose(g), g);
  Mat f = a;
  Vec work(p);
  std::vector<int> jpvt(p, 0);
  jpvt[4] = 1;   // column 5 goes first
  jpvt[1] = -1;  // and column 2 last
  const int info = Linpack::Dchdc(f.data(), f.ld, p, work.data(), jpvt.data(), 1);
  EXPECT_TRUE(info == 3 || (info > 3 && f(3, 3) < 1e-6 * f(0, 0))) << info;
  EXPECT_EQ(jpvt[0], 5);
  EXPECT_EQ(jpvt[p - 1], 2);
  for (int i = 0; i < 3; ++i) {
    for (int j = i; j < p; ++j) {
      double sum = 0.0;
      for (int t = 0; t <= i; ++t)
        sum += f(t, i) * f(t, j);
      EXPECT_NEAR(sum, a(jpvt[i] - 1, jpvt[j] - 1), 20.0 * p * kEps * Norm1(a));
    }
  }

  // Update with a row, then downdate it: R^T R follows, and so do z and rho.
  const int n = 6;
  const Mat spd = Spd(n, 81u);
  Mat r = spd;
  ASSERT_EQ(Linpack::Dpofa(r.data(), r.ld, n), 0);
  r = UpperPart(r);
  const Mat r0 = r;
  const Mat xrow = Random(n, 1, 82u);
  Vec x(xrow.a.begin(), xrow.a.begin() + n), c(n), s(n), zcol(n, 0.5), y = {2.0}, rho = {1.5};
  Mat grown = Multiply(xrow, Transpose(xrow));
  for (std::size_t k = 0; k < grown.a.size(); ++k)
    grown.a[k] += spd.a[k];
  auto gram = [](const Mat& m) { return Multiply(Transpose(UpperPart(m)), UpperPart(m)); };
  Linpack::Dchud(r.data(), r.ld, n, x.data(), zcol.data(), n, 1, y.data(), rho.data(), c.data(),
                 s.data());
  EXPECT_LE(MaxDiff(gram(r), grown), 20.0 * n * kEps);
  EXPECT_GT(rho[0], 1.5);
  EXPECT_EQ(Linpack::Dchdd(r.data(), r.ld, n, x.data(), zcol.data(), n, 1, y.data(), rho.data(),
                           c.data(), s.data()),
            0);
  EXPECT_LE(MaxDiff(gram(r), spd), 50.0 * n * kEps);
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

  // Circular shifts of columns 2..5: R^T R becomes E^T A E, and the
  // rotations applied to z keep its length.
  for (int job : {1, 2}) {
    Mat rr = r0;
    Vec zz(n, 1.0);
    Linpack::Dchex(rr.data(), rr.ld, n, 2, 5, zz.data(), n, 1, c.data(), s.data(), job);
    std::vector<int> order = {0, 1, 2, 3, 4, 5};
    std::rotate(order.begin() + 1, order.begin() + (job == 1 ? 4 : 2), order.begin() + 5);
    const Mat back = gram(rr);
    for (int i = 0; i < n; ++i) {
      for (int j = 0; j < n; ++j)
        EXPECT_NEAR(back(i, j), spd(order[i], order[j]), 20.0 * n * kEps);
    }
    EXPECT_NEAR(std::inner_product(zz.begin(), zz.end(), zz.begin(), 0.0), n, 1e-12);
  }
}

}  // namespace
}  // namespace QXMath_850
