#ifndef QX_MARKUP_QXSETTINGS_H
#define QX_MARKUP_QXSETTINGS_H

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "qx/foundation/qxexport.h"
#include "qx/markup/iqxsettingvalue.h"
#include "qx/markup/qxsetting.h"

namespace QXXML_850 {

// A component's configuration: named settings in insertion order, several
// of one name allowed, with typed lookups that convert between element
// types where they can. The list owns its settings and copies deeply. It has
// no persisted form; it is built in memory by the caller.
class QXCOMMON_API QXSettings {
 public:
  QXSettings();
  QXSettings(const QXSettings& other);
  // A failed copy leaves this list as it was.
  QXSettings& operator=(const QXSettings& other);
  virtual ~QXSettings();

  QXSettings* Clone() const;
  void Clear();
  unsigned long Size() const;

  // Null if i isn't below Size().
  QXSetting* GetSettingAt(unsigned long i) const;
  // The oldest setting of that name, or null.
  QXSetting* FindSetting(const std::string& name) const;
  // All settings of that name, oldest first.
  std::vector<QXSetting*> GetSettingByName(const std::string& name) const;
  // Appends every name in insertion order, repeats included; `names` isn't
  // cleared first.
  void GetSettingNames(std::vector<std::string>& names) const;

  // Always a new entry at the end, also for a known name.
  void AddNewSetting(const std::string& name, double value, const std::string& type = "");
  void AddNewSetting(const std::string& name, const std::string& value,
                     const std::string& type = "");
  void AddNewSetting(const std::string& name, const QXSettings& value,
                     const std::string& type = "");
  // A copy of any value: the way in for vectors.
  void AddNewSetting(const std::string& name, const IQXSettingValue& value,
                     const std::string& type = "");
  // With `replace`, every setting of that name goes first; then a new entry
  // with an empty type at the end. True.
  bool AddSetting(const std::string& name, const std::string& value, bool replace);
  bool AddSetting(const std::string& name, double value, bool replace);
  // The oldest setting of that name, or with `all` every one; positions
  // above close up. False for an unknown name.
  bool RemoveSetting(const std::string& name, bool all);

  void Display() const;

  // Position by position by the values' own order (names don't count): -1,
  // 0 or 1, a shorter list first. Values of different classes are never
  // ordered, so they count as equal here.
  int Compare(const QXSettings& other) const;
  bool operator<(const QXSettings& other) const;
  bool operator==(const QXSettings& other) const;

  // Typed reads of the oldest setting of a name. An unknown name (or a
  // setting without a value) gives false and leaves `out` alone. Scalars
  // use the value's own conversion and are always true; a nested list needs
  // a list value; vectors go through MapVecValue.
  bool GetSettingValByName(const std::string& name, int& out) const;
  bool GetSettingValByName(const std::string& name, long long& out) const;
  bool GetSettingValByName(const std::string& name, double& out) const;
  bool GetSettingValByName(const std::string& name, bool& out) const;
  bool GetSettingValByName(const std::string& name, std::string& out) const;
  bool GetSettingValByName(const std::string& name, QXSettings& out) const;
  bool GetSettingValByName(const std::string& name, std::vector<QXSettings>& out) const;
  bool GetSettingValByName(const std::string& name, std::vector<std::string>& out) const;
  bool GetSettingValByName(const std::string& name, std::vector<double>& out) const;
  bool GetSettingValByName(const std::string& name, std::vector<int>& out) const;
  bool GetSettingValByName(const std::string& name,
                           std::vector<std::pair<std::string, std::string>>& out) const;

  // A vector value into `out`. The same element type is copied over `out`;
  // a convertible one is appended element by element (numbers as text from
  // a default stream, doubles truncated to int, texts parsed strictly). A
  // source that doesn't fit leaves `out` alone and answers true for the
  // string, double and int forms, but false for the other two: a caller who
  // must know looks at `out`. False for a null value.
  bool MapVecValue(const IQXSettingValue* value, std::vector<QXSettings>& out) const;
  bool MapVecValue(const IQXSettingValue* value, std::vector<std::string>& out) const;
  bool MapVecValue(const IQXSettingValue* value, std::vector<double>& out) const;
  bool MapVecValue(const IQXSettingValue* value, std::vector<int>& out) const;
  bool MapVecValue(const IQXSettingValue* value,
                   std::vector<std::pair<std::string, std::string>>& out) const;

  // Reads a number from the text's start in the global locale; false if
  // nothing could be read. Trailing text is no failure.
  bool Str2Double(const std::string& text, double* out) const;
  bool Str2Int(const std::string& text, int* out) const;
  // Str2Double / Str2Int for each text, appended to `out`. An empty input
  // or any failure empties `out` and answers false.
  bool StrVec2DoubleVec(const std::vector<std::string>& in, std::vector<double>& out) const;
  bool StrVec2IntVec(const std::vector<std::string>& in, std::vector<int>& out) const;

 private:
  using Index = std::multimap<std::string, unsigned long>;

  void Insert(QXSetting* setting, std::string type);
  void Delete(Index::iterator entry, unsigned long position);
  void Swap(QXSettings& other) noexcept;

  std::vector<QXSetting*> settings;
  Index index;
};

}  // namespace QXXML_850

#endif  // QX_MARKUP_QXSETTINGS_H
