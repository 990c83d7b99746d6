// The plain-text report of a fit, laid out as R's summary(lm(...)) prints
// it (the coefficient table with significance stars, the residual standard
// error, R squared and the F test), followed by the analysis of variance,
// the 95% confidence limits, and how the fit was made.
#ifndef QX_EXAMPLES_LINREG_LINREGREPORT_H
#define QX_EXAMPLES_LINREG_LINREGREPORT_H

#include <string>
#include <vector>

#include "linreg.h"

namespace linreg {

// `call` stands where R shows the call, for instance the command line.
std::string SummaryText(const Fit& fit, const std::string& call);

// How the fit was made: the method and tolerance, the aliased terms, the
// reference categories, the cases used and dropped, the warnings.
std::string RunNotes(const Fit& fit, const std::string& dataName);

// Values as R's format() shows a numeric vector with `digits` significant
// digits: one common number of decimals, or scientific notation for all
// when that is narrower; NaN as "NA".
std::vector<std::string> FormatColumn(const std::vector<double>& values, int digits);

}  // namespace linreg

#endif  // QX_EXAMPLES_LINREG_LINREGREPORT_H
