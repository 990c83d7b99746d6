#include "qx/markup/savexml.h"

#include "qx/foundation/internal/doublebits.h"
#include "qx/foundation/localeutil.h"
#include "qx/markup/internal/savexmltags.h"
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

// A field's line: line feed, tabs, <Element attribute="..."/>.
int WriteField(std::ostream& os, int depth, const std::string& element,
               const std::string& attribute, const std::string& value) {
  std::string line = XMLUtil::ROWSEP;
  line += XMLUtil::GetTabs(depth);
  line += XMLUtil::BEGIN_ELEMENT;
  line += element;
  line += XMLUtil::SPACE;
  line += AttributeText(attribute, value);
  line += XMLUtil::BEGIN_END_ELEMENT;
  line += XMLUtil::END_ELEMENT;
  return Write(os, line);
}

std::string NumberText(double value) {
  return Format(value, false, nullptr);
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
  std::string line = XMLUtil::ROWSEP;
  line += XMLUtil::GetTabs(nTabs);
  line += XMLUtil::BEGIN_ELEMENT;
  line += Tags::XML_ELE_OBJ;
  line += XMLUtil::SPACE;
  line += Tags::XML_ATT_OBJ;
  line += XMLUtil::EQUAL;
  line += XMLUtil::QUOTE;
  line += name;
  line += XMLUtil::QUOTE;
  line += XMLUtil::END_ELEMENT;
  return Write(os, line);
}

int XMLObj::EndObj(std::ostream& os) const {
  std::string line = XMLUtil::ROWSEP;
  line += XMLUtil::GetTabs(nTabs);
  line += XMLUtil::BEGIN_ELEMENT;
  line += XMLUtil::BEGIN_END_ELEMENT;
  line += Tags::XML_ELE_OBJ;
  line += XMLUtil::END_ELEMENT;
  return Write(os, line);
}

int XMLObj::WriteSubElement(std::ostream& os, double value) const {
  const std::string text = value == MV::gMissingValue ? Tags::XML_VAL_MISSING : NumberText(value);
  return WriteField(os, nTabs + 1, Tags::XML_ELE_DOUBLE, Tags::XML_ATT_DOUBLE, text);
}

int XMLObj::WriteSubElement(std::ostream& os, int value) const {
  return WriteField(os, nTabs + 1, Tags::XML_ELE_INT, Tags::XML_ATT_INT,
                    NumberText(static_cast<double>(value)));
}

int XMLObj::WriteSubElement(std::ostream& os, unsigned int value) const {
  return WriteField(os, nTabs + 1, Tags::XML_ELE_INT, Tags::XML_ATT_INT,
                    NumberText(static_cast<double>(value)));
}

int XMLObj::WriteSubElement(std::ostream& os, bool value) const {
  return WriteField(os, nTabs + 1, Tags::XML_ELE_INT, Tags::XML_ATT_INT,
                    NumberText(value ? 1.0 : 0.0));
}

int XMLObj::WriteSubElement(std::ostream& os, long value) const {
  return WriteField(os, nTabs + 1, Tags::XML_ELE_LONG, Tags::XML_ATT_LONG,
                    NumberText(static_cast<double>(value)));
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
