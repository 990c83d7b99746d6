#include "qx/foundation/ioexception.h"

#include <iostream>

#include "qx/foundation/internal/readfailure.h"

namespace QXXML_850 {
namespace internal {

// Throwing from here also places the type data of IOException and of
// IOException* in the shared object, so callers can catch either.
void ThrowReadFailure(const char* text) {
  std::cerr << text;
  throw new IOException();
}

}  // namespace internal
}  // namespace QXXML_850
