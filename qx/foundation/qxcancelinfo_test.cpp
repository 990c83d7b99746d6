#include "qx/foundation/qxcancelinfo.h"

#include <gtest/gtest.h>

namespace QXMath_850 {
namespace {

// A query object whose answer the test sets, counting how often it is asked.
class ScriptedQuery : public QXCommon_850::QXQueryCancel {
 public:
  bool IsCancel() override {
    ++isCancelCalls;
    return answer;
  }
  bool WillCancel() const override {
    ++willCancelCalls;
    return answer;
  }
  bool answer = false;
  int isCancelCalls = 0;
  mutable int willCancelCalls = 0;
};

TEST(QXCancelInfoTest, SetCancelCancelsWithoutAsking) {
  QXCancelInfo info(nullptr);
  EXPECT_EQ(info.GetCancelPtr(), nullptr);
  for (int i = 0; i < 3; ++i)
    EXPECT_FALSE(info.IsCancel());
  EXPECT_FALSE(info.WillCancel());
  info.SetCancel();
  EXPECT_TRUE(info.WillCancel());
  EXPECT_TRUE(info.IsCancel());

  ScriptedQuery query;
  QXCancelInfo asked(&query);
  asked.SetCancel();
  EXPECT_TRUE(asked.IsCancel());
  EXPECT_EQ(query.isCancelCalls, 0);
}

TEST(QXCancelInfoTest, CancellationIsStickyAndTheQueryIsNotAskedAgain) {
  ScriptedQuery query;
  QXCancelInfo info(&query);
  EXPECT_FALSE(info.IsCancel());
  EXPECT_EQ(query.isCancelCalls, 1);

  query.answer = true;
  EXPECT_TRUE(info.IsCancel());
  EXPECT_EQ(query.isCancelCalls, 2);

  query.answer = false;  // the user changed their mind: too late
  EXPECT_TRUE(info.IsCancel());
  EXPECT_TRUE(info.WillCancel());
  EXPECT_EQ(query.isCancelCalls, 2);
  EXPECT_EQ(query.willCancelCalls, 0);

  ScriptedQuery other;
  info.SetCancelPtr(&other);
  EXPECT_EQ(info.GetCancelPtr(), &other);
  EXPECT_TRUE(info.IsCancel());
  EXPECT_EQ(other.isCancelCalls, 0);
}

TEST(QXCancelInfoTest, WillCancelLooksAheadWithoutStoring) {
  ScriptedQuery query;
  query.answer = true;
  QXCancelInfo info(&query);
  EXPECT_TRUE(info.WillCancel());
  EXPECT_EQ(query.willCancelCalls, 1);
  query.answer = false;
  EXPECT_FALSE(info.IsCancel());  // the look-ahead stored nothing
  EXPECT_EQ(query.isCancelCalls, 1);
  query.answer = true;
  EXPECT_TRUE(info.IsCancel());
}

}  // namespace
}  // namespace QXMath_850
