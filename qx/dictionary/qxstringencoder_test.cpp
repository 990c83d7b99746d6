#include "qx/dictionary/qxstringencoder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "qx/dictionary/internal/testutil.h"
#include "qx/dictionary/qxcatnumencoder.h"
#include "qx/foundation/internal/testutil.h"
#include "qx/foundation/qxmissingvalue.h"

namespace QXXML_850 {
namespace {

using internal::Persisted;
using internal::ReadPersisted;
const double MV = QXCommon_850::QXMV::Missing();

// Decode of every code gives back a category that encodes as that code.
void ExpectBothWays(const IQXEncoder& e, bool numeric) {
  const int n = e.GetNumberOfCategories();
  for (int code = 0; code < n; ++code) {
    const double back = numeric ? e.EncodeConst(e.DecodeNum(code)) : e.EncodeConst(e.Decode(code));
    if (!(numeric ? e.IsMissing(e.DecodeNum(code)) : e.IsMissing(e.Decode(code)))) {
      EXPECT_EQ(back, code);
    }
  }
  EXPECT_EQ(e.Decode(-1), "");
  EXPECT_EQ(e.Decode(n), "");
}

TEST(CatNumEncoderTest, CodesFollowFirstAppearanceAndDecodeBothWays) {
  QXCatNumEncoder e(4);
  std::vector<double> codes;
  for (double x : {7.0, 3.0, 7.0, 9.0, MV, -0.0, 0.0, 0.1})
    codes.push_back(e.Encode(x));
  EXPECT_EQ(codes, (std::vector<double>{0, 1, 0, 2, -1, 3, 3, 4}));
  EXPECT_EQ(e.GetNumberOfCategories(), 5);
  EXPECT_EQ(e.Decode(1), "3");
  EXPECT_EQ(e.Decode(4), "0.1");
  EXPECT_EQ(e.DecodeNum(2), 9.0);
  EXPECT_EQ(e.DecodeNum(5), MV);
  EXPECT_EQ(e.DecodeNum(-1), MV);
  EXPECT_EQ(e.EncodeConst(12.0), -1.0);
  EXPECT_EQ(e.GetNumberOfCategories(), 5);
  // A NaN is one category of its own, not a break of the ordering.
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(e.Encode(nan), 5.0);
  EXPECT_EQ(e.Encode(nan), 5.0);
  EXPECT_EQ(e.EncodeConst(9.0), 2.0);
  ExpectBothWays(e, true);

  // A constructor's list: repeats and the sentinel give no new code.
  QXCatNumEncoder listed({2.0, MV, 2.0, 1.0});
  EXPECT_EQ(listed.GetNumberOfCategories(), 2);
  EXPECT_EQ(listed.DecodeNum(1), 1.0);
}

TEST(CatNumEncoderTest, UserMissingValuesKeepTheirCodesButEncodeAsMissing) {
  QXCatNumEncoder e({1.0, 2.0, 3.0, 4.0});
  EXPECT_FALSE(e.SetMissingInterval(3.0, 3.0));
  EXPECT_TRUE(e.SetMissingInterval(3.0, 3.5));
  EXPECT_TRUE(e.AddDiscreteUserMissing(1.0, "no answer"));
  for (double x : {1.0, 3.0, 3.5, MV}) {
    EXPECT_EQ(e.Encode(x), -1.0) << x;
    EXPECT_TRUE(e.IsMissing(x));
  }
  EXPECT_EQ(e.Encode(4.0), 3.0);
  EXPECT_EQ(e.Encode(3.25), -1.0);  // never coded
  EXPECT_EQ(e.GetNumberOfCategories(), 4);
  EXPECT_EQ(e.DecodeNum(2), 3.0);
}

TEST(CatNumEncoderTest, LabelsGrowOnlyToTheNumberOfCategories) {
  QXCatNumEncoder e({5.0, 6.0, 7.0});
  e.SetValueLabel(5, "five");
  EXPECT_EQ(*e.GetValueLabels(), (std::vector<std::string>{"", "", ""}));
  e.SetValueLabel(1, "six");
  EXPECT_EQ(*e.GetValueLabels(), (std::vector<std::string>{"", "six", ""}));
  e.SetValueLabels({"a", "b", "c", "d", "e"});
  e.SetValueLabel(4, "x");  // past the categories: ignored, nothing cut
  e.SetValueLabel(0, "A");
  EXPECT_EQ(*e.GetValueLabels(), (std::vector<std::string>{"A", "b", "c", "d", "e"}));
  QXStringEncoder s({"x", "y", "z"});
  s.SetValueLabel(-1, "none");
  s.SetValueLabel(2, "zed");
  EXPECT_EQ(*s.GetValueLabels(), (std::vector<std::string>{"", "", "zed"}));
}

TEST(StringEncoderTest, TextsCompareByteByByteAndKeepTheirCodes) {
  QXStringEncoder e(0);
  std::vector<double> codes;
  for (const char* t : {"red", "Red", "red ", "", "red", "green"})
    codes.push_back(e.Encode(t));
  EXPECT_EQ(codes, (std::vector<double>{0, 1, 2, 3, 0, 4}));
  EXPECT_EQ(e.GetNumberOfCategories(), 5);
  EXPECT_EQ(e.Decode(2), "red ");
  EXPECT_EQ(e.Decode(3), "");
  EXPECT_EQ(e.EncodeConst("blue"), -1.0);
  EXPECT_TRUE(e.AddDiscreteUserMissing("", "empty"));
  EXPECT_TRUE(e.AddDiscreteUserMissing("n/a", "not asked"));
  EXPECT_EQ(e.Encode(""), -1.0);
  EXPECT_EQ(e.Encode("n/a"), -1.0);
  EXPECT_EQ(e.Decode(3), "");  // still known
  EXPECT_EQ(e.GetNumberOfCategories(), 5);
  EXPECT_FALSE(e.IsMissing("N/A"));
  ExpectBothWays(e, false);
  // A constructor's list with repeats.
  EXPECT_EQ(QXStringEncoder({"b", "a", "b"}).GetNumberOfCategories(), 2);
}

TEST(StringEncoderTest, CopiesOwnTheirTexts) {
  auto original = std::make_unique<QXStringEncoder>(std::vector<std::string>{"a", "bb", "ccc"});
  original->SetValueLabels({"A"});
  QXStringEncoder copied(*original);
  QXStringEncoder assigned(0);
  assigned.Encode("old");
  assigned = *original;
  std::unique_ptr<IQXEncoder> clone(original->Clone());
  const std::string before = Persisted(*original);
  original.reset();
  for (const IQXEncoder* e :
       {static_cast<const IQXEncoder*>(&copied), static_cast<const IQXEncoder*>(&assigned),
        static_cast<const IQXEncoder*>(clone.get())}) {
    EXPECT_EQ(e->Decode(1), "bb");
    EXPECT_EQ(e->EncodeConst("ccc"), 2.0);
    EXPECT_EQ(Persisted(*e), before);
  }
  copied.Encode("dddd");
  EXPECT_EQ(assigned.EncodeConst("dddd"), -1.0);
  EXPECT_EQ(copied.Decode(3), "dddd");
}

TEST(CategoricalEncodersTest, WriteAndReadKeepCodesLabelsAndMissingDefinitions) {
  QXCatNumEncoder numbers({9.0, -1.5, 1e300, 0.1});
  numbers.SetValueLabels({"nine", "", "huge"});
  numbers.SetMissingInterval(-1.0, 0.0);
  numbers.AddDiscreteUserMissing(9.0, "nine is refused");
  QXStringEncoder texts({"z", "a", "", "m"});
  texts.SetValueLabels({"zed", "ay"});
  texts.AddDiscreteUserMissing("?", "unknown");

  int written = 0;
  const std::string numText = Persisted(numbers, &written);
  QXCatNumEncoder numRead(0);
  numRead.Encode(42.0);
  numRead.AddDiscreteUserMissing(-1.5, "gone on reading");
  EXPECT_EQ(ReadPersisted(numRead, numText), written);
  EXPECT_EQ(written, 1 + 1 + 4 + 1 + 3 + 1 + 2 + 1 + 2 + 1);
  EXPECT_EQ(numRead.GetNumberOfCategories(), 4);
  for (int code = 0; code < 4; ++code)
    EXPECT_EQ(numRead.DecodeNum(code), numbers.DecodeNum(code));
  EXPECT_EQ(numRead.EncodeConst(9.0), -1.0);  // missing again after the read
  EXPECT_EQ(*numRead.GetMissValueLabels(), (std::vector<std::string>{"nine is refused"}));
  EXPECT_EQ(Persisted(numRead), numText);

  const std::string textText = Persisted(texts, &written);
  QXStringEncoder textRead(0);
  EXPECT_EQ(ReadPersisted(textRead, textText), written);
  EXPECT_EQ(textRead.Decode(2), "");
  EXPECT_EQ(textRead.EncodeConst("m"), 3.0);
  EXPECT_EQ(textRead.EncodeConst("?"), -1.0);
  EXPECT_EQ(*textRead.GetValueLabels(), (std::vector<std::string>{"zed", "ay"}));
  EXPECT_EQ(Persisted(textRead), textText);
  // Reading into an encoder that holds "a" as missing: "a" gets no code, and
  // the codes after it move up.
  QXStringEncoder holding(0);
  holding.AddDiscreteUserMissing("a", "");
  EXPECT_GT(ReadPersisted(holding, textText), 0);
  EXPECT_EQ(holding.GetNumberOfCategories(), 3);
  EXPECT_EQ(holding.EncodeConst("m"), 2.0);

  // A failed step names the class; a negative count of labels fails.
  std::string messages;
  EXPECT_EQ(ReadPersisted(numRead, numText.substr(0, numText.size() - 40), &messages), -1);
  EXPECT_EQ(messages, "Failure reading QXCatNumEncoder!\n");
  std::string negative = numText;
  negative.replace(negative.find("<Int value=\"3\"/>"), 16, "<Int value=\"-3\"/>");
  EXPECT_EQ(ReadPersisted(numRead, negative, &messages), -1);
  EXPECT_EQ(ReadPersisted(textRead, numText, &messages), -1);
  EXPECT_EQ(messages, "Failure reading QXStringEncoder!\n");
}

TEST(CategoricalEncodersTest, DisplayPrintsCodesAndDefinitions) {
  using QXCommon_850::internal::CaptureDisplay;
  QXStringEncoder texts({"a", "b"});
  texts.AddDiscreteUserMissing("?", "unknown");
  EXPECT_EQ(CaptureDisplay([&] { texts.Display(); }),
            "\tBNStringEncoder object:\nLast code = 1\n\t\t = 0\t\ta\n\t\t = 1\t\tb\n"
            "Value Labels: (size = 0)\t\tMissing Values and their Labels: \n\n = ?\n\t = "
            "unknown\n");
  QXCatNumEncoder numbers(std::vector<double>{2.5});
  numbers.SetMissingInterval(-1.0, 0.0);
  EXPECT_EQ(CaptureDisplay([&] { numbers.Display(); }),
            "\tBNCatNumEncoder: \nLast code =  = 0\n\t\tNumeric values of categories: \n"
            "Numeric values of categories (size = 1)\n  2.5\n\n"
            "Discrete user missing values (size = 0)"
            "\t\tUser-missing interval for this encoder: \n\n\t\t[  = -1\n,  = 0 ]\n\n");
}

}  // namespace
}  // namespace QXXML_850
