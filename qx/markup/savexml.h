#ifndef QX_MARKUP_SAVEXML_H
#define QX_MARKUP_SAVEXML_H

#include <ostream>
#include <string>

#include "qx/foundation/qxexport.h"

namespace QXXML_850 {

// The missing value as the persisted-object file knows it: the same number as
// QXCommon_850::QXMV::Missing(), held apart so that reading and writing never
// depend on another unit's static initialization. A double equal to it is
// written as "Missing", and "Missing" reads back as it.
class QXCOMMON_API MV {
 public:
  static double gMissingValue;
};

// The writer side of a persisted object, used by each class's WriteObjectXML:
// one line per element, each opened by its own line feed and indented by tabs.
// The reader (xmlio.h) expects the lines in the order they were written. Text
// goes out as it stands, with no conversion to UTF-8.
class QXCOMMON_API XMLObj {
 public:
  XMLObj(std::string name, int nTabs);

  std::string GetName() const;
  int GetNTabs() const;

  // <Obj name="..."> at the object's depth; the name is written bare.
  int StartObj(std::ostream& os) const;
  // </Obj> at the object's depth.
  int EndObj(std::ostream& os) const;

  // One field, one level deeper than the object. Numbers are written through
  // a double as "%.15g" in the classic locale (so a long of 16 or more digits
  // loses digits), ints, unsigned ints and bools as Int, the missing double as
  // "Missing", and strings escaped as attribute values. All return 0.
  int WriteSubElement(std::ostream& os, double value) const;
  int WriteSubElement(std::ostream& os, int value) const;
  int WriteSubElement(std::ostream& os, unsigned int value) const;
  int WriteSubElement(std::ostream& os, bool value) const;
  int WriteSubElement(std::ostream& os, long value) const;
  int WriteSubElement(std::ostream& os, const std::string& value) const;
  // A string literal is a string, not a bool.
  int WriteSubElement(std::ostream& os, const char* value) const;

 private:
  std::string name;
  int nTabs;
};

// The declaration and document type a persisted file starts with:
// <?xml ...?> and <!DOCTYPE QXXMLRoot SYSTEM "savexml.dtd">, each on its line.
// A saving application calls it before StartRoot. Returns 0.
QXCOMMON_API int StartDocument(std::ostream& os);
// <QXXMLRoot copyright="...">, without a line feed of its own. Returns 0.
QXCOMMON_API int StartRoot(std::ostream& os, std::string copyright);
QXCOMMON_API int WriteHeader(std::ostream& os, std::string copyright);
// A line feed and </QXXMLRoot>. Returns 0.
QXCOMMON_API int EndRoot(std::ostream& os);
QXCOMMON_API int EndHeader(std::ostream& os);

}  // namespace QXXML_850

#endif  // QX_MARKUP_SAVEXML_H
