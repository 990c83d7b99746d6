#include "qx/accumulators/qxpackedint.h"

#include <gtest/gtest.h>

#include <algorithm>
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

// Packs the sequence, checks every unit holds a valid key element, and
// returns what unpacking gives back.
IVec RoundTrip(const QXPackedInt& p, const IVec& values) {
  IVec packed, back;
  EXPECT_TRUE(p.Pack(values, packed, true));
  EXPECT_EQ(packed.size(), static_cast<std::size_t>(p.GetNUnits()));
  EXPECT_TRUE(p.Unpack(back, packed));
  return back;
}

TEST(QXPackedIntTest, SmallSequencePacksAsMixedRadixDigits) {
  QXPackedInt p(3, 1, {2, 3, 4});
  EXPECT_EQ(p.GetNUnits(), 1);
  IVec packed;
  ASSERT_TRUE(p.Pack({1, 1, 1}, packed, true));
  EXPECT_EQ(packed, IVec{0});
  ASSERT_TRUE(p.Pack({2, 3, 4}, packed, true));
  EXPECT_EQ(packed, IVec{23});  // 1 + 2*2 + 3*6
  IVec values{9, 9, 9, 9};
  ASSERT_TRUE(p.Unpack(values, packed));
  EXPECT_EQ(values, (IVec{2, 3, 4, 9}));  // a longer vector keeps its tail

  // Refusals: the value one past the range, one below it, a short sequence,
  // and a packed form with too few units (which leaves values alone).
  EXPECT_FALSE(p.Pack({3, 1, 1}, packed, true));
  EXPECT_FALSE(p.Pack({1, 0, 1}, packed, true));
  EXPECT_FALSE(p.Pack({1, 1}, packed, false));
  EXPECT_FALSE(p.Unpack(values, IVec{}));
  EXPECT_EQ(values, (IVec{2, 3, 4, 9}));

  EXPECT_EQ(p.GetNDiffVal(2), 4);
  EXPECT_EQ(p.GetNDiffVal(3), -1);
  EXPECT_EQ(p.GetNDiffVal(-1), -1);
  for (const IVec& bad : {IVec{2, 0, 4}, IVec{2, 3}}) {
    EXPECT_FALSE(p.SetForSequence(3, 1, bad));
    EXPECT_EQ(p.GetSeqSize(), 0);
    EXPECT_EQ(p.GetNDiffVal(0), -1);
  }
  EXPECT_FALSE(p.SetForSequence(0, 1, {2}));

  const std::string text = QXCommon_850::internal::CaptureDisplay([] {
    QXPackedInt(3, 1, {2, 3, 4}).Display();
  });
  EXPECT_NE(text.find("The number of packed storage units = 1"), std::string::npos);
  EXPECT_NE(text.find("The vector of products (size = 3)\n  2 6 24"), std::string::npos) << text;
}

TEST(QXPackedIntTest, UnitsCloseAtTheLargestKeyElementAndEverySequenceComesBack) {
  ASSERT_EQ(QXHashKey::GetElementUpperBound(), 9377657);
  // 1663 * 5639 is the bound itself: the largest pair that shares a unit.
  struct Layout {
    IVec nDiff;
    int units;
  };
  for (const Layout& l :
       {Layout{{1663, 5639}, 1}, Layout{{1663, 5640}, 2}, Layout{{3062, 3062}, 1},
        Layout{{3063, 3063}, 2}, Layout{{9377657}, 1}, Layout{{2, INT_MAX, 2}, 3}}) {
    const int size = static_cast<int>(l.nDiff.size());
    QXPackedInt p(size, -5, l.nDiff);
    EXPECT_EQ(p.GetNUnits(), l.units) << l.nDiff[1 % size];
    IVec top(size), bottom(size, -5);
    for (int i = 0; i < size; ++i)
      top[i] = -5 + l.nDiff[i] - 1;
    EXPECT_EQ(RoundTrip(p, top), top);
    EXPECT_EQ(RoundTrip(p, bottom), bottom);
  }

  // Random layouts: sizes up to 60, numbers of values from 1 to beyond the
  // bound (log-uniform), values anywhere in their ranges.
  std::mt19937 engine(3);
  std::uniform_real_distribution<double> logRange(0.0, std::log(2.0e7));
  for (int trial = 0; trial < 400; ++trial) {
    const int size = 1 + trial % 60;
    IVec nDiff(size), values(size);
    for (int i = 0; i < size; ++i) {
      nDiff[i] = static_cast<int>(std::exp(logRange(engine)));
      values[i] = 7 + static_cast<int>(engine() % static_cast<unsigned>(nDiff[i]));
    }
    QXPackedInt p(size, 7, nDiff);
    IVec packed;
    ASSERT_TRUE(p.Pack(values, packed, true));
    for (int unit : packed) {
      if (unit > QXHashKey::GetElementUpperBound()) {
        // Only a unit of a single position with more values than the bound.
        EXPECT_GT(*std::max_element(nDiff.begin(), nDiff.end()), 9377657);
      }
      EXPECT_GE(unit, 0);
    }
    EXPECT_EQ(RoundTrip(p, values), values) << "trial " << trial;
  }

  // A key offset lowers the bound, and with it what a unit may hold.
  QXHashKey::SetElementOffset(9377657 - 100);
  EXPECT_EQ(QXPackedInt(2, 0, {10, 10}).GetNUnits(), 1);
  EXPECT_EQ(QXPackedInt(2, 0, {10, 11}).GetNUnits(), 2);
  QXHashKey::SetElementOffset(0);
}

TEST(QXHashKeyTest, HashIsTheXorOfOffsetElementsTimesPrimes) {
  const int* primes = QXHashKey::PRIME_FACTOR;
  EXPECT_EQ(primes[0], 3);
  EXPECT_EQ(primes[48], 229);
  // 49 ascending odd primes between 3 and 229 are all of them.
  for (int i = 1; i < 49; ++i)
    EXPECT_LT(primes[i - 1], primes[i]);
  for (int i = 0; i < 49; ++i) {
    for (int f = 2; f * f <= primes[i]; ++f)
      EXPECT_NE(primes[i] % f, 0) << primes[i];
  }

  QXHashKey key(3);
  EXPECT_EQ(key.GetHash(), 0u);
  key.SetElement(2, 3);
  key.SetElement(0, 1);
  key.SetElement(1, 2);
  EXPECT_EQ(key.GetHash(), (1u * 3) ^ (2u * 5) ^ (3u * 7));
  EXPECT_FALSE(key.SetElement(3, 1));
  EXPECT_EQ(key.GetElement(3), 0);

  // Position 49 takes the first prime again, so it cancels position 0.
  QXHashKey wide(50);
  wide.SetElement(0, 1);
  wide.SetElement(49, 1);
  EXPECT_EQ(wide.GetHash(), 0u);
  // Unsigned arithmetic: the largest element wraps instead of overflowing.
  wide.SetElement(48, INT_MAX);
  EXPECT_EQ(wide.GetHash(), static_cast<unsigned>(INT_MAX) * 229u);

  QXHashKey::SetElementOffset(1);
  EXPECT_EQ(QXHashKey(2).GetHash(), 3u ^ 5u);
  EXPECT_EQ(QXHashKey::GetElementUpperBound(), 9377656);
  QXHashKey::SetElementOffset(INT_MIN);
  EXPECT_EQ(QXHashKey::GetElementUpperBound(), INT_MAX);
  QXHashKey::SetElementOffset(0);
  EXPECT_EQ(QXHashKey::GetElementOffset(), 0);
}

TEST(QXHashKeyTest, CopiesAreEqualAndOrderIgnoresTheHash) {
  QXHashKey a(3);
  a.SetElement(0, 4);
  a.SetElement(1, -2);
  QXHashKey b(a), c(5), d;
  c = a;
  d = a;
  for (const QXHashKey* k : {&b, &c, &d}) {
    EXPECT_TRUE(*k == a);
    EXPECT_EQ(k->GetHash(), a.GetHash());
  }
  c = c;
  EXPECT_TRUE(c == a);
  b.SetElement(1, 0);
  EXPECT_FALSE(b == a);
  EXPECT_EQ(a.GetElement(1), -2);  // the copy has its own elements

  EXPECT_TRUE(QXHashKey(2) < a);  // shorter first, whatever the elements
  EXPECT_FALSE(a < QXHashKey(2));
  EXPECT_TRUE(a < b);  // -2 before 0
  EXPECT_FALSE(b < a);
  EXPECT_FALSE(a < a);
  EXPECT_FALSE(QXHashKey() < QXHashKey());

  const std::string text = QXCommon_850::internal::CaptureDisplay([&] { a.Display(); });
  EXPECT_EQ(text, "\n\t Key:   4  -2  0");
}

}  // namespace
}  // namespace QXMath_850
