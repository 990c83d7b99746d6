// The documents of a fit and their use: the results as StatXML, the model as
// a PMML 4.3 RegressionModel, and the scoring of a CSV file with a model that
// this component wrote.
#ifndef QX_EXAMPLES_LINREG_LINREGOUTPUT_H
#define QX_EXAMPLES_LINREG_LINREGOUTPUT_H

#include <istream>
#include <ostream>
#include <string>
#include <vector>

#include "linreg.h"

namespace linreg {

// Writes both documents, each through a temporary file renamed into place,
// so that a failure leaves neither a partial file nor, for the second, the
// first; throws InputError(kCannotWrite).
void WriteDocuments(const Fit& fit, const std::string& dataName, const std::string& statxmlPath,
                    const std::string& pmmlPath);

// A regression model as read back from PMML: the terms it needs and how to
// tell a usable row.
struct Model {
  std::string target;
  double intercept = 0.0;
  struct Numeric {
    std::string field;
    int exponent = 1;
    double coefficient = 0.0;
  };
  struct Categorical {
    std::string field, value;
    double coefficient = 0.0;
  };
  std::vector<Numeric> numeric;
  std::vector<Categorical> categorical;
  std::vector<std::string> active;  // the fields a row must have
  // The valid values of each categorical field, by field; a field missing
  // here takes any value.
  std::vector<std::pair<std::string, std::vector<std::string>>> valid;
};

// The model of a PMML document; throws InputError(kBadModel) for one that
// is not a regression this component can apply.
Model ReadModel(const std::string& text, const std::string& shownName);

// Scores every row of the CSV text: one line "predicted_<target>" and then
// one prediction per row, NA where an active field is missing or holds a
// category the model doesn't know. Returns the number of NA rows.
long Score(const Model& model, std::istream& data, const std::string& shownName, std::ostream& out);

// The command's scoring: the model file applied to the data file, the
// predictions to `outputPath` (standard output when empty, otherwise a new
// file put in place only when complete). Returns 0; throws InputError.
long ScoreFile(const std::string& modelPath, const std::string& dataPath,
               const std::string& outputPath);

}  // namespace linreg

#endif  // QX_EXAMPLES_LINREG_LINREGOUTPUT_H
