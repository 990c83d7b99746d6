#include "qx/random/qxrandom.h"

namespace QXCommon_850 {

QXRandom::~QXRandom() {}

}  // namespace QXCommon_850
