#include "qx/documents/qxapplicinfo4xml.h"

namespace QXCommon_850 {

QXApplicInfo4XML::QXApplicInfo4XML() {}

QXApplicInfo4XML::QXApplicInfo4XML(const std::string& name, const std::string& version,
                                   const std::string& copyright)
    : fApplicationName(name), fApplicationVersion(version), fCopyright(copyright) {}

QXApplicInfo4XML::~QXApplicInfo4XML() {}

}  // namespace QXCommon_850
