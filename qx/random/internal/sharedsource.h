#ifndef QX_RANDOM_INTERNAL_SHAREDSOURCE_H
#define QX_RANDOM_INTERNAL_SHAREDSOURCE_H

// The uniform source of QXRNGNormal, QXRNGBeta and QXRNGBinomial: either a
// caller's generator, shared and never freed, or a QXRNGUCongruential that
// the variate generator made for itself and owns.

#include <utility>

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
  void Seed(double seed) {
    Ensure();
    urng->SetSeed(seed);
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

// A source handed on to an inner generator (QXRNGBeta's normal, QXRNGBinomial's
// beta), so that the whole chain draws from one stream; a copy hands on its
// own duplicate.
template <class Inner>
class ChainedSource {
 public:
  explicit ChainedSource(Inner generator) : inner(std::move(generator)) {}
  ChainedSource(const ChainedSource& other) : source(other.source), inner(other.inner) { Relink(); }
  ChainedSource& operator=(const ChainedSource& other) {
    source = other.source;
    inner = other.inner;
    Relink();
    return *this;
  }

  void Use(QXRNGenerator& g) {
    source.Use(g);
    inner.SetURNGenerator(g);
  }
  void Ensure() {
    if (source.Ensure()) Relink();
  }
  void Seed(double seed) {
    Ensure();
    source.Get()->SetSeed(seed);
  }
  double Next() { return source.Next(); }
  Inner& GetInner() { return inner; }

 private:
  void Relink() {
    if (source.Get() != nullptr) inner.SetURNGenerator(*source.Get());
  }

  SharedSource source;
  Inner inner;
};

// The members that QXRNGNormal, QXRNGBeta and QXRNGBinomial share, each a
// forward to the class's Impl, which has Set(first, second), a `source` with
// Use and Seed, and GetNext() on the kept parameters.
#define QX_RANDOM_VARIATE_MEMBERS(Class)                            \
  Class::Class(double first, double second) : impl(new Impl()) {    \
    impl->Set(first, second);                                       \
  }                                                                 \
  Class::Class(const Class& other) : impl(new Impl(*other.impl)) {} \
  Class& Class::operator=(const Class& other) {                     \
    *impl = *other.impl;                                            \
    return *this;                                                   \
  }                                                                 \
  Class::~Class() {                                                 \
    delete impl;                                                    \
  }                                                                 \
  void Class::SetParameters(double first, double second) {          \
    impl->Set(first, second);                                       \
  }                                                                 \
  void Class::SetURNGenerator(QXRNGenerator& g) {                   \
    impl->source.Use(g);                                            \
  }                                                                 \
  void Class::SetSeed(double seed) {                                \
    impl->source.Seed(seed);                                        \
  }                                                                 \
  double Class::GetNext() {                                         \
    return impl->GetNext();                                         \
  }

}  // namespace internal
}  // namespace QXMath_850

#endif  // QX_RANDOM_INTERNAL_SHAREDSOURCE_H
