#ifndef QX_DISTRIBUTIONS_LOBATTOQUAD_H
#define QX_DISTRIBUTIONS_LOBATTOQUAD_H

#include <deque>
#include <ostream>

#include "qx/foundation/qxexport.h"
#include "qx/foundation/qxwarnings.h"

namespace QXMath_850 {

// The function a caller integrates. The caller derives from it and defines the
// call; the integrators only call it. A missing value as a result marks a
// point where the function has no value and makes the integral fail.
class IIntegrand {
 public:
  virtual ~IIntegrand() {}
  // Not used by the integrators; a derived class may print its parameters.
  virtual void Display() const {}
  virtual double operator()(double x) = 0;
};

// A numerical integration rule over an interval: what callers that need an
// integral (the variate generators among them) hold.
class QXCOMMON_API INumIntegration {
 public:
  virtual ~INumIntegration();
  // One application of the basic rule on [a, b].
  virtual double SumUp(double a, double b) = 0;
  // The integral over [a, b].
  virtual double Integrate(double a, double b) = 0;
};

// The pending intervals of an adaptive integration, kept left to right; the
// front one is worked on next. Holds (does not own) the rule that sums them.
class QXCOMMON_API BoundsList {
 public:
  explicit BoundsList(INumIntegration* integrator);
  virtual ~BoundsList();

  // Clears the list and holds [left, right].
  void Initialize(double left, double right);
  // Halves the front interval, the left half first; the new size.
  int Split();
  // Drops the front interval; the new size.
  int Remove();
  // The front left bound, 0 when empty.
  double GetFirstLeft() const;
  // i0: the rule on the front interval; i1: the rule on its two halves. Both
  // 0 without an integrator or an interval.
  void ComputeI0andI1(double& i0, double& i1) const;
  void Display(std::ostream& out) const;

 private:
  INumIntegration* integrator;
  std::deque<double> lefts;
  std::deque<double> rights;
};

// Adaptive quadrature on the five-point Lobatto rule. Intervals are refined
// left to right until one rule and its two halves agree to the tolerance. The
// ends of a long range can first be pulled in to where the integrand falls
// below a fraction of its size at a pivot. Failures (a missing value of the
// integrand) give the missing value and warning 902; running out of outer
// iterations gives warning 901. Warnings accumulate over calls.
class QXCOMMON_API LobattoQuad : public INumIntegration {
 public:
  explicit LobattoQuad(IIntegrand* integrand);
  ~LobattoQuad() override;

  double SumUp(double a, double b) override;
  double Integrate(double a, double b) override;

  void SetIntegrand(IIntegrand* f);
  void SetTolerance(double value);
  // true: stop refining on the absolute difference, false: on the relative.
  void SetAbsConvergence(bool value);
  void SetMaxIter(int value);
  void SetMaxSplits(int value);
  // Integration stops when no more than this fraction of the range is left.
  void SetCloseness(double value);
  void SetAdjustRight(bool value);
  void SetAdjustLeft(bool value);
  // The ends are pulled in to where |f| falls below coef * |f(pivot)|.
  void SetBoundaryAdjustmentCoef(double value);
  void SetBoundaryAdjustmentPivot(double value);

  int GetNIterations() const;
  const QXCommon_850::QXWarnings& GetWarnings() const;
  void Display() const;

  static constexpr long kWarningMaxIter = 901;
  static constexpr long kWarningFailure = 902;

 private:
  bool StopOuterLoop(int size, double left, double right, double width) const;
  bool StopInnerLoop(int k, double i0, double i1) const;
  double Fail();

  IIntegrand* integrand;
  double tolerance;
  double absConvergence;
  int maxIter;
  int maxSplits;
  int nIterations;
  QXCommon_850::QXWarnings warnings;
  double closeness;
  bool adjustRight;
  bool adjustLeft;
  double boundaryCoef;
  double boundaryPivot;
};

}  // namespace QXMath_850

#endif  // QX_DISTRIBUTIONS_LOBATTOQUAD_H
