#include "qx/foundation/qxstatusshared.h"

namespace QXCommon_850 {

QXStatus::QXStatus() : errorCode(0), sense(0), discreteData{0, 0, 0}, scaleData{0.0, 0.0, 0.0} {}

QXStatus::QXStatus(long code, bool isWarning)
    : errorCode(code), sense(isWarning ? 1 : -1), discreteData{0, 0, 0}, scaleData{0.0, 0.0, 0.0} {}

bool QXStatus::operator==(const QXStatus& other) const {
  if (errorCode != other.errorCode || sense != other.sense) return false;
  for (int i = 0; i < 3; ++i) {
    if (discreteData[i] != other.discreteData[i]) return false;
    if (!(scaleData[i] == other.scaleData[i])) return false;
  }
  return true;
}

long QXStatus::GetErrorCode() const {
  return errorCode;
}
bool QXStatus::IsOK() const {
  return sense == 0;
}
bool QXStatus::IsError() const {
  return sense < 0;
}
bool QXStatus::IsWarning() const {
  return sense > 0;
}

long QXStatus::GetDiscreteDatum(unsigned int i) const {
  return discreteData[i];
}
void QXStatus::SetDiscreteDatum(unsigned int i, long value) {
  discreteData[i] = value;
}
double QXStatus::GetScaleDatum(unsigned int i) const {
  return scaleData[i];
}
void QXStatus::SetScaleDatum(unsigned int i, double value) {
  scaleData[i] = value;
}

}  // namespace QXCommon_850
