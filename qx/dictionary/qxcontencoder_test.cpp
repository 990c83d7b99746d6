#include "qx/dictionary/qxcontencoder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "qx/dictionary/internal/testutil.h"
#include "qx/dictionary/qxbinningencoder.h"
#include "qx/dictionary/qxcatnumencoder.h"
#include "qx/dictionary/qxroundencoder.h"
#include "qx/dictionary/qxstringencoder.h"
#include "qx/foundation/internal/testutil.h"
#include "qx/foundation/qxmissingvalue.h"

namespace QXXML_850 {
namespace {

using internal::Persisted;
using internal::ReadPersisted;
const double MV = QXCommon_850::QXMV::Missing();
const double kMax = std::numeric_limits<double>::max();
const double kNaN = std::numeric_limits<double>::quiet_NaN();

// What each encoder answers for the kind of value it has no use for, and for
// the lists it doesn't keep.
TEST(EncoderSlotsTest, EveryEncoderAnswersTheOtherKindOfValue) {
  QXContEncoder cont;
  QXRoundEncoder round;
  QXCatNumEncoder catNum(0);
  QXStringEncoder text(0);
  const std::vector<IQXEncoder*> numeric = {&cont, &round};
  for (IQXEncoder* e : numeric) {
    EXPECT_EQ(e->Encode("a"), MV);
    EXPECT_EQ(e->EncodeConst("a"), MV);
    EXPECT_TRUE(e->IsMissing(""));
    EXPECT_EQ(e->Decode(0), "");
    EXPECT_EQ(e->DecodeNum(0), MV);
    e->SetValueLabels({"x"});
    e->SetValueLabel(0, "x");
    EXPECT_EQ(e->GetValueLabels(), nullptr);
    EXPECT_EQ(e->GetDiscreteMissValuesStr(), nullptr);
  }
  EXPECT_EQ(catNum.Encode("a"), -1.0);
  EXPECT_EQ(catNum.EncodeConst("a"), -1.0);
  EXPECT_TRUE(catNum.IsMissing("a"));
  EXPECT_EQ(text.Encode(1.0), -1.0);
  EXPECT_EQ(text.EncodeConst(1.0), -1.0);
  EXPECT_TRUE(text.IsMissing(1.0));
  EXPECT_EQ(text.DecodeNum(0), MV);
  EXPECT_FALSE(text.SetMissingInterval(0.0, 1.0));
  EXPECT_FALSE(text.AddDiscreteUserMissing(1.0, "x"));
  EXPECT_EQ(text.GetDiscreteMissValues(), nullptr);
  for (IQXEncoder* e : std::vector<IQXEncoder*>{&cont, &round, &catNum})
    EXPECT_FALSE(e->AddDiscreteUserMissing("a", "x"));
  double low = 5.0, high = 6.0;
  EXPECT_FALSE(text.GetMissingInterval(low, high));
  EXPECT_EQ(low, 5.0);
  EXPECT_EQ(cont.GetEncoderType(), IQXEncoder::EncoderBinning);
  EXPECT_EQ(round.GetEncoderType(), IQXEncoder::EncoderRound);
  EXPECT_EQ(catNum.GetEncoderType(), IQXEncoder::EncoderCatNum);
  EXPECT_EQ(text.GetEncoderType(), IQXEncoder::EncoderString);
}

TEST(ContEncoderTest, MissingIsTheSentinelTheIntervalOrAListedValue) {
  QXContEncoder e;
  EXPECT_FALSE(e.SetMissingInterval(1.0, 1.0));
  EXPECT_TRUE(e.SetMissingInterval(1.0, 2.0));
  EXPECT_FALSE(e.SetMissingInterval(3.0, 4.0));  // the first valid call wins
  EXPECT_TRUE(e.AddDiscreteUserMissing(-9.0, "refused"));
  EXPECT_TRUE(e.AddDiscreteUserMissing(-9.0, "again"));  // no test for repeats
  for (double x : {MV, 1.0, 1.5, 2.0, -9.0})
    EXPECT_EQ(e.Encode(x), MV) << x;
  for (double x : {0.999, 2.001, -8.0, kMax})
    EXPECT_EQ(e.EncodeConst(x), x) << x;
  EXPECT_TRUE(std::isnan(e.Encode(kNaN)));
  double low = 0.0, high = 0.0;
  EXPECT_TRUE(e.GetMissingInterval(low, high));
  EXPECT_EQ(low, 1.0);
  EXPECT_EQ(high, 2.0);
  EXPECT_EQ(*e.GetMissValueLabels(), (std::vector<std::string>{"refused", "again"}));
  EXPECT_EQ(e.GetNumberOfCategories(), 1);
}

TEST(ContEncoderTest, CopiesAreDeepAndTheBinningIsNotPersisted) {
  QXContEncoder binned(0.0, 10.0, 5);
  binned.AddDiscreteUserMissing(99.0, "n/a");
  binned.SetMissingInterval(-2.0, -1.0);
  EXPECT_EQ(binned.GetNumberOfCategories(), 5);
  std::unique_ptr<IQXEncoder> clone(binned.Clone());
  QXContEncoder assigned;
  assigned = binned;
  assigned = assigned;
  for (const QXContEncoder* copy : {static_cast<QXContEncoder*>(clone.get()), &assigned}) {
    ASSERT_NE(copy->GetBinningEncoder(), nullptr);
    EXPECT_NE(copy->GetBinningEncoder(), binned.GetBinningEncoder());
    EXPECT_EQ(copy->GetBinningEncoder()->GetBinningCutpoints(),
              binned.GetBinningEncoder()->GetBinningCutpoints());
    EXPECT_EQ(Persisted(*copy), Persisted(binned));
  }
  assigned = QXContEncoder();
  EXPECT_EQ(assigned.GetBinningEncoder(), nullptr);

  int written = 0;
  const std::string text = Persisted(binned, &written);
  EXPECT_NE(text.find("\t<Obj name=\"QXContEncoder\">\n\t\t<Int value=\"5\"/>\n\t\t<Int "
                      "value=\"1\"/>\n\t\t<Double value=\"-2\"/>"),
            std::string::npos);
  QXContEncoder read;  // its definitions are replaced, its binning stays absent
  read.AddDiscreteUserMissing(1.0, "old");
  EXPECT_EQ(ReadPersisted(read, text), written);
  EXPECT_EQ(written, 9);
  EXPECT_EQ(read.GetBinningEncoder(), nullptr);
  EXPECT_EQ(read.GetNumberOfCategories(), 5);
  EXPECT_EQ(Persisted(read), text);
}

TEST(RoundEncoderTest, WeightsAreRoundedAndNonPositiveOnesAreMissing) {
  QXRoundEncoder asIs;
  QXRoundEncoder truncate(IQXVariable::RoundTruncate);
  QXRoundEncoder closest(IQXVariable::RoundClosest);
  EXPECT_EQ(asIs.Encode(-3.0), MV);
  EXPECT_EQ(asIs.Encode(0.0), MV);
  EXPECT_EQ(asIs.Encode(0.25), 0.25);
  EXPECT_EQ(truncate.Encode(0.4), MV);
  EXPECT_EQ(closest.Encode(0.4), MV);
  EXPECT_EQ(closest.Encode(0.5), 1.0);
  EXPECT_EQ(truncate.EncodeConst(2.9), 2.0);
  EXPECT_EQ(closest.EncodeConst(2.5), 3.0);
  EXPECT_TRUE(std::isnan(closest.Encode(kNaN)));
  EXPECT_TRUE(closest.AddDiscreteUserMissing(3.0, ""));
  EXPECT_EQ(closest.Encode(3.0), MV);
  EXPECT_EQ(closest.Encode(3.2), 3.0);  // the list sees the weight before rounding
  EXPECT_EQ(asIs.GetNumberOfCategories(), 0);

  int written = 0;
  const std::string text = Persisted(closest, &written);
  QXRoundEncoder read;
  EXPECT_EQ(ReadPersisted(read, text), written);
  EXPECT_EQ(read.Encode(0.5), 1.0);
  std::string messages;
  std::string negative = text;
  negative.replace(negative.find("<Int value=\"1\"/>"), 16, "<Int value=\"-1\"/>");
  EXPECT_EQ(ReadPersisted(read, negative, &messages), -1);
  EXPECT_EQ(messages, "Failure reading QXRoundEncoder from XML!\n");
  EXPECT_EQ(ReadPersisted(read, text.substr(0, text.size() / 2), &messages), -1);
  EXPECT_EQ(messages, "Failure reading QXRoundEncoder from XML!\n");
}

TEST(BinningEncoderTest, ValuesOnACutPointBelongToTheLowerBin) {
  const QXBinningEncoder b({10.0, 20.0});
  EXPECT_EQ(b.GetNumberOfCategories(), 3);
  EXPECT_EQ(b.Encode(10.0), 0.0);
  EXPECT_EQ(b.Encode(10.5), 1.0);
  EXPECT_EQ(b.Encode(20.0), 1.0);
  EXPECT_EQ(b.Encode(20.5), 2.0);
  EXPECT_EQ(b.Encode(-kMax), -1.0);
  EXPECT_EQ(b.Encode(kNaN), 2.0);
  // Every position against a plain count of the cut points below x.
  const QXBinningEncoder wide(0.0, 1.0, 10);
  const std::vector<double>& cuts = wide.GetBinningCutpoints();
  ASSERT_EQ(cuts.size(), 9u);
  EXPECT_EQ(cuts[2], 3 * (1.0 / 10) + 0.0);
  for (double x = -0.05; x < 1.1; x += 0.0125) {
    double below = 0;
    for (double c : cuts)
      below += c < x;
    EXPECT_EQ(wide.Encode(x), below) << x;
  }
  for (size_t k = 0; k < cuts.size(); ++k)
    EXPECT_EQ(wide.Encode(cuts[k]), static_cast<double>(k));
  // Fewer than two bins: 0 below zero, 1 from zero on.
  const QXBinningEncoder empty;
  EXPECT_EQ(empty.GetNumberOfCategories(), 0);
  EXPECT_EQ(empty.Encode(-0.5), 0.0);
  EXPECT_EQ(empty.Encode(0.0), 1.0);
  EXPECT_EQ(QXBinningEncoder(0.0, 1.0, 0).GetNumberOfCategories(), 0);
}

TEST(BinningEncoderTest, EmptyBinsCollapseOntoMidpointsAndTheExtremes) {
  QXBinningEncoder b({1.0, 2.0, 3.0, 4.0, 5.0});
  const std::vector<double> counts = {0, 3, 0, 0, 5, 0};
  std::vector<double> out = b.GetBinningCutpoints();
  ASSERT_TRUE(b.ComputeCutpoints(counts, out));
  EXPECT_EQ(out, (std::vector<double>{-kMax, 3.0, 3.0, 3.0, kMax}));
  std::unique_ptr<QXBinningEncoder> rebinned(b.CreateRebinned(counts));
  EXPECT_EQ(rebinned->GetBinningCutpoints(), out);
  b.AdjustBinning(counts);
  EXPECT_EQ(b.GetBinningCutpoints(), (std::vector<double>{-kMax, 3.0, kMax}));
  EXPECT_EQ(b.GetNumberOfCategories(), 4);

  // Nothing to do: no empty bin, fewer than two filled ones, or counts that
  // don't fit the cut points.
  QXBinningEncoder same(std::vector<double>{1.0, 2.0, 3.0});
  for (const std::vector<double>& c :
       std::vector<std::vector<double>>{{1, 2, 3, 4}, {0, 0, 7, 0}, {}, {0, 1, 0, 1, 0, 1, 0}}) {
    std::vector<double> untouched = {9.0, 9.0, 9.0};
    EXPECT_FALSE(same.ComputeCutpoints(c, untouched));
    EXPECT_EQ(untouched, (std::vector<double>{9.0, 9.0, 9.0}));
    same.AdjustBinning(c);
    EXPECT_EQ(same.GetBinningCutpoints(), (std::vector<double>{1.0, 2.0, 3.0}));
    std::unique_ptr<QXBinningEncoder> copy(same.CreateRebinned(c));
    EXPECT_EQ(copy->GetBinningCutpoints(), same.GetBinningCutpoints());
  }
  // An inner run between filled bins: only the midpoint stays.
  QXBinningEncoder inner({1.0, 2.0, 3.0, 4.0});
  inner.AdjustBinning({2, 0, 0, 0, 1});
  EXPECT_EQ(inner.GetBinningCutpoints(), (std::vector<double>{2.5}));
  EXPECT_EQ(inner.GetNumberOfCategories(), 2);
}

}  // namespace
}  // namespace QXXML_850
