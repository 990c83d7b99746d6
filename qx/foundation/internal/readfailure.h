#ifndef QX_FOUNDATION_INTERNAL_READFAILURE_H
#define QX_FOUNDATION_INTERNAL_READFAILURE_H

namespace QXXML_850 {
namespace internal {

// The failure path shared by every reader of persisted objects: writes the
// text to std::cerr, then throws a new IOException by pointer.
[[noreturn]] void ThrowReadFailure(const char* text);

}  // namespace internal
}  // namespace QXXML_850

#endif  // QX_FOUNDATION_INTERNAL_READFAILURE_H
