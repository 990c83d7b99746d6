#include "qx/markup/qxsetting.h"

#include <utility>

#include "qx/foundation/qxcomponentdisplay.h"
#include "qx/markup/qxnumvalue.h"
#include "qx/markup/qxsettinglistvalue.h"
#include "qx/markup/qxsettings.h"
#include "qx/markup/qxstrvalue.h"

namespace QXXML_850 {

QXSetting::QXSetting(const std::string& name, const std::string& value)
    : name(name), value(new QXStrValue(value)) {}
QXSetting::QXSetting(const std::string& name, double value)
    : name(name), value(new QXNumValue(value)) {}
QXSetting::QXSetting(const std::string& name, const QXSettings& value)
    : name(name), value(new QXSettingListValue(value)) {}
QXSetting::QXSetting(const std::string& name, const IQXSettingValue& value)
    : name(name), value(value.Clone()) {}

QXSetting::QXSetting(const QXSetting& other)
    : name(other.name),
      type(other.type),
      value(other.value == nullptr ? nullptr : other.value->Clone()) {}

QXSetting& QXSetting::operator=(const QXSetting& other) {
  if (this == &other) return *this;
  // Everything that can fail happens before this object changes.
  std::string newName = other.name, newType = other.type;
  IQXSettingValue* fresh = other.value == nullptr ? nullptr : other.value->Clone();
  name.swap(newName);
  type.swap(newType);
  delete value;
  value = fresh;
  return *this;
}

QXSetting::~QXSetting() {
  delete value;
}

QXSetting* QXSetting::Clone() const {
  return new QXSetting(*this);
}

// The new value is built before the old one is deleted, so a failure leaves
// the setting as it was.
void QXSetting::Replace(IQXSettingValue* fresh) {
  delete value;
  value = fresh;
}
void QXSetting::SetValue(const std::string& text) {
  Replace(new QXStrValue(text));
}
void QXSetting::SetValue(double number) {
  Replace(new QXNumValue(number));
}
void QXSetting::SetValue(const QXSettings& list) {
  Replace(new QXSettingListValue(list));
}
void QXSetting::SetValue(const IQXSettingValue& other) {
  Replace(other.Clone());
}

void QXSetting::SetName(const std::string& newName) {
  name = newName;
}
void QXSetting::SetType(std::string newType) {
  type = std::move(newType);
}
const std::string& QXSetting::GetName() const {
  return name;
}
std::string QXSetting::GetType() const {
  return type;
}
IQXSettingValue* QXSetting::GetValue() const {
  return value;
}
bool QXSetting::IsList() const {
  return value != nullptr && value->GetType() == 2;
}
bool QXSetting::HasChild() const {
  return value != nullptr && value->GetType() == 3;
}

bool QXSetting::operator==(const QXSetting& other) const {
  if (name != other.name || type != other.type) return false;
  if (value == nullptr || other.value == nullptr) return value == other.value;
  return *value == *other.value;
}

bool QXSetting::operator<(const QXSetting& other) const {
  if (value == nullptr || other.value == nullptr) return false;
  return *value < *other.value;
}

void QXSetting::Display() const {
  QXDisplay_850::DisplayS("Setting Name", name);
  QXDisplay_850::DisplayS("Setting Type", type);
  if (value != nullptr) value->Display();
}

}  // namespace QXXML_850
