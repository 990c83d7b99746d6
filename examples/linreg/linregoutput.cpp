#include "linregoutput.h"

namespace linreg {

void WriteDocuments(const Fit&, const std::string&, const std::string&, const std::string&) {}

long ScoreFile(const std::string&, const std::string&, const std::string&) {
  return 0;
}

}  // namespace linreg
