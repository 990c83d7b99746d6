#include "qx/dictionary/qxcatvar.h"

#include "qx/dictionary/internal/persist.h"
#include "qx/dictionary/internal/variableparts.h"
#include "qx/dictionary/qxcatnumencoder.h"
#include "qx/dictionary/qxmtdisplayenums.h"
#include "qx/dictionary/qxstringencoder.h"
#include "qx/foundation/qxcomponentdisplay.h"
#include "qx/markup/xmlelement.h"

namespace QXXML_850 {

QXCatVar::QXCatVar(const std::string& varName, const std::string& varLabel, int n,
                   MeasureLevel measureLevel, VariableRole varRole, bool isOrdinal)
    : name(varName),
      label(varLabel),
      ordinal(isOrdinal),
      binary(false),
      binaryTrueIndex(-1),
      role(varRole),
      storage(StorageUndefined),
      nCategories(n),
      level(measureLevel),
      hasReplacement(false),
      encoder(measureLevel == LevelNumericCategorical
                  ? static_cast<IQXEncoder*>(new QXCatNumEncoder(n))
                  : new QXStringEncoder(n)),
      fieldFormat(nullptr),
      flagVariable(false) {}

QXCatVar::QXCatVar(const std::string& varName, const std::string& varLabel,
                   const std::vector<double>& sums, int n, MeasureLevel measureLevel,
                   VariableRole varRole, bool isOrdinal)
    : QXCatVar(varName, varLabel, n, measureLevel, varRole, isOrdinal) {
  sumFreqWts = sums;
}

QXCatVar::QXCatVar(const QXCatVar& other)
    : name(other.name),
      label(other.label),
      ordinal(other.ordinal),
      binary(other.binary),
      binaryTrueIndex(other.binaryTrueIndex),
      role(other.role),
      storage(other.storage),
      nCategories(other.nCategories),
      level(other.level),
      replacement(other.replacement),
      hasReplacement(other.hasReplacement),
      encoder(other.encoder != nullptr ? other.encoder->Clone() : nullptr),
      fieldFormat(other.fieldFormat != nullptr ? other.fieldFormat->Clone() : nullptr),
      sumFreqWts(other.sumFreqWts),
      flagVariable(other.flagVariable) {}

QXCatVar& QXCatVar::operator=(const QXCatVar& other) {
  if (this == &other) return *this;
  name = other.name;
  label = other.label;
  ordinal = other.ordinal;
  binary = other.binary;
  binaryTrueIndex = other.binaryTrueIndex;
  role = other.role;
  storage = other.storage;
  nCategories = other.nCategories;
  level = other.level;
  replacement = other.replacement;
  hasReplacement = other.hasReplacement;
  IQXEncoder* copy = other.encoder != nullptr ? other.encoder->Clone() : nullptr;
  delete encoder;
  encoder = copy;
  internal::AssignElement(fieldFormat, other.fieldFormat);
  if (!other.sumFreqWts.empty()) sumFreqWts = other.sumFreqWts;
  flagVariable = other.flagVariable;
  return *this;
}

QXCatVar::~QXCatVar() {
  delete encoder;
  delete fieldFormat;
}

IQXVariable::MeasureLevel QXCatVar::GetMeasureLevel() const {
  return level;
}

std::string QXCatVar::GetVariableName() const {
  return name;
}

std::string QXCatVar::GetVariableLabel() const {
  return label;
}

void QXCatVar::SetVariableLabel(const std::string& text) {
  label = text;
}

int QXCatVar::GetNumberOfCategories() const {
  return nCategories;
}

IQXVariable::VariableRole QXCatVar::GetVariableRole() const {
  return role;
}

void QXCatVar::SetVariableRole(VariableRole value) {
  role = value;
}

IQXVariable::VariableStorage QXCatVar::GetVariableStorage() const {
  return storage;
}

void QXCatVar::SetVariableStorage(VariableStorage value) {
  storage = value;
}

void QXCatVar::SetFieldFormatElement(XMLElement* element) {
  fieldFormat = element;
}

const XMLElement* QXCatVar::GetFieldFormatElement() const {
  return fieldFormat;
}

XMLElement* QXCatVar::GetFieldFormatElement() {
  return fieldFormat;
}

int QXCatVar::UpdateNumberOfCategories() {
  if (encoder != nullptr && encoder->GetNumberOfCategories() > nCategories) {
    nCategories = encoder->GetNumberOfCategories();
  }
  return nCategories;
}

void QXCatVar::SetMissingValueReplacement(const std::string& text) {
  replacement = text;
  hasReplacement = true;
}

const std::string* QXCatVar::GetMissingValueReplacement() const {
  return hasReplacement ? &replacement : nullptr;
}

IQXVariable* QXCatVar::Clone() const {
  return new QXCatVar(*this);
}

const IQXEncoder* QXCatVar::GetEncoder() const {
  return encoder;
}

IQXEncoder* QXCatVar::GetEncoder() {
  return encoder;
}

IQXVariable::VarStatus QXCatVar::GetVarStatus() {
  const int n = UpdateNumberOfCategories();
  if (n == 1) return StatusConstant;
  if (n < 1) return StatusInvalid;
  return StatusOK;
}

int QXCatVar::WriteObjectXML(std::ostream& os, int nTabs) const {
  if (!os.good()) return 0;
  internal::ObjWriter out(os, "QXCatVar", nTabs);
  out.Value(name);
  out.Value(label);
  out.Enum(role);
  out.Enum(storage);
  out.Value(nCategories);
  out.Enum(level);
  out.Value(ordinal);
  out.Value(binary);
  out.Value(binaryTrueIndex);
  internal::WriteReplacement(out, hasReplacement, replacement);
  internal::WriteEncoder(out, encoder);
  return out.End();
}

int QXCatVar::ReadObjectXML(std::ifstream& is) {
  internal::ObjReader in(is, "QXCatVar", "Failure reading QXCatVar!\n");
  delete encoder;
  encoder = nullptr;
  in.Value(name);
  in.Value(label);
  in.Enum(role);
  in.Enum(storage);
  in.Value(nCategories);
  in.Enum(level);
  in.Value(ordinal);
  in.Value(binary);
  in.Value(binaryTrueIndex);
  internal::ReadReplacement(in, hasReplacement, replacement);
  int type = 0;
  in.Value(type);
  if (type == IQXEncoder::EncoderCatNum) {
    encoder = new QXCatNumEncoder(2);
  } else if (type == IQXEncoder::EncoderString) {
    encoder = new QXStringEncoder(2);
  } else {
    in.Fail();
  }
  in.Nested(encoder->ReadObjectXML(is));
  return in.End();
}

bool QXCatVar::SetFlagVariable(bool flag) {
  if (level != LevelNumericCategorical && level != LevelStringCategorical) return false;
  flagVariable = flag;
  return true;
}

bool QXCatVar::IsFlagVariable() const {
  return flagVariable;
}

void QXCatVar::Display() const {
  using namespace QXDisplay_850;
  DisplayS("Categorical variable: name", name);
  DisplayS("Label", label);
  QXXML_850::Display("Variable role", role);
  QXXML_850::Display("Variable storage", storage);
  QXXML_850::Display("Measurement Level", level);
  DisplayI("Number of categories", nCategories);
  DisplayB("Ordinal variable indicator", ordinal);
  DisplayB("Binary Flag variable indicator", binary);
  DisplayB("Index of Binary Flag's true value", binaryTrueIndex == 1);
  if (hasReplacement) DisplayS("Missing value replacement", replacement);
}

void QXCatVar::SetNumberOfCategories(int n) {
  nCategories = n;
}

bool QXCatVar::GetSumFreqWts(std::vector<double>& sums) const {
  if (sumFreqWts.empty()) return false;
  sums = sumFreqWts;
  return true;
}

void QXCatVar::SetOrdinalFlag(bool flag) {
  ordinal = flag;
}

bool QXCatVar::GetOrdinalFlag() const {
  return ordinal;
}

void QXCatVar::SetBinaryFlag(bool flag, int trueIndex) {
  binary = flag;
  if (!flag) return;
  if (trueIndex == 0 || trueIndex == 1) {
    binaryTrueIndex = trueIndex;
  } else {
    binary = false;
  }
}

bool QXCatVar::GetBinaryFlag() const {
  return binary;
}

int QXCatVar::GetBinaryFlagTrueIndex() const {
  return binaryTrueIndex;
}

void QXCatVar::ChangeEncoder(IQXEncoder* newEncoder) {
  if (newEncoder != encoder) {
    delete encoder;
    encoder = newEncoder;
  }
  if (encoder != nullptr) nCategories = encoder->GetNumberOfCategories();
}

}  // namespace QXXML_850
