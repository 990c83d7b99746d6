#ifndef QX_MARKUP_XMLDOCTYPE_H
#define QX_MARKUP_XMLDOCTYPE_H

#include <string>

#include "qx/foundation/qxexport.h"
#include "qx/markup/xmlinterface.h"

namespace QXXML_850 {

// The head of a document: the XML declaration and a document type naming the
// root and its system identifier, with an optional internal subset. Written
// the same way whatever the format settings.
class QXCOMMON_API XMLDocType : public XMLInterface {
 public:
  // The third argument is kept and copied; it does not change the output.
  XMLDocType(const std::string& rootName, const std::string& systemId, long kind);

  static XMLDocType* Create(const std::string& rootName, const std::string& systemId, long kind);

  // Adds a line of the internal subset; returns the subset's new length.
  long AddExtension(const std::string& text);

  int ToString(std::string& out, ExportFormat& format) const override;
  int ToStream(std::ostream& os, ExportFormat& format, bool utf8) const override;
  XMLDocType* Clone() const override;

 private:
  std::string rootName;
  std::string systemId;
  std::string extensions;
  long kind;
};

}  // namespace QXXML_850

#endif  // QX_MARKUP_XMLDOCTYPE_H
