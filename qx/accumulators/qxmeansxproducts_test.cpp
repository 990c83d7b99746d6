#include "qx/accumulators/qxmeansxproducts.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "qx/accumulators/qxmeansxproddata.h"
#include "qx/accumulators/qxprovmeans.h"
#include "qx/foundation/internal/testutil.h"
#include "qx/matrices/qxbitset.h"
#include "qx/matrices/qxrectmatrix.h"
#include "qx/matrices/qxsymmatrix.h"

namespace QXMath_850 {
namespace {

using Vec = std::vector<double>;

// Cases of nVars variables and weightCols weight columns. Variable 0 is the
// constant 0.1 (not a sum of powers of two), the others sit far from zero so
// that the centring matters.
QXRectMatrix RandomCases(int rows, int nVars, int weightCols, unsigned seed) {
  std::mt19937_64 engine(seed);
  std::normal_distribution<double> normal(0.0, 1.0);
  std::uniform_real_distribution<double> weight(0.25, 3.0);
  QXRectMatrix m(rows, nVars + weightCols, true);
  for (int r = 0; r < rows; ++r) {
    m.SetElem(r, 0, 0.1);
    for (int j = 1; j < nVars; ++j)
      m.SetElem(r, j, 1000.0 * j + (j + 1) * normal(engine));
    for (int c = 0; c < weightCols; ++c)
      m.SetElem(r, nVars + c, weight(engine));
  }
  return m;
}

double CaseWeight(const QXRectMatrix& m, int r, int nVars) {
  double w = 1.0;
  for (int c = nVars; c < m.GetNCols(); ++c)
    w *= m.GetElem(r, c);
  return w;
}

// Largest error of a's cross-products relative to sqrt(s_ii * s_jj), s
// being b or the given scale (the raw sums, for the one-pass path, whose
// rounding grows with them), floored for the rows of constant columns.
double XProdError(const QXSymMatrix& a, const QXSymMatrix& b, const QXSymMatrix* scale) {
  const QXSymMatrix& s = scale != nullptr ? *scale : b;
  double largest = 0.0, worst = 0.0;
  for (int i = 0; i < s.GetNRows(); ++i)
    largest = std::fmax(largest, std::fabs(s.GetElem(i, i)));
  for (int i = 0; i < b.GetNRows(); ++i) {
    for (int j = 0; j <= i; ++j) {
      const double size =
          std::fmax(std::sqrt(std::fabs(s.GetElem(i, i) * s.GetElem(j, j))), 1e-9 * largest);
      worst = std::fmax(worst, std::fabs(a.GetElem(i, j) - b.GetElem(i, j)) / size);
    }
  }
  return worst;
}

void ExpectSameResult(const QXMeansXProdData& a, const QXMeansXProdData& b, double tol,
                      const char* what, const QXSymMatrix* scale = nullptr) {
  EXPECT_NEAR(a.GetNCases(), b.GetNCases(), tol * b.GetNCases()) << what;
  ASSERT_EQ(a.GetMeans().size(), b.GetMeans().size()) << what;
  for (std::size_t j = 0; j < b.GetMeans().size(); ++j)
    EXPECT_NEAR(a.GetMeans()[j], b.GetMeans()[j], tol * std::fabs(b.GetMeans()[j])) << what;
  EXPECT_LT(XProdError(a.GetXProds(), b.GetXProds(), scale), tol) << what;
}

bool SameState(const QXMeansXProdData& a, const QXMeansXProdData& b) {
  return a.GetNVars() == b.GetNVars() && a.IsIntercept() == b.IsIntercept() &&
         a.GetNCases() == b.GetNCases() && a.GetMeans() == b.GetMeans() &&
         a.GetXProds().AsVectorConst() == b.GetXProds().AsVectorConst();
}

QXRectMatrix Rows(const QXRectMatrix& m, int first, int count) {
  QXRectMatrix block;
  block.CopyRows(m, first, count);
  return block;
}

// Two-pass blocks, one pass, case by case and merges in any grouping all
// give, to rounding, the result of one two-pass run over all the cases; a
// block of the wrong width changes nothing on either path. One weight column
// is a regression weight, two are both kinds.
TEST(QXMeansXProductsTest, EveryPathAgrees) {
  const int nVars = 4;
  QXMeansXProdData centred;
  for (int weightCols = 0; weightCols <= 2; ++weightCols) {
    for (bool intercept : {true, false}) {  // in this order: see `centred`
      SCOPED_TRACE(testing::Message() << weightCols << " weight columns, intercept " << intercept);
      const QXRectMatrix data = RandomCases(600, nVars, weightCols, 10u + weightCols);
      const QXMeansXProducts empty(nVars, intercept, weightCols > 1, weightCols > 0);
      QXMeansXProducts all(empty), blocks(empty), onePass(empty);
      std::vector<QXMeansXProducts> parts(3, empty);
      QXMeansXProducts raw(nVars, false, weightCols > 1, weightCols > 0);
      ASSERT_TRUE(all.Compute(data, 0) && raw.Compute(data, 0));  // raw: one-pass rounding
      // A constant column: its own value as the mean, exact zeros in its row.
      EXPECT_EQ(all.GetMeans()[0], 0.1);
      for (int j = 0; j < nVars && intercept; ++j)
        EXPECT_EQ(all.GetXProds().GetElem(0, j), 0.0);
      if (intercept) centred = all;

      onePass.StartUpdateOnePass();
      for (int b = 0; b < 3; ++b) {
        const QXRectMatrix block = Rows(data, 200 * b, 200);
        ASSERT_TRUE(blocks.Update(block, 0));
        ASSERT_TRUE(onePass.UpdateOnePass(block, 0));
        ASSERT_TRUE(parts[b].Compute(block, 0));
      }
      const QXRectMatrix wide = RandomCases(10, nVars + 1, weightCols, 9u);
      const QXMeansXProducts held(blocks);
      EXPECT_FALSE(blocks.Compute(wide, 0));
      EXPECT_FALSE(blocks.Update(wide, 0));
      EXPECT_FALSE(onePass.UpdateOnePass(wide, 0));
      EXPECT_TRUE(SameState(blocks, held));
      onePass.FinishUpdateOnePass();
      ExpectSameResult(blocks, all, 1e-13, "blocks");
      // The one-pass finish is corrected whatever the intercept flag says.
      ExpectSameResult(onePass, centred, 1e-13, "one pass", &raw.GetXProds());

      QXProvMeans single(nVars, intercept);
      Vec x(nVars);
      for (int r = 0; r < data.GetNRows(); ++r) {
        for (int j = 0; j < nVars; ++j)
          x[j] = data.GetElem(r, j);
        ASSERT_TRUE(single.Update(x, CaseWeight(data, r, nVars)));
      }
      ExpectSameResult(single, all, 1e-12, "case by case");

      // The blocks above were pooled as (0 + 1) + 2; here (1 + 2) + 0, and a list.
      QXMeansXProdData right(parts[1]), listed;
      ASSERT_TRUE(right.Merge(parts[2]) && right.Merge(parts[0]));
      std::vector<QXMeansXProdData*> list = {&parts[2], nullptr, &parts[0], &parts[1]};
      ASSERT_TRUE(listed.Merge(list));
      ExpectSameResult(right, all, 1e-13, "(1 + 2) + 0");
      ExpectSameResult(listed, all, 1e-13, "list 2, 0, 1");

      // Update on a filled object is Compute of the block pooled with what
      // was held, bit for bit.
      QXMeansXProducts pooled(parts[1]), updated(parts[0]);
      ASSERT_TRUE(pooled.Merge(parts[0]));
      ASSERT_TRUE(updated.Update(Rows(data, 200, 200), 0));
      EXPECT_TRUE(SameState(updated, pooled));

      // The row limit: 0, negative or too large reads all; otherwise the
      // first rows only.
      for (int limit : {-3, 600, 5000}) {
        ASSERT_TRUE(updated.Compute(data, limit));
        EXPECT_TRUE(SameState(updated, all)) << limit;
      }
      ASSERT_TRUE(updated.Compute(data, 10));
      ASSERT_TRUE(pooled.Compute(Rows(data, 0, 10), 0));
      EXPECT_TRUE(SameState(updated, pooled));
    }
  }
  const std::string s = QXCommon_850::internal::CaptureDisplay(
      [] { QXMeansXProducts(3, true, false, true).Display(); });
  EXPECT_EQ(s.rfind("\nQXMeansXProducts display start\nQXMeansXProdData display start\n"
                    "Number of variables = 3\nIntercept indicator = ",
                    0),
            0u);
  EXPECT_EQ(s.substr(s.size() - 29), "\nQXMeansXProducts display end");
}

// Sweeps the predictors (all variables but the last) into the cross-products
// and returns the intercept followed by the slopes; refused rows get 0.
Vec Regress(const QXMeansXProdData& acc, double tol, QXBitSet& swept, double& rss) {
  QXSymMatrix a(acc.GetXProds());
  const int p = a.GetNRows() - 1;
  Vec diag, slopes;
  a.GetDiagonal(diag);
  swept = QXBitSet(p + 1);
  for (int k = 0; k < p; ++k)
    a.Sweep(k, tol, diag, swept, true);
  a.GetRegCoeffs(slopes, swept);
  rss = a.GetElem(p, p);
  double b0 = acc.GetMeans()[p];
  for (int j = 0; j < p; ++j)
    b0 -= slopes[j] * acc.GetMeans()[j];
  slopes.insert(slopes.begin(), acc.IsIntercept() ? b0 : 0.0);
  return slopes;
}

// A NIST StRD file: the certified values, and the rows of numbers after its
// last "Data:" line.
struct Strd {
  std::vector<Vec> rows;
  Vec certified;  // B0, B1, ... in order
  double residualSd = 0.0, mean = 0.0, sd = 0.0;
};

bool ReadStrd(const std::string& name, Strd& out) {
  std::ifstream in(std::string(QX_TEST_SHARED_DATA) + "/nist-strd/" + name);
  for (std::string line; std::getline(in, line);) {
    std::istringstream words(line);
    std::string first, second;
    words >> first >> second;
    const auto after = [&line](const char* key) {
      const std::size_t at = line.find(key);
      return at == std::string::npos ? 0.0 : std::strtod(line.c_str() + at + 5, nullptr);
    };
    if (first.size() > 1 && first[0] == 'B' && std::isdigit(static_cast<unsigned char>(first[1])))
      out.certified.push_back(std::strtod(second.c_str(), nullptr));
    if (first == "Standard" && second == "Deviation") out.residualSd = after("tion ");
    if (out.mean == 0.0) out.mean = after("ybar:");
    if (out.sd == 0.0) out.sd = after(" s:  ");
    if (first == "Data:") out.rows.clear();
    Vec row;
    std::istringstream numbers(line);
    for (double v; numbers >> v;)
      row.push_back(v);
    if (!row.empty() && first != "Data:") out.rows.push_back(row);
  }
  return !out.rows.empty();
}

// Log relative error: the number of correct significant digits, at most 15.
double Lre(double value, double certified) {
  const double err =
      certified == 0.0 ? std::fabs(value) : std::fabs(value - certified) / std::fabs(certified);
  return err == 0.0 ? 15.0 : std::fmin(15.0, -std::log10(err));
}

TEST(QXMeansXProductsTest, ReproducesTheNistStrdCertifiedValues) {
  // Means and standard deviations of values that differ in their last digits.
  for (const char* name : {"NumAcc1.dat", "NumAcc2.dat", "NumAcc3.dat", "NumAcc4.dat"}) {
    Strd f;
    if (!ReadStrd(name, f)) GTEST_SKIP() << "no NIST StRD data under " << QX_TEST_SHARED_DATA;
    const int n = static_cast<int>(f.rows.size());
    QXRectMatrix data(n, 1, true);
    for (int r = 0; r < n; ++r)
      data.SetElem(r, 0, f.rows[r][0]);
    QXMeansXProducts acc(1, true, false, false);
    ASSERT_TRUE(acc.Compute(data, 0));
    EXPECT_GE(Lre(acc.GetMeans()[0], f.mean), 13.0) << name;
    EXPECT_GE(Lre(std::sqrt(acc.GetXProds().GetElem(0, 0) / (n - 1)), f.sd), 8.0) << name;
  }

  // Linear regressions, as digits expected of the normal equations swept in
  // double precision; the Wampler polynomials are ill-conditioned on purpose.
  struct Case {
    const char* name;
    int degree;  // powers of the one x; 0 takes the x columns as they are
    bool intercept;
    double digits;
  };
  const Case cases[] = {{"Norris.dat", 1, true, 11},  {"Pontius.dat", 2, true, 10},
                        {"NoInt1.dat", 1, false, 13}, {"NoInt2.dat", 1, false, 13},
                        {"Longley.dat", 0, true, 11}, {"Wampler1.dat", 5, true, 6},
                        {"Wampler2.dat", 5, true, 9}, {"Wampler3.dat", 5, true, 6},
                        {"Wampler4.dat", 5, true, 6}, {"Wampler5.dat", 5, true, 6}};
  for (const Case& c : cases) {
    Strd f;
    ASSERT_TRUE(ReadStrd(c.name, f)) << c.name;
    const int n = static_cast<int>(f.rows.size());
    const int p = c.degree > 0 ? c.degree : static_cast<int>(f.rows[0].size()) - 1;
    // Predictors first, the response (the file's first column) last.
    QXRectMatrix data(n, p + 1, true);
    for (int r = 0; r < n; ++r) {
      for (int j = 0; j < p; ++j)
        data.SetElem(r, j, c.degree > 0 ? std::pow(f.rows[r][1], j + 1) : f.rows[r][j + 1]);
      data.SetElem(r, p, f.rows[r][0]);
    }
    QXMeansXProducts acc(p + 1, c.intercept, false, false);
    ASSERT_TRUE(acc.Compute(data, 0));
    QXBitSet swept;
    double rss = 0.0;
    Vec b = Regress(acc, 1e-15, swept, rss);
    ASSERT_EQ(swept.InSet(), p) << c.name;
    if (!c.intercept) b.erase(b.begin());
    ASSERT_EQ(b.size(), f.certified.size()) << c.name;
    for (std::size_t j = 0; j < b.size(); ++j)
      EXPECT_GE(Lre(b[j], f.certified[j]), c.digits) << c.name << " B" << j;
    if (f.residualSd > 0.0) {
      const double sd = std::sqrt(std::fmax(rss, 0.0) / (n - static_cast<double>(b.size())));
      EXPECT_GE(Lre(sd, f.residualSd), c.digits - 1) << c.name;
    }
  }
}

}  // namespace
}  // namespace QXMath_850
