#ifndef QX_MARKUP_QXSETTING_H
#define QX_MARKUP_QXSETTING_H

#include <string>

#include "qx/foundation/qxexport.h"
#include "qx/markup/iqxsettingvalue.h"

namespace QXXML_850 {

class QXSettings;

// One named entry of a component's settings: a name, a free type text and
// an owned value, which changes class when a value of another kind is set.
class QXCOMMON_API QXSetting {
 public:
  QXSetting(const std::string& name, const std::string& value);  // a text
  QXSetting(const std::string& name, double value);              // a number
  QXSetting(const std::string& name, const QXSettings& value);   // a copy of a list
  // A copy of any value, such as a vector.
  QXSetting(const std::string& name, const IQXSettingValue& value);
  QXSetting(const QXSetting& other);
  QXSetting& operator=(const QXSetting& other);
  ~QXSetting();

  QXSetting* Clone() const;

  // Replace the value by a new one of the class that fits.
  void SetValue(const std::string& value);
  void SetValue(double value);
  void SetValue(const QXSettings& value);
  void SetValue(const IQXSettingValue& value);  // a copy
  void SetName(const std::string& name);
  void SetType(std::string type);

  const std::string& GetName() const;
  std::string GetType() const;
  // The value stays owned by the setting.
  IQXSettingValue* GetValue() const;
  bool IsList() const;    // the value is a vector
  bool HasChild() const;  // the value is a nested list

  // Name, type and value all equal.
  bool operator==(const QXSetting& other) const;
  // The values alone decide.
  bool operator<(const QXSetting& other) const;
  void Display() const;

 private:
  void Replace(IQXSettingValue* fresh);

  std::string name;
  std::string type;
  IQXSettingValue* value;
};

}  // namespace QXXML_850

#endif  // QX_MARKUP_QXSETTING_H
