#ifndef QX_MARKUP_XMLIO_H
#define QX_MARKUP_XMLIO_H

#include <fstream>
#include <string>

#include "qx/foundation/qxexport.h"

namespace QXXML_850 {

// The reader side of a persisted object, used by each class's ReadObjectXML.
// It is not an XML parser: every call reads exactly one line (at most 255
// characters) and cuts it into tokens, and a class calls them in the order it
// wrote its fields. Each returns false when the line can't be read (end of
// file, a line too long, a failed stream) or isn't the element expected; the
// caller turns that into its failure. Numbers that don't parse are no
// failure, and entities are not decoded: a string comes back as it was
// escaped.
//
// The tokenising state lives in each call, so two threads may read two files
// at the same time.

// The declaration, the document type and the root: the first tokens of three
// lines are "?xml", "!DOCTYPE" and "QXXMLRoot".
QXCOMMON_API bool ParseStartXML(std::ifstream& is);
// <Obj name="..."> with exactly this class name. One empty line ahead of it
// is skipped.
QXCOMMON_API bool ParseStartObj(std::ifstream& is, const std::string& name);

// An Int line, converted by strtol; the value is taken as it comes.
QXCOMMON_API bool ParseValue(std::ifstream& is, int& value);
// An Int line, converted by strtod in the C library's locale and truncated.
QXCOMMON_API bool ParseValue(std::ifstream& is, unsigned int& value);
// An Int line holding 0 or 1; any other number fails and leaves `value`.
QXCOMMON_API bool ParseValue(std::ifstream& is, bool& value);
// A Long line, converted by strtol, which stops at a point or an exponent.
QXCOMMON_API bool ParseValue(std::ifstream& is, long& value);
// A Double line: "Missing" gives MV::gMissingValue, anything else is read by
// a classic-locale stream whose outcome is not checked.
QXCOMMON_API bool ParseValue(std::ifstream& is, double& value);
// A String line; an empty value, or none, gives an empty string.
QXCOMMON_API bool ParseValue(std::ifstream& is, std::string& value);

// </Obj>.
QXCOMMON_API bool ParseEndObj(std::ifstream& is);

}  // namespace QXXML_850

#endif  // QX_MARKUP_XMLIO_H
