// The outcomes of the regression component: the codes of its QXStatus
// values (errors stop a run, warnings go into its QXWarnings), and the
// exception that carries an error from deep in a reader to the top of a run.
#ifndef QX_EXAMPLES_LINREG_LINREGSTATUS_H
#define QX_EXAMPLES_LINREG_LINREGSTATUS_H

#include <string>

namespace linreg {

enum Code : long {
  // Errors; each has its own exit status in the command-line program.
  kCancelled = 1,
  kBadSettings = 10,  // an option or setting that can't be used
  kCannotOpen = 11,   // an input file that can't be read
  kBadTable = 12,     // a header or a row of the wrong shape
  kBadValue = 13,     // a cell that its column can't take
  kConstantTarget = 14,
  kAllDropped = 15,  // every case had a missing value
  kZeroWeight = 16,  // no case had a usable weight
  kCannotWrite = 17,
  kBadModel = 18,   // a model file that can't be scored with
  kNotPooled = 19,  // the processes of a parallel fit could not pool their sums
  // Warnings.
  kAliased = 101,       // predictors refused as aliased; parameters: their names
  kDroppedCases = 102,  // cases dropped for a missing value; parameter: how many
  kBadWeights = 103,    // cases dropped for a weight not above 0; parameter: how many
  kNoResidualDf = 104,  // no degrees of freedom left for the error
  kPerfectFit = 105,    // the residual sum of squares is zero
  kUnscoredRows = 106,  // rows scored as NA; parameter: how many
};

// An error with its code and the one line that tells the user about it.
struct InputError {
  Code code;
  std::string text;
};

// The exit status of the command-line program for an error code.
int ExitStatus(long code);

}  // namespace linreg

#endif  // QX_EXAMPLES_LINREG_LINREGSTATUS_H
