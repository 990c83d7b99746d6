#include "qx/markup/qxsettinglistvalue.h"

#include <climits>

#include "qx/markup/qxsettings.h"

namespace QXXML_850 {

QXSettingListValue::QXSettingListValue() : list(new QXSettings()) {}
QXSettingListValue::QXSettingListValue(const QXSettings& other) : list(other.Clone()) {}
QXSettingListValue::QXSettingListValue(const QXSettingListValue& other)
    : list(other.list->Clone()) {}

QXSettingListValue& QXSettingListValue::operator=(const QXSettingListValue& other) {
  if (this == &other) return *this;
  *list = *other.list;
  return *this;
}

QXSettingListValue::~QXSettingListValue() {
  delete list;
}

QXSettings* QXSettingListValue::GetListValue() const {
  return list;
}

IQXSettingValue* QXSettingListValue::Clone() const {
  return new QXSettingListValue(*this);
}

bool QXSettingListValue::operator==(const IQXSettingValue& other) const {
  if (other.GetType() != 3) return false;
  const auto* nested = dynamic_cast<const QXSettingListValue*>(&other);
  return nested != nullptr && *list == *nested->list;
}

bool QXSettingListValue::operator<(const IQXSettingValue& other) const {
  if (other.GetType() != 3) return false;
  const auto* nested = dynamic_cast<const QXSettingListValue*>(&other);
  return nested != nullptr && *list < *nested->list;
}

int QXSettingListValue::GetInt() const {
  return INT_MIN;
}
long long QXSettingListValue::GetLongLong() const {
  return LLONG_MIN;
}
double QXSettingListValue::GetDouble() const {
  return 2.2250738585072014e-308;
}
std::string QXSettingListValue::GetString() const {
  return std::string();
}
bool QXSettingListValue::GetBool() const {
  return true;
}
int QXSettingListValue::GetType() const {
  return 3;
}
int QXSettingListValue::GetSubType() const {
  return 0;
}
void QXSettingListValue::Display() const {
  list->Display();
}

}  // namespace QXXML_850
