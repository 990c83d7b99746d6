#ifndef QX_MATRICES_QXBITSET_H
#define QX_MATRICES_QXBITSET_H

#include <vector>

#include "qx/foundation/qxexport.h"

namespace QXMath_850 {

// A fixed-order set of flags over row numbers, bit i standing for row i. The
// sweep records in it which rows are swept in, Cholesky which rows are kept,
// and callers pass it to say which rows or columns an operation should use.
// Bad arguments are reported by the return values; nothing throws.
class QXCOMMON_API QXBitSet {
 public:
  QXBitSet();
  // n false bits; a negative n gives an empty set.
  explicit QXBitSet(int n);
  QXBitSet(const std::vector<bool>& flags);
  QXBitSet(const QXBitSet& other);
  QXBitSet& operator=(const QXBitSet& other);

  int Size() const;
  // Number of true bits.
  int InSet() const;
  // Bit i; false when i is out of range.
  bool IsIn(int i) const;

  // False, with no change, when i is out of range.
  bool Set(int i, bool value);
  // Replaces all flags, size included.
  bool Set(const std::vector<bool>& flags);
  // All or nothing: false, with no bit changed, if any index is out of range.
  bool SetSubset(std::vector<int> indices, bool value);
  // Inclusive range; false, with no change, unless 0 <= first <= last < Size().
  bool SetRange(int first, int last, bool value);
  // True bits in the inclusive range; -1 where SetRange would refuse.
  int InRange(int first, int last) const;
  // True bits among count bits from first; -1 if first or count is negative
  // or the bits run past the end.
  int InRangeS(int first, int count) const;
  // The bits first..last, the range first clipped to the set.
  QXBitSet GetSubset(int first, int last);

  // All bits false, size kept.
  void Clear();
  // Flips every bit.
  void Negate();
  // n bits, every one of them set to value; nothing of the old flags is kept.
  void Resize(int n, bool value);
  void Append(bool value);
  // Appends the current contents `times` times; false for a negative times.
  bool Duplicate(int times);
  // This set becomes a AND b, or a OR b, over min(a.Size(), b.Size()) bits.
  void DoAND(const QXBitSet& a, const QXBitSet& b);
  void DoOR(const QXBitSet& a, const QXBitSet& b);
  // True if a bit below min(Size(), limit) is set here and unset in other.
  bool IsNewFalse(const QXBitSet& other, int limit) const;

  bool operator==(const QXBitSet& other) const;
  // Lexicographic order of the flags.
  bool operator<(const QXBitSet& other) const;

  void Display() const;

 private:
  std::vector<bool> fbVec;
};

}  // namespace QXMath_850

#endif  // QX_MATRICES_QXBITSET_H
