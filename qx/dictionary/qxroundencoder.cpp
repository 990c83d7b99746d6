#include "qx/dictionary/qxroundencoder.h"

#include <cmath>

#include "qx/dictionary/internal/missingdefs.h"
#include "qx/dictionary/qxmtdisplayenums.h"
#include "qx/foundation/qxmissingvalue.h"

namespace QXXML_850 {

using QXCommon_850::QXMV;

QXRoundEncoder::QXRoundEncoder() : QXRoundEncoder(IQXVariable::RoundAsIs) {}

QXRoundEncoder::QXRoundEncoder(IQXVariable::WRoundingOption roundingOption)
    : option(roundingOption),
      hasInterval(false),
      intervalLow(QXMV::Missing()),
      intervalHigh(QXMV::Missing()) {}

IQXEncoder::EncoderType QXRoundEncoder::GetEncoderType() const {
  return EncoderRound;
}

int QXRoundEncoder::GetNumberOfCategories() const {
  return 0;
}

double QXRoundEncoder::Encode(double value) {
  return EncodeConst(value);
}

double QXRoundEncoder::EncodeConst(double value) const {
  if (IsMissing(value)) return QXMV::Missing();
  double rounded = value;
  if (option == IQXVariable::RoundTruncate) {
    rounded = std::floor(value);
  } else if (option == IQXVariable::RoundClosest) {
    rounded = std::floor(value + 0.5);
  }
  // A NaN weight passes as it is.
  return rounded > 0.0 || std::isnan(rounded) ? rounded : QXMV::Missing();
}

double QXRoundEncoder::Encode(const std::string&) {
  return QXMV::Missing();
}

double QXRoundEncoder::EncodeConst(const std::string&) const {
  return QXMV::Missing();
}

bool QXRoundEncoder::IsMissing(double value) const {
  return QXMV::IsMissing(value) || value <= 0.0 ||
         internal::IsUserMissing(value, hasInterval, intervalLow, intervalHigh, missValues);
}

bool QXRoundEncoder::IsMissing(const std::string&) const {
  return true;
}

std::string QXRoundEncoder::Decode(int) const {
  return std::string();
}

double QXRoundEncoder::DecodeNum(int) const {
  return QXMV::Missing();
}

IQXEncoder* QXRoundEncoder::Clone() const {
  return new QXRoundEncoder(*this);
}

void QXRoundEncoder::SetValueLabels(const std::vector<std::string>&) {}

void QXRoundEncoder::SetValueLabel(int, const std::string&) {}

bool QXRoundEncoder::AddDiscreteUserMissing(const std::string&, const std::string&) {
  return false;
}

bool QXRoundEncoder::AddDiscreteUserMissing(double value, const std::string& label) {
  return internal::AddValue({hasInterval, intervalLow, intervalHigh, missValues, missLabels}, value,
                            label);
}

bool QXRoundEncoder::SetMissingInterval(double low, double high) {
  return internal::SetInterval({hasInterval, intervalLow, intervalHigh, missValues, missLabels},
                               low, high);
}

const std::vector<std::string>* QXRoundEncoder::GetValueLabels() const {
  return nullptr;
}

const std::vector<double>* QXRoundEncoder::GetDiscreteMissValues() const {
  return &missValues;
}

const std::vector<std::string>* QXRoundEncoder::GetDiscreteMissValuesStr() const {
  return nullptr;
}

const std::vector<std::string>* QXRoundEncoder::GetMissValueLabels() const {
  return &missLabels;
}

bool QXRoundEncoder::GetMissingInterval(double& low, double& high) const {
  return internal::GetInterval(hasInterval, intervalLow, intervalHigh, low, high);
}

int QXRoundEncoder::WriteObjectXML(std::ostream& os, int nTabs) const {
  if (!os.good()) return 0;
  internal::ObjWriter out(os, "QXRoundEncoder", nTabs);
  out.Value(option);
  internal::WriteMissingDefs(out, hasInterval, intervalLow, intervalHigh, missValues, missLabels);
  return out.End();
}

int QXRoundEncoder::ReadObjectXML(std::ifstream& is) {
  internal::ObjReader in(is, "QXRoundEncoder", "Failure reading QXRoundEncoder from XML!\n");
  const internal::MissingDefs defs{hasInterval, intervalLow, intervalHigh, missValues, missLabels};
  internal::ClearMissingDefs(defs);
  in.Value(option);
  if (option < 0) in.Fail();
  internal::ReadMissingDefs(in, defs);
  return in.End();
}

void QXRoundEncoder::Display() const {
  QXXML_850::Display("QXRoundEncoder: option", static_cast<IQXVariable::WRoundingOption>(option));
  internal::DisplayMissingDefs(missValues, missLabels, hasInterval, intervalLow, intervalHigh);
}

}  // namespace QXXML_850
