#include "qx/dictionary/iqxvariable.h"

namespace QXXML_850 {

IQXVariable::~IQXVariable() = default;

}  // namespace QXXML_850
