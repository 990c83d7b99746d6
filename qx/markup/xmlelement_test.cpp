#include "qx/markup/xmlelement.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <sstream>
#include <string>

#include "qx/foundation/internal/testlocale.h"
#include "qx/markup/xmlutil.h"

namespace QXXML_850 {
namespace {

// The document of the tests below: text before, between and after elements,
// an empty element, nesting and attributes that need escaping.
std::unique_ptr<XMLElement> SampleTree() {
  auto root = std::unique_ptr<XMLElement>(XMLElement::Create("Doc"));
  root->AddAttribute("version", "1.0");
  root->AddAttribute("note", "a  b");
  EXPECT_EQ(root->AddElement(XMLString::Create("lead > text")), 1);
  XMLElement* item = XMLElement::Create("Item");
  item->AddAttribute("id", 1.0);
  item->AddElement(XMLString::Create("one"));
  EXPECT_EQ(root->AddElement(item), 2);
  root->AddElement(XMLElement::Create("Empty"));
  root->AddElement(XMLString::Create("tail & end"));
  XMLElement* group = XMLElement::Create("Group");
  XMLElement* inner = XMLElement::Create("Inner");
  inner->AddAttribute("x", "<v>");
  group->AddElement(inner);
  XMLElement* leaf = XMLElement::Create("Leaf");
  leaf->AddElement(XMLString::Create("t"));
  EXPECT_EQ(group->AddElement(leaf), 2);
  EXPECT_EQ(root->AddElement(group), 5);
  return root;
}

std::string Tree(const XMLDocType* docType, const XMLElement& root, bool format) {
  std::ostringstream out;
  EXPECT_EQ(WriteTree(out, docType, &root, format), 0);
  return out.str();
}

TEST(XMLElementTest, WholeDocumentsWithAndWithoutFormat) {
  const auto root = SampleTree();
  XMLDocType docType("Doc", "doc.dtd", 7);
  const std::string head =
      "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n<!DOCTYPE Doc SYSTEM \"doc.dtd\">\n";
  EXPECT_EQ(Tree(&docType, *root, true),
            head +
                "\n<Doc version=\"1.0\" note=\"a &#32;b\">lead > text<Item id=\"1\">one</Item>"
                "\n<Empty/>tail &amp; end<Group><Inner x=\"&lt;v&gt;\"/>"
                "\n<Leaf>t</Leaf>"
                "\n</Group>"
                "\n</Doc>");
  EXPECT_EQ(
      Tree(&docType, *root, false),
      head +
          "<Doc version=\"1.0\" note=\"a &#32;b\">lead > text<Item id=\"1\">one</Item>"
          "<Empty/>tail &amp; end<Group><Inner x=\"&lt;v&gt;\"/><Leaf>t</Leaf></Group></Doc>");

  EXPECT_EQ(docType.AddExtension("<!ENTITY a \"b\">"), 16);
  docType.AddExtension("<!ENTITY c \"d\">");
  XMLElement empty("r");
  EXPECT_EQ(Tree(&docType, empty, true),
            "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n<!DOCTYPE Doc SYSTEM \"doc.dtd\""
            "\n[\n<!ENTITY a \"b\">\n<!ENTITY c \"d\">\n]>\n\n<r/>");
  EXPECT_EQ(Tree(nullptr, empty, true), "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n\n<r/>");
}

TEST(XMLElementTest, IndentationAndTheStreamPathGiveTheSameText) {
  XMLElement a("a");
  a.AddAttribute("p", "1");
  a.AddAttribute("q", "2");
  XMLElement* b = XMLElement::Create("b");
  b->AddAttribute("r", "3");
  b->AddElement(XMLElement::Create("c"));
  a.AddElement(b);
  a.AddElement(XMLString::Create("x"));
  a.AddElement(XMLElement::Create("d"));
  XMLElement* e = XMLElement::Create("e");
  e->AddElement(XMLString::Create("y"));
  a.AddElement(e);

  ExportFormat indented;
  indented.SetIndentation(true);
  std::string text;
  EXPECT_EQ(a.ToString(text, indented), 0);
  EXPECT_EQ(text,
            "\n<a \tp=\"1\" \tq=\"2\">\n\t<b \t\tr=\"3\">\n\t\t<c/>\n\t</b>x\t<d/>"
            "\n\t<e>y</e>\n</a>");

  // The stream path writes the same characters for every setting, for this
  // tree and the sample document.
  const auto sample = SampleTree();
  for (XMLElement* root : {&a, sample.get()}) {
    for (int setting = 0; setting < 3; ++setting) {
      ExportFormat forString, forStream;
      forString.SetFormat(setting != 0);
      forStream.SetFormat(setting != 0);
      forString.SetIndentation(setting == 2);
      forStream.SetIndentation(setting == 2);
      std::string viaString;
      root->ToString(viaString, forString);
      std::ostringstream viaStream;
      root->ToStream(viaStream, forStream, false);
      EXPECT_EQ(viaStream.str(), viaString) << "setting " << setting;
    }
  }
}

TEST(XMLElementTest, NumericAttributes) {
  XMLElement e("e");
  e.AddAttribute("nan", std::numeric_limits<double>::quiet_NaN());
  e.AddAttribute("inf", -std::numeric_limits<double>::infinity());
  e.AddAttribute("nanfixed", std::numeric_limits<double>::quiet_NaN(), true);
  e.AddAttribute("third", 1.0 / 3.0);
  e.AddAttribute("missing", std::numeric_limits<double>::lowest());
  e.AddAttribute("fixed", 0.5, true);
  e.AddAttribute("plain", 0.5, false);
  e.AddAttribute("small", -2.5e-300);
  ExportFormat format;
  format.SetFormat(false);
  std::string text;
  e.ToString(text, format);
  EXPECT_EQ(text,
            "<e third=\"0.333333333333333\" missing=\"-1.79769313486232e+308\""
            " fixed=\"0.5000000000000000\" plain=\"0.5\" small=\"-2.5e-300\"/>");
}

TEST(XMLElementTest, CloneSharesNothing) {
  auto source = SampleTree();
  XMLDocType docType("Doc", "doc.dtd", 0);
  docType.AddExtension("<!ENTITY a \"b\">");
  const std::string expected = Tree(&docType, *source, true);

  std::unique_ptr<XMLElement> copy(source->Clone());
  std::unique_ptr<XMLDocType> docCopy(docType.Clone());
  source->AddAttribute("later", "x");  // changes to the source don't reach the copy
  source.reset();
  EXPECT_EQ(Tree(docCopy.get(), *copy, true), expected);
  EXPECT_EQ(copy->GetName(), "Doc");
}

TEST(XMLElementTest, UTF8WriterConvertsEachPiece) {
  XMLElement root("r");
  root.AddAttribute("a", "caf\xC3\xA9");
  root.AddElement(XMLString::Create("\xE2\x82\xAC 5"));
  XMLDocType docType("r", "r.dtd", 0);
  ASSERT_NE(std::setlocale(LC_ALL, "C.UTF-8"), nullptr);
  std::ostringstream utf8;
  WriteTreeUTF8(utf8, &docType, &root, true);
  EXPECT_EQ(utf8.str(), Tree(&docType, root, true));

  std::string why;
  if (QXCommon_850::internal::UseLocale("de_DE.ISO-8859-1", "de_DE", "ISO-8859-1",
                                        QX_TEST_BINARY_DIR "/test-locales", why)) {
    XMLElement latin("r");
    latin.AddAttribute("a", "caf\xE9");
    std::ostringstream out;
    WriteTreeUTF8(out, nullptr, &latin, false);
    EXPECT_EQ(out.str(), std::string(XMLUtil::FIRST_LINE) + "\n<r a=\"caf\xC3\xA9\"/>");
  }
  // In the C locale a non-ASCII byte ends its own piece, here the attribute
  // with its closing quote; the pieces after it are written.
  QXCommon_850::internal::UseClassicLocale();
  std::ostringstream cut;
  WriteTreeUTF8(cut, nullptr, &root, false);
  EXPECT_EQ(cut.str(), std::string(XMLUtil::FIRST_LINE) + "\n<r a=\"caf></r>");
}

}  // namespace
}  // namespace QXXML_850
