#ifndef QX_FOUNDATION_QXCANCELINFO_H
#define QX_FOUNDATION_QXCANCELINFO_H

#include "qx/foundation/qxexport.h"
#include "qx/foundation/qxquerycancel.h"

namespace QXMath_850 {

// Cooperative cancellation for one computation: long loops poll IsCancel().
// Once cancelled it stays cancelled, and the caller's query object is not
// asked again. The query object is borrowed and never deleted here.
class QXCOMMON_API QXCancelInfo {
 public:
  explicit QXCancelInfo(QXCommon_850::QXQueryCancel* query);

  // Marks the computation cancelled without asking the query object.
  void SetCancel();
  // Asks the query object while not yet cancelled, and keeps a true answer.
  bool IsCancel();
  // The query object's look-ahead; stores nothing.
  bool WillCancel() const;

  QXCommon_850::QXQueryCancel* GetCancelPtr() const;
  // Replaces the query object; a cancelled state stays.
  void SetCancelPtr(QXCommon_850::QXQueryCancel* query);

 private:
  QXCommon_850::QXQueryCancel* pQuery;
  bool cancelled;
};

}  // namespace QXMath_850

#endif  // QX_FOUNDATION_QXCANCELINFO_H
