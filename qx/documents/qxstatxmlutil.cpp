#include "qx/documents/qxstatxmlutil.h"

#include <algorithm>

#include "qx/documents/qxpmmltags.h"
#include "qx/documents/qxstatxmltags.h"
#include "qx/documents/qxvariatedata.h"
#include "qx/foundation/localeutil.h"
#include "qx/foundation/qxmissingvalue.h"
#include "qx/markup/xmlelement.h"

namespace QXXML_850 {

namespace S = QXStatXMLTags;
namespace P = QXPMMLTags;
using QXCommon_850::QXMV;

namespace {

const std::string& Bool(bool value) {
  return value ? S::XML_VAL_TRUE : S::XML_VAL_FALSE;
}

void AddIfText(XMLElement& element, const std::string& name, const std::string& value) {
  if (!value.empty()) element.AddAttribute(name, value);
}

void AddChild(XMLElement& parent, XMLElement* child) {
  if (child != nullptr) parent.AddElement(child);
}

void AddChildren(XMLElement& parent, const std::vector<XMLElement*>& children) {
  for (XMLElement* child : children)
    AddChild(parent, child);
}

void DeleteAll(const std::vector<XMLElement*>& elements) {
  for (XMLElement* element : elements)
    delete element;
}

// An element with "description" when the text isn't empty.
XMLElement* Described(const std::string& name, const std::string& description) {
  XMLElement* element = XMLElement::Create(name);
  AddIfText(*element, P::XML_ATT_DESCRIPTION, description);
  return element;
}

// Items joined by single blanks; an item is preceded by a blank only once
// the text holds something.
void Append(std::string& text, const std::string& item) {
  if (!text.empty()) text += ' ';
  text += item;
}

XMLElement* Array(const std::string& type) {
  XMLElement* array = XMLElement::Create(P::XML_ELE_ARRAY);
  array->AddAttribute(P::XML_ATT_TYPE, type);
  return array;
}

XMLElement* Array(const std::string& type, size_t n) {
  XMLElement* array = Array(type);
  array->AddAttribute(P::XML_ATT_LOWER_N, static_cast<double>(n));
  return array;
}

// "Coordinates" with its attributes, `extra` and then `array`.
XMLElement* Coordinates(const std::string& feature, const std::string& field,
                        const std::string& statistic, XMLElement* extra, XMLElement* array) {
  XMLElement* element = XMLElement::Create(S::XML_ELE_COORDINATES);
  element->AddAttribute(P::XML_ATT_FEATURE, feature);
  AddIfText(*element, P::XML_ATT_FIELD, field);
  AddIfText(*element, S::XML_ATT_STATISTIC, statistic);
  AddChild(*element, extra);
  element->AddElement(array);
  return element;
}

template <typename T>
XMLElement* RecordInfo(const std::string& id, const std::string& label,
                       const std::vector<std::vector<T>>& values) {
  XMLElement* element = XMLElement::Create(S::XML_ELE_RECORDINFO);
  element->AddAttribute(S::XML_ATT_RECORDID, id);
  AddIfText(*element, S::XML_ATT_RECORDLABEL, label);
  for (size_t i = 0; i < values.size() && i < 2; ++i)
    element->AddElement(QXStatXMLUtil::CreateElemArray(values[i]));
  return element;
}

}  // namespace

QXStatXMLUtil::QXStatXMLUtil() {}

QXStatXMLUtil::~QXStatXMLUtil() {}

XMLElement* QXStatXMLUtil::BuildRoot() {
  XMLElement* root = XMLElement::Create(S::XML_ELE_SATAXML);
  root->AddAttribute(S::XML_ATT_XMLNS, S::XML_VAL_XMLNS);
  root->AddAttribute(P::XML_ATT_XMLNSXSI, P::XML_VAL_SCHEMAINSTANCE);
  root->AddAttribute(P::XML_ATT_VERSION, S::XML_VAL_XMLVERSION);
  root->AddAttribute(P::XML_ATT_SCHEMALOC, S::XML_VAL_SCHEMALOCATION);
  return root;
}

XMLElement* QXStatXMLUtil::CreateElem(const std::string& name, const std::string& att,
                                      const std::string& value) {
  XMLElement* element = XMLElement::Create(name);
  element->AddAttribute(att, value);
  return element;
}

XMLElement* QXStatXMLUtil::CreateElem(const std::string& name, const std::string& att1,
                                      const std::string& value1, const std::string& att2,
                                      const std::string& value2) {
  XMLElement* element = CreateElem(name, att1, value1);
  element->AddAttribute(att2, value2);
  return element;
}

XMLElement* QXStatXMLUtil::CreateElem(const std::string& name, const std::string& att1,
                                      const std::string& value1, const std::string& att2,
                                      const std::string& value2, const std::string& att3,
                                      const std::string& value3) {
  XMLElement* element = CreateElem(name, att1, value1, att2, value2);
  element->AddAttribute(att3, value3);
  return element;
}

XMLElement* QXStatXMLUtil::CreateElem(const std::string& name, const std::string& att,
                                      double value) {
  XMLElement* element = XMLElement::Create(name);
  element->AddAttribute(att, value);
  return element;
}

XMLElement* QXStatXMLUtil::CreateElemStatistic(const std::string& name, const std::string& value) {
  return CreateElem(S::XML_ELE_STATISTIC, P::XML_ATT_NAME, name, P::XML_ATT_VALUE, value);
}

XMLElement* QXStatXMLUtil::CreateElemStatistic(const std::string& name, double value) {
  XMLElement* element = CreateElem(S::XML_ELE_STATISTIC, P::XML_ATT_NAME, name);
  if (!QXMV::IsMissing(value)) element->AddAttribute(P::XML_ATT_VALUE, value);
  return element;
}

XMLElement* QXStatXMLUtil::CreateElemCounts(double total, double missing, double invalid,
                                            double cardinality) {
  XMLElement* element = CreateElem(P::XML_ELE_COUNTS, P::XML_ATT_TOTALFREQ, total);
  if (!QXMV::IsMissing(missing)) element->AddAttribute(P::XML_ATT_MISSINGFREQ, missing);
  if (!QXMV::IsMissing(invalid)) element->AddAttribute(P::XML_ATT_INVALIDFREQ, invalid);
  if (cardinality >= 0.0) element->AddAttribute(P::XML_ATT_CARDINALITY, cardinality);
  return element;
}

XMLElement* QXStatXMLUtil::CreateElemCounts(const QXXMLCounts& counts) {
  return CreateElemCounts(counts.fTotalFreq, counts.fMissingFreq, counts.fInvalidFreq,
                          counts.fCardinality);
}

XMLElement* QXStatXMLUtil::CreateElemStructuredData(const std::string& description) {
  return Described(S::XML_ELE_STRUCTUREDDATE, description);
}

XMLElement* QXStatXMLUtil::CreateElemUnivarData(const std::string& description) {
  return Described(S::XML_ELE_UNIVARIATEDATE, description);
}

XMLElement* QXStatXMLUtil::CreateElemBivarData(const std::string& description) {
  return Described(S::XML_ELE_BIVARIATEDATE, description);
}

XMLElement* QXStatXMLUtil::CreateElemMultivariateData(const std::string& description) {
  return Described(S::XML_ELE_MULTIVARIATEDATA, description);
}

XMLElement* QXStatXMLUtil::CreateElemFieldInfo(const std::string& fieldName,
                                               const std::string& value, bool isNull) {
  XMLElement* element = CreateElem(S::XML_ELE_FIELDINFO, S::XML_ATT_FIELDNAME, fieldName);
  AddIfText(*element, S::XML_ATT_FIELDVALUE, value);
  element->AddAttribute(S::XML_ATT_ISNULL, Bool(isNull));
  return element;
}

XMLElement* QXStatXMLUtil::CreateElemFieldInfo(const std::string& fieldName, double value,
                                               bool isNull) {
  XMLElement* element = CreateElem(S::XML_ELE_FIELDINFO, S::XML_ATT_FIELDNAME, fieldName);
  if (!QXMV::IsMissing(value)) element->AddAttribute(S::XML_ATT_FIELDVALUE, value);
  element->AddAttribute(S::XML_ATT_ISNULL, Bool(isNull));
  return element;
}

XMLElement* QXStatXMLUtil::CreateElemFactor(const std::string& field, const std::string& value,
                                            bool nest) {
  return CreateElem(S::XML_ELE_FACTOR, P::XML_ATT_FIELD, field, P::XML_ATT_VALUE, value,
                    S::XML_ATT_NEST, Bool(nest));
}

XMLElement* QXStatXMLUtil::CreateElemFactor(const std::string& field, double value, bool nest) {
  XMLElement* element = CreateElem(S::XML_ELE_FACTOR, P::XML_ATT_FIELD, field);
  element->AddAttribute(P::XML_ATT_VALUE, value);
  element->AddAttribute(S::XML_ATT_NEST, Bool(nest));
  return element;
}

XMLElement* QXStatXMLUtil::CreateElemCovariate(const std::string& field, int power) {
  XMLElement* element = CreateElem(S::XML_ELE_COVARIATE, P::XML_ATT_FIELD, field);
  element->AddAttribute(S::XML_ATT_POWER, static_cast<double>(power));
  return element;
}

XMLElement* QXStatXMLUtil::CreateElemRegressionParameter(const std::string& name,
                                                         bool isIntercept) {
  XMLElement* element = XMLElement::Create(S::XML_ELE_REGRESSIONPARAM);
  AddIfText(*element, P::XML_ATT_NAME, name);
  element->AddAttribute(S::XML_ATT_ISINTERCEPT, Bool(isIntercept));
  return element;
}

XMLElement* QXStatXMLUtil::CreateElemRegressionParameter(const std::vector<XMLElement*>& first,
                                                         const std::vector<XMLElement*>& second,
                                                         const std::string& name,
                                                         bool isIntercept) {
  XMLElement* element = CreateElemRegressionParameter(name, isIntercept);
  AddChildren(*element, first);
  AddChildren(*element, second);
  return element;
}

XMLElement* QXStatXMLUtil::CreateElemLabel(const std::string& label) {
  XMLElement* element = XMLElement::Create(S::XML_ELE_LABEL);
  AddIfText(*element, P::XML_ATT_LABEL, label);
  return element;
}

XMLElement* QXStatXMLUtil::CreateElemLabel(const std::string& label, XMLElement* child) {
  XMLElement* element = CreateElemLabel(label);
  AddChild(*element, child);
  return element;
}

XMLElement* QXStatXMLUtil::CreateElemLabel(const std::vector<XMLElement*>& first,
                                           const std::vector<XMLElement*>& second,
                                           const std::string& name, bool isIntercept,
                                           const std::string& label) {
  return CreateElemLabel(label, CreateElemRegressionParameter(first, second, name, isIntercept));
}

XMLElement* QXStatXMLUtil::CreateElemMatrix(XMLElement* first, std::vector<XMLElement*> pair,
                                            XMLElement* third, XMLElement* fourth,
                                            unsigned int nRows, unsigned int nCols,
                                            const std::string& kind, bool rowMajor) {
  XMLElement* element = CreateElem(S::XML_ELE_MATRIX, P::XML_ATT_KIND, kind);
  element->AddAttribute(S::XML_ATT_NBROWS, static_cast<double>(nRows));
  if (kind != S::XML_VAL_SYMMETRIC)
    element->AddAttribute(S::XML_ATT_NBCOLS, static_cast<double>(nCols));
  element->AddAttribute(S::XML_ATT_ROWMAJOR, Bool(rowMajor));
  AddChild(*element, first);
  if (pair.size() == 2) {
    AddChildren(*element, pair);
  } else {
    DeleteAll(pair);
  }
  AddChild(*element, third);
  AddChild(*element, fourth);
  return element;
}

XMLElement* QXStatXMLUtil::CreateElemMatrixLabels(const std::vector<XMLElement*>& labels) {
  XMLElement* element = XMLElement::Create(S::XML_ELE_MATRIXLABELS);
  const auto present = std::count_if(labels.begin(), labels.end(),
                                     [](const XMLElement* label) { return label != nullptr; });
  if (present == 1 || present == 2) {
    AddChildren(*element, labels);
  } else {
    DeleteAll(labels);
  }
  return element;
}

XMLElement* QXStatXMLUtil::CreateElemRowColLabels(const std::string& dimension) {
  return CreateElem(S::XML_ELE_ROWCOLLABELS, S::XML_ATT_DIMENTION, dimension);
}

XMLElement* QXStatXMLUtil::CreateElemRowColLabels(const std::vector<XMLElement*>& children,
                                                  const std::string& dimension) {
  XMLElement* element = CreateElemRowColLabels(dimension);
  AddChildren(*element, children);
  return element;
}

XMLElement* QXStatXMLUtil::CreateElemRowColLabels(XMLElement* child, const std::string& dimension) {
  XMLElement* element = CreateElemRowColLabels(dimension);
  AddChild(*element, child);
  return element;
}

XMLElement* QXStatXMLUtil::CreateElemIndices(XMLElement* child, const std::string& dimension) {
  XMLElement* element = CreateElem(S::XML_ELE_INDICES, S::XML_ATT_DIMENTION, dimension);
  AddChild(*element, child);
  return element;
}

XMLElement* QXStatXMLUtil::CreateElemSegmentInfo(const std::vector<XMLElement*>& children) {
  XMLElement* element = XMLElement::Create(S::XML_ELE_SEGMENTINFO);
  AddChildren(*element, children);
  return element;
}

XMLElement* QXStatXMLUtil::CreateElemSegmentInfo(XMLElement* child) {
  XMLElement* element = XMLElement::Create(S::XML_ELE_SEGMENTINFO);
  AddChild(*element, child);
  return element;
}

XMLElement* QXStatXMLUtil::CreateElemSegmentData(XMLElement* first, XMLElement* second) {
  XMLElement* element = XMLElement::Create(S::XML_ELE_SEGMETNTDATA);
  AddChild(*element, first);
  AddChild(*element, second);
  return element;
}

XMLElement* QXStatXMLUtil::CreateElemArray(const int* values, int n) {
  XMLElement* array = Array(P::XML_VAL_INT);
  AddIntList(*array, values, n);
  return array;
}

XMLElement* QXStatXMLUtil::CreateElemArray(const std::vector<int>& values) {
  XMLElement* array = Array(P::XML_VAL_INT, values.size());
  AddIntList(*array, values);
  return array;
}

XMLElement* QXStatXMLUtil::CreateElemArray(const double* values, int n) {
  XMLElement* array = Array(P::XML_VAL_REAL);
  array->AddAttribute(P::XML_ATT_LOWER_N, static_cast<double>(n));
  AddDoublesList(*array, values, n);
  return array;
}

XMLElement* QXStatXMLUtil::CreateElemArray(const std::vector<double>& values) {
  XMLElement* array = Array(P::XML_VAL_REAL, values.size());
  AddDoublesList(*array, values);
  return array;
}

XMLElement* QXStatXMLUtil::CreateElemArray(const std::vector<std::string>& values) {
  XMLElement* array = Array(P::XML_VAL_STRING, values.size());
  std::vector<std::string> texts(values);
  bool blank = false;
  for (std::string& text : texts) {
    if (text.find_first_of("\"\\") != std::string::npos) {
      std::string escaped;
      ReplaceSpecialChar(text, escaped);
      text.swap(escaped);
    }
    blank = blank || text.find(' ') != std::string::npos;
  }
  if (blank) {
    for (std::string& text : texts)
      text = '"' + text + '"';
  }
  AddStringList(*array, texts);
  return array;
}

XMLElement* QXStatXMLUtil::CreateElemArray(const std::string& text, int n) {
  XMLElement* array = Array(P::XML_VAL_STRING);
  array->AddAttribute(P::XML_ATT_LOWER_N, static_cast<double>(n));
  AddStringList(*array, text);
  return array;
}

void QXStatXMLUtil::AddStringList(XMLElement& element, const std::string& text) {
  element.AddElement(XMLString::Create(text));
}

void QXStatXMLUtil::AddStringList(XMLElement& element, const std::vector<std::string>& values) {
  std::string text;
  for (const std::string& value : values)
    Append(text, value);
  element.AddElement(XMLString::Create(text));
}

void QXStatXMLUtil::AddIntList(XMLElement& element, const int* values, int n) {
  char oneDigit[] = "%.0g";
  std::string text;
  for (int i = 0; values != nullptr && i < n; ++i)
    Append(text, Format(static_cast<double>(values[i]), true, oneDigit));
  element.AddElement(XMLString::Create(text));
}

void QXStatXMLUtil::AddIntList(XMLElement& element, const std::vector<int>& values) {
  std::string text;
  for (int value : values)
    Append(text, Format(static_cast<double>(value), true, nullptr));
  element.AddElement(XMLString::Create(text));
}

void QXStatXMLUtil::AddDoublesList(XMLElement& element, const double* values, int n) {
  std::string text;
  for (int i = 0; values != nullptr && i < n; ++i) {
    Append(text, QXMV::IsMissing(values[i]) ? std::string("__MISSING__")
                                            : Format(values[i], false, nullptr));
  }
  element.AddElement(XMLString::Create(text));
}

void QXStatXMLUtil::AddDoublesList(XMLElement& element, const std::vector<double>& values) {
  AddDoublesList(element, values.data(), static_cast<int>(values.size()));
}

void QXStatXMLUtil::ReplaceSpecialChar(const std::string& in, std::string& out) {
  out.clear();
  for (char c : in) {
    if (c == '"' || c == '\\') out += '\\';
    out += c;
  }
}

XMLElement* QXStatXMLUtil::CreateElemCoordinates(const std::string& feature,
                                                 const std::string& field,
                                                 const std::string& statistic,
                                                 const std::vector<int>& values) {
  return Coordinates(feature, field, statistic, nullptr, CreateElemArray(values));
}

XMLElement* QXStatXMLUtil::CreateElemCoordinates(const std::string& feature,
                                                 const std::string& field,
                                                 const std::string& statistic,
                                                 const std::vector<double>& values) {
  return Coordinates(feature, field, statistic, nullptr, CreateElemArray(values));
}

XMLElement* QXStatXMLUtil::CreateElemCoordinates(const std::string& feature,
                                                 const std::string& field,
                                                 const std::string& statistic,
                                                 const std::vector<std::string>& values) {
  return Coordinates(feature, field, statistic, nullptr, CreateElemArray(values));
}

XMLElement* QXStatXMLUtil::CreateElemCoordinates(const std::string& feature,
                                                 const std::string& field,
                                                 const std::string& statistic,
                                                 const std::vector<int>& values,
                                                 XMLElement* extra) {
  return Coordinates(feature, field, statistic, extra, CreateElemArray(values));
}

XMLElement* QXStatXMLUtil::CreateElemCoordinates(const std::string& feature,
                                                 const std::string& field,
                                                 const std::string& statistic,
                                                 const std::vector<double>& values,
                                                 XMLElement* extra) {
  return Coordinates(feature, field, statistic, extra, CreateElemArray(values));
}

XMLElement* QXStatXMLUtil::CreateElemCoordinates(const std::string& feature,
                                                 const std::string& field,
                                                 const std::string& statistic,
                                                 const std::vector<std::string>& values,
                                                 XMLElement* extra) {
  return Coordinates(feature, field, statistic, extra, CreateElemArray(values));
}

XMLElement* QXStatXMLUtil::CreateElemCoordinates(const std::string& feature,
                                                 const std::string& field,
                                                 const std::string& statistic, const int* values,
                                                 int n) {
  return Coordinates(feature, field, statistic, nullptr, CreateElemArray(values, n));
}

XMLElement* QXStatXMLUtil::CreateElemCoordinates(const std::string& feature,
                                                 const std::string& field,
                                                 const std::string& statistic, const double* values,
                                                 int n) {
  return Coordinates(feature, field, statistic, nullptr, CreateElemArray(values, n));
}

XMLElement* QXStatXMLUtil::CreateElemCoordinates(const std::string& feature,
                                                 const std::string& field,
                                                 const std::string& statistic,
                                                 const std::string& text, int n) {
  return Coordinates(feature, field, statistic, nullptr, CreateElemArray(text, n));
}

XMLElement* QXStatXMLUtil::CreateElemCoordinates(const QXXMLCoordinates& c) {
  switch (c.fValueType) {
    case 0:
      return CreateElemCoordinates(c.fFeature, c.fField, c.fStatistic, c.fIntValues);
    case 1:
      return CreateElemCoordinates(c.fFeature, c.fField, c.fStatistic, c.fDoubleValues);
    case 2:
      return CreateElemCoordinates(c.fFeature, c.fField, c.fStatistic, c.fStringValues);
    default:
      return nullptr;
  }
}

XMLElement* QXStatXMLUtil::CreateElemCoordinatesGroup(XMLElement* first,
                                                      const std::vector<XMLElement*>& others,
                                                      const std::string& description) {
  XMLElement* element = Described(S::XML_ELE_COORDINATESGROUP, description);
  AddChild(*element, first);
  AddChildren(*element, others);
  return element;
}

XMLElement* QXStatXMLUtil::CreateElemCoordinatesGroup(const QXXMLCoordinatesGroup& group) {
  XMLElement* element = Described(S::XML_ELE_COORDINATESGROUP, group.fDescription);
  for (const QXXMLCoordinates& coordinates : group.fCoordinates)
    AddChild(*element, CreateElemCoordinates(coordinates));
  return element;
}

XMLElement* QXStatXMLUtil::CreateElemRecordInfo(const std::string& id, const std::string& label,
                                                const std::vector<std::vector<int>>& values) {
  return RecordInfo(id, label, values);
}

XMLElement* QXStatXMLUtil::CreateElemRecordInfo(const std::string& id, const std::string& label,
                                                const std::vector<std::vector<double>>& values) {
  return RecordInfo(id, label, values);
}

XMLElement* QXStatXMLUtil::CreateElemRecordInfo(
    const std::string& id, const std::string& label,
    const std::vector<std::vector<std::string>>& values) {
  return RecordInfo(id, label, values);
}

XMLElement* QXStatXMLUtil::CreateElemRecordInfo(const QXXMLRecordInfo& r) {
  switch (r.fValueType) {
    case 0:
      return CreateElemRecordInfo(r.fRecordId, r.fRecordLabel, r.fIntValues);
    case 1:
      return CreateElemRecordInfo(r.fRecordId, r.fRecordLabel, r.fDoubleValues);
    case 2:
      return CreateElemRecordInfo(r.fRecordId, r.fRecordLabel, r.fStringValues);
    default:
      return nullptr;
  }
}

void QXStatXMLUtil::AddRecordInfos(XMLElement& parent,
                                   const std::vector<QXXMLRecordInfo>& records) {
  // Unchecked: a record of an unknown value type adds a null child, which the
  // writer skips.
  for (const QXXMLRecordInfo& record : records)
    parent.AddElement(CreateElemRecordInfo(record));
}

XMLElement* QXStatXMLUtil::CreateElemVarData(const std::string& name,
                                             const std::string& description,
                                             const QXVariateData& data) {
  XMLElement* element = Described(name, description);
  for (const QXXMLCounts& counts : data.fCounts)
    element->AddElement(CreateElemCounts(counts));
  // The values give the number of statistics; a value without a name gets an
  // empty one.
  const auto nameOf = [&data](size_t i) {
    return i < data.fStatNames.size() ? data.fStatNames[i] : std::string();
  };
  if (data.fIsStringStats) {
    for (size_t i = 0; i < data.fStatStrings.size(); ++i)
      element->AddElement(CreateElemStatistic(nameOf(i), data.fStatStrings[i]));
  } else {
    for (size_t i = 0; i < data.fStatValues.size(); ++i)
      element->AddElement(CreateElemStatistic(nameOf(i), data.fStatValues[i]));
  }
  if (name == S::XML_ELE_UNIVARIATEDATE) {
    AddCoordinatesToVarData(element, data.fCoordinates, 1, 2);
  } else if (name == S::XML_ELE_BIVARIATEDATE) {
    AddCoordinatesToVarData(element, data.fCoordinates, 2, 3);
  } else if (name == S::XML_ELE_MULTIVARIATEDATE) {
    for (const QXXMLCoordinatesGroup& group : data.fCoordinatesGroups)
      element->AddElement(CreateElemCoordinatesGroup(group));
    if (!data.fCoordinates.empty()) {
      AddCoordinatesToVarData(element, data.fCoordinates, 0,
                              static_cast<int>(data.fCoordinates.size()));
    }
  }
  return element;
}

void QXStatXMLUtil::AddCoordinatesToVarData(XMLElement* parent,
                                            const std::vector<QXXMLCoordinates>& coordinates,
                                            int /*minimum*/, int maximum) {
  if (parent == nullptr || maximum <= 0) return;
  const size_t k = std::min(coordinates.size(), static_cast<size_t>(maximum));
  for (size_t i = 0; i < k; ++i)
    parent->AddElement(CreateElemCoordinates(coordinates[i]));  // null ones too
}

}  // namespace QXXML_850
