#ifndef QX_FOUNDATION_QXWARNINGS_H
#define QX_FOUNDATION_QXWARNINGS_H

#include <map>
#include <string>
#include <vector>

#include "qx/foundation/qxexport.h"
#include "qx/foundation/qxstatusshared.h"

namespace QXCommon_850 {

// Collects what a run tells its caller without stopping: warning statuses in
// two lists, each status kept once, and per status code a list of parameters
// for the message the caller builds. Nothing here formats text.
//
// GetParameters writes an internal buffer, so even readers must not share one
// object between threads without a lock of their own.
class QXCOMMON_API QXWarnings {
 public:
  // Where AddWarning puts a status; any value other than 0 and 1 means both.
  enum Destination { First = 0, Second = 1, Both = 2 };

  // One parameter of a warning's message: an integer, a double or a string.
  class QXCOMMON_API QXParameterValue {
   public:
    QXParameterValue();
    QXParameterValue(const QXParameterValue& other);
    QXParameterValue& operator=(const QXParameterValue& other);

    void SetValue(int value);
    void SetValue(double value);
    void SetValue(std::string value);

    // 0 integer, 1 double, 2 string.
    int GetType() const;
    // Each returns its own field whatever the type; there is no conversion.
    int ToInteger() const;
    double ToDouble() const;
    std::string ToString() const;

   private:
    int type;
    int intValue;
    double doubleValue;
    std::string stringValue;
  };

  QXWarnings();
  virtual ~QXWarnings();

  // Keeps a warning-sense status once per list; errors and OK are dropped.
  void AddWarning(const QXStatus& status, Destination destination);
  // Each status to the first list, in order.
  void AddWarnings(const std::vector<QXStatus>& statuses);
  // Merges both lists, and the parameters of codes this collection lacks.
  void AddWarnings(QXWarnings other);

  // The first list if `first`, otherwise the second.
  const std::vector<QXStatus>& GetWarnings(bool first) const;
  // Empties the first list only; the second list and all parameters stay.
  void ClearWarnings();

  // Appends a parameter to the list of the status's code (the code alone
  // counts); always true.
  bool AddParameter(const QXStatus& status, int value);
  bool AddParameter(const QXStatus& status, double value);
  bool AddParameter(const QXStatus& status, std::string value);

  bool HasParameter(const QXStatus& status) const;
  // A copy of the code's parameters, in an internal buffer that the next call
  // overwrites; empty for an unknown code.
  const std::vector<QXParameterValue>& GetParameters(const QXStatus& status);

 private:
  void AddParameterValue(long code, const QXParameterValue& value);

  std::vector<QXStatus> firstList;
  std::vector<QXStatus> secondList;
  std::map<long, int> parameterIndex;
  std::vector<std::vector<QXParameterValue>> parameterLists;
  std::vector<QXParameterValue> parameterResult;
};

}  // namespace QXCommon_850

#endif  // QX_FOUNDATION_QXWARNINGS_H
