// A linear-regression component written on qxcommon the way any outside
// component is: it takes its choices as QXSettings, describes the columns of
// a CSV file in a QXVarList (continuous or categorical predictors, a target,
// a case weight), encodes each case through the variables' encoders, hands
// the rows in blocks of a QXRectMatrix to QXMeansXProducts, and sweeps the
// cross-products, refusing aliased predictors. A second solver fits by
// Householder QR of the centred, weighted rows (LINPACK Dqrdc and Dqrsl), for
// designs whose cross-products are too ill-conditioned to sweep. Either way
// the result is the table that R's summary(lm(...)) shows, with the analysis
// of variance, confidence limits and warnings in a QXWarnings.
#ifndef QX_EXAMPLES_LINREG_LINREG_H
#define QX_EXAMPLES_LINREG_LINREG_H

#include <qx/qxcommon.h>

#include <functional>
#include <istream>
#include <optional>
#include <string>
#include <vector>

#include "linregstatus.h"

namespace linreg {

enum class Method { kSweep, kQR };

// What a fit is asked to do. ReadOptions takes it from the settings named in
// the comments; the command-line options set the same settings.
struct Options {
  std::string target;                    // "target"; default: the last column
  std::string weight;                    // "weight": a column of case weights
  std::vector<std::string> categorical;  // "categorical", one setting per column
  std::vector<std::string> predictors;   // "predictors"; default: every other column
  bool intercept = true;                 // "intercept"
  bool listwise = false;                 // "listwise": drop cases with a missing cell
  double tol = 0.0;                      // "tol"; 0 takes the method's default
  int block = 1024;                      // "block": rows per block handed on
  Method method = Method::kSweep;        // "method": "sweep" or "qr"
  std::string dictionary;                // "dictionary": a persisted QXVarList
};

// The settings as options; an unusable one throws InputError(kBadSettings).
Options ReadOptions(const QXXML_850::QXSettings& settings);

// Default tolerances: a predictor is aliased when the part of its sum of
// squares that the predictors before it leave is at most tol of the whole.
// The QR default is R's lm (1e-7 on the norms).
constexpr double kSweepTol = 1e-11;
constexpr double kQRTol = 1e-14;

// One coefficient of the fitted model.
struct Term {
  std::string name;   // "(Intercept)", a column, or a column and a category (R's names)
  int variable = -1;  // the variable's index in the dictionary; -1 for the intercept
  int category = -1;  // for an indicator: the category's code
  bool aliased = false;
  // NaN for an aliased term; the limits are at 95%.
  double estimate = 0.0, stdError = 0.0, tValue = 0.0, pValue = 0.0, lower = 0.0, upper = 0.0;
};

struct Fit {
  Method method = Method::kSweep;
  double tol = 0.0;
  bool intercept = true;
  QXXML_850::QXVarList dictionary;
  int target = -1;  // index of the target in the dictionary
  std::vector<Term> terms;
  std::vector<std::string> aliased;  // names of the terms refused as aliased
  // The weighted summary of each variable over the cases used, by dictionary
  // index; the weight's is empty.
  std::vector<QXMath_850::QXUniStats> fields;
  long rowsRead = 0, casesUsed = 0, casesDropped = 0, badWeights = 0;
  double weightSum = 0.0;
  double rss = 0.0, tss = 0.0, rSquared = 0.0, adjRSquared = 0.0, sigma = 0.0;
  double dfModel = 0.0, dfResidual = 0.0, fValue = 0.0, fPValue = 0.0;
  int blocks = 0;
  QXCommon_850::QXWarnings warnings;
};

// Called after every block with the reporter (means of the design columns
// and the target so far, block number, processor seconds) and the rows read.
using ProgressFn = std::function<void(QXMath_850::QXIterationReporter&, long)>;

// The processes of a parallel fit, as the fit sees them: each reads its own
// share of the file's rows, and they pool what they accumulated. Every
// operation is collective: every process calls it, in the same order.
class Pool {
 public:
  virtual ~Pool() = default;
  virtual int Index() const = 0;
  virtual int Count() const = 0;
  // Each process's failure, if any, in; the failure of the lowest-numbered
  // process that has one (the first in the file) out, the same everywhere.
  virtual std::optional<InputError> Agree(const std::optional<InputError>& own) = 0;
  // Element-wise sums and the largest value, over the processes.
  virtual void Sum(std::vector<long>& counts) = 0;
  virtual long Max(long value) = 0;
  // The pooled accumulators; false, the same everywhere, if they can't be.
  virtual bool Combine(QXMath_850::QXMeansXProdData& acc) = 0;
  virtual bool Combine(QXMath_850::QXUniStats& stats) = 0;
};

// Fits the model that the settings describe to the CSV text of `in`, which
// must be seekable when a categorical predictor needs a first pass to learn
// its categories. `shownName` names the input in messages. `cancel` may be
// null. An error comes back as a QXStatus of sense -1 with one line in
// `message`; the fit is then not to be used.
QXCommon_850::QXStatus FitCsv(std::istream& in, const std::string& shownName,
                              const QXXML_850::QXSettings& settings,
                              QXCommon_850::QXQueryCancel* cancel, const ProgressFn& progress,
                              Fit& fit, std::string& message, Pool* pool = nullptr);
// The same on a file, which may be "-" for standard input.
// With a pool, this process fits its share of the rows and the result is
// that of the whole file; every process gets the same status and message.
// The sweep fits so, with the categories of a dictionary if any.
QXCommon_850::QXStatus FitFile(const std::string& path, const QXXML_850::QXSettings& settings,
                               QXCommon_850::QXQueryCancel* cancel, const ProgressFn& progress,
                               Fit& fit, std::string& message, Pool* pool = nullptr);

}  // namespace linreg

#endif  // QX_EXAMPLES_LINREG_LINREG_H
