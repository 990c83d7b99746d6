#include "qx/accumulators/qxmeansxproddata.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "qx/foundation/internal/testutil.h"

namespace QXMath_850 {
namespace {

using Vec = std::vector<double>;

bool SameState(const QXMeansXProdData& a, const QXMeansXProdData& b) {
  return a.GetNVars() == b.GetNVars() && a.IsIntercept() == b.IsIntercept() &&
         a.GetNCases() == b.GetNCases() && a.GetMeans() == b.GetMeans() &&
         a.GetXProds().AsVectorConst() == b.GetXProds().AsVectorConst();
}

// The case and pooling steps as they read, one element at a time in storage
// order: the class must give exactly these bits.
struct Steps {
  bool intercept;
  double w = 0.0;
  Vec m, s;  // means, and the packed lower triangle of the cross-products

  void Outer(const Vec& x, double f) {
    std::size_t k = 0;
    for (std::size_t i = 0; i < m.size(); ++i) {
      const double g = (intercept ? x[i] - m[i] : x[i]) * f;
      for (std::size_t j = 0; j <= i; ++j)
        s[k++] += (intercept ? x[j] - m[j] : x[j]) * g;
    }
  }
  void Add(const Vec& x, double v) {
    const double n = w + v;
    Outer(x, intercept ? v * w / n : v);
    for (std::size_t i = 0; i < m.size(); ++i)
      m[i] += (x[i] - m[i]) * (v / n);
    w = n;
  }
  void Delete(const Vec& x, double v) {
    const double n = w - v;
    for (std::size_t i = 0; i < m.size(); ++i)
      m[i] = w / n * m[i] + -v / n * x[i];
    Outer(x, intercept ? n * -v / w : -v);
    w = n;
  }
  void Merge(const Steps& o) {
    const double total = w + o.w;
    Vec pooled(m.size());
    for (std::size_t i = 0; i < m.size(); ++i)
      pooled[i] = m[i] + (o.m[i] - m[i]) * (o.w / total);
    std::size_t k = 0;
    for (std::size_t i = 0; i < m.size(); ++i) {
      for (std::size_t j = 0; j <= i; ++j, ++k)
        s[k] += intercept ? (pooled[j] - m[j]) * (w * (pooled[i] - m[i])) + o.s[k] +
                                (pooled[j] - o.m[j]) * (o.w * (pooled[i] - o.m[i]))
                          : o.s[k];
    }
    m = pooled;
    w = total;
  }
};

TEST(QXMeansXProdDataTest, CasesAndMergesFollowTheirStepsBitForBit) {
  std::mt19937_64 engine(3u);
  std::uniform_real_distribution<double> value(95.0, 105.0), weight(0.5, 2.0);
  for (bool intercept : {true, false}) {
    QXMeansXProdData acc(4, intercept), other(4, intercept);
    Steps steps{intercept, 0.0, Vec(4, 0.0), Vec(10, 0.0)}, otherSteps = steps;
    std::vector<Vec> cases;
    for (int c = 0; c < 30; ++c) {
      Vec x(4);
      for (double& v : x)
        v = value(engine);
      const double w = weight(engine);
      (c % 3 == 0 ? other : acc).AddCase(x, w);
      (c % 3 == 0 ? otherSteps : steps).Add(x, w);
      if (c % 3 == 1) cases.push_back(x);
    }
    for (std::size_t c = 0; c < cases.size(); c += 2) {
      acc.DeleteCase(cases[c], 0.75);
      steps.Delete(cases[c], 0.75);
    }
    ASSERT_TRUE(acc.Merge(other));
    steps.Merge(otherSteps);
    EXPECT_EQ(acc.GetNCases(), steps.w);
    EXPECT_EQ(acc.GetMeans(), steps.m);
    EXPECT_EQ(acc.GetXProds().AsVectorConst(), steps.s);
  }
}

TEST(QXMeansXProdDataTest, ShapesClearsAndRefusals) {
  QXMeansXProdData acc(3, true);
  acc.AddCase({1.0, 2.0, 4.0}, 2.0);
  acc.AddCase({3.0, 2.0, 0.0, 7.0}, 1.0);  // a longer case: its tail is ignored
  acc.AddCase({1.0}, 1.0);                 // a shorter one: nothing at all
  EXPECT_EQ(acc.GetNCases(), 3.0);
  acc.SetIntercept(false);  // the flag alone; nothing is converted
  EXPECT_EQ(acc.GetNCases(), 3.0);
  acc.SetIntercept(true);
  const QXMeansXProdData held(acc);

  // Merges: shapes must agree; an object with no variables takes the other's
  // shape, intercept flag included; an empty one adds nothing.
  QXMeansXProdData none, adopt, noIntercept(3, false);
  EXPECT_FALSE(acc.Merge(noIntercept));
  EXPECT_FALSE(acc.Merge(QXMeansXProdData(2, true)));
  ASSERT_TRUE(acc.Merge(QXMeansXProdData(3, true)));
  EXPECT_TRUE(SameState(acc, held));
  ASSERT_TRUE(none.Merge(held));
  EXPECT_TRUE(SameState(none, held));
  ASSERT_TRUE(adopt.Merge(noIntercept));
  EXPECT_FALSE(adopt.IsIntercept());
  EXPECT_EQ(adopt.GetNVars(), 3);

  // A list stops at the first misfit and keeps what it merged before it.
  QXMeansXProdData pooled;
  const QXMeansXProdData small(2, true);
  EXPECT_FALSE(pooled.Merge(std::vector<const QXMeansXProdData*>{&held, &small, &held}));
  EXPECT_TRUE(SameState(pooled, held));
  EXPECT_FALSE(pooled.Merge(std::vector<const QXMeansXProdData*>{nullptr}));

  EXPECT_FALSE(acc.SetNVars(-1));
  EXPECT_TRUE(SameState(acc, held));
  ASSERT_TRUE(acc.SetNVars(2));
  EXPECT_TRUE(SameState(acc, QXMeansXProdData(2, true)));

  const std::string s = QXCommon_850::internal::CaptureDisplay([&] { held.Display(); });
  EXPECT_EQ(s.rfind("\nQXMeansXProdData display start\nNumber of variables = 3\n", 0), 0u);
  EXPECT_NE(s.find("\nMatrix of cross-products:\nQXSymMatrix display start"), std::string::npos);
  EXPECT_EQ(s.substr(s.size() - 29), "\nQXMeansXProdData display end");
}

}  // namespace
}  // namespace QXMath_850
