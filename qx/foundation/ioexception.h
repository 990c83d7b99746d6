#ifndef QX_FOUNDATION_IOEXCEPTION_H
#define QX_FOUNDATION_IOEXCEPTION_H

#include "qx/foundation/qxexport.h"

namespace QXXML_850 {

// Thrown as a pointer to a new object by the readers of persisted objects when
// a step of reading fails (after a line on std::cerr). The catcher owns the
// object and deletes it:  catch (QXXML_850::IOException* e) { delete e; ... }
class QXCOMMON_API IOException {};

}  // namespace QXXML_850

#endif  // QX_FOUNDATION_IOEXCEPTION_H
