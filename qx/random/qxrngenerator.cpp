#include "qx/random/qxrngenerator.h"

namespace QXMath_850 {

QXRNGenerator::~QXRNGenerator() {}

}  // namespace QXMath_850
