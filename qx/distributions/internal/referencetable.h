#ifndef QX_DISTRIBUTIONS_INTERNAL_REFERENCETABLE_H
#define QX_DISTRIBUTIONS_INTERNAL_REFERENCETABLE_H

// Reading the checked-in reference tables of the distribution functions
// (testdata/*.txt, written by testdata/reference.py) and measuring the
// library's error against them in units of double epsilon. Shared by the
// accuracy tests and the accuracy tool; never installed.

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <limits>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "qx/foundation/qxmissingvalue.h"

namespace QXMath_850 {
namespace internal {

struct ReferenceCase {
  std::string region;
  std::vector<double> args;
  long double expected = 0.0L;
  bool missing = false;
};

// All cases of one table, in file order; empty if the file can't be read.
inline std::vector<ReferenceCase> ReadReferenceTable(const std::string& path) {
  std::vector<ReferenceCase> cases;
  std::ifstream in(path);
  std::string line;
  while (std::getline(in, line)) {
    if (line.empty() || line[0] == '#') continue;
    std::istringstream fields(line);
    std::vector<std::string> words;
    std::string word;
    while (fields >> word)
      words.push_back(word);
    if (words.size() < 3) continue;
    ReferenceCase c;
    c.region = words[0];
    for (size_t i = 1; i + 1 < words.size(); i++)
      c.args.push_back(std::strtod(words[i].c_str(), nullptr));
    if (words.back() == "missing") {
      c.missing = true;
    } else {
      c.expected = std::strtold(words.back().c_str(), nullptr);
    }
    cases.push_back(c);
  }
  return cases;
}

// |got - expected| / |expected| in units of double epsilon, computed in long
// double; with `absolute`, |got - expected| in epsilons. An expected 0 counts
// the absolute error; an expected below the smallest normal double is
// measured against that smallest normal. A missing value where a number is
// expected (or the reverse), a NaN or an infinity where a finite value is
// expected is an infinite error.
inline double ErrorInEpsilons(double got, const ReferenceCase& c, bool absolute = false) {
  const double inf = std::numeric_limits<double>::infinity();
  const bool gotMissing = QXCommon_850::QXMV::IsMissing(got);
  if (c.missing) return gotMissing ? 0.0 : inf;
  if (gotMissing || !std::isfinite(got)) return inf;
  const long double eps = std::numeric_limits<double>::epsilon();
  const long double diff = std::fabs(static_cast<long double>(got) - c.expected);
  if (absolute || c.expected == 0.0L) return static_cast<double>(diff / eps);
  const long double scale =
      std::max(std::fabs(c.expected), static_cast<long double>(std::numeric_limits<double>::min()));
  return static_cast<double>(diff / scale / eps);
}

// The largest, median and root-mean-square of a set of errors.
struct ErrorSummary {
  size_t count = 0;
  double max = 0.0;
  double median = 0.0;
  double rms = 0.0;
};

inline ErrorSummary Summarise(std::vector<double> errors) {
  ErrorSummary s;
  s.count = errors.size();
  if (errors.empty()) return s;
  std::sort(errors.begin(), errors.end());
  s.max = errors.back();
  s.median = errors[errors.size() / 2];
  double sum = 0.0;
  for (double e : errors)
    sum += std::isfinite(e) ? e * e : 0.0;
  s.rms = std::sqrt(sum / errors.size());
  return s;
}

using Evaluator = std::function<double(const std::vector<double>&)>;

}  // namespace internal
}  // namespace QXMath_850

#endif  // QX_DISTRIBUTIONS_INTERNAL_REFERENCETABLE_H
