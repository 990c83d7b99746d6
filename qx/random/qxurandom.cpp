#include "qx/random/qxurandom.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>

#include "qx/foundation/qxcomponentdisplay.h"
#include "qx/markup/savexml.h"
#include "qx/markup/xmlio.h"
#include "qx/random/internal/congruential.h"

namespace QXMath_850 {

namespace {

constexpr char kMagic[4] = {'Q', 'X', 'U', 'R'};
constexpr int kBinarySize = 20;
constexpr int kXMLTally = 5;

// A stored seed back to the integer: truncated, held to [0, 2^64 - 1] so the
// conversion is defined for every double; NaN gives 0.
std::uint64_t SeedFromDouble(double value) {
  if (!(value > 0.0)) return 0;
  if (value >= 18446744073709551616.0) return ~std::uint64_t{0};
  return static_cast<std::uint64_t>(value);
}

}  // namespace

QXURandom::QXURandom(unsigned long s, bool portable, bool twisterFlag, QXCommon_850::QXRandom* user)
    : seed(s),
      usePortable(portable),
      useTwister(portable && twisterFlag && user == nullptr),
      twister(nullptr),
      userRNG(user) {
  if (useTwister) StartTwister();
}

QXURandom::QXURandom(const QXURandom& other)
    : seed(other.seed),
      usePortable(other.usePortable),
      useTwister(other.useTwister),
      twister(nullptr),
      userRNG(other.userRNG) {
  if (useTwister) StartTwister();
}

QXURandom& QXURandom::operator=(const QXURandom& other) {
  if (this == &other) return *this;
  seed = other.seed;
  usePortable = other.usePortable;
  useTwister = other.useTwister;
  userRNG = other.userRNG;
  if (useTwister) {
    StartTwister();
  } else {
    delete twister;
    twister = nullptr;
  }
  return *this;
}

QXURandom::~QXURandom() {
  delete twister;
}

double QXURandom::GetRandom() {
  if (userRNG != nullptr) return userRNG->NextUniform();
  if (!usePortable && !useTwister) return std::rand() / 2147483647.0;
  if (!useTwister) {
    const std::int64_t next = internal::CongruentialNext(static_cast<double>(seed));
    seed = static_cast<std::uint64_t>(next);
    return static_cast<double>(next) * internal::kCongruentialScale;
  }
  // Restored from a file and never re-seeded: start from the stored seed.
  if (twister == nullptr) StartTwister();
  return twister->GetRealOpen();
}

void QXURandom::SetSeed(unsigned long s) {
  seed = s;
  if (!usePortable) std::srand(static_cast<unsigned int>(s));
  if (useTwister) StartTwister();
}

void QXURandom::StartTwister() {
  if (twister == nullptr) twister = new QXRandomTwister();
  twister->Initialize(static_cast<unsigned long>(seed));
}

void QXURandom::SetUsePortable(bool portable) {
  usePortable = portable;
  if (!portable && useTwister) {
    useTwister = false;
    delete twister;
    twister = nullptr;
  }
}

void QXURandom::Display() const {
  using namespace QXDisplay_850;
  DisplayText(1, "QXURandom display start");
  DisplayS("The seed", std::to_string(seed));
  DisplayB("Portable RNG indicator", usePortable);
  DisplayB("Mersenne Twister RNG indicator", useTwister);
  DisplayText(1, "QXURandom display end");
}

void QXURandom::Restore(double storedSeed, bool portable, bool twisterFlag) {
  seed = SeedFromDouble(storedSeed);
  usePortable = portable;
  useTwister = twisterFlag;
}

int QXURandom::WriteObject(std::fstream& os) const {
  if (os.fail()) return 0;
  char bytes[kBinarySize];
  const double storedSeed = static_cast<double>(seed);
  const std::int32_t portable = usePortable ? 1 : 0;
  const std::int32_t twisterFlag = useTwister ? 1 : 0;
  std::memcpy(bytes, kMagic, 4);
  std::memcpy(bytes + 4, &storedSeed, 8);
  std::memcpy(bytes + 12, &portable, 4);
  std::memcpy(bytes + 16, &twisterFlag, 4);
  os.write(bytes, kBinarySize);
  return os.fail() ? 0 : kBinarySize;
}

int QXURandom::ReadObject(std::fstream& is) {
  if (is.fail()) return 0;
  char bytes[kBinarySize];
  is.read(bytes, kBinarySize);
  if (is.gcount() != kBinarySize || std::memcmp(bytes, kMagic, 4) != 0) return 0;
  double storedSeed;
  std::int32_t portable, twisterFlag;
  std::memcpy(&storedSeed, bytes + 4, 8);
  std::memcpy(&portable, bytes + 12, 4);
  std::memcpy(&twisterFlag, bytes + 16, 4);
  Restore(storedSeed, portable == 1, twisterFlag == 1);
  return kBinarySize;
}

int QXURandom::WriteObjectXML(std::ostream& os, int nTabs) const {
  if (!os.good()) return 0;
  const QXXML_850::XMLObj obj("QXURandom", nTabs);
  obj.StartObj(os);
  obj.WriteSubElement(os, static_cast<double>(seed));
  obj.WriteSubElement(os, usePortable ? 1 : 0);
  obj.WriteSubElement(os, useTwister ? 1 : 0);
  obj.EndObj(os);
  return kXMLTally;
}

int QXURandom::ReadObjectXML(std::ifstream& is) {
  double storedSeed = 0.0;
  int portable = 0, twisterFlag = 0;
  if (!(is.good() && QXXML_850::ParseStartObj(is, "QXURandom") &&
        QXXML_850::ParseValue(is, storedSeed) && QXXML_850::ParseValue(is, portable) &&
        QXXML_850::ParseValue(is, twisterFlag) && QXXML_850::ParseEndObj(is))) {
    std::cerr << "Failure reading QXURandom!\n";
    return 0;
  }
  Restore(storedSeed, portable == 1, twisterFlag == 1);
  return kXMLTally;
}

}  // namespace QXMath_850
