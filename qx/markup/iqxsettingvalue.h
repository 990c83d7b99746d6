#ifndef QX_MARKUP_IQXSETTINGVALUE_H
#define QX_MARKUP_IQXSETTINGVALUE_H

#include <string>

#include "qx/foundation/qxexport.h"

namespace QXXML_850 {

// The value of one setting of a component's configuration: a number, a
// text, a vector or a nested list of settings. Every value answers every
// conversion in its own way and never throws; values of different classes
// are never equal and never ordered.
class QXCOMMON_API IQXSettingValue {
 public:
  virtual ~IQXSettingValue();

  // A new heap copy, owned by the caller.
  virtual IQXSettingValue* Clone() const = 0;
  virtual bool operator==(const IQXSettingValue& other) const = 0;
  virtual bool operator<(const IQXSettingValue& other) const = 0;
  virtual int GetInt() const = 0;
  virtual double GetDouble() const = 0;
  virtual std::string GetString() const = 0;
  virtual bool GetBool() const = 0;
  virtual long long GetLongLong() const = 0;
  // 0 number, 1 text, 2 vector, 3 nested list of settings.
  virtual int GetType() const = 0;
  // For a vector, its element: 1 int, 2 double, 3 string, 4 (string, int),
  // 5 (string, double), 6 (string, string), 7 settings; 0 for the others.
  virtual int GetSubType() const;
  // Prints through the display functions.
  virtual void Display() const = 0;
};

}  // namespace QXXML_850

#endif  // QX_MARKUP_IQXSETTINGVALUE_H
