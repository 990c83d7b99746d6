#ifndef QX_MARKUP_XMLATTRIBUTE_H
#define QX_MARKUP_XMLATTRIBUTE_H

#include <string>

#include "qx/foundation/qxexport.h"
#include "qx/markup/xmlinterface.h"

namespace QXXML_850 {

// One attribute of an element, holding its value unescaped; the value is
// escaped (XMLUtil::Escape) when it is written. Numbers are turned into text
// here, always with a point whatever the locale.
class QXCOMMON_API XMLAttribute : public XMLInterface {
 public:
  XMLAttribute(const std::string& name, const std::string& value);

  static XMLAttribute* Create(const std::string& name, const std::string& value);
  // The value as "%.15g" in the classic locale.
  static XMLAttribute* Create(const std::string& name, double value);
  // `fixed`: fixed notation with 16 decimals instead, in the classic locale.
  static XMLAttribute* Create(const std::string& name, double value, bool fixed);

  // name="escaped value"; the name is written as it stands.
  int ToString(std::string& out, ExportFormat& format) const override;
  int ToStream(std::ostream& os, ExportFormat& format, bool utf8) const override;
  XMLAttribute* Clone() const override;

  const std::string& GetName() const;
  const std::string& GetValue() const;

 private:
  std::string name;
  std::string value;
};

}  // namespace QXXML_850

#endif  // QX_MARKUP_XMLATTRIBUTE_H
