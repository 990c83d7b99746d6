#include "qx/accumulators/qxprovmeans.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace QXMath_850 {
namespace {

using Vec = std::vector<double>;

void ExpectSame(const QXProvMeans& a, const QXProvMeans& b, double tol) {
  EXPECT_EQ(a.GetNCases(), b.GetNCases());
  for (std::size_t k = 0; k < b.GetMeans().size(); ++k)
    EXPECT_NEAR(a.GetMeans()[k], b.GetMeans()[k], tol);
  for (std::size_t k = 0; k < b.GetXProds().AsVectorConst().size(); ++k)
    EXPECT_NEAR(a.GetXProds().AsVectorConst()[k], b.GetXProds().AsVectorConst()[k], tol);
}

// A signed weight adds a case or takes it out again; the last weight out
// leaves exact zeros, and what would leave a negative or NaN total is refused.
TEST(QXProvMeansTest, SignedWeightsAddAndTakeOutCases) {
  QXProvMeans prov(2, true), twoCases(2, true);
  const Vec a = {1.5, -2.0}, b = {0.1, 7.0}, c = {3.0, 3.3, 99.0};  // c's tail is ignored
  ASSERT_TRUE(prov.Update(a, 1.0) && prov.Update(b, 2.0) && prov.Update(c, 0.5));
  ASSERT_TRUE(twoCases.Update(a, 1.0) && twoCases.Update(b, 2.0));
  const QXProvMeans held(prov);
  EXPECT_FALSE(prov.Update(a, -5.0));
  EXPECT_FALSE(prov.Update(a, std::nan("")));
  EXPECT_FALSE(prov.Update({1.0}, 1.0));
  ASSERT_TRUE(prov.Update(a, 0.0));
  ExpectSame(prov, held, 0.0);
  ASSERT_TRUE(prov.Update(c, -0.5));
  ExpectSame(prov, twoCases, 1e-14 * 40.0);
  ASSERT_TRUE(prov.Update(a, -1.0));
  ASSERT_TRUE(prov.Update(b, -2.0));
  ExpectSame(prov, QXProvMeans(2, true), 0.0);
}

}  // namespace
}  // namespace QXMath_850
