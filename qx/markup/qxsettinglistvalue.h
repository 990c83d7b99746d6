#ifndef QX_MARKUP_QXSETTINGLISTVALUE_H
#define QX_MARKUP_QXSETTINGLISTVALUE_H

#include <string>

#include "qx/foundation/qxexport.h"
#include "qx/markup/iqxsettingvalue.h"

namespace QXXML_850 {

class QXSettings;

// A setting whose value is a nested list of settings, owned and deep-copied.
// Read as a scalar it answers fixed constants, whatever the list holds.
class QXCOMMON_API QXSettingListValue : public IQXSettingValue {
 public:
  QXSettingListValue();  // an empty list
  explicit QXSettingListValue(const QXSettings& list);
  QXSettingListValue(const QXSettingListValue& other);
  QXSettingListValue& operator=(const QXSettingListValue& other);
  ~QXSettingListValue() override;

  // Never null; the value keeps the ownership.
  QXSettings* GetListValue() const;

  IQXSettingValue* Clone() const override;
  // Nested lists only, by QXSettings' comparison (the values, not the names).
  bool operator==(const IQXSettingValue& other) const override;
  bool operator<(const IQXSettingValue& other) const override;
  int GetInt() const override;             // -2147483648
  long long GetLongLong() const override;  // -9223372036854775808
  double GetDouble() const override;       // 2.2250738585072014e-308, positive
  std::string GetString() const override;  // ""
  bool GetBool() const override;           // true
  int GetType() const override;            // 3
  int GetSubType() const override;
  void Display() const override;

 private:
  QXSettings* list;
};

}  // namespace QXXML_850

#endif  // QX_MARKUP_QXSETTINGLISTVALUE_H
