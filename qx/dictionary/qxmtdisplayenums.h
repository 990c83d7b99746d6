#ifndef QX_DICTIONARY_QXMTDISPLAYENUMS_H
#define QX_DICTIONARY_QXMTDISPLAYENUMS_H

#include <string>

#include "qx/dictionary/iqxencoder.h"
#include "qx/dictionary/iqxvariable.h"
#include "qx/foundation/qxexport.h"

// The display of the data dictionary's enumerations: each prints, on a new
// line of the display stream, the label followed by the enumerator's text,
// such as "Variable role = Input". The Display() of the variables and
// encoders use them.
namespace QXXML_850 {

// A value outside the enumeration prints " = unrecognized".
QXCOMMON_API void Display(std::string label, IQXVariable::VarStatus status);
QXCOMMON_API void Display(std::string label, IQXVariable::WRoundingOption option);
QXCOMMON_API void Display(std::string label, IQXVariable::MeasureLevel level);
QXCOMMON_API void Display(std::string label, IQXVariable::VariableStorage storage);
QXCOMMON_API void Display(std::string label, IQXVariable::VariableRole role);
// A type v above 4 prints the tail of " = Encoder type " from its character
// v on (5 gives "coder type "), and nothing once v reaches its length; a
// negative one prints nothing after the label either.
QXCOMMON_API void Display(std::string label, IQXEncoder::EncoderType type);

}  // namespace QXXML_850

#endif  // QX_DICTIONARY_QXMTDISPLAYENUMS_H
