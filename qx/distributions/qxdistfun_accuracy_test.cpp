// Accuracy of the distribution functions against the 50-digit reference
// tables in testdata/, with budgets in double epsilons per function and
// region for the largest and the root-mean-square error. The table-driven
// special functions (derf, dnlgam, probit) are held to 2 epsilons. Elsewhere
// the budgets are 1.5 times the errors measured when the tables were made
// (qxdistfun_accuracy --budgets), so that a loss of accuracy fails whether it
// is one case far out or many cases a little; the README's accuracy table
// says where those errors come from (stopping rules of the iterations,
// logarithms of large arguments, the normal approximations for extreme
// parameters).
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "qx/distributions/internal/referencefunctions.h"

namespace QXMath_850 {
namespace {

using internal::ErrorInEpsilons;
using internal::ReferenceCase;
using internal::ReferenceFunction;

struct Budget {
  const char* table;
  const char* region;
  double maxEps;
  double rmsEps;
};

// Every region of every table must be listed here: the largest and the
// root-mean-square error allowed, in epsilons.
const Budget kBudgets[] = {
    {"derf", "small", 2, 2},
    {"derf", "a", 2, 2},
    {"derf", "switch", 2, 2},
    {"derf", "b", 2, 2},
    {"derfc", "negative", 4, 2},
    {"derfc", "centre", 4.7, 2},
    {"derfc", "tail", 23, 6.2},
    {"derfc", "far", 6.8e+02, 1.7e+02},
    {"dnlgam", "tiny", 2, 2},
    {"dnlgam", "a", 2, 2},
    {"dnlgam", "b", 2.3, 2},
    {"dnlgam", "roots", 2, 2},
    {"dnlgam", "switch", 2, 2},
    {"dnlgam", "c", 2, 2},
    {"dnlgam", "stirling", 2, 2},
    {"dnlgam", "invalid", 2, 2},
    {"cdfstdnorm", "centre", 12, 2.2},
    {"cdfstdnorm", "upper", 2, 2},
    {"cdfstdnorm", "lower", 1.2e+02, 33},
    {"cdfstdnorm", "far", 1.2e+03, 3.9e+02},
    {"idfstdnorm", "centre", 3.2, 2},
    {"idfstdnorm", "tail", 3.4, 2},
    {"idfstdnorm", "far", 2.6, 2},
    {"idfstdnorm", "invalid", 2, 2},
    {"pdfnormalstandard", "centre", 3, 2},
    {"pdfnormalstandard", "tail", 3.2e+02, 94},
    {"cdft", "centre", 3.3e+03, 3.8e+02},
    {"cdft", "tail", 1.5e+11, 1.9e+10},
    {"cdft", "extreme", 1.4e+12, 2e+11},
    {"cdft", "invalid", 2, 2},
    {"sigt", "centre", 3.3e+03, 3.8e+02},
    {"sigt", "tail", 1.5e+11, 1.9e+10},
    {"sigt", "extreme", 1.2e+10, 3.2e+09},
    {"sigt", "invalid", 2, 2},
    {"idft", "centre", 1.3e+12, 1.2e+11},
    {"idft", "tail", 1.8e+11, 4.3e+10},
    {"idft", "extreme", 2.1e+10, 8.5e+09},
    {"idft", "invalid", 2, 2},
    {"pdft", "centre", 3.1e+03, 8.8e+02},
    {"pdft", "tail", 3.2e+03, 7.3e+02},
    {"pdft", "extreme", 8.5e+09, 5.3e+09},
    {"pdft", "invalid", 2, 2},
    {"cdff", "tail", 1.9e+07, 2.4e+06},
    {"cdff", "centre", 3.7e+02, 73},
    {"cdff", "extreme", 5.7e+08, 8e+07},
    {"cdff", "invalid", 2, 2},
    {"sigf", "tail", 6.3e+02, 1.1e+02},
    {"sigf", "centre", 7.6e+02, 1.1e+02},
    {"sigf", "extreme", 1.3e+05, 3.8e+04},
    {"sigf", "invalid", 2, 2},
    {"idff", "tail", 1.4e+12, 2.5e+11},
    {"idff", "centre", 4.1e+08, 3.6e+07},
    {"idff", "extreme", 3.9e+15, 6.5e+14},
    {"idff", "invalid", 2, 2},
    {"cdfchi", "centre", 2.9e+02, 39},
    {"cdfchi", "tail", 5.2e+02, 1.3e+02},
    {"cdfchi", "extreme", 1.5e+06, 2.7e+05},
    {"cdfchi", "invalid", 2, 2},
    {"sigchi", "centre", 2.3e+02, 54},
    {"sigchi", "tail", 8.3e+02, 2.1e+02},
    {"sigchi", "extreme", 1.5e+06, 2.7e+05},
    {"sigchi", "invalid", 2, 2},
    {"idfchi", "centre", 1.2e+02, 31},
    {"idfchi", "tail", 3.1e+08, 5.4e+07},
    {"idfchi", "extreme", 1.9e+08, 8.3e+07},
    {"idfchi", "invalid", 2, 2},
    {"cdfbeta", "centre", 3.8e+03, 4.4e+02},
    {"cdfbeta", "tail", 1.6e+06, 1.1e+05},
    {"cdfbeta", "extreme", 1.6e+06, 8.5e+05},
    {"cdfbeta", "invalid", 2, 2},
    {"idfbeta", "centre", 4.1e+10, 4.6e+09},
    {"idfbeta", "tail", 4.9e+11, 6.9e+10},
    {"cdfgam", "centre", 8.6, 2.9},
    {"cdfgam", "tail", 2.1e+02, 83},
    {"cdfgam", "invalid", 2, 2},
    {"idfgam", "centre", 74, 21},
    {"idfgam", "tail", 6.2e+06, 3.4e+06},
    {"pdfgamma", "centre", 1.2e+02, 27},
    {"pdfgamma", "tail", 2e+02, 1.5e+02},
    {"pdfgamma", "invalid", 2, 2},
    {"noncentralcdfchi", "centre", 5.8e+03, 2.1e+03},
    {"noncentralcdfchi", "tail", 5.6e+03, 2.9e+03},
    {"noncentralcdfchi", "extreme", 6.9e+03, 4.2e+03},
    {"noncentralcdfchi", "invalid", 2, 2},
    {"noncentralcdff", "centre", 6e+03, 2.2e+03},
    {"noncentralcdff", "tail", 6.8e+03, 1.7e+03},
    {"noncentralcdff", "invalid", 2, 2},
    {"noncentralcdft", "centre", 7.4e+03, 2.3e+03},
    {"noncentralcdft", "tail", 5.1e+03, 1.3e+03},
    {"noncentralcdft", "invalid", 2, 2},
    {"noncentralpdft", "same", 1.3e+05, 2.5e+04},
    {"noncentralpdft", "opposite", 4.9e+03, 9.8e+02},
    {"noncentralpdft", "invalid", 2, 2},
    {"pdfbin", "tail", 1.7e+03, 3.3e+02},
    {"pdfbin", "centre", 4.9e+03, 6.6e+02},
    {"pdfbin", "extreme", 1.3e+06, 4.5e+05},
    {"pdfbin", "invalid", 2, 2},
    {"cdfbin", "tail", 1.9e+03, 3.8e+02},
    {"cdfbin", "centre", 1.9e+03, 3.5e+02},
    {"cdfbin", "extreme", 1.3e+06, 6.2e+05},
    {"cdfbin", "invalid", 2, 2},
    {"pdfhyper", "centre", 1.4e+06, 4.4e+05},
    {"pdfhyper", "tail", 1.1e+06, 3.4e+05},
    {"pdfhyper", "invalid", 2, 2},
    {"cdfhyper", "centre", 1.4e+06, 4.2e+05},
    {"cdfhyper", "tail", 1.9e+04, 6.3e+03},
    {"cdfhyper", "normal", 1.8e+98, 7.3e+97},
    {"cdfhyper", "invalid", 2, 2},
    {"dnlbnc", "small", 2, 2},
    {"dnlbnc", "large", 8.2e+07, 2.9e+07},
    {"dnlbnc", "invalid", 2, 2},
    {"digamma", "small", 2.8e+05, 2e+05},
    {"digamma", "centre", 2.6e+05, 2.1e+04},
    {"digamma", "root", 6.3e+08, 3.1e+08},
    {"digamma", "invalid", 2, 2},
    {"trigamma", "small", 9e+07, 4.6e+07},
    {"trigamma", "centre", 3.2e+04, 2.6e+03},
    {"trigamma", "invalid", 2, 2},
};

std::string TestData() {
  return std::string(QX_TEST_SOURCE_DIR) + "/testdata/";
}

TEST(QXDistFunAccuracyTest, EveryFunctionMeetsItsBudgetPerRegion) {
  std::map<std::pair<std::string, std::string>, const Budget*> budgets;
  for (const Budget& b : kBudgets)
    budgets[{b.table, b.region}] = &b;
  for (const ReferenceFunction& f : internal::ReferenceFunctions()) {
    const std::vector<ReferenceCase> cases =
        internal::ReadReferenceTable(TestData() + f.table + ".txt");
    ASSERT_FALSE(cases.empty()) << "no reference table for " << f.name;
    struct Region {
      std::vector<double> errors;
      const ReferenceCase* worst = nullptr;
      double worstError = -1.0;
    };
    std::map<std::string, Region> regions;
    for (const ReferenceCase& c : cases) {
      Region& r = regions[c.region];
      r.errors.push_back(ErrorInEpsilons(f.evaluate(c.args), c, f.absolute));
      if (!(r.errors.back() <= r.worstError)) {
        r.worstError = r.errors.back();
        r.worst = &c;
      }
    }
    for (const auto& entry : regions) {
      const internal::ErrorSummary s = internal::Summarise(entry.second.errors);
      std::string args;
      for (double a : entry.second.worst->args)
        args += " " + testing::PrintToString(a);
      const auto budget = budgets.find({f.table, entry.first});
      if (budget == budgets.end()) {
        ADD_FAILURE() << f.name << " region " << entry.first << ": no budget; largest " << s.max
                      << " eps at" << args << ", rms " << s.rms;
        continue;
      }
      EXPECT_LE(s.max, budget->second->maxEps)
          << f.name << " region " << entry.first << ", largest error at" << args;
      EXPECT_LE(s.rms, budget->second->rmsEps) << f.name << " region " << entry.first;
    }
  }
}

}  // namespace
}  // namespace QXMath_850
