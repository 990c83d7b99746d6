#ifndef QX_FOUNDATION_QXDYNAMICLOADEDLIBRARY_H
#define QX_FOUNDATION_QXDYNAMICLOADEDLIBRARY_H

#include <string>

#include "qx/foundation/qxexport.h"

namespace QXCommon_850 {

// A shared library that a component loads on demand, usually one that sits
// beside this library: the constructor only records the name, the first call
// that needs the library loads it. A loaded library is never unloaded.
class QXCOMMON_API QXDynamicLoadedLibrary {
 public:
  // mode 1 resolves symbols lazily, any other mode at once.
  QXDynamicLoadedLibrary(const std::string& name, int mode);
  ~QXDynamicLoadedLibrary();

  // 0 when the library is loaded (or already was), -1 with the loader's
  // words in the error text otherwise.
  int LoadLibraryNow();
  // The address of a symbol, loading the library first; null on failure.
  void* GetSymbolAddress(const std::string& symbol);
  // Where to load the library called `name` from: its platform file name,
  // looked up next to this library.
  static std::string QXDecorateDynamicPathName(const std::string& name);

  // Text of the last failure; empty after a success.
  const std::string& GetErrorText() const;

 private:
  void* handle;
  [[maybe_unused]] int mode;  // as given; flags holds what it means for loading
  int flags;
  std::string name;
  std::string error;
};

}  // namespace QXCommon_850

// The platform's file name of a library: "dir/abc" gives "dir/libabc.so"; a
// name that already ends in ".so" (and is longer than that) is kept.
QXCOMMON_API std::string QXDecorateLibraryName(const std::string& name);

// Where to load a file from: the sibling directory ../ext/bin/tarn.common of
// this library's own directory if the file is there, otherwise this library's
// directory; the name unchanged if this library can't find itself.
QXCOMMON_API std::string QXGetFullPathName(const std::string& name);

#endif  // QX_FOUNDATION_QXDYNAMICLOADEDLIBRARY_H
