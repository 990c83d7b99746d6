#include "qx/markup/xmlstring.h"

#include "qx/markup/internal/streamastext.h"
#include "qx/markup/internal/xmloutput.h"

namespace QXXML_850 {

XMLString::XMLString(const std::string& text) : value(text) {}

XMLString* XMLString::Create(const std::string& value) {
  return new XMLString(value);
}

int XMLString::ToString(std::string& out, ExportFormat& format) const {
  internal::AppendEscapedText(out, value);
  format.SetIsNewParagraph(false);
  return 0;
}

int XMLString::ToStream(std::ostream& os, ExportFormat& format, bool utf8) const {
  return internal::StreamAsText(*this, os, format, utf8);
}

XMLString* XMLString::Clone() const {
  return new XMLString(value);
}

const std::string& XMLString::GetValue() const {
  return value;
}

}  // namespace QXXML_850
