#include "qx/dictionary/qxstringencoder.h"

#include "qx/dictionary/internal/categorylabels.h"
#include "qx/dictionary/internal/persist.h"
#include "qx/foundation/qxcomponentdisplay.h"
#include "qx/foundation/qxmissingvalue.h"

namespace QXXML_850 {

using QXCommon_850::QXMV;

QXStringEncoder::QXStringEncoder(int n) : lastCode(-1) {
  links.reserve(internal::ReserveCap(n));
}

QXStringEncoder::QXStringEncoder(const std::vector<std::string>& texts)
    : QXStringEncoder(static_cast<int>(texts.size())) {
  for (const std::string& text : texts)
    Encode(text);
}

QXStringEncoder::QXStringEncoder(const QXStringEncoder& other)
    : codes(other.codes),
      valueLabels(other.valueLabels),
      lastCode(other.lastCode),
      missStrings(other.missStrings),
      missLabels(other.missLabels) {
  CreateLinks();
}

QXStringEncoder& QXStringEncoder::operator=(const QXStringEncoder& other) {
  if (this == &other) return *this;
  codes = other.codes;
  valueLabels = other.valueLabels;
  lastCode = other.lastCode;
  missStrings = other.missStrings;
  missLabels = other.missLabels;
  CreateLinks();
  return *this;
}

void QXStringEncoder::CreateLinks() {
  links.clear();
  links.reserve(codes.size());
  links.resize(static_cast<size_t>(lastCode + 1), nullptr);
  for (const auto& entry : codes) {
    if (entry.second >= 0 && static_cast<size_t>(entry.second) < links.size()) {
      links[entry.second] = &entry.first;
    }
  }
}

IQXEncoder::EncoderType QXStringEncoder::GetEncoderType() const {
  return EncoderString;
}

int QXStringEncoder::GetNumberOfCategories() const {
  return lastCode + 1;
}

double QXStringEncoder::Encode(double) {
  return -1.0;
}

double QXStringEncoder::EncodeConst(double) const {
  return -1.0;
}

double QXStringEncoder::Encode(const std::string& value) {
  if (IsMissing(value)) return -1.0;
  const auto found = codes.lower_bound(value);
  if (found != codes.end() && found->first == value) return found->second;
  ++lastCode;
  const auto added = codes.emplace_hint(found, value, lastCode);
  links.push_back(&added->first);
  return lastCode;
}

double QXStringEncoder::EncodeConst(const std::string& value) const {
  if (IsMissing(value)) return -1.0;
  const auto found = codes.find(value);
  return found != codes.end() ? found->second : -1.0;
}

bool QXStringEncoder::IsMissing(double) const {
  return true;
}

bool QXStringEncoder::IsMissing(const std::string& value) const {
  for (const std::string& missing : missStrings) {
    if (missing == value) return true;
  }
  return false;
}

std::string QXStringEncoder::Decode(int code) const {
  if (code < 0 || code > lastCode || static_cast<size_t>(code) >= links.size() ||
      links[code] == nullptr) {
    return std::string();
  }
  return *links[code];
}

double QXStringEncoder::DecodeNum(int) const {
  return QXMV::Missing();
}

IQXEncoder* QXStringEncoder::Clone() const {
  return new QXStringEncoder(*this);
}

void QXStringEncoder::SetValueLabels(const std::vector<std::string>& labels) {
  valueLabels = labels;
}

void QXStringEncoder::SetValueLabel(int code, const std::string& label) {
  internal::SetLabel(valueLabels, codes.size(), code, label);
}

bool QXStringEncoder::AddDiscreteUserMissing(const std::string& value, const std::string& label) {
  missStrings.push_back(value);
  missLabels.push_back(label);
  return true;
}

bool QXStringEncoder::AddDiscreteUserMissing(double, const std::string&) {
  return false;
}

bool QXStringEncoder::SetMissingInterval(double, double) {
  return false;
}

const std::vector<std::string>* QXStringEncoder::GetValueLabels() const {
  return &valueLabels;
}

const std::vector<double>* QXStringEncoder::GetDiscreteMissValues() const {
  return nullptr;
}

const std::vector<std::string>* QXStringEncoder::GetDiscreteMissValuesStr() const {
  return &missStrings;
}

const std::vector<std::string>* QXStringEncoder::GetMissValueLabels() const {
  return &missLabels;
}

bool QXStringEncoder::GetMissingInterval(double&, double&) const {
  return false;
}

int QXStringEncoder::WriteObjectXML(std::ostream& os, int nTabs) const {
  if (!os.good()) return 0;
  internal::ObjWriter out(os, "QXStringEncoder", nTabs);
  out.Value(lastCode + 1);
  for (int code = 0; code <= lastCode; ++code)
    out.Value(Decode(code));
  out.Strings(valueLabels);
  out.Value(static_cast<int>(missStrings.size()));
  for (const std::string& text : missStrings)
    out.Value(text);
  for (size_t i = 0; i < missStrings.size(); ++i)
    out.Value(i < missLabels.size() ? missLabels[i] : std::string());
  return out.End();
}

int QXStringEncoder::ReadObjectXML(std::ifstream& is) {
  internal::ObjReader in(is, "QXStringEncoder", "Failure reading QXStringEncoder!\n");
  lastCode = -1;
  codes.clear();
  links.clear();
  const int n = in.Count();
  links.reserve(internal::CappedCount(is, n));
  for (int i = 0; i < n; ++i) {
    std::string text;
    in.Value(text);
    Encode(text);
  }
  valueLabels.clear();
  in.Strings(in.Count(), valueLabels);
  const int nMissing = in.Count();
  missStrings.clear();
  missLabels.clear();
  in.Strings(nMissing, missStrings);
  in.Strings(nMissing, missLabels);
  return in.End();
}

void QXStringEncoder::Display() const {
  using namespace QXDisplay_850;
  DisplayText(0, "\tBNStringEncoder object:");
  DisplayI("Last code", lastCode);
  for (int code = 0; code <= lastCode; ++code) {
    DisplayI("\t\t", code);
    const bool linked = static_cast<size_t>(code) < links.size() && links[code] != nullptr;
    DisplayText(0, linked ? "\t\t" + *links[code] : std::string("\t\tERROR"));
  }
  DisplaySV("Value Labels:", valueLabels);
  if (!missStrings.empty()) {
    DisplayText(0, "\t\tMissing Values and their Labels: ");
    DisplayText(1, "");
    for (size_t i = 0; i < missStrings.size(); ++i) {
      DisplayS("", missStrings[i]);
      DisplayS("\t", i < missLabels.size() ? missLabels[i] : std::string());
    }
    DisplayText(1, "");
  }
}

}  // namespace QXXML_850
