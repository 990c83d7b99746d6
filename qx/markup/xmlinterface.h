#ifndef QX_MARKUP_XMLINTERFACE_H
#define QX_MARKUP_XMLINTERFACE_H

#include <ostream>
#include <string>

#include "qx/foundation/qxexport.h"

namespace QXXML_850 {

class XMLElement;

// The layout state of one pass of writing a tree: whether the next tag starts
// a new line, whether tags are indented by tabs, and the present depth. A text
// node clears the new-paragraph flag and every element sets it again, which
// keeps an element's closing tag on the line of its text.
class QXCOMMON_API ExportFormat {
 public:
  ExportFormat();

  // Indentation is on only while the master format switch is.
  bool HasIndentation() const;
  // The same for the new-paragraph flag.
  bool IsNewParagraph() const;
  void SetFormat(bool on);
  void SetIndentation(bool on);
  void SetIsNewParagraph(bool on);

 private:
  friend class XMLElement;  // raises and lowers the depth as it writes

  bool newParagraph;
  bool indentation;
  bool format;
  int tabCount;
};

// The base of the nodes of an output-only XML tree, which the document writers
// build and then write out whole, to a string or piece by piece to a stream.
class QXCOMMON_API XMLInterface {
 public:
  virtual ~XMLInterface();

  // Appends the node's text to `out`; returns 0.
  virtual int ToString(std::string& out, ExportFormat& format) const = 0;
  // Writes the same text to `os`, converted from the locale's encoding to
  // UTF-8 if `utf8`; returns 0.
  virtual int ToStream(std::ostream& os, ExportFormat& format, bool utf8) const = 0;
  // A deep copy on the heap, owned by the caller.
  virtual XMLInterface* Clone() const = 0;
};

}  // namespace QXXML_850

#endif  // QX_MARKUP_XMLINTERFACE_H
