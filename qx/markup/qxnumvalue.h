#ifndef QX_MARKUP_QXNUMVALUE_H
#define QX_MARKUP_QXNUMVALUE_H

#include <string>

#include "qx/foundation/qxexport.h"
#include "qx/markup/iqxsettingvalue.h"

namespace QXXML_850 {

// A numeric setting. It remembers whether it was set as an int, a double or
// a long long, and keeps all three views filled so that a component can read
// it in any form. A default-constructed one is "Undefined".
class QXCOMMON_API QXNumValue : public IQXSettingValue {
 public:
  // The literal 2.22045e-16: the relative tolerance of operator== on doubles.
  static const double fEpsilon;
  // The missing-value sentinel, -1.7976931348623157e308, this unit's own copy.
  static double gInitalValue;
  static double gInfinity;
  // A default-constructed value.
  static QXNumValue SYSINI;

  // int and long long views -2147483648, the double view gInitalValue, and
  // the type of a double.
  QXNumValue();
  explicit QXNumValue(int value);
  explicit QXNumValue(double value);
  explicit QXNumValue(long long value);
  QXNumValue(const QXNumValue& other);
  QXNumValue& operator=(const QXNumValue& other);
  ~QXNumValue() override;

  // Each fills all three views and records the type (0 int, 1 double, 2 long
  // long). A double truncates toward zero into the integer views,
  // saturating beyond their range; a long long keeps its low 32 bits as int.
  void SetNumValue(int value);
  void SetNumValue(double value);
  void SetNumValue(long long value);
  void GetNumValue(int& value) const;
  void GetNumValue(double& value) const;
  void GetNumValue(long long& value) const;
  int GetNumValueType() const;

  IQXSettingValue* Clone() const override;
  // Numbers only. Of two types, only the int views count, so 1.9 == 1; two
  // doubles are equal when max(|a|, |b|) * fEpsilon > |a - b|.
  bool operator==(const IQXSettingValue& other) const override;
  // Numbers only; of two types the int views, otherwise the own view.
  bool operator<(const IQXSettingValue& other) const override;
  int GetInt() const override;
  double GetDouble() const override;
  // "Undefined" at or below gInitalValue, else the typed view as a default
  // stream writes it.
  std::string GetString() const override;
  bool GetBool() const override;  // the typed view > 0
  long long GetLongLong() const override;
  int GetType() const override;     // 0
  int GetSubType() const override;  // 0
  void Display() const override;

 private:
  int intValue;
  double doubleValue;
  long long longValue;
  int numType;
};

}  // namespace QXXML_850

#endif  // QX_MARKUP_QXNUMVALUE_H
