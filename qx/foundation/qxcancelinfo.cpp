#include "qx/foundation/qxcancelinfo.h"

namespace QXMath_850 {

QXCancelInfo::QXCancelInfo(QXCommon_850::QXQueryCancel* query) : pQuery(query), cancelled(false) {}

void QXCancelInfo::SetCancel() {
  cancelled = true;
}

bool QXCancelInfo::IsCancel() {
  if (!cancelled && pQuery != nullptr) cancelled = pQuery->IsCancel();
  return cancelled;
}

bool QXCancelInfo::WillCancel() const {
  if (cancelled) return true;
  if (pQuery == nullptr) return false;
  return pQuery->WillCancel();
}

QXCommon_850::QXQueryCancel* QXCancelInfo::GetCancelPtr() const {
  return pQuery;
}

void QXCancelInfo::SetCancelPtr(QXCommon_850::QXQueryCancel* query) {
  pQuery = query;
}

}  // namespace QXMath_850
