#include "qx/dictionary/qxcontvar.h"

#include <iostream>
#include <limits>

#include "qx/dictionary/internal/persist.h"
#include "qx/dictionary/internal/variableparts.h"
#include "qx/dictionary/qxcontencoder.h"
#include "qx/dictionary/qxmtdisplayenums.h"
#include "qx/foundation/ioexception.h"
#include "qx/foundation/qxcomponentdisplay.h"
#include "qx/foundation/qxmissingvalue.h"
#include "qx/markup/xmlelement.h"

namespace QXXML_850 {

using QXCommon_850::QXMV;

QXContVar::QXContVar()
    : role(RoleInput),
      storage(StorageReal),
      min(-std::numeric_limits<double>::max()),
      max(std::numeric_limits<double>::max()),
      nBins(-1),
      mean(QXMV::Missing()),
      stdDev(QXMV::Missing()),
      hasReplacement(false),
      encoder(nullptr),
      fSumFreqWts(0.0),
      fSumCompWts(0.0),
      outlierMethod(OutlierNone),
      fieldFormat(nullptr) {}

QXContVar::QXContVar(const std::string& varName, const std::string& varLabel, VariableRole varRole)
    : QXContVar() {
  name = varName;
  label = varLabel;
  role = varRole;
  encoder = new QXContEncoder();
}

QXContVar::QXContVar(const std::string& varName, const std::string& varLabel, VariableRole varRole,
                     double minValue, double maxValue, int bins)
    : QXContVar() {
  name = varName;
  label = varLabel;
  role = varRole;
  storage = StorageUndefined;
  min = minValue;
  max = maxValue;
  nBins = bins;
}

QXContVar::QXContVar(const std::string& varName, const std::string& varLabel, double minValue,
                     double maxValue, VariableRole varRole, bool binned, int bins)
    : QXContVar(varName, varLabel, varRole, minValue, maxValue, bins) {
  encoder =
      binned && max > min && nBins >= 2 ? new QXContEncoder(min, max, nBins) : new QXContEncoder();
}

QXContVar::QXContVar(const std::string& varName, const std::string& varLabel, double minValue,
                     double maxValue, const std::vector<double>& cuts, bool binned,
                     VariableRole varRole)
    : QXContVar(varName, varLabel, varRole, minValue, maxValue, static_cast<int>(cuts.size()) + 1) {
  cutPoints = cuts;
  encoder = binned && max > min && nBins >= 2 ? new QXContEncoder(cuts) : new QXContEncoder();
}

QXContVar::QXContVar(const std::string& varName, const std::string& varLabel,
                     const std::vector<double>& cuts, bool binned, VariableRole varRole)
    : QXContVar(varName, varLabel, -std::numeric_limits<double>::max(),
                std::numeric_limits<double>::max(), cuts, binned, varRole) {}

QXContVar::QXContVar(const QXContVar& other)
    : name(other.name),
      label(other.label),
      role(other.role),
      storage(other.storage),
      min(other.min),
      max(other.max),
      nBins(other.nBins),
      mean(other.mean),
      stdDev(other.stdDev),
      cutPoints(other.cutPoints),
      replacement(other.replacement),
      hasReplacement(other.hasReplacement),
      encoder(other.encoder != nullptr ? other.encoder->Clone() : nullptr),
      fSumFreqWts(other.fSumFreqWts),
      fSumCompWts(other.fSumCompWts),
      outlierMethod(other.outlierMethod),
      fieldFormat(other.fieldFormat != nullptr ? other.fieldFormat->Clone() : nullptr) {}

QXContVar& QXContVar::operator=(const QXContVar& other) {
  if (this == &other) return *this;
  name = other.name;
  label = other.label;
  role = other.role;
  storage = other.storage;
  min = other.min;
  max = other.max;
  nBins = other.nBins;
  mean = other.mean;
  stdDev = other.stdDev;
  cutPoints = other.cutPoints;
  replacement = other.replacement;
  hasReplacement = other.hasReplacement;
  internal::AssignEncoder<QXContEncoder>(encoder, other.encoder);
  fSumFreqWts = other.fSumFreqWts;
  fSumCompWts = other.fSumCompWts;
  outlierMethod = other.outlierMethod;
  internal::AssignElement(fieldFormat, other.fieldFormat);
  return *this;
}

QXContVar::~QXContVar() {
  delete encoder;
  delete fieldFormat;
}

IQXVariable::MeasureLevel QXContVar::GetMeasureLevel() const {
  return LevelContinuous;
}

std::string QXContVar::GetVariableName() const {
  return name;
}

std::string QXContVar::GetVariableLabel() const {
  return label;
}

void QXContVar::SetVariableLabel(const std::string& text) {
  label = text;
}

int QXContVar::GetNumberOfCategories() const {
  return encoder != nullptr ? encoder->GetNumberOfCategories() : nBins;
}

IQXVariable::VariableRole QXContVar::GetVariableRole() const {
  return role;
}

void QXContVar::SetVariableRole(VariableRole value) {
  role = value;
}

IQXVariable::VariableStorage QXContVar::GetVariableStorage() const {
  return storage;
}

void QXContVar::SetVariableStorage(VariableStorage value) {
  storage = value;
}

void QXContVar::SetFieldFormatElement(XMLElement* element) {
  fieldFormat = element;
}

const XMLElement* QXContVar::GetFieldFormatElement() const {
  return fieldFormat;
}

XMLElement* QXContVar::GetFieldFormatElement() {
  return fieldFormat;
}

int QXContVar::UpdateNumberOfCategories() {
  if (encoder != nullptr) nBins = encoder->GetNumberOfCategories();
  return nBins;
}

void QXContVar::SetMissingValueReplacement(const std::string& text) {
  replacement = text;
  hasReplacement = true;
}

const std::string* QXContVar::GetMissingValueReplacement() const {
  return hasReplacement ? &replacement : nullptr;
}

IQXVariable* QXContVar::Clone() const {
  return new QXContVar(*this);
}

const IQXEncoder* QXContVar::GetEncoder() const {
  return encoder;
}

IQXEncoder* QXContVar::GetEncoder() {
  return encoder;
}

IQXVariable::VarStatus QXContVar::GetVarStatus() {
  if (min > max) return StatusInvalid;
  if (min == max) return StatusConstant;
  return StatusOK;
}

int QXContVar::WriteObjectXML(std::ostream& os, int nTabs) const {
  if (!os.good()) return 0;
  internal::ObjWriter out(os, "QXContVar", nTabs);
  out.Value(name);
  out.Value(label);
  out.Enum(role);
  out.Value(nBins);
  out.Value(min);
  out.Value(max);
  out.Value(mean);
  out.Value(stdDev);
  out.Enum(storage);
  internal::WriteReplacement(out, hasReplacement, replacement);
  out.Value(fSumFreqWts);
  out.Value(fSumCompWts);
  internal::WriteEncoder(out, encoder);
  return out.End();
}

int QXContVar::ReadObjectXML(std::ifstream& is) {
  internal::ObjReader in(is, "QXContVar", "Failure reading QXContVar!\n");
  delete encoder;
  encoder = nullptr;
  in.Value(name);
  in.Value(label);
  in.Enum(role);
  in.Value(nBins);
  in.Value(min);
  in.Value(max);
  in.Value(mean);
  in.Value(stdDev);
  in.Enum(storage);
  internal::ReadReplacement(in, hasReplacement, replacement);
  in.Value(fSumFreqWts);
  in.Value(fSumCompWts);
  int type = 0;
  in.Value(type);
  if (type == IQXEncoder::EncoderBinning) {
    encoder = new QXContEncoder();
    in.Nested(encoder->ReadObjectXML(is));
  } else if (type != IQXEncoder::EncoderUnknown) {
    std::cout << "Wrong encoder type in QXContVar!\n";
    throw new IOException();
  }
  return in.End();
}

bool QXContVar::SetFlagVariable(bool) {
  return false;
}

bool QXContVar::IsFlagVariable() const {
  return false;
}

void QXContVar::Display() const {
  using namespace QXDisplay_850;
  DisplayS("Continuous variable: name", name);
  DisplayS("Label", label);
  QXXML_850::Display("Variable role", role);
  QXXML_850::Display("Variable storage", storage);
  DisplayI("Number of bins", nBins);
  DisplayD("Min", min);
  DisplayD("Max", max);
  DisplayD("Mean", mean);
  DisplayD("Standard deviation", stdDev);
  if (hasReplacement) DisplayS("Missing value replacement", replacement);
  if (encoder != nullptr) {
    encoder->Display();
  } else {
    DisplayText(1, "Encoder not set");
  }
  DisplayD("fSumFreqWts", fSumFreqWts);
  DisplayD("fSumCompWts", fSumCompWts);
  DisplayS("End display for Continuous variable ", name);
}

void QXContVar::SetNBins(int n) {
  nBins = n;
}

int QXContVar::GetNBins() const {
  return nBins;
}

double QXContVar::GetMin() const {
  return min;
}

double QXContVar::GetMax() const {
  return max;
}

void QXContVar::SetMinMax(double minValue, double maxValue) {
  min = minValue;
  max = maxValue;
}

double QXContVar::GetSumFreqWts() const {
  return fSumFreqWts;
}

void QXContVar::SetSumFreqWts(double sum) {
  fSumFreqWts = sum;
}

double QXContVar::GetSumCompWts() const {
  return fSumCompWts;
}

void QXContVar::SetSumCompWts(double sum) {
  fSumCompWts = sum;
}

QXContVar::OutlierHandleMethod QXContVar::GetOutlierHandleMethod() const {
  return static_cast<OutlierHandleMethod>(outlierMethod);
}

void QXContVar::SetOutlierHandleMethod(OutlierHandleMethod method) {
  outlierMethod = method;
}

}  // namespace QXXML_850
