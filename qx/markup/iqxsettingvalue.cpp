#include "qx/markup/iqxsettingvalue.h"

namespace QXXML_850 {

IQXSettingValue::~IQXSettingValue() = default;

int IQXSettingValue::GetSubType() const {
  return 0;
}

}  // namespace QXXML_850
