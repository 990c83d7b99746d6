#include "qx/documents/qxpmmlexporter.h"

#include <cfloat>
#include <ctime>
#include <memory>

#include "qx/dictionary/iqxencoder.h"
#include "qx/dictionary/iqxvariable.h"
#include "qx/dictionary/qxcatvar.h"
#include "qx/dictionary/qxvarlist.h"
#include "qx/documents/qxapplicinfo4xml.h"
#include "qx/documents/qxdatamodeltags.h"
#include "qx/documents/qxpmmltags.h"
#include "qx/documents/qxunistats.h"
#include "qx/foundation/localeutil.h"
#include "qx/foundation/qxmissingvalue.h"
#include "qx/foundation/qxquerycancel.h"
#include "qx/markup/xmlelement.h"

namespace QXCommon_850 {

using QXXML_850::IQXEncoder;
using QXXML_850::IQXVariable;
using QXXML_850::QXCatVar;
using QXXML_850::QXVarList;
using QXXML_850::XMLElement;
using QXXML_850::XMLString;
using V = IQXVariable;
namespace P = QXXML_850::QXPMMLTags;
namespace D = QXXML_850::QXDataModelTags;

namespace {

void AddIfText(XMLElement& element, const std::string& name, const std::string& value) {
  if (!value.empty()) element.AddAttribute(name, value);
}

void ExportExtensionImpl(const std::string& name, const std::string& textValue, double numericValue,
                         bool useNumeric, XMLElement*& out) {
  std::unique_ptr<XMLElement> extension(XMLElement::Create(P::XML_ELE_EXTENSION));
  AddIfText(*extension, P::XML_ATT_NAME, name);
  if (useNumeric) {
    extension->AddAttribute(P::XML_ATT_VALUE, numericValue);
  } else {
    AddIfText(*extension, P::XML_ATT_VALUE, textValue);
  }
  extension->AddAttribute(P::XML_ATT_EXTENDER, P::XML_VAL_KVATCOM);
  out = extension.release();
}

// The numbers of a PMML array: "NaN" for the missing-value sentinel, others
// "%.15g" with a point. Nothing at all for no numbers.
void AddDoublesList(XMLElement& element, const double* values, unsigned long n) {
  if (values == nullptr || n == 0) return;
  std::string text;
  for (unsigned long i = 0; i < n; ++i) {
    if (i > 0) text += ' ';
    text += QXMV::IsMissing(values[i]) ? std::string("NaN")
                                       : QXXML_850::Format(values[i], false, nullptr);
  }
  element.AddElement(XMLString::Create(text));
}

XMLElement* RealArray(const std::vector<double>& values) {
  XMLElement* array = XMLElement::Create(P::XML_ELE_ARRAY);
  array->AddAttribute(P::XML_ATT_TYPE, P::XML_VAL_REAL);
  AddDoublesList(*array, values.data(), values.size());
  return array;
}

void ExportCutPointsFreqs(const std::vector<double>& cutPoints,
                          const std::vector<double>& frequencies, bool openLeft, XMLElement*& out) {
  std::unique_ptr<XMLElement> stats(XMLElement::Create(P::XML_ELE_CONTSTATS));
  if (!cutPoints.empty()) {
    const std::string& closure = openLeft ? P::XML_VAL_OPENCLOSED : P::XML_VAL_CLOSEDOPEN;
    for (size_t j = 1; j < cutPoints.size(); ++j) {
      XMLElement* interval = XMLElement::Create(P::XML_ELE_INTERVAL);
      if (!QXMV::IsMissing(cutPoints[j - 1])) {
        interval->AddAttribute(P::XML_ATT_LEFTMARGIN, cutPoints[j - 1]);
      }
      if (!QXMV::IsMissing(cutPoints[j]))
        interval->AddAttribute(P::XML_ATT_RIGHTMARGIN, cutPoints[j]);
      interval->AddAttribute(P::XML_ATT_CLOSURE, closure);
      stats->AddElement(interval);
    }
    if (!frequencies.empty()) stats->AddElement(RealArray(frequencies));
  }
  out = stats.release();
}

bool IsCategorical(V::MeasureLevel level) {
  return level == V::LevelNumericCategorical || level == V::LevelStringCategorical;
}

bool IsContinuous(V::MeasureLevel level) {
  return level == V::LevelContinuous || level == V::LevelFrequencyWeight;
}

const std::string& DataType(V::VariableStorage storage) {
  switch (storage) {
    case V::StorageInteger:
      return P::XML_VAL_INTEGER;
    case V::StorageString:
      return P::XML_VAL_STRING;
    case V::StorageDate:
      return P::XML_VAL_DATEDAYSINCE1970;
    case V::StorageTime:
      return P::XML_VAL_TIMESECONDS;
    case V::StorageTimestamp:
      return P::XML_VAL_DATETIMESECONDSINCE1970;
    default:
      return P::XML_VAL_DOUBLE;
  }
}

const std::string& Storage(V::VariableStorage storage) {
  switch (storage) {
    case V::StorageInteger:
      return D::XML_VAL_INTEGER;
    case V::StorageString:
      return D::XML_VAL_STRING;
    case V::StorageDate:
      return D::XML_VAL_DATE;
    case V::StorageTime:
      return D::XML_VAL_TIME;
    case V::StorageTimestamp:
      return D::XML_VAL_TIMESTAMP;
    default:
      return D::XML_VAL_REAL;
  }
}

const std::string& Role(V::VariableRole role) {
  switch (role) {
    case V::RoleTarget:
    case V::RoleTargetResponse:
      return D::XML_VAL_TARGET;
    case V::RoleFrequencyWeight:
      return D::XML_VAL_FREQWEIGHT;
    case V::RoleRecordID:
      return D::XML_VAL_RECORDID;
    case V::RoleUnused:
      return D::XML_VAL_NONE;
    default:
      return D::XML_VAL_INPUT;
  }
}

// "Extension" with the extender first, as a field's flag and blanks have it.
XMLElement* FieldExtension(const std::string& name) {
  XMLElement* extension = XMLElement::Create(P::XML_ELE_EXTENSION);
  extension->AddAttribute(P::XML_ATT_EXTENDER, P::XML_VAL_KVATCOM);
  extension->AddAttribute(P::XML_ATT_NAME, name);
  return extension;
}

XMLElement* ValueElement(const std::string& value, const std::vector<std::string>* labels, size_t k,
                         bool useLabel, const std::string& property) {
  XMLElement* element = XMLElement::Create(P::XML_ELE_VALUE);
  element->AddAttribute(P::XML_ATT_VALUE, value);
  if (useLabel && labels != nullptr && k < labels->size()) {
    AddIfText(*element, P::XML_ATT_DISPLAYVALUE, (*labels)[k]);
  }
  element->AddAttribute(P::XML_ATT_PROPERTY, property);
  return element;
}

// The categories, the missing values and the missing interval of a field.
void AddFieldValues(XMLElement& field, const IQXVariable& v, const IQXEncoder& e) {
  const V::MeasureLevel level = v.GetMeasureLevel();
  const QXCatVar* cat = dynamic_cast<const QXCatVar*>(&v);
  const int n = e.GetNumberOfCategories();
  if (cat != nullptr && cat->GetBinaryFlag() && cat->GetBinaryFlagTrueIndex() >= 0) {
    XMLElement* flag = FieldExtension(P::XML_VAL_FLAGTYPE);
    if (e.GetEncoderType() == IQXEncoder::EncoderCatNum ||
        e.GetEncoderType() == IQXEncoder::EncoderString) {
      flag->AddAttribute(P::XML_ATT_VALUE, e.Decode(cat->GetBinaryFlagTrueIndex()));
    }
    field.AddElement(flag);
  }
  if (level == V::LevelStringCategorical) {
    for (int i = 0; i < n; ++i) {
      const std::string text = e.Decode(i);
      if (!text.empty() && text.back() == ' ') {
        XMLElement* blanks = FieldExtension(P::XML_VAL_NOSPACETRIM);
        blanks->AddAttribute(P::XML_ATT_VALUE, P::XML_VAL_NOSPACE_TRUE);
        field.AddElement(blanks);
        break;
      }
    }
  }
  if (IsCategorical(level)) {
    const bool labelled = n == v.GetNumberOfCategories();
    for (int i = 0; i < n; ++i) {
      field.AddElement(ValueElement(e.Decode(i), e.GetValueLabels(), static_cast<size_t>(i),
                                    labelled, P::XML_VAL_VALID));
    }
  }
  const std::vector<std::string>* texts = e.GetDiscreteMissValuesStr();
  const std::vector<double>* numbers = e.GetDiscreteMissValues();
  if (texts != nullptr && !texts->empty()) {
    for (size_t k = 0; k < texts->size(); ++k) {
      field.AddElement(
          ValueElement((*texts)[k], e.GetMissValueLabels(), k, true, P::XML_VAL_MISSING));
    }
  } else if (numbers != nullptr && !numbers->empty()) {
    for (size_t k = 0; k < numbers->size(); ++k) {
      XMLElement* value = XMLElement::Create(P::XML_ELE_VALUE);
      value->AddAttribute(P::XML_ATT_VALUE, (*numbers)[k]);
      const std::vector<std::string>* labels = e.GetMissValueLabels();
      if (labels != nullptr && k < labels->size()) {
        AddIfText(*value, P::XML_ATT_DISPLAYVALUE, (*labels)[k]);
      }
      value->AddAttribute(P::XML_ATT_PROPERTY, P::XML_VAL_MISSING);
      field.AddElement(value);
    }
  }
  double low = 0.0, high = 0.0;
  if (e.GetMissingInterval(low, high)) {
    XMLElement* extension = nullptr;
    if (low != -DBL_MAX) {
      ExportExtensionImpl(P::XML_VAL_NAME_MSLO, std::string(), low, true, extension);
      field.AddElement(extension);
    }
    if (high != DBL_MAX) {
      ExportExtensionImpl(P::XML_VAL_NAME_MSUP, std::string(), high, true, extension);
      field.AddElement(extension);
    }
  }
}

XMLElement* DataField(const IQXVariable& v) {
  std::unique_ptr<XMLElement> field(XMLElement::Create(P::XML_ELE_DATAFIELD));
  field->AddAttribute(P::XML_ATT_NAME, v.GetVariableName());
  AddIfText(*field, P::XML_ATT_DISPLAYNAME, v.GetVariableLabel());
  const V::MeasureLevel level = v.GetMeasureLevel();
  if (IsContinuous(level)) {
    field->AddAttribute(P::XML_ATT_OPTYPE, P::XML_VAL_CONTINUOUS);
  } else if (IsCategorical(level)) {
    const QXCatVar* cat = dynamic_cast<const QXCatVar*>(&v);
    const bool ordinal = cat != nullptr && cat->GetOrdinalFlag();
    field->AddAttribute(P::XML_ATT_OPTYPE, ordinal ? P::XML_VAL_ORDINAL : P::XML_VAL_CATEGORICAL);
  }
  field->AddAttribute(P::XML_ATT_DATATYPE, DataType(v.GetVariableStorage()));
  if (v.GetEncoder() != nullptr) AddFieldValues(*field, v, *v.GetEncoder());
  return field.release();
}

XMLElement* ModelField(const IQXVariable& v) {
  std::unique_ptr<XMLElement> field(XMLElement::Create(D::XML_ELE_FIELD));
  field->AddAttribute(D::XML_ATT_NAME, v.GetVariableName());
  AddIfText(*field, D::XML_ATT_DISPLAYLABEL, v.GetVariableLabel());
  const V::MeasureLevel level = v.GetMeasureLevel();
  if (IsContinuous(level)) {
    field->AddAttribute(D::XML_ATT_MEASURE, D::XML_VAL_CONTINUOUS);
  } else if (IsCategorical(level)) {
    const QXCatVar* cat = dynamic_cast<const QXCatVar*>(&v);
    field->AddAttribute(D::XML_ATT_MEASURE, cat != nullptr && cat->GetBinaryFlag() ? D::XML_VAL_FLAG
                                            : cat != nullptr && cat->GetOrdinalFlag()
                                                ? D::XML_VAL_ORDINAL
                                                : D::XML_VAL_NOMINAL);
  }
  field->AddAttribute(D::XML_ATT_STORAGE, Storage(v.GetVariableStorage()));
  field->AddAttribute(D::XML_ATT_ROLE, Role(v.GetVariableRole()));
  if (v.GetFieldFormatElement() != nullptr) field->AddElement(v.GetFieldFormatElement()->Clone());
  return field.release();
}

bool Cancelled(QXQueryCancel* cancel) {
  return cancel != nullptr && cancel->IsCancel();
}

// The loop of both exports: an element from `make` for each chosen variable
// into `parent`, the count of them as `countName`, and the query of `cancel`
// before each variable and after the last.
template <typename Make>
QXStatus ExportEach(const QXVarList& list, const std::vector<int>& indices, bool skipUnused,
                    QXQueryCancel* cancel, XMLElement& parent, const std::string& countName,
                    Make make) {
  std::vector<int> chosen(indices);
  if (chosen.empty()) {
    for (int i = 0; i < static_cast<int>(list.Size()); ++i) {
      if (!skipUnused || list.GetVariableRole(i) != V::RoleUnused) chosen.push_back(i);
    }
  }
  QXStatus status;
  long made = 0;
  for (int index : chosen) {
    if (Cancelled(cancel)) break;
    if (index < 0 || index >= static_cast<int>(list.Size())) {
      status = QXStatus(QXPMMLExporter::StatusBadIndex, false);
    } else if (list.GetVarAt(index) == nullptr) {
      status = QXStatus(QXPMMLExporter::StatusNullVariable, false);
    }
    if (!status.IsOK()) {
      status.SetDiscreteDatum(0, index);
      break;
    }
    parent.AddElement(make(*list.GetVarAt(index)));
    ++made;
  }
  parent.AddAttribute(countName, static_cast<double>(made));
  return Cancelled(cancel) ? QXStatus(QXPMMLExporter::StatusCancelled, false) : status;
}

}  // namespace

QXPMMLExporter::QXPMMLExporter(QXQueryCancel* queryCancel) : tree(nullptr), cancel(queryCancel) {}

QXPMMLExporter::~QXPMMLExporter() {
  delete tree;
}

XMLElement* QXPMMLExporter::ExportPMMLElement() const {
  XMLElement* root = XMLElement::Create(P::XML_ELE_PMMLMODEL);
  root->AddAttribute(P::XML_ATT_VERSION, P::XML_VAL_PMMLVERSION42);
  root->AddAttribute(P::XML_ATT_XMLNS, P::XML_VAL_PMMLNAMESPACE42);
  root->AddAttribute(P::XML_ATT_XMLNSXSI, P::XML_VAL_SCHEMAINSTANCE);
  root->AddAttribute(P::XML_ATT_SCHEMALOC, P::XML_VAL_SCHEMAFILE42);
  return root;
}

XMLElement* QXPMMLExporter::ExportPMMLElement40() const {
  return ExportPMMLElement();
}

QXStatus QXPMMLExporter::Hand(const QXStatus& status, XMLElement*& out) {
  if (status.GetErrorCode() == StatusCancelled) {
    delete tree;
    out = nullptr;
  } else {
    out = tree;
  }
  tree = nullptr;
  return status;
}

QXStatus QXPMMLExporter::ExportHeader(const QXApplicInfo4XML* info, const std::string& description,
                                      bool timestamp, XMLElement*& out) {
  std::string name, version, copyright;
  if (info != nullptr) {
    name = info->fApplicationName;
    version = info->fApplicationVersion;
    copyright = info->fCopyright;
  }
  delete tree;
  tree = XMLElement::Create(P::XML_ELE_HEADER);
  tree->AddAttribute(P::XML_ATT_HEADRIGHT, copyright.empty() ? P::XML_VAL_HEADRIGHT : copyright);
  AddIfText(*tree, P::XML_ATT_DESCRIPTION, description);
  if (!name.empty() || !version.empty()) {
    XMLElement* application = XMLElement::Create(P::XML_ELE_APPLICATION);
    AddIfText(*application, P::XML_ATT_NAME, name);
    AddIfText(*application, P::XML_ATT_VERSION, version);
    tree->AddElement(application);
  }
  if (timestamp) {
    const std::time_t now = std::time(nullptr);
    char text[64] = "";
    std::string when = ctime_r(&now, text) != nullptr ? text : "";
    if (!when.empty()) when.pop_back();
    XMLElement* stamp = XMLElement::Create(P::XML_ELE_TIMESTAMP);
    stamp->AddElement(XMLString::Create(when));
    tree->AddElement(stamp);
  }
  return Hand(QXStatus(), out);
}

QXStatus QXPMMLExporter::ExportDataDictionary(const QXVarList& list,
                                              const std::vector<int>& indices, XMLElement*& out) {
  delete tree;
  tree = XMLElement::Create(P::XML_ELE_DATADICTIONARY);
  return Hand(ExportEach(list, indices, true, cancel, *tree, P::XML_ATT_NUMBEROFFIELDS, DataField),
              out);
}

QXStatus QXPMMLExporter::ExportDataModel(const QXVarList& list, const std::vector<int>& indices,
                                         XMLElement*& out) {
  delete tree;
  tree = XMLElement::Create(D::XML_ELE_DATAMODEL);
  if (list.GetFieldFormatsElement() != nullptr) {
    tree->AddElement(list.GetFieldFormatsElement()->Clone());
  }
  XMLElement* fields = XMLElement::Create(D::XML_ELE_FIELDS);
  tree->AddElement(fields);
  return Hand(ExportEach(list, indices, false, cancel, *fields, D::XML_ATT_COUNT, ModelField), out);
}

QXStatus QXPMMLExporter::ExportUniStats(const QXMath_850::QXUniStats& stats, XMLElement*& out) {
  out = nullptr;
  if (!stats.IsValid()) return QXStatus(StatusInvalidUniStats, false);
  std::unique_ptr<XMLElement> element(XMLElement::Create(P::XML_ELE_UNIVARIATESTATS));
  element->AddAttribute(P::XML_ATT_FIELD, stats.GetVarName());
  XMLElement* counts = XMLElement::Create(P::XML_ELE_COUNTS);
  counts->AddAttribute(P::XML_ATT_TOTALFREQ, stats.GetNumberOfCases());
  element->AddElement(counts);
  if (stats.IsCategorical()) {
    XMLElement* discrete = XMLElement::Create(P::XML_ELE_DISCRSTATS);
    discrete->AddElement(RealArray(stats.GetFrequencies()));
    element->AddElement(discrete);
  } else {
    const std::vector<double> summary = stats.GetSummStats();
    XMLElement* info = XMLElement::Create(P::XML_ELE_NUMERICINFO);
    if (!QXMV::IsMissing(summary[0])) info->AddAttribute(P::XML_ATT_MINIMUM, summary[0]);
    if (!QXMV::IsMissing(summary[1]) && !QXMV::IsMissing(-summary[1])) {
      info->AddAttribute(P::XML_ATT_MAXIMUM, summary[1]);
    }
    if (!QXMV::IsMissing(summary[2])) info->AddAttribute(P::XML_ATT_MEAN, summary[2]);
    if (!QXMV::IsMissing(summary[3])) info->AddAttribute(P::XML_ATT_STDDEV, summary[3]);
    element->AddElement(info);
    XMLElement* intervals = nullptr;
    ExportCutPointsFreqs(stats.GetCutPoints(), stats.GetFrequencies(), stats.AreIntervalsOpenLeft(),
                         intervals);
    element->AddElement(intervals);
  }
  out = element.release();
  return QXStatus();
}

void QXPMMLExporter::ExportExtension(const std::string& name, const std::string& value,
                                     XMLElement*& out) {
  ExportExtensionImpl(name, value, 0.0, false, out);
}

void QXPMMLExporter::ExportExtension(const std::string& name, double value, XMLElement*& out) {
  ExportExtensionImpl(name, std::string(), value, true, out);
}

}  // namespace QXCommon_850
