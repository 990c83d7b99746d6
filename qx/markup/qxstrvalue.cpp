#include "qx/markup/qxstrvalue.h"

#include <cstdlib>
#include <iostream>
#include <locale>
#include <sstream>

#include "qx/foundation/qxcomponentdisplay.h"
#include "qx/markup/qxnumvalue.h"

namespace QXXML_850 {

QXStrValue::QXStrValue() = default;
QXStrValue::QXStrValue(const std::string& text) : text(text) {}
QXStrValue::QXStrValue(const QXStrValue& other) = default;
QXStrValue& QXStrValue::operator=(const QXStrValue& other) = default;
QXStrValue::~QXStrValue() = default;

void QXStrValue::SetString(const std::string& value) {
  text = value;
}
int QXStrValue::GetLength() const {
  return static_cast<int>(text.size());
}

IQXSettingValue* QXStrValue::Clone() const {
  return new QXStrValue(*this);
}

bool QXStrValue::operator==(const IQXSettingValue& other) const {
  if (other.GetType() != 1) return false;
  return text == other.GetString();
}

bool QXStrValue::operator<(const IQXSettingValue& other) const {
  if (other.GetType() != 1) return false;
  return text < other.GetString();
}

int QXStrValue::GetInt() const {
  return static_cast<int>(std::strtol(text.c_str(), nullptr, 10));
}

long long QXStrValue::GetLongLong() const {
  return std::strtoll(text.c_str(), nullptr, 10);
}

double QXStrValue::GetDouble() const {
  if (text.empty()) return QXNumValue().GetDouble();
  const char point = std::use_facet<std::numpunct<char>>(std::cout.getloc()).decimal_point();
  std::string copy = text;
  const size_t dot = copy.find('.');
  if (dot != std::string::npos) copy[dot] = point;
  std::istringstream in(copy);
  double result = 0.0;
  in >> result;
  return result;
}

std::string QXStrValue::GetString() const {
  return text;
}
bool QXStrValue::GetBool() const {
  return text == "true";
}
int QXStrValue::GetType() const {
  return 1;
}
int QXStrValue::GetSubType() const {
  return 0;
}

void QXStrValue::Display() const {
  QXDisplay_850::DisplayS("Setting Value Type", "String");
  QXDisplay_850::DisplayS("Setting Value", text);
  QXDisplay_850::DisplayText(0, "\n");
}

}  // namespace QXXML_850
