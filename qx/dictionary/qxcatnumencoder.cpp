#include "qx/dictionary/qxcatnumencoder.h"

#include "qx/dictionary/internal/categorylabels.h"
#include "qx/dictionary/internal/missingdefs.h"
#include "qx/foundation/localeutil.h"
#include "qx/foundation/qxcomponentdisplay.h"
#include "qx/foundation/qxmissingvalue.h"

namespace QXXML_850 {

using QXCommon_850::QXMV;

QXCatNumEncoder::QXCatNumEncoder(int n)
    : lastCode(-1),
      hasInterval(false),
      intervalLow(QXMV::Missing()),
      intervalHigh(QXMV::Missing()) {
  categories.reserve(internal::ReserveCap(n));
}

QXCatNumEncoder::QXCatNumEncoder(const std::vector<double>& values)
    : QXCatNumEncoder(static_cast<int>(values.size())) {
  for (double value : values)
    Encode(value);
}

IQXEncoder::EncoderType QXCatNumEncoder::GetEncoderType() const {
  return EncoderCatNum;
}

int QXCatNumEncoder::GetNumberOfCategories() const {
  return static_cast<int>(codes.size());
}

double QXCatNumEncoder::Encode(double value) {
  if (IsMissing(value)) return -1.0;
  const auto found = codes.lower_bound(value);
  if (found != codes.end() && !codes.key_comp()(value, found->first)) return found->second;
  ++lastCode;
  codes.emplace_hint(found, value, lastCode);
  categories.push_back(value);
  return lastCode;
}

double QXCatNumEncoder::EncodeConst(double value) const {
  if (IsMissing(value)) return -1.0;
  const auto found = codes.find(value);
  return found != codes.end() ? found->second : -1.0;
}

double QXCatNumEncoder::Encode(const std::string&) {
  return -1.0;
}

double QXCatNumEncoder::EncodeConst(const std::string&) const {
  return -1.0;
}

bool QXCatNumEncoder::IsMissing(double value) const {
  return QXMV::IsMissing(value) ||
         internal::IsUserMissing(value, hasInterval, intervalLow, intervalHigh, missValues);
}

bool QXCatNumEncoder::IsMissing(const std::string&) const {
  return true;
}

std::string QXCatNumEncoder::Decode(int code) const {
  if (code < 0 || code >= GetNumberOfCategories()) return std::string();
  char format[] = "%.15g";
  return ReplaceSep(categories[code], format);
}

double QXCatNumEncoder::DecodeNum(int code) const {
  if (code < 0 || code >= GetNumberOfCategories()) return QXMV::Missing();
  return categories[code];
}

IQXEncoder* QXCatNumEncoder::Clone() const {
  return new QXCatNumEncoder(*this);
}

void QXCatNumEncoder::SetValueLabels(const std::vector<std::string>& labels) {
  valueLabels = labels;
}

void QXCatNumEncoder::SetValueLabel(int code, const std::string& label) {
  internal::SetLabel(valueLabels, codes.size(), code, label);
}

bool QXCatNumEncoder::AddDiscreteUserMissing(const std::string&, const std::string&) {
  return false;
}

bool QXCatNumEncoder::AddDiscreteUserMissing(double value, const std::string& label) {
  return internal::AddValue({hasInterval, intervalLow, intervalHigh, missValues, missLabels}, value,
                            label);
}

bool QXCatNumEncoder::SetMissingInterval(double low, double high) {
  return internal::SetInterval({hasInterval, intervalLow, intervalHigh, missValues, missLabels},
                               low, high);
}

const std::vector<std::string>* QXCatNumEncoder::GetValueLabels() const {
  return &valueLabels;
}

const std::vector<double>* QXCatNumEncoder::GetDiscreteMissValues() const {
  return &missValues;
}

const std::vector<std::string>* QXCatNumEncoder::GetDiscreteMissValuesStr() const {
  return nullptr;
}

const std::vector<std::string>* QXCatNumEncoder::GetMissValueLabels() const {
  return &missLabels;
}

bool QXCatNumEncoder::GetMissingInterval(double& low, double& high) const {
  return internal::GetInterval(hasInterval, intervalLow, intervalHigh, low, high);
}

int QXCatNumEncoder::WriteObjectXML(std::ostream& os, int nTabs) const {
  if (!os.good()) return 0;
  internal::ObjWriter out(os, "QXCatNumEncoder", nTabs);
  out.Value(static_cast<int>(categories.size()));
  for (double value : categories)
    out.Value(value);
  out.Strings(valueLabels);
  internal::WriteMissingDefs(out, hasInterval, intervalLow, intervalHigh, missValues, missLabels);
  return out.End();
}

int QXCatNumEncoder::ReadObjectXML(std::ifstream& is) {
  internal::ObjReader in(is, "QXCatNumEncoder", "Failure reading QXCatNumEncoder!\n");
  const internal::MissingDefs defs{hasInterval, intervalLow, intervalHigh, missValues, missLabels};
  lastCode = -1;
  codes.clear();
  categories.clear();
  internal::ClearMissingDefs(defs);
  const int n = in.Count();
  categories.reserve(internal::CappedCount(is, n));
  for (int i = 0; i < n; ++i) {
    double value = 0.0;
    in.Value(value);
    Encode(value);
  }
  valueLabels.clear();
  in.Strings(in.Count(), valueLabels);
  internal::ReadMissingDefs(in, defs);
  return in.End();
}

void QXCatNumEncoder::Display() const {
  using namespace QXDisplay_850;
  DisplayText(0, "\tBNCatNumEncoder: ");
  DisplayI("Last code = ", lastCode);
  DisplayText(1, "\t\tNumeric values of categories: ");
  DisplayDV("Numeric values of categories", categories);
  DisplayText(1, "");
  if (!valueLabels.empty()) DisplaySV("Value Labels:", valueLabels);
  internal::DisplayMissingDefs(missValues, missLabels, hasInterval, intervalLow, intervalHigh);
}

}  // namespace QXXML_850
