#include "qx/markup/qxvecvalue.h"

#include <algorithm>
#include <cmath>
#include <sstream>

#include "qx/foundation/qxcomponentdisplay.h"
#include "qx/markup/qxnumvalue.h"

namespace QXXML_850 {

namespace {

template <typename T>
struct SubType;
template <>
struct SubType<int> {
  static constexpr int value = 1;
};
template <>
struct SubType<double> {
  static constexpr int value = 2;
};
template <>
struct SubType<std::string> {
  static constexpr int value = 3;
};
template <>
struct SubType<std::pair<std::string, int>> {
  static constexpr int value = 4;
};
template <>
struct SubType<std::pair<std::string, double>> {
  static constexpr int value = 5;
};
template <>
struct SubType<std::pair<std::string, std::string>> {
  static constexpr int value = 6;
};
template <>
struct SubType<QXSettings> {
  static constexpr int value = 7;
};

// Element equality: doubles as QXNumValue compares them, the rest exactly.
bool SameElement(double a, double b) {
  return QXNumValue(a) == QXNumValue(b);
}
template <typename T>
bool SameElement(const T& a, const T& b) {
  return a == b;
}
template <typename K>
bool SameElement(const std::pair<K, double>& a, const std::pair<K, double>& b) {
  return a.first == b.first && SameElement(a.second, b.second);
}

// Element texts, numbers as a default stream writes them.
std::string Text(const std::string& s) {
  return s;
}
std::string Text(const QXSettings&) {
  return std::string();
}
template <typename T>
std::string Text(const T& number) {
  std::ostringstream out;
  out << number;
  return out.str();
}
template <typename T>
std::string Text(const std::pair<std::string, T>& pair) {
  return pair.first + ":" + Text(pair.second);
}

void DisplayElements(const std::vector<int>& v) {
  QXDisplay_850::DisplayIV("Setting Value", v);
}
void DisplayElements(const std::vector<double>& v) {
  QXDisplay_850::DisplayDV("Setting Value", v);
}
void DisplayElements(const std::vector<std::string>& v) {
  QXDisplay_850::DisplaySV("Setting Value", v);
}
void DisplayElements(const std::vector<QXSettings>& v) {
  QXDisplay_850::DisplayI("Setting Value size", static_cast<int>(v.size()));
  for (const QXSettings& list : v)
    list.Display();
}
template <typename T>
void DisplayElements(const std::vector<std::pair<std::string, T>>& v) {
  std::vector<std::string> texts;
  texts.reserve(v.size());
  for (const auto& pair : v)
    texts.push_back(Text(pair));
  QXDisplay_850::DisplaySV("Setting Value", texts);
}

}  // namespace

template <typename T>
QXVecValue<T>::QXVecValue() = default;
template <typename T>
QXVecValue<T>::QXVecValue(const std::vector<T>& values) : values(values) {}
template <typename T>
QXVecValue<T>::QXVecValue(const QXVecValue& other) : IQXSettingValue(other), values(other.values) {}

template <typename T>
QXVecValue<T>& QXVecValue<T>::operator=(const QXVecValue& other) {
  if (this != &other) values = other.values;
  return *this;
}

template <typename T>
QXVecValue<T>::~QXVecValue() = default;

template <typename T>
const std::vector<T>& QXVecValue<T>::GetVecValue() const {
  return values;
}
template <typename T>
void QXVecValue<T>::SetVecValue(const std::vector<T>& newValues) {
  values = newValues;
}
template <typename T>
void QXVecValue<T>::Add(const T& element) {
  values.push_back(element);
}
template <typename T>
int QXVecValue<T>::Size() const {
  return static_cast<int>(values.size());
}

template <typename T>
IQXSettingValue* QXVecValue<T>::Clone() const {
  return new QXVecValue(*this);
}

template <typename T>
bool QXVecValue<T>::operator==(const IQXSettingValue& other) const {
  if (other.GetType() != 2 || other.GetSubType() != SubType<T>::value) return false;
  const auto* vector = dynamic_cast<const QXVecValue*>(&other);
  if (vector == nullptr || vector->values.size() != values.size()) return false;
  for (size_t i = 0; i < values.size(); ++i) {
    if (!SameElement(values[i], vector->values[i])) return false;
  }
  return true;
}

template <typename T>
bool QXVecValue<T>::operator<(const IQXSettingValue& other) const {
  if (other.GetType() != 2 || other.GetSubType() != SubType<T>::value) return false;
  const auto* vector = dynamic_cast<const QXVecValue*>(&other);
  if (vector == nullptr) return false;
  return std::lexicographical_compare(values.begin(), values.end(), vector->values.begin(),
                                      vector->values.end());
}

template <typename T>
int QXVecValue<T>::GetInt() const {
  return Size();
}
template <typename T>
double QXVecValue<T>::GetDouble() const {
  return static_cast<double>(values.size());
}
template <typename T>
long long QXVecValue<T>::GetLongLong() const {
  return static_cast<long long>(values.size());
}
template <typename T>
bool QXVecValue<T>::GetBool() const {
  return !values.empty();
}

template <typename T>
std::string QXVecValue<T>::GetString() const {
  std::string text;
  for (size_t i = 0; i < values.size(); ++i) {
    if (i > 0) text += ",";
    text += Text(values[i]);
  }
  return text;
}

template <typename T>
int QXVecValue<T>::GetType() const {
  return 2;
}
template <typename T>
int QXVecValue<T>::GetSubType() const {
  return SubType<T>::value;
}

template <typename T>
void QXVecValue<T>::Display() const {
  QXDisplay_850::DisplayS("Setting Value Type", "List");
  DisplayElements(values);
  QXDisplay_850::DisplayText(0, "\n");
}

template class QXVecValue<int>;
template class QXVecValue<double>;
template class QXVecValue<std::string>;
template class QXVecValue<std::pair<std::string, int>>;
template class QXVecValue<std::pair<std::string, double>>;
template class QXVecValue<std::pair<std::string, std::string>>;
template class QXVecValue<QXSettings>;

}  // namespace QXXML_850
