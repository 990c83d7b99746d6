#include "qx/foundation/qxvaluerecord.h"

namespace QXCommon_850 {

ValueRecord::ValueRecord(int capacity) {
  if (capacity > 0) values.reserve(static_cast<size_t>(capacity));
}

ValueRecord::~ValueRecord() = default;

bool ValueRecord::operator==(const ValueRecord& other) const {
  if (this == &other) return true;
  if (Size() != other.Size()) return false;
  for (auto a = names.begin(), b = other.names.begin(); a != names.end(); ++a, ++b) {
    if (Get(a->second) != other.Get(b->second)) return false;
  }
  return true;
}

int ValueRecord::Add(const std::string& name, const Value& value) {
  const auto found = names.find(name);
  if (found != names.end()) {
    values[static_cast<size_t>(found->second)] = value;
    return found->second;
  }
  const int position = static_cast<int>(values.size());
  values.push_back(value);
  try {
    names.emplace(name, position);
  } catch (...) {
    values.pop_back();  // keep names and values in step
    throw;
  }
  return position;
}

bool ValueRecord::AddAll(const ValueRecord& other) {
  for (const auto& entry : other.names) {
    Add(entry.first, other.values[static_cast<size_t>(entry.second)]);
  }
  return true;
}

bool ValueRecord::Set(const std::string& name, const Value& value, bool checkType) {
  const auto found = names.find(name);
  if (found == names.end()) return false;
  Value& present = values[static_cast<size_t>(found->second)];
  if (checkType && !present.IsNull() && present.GetType() != value.GetType()) return false;
  present = value;
  return true;
}

void ValueRecord::Remove(const std::string& name) {
  const auto found = names.find(name);
  if (found == names.end()) return;
  const int position = found->second;
  names.erase(found);
  values.erase(values.begin() + position);
  for (auto& entry : names) {
    if (entry.second > position) --entry.second;
  }
}

void ValueRecord::Clear() {
  values.clear();
  names.clear();
}

void ValueRecord::ClearValues() {
  for (Value& value : values)
    value.ClearValue();
}

void ValueRecord::SetMissingValue(int position) {
  values[static_cast<size_t>(position)].Clear();
}

Value ValueRecord::Get(const std::string& name) const {
  const auto found = names.find(name);
  if (found == names.end()) return Value();
  return values[static_cast<size_t>(found->second)];
}

Value ValueRecord::Get(int position) const {
  if (position < 0 || static_cast<size_t>(position) >= values.size()) return Value();
  return values[static_cast<size_t>(position)];
}

int ValueRecord::IndexOf(const std::string& name) const {
  const auto found = names.find(name);
  return found == names.end() ? -1 : found->second;
}

bool ValueRecord::Contains(const std::string& name) {
  return IndexOf(name) != -1;
}

int ValueRecord::Size() const {
  return static_cast<int>(names.size());
}

std::vector<std::string> ValueRecord::Names(bool inPositionOrder) const {
  std::vector<std::string> result;
  if (inPositionOrder) {
    result.resize(names.size());
    for (const auto& entry : names)
      result[static_cast<size_t>(entry.second)] = entry.first;
  } else {
    result.reserve(names.size());
    for (const auto& entry : names)
      result.push_back(entry.first);
  }
  return result;
}

std::string ValueRecord::GetName(int position) const {
  for (const auto& entry : names) {
    if (entry.second == position) return entry.first;
  }
  return std::string();
}

bool ValueRecord::SetValue(int position, bool value) {
  values[static_cast<size_t>(position)] = value;
  return true;
}
bool ValueRecord::SetValue(int position, int value) {
  values[static_cast<size_t>(position)] = value;
  return true;
}
bool ValueRecord::SetValue(int position, long long value) {
  values[static_cast<size_t>(position)] = value;
  return true;
}
bool ValueRecord::SetValue(int position, double value) {
  values[static_cast<size_t>(position)] = value;
  return true;
}
bool ValueRecord::SetValue(int position, const char* value) {
  values[static_cast<size_t>(position)] = value;
  return true;
}
bool ValueRecord::SetValue(int position, const std::string& value) {
  values[static_cast<size_t>(position)] = value;
  return true;
}

void* ValueRecord::GetRecord() const {
  return nullptr;
}

const Value& ValueRecord::operator[](int position) const {
  return values[static_cast<size_t>(position)];
}
Value& ValueRecord::operator[](int position) {
  return values[static_cast<size_t>(position)];
}

Value& ValueRecord::operator[](const std::string& name) {
  const int known = IndexOf(name);
  if (known != -1) return values[static_cast<size_t>(known)];
  return values[static_cast<size_t>(Add(name, Value()))];
}

std::ostream& ValueRecord::Display(std::ostream& os) const {
  os << "[";
  bool first = true;
  for (const auto& entry : names) {
    if (!first) os << ",";
    first = false;
    os << entry.first << ":";
    values[static_cast<size_t>(entry.second)].Display(os);
  }
  os << "]";
  return os;
}

std::ostream& operator<<(std::ostream& os, const ValueRecord& record) {
  return record.Display(os);
}

}  // namespace QXCommon_850
