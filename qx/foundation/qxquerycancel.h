#ifndef QX_FOUNDATION_QXQUERYCANCEL_H
#define QX_FOUNDATION_QXQUERYCANCEL_H

#include "qx/foundation/qxexport.h"

namespace QXCommon_850 {

// Implemented by the library's callers: answers whether the user has asked a
// running computation to stop. The library only holds pointers to it. It is
// the one object another thread may touch while the library computes, so the
// implementer makes IsCancel safe to call from the computing thread.
class QXCOMMON_API QXQueryCancel {
 public:
  virtual ~QXQueryCancel() {}
  // Has the user asked to stop?
  virtual bool IsCancel() = 0;
  // A look-ahead: would IsCancel say yes? Changes nothing in the library.
  virtual bool WillCancel() const = 0;
};

}  // namespace QXCommon_850

#endif  // QX_FOUNDATION_QXQUERYCANCEL_H
