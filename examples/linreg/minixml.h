// A small reader of XML documents for the regression component: elements,
// attributes and text, with the predefined and numeric character references,
// comments, processing instructions, CDATA and a document type skipped. It
// reads the settings files and the PMML models the component itself writes,
// and refuses, with a line number, anything it can't read.
#ifndef QX_EXAMPLES_LINREG_MINIXML_H
#define QX_EXAMPLES_LINREG_MINIXML_H

#include <string>
#include <utility>
#include <vector>

#include "linregstatus.h"

namespace linreg {

struct XmlNode {
  std::string name;
  std::vector<std::pair<std::string, std::string>> attributes;
  std::vector<XmlNode> children;
  std::string text;  // the character data directly inside, concatenated
  long line = 0;

  // The attribute's value, or null.
  const std::string* Attribute(const std::string& key) const;
  // The first child of that name, or null.
  const XmlNode* Child(const std::string& key) const;
};

// Limits that hold whatever the bytes: the size of a document, the depth of
// nesting and the number of elements.
constexpr std::size_t kMaxXmlBytes = std::size_t(256) << 20;
constexpr int kMaxXmlDepth = 64;
constexpr long kMaxXmlElements = 2000000;

// The root element of the document in `text`; a failure throws InputError
// with `code` and a line "shownName:line: error: ...".
XmlNode ParseXml(const std::string& text, const std::string& shownName, Code code);
// The same for a file, read whole up to kMaxXmlBytes.
XmlNode ParseXmlFile(const std::string& path, Code code);

}  // namespace linreg

#endif  // QX_EXAMPLES_LINREG_MINIXML_H
