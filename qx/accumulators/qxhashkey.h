#ifndef QX_ACCUMULATORS_QXHASHKEY_H
#define QX_ACCUMULATORS_QXHASHKEY_H

#include "qx/foundation/qxexport.h"

namespace QXMath_850 {

// A key of integers with a hash, for tables of cell counts keyed by category
// codes (often the packed form of a QXPackedInt). The hash exclusive-ors
// (offset + element i) * PRIME_FACTOR[i % 49] over the elements in unsigned
// 32-bit arithmetic; the offset is one process-wide value that must be set
// before any key is formed.
class QXCOMMON_API QXHashKey {
 public:
  // The odd primes 3 to 229, ascending.
  static const int PRIME_FACTOR[49];
  // Added to every element when a hash is formed; 0 at load.
  static int ADD_LOWER_BOUND;

  QXHashKey();
  // `size` elements, all 0, and their hash (a negative size counts as 0).
  explicit QXHashKey(int size);
  QXHashKey(const QXHashKey& other);
  QXHashKey& operator=(const QXHashKey& other);
  ~QXHashKey();

  static void SetElementOffset(int offset);
  static int GetElementOffset();
  // The largest element whose product with the largest prime can't overflow:
  // 2147483647 / 229 - ADD_LOWER_BOUND, held within the range of int.
  static int GetElementUpperBound();

  int GetSize() const { return size; }
  unsigned int GetHash() const { return hash; }
  // Element i, or 0 outside the key.
  int GetElement(int i) const;
  // Sets element i and brings the hash up to date; false outside the key.
  bool SetElement(int i, int value);
  // Equal sizes and elements.
  bool operator==(const QXHashKey& other) const;
  bool operator!=(const QXHashKey& other) const { return !(*this == other); }

  void Display() const;

 private:
  // What element `value` at position i contributes to the hash.
  static unsigned int Term(int i, int value);

  int* elements;
  int size;
  unsigned int hash;
};

// The shorter key is less; keys of one size compare element by element. The
// hash takes no part.
QXCOMMON_API bool operator<(const QXHashKey& a, const QXHashKey& b);

}  // namespace QXMath_850

#endif  // QX_ACCUMULATORS_QXHASHKEY_H
