#include "qx/markup/xmldoctype.h"

#include "qx/markup/internal/streamastext.h"
#include "qx/markup/xmlutil.h"

namespace QXXML_850 {

XMLDocType::XMLDocType(const std::string& root, const std::string& system, long third)
    : rootName(root), systemId(system), kind(third) {}

XMLDocType* XMLDocType::Create(const std::string& rootName, const std::string& systemId,
                               long kind) {
  return new XMLDocType(rootName, systemId, kind);
}

long XMLDocType::AddExtension(const std::string& text) {
  extensions += XMLUtil::ROWSEP;
  extensions += text;
  return static_cast<long>(extensions.size());
}

int XMLDocType::ToString(std::string& out, ExportFormat& /*format*/) const {
  out += XMLUtil::FIRST_LINE;
  out += XMLUtil::ROWSEP;
  out += XMLUtil::BEGIN_ELEMENT;
  out += XMLUtil::BEGIN_PREPROCESSOR;
  out += "DOCTYPE";
  out += XMLUtil::SPACE;
  out += rootName;
  out += XMLUtil::SPACE;
  out += "SYSTEM";
  out += XMLUtil::SPACE;
  out += XMLUtil::QUOTE;
  out += systemId;
  out += XMLUtil::QUOTE;
  if (!extensions.empty()) {
    out += XMLUtil::ROWSEP;
    out += "[";
    out += extensions;  // each extension brought its own leading line feed
    out += XMLUtil::ROWSEP;
    out += "]";
  }
  out += XMLUtil::END_ELEMENT;
  out += XMLUtil::ROWSEP;
  return 0;
}

int XMLDocType::ToStream(std::ostream& os, ExportFormat& format, bool utf8) const {
  return internal::StreamAsText(*this, os, format, utf8);
}

XMLDocType* XMLDocType::Clone() const {
  XMLDocType* copy = new XMLDocType(rootName, systemId, kind);
  copy->extensions = extensions;
  return copy;
}

}  // namespace QXXML_850
