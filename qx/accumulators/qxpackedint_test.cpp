#include "qx/accumulators/qxpackedint.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "qx/accumulators/qxhashkey.h"
#include "qx/foundation/internal/testutil.h"

namespace QXMath_850 {
namespace {

using IVec = std::vector<int>;

// What unpacking the packed sequence gives back.
IVec RoundTrip(const QXPackedInt& p, const IVec& values) {
  IVec packed, back;
  EXPECT_TRUE(p.Pack(values, packed, true));
  EXPECT_EQ(packed.size(), static_cast<std::size_t>(p.GetNUnits()));
  EXPECT_TRUE(p.Unpack(back, packed));
  return back;
}

TEST(QXPackedIntTest, PacksAsMixedRadixDigitsAndRefusesWhatDoesNotFit) {
  QXPackedInt p(3, 1, {2, 3, 4});
  IVec packed, values{9, 9, 9, 9};
  ASSERT_TRUE(p.Pack({1, 1, 1}, packed, true));
  EXPECT_EQ(packed, IVec{0});
  ASSERT_TRUE(p.Pack({2, 3, 4}, packed, true));
  EXPECT_EQ(packed, IVec{23});  // 1 + 2*2 + 3*6
  ASSERT_TRUE(p.Unpack(values, packed));
  EXPECT_EQ(values, (IVec{2, 3, 4, 9}));  // a longer vector keeps its tail
  // One past the range, one below it, a short sequence, too few units.
  EXPECT_FALSE(p.Pack({3, 1, 1}, packed, true) || p.Pack({1, 0, 1}, packed, true) ||
               p.Pack({1, 1}, packed, false) || p.Unpack(values, IVec{}));
  EXPECT_EQ(values, (IVec{2, 3, 4, 9}));
  EXPECT_EQ(p.GetNDiffVal(2), 4);
  EXPECT_EQ(p.GetNDiffVal(3) + p.GetNDiffVal(-1), -2);
  const std::string text = QXCommon_850::internal::CaptureDisplay([&] { p.Display(); });
  EXPECT_NE(text.find("The number of packed storage units = 1\n"), std::string::npos);
  EXPECT_NE(text.find("The vector of products (size = 3)\n  2 6 24\n"), std::string::npos);
  for (const IVec& bad : {IVec{2, 0, 4}, IVec{2, 3}}) {
    EXPECT_FALSE(p.SetForSequence(3, 1, bad));
    EXPECT_EQ(p.GetSeqSize() + p.GetNDiffVal(0), -1);
  }
  EXPECT_FALSE(p.SetForSequence(0, 1, {2}));
}

TEST(QXPackedIntTest, UnitsCloseAtTheLargestKeyElementAndEverySequenceComesBack) {
  ASSERT_EQ(QXHashKey::GetElementUpperBound(), 9377657);
  // 1663 * 5639 is the bound itself: the largest pair that shares a unit.
  const std::vector<std::pair<IVec, int>> layouts = {{{1663, 5639}, 1}, {{1663, 5640}, 2},
                                                     {{3062, 3062}, 1}, {{3063, 3063}, 2},
                                                     {{9377657}, 1},    {{2, INT_MAX, 2}, 3}};
  for (const auto& [nDiff, units] : layouts) {
    const int size = static_cast<int>(nDiff.size());
    QXPackedInt p(size, -5, nDiff);
    EXPECT_EQ(p.GetNUnits(), units) << nDiff[size - 1];
    IVec top(size), bottom(size, -5);
    for (int i = 0; i < size; ++i)
      top[i] = -5 + nDiff[i] - 1;
    EXPECT_EQ(RoundTrip(p, top), top);
    EXPECT_EQ(RoundTrip(p, bottom), bottom);
  }
  // Random layouts up to 60 positions, numbers of values log-uniform from 1
  // to beyond the bound, values anywhere in their ranges.
  std::mt19937 engine(3);
  std::uniform_real_distribution<double> logRange(0.0, std::log(2.0e7));
  for (int trial = 0; trial < 400; ++trial) {
    const int size = 1 + trial % 60;
    IVec nDiff(size), values(size);
    for (int i = 0; i < size; ++i) {
      nDiff[i] = static_cast<int>(std::exp(logRange(engine)));
      values[i] = 7 + static_cast<int>(engine() % static_cast<unsigned>(nDiff[i]));
    }
    EXPECT_EQ(RoundTrip(QXPackedInt(size, 7, nDiff), values), values) << "trial " << trial;
  }
  // A key offset lowers the bound, and with it what a unit may hold.
  QXHashKey::SetElementOffset(9377657 - 100);
  EXPECT_EQ(QXPackedInt(2, 0, {10, 10}).GetNUnits(), 1);
  EXPECT_EQ(QXPackedInt(2, 0, {10, 11}).GetNUnits(), 2);
  QXHashKey::SetElementOffset(0);
}

TEST(QXHashKeyTest, HashOfOffsetElementsTimesPrimesAndOrderWithoutIt) {
  const int* primes = QXHashKey::PRIME_FACTOR;
  // 49 ascending odd primes from 3 to 229 are all of them.
  EXPECT_EQ(primes[0] + primes[48], 3 + 229);
  for (int i = 0; i < 49; ++i) {
    EXPECT_TRUE(i == 0 || primes[i - 1] < primes[i]);
    for (int f = 2; f * f <= primes[i]; ++f)
      EXPECT_NE(primes[i] % f, 0) << primes[i];
  }
  QXHashKey a(3);
  EXPECT_EQ(a.GetHash(), 0u);
  a.SetElement(2, 3);
  a.SetElement(0, 1);
  a.SetElement(1, 2);
  EXPECT_EQ(a.GetHash(), (1u * 3) ^ (2u * 5) ^ (3u * 7));
  EXPECT_FALSE(a.SetElement(3, 1));
  // Position 49 takes the first prime again, and products wrap unsigned.
  QXHashKey wide(50);
  wide.SetElement(0, 1);
  wide.SetElement(49, 1);
  EXPECT_EQ(wide.GetHash(), 0u);
  wide.SetElement(48, INT_MAX);
  EXPECT_EQ(wide.GetHash(), static_cast<unsigned>(INT_MAX) * 229u);
  QXHashKey::SetElementOffset(1);
  EXPECT_EQ(QXHashKey(2).GetHash(), 3u ^ 5u);
  EXPECT_EQ(QXHashKey::GetElementUpperBound(), 9377656);
  QXHashKey::SetElementOffset(INT_MIN);
  EXPECT_EQ(QXHashKey::GetElementUpperBound(), INT_MAX);
  QXHashKey::SetElementOffset(0);

  QXHashKey b(a), c(5), d;
  c = a;
  d = a;
  const QXHashKey& alias = c;
  c = alias;  // one array: nothing to do
  for (const QXHashKey* k : {&b, &c, &d})
    EXPECT_TRUE(*k == a && k->GetHash() == a.GetHash());
  b.SetElement(1, 0);
  EXPECT_FALSE(b == a);
  EXPECT_EQ(a.GetElement(1), 2);  // the copy has its own elements
  EXPECT_TRUE(QXHashKey(2) < a);  // shorter first, whatever the elements
  EXPECT_TRUE(b < a && !(a < b) && !(a < a));
  EXPECT_FALSE(QXHashKey() < QXHashKey());
  EXPECT_EQ(QXCommon_850::internal::CaptureDisplay([&] { b.Display(); }), "\n\t Key:   1  0  3");
}

}  // namespace
}  // namespace QXMath_850
