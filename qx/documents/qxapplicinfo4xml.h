#ifndef QX_DOCUMENTS_QXAPPLICINFO4XML_H
#define QX_DOCUMENTS_QXAPPLICINFO4XML_H

#include <string>

#include "qx/foundation/qxexport.h"

namespace QXCommon_850 {

// What a component says about itself in the header of the documents it
// writes: its name, its version and its copyright text. QXPMMLExporter
// reads the three; an empty text leaves the item out. A component may derive
// from it to carry more.
class QXCOMMON_API QXApplicInfo4XML {
 public:
  QXApplicInfo4XML();
  QXApplicInfo4XML(const std::string& name, const std::string& version,
                   const std::string& copyright);
  virtual ~QXApplicInfo4XML();

  std::string fApplicationName;
  std::string fApplicationVersion;
  std::string fCopyright;
};

}  // namespace QXCommon_850

#endif  // QX_DOCUMENTS_QXAPPLICINFO4XML_H
