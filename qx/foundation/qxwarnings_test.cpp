#include "qx/foundation/qxwarnings.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace QXCommon_850 {
namespace {

TEST(QXWarningsTest, OnlyWarningsAreKeptOncePerList) {
  QXWarnings w;
  w.AddWarning(QXStatus(5, false), QXWarnings::Both);
  w.AddWarning(QXStatus(), QXWarnings::First);
  EXPECT_TRUE(w.GetWarnings(true).empty());
  EXPECT_TRUE(w.GetWarnings(false).empty());

  w.AddWarning(QXStatus(5, true), QXWarnings::First);
  w.AddWarning(QXStatus(5, true), QXWarnings::First);
  ASSERT_EQ(w.GetWarnings(true).size(), 1u);
  EXPECT_TRUE(w.GetWarnings(false).empty());

  // Same code, other data: a different warning.
  QXStatus withData(5, true);
  withData.SetDiscreteDatum(0, 3);
  w.AddWarning(withData, QXWarnings::First);
  EXPECT_EQ(w.GetWarnings(true).size(), 2u);

  // Both: only the list that lacks it grows; again changes nothing.
  w.AddWarning(QXStatus(5, true), QXWarnings::Both);
  EXPECT_EQ(w.GetWarnings(true).size(), 2u);
  EXPECT_EQ(w.GetWarnings(false).size(), 1u);
  w.AddWarning(QXStatus(5, true), QXWarnings::Both);
  EXPECT_EQ(w.GetWarnings(false).size(), 1u);

  // Any destination but 0 and 1 means both.
  w.AddWarning(QXStatus(6, true), static_cast<QXWarnings::Destination>(7));
  EXPECT_EQ(w.GetWarnings(true).size(), 3u);
  EXPECT_EQ(w.GetWarnings(false).size(), 2u);
  EXPECT_EQ(w.GetWarnings(true)[2].GetErrorCode(), 6);

  // The vector form goes to the first list, in order, dropping non-warnings.
  QXWarnings v;
  v.AddWarnings(std::vector<QXStatus>{QXStatus(9, true), QXStatus(8, false), QXStatus(7, true),
                                      QXStatus(9, true)});
  ASSERT_EQ(v.GetWarnings(true).size(), 2u);
  EXPECT_EQ(v.GetWarnings(true)[0].GetErrorCode(), 9);
  EXPECT_EQ(v.GetWarnings(true)[1].GetErrorCode(), 7);
}

TEST(QXWarningsTest, NaNDataDefeatDeduplication) {
  QXWarnings w;
  QXStatus s(5, true);
  s.SetScaleDatum(0, std::numeric_limits<double>::quiet_NaN());
  w.AddWarning(s, QXWarnings::First);
  w.AddWarning(s, QXWarnings::First);
  EXPECT_EQ(w.GetWarnings(true).size(), 2u);
}

TEST(QXWarningsTest, ClearEmptiesTheFirstListOnly) {
  QXWarnings w;
  const QXStatus s(5, true);
  w.AddWarning(s, QXWarnings::Both);
  w.AddParameter(s, 1);
  w.ClearWarnings();
  EXPECT_TRUE(w.GetWarnings(true).empty());
  EXPECT_EQ(w.GetWarnings(false).size(), 1u);
  EXPECT_TRUE(w.HasParameter(s));
}

TEST(QXWarningsTest, ParametersAreTiedToTheCodeAlone) {
  QXWarnings w;
  const QXStatus warning(5, true), errorSameCode(5, false);
  EXPECT_FALSE(w.HasParameter(warning));
  w.AddWarning(warning, QXWarnings::First);
  EXPECT_FALSE(w.HasParameter(warning));  // a stored warning has no parameters yet
  EXPECT_TRUE(w.GetParameters(warning).empty());

  EXPECT_TRUE(w.AddParameter(warning, 3));
  EXPECT_TRUE(w.AddParameter(errorSameCode, std::string("x")));
  EXPECT_TRUE(w.AddParameter(QXStatus(6, true), 2.5));
  EXPECT_TRUE(w.AddParameter(warning, 3));  // no de-duplication of parameters
  EXPECT_TRUE(w.HasParameter(errorSameCode));

  const auto params = w.GetParameters(warning);
  ASSERT_EQ(params.size(), 3u);
  EXPECT_EQ(params[0].GetType(), 0);
  EXPECT_EQ(params[0].ToInteger(), 3);
  EXPECT_EQ(params[0].ToDouble(), 0.0);  // no conversion between fields
  EXPECT_EQ(params[1].GetType(), 2);
  EXPECT_EQ(params[1].ToString(), "x");
  EXPECT_EQ(params[1].ToInteger(), 0);
  EXPECT_EQ(params[2].ToInteger(), 3);

  // The result buffer is reused by the next call.
  const auto& buffer = w.GetParameters(QXStatus(6, true));
  ASSERT_EQ(buffer.size(), 1u);
  EXPECT_EQ(buffer[0].GetType(), 1);
  EXPECT_EQ(buffer[0].ToDouble(), 2.5);
  w.GetParameters(QXStatus(99, true));
  EXPECT_TRUE(buffer.empty());
}

TEST(QXWarningsTest, ParameterValueKeepsEveryFieldItWasGiven) {
  QXWarnings::QXParameterValue p;
  EXPECT_EQ(p.GetType(), 0);
  p.SetValue(7);
  p.SetValue(1.25);
  p.SetValue(std::string("s"));
  EXPECT_EQ(p.GetType(), 2);
  EXPECT_EQ(p.ToInteger(), 7);
  EXPECT_EQ(p.ToDouble(), 1.25);
  QXWarnings::QXParameterValue copy(p);
  copy = copy;
  EXPECT_EQ(copy.ToString(), "s");
  EXPECT_EQ(copy.ToDouble(), 1.25);
  EXPECT_EQ(copy.GetType(), 2);
}

TEST(QXWarningsTest, MergeKeepsOwnParametersForKnownCodes) {
  QXWarnings mine, other;
  const QXStatus a(1, true), b(2, true), c(3, true);
  mine.AddWarning(a, QXWarnings::First);
  mine.AddParameter(a, 10);
  other.AddWarning(a, QXWarnings::First);
  other.AddWarning(b, QXWarnings::First);
  other.AddWarning(c, QXWarnings::Second);
  other.AddParameter(a, 99);
  other.AddParameter(c, 30);
  other.AddParameter(b, 20);

  mine.AddWarnings(other);
  ASSERT_EQ(mine.GetWarnings(true).size(), 2u);
  EXPECT_EQ(mine.GetWarnings(true)[1].GetErrorCode(), 2);
  ASSERT_EQ(mine.GetWarnings(false).size(), 1u);
  EXPECT_EQ(mine.GetWarnings(false)[0].GetErrorCode(), 3);

  ASSERT_EQ(mine.GetParameters(a).size(), 1u);
  EXPECT_EQ(mine.GetParameters(a)[0].ToInteger(), 10);
  EXPECT_EQ(mine.GetParameters(b)[0].ToInteger(), 20);
  EXPECT_EQ(mine.GetParameters(c)[0].ToInteger(), 30);

  // The other collection was taken by value and is unchanged.
  EXPECT_EQ(other.GetParameters(a)[0].ToInteger(), 99);

  // Merged-in lists go on growing like the collection's own.
  mine.AddParameter(b, 21);
  EXPECT_EQ(mine.GetParameters(b).size(), 2u);
  EXPECT_EQ(other.GetParameters(b).size(), 1u);
}

}  // namespace
}  // namespace QXCommon_850
