#include "qx/accumulators/qxtimeutil.h"

#include <ctime>

#include "qx/foundation/qxcomponentdisplay.h"

namespace QXMath_850 {

namespace {

// clock() cut to 32 bits; differences taken the same way stay right across
// a wrap-around.
int Ticks() {
  return static_cast<int>(static_cast<unsigned int>(std::clock()));
}

int WrapAdd(int a, long long b) {
  return static_cast<int>(static_cast<unsigned int>(a) + static_cast<unsigned int>(b));
}

}  // namespace

QXTimeUtil::QXTimeUtil() : startTicks(Ticks()), accTicks(0), nCalls(0) {}

QXTimeUtil::QXTimeUtil(const std::string& label)
    : name(label), startTicks(Ticks()), accTicks(0), nCalls(0) {}

QXTimeUtil::~QXTimeUtil() = default;

void QXTimeUtil::Start() {
  startTicks = Ticks();
}

void QXTimeUtil::Accumulate() {
  accTicks = WrapAdd(accTicks, static_cast<long long>(Ticks()) - startTicks);
  nCalls = WrapAdd(nCalls, 1);
}

void QXTimeUtil::Decrement(int ticks) {
  accTicks = WrapAdd(accTicks, -static_cast<long long>(ticks));
}

void QXTimeUtil::Reset() {
  startTicks = Ticks();
  accTicks = 0;
  nCalls = 0;
}

void QXTimeUtil::GetTime(int& ticks, double& seconds, int& calls) const {
  ticks = accTicks;
  seconds = accTicks / 1e6;
  calls = nCalls;
}

void QXTimeUtil::Display() const {
  using namespace QXDisplay_850;
  DisplayText(1, "QXTimeUtil display start ");
  DisplayI("Accumulated int milliseconds", accTicks);
  DisplayI("Number of calls", nCalls);
  DisplayText(1, "QXTimeUtil display end");
}

}  // namespace QXMath_850
