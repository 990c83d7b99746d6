#include "qx/markup/xmlattribute.h"

#include "qx/foundation/localeutil.h"
#include "qx/markup/internal/streamastext.h"
#include "qx/markup/internal/xmloutput.h"
#include "qx/markup/xmlutil.h"

namespace QXXML_850 {

XMLAttribute::XMLAttribute(const std::string& attributeName, const std::string& attributeValue)
    : name(attributeName), value(attributeValue) {}

XMLAttribute* XMLAttribute::Create(const std::string& name, const std::string& value) {
  return new XMLAttribute(name, value);
}

XMLAttribute* XMLAttribute::Create(const std::string& name, double value) {
  return new XMLAttribute(name, Format(value, false, nullptr));
}

XMLAttribute* XMLAttribute::Create(const std::string& name, double value, bool fixed) {
  if (!fixed) return Create(name, value);
  return new XMLAttribute(name, ReplaceSep(value));
}

int XMLAttribute::ToString(std::string& out, ExportFormat& /*format*/) const {
  out += name;
  out += XMLUtil::EQUAL;
  out += XMLUtil::QUOTE;
  internal::AppendEscapedValue(out, value);
  out += XMLUtil::QUOTE;
  return 0;
}

int XMLAttribute::ToStream(std::ostream& os, ExportFormat& format, bool utf8) const {
  return internal::StreamAsText(*this, os, format, utf8);
}

XMLAttribute* XMLAttribute::Clone() const {
  return new XMLAttribute(name, value);
}

const std::string& XMLAttribute::GetName() const {
  return name;
}

const std::string& XMLAttribute::GetValue() const {
  return value;
}

}  // namespace QXXML_850
