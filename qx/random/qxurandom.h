#ifndef QX_RANDOM_QXURANDOM_H
#define QX_RANDOM_QXURANDOM_H

#include <cstdint>
#include <fstream>
#include <ostream>

#include "qx/foundation/qxexport.h"
#include "qx/random/qxrandom.h"
#include "qx/random/qxrandomtwister.h"

namespace QXMath_850 {

// The uniform source of the library's variate generators (QXRandomValues),
// chosen at run time among four, the first that applies winning:
//
//   1. a caller's QXCommon_850::QXRandom, when one is given (never owned);
//   2. the C library's rand(), as rand() / 2147483647.0, when neither the
//      portable nor the twister flag is set; it depends on the platform and
//      on the process-wide state of srand;
//   3. the portable congruential generator x' = 397204094 x mod (2^31 - 1),
//      when only the portable flag is set; the seed field is its state;
//   4. the Mersenne Twister (QXRandomTwister), as its open (0, 1) form.
//
// Modes 3 and 4 give the same sequence from the same seed on every platform.
// Kept on purpose, and worth knowing:
//   - A copy of a twister-mode object starts over from the seed; it does not
//     continue the source's sequence. A copy in congruential mode continues
//     exactly, because there the state is the seed.
//   - Congruential values are x' / 2^31 (the power of two, not the modulus),
//     so they lie in [0, 1 - 2^-31], and a state of 0 stays 0: a seed of 0,
//     or of 2147483647, gives 0 for ever. Seeds above 2^31 - 1 are not
//     reduced first; the first values then exceed 1 until the state shrinks
//     below the modulus, about one step per factor 5.4.
//   - The twister uses the low 32 bits of the seed.
// Saved forms (binary and XML) hold the seed and the two flags only; a
// restored object does not resume its sequence. Call SetSeed with the
// restored seed to get a working, reproducible source (a twister-mode
// object that has no generator builds one from its seed on its first draw).
class QXCOMMON_API QXURandom {
 public:
  // The twister is used only when usePortable and useTwister are both true and
  // userRNG is null; only then is it built and seeded with the seed.
  QXURandom(unsigned long seed, bool usePortable, bool useTwister, QXCommon_850::QXRandom* userRNG);
  QXURandom(const QXURandom& other);
  QXURandom& operator=(const QXURandom& other);
  ~QXURandom();

  // One uniform value from the source chosen as above.
  double GetRandom();
  // Stores the seed. Without the portable flag it also calls srand(seed),
  // even when a caller's generator is in use; in twister mode it re-seeds the
  // twister; in congruential mode the seed is the new state.
  void SetSeed(unsigned long seed);
  // Turning the portable flag off also ends twister mode and frees the
  // twister; turning it on creates nothing (congruential mode follows).
  void SetUsePortable(bool usePortable);

  bool GetUsePortable() const { return usePortable; }
  bool GetUseTwister() const { return useTwister; }
  QXCommon_850::QXRandom* GetUserRNG() { return userRNG; }
  // The seed, which in congruential mode is the current state.
  unsigned long GetSeed() const { return static_cast<unsigned long>(seed); }

  void Display() const;

  // Binary form, 20 bytes: "QXUR", the seed as a native double, and each flag
  // as a native 32-bit integer 0 or 1. WriteObject returns 20, or 0 on a
  // stream already failed. ReadObject returns 20, or 0 with the object
  // unchanged on a failed or short stream or a wrong magic; a flag is true
  // only when stored as exactly 1. Seeds above 2^53 come back rounded to a
  // double; a stored seed is truncated, and held to [0, 2^64 - 1] (NaN is 0).
  int WriteObject(std::fstream& os) const;
  int ReadObject(std::fstream& is);
  // XML form: an object "QXURandom" with the seed as a Double (15 significant
  // digits, so seeds beyond 10^15 lose their last digits) and the two flags
  // as Int. Both return 5; ReadObjectXML returns 0 after the line
  // "Failure reading QXURandom!" on std::cerr when the stream has failed or
  // any line is not what was written, and then leaves the object unchanged.
  // It does not throw. A flag is true only when read as exactly 1.
  int WriteObjectXML(std::ostream& os, int nTabs) const;
  int ReadObjectXML(std::ifstream& is);

 private:
  // Seeds the twister from the seed field, creating it if need be.
  void StartTwister();
  // Sets the three persisted fields together, after a successful read.
  void Restore(double storedSeed, bool portable, bool twisterFlag);

  std::uint64_t seed;
  bool usePortable;
  bool useTwister;
  QXRandomTwister* twister;
  QXCommon_850::QXRandom* userRNG;
};

}  // namespace QXMath_850

#endif  // QX_RANDOM_QXURANDOM_H
