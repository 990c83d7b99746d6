#include "qx/matrices/qxbitset.h"

#include <algorithm>

#include "qx/foundation/qxcomponentdisplay.h"

namespace QXMath_850 {

QXBitSet::QXBitSet() = default;

QXBitSet::QXBitSet(int n) {
  if (n > 0) fbVec.assign(n, false);
}

QXBitSet::QXBitSet(const std::vector<bool>& flags) : fbVec(flags) {}

QXBitSet::QXBitSet(const QXBitSet& other) = default;

QXBitSet& QXBitSet::operator=(const QXBitSet& other) = default;

int QXBitSet::Size() const {
  return static_cast<int>(fbVec.size());
}

int QXBitSet::InSet() const {
  return static_cast<int>(std::count(fbVec.begin(), fbVec.end(), true));
}

bool QXBitSet::IsIn(int i) const {
  return i >= 0 && i < Size() && fbVec[i];
}

bool QXBitSet::Set(int i, bool value) {
  if (i < 0 || i >= Size()) return false;
  fbVec[i] = value;
  return true;
}

bool QXBitSet::Set(const std::vector<bool>& flags) {
  fbVec = flags;
  return true;
}

bool QXBitSet::SetSubset(std::vector<int> indices, bool value) {
  const int size = Size();
  for (int i : indices) {
    if (i < 0 || i >= size) return false;
  }
  for (int i : indices)
    fbVec[i] = value;
  return true;
}

bool QXBitSet::SetRange(int first, int last, bool value) {
  if (first < 0 || last < first || last >= Size()) return false;
  std::fill(fbVec.begin() + first, fbVec.begin() + last + 1, value);
  return true;
}

int QXBitSet::InRange(int first, int last) const {
  if (first < 0 || last < first || last >= Size()) return -1;
  return static_cast<int>(std::count(fbVec.begin() + first, fbVec.begin() + last + 1, true));
}

int QXBitSet::InRangeS(int first, int count) const {
  if (first < 0 || count < 0 || first + count - 1 >= Size()) return -1;
  return static_cast<int>(std::count(fbVec.begin() + first, fbVec.begin() + first + count, true));
}

QXBitSet QXBitSet::GetSubset(int first, int last) {
  first = std::max(first, 0);
  last = std::min(last, Size() - 1);
  if (first > last) return QXBitSet();
  return QXBitSet(std::vector<bool>(fbVec.begin() + first, fbVec.begin() + last + 1));
}

void QXBitSet::Clear() {
  std::fill(fbVec.begin(), fbVec.end(), false);
}

void QXBitSet::Negate() {
  fbVec.flip();
}

// A re-initialisation to a constant, not a resize: the old flags are lost.
void QXBitSet::Resize(int n, bool value) {
  if (n <= 0) {
    fbVec.clear();
    return;
  }
  fbVec.resize(n);
  SetRange(0, n - 1, value);
}

void QXBitSet::Append(bool value) {
  fbVec.push_back(value);
}

bool QXBitSet::Duplicate(int times) {
  if (times < 0) return false;
  const int oldSize = Size();
  fbVec.reserve(static_cast<size_t>(oldSize) * (times + 1));
  for (int pass = 0; pass < times; pass++) {
    for (int i = 0; i < oldSize; i++)
      fbVec.push_back(fbVec[i]);
  }
  return true;
}

// Built in a temporary, so that this set may also be a or b.
void QXBitSet::DoAND(const QXBitSet& a, const QXBitSet& b) {
  const int n = std::min(a.Size(), b.Size());
  std::vector<bool> result(n);
  for (int i = 0; i < n; i++)
    result[i] = a.fbVec[i] && b.fbVec[i];
  fbVec.swap(result);
}

void QXBitSet::DoOR(const QXBitSet& a, const QXBitSet& b) {
  const int n = std::min(a.Size(), b.Size());
  std::vector<bool> result(n);
  for (int i = 0; i < n; i++)
    result[i] = a.fbVec[i] || b.fbVec[i];
  fbVec.swap(result);
}

// A bit that other doesn't have counts as unset there.
bool QXBitSet::IsNewFalse(const QXBitSet& other, int limit) const {
  const int n = std::min(Size(), limit);
  for (int i = 0; i < n; i++) {
    if (fbVec[i] && !other.IsIn(i)) return true;
  }
  return false;
}

bool QXBitSet::operator==(const QXBitSet& other) const {
  return fbVec == other.fbVec;
}

bool QXBitSet::operator<(const QXBitSet& other) const {
  return fbVec < other.fbVec;
}

void QXBitSet::Display() const {
  QXDisplay_850::DisplayText(1, "QXBitSet display start");
  QXDisplay_850::DisplayBV("fbVec", fbVec);
  QXDisplay_850::DisplayText(1, "QXBitSet display end");
}

}  // namespace QXMath_850
