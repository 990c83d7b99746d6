#include "qx/accumulators/qxhashkey.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <string>

#include "qx/foundation/qxcomponentdisplay.h"

namespace QXMath_850 {

const int QXHashKey::PRIME_FACTOR[49] = {
    3,   5,   7,   11,  13,  17,  19,  23,  29,  31,  37,  41,  43,  47,  53,  59,  61,
    67,  71,  73,  79,  83,  89,  97,  101, 103, 107, 109, 113, 127, 131, 137, 139, 149,
    151, 157, 163, 167, 173, 179, 181, 191, 193, 197, 199, 211, 223, 227, 229};

int QXHashKey::ADD_LOWER_BOUND = 0;

unsigned int QXHashKey::Term(int i, int value) {
  return (static_cast<unsigned int>(ADD_LOWER_BOUND) + static_cast<unsigned int>(value)) *
         static_cast<unsigned int>(PRIME_FACTOR[i % 49]);
}

QXHashKey::QXHashKey() : elements(nullptr), size(0), hash(0) {}

QXHashKey::QXHashKey(int n) : elements(nullptr), size(std::max(n, 0)), hash(0) {
  if (size > 0) elements = new int[size]();
  for (int i = 0; i < size; ++i)
    hash ^= Term(i, elements[i]);
}

QXHashKey::QXHashKey(const QXHashKey& other)
    : elements(nullptr), size(other.size), hash(other.hash) {
  if (size > 0) {
    elements = new int[size];
    std::copy(other.elements, other.elements + size, elements);
  }
}

QXHashKey& QXHashKey::operator=(const QXHashKey& other) {
  if (elements == other.elements) return *this;
  if (size != other.size) {
    int* fresh = other.size > 0 ? new int[other.size] : nullptr;
    delete[] elements;
    elements = fresh;
    size = other.size;
  }
  std::copy(other.elements, other.elements + size, elements);
  hash = other.hash;
  return *this;
}

QXHashKey::~QXHashKey() {
  delete[] elements;
}

void QXHashKey::SetElementOffset(int offset) {
  ADD_LOWER_BOUND = offset;
}

int QXHashKey::GetElementOffset() {
  return ADD_LOWER_BOUND;
}

int QXHashKey::GetElementUpperBound() {
  const long long bound = 2147483647LL / PRIME_FACTOR[48] - ADD_LOWER_BOUND;
  return static_cast<int>(std::min<long long>(std::max<long long>(bound, INT_MIN), INT_MAX));
}

int QXHashKey::GetElement(int i) const {
  return i >= 0 && i < size ? elements[i] : 0;
}

// The hash is an exclusive-or of terms, so the old term comes out as the new
// one goes in.
bool QXHashKey::SetElement(int i, int value) {
  if (i < 0 || i >= size) return false;
  hash ^= Term(i, elements[i]) ^ Term(i, value);
  elements[i] = value;
  return true;
}

bool QXHashKey::operator==(const QXHashKey& other) const {
  return size == other.size && std::equal(elements, elements + size, other.elements);
}

bool operator<(const QXHashKey& a, const QXHashKey& b) {
  if (a.GetSize() != b.GetSize()) return a.GetSize() < b.GetSize();
  for (int i = 0; i < a.GetSize(); ++i) {
    if (a.GetElement(i) != b.GetElement(i)) return a.GetElement(i) < b.GetElement(i);
  }
  return false;
}

void QXHashKey::Display() const {
  std::string text = "\t Key: ";
  char item[16];
  for (int i = 0; i < size; ++i) {
    std::snprintf(item, sizeof item, "  %d", elements[i]);
    text += item;
  }
  QXDisplay_850::DisplayText(1, text);
}

}  // namespace QXMath_850
