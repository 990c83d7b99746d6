// Calls per second of the main distribution functions over the arguments of
// their reference tables (testdata/), which include extreme arguments on
// purpose, and over ordinary arguments (the degrees of freedom, shapes and
// probabilities of everyday tests); where R's standalone math library was
// found at configure time, the same arguments through its functions in the
// same run. The ratio table at the end compares the two.

#include <benchmark/benchmark.h>

#include <functional>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "qx/distributions/internal/referencetable.h"
#include "qx/distributions/qxdistfun.h"
#include "qx/foundation/internal/benchmarkratio.h"

#if defined(QX_HAVE_RMATH)
#include <Rmath.h>
#endif

namespace QXMath_850 {
namespace {

using Args = std::vector<double>;
using Fn = std::function<double(const Args&)>;

// Ordinary arguments: t within 4, probabilities across (0, 1) with the usual
// test levels among them, whole degrees of freedom from 1 to 1000 and shapes
// from 0.5 to 50, 2000 of each kind from a fixed seed.
std::vector<Args> OrdinaryGrid(const std::string& kind) {
  static const double dfs[] = {1, 2, 3, 4, 5, 8, 10, 15, 20, 30, 50, 100, 1000};
  static const double levels[] = {0.005, 0.01, 0.025, 0.05, 0.1, 0.9, 0.95, 0.975, 0.99, 0.995};
  static const double shapes[] = {0.5, 1.5, 2, 3, 5, 10, 20, 50};
  std::mt19937 random(2024);
  std::uniform_real_distribution<double> uniform(0.0, 1.0);
  const auto pick = [&](const auto& values) {
    return values[random() % (sizeof values / sizeof values[0])];
  };
  std::vector<Args> args;
  for (int i = 0; i < 2000; ++i) {
    const double p = i % 2 == 0 ? pick(levels) : 0.001 + 0.998 * uniform(random);
    if (kind == "cdft") args.push_back({8.0 * uniform(random) - 4.0, pick(dfs)});
    if (kind == "idft") args.push_back({p, pick(dfs)});
    if (kind == "idff") args.push_back({p, pick(dfs), pick(dfs)});
    if (kind == "idfbeta") args.push_back({p, pick(shapes), pick(shapes)});
  }
  return args;
}

// The valid arguments of a reference table, read once; "ordinary_<kind>"
// names an ordinary grid instead.
const std::vector<Args>& Grid(const std::string& table) {
  static std::map<std::string, std::vector<Args>> grids;
  auto at = grids.find(table);
  if (at == grids.end() && table.compare(0, 9, "ordinary_") == 0) {
    at = grids.emplace(table, OrdinaryGrid(table.substr(9))).first;
  } else if (at == grids.end()) {
    std::vector<Args> args;
    for (const auto& c : internal::ReadReferenceTable(std::string(QX_DISTRIBUTIONS_TESTDATA) + "/" +
                                                      table + ".txt")) {
      if (c.region != "invalid") args.push_back(c.args);
    }
    at = grids.emplace(table, args).first;
  }
  return at->second;
}

void RunOver(benchmark::State& state, const std::string& table, const Fn& f) {
  const std::vector<Args>& args = Grid(table);
  if (args.empty()) {
    state.SkipWithError("reference table not found");
    return;
  }
  for (auto _ : state) {
    for (const Args& a : args)
      benchmark::DoNotOptimize(f(a));
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * args.size()));
}

struct Pair {
  std::string name;   // the library's function, and the grid if not its table's
  const char* table;  // reference table whose arguments are used
  Fn ours;
  std::string rName;  // R's function
  Fn theirs;
};

using D = QXDistFun;

#if defined(QX_HAVE_RMATH)
#define QX_R(expr) [](const Args& a) { return expr; }
#else
#define QX_R(expr) Fn()
#endif

std::vector<Pair> Pairs() {
  return {
      {"CdfStdNorm", "cdfstdnorm", [](const Args& a) { return D::CdfStdNorm(a[0]); }, "pnorm",
       QX_R(pnorm(a[0], 0.0, 1.0, 1, 0))},
      {"IdfStdNorm", "idfstdnorm", [](const Args& a) { return D::IdfStdNorm(a[0]); }, "qnorm",
       QX_R(qnorm(a[0], 0.0, 1.0, 1, 0))},
      {"CdfT", "cdft", [](const Args& a) { return D::CdfT(a[0], a[1]); }, "pt",
       QX_R(pt(a[0], a[1], 1, 0))},
      {"IdfT", "idft", [](const Args& a) { return D::IdfT(a[0], a[1]); }, "qt",
       QX_R(qt(a[0], a[1], 1, 0))},
      {"CdfChi", "cdfchi", [](const Args& a) { return D::CdfChi(a[0], a[1]); }, "pchisq",
       QX_R(pchisq(a[0], a[1], 1, 0))},
      {"IdfChi", "idfchi", [](const Args& a) { return D::IdfChi(a[0], a[1]); }, "qchisq",
       QX_R(qchisq(a[0], a[1], 1, 0))},
      {"CdfF", "cdff", [](const Args& a) { return D::CdfF(a[0], a[1], a[2]); }, "pf",
       QX_R(pf(a[0], a[1], a[2], 1, 0))},
      {"IdfF", "idff", [](const Args& a) { return D::IdfF(a[0], a[1], a[2]); }, "qf",
       QX_R(qf(a[0], a[1], a[2], 1, 0))},
      {"CdfBeta", "cdfbeta", [](const Args& a) { return D::CdfBeta(a[0], a[1], a[2]); }, "pbeta",
       QX_R(pbeta(a[0], a[1], a[2], 1, 0))},
      {"IdfBeta", "idfbeta", [](const Args& a) { return D::IdfBeta(a[0], a[1], a[2]); }, "qbeta",
       QX_R(qbeta(a[0], a[1], a[2], 1, 0))},
      {"CdfGam", "cdfgam", [](const Args& a) { return D::CdfGam(a[0], a[1], a[2]); }, "pgamma",
       QX_R(pgamma(a[0], a[1], 1.0 / a[2], 1, 0))},
      {"NonCentralCdfChi", "noncentralcdfchi",
       [](const Args& a) { return D::NonCentralCdfChi(a[0], a[1], a[2]); }, "pnchisq",
       QX_R(pnchisq(a[0], a[1], a[2], 1, 0))},
      {"NonCentralCdfT", "noncentralcdft",
       [](const Args& a) { return D::NonCentralCdfT(a[0], a[1], a[2]); }, "pnt",
       QX_R(pnt(a[0], a[1], a[2], 1, 0))},
      {"CdfT_ordinary", "ordinary_cdft", [](const Args& a) { return D::CdfT(a[0], a[1]); },
       "pt_ordinary", QX_R(pt(a[0], a[1], 1, 0))},
      {"IdfT_ordinary", "ordinary_idft", [](const Args& a) { return D::IdfT(a[0], a[1]); },
       "qt_ordinary", QX_R(qt(a[0], a[1], 1, 0))},
      {"IdfF_ordinary", "ordinary_idff", [](const Args& a) { return D::IdfF(a[0], a[1], a[2]); },
       "qf_ordinary", QX_R(qf(a[0], a[1], a[2], 1, 0))},
      {"IdfBeta_ordinary", "ordinary_idfbeta",
       [](const Args& a) { return D::IdfBeta(a[0], a[1], a[2]); }, "qbeta_ordinary",
       QX_R(qbeta(a[0], a[1], a[2], 1, 0))},
  };
}

// Registers "BM_<name>/0" and, with R, "BM_R_<rName>/0", and their ratio.
const bool registered = [] {
  for (const Pair& p : Pairs()) {
    const std::string ours = "BM_" + p.name;
    benchmark::RegisterBenchmark(ours.c_str(), [p](benchmark::State& s) {
      RunOver(s, p.table, p.ours);
    })->Arg(0);
    if (p.theirs) {
      const std::string theirs = "BM_R_" + p.rName;
      benchmark::RegisterBenchmark(theirs.c_str(), [p](benchmark::State& s) {
        RunOver(s, p.table, p.theirs);
      })->Arg(0);
      internal::RatioPairs().emplace_back(ours, theirs);
    }
  }
  return true;
}();

}  // namespace
}  // namespace QXMath_850
