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
  double GetNext() { return GetNextImpl(mean, sd); }
  double GetNextImpl(double m, double s) {
    source.Ensure();
    const double z = internal::KindermanRamage([this] { return source.Next(); });
    if (QXCommon_850::QXMV::IsMissing(z)) return z;
    return s * z + m;
  }
};

QX_RANDOM_VARIATE_MEMBERS(QXRNGNormal)

double QXRNGNormal::GetNext(double mean, double sd) {
  if (sd < 0.0) return impl->GetNextImpl(0.0, 1.0);
  return impl->GetNextImpl(mean, sd);
}

}  // namespace QXMath_850
