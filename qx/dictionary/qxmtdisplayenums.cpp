#include "qx/dictionary/qxmtdisplayenums.h"

#include <cstring>

#include "qx/foundation/qxcomponentdisplay.h"

namespace QXXML_850 {

namespace {

// The text of enumerator `value` from a table of `count` texts, the value
// being its index.
template <size_t count>
const char* TextOf(int value, const char* const (&texts)[count]) {
  if (value < 0 || static_cast<size_t>(value) >= count) return " = unrecognized";
  return texts[value];
}

void Show(const std::string& label, const char* text) {
  QXDisplay_850::DisplayText(1, label + text);
}

}  // namespace

void Display(std::string label, IQXVariable::VarStatus status) {
  static const char* const texts[] = {" = OK", " = Constant", " = Invalid"};
  Show(label, TextOf(status, texts));
}

void Display(std::string label, IQXVariable::WRoundingOption option) {
  static const char* const texts[] = {" = Truncate to smaller int", " = Round to closest int",
                                      " = As is - no change"};
  Show(label, TextOf(option, texts));
}

void Display(std::string label, IQXVariable::MeasureLevel level) {
  static const char* const texts[] = {" = Unknown measure level", " = Continuous",
                                      " = Numeric Categorical", " = String Categorical",
                                      " = Frequency weight"};
  Show(label, TextOf(level, texts));
}

void Display(std::string label, IQXVariable::VariableStorage storage) {
  static const char* const texts[] = {" = Undefined variable storage",
                                      " = Integer",
                                      " = Real",
                                      " = String",
                                      " = Date",
                                      " = Time",
                                      " = Timestamp"};
  Show(label, TextOf(storage, texts));
}

void Display(std::string label, IQXVariable::VariableRole role) {
  static const char* const texts[] = {" = Undefined variable role",
                                      " = Target",
                                      " = Target Response",
                                      " = Frequency weight",
                                      " = Input",
                                      " = Possible Input",
                                      " = Unused variable",
                                      " = Record ID variable"};
  Show(label, TextOf(role, texts));
}

void Display(std::string label, IQXEncoder::EncoderType type) {
  static const char* const texts[] = {
      " = Unknown", " = Binning of numeric values", " = Categorical with numeric category values",
      " = Categorical with string category values", " = ounding for frequency weights"};
  // Past the table, the type indexes into this literal: 5 gives "coder type ".
  static const char kTail[] = " = Encoder type ";
  const int value = type;
  if (value >= 0 && value <= 4) {
    Show(label, texts[value]);
  } else if (value > 4 && static_cast<size_t>(value) < std::strlen(kTail)) {
    Show(label, kTail + value);
  } else {
    Show(label, "");
  }
}

}  // namespace QXXML_850
