// Links the installed library and uses it as a component would.
#include <qx/qxcommon.h>

#include <iostream>
#include <sstream>

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
  std::cout << "consumer ok" << std::endl;
  return 0;
}
