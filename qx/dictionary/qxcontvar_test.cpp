#include "qx/dictionary/qxcontvar.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "qx/dictionary/internal/testutil.h"
#include "qx/dictionary/qxbinningencoder.h"
#include "qx/dictionary/qxcatnumencoder.h"
#include "qx/dictionary/qxcatvar.h"
#include "qx/dictionary/qxcontencoder.h"
#include "qx/dictionary/qxstringencoder.h"
#include "qx/dictionary/qxweightvar.h"
#include "qx/foundation/internal/testutil.h"
#include "qx/foundation/qxmissingvalue.h"
#include "qx/markup/xmlelement.h"

namespace QXXML_850 {
namespace {

using internal::Persisted;
using internal::ReadPersisted;
using V = IQXVariable;
const double kMax = std::numeric_limits<double>::max();

TEST(ContVarTest, ConstructorsChooseTheEncoderAndTheStatus) {
  QXContVar bare;
  EXPECT_EQ(bare.GetVariableRole(), V::RoleInput);
  EXPECT_EQ(bare.GetVariableStorage(), V::StorageReal);
  EXPECT_EQ(bare.GetEncoder(), nullptr);
  EXPECT_EQ(bare.GetNumberOfCategories(), -1);
  EXPECT_EQ(bare.UpdateNumberOfCategories(), -1);  // no encoder: nothing to update from
  EXPECT_EQ(bare.GetVarStatus(), V::StatusOK);     // over the whole double range
  EXPECT_EQ(bare.GetMin(), -kMax);

  QXContVar constant("c", "", 5.0, 5.0, V::RoleInput, true, 4);
  EXPECT_EQ(constant.GetVarStatus(), V::StatusConstant);
  EXPECT_EQ(static_cast<const QXContEncoder*>(constant.GetEncoder())->GetBinningEncoder(), nullptr);
  EXPECT_EQ(constant.GetVariableStorage(), V::StorageUndefined);
  QXContVar binned("b", "", 0.0, 10.0, V::RoleInput, true, 4);
  EXPECT_EQ(binned.GetNumberOfCategories(), 4);
  const QXBinningEncoder* bins =
      static_cast<const QXContEncoder*>(binned.GetEncoder())->GetBinningEncoder();
  ASSERT_NE(bins, nullptr);
  EXPECT_EQ(bins->GetBinningCutpoints(), (std::vector<double>{2.5, 5.0, 7.5}));
  QXContVar cut("k", "", {1.0, 2.0}, true, V::RoleTarget);
  EXPECT_EQ(cut.GetNBins(), 3);
  EXPECT_EQ(cut.GetNumberOfCategories(), 3);
  QXContVar unbinned("u", "", 1.0, 0.0, {1.0, 2.0}, true, V::RoleInput);
  EXPECT_EQ(unbinned.GetNumberOfCategories(), 1);  // max below min: no binning
  EXPECT_EQ(unbinned.UpdateNumberOfCategories(), 1);
  EXPECT_EQ(unbinned.GetVarStatus(), V::StatusInvalid);
  EXPECT_FALSE(unbinned.SetFlagVariable(true));
  EXPECT_FALSE(unbinned.IsFlagVariable());
}

TEST(CatVarTest, TheEncoderFollowsTheLevelAndTheCountOnlyRises) {
  QXCatVar numeric("n", "", 10, V::LevelNumericCategorical, V::RoleInput, true);
  QXCatVar text("s", "", 2, V::LevelStringCategorical, V::RoleInput, false);
  QXCatVar unknown("u", "", 2, V::LevelUnknown, V::RoleInput, false);
  EXPECT_EQ(numeric.GetEncoder()->GetEncoderType(), IQXEncoder::EncoderCatNum);
  EXPECT_EQ(text.GetEncoder()->GetEncoderType(), IQXEncoder::EncoderString);
  EXPECT_EQ(unknown.GetEncoder()->GetEncoderType(), IQXEncoder::EncoderString);
  for (double x : {1.0, 2.0, 3.0})
    numeric.GetEncoder()->Encode(x);
  EXPECT_EQ(numeric.UpdateNumberOfCategories(), 10);
  numeric.ChangeEncoder(new QXCatNumEncoder({1.0, 2.0, 3.0}));
  EXPECT_EQ(numeric.GetNumberOfCategories(), 3);
  text.GetEncoder()->Encode("only");
  text.SetNumberOfCategories(0);
  EXPECT_EQ(text.GetVarStatus(), V::StatusConstant);  // raised to the encoder's 1
  EXPECT_EQ(QXCatVar("e", "", 0, V::LevelStringCategorical, V::RoleInput, false).GetVarStatus(),
            V::StatusInvalid);
  EXPECT_EQ(numeric.GetVarStatus(), V::StatusOK);

  numeric.SetBinaryFlag(true, 1);
  numeric.SetBinaryFlag(true, 2);
  EXPECT_FALSE(numeric.GetBinaryFlag());
  EXPECT_EQ(numeric.GetBinaryFlagTrueIndex(), 1);
  EXPECT_TRUE(text.SetFlagVariable(true));
  EXPECT_TRUE(text.IsFlagVariable());
  EXPECT_FALSE(unknown.SetFlagVariable(true));
  EXPECT_FALSE(unknown.IsFlagVariable());
  std::vector<double> sums = {7.0};
  EXPECT_FALSE(text.GetSumFreqWts(sums));
  EXPECT_EQ(sums, (std::vector<double>{7.0}));
  QXCatVar weighted("w", "", {2.0, 3.0}, 2, V::LevelNumericCategorical, V::RoleInput, false);
  EXPECT_TRUE(weighted.GetSumFreqWts(sums));
  EXPECT_EQ(sums, (std::vector<double>{2.0, 3.0}));
  weighted = text;  // the source has no sums: the own stay
  EXPECT_TRUE(weighted.GetSumFreqWts(sums));
  EXPECT_EQ(weighted.GetEncoder()->EncodeConst("only"), 0.0);
}

TEST(WeightVarTest, RoleIsFixedAndAssignmentKeepsTheOwnEncoder) {
  QXWeightVar w("w", "weight", V::RoundTruncate);
  w.SetVariableRole(V::RoleTarget);
  w.SetMissingValueReplacement("1");
  EXPECT_EQ(w.GetVariableRole(), V::RoleFrequencyWeight);
  EXPECT_EQ(w.GetMissingValueReplacement(), nullptr);
  EXPECT_EQ(w.GetMeasureLevel(), V::LevelFrequencyWeight);
  EXPECT_EQ(w.GetNumberOfCategories(), 0);
  EXPECT_EQ(w.GetEncoder()->Encode(2.7), 2.0);
  QXWeightVar other("v", "other", V::RoundAsIs);
  other.SetFieldFormatElement(XMLElement::Create("Format"));
  const IQXEncoder* own = w.GetEncoder();
  w = other;
  EXPECT_EQ(w.GetVariableName(), "v");
  EXPECT_EQ(w.GetEncoder(), own);
  EXPECT_EQ(w.GetEncoder()->Encode(2.7), 2.0);  // still truncating
  ASSERT_NE(w.GetFieldFormatElement(), nullptr);
  EXPECT_NE(w.GetFieldFormatElement(), other.GetFieldFormatElement());
}

// Every variable kind with every persisted field set, written, read into a
// blank object, compared field by field, and written again byte for byte.
TEST(VariablesTest, CopiesAndPersistedFormsKeepEveryField) {
  QXContVar cont("income", "Income in euro", 0.0, 1e6, V::RoleTarget, true, 5);
  cont.SetSumFreqWts(12.5);
  cont.SetSumCompWts(11.25);
  cont.SetMissingValueReplacement("0");
  cont.SetVariableStorage(V::StorageInteger);
  cont.GetEncoder()->AddDiscreteUserMissing(-1.0, "refused");
  cont.SetFieldFormatElement(XMLElement::Create("Format"));
  QXCatVar cat("grade", "School grade", 3, V::LevelNumericCategorical, V::RolePossibleInput, true);
  cat.GetEncoder()->Encode(2.0);
  cat.GetEncoder()->Encode(1.0);
  cat.GetEncoder()->SetValueLabels({"two", "one"});
  cat.SetBinaryFlag(true, 0);
  cat.SetVariableStorage(V::StorageReal);
  QXWeightVar weight("w", "Case weight", V::RoundClosest);
  weight.SetVariableStorage(V::StorageReal);

  // Deep copies: a change to a copy's encoder leaves the original alone.
  std::unique_ptr<IQXVariable> contClone(cont.Clone());
  std::unique_ptr<IQXVariable> catClone(cat.Clone());
  EXPECT_NE(contClone->GetFieldFormatElement(), cont.GetFieldFormatElement());
  catClone->GetEncoder()->Encode(3.0);
  EXPECT_EQ(cat.GetEncoder()->GetNumberOfCategories(), 2);
  QXContVar contAssigned;
  contAssigned = cont;
  contAssigned.GetEncoder()->AddDiscreteUserMissing(5.0, "");
  EXPECT_FALSE(cont.GetEncoder()->IsMissing(5.0));
  EXPECT_EQ(contAssigned.GetNumberOfCategories(), 5);

  int written = 0;
  const std::string contText = Persisted(cont, &written);
  QXContVar contRead(" ", " ", V::RoleInput);
  EXPECT_EQ(ReadPersisted(contRead, contText), written);
  EXPECT_EQ(contRead.GetVariableName(), "income");
  EXPECT_EQ(contRead.GetVariableLabel(), "Income in euro");
  EXPECT_EQ(contRead.GetVariableRole(), V::RoleTarget);
  EXPECT_EQ(contRead.GetVariableStorage(), V::StorageInteger);
  EXPECT_EQ(contRead.GetNBins(), 5);
  EXPECT_EQ(contRead.GetMax(), 1e6);
  EXPECT_EQ(contRead.GetSumCompWts(), 11.25);
  EXPECT_EQ(*contRead.GetMissingValueReplacement(), "0");
  EXPECT_TRUE(contRead.GetEncoder()->IsMissing(-1.0));
  EXPECT_EQ(contRead.GetFieldFormatElement(), nullptr);  // not persisted
  EXPECT_EQ(Persisted(contRead), contText);

  const std::string catText = Persisted(cat, &written);
  QXCatVar catRead(" ", " ", 0, V::LevelStringCategorical, V::RoleInput, false);
  EXPECT_EQ(ReadPersisted(catRead, catText), written);
  EXPECT_EQ(catRead.GetMeasureLevel(), V::LevelNumericCategorical);
  EXPECT_EQ(catRead.GetEncoder()->GetEncoderType(), IQXEncoder::EncoderCatNum);
  EXPECT_EQ(catRead.GetNumberOfCategories(), 3);
  EXPECT_EQ(catRead.GetEncoder()->EncodeConst(1.0), 1.0);
  EXPECT_TRUE(catRead.GetOrdinalFlag());
  EXPECT_TRUE(catRead.GetBinaryFlag());
  EXPECT_EQ(catRead.GetBinaryFlagTrueIndex(), 0);
  EXPECT_EQ(Persisted(catRead), catText);

  const std::string weightText = Persisted(weight, &written);
  QXWeightVar weightRead(" ", " ", V::RoundAsIs);
  EXPECT_EQ(ReadPersisted(weightRead, weightText), written);
  EXPECT_EQ(weightRead.GetEncoder()->Encode(0.5), 1.0);
  EXPECT_EQ(Persisted(weightRead), weightText);

  // A variable without encoder writes type 0: a continuous one reads it
  // back, a categorical one can't.
  QXContVar bare;
  QXContVar bareRead(" ", " ", V::RoleInput);
  EXPECT_GT(ReadPersisted(bareRead, Persisted(bare)), 0);
  EXPECT_EQ(bareRead.GetEncoder(), nullptr);
  std::string messages;
  std::string wrongType = contText;
  wrongType.replace(wrongType.find("<Int value=\"1\"/>\n\t\t<Obj"), 16, "<Int value=\"7\"/>");
  EXPECT_EQ(ReadPersisted(contRead, wrongType, &messages), -1);
  EXPECT_EQ(messages, "Wrong encoder type in QXContVar!\n");
  EXPECT_EQ(contRead.GetEncoder(), nullptr);
  std::string noEncoder = catText;
  noEncoder.replace(noEncoder.find("<Int value=\"2\"/>\n\t\t<Obj"), 16, "<Int value=\"0\"/>");
  EXPECT_EQ(ReadPersisted(catRead, noEncoder, &messages), -1);
  EXPECT_EQ(messages, "Failure reading QXCatVar!\n");
  EXPECT_EQ(catRead.GetEncoder(), nullptr);
  EXPECT_EQ(catRead.UpdateNumberOfCategories(), 3);  // still usable
  EXPECT_EQ(ReadPersisted(weightRead, catText, &messages), -1);
  EXPECT_EQ(messages, "Failure reading QXWeightVar!\n");
}

TEST(VariablesTest, DisplayPrintsEveryFieldByItsLabel) {
  using QXCommon_850::internal::CaptureDisplay;
  QXContVar cont("x", "X", V::RoleInput);
  cont.SetMissingValueReplacement("0");
  EXPECT_EQ(CaptureDisplay([&] { cont.Display(); }),
            "\nContinuous variable: name = x\nLabel = X\nVariable role = Input\n"
            "Variable storage = Real\nNumber of bins = -1\nMin = miss\nMax = 1.79769e+308\n"
            "Mean = miss\nStandard deviation = miss\nMissing value replacement = 0\n"
            "\tQXContEncoder: \nnumber of bins = 1\nDiscrete user missing values (size = 0)\n\n"
            "fSumFreqWts = 0\nfSumCompWts = 0\nEnd display for Continuous variable  = x");
  QXCatVar cat("c", "C", 2, V::LevelStringCategorical, V::RoleTarget, false);
  cat.SetBinaryFlag(true, 1);
  EXPECT_EQ(CaptureDisplay([&] { cat.Display(); }),
            "\nCategorical variable: name = c\nLabel = C\nVariable role = Target\n"
            "Variable storage = Undefined variable storage\nMeasurement Level = String "
            "Categorical\nNumber of categories = 2\nOrdinal variable indicator = false\n"
            "Binary Flag variable indicator = true\nIndex of Binary Flag's true value = true");
  QXWeightVar weight("w", "W", V::RoundAsIs);
  EXPECT_EQ(CaptureDisplay([&] { weight.Display(); }),
            "\nFrequency weight variable: name = w\nLabel = W\n"
            "Variable storage = Undefined variable storage\n");
}

}  // namespace
}  // namespace QXXML_850
