// What a statistical component does with the library's foundation: it runs an
// iterative fit, polls for cancellation between iterations, collects coded
// warnings with their message parameters, and prints its state through the
// diagnostic display functions.
//
// The "fit" here is Newton's method for the maximum-likelihood estimate of a
// Cauchy location parameter, which needs iterations and can fail to converge.

#include <qx/qxcommon.h>

#include <cmath>
#include <iostream>
#include <string>
#include <vector>

using QXCommon_850::QXMV;
using QXCommon_850::QXStatus;
using QXCommon_850::QXWarnings;

namespace {

// Component-level codes of this example (codes are the components' business).
constexpr long kNotConverged = 2001;
constexpr long kStepHalved = 2002;
constexpr long kCancelled = 1;

// A caller's cancellation object: here it says stop after a budget of polls,
// standing in for a user pressing a button in another thread.
class PollBudget : public QXCommon_850::QXQueryCancel {
 public:
  explicit PollBudget(int budget) : remaining(budget) {}
  bool IsCancel() override { return --remaining < 0; }
  bool WillCancel() const override { return remaining <= 0; }

 private:
  int remaining;
};

double LogLikelihood(const std::vector<double>& x, double theta) {
  double sum = 0.0;
  for (double xi : x)
    sum -= std::log1p((xi - theta) * (xi - theta));
  return sum;
}

struct FitResult {
  double estimate = QXMV::Missing();
  int iterations = 0;
  QXStatus status;
};

// Newton iterations with step halving; the warnings go into `warnings`.
FitResult FitCauchyLocation(const std::vector<double>& x, double start, int maxIterations,
                            QXMath_850::QXCancelInfo& cancel, QXWarnings& warnings) {
  FitResult result;
  double theta = start;
  double logLik = LogLikelihood(x, theta);
  for (int iter = 1; iter <= maxIterations; ++iter) {
    if (cancel.IsCancel()) {
      result.status = QXStatus(kCancelled, false);
      return result;
    }
    double gradient = 0.0, hessian = 0.0;
    for (double xi : x) {
      const double d = xi - theta, q = 1.0 + d * d;
      gradient += 2.0 * d / q;
      hessian += 2.0 * (d * d - 1.0) / (q * q);
    }
    double step = hessian < 0.0 ? -gradient / hessian : gradient;
    double next = theta + step, nextLogLik = LogLikelihood(x, next);
    int halvings = 0;
    while (nextLogLik < logLik && halvings < 30) {
      step *= 0.5;
      next = theta + step;
      nextLogLik = LogLikelihood(x, next);
      ++halvings;
    }
    if (halvings > 0) {
      QXStatus halved(kStepHalved, true);
      warnings.AddWarning(halved, QXWarnings::First);  // kept once however often
      warnings.AddParameter(halved, iter);
    }
    result.iterations = iter;
    const bool converged = std::fabs(next - theta) < 1e-12 * (1.0 + std::fabs(theta));
    theta = next;
    logLik = nextLogLik;
    if (converged) {
      result.estimate = theta;
      return result;
    }
  }
  QXStatus notConverged(kNotConverged, true);
  notConverged.SetDiscreteDatum(0, maxIterations);
  notConverged.SetScaleDatum(0, theta);
  warnings.AddWarning(notConverged, QXWarnings::Both);
  warnings.AddParameter(notConverged, maxIterations);
  warnings.AddParameter(notConverged, std::string("location"));
  result.estimate = theta;
  result.status = notConverged;
  return result;
}

void Report(const std::string& title, const FitResult& fit, QXWarnings& warnings) {
  using namespace QXDisplay_850;
  DisplayText(1, title);
  DisplayD("Estimate", fit.estimate);
  DisplayI("Iterations", fit.iterations);
  DisplayB("Status OK", fit.status.IsOK());
  DisplayL("Status code", fit.status.GetErrorCode());
  for (const QXStatus& w : warnings.GetWarnings(true)) {
    std::vector<int> iterations;
    for (const auto& p : warnings.GetParameters(w)) {
      if (p.GetType() == 0) iterations.push_back(p.ToInteger());
    }
    DisplayL("Warning", w.GetErrorCode());
    DisplayIV("Warning parameters", iterations);
  }
}

}  // namespace

int main() {
  QXDisplay_850::SetOutStream(std::cout);
  QXDisplay_850::DisplayTimeStamp("Component run started");

  const std::vector<double> sample = {-4.2, -1.3, 0.2, 0.4, 0.9, 1.1, 1.4, 2.0, 3.7, 11.5};
  QXDisplay_850::DisplayDV("Sample", sample);

  // A fit that converges, with nobody asking to stop.
  QXWarnings warnings;
  QXMath_850::QXCancelInfo noCancel(nullptr);
  FitResult fit = FitCauchyLocation(sample, 4.0, 50, noCancel, warnings);
  Report("Fit from 4.0", fit, warnings);

  // The same fit with too few iterations: a warning with its parameters.
  QXWarnings shortRun;
  fit = FitCauchyLocation(sample, 4.0, 2, noCancel, shortRun);
  Report("Fit limited to 2 iterations", fit, shortRun);

  // A user who cancels after three polls: the state stays cancelled.
  PollBudget budget(3);
  QXMath_850::QXCancelInfo cancel(&budget);
  QXWarnings cancelled;
  fit = FitCauchyLocation(sample, 4.0, 50, cancel, cancelled);
  Report("Fit cancelled by the user", fit, cancelled);
  QXDisplay_850::DisplayB("Still cancelled", cancel.IsCancel());

  // A component gathers the warnings of its sub-steps in one collection.
  warnings.AddWarnings(shortRun);
  QXDisplay_850::DisplayI("Warnings after merging",
                          static_cast<int>(warnings.GetWarnings(true).size()));
  QXDisplay_850::DisplayText(1, "");
  return fit.status.IsError() && fit.status.GetErrorCode() == kCancelled ? 0 : 1;
}
