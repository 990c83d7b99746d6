#ifndef QX_MARKUP_QXVECVALUE_H
#define QX_MARKUP_QXVECVALUE_H

#include <string>
#include <utility>
#include <vector>

#include "qx/foundation/qxexport.h"
#include "qx/markup/iqxsettingvalue.h"
#include "qx/markup/qxsettings.h"

namespace QXXML_850 {

// A setting whose value is a vector. The library builds it for seven element
// types, each with its own subtype number: int (1), double (2), std::string
// (3), std::pair<std::string, int> (4), std::pair<std::string, double> (5),
// std::pair<std::string, std::string> (6) and QXSettings (7). QXSettings
// reads the vector back, converting between element types.
//
// Read as a scalar, a vector behaves like a collection: GetBool says whether
// it has elements, the numeric conversions give the element count, and
// GetString joins the elements' texts with ",".
template <typename T>
class QXCOMMON_API QXVecValue : public IQXSettingValue {
 public:
  QXVecValue();
  explicit QXVecValue(const std::vector<T>& values);
  QXVecValue(const QXVecValue& other);
  QXVecValue& operator=(const QXVecValue& other);
  ~QXVecValue() override;

  const std::vector<T>& GetVecValue() const;
  void SetVecValue(const std::vector<T>& values);
  void Add(const T& element);
  int Size() const;

  IQXSettingValue* Clone() const override;
  // Vectors of the same element type only: equal sizes and equal elements,
  // doubles within QXNumValue's tolerance.
  bool operator==(const IQXSettingValue& other) const override;
  // Vectors of the same element type only, lexicographically.
  bool operator<(const IQXSettingValue& other) const override;
  int GetInt() const override;
  double GetDouble() const override;
  std::string GetString() const override;
  bool GetBool() const override;
  long long GetLongLong() const override;
  int GetType() const override;  // 2
  int GetSubType() const override;
  void Display() const override;

 private:
  std::vector<T> values;
};

extern template class QXVecValue<int>;
extern template class QXVecValue<double>;
extern template class QXVecValue<std::string>;
extern template class QXVecValue<std::pair<std::string, int>>;
extern template class QXVecValue<std::pair<std::string, double>>;
extern template class QXVecValue<std::pair<std::string, std::string>>;
extern template class QXVecValue<QXSettings>;

}  // namespace QXXML_850

#endif  // QX_MARKUP_QXVECVALUE_H
