#ifndef QX_FOUNDATION_MBTOUTF8_UNIX_H
#define QX_FOUNDATION_MBTOUTF8_UNIX_H

#include <iconv.h>

#include <string>

#include "qx/foundation/qxexport.h"

namespace QXXML_850 {

// Conversion of text in the locale's multibyte encoding to UTF-8, used when a
// document is written as UTF-8.

// A converter from `fromCode` to UTF-8 under either of its usual names;
// (iconv_t)-1 if neither is known.
QXCOMMON_API iconv_t iconvOpen(const char* fromCode);

// `text` from the encoding of the present LC_CTYPE locale to UTF-8. Invalid or
// incomplete input ends the conversion: the text converted up to there is the
// result, so failure shows as a short or empty result.
QXCOMMON_API std::string MbToUTF8(std::string text);

}  // namespace QXXML_850

#endif  // QX_FOUNDATION_MBTOUTF8_UNIX_H
