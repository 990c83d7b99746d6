// Fuzz target for the readers of the linear-regression example: a CSV file
// fitted as the program fits it (once by sweeping, once by QR with its first
// column categorical, in blocks of 7 rows), and a PMML model read back and
// applied to a small table. An input starting with '<' is a model, any other
// a CSV file.
//
// Besides the sanitizers, the target checks what callers rely on: a refused
// input comes back as an error status with one line naming the input, and a
// fit that succeeds has finite sums of squares and a term for every design
// column.

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string>

#include "examples/linreg/linreg.h"
#include "examples/linreg/linregoutput.h"

namespace {

void Require(bool condition, const char* what) {
  if (!condition) {
    std::fprintf(stderr, "invariant broken: %s\n", what);
    std::abort();
  }
}

void Fit(const std::string& text, bool qr) {
  QXXML_850::QXSettings settings;
  settings.AddSetting("listwise", "true", true);
  settings.AddSetting("block", "7", true);
  if (qr) {
    settings.AddSetting("method", "qr", true);
    const std::string first = text.substr(0, text.find_first_of(",\n"));
    if (!first.empty() && first.find_first_of("\"\r ") == std::string::npos) {
      settings.AddSetting("categorical", first, true);
    }
  }
  std::istringstream in(text);
  linreg::Fit fit;
  std::string message;
  const QXCommon_850::QXStatus status =
      linreg::FitCsv(in, "input.csv", settings, nullptr, nullptr, fit, message);
  if (status.IsError()) {
    Require(message.compare(0, 9, "input.csv") == 0 || message.compare(0, 6, "error:") == 0,
            "an error names the input");
    Require(message.find('\n') == std::string::npos, "an error is one line");
    return;
  }
  Require(!std::isnan(fit.rss) && fit.rss >= 0.0, "the residual sum of squares is a number");
  Require(fit.casesUsed > 0, "a fit used some case");
}

void Model(const std::string& text) {
  try {
    const linreg::Model model = linreg::ReadModel(text, "model.pmml");
    std::istringstream data("x,y,g\n1,2,a\n,3,b\n2.5,1e300,c\n");
    std::ostringstream out;
    linreg::Score(model, data, "data.csv", out);
  } catch (const linreg::InputError& e) {
    Require(e.text.find('\n') == std::string::npos, "an error is one line");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > 1 << 16) return 0;
  const std::string text(reinterpret_cast<const char*>(data), size);
  if (!text.empty() && text[0] == '<') {
    Model(text);
  } else {
    Fit(text, false);
    Fit(text, true);
  }
  return 0;
}
