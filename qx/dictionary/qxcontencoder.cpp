#include "qx/dictionary/qxcontencoder.h"

#include "qx/dictionary/internal/missingdefs.h"
#include "qx/dictionary/qxbinningencoder.h"
#include "qx/foundation/qxcomponentdisplay.h"
#include "qx/foundation/qxmissingvalue.h"

namespace QXXML_850 {

using QXCommon_850::QXMV;

QXContEncoder::QXContEncoder()
    : nBins(1),
      hasInterval(false),
      intervalLow(QXMV::Missing()),
      intervalHigh(QXMV::Missing()),
      binning(nullptr) {}

QXContEncoder::QXContEncoder(const std::vector<double>& cutPoints) : QXContEncoder() {
  nBins = static_cast<int>(cutPoints.size()) + 1;
  binning = new QXBinningEncoder(cutPoints);
}

QXContEncoder::QXContEncoder(double min, double max, int n) : QXContEncoder() {
  nBins = n;
  binning = new QXBinningEncoder(min, max, n);
}

QXContEncoder::QXContEncoder(const QXContEncoder& other)
    : nBins(other.nBins),
      missValues(other.missValues),
      missLabels(other.missLabels),
      hasInterval(other.hasInterval),
      intervalLow(other.intervalLow),
      intervalHigh(other.intervalHigh),
      binning(other.binning != nullptr ? other.binning->Clone() : nullptr) {}

QXContEncoder& QXContEncoder::operator=(const QXContEncoder& other) {
  if (this == &other) return *this;
  delete binning;
  binning = other.binning != nullptr ? other.binning->Clone() : nullptr;
  nBins = other.nBins;
  missValues = other.missValues;
  missLabels = other.missLabels;
  hasInterval = other.hasInterval;
  intervalLow = other.intervalLow;
  intervalHigh = other.intervalHigh;
  return *this;
}

QXContEncoder::~QXContEncoder() {
  delete binning;
}

const QXBinningEncoder* QXContEncoder::GetBinningEncoder() const {
  return binning;
}

IQXEncoder::EncoderType QXContEncoder::GetEncoderType() const {
  return EncoderBinning;
}

int QXContEncoder::GetNumberOfCategories() const {
  return binning != nullptr ? binning->GetNumberOfCategories() : nBins;
}

double QXContEncoder::Encode(double value) {
  return EncodeConst(value);
}

double QXContEncoder::EncodeConst(double value) const {
  return IsMissing(value) ? QXMV::Missing() : value;
}

double QXContEncoder::Encode(const std::string&) {
  return QXMV::Missing();
}

double QXContEncoder::EncodeConst(const std::string&) const {
  return QXMV::Missing();
}

bool QXContEncoder::IsMissing(double value) const {
  return QXMV::IsMissing(value) ||
         internal::IsUserMissing(value, hasInterval, intervalLow, intervalHigh, missValues);
}

bool QXContEncoder::IsMissing(const std::string&) const {
  return true;
}

std::string QXContEncoder::Decode(int) const {
  return std::string();
}

double QXContEncoder::DecodeNum(int) const {
  return QXMV::Missing();
}

IQXEncoder* QXContEncoder::Clone() const {
  return new QXContEncoder(*this);
}

void QXContEncoder::SetValueLabels(const std::vector<std::string>&) {}

void QXContEncoder::SetValueLabel(int, const std::string&) {}

bool QXContEncoder::AddDiscreteUserMissing(const std::string&, const std::string&) {
  return false;
}

bool QXContEncoder::AddDiscreteUserMissing(double value, const std::string& label) {
  return internal::AddValue({hasInterval, intervalLow, intervalHigh, missValues, missLabels}, value,
                            label);
}

bool QXContEncoder::SetMissingInterval(double low, double high) {
  return internal::SetInterval({hasInterval, intervalLow, intervalHigh, missValues, missLabels},
                               low, high);
}

const std::vector<std::string>* QXContEncoder::GetValueLabels() const {
  return nullptr;
}

const std::vector<double>* QXContEncoder::GetDiscreteMissValues() const {
  return &missValues;
}

const std::vector<std::string>* QXContEncoder::GetDiscreteMissValuesStr() const {
  return nullptr;
}

const std::vector<std::string>* QXContEncoder::GetMissValueLabels() const {
  return &missLabels;
}

bool QXContEncoder::GetMissingInterval(double& low, double& high) const {
  return internal::GetInterval(hasInterval, intervalLow, intervalHigh, low, high);
}

int QXContEncoder::WriteObjectXML(std::ostream& os, int nTabs) const {
  if (!os.good()) return 0;
  internal::ObjWriter out(os, "QXContEncoder", nTabs);
  out.Value(nBins);
  internal::WriteMissingDefs(out, hasInterval, intervalLow, intervalHigh, missValues, missLabels);
  return out.End();
}

int QXContEncoder::ReadObjectXML(std::ifstream& is) {
  internal::ObjReader in(is, "QXContEncoder", "Failure reading QXContEncoder!\n");
  const internal::MissingDefs defs{hasInterval, intervalLow, intervalHigh, missValues, missLabels};
  internal::ClearMissingDefs(defs);
  in.Value(nBins);
  internal::ReadMissingDefs(in, defs);
  return in.End();
}

void QXContEncoder::Display() const {
  QXDisplay_850::DisplayText(1, "\tQXContEncoder: ");
  QXDisplay_850::DisplayI("number of bins", nBins);
  internal::DisplayMissingDefs(missValues, missLabels, hasInterval, intervalLow, intervalHigh);
}

}  // namespace QXXML_850
