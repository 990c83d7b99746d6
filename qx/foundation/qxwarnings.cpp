#include "qx/foundation/qxwarnings.h"

#include <algorithm>
#include <utility>

namespace QXCommon_850 {

namespace {

// Appends the status unless an equal one is in the list already.
void AppendOnce(std::vector<QXStatus>& list, const QXStatus& status) {
  if (std::find(list.begin(), list.end(), status) == list.end()) list.push_back(status);
}

}  // namespace

QXWarnings::QXParameterValue::QXParameterValue() : type(0), intValue(0), doubleValue(0.0) {}

QXWarnings::QXParameterValue::QXParameterValue(const QXParameterValue& other)
    : type(other.type),
      intValue(other.intValue),
      doubleValue(other.doubleValue),
      stringValue(other.stringValue) {}

QXWarnings::QXParameterValue& QXWarnings::QXParameterValue::operator=(
    const QXParameterValue& other) {
  if (this != &other) {
    type = other.type;
    intValue = other.intValue;
    doubleValue = other.doubleValue;
    stringValue = other.stringValue;
  }
  return *this;
}

void QXWarnings::QXParameterValue::SetValue(int value) {
  type = 0;
  intValue = value;
}

void QXWarnings::QXParameterValue::SetValue(double value) {
  type = 1;
  doubleValue = value;
}

void QXWarnings::QXParameterValue::SetValue(std::string value) {
  type = 2;
  stringValue = std::move(value);
}

int QXWarnings::QXParameterValue::GetType() const {
  return type;
}
int QXWarnings::QXParameterValue::ToInteger() const {
  return intValue;
}
double QXWarnings::QXParameterValue::ToDouble() const {
  return doubleValue;
}
std::string QXWarnings::QXParameterValue::ToString() const {
  return stringValue;
}

QXWarnings::QXWarnings() = default;
QXWarnings::~QXWarnings() = default;

void QXWarnings::AddWarning(const QXStatus& status, Destination destination) {
  if (!status.IsWarning()) return;
  if (destination == First) {
    AppendOnce(firstList, status);
  } else if (destination == Second) {
    AppendOnce(secondList, status);
  } else {
    AppendOnce(firstList, status);
    AppendOnce(secondList, status);
  }
}

void QXWarnings::AddWarnings(const std::vector<QXStatus>& statuses) {
  for (const QXStatus& status : statuses)
    AddWarning(status, First);
}

void QXWarnings::AddWarnings(QXWarnings other) {
  for (const QXStatus& status : other.firstList)
    AppendOnce(firstList, status);
  for (const QXStatus& status : other.secondList)
    AppendOnce(secondList, status);
  // A code this collection knows keeps its own list; the other's is dropped.
  for (const auto& entry : other.parameterIndex) {
    if (parameterIndex.count(entry.first) != 0) continue;
    parameterLists.push_back(other.parameterLists[entry.second]);
    parameterIndex[entry.first] = static_cast<int>(parameterLists.size()) - 1;
  }
}

const std::vector<QXStatus>& QXWarnings::GetWarnings(bool first) const {
  return first ? firstList : secondList;
}

void QXWarnings::ClearWarnings() {
  firstList.clear();
}

void QXWarnings::AddParameterValue(long code, const QXParameterValue& value) {
  const auto found = parameterIndex.find(code);
  if (found != parameterIndex.end()) {
    parameterLists[found->second].push_back(value);
    return;
  }
  parameterLists.push_back(std::vector<QXParameterValue>(1, value));
  parameterIndex[code] = static_cast<int>(parameterLists.size()) - 1;
}

bool QXWarnings::AddParameter(const QXStatus& status, int value) {
  QXParameterValue parameter;
  parameter.SetValue(value);
  AddParameterValue(status.GetErrorCode(), parameter);
  return true;
}

bool QXWarnings::AddParameter(const QXStatus& status, double value) {
  QXParameterValue parameter;
  parameter.SetValue(value);
  AddParameterValue(status.GetErrorCode(), parameter);
  return true;
}

bool QXWarnings::AddParameter(const QXStatus& status, std::string value) {
  QXParameterValue parameter;
  parameter.SetValue(std::move(value));
  AddParameterValue(status.GetErrorCode(), parameter);
  return true;
}

bool QXWarnings::HasParameter(const QXStatus& status) const {
  const auto found = parameterIndex.find(status.GetErrorCode());
  return found != parameterIndex.end() && !parameterLists[found->second].empty();
}

const std::vector<QXWarnings::QXParameterValue>& QXWarnings::GetParameters(const QXStatus& status) {
  const auto found = parameterIndex.find(status.GetErrorCode());
  if (found == parameterIndex.end()) {
    parameterResult.clear();
  } else {
    parameterResult = parameterLists[found->second];
  }
  return parameterResult;
}

}  // namespace QXCommon_850
