#ifndef QX_ACCUMULATORS_QXITERATIONREPORTER_H
#define QX_ACCUMULATORS_QXITERATIONREPORTER_H

#include <string>
#include <vector>

#include "qx/foundation/progressreport.h"
#include "qx/foundation/qxexport.h"

namespace QXMath_850 {

// Where an iterative fit stands, for whoever watches it through the
// ProgressReportVect measures: "iterNum" and "stepHalving" (discrete),
// "loglik" and "time" (scale), "paramEstim", "paramEstim2" and "paramEstim3"
// (vectors). The fit sets them after each iteration; the vectors are
// borrowed and must outlive their use by the watcher.
class QXCOMMON_API QXIterationReporter : public QXCommon_850::ProgressReportVect {
 public:
  QXIterationReporter();
  ~QXIterationReporter() override;

  // Every measure back to zero and the vectors to null.
  void Reset();
  void SetInfo(const std::vector<double>* estimates, int iteration, int halvings,
               double logLikelihood, double time);
  // Keeps the number of step halvings as it was.
  void SetInfo(const std::vector<double>* estimates, const std::vector<double>* second,
               const std::vector<double>* third, int iteration, double logLikelihood, double time);

  // -1 for a name it doesn't know.
  int DiscreteMeasure(const std::string& name) override;
  // The missing value for a name it doesn't know.
  double ScaleMeasure(const std::string& name) override;
  // Null for a name it doesn't know.
  const std::vector<double>* VectorMeasure(const std::string& name) override;

  void Display() const;

 private:
  const std::vector<double>* estimates;
  const std::vector<double>* second;
  const std::vector<double>* third;
  int iteration;
  int halvings;
  double logLikelihood;
  double time;
};

}  // namespace QXMath_850

#endif  // QX_ACCUMULATORS_QXITERATIONREPORTER_H
