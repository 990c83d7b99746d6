#include "qx/accumulators/qxiterationreporter.h"

#include "qx/foundation/qxcomponentdisplay.h"
#include "qx/foundation/qxmissingvalue.h"

namespace QXMath_850 {

QXIterationReporter::QXIterationReporter() {
  Reset();
}

QXIterationReporter::~QXIterationReporter() = default;

void QXIterationReporter::Reset() {
  estimates = nullptr;
  second = nullptr;
  third = nullptr;
  iteration = 0;
  halvings = 0;
  logLikelihood = 0.0;
  time = 0.0;
}

void QXIterationReporter::SetInfo(const std::vector<double>* est, int iter, int halv, double loglik,
                                  double elapsed) {
  estimates = est;
  iteration = iter;
  halvings = halv;
  logLikelihood = loglik;
  time = elapsed;
}

void QXIterationReporter::SetInfo(const std::vector<double>* est, const std::vector<double>* est2,
                                  const std::vector<double>* est3, int iter, double loglik,
                                  double elapsed) {
  second = est2;
  third = est3;
  SetInfo(est, iter, halvings, loglik, elapsed);
}

int QXIterationReporter::DiscreteMeasure(const std::string& name) {
  if (name == "iterNum") return iteration;
  if (name == "stepHalving") return halvings;
  return -1;
}

double QXIterationReporter::ScaleMeasure(const std::string& name) {
  if (name == "loglik") return logLikelihood;
  if (name == "time") return time;
  return QXCommon_850::QXMV::Missing();
}

const std::vector<double>* QXIterationReporter::VectorMeasure(const std::string& name) {
  if (name == "paramEstim") return estimates;
  if (name == "paramEstim2") return second;
  if (name == "paramEstim3") return third;
  return nullptr;
}

void QXIterationReporter::Display() const {
  using namespace QXDisplay_850;
  DisplayText(1, "QXIterationReporter display start");
  DisplayI("Iteration number", iteration);
  DisplayI("Number of step halving", halvings);
  DisplayD("Pseudo -2 log-likelihood", logLikelihood);
  DisplayD("Elapsed time in sec", time);
  if (estimates != nullptr) {
    DisplayDV("Parameter estimates", *estimates);
  } else {
    DisplayText(1, "Parameter estimates pointer is 0");
  }
  if (second != nullptr) DisplayDV("Parameter estimates, second vector", *second);
  if (third != nullptr) DisplayDV("Parameter estimates, third vector", *third);
  DisplayText(1, "QXIterationReporter display end");
}

}  // namespace QXMath_850
