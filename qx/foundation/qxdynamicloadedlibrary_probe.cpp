// Test helper: prints where QXGetFullPathName would load each argument from,
// one per line. The tests run it against copies of the library laid out in a
// temporary folder, which the test program itself can't load a second time.
#include <cstdio>

#include "qx/foundation/qxdynamicloadedlibrary.h"

int main(int argc, char** argv) {
  for (int i = 1; i < argc; ++i)
    std::printf("%s\n", QXGetFullPathName(argv[i]).c_str());
  return 0;
}
