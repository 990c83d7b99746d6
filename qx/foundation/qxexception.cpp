#include "qx/foundation/qxexception.h"

namespace QXCommon_850 {

QXException::QXException() : code(0) {}
QXException::QXException(int code, const std::string& message) : code(code), message(message) {}
QXException::~QXException() = default;

int QXException::GetCode() const {
  return code;
}
std::string QXException::GetMessage() const {
  return message;
}

}  // namespace QXCommon_850
