// linreg: linear regression of a CSV file, checked against R's lm.
//
//   linreg data.csv [options]                fit, print the summary, write the
//                                            StatXML and PMML documents
//   linreg --score model.pmml data.csv       predictions of a written model
//   mpirun -np K linreg data.csv --mpi [options]
//                                            the same fit, each of K processes
//                                            reading its share of the rows
//   linreg --help
//
// Bad input gets one line on stderr naming the file and line, and an exit
// status of its own (see --help); Ctrl-C stops a fit with exit status 130.

#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "linreg.h"
#include "linregoutput.h"
#include "linregreport.h"
#include "minixml.h"
#ifdef QX_LINREG_MPI
#include "linregmpi.h"
#endif

namespace {

using linreg::InputError;
using QXXML_850::QXSettings;

const char kUsage[] =
    "usage: linreg data.csv [options]\n"
    "       linreg --score model.pmml data.csv [--output FILE]\n"
    "Fits a linear regression to a comma-separated file (a header of names, then\n"
    "rows) and prints a summary laid out like R's summary(lm(...)); writes the\n"
    "results as StatXML and the model as PMML.\n"
    "  --target NAME          the dependent variable (default: the last column)\n"
    "  --weight NAME          a column of case weights, as lm's weights\n"
    "  --categorical A,B,...  predictors whose values are categories; the last\n"
    "                         category to appear is the reference\n"
    "  --predictors A,B,...   the predictors (default: every other column)\n"
    "  --no-intercept         fit through the origin\n"
    "  --listwise             drop cases with a missing cell (empty or NA)\n"
    "  --method sweep|qr      sweep the cross-products (default), or Householder\n"
    "                         QR of the centred rows for ill-conditioned designs\n"
    "  --tol TOL              refuse a predictor when what the others leave of its\n"
    "                         sum of squares is at most TOL of it (default 1e-11\n"
    "                         for sweep, 1e-14 for qr)\n"
    "  --block ROWS           rows per block handed to the accumulator (1024)\n"
    "  --mpi                  under mpirun: each process fits its share of the\n"
    "                         rows, the sums are pooled, the first process writes\n"
    "                         (sweep only; categories from --dictionary)\n"
    "  --dictionary FILE      variables and roles from a persisted QXVarList\n"
    "  --settings FILE        settings from an XML file of <Setting name=\"...\"\n"
    "                         value=\"...\"/> elements; options given as well win\n"
    "  --statxml FILE         where the StatXML results go (default: <data>.statxml.xml)\n"
    "  --pmml FILE            where the PMML model goes (default: <data>.pmml)\n"
    "  --score MODEL          apply a PMML model written by linreg to the file;\n"
    "                         --output FILE takes the predictions (default: stdout)\n"
    "Exit status: 0 done, 2 bad option or setting, 3 unreadable file, 4 malformed\n"
    "table, 5 a cell its column can't take, 6 constant target, 7 all cases dropped,\n"
    "8 weights add up to zero, 9 output not written, 10 unusable model, 11 sums not\n"
    "pooled, 130 Ctrl-C.\n";

// The rank of this process in a parallel run; only rank 0 speaks.
int gRank = 0;

int Usage(const std::string& why) {
  if (gRank != 0) return 2;
  std::fprintf(stderr, "linreg: error: %s (see linreg --help)\n", why.c_str());
  return 2;
}

// Ctrl-C only sets a flag, which the fit finds when it polls after a block.
volatile std::sig_atomic_t gInterrupted = 0;
extern "C" void OnInterrupt(int) {
  gInterrupted = 1;
}

class InterruptQuery : public QXCommon_850::QXQueryCancel {
 public:
  bool IsCancel() override { return gInterrupted != 0; }
  bool WillCancel() const override { return gInterrupted != 0; }
};

// Settings from an XML file: a root holding <Setting name="..." value="..."/>.
void ReadSettingsFile(const std::string& path, QXSettings& settings) {
  const linreg::XmlNode root = linreg::ParseXmlFile(path, linreg::kBadSettings);
  for (const linreg::XmlNode& child : root.children) {
    const std::string* name = child.Attribute("name");
    const std::string* value = child.Attribute("value");
    if (child.name != "Setting" || name == nullptr || value == nullptr) {
      throw InputError{linreg::kBadSettings,
                       path + ":" + std::to_string(child.line) +
                           ": error: expected <Setting name=\"...\" value=\"...\"/>"};
    }
    settings.AddNewSetting(*name, *value, "");
  }
}

std::string BaseName(const std::string& path) {
  std::string base = path.substr(path.find_last_of('/') + 1);
  const std::size_t dot = base.rfind(".csv");
  if (dot != std::string::npos && dot + 4 == base.size()) base.erase(dot);
  return base.empty() ? "linreg" : base;
}

int Fail(const InputError& e) {
  if (gRank == 0) std::fprintf(stderr, "%s\n", e.text.c_str());
  return linreg::ExitStatus(e.code);
}

#ifdef QX_LINREG_MPI
// MPI from the start of a parallel run to its end, whichever way main leaves.
struct MpiSession {
  MpiSession(int& argc, char**& argv) {
    MPI_Init(&argc, &argv);
    MPI_Comm_rank(MPI_COMM_WORLD, &gRank);
  }
  ~MpiSession() { MPI_Finalize(); }
  MpiSession(const MpiSession&) = delete;
  MpiSession& operator=(const MpiSession&) = delete;
};
#endif

}  // namespace

int main(int argc, char** argv) {
  bool parallel = false;
  for (int i = 1; i < argc; ++i)
    parallel = parallel || std::string(argv[i]) == "--mpi";
#ifdef QX_LINREG_MPI
  std::unique_ptr<MpiSession> session;
  std::unique_ptr<linreg::MpiPool> pool;
  if (parallel) {
    session.reset(new MpiSession(argc, argv));
    pool.reset(new linreg::MpiPool(MPI_COMM_WORLD));
  }
#else
  std::unique_ptr<linreg::Pool> pool;
  if (parallel) return Usage("--mpi needs a linreg built with MPI");
#endif
  QXSettings options;
  std::string file, settingsFile, model, output;
  std::string call = "linreg";
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    call += " " + arg;
    if (arg == "--help" || arg == "-h") {
      std::fputs(kUsage, stdout);
      return 0;
    }
    if (arg == "--mpi") {
      continue;
    } else if (arg == "--no-intercept") {
      options.AddSetting("intercept", "false", true);
    } else if (arg == "--listwise") {
      options.AddSetting("listwise", "true", true);
    } else if (arg.compare(0, 2, "--") == 0) {
      static const char* const valued[] = {"target", "weight", "categorical", "predictors", "tol",
                                           "block",  "method", "dictionary",  "statxml",    "pmml"};
      const std::string name = arg.substr(2);
      bool known = name == "settings" || name == "score" || name == "output";
      for (const char* v : valued)
        known = known || name == v;
      if (!known) return Usage("unknown option " + arg);
      if (i + 1 >= argc) return Usage("option " + arg + " needs a value");
      const std::string value = argv[++i];
      call += " " + value;
      if (name == "settings") {
        settingsFile = value;
      } else if (name == "score") {
        model = value;
      } else if (name == "output") {
        output = value;
      } else {
        options.AddSetting(name, value, true);
      }
    } else if (file.empty()) {
      file = arg;
    } else {
      return Usage("a second data file '" + arg + "'");
    }
  }
  if (file.empty()) return Usage("no data file given");
  if (parallel && (file == "-" || !model.empty())) {
    return Usage("--mpi fits a named file; it takes no --score and no standard input");
  }
  try {
    if (!model.empty()) {
      if (options.Size() > 0 || !settingsFile.empty()) {
        return Usage("--score takes only a model, a data file and --output");
      }
      return linreg::ExitStatus(linreg::ScoreFile(model, file, output));
    }
    if (!output.empty()) return Usage("--output goes with --score");
    QXSettings settings;
    if (!settingsFile.empty()) ReadSettingsFile(settingsFile, settings);
    for (unsigned long k = 0; k < options.Size(); ++k) {
      const QXXML_850::QXSetting* s = options.GetSettingAt(k);
      settings.AddSetting(s->GetName(), s->GetValue()->GetString(), true);
    }

    std::signal(SIGINT, OnInterrupt);
    InterruptQuery interrupt;
    const bool terminal = gRank == 0 && isatty(STDERR_FILENO) != 0;
    const linreg::ProgressFn progress = [terminal](QXMath_850::QXIterationReporter& r, long rows) {
      if (!terminal) return;
      std::fprintf(stderr, "\r  block %d: %ld rows read, %.2f s accumulating",
                   r.DiscreteMeasure("iterNum"), rows, r.ScaleMeasure("time"));
    };
    linreg::Fit fit;
    std::string message;
    const QXCommon_850::QXStatus status =
        linreg::FitFile(file, settings, &interrupt, progress, fit, message, pool.get());
    if (terminal && fit.blocks > 0) std::fputc('\n', stderr);
    if (status.IsError()) {
      if (gRank != 0) return linreg::ExitStatus(status.GetErrorCode());
      std::fprintf(stderr, "%s%s\n", status.GetErrorCode() == linreg::kCancelled ? "linreg: " : "",
                   message.c_str());
      return linreg::ExitStatus(status.GetErrorCode());
    }
    if (gRank != 0) return 0;  // the first process writes the results
    std::string statxml, pmml;
    settings.GetSettingValByName("statxml", statxml);
    settings.GetSettingValByName("pmml", pmml);
    if (statxml.empty()) statxml = BaseName(file) + ".statxml.xml";
    if (pmml.empty()) pmml = BaseName(file) + ".pmml";
    linreg::WriteDocuments(fit, file, statxml, pmml);
    std::fputs(linreg::SummaryText(fit, call).c_str(), stdout);
    std::fputs(linreg::RunNotes(fit, file).c_str(), stdout);
    std::printf("\nStatXML results written to %s\nPMML model written to %s\n", statxml.c_str(),
                pmml.c_str());
    return 0;
  } catch (const InputError& e) {
    return Fail(e);
  }
}
