#include "qx/markup/qxnumvalue.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <sstream>

#include "qx/foundation/internal/doublebits.h"
#include "qx/foundation/internal/truncate.h"
#include "qx/foundation/qxcomponentdisplay.h"

namespace QXXML_850 {

// Defined in this order, so that SYSINI sees the sentinel already set.
const double QXNumValue::fEpsilon = 2.22045e-16;
double QXNumValue::gInitalValue =
    QXCommon_850::internal::DoubleFromBits(QXCommon_850::internal::kMissingValueBits);
double QXNumValue::gInfinity =
    QXCommon_850::internal::DoubleFromBits(QXCommon_850::internal::kInfinityBits);
QXNumValue QXNumValue::SYSINI;

QXNumValue::QXNumValue()
    : intValue(-2147483647 - 1), doubleValue(gInitalValue), longValue(-2147483648LL), numType(1) {}
QXNumValue::QXNumValue(int value) {
  SetNumValue(value);
}
QXNumValue::QXNumValue(double value) {
  SetNumValue(value);
}
QXNumValue::QXNumValue(long long value) {
  SetNumValue(value);
}
QXNumValue::QXNumValue(const QXNumValue& other) = default;

QXNumValue& QXNumValue::operator=(const QXNumValue& other) {
  if (this == &other) return *this;
  intValue = other.intValue;
  doubleValue = other.doubleValue;
  longValue = other.longValue;
  numType = other.numType;
  return *this;
}

QXNumValue::~QXNumValue() = default;

void QXNumValue::SetNumValue(int value) {
  intValue = value;
  doubleValue = value;
  longValue = value;
  numType = 0;
}

void QXNumValue::SetNumValue(double value) {
  intValue = QXCommon_850::internal::TruncateToward0<int>(value);
  doubleValue = value;
  longValue = QXCommon_850::internal::TruncateToward0<long long>(value);
  numType = 1;
}

void QXNumValue::SetNumValue(long long value) {
  intValue = static_cast<int>(static_cast<std::uint32_t>(value));  // the low 32 bits
  doubleValue = static_cast<double>(value);
  longValue = value;
  numType = 2;
}

void QXNumValue::GetNumValue(int& value) const {
  value = intValue;
}
void QXNumValue::GetNumValue(double& value) const {
  value = doubleValue;
}
void QXNumValue::GetNumValue(long long& value) const {
  value = longValue;
}
int QXNumValue::GetNumValueType() const {
  return numType;
}

IQXSettingValue* QXNumValue::Clone() const {
  return new QXNumValue(*this);
}

bool QXNumValue::operator==(const IQXSettingValue& other) const {
  if (other.GetType() != 0) return false;
  const auto* number = dynamic_cast<const QXNumValue*>(&other);
  if (number == nullptr) return false;
  if (numType != number->numType) return intValue == number->intValue;
  switch (numType) {
    case 0:
      return intValue == number->intValue;
    case 2:
      return longValue == number->longValue;
    case 1: {
      const double a = doubleValue, b = number->doubleValue;
      if (a == 0.0 && b == 0.0) return true;
      if (a == gInitalValue && b == gInitalValue) return true;
      if (a == gInitalValue || b == gInitalValue) return false;
      // Exactly equal numbers are equal also where the product below
      // underflows (subnormals) or is not finite (infinities).
      if (a == b) return true;
      return std::max(std::fabs(a), std::fabs(b)) * fEpsilon > std::fabs(a - b);
    }
    default:
      return false;
  }
}

bool QXNumValue::operator<(const IQXSettingValue& other) const {
  if (other.GetType() != 0) return false;
  const auto* number = dynamic_cast<const QXNumValue*>(&other);
  if (number == nullptr) return false;
  if (numType != number->numType) return intValue < number->intValue;
  switch (numType) {
    case 0:
      return intValue < number->intValue;
    case 1:
      return doubleValue < number->doubleValue;
    case 2:
      return longValue < number->longValue;
    default:
      return false;
  }
}

int QXNumValue::GetInt() const {
  return intValue;
}
double QXNumValue::GetDouble() const {
  return doubleValue;
}
long long QXNumValue::GetLongLong() const {
  return longValue;
}

std::string QXNumValue::GetString() const {
  if (gInitalValue >= doubleValue) return "Undefined";
  std::ostringstream out;
  switch (numType) {
    case 0:
      out << intValue;
      break;
    case 2:
      out << longValue;
      break;
    default:
      out << doubleValue;
      break;
  }
  return out.str();
}

bool QXNumValue::GetBool() const {
  switch (numType) {
    case 0:
      return intValue > 0;
    case 1:
      return doubleValue > 0.0;
    case 2:
      return longValue > 0;
    default:
      return false;
  }
}

int QXNumValue::GetType() const {
  return 0;
}
int QXNumValue::GetSubType() const {
  return 0;
}

void QXNumValue::Display() const {
  QXDisplay_850::DisplayS("Setting Value Type", "Numeric");
  QXDisplay_850::DisplayD("Setting Value", doubleValue);
  QXDisplay_850::DisplayText(0, "\n");
}

}  // namespace QXXML_850
