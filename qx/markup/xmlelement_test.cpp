#include "qx/markup/xmlelement.h"

#include <gtest/gtest.h>

#include <clocale>
#include <limits>
#include <memory>
#include <sstream>
#include <string>

namespace QXXML_850 {
namespace {

const std::string kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n";

XMLElement* Child(XMLElement* parent, const char* name) {
  XMLElement* child = XMLElement::Create(name);
  parent->AddElement(child);
  return child;
}

// Text before, between and after elements, an empty element, nesting, and
// attributes that need escaping.
std::unique_ptr<XMLElement> SampleTree() {
  std::unique_ptr<XMLElement> root(XMLElement::Create("Doc"));
  root->AddAttribute("note", "a  b");
  EXPECT_EQ(root->AddElement(XMLString::Create("lead > text")), 1);
  XMLElement* item = XMLElement::Create("Item");
  item->AddAttribute("id", 1.0);
  item->AddElement(XMLString::Create("one"));
  EXPECT_EQ(root->AddElement(item), 2);
  root->AddElement(XMLElement::Create("Empty"));
  root->AddElement(XMLString::Create("tail & end"));
  XMLElement* group = Child(root.get(), "Group");
  Child(group, "Inner");
  Child(group, "Leaf")->AddElement(XMLString::Create("t"));
  return root;
}

std::string Tree(const XMLDocType* docType, const XMLElement& root, bool format) {
  std::ostringstream out;
  WriteTree(out, docType, &root, format);
  return out.str();
}

TEST(XMLElementTest, WholeDocuments) {
  const auto root = SampleTree();
  XMLDocType docType("Doc", "doc.dtd", 7);
  const std::string head = kDeclaration + "<!DOCTYPE Doc SYSTEM \"doc.dtd\">\n";
  EXPECT_EQ(Tree(&docType, *root, true),
            head +
                "\n<Doc note=\"a &#32;b\">lead > text<Item id=\"1\">one</Item>\n<Empty/>"
                "tail &amp; end<Group><Inner/>\n<Leaf>t</Leaf>\n</Group>\n</Doc>");
  EXPECT_EQ(Tree(&docType, *root, false),
            head +
                "<Doc note=\"a &#32;b\">lead > text<Item id=\"1\">one</Item><Empty/>"
                "tail &amp; end<Group><Inner/><Leaf>t</Leaf></Group></Doc>");
  EXPECT_EQ(docType.AddExtension("<!ENTITY a \"b\">"), 16);
  docType.AddExtension("<!ENTITY c \"d\">");
  const XMLElement empty("r");
  EXPECT_EQ(
      Tree(&docType, empty, false),
      kDeclaration +
          "<!DOCTYPE Doc SYSTEM \"doc.dtd\"\n[\n<!ENTITY a \"b\">\n<!ENTITY c \"d\">\n]>\n<r/>");
  EXPECT_EQ(Tree(nullptr, empty, true), kDeclaration + "\n<r/>");
}

TEST(XMLElementTest, IndentationAndEveryWriterGiveTheSameText) {
  XMLElement a("a");
  a.AddAttribute("p", "1");
  a.AddAttribute("q", "2");
  Child(Child(&a, "b"), "c");
  a.AddElement(XMLString::Create("x"));
  a.AddElement(XMLElement::Create("d"));
  Child(&a, "e")->AddElement(XMLString::Create("y"));
  ExportFormat indented;
  indented.SetIndentation(true);
  std::string text;
  a.ToString(text, indented);
  EXPECT_EQ(text, "\n<a \tp=\"1\" \tq=\"2\">\n\t<b>\n\t\t<c/>\n\t</b>x\t<d/>\n\t<e>y</e>\n</a>");

  const auto sample = SampleTree();
  ASSERT_NE(std::setlocale(LC_ALL, "C.UTF-8"), nullptr);  // UTF-8 text passes unchanged
  sample->AddElement(XMLString::Create("caf\xC3\xA9 \xE2\x82\xAC"));
  for (XMLElement* root : {&a, sample.get()}) {
    for (int setting = 0; setting < 3; ++setting) {
      ExportFormat forString, forStream, forUTF8;
      for (ExportFormat* f : {&forString, &forStream, &forUTF8}) {
        f->SetFormat(setting != 0);
        f->SetIndentation(setting == 2);
      }
      std::string viaString;
      root->ToString(viaString, forString);
      std::ostringstream viaStream, viaUTF8;
      root->ToStream(viaStream, forStream, false);
      root->ToStream(viaUTF8, forUTF8, true);
      EXPECT_EQ(viaStream.str(), viaString) << "setting " << setting;
      EXPECT_EQ(viaUTF8.str(), viaString) << "setting " << setting;
    }
  }
  // In the C locale a non-ASCII byte ends its own piece, here the attribute
  // with its closing quote; the pieces after it are written.
  std::setlocale(LC_ALL, "C");
  XMLElement r("r");
  r.AddAttribute("a", "caf\xC3\xA9");
  r.AddElement(XMLString::Create("\xE2\x82\xAC"));
  std::ostringstream cut;
  WriteTreeUTF8(cut, nullptr, &r, false);
  EXPECT_EQ(cut.str(), kDeclaration + "<r a=\"caf></r>");
}

TEST(XMLElementTest, NumericAttributesAndClones) {
  auto e = std::make_unique<XMLElement>("e");
  e->AddAttribute("nan", std::numeric_limits<double>::quiet_NaN());
  e->AddAttribute("inf", -std::numeric_limits<double>::infinity(), true);
  e->AddAttribute("third", 1.0 / 3.0);
  e->AddAttribute("missing", std::numeric_limits<double>::lowest());
  e->AddAttribute("fixed", 0.5, true);
  e->AddElement(SampleTree().release());
  const std::string expected = Tree(nullptr, *e, true);
  const std::string start = kDeclaration +
                            "\n<e third=\"0.333333333333333\" missing=\"-1.79769313486232e+308\""
                            " fixed=\"0.5000000000000000\">\n<Doc ";
  EXPECT_EQ(expected.substr(0, start.size()), start);

  std::unique_ptr<XMLElement> copy(e->Clone());
  e->AddAttribute("later", "x");  // nothing is shared with the copy
  e.reset();
  EXPECT_EQ(Tree(nullptr, *copy, true), expected);
}

}  // namespace
}  // namespace QXXML_850
