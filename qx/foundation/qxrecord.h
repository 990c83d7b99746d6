#ifndef QX_FOUNDATION_QXRECORD_H
#define QX_FOUNDATION_QXRECORD_H

#include "qx/foundation/qxexport.h"

namespace QXCommon_850 {

// One row of data as a bare array of doubles, for per-row work that must not
// pay for anything: indexing is an unchecked load. A failed allocation in the
// sizing constructor or Resize is reported by the size (0) or by false.
class QXCOMMON_API Record {
 public:
  // n zero-filled doubles; a negative n counts as 1, and 0 allocates nothing.
  explicit Record(int n);
  Record(const Record& other);
  Record& operator=(const Record& other);
  ~Record();

  // Same size: true and the content stays. Otherwise a fresh array of n
  // zeros (none for negative n) replaces the old content, which is lost;
  // false, with the record unchanged, if it can't be allocated.
  bool Resize(int n);

  int Size() const;
  double* GetAll();
  const double* GetAll() const;
  double operator[](int i) const;  // unchecked
  double& operator[](int i);       // unchecked

 private:
  double* data;
  int size;
};

}  // namespace QXCommon_850

#endif  // QX_FOUNDATION_QXRECORD_H
