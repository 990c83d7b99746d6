#ifndef QX_RANDOM_INTERNAL_SHAREDSOURCE_H
#define QX_RANDOM_INTERNAL_SHAREDSOURCE_H

// The uniform source of QXRNGNormal, QXRNGBeta and QXRNGBinomial: either a
// caller's generator, shared and never freed, or a QXRNGUCongruential that
// the variate generator made for itself and owns.

#include "qx/random/qxrngenerator.h"
#include "qx/random/qxrngucongruential.h"

namespace QXMath_850 {
namespace internal {

class SharedSource {
 public:
  SharedSource() : urng(nullptr), ownsURNG(true) {}
  // An owned generator is duplicated with its state; a caller's stays shared.
  SharedSource(const SharedSource& other) : urng(other.Duplicate()), ownsURNG(other.ownsURNG) {}
  SharedSource& operator=(const SharedSource& other) {
    if (this != &other) {
      QXRNGenerator* copy = other.Duplicate();
      Free();
      urng = copy;
      ownsURNG = other.ownsURNG;
    }
    return *this;
  }
  ~SharedSource() { Free(); }

  // Draws from g from now on; g is not owned.
  void Use(QXRNGenerator& g) {
    if (&g == urng) return;  // our own generator handed back: nothing changes
    Free();
    urng = &g;
    ownsURNG = false;
  }
  // Creates an owned congruential generator when there is none; true if it
  // did, so that the caller can hand it on to its inner generator.
  bool Ensure() {
    if (urng != nullptr) return false;
    urng = new QXRNGUCongruential();
    ownsURNG = true;
    return true;
  }
  QXRNGenerator* Get() const { return urng; }
  double Next() { return urng->GetNext(); }

 private:
  QXRNGenerator* Duplicate() const {
    if (urng == nullptr || !ownsURNG) return urng;
    // An owned generator is always the congruential one made by Ensure.
    return new QXRNGUCongruential(*static_cast<QXRNGUCongruential*>(urng));
  }
  void Free() {
    if (ownsURNG) delete urng;
    urng = nullptr;
  }

  QXRNGenerator* urng;
  bool ownsURNG;
};

}  // namespace internal
}  // namespace QXMath_850

#endif  // QX_RANDOM_INTERNAL_SHAREDSOURCE_H
