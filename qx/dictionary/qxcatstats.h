#ifndef QX_DICTIONARY_QXCATSTATS_H
#define QX_DICTIONARY_QXCATSTATS_H

#include <vector>

#include "qx/foundation/qxexport.h"

namespace QXMath_850 {

// Weighted counts of the categories of one field during a pass over the
// data, indexed by code; the vector grows to the highest code seen. Partial
// counts of separate passes are joined with Pool.
class QXCOMMON_API QXCatStats {
 public:
  // Adds the weight (1.0 if not above 0.0) to the category of the code,
  // truncated to a whole number. False, and nothing counted, for a missing
  // or negative code, or a missing weight.
  bool Update(double code, double weight);
  void Pool(const QXCatStats& other);
  // With includeEmpty, every category up to the highest code. Without, a
  // scan that drops empty categories against a bound that shrinks as it
  // drops them, so empty ones near the end can stay uncounted: counts
  // 0, 0, 0, 5, 5, 0 give 3.
  int GetNCategories(bool includeEmpty) const;
  double GetSumCounts() const;
  // 0.0 beyond the highest code.
  double GetCatCount(unsigned int code) const;
  const std::vector<double>& GetCatCounts() const;
  void Display() const;

 private:
  std::vector<double> counts;
};

}  // namespace QXMath_850

#endif  // QX_DICTIONARY_QXCATSTATS_H
