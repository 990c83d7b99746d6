#include "qx/foundation/progressreport.h"

namespace QXCommon_850 {

// Out of line so that the type data of both interfaces live in the library.
ProgressReport::~ProgressReport() = default;
ProgressReportVect::~ProgressReportVect() = default;

}  // namespace QXCommon_850
