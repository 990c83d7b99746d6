#ifndef QX_FOUNDATION_PROGRESSREPORT_H
#define QX_FOUNDATION_PROGRESSREPORT_H

#include <string>
#include <vector>

#include "qx/foundation/qxexport.h"

namespace QXCommon_850 {

// Measures of an iteration's progress, looked up by name ("iterNum",
// "loglik", ...), for whoever watches a long computation.
class QXCOMMON_API ProgressReport {
 public:
  virtual ~ProgressReport();
  virtual int DiscreteMeasure(const std::string& name) = 0;
  virtual double ScaleMeasure(const std::string& name) = 0;
};

// A progress report that also hands out vectors, such as parameter estimates.
class QXCOMMON_API ProgressReportVect : public ProgressReport {
 public:
  ~ProgressReportVect() override;
  virtual const std::vector<double>* VectorMeasure(const std::string& name) = 0;
};

}  // namespace QXCommon_850

#endif  // QX_FOUNDATION_PROGRESSREPORT_H
