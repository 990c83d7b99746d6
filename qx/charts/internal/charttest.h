#ifndef QX_CHARTS_INTERNAL_CHARTTEST_H
#define QX_CHARTS_INTERNAL_CHARTTEST_H

// Test support (never installed): a chart's section written and read back by
// libxml2.

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "qx/markup/xmlelement.h"

#ifdef QX_HAVE_LIBXML2
#include <libxml/parser.h>
#endif

namespace QXMath_850 {
namespace internal {

// The section's root name and the text of the Array of each Coordinates
// child, in order. The element is deleted. Without libxml2 the name is empty.
struct ReadBack {
  explicit ReadBack(QXXML_850::XMLElement* element) {
    std::unique_ptr<QXXML_850::XMLElement> owner(element);
    std::ostringstream out;
    QXXML_850::WriteTree(out, nullptr, element, true);
#ifdef QX_HAVE_LIBXML2
    const std::string text = out.str();
    xmlDocPtr doc = xmlReadMemory(text.data(), static_cast<int>(text.size()), "chart.xml", nullptr,
                                  XML_PARSE_NONET);
    EXPECT_NE(doc, nullptr) << text;
    if (doc == nullptr) return;
    xmlNodePtr root = xmlDocGetRootElement(doc);
    name = reinterpret_cast<const char*>(root->name);
    for (xmlNodePtr c = root->children; c != nullptr; c = c->next) {
      if (c->type != XML_ELEMENT_NODE || !xmlStrEqual(c->name, BAD_CAST "Coordinates")) continue;
      for (xmlNodePtr a = c->children; a != nullptr; a = a->next) {
        if (a->type != XML_ELEMENT_NODE) continue;
        xmlChar* content = xmlNodeGetContent(a);
        arrays.emplace_back(reinterpret_cast<const char*>(content));
        xmlFree(content);
      }
    }
    xmlFreeDoc(doc);
#endif
  }

  std::string name;
  std::vector<std::string> arrays;
};

}  // namespace internal
}  // namespace QXMath_850

#endif  // QX_CHARTS_INTERNAL_CHARTTEST_H
