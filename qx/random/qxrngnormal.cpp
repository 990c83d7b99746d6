#include "qx/random/qxrngnormal.h"

#include "qx/foundation/qxmissingvalue.h"
#include "qx/random/internal/normalvariate.h"
#include "qx/random/internal/sharedsource.h"

namespace QXMath_850 {

struct QXRNGNormal::Impl {
  internal::SharedSource source;
  double mean = 0.0;
  double sd = 1.0;

  void Set(double m, double s) {
    mean = s < 0.0 ? 0.0 : m;
    sd = s < 0.0 ? 1.0 : s;
  }
  double GetNextImpl(double m, double s) {
    source.Ensure();
    const double z = internal::KindermanRamage([this] { return source.Next(); });
    if (QXCommon_850::QXMV::IsMissing(z)) return z;
    return s * z + m;
  }
};

QXRNGNormal::QXRNGNormal(double mean, double sd) : impl(new Impl()) {
  impl->Set(mean, sd);
}

QXRNGNormal::QXRNGNormal(const QXRNGNormal& other) : impl(new Impl(*other.impl)) {}

QXRNGNormal& QXRNGNormal::operator=(const QXRNGNormal& other) {
  *impl = *other.impl;
  return *this;
}

QXRNGNormal::~QXRNGNormal() {
  delete impl;
}

void QXRNGNormal::SetParameters(double mean, double sd) {
  impl->Set(mean, sd);
}

void QXRNGNormal::SetURNGenerator(QXRNGenerator& g) {
  impl->source.Use(g);
}

void QXRNGNormal::SetSeed(double seed) {
  impl->source.Ensure();
  impl->source.Get()->SetSeed(seed);
}

double QXRNGNormal::GetNext() {
  return impl->GetNextImpl(impl->mean, impl->sd);
}

double QXRNGNormal::GetNext(double mean, double sd) {
  if (sd < 0.0) return impl->GetNextImpl(0.0, 1.0);
  return impl->GetNextImpl(mean, sd);
}

}  // namespace QXMath_850
