#include "qx/markup/xmlelement.h"

#include <cmath>
#include <typeinfo>

#include "qx/markup/internal/xmloutput.h"
#include "qx/markup/xmlutil.h"

namespace QXXML_850 {

// Writes a tree into an XMLOutput in one descent. Elements, attributes and
// text nodes of the library's own classes are written here directly; a node
// of any other class (one derived by a caller) is asked for its own text
// through its ToString or ToStream, so it keeps its say over what it writes.
class XMLTreeWriter {
 public:
  XMLTreeWriter(internal::XMLOutput& output, ExportFormat& exportFormat, int& depth)
      : out(output), format(exportFormat), tabCount(depth) {}

  void Element(const XMLElement& element) {
    if (format.IsNewParagraph()) out.Piece(XMLUtil::ROWSEP, 1);
    if (format.HasIndentation()) Tabs(tabCount);
    out.Piece(XMLUtil::BEGIN_ELEMENT, 1);
    out.Piece(element.name);
    if (!element.attributes.empty()) {
      ++tabCount;
      for (const XMLAttribute* attribute : element.attributes) {
        if (attribute == nullptr) continue;
        out.Piece(XMLUtil::SPACE, 1);
        if (format.HasIndentation()) Tabs(tabCount);
        if (typeid(*attribute) == typeid(XMLAttribute)) {
          Attribute(*attribute);
        } else {
          Other(*attribute);
        }
      }
      --tabCount;
    }
    if (!element.children.empty()) {
      out.Piece(XMLUtil::END_ELEMENT, 1);
      ++tabCount;
      for (const XMLInterface* child : element.children) {
        if (child == nullptr) continue;
        const std::type_info& type = typeid(*child);
        if (type == typeid(XMLElement)) {
          Element(static_cast<const XMLElement&>(*child));
        } else if (type == typeid(XMLString)) {
          Text(static_cast<const XMLString&>(*child));
        } else {
          Other(*child);
        }
        out.FlushIfFull();
      }
      --tabCount;
      if (format.IsNewParagraph()) {
        out.Piece(XMLUtil::ROWSEP, 1);
        if (format.HasIndentation()) Tabs(tabCount);
      }
      out.Piece("</", 2);
      out.Piece(element.name);
      out.Piece(XMLUtil::END_ELEMENT, 1);
    } else {
      out.Piece("/>", 2);
    }
    format.SetIsNewParagraph(true);
  }

 private:
  void Tabs(int n) {
    if (n > 0) {
      const std::size_t start = out.Mark();
      out.Text().append(static_cast<std::size_t>(n), '\t');
      out.EndPiece(start);
    }
  }

  // name="escaped value", one piece as XMLAttribute::ToString makes it.
  void Attribute(const XMLAttribute& attribute) {
    const std::size_t start = out.Mark();
    std::string& text = out.Text();
    text += attribute.GetName();
    text += "=\"";
    internal::AppendEscapedValue(text, attribute.GetValue());
    text += '"';
    out.EndPiece(start);
  }

  void Text(const XMLString& node) {
    const std::size_t start = out.Mark();
    internal::AppendEscapedText(out.Text(), node.GetValue());
    out.EndPiece(start);
    format.SetIsNewParagraph(false);
  }

  void Other(const XMLInterface& node) {
    if (out.Stream() == nullptr) {
      node.ToString(out.Text(), format);
    } else {
      out.Flush();
      node.ToStream(*out.Stream(), format, out.Utf8());
    }
  }

  internal::XMLOutput& out;
  ExportFormat& format;
  int& tabCount;
};

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
  internal::XMLOutput output(out);
  XMLTreeWriter(output, format, format.tabCount).Element(*this);
  return 0;
}

// The whole subtree goes through one buffer, handed to the stream a block at
// a time: memory stays bounded by the block, not by the document.
int XMLElement::ToStream(std::ostream& os, ExportFormat& format, bool utf8) const {
  internal::XMLOutput output(os, utf8);
  XMLTreeWriter(output, format, format.tabCount).Element(*this);
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
