#include "qx/charts/gainschart.h"

#include <algorithm>
#include <cmath>

#include "qx/charts/internal/chartxml.h"
#include "qx/foundation/qxmissingvalue.h"
#include "qx/markup/xmlelement.h"

namespace QXMath_850 {

using QXCommon_850::QXMV;

namespace {

double Ratio(double numerator, double denominator) {
  return denominator != 0.0 ? numerator / denominator : QXMV::Missing();
}

}  // namespace

GainsChart::GainsChart(const std::string& target, const std::string& text)
    : targetName(target),
      description(text),
      totalWeight(0.0),
      totalResponse(0.0),
      droppedCount(0.0) {}

GainsChart::~GainsChart() {}

bool GainsChart::AddCase(double score, double response, double weight) {
  if (QXMV::IsMissing(score) || !std::isfinite(score) || QXMV::IsMissing(response) ||
      !std::isfinite(response) || !std::isfinite(weight) || weight <= 0.0) {
    droppedCount += 1.0;
    return false;
  }
  cases.push_back({score, response, weight});
  totalWeight += weight;
  totalResponse += weight * response;
  return true;
}

double GainsChart::GetOverallRate() const {
  return Ratio(totalResponse, totalWeight);
}

void GainsChart::ClearTable() {
  for (std::vector<double>* column :
       {&rowCases, &rowResponses, &rates, &cumCases, &cumResponses, &cumPercent, &gains, &lifts,
        &indices, &minScores, &maxScores}) {
    column->clear();
  }
}

bool GainsChart::Compute(int nQuantiles) {
  ClearTable();
  if (nQuantiles < 1 || cases.empty()) return false;
  std::sort(cases.begin(), cases.end(),
            [](const Case& a, const Case& b) { return a.score > b.score; });
  // The total weight in ranked order places the quantiles' cuts.
  totalWeight = 0.0;
  for (const Case& c : cases)
    totalWeight += c.weight;
  if (!std::isfinite(totalWeight)) return false;
  const double mv = QXMV::Missing();
  const size_t n = static_cast<size_t>(nQuantiles);
  rowCases.assign(n, 0.0);
  rowResponses.assign(n, 0.0);
  minScores.assign(n, mv);
  maxScores.assign(n, mv);
  double above = 0.0;
  for (size_t i = 0; i < cases.size();) {
    size_t j = i;
    double groupWeight = 0.0, groupResponse = 0.0;
    for (; j < cases.size() && cases[j].score == cases[i].score; ++j) {
      groupWeight += cases[j].weight;
      groupResponse += cases[j].weight * cases[j].response;
    }
    const double middle = (above + 0.5 * groupWeight) / totalWeight * nQuantiles;
    const size_t q = std::min(n - 1, static_cast<size_t>(middle));
    rowCases[q] += groupWeight;
    rowResponses[q] += groupResponse;
    if (QXMV::IsMissing(maxScores[q])) maxScores[q] = cases[i].score;
    minScores[q] = cases[j - 1].score;
    above += groupWeight;
    i = j;
  }
  // The table's own sums, so that the last gain is 100 and the last lift 1.
  double cw = 0.0, cr = 0.0;
  for (size_t q = 0; q < n; ++q) {
    cw += rowCases[q];
    cr += rowResponses[q];
    cumCases.push_back(cw);
    cumResponses.push_back(cr);
  }
  totalWeight = cw;
  totalResponse = cr;
  const double overall = GetOverallRate();
  for (size_t q = 0; q < n; ++q) {
    rates.push_back(Ratio(rowResponses[q], rowCases[q]));
    cumPercent.push_back(100.0 * cumCases[q] / totalWeight);
    gains.push_back(totalResponse != 0.0 ? 100.0 * cumResponses[q] / totalResponse : mv);
    const double cumRate = Ratio(cumResponses[q], cumCases[q]);
    const bool noRate = QXMV::IsMissing(overall) || overall == 0.0;
    lifts.push_back(noRate || QXMV::IsMissing(cumRate) ? mv : cumRate / overall);
    indices.push_back(noRate || QXMV::IsMissing(rates[q]) ? mv : 100.0 * rates[q] / overall);
  }
  ComputeFromRanked();
  return true;
}

void GainsChart::AddStatistics(QXXML_850::QXVariateData& data) const {
  data.fStatNames.push_back("overallRate");
  data.fStatValues.push_back(GetOverallRate());
}

QXXML_850::QXVariateData GainsChart::GetVariateData() const {
  QXXML_850::QXVariateData data;
  data.fDescription = description;
  data.fCounts.push_back(internal::Counts(totalWeight, QXMV::Missing(), droppedCount, -1.0));
  data.fIsStringStats = false;
  AddStatistics(data);
  std::vector<double> quantile;
  for (int q = 1; q <= GetNQuantiles(); ++q)
    quantile.push_back(q);
  const std::string& f = targetName;
  data.fCoordinates = {internal::Coordinates("quantile", f, "", quantile),
                       internal::Coordinates("maxScore", f, "maximum", maxScores),
                       internal::Coordinates("minScore", f, "minimum", minScores),
                       internal::Coordinates("cases", f, "frequency", rowCases),
                       internal::Coordinates("responses", f, "sum", rowResponses),
                       internal::Coordinates("responseRate", f, "mean", rates),
                       internal::Coordinates("cumulativeCases", f, "percent", cumPercent),
                       internal::Coordinates("gain", f, "percent", gains),
                       internal::Coordinates("lift", f, "ratio", lifts),
                       internal::Coordinates("index", f, "percent", indices)};
  return data;
}

QXXML_850::XMLElement* GainsChart::GetStatXMLElem() const {
  return GetVariateData().GetMultiVariateDataElem();
}

}  // namespace QXMath_850
