#include "qx/dictionary/qxweightvar.h"

#include "qx/dictionary/internal/persist.h"
#include "qx/dictionary/internal/variableparts.h"
#include "qx/dictionary/qxmtdisplayenums.h"
#include "qx/dictionary/qxroundencoder.h"
#include "qx/foundation/qxcomponentdisplay.h"
#include "qx/markup/xmlelement.h"

namespace QXXML_850 {

QXWeightVar::QXWeightVar(const std::string& varName, const std::string& varLabel,
                         WRoundingOption option)
    : name(varName),
      label(varLabel),
      storage(StorageUndefined),
      encoder(new QXRoundEncoder(option)),
      fieldFormat(nullptr) {}

QXWeightVar::QXWeightVar(const QXWeightVar& other)
    : name(other.name),
      label(other.label),
      storage(other.storage),
      encoder(other.encoder != nullptr ? other.encoder->Clone() : nullptr),
      fieldFormat(other.fieldFormat != nullptr ? other.fieldFormat->Clone() : nullptr) {}

QXWeightVar& QXWeightVar::operator=(const QXWeightVar& other) {
  if (this == &other) return *this;
  name = other.name;
  label = other.label;
  storage = other.storage;
  if (other.encoder == nullptr) {
    delete encoder;
    encoder = nullptr;
  } else if (encoder == nullptr) {
    encoder = other.encoder->Clone();
  }
  internal::AssignElement(fieldFormat, other.fieldFormat);
  return *this;
}

QXWeightVar::~QXWeightVar() {
  delete encoder;
  delete fieldFormat;
}

IQXVariable::MeasureLevel QXWeightVar::GetMeasureLevel() const {
  return LevelFrequencyWeight;
}

std::string QXWeightVar::GetVariableName() const {
  return name;
}

std::string QXWeightVar::GetVariableLabel() const {
  return label;
}

void QXWeightVar::SetVariableLabel(const std::string& text) {
  label = text;
}

int QXWeightVar::GetNumberOfCategories() const {
  return 0;
}

IQXVariable::VariableRole QXWeightVar::GetVariableRole() const {
  return RoleFrequencyWeight;
}

void QXWeightVar::SetVariableRole(VariableRole) {}

IQXVariable::VariableStorage QXWeightVar::GetVariableStorage() const {
  return storage;
}

void QXWeightVar::SetVariableStorage(VariableStorage value) {
  storage = value;
}

void QXWeightVar::SetFieldFormatElement(XMLElement* element) {
  fieldFormat = element;
}

const XMLElement* QXWeightVar::GetFieldFormatElement() const {
  return fieldFormat;
}

XMLElement* QXWeightVar::GetFieldFormatElement() {
  return fieldFormat;
}

int QXWeightVar::UpdateNumberOfCategories() {
  return 0;
}

void QXWeightVar::SetMissingValueReplacement(const std::string&) {}

const std::string* QXWeightVar::GetMissingValueReplacement() const {
  return nullptr;
}

IQXVariable* QXWeightVar::Clone() const {
  return new QXWeightVar(*this);
}

const IQXEncoder* QXWeightVar::GetEncoder() const {
  return encoder;
}

IQXEncoder* QXWeightVar::GetEncoder() {
  return encoder;
}

IQXVariable::VarStatus QXWeightVar::GetVarStatus() {
  return StatusOK;
}

int QXWeightVar::WriteObjectXML(std::ostream& os, int nTabs) const {
  if (!os.good()) return 0;
  internal::ObjWriter out(os, "QXWeightVar", nTabs);
  out.Value(name);
  out.Value(label);
  out.Enum(storage);
  if (encoder != nullptr) out.Nested(encoder->WriteObjectXML(os, nTabs + 1));
  return out.End();
}

int QXWeightVar::ReadObjectXML(std::ifstream& is) {
  internal::ObjReader in(is, "QXWeightVar", "Failure reading QXWeightVar!\n");
  in.Value(name);
  in.Value(label);
  in.Enum(storage);
  if (encoder == nullptr) encoder = new QXRoundEncoder();
  in.Nested(encoder->ReadObjectXML(is));
  return in.End();
}

bool QXWeightVar::SetFlagVariable(bool) {
  return false;
}

bool QXWeightVar::IsFlagVariable() const {
  return false;
}

void QXWeightVar::Display() const {
  QXDisplay_850::DisplayS("Frequency weight variable: name", name);
  QXDisplay_850::DisplayS("Label", label);
  QXXML_850::Display("Variable storage", storage);
  QXDisplay_850::DisplayText(1, "");
}

}  // namespace QXXML_850
