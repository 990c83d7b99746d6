#include "qx/markup/xmlelement.h"

#include <cmath>

#include "qx/markup/xmlutil.h"

namespace QXXML_850 {

namespace {

// Receives the pieces of an element's text: appended to a string, or written
// to a stream as they come, optionally converted to UTF-8.
class StringSink {
 public:
  explicit StringSink(std::string& text) : out(text) {}
  void Put(const std::string& piece) { out += piece; }
  void Put(const char* piece) { out += piece; }
  void Child(const XMLInterface& node, ExportFormat& format) { node.ToString(out, format); }

 private:
  std::string& out;
};

class StreamSink {
 public:
  StreamSink(std::ostream& stream, bool toUtf8) : os(stream), utf8(toUtf8) {}
  void Put(const std::string& piece) { utf8 ? WriteUTF(os, piece) : Write(os, piece); }
  void Put(const char* piece) { Put(std::string(piece)); }
  void Child(const XMLInterface& node, ExportFormat& format) { node.ToStream(os, format, utf8); }

 private:
  std::ostream& os;
  bool utf8;
};

}  // namespace

// Both ToString and ToStream run this, so the two give the same characters.
template <class Sink>
static void WriteElement(Sink& sink, const std::string& name,
                         const std::vector<XMLAttribute*>& attributes,
                         const std::vector<XMLInterface*>& children, ExportFormat& format,
                         int& tabCount) {
  if (format.IsNewParagraph()) sink.Put(XMLUtil::ROWSEP);
  if (format.HasIndentation()) sink.Put(XMLUtil::GetTabs(tabCount));
  sink.Put(XMLUtil::BEGIN_ELEMENT);
  sink.Put(name);
  if (!attributes.empty()) {
    ++tabCount;
    for (const XMLAttribute* attribute : attributes) {
      if (attribute == nullptr) continue;
      sink.Put(XMLUtil::SPACE);
      if (format.HasIndentation()) sink.Put(XMLUtil::GetTabs(tabCount));
      sink.Child(*attribute, format);
    }
    --tabCount;
  }
  if (!children.empty()) {
    sink.Put(XMLUtil::END_ELEMENT);
    ++tabCount;
    for (const XMLInterface* child : children) {
      if (child != nullptr) sink.Child(*child, format);
    }
    --tabCount;
    if (format.IsNewParagraph()) {
      sink.Put(XMLUtil::ROWSEP);
      if (format.HasIndentation()) sink.Put(XMLUtil::GetTabs(tabCount));
    }
    sink.Put(XMLUtil::BEGIN_ELEMENT);
    sink.Put(XMLUtil::BEGIN_END_ELEMENT);
    sink.Put(name);
    sink.Put(XMLUtil::END_ELEMENT);
  } else {
    sink.Put(XMLUtil::BEGIN_END_ELEMENT);
    sink.Put(XMLUtil::END_ELEMENT);
  }
  format.SetIsNewParagraph(true);
}

XMLElement::XMLElement(const std::string& elementName) : name(elementName) {}

XMLElement::~XMLElement() {
  for (XMLAttribute* attribute : attributes)
    delete attribute;
  for (XMLInterface* child : children)
    delete child;
}

XMLElement* XMLElement::Create(const std::string& name) {
  return new XMLElement(name);
}

int XMLElement::ToString(std::string& out, ExportFormat& format) const {
  std::string text;
  StringSink sink(text);
  WriteElement(sink, name, attributes, children, format, format.tabCount);
  out += text;
  return 0;
}

int XMLElement::ToStream(std::ostream& os, ExportFormat& format, bool utf8) const {
  StreamSink sink(os, utf8);
  WriteElement(sink, name, attributes, children, format, format.tabCount);
  return 0;
}

XMLElement* XMLElement::Clone() const {
  XMLElement* copy = new XMLElement(name);
  copy->attributes.reserve(attributes.size());
  for (const XMLAttribute* attribute : attributes) {
    copy->attributes.push_back(attribute != nullptr ? attribute->Clone() : nullptr);
  }
  copy->children.reserve(children.size());
  for (const XMLInterface* child : children) {
    copy->children.push_back(child != nullptr ? child->Clone() : nullptr);
  }
  return copy;
}

long XMLElement::AddElement(XMLElement* child) {
  children.push_back(child);
  return static_cast<long>(children.size());
}

long XMLElement::AddElement(XMLString* child) {
  children.push_back(child);
  return static_cast<long>(children.size());
}

void XMLElement::AddAttribute(XMLAttribute* attribute) {
  attributes.push_back(attribute);
}

void XMLElement::AddAttribute(const std::string& attributeName, const std::string& value) {
  attributes.push_back(XMLAttribute::Create(attributeName, value));
}

void XMLElement::AddAttribute(const std::string& attributeName, double value) {
  if (std::isfinite(value)) attributes.push_back(XMLAttribute::Create(attributeName, value));
}

void XMLElement::AddAttribute(const std::string& attributeName, double value, bool fixed) {
  if (std::isfinite(value)) attributes.push_back(XMLAttribute::Create(attributeName, value, fixed));
}

const std::string& XMLElement::GetName() const {
  return name;
}

// Shared by WriteTree and WriteTreeUTF8: header, then the root.
static int WriteDocument(std::ostream& os, const XMLDocType* docType, const XMLElement* root,
                         bool format, bool utf8) {
  ExportFormat state;
  state.SetFormat(format);
  if (docType != nullptr) {
    docType->ToStream(os, state, utf8);
  } else {
    const std::string header = std::string(XMLUtil::FIRST_LINE) + XMLUtil::ROWSEP;
    utf8 ? WriteUTF(os, header) : Write(os, header);
  }
  if (root != nullptr) root->ToStream(os, state, utf8);
  return 0;
}

int WriteTree(std::ostream& os, const XMLDocType* docType, const XMLElement* root, bool format) {
  return WriteDocument(os, docType, root, format, false);
}

int WriteTreeUTF8(std::ostream& os, const XMLDocType* docType, const XMLElement* root,
                  bool format) {
  return WriteDocument(os, docType, root, format, true);
}

}  // namespace QXXML_850
