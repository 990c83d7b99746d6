#ifndef QX_ACCUMULATORS_QXPACKEDINT_H
#define QX_ACCUMULATORS_QXPACKEDINT_H

#include <vector>

#include "qx/foundation/qxexport.h"

namespace QXMath_850 {

// Packs a sequence of small integers, position i taking nDiffVal[i] values
// from lowerBound upwards, into few integers: consecutive positions share a
// storage unit as the digits of one mixed-radix number, and a unit is closed
// before its number could exceed the largest element of a QXHashKey. Cell
// counting code keys its tables by the packed form.
class QXCOMMON_API QXPackedInt {
 public:
  QXPackedInt();
  QXPackedInt(int size, int lowerBound, const std::vector<int>& nDiffVal);

  // Stores the arguments and runs Setup; returns its answer.
  bool SetForSequence(int size, int lowerBound, const std::vector<int>& nDiffVal);
  // Lays out the storage units. False, with the sequence size 0 and the
  // numbers of values emptied, for a size below 1, a size beyond the numbers
  // given, or a number of values below 1.
  bool Setup();

  // Packs the first size values into `packed`, sized to the number of units.
  // With `check`, false for a value outside [lowerBound, lowerBound +
  // nDiffVal); without it such a value gives a wrong number. False for a
  // `values` shorter than the sequence either way.
  bool Pack(const std::vector<int>& values, std::vector<int>& packed, bool check) const;
  // The sequence back from its packed form; `values` is lengthened to the
  // sequence size if shorter. False, with nothing changed, if `packed` has
  // fewer entries than there are units.
  bool Unpack(std::vector<int>& values, const std::vector<int>& packed) const;

  int GetSeqSize() const { return seqSize; }
  int GetLowerBound() const { return lowerBound; }
  // The number of values at a position, or -1 outside the sequence.
  int GetNDiffVal(int position) const;
  int GetNUnits() const { return nUnits; }

  void Display() const;

 private:
  int seqSize;
  int lowerBound;
  std::vector<int> nDiffVal;
  int nUnits;
  std::vector<int> unitIndex;
  std::vector<int> products;
};

}  // namespace QXMath_850

#endif  // QX_ACCUMULATORS_QXPACKEDINT_H
