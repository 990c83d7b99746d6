#include "linregreport.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace linreg {

namespace {

std::string Printf(const char* format, double value, int precision) {
  char text[64];
  std::snprintf(text, sizeof text, format, precision, value);
  return text;
}

std::string G(double value, int digits) {
  if (std::isnan(value)) return "NA";
  return Printf("%.*g", value, digits);
}

// A table: row names left-aligned, then columns right-aligned under their
// headings, and an optional last column left as it is.
std::string Table(const std::vector<std::string>& rows, const std::vector<std::string>& headings,
                  const std::vector<std::vector<std::string>>& columns,
                  const std::vector<std::string>& last) {
  std::size_t nameWidth = 0;
  for (const std::string& r : rows)
    nameWidth = std::max(nameWidth, r.size());
  std::vector<std::size_t> widths;
  for (std::size_t c = 0; c < columns.size(); ++c) {
    std::size_t w = headings[c].size();
    for (const std::string& cell : columns[c])
      w = std::max(w, cell.size());
    widths.push_back(w);
  }
  const auto pad = [](const std::string& s, std::size_t w, bool left) {
    const std::string fill(w > s.size() ? w - s.size() : 0, ' ');
    return left ? s + fill : fill + s;
  };
  std::string out = std::string(nameWidth, ' ');
  for (std::size_t c = 0; c < columns.size(); ++c)
    out += " " + pad(headings[c], widths[c], false);
  out += last.empty() ? "\n" : "    \n";
  for (std::size_t r = 0; r < rows.size(); ++r) {
    out += pad(rows[r], nameWidth, true);
    for (std::size_t c = 0; c < columns.size(); ++c)
      out += " " + pad(columns[c][r], widths[c], false);
    if (!last.empty()) out += " " + last[r];
    out += "\n";
  }
  return out;
}

const char* Stars(double p) {
  if (std::isnan(p)) return "   ";
  if (p < 0.001) return "***";
  if (p < 0.01) return "** ";
  if (p < 0.05) return "*  ";
  if (p < 0.1) return ".  ";
  return "   ";
}

// P-values as R's format.pval: those below double epsilon as "<" and the
// epsilon to fewer digits, the others formatted in two groups, those from
// 1e-3 (1e-4 with more than one digit) up in fixed notation together, the
// smaller ones together.
std::vector<std::string> FormatP(const std::vector<double>& p, int digits) {
  const double eps = 2.220446049250313e-16;
  std::vector<double> fixed, small;
  for (double v : p) {
    if (std::isnan(v) || v < eps) continue;
    const double expo = std::floor(std::log10(v > 0.0 ? v : 1e-50));
    (expo >= -3 || (expo == -4 && digits > 1) ? fixed : small).push_back(v);
  }
  const std::vector<std::string> fixedText = FormatColumn(fixed, digits);
  const std::vector<std::string> smallText = FormatColumn(small, digits);
  std::vector<std::string> out;
  std::size_t nc = 0, f = 0, s = 0;
  bool anyTiny = false;
  for (double v : p) {
    if (std::isnan(v)) {
      out.push_back("NA");
    } else if (v < eps) {
      out.push_back("");
      anyTiny = true;
    } else {
      const double expo = std::floor(std::log10(v > 0.0 ? v : 1e-50));
      out.push_back(expo >= -3 || (expo == -4 && digits > 1) ? fixedText[f++] : smallText[s++]);
      nc = std::max(nc, out.back().size());
    }
  }
  if (!anyTiny) return out;
  int d = std::max(1, digits - 2);
  std::string sep = d == 1 ? "" : " ";
  if (nc > 0) {
    if (d > 1 && d + 6 > static_cast<int>(nc)) d = std::max(1, static_cast<int>(nc) - 7);
    sep = d == 1 && nc <= 6 ? "" : " ";
  }
  const std::string tiny = "<" + sep + FormatColumn({eps}, d)[0];
  for (std::size_t i = 0; i < p.size(); ++i) {
    if (p[i] < eps) out[i] = tiny;
  }
  return out;
}

}  // namespace

std::vector<std::string> FormatColumn(const std::vector<double>& values, int digits) {
  // As R's formatReal: for each value the significant digits it needs (at
  // most `digits`, trailing zeros dropped), then the widths of the fixed and
  // the scientific forms of the whole column.
  int left = 1, right = 0, mantissa = 0, expWidth = 2;
  bool negative = false, any = false;
  for (double x : values) {
    if (!std::isfinite(x)) continue;
    any = true;
    negative = negative || x < 0.0;
    if (x == 0.0) continue;
    char text[40];
    std::snprintf(text, sizeof text, "%.*e", digits - 1, std::fabs(x));
    std::string m(text, std::strchr(text, 'e'));
    const int e10 = std::atoi(std::strchr(text, 'e') + 1);
    m.erase(std::remove(m.begin(), m.end(), '.'), m.end());
    while (m.size() > 1 && m.back() == '0')
      m.pop_back();
    const int sig = static_cast<int>(m.size());
    left = std::max(left, e10 + 1);
    right = std::max(right, sig - 1 - e10);
    mantissa = std::max(mantissa, sig - 1);
    if (std::abs(e10) >= 100) expWidth = 3;
  }
  right = std::min(right, 15);
  const int fixedWidth = (negative ? 1 : 0) + left + (right > 0 ? right + 1 : 0);
  const int sciWidth = (negative ? 1 : 0) + (mantissa > 0 ? mantissa + 2 : 1) + 2 + expWidth;
  std::vector<std::string> out;
  for (double x : values) {
    if (std::isnan(x)) {
      out.push_back("NA");
    } else if (std::isinf(x)) {
      out.push_back(x > 0 ? "Inf" : "-Inf");
    } else if (!any || fixedWidth <= sciWidth) {
      out.push_back(Printf("%.*f", x, right));
    } else {
      out.push_back(Printf("%.*e", x, mantissa));
    }
  }
  return out;
}

std::string SummaryText(const Fit& fit, const std::string& call) {
  std::string out = "\nCall:\n" + call + "\n\n";
  std::vector<std::string> names, stars;
  std::vector<double> estimate, tValue, pValue;
  for (const Term& t : fit.terms) {
    names.push_back(t.name);
    estimate.push_back(t.estimate);
    tValue.push_back(std::round(t.tValue * 1000.0) / 1000.0);
    pValue.push_back(t.pValue);
    stars.push_back(Stars(t.pValue));
  }
  // Estimates and standard errors are formatted as one column, as R does.
  std::vector<double> both = estimate;
  for (const Term& t : fit.terms)
    both.push_back(t.stdError);
  const std::vector<std::string> formatted = FormatColumn(both, 4);
  const std::vector<std::string> est(formatted.begin(), formatted.begin() + names.size());
  const std::vector<std::string> se(formatted.begin() + names.size(), formatted.end());
  out += "Coefficients:";
  if (!fit.aliased.empty()) {
    out += " (" + std::to_string(fit.aliased.size()) + " not defined because of singularities)";
  }
  out += "\n";
  out += Table(names, {"Estimate", "Std. Error", "t value", "Pr(>|t|)"},
               {est, se, FormatColumn(tValue, 4), FormatP(pValue, 3)}, stars);
  out += "---\nSignif. codes:  0 '***' 0.001 '**' 0.01 '*' 0.05 '.' 0.1 ' ' 1\n\n";
  out += "Residual standard error: " + G(fit.sigma, 4) + " on " + G(fit.dfResidual, 15) +
         " degrees of freedom\n";
  out += "Multiple R-squared:  " + G(fit.rSquared, 4) +
         ",\tAdjusted R-squared:  " + G(fit.adjRSquared, 4) + " \n";
  if (fit.dfModel > 0) {
    out += "F-statistic: " + G(fit.fValue, 4) + " on " + G(fit.dfModel, 15) + " and " +
           G(fit.dfResidual, 15) + " DF,  p-value: " + FormatP({fit.fPValue}, 4)[0] + "\n";
  }

  // The analysis of variance, the model's terms taken together.
  const double mss = fit.tss - fit.rss;
  const double dfTotal = fit.dfModel + fit.dfResidual;
  out += "\nAnalysis of variance:\n";
  out +=
      Table({"Regression", "Residuals", "Total"}, {"Df", "Sum Sq", "Mean Sq", "F value", "Pr(>F)"},
            {{G(fit.dfModel, 15), G(fit.dfResidual, 15), G(dfTotal, 15)},
             FormatColumn({mss, fit.rss, fit.tss}, 6),
             {FormatColumn({mss / fit.dfModel, fit.rss / fit.dfResidual}, 6)[0],
              FormatColumn({mss / fit.dfModel, fit.rss / fit.dfResidual}, 6)[1], ""},
             {G(fit.fValue, 5), "", ""},
             {FormatP({fit.fPValue}, 4)[0], "", ""}},
            {Stars(fit.fPValue), "", ""});

  // Confidence limits, as R's confint.
  std::vector<double> lower, upper;
  for (const Term& t : fit.terms) {
    lower.push_back(t.lower);
    upper.push_back(t.upper);
  }
  std::vector<double> bounds = lower;
  bounds.insert(bounds.end(), upper.begin(), upper.end());
  const std::vector<std::string> b = FormatColumn(bounds, 7);
  out += "\n95% confidence limits:\n";
  out += Table(names, {"2.5 %", "97.5 %"},
               {{b.begin(), b.begin() + names.size()}, {b.begin() + names.size(), b.end()}}, {});
  return out;
}

}  // namespace linreg

namespace linreg {

std::string RunNotes(const Fit& fit, const std::string& dataName) {
  std::string out = "\n";
  out += fit.method == Method::kQR ? "Fitted by Householder QR of the centred rows"
                                   : "Fitted by sweeping the cross-products";
  if (!fit.intercept) out += " (through the origin)";
  out += ", tolerance " + G(fit.tol, 3) + ".\n";
  if (fit.aliased.empty()) {
    out += "No predictor was aliased.\n";
  } else {
    out += "Aliased with the terms before them, and refused:";
    for (const std::string& name : fit.aliased)
      out += " " + name;
    out += "\n";
  }
  const QXXML_850::QXVarList& list = fit.dictionary;
  for (int v = 0; v < static_cast<int>(list.Size()); ++v) {
    const QXXML_850::IQXVariable* var = list.GetVarAt(v);
    const int k = list.GetEncoderAt(v)->GetNumberOfCategories();
    if (list.GetVariableRole(v) == QXXML_850::IQXVariable::RoleInput && k > 0 &&
        (var->GetMeasureLevel() == QXXML_850::IQXVariable::LevelStringCategorical ||
         var->GetMeasureLevel() == QXXML_850::IQXVariable::LevelNumericCategorical)) {
      out += "Reference category of " + var->GetVariableName() + ": '" +
             list.GetEncoderAt(v)->Decode(k - 1) + "' (" + std::to_string(k) + " categories).\n";
    }
  }
  out += "Cases of " + dataName + ": " + std::to_string(fit.rowsRead) + " read, " +
         std::to_string(fit.casesUsed) + " used";
  if (list.GetWeightIndex() >= 0) out += " (weights add up to " + G(fit.weightSum, 10) + ")";
  out += ", " + std::to_string(fit.casesDropped) + " dropped for a missing value";
  if (list.GetWeightIndex() >= 0) {
    out += ", " + std::to_string(fit.badWeights) + " with a weight not above 0";
  }
  out += ".\n";
  for (const QXCommon_850::QXStatus& w : fit.warnings.GetWarnings(true)) {
    if (w.GetErrorCode() == kNoResidualDf) {
      out += "Warning: no degrees of freedom are left for the error; standard errors are NA.\n";
    }
    if (w.GetErrorCode() == kPerfectFit) {
      out += "Warning: the fit is exact (the residual sum of squares is zero).\n";
    }
  }
  return out;
}

}  // namespace linreg
