// Writes random trees with hostile strings and reads them back with libxml2:
// the output must be well-formed and give back the same names, attribute
// values and texts.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "qx/markup/xmlelement.h"

#ifdef QX_HAVE_LIBXML2
#include <libxml/parser.h>
#include <libxml/tree.h>
#endif

namespace QXXML_850 {
namespace {

// What a tree should read back as: texts already merged the way a parser
// merges adjacent text.
struct Expected {
  std::string name;
  std::vector<std::pair<std::string, std::string>> attributes;
  std::vector<Expected> children;  // an empty name marks a text child
  std::string text;
};

class TreeMaker {
 public:
  explicit TreeMaker(unsigned seed) : random(seed) {}

  XMLElement* Element(Expected& expected, int depth) {
    static const char* const names[] = {"a", "Item", "x.y", "n-1", "_z", "\xC3\xA9t\xC3\xA9"};
    expected.name = names[Pick(6)];
    XMLElement* element = XMLElement::Create(expected.name);
    const int nAttributes = Pick(4);
    for (int i = 0; i < nAttributes; ++i) {
      const std::string name = "at" + std::to_string(i);
      const std::string value = Hostile(true);
      element->AddAttribute(name, value);
      expected.attributes.emplace_back(name, value);
    }
    const int nChildren = depth < 4 ? Pick(5) : 0;
    for (int i = 0; i < nChildren; ++i) {
      if (Pick(2) == 0) {
        const std::string text = Hostile(false);
        element->AddElement(XMLString::Create(text));
        if (expected.children.empty() || !expected.children.back().name.empty()) {
          expected.children.push_back(Expected());
        }
        expected.children.back().text += text;
      } else {
        expected.children.push_back(Expected());
        element->AddElement(Element(expected.children.back(), depth + 1));
      }
    }
    return element;
  }

 private:
  int Pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(random); }

  // Markup characters, blanks in runs and at the ends, line breaks, entity
  // look-alikes and multibyte UTF-8. Texts leave out "]", whose "]]>" is not
  // allowed in character data and is written unescaped.
  std::string Hostile(bool attribute) {
    static const char* const pieces[] = {
        "&",  "<", ">", "\"",    "'",     "\t", "\n",       "\r",           " ",
        "  ", "a", "Z", "&amp;", "&#32;", ";",  "\xC3\xA9", "\xE2\x82\xAC", "]"};
    std::string text;
    const int length = Pick(8);
    for (int i = 0; i < length; ++i)
      text += pieces[Pick(attribute ? 18 : 17)];
    return text;
  }

  std::mt19937 random;
};

#ifdef QX_HAVE_LIBXML2

std::string Text(const xmlChar* text) {
  return text == nullptr ? std::string() : reinterpret_cast<const char*>(text);
}

// A parser reads a carriage return in character data as a line feed.
std::string AsParsed(std::string text) {
  std::string out;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\r') {
      out += '\n';
      if (i + 1 < text.size() && text[i + 1] == '\n') ++i;
    } else {
      out += text[i];
    }
  }
  return out;
}

// Merged text children, with line feeds removed when `dropLineFeeds` (the
// line feeds a formatted tree puts ahead of tags are text to a parser).
std::vector<Expected> Normalised(const std::vector<Expected>& children, bool dropLineFeeds) {
  std::vector<Expected> out;
  for (const Expected& child : children) {
    if (!child.name.empty()) {
      out.push_back(child);
      continue;
    }
    std::string text = AsParsed(child.text);
    if (dropLineFeeds) text.erase(std::remove(text.begin(), text.end(), '\n'), text.end());
    if (text.empty()) continue;
    if (!out.empty() && out.back().name.empty()) {
      out.back().text += text;
    } else {
      out.push_back(Expected());
      out.back().text = text;
    }
  }
  return out;
}

Expected FromParser(const xmlNode* node) {
  Expected result;
  result.name = Text(node->name);
  for (const xmlAttr* a = node->properties; a != nullptr; a = a->next) {
    xmlChar* value = xmlNodeListGetString(node->doc, a->children, 1);
    result.attributes.emplace_back(Text(a->name), Text(value));
    xmlFree(value);
  }
  for (const xmlNode* child = node->children; child != nullptr; child = child->next) {
    if (child->type == XML_ELEMENT_NODE) {
      result.children.push_back(FromParser(child));
    } else if (child->type == XML_TEXT_NODE) {
      result.children.push_back(Expected());
      result.children.back().text = Text(child->content);
    }
  }
  return result;
}

void ExpectSame(const Expected& want, const Expected& got, bool format, const std::string& where) {
  ASSERT_EQ(got.name, want.name) << where;
  EXPECT_EQ(got.attributes, want.attributes) << where << "/" << want.name;
  const std::vector<Expected> wanted = Normalised(want.children, format);
  const std::vector<Expected> found = Normalised(got.children, format);
  ASSERT_EQ(found.size(), wanted.size()) << where << "/" << want.name;
  for (size_t i = 0; i < wanted.size(); ++i) {
    if (wanted[i].name.empty()) {
      EXPECT_EQ(found[i].text, wanted[i].text) << where << "/" << want.name << " text " << i;
    } else {
      ExpectSame(wanted[i], found[i], format, where + "/" + want.name);
    }
  }
}

void Quiet(void*, const char*, ...) {}

TEST(XMLElementParseTest, RandomHostileTreesReadBackThroughLibxml2) {
  xmlSetGenericErrorFunc(nullptr, Quiet);
  XMLDocType docType("root", "root.dtd", 0);
  docType.AddExtension("<!ENTITY e \"entity\">");
  for (unsigned seed = 1; seed <= 300; ++seed) {
    TreeMaker maker(seed);
    Expected expected;
    std::unique_ptr<XMLElement> root(maker.Element(expected, 0));
    for (bool format : {false, true}) {
      std::ostringstream out;
      WriteTree(out, seed % 2 == 0 ? &docType : nullptr, root.get(), format);
      const std::string text = out.str();
      xmlDocPtr doc = xmlReadMemory(text.data(), static_cast<int>(text.size()), "tree.xml", nullptr,
                                    XML_PARSE_NONET);
      ASSERT_NE(doc, nullptr) << "not well-formed, seed " << seed << ":\n" << text;
      ExpectSame(expected, FromParser(xmlDocGetRootElement(doc)), format,
                 "seed " + std::to_string(seed));
      xmlFreeDoc(doc);
    }
  }
  xmlCleanupParser();
}

#else

TEST(XMLElementParseTest, RandomHostileTreesReadBackThroughLibxml2) {
  GTEST_SKIP() << "libxml2 was not found when the build was configured (Debian: libxml2-dev)";
}

#endif

}  // namespace
}  // namespace QXXML_850
