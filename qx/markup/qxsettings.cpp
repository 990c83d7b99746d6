#include "qx/markup/qxsettings.h"

#include <memory>
#include <sstream>

#include "qx/foundation/internal/truncate.h"
#include "qx/markup/qxsettinglistvalue.h"
#include "qx/markup/qxvecvalue.h"

namespace QXXML_850 {

namespace {

// The vector inside a value, recognised by a successful cast or by the
// subtype number (either suffices: the number also serves where a caller's
// copy of the type information differs from the library's); null if it
// holds another element type.
template <typename T>
const std::vector<T>* VectorOf(const IQXSettingValue* value, int subType) {
  if (const auto* vector = dynamic_cast<const QXVecValue<T>*>(value)) {
    return &vector->GetVecValue();
  }
  if (value->GetType() == 2 && value->GetSubType() == subType) {
    return &static_cast<const QXVecValue<T>*>(value)->GetVecValue();
  }
  return nullptr;
}

// The value of the oldest setting of a name; null if there is none.
const IQXSettingValue* ValueOf(const QXSettings& list, const std::string& name) {
  const QXSetting* setting = list.FindSetting(name);
  return setting == nullptr ? nullptr : setting->GetValue();
}

// The StrVec2 conversions: each text converted and appended to `out`; an
// empty input or a text that fails empties `out` and gives false.
template <typename T, typename Convert>
bool AppendConverted(const std::vector<std::string>& in, std::vector<T>& out, Convert convert) {
  if (in.empty()) {
    out.clear();
    return false;
  }
  for (const std::string& text : in) {
    T x = 0;
    if (!convert(text, &x)) {
      out.clear();
      return false;
    }
    out.push_back(x);
  }
  return true;
}

template <typename T>
std::string StreamText(const T& number) {
  std::ostringstream out;
  out << number;
  return out.str();
}

}  // namespace

QXSettings::QXSettings() = default;

QXSettings::QXSettings(const QXSettings& other) : index(other.index) {
  settings.reserve(other.settings.size());
  try {
    for (const QXSetting* setting : other.settings) {
      std::unique_ptr<QXSetting> copy(setting->Clone());
      settings.push_back(copy.get());
      copy.release();
    }
  } catch (...) {
    for (QXSetting* setting : settings)
      delete setting;
    throw;
  }
}

QXSettings& QXSettings::operator=(const QXSettings& other) {
  if (this == &other) return *this;
  QXSettings copy(other);
  Swap(copy);  // the old settings leave with `copy`
  return *this;
}

QXSettings::~QXSettings() {
  Clear();
}

void QXSettings::Swap(QXSettings& other) noexcept {
  settings.swap(other.settings);
  index.swap(other.index);
}

QXSettings* QXSettings::Clone() const {
  return new QXSettings(*this);
}

void QXSettings::Clear() {
  for (QXSetting* setting : settings)
    delete setting;
  settings.clear();
  index.clear();
}

unsigned long QXSettings::Size() const {
  return settings.size();
}

QXSetting* QXSettings::GetSettingAt(unsigned long i) const {
  return i < settings.size() ? settings[i] : nullptr;
}

QXSetting* QXSettings::FindSetting(const std::string& name) const {
  const auto found = index.find(name);  // equal names keep their insertion order
  return found == index.end() ? nullptr : settings[found->second];
}

std::vector<QXSetting*> QXSettings::GetSettingByName(const std::string& name) const {
  std::vector<QXSetting*> found;
  const auto range = index.equal_range(name);
  for (auto entry = range.first; entry != range.second; ++entry) {
    found.push_back(settings[entry->second]);
  }
  return found;
}

void QXSettings::GetSettingNames(std::vector<std::string>& names) const {
  for (const QXSetting* setting : settings)
    names.push_back(setting->GetName());
}

void QXSettings::Insert(QXSetting* setting, std::string type) {
  std::unique_ptr<QXSetting> owned(setting);
  owned->SetType(std::move(type));
  settings.push_back(owned.get());
  try {
    index.emplace(owned->GetName(), settings.size() - 1);
  } catch (...) {
    settings.pop_back();  // keep every position indexed exactly once
    throw;
  }
  owned.release();
}

void QXSettings::Delete(Index::iterator entry, unsigned long position) {
  delete settings[position];
  settings.erase(settings.begin() + static_cast<long>(position));
  index.erase(entry);
  for (auto& other : index) {
    if (other.second > position) --other.second;
  }
}

void QXSettings::AddNewSetting(const std::string& name, double value, const std::string& type) {
  Insert(new QXSetting(name, value), type);
}
void QXSettings::AddNewSetting(const std::string& name, const std::string& value,
                               const std::string& type) {
  Insert(new QXSetting(name, value), type);
}
void QXSettings::AddNewSetting(const std::string& name, const QXSettings& value,
                               const std::string& type) {
  Insert(new QXSetting(name, value), type);
}

void QXSettings::AddNewSetting(const std::string& name, const IQXSettingValue& value,
                               const std::string& type) {
  Insert(new QXSetting(name, value), type);
}

bool QXSettings::AddSetting(const std::string& name, const std::string& value, bool replace) {
  if (replace) RemoveSetting(name, true);
  Insert(new QXSetting(name, value), std::string());
  return true;
}

bool QXSettings::AddSetting(const std::string& name, double value, bool replace) {
  if (replace) RemoveSetting(name, true);
  Insert(new QXSetting(name, value), std::string());
  return true;
}

bool QXSettings::RemoveSetting(const std::string& name, bool all) {
  auto entry = index.find(name);
  if (entry == index.end()) return false;
  do {
    Delete(entry, entry->second);
    entry = index.find(name);
  } while (all && entry != index.end());
  return true;
}

void QXSettings::Display() const {
  for (const QXSetting* setting : settings)
    setting->Display();
}

int QXSettings::Compare(const QXSettings& other) const {
  if (this == &other) return 0;
  for (size_t i = 0;; ++i) {
    if (i == settings.size()) return other.settings.size() > i ? -1 : 0;
    if (i == other.settings.size()) return 1;
    if (*settings[i] < *other.settings[i]) return -1;
    if (*other.settings[i] < *settings[i]) return 1;
  }
}

bool QXSettings::operator<(const QXSettings& other) const {
  return Compare(other) < 0;
}
bool QXSettings::operator==(const QXSettings& other) const {
  return Compare(other) == 0;
}

// Each scalar read asks the oldest setting of the name for its own conversion.
bool QXSettings::GetSettingValByName(const std::string& name, int& out) const {
  const IQXSettingValue* value = ValueOf(*this, name);
  if (value != nullptr) out = value->GetInt();
  return value != nullptr;
}
bool QXSettings::GetSettingValByName(const std::string& name, long long& out) const {
  const IQXSettingValue* value = ValueOf(*this, name);
  if (value != nullptr) out = value->GetLongLong();
  return value != nullptr;
}
bool QXSettings::GetSettingValByName(const std::string& name, double& out) const {
  const IQXSettingValue* value = ValueOf(*this, name);
  if (value != nullptr) out = value->GetDouble();
  return value != nullptr;
}
bool QXSettings::GetSettingValByName(const std::string& name, bool& out) const {
  const IQXSettingValue* value = ValueOf(*this, name);
  if (value != nullptr) out = value->GetBool();
  return value != nullptr;
}
bool QXSettings::GetSettingValByName(const std::string& name, std::string& out) const {
  const IQXSettingValue* value = ValueOf(*this, name);
  if (value != nullptr) out = value->GetString();
  return value != nullptr;
}

bool QXSettings::GetSettingValByName(const std::string& name, QXSettings& out) const {
  const IQXSettingValue* value = ValueOf(*this, name);
  if (value == nullptr || value->GetType() != 3) return false;
  const auto* nested = dynamic_cast<const QXSettingListValue*>(value);
  if (nested == nullptr) return false;
  out = *nested->GetListValue();
  return true;
}

bool QXSettings::GetSettingValByName(const std::string& name, std::vector<QXSettings>& out) const {
  const IQXSettingValue* value = ValueOf(*this, name);
  return value != nullptr && MapVecValue(value, out);
}
bool QXSettings::GetSettingValByName(const std::string& name, std::vector<std::string>& out) const {
  const IQXSettingValue* value = ValueOf(*this, name);
  return value != nullptr && MapVecValue(value, out);
}
bool QXSettings::GetSettingValByName(const std::string& name, std::vector<double>& out) const {
  const IQXSettingValue* value = ValueOf(*this, name);
  return value != nullptr && MapVecValue(value, out);
}
bool QXSettings::GetSettingValByName(const std::string& name, std::vector<int>& out) const {
  const IQXSettingValue* value = ValueOf(*this, name);
  return value != nullptr && MapVecValue(value, out);
}
bool QXSettings::GetSettingValByName(const std::string& name,
                                     std::vector<std::pair<std::string, std::string>>& out) const {
  const IQXSettingValue* value = ValueOf(*this, name);
  return value != nullptr && MapVecValue(value, out);
}

bool QXSettings::MapVecValue(const IQXSettingValue* value, std::vector<QXSettings>& out) const {
  if (value == nullptr) return false;
  if (const auto* lists = VectorOf<QXSettings>(value, 7)) {
    out = *lists;
    return true;
  }
  return false;
}

bool QXSettings::MapVecValue(const IQXSettingValue* value, std::vector<std::string>& out) const {
  if (value == nullptr) return false;
  if (const auto* texts = VectorOf<std::string>(value, 3)) {
    out = *texts;
  } else if (const auto* doubles = VectorOf<double>(value, 2)) {
    for (double x : *doubles)
      out.push_back(StreamText(x));
  } else if (const auto* ints = VectorOf<int>(value, 1)) {
    for (int x : *ints)
      out.push_back(StreamText(x));
  }
  return true;  // also for a source that doesn't fit
}

bool QXSettings::MapVecValue(const IQXSettingValue* value, std::vector<double>& out) const {
  if (value == nullptr) return false;
  if (const auto* doubles = VectorOf<double>(value, 2)) {
    out = *doubles;
  } else if (const auto* ints = VectorOf<int>(value, 1)) {
    for (int x : *ints)
      out.push_back(x);
  } else if (const auto* texts = VectorOf<std::string>(value, 3)) {
    return StrVec2DoubleVec(*texts, out);
  }
  return true;  // also for a source that doesn't fit
}

bool QXSettings::MapVecValue(const IQXSettingValue* value, std::vector<int>& out) const {
  if (value == nullptr) return false;
  if (const auto* ints = VectorOf<int>(value, 1)) {
    out = *ints;
  } else if (const auto* doubles = VectorOf<double>(value, 2)) {
    for (double x : *doubles)
      out.push_back(QXCommon_850::internal::TruncateToward0<int>(x));
  } else if (const auto* texts = VectorOf<std::string>(value, 3)) {
    return StrVec2IntVec(*texts, out);
  }
  return true;  // also for a source that doesn't fit
}

bool QXSettings::MapVecValue(const IQXSettingValue* value,
                             std::vector<std::pair<std::string, std::string>>& out) const {
  using TextPair = std::pair<std::string, std::string>;
  if (value == nullptr) return false;
  if (const auto* pairs = VectorOf<TextPair>(value, 6)) {
    out = *pairs;
  } else if (const auto* doubles = VectorOf<std::pair<std::string, double>>(value, 5)) {
    for (const auto& p : *doubles)
      out.emplace_back(p.first, StreamText(p.second));
  } else if (const auto* ints = VectorOf<std::pair<std::string, int>>(value, 4)) {
    for (const auto& p : *ints)
      out.emplace_back(p.first, StreamText(p.second));
  } else {
    return false;
  }
  return true;
}

bool QXSettings::Str2Double(const std::string& text, double* out) const {
  if (out == nullptr) return false;
  std::istringstream in(text);
  in >> *out;
  return !in.fail() && !in.bad();
}

bool QXSettings::Str2Int(const std::string& text, int* out) const {
  if (out == nullptr) return false;
  std::istringstream in(text);
  in >> *out;
  return !in.fail() && !in.bad();
}

bool QXSettings::StrVec2DoubleVec(const std::vector<std::string>& in,
                                  std::vector<double>& out) const {
  return AppendConverted(
      in, out, [this](const std::string& text, double* x) { return Str2Double(text, x); });
}

bool QXSettings::StrVec2IntVec(const std::vector<std::string>& in, std::vector<int>& out) const {
  return AppendConverted(in, out,
                         [this](const std::string& text, int* x) { return Str2Int(text, x); });
}

}  // namespace QXXML_850
