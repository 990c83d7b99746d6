// The StatXML factories and the variate-data records: the bytes of each
// element, what they leave out, which elements they take over, and a whole
// document that libxml2 reads back, written under a decimal-comma locale and
// compared with its golden copy.
#include "qx/documents/qxstatxmlutil.h"

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "qx/documents/internal/documenttest.h"
#include "qx/documents/qxvariatedata.h"
#include "qx/foundation/internal/testlocale.h"
#include "qx/foundation/qxcomponentdisplay.h"
#include "qx/foundation/qxmissingvalue.h"
#include "qx/markup/xmlelement.h"

#ifdef QX_HAVE_LIBXML2
#include <libxml/parser.h>
#endif

namespace QXXML_850 {
namespace {

using internal::Text;
using U = QXStatXMLUtil;
const double MV = QXCommon_850::QXMV::Missing();

size_t Count(const std::string& text, const std::string& what) {
  size_t n = 0;
  for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1))
    ++n;
  return n;
}

TEST(QXStatXMLUtilTest, ElementsLeaveOutMissingAndEmptyValues) {
  EXPECT_EQ(Text(U::CreateElemStatistic("n", MV)), "<Statistic name=\"n\"/>");
  EXPECT_EQ(Text(U::CreateElemStatistic("n", 2.5)), "<Statistic name=\"n\" value=\"2.5\"/>");
  EXPECT_EQ(Text(U::CreateElemCounts(10.0, MV, 2.0, -1.0)),
            "<Counts totalFreq=\"10\" invalidFreq=\"2\"/>");
  EXPECT_EQ(Text(U::CreateElemCounts(QXXMLCounts())),
            "<Counts totalFreq=\"-1.79769313486232e+308\"/>");
  EXPECT_EQ(Text(U::CreateElemUnivarData("")), "<UnivariateData/>");
  EXPECT_EQ(Text(U::CreateElemMultivariateData("d")), "<MultivariateData description=\"d\"/>");
  EXPECT_EQ(Text(U::CreateElemFieldInfo("f", MV, true)),
            "<FieldInfo fieldName=\"f\" isNull=\"true\"/>");
  EXPECT_EQ(Text(U::CreateElemFieldInfo("f", "", false)),
            "<FieldInfo fieldName=\"f\" isNull=\"false\"/>");
  EXPECT_EQ(Text(U::CreateElemFactor("f", 2.0, false)),
            "<Factor field=\"f\" value=\"2\" nest=\"false\"/>");
  EXPECT_EQ(Text(U::CreateElemCovariate("x", 2)), "<Covariate field=\"x\" power=\"2\"/>");
  EXPECT_EQ(
      Text(U::CreateElemLabel({nullptr, U::CreateElemRegressionParameter("a", false)}, {}, "p",
                              true, "lab")),
      "<Label label=\"lab\"><RegressionParameter name=\"p\" isIntercept=\"true\">"
      "<RegressionParameter name=\"a\" isIntercept=\"false\"/></RegressionParameter></Label>");
  EXPECT_EQ(Text(U::CreateElem("e", "a", 1e300 * 1e300)), "<e/>");
}

// Elements a function leaves out are deleted (the leak checker of the
// sanitizer build would report them).
TEST(QXStatXMLUtilTest, MatricesAddOnlyWhatTheirShapeAllows) {
  const auto label = [](const char* text) { return U::CreateElemLabel(text); };
  EXPECT_EQ(Text(U::CreateElemMatrix(label("a"), {label("b"), label("c"), label("d")}, nullptr,
                                     label("e"), 3, 3, "symmetric", true)),
            "<Matrix kind=\"symmetric\" nbRows=\"3\" rowMajor=\"true\"><Label label=\"a\"/>"
            "<Label label=\"e\"/></Matrix>");
  EXPECT_EQ(Text(U::CreateElemMatrix(nullptr, {label("b"), label("c")}, label("t"), nullptr, 2, 4,
                                     "diagonal", false)),
            "<Matrix kind=\"diagonal\" nbRows=\"2\" nbCols=\"4\" rowMajor=\"false\">"
            "<Label label=\"b\"/><Label label=\"c\"/><Label label=\"t\"/></Matrix>");
  EXPECT_EQ(Text(U::CreateElemMatrixLabels({label("a"), label("b"), label("c")})),
            "<MatrixLabels/>");
  EXPECT_EQ(Text(U::CreateElemMatrixLabels({nullptr, label("a")})),
            "<MatrixLabels><Label label=\"a\"/></MatrixLabels>");
  EXPECT_EQ(Text(U::CreateElemSegmentData(nullptr, U::CreateElemIndices(nullptr, "row"))),
            "<SegmentData><Indices dimension=\"row\"/></SegmentData>");
}

TEST(QXStatXMLUtilTest, ArraysJoinQuoteAndFormatTheirItems) {
  const int ints[] = {5, 12, 1500};
  EXPECT_EQ(Text(U::CreateElemArray(ints, 3)), "<Array type=\"int\">5 1e+01 2e+03</Array>");
  EXPECT_EQ(Text(U::CreateElemArray(std::vector<int>{5, 12, 1500})),
            "<Array type=\"int\" n=\"3\">5 12 1500</Array>");
  EXPECT_EQ(Text(U::CreateElemArray(std::vector<double>{1.5, MV, 2.0, 0.1 + 0.2})),
            "<Array type=\"real\" n=\"4\">1.5 __MISSING__ 2 0.3</Array>");
  EXPECT_EQ(Text(U::CreateElemArray(std::vector<double>{})),
            "<Array type=\"real\" n=\"0\"></Array>");
  EXPECT_EQ(Text(U::CreateElemArray(std::vector<std::string>{"a", "b c"})),
            "<Array type=\"string\" n=\"2\">\"a\" \"b c\"</Array>");
  EXPECT_EQ(Text(U::CreateElemArray(std::vector<std::string>{"a\"b", "c\\", "<&"})),
            "<Array type=\"string\" n=\"3\">a\\\"b c\\\\ &lt;&amp;</Array>");
  XMLElement list("L");
  U::AddStringList(list, std::vector<std::string>{"", "a", "", "b"});
  EXPECT_EQ(Text(list.Clone()), "<L>a  b</L>");
  EXPECT_EQ(
      Text(U::CreateElemCoordinates("x", "", "mean", std::vector<int>{1}, U::CreateElemLabel("l"))),
      "<Coordinates feature=\"x\" statistic=\"mean\"><Label label=\"l\"/>"
      "<Array type=\"int\" n=\"1\">1</Array></Coordinates>");
}

TEST(QXStatXMLUtilTest, SectionsHoldWhatTheirKindAllows) {
  QXVariateData data;
  data.fStatNames = {"mean", "sd", "n"};
  data.fStatStrings = {"1", "2"};  // the strings, not the names, give the number
  data.fStatValues = {7.0};
  QXXMLCoordinates c;
  EXPECT_EQ(c.GetCoordinates(), nullptr);
  c.fFeature = "f";
  c.fValueType = 1;
  c.fIntValues = {9};  // ignored: the type asks for doubles
  data.fCoordinates.assign(5, c);
  data.fCoordinatesGroups.resize(2);
  data.fCoordinatesGroups[0].fCoordinates.assign(2, c);
  data.fCounts.resize(1);

  const std::string uni = Text(data.GetUnivariateDataElem());
  EXPECT_EQ(Count(uni, "<Statistic"), 2u);
  EXPECT_EQ(Count(uni, "<Counts"), 1u);
  EXPECT_EQ(Count(uni, "<Coordinates "), 2u);
  EXPECT_EQ(Count(uni, "<Array type=\"real\" n=\"0\"></Array>"), 2u);
  EXPECT_EQ(Count(Text(data.GetBivariateDataElem()), "<Coordinates "), 3u);
  data.fIsStringStats = false;
  const std::string multi = Text(data.GetMultiVariateDataElem());
  EXPECT_EQ(Count(multi, "<Statistic name=\"mean\" value=\"7\"/>"), 1u);
  EXPECT_EQ(Count(multi, "<CoordinatesGroup/><Coordinates "), 1u);  // the groups come first
  EXPECT_EQ(Count(multi, "<CoordinatesGroup>"), 1u);
  EXPECT_EQ(Count(multi, "<Coordinates "), 7u);
  EXPECT_EQ(Count(Text(U::CreateElemVarData("Other", "", data)), "<Coordinates "), 0u);

  QXXMLRecordInfo record;
  record.fRecordId = "r1";
  record.fValueType = 0;
  record.fIntValues = {{1}, {2}, {3}};
  EXPECT_EQ(Text(U::CreateElemRecordInfo(record)),
            "<RecordInfo recordId=\"r1\"><Array type=\"int\" n=\"1\">1</Array>"
            "<Array type=\"int\" n=\"1\">2</Array></RecordInfo>");
  record.fValueType = 3;
  EXPECT_EQ(U::CreateElemRecordInfo(record), nullptr);
  QXVariateData untyped;  // its coordinates have no value type: a null child
  untyped.fCoordinates.resize(1);
  EXPECT_EQ(Text(untyped.GetUnivariateDataElem()), "<UnivariateData></UnivariateData>");

  std::ostringstream shown;
  QXDisplay_850::SetOutStream(shown);
  data.fRecordInfos = {record};
  data.Display();
  QXDisplay_850::SetOutStream(std::cout);
  const std::string text = shown.str();
  EXPECT_EQ(text.find("\n QXVariateData display start: "), 0u);
  for (const char* piece : {" Coordinates display start: ", " RecordInfo display start: ",
                            "\nError", " QXVariateData display end. "}) {
    EXPECT_NE(text.find(piece), std::string::npos) << piece;
  }
}

// A document of every kind of piece, written under a decimal-comma locale:
// numbers keep the point, libxml2 reads it, and its bytes are the golden ones.
TEST(QXStatXMLUtilTest, DocumentMatchesGoldenCopyUnderDecimalComma) {
  std::string why;
  const bool comma = QXCommon_850::internal::UseLocale("de_DE.UTF-8", "de_DE", "UTF-8",
                                                       QX_TEST_BINARY_DIR "/test-locales", why);
  std::unique_ptr<XMLElement> root(U::BuildRoot());
  QXVariateData data;
  data.fDescription = "Age by region";
  data.fCounts.resize(1);
  data.fCounts[0].fTotalFreq = 120.5;
  data.fCounts[0].fMissingFreq = 3.0;
  data.fCounts[0].fCardinality = 4.0;
  data.fIsStringStats = false;
  data.fStatNames = {"mean", "variance"};
  data.fStatValues = {41.25, MV};
  QXXMLCoordinates axis;
  axis.fFeature = "category";
  axis.fField = "region";
  axis.fValueType = 2;
  axis.fStringValues = {"north", "south east", "say \"hi\""};
  QXXMLCoordinates height = axis;
  height.fStatistic = "mean";
  height.fValueType = 1;
  height.fDoubleValues = {38.5, 1.0 / 3.0, -2.5e-8};
  data.fCoordinates = {axis, height};
  data.fCoordinatesGroups.resize(1);
  data.fCoordinatesGroups[0].fDescription = "counts";
  data.fCoordinatesGroups[0].fCoordinates = {axis};
  data.fRecordInfos.resize(1);
  data.fRecordInfos[0].fRecordId = "7";
  data.fRecordInfos[0].fValueType = 1;
  data.fRecordInfos[0].fDoubleValues = {{0.5, 1e21}};
  root->AddElement(data.GetMultiVariateDataElem());
  XMLElement* bivariate = data.GetBivariateDataElem();
  U::AddRecordInfos(*bivariate, data.fRecordInfos);
  root->AddElement(bivariate);
  const int rows[] = {0, 1};
  root->AddElement(U::CreateElemMatrix(
      U::CreateElemMatrixLabels({U::CreateElemRowColLabels(
          U::CreateElemFieldInfo("region", "south east", false), "both")}),
      {U::CreateElemArray(rows, 2), U::CreateElemArray(std::vector<double>{1.0, 0.25, 2.0})},
      U::CreateElemSegmentInfo(U::CreateElemFactor("sex", "f & m", true)), nullptr, 2, 2,
      "symmetric", true));
  root->AddElement(U::CreateElem("Message", "type", "warning", "text", "  <two blanks>  "));
  std::ostringstream out;
  WriteTree(out, nullptr, root.get(), true);
  QXCommon_850::internal::UseClassicLocale();
  const std::string text = out.str();
  internal::ExpectGolden("statxml_document.xml", text);
#ifdef QX_HAVE_LIBXML2
  xmlDocPtr doc = xmlReadMemory(text.data(), static_cast<int>(text.size()), "statxml.xml", nullptr,
                                XML_PARSE_NONET);
  EXPECT_NE(doc, nullptr) << text;
  xmlFreeDoc(doc);
#endif
  if (!comma) GTEST_SKIP() << "checked in the classic locale only: " << why;
}

}  // namespace
}  // namespace QXXML_850
