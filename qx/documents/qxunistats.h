#ifndef QX_DOCUMENTS_QXUNISTATS_H
#define QX_DOCUMENTS_QXUNISTATS_H

#include <string>
#include <vector>

#include "qx/foundation/qxexport.h"

namespace QXMath_850 {

// The univariate summary of one field that a component fills from its data,
// case by case, and exports with QXPMMLExporter::ExportUniStats or shows in a
// chart. A continuous field gets its minimum, maximum, mean and standard
// deviation, and, when given cut points, the frequencies of the intervals
// between neighbouring cut points; a categorical field gets the frequency of
// each category code. Summaries of parts of the data merge into one.
class QXCOMMON_API QXUniStats {
 public:
  // A continuous field without intervals.
  explicit QXUniStats(const std::string& varName);
  // A continuous field whose values are also counted over the k - 1
  // intervals between k ascending cut points: (c[j], c[j+1]] if openLeft,
  // otherwise [c[j], c[j+1]). A value outside them counts in the statistics
  // but in no interval. Cut points not strictly ascending make it invalid.
  QXUniStats(const std::string& varName, const std::vector<double>& cutPoints, bool openLeft);
  // A categorical field of category codes 0, 1, ...: the frequencies start
  // with nCategories zeros and grow to hold a larger code. A negative count
  // makes it invalid.
  QXUniStats(const std::string& varName, int nCategories);
  virtual ~QXUniStats();

  // One case. A weight that isn't a positive finite number drops the case.
  // A value that is the missing-value sentinel or not finite (for a
  // categorical field also a negative code, as the encoders give for missing
  // values) adds the weight to the missing frequency only. A category code
  // is truncated to a whole number. True if the value was counted.
  bool Update(double value, double weight = 1.0);
  // Adds another summary of the same field, kind, cut points and closure;
  // false, and nothing changes, if they differ or either is invalid.
  bool Merge(const QXUniStats& other);
  // Statistics computed elsewhere, replacing those accumulated: the number
  // of cases, minimum, maximum, mean and standard deviation (the sentinel
  // where unknown) and the frequencies (one per interval, or per category).
  // False, and nothing changes, if summStats doesn't hold four numbers or
  // the frequencies don't fit the intervals. Such a summary takes no more
  // cases and no merges.
  bool SetResults(double numberOfCases, const std::vector<double>& summStats,
                  const std::vector<double>& frequencies);

  bool IsValid() const;
  const std::string& GetVarName() const;
  // The weighted number of cases, missing values included.
  double GetNumberOfCases() const;
  double GetMissingFreq() const;
  bool IsCategorical() const;
  const std::vector<double>& GetFrequencies() const;
  const std::vector<double>& GetCutPoints() const;
  bool AreIntervalsOpenLeft() const;
  // Minimum, maximum, mean and standard deviation (divisor: the sum of
  // weights less one), each the missing-value sentinel when unknown, as all
  // four are for a categorical field.
  std::vector<double> GetSummStats() const;

  // The accumulated numbers as one array, for pooling across processes: the
  // number of cases, the missing frequency, the weight of the values counted,
  // minimum, maximum, mean, the sum of squared deviations, then the
  // frequencies. False, with `out` empty, for an invalid summary or one given
  // by SetResults. The name, kind and cut points are not part of it.
  bool GetState(std::vector<double>& out) const;
  // Puts back a state from GetState of a summary of the same kind and cut
  // points; false, and nothing changes, if this summary can't take cases or
  // the frequencies don't fit (one per interval; any number of categories).
  bool SetState(const std::vector<double>& state);

 private:
  void CountInterval(double value, double weight);

  std::string varName;
  bool valid;
  bool categorical;
  bool openLeft;
  std::vector<double> cutPoints;
  std::vector<double> frequencies;
  double totalFreq;
  double missingFreq;
  double validWeight;  // sum of the weights of the values counted
  double minimum;
  double maximum;
  double mean;
  double sumSquares;  // of deviations from the mean, weighted
  bool fixedResults;  // SetResults gave the summary
  double fixedStdDev;
};

}  // namespace QXMath_850

#endif  // QX_DOCUMENTS_QXUNISTATS_H
