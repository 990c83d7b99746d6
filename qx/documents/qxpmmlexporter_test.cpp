// The PMML exporter: what each field of a data dictionary becomes, the status
// codes with the tree each leaves, and a whole document of every kind of
// field that matches its golden copy and validates against the PMML 4.3
// schema (with the one difference the field's missing interval makes).
#include "qx/documents/qxpmmlexporter.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "qx/dictionary/qxcatvar.h"
#include "qx/dictionary/qxvarlist.h"
#include "qx/documents/internal/documenttest.h"
#include "qx/documents/qxapplicinfo4xml.h"
#include "qx/documents/qxpmmltags.h"
#include "qx/documents/qxstatxmlutil.h"
#include "qx/documents/qxunistats.h"
#include "qx/foundation/internal/testlocale.h"
#include "qx/foundation/ioexception.h"
#include "qx/foundation/qxmissingvalue.h"
#include "qx/foundation/qxquerycancel.h"
#include "qx/markup/savexml.h"
#include "qx/markup/xmlelement.h"
#include "qx/markup/xmlio.h"

#ifdef QX_HAVE_LIBXML2
#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xmlschemas.h>
#endif

namespace QXCommon_850 {
namespace {

using namespace QXXML_850;
using QXMath_850::QXUniStats;
using QXXML_850::internal::OneLine;
using QXXML_850::internal::Text;
using V = IQXVariable;
namespace P = QXPMMLTags;
const double MV = QXMV::Missing();

bool Has(const std::string& text, const std::string& piece) {
  return text.find(piece) != std::string::npos;
}

// Answers yes from its `from`-th question on, counting them.
class CancelAt : public QXQueryCancel {
 public:
  explicit CancelAt(int first) : from(first) {}
  bool IsCancel() override { return ++asked >= from; }
  bool WillCancel() const override { return asked + 1 >= from; }
  int asked = 0;

 private:
  int from;
};

// A dictionary with a field of every level and storage, roles, labels
// (fewer than the categories for "region"), user-missing values and
// intervals open at one end, a flag and an ordinal field, and an unused one.
void FillDictionary(QXVarList& list) {
  const int age = list.AddContVar("age", "Age in years", V::RoleInput);
  list.GetVarAt(age)->SetVariableStorage(V::StorageInteger);
  list.GetEncoderAt(age)->AddDiscreteUserMissing(999.0, "refused");
  list.GetEncoderAt(age)->SetMissingInterval(-DBL_MAX, -1.0);
  list.GetVarAt(age)->SetFieldFormatElement(
      QXStatXMLUtil::CreateElem("NumberFormat", "decimalPlaces", "0"));
  const int income = list.AddContVar("income", "", V::RoleTarget);
  list.GetEncoderAt(income)->SetMissingInterval(1e7, DBL_MAX);
  list.GetEncoderAt(income)->AddDiscreteUserMissing(-99.0, "");
  const int region =
      list.AddCatVar("region", "Region", std::vector<std::string>{"north", "south ", "east & west"},
                     std::vector<std::string>{"North"}, V::RoleInput);
  list.GetVarAt(region)->SetVariableStorage(V::StorageString);
  list.GetEncoderAt(region)->AddDiscreteUserMissing("", "empty cell");
  const int grade =
      list.AddCatVar("grade", "Grade", std::vector<double>{1.0, 2.0, 3.0},
                     std::vector<std::string>{"low", "", "high"}, V::RolePossibleInput);
  static_cast<QXCatVar*>(list.GetVarAt(grade))->SetOrdinalFlag(true);
  list.GetVarAt(grade)->SetVariableStorage(V::StorageInteger);
  list.GetEncoderAt(grade)->AddDiscreteUserMissing(9.0, "not asked");
  const int smoker = list.AddCatVar("smoker", "Smoker", std::vector<std::string>{"no", "yes"},
                                    V::RoleTargetResponse);
  static_cast<QXCatVar*>(list.GetVarAt(smoker))->SetBinaryFlag(true, 1);
  list.GetVarAt(smoker)->SetVariableStorage(V::StorageString);
  list.GetVarAt(list.AddContVar("visit", "Visit", V::RoleRecordID))
      ->SetVariableStorage(V::StorageDate);
  list.GetVarAt(list.AddContVar("stamp", "", V::RoleInput))
      ->SetVariableStorage(V::StorageTimestamp);
  list.GetVarAt(list.AddContVar("clock", "", V::RoleInput))->SetVariableStorage(V::StorageTime);
  list.AddCatVar("notes", "", 0, V::LevelStringCategorical, V::RoleUnused);
  list.SetWeightVar("wt", "Case weight", V::RoundAsIs);
  list.SetFieldFormatsElement(XMLElement::Create("FieldFormats"));
}

// What each field becomes is in the golden document below; here, which
// fields the two exports choose.
TEST(QXPMMLExporterTest, ExportsChooseTheirFields) {
  QXVarList list;
  FillDictionary(list);
  QXPMMLExporter exporter(nullptr);
  XMLElement* out = nullptr;
  ASSERT_TRUE(exporter.ExportDataDictionary(list, {}, out).IsOK());
  std::string text = Text(out);
  EXPECT_EQ(text.find("<DataDictionary numberOfFields=\"9\">"), 0u);
  EXPECT_FALSE(Has(text, "\"notes\""));  // unused
  ASSERT_TRUE(exporter.ExportDataModel(list, {}, out).IsOK());
  text = Text(out);
  EXPECT_TRUE(Has(text, "<Fields count=\"10\">"));
  EXPECT_TRUE(
      Has(text, "<Field name=\"notes\" measure=\"nominal\" storage=\"real\" role=\"none\"/>"));

  // A named list writes exactly those, in its order, repeats and unused ones
  // included.
  const int notes = list.FindVariable("notes");
  ASSERT_TRUE(exporter.ExportDataDictionary(list, {notes, 0, notes}, out).IsOK());
  text = Text(out);
  EXPECT_EQ(text.find("<DataDictionary numberOfFields=\"3\"><DataField name=\"notes\" "
                      "optype=\"categorical\" dataType=\"double\"/><DataField name=\"age\""),
            0u);
  EXPECT_TRUE(Has(text, "</DataField><DataField name=\"notes\""));
  ASSERT_TRUE(exporter.ExportDataModel(list, {2}, out).IsOK());
  EXPECT_EQ(Text(out),
            "<DataModel><FieldFormats/><Fields count=\"1\"><Field name=\"region\" "
            "displayLabel=\"Region\" measure=\"nominal\" storage=\"string\" "
            "role=\"input\"/></Fields></DataModel>");
}

// A list whose reading failed after its first variable: the rest are null.
void ReadBrokenList(QXVarList& list) {
  QXVarList one;
  one.AddContVar("a", "A", V::RoleInput);
  std::ostringstream text;
  StartDocument(text);
  StartRoot(text, "");
  one.WriteObjectXML(text, 1);
  EndRoot(text);
  std::string content = text.str();
  content.replace(content.find("<Int value=\"1\"/>"), 16, "<Int value=\"3\"/>");  // entries
  const std::string path = ::testing::TempDir() + "documents_broken_list.xml";
  std::ofstream(path, std::ios::binary) << content;
  std::ifstream in(path, std::ios::binary);
  std::stringstream quiet;
  std::streambuf* const err = std::cerr.rdbuf(quiet.rdbuf());
  try {
    if (ParseStartXML(in)) list.ReadObjectXML(in);
  } catch (IOException* e) {
    delete e;
  }
  std::cerr.rdbuf(err);
  std::remove(path.c_str());
}

TEST(QXPMMLExporterTest, StatusCodesSayWhatStoppedTheExport) {
  QXVarList list;
  for (const char* name : {"a", "b", "c"})
    list.AddContVar(name, "", V::RoleInput);
  QXPMMLExporter exporter(nullptr);
  XMLElement* out = nullptr;
  for (int model = 0; model < 2; ++model) {
    const QXStatus status = model == 1 ? exporter.ExportDataModel(list, {0, 99}, out)
                                       : exporter.ExportDataDictionary(list, {0, 99}, out);
    std::unique_ptr<XMLElement> tree(out);
    EXPECT_TRUE(status.IsError());
    EXPECT_EQ(status.GetErrorCode(), QXPMMLExporter::StatusBadIndex);
    EXPECT_EQ(status.GetDiscreteDatum(0), 99);
    EXPECT_TRUE(Has(OneLine(out), model == 1 ? "<Fields count=\"1\"><Field name=\"a\""
                                             : "<DataDictionary numberOfFields=\"1\">"));
  }
  QXStatus status = exporter.ExportDataModel(list, {-1}, out);
  delete out;
  EXPECT_EQ(status.GetErrorCode(), QXPMMLExporter::StatusBadIndex);
  EXPECT_EQ(status.GetDiscreteDatum(0), -1);

  QXVarList broken;
  ReadBrokenList(broken);
  ASSERT_GE(broken.Size(), 2u);
  ASSERT_EQ(broken.GetVarAt(1), nullptr);
  status = exporter.ExportDataDictionary(broken, {}, out);
  EXPECT_EQ(status.GetErrorCode(), QXPMMLExporter::StatusNullVariable);
  EXPECT_EQ(status.GetDiscreteDatum(0), 1);
  EXPECT_EQ(Text(out),
            "<DataDictionary numberOfFields=\"1\"><DataField name=\"a\" "
            "displayName=\"A\" optype=\"continuous\" dataType=\"double\"/>"
            "</DataDictionary>");

  // Cancelled before the first variable, after the second, or only by the
  // question after the last: no tree at all.
  for (int first : {1, 3, 4}) {
    CancelAt cancel(first);
    QXPMMLExporter cancelled(&cancel);
    std::unique_ptr<XMLElement> left(XMLElement::Create("left"));  // the caller's, not freed
    out = left.get();
    status = cancelled.ExportDataDictionary(list, {}, out);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(status.GetErrorCode(), QXPMMLExporter::StatusCancelled);
    EXPECT_TRUE(status.IsError());
    EXPECT_EQ(cancel.asked, std::min(first, 3) + 1);
  }

  std::unique_ptr<XMLElement> left(XMLElement::Create("left"));
  out = left.get();
  status = exporter.ExportUniStats(QXUniStats("x", {2.0, 1.0}, true), out);
  EXPECT_EQ(status.GetErrorCode(), QXPMMLExporter::StatusInvalidUniStats);
  EXPECT_EQ(out, nullptr);
}

TEST(QXPMMLExporterTest, UniStatsWriteCountsSummaryAndIntervals) {
  QXPMMLExporter exporter(nullptr);
  XMLElement* out = nullptr;
  QXUniStats x("x", {1.0, 2.0, 3.0}, true);
  for (double v : {1.5, 2.5, 2.5, MV})
    x.Update(v);
  ASSERT_TRUE(exporter.ExportUniStats(x, out).IsOK());
  EXPECT_EQ(Text(out),
            "<UnivariateStats field=\"x\"><Counts totalFreq=\"4\"/><NumericInfo minimum=\"1.5\" "
            "maximum=\"2.5\" mean=\"2.16666666666667\" standardDeviation=\"0.577350269189626\"/>"
            "<ContStats><Interval leftMargin=\"1\" rightMargin=\"2\" closure=\"openClosed\"/>"
            "<Interval leftMargin=\"2\" rightMargin=\"3\" closure=\"openClosed\"/>"
            "<Array type=\"real\">1 2</Array></ContStats></UnivariateStats>");

  QXUniStats given("y", {MV, 0.0}, false);
  given.SetResults(2.0, {MV, -MV, 0.5, MV}, {MV});
  exporter.ExportUniStats(given, out);
  EXPECT_EQ(Text(out),
            "<UnivariateStats field=\"y\"><Counts totalFreq=\"2\"/><NumericInfo "
            "mean=\"0.5\"/><ContStats><Interval rightMargin=\"0\" "
            "closure=\"closedOpen\"/><Array type=\"real\">NaN</Array></ContStats>"
            "</UnivariateStats>");

  exporter.ExportUniStats(QXUniStats("z"), out);
  EXPECT_TRUE(Has(Text(out), "<Counts totalFreq=\"0\"/><NumericInfo/><ContStats/>"));
  QXUniStats codes("c", 0);
  exporter.ExportUniStats(codes, out);
  EXPECT_TRUE(Has(Text(out), "<DiscrStats><Array type=\"real\"/></DiscrStats>"));
}

TEST(QXPMMLExporterTest, RootAndHeader) {
  QXPMMLExporter exporter(nullptr);
  std::unique_ptr<XMLElement> root(exporter.ExportPMMLElement40());
  EXPECT_EQ(OneLine(root.get()),
            "<PMML version=\"4.3\" xmlns=\"http://www.dmg.org/PMML-4_3\" "
            "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
            "xsi:schemaLocation=\"http://www.dmg.org/PMML-4_3 pmml-4-3.xsd\"/>");
  XMLElement* out = nullptr;
  const QXApplicInfo4XML onlyVersion("", "2.1", "");
  ASSERT_TRUE(exporter.ExportHeader(&onlyVersion, "", true, out).IsOK());
  const std::string text = Text(out);
  EXPECT_EQ(text.find("<Header copyright=\"" + P::XML_VAL_HEADRIGHT +
                      "\"><Application version=\"2.1\"/><Timestamp>"),
            0u);
  // ctime's text without its line feed: "Wed Jun 30 21:49:08 1993".
  const size_t stamp = text.find("<Timestamp>") + 11;
  EXPECT_EQ(text.find("</Timestamp>"), stamp + 24) << text;
  exporter.ExportHeader(nullptr, "d", false, out);
  EXPECT_EQ(Text(out), "<Header copyright=\"" + P::XML_VAL_HEADRIGHT + "\" description=\"d\"/>");
  exporter.ExportExtension("", "", out);
  EXPECT_EQ(Text(out), "<Extension extender=\"qxcommon\"/>");
}

// The document of a component: root, header, dictionary, a regression model
// holding the univariate statistics, and the data model in an extension.
std::string Document(QXPMMLExporter& exporter, const QXVarList& list,
                     const std::vector<QXUniStats>& stats) {
  std::unique_ptr<XMLElement> root(exporter.ExportPMMLElement());
  XMLElement* part = nullptr;
  const QXApplicInfo4XML info("survey model", "1.0", "");
  exporter.ExportHeader(&info, "a fixed dictionary", false, part);
  root->AddElement(part);
  exporter.ExportDataDictionary(list, {}, part);
  root->AddElement(part);
  XMLElement* model = XMLElement::Create(P::XML_ELE_REGRESSIONMODEL);
  model->AddAttribute(P::XML_ATT_FUNCTIONNAME, P::XML_VAL_REGRESSION);
  XMLElement* schema = XMLElement::Create(P::XML_ELE_MININGSCHEMA);
  for (const char* name : {"age", "income"}) {
    XMLElement* field = XMLElement::Create(P::XML_ELE_MININGFIELD);
    field->AddAttribute(P::XML_ATT_MININGFIELDNAME, name);
    field->AddAttribute(P::XML_ATT_MININGFIELDUSE, name == std::string("income")
                                                       ? P::XML_VAL_MININGFIELDTARGET
                                                       : P::XML_VAL_MININGFIELDACT);
    schema->AddElement(field);
  }
  model->AddElement(schema);
  XMLElement* modelStats = XMLElement::Create(P::XML_ELE_MODELSTATS);
  for (const QXUniStats& s : stats) {
    exporter.ExportUniStats(s, part);
    modelStats->AddElement(part);
  }
  model->AddElement(modelStats);
  XMLElement* table = XMLElement::Create("RegressionTable");
  table->AddAttribute("intercept", 0.5);
  model->AddElement(table);
  root->AddElement(model);
  exporter.ExportExtension("dataModel", "", part);
  XMLElement* extension = part;
  exporter.ExportDataModel(list, {}, part);
  extension->AddElement(part);
  root->AddElement(extension);
  std::ostringstream out;
  WriteTree(out, nullptr, root.get(), true);
  return out.str();
}

#ifdef QX_HAVE_LIBXML2
struct Finding {
  std::string element, name, message;
};

void Collect(void* findings, xmlErrorPtr error) {
  Finding found;
  found.message = error->message != nullptr ? error->message : "";
  const xmlNode* node = static_cast<const xmlNode*>(error->node);
  if (node != nullptr && node->type == XML_ELEMENT_NODE) {
    found.element = reinterpret_cast<const char*>(node->name);
    xmlChar* name = xmlGetProp(node, reinterpret_cast<const xmlChar*>("name"));
    if (name != nullptr) found.name = reinterpret_cast<const char*>(name);
    xmlFree(name);
  }
  static_cast<std::vector<Finding>*>(findings)->push_back(found);
}

std::vector<Finding> Validate(xmlSchemaPtr schema, xmlDocPtr doc) {
  std::vector<Finding> findings;
  xmlSchemaValidCtxtPtr context = xmlSchemaNewValidCtxt(schema);
  xmlSchemaSetValidStructuredErrors(context, Collect, &findings);
  if (xmlSchemaValidateDoc(context, doc) != 0 && findings.empty()) {
    findings.push_back({"", "", "the validator failed"});
  }
  xmlSchemaFreeValidCtxt(context);
  return findings;
}

bool Named(const xmlNode* node, const char* name) {
  return node->type == XML_ELEMENT_NODE && xmlStrcmp(node->name, BAD_CAST name) == 0;
}

// The one difference from the schema: a field's missing-interval extensions
// follow its values. Moves them ahead of the first value; returns how many.
int MoveIntervalExtensions(xmlNode* node) {
  int moved = 0;
  for (xmlNode* child = node->children; child != nullptr; child = child->next)
    moved += MoveIntervalExtensions(child);
  if (!Named(node, "DataField")) return moved;
  xmlNode* firstValue = nullptr;
  for (xmlNode* child = node->children; child != nullptr;) {
    xmlNode* next = child->next;
    xmlChar* name = xmlGetProp(child, BAD_CAST "name");
    const bool interval = Named(child, "Extension") && name != nullptr &&
                          (xmlStrcmp(name, BAD_CAST "invalidRangeLower") == 0 ||
                           xmlStrcmp(name, BAD_CAST "invalidRangeUpper") == 0);
    xmlFree(name);
    if (firstValue == nullptr && Named(child, "Value")) firstValue = child;
    if (interval && firstValue != nullptr) {
      xmlUnlinkNode(child);
      xmlAddPrevSibling(firstValue, child);
      ++moved;
    }
    child = next;
  }
  return moved;
}
#endif

TEST(QXPMMLExporterTest, DocumentMatchesGoldenCopyAndValidatesAgainstSchema) {
  QXVarList list;
  FillDictionary(list);
  QXUniStats age("age", {MV, 30.0, 50.0, DBL_MAX}, true);
  for (double v : {25.0, 30.0, 41.5, 50.0, 67.0, 999.0}) {
    age.Update(v == 999.0 ? MV : v, 2.0);
  }
  QXUniStats income("income", {0.0, 20000.0, 1e7}, false);
  income.SetResults(12.0, {1500.0, 9.5e6, 48210.25, 2.25e4}, {7.0, MV});
  QXUniStats region("region", 3);
  for (double code : {0.0, 1.0, 1.0, 2.0, -1.0})
    region.Update(code);
  std::string why;
  const bool comma =
      internal::UseLocale("de_DE.UTF-8", "de_DE", "UTF-8", QX_TEST_BINARY_DIR "/test-locales", why);
  QXPMMLExporter exporter(nullptr);
  const std::string text = Document(exporter, list, {age, income, region});
  internal::UseClassicLocale();
  QXXML_850::internal::ExpectGolden("pmml_document.xml", text);
  if (!comma) std::printf("numbers checked in the classic locale only: %s\n", why.c_str());

#ifdef QX_HAVE_LIBXML2
  const std::string xsd = QX_TEST_SHARED_DATA "/pmml/pmml-4-3.xsd";
  if (!std::filesystem::exists(xsd)) GTEST_SKIP() << "the PMML 4.3 schema is not at " << xsd;
  xmlSchemaParserCtxtPtr parser = xmlSchemaNewParserCtxt(xsd.c_str());
  xmlSchemaPtr schema = xmlSchemaParse(parser);
  xmlSchemaFreeParserCtxt(parser);
  ASSERT_NE(schema, nullptr);
  xmlDocPtr doc = xmlReadMemory(text.data(), static_cast<int>(text.size()), "pmml.xml", nullptr,
                                XML_PARSE_NONET);
  ASSERT_NE(doc, nullptr) << "not well-formed";
  const std::vector<Finding> findings = Validate(schema, doc);
  EXPECT_FALSE(findings.empty()) << "the extensions after the values should be reported";
  for (const Finding& f : findings) {
    EXPECT_TRUE(f.element == "Extension" && f.name.compare(0, 12, "invalidRange") == 0)
        << f.element << " " << f.name << ": " << f.message;
  }
  EXPECT_EQ(MoveIntervalExtensions(xmlDocGetRootElement(doc)), 2);
  for (const Finding& f : Validate(schema, doc))
    ADD_FAILURE() << f.element << " " << f.name << ": " << f.message;
  xmlFreeDoc(doc);
  xmlSchemaFree(schema);
#else
  GTEST_SKIP() << "libxml2 was not found when the build was configured (Debian: libxml2-dev)";
#endif
}

}  // namespace
}  // namespace QXCommon_850
