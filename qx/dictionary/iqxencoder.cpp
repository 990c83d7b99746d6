#include "qx/dictionary/iqxencoder.h"

namespace QXXML_850 {

IQXEncoder::~IQXEncoder() = default;

}  // namespace QXXML_850
