#ifndef QX_MARKUP_QXSTRVALUE_H
#define QX_MARKUP_QXSTRVALUE_H

#include <string>

#include "qx/foundation/qxexport.h"
#include "qx/markup/iqxsettingvalue.h"

namespace QXXML_850 {

// A text setting. Read as a number it is parsed leniently (a number's
// leading part counts, anything else is 0); read as a flag only "true" is
// true.
class QXCOMMON_API QXStrValue : public IQXSettingValue {
 public:
  QXStrValue();
  explicit QXStrValue(const std::string& text);
  QXStrValue(const QXStrValue& other);
  QXStrValue& operator=(const QXStrValue& other);
  ~QXStrValue() override;

  void SetString(const std::string& text);
  int GetLength() const;

  IQXSettingValue* Clone() const override;
  // Texts only, by std::string's equality and order.
  bool operator==(const IQXSettingValue& other) const override;
  bool operator<(const IQXSettingValue& other) const override;
  int GetInt() const override;             // strtol in base 10, cut to int
  long long GetLongLong() const override;  // strtoll in base 10
  // The sentinel for an empty text; otherwise the first "." becomes
  // std::cout's decimal point and the text is read in the global locale.
  double GetDouble() const override;
  std::string GetString() const override;
  bool GetBool() const override;  // exactly "true"
  int GetType() const override;   // 1
  int GetSubType() const override;
  void Display() const override;

 private:
  std::string text;
};

}  // namespace QXXML_850

#endif  // QX_MARKUP_QXSTRVALUE_H
