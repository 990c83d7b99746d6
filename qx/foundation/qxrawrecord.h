#ifndef QX_FOUNDATION_QXRAWRECORD_H
#define QX_FOUNDATION_QXRAWRECORD_H

#include <string>

#include "qx/foundation/qxexport.h"

namespace QXCommon_850 {

// One row of data as an array of typed cells, each an int, a flag, a double
// and a string whose meaning the component decides. Same rules as Record:
// unchecked indexing, and a failed allocation reported by size 0 or false.
class QXCOMMON_API RawRecord {
 public:
  // A cell as nobody has written it: 0, true, 0.0 (callers must not count
  // on the double) and "". Copied always as a whole.
  struct Cell {
    int first = 0;
    bool second = true;
    double third = 0.0;
    std::string fourth;
  };

  // n fresh cells; a negative n counts as 1, and 0 allocates nothing.
  explicit RawRecord(int n);
  RawRecord(const RawRecord& other);
  // Copies cell by cell; a failed copy leaves this record as it was.
  RawRecord& operator=(const RawRecord& other);
  ~RawRecord();

  // Same size: true and the content stays. Otherwise n fresh cells (none for
  // negative n) replace the old ones; false, unchanged, if allocation fails.
  bool Resize(int n);

  int Size() const;
  Cell* GetAll();
  const Cell* GetAll() const;
  const Cell& operator[](int i) const;  // unchecked
  Cell& operator[](int i);              // unchecked

 private:
  Cell* cells;
  int size;
};

}  // namespace QXCommon_850

#endif  // QX_FOUNDATION_QXRAWRECORD_H
