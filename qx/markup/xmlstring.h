#ifndef QX_MARKUP_XMLSTRING_H
#define QX_MARKUP_XMLSTRING_H

#include <string>

#include "qx/foundation/qxexport.h"
#include "qx/markup/xmlinterface.h"

namespace QXXML_850 {

// A text child of an element. Only "&" and "<" are escaped on output; tabs,
// line breaks, blanks, ">" and quotes go out as they are. Writing it keeps
// the next tag on the same line.
class QXCOMMON_API XMLString : public XMLInterface {
 public:
  explicit XMLString(const std::string& value);

  static XMLString* Create(const std::string& value);

  int ToString(std::string& out, ExportFormat& format) const override;
  int ToStream(std::ostream& os, ExportFormat& format, bool utf8) const override;
  XMLString* Clone() const override;

  const std::string& GetValue() const;

 private:
  std::string value;
};

}  // namespace QXXML_850

#endif  // QX_MARKUP_XMLSTRING_H
