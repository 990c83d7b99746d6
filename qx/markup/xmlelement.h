#ifndef QX_MARKUP_XMLELEMENT_H
#define QX_MARKUP_XMLELEMENT_H

#include <ostream>
#include <string>
#include <vector>

#include "qx/foundation/qxexport.h"
#include "qx/markup/xmlattribute.h"
#include "qx/markup/xmldoctype.h"
#include "qx/markup/xmlinterface.h"
#include "qx/markup/xmlstring.h"

namespace QXXML_850 {

// An element of an output-only document: StatXML and PMML results are trees
// of these, built by the document writers and written with WriteTree. An
// element owns every attribute and child added to it and deletes them with
// itself; a node must be added to one element only. Copies are made by Clone.
class QXCOMMON_API XMLElement : public XMLInterface {
 public:
  explicit XMLElement(const std::string& name);
  ~XMLElement() override;
  XMLElement(const XMLElement&) = delete;
  XMLElement& operator=(const XMLElement&) = delete;

  static XMLElement* Create(const std::string& name);

  int ToString(std::string& out, ExportFormat& format) const override;
  // The same text as ToString, handed to the stream in blocks of about 32 KiB as
  // it is made, so a large document is never held in memory as one string.
  int ToStream(std::ostream& os, ExportFormat& format, bool utf8) const override;
  // A new element of the same name with clones of all attributes and children.
  XMLElement* Clone() const override;

  // Append a child and return the new number of children.
  virtual long AddElement(XMLElement* child);
  virtual long AddElement(XMLString* child);

  void AddAttribute(XMLAttribute* attribute);
  void AddAttribute(const std::string& name, const std::string& value);
  // The two numeric forms add nothing for a NaN or an infinity, silently.
  void AddAttribute(const std::string& name, double value);
  void AddAttribute(const std::string& name, double value, bool fixed);

  const std::string& GetName() const;

 private:
  friend class XMLTreeWriter;  // writes a whole tree in one descent

  std::vector<XMLAttribute*> attributes;
  std::string name;
  std::vector<XMLInterface*> children;
};

// Writes a document: the document type (or the bare XML declaration if
// `docType` is null), then the tree of `root`, with line breaks if `format`
// and never with indentation. Returns 0.
QXCOMMON_API int WriteTree(std::ostream& os, const XMLDocType* docType, const XMLElement* root,
                           bool format);
// The same, with every piece converted from the locale's encoding to UTF-8.
QXCOMMON_API int WriteTreeUTF8(std::ostream& os, const XMLDocType* docType, const XMLElement* root,
                               bool format);

}  // namespace QXXML_850

#endif  // QX_MARKUP_XMLELEMENT_H
