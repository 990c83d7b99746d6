#include "qx/markup/savexml.h"

#include "qx/foundation/internal/doublebits.h"
#include "qx/foundation/internal/numbertext.h"
#include "qx/markup/internal/savexmltags.h"
#include "qx/markup/internal/xmloutput.h"
#include "qx/markup/xmlattribute.h"
#include "qx/markup/xmldoctype.h"
#include "qx/markup/xmlutil.h"

namespace QXXML_850 {

namespace Tags = internal::SaveXMLTags;

namespace {

// An attribute as it stands in a line: name="escaped value".
std::string AttributeText(const std::string& name, const std::string& value) {
  std::string text;
  ExportFormat unused;
  XMLAttribute(name, value).ToString(text, unused);
  return text;
}

// Each line is put together in this per-thread buffer and handed to the
// stream in one write, so a field costs no allocation once the buffer has
// grown to the longest line.
std::string& LineBuffer(int depth) {
  thread_local std::string line;
  line.assign(XMLUtil::ROWSEP);
  if (depth > 0) line.append(static_cast<std::size_t>(depth), '\t');
  return line;
}

int WriteLine(std::ostream& os, const std::string& line) {
  os.write(line.data(), static_cast<std::streamsize>(line.size()));
  return 0;
}

// The start of a field's line: line feed, tabs, <Element attribute="
std::string& FieldStart(int depth, const std::string& element, const std::string& attribute) {
  std::string& line = LineBuffer(depth);
  line += XMLUtil::BEGIN_ELEMENT;
  line += element;
  line += XMLUtil::SPACE;
  line += attribute;
  line += "=\"";
  return line;
}

int FieldEnd(std::ostream& os, std::string& line) {
  line += "\"/>";
  return WriteLine(os, line);
}

// A field with a string value, escaped as an attribute value.
int WriteField(std::ostream& os, int depth, const std::string& element,
               const std::string& attribute, const std::string& value) {
  std::string& line = FieldStart(depth, element, attribute);
  internal::AppendEscapedValue(line, value);
  return FieldEnd(os, line);
}

// A field with a number: "%.15g" in the classic locale, whose text never
// needs escaping.
int WriteNumber(std::ostream& os, int depth, const std::string& element,
                const std::string& attribute, double value) {
  std::string& line = FieldStart(depth, element, attribute);
  char text[internal::kNumberTextSize];
  line.append(text, internal::NumberText15(value, text));
  return FieldEnd(os, line);
}

}  // namespace

double MV::gMissingValue =
    QXCommon_850::internal::DoubleFromBits(QXCommon_850::internal::kMissingValueBits);

XMLObj::XMLObj(std::string objectName, int depth) : name(objectName), nTabs(depth) {}

std::string XMLObj::GetName() const {
  return name;
}

int XMLObj::GetNTabs() const {
  return nTabs;
}

int XMLObj::StartObj(std::ostream& os) const {
  std::string& line = LineBuffer(nTabs);
  line += XMLUtil::BEGIN_ELEMENT;
  line += Tags::XML_ELE_OBJ;
  line += XMLUtil::SPACE;
  line += Tags::XML_ATT_OBJ;
  line += XMLUtil::EQUAL;
  line += XMLUtil::QUOTE;
  line += name;
  line += XMLUtil::QUOTE;
  line += XMLUtil::END_ELEMENT;
  return WriteLine(os, line);
}

int XMLObj::EndObj(std::ostream& os) const {
  std::string& line = LineBuffer(nTabs);
  line += XMLUtil::BEGIN_ELEMENT;
  line += XMLUtil::BEGIN_END_ELEMENT;
  line += Tags::XML_ELE_OBJ;
  line += XMLUtil::END_ELEMENT;
  return WriteLine(os, line);
}

int XMLObj::WriteSubElement(std::ostream& os, double value) const {
  if (value == MV::gMissingValue) {
    return WriteField(os, nTabs + 1, Tags::XML_ELE_DOUBLE, Tags::XML_ATT_DOUBLE,
                      Tags::XML_VAL_MISSING);
  }
  return WriteNumber(os, nTabs + 1, Tags::XML_ELE_DOUBLE, Tags::XML_ATT_DOUBLE, value);
}

int XMLObj::WriteSubElement(std::ostream& os, int value) const {
  return WriteNumber(os, nTabs + 1, Tags::XML_ELE_INT, Tags::XML_ATT_INT,
                     static_cast<double>(value));
}

int XMLObj::WriteSubElement(std::ostream& os, unsigned int value) const {
  return WriteNumber(os, nTabs + 1, Tags::XML_ELE_INT, Tags::XML_ATT_INT,
                     static_cast<double>(value));
}

int XMLObj::WriteSubElement(std::ostream& os, bool value) const {
  return WriteNumber(os, nTabs + 1, Tags::XML_ELE_INT, Tags::XML_ATT_INT, value ? 1.0 : 0.0);
}

int XMLObj::WriteSubElement(std::ostream& os, long value) const {
  return WriteNumber(os, nTabs + 1, Tags::XML_ELE_LONG, Tags::XML_ATT_LONG,
                     static_cast<double>(value));
}

int XMLObj::WriteSubElement(std::ostream& os, const std::string& value) const {
  return WriteField(os, nTabs + 1, Tags::XML_ELE_STRING, Tags::XML_ATT_STRING, value);
}

int XMLObj::WriteSubElement(std::ostream& os, const char* value) const {
  return WriteSubElement(os, std::string(value != nullptr ? value : ""));
}

int StartDocument(std::ostream& os) {
  XMLDocType docType(Tags::XML_ELE_ROOT, Tags::SAVEXML_DTD_LOC, 0);
  ExportFormat format;
  return docType.ToStream(os, format, false);
}

int StartRoot(std::ostream& os, std::string copyright) {
  std::string text = XMLUtil::BEGIN_ELEMENT;
  text += Tags::XML_ELE_ROOT;
  text += XMLUtil::SPACE;
  text += AttributeText(Tags::XML_ATT_COPYRIGHT, copyright);
  text += XMLUtil::END_ELEMENT;
  return Write(os, text);
}

int WriteHeader(std::ostream& os, std::string copyright) {
  return StartRoot(os, copyright);
}

int EndRoot(std::ostream& os) {
  std::string text = XMLUtil::ROWSEP;
  text += XMLUtil::BEGIN_ELEMENT;
  text += XMLUtil::BEGIN_END_ELEMENT;
  text += Tags::XML_ELE_ROOT;
  text += XMLUtil::END_ELEMENT;
  return Write(os, text);
}

int EndHeader(std::ostream& os) {
  return EndRoot(os);
}

}  // namespace QXXML_850
