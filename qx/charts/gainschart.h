#ifndef QX_CHARTS_GAINSCHART_H
#define QX_CHARTS_GAINSCHART_H

#include <string>
#include <vector>

#include "qx/documents/qxvariatedata.h"
#include "qx/foundation/qxexport.h"

namespace QXXML_850 {
class XMLElement;
}

namespace QXMath_850 {

// The gains table of a scored data set: the cases ranked by the model's score,
// best first, cut into quantiles of equal weight, and for each quantile how
// much of the response it holds. Classifiers (ClassGainsChart) and regression
// models (RegGainsChart) report it after scoring their data; the two differ
// only in what a case's response is. The caller adds cases, calls Compute and
// reads the columns or writes them as StatXML.
//
// Rows, one per quantile, best scores first; all amounts are weighted:
//   cases           the weight of the quantile's cases;
//   responses       the weighted sum of their responses;
//   response rate   responses / cases;
//   cumulative      cases and responses of this and all better quantiles,
//                   and the cumulative cases as a percentage of all cases;
//   gain            cumulative responses as a percentage of all responses;
//   lift            cumulative response rate / overall response rate;
//   index           100 * response rate / overall response rate.
// A quantile without cases has the missing value as its rate and index; a
// ratio whose divisor is zero (no responses at all) is the missing value.
//
// Ties: cases of equal score are never split. A group of tied cases goes
// whole to the quantile that holds the middle of its weight: with W the total
// weight, B the weight ranked above the group and G the group's, to quantile
// floor((B + G/2) / W * n), the last if that reaches n. With distinct scores
// and unit weights this is the usual cut into n groups of equal size; with
// ties some quantiles hold more than their share and some may stay empty,
// which is what a ranking by score can honestly say.
//
// Compute sorts the cases once, O(n log n), and keeps them; further cases may
// be added and Compute called again.
class QXCOMMON_API GainsChart {
 public:
  virtual ~GainsChart();

  // Builds the table of nQuantiles rows (10 gives deciles). False, leaving the
  // table empty, when nQuantiles is below 1, no case has been added or the
  // total weight overflows.
  bool Compute(int nQuantiles = 10);

  const std::string& GetTargetName() const { return targetName; }
  // Weight of the cases kept, and of those dropped (bad score or response).
  double GetTotalWeight() const { return totalWeight; }
  double GetTotalResponse() const { return totalResponse; }
  double GetOverallRate() const;
  double GetDroppedCount() const { return droppedCount; }
  long GetNCases() const { return static_cast<long>(cases.size()); }

  // The columns of the last Compute, one element per quantile.
  int GetNQuantiles() const { return static_cast<int>(rowCases.size()); }
  const std::vector<double>& GetCases() const { return rowCases; }
  const std::vector<double>& GetResponses() const { return rowResponses; }
  const std::vector<double>& GetResponseRates() const { return rates; }
  const std::vector<double>& GetCumulativeCases() const { return cumCases; }
  const std::vector<double>& GetCumulativeResponses() const { return cumResponses; }
  const std::vector<double>& GetCumulativePercentCases() const { return cumPercent; }
  const std::vector<double>& GetGains() const { return gains; }
  const std::vector<double>& GetLifts() const { return lifts; }
  const std::vector<double>& GetIndices() const { return indices; }
  // The lowest and highest score in each quantile (missing when empty).
  const std::vector<double>& GetMinScores() const { return minScores; }
  const std::vector<double>& GetMaxScores() const { return maxScores; }

  // The table as a section: counts (total weight, dropped cases), the
  // statistics of the kind of chart, and one coordinates object per column.
  QXXML_850::QXVariateData GetVariateData() const;
  // A new "MultivariateData" element of that section, owned by the caller.
  QXXML_850::XMLElement* GetStatXMLElem() const;
  void Display() const { GetVariateData().Display(); }

 protected:
  GainsChart(const std::string& targetName, const std::string& description);

  // One case; false, counting it as dropped, when the score or the response
  // is missing or not finite or the weight isn't a positive finite number.
  bool AddCase(double score, double response, double weight);
  // Called by Compute with the cases sorted by descending score, for what a
  // kind of chart measures beyond the table.
  virtual void ComputeFromRanked() {}
  // The statistics that the kind of chart adds to its section.
  virtual void AddStatistics(QXXML_850::QXVariateData& data) const;

  struct Case {
    double score;
    double response;
    double weight;
  };
  std::vector<Case> cases;  // sorted by descending score after Compute

 private:
  void ClearTable();

  std::string targetName;
  std::string description;
  double totalWeight;
  double totalResponse;
  double droppedCount;
  std::vector<double> rowCases, rowResponses, rates, cumCases, cumResponses, cumPercent, gains,
      lifts, indices, minScores, maxScores;
};

}  // namespace QXMath_850

#endif  // QX_CHARTS_GAINSCHART_H
