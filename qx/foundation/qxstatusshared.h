#ifndef QX_FOUNDATION_QXSTATUSSHARED_H
#define QX_FOUNDATION_QXSTATUSSHARED_H

#include <cstdint>

#include "qx/foundation/qxexport.h"

namespace QXCommon_850 {

// A coded outcome that a component returns by value and collects in
// QXWarnings: a code, a sense (0 OK, +1 warning, -1 error) and three integer
// and three floating parameters. Only the sense says warning or error.
class QXCOMMON_API QXStatus {
 public:
  QXStatus();
  // Sense +1 when isWarning, otherwise -1 (so QXStatus(0, false) is an error).
  QXStatus(long code, bool isWarning);

  // Code, sense and all six data equal; the doubles compare as doubles, so a
  // NaN datum makes a status unequal even to its own copy.
  bool operator==(const QXStatus& other) const;

  long GetErrorCode() const;
  bool IsOK() const;
  bool IsError() const;
  bool IsWarning() const;

  // Unchecked: i must be 0, 1 or 2.
  long GetDiscreteDatum(unsigned int i) const;
  void SetDiscreteDatum(unsigned int i, long value);
  double GetScaleDatum(unsigned int i) const;
  void SetScaleDatum(unsigned int i, double value);

 private:
  long errorCode;
  std::int16_t sense;
  long discreteData[3];
  double scaleData[3];
};

}  // namespace QXCommon_850

#endif  // QX_FOUNDATION_QXSTATUSSHARED_H
