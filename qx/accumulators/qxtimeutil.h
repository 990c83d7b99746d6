#ifndef QX_ACCUMULATORS_QXTIMEUTIL_H
#define QX_ACCUMULATORS_QXTIMEUTIL_H

#include <string>

#include "qx/foundation/qxexport.h"

namespace QXMath_850 {

// Processor time spent in one named stage of a computation, summed over the
// stretches between Start and Accumulate, in ticks of clock(). Components
// time their phases with it; the sums wrap around at 32 bits.
class QXCOMMON_API QXTimeUtil {
 public:
  QXTimeUtil();
  explicit QXTimeUtil(const std::string& name);
  virtual ~QXTimeUtil();

  // Marks the start of a stretch.
  void Start();
  // Adds the ticks since the last Start and counts a call. The start mark
  // stays, so two calls without a Start between them count the first
  // stretch twice.
  void Accumulate();
  // Takes ticks off the sum, for time spent elsewhere inside a stretch.
  void Decrement(int ticks);
  // A new start mark and zero sums.
  void Reset();

  // The ticks, the ticks / 1e6 (seconds when clock() counts microseconds)
  // and the number of calls.
  void GetTime(int& ticks, double& seconds, int& calls) const;
  const std::string& GetName() const { return name; }

  void Display() const;

 private:
  std::string name;
  int startTicks;
  int accTicks;
  int nCalls;
};

}  // namespace QXMath_850

#endif  // QX_ACCUMULATORS_QXTIMEUTIL_H
