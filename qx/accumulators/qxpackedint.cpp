#include "qx/accumulators/qxpackedint.h"

#include <climits>
#include <cmath>
#include <cstddef>

#include "qx/accumulators/qxhashkey.h"
#include "qx/foundation/qxcomponentdisplay.h"

namespace QXMath_850 {

namespace {

// Two's-complement arithmetic without signed overflow: a value that was never
// meant to fit gives a wrong number, not undefined behaviour.
inline int WrapAdd(int a, int b) {
  return static_cast<int>(static_cast<unsigned>(a) + static_cast<unsigned>(b));
}
inline int WrapMultiplyAdd(int sum, int a, int b) {
  return static_cast<int>(static_cast<unsigned>(sum) +
                          static_cast<unsigned>(a) * static_cast<unsigned>(b));
}

}  // namespace

QXPackedInt::QXPackedInt() : seqSize(0), lowerBound(0), nUnits(0) {}

QXPackedInt::QXPackedInt(int size, int lower, const std::vector<int>& nDiff)
    : seqSize(size), lowerBound(lower), nDiffVal(nDiff), nUnits(0) {
  Setup();
}

bool QXPackedInt::SetForSequence(int size, int lower, const std::vector<int>& nDiff) {
  seqSize = size;
  lowerBound = lower;
  nDiffVal = nDiff;
  return Setup();
}

bool QXPackedInt::Setup() {
  nUnits = 0;
  unitIndex.clear();
  products.clear();
  bool bad = seqSize < 1 || static_cast<std::size_t>(seqSize) > nDiffVal.size();
  for (int i = 0; !bad && i < seqSize; ++i)
    bad = nDiffVal[i] < 1;
  if (bad) {
    seqSize = 0;
    nDiffVal.clear();
    return false;
  }
  unitIndex.resize(seqSize);
  products.resize(seqSize);
  // A unit's number stays below the product of its numbers of values, which
  // the log sum keeps at most the largest key element. The bound is held at
  // 1 or more so that an offset beyond it can't make the limit NaN.
  const int bound = QXHashKey::GetElementUpperBound();
  const double limit = std::log(bound > 1 ? static_cast<double>(bound) : 1.0);
  double logSum = 0.0;
  int product = 1;
  int unit = 0;
  for (int i = 0; i < seqSize; ++i) {
    const int d = nDiffVal[i];
    logSum += std::log(static_cast<double>(d));
    // The second test only guards int overflow when the bound is near
    // INT_MAX and rounding of a long log sum lets a product slip past it.
    if (logSum > limit || static_cast<long long>(product) * d > INT_MAX) {
      ++unit;
      product = d;
      logSum = std::log(static_cast<double>(d));
    } else {
      product *= d;
    }
    products[i] = product;
    unitIndex[i] = unit;
  }
  nUnits = unit + 1;
  return true;
}

bool QXPackedInt::Pack(const std::vector<int>& values, std::vector<int>& packed, bool check) const {
  if (values.size() < static_cast<std::size_t>(seqSize)) return false;
  if (check) {
    for (int i = 0; i < seqSize; ++i) {
      const long long offset = static_cast<long long>(values[i]) - lowerBound;
      if (offset < 0 || offset >= nDiffVal[i]) return false;
    }
  }
  if (packed.size() != static_cast<std::size_t>(nUnits)) packed.resize(nUnits);
  int multiplier = 1;
  int sum = 0;
  for (int i = 0; i < seqSize; ++i) {
    sum = WrapMultiplyAdd(sum, WrapAdd(values[i], -lowerBound), multiplier);
    if (i + 1 == seqSize || unitIndex[i + 1] != unitIndex[i]) {
      packed[unitIndex[i]] = sum;
      sum = 0;
      multiplier = 1;
    } else {
      multiplier = products[i];
    }
  }
  return true;
}

bool QXPackedInt::Unpack(std::vector<int>& values, const std::vector<int>& packed) const {
  if (packed.size() < static_cast<std::size_t>(nUnits)) return false;
  if (values.size() < static_cast<std::size_t>(seqSize)) values.resize(seqSize, 0);
  int rest = 0;
  for (int i = seqSize - 1; i >= 0; --i) {
    if (i + 1 == seqSize || unitIndex[i + 1] != unitIndex[i]) rest = packed[unitIndex[i]];
    if (i > 0 && unitIndex[i - 1] == unitIndex[i]) {
      values[i] = WrapAdd(rest / products[i - 1], lowerBound);
      rest %= products[i - 1];
    } else {
      values[i] = WrapAdd(rest, lowerBound);
    }
  }
  return true;
}

int QXPackedInt::GetNDiffVal(int position) const {
  return position >= 0 && position < seqSize ? nDiffVal[position] : -1;
}

void QXPackedInt::Display() const {
  using namespace QXDisplay_850;
  DisplayText(1, "QXPackedInt display start");
  DisplayI("The sequence size", seqSize);
  DisplayI("The lower bound", lowerBound);
  DisplayIV("The vector of numbers of different values", nDiffVal);
  DisplayI("The number of packed storage units", nUnits);
  DisplayIV("The vector of packed storage unit indices", unitIndex);
  DisplayIV("The vector of products", products);
  DisplayText(1, "QXPackedInt display end");
}

}  // namespace QXMath_850
