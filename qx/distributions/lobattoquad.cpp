#include "qx/distributions/lobattoquad.h"

#include <algorithm>
#include <cmath>

#include "qx/foundation/qxcomponentdisplay.h"
#include "qx/foundation/qxmissingvalue.h"
#include "qx/foundation/qxstatusshared.h"

namespace QXMath_850 {

using QXCommon_850::QXMV;
using QXCommon_850::QXStatus;
using QXCommon_850::QXWarnings;

namespace {

// One end of Integrate's range pulled in toward the pivot p, for an end where
// |f| is below thr: the distance from p is halved until |f| there reaches thr
// or the step no longer moves off p (|f(p)| itself is below thr), and the end
// becomes p plus or minus twice that distance. Sets failed on a missing value.
double PullEndIn(IIntegrand& f, double p, double end, bool right, double thr, bool& failed) {
  const double fe = f(end);
  failed = QXMV::IsMissing(fe);
  if (failed || !(std::fabs(fe) < thr)) return end;
  double h = right ? end - p : p - end;
  for (;;) {
    h = h / 2.0;
    const double x = right ? p + h : p - h;
    if (x == p) break;
    const double fx = f(x);
    if (QXMV::IsMissing(fx)) {
      failed = true;
      break;
    }
    if (std::fabs(fx) >= thr) break;
  }
  return right ? p + 2.0 * h : p - 2.0 * h;
}

}  // namespace

INumIntegration::~INumIntegration() {}

BoundsList::BoundsList(INumIntegration* integrator) : integrator(integrator) {}

BoundsList::~BoundsList() {}

void BoundsList::Initialize(double left, double right) {
  lefts.clear();
  rights.clear();
  lefts.push_back(left);
  rights.push_back(right);
}

int BoundsList::Split() {
  if (!lefts.empty()) {
    const double l = lefts.front(), r = rights.front();
    const double m = (r - l) * 0.5 + l;
    rights.front() = m;
    lefts.insert(lefts.begin() + 1, m);
    rights.insert(rights.begin() + 1, r);
  }
  return static_cast<int>(lefts.size());
}

int BoundsList::Remove() {
  if (!lefts.empty()) {
    lefts.pop_front();
    rights.pop_front();
  }
  return static_cast<int>(lefts.size());
}

double BoundsList::GetFirstLeft() const {
  return lefts.empty() ? 0.0 : lefts.front();
}

void BoundsList::ComputeI0andI1(double& i0, double& i1) const {
  i0 = 0.0;
  i1 = 0.0;
  if (integrator == nullptr || lefts.empty()) return;
  const double l = lefts.front(), r = rights.front();
  const double m = (r - l) * 0.5 + l;
  i0 = integrator->SumUp(l, r);
  i1 = integrator->SumUp(l, m) + integrator->SumUp(m, r);
}

void BoundsList::Display(std::ostream& out) const {
  out << "\nBoundsList display start";
  out << "\nSize of the list = " << lefts.size();
  for (size_t i = 0; i < lefts.size(); i++) {
    out << "\nList index = " << i;
    out << "\nLeft boundary = " << lefts[i];
    out << "\nRight boundary = " << rights[i];
  }
  out << "\nBoundsList display end";
  out.flush();
}

LobattoQuad::LobattoQuad(IIntegrand* integrand)
    : integrand(integrand),
      tolerance(1e-06),
      absConvergence(0.0),
      maxIter(2000),
      maxSplits(100),
      nIterations(0),
      closeness(0.01),
      adjustRight(true),
      adjustLeft(true),
      boundaryCoef(1e-12),
      boundaryPivot(1.0) {}

LobattoQuad::~LobattoQuad() {}

void LobattoQuad::SetIntegrand(IIntegrand* f) {
  integrand = f;
}
void LobattoQuad::SetTolerance(double value) {
  tolerance = value;
}
void LobattoQuad::SetAbsConvergence(bool value) {
  absConvergence = value ? 1.0 : 0.0;
}
void LobattoQuad::SetMaxIter(int value) {
  maxIter = value;
}
void LobattoQuad::SetMaxSplits(int value) {
  maxSplits = value;
}
void LobattoQuad::SetCloseness(double value) {
  closeness = value;
}
void LobattoQuad::SetAdjustRight(bool value) {
  adjustRight = value;
}
void LobattoQuad::SetAdjustLeft(bool value) {
  adjustLeft = value;
}
void LobattoQuad::SetBoundaryAdjustmentCoef(double value) {
  boundaryCoef = value;
}
void LobattoQuad::SetBoundaryAdjustmentPivot(double value) {
  boundaryPivot = value;
}
int LobattoQuad::GetNIterations() const {
  return nIterations;
}
const QXWarnings& LobattoQuad::GetWarnings() const {
  return warnings;
}

// Five-point Lobatto rule on [a, b], exact for polynomials up to degree 7.
double LobattoQuad::SumUp(double a, double b) {
  if (!(a < b)) return 0.0;
  const double w = b - a;
  const double x[5] = {a, a + w * 0.17267316464601146, a + w * 0.5, a + w * 0.8273268353539885,
                       a + w};
  double f[5];
  for (int i = 0; i < 5; i++) {
    f[i] = (*integrand)(x[i]);
    if (QXMV::IsMissing(f[i])) return QXMV::Missing();
  }
  return (f[4] * 0.05 + f[3] * 0.2722222222222222 + f[2] * 0.35555555555555557 +
          f[1] * 0.2722222222222222 + f[0] * 0.05) *
         w;
}

bool LobattoQuad::StopOuterLoop(int size, double left, double right, double width) const {
  return size == 0 || nIterations >= maxIter || (right - left) / width <= closeness;
}

bool LobattoQuad::StopInnerLoop(int k, double i0, double i1) const {
  if (k > maxSplits) return true;
  const double d = std::fabs(i1 - i0);
  if (absConvergence == 0.0) {
    const double m = std::max(std::fabs(i0), std::fabs(i1));
    if (m == 0.0) return true;
    return tolerance >= d / m;
  }
  return tolerance >= d;
}

double LobattoQuad::Fail() {
  warnings.AddWarning(QXStatus(kWarningFailure, true), QXWarnings::First);
  return QXMV::Missing();
}

double LobattoQuad::Integrate(double a, double b) {
  nIterations = 0;
  if (integrand == nullptr) return 0.0;
  IIntegrand& f = *integrand;

  // Pull the ends in to where the integrand falls below thr; it is taken to
  // vanish beyond. The pivot is evaluated first, so a missing value there
  // fails whatever the rest of the range looks like.
  bool failed = false;
  double left = a;
  if (adjustRight || adjustLeft) {
    const double p = boundaryPivot;
    const double fp = f(p);
    failed = QXMV::IsMissing(fp);
    const double thr = boundaryCoef * std::fabs(fp);
    if (!failed && adjustRight) b = PullEndIn(f, p, b, true, thr, failed);
    if (!failed && adjustLeft) left = PullEndIn(f, p, a, false, thr, failed);
  }
  if (failed) return Fail();
  if (!(b > a)) return 0.0;

  // The list starts from the original a; the adjusted left end enters only
  // through `left` and the width of the stop test.
  BoundsList list(this);
  list.Initialize(a, b);
  const double aAdjusted = left;
  const double width = b - aAdjusted;
  double sum = 0.0;
  int size = 1;
  double i0, i1;
  for (;;) {
    if (StopOuterLoop(size, left, b, width)) {
      if (nIterations >= maxIter) {
        list.Initialize(aAdjusted, b);
        list.ComputeI0andI1(i0, i1);
        if (QXMV::IsMissing(i0) || QXMV::IsMissing(i1)) return Fail();
        sum += i1;
        warnings.AddWarning(QXStatus(kWarningMaxIter, true), QXWarnings::First);
      }
      return sum;
    }
    list.ComputeI0andI1(i0, i1);
    if (QXMV::IsMissing(i0) || QXMV::IsMissing(i1)) return Fail();
    for (int k = 0; !StopInnerLoop(k, i0, i1); k++) {
      list.Split();
      list.ComputeI0andI1(i0, i1);
      if (QXMV::IsMissing(i0) || QXMV::IsMissing(i1)) return Fail();
    }
    nIterations += 1;
    sum += i1;
    size = list.Remove();
    if (size > 0) left = list.GetFirstLeft();
  }
}

void LobattoQuad::Display() const {
  using namespace QXDisplay_850;
  DisplayText(1, "LobattoQuad display start");
  DisplayD("Tolerance", tolerance);
  DisplayD("Check for absolute convergence indicator", absConvergence);
  DisplayI("Maximum number of iterations (in outer loop)", maxIter);
  DisplayI("Number of performed iterations", nIterations);
  DisplayI("Maximum number of splits (in inner loop)", maxSplits);
  DisplayD("Closeness ratio", closeness);
  DisplayText(1, "LobattoQuad display end");
}

}  // namespace QXMath_850
