#include "qx/random/qxrandomtwister.h"

#include <algorithm>

#include "qx/random/internal/mt19937.h"

namespace QXMath_850 {

static_assert(internal::kMTStateSize == 624, "MT19937 keeps 624 words");

QXRandomTwister::QXRandomTwister() : words(new std::uint64_t[kStateSize]()), index(625) {}

QXRandomTwister::QXRandomTwister(const QXRandomTwister& other)
    : words(new std::uint64_t[kStateSize]), index(other.index) {
  std::copy(other.words, other.words + kStateSize, words);
}

QXRandomTwister& QXRandomTwister::operator=(const QXRandomTwister& other) {
  if (this != &other) {
    std::copy(other.words, other.words + kStateSize, words);
    index = other.index;
  }
  return *this;
}

QXRandomTwister::~QXRandomTwister() {
  delete[] words;
}

void QXRandomTwister::Initialize(unsigned long seed) {
  internal::MTInitGenrand(words, static_cast<std::uint32_t>(seed));
  index = kStateSize;
}

void QXRandomTwister::InitByArray(const unsigned long* key, unsigned long length) {
  internal::MTInitByArray(words, key, length);
  index = kStateSize;
}

void QXRandomTwister::Twist() {
  if (index == kStateSize + 1) internal::MTInitGenrand(words, internal::kMTDefaultSeed);
  internal::MTTwist(words);
  index = 0;
}

double QXRandomTwister::GetRealRes53() {
  const auto a = static_cast<std::uint32_t>(GetInteger32());
  return internal::MTRes53(a, static_cast<std::uint32_t>(GetInteger32()));
}

}  // namespace QXMath_850
