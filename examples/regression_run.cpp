// What a regression component does with the library, from raw rows to
// coefficients: it collects cases in blocks of a QXRectMatrix, accumulates
// weighted means and corrected cross-products with QXMeansXProducts, sweeps
// the predictors into the cross-products matrix, refusing any predictor that
// is aliased with those already in, and reads the fit from the swept matrix.
// While it accumulates it reports its progress through a QXIterationReporter
// (a line on standard error when that is a terminal) and polls a QXCancelInfo
// after every block, so that Ctrl-C stops it cleanly.
//
//   regression_run                      generated data with known coefficients
//   regression_run data.csv [options]   a CSV file: a header of names, then
//                                       numeric columns, separated by commas
//   regression_run --help               this usage
// Options:
//   --target NAME   the dependent variable (default: the last column)
//   --weight NAME   a column of case weights (default: none)
//   --block ROWS    rows per block handed to the accumulator (default 256)
//   --tol TOL       sweep tolerance (default 1e-9)
//   --cases N       rows of generated data (default 50000)
//
// Bad input gets one line on stderr naming the file and line, and exit 1.
// Ctrl-C gets one line on stderr, and exit 130.

#include <qx/qxcommon.h>

#include <cerrno>
#include <climits>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <set>
#include <string>
#include <vector>

#include <unistd.h>

using QXMath_850::QXBitSet;
using QXMath_850::QXMeansXProducts;
using QXMath_850::QXRectMatrix;
using QXMath_850::QXSymMatrix;

namespace {

struct Options {
  std::string file, target, weight;
  int block = 256;
  long cases = 50000;
  double tol = 1e-9;
};

// Input that can't be used: the message names the file and line.
struct InputError {
  std::string text;
};

InputError At(const std::string& file, long line, const std::string& what) {
  return InputError{file + ":" + std::to_string(line) + ": error: " + what};
}

// Ctrl-C asks the fit to stop: the handler only sets a flag, which the caller's
// cancellation object hands to the fit when it polls.
volatile std::sig_atomic_t gInterrupted = 0;
extern "C" void OnInterrupt(int) {
  gInterrupted = 1;
}

class InterruptQuery : public QXCommon_850::QXQueryCancel {
 public:
  bool IsCancel() override { return gInterrupted != 0; }
  bool WillCancel() const override { return gInterrupted != 0; }
};

InterruptQuery gInterruptQuery;

// The user cancelled the fit after this many rows.
struct Cancelled {
  long rows;
};

// What a watcher of the fit shows, from the progress measures and the row
// count: one line on a terminal, rewritten after every block.
void ShowProgress(QXCommon_850::ProgressReportVect& progress, long rows) {
  const std::vector<double>* means = progress.VectorMeasure("paramEstim");
  std::fprintf(
      stderr, "\r  block %d: %ld rows, mean of the dependent variable %.6g, %.2f s accumulating",
      progress.DiscreteMeasure("iterNum"), rows, means->back(), progress.ScaleMeasure("time"));
}

// Feeds cases to the accumulator a block at a time, the way a component
// hands over the rows it has read so far. Columns: predictors, the
// dependent variable, then the weight when there is one. After each block it
// reports its progress and asks whether to go on.
class BlockFeeder {
 public:
  BlockFeeder(int nPredictors, bool weighted, int blockRows)
      : acc(nPredictors + 1, true, false, weighted),
        block(blockRows, nPredictors + 1 + (weighted ? 1 : 0), true),
        filled(0),
        cancel(&gInterruptQuery),
        timer("accumulation"),
        showProgress(isatty(STDERR_FILENO) != 0) {}

  void Add(const std::vector<double>& row) {
    for (int j = 0; j < block.GetNCols(); ++j)
      block.SetElem(filled, j, row[j]);
    if (++filled == block.GetNRows()) Flush();
  }

  const QXMeansXProducts& Finish() {
    Flush();
    if (showProgress && blocks > 0) std::fputc('\n', stderr);
    return acc;
  }

  long Rows() const { return rows + filled; }

 private:
  void Flush() {
    if (filled == 0) return;
    timer.Start();
    acc.Update(block, filled);
    timer.Accumulate();
    rows += filled;
    filled = 0;
    int ticks = 0, calls = 0;
    double seconds = 0.0;
    timer.GetTime(ticks, seconds, calls);
    // Least squares has no likelihood to report while it accumulates.
    progress.SetInfo(&acc.GetMeans(), ++blocks, 0, QXCommon_850::QXMV::Missing(), seconds);
    if (showProgress) ShowProgress(progress, rows);
    if (cancel.IsCancel()) {
      if (showProgress) std::fputc('\n', stderr);
      throw Cancelled{rows};
    }
  }

  QXMeansXProducts acc;
  QXRectMatrix block;
  int filled;
  long rows = 0;
  int blocks = 0;
  QXMath_850::QXCancelInfo cancel;
  QXMath_850::QXTimeUtil timer;
  QXMath_850::QXIterationReporter progress;
  bool showProgress;
};

struct Fit {
  std::vector<double> slopes;  // 0 for a refused predictor
  std::vector<bool> in;
  double intercept = 0.0, rss = 0.0, tss = 0.0;
};

// Sweeps the predictors in one by one against the original diagonal; the
// sweep refuses a predictor whose remaining variance is below tol of it.
Fit Sweep(const QXMeansXProducts& acc, double tol) {
  QXSymMatrix a = acc.GetXProds();
  const int p = a.GetNRows() - 1;
  std::vector<double> diag;
  a.GetDiagonal(diag);
  QXBitSet swept(p + 1);
  Fit fit;
  for (int k = 0; k < p; ++k)
    a.Sweep(k, tol, diag, swept, true);
  a.GetRegCoeffs(fit.slopes, swept);
  const std::vector<double>& means = acc.GetMeans();
  fit.intercept = means[p];
  for (int k = 0; k < p; ++k) {
    fit.in.push_back(swept.IsIn(k));
    fit.intercept -= fit.slopes[k] * means[k];
  }
  fit.rss = a.GetElem(p, p);
  fit.tss = diag[p];
  return fit;
}

void Report(const std::vector<std::string>& names, const Fit& fit, const QXMeansXProducts& acc,
            const std::vector<double>* known) {
  std::printf("\n  %-24s %22s", "predictor", "coefficient");
  if (known != nullptr) std::printf(" %12s", "known");
  std::printf("\n");
  std::string refused;
  for (std::size_t k = 0; k < names.size(); ++k) {
    if (fit.in[k]) {
      std::printf("  %-24s %22.12g", names[k].c_str(), fit.slopes[k]);
    } else {
      std::printf("  %-24s %22s", names[k].c_str(), "aliased");
      refused += (refused.empty() ? "" : ", ") + names[k];
    }
    if (known != nullptr) std::printf(" %12g", (*known)[k + 1]);
    std::printf("\n");
  }
  std::printf("  %-24s %22.12g", "(intercept)", fit.intercept);
  if (known != nullptr) std::printf(" %12g", (*known)[0]);
  std::printf("\n\n");
  std::printf("Weighted cases                 %.12g\n", acc.GetNCases());
  std::printf("Residual sum of squares        %.12g\n", fit.rss);
  if (fit.tss > 0.0) {
    std::printf("R squared                      %.12f\n", 1.0 - fit.rss / fit.tss);
  } else {
    std::printf("R squared                      undefined (constant dependent variable)\n");
  }
  std::printf("Predictors refused as aliased  %s\n", refused.empty() ? "none" : refused.c_str());
}

// ---------------------------------------------------------------------------
// Generated data: y = 4 + 1.5 temperature - 2 pressure + 0.75 humidity
// + 0 wind + noise of sd 0.2, with pressure_plus_humidity an exact alias, and weights.

int RunGenerated(const Options& options) {
  const std::vector<std::string> names = {"temperature", "pressure", "humidity", "wind",
                                          "pressure_plus_humidity"};
  const std::vector<double> known = {4.0, 1.5, -2.0, 0.75, 0.0, 0.0};
  const long cases = options.cases;
  std::mt19937_64 engine(2024u);
  std::normal_distribution<double> normal(0.0, 1.0);
  std::uniform_real_distribution<double> weight(0.5, 2.0);
  BlockFeeder feeder(5, true, options.block);
  std::vector<double> row(7);
  for (long c = 0; c < cases; ++c) {
    const double t = 20.0 + 5.0 * normal(engine), pr = 10.0 + 2.0 * normal(engine);
    const double h = 60.0 + 15.0 * normal(engine), w = 3.0 * normal(engine);
    row = {t,
           pr,
           h,
           w,
           pr + h,
           known[0] + known[1] * t + known[2] * pr + known[3] * h + 0.2 * normal(engine),
           weight(engine)};
    feeder.Add(row);
  }
  const QXMeansXProducts& acc = feeder.Finish();
  std::printf("Regression of y on %zu predictors: %ld generated rows in blocks of %d, weighted\n",
              names.size(), feeder.Rows(), options.block);
  const Fit fit = Sweep(acc, options.tol);
  Report(names, fit, acc, &known);

  // The run checks itself, so that it fails loudly if the library doesn't
  // recover what it was given.
  bool ok = !fit.in[4] && std::fabs(fit.intercept - known[0]) < 0.1;
  for (int k = 0; k < 4; ++k)
    ok = ok && fit.in[k] && std::fabs(fit.slopes[k] - known[k + 1]) < 0.01;
  std::printf("%s\n", ok ? "Known coefficients recovered; the alias was refused."
                         : "FAILED: the known coefficients were not recovered.");
  return ok ? 0 : 1;
}

// ---------------------------------------------------------------------------
// CSV input

std::string Trim(const std::string& s) {
  const char* blank = " \t\r\n";
  const std::size_t first = s.find_first_not_of(blank);
  if (first == std::string::npos) return "";
  return s.substr(first, s.find_last_not_of(blank) - first + 1);
}

std::vector<std::string> SplitFields(const std::string& line) {
  std::vector<std::string> fields;
  std::size_t start = 0;
  while (true) {
    const std::size_t comma = line.find(',', start);
    fields.push_back(Trim(line.substr(start, comma - start)));
    if (comma == std::string::npos) break;
    start = comma + 1;
  }
  return fields;
}

std::string Unquote(const std::string& s) {
  if (s.size() >= 2 && s.front() == '"' && s.back() == '"') return s.substr(1, s.size() - 2);
  return s;
}

// A finite number taking up the whole field, or an error.
double ParseNumber(const std::string& field, const std::string& column, const std::string& file,
                   long line) {
  if (field.empty()) throw At(file, line, "column '" + column + "' is empty");
  char* end = nullptr;
  errno = 0;
  const double value = std::strtod(field.c_str(), &end);
  if (end != field.c_str() + field.size() || !std::isfinite(value) || errno == ERANGE) {
    throw At(file, line, "column '" + column + "': '" + field + "' is not a finite number");
  }
  return value;
}

int RunFile(const Options& options) {
  const std::string& file = options.file;
  std::error_code ec;
  if (std::filesystem::is_directory(file, ec)) {
    throw InputError{file + ": error: this is a folder; a CSV file was expected"};
  }
  std::ifstream in(file, std::ios::binary);
  if (!in) {
    throw InputError{file + ": error: cannot open the file (" + std::strerror(errno) + ")"};
  }
  std::string text;
  long line = 0;
  if (!std::getline(in, text)) throw At(file, 1, "the file is empty; a header line was expected");
  ++line;
  // A byte-order mark, as some spreadsheets write, is not part of the first name.
  if (text.compare(0, 3, "\xEF\xBB\xBF") == 0) text.erase(0, 3);
  std::vector<std::string> header = SplitFields(text);
  if (header.size() == 1) {
    for (const char* sep : {";", "\t", "|"}) {
      if (text.find(sep) != std::string::npos) {
        throw At(file, line,
                 std::string("the header has no commas but is separated by ") +
                     (*sep == '\t' ? "tabs" : std::string("'") + sep + "'") +
                     "; this program reads comma-separated files");
      }
    }
  }
  std::set<std::string> seen;
  for (std::string& name : header) {
    name = Unquote(name);
    if (name.empty()) throw At(file, line, "a column of the header has no name");
    if (!seen.insert(name).second) throw At(file, line, "column '" + name + "' appears twice");
  }
  const int nCols = static_cast<int>(header.size());
  int target = nCols - 1, weight = -1;
  if (!options.target.empty() || !options.weight.empty()) {
    for (int j = 0; j < nCols; ++j) {
      if (header[j] == options.target) target = j;
      if (header[j] == options.weight) weight = j;
    }
    if (!options.target.empty() && header[target] != options.target) {
      throw At(file, line, "no column named '" + options.target + "' for --target");
    }
    if (!options.weight.empty() && weight < 0) {
      throw At(file, line, "no column named '" + options.weight + "' for --weight");
    }
    if (weight == target) throw At(file, line, "the weight column is the dependent variable");
  }
  std::vector<int> predictors;
  std::vector<std::string> names;
  for (int j = 0; j < nCols; ++j) {
    if (j != target && j != weight) {
      predictors.push_back(j);
      names.push_back(header[j]);
    }
  }
  if (predictors.empty()) throw At(file, line, "there is no predictor column");

  BlockFeeder feeder(static_cast<int>(predictors.size()), weight >= 0, options.block);
  std::vector<double> values(nCols), row;
  while (std::getline(in, text)) {
    ++line;
    if (Trim(text).empty()) continue;
    const std::vector<std::string> fields = SplitFields(text);
    if (static_cast<int>(fields.size()) != nCols) {
      throw At(
          file, line,
          "expected " + std::to_string(nCols) + " fields, found " + std::to_string(fields.size()));
    }
    for (int j = 0; j < nCols; ++j)
      values[j] = ParseNumber(fields[j], header[j], file, line);
    if (weight >= 0 && values[weight] < 0.0) throw At(file, line, "the weight is negative");
    row.clear();
    for (int j : predictors)
      row.push_back(values[j]);
    row.push_back(values[target]);
    if (weight >= 0) row.push_back(values[weight]);
    feeder.Add(row);
  }
  if (feeder.Rows() == 0) throw At(file, line + 1, "no data rows after the header");
  const QXMeansXProducts& acc = feeder.Finish();
  if (!(acc.GetNCases() > 0.0)) throw At(file, line + 1, "the weights add up to zero");

  std::printf("Regression of %s on %zu predictor%s: %ld rows of %s in blocks of %d%s\n",
              header[target].c_str(), names.size(), names.size() == 1 ? "" : "s", feeder.Rows(),
              file.c_str(), options.block,
              weight >= 0 ? (", weighted by " + header[weight]).c_str() : "");
  Report(names, Sweep(acc, options.tol), acc, nullptr);
  return 0;
}

const char kUsage[] =
    "usage: regression_run [file.csv [--target NAME] [--weight NAME]] [--block ROWS] [--tol "
    "TOL] [--cases N]\n"
    "  Without a file, fits generated data with known coefficients. A file is\n"
    "  comma-separated: a header of names, then numeric columns.\n"
    "  --target NAME   the dependent variable (default: the last column)\n"
    "  --weight NAME   a column of case weights (default: none)\n"
    "  --block ROWS    rows per block handed to the accumulator (default 256)\n"
    "  --tol TOL       sweep tolerance, in (0, 1) (default 1e-9)\n"
    "  --cases N       rows of generated data (default 50000)\n"
    "  Ctrl-C stops the fit (exit 130).\n";

// A bad command line: one line, and exit 2.
int Usage(const std::string& message) {
  std::fprintf(stderr, "regression_run: error: %s (see regression_run --help)\n", message.c_str());
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    const bool hasValue = i + 1 < argc;
    if (arg == "--help" || arg == "-h") {
      std::fputs(kUsage, stdout);
      return 0;
    }
    if (arg == "--target" || arg == "--weight" || arg == "--block" || arg == "--tol" ||
        arg == "--cases") {
      if (!hasValue) return Usage("missing value after " + arg);
      const std::string value = argv[++i];
      if (arg == "--target") options.target = value;
      if (arg == "--weight") options.weight = value;
      if (arg == "--block") {
        options.block = std::atoi(value.c_str());
        if (options.block < 1) return Usage("--block needs a positive number of rows");
      }
      if (arg == "--cases") {
        options.cases = std::strtol(value.c_str(), nullptr, 10);
        if (options.cases < 1 || options.cases == LONG_MAX) {
          return Usage("--cases needs a positive number of rows");
        }
      }
      if (arg == "--tol") {
        options.tol = std::strtod(value.c_str(), nullptr);
        if (!(options.tol > 0.0 && options.tol < 1.0)) return Usage("--tol must lie in (0, 1)");
      }
    } else if (arg.size() > 1 && arg[0] == '-') {
      return Usage("unknown option " + arg);
    } else if (options.file.empty()) {
      options.file = arg;
    } else {
      return Usage("only one input file may be given");
    }
  }
  if (options.file.empty() && (!options.target.empty() || !options.weight.empty())) {
    return Usage("--target and --weight need an input file");
  }
  std::signal(SIGINT, OnInterrupt);
  try {
    return options.file.empty() ? RunGenerated(options) : RunFile(options);
  } catch (const InputError& error) {
    std::fprintf(stderr, "%s\n", error.text.c_str());
    return 1;
  } catch (const Cancelled& stop) {
    std::fprintf(stderr, "regression_run: cancelled after %ld rows; nothing was fitted\n",
                 stop.rows);
    return 130;
  }
}
