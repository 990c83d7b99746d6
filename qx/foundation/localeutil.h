#ifndef QX_FOUNDATION_LOCALEUTIL_H
#define QX_FOUNDATION_LOCALEUTIL_H

#include <string>

#include "qx/foundation/qxexport.h"

namespace QXXML_850 {

// Numbers as text for documents and persisted files. ReplaceSep always writes
// a point, whatever the locale; Format can instead follow the C library's
// locale, for text meant for a person.

// "%.15g", the format of every number in a document.
QXCOMMON_API std::string GetDefaultNumericFormat();
// ";", the separator of items in a list.
QXCOMMON_API std::string GetListSeparator();
// The decimal separator of the C library's present locale.
QXCOMMON_API std::string GetDecimalCharacter();

// `value` as "%.15g" would write it in the classic locale, so always with a
// point. `format` is accepted for symmetry with Format and not used.
QXCOMMON_API std::string ReplaceSep(double value, char* format);
// `value` in fixed notation with 16 decimals, in the classic locale.
QXCOMMON_API std::string ReplaceSep(double value);

// `value` by `format` (null means "%.15g"): through sprintf in the C library's
// locale if `useLocale`, otherwise as ReplaceSep(value, format).
QXCOMMON_API std::string Format(double value, bool useLocale, char* format);
// The value as a double by "%.15g" in the C library's locale: at most 15
// significant digits.
QXCOMMON_API std::string Format(long value);

}  // namespace QXXML_850

#endif  // QX_FOUNDATION_LOCALEUTIL_H
