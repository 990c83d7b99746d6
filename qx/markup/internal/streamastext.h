#ifndef QX_MARKUP_INTERNAL_STREAMASTEXT_H
#define QX_MARKUP_INTERNAL_STREAMASTEXT_H

#include <ostream>
#include <string>

#include "qx/markup/xmlinterface.h"
#include "qx/markup/xmlutil.h"

namespace QXXML_850 {
namespace internal {

// ToStream of the nodes that are written whole: the node's ToString text,
// passed through the UTF-8 converter when `utf8` is set.
inline int StreamAsText(const XMLInterface& node, std::ostream& os, ExportFormat& format,
                        bool utf8) {
  std::string text;
  node.ToString(text, format);
  return utf8 ? WriteUTF(os, text) : Write(os, text);
}

}  // namespace internal
}  // namespace QXXML_850

#endif  // QX_MARKUP_INTERNAL_STREAMASTEXT_H
