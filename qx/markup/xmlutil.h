#ifndef QX_MARKUP_XMLUTIL_H
#define QX_MARKUP_XMLUTIL_H

#include <ostream>
#include <string>

#include "qx/foundation/qxexport.h"

namespace QXXML_850 {

// The pieces of XML text the writers put together, and the string operations
// they need: tabs, replacement and the escaping of attribute values.
class QXCOMMON_API XMLUtil {
 public:
  static const int TAB_LENGTH;
  static const char FIRST_LINE[];
  static const char ROWSEP[];
  static const char ITEMINDENT[];
  static const char QUOTE[];
  static const char EQUAL[];
  static const char BEGIN_ELEMENT[];
  static const char BEGIN_PREPROCESSOR[];
  static const char END_ELEMENT[];
  static const char BEGIN_END_ELEMENT[];
  static const char SPACE[];
  static const char AMPERSAND[];
  static const char LESS_THAN[];
  static const char GREATER_THAN[];
  static const char XML_AMPERSAND[];
  static const char XML_LESS_THAN[];
  static const char XML_GREATER_THAN[];
  static const char XML_QUOTE[];
  static const char XML_CHARREF_TAB[];
  static const char XML_CHARREF_NL[];
  static const char XML_CHARREF_CR[];
  static const char XML_CHARREF_SP[];
  static const char XML_SP_CHARREF_SP[];

  // `n` tabs; empty if `n` is below 1.
  static std::string GetTabs(int n);
  // The decimal text of `value`.
  static std::string toString(int value);

  // Replaces the first `find` at or after `position` by `replacement` and
  // returns the new position, the start of the replacement; -1 if there is
  // none (then `position` has dropped by one) or `position` lies beyond the
  // end. An empty `find` never matches.
  static int ReplaceAtPos(std::string& target, const char* find, const std::string& replacement,
                          int& position);
  // Replaces the first occurrence only; returns as ReplaceAtPos.
  static int ReplaceString(std::string& target, const char* find, const std::string& replacement);
  // Replaces every occurrence from left to right, never searching inside text
  // it has put in, so a replacement may contain what it replaces.
  static void ReplaceAll(std::string& target, const char* find, const std::string& replacement);

  // `text` as it goes into an attribute value: the five markup characters,
  // tab, line feed, carriage return, the second blank of each pair and blanks
  // at either end become references, so a parser's normalisation keeps them.
  static std::string Escape(const std::string& text);
};

// Writes the bytes of `text` as they stand; returns 0.
QXCOMMON_API int Write(std::ostream& os, const std::string& text);
// Writes `text` converted from the locale's multibyte encoding to UTF-8;
// returns 0.
QXCOMMON_API int WriteUTF(std::ostream& os, const std::string& text);

}  // namespace QXXML_850

#endif  // QX_MARKUP_XMLUTIL_H
