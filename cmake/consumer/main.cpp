// Links the library, installed or built alongside, and uses it as a component
// would.
#include <qx/qxcommon.h>

#include <dlfcn.h>

#include <iostream>
#include <sstream>
#include <string>

int main() {
  using namespace QXCommon_850;
  QXWarnings warnings;
  warnings.AddWarning(QXStatus(901, true), QXWarnings::First);
  if (warnings.GetWarnings(true).size() != 1 || !QXMV::IsMissing(QXMV::Missing())) return 1;

  std::ostringstream text;
  QXDisplay_850::SetOutStream(text);
  QXDisplay_850::DisplayI("warnings", static_cast<int>(warnings.GetWarnings(true).size()));
  QXDisplay_850::SetOutStream(std::cout);
  if (text.str() != "\nwarnings = 1") return 2;

  // Wherever it was linked from, the library finds its own folder.
  Dl_info info;
  if (dladdr(reinterpret_cast<void*>(&QXDecorateLibraryName), &info) == 0) return 3;
  const std::string path = info.dli_fname;
  const std::string folder = path.substr(0, path.rfind('/') + 1);
  if (QXGetFullPathName("model.xml") != folder + "model.xml") return 4;

  std::ostringstream saved;
  QXXML_850::StartRoot(saved, "c");
  if (saved.str() != "<QXXMLRoot copyright=\"c\">") return 5;
  std::cout << "consumer ok" << std::endl;
  return 0;
}
