#ifndef QX_FOUNDATION_QXEXCEPTION_H
#define QX_FOUNDATION_QXEXCEPTION_H

#include <string>

#include "qx/foundation/qxexport.h"

namespace QXCommon_850 {

// The one exception class the library throws by value: a code and a message.
// Thrown only by the typed value class on misuse (codes 13 and 14). It does
// not derive from std::exception; catch it by its own type.
class QXCOMMON_API QXException {
 public:
  QXException();
  QXException(int code, const std::string& message);
  virtual ~QXException();

  int GetCode() const;
  std::string GetMessage() const;

 private:
  int code;
  std::string message;
};

}  // namespace QXCommon_850

#endif  // QX_FOUNDATION_QXEXCEPTION_H
