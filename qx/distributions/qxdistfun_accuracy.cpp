// Prints the error of the distribution functions against their 50-digit
// reference tables (testdata/*.txt) in units of double epsilon: per function
// and region the number of cases and the largest, median and root-mean-square
// relative error. This is the source of the README's accuracy table.
//
// Usage: qxdistfun_accuracy [testdata folder] [option]
//   --markdown          one table row per function (median, largest in the
//                       centre and overall, region of the largest), as in
//                       the README
//   --budgets           error budgets for the accuracy test: 1.5 times the
//                       largest and the root-mean-square error of each
//                       region, at least 2 epsilons
//   --cases T E         every case of table T whose error reaches E epsilons

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "qx/distributions/internal/referencefunctions.h"

namespace {

using namespace QXMath_850::internal;

std::string Cell(double e) {
  char text[32];
  if (!std::isfinite(e)) {
    std::snprintf(text, sizeof text, "inf");
  } else if (e >= 1000) {
    std::snprintf(text, sizeof text, "%.2g", e);
  } else {
    std::snprintf(text, sizeof text, "%.2f", e);
  }
  return text;
}

// 1.5 times e rounded up to two significant digits, at least 2.
double Budget(double e) {
  double b = std::max(2.0, 1.5 * e);
  const double unit = std::pow(10.0, std::floor(std::log10(b)) - 1);
  return std::ceil(b / unit) * unit;
}

struct Region {
  std::string name;
  std::vector<double> errors;
};

// Errors of one function, by region in the order of the table.
std::vector<Region> Measure(const ReferenceFunction& f, const std::vector<ReferenceCase>& cases) {
  std::vector<Region> regions;
  std::map<std::string, size_t> index;
  for (const ReferenceCase& c : cases) {
    auto at = index.find(c.region);
    if (at == index.end()) {
      at = index.emplace(c.region, regions.size()).first;
      regions.push_back({c.region, {}});
    }
    regions[at->second].errors.push_back(ErrorInEpsilons(f.evaluate(c.args), c, f.absolute));
  }
  return regions;
}

}  // namespace

int main(int argc, char** argv) {
  std::string folder = QX_DISTRIBUTIONS_TESTDATA;
  std::string mode = "plain", detailTable;
  double detailMin = 0.0;
  for (int i = 1; i < argc; i++) {
    if (std::strcmp(argv[i], "--markdown") == 0 || std::strcmp(argv[i], "--budgets") == 0) {
      mode = argv[i] + 2;
    } else if (std::strcmp(argv[i], "--cases") == 0 && i + 2 < argc) {
      mode = "cases";
      detailTable = argv[i + 1];
      detailMin = std::atof(argv[i + 2]);
      i += 2;
    } else {
      folder = argv[i];
    }
  }

  if (mode == "markdown") {
    std::printf(
        "| Function | Cases | Median (eps) | Largest, centre (eps) | Largest (eps) | Region of "
        "the largest |\n|---|---:|---:|---:|---:|---|\n");
  } else if (mode == "plain") {
    std::printf("%-18s %-10s %6s %10s %10s %10s\n", "function", "region", "cases", "max eps",
                "median", "rms");
  }
  int unread = 0;
  for (const ReferenceFunction& f : ReferenceFunctions()) {
    if (mode == "cases" && f.table != detailTable) continue;
    const std::vector<ReferenceCase> cases = ReadReferenceTable(folder + "/" + f.table + ".txt");
    if (cases.empty()) {
      std::fprintf(stderr, "cannot read %s/%s.txt\n", folder.c_str(), f.table.c_str());
      unread++;
      continue;
    }
    if (mode == "cases") {
      for (const ReferenceCase& c : cases) {
        const double got = f.evaluate(c.args);
        const double err = ErrorInEpsilons(got, c, f.absolute);
        if (err < detailMin) continue;
        std::printf("%-9s", c.region.c_str());
        for (double a : c.args)
          std::printf(" %.17g", a);
        std::printf("  got %.17g want %.20Lg  err %.4g eps\n", got, c.expected, err);
      }
      continue;
    }
    const std::vector<Region> regions = Measure(f, cases);
    if (mode == "markdown") {
      std::vector<double> all;
      std::string worstRegion, centre = "-";
      double worst = -1;
      for (const Region& r : regions) {
        all.insert(all.end(), r.errors.begin(), r.errors.end());
        const ErrorSummary s = Summarise(r.errors);
        if (r.name == "centre") centre = Cell(s.max);
        if (s.max > worst) {
          worst = s.max;
          worstRegion = r.name;
        }
      }
      const ErrorSummary s = Summarise(all);
      std::printf("| `%s` | %zu | %s | %s | %s | %s |\n", f.name.c_str(), s.count,
                  Cell(s.median).c_str(), centre.c_str(), Cell(s.max).c_str(), worstRegion.c_str());
      continue;
    }
    for (const Region& r : regions) {
      const ErrorSummary s = Summarise(r.errors);
      if (mode == "budgets") {
        std::printf("    {\"%s\", \"%s\", %.2g, %.2g},\n", f.table.c_str(), r.name.c_str(),
                    Budget(s.max), Budget(s.rms));
      } else {
        std::printf("%-18s %-10s %6zu %10s %10s %10s\n", f.name.c_str(), r.name.c_str(), s.count,
                    Cell(s.max).c_str(), Cell(s.median).c_str(), Cell(s.rms).c_str());
      }
    }
  }
  return unread == 0 ? 0 : 1;
}
